#include "converters/ObservationLines.h"

#include "routines/Numbers.h"

CConvObservationLines::CConvObservationLines(CLibCmp& fieldBook, std::string* fileName)
    : CConvGen(fieldBook, fileName) {}

void CConvObservationLines::WriteStation(const Fields& fields) {
    AggiungeSta(std::string(fields.station), "", DoubleDaString(fields.instrumentHeight), kNoValue,
                kNoValue);
}

void CConvObservationLines::WritePoint(const Fields& fields) {
    AggiungePun(std::string(fields.point), std::string(fields.code), "",
                DoubleDaString(fields.targetHeight),
                WithoutZeroDistance({.slopeDistance = DoubleDaString(fields.slopeDistance),
                                     .zenithAngle = DoubleDaString(fields.zenithAngle),
                                     .horizontalAngle = DoubleDaString(fields.horizontalAngle)}));
}
