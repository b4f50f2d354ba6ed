#include "database/access/RowConverter.h"

#include "database/Engine.h"
#include "database/access/AccessText.h"
#include "routines/CodePage.h"
#include "routines/Numbers.h"

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

namespace convfile::database {

namespace {

/// How many bytes a number of that type has; 0 where the type is no number that is known.
constexpr std::size_t SizeOfNumber(ColumnType type) {
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
    default:
        return 0;
    }
}

template <class Number>
Number LittleEndian(std::string_view bytes) {
    std::array<char, sizeof(Number)> raw{};
    std::ranges::copy(bytes.substr(0, raw.size()), raw.begin());
    if constexpr (std::endian::native == std::endian::big)
        std::ranges::reverse(raw);
    return std::bit_cast<Number>(raw);
}

/// Bytes have the text that ADO makes of them: each two are taken for a UTF-16 unit, low one first, as far
/// as a field's text goes.
std::string TextOfBytes(std::string_view bytes) {
    std::string text;
    for (std::size_t i = 0; i + 1 < bytes.size() && text.size() < kLongestField; i += 2)
        text += Windows1252FromUnit(LittleEndian<std::uint16_t>(bytes.substr(i)));
    return text;
}

} // namespace

RowConverter::RowConverter(AccessFile& file, const AccessTable& table)
    : file_(file), table_(table), values_(table.columns.size()), texts_(table.columns.size()) {}

bool RowConverter::Convert(const std::vector<AccessValue>& row) {
    for (std::size_t i = 0; i < row.size(); ++i) {
        values_[i] = {};
        if (!ConvertValue(table_.columns[i], row[i], i))
            return false;
    }
    return true;
}

bool RowConverter::ConvertValue(const AccessColumn& column, const AccessValue& from,
                                std::size_t place) {
    if (column.type == ColumnType::Boolean) {
        SetInteger(place, from.isNull ? 0 : -1);
        return true;
    }
    if (from.isNull)
        return true;
    switch (column.type) {
    case ColumnType::Text:
        SetText(place, DecodeText(from.bytes, file_.IsJet3()));
        return true;
    case ColumnType::Memo:
        return ConvertMemo(from.bytes, place);
    case ColumnType::Binary:
        SetText(place, TextOfBytes(from.bytes));
        return true;
    case ColumnType::Ole:
        return ConvertOle(from.bytes, place);
    case ColumnType::Guid:
        SetText(place, TextOfGuid(from.bytes));
        return true;
    case ColumnType::Numeric:
        ConvertNumeric(TextOfNumeric(from.bytes, column.scale), place);
        return true;
    default:
        // Whatever later versions bring has no text: it stays NULL.
        return SizeOfNumber(column.type) == 0 || ConvertNumber(column.type, from.bytes, place);
    }
}

bool RowConverter::ConvertNumber(ColumnType type, std::string_view bytes, std::size_t place) {
    if (bytes.size() < SizeOfNumber(type))
        return false;
    switch (type) {
    case ColumnType::Byte:
        SetInteger(place, static_cast<unsigned char>(bytes[0]));
        break;
    case ColumnType::Integer:
        SetInteger(place, LittleEndian<std::int16_t>(bytes));
        break;
    case ColumnType::Long:
        SetInteger(place, LittleEndian<std::int32_t>(bytes));
        break;
    case ColumnType::Currency:
        ConvertCurrency(LittleEndian<std::int64_t>(bytes), place);
        break;
    case ColumnType::Single:
        SetReal(place, LittleEndian<float>(bytes));
        break;
    default:
        SetReal(place, LittleEndian<double>(bytes));
        break;
    }
    return true;
}

/// Amounts that a double holds to the last digit are numbers to the queries; larger ones keep their
/// digits as a text.
void RowConverter::ConvertCurrency(std::int64_t units, std::size_t place) {
    constexpr std::int64_t kExact = 1'000'000'000'000'000;
    if (units > -kExact && units < kExact)
        SetReal(place, static_cast<double>(units) / 10000);
    else
        SetText(place, TextOfCurrency(units));
}

void RowConverter::ConvertNumeric(std::string digits, std::size_t place) {
    constexpr std::size_t kExactDigits = 15;
    if (digits.size() <= kExactDigits)
        SetReal(place, DoubleDaString(digits));
    else
        SetText(place, std::move(digits));
}

/// Of a memo no more is kept than a field ever gives.
bool RowConverter::ConvertMemo(std::string_view bytes, std::size_t place) {
    constexpr std::size_t kMarkAndSwitches = 16;
    constexpr std::size_t kWanted = 2 * kLongestField + kMarkAndSwitches;
    if (!file_.ReadLong(bytes, kWanted, memo_))
        return false;
    SetText(place, DecodeText(memo_, file_.IsJet3()).substr(0, kLongestField));
    return true;
}

bool RowConverter::ConvertOle(std::string_view bytes, std::size_t place) {
    if (!file_.ReadLong(bytes, 2 * kLongestField, memo_))
        return false;
    SetText(place, TextOfBytes(memo_));
    return true;
}

void RowConverter::SetInteger(std::size_t place, std::int64_t integer) {
    values_[place].kind = SqlValue::Kind::Integer;
    values_[place].integer = integer;
}

void RowConverter::SetReal(std::size_t place, double real) {
    values_[place].kind = SqlValue::Kind::Real;
    values_[place].real = real;
}

void RowConverter::SetText(std::size_t place, std::string text) {
    texts_[place] = std::move(text);
    values_[place].kind = SqlValue::Kind::Text;
    values_[place].text = texts_[place];
}

} // namespace convfile::database
