#include "database/access/Comparisons.h"

#include "routines/Text.h"

#include <algorithm>
#include <string>

namespace convfile::database {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kComparing = "=<>";
constexpr std::string_view kSeparating = "(),+-*/&;";

/// Where the quoted piece that begins at `begin` ends: behind its closing character.
std::size_t EndOfQuoted(std::string_view sql, std::size_t begin) {
    const char closing = sql[begin] == '[' ? ']' : sql[begin];
    const std::size_t end = sql.find(closing, begin + 1);
    return end == std::string_view::npos ? sql.size() : end + 1;
}

/// Takes the next word off a statement: a comparison ("<="), a separating character, or what stands
/// between such (quoted names and texts in one piece, `table.[a column]`, too). Empty at the end.
std::string_view TakeWord(std::string_view& sql) {
    sql.remove_prefix(std::min(sql.size(), sql.find_first_not_of(kBlanks)));
    std::size_t end = 0;
    if (!sql.empty() && kSeparating.find(sql[0]) != std::string_view::npos) {
        end = 1;
    } else if (!sql.empty() && kComparing.find(sql[0]) != std::string_view::npos) {
        end = std::min(sql.size(), sql.find_first_not_of(kComparing));
    } else {
        const auto ends = [](char c) {
            return kBlanks.find(c) != std::string_view::npos ||
                   kComparing.find(c) != std::string_view::npos ||
                   kSeparating.find(c) != std::string_view::npos;
        };
        while (end < sql.size() && !ends(sql[end]))
            end = sql[end] == '\'' || sql[end] == '"' || sql[end] == '[' ? EndOfQuoted(sql, end)
                                                                         : end + 1;
    }
    const std::string_view word = sql.substr(0, end);
    sql.remove_prefix(end);
    return word;
}

bool IsComparison(std::string_view word) {
    return !word.empty() && kComparing.find(word[0]) != std::string_view::npos;
}

} // namespace

bool ComparesTextWithNumber(std::string_view sql, const OperandOfColumn& operandOfColumn) {
    const char* tablesBegin = nullptr;
    std::string_view tables;
    bool inConditions = false;
    const auto operandOf = [&](std::string_view word) {
        if (word.empty())
            return Operand::Unknown;
        if (word[0] == '\'')
            return Operand::Text;
        if (word == "?" || (word[0] >= '0' && word[0] <= '9') || word[0] == '.')
            return Operand::Number;
        return operandOfColumn(tables, word);
    };
    std::string_view before;
    std::string_view rest = sql;
    for (std::string_view word = TakeWord(rest); !word.empty(); word = TakeWord(rest)) {
        if (!tablesBegin && EqualIgnoringCase(word, "FROM")) {
            tablesBegin = word.data() + word.size();
        } else if (tablesBegin && !inConditions && EqualIgnoringCase(word, "WHERE")) {
            tables = {tablesBegin, static_cast<std::size_t>(word.data() - tablesBegin)};
            inConditions = true;
        } else if (inConditions && IsComparison(word)) {
            std::string_view behind = TakeWord(rest);
            if (behind == "-" || behind == "+") // a sign
                behind = TakeWord(rest);
            const Operand left = operandOf(before);
            const Operand right = operandOf(behind);
            if (left != right && left != Operand::Unknown && right != Operand::Unknown)
                return true;
        }
        before = word;
    }
    return false;
}

} // namespace convfile::database
