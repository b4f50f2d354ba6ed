#pragma once

#include "framework/ConvGen.h"
#include "framework/Export.h"

#include <string>
#include <string_view>

/// Reads MM2 downloads: records of fields closed by a control character.
class CConvFileMM2 : public CConvGen {
public:
    CONVFILE_API CConvFileMM2(CLibCmp& fieldBook, std::string* fileName);
    CONVFILE_API ~CConvFileMM2() override;

    /// False where the file cannot be opened. Jobs are added by the file's own job records.
    CONVFILE_API bool Esegui();

private:
    // Operations in the library's own vocabulary.
    bool LeggeUnaRigaMM2();
    std::string_view SeparaCampo();
    void ConversioneRigaL();
    void ConversioneRigaS();
    void ConversioneRigaP();
    void ConversioneRigaR();

    void ConvertLine();
    double NextNumber();
    double NextAngle();
    void CheckFields();

    char type_ = '\0';      ///< of the current record
    bool hasField_ = false; ///< the line of the current record has a closed field
};
