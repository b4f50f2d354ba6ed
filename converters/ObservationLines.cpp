#include "converters/ObservationLines.h"

#include "routines/Numbers.h"

CConvObservationLines::CConvObservationLines(CLibCmp& fieldBook, std::string* fileName)
    : CConvGen(fieldBook, fileName) {}

bool CConvObservationLines::OpenFile() {
    if (!file_.Open(*fileName_))
        return false;
    AggiungeJobDelFile();
    return true;
}

bool CConvObservationLines::LeggeUnaRiga() {
    return file_.ReadLineWithoutLast(line_);
}

void CConvObservationLines::AggiungiStazione(const Fields& fields) {
    AggiungeSta(std::string(fields.station), "", DoubleDaString(fields.instrumentHeight), kNoValue,
                kNoValue);
}

void CConvObservationLines::AggiungiPunto(const Fields& fields) {
    AggiungePun(std::string(fields.point), std::string(fields.code), "",
                DoubleDaString(fields.targetHeight),
                DistanceOrNoValue(DoubleDaString(fields.slopeDistance)),
                DoubleDaString(fields.verticalAngle), DoubleDaString(fields.horizontalAngle));
}
