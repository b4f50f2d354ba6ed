#pragma once

#include "host/HostExport.h"

#include <string>

namespace tsk {
class String; // routines/TskString.h, a header alone
}

/// The window handle of the platform, spelled so that <windows.h> (with STRICT, as it is by
/// itself) may come before, after or never.
struct HWND__; // the platform's own name
using HWND = HWND__*;

/// Modal message with an exclamation mark and an OK button. The library passes no owner (null);
/// the texts are bytes in Windows-1252.
CONVFILE_HOST_API void MessageBoxOkExclam(HWND owner, const std::string& text,
                                          const std::string& title);

/// Modal message with a link that can be followed.
CONVFILE_HOST_API void MessageBoxWithLink(HWND owner, const tsk::String& title,
                                          const tsk::String& message, const tsk::String& linkLabel,
                                          const tsk::String& linkTarget);
