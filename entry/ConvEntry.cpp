#include "entry/ConvEntry.h"

#include "entry/FormatTable.h"
#include "host/Dialogs.h"
#include "routines/FileName.h"
#include "routines/Text.h"

namespace {

/// Nothing that is raised on the way may leave an entry function: a host may be of another
/// compiler.
template <class Work>
bool Entered(Work work) {
    bool converted = false;
    Guarded(nullptr, [&] { converted = work(); });
    return converted;
}

} // namespace

bool FConvFileNoTopcon(CLibCmp& fieldBook, CCts& cadastralDoc, bool option) {
    return Entered([&] {
        std::string fileName;
        int formatCode = 0;
        if (!FInpNomeFileConvNoTopcon(fileName, formatCode, option) || fileName.empty())
            return false;
        const Format* const format = FormatByCode(formatCode);
        return format && format->convert({fieldBook, &cadastralDoc}, &fileName);
    });
}

// ".dat" is read here as a keyword file, while FConvFileNoTopcon has a space-separated format of
// that name: instruments download the one, other collectors write the other.
bool FConvFileDaStrum(CLibCmp& fieldBook, int dialogMode, CLibPnt& pointLibrary,
                      CGcadEng& drawing) {
    return Entered([&] {
        std::string fileName;
        if (!FInpNomeFileConvInCorv(fileName, dialogMode) || fileName.empty())
            return false;
        std::string extension = fileName;
        EstraiEstensFile(extension);
        StringToUpper(extension);
        const Format* const format = FormatByDownloadExtension(extension);
        return format && format->convert({fieldBook, nullptr, &pointLibrary, &drawing}, &fileName);
    });
}
