#pragma once

#include "framework/ConvGen.h"
#include "framework/Export.h"
#include "routines/TextFile.h"

#include <array>
#include <string_view>

/// Reads LGU fixed-column files.
class CConvFileLGU : public CConvGen {
public:
    CONVFILE_API CConvFileLGU(CLibCmp& fieldBook, std::string* fileName);
    CONVFILE_API ~CConvFileLGU() override;

    /// Converts the file into one job named after it; false where it cannot be opened.
    CONVFILE_API bool Esegui();

private:
    bool OpenFile();
    bool LeggeUnaRigaLGU();
    void SeparaCampiLGU();
    void ConversioneRigaS();
    void ConversioneRigaP();

    std::string_view line_;
    char type_ = ' ';
    std::array<std::string_view, 6> slots_;
    TextFile file_;
};
