#include "database/access/RowConverter.h"

#include "database/Engine.h"
#include "database/access/AccessText.h"
#include "routines/CodePage.h"
#include "routines/Numbers.h"

#include <bit>

namespace convfile::database {

namespace {

/// How many bytes a value of that type has; 0 where it may have any number, or the type is unknown.
constexpr std::size_t SizeOf(ColumnType type) {
    switch (type) {
    case ColumnType::Byte:
        return 1;
    case ColumnType::Integer:
        return 2;
    case ColumnType::Long:
    case ColumnType::Single:
        return 4;
    case ColumnType::Currency:
    case ColumnType::Double:
    case ColumnType::Date:
        return 8;
    case ColumnType::Guid:
        return 16;
    case ColumnType::Numeric:
        return 17;
    default:
        return 0;
    }
}

SqlValue Integer(std::int64_t integer) {
    return {.kind = SqlValue::Kind::Integer, .integer = integer, .text = {}};
}

SqlValue Real(double real) {
    return {.kind = SqlValue::Kind::Real, .real = real, .text = {}};
}

/// A text, which is kept where it is.
SqlValue Text(const std::string& kept) {
    return {.kind = SqlValue::Kind::Text, .text = kept};
}

/// Bytes have the text that ADO makes of them: each two are taken for a UTF-16 unit, low one first,
/// as far as a field's text goes.
std::string TextOfBytes(std::string_view bytes) {
    std::string text;
    for (std::size_t i = 0; i + 1 < bytes.size() && text.size() < kLongestField; i += 2)
        text += Windows1252FromUnit(NumberAt(bytes, i, 2));
    return text;
}

} // namespace

RowConverter::RowConverter(AccessFile& file, const AccessTable& table)
    : file_(file), table_(table), values_(table.columns.size()), texts_(table.columns.size()) {}

void RowConverter::Convert(const std::vector<AccessValue>& row) {
    for (std::size_t i = 0; i < row.size(); ++i) {
        const AccessColumn& column = table_.columns[i];
        if (column.type == ColumnType::Boolean)
            values_[i] = Integer(row[i].isNull ? 0 : -1);
        else
            values_[i] = row[i].isNull ? SqlValue{} : ValueOf(column, row[i].bytes, texts_[i]);
    }
}

SqlValue RowConverter::ValueOf(const AccessColumn& column, std::string_view bytes,
                               std::string& text) {
    // Of a memo no more is kept than a field ever gives; compressed, a character takes at most four
    // bytes.
    constexpr std::size_t kWanted = 4 * kLongestField + kCompressed.size();
    if (bytes.size() < SizeOf(column.type))
        throw EngineError("a value of its column " + column.name + " is cut");
    switch (column.type) {
    case ColumnType::Text:
        text = DecodeText(bytes, file_.IsJet3());
        return Text(text);
    case ColumnType::Memo:
        file_.ReadLong(bytes, kWanted, memo_);
        text = DecodeText(memo_, file_.IsJet3()).substr(0, kLongestField);
        return Text(text);
    case ColumnType::Binary:
        text = TextOfBytes(bytes);
        return Text(text);
    case ColumnType::Ole:
        file_.ReadLong(bytes, 2 * kLongestField, memo_);
        text = TextOfBytes(memo_);
        return Text(text);
    case ColumnType::Guid:
        text = TextOfGuid(bytes);
        return Text(text);
    case ColumnType::Numeric: {
        constexpr std::size_t kExactDigits = 15;
        text = TextOfNumeric(bytes, column.scale);
        return text.size() <= kExactDigits ? Real(DoubleDaString(text)) : Text(text);
    }
    default:
        return NumberOf(column.type, bytes, text);
    }
}

SqlValue RowConverter::NumberOf(ColumnType type, std::string_view bytes, std::string& text) const {
    switch (type) {
    case ColumnType::Byte:
        return Integer(NumberAt(bytes, 0, 1));
    case ColumnType::Integer:
        return Integer(static_cast<std::int16_t>(NumberAt(bytes, 0, 2)));
    case ColumnType::Long:
        return Integer(static_cast<std::int32_t>(NumberAt(bytes, 0, 4)));
    case ColumnType::Single:
        return Real(std::bit_cast<float>(NumberAt(bytes, 0, 4)));
    case ColumnType::Double:
    case ColumnType::Date:
        return Real(std::bit_cast<double>(NumberAt<std::uint64_t>(bytes, 0, 8)));
    case ColumnType::Currency: {
        // Amounts that a double holds to the last digit are numbers to the queries; larger ones
        // keep their digits as a text.
        constexpr std::int64_t kExact = 1'000'000'000'000'000;
        const auto units = static_cast<std::int64_t>(NumberAt<std::uint64_t>(bytes, 0, 8));
        if (units > -kExact && units < kExact)
            return Real(static_cast<double>(units) / 10000);
        text = TextOfCurrency(units);
        return Text(text);
    }
    default:
        return {}; // whatever later versions bring has no text
    }
}

} // namespace convfile::database
