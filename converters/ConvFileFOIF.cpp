// FOIF keyword record files: no header, numbers may leave their decimal point out.
//
//   JOB SITE1
//   STN 1001,1550,BASE          1.550 m
//   SS 100,1600,SPIGOLO         1.600 m
//   SD 743901,874700,2165       74.3901 and 87.4700 gon, 2.165 m
//   OFFSET 100,0,0              0.100 m
//
// An OFFSET leaves the point it starts from as it is and adds "*100". The distance of an HD record
// is kept without decimals and then read like any other, with three implied ones where it has more
// than three digits, both on purpose: such a file has millimetres.

#include "converters/ConvFileFOIF.h"

namespace {

constexpr KeywordDialect kDialect = {.hasHeader = false,
                                     .hasPtlOff = false,
                                     .impliedDecimals = true,
                                     .reducedDistanceDecimals = 0,
                                     .offsetRenamesOldPoint = false};

} // namespace

CConvFileFOIF::CConvFileFOIF(CLibCmp& fieldBook, std::string* fileName)
    : CConvKeywordRecords(fieldBook, fileName, kDialect) {}

CConvFileFOIF::~CConvFileFOIF() = default;
