#include "framework/ConvFileBase.h"

CConvFileBase::CConvFileBase(CLibCmp& fieldBook, std::string* fileName)
    : CConvGen(fieldBook, fileName), path_(*fileName) {}

bool CConvFileBase::Esegui() {
    if (!OpenFile())
        return false;
    AggiungeJob(NameOfFile(path_), "", "", "");
    return ForEachLine([this] { return LeggeUnaRigaDaFile(); }, [this] { ConvertLine(); });
}

bool CConvFileBase::OpenFile() {
    return file_->Open(path_, preparation_.source);
}

bool CConvFileBase::LeggeUnaRigaDaFile() {
    return file_->ReadLineWithoutLast(line_);
}

void CConvFileBase::ConvertLine() {
    if (!line_.empty())
        ProcessaRiga();
}
