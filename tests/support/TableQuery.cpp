#include "tests/support/TableQuery.h"

#include <algorithm>
#include <utility>

namespace convfile::test {

using access::Row;
using access::Table;
using access::Value;

namespace {

std::vector<std::string> Split(const std::string& text, const std::string& separator) {
    std::vector<std::string> pieces;
    std::size_t begin = 0;
    for (std::size_t end = 0; end != std::string::npos; begin = end + separator.size()) {
        end = text.find(separator, begin);
        pieces.push_back(text.substr(begin, end - begin));
    }
    return pieces;
}

/// What a statement's tables give: their columns, with the table's name before their own.
struct Joined {
    std::vector<std::string> names;
    TableAnswer all;
};

/// Every row of what there is with every row of a table, which come by their key; its columns in
/// their displayed order.
void Join(Joined& joined, Table table) {
    std::erase_if(table.rows, [](const Row& row) { return row.deleted; });
    if (table.primaryKey >= 0) {
        const auto key = static_cast<std::size_t>(table.primaryKey);
        std::ranges::stable_sort(table.rows, {}, [&](const Row& row) { return row.values[key]; });
    }
    std::vector<std::size_t> order(table.columns.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        const int place = table.columns[i].displayOrder;
        order[place < 0 ? i : static_cast<std::size_t>(place)] = i;
    }
    for (const std::size_t column : order) {
        joined.names.push_back(table.name + "." + table.columns[column].name);
        joined.all.types.push_back(table.columns[column].type);
    }
    for (const auto& left : std::exchange(joined.all.rows, {})) {
        for (const Row& right : table.rows) {
            auto& row = joined.all.rows.emplace_back(left);
            for (const std::size_t column : order)
                row.push_back(right.values[column]);
        }
    }
}

/// The place of a column, by its name or that behind its table's; -1 where there is none.
std::ptrdiff_t Find(const Joined& joined, const std::string& name) {
    const auto found = std::ranges::find_if(joined.names, [&](const std::string& column) {
        return column == name || column.ends_with("." + name);
    });
    return found == joined.names.end() ? -1 : found - joined.names.begin();
}

/// True where a row has the value of the right side, a column or a number, in the left one.
bool Holds(const Joined& joined, const std::vector<Value>& row, const std::string& equality) {
    const std::vector<std::string> sides = Split(equality, "=");
    const Value& left = row.at(static_cast<std::size_t>(Find(joined, sides.at(0))));
    if (const std::ptrdiff_t right = Find(joined, sides.at(1)); right >= 0)
        return left == row[static_cast<std::size_t>(right)] && left != Value();
    const double number = std::stod(sides[1]);
    const auto* const whole = std::get_if<std::int64_t>(&left);
    const auto* const real = std::get_if<double>(&left);
    return (whole && static_cast<double>(*whole) == number) || (real && *real == number);
}

} // namespace

bool RunSelect(const std::vector<Table>& tables, const std::string& sql, TableAnswer& answer) {
    const std::vector<std::string> clauses = Split(sql, " WHERE ");
    const std::vector<std::string> lists = Split(clauses[0].substr(7), " FROM ");
    if (sql.ends_with('=')) // a key that is missing
        return false;
    Joined from{.names = {}, .all = {.types = {}, .rows = {{}}}};
    for (const std::string& name : Split(lists.at(1), ", "))
        Join(from, *std::ranges::find(tables, name, &Table::name));
    std::erase_if(from.all.rows, [&](const std::vector<Value>& row) {
        return clauses.size() > 1 &&
               std::ranges::none_of(Split(clauses[1], " OR "), [&](auto& any) {
                   return std::ranges::all_of(Split(any, " AND "), [&](auto& equality) {
                       return Holds(from, row, equality);
                   });
               });
    });
    answer.rows.resize(from.all.rows.size());
    for (const std::string& name : lists[0] == "*" ? from.names : Split(lists[0], ", ")) {
        const auto place = static_cast<std::size_t>(Find(from, name));
        answer.types.push_back(from.all.types.at(place));
        for (std::size_t row = 0; row < answer.rows.size(); ++row)
            answer.rows[row].push_back(from.all.rows[row][place]);
    }
    return true;
}

} // namespace convfile::test
