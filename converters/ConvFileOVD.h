#pragma once

#include "converters/ObservationLines.h"
#include "framework/Export.h"
#include "routines/Fields.h"

#include <string_view>

/// Reads OVD files: one observation a line, fields separated by commas.
class CConvFileOVD : public CConvObservationLines {
public:
    CONVFILE_API CConvFileOVD(CLibCmp& fieldBook, std::string* fileName);
    CONVFILE_API ~CConvFileOVD() override;

    /// Converts the file into one job named after it; false where it cannot be opened.
    CONVFILE_API bool Esegui();

private:
    // Operations in the library's own vocabulary.
    bool LeggeUnaRigaOVD();
    static std::string_view SeparaCampoOVD(FieldCutter& line);
    void ConvertiRigaOVD();
    void AggiungiStazioneOVD(const Fields& fields) { WriteStation(fields); }
    void AggiungiPuntoOVD(const Fields& fields) { WritePoint(fields); }
};
