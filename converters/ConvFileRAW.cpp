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
// observations of other kinds (F2, SO, CP) are not read but by the complete reading:
//
//   CO,Angle Units: DDDMMSS                        or Degrees; anything else is gon
//   CO,Dist Units: Feet                            anything else is metres
//   CO,Zero VA: Horizon                            or Compass: vertical angles count from there up
//   CO,Coord Order: ENZ                            or NEZ
//   CO,TI INPUT th 1.600 ih 1.545                  target and instrument height from here on
//   MP,1000,,1000.000,5000.000,52.100,CHIODO       coordinates: name, id, two of the plan, height
//   SO,102,P7,1.600,25.417,69.3716,102.9320,11:25:40,PALO    point set out: an id behind the name

#include "converters/ConvFileRAW.h"

#include "routines/Angles.h"
#include "routines/Numbers.h"
#include "routines/Text.h"

#include <algorithm>
#include <utility>

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
constexpr Cause kOtherObservations = {
    RemarkKind::NotRead,
    "second faces, points set out and control points (F2, SO, CP) are not read: they give no "
    "points"};
constexpr Cause kComments = {RemarkKind::NotRead,
                             "comments (CO: names, atmosphere, remarks, settings) are not read"};
constexpr Cause kHeights = {
    RemarkKind::NotRead,
    "instrument and target heights given by a comment (CO,TI INPUT) are not read"};
constexpr Cause kBacksight = {
    RemarkKind::NotRead,
    "the backsight of a station (name, code, azimuth) is not read: the station is not oriented"};
constexpr Cause kFirstFace = {
    RemarkKind::NotRead,
    "the horizontal angle of F1 records is not read where the station's backsight direction "
    "differs: this stands for it"};
constexpr Cause kTimes = {RemarkKind::NotRead, "times of observations are not read"};
constexpr Cause kNoTime = {
    RemarkKind::Incomplete,
    "a record too short for a time and a code: the text in the time's place is not read"};
constexpr Cause kSexagesimal = {
    RemarkKind::Unit,
    "the file announces degrees, minutes and seconds (DDDMMSS): angles are in the book as "
    "written"};
constexpr Cause kDegrees = {RemarkKind::Unit,
                            "the file announces degrees: angles are in the book as written"};
constexpr Cause kOtherAngles = {
    RemarkKind::Unit,
    "the file announces another angle unit than gon or degrees: angles are in the book as "
    "written"};
constexpr Cause kFeet = {RemarkKind::Unit,
                         "the file announces feet: lengths are in the book as written"};
constexpr Cause kOtherLengths = {
    RemarkKind::Unit,
    "the file announces another unit than metres or feet: lengths are in the book as written"};
constexpr Cause kFromHorizon = {
    RemarkKind::Unit,
    "the file announces vertical angles from the horizon: they are in the book as written, "
    "though no zenith angles"};

constexpr Cause kIds = {RemarkKind::NotRead,
                        "ids of points set out, control points and coordinates are not read"};
constexpr Cause kCodes = {RemarkKind::NotRead, "codes of coordinates are not read"};
constexpr Cause kReplaced = {RemarkKind::NotRead,
                             "coordinates are not read where later ones of that name replace them"};
constexpr Cause kNobodys = {
    RemarkKind::NotRead,
    "coordinates of points that are neither stood on nor sighted are not in the book"};

constexpr double kMetresPerFoot = 0.3048;

} // namespace

enum class CConvFileRAW::Setting : std::uint8_t {
    Gon,
    Degrees,
    Sexagesimal,
    Metres,
    Feet,
    FromZenith,
    FromHorizon,
    NorthFirst,
    EastFirst,
};

struct CConvFileRAW::Announcement {
    std::string_view topic;
    std::string_view value; ///< how it begins; empty: any
    Setting setting;
    const Cause* cause = nullptr; ///< null: it is what the book has, or is applied
    bool isApplied = true;        ///< by the complete reading, which then does not remark on it
    std::string_view angles{};    ///< units of the book's values, where they stay as written
    std::string_view lengths{};
};

