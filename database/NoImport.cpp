// The import of a build without it, such as that of the page: every job database is one that cannot
// be read. (Whoever asks for one is told so before it comes to this.)

#include "database/ConvFileTLSV.h"

#include "database/Engine.h"

CDBDataProviderLcm::CDBDataProviderLcm() = default;
CDBDataProviderLcm::~CDBDataProviderLcm() = default;

CConvFileTLSV::CConvFileTLSV(CLibCmp& fieldBook, CLibPnt& pointLibrary, CGcadEng& drawing,
                             std::string* fileName)
    : CConvGen(fieldBook, fileName), pointLibrary_(pointLibrary), drawing_(drawing) {}

CConvFileTLSV::~CConvFileTLSV() = default;

bool CConvFileTLSV::Esegui() {
    return false;
}
