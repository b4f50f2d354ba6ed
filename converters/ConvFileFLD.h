#pragma once

#include "converters/LineRecords.h"
#include "framework/Export.h"

/// Reads FLD files: one value a line behind a two-letter code.
class CConvFileFLD : public CConvLineRecords {
public:
    CONVFILE_API CConvFileFLD(CLibCmp& fieldBook, std::string* fileName);
    CONVFILE_API ~CConvFileFLD() override;

    /// False where the file cannot be opened.
    CONVFILE_API bool Esegui();

private:
    // Operations in the library's own vocabulary.
    bool LeggeUnaRiga();
    void ConvertiRiga();

    static const SlotCode kSlotCodes[];

    std::string_view code_; ///< of the current line
    std::string_view data_; ///< of the current line
};
