#include "export/SvgDrawing.h"

#include "export/Drawing.h"
#include "export/LabelRoom.h"
#include "export/SvgSheet.h"
#include "export/SvgText.h"
#include "routines/OutputBuffer.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>

namespace convfile::exports {

namespace {

// Sizes are pixels.
constexpr double kCaptionSize = 10;
constexpr double kPointSize = 11;
constexpr double kStationSize = 13;
constexpr double kTriangle = 7;
constexpr double kDot = 1.8;
constexpr double kLetters = 0.76; // the height of letters above their line, of their size

constexpr std::string_view kFont = "font-family=\"Helvetica, Arial, sans-serif\"";

/// A length in pixels: to tenths.
std::string Pixels(double value) {
    return ShortestNumber(ArrotondatoAtDec(value, 1) + 0.0);
}

std::string Counted(std::size_t count, const std::string& one) {
    return std::to_string(count) + " " + one + (count == 1 ? "" : "s");
}

class SvgWriter {
public:
    SvgWriter(OutputBuffer& out, const Work& work, const Drawing& drawing)
        : out_(out),
          work_(work),
          drawing_(drawing),
          sheet_(drawing, work.file),
          room_(4 * kPointSize) {}

    void Write() {
        WriteStart();
        if (drawing_.marks.empty()) {
            WriteText(sheet_.Width() / 2, sheet_.Height() / 2, kNothingPlaced,
                      "text-anchor=\"middle\"");
        } else {
            WriteFrames();
            WriteSights();
            WriteMarks();
            WriteLabels();
            WriteScaleBar();
            WriteLegend();
            WriteNorth();
        }
        out_.Write("</svg>\n");
    }

private:
    double X(double east) const { return sheet_.X(east); }
    double Y(double north) const { return sheet_.Y(north); }

    void WriteStart() {
        const std::string width = Pixels(sheet_.Width());
        const std::string height = Pixels(sheet_.Height());
        out_.Write("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                   "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" +
                   width + "\" height=\"" + height + "\" viewBox=\"0 0 " + width + " " + height +
                   "\" " + std::string(kFont) + " font-size=\"" + Pixels(kPointSize) +
                   "\" fill=\"#222\">\n<title>" + XmlTextOfUtf8(work_.file) +
                   "</title>\n<rect width=\"100%\" height=\"100%\" fill=\"#fff\"/>\n");
        WriteText(16, 26, XmlTextOfUtf8(work_.file),
                  "font-size=\"" + Pixels(SvgSheet::kTitleSize) + "\" font-weight=\"bold\"");
        WriteText(16, 45, Summary(), "fill=\"#555\"");
    }

    std::size_t Stations() const {
        return static_cast<std::size_t>(std::ranges::count_if(drawing_.marks, &Placed::stoodOn));
    }

    std::string Summary() const {
        const std::size_t stations = Stations();
        std::string text = Counted(stations, "station") + ", " +
                           Counted(drawing_.marks.size() - stations, "point");
        const bool fixed = std::ranges::any_of(
            drawing_.groups, [](const DrawnGroup& drawn) { return drawn.group.fixed; });
        if (!fixed && !drawing_.groups.empty())
            text += ", no given coordinates";
        return text;
    }

    void WriteText(double x, double y, std::string_view xml, std::string_view attributes) {
        out_.Write("<text x=\"" + Pixels(x) + "\" y=\"" + Pixels(y) + "\" ");
        out_.Write(attributes);
        out_.Write(">");
        out_.Write(xml);
        out_.Write("</text>\n");
    }

    /// Around groups that stand beside others for want of coordinates.
    void WriteFrames() {
        if (drawing_.groups.size() < 2)
            return;
        out_.Write("<g id=\"groups\" fill=\"none\" stroke=\"#a9b4bd\" stroke-dasharray=\"4 4\">\n");
        for (const DrawnGroup& drawn : drawing_.groups) {
            if (!drawn.group.fixed)
                WriteFrame(drawn);
        }
        out_.Write("</g>\n");
    }

