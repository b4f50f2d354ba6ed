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

#include "routines/Text.h"

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
std::string_view CConvFileODB::SeparaCampoODB() {
    std::string_view field;
    CutAt(line_, ' ', field);
    return TrimBoth(field);
}

void CConvFileODB::ConvertiRigaODB() {
    if (line_.size() < kShortestLine) {
        Skip();
        return;
    }
    const auto first = static_cast<unsigned char>(line_.front());
    if (first < 32 || first > 127)
        line_.remove_prefix(1);

    Fields fields;
    fields.station = SeparaCampoODB();
    fields.point = SeparaCampoODB();
    SeparaCampoODB();
    SeparaCampoODB();
    fields.instrumentHeight = SeparaCampoODB();
    fields.targetHeight = SeparaCampoODB();
    fields.zenithAngle = SeparaCampoODB();
    fields.horizontalAngle = SeparaCampoODB();
    const bool isWhole = !IsHeard() || Contains(line_, " ");
    fields.slopeDistance = SeparaCampoODB();
    fields.code = line_;
    if (IsHeard())
        JudgeLine(fields, isWhole);

    if (fields.station != previousStation_ || fields.instrumentHeight != previousHeight_)
        AggiungiStazioneODB(fields);
    AggiungiPuntoODB(fields);
    previousStation_ = fields.station;
    previousHeight_ = fields.instrumentHeight;
}
