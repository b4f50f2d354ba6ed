// Keyword record files: one record a line, a keyword, blanks, fields separated by commas.
//
//   JOB     C:\JOBS\SITE1
//   NAME    ROSSI
//   INST    TS-3
//   UNITS   M,G
//   DATE    15/03/07,09:44:26
//   STN     1001,1.550,BASE          station: point, instrument height, code
//   RES_OBS 1,1.600,TRIG             resection: point, target height, code
//   SD      0.0000,98.1234,152.417   its horizontal angle, zenith angle, slope distance
//   BS      1002,1.600               backsight: point, target height
//   HV      45.0000,87.4635          horizontal angle, zenith angle
//   SS      100,1.600,SPIGOLO        side shot: point, target height, code, more code
//   SD      74.3901,87.4700,2.165    horizontal angle, zenith angle, slope distance
//   NOTE    accanto al muro
//   FS      101,1.600,SPIGOLO        foresight: point, target height, code
//   HD      97.0039,25.000,-0.312    horizontal angle, horizontal distance, height difference
//   OFFSET  0.000,0.500,0.000        from the last point: along, lateral, vertical
//
// Angles are gon, or degrees after "UNITS M,D"; lengths metres, whatever UNITS says. Other keywords
// (XYZ, SCALE, TEMP ...) are not read. The complete reading applies UNITS as instruments write it:
// degrees, minutes and seconds (DDD.MMSSss), feet; and XYZ (east, north, height) gives coordinates
// to the station or point before it.

#include "converters/KeywordRecords.h"

#include "host/NoValue.h"
#include "routines/Angles.h"
#include "routines/Numbers.h"
#include "routines/Reduction.h"
#include "routines/Text.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::size_t kLengthDecimals = 3;
constexpr double kPerMetre = 1000; ///< of lengths without a point
constexpr double kMetresPerFoot = 0.3048;
constexpr int kCompleteReducedDecimals = 6;
constexpr std::size_t kAngleDecimals = 4;

// The order of the fields of a resection entry.
constexpr std::size_t kResectionHeight = 1;
constexpr std::size_t kResectionCode = 2;

constexpr Cause kBeforeHeader = {
    RemarkKind::Unknown,
    "a line before the header, whose end is the first line that begins with a letter, is "
    "skipped"};
constexpr Cause kHeaderRecord = {
    RemarkKind::NotRead,
    "a record in the header's place, the first line that begins with a letter, is not read"};
constexpr Cause kCoordinates = {
    RemarkKind::NotRead, "XYZ records are not read: stations and points have no coordinates"};
constexpr Cause kCoordinatesOfNothing = {
    RemarkKind::NotRead,
    "coordinates (XYZ) that follow no station or point, but BKB, RES_OBS or a job's records, "
    "are not read"};
constexpr Cause kAtmosphere = {
    RemarkKind::NotRead,
    "ATMOS, TEMP and SCALE records are not read: temperature and pressure are 0"};
constexpr Cause kBacksightBearing = {
    RemarkKind::NotRead,
    "BKB records are not read: the bearing to the backsight is not in the book"};
constexpr Cause kControl = {RemarkKind::NotRead, "CTL records are not read"};
constexpr Cause kPtlOffset = {
    RemarkKind::NotRead,
    "PTL_OFF records are not read: the points that they give by an offset are not in the book"};
constexpr Cause kResectionExtra = {
    RemarkKind::NotRead,
    "a fourth field of RES_OBS goes behind the height of the record in hand: it is read only "
    "where that is empty"};
constexpr Cause kResectionsLost = {
    RemarkKind::Incomplete,
    "resection observations (RES_OBS) without a station before or behind them are not in the "
    "book"};
constexpr Cause kOffsetOfNothing = {
    RemarkKind::Incomplete,
    "an offset without a measured point before it: its point is computed from a distance of 0"};
constexpr Cause kDegrees = {
    RemarkKind::Unit,
    "UNITS says degrees: angles are read as decimal degrees, though instruments write degrees, "
    "minutes and seconds (DDD.MMSS): they are up to 0.45 gon wrong"};
constexpr Cause kOtherAngles = {RemarkKind::Unit,
                                "UNITS says neither degrees nor gon: angles are taken as gon"};
