#include "framework/ConvFileBase.h"

#include "framework/Text.h"

CConvFileBase::CConvFileBase(CLibCmp& fieldBook, std::string* fileName)
    : CConvGen(fieldBook, fileName) {}

bool CConvFileBase::Esegui() {
    if (!OpenFile())
        return false;
    AggiungeJobDelFile();
    while (LeggeUnaRigaDaFile()) {
        if (!line_.empty())
            ProcessaRiga();
    }
    file_.Close();
    line_ = {};
    return true;
}

bool CConvFileBase::OpenFile() {
    return file_.Open(*fileName_);
}

/// The last character goes, whatever it is: the line feed of an ordinary line, but the last real
/// character of a file that ends without one, and of every piece of a line of more than 254
/// characters. Instruments end every line, so this is kept as it is.
bool CConvFileBase::LeggeUnaRigaDaFile() {
    if (!file_.ReadLine(line_))
        return false;
    line_ = DropLast(line_);
    return true;
}
