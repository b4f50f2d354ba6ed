#include "views/Output.h"

#include "export/FromBook.h"
#include "export/Output.h"
#include "views/JsonOutput.h"
#include "views/TableOutput.h"

#include <ostream>
#include <streambuf>

namespace convfile::views {

namespace {

/// What export/ makes of a field book.
class ExportOutput final : public Output {
public:
    ExportOutput(Sink& sink, const exports::OutputKind& kind)
        : Output(sink), output_(kind.make(sink)) {}

private:
    void Write(const Conversion& conversion) override {
        if (conversion.converted)
            output_->Add(exports::WorkFrom(conversion.fieldBook, BareName(conversion.path)));
    }

    std::unique_ptr<exports::Output> output_;
};

/// Hands on what it gets, as it gets it.
class PieceBuffer final : public std::streambuf {
public:
    using Take = std::function<void(std::string_view)>;

    /// As long as it lives, pieces go there; nowhere before, and nowhere where it ends early.
    class HandingOn {
    public:
        HandingOn(PieceBuffer& pieces, const Take& take) : pieces_(pieces) {
            pieces_.take_ = &take;
        }
        HandingOn(const HandingOn&) = delete;
        HandingOn& operator=(const HandingOn&) = delete;
        ~HandingOn() { pieces_.take_ = nullptr; }

    private:
        PieceBuffer& pieces_;
    };

private:
    std::streamsize xsputn(const char* bytes, std::streamsize size) override {
        if (take_ && size > 0)
            (*take_)({bytes, static_cast<std::size_t>(size)});
        return size;
    }
    int_type overflow(int_type c) override {
        const char byte = traits_type::to_char_type(c);
        xsputn(&byte, 1);
        return traits_type::not_eof(c);
    }

    const Take* take_ = nullptr;
};

} // namespace

std::vector<std::string> Views() {
    std::vector<std::string> views = {std::string(kSummary), std::string(kTable),
                                      std::string(kJson), std::string(kJsonLines)};
    for (const exports::OutputKind& kind : exports::OutputKinds())
        views.emplace_back(kind.name);
    return views;
}

bool TakesOneFile(std::string_view view) {
    const exports::OutputKind* const kind = exports::FindOutputKind(view);
    return kind && kind->oneFile;
}

std::unique_ptr<Output> MakeOutput(std::string_view name, Sink& sink, std::size_t files) {
    if (name == kSummary)
        return std::make_unique<SummaryOutput>(sink);
    if (name == kTable)
        return std::make_unique<TableOutput>(sink);
    if (name == kJson)
        return std::make_unique<JsonOutput>(sink, files);
    if (name == kJsonLines)
        return std::make_unique<JsonLinesOutput>(sink);
    if (const exports::OutputKind* const kind = exports::FindOutputKind(name))
        return std::make_unique<ExportOutput>(sink, *kind);
    return nullptr;
}

void Render(std::string_view view, const Conversion& conversion,
            const std::function<void(std::string_view)>& take) {
    PieceBuffer pieces;
    std::ostream stream(&pieces);
    Sink sink(stream);
    const auto output = MakeOutput(view, sink, 1);
    sink.Flush(); // a table's head goes nowhere
    const PieceBuffer::HandingOn handingOn(pieces, take);
    output->Add(conversion);
    sink.Flush();
}

std::string_view ExtensionOf(std::string_view view) {
    if (view == kSummary || view == kTable)
        return "txt";
    return view == "points" ? "csv" : view;
}

} // namespace convfile::views