    void WriteFrame(const DrawnGroup& drawn) {
        constexpr double kFrame = 12; // around the places
        const double x = X(drawn.box.left) - kFrame;
        const double y = Y(drawn.box.top) - kFrame;
        const double width = drawn.box.Width() * sheet_.Scale() + 2 * kFrame;
        const double height = drawn.box.Height() * sheet_.Scale() + 2 * kFrame;
        out_.Write("<rect x=\"" + Pixels(x) + "\" y=\"" + Pixels(y) + "\" width=\"" +
                   Pixels(width) + "\" height=\"" + Pixels(height) + "\"/>\n");
        std::string caption = "group " + std::to_string(drawn.group.number);
        if (const std::string_view job = work_.jobs[drawn.group.job].name;
            work_.jobs.size() > 1 && !job.empty())
            caption = XmlText(job) + ", " + caption;
        WriteText(x, y - 3, caption,
                  "font-size=\"" + Pixels(kCaptionSize) + "\" fill=\"#7d8a94\" stroke=\"none\"");
        room_.Take({x, -y + 3, x + kCaptionSize * TextWidth(caption), -y + 3 + kCaptionSize});
    }

    void WriteSights() {
        constexpr std::size_t kFew = 25; // more of them at a station would be a dark star
        const bool few = drawing_.lines.size() <= kFew * Stations();
        out_.Write("<g id=\"sights\" stroke-width=\"0.7\" stroke=\"");
        out_.Write(few ? "#a3b3bf\">\n" : "#d0d8de\">\n");
        for (const SightLine& line : drawing_.lines) {
            const Placed& from = drawing_.marks[line.from];
            const Placed& to = drawing_.marks[line.to];
            out_.Write("<line x1=\"" + Pixels(X(from.east)) + "\" y1=\"" + Pixels(Y(from.north)) +
                       "\" x2=\"" + Pixels(X(to.east)) + "\" y2=\"" + Pixels(Y(to.north)) +
                       "\"/>\n");
        }
        out_.Write("</g>\n");
    }

    void WriteMarks() {
        out_.Write("<g id=\"points\">\n");
        for (const Placed& mark : drawing_.marks) {
            if (!mark.stoodOn)
                WriteMark(mark, "circle", Dot(X(mark.east), Y(mark.north)));
        }
        out_.Write("</g>\n<g id=\"stations\" fill=\"#fff\" stroke=\"#b3261e\" "
                   "stroke-width=\"1.6\">\n");
        for (const Placed& mark : drawing_.marks) {
            if (mark.stoodOn)
                WriteMark(mark, "path", Triangle(X(mark.east), Y(mark.north)));
        }
        out_.Write("</g>\n");
    }

    static std::string Dot(double x, double y) {
        return "cx=\"" + Pixels(x) + "\" cy=\"" + Pixels(y) + "\" r=\"" + Pixels(kDot) + "\"";
    }
    /// A triangle around the place, and a dot on it.
    static std::string Triangle(double x, double y) {
        return "d=\"M" + Pixels(x) + " " + Pixels(y - kTriangle) + "l" + Pixels(-0.87 * kTriangle) +
               " " + Pixels(1.5 * kTriangle) + "h" + Pixels(1.74 * kTriangle) + "zm0 " +
               Pixels(kTriangle) + "m-.5 0h1\"";
    }

    /// A mark; the line of the file that it comes from stands with it for pages that show both.
    void WriteMark(const Placed& mark, std::string_view element, const std::string& shape) {
        std::string text = "<" + std::string(element) + " " + shape;
        if (mark.line != 0)
            text += " data-line=\"" + std::to_string(mark.line) + "\"";
        if (mark.name.empty())
            text += "/>\n";
        else
            text += "><title>" + XmlText(mark.name) + "</title></" + std::string(element) + ">\n";
        out_.Write(text);
    }

