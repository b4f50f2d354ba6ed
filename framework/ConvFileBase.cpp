#include "framework/ConvFileBase.h"

CConvFileBase::CConvFileBase(CLibCmp& fieldBook, std::string* fileName)
    : CConvGen(fieldBook, fileName), path_(*fileName) {}

bool CConvFileBase::Esegui() {
    if (!OpenFile())
        return false;
    AddJobOfFile(path_);
    return ForEachLine([this] { return LeggeUnaRigaDaFile(); }, [this] { ConvertLine(); });
}

bool CConvFileBase::OpenFile() {
    return CConvGen::OpenFile(path_);
}

bool CConvFileBase::LeggeUnaRigaDaFile() {
    return file_->ReadLineWithoutLast(line_);
}

void CConvFileBase::ConvertLine() {
    if (!line_.empty())
        ProcessaRiga();
}
