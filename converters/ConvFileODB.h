#pragma once

#include "converters/ObservationLines.h"

#include <string>
#include <string_view>

/// Reads ODB files: one observation a line, fields separated by single blanks.
class CONVFILE_API CConvFileODB : public CConvObservationLines {
public:
    CConvFileODB(CLibCmp& fieldBook, std::string* fileName);

    /// Converts the file into one job named after it; false where it cannot be opened.
    bool Esegui();

private:
    std::string_view SeparaCampoODB();
    void ConvertiRigaODB();

    std::string previousHeight_; ///< as text: 1.5 and 1.50 are two set-ups, on purpose
};
