#include "converters/SdrUnits.h"

#include "framework/AccountKeeper.h"
#include "host/NoValue.h"
#include "routines/Angles.h"
#include "routines/Numbers.h"
#include "routines/Text.h"

#include <algorithm>

namespace {

// The unit codes: angles (1 decimal degrees, 2 gon, 3 mils), lengths (1 metres, 2 feet), pressure,
// temperature, coordinates (1 north east, 2 east north), horizontal angles (1 clockwise, 2
// anticlockwise).
constexpr std::size_t kCodes = 6;
constexpr char kDegrees = '1';
constexpr char kMils = '3';
constexpr char kFeet = '2';
constexpr char kAnticlockwise = '2';

constexpr double kMilsOfCircle = 6400;
constexpr double kMetresPerFoot = 0.3048;

/// In the instrument record, counted from 0: "2" where vertical angles are counted from the horizon
/// up.
constexpr std::size_t kVerticalAngleMode = 50;

constexpr Cause kAnglesInDegrees = {
    RemarkKind::Unit, "the file's angles are decimal degrees (00NM): they are not converted"};
constexpr Cause kAnglesInMils = {RemarkKind::Unit,
                                 "the file's angles are mils (00NM): they are not converted"};
constexpr Cause kLengthsInFeet = {RemarkKind::Unit,
                                  "the file's lengths are feet (00NM): they are not converted"};
constexpr Cause kAnglesAnticlockwise = {
    RemarkKind::Unit,
    "the file's horizontal angles are counted anticlockwise (00NM): they are taken as clockwise"};
constexpr Cause kAnglesFromHorizon = {
    RemarkKind::Unit,
    "the file's vertical angles are counted from the horizon up (01): they are taken for zenith "
    "angles"};
constexpr Cause kUnknownUnitCode = {
    RemarkKind::Unit,
    "a unit code that is not known (00NM): gon, metres, north east and clockwise are taken"};

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

bool IsOneOf(char code, std::string_view known) {
    return known.find(code) != std::string_view::npos;
}

} // namespace

bool IsSdrFrame(std::string_view line) {
    return line == "\x02" ||
           (line.starts_with('\x03') && std::ranges::all_of(TrimRight(line.substr(1)), IsDigit));
}

void SdrUnits::ReadHeader(std::string_view record) {
    *this = {};
    const std::string_view text = TrimRight(record);
    const std::string_view codes = Piece(text, text.size() - std::min(text.size(), kCodes));
    if (codes.size() < kCodes || !std::ranges::all_of(codes, IsDigit))
        return;
    angles_ = codes[0];
    lengths_ = codes[1];
    coordinates_ = codes[4];
    direction_ = codes[5];
}

/// A digit behind that character says that it is another: a long name of the instrument pushes the
/// serial number there.
void SdrUnits::ReadInstrument(std::string_view record) {
    const std::string_view mode = Piece(record, kVerticalAngleMode, 2);
    fromHorizon_ = mode.starts_with('2') && (mode.size() == 1 || !IsDigit(mode[1]));
}

Reading SdrUnits::Applied(const Reading& reading) const {
    Reading applied = {.slopeDistance = Metres(reading.slopeDistance),
                       .zenithAngle = Gon(reading.zenithAngle),
                       .horizontalAngle = HorizontalAngle(reading.horizontalAngle)};
    if (fromHorizon_ && IsPresent(applied.zenithAngle))
        applied.zenithAngle = LimiteAng0_400(100 - applied.zenithAngle);
    return applied;
}

double SdrUnits::Gon(double angle) const {
    if (!IsPresent(angle))
        return angle;
    if (angles_ == kDegrees)
        return GonFromDegrees(angle);
    return angles_ == kMils ? angle * 400 / kMilsOfCircle : angle;
}

double SdrUnits::HorizontalAngle(double angle) const {
    const double gon = Gon(angle);
    const bool turns = direction_ == kAnticlockwise && IsPresent(gon);
    return turns ? LimiteAng0_400(400 - gon) : gon;
}

double SdrUnits::Metres(double length) const {
    return lengths_ == kFeet && IsPresent(length) ? length * kMetresPerFoot : length;
}

void SdrUnits::TellHeader(AccountKeeper& keeper, bool isApplied) const {
    const bool known = IsOneOf(angles_, "123") && IsOneOf(lengths_, "12") &&
                       IsOneOf(coordinates_, "12") && IsOneOf(direction_, "12");
    if (!known)
        keeper.Note(kUnknownUnitCode);
    if (isApplied)
        return;
    if (angles_ == kDegrees || angles_ == kMils) {
        keeper.Note(angles_ == kMils ? kAnglesInMils : kAnglesInDegrees);
        keeper.AnglesAre(angles_ == kMils ? "mils" : "degrees");
    }
    if (lengths_ == kFeet) {
        keeper.Note(kLengthsInFeet);
        keeper.LengthsAre("ft");
    }
    if (direction_ == kAnticlockwise)
        keeper.Note(kAnglesAnticlockwise);
}

void SdrUnits::TellInstrument(AccountKeeper& keeper, bool isApplied) const {
    if (fromHorizon_ && !isApplied)
        keeper.Note(kAnglesFromHorizon);
}
