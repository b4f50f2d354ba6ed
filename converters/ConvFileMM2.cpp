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
// Metres and gon. Other records are skipped. What a reduced record becomes is not rounded.

#include "converters/ConvFileMM2.h"

#include "routines/Numbers.h"
#include "routines/Reduction.h"
#include "routines/Text.h"

namespace {

constexpr char kGroupSeparator = '\x1D';
constexpr std::size_t kFields = 3; ///< the fields begin behind the record's first three characters

} // namespace

CConvFileMM2::CConvFileMM2(CLibCmp& fieldBook, std::string* fileName)
    : CConvGen(fieldBook, fileName) {}

CConvFileMM2::~CConvFileMM2() = default;

bool CConvFileMM2::Esegui() {
    if (!OpenFile())
        return false;
    while (LeggeUnaRigaMM2()) {
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
            break;
        }
    }
    file_.Close();
    return true;
}

bool CConvFileMM2::OpenFile() {
    return file_.Open(*fileName_);
}

/// The line end stays: it closes no field, so nothing reads it.
bool CConvFileMM2::LeggeUnaRigaMM2() {
    std::string_view line;
    if (!file_.ReadLine(line))
        return false;
    type_ = line.empty() ? '\0' : line.front();
    rest_ = Piece(line, kFields);
    return true;
}

/// A field that no separator closes is empty, on purpose: the instrument closes every one.
std::string_view CConvFileMM2::SeparaCampo() {
    std::string_view field;
    CutAt(rest_, kGroupSeparator, field);
    return TrimBoth(field);
}

double CConvFileMM2::SeparaNumero() {
    return DoubleDaString(SeparaCampo());
}

void CConvFileMM2::ConversioneRigaL() {
    const std::string name(SeparaCampo());
    const std::string operatorName(SeparaCampo());
    const std::string instrument(SeparaCampo());
    SeparaCampo();
    AggiungeJob(name, operatorName, instrument, std::string(SeparaCampo()));
}

void CConvFileMM2::ConversioneRigaS() {
    const std::string name(SeparaCampo());
    const std::string code(SeparaCampo());
    const double instrumentHeight = SeparaNumero();
    const double temperature = SeparaNumero();
    const double pressure = SeparaNumero();
    AggiungeSta(name, code, instrumentHeight, temperature, pressure);
}

void CConvFileMM2::ConversioneRigaP() {
    const std::string name(SeparaCampo());
    const std::string code(SeparaCampo());
    const double targetHeight = SeparaNumero();
    const double horizontalAngle = SeparaNumero();
    const double verticalAngle = SeparaNumero();
    const double slopeDistance = DistanceOrNoValue(SeparaNumero());
    AggiungePun(name, code, "", targetHeight, slopeDistance, verticalAngle, horizontalAngle);
}

/// What it becomes is not rounded, and a computed distance of 0 stays 0, on purpose.
void CConvFileMM2::ConversioneRigaR() {
    const std::string name(SeparaCampo());
    const std::string code(SeparaCampo());
    const double targetHeight = SeparaNumero();
    const double horizontalAngle = SeparaNumero();
    const double heightDifference = SeparaNumero();
    const double horizontalDistance = SeparaNumero();
    const PolarReading polar = PolarFromReduced(horizontalDistance, heightDifference);
    AggiungePun(name, code, "", targetHeight, polar.slopeDistance, polar.zenithAngle,
                horizontalAngle);
    warningKind_ = kReduced;
}
