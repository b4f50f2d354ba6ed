#pragma once

#include "converters/ObservationLines.h"

#include <string_view>

/// Reads OVD files: one observation a line, fields separated by commas.
class CONVFILE_API CConvFileOVD : public CConvObservationLines {
public:
    CConvFileOVD(CLibCmp& fieldBook, std::string* fileName);

    /// Converts the file into one job named after it; false where it cannot be opened.
    bool Esegui();

private:
    std::string_view SeparaCampoOVD();
    void ConvertiRigaOVD();
};
