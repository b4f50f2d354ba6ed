// An MM2 download: one record a line, its type the first character; from the fourth character on
// the fields, each closed by the control character GS (1D hex, shown as | here).
//
//   L01VIA ROMA|ROSSI|TS-3||15/03/2007|
//     job: name, operator, instrument, -, date
//   S02100|CHIODO|1.545|18|1013|
//     station: name, code, instrument height, temperature, pressure
//   P03101|SPIGOLO|1.600|123.4567|98.7654|25.417|
//     point: name, code, target height, horizontal angle, zenith angle, slope distance
//   R04102|PALO|1.600|130.0000|-0.450|12.300|
//     point: the same with height difference and horizontal distance
//
// Metres and gon. Other lines are skipped. What a reduced record becomes is not rounded.

#include "converters/ConvFileMM2.h"

#include "routines/Numbers.h"
#include "routines/Reduction.h"
#include "routines/Text.h"

namespace {

constexpr char kGroupSeparator = '\x1D';
constexpr std::size_t kFields = 3; ///< the fields begin behind the record's first three characters

constexpr Cause kNoField = {
    RemarkKind::Unknown,
    "a line without any closed field that begins like a record is none, but becomes an empty "
    "job, station or point all the same"};
constexpr Cause kNotClosed = {
    RemarkKind::Incomplete, "text behind the last GS of a record closes no field: it is not read"};
constexpr Cause kFourthOfJob = {RemarkKind::NotRead,
                                "the fourth field of job records (L) is not read"};

} // namespace

CConvFileMM2::CConvFileMM2(CLibCmp& fieldBook, std::string* fileName)
    : CConvGen(fieldBook, fileName) {}

CConvFileMM2::~CConvFileMM2() = default;

bool CConvFileMM2::Esegui() {
    return OpenFile() &&
           ForEachLine([this] { return LeggeUnaRigaMM2(); }, [this] { ConvertLine(); });
}

/// The line end stays: it closes no field, so nothing reads it.
bool CConvFileMM2::LeggeUnaRigaMM2() {
    if (!file_->ReadLine(line_))
        return false;
    type_ = line_.empty() ? '\0' : line_.front();
    line_ = Piece(line_, kFields);
    hasField_ = false;
    return true;
}

void CConvFileMM2::ConvertLine() {
    switch (type_) {
    case 'L':
        ConversioneRigaL();
        break;
    case 'S':
        ConversioneRigaS();
        break;
    case 'P':
        ConversioneRigaP();
        break;
    case 'R':
        ConversioneRigaR();
        break;
    default:
        Skip();
        return;
    }
    if (IsHeard())
        CheckFields();
}

/// What is left of a line whose record has taken its fields.
void CConvFileMM2::CheckFields() {
    if (!hasField_) {
        Skip(kNoField);
        return;
    }
    if (line_.size() == 1 && line_.front() == '\n')
        return; // nearly always
    const std::size_t end = line_.rfind(kGroupSeparator);
    const std::string_view open = end == std::string_view::npos ? line_ : line_.substr(end + 1);
    if (end != std::string_view::npos)
        Note(kMoreFields);
    if (open.find_first_not_of(" \t\r\n") != std::string_view::npos)
        Note(kNotClosed);
}

/// A field that no separator closes is empty, on purpose: the instrument closes every one.
std::string_view CConvFileMM2::SeparaCampo() {
    std::string_view field;
    if (CutAt(line_, kGroupSeparator, field))
        hasField_ = true;
    else if (hasField_)
        Note(kFieldsMissing);
    return TrimBoth(field);
}

double CConvFileMM2::NextNumber() {
    return ReadNumber(SeparaCampo());
}

double CConvFileMM2::NextAngle() {
    const std::string_view field = SeparaCampo();
    if (field.empty() && hasField_)
        Note(kAngleMissing);
    return ReadNumber(field);
}

void CConvFileMM2::ConversioneRigaL() {
    const std::string name(SeparaCampo());
    const std::string operatorName(SeparaCampo());
    const std::string instrument(SeparaCampo());
    if (!SeparaCampo().empty())
        Note(kFourthOfJob);
    AggiungeJob(name, operatorName, instrument, std::string(SeparaCampo()));
}

void CConvFileMM2::ConversioneRigaS() {
    const std::string name(SeparaCampo());
    const std::string code(SeparaCampo());
    const double instrumentHeight = NextNumber();
    const double temperature = NextNumber();
    const double pressure = NextNumber();
    AggiungeSta(name, code, instrumentHeight, temperature, pressure);
}

void CConvFileMM2::ConversioneRigaP() {
    const std::string name(SeparaCampo());
    const std::string code(SeparaCampo());
    const double targetHeight = NextNumber();
    const double horizontalAngle = NextAngle();
    const double zenithAngle = NextAngle();
    const double slopeDistance = NextNumber();
    AggiungePun(name, code, "", targetHeight,
                WithoutZeroDistance({slopeDistance, zenithAngle, horizontalAngle}));
}

/// What it becomes is not rounded, and a computed distance of 0 stays 0, on purpose: both were
/// measured, and the horizontal distance can be had back from them exactly.
void CConvFileMM2::ConversioneRigaR() {
    const std::string name(SeparaCampo());
    const std::string code(SeparaCampo());
    const double targetHeight = NextNumber();
    const double horizontalAngle = NextAngle();
    const double heightDifference = NextNumber();
    const double horizontalDistance = NextNumber();
    AggiungePun(name, code, "", targetHeight,
                ReadingFromReduced(horizontalDistance, heightDifference, horizontalAngle));
    warningKind_ = kReduced;
}
