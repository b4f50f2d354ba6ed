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
// (XYZ, SCALE, TEMP ...) are skipped.

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
constexpr std::size_t kAngleDecimals = 4;

// The order of the fields of a resection entry.
constexpr std::size_t kResectionHeight = 1;
constexpr std::size_t kResectionCode = 2;

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
    {"STN", &CConvKeywordRecords::CampoSTN},
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
    Finish([this] { FlushAll(); });
}

void CConvKeywordRecords::ProcessaRiga() {
    std::string_view keyword;
    if (line_.size() >= kShortestLine && !SkipsHeaderLine() && CutKeyword(keyword))
        AnalizzaRiga(keyword);
}

/// The first line that begins with a letter ends the header, and is itself part of it.
bool CConvKeywordRecords::SkipsHeaderLine() {
    if (!inHeader_)
        return false;
    inHeader_ = !IsLetter(line_.front());
    return true;
}

void CConvKeywordRecords::AnalizzaRiga(std::string_view keyword) {
    const auto* const found = std::ranges::find(kKeywords, keyword, &Keyword::keyword);
    if (found == std::end(kKeywords) || (found->onlyWithPtlOff && !dialect_.hasPtlOff))
        return;
    (this->*found->handle)();
}

/// A text of the job: closes what is pending of stations and points, and the job itself where it
/// has that text already.
void CConvKeywordRecords::JobText(std::size_t slot, std::string_view text) {
    FlushStation();
    FlushPoint();
    if (!slots_[slot].empty())
        SalvaRigaL();
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

void CConvKeywordRecords::CampoATMOS() {}

void CConvKeywordRecords::CampoSTN() {
    StationRecord();
}

void CConvKeywordRecords::CampoBKB() {}

void CConvKeywordRecords::CampoBS() {
    BeginPoint({kName, kHeight});
    slots_[kName] = SeparaCampo();
    slots_[kHeight] = SeparaCampo();
}

/// The extra field goes to the height of the record in hand, not to the entry, on purpose: it is
/// what some instruments write behind the code of a station that is being resected.
void CConvKeywordRecords::CampoRES_OBS() {
    resection_ = true;
    std::string& entry = resections_.emplace_back();
    for (int field = 0; field < 3; ++field)
        entry.append(SeparaCampo()).append(",");
    const std::string_view extra = SeparaCampo();
    if (!extra.empty())
        slots_[kHeight].append(" ").append(extra);
}

void CConvKeywordRecords::CampoFS() {
    SightedPoint();
}

void CConvKeywordRecords::CampoSS() {
    SideShot();
}

void CConvKeywordRecords::CampoCTL() {}

void CConvKeywordRecords::CampoHV() {
    AnglesReading();
}

void CConvKeywordRecords::CampoSD() {
    if (resection_) {
        resections_.back().append(fields_).append(",");
        return;
    }
    PolarRecord();
}

void CConvKeywordRecords::CampoHD() {
    ReducedRecord(dialect_.reducedDistanceDecimals);
}

void CConvKeywordRecords::CampoNOTE() {
    if (resection_) {
        resections_.back().append(fields_);
        return;
    }
    BeginPoint({kNote});
    slots_[kNote] = SeparaCampo();
}

/// The unit of the distances, which comes first, is not applied, on purpose: the instruments of
/// these files write metres whatever it says.
void CConvKeywordRecords::CampoUNITS() {
    SeparaCampo();
    const std::string_view angles = SeparaCampo();
    angleUnit_ = angles.empty() ? '\0' : angles.front();
}

void CConvKeywordRecords::CampoOFFSET() {
    FlushAll();
    const double along = UncheckedLengthOf(SeparaCampo());
    const double lateral = UncheckedLengthOf(SeparaCampo());
    const double vertical = UncheckedLengthOf(SeparaCampo());
    last_.reading = ReadingAtOffset(last_.reading, {along, lateral, vertical});

    std::string name = last_.name;
    if (!dialect_.offsetRenamesOldPoint) {
        name.insert(0, "*");
    } else if (CPun* const old = LastPoint()) {
        old->SetNome("*" + old->GetNome());
        MarkAsOffsetReference(*old);
    }
    AggiungePun(std::move(name), last_.code, "", last_.targetHeight, last_.reading);
    pointPending_ = false;
    AnnullaCampi();
}

void CConvKeywordRecords::SalvaRigaS() {
    AggiungeSta(slots_[kName], slots_[kCode], UncheckedLengthOf(slots_[kHeight]),
                DoubleDaString(slots_[kTemperature]), DoubleDaString(slots_[kPressure]));
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
    AggiungePun(slots_[kName], slots_[kCode], slots_[kNote], last_.targetHeight,
                WithoutZeroDistance(last_.reading));
    pointPending_ = false;
    AnnullaCampi();
}

/// The resection observations, right after their station. They are no points an OFFSET starts from.
void CConvKeywordRecords::SalvaRigaRES_OBS() {
    for (const std::string& entry : resections_) {
        std::string_view rest = entry;
        for (std::string& slot : slots_) {
            slot = TakeField(rest, ',');
            rest = TrimBoth(rest);
        }
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
            .zenithAngle = AngleOf(slots_[kZenithAngle]),
            .horizontalAngle = AngleOf(slots_[kHorizontalAngle])};
}

/// Lengths and angles of points: a text of no more characters than its implied decimals has none.
double CConvKeywordRecords::LengthOf(const std::string& text) const {
    const bool implied = dialect_.impliedDecimals && text.size() > kLengthDecimals;
    return DoubleDaString(implied ? WithImpliedPoint(text, kLengthDecimals) : text);
}

double CConvKeywordRecords::AngleOf(const std::string& text) const {
    const bool implied = dialect_.impliedDecimals && text.size() > kAngleDecimals;
    const double angle = DoubleDaString(implied ? WithImpliedPoint(text, kAngleDecimals) : text);
    return angleUnit_ == 'D' && IsPresent(angle) ? GonFromDegrees(angle) : angle;
}

/// Instrument heights and offsets: "155" is 0.155 here, though it is 155 as a target height.
double CConvKeywordRecords::UncheckedLengthOf(std::string_view text) const {
    if (!dialect_.impliedDecimals)
        return DoubleDaString(text);
    return DoubleDaString(WithImpliedPoint(text, kLengthDecimals));
}
