#pragma once

#include "host/HostExport.h"

#include <map>
#include <string>
#include <vector>

/// What the library calls by name, as the host in memory supplies it: dialogs that answer what they
/// were told, message boxes that are written down. All of it is kept for each thread by itself.
namespace convfile::memory {

/// What a dialog answers next, until it is told otherwise.
struct DialogAnswer {
    bool confirmed = false;
    std::string fileName;
    int formatCode = 0; ///< FInpNomeFileConvNoTopcon only
};

/// What a dialog was asked with when it was last opened.
struct DialogCall {
    int formatCodeBefore = -1;
    bool option = false;
    int dialogMode = 0;
    int count = 0; ///< how often a dialog was opened
};

/// A message box that was shown.
struct Message {
    std::string title;
    std::string text;
    std::string linkLabel{}; ///< empty in a box without a link, as is the target
    std::string linkTarget{};
    bool hasLink = false;
};

/// What is stored for the codes that are read; a code without an entry stays as it is, and has no
/// drawing attribute.
struct CodeTable {
    std::map<std::string, std::string> pointCodes;
    std::map<std::string, std::string> stationIdentifiers;
    std::map<std::string, std::string> drawingAttributes;
    bool conversionMode = false;
};

CONVFILE_HOST_API void AnswerDialogs(DialogAnswer answer);
CONVFILE_HOST_API DialogCall TakeDialogCall();
/// The messages shown on this thread since they were last taken.
CONVFILE_HOST_API std::vector<Message> TakeMessages();
/// The table of the conversions that begin on this thread from now on.
CONVFILE_HOST_API void UseCodeTable(CodeTable table);
/// How many code tables of this thread are alive.
CONVFILE_HOST_API int LiveCodeTables();

} // namespace convfile::memory
