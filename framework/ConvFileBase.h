#pragma once

#include "framework/ConvGen.h"

#include <string>

/// Base of the converters whose file is read one line at a time. A subclass supplies ProcessaRiga
/// and the state it needs between lines; it never touches the file.
class CONVFILE_API CConvFileBase : public CConvGen {
public:
    CConvFileBase(CLibCmp& fieldBook, std::string* fileName);

    /// Converts the whole file into one job named after it. False, and nothing written, where the
    /// file cannot be opened; otherwise true, whatever the lines hold.
    bool Esegui();

protected:
    /// Handles the current line (`line_`, without its last character), which is never empty. The
    /// line is the converter's to consume.
    virtual void ProcessaRiga() = 0;

private:
    bool OpenFile();
    bool LeggeUnaRigaDaFile();

    void ConvertLine();

    std::string path_; ///< the file's name as it was given
};
