#include "framework/ConvFileBase.h"

CConvFileBase::CConvFileBase(CLibCmp& fieldBook, std::string* fileName)
    : CConvGen(fieldBook, fileName), path_(*fileName) {}

bool CConvFileBase::Esegui() {
    if (!OpenFile())
        return false;
    AggiungeJobDelFile(path_);
    while (LeggeUnaRigaDaFile()) {
        if (!line_.empty())
            ProcessaRiga();
    }
    file_.Close();
    line_ = {};
    return true;
}

bool CConvFileBase::OpenFile() {
    return file_.Open(path_);
}

bool CConvFileBase::LeggeUnaRigaDaFile() {
    return file_.ReadLineWithoutLast(line_);
}
