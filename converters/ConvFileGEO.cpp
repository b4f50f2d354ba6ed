// A GEO file: one value a line behind a short code of letters; the value begins in the fourth
// column, which for some codes still belongs to them.
//
//   In VIA ROMA         information: the first one names the job
//   In CHIODO           ... every one is the code of the station or point that comes next
//   St P100             station; a "P" before the name is dropped
//   hs 1.545            instrument height
//   Is CAPOSALDO        station code
//   In SPIGOLO
//   Pt D101             point; a "D" or "P" before the name is dropped
//   hp 1.600            target height
//   Ip PALO             point code
//   Az 123.4567         horizontal angle
//   Zn 98.7654          zenith angle           or   ZH -0.450    height difference
//   Dt 25.417           slope distance         or   DO 25.400    horizontal distance
//
// Lengths are metres, angles gon. Other codes are skipped. A record has no end of its own.

#include "converters/ConvFileGEO.h"

#include "routines/Text.h"

#include <utility>

namespace {

constexpr std::size_t kData = 3; ///< the data begin with the code's last character

// What is remarked on.
constexpr Cause kThirdColumn = {
    RemarkKind::NotRead,
    "the character between code and value, where a blank belongs, is not read"};
constexpr Cause kValueCut = {
    RemarkKind::NoNumber, "a value behind a character in the third column, where a blank belongs, "
                          "loses its first character with it"};

std::string_view WithoutLeading(std::string_view name, std::string_view letters) {
    const bool leading = !name.empty() && letters.find(name.front()) != std::string_view::npos;
    return leading ? name.substr(1) : name;
}

} // namespace

constexpr CConvLineRecords::SlotCode CConvFileGEO::kSlotCodes[] = {
    {"hs", kHeight, DistanceMode::Unchanged},          {"Is", kCode, DistanceMode::Unchanged},
    {"hp", kHeight, DistanceMode::Unchanged},          {"Ip", kCode, DistanceMode::Unchanged},
    {"Az", kHorizontalAngle, DistanceMode::Unchanged}, {"Zn", kVertical, DistanceMode::Polar},
    {"ZH", kVertical, DistanceMode::Reduced},          {"Dt", kDistance, DistanceMode::Polar},
    {"DO", kDistance, DistanceMode::Reduced},
};

CConvFileGEO::CConvFileGEO(CLibCmp& fieldBook, std::string* fileName)
    : CConvLineRecords(fieldBook, fileName) {}

CConvFileGEO::~CConvFileGEO() = default;

bool CConvFileGEO::Esegui() {
    if (!OpenFile())
        return false;
    jobName_ = NameOfFile(*fileName_);
    ForEachLine([this] { return LeggeUnaRiga(); }, [this] { ConvertiRiga(); });
    WriteJob();
    SalvaRecord();
    return true;
}

/// The line is not trimmed: a code begins in its first column.
bool CConvFileGEO::LeggeUnaRiga() {
    if (!file_->ReadLineWithoutLast(line_))
        return false;
    data_ = TrimBoth(Piece(line_, kData));
    return true;
}

void CConvFileGEO::ConvertiRiga() {
    const std::string_view code = Piece(line_, 0, 2);
    const std::string_view third = Piece(line_, 2, 1);
    const bool isSpaced = Equals(third, " ");
    // Where the third character of a measurement's line is no space, the value loses its first one,
    // whatever it is.
    const bool isCut =
        !isSpaced && (Equals(code, "Az") || Equals(code, "Zn") || Equals(code, "Dt") ||
                      Equals(code, "ZH") || Equals(code, "DO"));
    if (Equals(code, "In")) {
        Information();
    } else if (Equals(code, "St")) {
        OpenRecord(RecordType::Station, WithoutLeading(data_, "P"));
    } else if (Equals(code, "Pt")) {
        OpenRecord(RecordType::Point, WithoutLeading(data_, "DP"));
    } else if (!FillSlot(kSlotCodes, code, isCut ? Piece(data_, 1) : data_)) {
        Skip();
        return;
    }
    if (!isSpaced && IsHeard() && !TrimBoth(third).empty())
        Note(isCut ? kValueCut : kThirdColumn);
}

/// The first information line names the job, unless a station or point came before it. Like every
/// one it is also the code of the next station or point.
void CConvFileGEO::Information() {
    if (!jobNamed_) {
        jobName_ = data_;
        jobLine_ = LineNumber();
    }
    jobNamed_ = true;
    information_ = data_;
}

void CConvFileGEO::OpenRecord(RecordType type, std::string_view name) {
    WriteJob();
    NuovoRecord(type, name);
    slots_[kCode] = std::exchange(information_, {});
}

/// The file's one job. What stood before the first record went into slots that belong to none.
void CConvFileGEO::WriteJob() {
    const AtLine line(*this, jobLine_);
    if (!jobWritten_)
        AggiungeJob(jobName_, "", "", "");
    jobWritten_ = true;
}
