#pragma once

#include "framework/ConvGen.h"
#include "framework/Export.h"
#include "host/NoValue.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

/// Reads comma-separated raw observation files.
class CConvFileRAW : public CConvGen {
public:
    CONVFILE_API CConvFileRAW(CLibCmp& fieldBook, std::string* fileName);
    CONVFILE_API ~CConvFileRAW() override;

    /// False where the file cannot be opened. Adds no job: stations go into the last one.
    CONVFILE_API bool Esegui();

private:
    // Operations in the library's own vocabulary.
    bool LeggeUnaRigaRAW();
    std::string_view SeparaCampo();
    void AggiungiSta();
    void AggiungiPun();
    void AggiungiPunF1();

    void ConvertLine();
    void CutFields();
    void WritePoint(double horizontalAngle);
    void ConvertOther();
    void ConvertComment();
    void CheckObservation();

    std::string_view recordType_; ///< of the current line
    std::array<std::string_view, 7> fields_;
    std::size_t fieldCount_ = 0;      ///< of them that the line has
    double backDirection_ = kNoValue; ///< of the last station record
};
