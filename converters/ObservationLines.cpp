#include "converters/ObservationLines.h"

#include "routines/Numbers.h"

namespace {

constexpr Cause kTailIsCode = {
    RemarkKind::Incomplete, "a line with fewer fields than it needs: those missing are empty or 0, "
                            "and the text behind its last separator is the code"};

} // namespace

CConvObservationLines::CConvObservationLines(CLibCmp& fieldBook, std::string* fileName)
    : CConvGen(fieldBook, fileName) {}

void CConvObservationLines::WriteStation(const Fields& fields) {
    AggiungeSta(std::string(fields.station), {}, ReadNumber(fields.instrumentHeight), kNoValue,
                kNoValue);
}

void CConvObservationLines::WritePoint(const Fields& fields) {
    AggiungePun(std::string(fields.point), std::string(fields.code), {},
                ReadNumber(fields.targetHeight),
                WithoutZeroDistance({.slopeDistance = ReadNumber(fields.slopeDistance),
                                     .zenithAngle = ReadNumber(fields.zenithAngle),
                                     .horizontalAngle = ReadNumber(fields.horizontalAngle)}));
}

void CConvObservationLines::JudgeLine(const Fields& fields, bool isWhole) {
    JudgeFields({fields.slopeDistance, fields.zenithAngle, fields.horizontalAngle,
                 fields.instrumentHeight, fields.targetHeight},
                isWhole, kTailIsCode);
}
