#pragma once

#include "converters/LineRecords.h"

/// Reads FLD files: one value a line behind a two-letter code.
class CONVFILE_API CConvFileFLD : public CConvLineRecords {
public:
    CConvFileFLD(CLibCmp& fieldBook, std::string* fileName);

    /// False where the file cannot be opened.
    bool Esegui();

private:
    bool LeggeUnaRiga();
    void ConvertiRiga();

    static const SlotCode kSlotCodes[];

    std::string_view code_; ///< of the current line
    std::string_view data_; ///< of the current line
};
