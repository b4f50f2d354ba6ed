#pragma once

#include "framework/Problem.h"
#include "framework/ReadingRules.h"
#include "routines/InputFile.h"

#include <cstddef>

class CConvListener;
struct FileAccount;

/// How a converter is made ready between its constructor and Esegui. Without it the file of the
/// name is read. The size comes first, so that a library built later knows how much of it the host
/// has.
struct Preparation {
    std::size_t size = sizeof(Preparation);
    ByteSource source = {}; ///< the bytes of the file; a job database is always opened by its name
    /// Emptied by a conversion that begins, and takes what kept the conversion from its end, the
    /// destructor's part of it included. Borrowed: it must outlive the converter.
    Problem* problem = nullptr;
    /// Takes how the file was read, once the converter has gone. Borrowed; null: nobody asks.
    FileAccount* account = nullptr;
    /// Is told of records and progress meanwhile. Borrowed; null: nobody listens.
    CConvListener* listener = nullptr;
    ReadingRules rules = {}; ///< what of the file is read
    bool isTrial = false;    ///< nobody is to see it: no message is shown
    /// The extension by which a format with several layouts is to choose, upper case; empty: that
    /// of the file's name. Borrowed.
    const char* layout = "";
};
