// A Phenix file: one record a line, a keyword, a blank, values separated by commas.
//
//   STA 100,1545,CHIODO             station: name, instrument height, code
//   ENZ 1000.000,5000.000,100.000   its coordinates: east, north, height
//   FS 101,1.600,SPIGOLO            foresight: name, target height, code
//   HVD 324000,322450,25.417        horizontal and zenith angle in seconds of arc, slope distance
//   SS 102,1.600,PALO,LUCE          side shot: the fourth value goes on with the code
//   HV 162000,324000                angles only
//   HD 12000,30.000,-0.250          horizontal angle, horizontal distance, height difference
//   NEZ 5012.500,1003.250,101.870   coordinates of the sighted point: north, east, height
//
// Angles come out in gon, lengths are metres; an instrument height of three characters or more
// without a point is millimetres. A sighted point that is given by coordinates becomes an
// observation from its station. A record is written when the next one shows that it is complete.

#include "converters/ConvFilePhenix.h"

#include "resources/Texts.h"
#include "routines/Angles.h"
#include "routines/Numbers.h"
#include "routines/Reduction.h"
#include "routines/Text.h"
#include "routines/Trigonometry.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr std::size_t kMillimetres = 3;

constexpr Cause kStationCoordinates = {
    RemarkKind::NotRead,
    "coordinates of a station serve points that are given by coordinates: they are not in the "
    "book"};
constexpr Cause kCoordinatesOfNothing = {
    RemarkKind::NotRead, "coordinates that follow neither a station nor a point are not read"};
constexpr Cause kPointCoordinatesDropped = {
    RemarkKind::NotRead,
    "coordinates of a point whose station has no coordinates or no height are not read"};
constexpr Cause kReadingReplaced = {
    RemarkKind::NotRead,
    "a reading of a point that has coordinates, too, is not read: it is computed from these"};
constexpr Cause kNoEastOrNorth = {RemarkKind::Incomplete,
                                  "coordinates without east or north are absent"};
constexpr Cause kNoHeight = {RemarkKind::Incomplete,
                             "coordinates without a height: it counts as 0"};
constexpr Cause kReducedWrong = {
    RemarkKind::Unit,
    "of an HD record the distance loses its decimals, and the computed zenith angle, though "
    "gon, is converted from seconds of arc: it is wrong"};

double GonFromArcSeconds(double seconds) {
    return IsPresent(seconds) ? seconds * kGonPerArcSecond : seconds;
}

} // namespace

struct CConvFilePhenix::Keyword {
    std::string_view keyword;
    void (CConvFilePhenix::*handle)();
};

constexpr CConvFilePhenix::Keyword CConvFilePhenix::kKeywords[] = {
    {"STA", &CConvFilePhenix::CampoSTA}, {"NEZ", &CConvFilePhenix::CampoNEZ},
    {"ENZ", &CConvFilePhenix::CampoENZ}, {"FS", &CConvFilePhenix::CampoFS},
    {"SS", &CConvFilePhenix::CampoSS},   {"HV", &CConvFilePhenix::CampoHV},
    {"HVD", &CConvFilePhenix::CampoHVD}, {"SD", &CConvFilePhenix::CampoSx},
    {"SC", &CConvFilePhenix::CampoSx},   {"SA", &CConvFilePhenix::CampoSx},
    {"HD", &CConvFilePhenix::CampoHD},
};

CConvFilePhenix::CConvFilePhenix(CLibCmp& fieldBook, std::string* fileName)
    : CConvPendingRecords(fieldBook, fileName, static_cast<Save>(&CConvFilePhenix::SalvaRigaS),
                          static_cast<Save>(&CConvFilePhenix::SalvaRigaP)) {}

CConvFilePhenix::~CConvFilePhenix() {
    Finish([this] { FlushAll(); });
}

void CConvFilePhenix::ProcessaRiga() {
    std::string_view keyword;
    if (CutKeyword(keyword))
        AnalizzaRiga(keyword);
    else
        Skip();
}

void CConvFilePhenix::AnalizzaRiga(std::string_view keyword) {
    const auto* const found = std::ranges::find(kKeywords, keyword, &Keyword::keyword);
    if (found == std::end(kKeywords)) {
        Skip();
        return;
    }
    (this->*found->handle)();
    NoteRest();
}

void CConvFilePhenix::CampoSTA() {
    StationRecord();
}

void CConvFilePhenix::CampoFS() {
    SightedPoint();
}

void CConvFilePhenix::CampoSS() {
    SideShot();
}

void CConvFilePhenix::CampoSx() {
    CampoSS();
}

void CConvFilePhenix::CampoHV() {
    AnglesReading();
}

