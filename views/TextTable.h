#pragma once

#include "views/Display.h"
#include "views/Output.h"

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace convfile::views {

enum class Align { Left, Right };

/// One column of a table of records.
template <class Record>
struct Column {
    std::string head;
    Align align;
    std::function<std::string(const Record&)> cell;
    bool optional = false; ///< left out where no record has anything in it
};

/// Prints records in aligned columns. The cells are made twice, once to measure and once to print,
/// so that no table is ever held in memory.
template <class Record>
class TextTable {
public:
    explicit TextTable(std::vector<Column<Record>> columns)
        : columns_(std::move(columns)), widths_(columns_.size(), 0) {}

    /// Takes a record into account for the widths.
    void Measure(const Record& record) {
        for (std::size_t i = 0; i < columns_.size(); ++i)
            widths_[i] = std::max(widths_[i], ShownWidth(columns_[i].cell(record)));
    }
    void PrintHead(Sink& sink, std::size_t indent) const {
        PrintLine(sink, indent, [](const Column<Record>& column) { return column.head; });
    }
    void Print(Sink& sink, const Record& record, std::size_t indent) const {
        PrintLine(sink, indent, [&](const Column<Record>& column) { return column.cell(record); });
    }

private:
    bool Shows(std::size_t i) const { return !columns_[i].optional || widths_[i] > 0; }

    template <class CellOf>
    void PrintLine(Sink& sink, std::size_t indent, CellOf cellOf) const {
        std::string line(indent, ' ');
        const char* gap = "";
        for (std::size_t i = 0; i < columns_.size(); ++i) {
            if (!Shows(i))
                continue;
            const std::string cell = cellOf(columns_[i]);
            const std::size_t width = std::max(widths_[i], ShownWidth(columns_[i].head));
            const std::string padding(width - ShownWidth(cell), ' ');
            line += gap;
            gap = "  ";
            line += columns_[i].align == Align::Left ? cell + padding : padding + cell;
        }
        line.erase(line.find_last_not_of(' ') + 1);
        sink.Write(line);
        sink.Put('\n');
    }

    std::vector<Column<Record>> columns_;
    std::vector<std::size_t> widths_;
};

} // namespace convfile::views
