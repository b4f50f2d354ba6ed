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

#include <cstddef>

namespace {

constexpr std::size_t kFields = 7; ///< before the code

} // namespace

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

/// What follows the last comma is no field: it is left for the code.
std::string_view CConvFileOVD::SeparaCampoOVD(FieldCutter& line) {
    return line.Next();
}

void CConvFileOVD::ConvertiRigaOVD() {
    if (line_.size() < kShortestLine) {
        Skip();
        return;
    }
    FieldCutter cutter(line_, ',');
    Fields fields;
    fields.station = SeparaCampoOVD(cutter);
    fields.point = SeparaCampoOVD(cutter);
    fields.horizontalAngle = SeparaCampoOVD(cutter);
    fields.zenithAngle = SeparaCampoOVD(cutter);
    fields.slopeDistance = SeparaCampoOVD(cutter);
    fields.instrumentHeight = SeparaCampoOVD(cutter);
    fields.targetHeight = SeparaCampoOVD(cutter);
    // The line is trimmed with each field that is cut off it.
    fields.code = cutter.Count() > 0 ? TrimBoth(cutter.Rest()) : cutter.Rest();
    if (IsHeard())
        JudgeLine(fields, cutter.Count() == kFields);

    if (!Same(fields.station, previousStation_)) {
        AggiungiStazioneOVD(fields);
        previousStation_ = fields.station;
    } else if (IsHeard()) {
        JudgeHeight(fields.instrumentHeight);
    }
    AggiungiPuntoOVD(fields);
}
