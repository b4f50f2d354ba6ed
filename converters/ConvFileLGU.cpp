// An LGU file: fixed columns, one record a line, its type in the first column.
//
//   123456789012345678901234567890123456789012345678901234567890
//   1 S1               1.545                                   CHIODO
//   2 101              1.600     123.4567  25.400    -0.450    SPIGOLO
//
// Type 1 is a station, 2 an observation by horizontal distance and height difference, which become
// slope distance and zenith angle without a word to the user. Metres and gon.

#include "converters/ConvFileLGU.h"

#include "host/NoValue.h"
#include "routines/Numbers.h"
#include "routines/Reduction.h"
#include "routines/Text.h"

#include <string>

namespace {

// The slots of a line. Column 2 is not read.
constexpr std::size_t kName = 0;
constexpr std::size_t kHeight = 1; ///< of the instrument, of the target
constexpr std::size_t kHorizontalAngle = 2;
constexpr std::size_t kHorizontalDistance = 3;
constexpr std::size_t kHeightDifference = 4;
constexpr std::size_t kCode = 5;

constexpr std::array<Columns, 6> kColumns = {
    {{2, 17}, {19, 10}, {29, 10}, {39, 10}, {49, 10}, {59, std::string_view::npos}}};

// What is remarked on.
constexpr Cause kColumnsMissing = {
    RemarkKind::Incomplete,
    "a record that ends before its last columns: what they hold is empty or 0"};
constexpr Cause kSecondColumn = {
    RemarkKind::NotRead, "the character in the second column, where a blank belongs, is not read"};

} // namespace

CConvFileLGU::CConvFileLGU(CLibCmp& fieldBook, std::string* fileName)
    : CConvGen(fieldBook, fileName) {}

CConvFileLGU::~CConvFileLGU() = default;

bool CConvFileLGU::Esegui() {
    if (!OpenFile())
        return false;
    AddJobOfFile();
    return ForEachLine([this] { return LeggeUnaRigaLGU(); }, [this] { ConvertLine(); });
}

/// A line of nothing but its line end is no record; "1" alone is a station without a name.
bool CConvFileLGU::LeggeUnaRigaLGU() {
    if (!file_->ReadLine(line_))
        return false;
    type_ = line_.size() < 2 ? ' ' : line_.front();
    line_ = DropLast(line_);
    return true;
}

void CConvFileLGU::ConvertLine() {
    SeparaCampiLGU();
    if (type_ == '1')
        ConversioneRigaS();
    else if (type_ == '2')
        ConversioneRigaP();
    else
        Skip();
}

void CConvFileLGU::SeparaCampiLGU() {
    for (std::size_t i = 0; i < slots_.size(); ++i)
        slots_[i] = TrimBoth(Piece(line_, kColumns[i]));
}

void CConvFileLGU::ConversioneRigaS() {
    if (IsHeard())
        JudgeLine({slots_[kHeight]}, kHeight);
    AggiungeSta(std::string(slots_[kName]), std::string(slots_[kCode]), ReadNumber(slots_[kHeight]),
                kNoValue, kNoValue);
}

/// A distance of 0 is absent before it is rounded; one that only rounds to 0 is written as 0.
void CConvFileLGU::ConversioneRigaP() {
    if (IsHeard())
        JudgeLine({slots_[kHorizontalDistance], slots_[kHeightDifference], slots_[kHorizontalAngle],
                   slots_[kHeight]},
                  kHeightDifference);
    Reading reading = WithoutZeroDistance(ReadingFromReduced(
        ReadNumber(slots_[kHorizontalDistance]), ReadNumber(slots_[kHeightDifference]),
        ReadNumber(slots_[kHorizontalAngle])));
    reading.slopeDistance = RoundedByLong(reading.slopeDistance, 1000);
    reading.zenithAngle = RoundedByLong(reading.zenithAngle, 10000);
    reading.horizontalAngle = RoundedByLong(reading.horizontalAngle, 10000);
    AggiungePun(std::string(slots_[kName]), std::string(slots_[kCode]), "",
                ReadNumber(slots_[kHeight]), reading);
}

/// Remarks on the columns of the current line, which must reach those of the slot `last`.
void CConvFileLGU::JudgeLine(std::initializer_list<std::string_view> numbers, std::size_t last) {
    JudgeFields(numbers, line_.size() > kColumns[last].first, kColumnsMissing);
    if (!TrimBoth(Piece(line_, 1, 1)).empty())
        Note(kSecondColumn);
}
