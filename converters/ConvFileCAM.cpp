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

#include "routines/Fields.h"
#include "routines/Numbers.h"
#include "routines/Reduction.h"
#include "routines/Text.h"

namespace {

constexpr std::size_t kShortestLine = 2;

// What is remarked on.
constexpr Cause kFieldsNotClosed = {
    RemarkKind::Incomplete,
    "a line with fewer than eight fields that a comma closes: the others are "
    "empty or 0"};
constexpr Cause kBehindFields = {RemarkKind::NotRead,
                                 "the text behind the eighth field is not read"};

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
std::string_view CConvFileCAM::SeparaCampo(FieldCutter& line) {
    return line.Next();
}

/// The fields of the current line, and remarks on them; those numbered are to be numbers.
CConvFileCAM::Fields CConvFileCAM::SeparaCampi(const std::array<std::size_t, 5>& numbers) {
    FieldCutter cutter(line_, ',');
    const Fields fields = {SeparaCampo(cutter), SeparaCampo(cutter), SeparaCampo(cutter),
                           SeparaCampo(cutter), SeparaCampo(cutter), SeparaCampo(cutter),
                           SeparaCampo(cutter), SeparaCampo(cutter)}; // one after the other
    if (!IsHeard())
        return fields;
    const bool isWhole = cutter.Count() == fields.size();
    if (!isWhole || !IsPlainNumber(fields[numbers[0]])) // seldom
        JudgeFields({fields[numbers[0]], fields[numbers[1]], fields[numbers[2]], fields[numbers[3]],
                     fields[numbers[4]]},
                    isWhole, kFieldsNotClosed);
    const std::string_view rest = TrimBoth(cutter.Rest());
    if (isWhole && !rest.empty() && !Equals(rest, "M1") && !Equals(rest, "M3"))
        Note(kBehindFields);
    return fields;
}

void CConvFileCAM::ConvertiRigaCAM() {
    const bool isM1 = HoldsPair(line_, 'M', '1');
    if (line_.size() < kShortestLine || (!isM1 && !HoldsPair(line_, 'M', '3'))) {
        Skip();
        return;
    }
    const Fields fields = SeparaCampi({2, 3, 4, 5, 6});
    Record record;
    // The station name of an M1 record stands behind a mark of one character, whatever it is.
    record.station = isM1 ? Piece(fields[0], 1) : fields[0];
    record.point = fields[1];
    const double distance = ReadNumber(fields[2]);
    const double horizontalAngle = ReadNumber(fields[3]);
    const double vertical = ReadNumber(fields[4]);
    record.instrumentHeight = ReadNumber(fields[5]);
    record.targetHeight = ReadNumber(fields[6]);
    record.code = fields[7];
    if (isM1) {
        record.reading = {distance, vertical, horizontalAngle};
    } else {
        // From the ground points to instrument and prism. Nothing is asked about the values: both
        // were read from the line.
        const double difference = vertical + record.targetHeight - record.instrumentHeight;
        record.reading = RoundedReadingFromReduced(distance, difference, horizontalAngle);
        warningKind_ = kReducedAtGround;
    }
    WriteRecord(record, fields[5]);
}

void CConvFileCAM::ConvertiRigaTXT() {
    if (line_.size() < kShortestLine) {
        Skip();
        return;
    }
    const Fields fields = SeparaCampi({1, 2, 4, 5, 6});
    Record record;
    record.station = fields[0];
    record.instrumentHeight = ReadNumber(fields[1]);
    record.targetHeight = ReadNumber(fields[2]);
    record.point = fields[3];
    record.reading.slopeDistance = ReadNumber(fields[4]);
    record.reading.horizontalAngle = ReadNumber(fields[5]);
    record.reading.zenithAngle = ReadNumber(fields[6]);
    record.code = fields[7];
    WriteRecord(record, fields[1]);
}

void CConvFileCAM::WriteRecord(const Record& record, std::string_view instrumentHeight) {
    if (!Same(record.station, previousStation_)) {
        ConversioneS(record);
        previousStation_ = record.station;
    } else if (IsHeard()) {
        JudgeHeight(instrumentHeight);
    }
    ConversioneP(record);
}

void CConvFileCAM::ConversioneS(const Record& record) {
    AggiungeSta(std::string(record.station), {}, record.instrumentHeight, kNoValue, kNoValue);
}

void CConvFileCAM::ConversioneP(const Record& record) {
    AggiungePun(std::string(record.point), std::string(record.code), {}, record.targetHeight,
                WithoutZeroDistance(record.reading));
}
