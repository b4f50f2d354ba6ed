#include "entry/ConvEntry.h"

#include "entry/FormatTable.h"
#include "host/Dialogs.h"
#include "routines/FileName.h"
#include "routines/Text.h"

bool FConvFileNoTopcon(CLibCmp& fieldBook, CCts& cadastralDoc, bool option) {
    std::string fileName;
    int formatCode = 0;
    if (!FInpNomeFileConvNoTopcon(fileName, formatCode, option) || fileName.empty())
        return false;
    const Format* const format = FormatByCode(formatCode);
    return format && format->convert({fieldBook, &cadastralDoc}, &fileName);
}

// ".dat" is read here as a keyword file, while FConvFileNoTopcon has a space-separated format of
// that name: instruments download the one, other collectors write the other.
bool FConvFileDaStrum(CLibCmp& fieldBook, int dialogMode, CLibPnt& pointLibrary,
                      CGcadEng& drawing) {
    std::string fileName;
    if (!FInpNomeFileConvInCorv(fileName, dialogMode) || fileName.empty())
        return false;
    std::string extension = fileName;
    EstraiEstensFile(extension);
    StringToUpper(extension);
    const Format* const format = FormatByDownloadExtension(extension);
    return format && format->convert({fieldBook, nullptr, &pointLibrary, &drawing}, &fileName);
}
