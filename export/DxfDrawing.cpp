// A DXF file is pairs of lines, a group code and its value:
//
//     0        an entity begins
//   POINT
//     8        its layer
//   POINTS
//    10        x
//   1234.5
//
// R12 wants neither handles nor classes: a header, tables of line types, layers and text styles,
// the blocks, and the entities.

#include "export/DxfDrawing.h"

#include "export/Drawing.h"
#include "export/LabelRoom.h"
#include "routines/OutputBuffer.h"
#include "routines/Text.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>

namespace convfile::exports {

namespace {

constexpr std::string_view kStations = "STATIONS";
constexpr std::string_view kPoints = "POINTS";
constexpr std::string_view kSights = "SIGHTS";
constexpr std::string_view kLabels = "LABELS";
constexpr std::string_view kCodes = "CODES";

/// Layers with their colours, as CAD numbers them.
constexpr struct {
    std::string_view name;
    int colour;
} kLayers[] = {{"0", 7}, {kStations, 1}, {kPoints, 7}, {kSights, 8}, {kLabels, 7}, {kCodes, 3}};

constexpr std::string_view kStationBlock = "STATION";

/// R12 takes no longer texts.
constexpr std::size_t kLongestText = 255;

/// A text as DXF has it. Bytes that Windows-1252 does not use and control characters are blanks; in
/// a text "%%" would begin a sign ("%%d", degrees), so that a percent sign beside another one is
/// written as the sign "%%%"; "^" would begin a control character, and is itself with a blank.
std::string DxfText(std::string_view text) {
    constexpr std::string_view kUnused = "\x7F\x81\x8D\x8F\x90\x9D";
    std::string written;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        const bool beside =
            (i > 0 && text[i - 1] == '%') || (i + 1 < text.size() && text[i + 1] == '%');
        std::string_view sign(&c, 1);
        if (static_cast<unsigned char>(c) < ' ' || Contains(kUnused, sign))
            sign = " ";
        else if (c == '^')
            sign = "^ ";
        else if (c == '%' && beside)
            sign = "%%%";
        if (written.size() + sign.size() > kLongestText)
            break;
        written += sign;
    }
    return written;
}

class DxfWriter {
public:
    DxfWriter(OutputBuffer& out, const Drawing& drawing)
        : out_(out),
          drawing_(drawing),
          textHeight_(TextHeightFor(drawing)),
          room_(4 * textHeight_) {}

    void Write() {
        WriteHeader();
        WriteTables();
        WriteBlocks();
        Section("ENTITIES");
        for (const SightLine& line : drawing_.lines)
            WriteLine(kSights, drawing_.marks[line.from], drawing_.marks[line.to]);
        for (const Placed& mark : drawing_.marks)
            WriteMark(mark);
        WriteTexts();
        EndSection();
        Code(0, "EOF");
    }

private:
    static double TextHeightFor(const Drawing& drawing) {
        constexpr double kInSpacing = 0.2;
        constexpr double kInSheet = 0.025;
        constexpr double kSmallest = 0.01;
        const double sheet = std::max(drawing.box.Width(), drawing.box.Height());
        double height = kInSpacing * drawing.spacing;
        if (sheet > 0)
            height = std::min(height, std::max(kInSheet * sheet, kSmallest));
        return RoundDown125(std::max(height, kSmallest));
    }

    void Code(int code, std::string_view value) {
        const std::string text = std::to_string(code);
        out_.Write(std::string_view("   ").substr(std::min<std::size_t>(text.size(), 3)));
        out_.Write(text);
        out_.Write("\r\n");
        out_.Write(value);
        out_.Write("\r\n");
    }
    void Code(int code, int value) { Code(code, std::string_view(std::to_string(value))); }
    /// A real number always has a point or an exponent.
    void Real(int code, double value) {
        char digits[kShortestRoom + 2];
        char* end = WriteShortest(digits, value + 0.0);
        if (std::all_of(digits, end, [](char c) { return c == '-' || (c >= '0' && c <= '9'); })) {
            *end++ = '.';
            *end++ = '0';
        }
        Code(code, std::string_view(digits, static_cast<std::size_t>(end - digits)));
    }
    /// Coordinates have the codes 10, 20, 30; a second place 11, 21, 31.
    void Place(int code, double x, double y, double z) {
        Real(code, x);
        Real(code + 10, y);
        Real(code + 20, z);
    }
    void Plane(int code, double x, double y) {
        Real(code, x);
        Real(code + 10, y);
    }

