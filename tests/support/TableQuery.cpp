#include "tests/support/TableQuery.h"

#include <algorithm>
#include <charconv>

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

/// What a table shows: its columns in their displayed order and named after it, its rows by their
/// key.
Table Shown(const Table& table) {
    Table shown{.name = table.name, .columns = table.columns, .rows = {}, .primaryKey = -1};
    const auto place = [&](std::size_t i) {
        const int order = table.columns[i].displayOrder;
        return order < 0 ? i : static_cast<std::size_t>(order);
    };
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        shown.columns[place(i)] = table.columns[i];
        shown.columns[place(i)].name = table.name + "." + table.columns[i].name;
    }
    std::vector<Row> rows = table.rows;
    std::erase_if(rows, [](const Row& row) { return row.deleted; });
    if (table.primaryKey >= 0) {
        const auto key = static_cast<std::size_t>(table.primaryKey);
        std::ranges::stable_sort(rows, {}, [&](const Row& row) { return row.values[key]; });
    }
    for (Row& row : rows) {
        shown.rows.push_back(row);
        for (std::size_t i = 0; i < row.values.size(); ++i)
            shown.rows.back().values[place(i)] = row.values[i];
    }
    return shown;
}

/// Every row of the one with every row of the other.
Table Joined(const Table& first, const Table& second) {
    Table both{.name = {}, .columns = first.columns, .rows = {}, .primaryKey = -1};
    both.columns.insert(both.columns.end(), second.columns.begin(), second.columns.end());
    for (const Row& left : first.rows) {
        for (const Row& right : second.rows) {
            both.rows.push_back(left);
            both.rows.back().values.insert(both.rows.back().values.end(), right.values.begin(),
                                           right.values.end());
        }
    }
    return both;
}

/// The place of a column, by its name or that behind its table's; -1 where there is none.
std::ptrdiff_t Find(const Table& table, const std::string& name) {
    const auto found = std::ranges::find_if(table.columns, [&](const access::Column& column) {
        return column.name == name || column.name.ends_with("." + name);
    });
    return found == table.columns.end() ? -1 : found - table.columns.begin();
}

/// True where a row has the value of the right side, a column or a number, in the left one.
bool Holds(const Table& table, const Row& row, const std::vector<std::string>& sides) {
    const Value& left = row.values.at(static_cast<std::size_t>(Find(table, sides.at(0))));
    if (const std::ptrdiff_t right = Find(table, sides.at(1)); right >= 0)
        return left == row.values[static_cast<std::size_t>(right)] && left != Value();
    double number = 0;
    std::from_chars(sides[1].data(), sides[1].data() + sides[1].size(), number);
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
    Table from{.name = {}, .columns = {}, .rows = {Row()}, .primaryKey = -1};
    for (const std::string& name : Split(lists.at(1), ", "))
        from = Joined(from, Shown(*std::ranges::find(tables, name, &Table::name)));

    std::erase_if(from.rows, [&](const Row& row) {
        return clauses.size() > 1 &&
               std::ranges::none_of(Split(clauses[1], " OR "), [&](auto& any) {
                   return std::ranges::all_of(Split(any, " AND "), [&](auto& equality) {
                       return Holds(from, row, Split(equality, "="));
                   });
               });
    });
    answer.rows.resize(from.rows.size());
    for (std::size_t column = 0; column < from.columns.size(); ++column) {
        std::ptrdiff_t chosen = static_cast<std::ptrdiff_t>(column);
        if (lists[0] != "*") {
            const std::vector<std::string> names = Split(lists[0], ", ");
            if (column == names.size())
                break;
            chosen = Find(from, names[column]);
        }
        const auto place = static_cast<std::size_t>(chosen);
        answer.types.push_back(from.columns.at(place).type);
        for (std::size_t row = 0; row < answer.rows.size(); ++row)
            answer.rows[row].push_back(from.rows[row].values[place]);
    }
    return true;
}

} // namespace convfile::test
