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

namespace {

constexpr std::size_t kShortestLine = 2;

} // namespace

CConvFileCAM::CConvFileCAM(CLibCmp& fieldBook, std::string* fileName)
    : CConvGen(fieldBook, fileName) {}

CConvFileCAM::~CConvFileCAM() = default;

bool CConvFileCAM::Esegui() {
    if (!OpenFile())
        return false;
    const bool isCam = HasLayout("CAM");
    AddJobOfFile();
    return ForEachLine([this] { return LeggeUnaRigaCAM(); },
                       [&] { isCam ? ConvertiRigaCAM() : ConvertiRigaTXT(); });
}

bool CConvFileCAM::LeggeUnaRigaCAM() {
    return file_->ReadLineWithoutLast(line_);
}

/// A last field that no comma closes is never read, on purpose: the instrument closes every one.
std::string_view CConvFileCAM::SeparaCampo() {
    std::string_view field;
    CutAt(line_, ',', field);
    return TrimBoth(field);
}

double CConvFileCAM::NextNumber() {
    return DoubleDaString(SeparaCampo());
}

void CConvFileCAM::ConvertiRigaCAM() {
    const bool isM1 = Contains(line_, "M1");
    if (line_.size() < kShortestLine || (!isM1 && !Contains(line_, "M3")))
        return;
    Record record;
    // The station name of an M1 record stands behind a mark of one character, whatever it is.
    record.station = isM1 ? Piece(SeparaCampo(), 1) : SeparaCampo();
    record.point = SeparaCampo();
    const double distance = NextNumber();
    const double horizontalAngle = NextNumber();
    const double vertical = NextNumber();
    record.instrumentHeight = NextNumber();
    record.targetHeight = NextNumber();
    record.code = SeparaCampo();
    if (isM1) {
        record.reading = {distance, vertical, horizontalAngle};
    } else {
        // From the ground points to instrument and prism. Nothing is asked about the values: both
        // were read from the line.
        const double difference = vertical + record.targetHeight - record.instrumentHeight;
        record.reading = RoundedReadingFromReduced(distance, difference, horizontalAngle);
        warningKind_ = kReducedAtGround;
    }
    WriteRecord(record);
}

void CConvFileCAM::ConvertiRigaTXT() {
    if (line_.size() < kShortestLine)
        return;
    Record record;
    record.station = SeparaCampo();
    record.instrumentHeight = NextNumber();
    record.targetHeight = NextNumber();
    record.point = SeparaCampo();
    record.reading.slopeDistance = NextNumber();
    record.reading.horizontalAngle = NextNumber();
    record.reading.zenithAngle = NextNumber();
    record.code = SeparaCampo();
    WriteRecord(record);
}

void CConvFileCAM::WriteRecord(const Record& record) {
    if (record.station != previousStation_)
        ConversioneS(record);
    ConversioneP(record);
    previousStation_ = record.station;
}

void CConvFileCAM::ConversioneS(const Record& record) {
    AggiungeSta(std::string(record.station), "", record.instrumentHeight, kNoValue, kNoValue);
}

void CConvFileCAM::ConversioneP(const Record& record) {
    AggiungePun(std::string(record.point), std::string(record.code), "", record.targetHeight,
                WithoutZeroDistance(record.reading));
}
