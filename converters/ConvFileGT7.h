#pragma once

#include "converters/KeywordRecords.h"

/// Reads keyword record files as they are downloaded from the instrument.
class CONVFILE_API CConvFileGT7 : public CConvKeywordRecords {
public:
    CConvFileGT7(CLibCmp& fieldBook, std::string* fileName);
};
