#pragma once

#include "converters/KeywordRecords.h"
#include "framework/Export.h"

/// Reads keyword record files as they are downloaded from the instrument.
class CConvFileGT7 : public CConvKeywordRecords {
public:
    CONVFILE_API CConvFileGT7(CLibCmp& fieldBook, std::string* fileName);
    CONVFILE_API ~CConvFileGT7() override;
};
