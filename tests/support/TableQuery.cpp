#include "tests/support/TableQuery.h"

#include <algorithm>
#include <numeric>
#include <optional>

namespace convfile::test {

using access::Row;
using access::Table;
using access::Value;

namespace {

std::vector<std::string> Split(const std::string& text, const std::string& separator) {
    std::vector<std::string> pieces;
    std::size_t begin = 0;
    for (std::size_t end = text.find(separator); end != std::string::npos;
         end = text.find(separator, begin)) {
        pieces.push_back(text.substr(begin, end - begin));
        begin = end + separator.size();
    }
    pieces.push_back(text.substr(begin));
    return pieces;
}

std::vector<const Row*> RowsInOrder(const Table& table) {
    std::vector<const Row*> rows;
    for (const Row& row : table.rows) {
        if (!row.deleted)
            rows.push_back(&row);
    }
    if (table.primaryKey >= 0) {
        const auto key = static_cast<std::size_t>(table.primaryKey);
        std::ranges::stable_sort(rows, {}, [&](const Row* row) { return row->values[key]; });
    }
    return rows;
}

class Select {
public:
    Select(const std::vector<Table>& tables, const std::string& sql) {
        const std::vector<std::string> clauses = Split(sql, " WHERE ");
        const std::vector<std::string> lists = Split(clauses[0].substr(7), " FROM ");
        for (const std::string& name : Split(lists.at(1), ", ")) {
            const auto table = std::ranges::find(tables, name, &Table::name);
            valid_ = valid_ && table != tables.end();
            if (valid_)
                tables_.push_back(&*table);
        }
        if (!valid_)
            return;
        columns_ = lists[0] == "*" ? AllColumns() : Columns(Split(lists[0], ", "));
        if (clauses.size() > 1)
            ReadConditions(clauses[1]);
    }

    bool Run(TableAnswer& answer) {
        if (!valid_)
            return false;
        for (const Column& column : columns_)
            answer.types.push_back(tables_[column.table]->columns[column.index].type);
        rows_.resize(tables_.size());
        Visit(0, answer);
        return true;
    }

private:
    struct Column {
        std::size_t table;
        std::size_t index;
    };
    struct Equality {
        Column left;
        std::optional<Column> right;
        std::string number; ///< where there is no right column
    };

    void Visit(std::size_t table, TableAnswer& answer) {
        if (table < tables_.size()) {
            for (const Row* row : RowsInOrder(*tables_[table])) {
                rows_[table] = row;
                Visit(table + 1, answer);
            }
        } else if (Matches()) {
            auto& row = answer.rows.emplace_back();
            for (const Column& column : columns_)
                row.push_back(ValueOf(column));
        }
    }

    bool Matches() const {
        const auto holds = [&](const Equality& equality) {
            const Value& left = ValueOf(equality.left);
            if (equality.right)
                return left == ValueOf(*equality.right) && left != Value();
            if (const double* const real = std::get_if<double>(&left))
                return *real == std::stod(equality.number);
            const std::int64_t* const whole = std::get_if<std::int64_t>(&left);
            return whole && *whole == std::stoll(equality.number);
        };
        return alternatives_.empty() || std::ranges::any_of(alternatives_, [&](const auto& all) {
                   return std::ranges::all_of(all, holds);
               });
    }

    const Value& ValueOf(const Column& column) const {
        return rows_[column.table]->values[column.index];
    }

    /// The columns of the one table as they are displayed.
    std::vector<Column> AllColumns() const {
        const auto& columns = tables_.front()->columns;
        std::vector<Column> all(columns.size());
        for (std::size_t i = 0; i < all.size(); ++i) {
            const int order = columns[i].displayOrder;
            all[order < 0 ? i : static_cast<std::size_t>(order)] = {0, i};
        }
        return all;
    }

    std::vector<Column> Columns(const std::vector<std::string>& names) {
        std::vector<Column> columns;
        for (const std::string& name : names) {
            if (const auto column = Find(name))
                columns.push_back(*column);
            else
                valid_ = false;
        }
        return columns;
    }

    std::optional<Column> Find(const std::string& name) const {
        for (std::size_t table = 0; table < tables_.size(); ++table) {
            const auto& columns = tables_[table]->columns;
            for (std::size_t i = 0; i < columns.size(); ++i) {
                if (name == columns[i].name || name == tables_[table]->name + "." + columns[i].name)
                    return Column{table, i};
            }
        }
        return std::nullopt;
    }

    void ReadConditions(const std::string& conditions) {
        for (const std::string& alternative : Split(conditions, " OR ")) {
            auto& all = alternatives_.emplace_back();
            for (const std::string& equality : Split(alternative, " AND ")) {
                const std::vector<std::string> sides = Split(equality, "=");
                const auto left = Find(sides[0]);
                valid_ = valid_ && left && sides.size() == 2 && !sides[1].empty();
                if (valid_)
                    all.push_back({*left, Find(sides[1]), sides[1]});
            }
        }
    }

    bool valid_ = true;
    std::vector<const Table*> tables_;
    std::vector<Column> columns_;
    std::vector<std::vector<Equality>> alternatives_;
    std::vector<const Row*> rows_; ///< of each table, while they are gone through
};

} // namespace

bool RunSelect(const std::vector<Table>& tables, const std::string& sql, TableAnswer& answer) {
    return Select(tables, sql).Run(answer);
}

} // namespace convfile::test
