#pragma once

#include "converters/KeywordRecords.h"
#include "framework/Export.h"

/// Reads FOIF keyword record files.
class CConvFileFOIF : public CConvKeywordRecords {
public:
    CONVFILE_API CConvFileFOIF(CLibCmp& fieldBook, std::string* fileName);
    CONVFILE_API ~CConvFileFOIF() override;
};
