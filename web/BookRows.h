#pragma once

#include "views/Conversion.h"
#include "views/JsonWriter.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

namespace convfile::web {

/// What a row of the field book's table shows.
enum class RowKind : std::uint8_t { Document, Job, Station, Point, Known, Line };

/// The field book of a conversion as one table from top to bottom, which is shown in pieces: what
/// it holds is never copied. The conversion has to outlive it.
class BookRows {
public:
    explicit BookRows(const views::Conversion& conversion);

    std::size_t Size() const { return rows_.size(); }

    /// The line of the file that a row's record begins on; 0: there is none.
    std::uint64_t LineOf(std::size_t row) const;
    /// The name of a row's record, Windows-1252.
    std::string_view NameOf(std::size_t row) const;
    /// The job of a row's record, from 0.
    std::size_t JobOf(std::size_t row) const { return rows_[row].job; }
    bool IsStationOrPoint(std::size_t row) const {
        return rows_[row].kind == RowKind::Station || rows_[row].kind == RowKind::Point;
    }

    /// The row whose record begins on that line, or last before it; Size() where there is none.
    std::size_t RowOfLine(std::uint64_t line) const;
    /// That of the station or point of that name which the line gave, Size() where there is none.
    std::size_t RowOf(std::uint64_t line, std::string_view name) const;

    /// The heads of the columns.
    void WriteHeads(views::JsonWriter<false>& json) const;
    /// A row: its kind, its line, and a text for each column.
    void WriteRow(views::JsonWriter<false>& json, std::size_t row) const;

private:
    struct Row {
        RowKind kind;
        std::uint32_t job;
        const void* record;
    };

    void Add(RowKind kind, std::size_t job, const void* record);

    const views::Conversion& conversion_;
    std::vector<Row> rows_;
    std::vector<std::pair<std::uint64_t, std::uint32_t>> byLine_; ///< line, row; sorted
    std::uint32_t firstLine_ = 0; ///< the first row of the document's lines
};

} // namespace convfile::web
