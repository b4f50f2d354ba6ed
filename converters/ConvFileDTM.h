#pragma once

#include "framework/ConvGen.h"
#include "framework/Export.h"

#include <array>
#include <string>
#include <string_view>

/// Reads DTM files: blocks of value lines behind keyword lines.
class CConvFileDTM : public CConvGen {
public:
    CONVFILE_API CConvFileDTM(CLibCmp& fieldBook, std::string* fileName);
    CONVFILE_API ~CConvFileDTM() override;

    /// False where the file cannot be opened.
    CONVFILE_API bool Esegui();

private:
    // Operations in the library's own vocabulary.
    bool LeggeUnaRigaDTM();
    void AggiungiLav();
    void AggiungiSta();
    void AggiungiPun();

    struct Group;
    static const Group kGroups[];

    void ConvertLine();
    void ReadGroup(const Group& group);
    void CheckLine(const Group& group, std::size_t value);
    void ClearValues();

    std::string mode_;         ///< of the last job: "A" where points carry angle and slope distance
    std::string_view keyword_; ///< the first three characters of the current line
    std::array<std::string, 6> values_; ///< of the group in hand
};
