#pragma once

#include "tests/support/AccessWriter.h"

#include <string>
#include <vector>

namespace convfile::test {

/// A statement, and what it must give.
struct Question {
    std::string sql;
    int fields = 0;
    bool isFault = false;          ///< the statement must be refused
    std::vector<std::string> rows; ///< in UTF-8, as the query helper gives them
};

/// Tables as a file of tests/databases/ has them, and what they are asked.
struct DatabaseText {
    std::vector<access::Table> tables;
    std::vector<Question> questions;
};

/// Reads such a file. Its lines are:
///
///   table NAME
///   NAME TYPE | ...     columns; before the name * (in the primary key) or + (has an index),
///                       behind the type the displayed place, or "dropped"
///   VALUE | ...         a row; nothing is NULL, a text may stand in quotation marks; "deleted:" or
///                       "moved:" may precede it; "none": one that is older than all columns
///   COUNT SELECT ...    a question for that many fields; the rows follow, one a line
///   fault SELECT ...    a statement that is refused
///
/// Empty lines separate; lines that begin with # are for the reader.
DatabaseText ReadDatabaseText(const std::string& name);

} // namespace convfile::test