    void Section(std::string_view name) {
        Code(0, "SECTION");
        Code(2, name);
    }
    void EndSection() { Code(0, "ENDSEC"); }

    void Variable(std::string_view name) { Code(9, name); }

    void WriteHeader() {
        const Box sheet = Sheet();
        Section("HEADER");
        Variable("$ACADVER");
        Code(1, "AC1009");
        Variable("$DWGCODEPAGE");
        Code(3, "ANSI_1252");
        Variable("$EXTMIN");
        Place(10, sheet.left, sheet.bottom, 0);
        Variable("$EXTMAX");
        Place(10, sheet.right, sheet.top, 0);
        Variable("$LIMMIN");
        Plane(10, sheet.left, sheet.bottom);
        Variable("$LIMMAX");
        Plane(10, sheet.right, sheet.top);
        Variable("$LUNITS"); // decimal
        Code(70, 2);
        Variable("$LUPREC");
        Code(70, 4);
        Variable("$TEXTSIZE");
        Real(40, textHeight_);
        Variable("$PDMODE"); // points are small crosses
        Code(70, 2);
        Variable("$PDSIZE");
        Real(40, 0.4 * textHeight_);
        EndSection();
    }

    void WriteTables() {
        Section("TABLES");
        WriteView();
        BeginTable("LTYPE", 1);
        Entry("LTYPE", "CONTINUOUS");
        Code(3, "Solid line");
        Code(72, 65);
        Code(73, 0);
        Real(40, 0);
        Code(0, "ENDTAB");
        BeginTable("LAYER", static_cast<int>(std::size(kLayers)));
        for (const auto& layer : kLayers) {
            Entry("LAYER", layer.name);
            Code(62, layer.colour);
            Code(6, "CONTINUOUS");
        }
        Code(0, "ENDTAB");
        BeginTable("STYLE", 1);
        Entry("STYLE", "STANDARD");
        Real(40, 0);
        Real(41, 1);
        Real(50, 0);
        Code(71, 0);
        Real(42, textHeight_);
        Code(3, "txt");
        Code(4, "");
        Code(0, "ENDTAB");
        EndSection();
    }

    /// The view that the drawing opens with: all of it.
    void WriteView() {
        const Box sheet = Sheet();
        BeginTable("VPORT", 1);
        Entry("VPORT", "*ACTIVE");
        Plane(10, 0, 0);
        Plane(11, 1, 1);
        Plane(12, (sheet.left + sheet.right) / 2, (sheet.bottom + sheet.top) / 2);
        Plane(13, 0, 0);
        Plane(14, 1, 1);
        Plane(15, 0, 0);
        Place(16, 0, 0, 1);
        Place(17, 0, 0, 0);
        constexpr double kAspect = 1.5;
        Real(40, 1.1 * std::max(sheet.Height(), sheet.Width() / kAspect));
        Real(41, kAspect);
        Real(42, 50);
        Real(43, 0);
        Real(44, 0);
        Real(50, 0);
        Real(51, 0);
        for (const auto& [code, value] :
             {std::pair(71, 0), std::pair(72, 100), std::pair(73, 1), std::pair(74, 1),
              std::pair(75, 0), std::pair(76, 0), std::pair(77, 0), std::pair(78, 0)})
            Code(code, value);
        Code(0, "ENDTAB");
    }

    void BeginTable(std::string_view name, int entries) {
        Code(0, "TABLE");
        Code(2, name);
        Code(70, entries);
    }
    void Entry(std::string_view table, std::string_view name) {
        Code(0, table);
        Code(2, name);
        Code(70, 0);
    }