constexpr Cause kFeet = {RemarkKind::Unit, "UNITS says feet: lengths are in the book as written"};
constexpr Cause kOtherLengths = {
    RemarkKind::Unit, "UNITS says neither metres nor feet: lengths are in the book as written"};
constexpr Cause kReducedAngle = {
    RemarkKind::Unit,
    "the zenith angle computed from an HD record is gon, but is converted from degrees: it is "
    "wrong"};
constexpr Cause kReducedDistance = {
    RemarkKind::Unit,
    "the distance of an HD record with decimal points loses its decimals, and is then taken as "
    "millimetres where four digits or more are left"};

bool IsLetter(char c) {
    return UpperAscii(c) >= 'A' && UpperAscii(c) <= 'Z';
}

} // namespace

struct CConvKeywordRecords::Keyword {
    std::string_view keyword;
    void (CConvKeywordRecords::*handle)();
    bool onlyWithPtlOff = false;
};

constexpr CConvKeywordRecords::Keyword CConvKeywordRecords::kKeywords[] = {
    {"JOB", &CConvKeywordRecords::CampoJOB},
    {"DATE", &CConvKeywordRecords::CampoDATE},
    {"NAME", &CConvKeywordRecords::CampoNAME},
    {"INST", &CConvKeywordRecords::CampoINST},
    {"ATMOS", &CConvKeywordRecords::CampoATMOS},
    {"TEMP", &CConvKeywordRecords::CampoATMOS},
    {"SCALE", &CConvKeywordRecords::CampoATMOS},
    {"STN", &CConvKeywordRecords::CampoSTN},
    {"XYZ", &CConvKeywordRecords::CampoXYZ},
    {"BKB", &CConvKeywordRecords::CampoBKB},
    {"BS", &CConvKeywordRecords::CampoBS},
    {"RES_OBS", &CConvKeywordRecords::CampoRES_OBS},
    {"FS", &CConvKeywordRecords::CampoFS},
    {"SS", &CConvKeywordRecords::CampoSS},
    {"CTL", &CConvKeywordRecords::CampoCTL},
    {"HV", &CConvKeywordRecords::CampoHV},
    {"SD", &CConvKeywordRecords::CampoSD},
    {"HD", &CConvKeywordRecords::CampoHD},
    {"NOTE", &CConvKeywordRecords::CampoNOTE},
    {"UNITS", &CConvKeywordRecords::CampoUNITS},
    {"OFFSET", &CConvKeywordRecords::CampoOFFSET},
    {"PTL_OFF", &CConvKeywordRecords::CampoOFFSET, true},
};

CConvKeywordRecords::CConvKeywordRecords(CLibCmp& fieldBook, std::string* fileName,
                                         const KeywordDialect& dialect)
    : CConvPendingRecords(fieldBook, fileName, static_cast<Save>(&CConvKeywordRecords::SalvaRigaS),
                          static_cast<Save>(&CConvKeywordRecords::SalvaRigaP)),
      dialect_(dialect),
      inHeader_(dialect.hasHeader) {}

CConvKeywordRecords::~CConvKeywordRecords() {
    Finish([this] {
        FlushAll();
        for (const Resection& lost : resections_) {
            const AtLine at(*this, lost.line);
            NoteAtRecord(kResectionsLost);
        }
    });
}

void CConvKeywordRecords::ProcessaRiga() {
    std::string_view keyword;
    if (inHeader_ && line_.size() >= kShortestLine)
        ConvertHeaderLine();
    else if (!inHeader_ && CutKeyword(keyword))
        AnalizzaRiga(keyword);
    else
        Skip();
}

/// The first line that begins with a letter ends the header, and is itself part of it.
void CConvKeywordRecords::ConvertHeaderLine() {
    inHeader_ = !IsLetter(line_.front());
    std::string_view keyword;
    if (inHeader_)
        Skip(kBeforeHeader);
    else if (IsHeard() && CutKeyword(keyword) &&
             std::ranges::find_if(kKeywords, SameAs(keyword), &Keyword::keyword) !=
                 std::end(kKeywords))
        Note(kHeaderRecord);
}

