// Comma-separated files of one observation a line, each naming its station. The extension chooses
// between two layouts for the whole file.
//
// Files named .cam hold M1 and M3 records (the mark may stand anywhere in the line):
//
//   *100,101,25.417,123.4567,98.7654,1.545,1.600,SPIGOLO,M1
//     station behind a mark of one character, point, slope distance, horizontal angle, zenith
//     angle, instrument height, target height, code
//   100,102,12.300,130.0000,-0.450,1.545,1.600,PALO,M3
//     station, point, horizontal distance, horizontal angle, height difference between the ground
//     points, instrument height, target height, code
//
// All others:
//
//   100,1.545,1.600,101,25.417,123.4567,98.7654,SPIGOLO,
//     station, instrument height, target height, point, slope distance, horizontal angle, zenith
//     angle, code
//
// Lengths are metres, angles gon. A field is closed by a comma; what follows the last one is not
// read.

#include "converters/ConvFileCAM.h"

#include "routines/Numbers.h"
#include "routines/Reduction.h"
#include "routines/Text.h"

CConvFileCAM::CConvFileCAM(CLibCmp& fieldBook, std::string* fileName)
    : CConvGen(fieldBook, fileName) {}

CConvFileCAM::~CConvFileCAM() = default;

bool CConvFileCAM::Esegui() {
    if (!OpenFile())
        return false;
    const std::size_t dot = fileName_->rfind('.');
    const bool isCam =
        dot != std::string::npos && EqualIgnoringCase(fileName_->substr(dot), ".cam");
    AggiungeJobDelFile();
    while (LeggeUnaRigaCAM()) {
        if (line_.size() < 2)
            continue;
        if (isCam)
            ConvertiRigaCAM();
        else
            ConvertiRigaTXT();
    }
    file_.Close();
    return true;
}

bool CConvFileCAM::OpenFile() {
    return file_.Open(*fileName_);
}

bool CConvFileCAM::LeggeUnaRigaCAM() {
    return file_.ReadLineWithoutLast(line_);
}

/// A last field that no comma closes is never read, on purpose: the instrument closes every one.
std::string_view CConvFileCAM::SeparaCampo() {
    std::string_view field;
    CutAt(line_, ',', field);
    return TrimBoth(field);
}

double CConvFileCAM::SeparaNumero() {
    return DoubleDaString(SeparaCampo());
}

void CConvFileCAM::ConvertiRigaCAM() {
    const bool isM1 = Contains(line_, "M1");
    if (!isM1 && !Contains(line_, "M3"))
        return;
    // The station name of an M1 record stands behind a mark of one character, whatever it is.
    stationName_ = isM1 ? Piece(SeparaCampo(), 1) : SeparaCampo();
    pointName_ = SeparaCampo();
    const double distance = SeparaNumero();
    horizontalAngle_ = SeparaNumero();
    const double vertical = SeparaNumero();
    instrumentHeight_ = SeparaNumero();
    targetHeight_ = SeparaNumero();
    code_ = SeparaCampo();
    if (isM1) {
        slopeDistance_ = distance;
        verticalAngle_ = vertical;
    } else {
        ReduceAtGround(distance, vertical);
    }
    WriteRecord();
}

/// Brings the height difference from the ground points to instrument and prism, then reduces.
/// Nothing is asked about the values: both were read from the line.
void CConvFileCAM::ReduceAtGround(double reducedDistance, double groundDifference) {
    const double difference = groundDifference + targetHeight_ - instrumentHeight_;
    const PolarReading polar = RoundedPolarFromReduced(reducedDistance, difference);
    slopeDistance_ = polar.slopeDistance;
    verticalAngle_ = polar.zenithAngle;
    warningKind_ = kReducedAtGround;
}

void CConvFileCAM::ConvertiRigaTXT() {
    stationName_ = SeparaCampo();
    instrumentHeight_ = SeparaNumero();
    targetHeight_ = SeparaNumero();
    pointName_ = SeparaCampo();
    slopeDistance_ = SeparaNumero();
    horizontalAngle_ = SeparaNumero();
    verticalAngle_ = SeparaNumero();
    code_ = SeparaCampo();
    WriteRecord();
}

void CConvFileCAM::WriteRecord() {
    if (stationName_ != previousStation_)
        ConversioneS();
    ConversioneP();
    previousStation_ = stationName_;
}

void CConvFileCAM::ConversioneS() {
    AggiungeSta(stationName_, "", instrumentHeight_, kNoValue, kNoValue);
}

void CConvFileCAM::ConversioneP() {
    AggiungePun(pointName_, code_, "", targetHeight_, DistanceOrNoValue(slopeDistance_),
                verticalAngle_, horizontalAngle_);
}