constexpr CConvFileRAW::Announcement CConvFileRAW::kAnnouncements[] = {
    {"Angle Units", "DDDMMSS", Setting::Sexagesimal, &kSexagesimal, true, "ddd.mmss"},
    {"Angle Units", "Deg", Setting::Degrees, &kDegrees, true, "degrees"},
    {"Angle Units", "G", Setting::Gon},
    {"Angle Units", "", Setting::Gon, &kOtherAngles, false, "as written"},
    {"Dist Units", "Feet", Setting::Feet, &kFeet, true, "", "ft"},
    {"Dist Units", "Met", Setting::Metres},
    {"Dist Units", "", Setting::Metres, &kOtherLengths, false, "", "as written"},
    {"Zero VA", "Horizon", Setting::FromHorizon, &kFromHorizon},
    {"Zero VA", "Compass", Setting::FromHorizon, &kFromHorizon},
    {"Zero VA", "Zenith", Setting::FromZenith},
    {"VA", "Horizon", Setting::FromHorizon, &kFromHorizon},
    {"VA", "Compass", Setting::FromHorizon, &kFromHorizon},
    {"VA", "Zenith", Setting::FromZenith},
    {"Coord Order", "E", Setting::EastFirst, &kComments},
    {"Coord Order", "N", Setting::NorthFirst, &kComments},
};

struct CConvFileRAW::Record {
    std::string_view type;
    void (CConvFileRAW::*convert)();
    bool needsComma; ///< without one behind its type it is no record
};

constexpr CConvFileRAW::Record CConvFileRAW::kRecords[] = {
    {"SS", &CConvFileRAW::AggiungiPun, false},
    {"F1", &CConvFileRAW::AggiungiPunF1, false},
    {"ST", &CConvFileRAW::AggiungiSta, false},
    {"CO", &CConvFileRAW::ConvertComment, true},
    {"MP", &CConvFileRAW::ConvertCoordinates, true},
    {"MC", &CConvFileRAW::ConvertCoordinates, true},
    {"UP", &CConvFileRAW::ConvertCoordinates, true},
    {"CC", &CConvFileRAW::ConvertCoordinates, true},
    {"RE", &CConvFileRAW::ConvertCoordinates, true},
    {"F2", &CConvFileRAW::ConvertSecondFace, true},
    {"SO", &CConvFileRAW::ConvertIdentified, true},
    {"CP", &CConvFileRAW::ConvertIdentified, true},
};

CConvFileRAW::CConvFileRAW(CLibCmp& fieldBook, std::string* fileName)
    : CConvGen(fieldBook, fileName) {}

CConvFileRAW::~CConvFileRAW() = default;

bool CConvFileRAW::Esegui() {
    if (!OpenFile())
        return false;
    ForEachLine([this] { return LeggeUnaRigaRAW(); }, [this] { ConvertLine(); });
    SetPlaces();
    return true;
}

bool CConvFileRAW::LeggeUnaRigaRAW() {
    if (!file_->ReadLineWithoutLast(line_))
        return false;
    line_ = TrimBoth(line_);
    recordType_ = line_.substr(0, 2);
    return true;
}

void CConvFileRAW::ConvertLine() {
    const auto* const found = std::ranges::find(kRecords, recordType_, &Record::type);
    const bool hasComma = Piece(line_, recordType_.size()).starts_with(',');
    if (found == std::end(kRecords) || (found->needsComma && !hasComma)) {
        Skip();
        return;
    }
    if (!hasComma)
        Skip(kNoComma);
    (this->*found->convert)();
}

void CConvFileRAW::ConvertSecondFace() {
    if (Rules().opensSetUps)
        AggiungiPun();
    else
        Note(kOtherObservations);
}

void CConvFileRAW::ConvertIdentified() {
    if (!Rules().opensSetUps) {
        Note(kOtherObservations);
        return;
    }
    CutFields(true);
    WritePoint(ReadAngle(fields_[3]));
}

void CConvFileRAW::ConvertComment() {
    const std::string_view comment = TrimBoth(Piece(line_, kTypeAndComma));
    if (const Announcement* const announcement = AnnouncementIn(comment))
        Announce(*announcement);
    else if (Begins(comment, "TI INPUT"))
        ConvertHeights(comment);
    else
        Note(kComments);
}