    /// A station is a triangle with a point in it, one text high.
    void WriteBlocks() {
        Section("BLOCKS");
        Code(0, "BLOCK");
        Code(8, "0");
        Code(2, kStationBlock);
        Code(70, 0);
        Place(10, 0, 0, 0);
        Code(3, kStationBlock);
        const Placed corners[] = {{.east = 0, .north = 0.6, .height = 0},
                                  {.east = -0.52, .north = -0.3, .height = 0},
                                  {.east = 0.52, .north = -0.3, .height = 0}};
        WriteLine("0", corners[0], corners[1]);
        WriteLine("0", corners[1], corners[2]);
        WriteLine("0", corners[2], corners[0]);
        Code(0, "POINT");
        Code(8, "0");
        Place(10, 0, 0, 0);
        Code(0, "ENDBLK");
        Code(8, "0");
        EndSection();
    }

    void WriteLine(std::string_view layer, const Placed& from, const Placed& to) {
        Code(0, "LINE");
        Code(8, layer);
        Place(10, from.east, from.north, from.height);
        Place(11, to.east, to.north, to.height);
    }

    void WriteMark(const Placed& mark) {
        Code(0, mark.stoodOn ? "INSERT" : "POINT");
        Code(8, mark.stoodOn ? kStations : kPoints);
        if (mark.stoodOn)
            Code(2, kStationBlock);
        Place(10, mark.east, mark.north, mark.height);
        if (mark.stoodOn) {
            for (const int code : {41, 42, 43})
                Real(code, textHeight_);
        }
    }

    void WriteTexts() {
        if (drawing_.marks.empty())
            WriteText(kLabels, 0, 0, 0, kNothingPlaced);
        for (const Placed& mark : drawing_.marks)
            room_.TakeMark(mark.east, mark.north, 0.2 * textHeight_);
        for (const bool stations : {true, false}) {
            for (const Placed& mark : drawing_.marks) {
                if (mark.stoodOn == stations)
                    WriteLabels(mark);
            }
        }
    }

    void WriteLabels(const Placed& mark) {
        constexpr Side kForNames[] = {Side::RightAbove, Side::RightBelow, Side::LeftAbove,
                                      Side::LeftBelow};
        constexpr Side kForCodes[] = {Side::RightBelow, Side::RightAbove, Side::LeftBelow,
                                      Side::LeftAbove};
        if (!mark.name.empty())
            WriteLabel(kLabels, mark, mark.name, kForNames);
        if (!mark.code.empty())
            WriteLabel(kCodes, mark, mark.code, kForCodes);
    }

    /// A text at its mark: where there is room, close to it or farther off; else to the right all
    /// the same.
    void WriteLabel(std::string_view layer, const Placed& mark, std::string_view text,
                    std::span<const Side> sides) {
        constexpr double kWidth = 1.1;    // of a character of a wide style, in text heights
        constexpr double kFarthest = 5.5; // either way, so that it is within 8 text heights
        const std::string written = DxfText(text);
        const double gap = (mark.stoodOn ? 0.9 : 0.5) * textHeight_;
        const double width = kWidth * textHeight_ * static_cast<double>(written.size());
        const Box near =
            Box{mark.east, mark.north, mark.east, mark.north}.Grown(kFarthest * textHeight_);
        Box limits = near; // of the corner that the text begins at
        limits.right += width;
        std::optional<Box> box;
        for (double away = gap; !box && away < kFarthest * textHeight_; away *= 2)
            box = room_.Place(mark.east, mark.north, width, textHeight_, away, sides, limits);
        if (!box)
            box = LabelBox(mark.east, mark.north, width, textHeight_, gap, sides.front());
        WriteText(layer, box->left, box->bottom, mark.height, written);
    }

    void WriteText(std::string_view layer, double x, double y, double z, std::string_view text) {
        constexpr int kDecimals = 4;
        Code(0, "TEXT");
        Code(8, layer);
        Place(10, ArrotondatoAtDec(x, kDecimals), ArrotondatoAtDec(y, kDecimals), z);
        Real(40, textHeight_);
        Code(1, text);
    }

    /// What is drawn on, never without a size.
    Box Sheet() const {
        Box sheet = drawing_.box;
        if (sheet.IsEmpty())
            sheet.Add(0, 0);
        return sheet.Grown(10 * textHeight_);
    }

    OutputBuffer& out_;
    const Drawing& drawing_;
    double textHeight_;
    LabelRoom room_;
};

} // namespace

void DxfDrawing::Add(const Work& work) {
    const Drawing drawing = MakeDrawing(work);
    DxfWriter(out_, drawing).Write();
}

} // namespace convfile::exports
