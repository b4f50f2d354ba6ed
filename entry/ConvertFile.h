#pragma once

#include "framework/Account.h"
#include "framework/Export.h"
#include "framework/ReadingRules.h"
#include "routines/InputFile.h"

#include <cstddef>
#include <string>

class CCts;
class CConvListener;
class CGcadEng;
class CLibCmp;
class CLibPnt;

/// What is to be converted, and into what. All pointers are borrowed until the call returns. The
/// size comes first, so that a library built later knows how much of it the host has.
struct ConversionOrder {
    std::size_t size = sizeof(ConversionOrder);
    std::string file;       ///< the file's name, by which it is opened and the job is named
    ByteSource source = {}; ///< its bytes, where they lie elsewhere (not for a job database)
    std::string format; ///< short name of its format; empty: its extension, or its content, says
    CLibCmp* fieldBook = nullptr;      ///< needed always
    CCts* cadastralDocument = nullptr; ///< needed by the cadastral format
    CLibPnt* pointLibrary = nullptr;   ///< needed, with the drawing, by the job database
    CGcadEng* drawing = nullptr;
    CConvListener* listener = nullptr; ///< is told of records and progress, and may cancel
    ReadingRules rules = {};           ///< what of the file is read
    bool trustsFormat = false;         ///< the format was named, and is not compared with others
};

/// What became of it.
struct ConversionReport {
    bool converted = false;
    bool shortOfMemory = false;  ///< that is why it was not
    std::string format;          ///< short name of the format that was taken; empty: none
    bool foundByContent = false; ///< nothing else told it
    std::string problem; ///< for people: what kept it from its end; "cancelled" by the listener
    FileAccount account; ///< how the file was read, as far as it was
};

/// Converts a file without a dialog: the third way in, for programs that have chosen already. True
/// where the file could be opened and read to its end; otherwise what was written until then stays.
/// Message boxes come as from the entry functions. Raises nothing.
CONVFILE_API bool ConvertFile(const ConversionOrder& order, ConversionReport& report);
