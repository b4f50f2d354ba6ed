#pragma once

#include "framework/ConvGen.h"
#include "framework/Export.h"

#include <array>
#include <cstddef>
#include <initializer_list>
#include <string_view>

/// Reads LGU fixed-column files.
class CConvFileLGU : public CConvGen {
public:
    CONVFILE_API CConvFileLGU(CLibCmp& fieldBook, std::string* fileName);
    CONVFILE_API ~CConvFileLGU() override;

    /// Converts the file into one job named after it; false where it cannot be opened.
    CONVFILE_API bool Esegui();

private:
    // Operations in the library's own vocabulary.
    bool LeggeUnaRigaLGU();
    void SeparaCampiLGU();
    void ConversioneRigaS();
    void ConversioneRigaP();

    void ConvertLine();

    void JudgeLine(std::initializer_list<std::string_view> numbers, std::size_t last);

    char type_ = ' '; ///< of the current line
    std::array<std::string_view, 6> slots_;
};
