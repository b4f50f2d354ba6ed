#include "tests/support/DatabaseText.h"

#include <algorithm>
#include <fstream>
#include <map>
#include <stdexcept>

namespace convfile::test {

namespace {

using access::Table;
using access::Type;
using access::Value;

const std::map<std::string, Type> kTypes = {
    {"Boolean", Type::Boolean}, {"Byte", Type::Byte},         {"Integer", Type::Integer},
    {"Long", Type::Long},       {"Currency", Type::Currency}, {"Single", Type::Single},
    {"Double", Type::Double},   {"Date", Type::Date},         {"Binary", Type::Binary},
    {"Text", Type::Text},       {"Ole", Type::Ole},           {"Memo", Type::Memo},
    {"Guid", Type::Guid},       {"Numeric", Type::Numeric}};

std::vector<std::string> Fields(const std::string& line) {
    std::vector<std::string> fields;
    for (std::size_t begin = 0, end = 0; end != std::string::npos; begin = end + 1) {
        end = line.find('|', begin);
        std::string field = line.substr(begin, end - begin);
        field.erase(0, std::min(field.size(), field.find_first_not_of(' ')));
        field.erase(field.find_last_not_of(' ') + 1);
        fields.push_back(field);
    }
    return fields;
}

/// Takes the last word off a text.
std::string TakeLast(std::string& text) {
    const std::size_t blank = text.rfind(' ');
    const std::string word = text.substr(blank + 1);
    text.erase(blank);
    return word;
}

void AddColumn(Table& table, std::string field) {
    access::Column column;
    std::string type = TakeLast(field);
    column.dropped = type == "dropped";
    if (!column.dropped && type[0] < 'A')
        column.displayOrder = std::stoi(type);
    if (column.dropped || column.displayOrder >= 0)
        type = TakeLast(field);
    column.type = kTypes.at(type);
    const int place = static_cast<int>(table.columns.size());
    if (field[0] == '*')
        (table.primaryKey < 0 ? table.primaryKey : table.secondKey) = place;
    if (field[0] == '+')
        table.otherIndexes.push_back(place);
    column.name = field.substr(field[0] == '*' || field[0] == '+' ? 1 : 0);
    table.columns.push_back(column);
}

Value ValueOf(Type type, const std::string& field) {
    if (field.empty())
        return {};
    switch (type) {
    case Type::Single:
    case Type::Double:
    case Type::Date:
        return std::stod(field);
    case Type::Binary:
    case Type::Text:
    case Type::Ole:
    case Type::Memo:
    case Type::Guid:
        return field[0] == '"' ? field.substr(1, field.size() - 2) : field;
    default:
        return static_cast<std::int64_t>(std::stoll(field, nullptr, 0));
    }
}

/// Takes a beginning off a line that has it.
bool Take(std::string& line, const std::string& beginning) {
    const bool has = line.starts_with(beginning);
    line.erase(0, has ? beginning.size() : 0);
    return has;
}

void AddRow(Table& table, std::string line) {
    access::Row row;
    row.deleted = Take(line, "deleted: ");
    row.moved = Take(line, "moved: ");
    for (const std::string& field : line == "none" ? std::vector<std::string>() : Fields(line))
        row.values.push_back(ValueOf(table.columns.at(row.values.size()).type, field));
    table.rows.push_back(row);
}

} // namespace

DatabaseText ReadDatabaseText(const std::string& name) {
    std::ifstream file(std::string(CONVFILE_GOLDEN_FOLDER) + "/../databases/" + name);
    if (!file)
        throw std::invalid_argument("no database named " + name);
    DatabaseText text;
    bool inTable = false;
    for (std::string line; std::getline(file, line);) {
        const std::size_t select = line.find(" SELECT ");
        if (line.empty() || line[0] == '#')
            continue;
        if (Take(line, "table ")) {
            text.tables.push_back({.name = line, .columns = {}, .rows = {}});
            inTable = true;
        } else if (Take(line, "fault ")) {
            text.questions.push_back({.sql = line, .isFault = true, .rows = {}});
        } else if (select < 3) {
            text.questions.push_back(
                {.sql = line.substr(select + 1), .fields = std::stoi(line), .rows = {}});
            inTable = false;
        } else if (!inTable) {
            text.questions.back().rows.push_back(line);
        } else if (text.tables.back().columns.empty()) {
            for (const std::string& field : Fields(line))
                AddColumn(text.tables.back(), field);
        } else {
            AddRow(text.tables.back(), line);
        }
    }
    return text;
}

} // namespace convfile::test