const CConvFileRAW::Announcement* CConvFileRAW::AnnouncementIn(std::string_view comment) {
    std::string_view value = comment;
    std::string_view topic;
    if (!CutAt(value, ':', topic))
        return nullptr;
    topic = TrimBoth(topic);
    value = TrimBoth(value);
    const auto* const found = std::ranges::find_if(kAnnouncements, [&](const Announcement& a) {
        return a.topic == topic && value.starts_with(a.value);
    });
    return found != std::end(kAnnouncements) ? found : nullptr;
}

void CConvFileRAW::Announce(const Announcement& announcement) {
    if (Rules().appliesUnits)
        Apply(announcement.setting);
    if (!announcement.cause || (announcement.isApplied && Rules().appliesUnits))
        return;
    Note(*announcement.cause);
    if (keeper_ && !announcement.angles.empty())
        keeper_->AnglesAre(announcement.angles);
    if (keeper_ && !announcement.lengths.empty())
        keeper_->LengthsAre(announcement.lengths);
}

void CConvFileRAW::Apply(Setting setting) {
    switch (setting) {
    case Setting::Gon:
        angles_ = Angles::Gon;
        break;
    case Setting::Degrees:
        angles_ = Angles::Degrees;
        break;
    case Setting::Sexagesimal:
        angles_ = Angles::Sexagesimal;
        break;
    case Setting::Metres:
    case Setting::Feet:
        isFeet_ = setting == Setting::Feet;
        break;
    case Setting::FromZenith:
    case Setting::FromHorizon:
        isFromHorizon_ = setting == Setting::FromHorizon;
        break;
    case Setting::NorthFirst:
    case Setting::EastFirst:
        isEastFirst_ = setting == Setting::EastFirst;
        break;
    }
}

void CConvFileRAW::ConvertHeights(std::string_view comment) {
    if (!Rules().opensSetUps) {
        Note(kHeights);
        return;
    }
    const double targetHeight = HeightBehind(comment, " th");
    if (IsPresent(targetHeight))
        targetHeight_ = targetHeight;
    const double instrumentHeight = HeightBehind(comment, " ih");
    if (IsPresent(instrumentHeight))
        SetInstrumentHeight(instrumentHeight);
}

/// The height behind that word of a comment; absent where it has none.
double CConvFileRAW::HeightBehind(std::string_view comment, std::string_view word) {
    const std::size_t at = comment.find(word);
    std::string_view rest = Piece(comment, at == std::string_view::npos ? at : at + word.size());
    rest.remove_prefix(std::min(rest.find_first_not_of(" :="), rest.size()));
    const double height = ReadNumberOrNoValue(TakeField(rest, ' '));
    return isFeet_ && IsPresent(height) ? height * kMetresPerFoot : height;
}

/// A set-up that has points already goes on as another one where its height changes.
void CConvFileRAW::SetInstrumentHeight(double height) {
    instrumentHeight_ = height;
    CSta* const station = CurrentStation();
    if (!station)
        return;
    if (fieldBook_.GetPunArSize(jobIndex_, staIndex_) == 0)
        SetHStrumAtSta(height);
    else if (station->GetAltStr() != height)
        WriteStation("", "", height);
}

void CConvFileRAW::ConvertCoordinates() {
    if (!Rules().readsCoordinates) {
        Note(kCoordinates);
        return;
    }
    constexpr std::size_t kNeeded = 5; // name, id, two coordinates, height
    CutFields();
    if (fieldCount_ < kNeeded)
        Note(kFieldsMissing);
    if (!fields_[1].empty())
        Note(kIds);
    if (!fields_[5].empty())
        Note(kCodes);
    Place place{ReadCoordinate(fields_[3]), ReadCoordinate(fields_[2]), ReadCoordinate(fields_[4])};
    if (isEastFirst_)
        std::swap(place.x, place.y);
    if (fields_[0].empty()) {
        Note(kNobodys);
        return;
    }
    const auto [known, isNew] =
        places_.try_emplace(std::string(fields_[0]), Known{place, LineNumber(), false});
    if (isNew)
        return;
    if (keeper_)
        keeper_->NoteAt(kReplaced, known->second.line);
    known->second = {place, LineNumber(), false};
}

/// Only now are the last coordinates of every name known.
void CConvFileRAW::SetPlaces() {
    if (places_.empty())
        return;
    for (CEgn* const record : records_) {
        const auto known = places_.find(record->GetNome());
        if (known == places_.end())
            continue;
        SetPlace(*record, known->second.place);
        known->second.isUsed = true;
    }
    for (const auto& [name, known] : places_) {
        if (keeper_ && !known.isUsed)
            keeper_->NoteAt(kNobodys, known.line);
    }
}

