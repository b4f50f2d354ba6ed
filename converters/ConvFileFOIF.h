#pragma once

#include "converters/KeywordRecords.h"

/// Reads FOIF keyword record files.
class CONVFILE_API CConvFileFOIF : public CConvKeywordRecords {
public:
    CConvFileFOIF(CLibCmp& fieldBook, std::string* fileName);
};