    /// Stations' names first; a name without room is left out.
    void WriteLabels() {
        for (const Placed& mark : drawing_.marks) {
            // up, as labels have it
            room_.TakeMark(X(mark.east), -Y(mark.north), mark.stoodOn ? kTriangle : kDot + 0.5);
        }
        out_.Write("<g id=\"labels\">\n<g font-size=\"" + Pixels(kStationSize) +
                   "\" font-weight=\"bold\" fill=\"#8c1d18\">\n");
        WriteLabelsOf(true, kStationSize, SvgSheet::kBold);
        out_.Write("</g>\n");
        WriteLabelsOf(false, kPointSize, 1);
        out_.Write("</g>\n");
    }

    void WriteLabelsOf(bool stations, double size, double bold) {
        constexpr Side kSides[] = {Side::Right, Side::RightAbove, Side::RightBelow,
                                   Side::Left,  Side::LeftAbove,  Side::LeftBelow,
                                   Side::Above, Side::Below};
        constexpr double kMargin = 4;
        const Box limits{kMargin, SvgSheet::kFoot - sheet_.Height(), sheet_.Width() - kMargin,
                         -SvgSheet::kHead};
        const double gap = stations ? kTriangle + 2.5 : kDot + 2.5;
        for (const Placed& mark : drawing_.marks) {
            if (mark.stoodOn != stations || mark.name.empty())
                continue;
            const auto box =
                room_.Place(X(mark.east), -Y(mark.north), bold * size * TextWidth(mark.name), size,
                            gap, kSides, limits);
            if (box)
                out_.Write("<text x=\"" + Pixels(box->left) + "\" y=\"" +
                           Pixels(-box->bottom - (1 - kLetters) * 0.6 * size) + "\">" +
                           XmlText(mark.name) + "</text>\n");
        }
    }

    void WriteScaleBar() {
        constexpr double kLongest = 200;
        constexpr double kLeft = 16;
        const double length = RoundDown125(std::min(kLongest, sheet_.Width() / 3) / sheet_.Scale());
        const double right = kLeft + length * sheet_.Scale();
        const double y = sheet_.Height() - 22;
        out_.Write("<path id=\"scale\" fill=\"none\" stroke=\"#222\" stroke-width=\"1.2\" d=\"M" +
                   Pixels(kLeft) + " " + Pixels(y - 6) + "v6H" + Pixels(right) + "v-6\"/>\n");
        WriteText((kLeft + right) / 2, y - 5, ShortestNumber(length) + " m",
                  "text-anchor=\"middle\"");
    }

    void WriteLegend() {
        const double y = sheet_.Height() - 25;
        const double x = sheet_.Width() - 150;
        out_.Write("<path fill=\"#fff\" stroke=\"#b3261e\" stroke-width=\"1.6\" " +
                   Triangle(x, y - 1) + "/>\n");
        WriteText(x + 12, y + 3, "station", "");
        out_.Write("<circle " + Dot(x + 80, y - 1) + "/>\n");
        WriteText(x + 88, y + 3, "point", "");
    }

    void WriteNorth() {
        const std::string x = Pixels(sheet_.Width() - 28);
        out_.Write("<path id=\"north\" d=\"M" + x + " 14l-6 30l6 -6l6 6z\"/>\n");
        WriteText(sheet_.Width() - 28, 56, "N", "text-anchor=\"middle\" font-weight=\"bold\"");
    }

    OutputBuffer& out_;
    const Work& work_;
    const Drawing& drawing_;
    SvgSheet sheet_;
    LabelRoom room_;
};

} // namespace

void SvgDrawing::Add(const Work& work) {
    const Drawing drawing = MakeDrawing(work);
    SvgWriter(out_, work, drawing).Write();
}

} // namespace convfile::exports