void CConvFileRAW::KeepForPlace(CEgn* record) {
    if (Rules().readsCoordinates && record && !record->GetNome().empty())
        records_.push_back(record);
}

std::string_view CConvFileRAW::SeparaCampo() {
    return TrimBoth(TakeField(line_, ','));
}

/// The fields of a record; an id behind the name is dropped.
void CConvFileRAW::CutFields(bool hasId) {
    line_ = Piece(line_, kTypeAndComma);
    fieldCount_ = 0;
    for (std::string_view& field : fields_) {
        fieldCount_ += line_.data() ? 1 : 0; // gone, not only empty, once the last was taken
        field = SeparaCampo();
        if (hasId && fieldCount_ == 1 && !SeparaCampo().empty())
            Note(kIds);
    }
    if (!line_.empty())
        Note(kMoreFields);
}

void CConvFileRAW::AggiungiSta() {
    CutFields();
    if (fieldCount_ < fields_.size())
        Note(kFieldsMissing);
    if (!fields_[2].empty() || !fields_[3].empty() || fields_[5] != fields_[6])
        Note(kBacksight);
    backDirection_ = ReadAngle(fields_[6]);
    const bool takesInput = fields_[4].empty() && IsPresent(instrumentHeight_);
    WriteStation(fields_[0], fields_[1], takesInput ? instrumentHeight_ : ReadLength(fields_[4]));
}

void CConvFileRAW::WriteStation(std::string_view name, std::string_view code,
                                double instrumentHeight) {
    AggiungeSta(std::string(name), std::string(code), instrumentHeight, kNoValue, kNoValue);
    KeepForPlace(CurrentStation());
}

void CConvFileRAW::AggiungiPun() {
    CutFields();
    WritePoint(ReadAngle(fields_[3]));
}

/// A face-one reading takes its horizontal direction from the station record, on purpose: it is the
/// reading to the backsight, to which that record set the circle (to 0 where its field is empty).
void CConvFileRAW::AggiungiPunF1() {
    CutFields();
    const double read = ReadAngle(fields_[3]);
    if (IsPresent(backDirection_) && backDirection_ != read)
        Note(kFirstFace);
    WritePoint(IsPresent(backDirection_) ? backDirection_ : read);
}

void CConvFileRAW::WritePoint(double horizontalAngle) {
    if (IsHeard())
        CheckObservation();
    if (IsPresent(instrumentHeight_) && !CurrentStation())
        WriteStation("", "", instrumentHeight_);
    const bool takesInput = fields_[1].empty() && IsPresent(targetHeight_);
    AggiungePun(std::string(fields_[0]), std::string(fields_[6]), "",
                takesInput ? targetHeight_ : ReadLength(fields_[1]),
                WithoutZeroDistance({.slopeDistance = ReadLength(fields_[2]),
                                     .zenithAngle = ReadZenithAngle(fields_[4]),
                                     .horizontalAngle = horizontalAngle}));
    if (Rules().readsCoordinates)
        KeepForPlace(LastPoint());
}

double CConvFileRAW::ReadLength(std::string_view field) {
    const double length = ReadNumber(field);
    return isFeet_ && IsPresent(length) ? length * kMetresPerFoot : length;
}

double CConvFileRAW::ReadCoordinate(std::string_view field) {
    const double coordinate = ReadNumberOrNoValue(field);
    return isFeet_ && IsPresent(coordinate) ? coordinate * kMetresPerFoot : coordinate;
}

double CConvFileRAW::ReadAngle(std::string_view field) {
    if (angles_ == Angles::Sexagesimal)
        return ReadSexagesimal(field);
    const double angle = ReadNumber(field);
    return angles_ == Angles::Degrees && IsPresent(angle) ? GonFromDegrees(angle) : angle;
}

/// An empty field is 0 also where vertical angles count from the horizon: it is no angle.
double CConvFileRAW::ReadZenithAngle(std::string_view field) {
    const double angle = ReadAngle(field);
    const bool isTurned = isFromHorizon_ && !field.empty() && IsPresent(angle);
    return isTurned ? LimiteAng0_400(100 - angle) : angle;
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
