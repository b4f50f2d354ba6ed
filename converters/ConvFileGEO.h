#pragma once

#include "converters/LineRecords.h"
#include "framework/Export.h"

#include <cstdint>
#include <string>
#include <string_view>

/// Reads GEO files: one value a line behind a short code.
class CConvFileGEO : public CConvLineRecords {
public:
    CONVFILE_API CConvFileGEO(CLibCmp& fieldBook, std::string* fileName);
    CONVFILE_API ~CConvFileGEO() override;

    /// False where the file cannot be opened.
    CONVFILE_API bool Esegui();

private:
    // Operations in the library's own vocabulary.
    bool LeggeUnaRiga();
    void ConvertiRiga();

    void Information();
    void WriteJob();
    void OpenRecord(RecordType type, std::string_view name);

    static const SlotCode kSlotCodes[];

    std::string_view data_; ///< of the current line
    std::string jobName_;
    std::uint64_t jobLine_ = 0; ///< that gives it; 0: the file's name does
    bool jobNamed_ = false;     ///< an information line has named the job
    bool jobWritten_ = false;   ///< it is written when the first record opens
    std::string information_;   ///< becomes the code of the next station or point
};
