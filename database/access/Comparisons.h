#pragma once

#include <functional>
#include <string_view>

namespace convfile::database {

/// What stands on a side of a comparison.
enum class Operand { Unknown, Number, Text };

/// Says what a column holds; `tables` is the statement's list of tables.
using OperandOfColumn = std::function<Operand(std::string_view tables, std::string_view column)>;

/// True where a SELECT compares a text with a number in its WHERE clause: such a statement is at
/// fault. '?' stands for a number.
bool ComparesTextWithNumber(std::string_view sql, const OperandOfColumn& operandOfColumn);

} // namespace convfile::database
