// A raw observation file: comma-separated records behind a type of two letters.
//
//   CO,Raw data format V2.00
//   ST,1000,,1001,,1.545,0.0000,123.4567           station: name, code, -, -, instrument height, -,
//                                                  direction of the backsight
//   F1,1001,1.600,85.412,0.0000,99.8123,11:24:32,  face one: name, target height, slope distance,
//                                                  horizontal angle, zenith angle, time, code
//   SS,101,1.600,25.417,69.3716,102.9320,11:25:34,SPIGOLO    side shot: the same
//
// Values are taken as they are: metres and gon. Comments (CO), coordinates (MP, MC, UP, CC, RE) and
// observations of other kinds (F2, SO, CP) are not read.

#include "converters/ConvFileRAW.h"

#include "routines/Numbers.h"
#include "routines/Text.h"

#include <algorithm>

namespace {

/// The type and its comma.
constexpr std::size_t kTypeAndComma = 3;

constexpr Cause kNoComma = {
    RemarkKind::Unknown,
    "a line that begins like a record but has no comma behind the type is none, but becomes a "
    "station or a point all the same"};
constexpr Cause kCoordinates = {
    RemarkKind::NotRead,
    "coordinates (MP, MC, UP, CC, RE) are not read: stations and points have none"};
constexpr Cause kOtherObservations = {RemarkKind::NotRead,
                                      "second faces, points set out and control points (F2, SO, "
                                      "CP) are not read: they give no points"};
constexpr Cause kComments = {RemarkKind::NotRead,
                             "comments (CO: names, atmosphere, remarks, settings) are not read"};
constexpr Cause kHeights = {
    RemarkKind::NotRead,
    "instrument and target heights given by a comment (CO,TI INPUT) are not read"};
constexpr Cause kBacksight = {
    RemarkKind::NotRead,
    "the backsight of a station (name, code, azimuth) is not read: the station is not oriented"};
constexpr Cause kFirstFace = {RemarkKind::NotRead,
                              "the horizontal angle of F1 records is not read where the station's "
                              "backsight direction differs: "
                              "this stands for it"};
constexpr Cause kTimes = {RemarkKind::NotRead, "times of observations are not read"};
constexpr Cause kNoTime = {
    RemarkKind::Incomplete,
    "a record too short for a time and a code: the text in the time's place is not read"};
constexpr Cause kSexagesimal = {
    RemarkKind::Unit,
    "the file announces degrees, minutes and seconds (DDDMMSS): angles are in the book as written"};
constexpr Cause kDegrees = {RemarkKind::Unit,
                            "the file announces degrees: angles are in the book as written"};
constexpr Cause kOtherAngles = {
    RemarkKind::Unit,
    "the file announces another angle unit than gon or degrees: angles are in the book as written"};
constexpr Cause kFeet = {RemarkKind::Unit,
                         "the file announces feet: lengths are in the book as written"};
constexpr Cause kOtherLengths = {
    RemarkKind::Unit,
    "the file announces another unit than metres or feet: lengths are in the book as written"};
constexpr Cause kFromHorizon = {RemarkKind::Unit,
                                "the file announces vertical angles from the horizon: they are in "
                                "the book as written, though no "
                                "zenith angles"};

/// What a comment announces of the values of the file.
struct Announcement {
    std::string_view topic;
    std::string_view value;    ///< how the value begins; empty: any
    const Cause* cause;        ///< null: values are as the book has them
    std::string_view angles{}; ///< units of the book's values
    std::string_view lengths{};
};

constexpr Announcement kAnnouncements[] = {
    {"Angle Units", "DDDMMSS", &kSexagesimal, "ddd.mmss"},
    {"Angle Units", "Deg", &kDegrees, "degrees"},
    {"Angle Units", "G", nullptr},
    {"Angle Units", "", &kOtherAngles, "as written"},
    {"Dist Units", "Feet", &kFeet, "", "ft"},
    {"Dist Units", "Met", nullptr},
    {"Dist Units", "", &kOtherLengths, "", "as written"},
    {"Zero VA", "Horizon", &kFromHorizon},
    {"Zero VA", "Compass", &kFromHorizon},
    {"Zero VA", "Zenith", nullptr},
    {"VA", "Horizon", &kFromHorizon},
    {"VA", "Compass", &kFromHorizon},
    {"VA", "Zenith", nullptr},
};

/// A record that is known but not read.
struct OtherRecord {
    std::string_view type;
    const Cause* cause;
};

constexpr OtherRecord kOtherRecords[] = {
    {"MP", &kCoordinates},       {"MC", &kCoordinates},       {"UP", &kCoordinates},
    {"CC", &kCoordinates},       {"RE", &kCoordinates},       {"F2", &kOtherObservations},
    {"SO", &kOtherObservations}, {"CP", &kOtherObservations},
};

} // namespace

