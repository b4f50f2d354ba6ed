#pragma once

#include "views/Display.h"
#include "views/Output.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace convfile::views {

enum class Align { Left, Right };

/// One column of a table of records. What stands in it comes from one of three functions.
template <class Record>
struct Column {
    std::string head;
    Align align = Align::Left;
    std::string_view (*text)(const Record&) = nullptr; ///< a text of the field book
    double (*number)(const Record&) = nullptr;
    std::string (*cell)(const Record&) = nullptr; ///< all others, as they are shown
    int decimals = 0;                             ///< of numbers
    bool ofExtras = false; ///< nothing, where a record has none of what few have
    bool optional = false; ///< left out where no record has anything in it
};

/// Prints records in aligned columns. Every record is looked at twice, first for the widths, so
/// that no table is ever held in memory.
template <class Record>
class TextTable {
public:
    explicit TextTable(std::vector<Column<Record>> columns)
        : columns_(std::move(columns)), widths_(columns_.size()) {}

    /// Takes a record into account for the widths.
    void Measure(const Record& record) {
        const bool hasExtras = record.HasExtras();
        for (std::size_t i = 0; i < columns_.size(); ++i) {
            const Column<Record>& column = columns_[i];
            if (column.text)
                widths_[i].Take(column.text(record));
            else if (column.number)
                widths_[i].Take(column.number(record));
            else if (hasExtras || !column.ofExtras)
                widths_[i].TakeShown(column.cell(record));
        }
    }
    /// Ends the measuring.
    void FindWidths() {
        std::size_t offset = 0;
        for (std::size_t i = 0; i < columns_.size(); ++i) {
            const std::size_t found = widths_[i].Found(columns_[i].decimals);
            if (found == 0 && columns_[i].optional)
                continue;
            const std::size_t width = std::max(found, ShownWidth(columns_[i].head));
            shown_.push_back({i, offset, width});
            width_ = offset + width;
            offset = width_ + kBetween;
        }
    }
    void PrintHead(Sink& sink, std::size_t indent) {
        PrintLine(sink, indent, [](const Column<Record>& column) {
            return Cell{column.head, ShownWidth(column.head)};
        });
    }
    void Print(Sink& sink, const Record& record, std::size_t indent) {
        PrintLine(sink, indent,
                  [&](const Column<Record>& column) { return CellOf(column, record); });
    }

private:
    struct ShownColumn {
        std::size_t column;
        std::size_t offset; ///< from the indent
        std::size_t width;
    };

    /// What stands in a line, good until the next one is asked for.
    struct Cell {
        std::string_view bytes;
        std::size_t width;
    };

    Cell CellOf(const Column<Record>& column, const Record& record) {
        if (column.number) {
            const char* const end =
                WriteShown(digits_.data(), column.number(record), column.decimals);
            const auto size = static_cast<std::size_t>(end - digits_.data());
            return {{digits_.data(), size}, size};
        }
        if (column.text) {
            const std::string_view text = column.text(record);
            if (IsShownAsItIs(text))
                return {text, text.size()};
            cell_ = Shown(text);
        } else {
            cell_ = column.cell(record);
        }
        return {cell_, ShownWidth(cell_)};
    }

    /// Puts each cell into its place in a line of blanks, which moves on by the bytes that cells
    /// before it have beyond their width.
    template <class MakeCell>
    void PrintLine(Sink& sink, std::size_t indent, MakeCell makeCell) {
        line_.assign(indent + width_, ' ');
        std::size_t shift = indent;
        for (const auto& [i, offset, width] : shown_) {
            const Column<Record>& column = columns_[i];
            const Cell cell = makeCell(column);
            const std::size_t more = cell.bytes.size() - cell.width;
            if (more > 0) [[unlikely]]
                line_.append(more, ' ');
            const std::size_t padding = column.align == Align::Right ? width - cell.width : 0;
            cell.bytes.copy(line_.data() + offset + shift + padding, cell.bytes.size());
            shift += more;
        }
        std::size_t length = line_.size();
        while (length > 0 && line_[length - 1] == ' ')
            --length;
        sink.Write({line_.data(), length});
        sink.Put('\n');
    }

    static constexpr std::size_t kBetween = 2;

    std::vector<Column<Record>> columns_;
    std::vector<WidthFinder> widths_;
    std::vector<ShownColumn> shown_;
    std::size_t width_ = 0; ///< of all that are shown
    std::string line_;      ///< as it is made, as are its cells
    std::string cell_;
    std::array<char, kNumberRoom> digits_;
};

} // namespace convfile::views