void CConvKeywordRecords::AnalizzaRiga(std::string_view keyword) {
    const auto* const found = std::ranges::find_if(kKeywords, SameAs(keyword), &Keyword::keyword);
    if (found == std::end(kKeywords)) {
        Skip();
    } else if (found->onlyWithPtlOff && !dialect_.hasPtlOff) {
        Note(kPtlOffset);
    } else {
        (this->*found->handle)();
        NoteRest();
    }
}

/// The record in hand goes on. By the classic rules the units that count are those of the time at
/// which it is written.
void CConvKeywordRecords::TakeRecord() {
    placeOf_ = PlaceOf::RecordInHand;
    recordUnits_ = units_;
}

void CConvKeywordRecords::NotRead(const Cause& cause) {
    Note(cause);
    fields_ = {};
}

/// A text of the job: closes what is pending of stations and points, and the job itself where it
/// has that text already.
void CConvKeywordRecords::JobText(std::size_t slot, std::string_view text) {
    FlushStation();
    FlushPoint();
    if (!slots_[slot].empty())
        SalvaRigaL();
    placeOf_ = PlaceOf::Nothing;
    AddToRecord();
    slots_[slot] = text;
    jobPending_ = true;
}

void CConvKeywordRecords::CampoJOB() {
    std::string_view name = SeparaCampo();
    name.remove_prefix(name.find('\\') + 1); // nothing where there is no backslash
    JobText(kName, name);
}

void CConvKeywordRecords::CampoDATE() {
    JobText(kDate, SeparaCampo());
}

void CConvKeywordRecords::CampoNAME() {
    JobText(kOperator, SeparaCampo());
}

void CConvKeywordRecords::CampoINST() {
    JobText(kInstrument, SeparaCampo());
}

void CConvKeywordRecords::CampoATMOS() {
    NotRead(kAtmosphere);
}

void CConvKeywordRecords::CampoSTN() {
    StationRecord();
    TakeRecord();
}

void CConvKeywordRecords::CampoXYZ() {
    if (!Rules().readsCoordinates) {
        NotRead(kCoordinates);
        return;
    }
    Place place;
    place.x = NextCoordinate();
    place.y = NextCoordinate();
    place.z = NextCoordinate();
    if (placeOf_ == PlaceOf::Nothing)
        Note(kCoordinatesOfNothing);
    else if (placeOf_ == PlaceOf::RecordInHand)
        place_ = place;
    else if (CPun* const point = LastPoint())
        SetPlace(*point, place);
}

double CConvKeywordRecords::NextCoordinate() {
    const std::string_view field = NumberField(kNoNumberIsAbsent);
    const bool implied = dialect_.impliedDecimals && !Contains(field, ".");
    const double coordinate = NumberOrNoValue(field);
    return Metres(implied && IsPresent(coordinate) ? coordinate / kPerMetre : coordinate, units_);
}

void CConvKeywordRecords::CampoBKB() {
    placeOf_ = PlaceOf::Nothing;
    NotRead(kBacksightBearing);
}

void CConvKeywordRecords::CampoBS() {
    BeginPoint({kName, kHeight});
    slots_[kName] = SeparaCampo();
    slots_[kHeight] = NumberField();
    TakeRecord();
}

/// The extra field goes to the height of the record in hand, not to the entry, on purpose: it is
/// what some instruments write behind the code of a station that is being resected.
void CConvKeywordRecords::CampoRES_OBS() {
    resection_ = true;
    placeOf_ = PlaceOf::Nothing;
    std::string& entry = resections_.emplace_back(Resection{{}, LineNumber(), units_}).fields;
    entry.append(SeparaCampo()).append(",");
    entry.append(NumberField()).append(",");
    entry.append(SeparaCampo()).append(",");
    const std::string_view extra = SeparaCampo();
    if (!extra.empty()) {
        Note(kResectionExtra);
        AddToRecord();
        slots_[kHeight].append(" ").append(extra);
    }
}

void CConvKeywordRecords::CampoFS() {
    SightedPoint();
    TakeRecord();
}

void CConvKeywordRecords::CampoSS() {
    SideShot();
    TakeRecord();
}

void CConvKeywordRecords::CampoCTL() {
    NotRead(kControl);
}