CConvFileRAW::CConvFileRAW(CLibCmp& fieldBook, std::string* fileName)
    : CConvGen(fieldBook, fileName) {}

CConvFileRAW::~CConvFileRAW() = default;

bool CConvFileRAW::Esegui() {
    return OpenFile() &&
           ForEachLine([this] { return LeggeUnaRigaRAW(); }, [this] { ConvertLine(); });
}

bool CConvFileRAW::LeggeUnaRigaRAW() {
    if (!file_->ReadLineWithoutLast(line_))
        return false;
    line_ = TrimBoth(line_);
    recordType_ = line_.substr(0, 2);
    return true;
}

void CConvFileRAW::ConvertLine() {
    if (recordType_ == "ST")
        AggiungiSta();
    else if (recordType_ == "SS")
        AggiungiPun();
    else if (recordType_ == "F1")
        AggiungiPunF1();
    else if (IsHeard())
        ConvertOther();
}

/// Remarks on a line that gives no record.
void CConvFileRAW::ConvertOther() {
    const auto* const found = std::ranges::find(kOtherRecords, recordType_, &OtherRecord::type);
    const bool hasComma = Piece(line_, recordType_.size()).starts_with(',');
    if (hasComma && recordType_ == "CO")
        ConvertComment();
    else if (hasComma && found != std::end(kOtherRecords))
        Note(*found->cause);
    else
        Skip();
}

void CConvFileRAW::ConvertComment() {
    const std::string_view comment = TrimBoth(Piece(line_, kTypeAndComma));
    std::string_view value = comment;
    std::string_view topic;
    CutAt(value, ':', topic);
    const auto* const found = std::ranges::find_if(kAnnouncements, [&](const Announcement& a) {
        return a.topic == TrimBoth(topic) && TrimBoth(value).starts_with(a.value);
    });
    if (found == std::end(kAnnouncements)) {
        Note(comment.starts_with("TI INPUT") ? kHeights : kComments);
        return;
    }
    if (found->cause)
        Note(*found->cause);
    if (!found->angles.empty())
        keeper_->AnglesAre(found->angles);
    if (!found->lengths.empty())
        keeper_->LengthsAre(found->lengths);
}

std::string_view CConvFileRAW::SeparaCampo() {
    return TrimBoth(TakeField(line_, ','));
}

void CConvFileRAW::CutFields() {
    if (!Piece(line_, recordType_.size()).starts_with(','))
        Skip(kNoComma);
    line_ = Piece(line_, kTypeAndComma);
    fieldCount_ = 0;
    for (std::string_view& field : fields_) {
        fieldCount_ += line_.data() ? 1 : 0; // gone, not only empty, once the last was taken
        field = SeparaCampo();
    }
    if (!line_.empty())
        Note(kMoreFields);
}

void CConvFileRAW::AggiungiSta() {
    CutFields();
    if (fieldCount_ < fields_.size())
        Note(kFieldsMissing);
    if (!fields_[2].empty() || !fields_[3].empty() || !fields_[5].empty())
        Note(kBacksight);
    backDirection_ = ReadNumber(fields_[6]);
    AggiungeSta(std::string(fields_[0]), std::string(fields_[1]), ReadNumber(fields_[4]), kNoValue,
                kNoValue);
}

void CConvFileRAW::AggiungiPun() {
    CutFields();
    WritePoint(ReadNumber(fields_[3]));
}

/// A face-one reading takes its horizontal direction from the station record, on purpose: it is the
/// reading to the backsight, to which that record set the circle (to 0 where its field is empty).
void CConvFileRAW::AggiungiPunF1() {
    CutFields();
    const double read = ReadNumber(fields_[3]);
    if (IsPresent(backDirection_) && backDirection_ != read)
        Note(kFirstFace);
    WritePoint(IsPresent(backDirection_) ? backDirection_ : read);
}

void CConvFileRAW::WritePoint(double horizontalAngle) {
    if (IsHeard())
        CheckObservation();
    AggiungePun(std::string(fields_[0]), std::string(fields_[6]), "", ReadNumber(fields_[1]),
                WithoutZeroDistance({.slopeDistance = ReadNumber(fields_[2]),
                                     .zenithAngle = ReadNumber(fields_[4]),
                                     .horizontalAngle = horizontalAngle}));
}

/// A code without a time before it is in the time's place.
void CConvFileRAW::CheckObservation() {
    constexpr std::size_t kMeasured = 5; // fields up to the zenith angle
    if (fieldCount_ < kMeasured)
        Note(kFieldsMissing);
    else if (fields_[3].empty() || fields_[4].empty())
        Note(kAngleMissing);
    const std::string_view time = fields_[5];
    if (!time.empty())
        Note(fieldCount_ == fields_.size() || Contains(time, ":") ? kTimes : kNoTime);
}
