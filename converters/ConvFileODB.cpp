// An ODB file: one observation a line, which also names its station; fields separated by single
// blanks, the rest of the line the code.
//
//   100 101 1 0 1.545 1.600 98.7654 123.4567 25.417 SPIGOLO CASA
//     station, point, -, -, instrument height, target height, zenith angle, horizontal angle, slope
//     distance, code
//
// Metres and gon. A station begins where its name or its instrument height changes. Some collectors
// put a control character, or one that is not ASCII, before the line: it is dropped.

#include "converters/ConvFileODB.h"

#include <cstddef>

namespace {

constexpr std::size_t kFields = 9; ///< before the code

} // namespace

CConvFileODB::CConvFileODB(CLibCmp& fieldBook, std::string* fileName)
    : CConvObservationLines(fieldBook, fileName) {}

CConvFileODB::~CConvFileODB() = default;

bool CConvFileODB::Esegui() {
    if (!OpenFile())
        return false;
    AddJobOfFile();
    return ForEachLine([this] { return LeggeUnaRigaODB(); }, [this] { ConvertiRigaODB(); });
}

bool CConvFileODB::LeggeUnaRigaODB() {
    return file_->ReadLineWithoutLast(line_);
}

/// What follows the last blank is no field: it is left for the code.
std::string_view CConvFileODB::SeparaCampoODB(FieldCutter& line) {
    return line.Next();
}

void CConvFileODB::ConvertiRigaODB() {
    if (line_.size() < kShortestLine) {
        Skip();
        return;
    }
    const auto first = static_cast<unsigned char>(line_.front());
    if (first < 32 || first > 127)
        line_.remove_prefix(1);

    FieldCutter cutter(line_, ' ');
    Fields fields;
    fields.station = SeparaCampoODB(cutter);
    fields.point = SeparaCampoODB(cutter);
    SeparaCampoODB(cutter);
    SeparaCampoODB(cutter);
    fields.instrumentHeight = SeparaCampoODB(cutter);
    fields.targetHeight = SeparaCampoODB(cutter);
    fields.zenithAngle = SeparaCampoODB(cutter);
    fields.horizontalAngle = SeparaCampoODB(cutter);
    fields.slopeDistance = SeparaCampoODB(cutter);
    fields.code = cutter.Rest();
    if (IsHeard())
        JudgeLine(fields, cutter.Count() == kFields);

    if (!Same(fields.station, previousStation_) ||
        !Same(fields.instrumentHeight, previousHeight_)) {
        AggiungiStazioneODB(fields);
        previousStation_ = fields.station;
        previousHeight_ = fields.instrumentHeight;
    }
    AggiungiPuntoODB(fields);
}
