#pragma once

#include "framework/Export.h"

class CCts;
class CGcadEng;
class CLibCmp;
class CLibPnt;

extern "C" {

/// Converts a file in the format whose code the user picks in the host's dialog
/// (FInpNomeFileConvNoTopcon, which also gets `option`). True where the file could be opened and
/// read. False, with nothing touched and nothing shown, where the user cancelled, named no file, or
/// picked a code that no converter serves. False as well where memory ran out: what was written
/// stays. Raises nothing. `cadastralDoc` is filled by the cadastral format alone.
CONVFILE_API bool FConvFileNoTopcon(CLibCmp& fieldBook, CCts& cadastralDoc, bool option);

/// Converts a file downloaded from an instrument, chosen in the host's dialog
/// (FInpNomeFileConvInCorv, which also gets `dialogMode`), in the format that its extension says,
/// whatever its letter case. Results as above. `pointLibrary` and `drawing` are used by the job
/// database import alone.
CONVFILE_API bool FConvFileDaStrum(CLibCmp& fieldBook, int dialogMode, CLibPnt& pointLibrary,
                                   CGcadEng& drawing);
}