void CConvKeywordRecords::CampoHV() {
    AnglesReading();
    TakeRecord();
    NoteSexagesimal(slots_[kHorizontalAngle]);
    NoteSexagesimal(slots_[kZenithAngle]);
}

void CConvKeywordRecords::CampoSD() {
    if (resection_) {
        resections_.back().fields.append(fields_).append(",");
        NoteSexagesimal(NumberField());
        NoteSexagesimal(NumberField());
        NumberField();
        return;
    }
    PolarRecord();
    TakeRecord();
    NoteSexagesimal(slots_[kHorizontalAngle]);
    NoteSexagesimal(slots_[kZenithAngle]);
}

void CConvKeywordRecords::CampoHD() {
    if (Rules().appliesUnits) {
        ReducedRecord(kCompleteReducedDecimals, dialect_.impliedDecimals ? kPerMetre : 1);
        NoteSexagesimal(slots_[kHorizontalAngle]);
    } else {
        NoteReduced();
        ReducedRecord(dialect_.reducedDistanceDecimals);
    }
    TakeRecord();
    zenithIsGon_ = Rules().appliesUnits;
}

/// The distances of the record, with their point, lose what is behind it where no decimals are
/// kept.
void CConvKeywordRecords::NoteReduced() {
    std::string_view distances = fields_;
    TakeField(distances, ',');
    if (dialect_.reducedDistanceDecimals == 0 && Contains(distances, "."))
        Note(kReducedDistance);
    if (units_.angle == 'D')
        Note(kReducedAngle);
}

void CConvKeywordRecords::CampoNOTE() {
    if (resection_) {
        resections_.back().fields.append(fields_);
        fields_ = {};
        return;
    }
    BeginPoint({kNote});
    slots_[kNote] = SeparaCampo();
    TakeRecord();
}

/// The unit of the distances, which comes first, is not applied by the classic rules, on purpose:
/// the instruments these were made for write metres whatever it says.
void CConvKeywordRecords::CampoUNITS() {
    const std::string_view lengths = SeparaCampo();
    const std::string_view angles = SeparaCampo();
    units_.length = lengths.empty() ? '\0' : lengths.front();
    units_.angle = angles.empty() ? '\0' : angles.front();
    if (!Rules().appliesUnits)
        recordUnits_ = units_;
    if (IsHeard())
        NoteUnits();
}

void CConvKeywordRecords::NoteUnits() const {
    if (units_.angle != 'D' && units_.angle != 'G')
        keeper_->Note(kOtherAngles);
    if (units_.length != 'F' && units_.length != 'M')
        keeper_->Note(kOtherLengths);
    if (Rules().appliesUnits)
        return;
    if (units_.angle == 'D')
        keeper_->Note(kDegrees);
    if (units_.length == 'F') {
        keeper_->Note(kFeet);
        keeper_->LengthsAre("ft");
    }
}

/// Remarks on an angle of the current line that cannot be read when its point is written.
void CConvKeywordRecords::NoteSexagesimal(std::string_view angle) {
    if (IsHeard() && Rules().appliesUnits && !IsPresent(AngleOf(std::string(angle), units_)))
        Note(kNoMinutes);
}

void CConvKeywordRecords::CampoOFFSET() {
    FlushAll();
    recordUnits_ = units_;
    const double along = UncheckedLengthOf(NumberField());
    const double lateral = UncheckedLengthOf(NumberField());
    const double vertical = UncheckedLengthOf(NumberField());
    if (last_.reading.slopeDistance == 0)
        Note(kOffsetOfNothing);
    const bool isKnown =
        IsPresent(last_.reading.zenithAngle) && IsPresent(last_.reading.horizontalAngle);
    last_.reading = isKnown || !Rules().appliesUnits
                        ? ReadingAtOffset(last_.reading, {along, lateral, vertical})
                        : Reading{};

    std::string name = last_.name;
    if (!dialect_.offsetRenamesOldPoint) {
        name.insert(0, "*");
    } else if (CPun* const old = LastPoint()) {
        old->SetNome("*" + old->GetNome());
        MarkAsOffsetReference(*old);
    }
    const CPun* const before = LastPoint();
    AggiungePun(std::move(name), last_.code, "", last_.targetHeight, last_.reading);
    placeOf_ = LastPoint() != before ? PlaceOf::OffsetPoint : PlaceOf::Nothing;
    pointPending_ = false;
    AnnullaCampi();
}

