// Keyword record files as they are downloaded from the instrument (.gt7, .gts7, .dat). Everything
// up to and including the first line that begins with a letter is a header; numbers are written
// with their decimal point.
//
//   Raw data, instrument memory
//   JOB     SITE1,
//   STN     1001,1.550,
//   SS      100,1.600,SPIGOLO
//   SD      74.39010,87.47000,2.1650
//   PTL_OFF 0.100,0.000,0.000
//
// An OFFSET renames the point that was written last under the station: "*100" stays as the reading,
// with four marks set, and 100 is the point at the offset.

#include "converters/ConvFileGT7.h"

namespace {

constexpr KeywordDialect kDialect = {.hasHeader = true,
                                     .hasPtlOff = true,
                                     .impliedDecimals = false,
                                     .reducedDistanceDecimals = 6,
                                     .offsetRenamesOldPoint = true};

} // namespace

CConvFileGT7::CConvFileGT7(CLibCmp& fieldBook, std::string* fileName)
    : CConvKeywordRecords(fieldBook, fileName, kDialect) {}

CConvFileGT7::~CConvFileGT7() = default;
