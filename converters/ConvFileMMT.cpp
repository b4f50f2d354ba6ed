// An MMT download: one value a line, a tag in columns 1-3 and the value from column 12 on.
//
//   LAV.......:VIA ROMA     job: name
//   NOM.......:ROSSI        operator
//   STR.......:TS-3         instrument
//   DAT.......:15/03/2007   date
//   STA.......:100          station: name
//   IDE.......:CHIODO       code
//   H-S.......:1545         instrument height, millimetres
//   TEM.......:18           temperature
//   PRE.......:1013         pressure
//   NUM.......:101          point: name
//   COD.......:SPIGOLO      code
//   H-P.......:1600         target height, millimetres
//   AZI.......:1234567      horizontal angle, 1/10000 gon
//   ZEN.......:987654       zenith angle, 1/10000 gon
//   DIS.......:25417        slope distance, millimetres
//
// Other tags are skipped. A record is written when the next one opens or the file ends.

#include "converters/ConvFileMMT.h"

#include "routines/Numbers.h"
#include "routines/Text.h"

#include <algorithm>

namespace {

constexpr std::size_t kTagLength = 3;
constexpr std::size_t kValue = 11;
constexpr std::size_t kShortestLine = 11; ///< its line end counts

constexpr std::size_t kFirstNumber = 2; ///< of the slots of stations and points; texts before it
constexpr std::size_t kHorizontalAngle = 3;
constexpr std::size_t kZenithAngle = 4;

constexpr Cause kNoRecordOpen = {
    RemarkKind::NotRead,
    "values before the first job, station or point (LAV, STA, NUM) are not read"};
constexpr Cause kOfOtherRecord = {
    RemarkKind::Incomplete,
    "a value of a record that no line before it opens (LAV, STA, NUM) goes to the one in hand"};

constexpr double kPerMetre = 1000;
constexpr double kPerGon = 10000;

} // namespace

/// What a tag fills; the tags of slot 0 open their record. A tag fills its slot whatever record is
/// open.
struct CConvFileMMT::Tag {
    std::string_view tag;
    RecordType record;
    std::size_t slot;
};

constexpr CConvFileMMT::Tag CConvFileMMT::kTags[] = {
    {"LAV", RecordType::Job, 0},     {"NOM", RecordType::Job, 1},
    {"STR", RecordType::Job, 2},     {"DAT", RecordType::Job, 3},
    {"STA", RecordType::Station, 0}, {"IDE", RecordType::Station, 1},
    {"H-S", RecordType::Station, 2}, {"TEM", RecordType::Station, 3},
    {"PRE", RecordType::Station, 4}, {"NUM", RecordType::Point, 0},
    {"COD", RecordType::Point, 1},   {"H-P", RecordType::Point, 2},
    {"AZI", RecordType::Point, 3},   {"ZEN", RecordType::Point, 4},
    {"DIS", RecordType::Point, 5},
};

CConvFileMMT::CConvFileMMT(CLibCmp& fieldBook, std::string* fileName)
    : CConvGen(fieldBook, fileName) {}

CConvFileMMT::~CConvFileMMT() = default;

bool CConvFileMMT::Esegui() {
    if (!OpenFile())
        return false;
    ForEachLine([this] { return LeggeUnaRigaMMT(); }, [this] { ConvertLine(); });
    ConvertiRiga();
    return true;
}

/// The line's last character goes with the value, as its line end.
bool CConvFileMMT::LeggeUnaRigaMMT() {
    if (!file_->ReadLine(line_))
        return false;
    const bool hasValue = line_.size() >= kShortestLine;
    tag_ = hasValue ? line_.substr(0, kTagLength) : std::string_view{};
    value_ = hasValue ? TrimBoth(DropLast(Piece(line_, kValue))) : std::string_view{};
    return true;
}

void CConvFileMMT::ConvertLine() {
    const auto* const tag = std::ranges::find(kTags, tag_, &Tag::tag);
    if (tag == std::end(kTags))
        Skip();
    else if (tag->slot == 0)
        IniziaRiga(tag->record);
    else
        Fill(*tag);
}

void CConvFileMMT::Fill(const Tag& tag) {
    if (type_ == RecordType::None)
        Note(kNoRecordOpen);
    else if (type_ != tag.record)
        Note(kOfOtherRecord);
    if (tag.record != RecordType::Job && tag.slot >= kFirstNumber)
        CheckNumber(value_);
    slots_[tag.slot] = value_;
}

void CConvFileMMT::IniziaRiga(RecordType type) {
    ConvertiRiga();
    type_ = type;
    recordLine_ = LineNumber();
    for (std::string& slot : slots_)
        slot.clear();
    slots_[0] = value_;
}

void CConvFileMMT::ConvertiRiga() {
    const AtLine at(*this, recordLine_);
    switch (type_) {
    case RecordType::None:
        break;
    case RecordType::Job:
        ConversioneRigaL();
        break;
    case RecordType::Station:
        ConversioneRigaS();
        break;
    case RecordType::Point:
        ConversioneRigaP();
        break;
    }
}

double CConvFileMMT::SlotDividedBy(std::size_t slot, double divisor) const {
    return DividedNumber(slots_[slot], divisor);
}

void CConvFileMMT::ConversioneRigaL() {
    AggiungeJob(slots_[0], slots_[1], slots_[2], slots_[3]);
}

/// Temperature and pressure are divided like the height, on purpose: the instrument writes every
/// number of a station in thousandths.
void CConvFileMMT::ConversioneRigaS() {
    AggiungeSta(slots_[0], slots_[1], SlotDividedBy(2, kPerMetre), SlotDividedBy(3, kPerMetre),
                SlotDividedBy(4, kPerMetre));
}

void CConvFileMMT::ConversioneRigaP() {
    if (slots_[kHorizontalAngle].empty() || slots_[kZenithAngle].empty())
        NoteAtRecord(kAngleMissing);
    AggiungePun(slots_[0], slots_[1], "", SlotDividedBy(2, kPerMetre),
                WithoutZeroDistance({.slopeDistance = SlotDividedBy(5, kPerMetre),
                                     .zenithAngle = SlotDividedBy(4, kPerGon),
                                     .horizontalAngle = SlotDividedBy(3, kPerGon)}));
}
