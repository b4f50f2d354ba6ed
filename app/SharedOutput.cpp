#include "app/SharedOutput.h"

#include <new>

namespace convfile::app {

namespace {

/// False where there is no memory for it.
bool Keep(std::string_view piece, std::vector<std::string>& kept) {
    try {
        kept.emplace_back(piece);
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

} // namespace

SharedOutput::SharedOutput(std::string_view view, std::ostream& stream, std::size_t files)
    : view_(view), sink_(stream), output_(views::MakeOutput(view, sink_, files)) {}

void SharedOutput::Render(const views::Conversion& conversion, const IsTurn& isTurn, Part& part) {
    part.isBegun = isTurn();
    if (part.isBegun) {
        output_->Add(conversion);
        return;
    }
    bool isShort = false;
    views::Render(view_, conversion, [&](std::string_view piece) {
        if (isShort)
            return;
        if (!part.isBegun && isTurn()) {
            Finish(part);
            part.isBegun = true;
            part.kept = {};
        }
        if (part.isBegun)
            sink_.Write(piece);
        else
            isShort = !Keep(piece, part.kept);
    });
    if (isShort)
        throw std::bad_alloc();
}

void SharedOutput::Finish(const Part& part) {
    if (!part.isBegun)
        output_->Begin();
    for (const std::string& piece : part.kept)
        sink_.Write(piece);
}

bool SharedOutput::End() {
    output_->End();
    sink_.Flush();
    return !sink_.Failed();
}

} // namespace convfile::app
