#pragma once

#include "converters/ObservationLines.h"
#include "framework/Export.h"
#include "routines/Fields.h"

#include <string>
#include <string_view>

/// Reads ODB files: one observation a line, fields separated by single blanks.
class CConvFileODB : public CConvObservationLines {
public:
    CONVFILE_API CConvFileODB(CLibCmp& fieldBook, std::string* fileName);
    CONVFILE_API ~CConvFileODB() override;

    /// Converts the file into one job named after it; false where it cannot be opened.
    CONVFILE_API bool Esegui();

private:
    // Operations in the library's own vocabulary.
    bool LeggeUnaRigaODB();
    static std::string_view SeparaCampoODB(FieldCutter& line);
    void ConvertiRigaODB();
    void AggiungiStazioneODB(const Fields& fields) { WriteStation(fields); }
    void AggiungiPuntoODB(const Fields& fields) { WritePoint(fields); }

    /// As text, on purpose: who types 1.50 after 1.5 has set up again and measured anew.
    std::string previousHeight_;
};
