#pragma once

#include "views/Conversion.h"
#include "web/BookRows.h"
#include "web/FileLines.h"
#include "web/Marks.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

namespace convfile::web {

/// A file on the page: its bytes, what became of them, and the pieces of it that are in view.
/// Answers are JSON.
class Session {
public:
    /// Room for a file of so many bytes; null where there is none.
    static std::unique_ptr<Session> Open(std::size_t size);

    char* Bytes() { return bytes_.get(); }

    /// Converts the file, as often as wanted: in a format, or in that which its name and content
    /// choose where it is empty.
    void Convert(const std::string& name, const std::string& format, bool complete,
                 const views::Progress& progress);

    /// Everything that is known of the file as a whole.
    std::string Overview() const;
    /// So many rows of the table from one on, and so many lines of the file.
    std::string Rows(std::size_t first, std::size_t count) const;
    std::string Lines(std::size_t first, std::size_t count) const;
    /// The row whose record begins on the line (from 1) or before it; -1 where there is none.
    long RowOfLine(std::size_t line) const;

    /// The drawing's size, the mark nearest to a point of it, and that of a row.
    std::string DrawingSize();
    std::string MarkAt(double x, double y, double farthest);
    std::string MarkOfRow(std::size_t row);

    /// What the program would write of the file alone.
    void Render(std::string_view view, std::ostream& out) const;

private:
    Session(std::unique_ptr<char[]> bytes, std::size_t size)
        : bytes_(std::move(bytes)), size_(size) {}

    const Marks& NeedMarks();

    std::unique_ptr<char[]> bytes_;
    std::size_t size_;
    std::unique_ptr<views::Conversion> conversion_;
    std::optional<BookRows> rows_;
    std::optional<FileLines> lines_;
    std::optional<Marks> marks_; ///< once it was asked for
};

/// The formats there are, by name.
std::string FormatNames();

} // namespace convfile::web