void CConvKeywordRecords::SalvaRigaS() {
    AggiungeSta(slots_[kName], slots_[kCode], UncheckedLengthOf(slots_[kHeight]),
                DoubleDaString(slots_[kTemperature]), DoubleDaString(slots_[kPressure]));
    if (CSta* const station = Has(place_) ? CurrentStation() : nullptr)
        SetPlace(*station, place_);
    place_ = {};
    stationPending_ = false;
    AnnullaCampi();
    if (resection_)
        SalvaRigaRES_OBS();
}

void CConvKeywordRecords::SalvaRigaP() {
    last_.name = slots_[kName];
    last_.code = slots_[kCode];
    last_.targetHeight = LengthOf(slots_[kHeight]);
    last_.reading = ReadingOfSlots();
    CheckAngles();
    const Reading reading = WithoutZeroDistance(last_.reading);
    if (Has(place_))
        AggiungePun(slots_[kName], slots_[kCode], slots_[kNote], last_.targetHeight, reading,
                    place_);
    else
        AggiungePun(slots_[kName], slots_[kCode], slots_[kNote], last_.targetHeight, reading);
    place_ = {};
    zenithIsGon_ = false;
    pointPending_ = false;
    AnnullaCampi();
}

/// The resection observations, right after their station. They are no points an OFFSET starts from.
void CConvKeywordRecords::SalvaRigaRES_OBS() {
    for (const Resection& resection : resections_) {
        const AtLine at(*this, resection.line);
        if (Rules().appliesUnits)
            recordUnits_ = resection.units;
        std::string_view rest = resection.fields;
        for (std::string& slot : slots_) {
            slot = TakeField(rest, ',');
            rest = TrimBoth(rest);
        }
        CheckAngles();
        AggiungePun(slots_[kName], slots_[kResectionCode], slots_[kNote],
                    LengthOf(slots_[kResectionHeight]), WithoutZeroDistance(ReadingOfSlots()));
    }
    resections_.clear();
    resection_ = false;
    pointPending_ = false;
    AnnullaCampi();
}

Reading CConvKeywordRecords::ReadingOfSlots() const {
    return {.slopeDistance = LengthOf(slots_[kDistance]),
            .zenithAngle = zenithIsGon_ ? DoubleDaString(slots_[kZenithAngle])
                                        : AngleOf(slots_[kZenithAngle], recordUnits_),
            .horizontalAngle = AngleOf(slots_[kHorizontalAngle], recordUnits_)};
}

/// Lengths and angles of points: a text of no more characters than its implied decimals has none.
double CConvKeywordRecords::LengthOf(const std::string& text) const {
    const bool implied = dialect_.impliedDecimals && text.size() > kLengthDecimals;
    return Metres(DoubleDaString(implied ? WithImpliedPoint(text, kLengthDecimals) : text),
                  recordUnits_);
}

double CConvKeywordRecords::AngleOf(const std::string& text, const Units& units) const {
    const bool implied = dialect_.impliedDecimals && text.size() > kAngleDecimals;
    const std::string pointed = implied ? WithImpliedPoint(text, kAngleDecimals) : text;
    if (units.angle == 'D' && Rules().appliesUnits) {
        double gon = 0;
        SexagesimalAtStart(pointed, gon);
        return gon;
    }
    const double angle = DoubleDaString(pointed);
    return units.angle == 'D' && IsPresent(angle) ? GonFromDegrees(angle) : angle;
}

/// Instrument heights and offsets: "155" is 0.155 here, though it is 155 as a target height.
double CConvKeywordRecords::UncheckedLengthOf(std::string_view text) const {
    if (!dialect_.impliedDecimals)
        return Metres(DoubleDaString(text), recordUnits_);
    return Metres(DoubleDaString(WithImpliedPoint(text, kLengthDecimals)), recordUnits_);
}

double CConvKeywordRecords::Metres(double length, const Units& units) const {
    const bool isFeet = Rules().appliesUnits && units.length == 'F' && IsPresent(length);
    return isFeet ? length * kMetresPerFoot : length;
}