void CConvFilePhenix::CampoHVD() {
    PolarRecord();
}

/// The distance is kept without decimals, and the angle, though in gon, is scaled like any other
/// when the point is written, both on purpose: hosts mark these points by the warning and replace
/// them, and a file that is converted again must give the same ones.
void CConvFilePhenix::CampoHD() {
    Note(kReducedWrong);
    ReducedRecord(0);
}

void CConvFilePhenix::CampoNEZ() {
    const std::string north(NumberField());
    const std::string east(NumberField());
    CampoCoordinate(east, north, std::string(NumberField()));
}

void CConvFilePhenix::CampoENZ() {
    const std::string east(NumberField());
    const std::string north(NumberField());
    CampoCoordinate(east, north, std::string(NumberField()));
}

/// Coordinates belong to the record that is pending; where none or both are, to nothing.
void CConvFilePhenix::CampoCoordinate(const std::string& east, const std::string& north,
                                      const std::string& height) {
    if (stationPending_ == pointPending_) {
        Note(kCoordinatesOfNothing);
        return;
    }
    if (east.empty() || north.empty())
        Note(kNoEastOrNorth);
    else if (height.empty())
        Note(kNoHeight);
    if (stationPending_)
        StationCoordinates(east, north, height);
    else
        PointCoordinates(east, north, height);
}

void CConvFilePhenix::StationCoordinates(const std::string& east, const std::string& north,
                                         const std::string& height) {
    Note(kStationCoordinates);
    const bool given = !east.empty() && !north.empty();
    x_ = given ? DoubleDaString(east) : kNoValue;
    y_ = given ? DoubleDaString(north) : kNoValue;
    z_ = given ? DoubleDaString(height) : kNoValue;
}

/// Turns the coordinates of the sighted point into an observation and writes it. Without what that
/// needs they are dropped and the point stays pending; the user is warned all the same. The height
/// is not asked for, on purpose: plans without heights leave it empty, which counts as 0.
void CConvFilePhenix::PointCoordinates(const std::string& east, const std::string& north,
                                       const std::string& height) {
    warningKind_ = kFromCoordinates;
    const bool stationKnown =
        IsPresent(instrumentHeight_) && IsPresent(x_) && IsPresent(y_) && IsPresent(z_);
    if (!stationKnown)
        Note(kPointCoordinatesDropped);
    if (east.empty() || north.empty() || !stationKnown)
        return;
    if (HasAny({kHorizontalAngle, kZenithAngle, kDistance}))
        Note(kReadingReplaced);
    const double targetHeight = DoubleDaString(slots_[kHeight]);
    const double dE = DoubleDaString(east) - x_;
    const double dN = DoubleDaString(north) - y_;
    const double dZ = DoubleDaString(height) - z_ - instrumentHeight_ + targetHeight;
    const double distance = std::sqrt(dN * dN + dE * dE + dZ * dZ);
    const double zenith = distance == 0 ? 100 : ArcCos(dZ / distance) * kGonPerRadian;
    const std::string note = "N = " + north + "\r\nE = " + east + "\r\nQ = " + height;

    const AtLine at(*this, recordLine_);
    const CPun* const before = LastPoint();
    AggiungePun(slots_[kName], slots_[kCode], note, targetHeight,
                {distance, zenith, AngoloDaAsseRifer(dE, dN)});
    CPun* const added = LastPoint();
    if (added != before) // the field book took it
        added->SetTerScri(LoadText(TextId::ConvertedFromCoordinates));
    pointPending_ = false;
    AnnullaCampi();
}

/// No keyword fills temperature and pressure, which are read from empty texts as 0.
void CConvFilePhenix::SalvaRigaS() {
    instrumentHeight_ = DoubleDaString(WithImpliedPoint(slots_[kHeight], kMillimetres));
    AggiungeSta(slots_[kName], slots_[kCode], instrumentHeight_,
                DoubleDaString(slots_[kTemperature]), DoubleDaString(slots_[kPressure]));
    stationPending_ = false;
    AnnullaCampi();
}

void CConvFilePhenix::SalvaRigaP() {
    CheckAngles();
    AggiungePun(
        slots_[kName], slots_[kCode], slots_[kNote], DoubleDaString(slots_[kHeight]),
        WithoutZeroDistance(
            {.slopeDistance = DoubleDaString(slots_[kDistance]),
             .zenithAngle = GonFromArcSeconds(DoubleDaString(slots_[kZenithAngle])),
             .horizontalAngle = GonFromArcSeconds(DoubleDaString(slots_[kHorizontalAngle]))}));
    pointPending_ = false;
    AnnullaCampi();
}
