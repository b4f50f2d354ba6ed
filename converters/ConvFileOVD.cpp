// An OVD file: one observation a line, which also names its station; fields separated by commas,
// the rest of the line the code.
//
//   100,101,123.4567,98.7654,25.417,1.545,1.600,SPIGOLO CASA
//     station, point, horizontal angle, zenith angle, slope distance, instrument height, target
//     height, code
//
// Metres and gon. A station begins where its name changes; a change of the instrument height alone
// begins none.

#include "converters/ConvFileOVD.h"

#include "routines/Text.h"

CConvFileOVD::CConvFileOVD(CLibCmp& fieldBook, std::string* fileName)
    : CConvObservationLines(fieldBook, fileName) {}

CConvFileOVD::~CConvFileOVD() = default;

bool CConvFileOVD::Esegui() {
    if (!OpenFile())
        return false;
    AddJobOfFile();
    return ForEachLine([this] { return LeggeUnaRigaOVD(); }, [this] { ConvertiRigaOVD(); });
}

bool CConvFileOVD::LeggeUnaRigaOVD() {
    return file_->ReadLineWithoutLast(line_);
}

/// The line is trimmed with each field that is cut off it. What follows the last comma is no field:
/// it is left for the code.
std::string_view CConvFileOVD::SeparaCampoOVD() {
    std::string_view field;
    if (!CutAt(line_, ',', field))
        return {};
    line_ = TrimBoth(line_);
    return TrimBoth(field);
}

void CConvFileOVD::ConvertiRigaOVD() {
    if (line_.size() < kShortestLine) {
        Skip();
        return;
    }
    Fields fields;
    fields.station = SeparaCampoOVD();
    fields.point = SeparaCampoOVD();
    fields.horizontalAngle = SeparaCampoOVD();
    fields.zenithAngle = SeparaCampoOVD();
    fields.slopeDistance = SeparaCampoOVD();
    fields.instrumentHeight = SeparaCampoOVD();
    const bool isWhole = !IsHeard() || Contains(line_, ",");
    fields.targetHeight = SeparaCampoOVD();
    fields.code = line_;
    if (IsHeard())
        JudgeLine(fields, isWhole);

    if (fields.station != previousStation_)
        AggiungiStazioneOVD(fields);
    else if (IsHeard())
        JudgeHeight(fields.instrumentHeight);
    AggiungiPuntoOVD(fields);
    previousStation_ = fields.station;
}
