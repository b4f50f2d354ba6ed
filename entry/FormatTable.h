#pragma once

#include "framework/Export.h"
#include "framework/Preparation.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

class CCts;
class CGcadEng;
class CLibCmp;
class CLibPnt;

/// What a conversion is given: the field book and the file always, the rest by the formats that
/// fill it.
struct ConversionTarget {
    CLibCmp& fieldBook;
    CCts* cadastralDocument = nullptr;
    CLibPnt* pointLibrary = nullptr;
    CGcadEng* drawing = nullptr;
    Preparation preparation = {};
};

/// What kind of file a format's is, and so what its conversion fills.
enum class FormatKind {
    Instrument, ///< a download of an instrument or collector: the field book
    Cadastral,  ///< a survey exchange file: the field book and the cadastral document
    Database,   ///< a field controller's job database: the field book and the point library
};

/// One format the library reads.
struct Format {
    /// The code by which FConvFileNoTopcon chooses it; 0 where only an extension does.
    int code;
    FormatKind kind;
    /// Short name, for the command line and for the folders of its test files.
    std::string_view name;
    /// The usual extensions of its files, upper case, separated by blanks; empty where there is
    /// none that would tell it from others.
    std::string_view extensions;
    /// The extensions, upper case, by which FConvFileDaStrum chooses it.
    std::string_view downloadExtensions;
    /// What it is, for people.
    std::string_view title;
    /// Builds the converter, makes it ready, runs it and destroys it; gives what it gave, and false
    /// where an error was raised meanwhile. The converter's warning has been shown when this
    /// returns. Raises nothing.
    bool (*convert)(const ConversionTarget& target, std::string* fileName);
    /// Of a format whose extension chooses between layouts: the one that its name gives no hint of.
    const char* layout = "";
};

/// The formats, in the order of their codes, then those chosen by extension alone. The one list:
/// the entry functions, the program's list and the tests all go by it.
CONVFILE_API std::span<const Format> Formats();

/// The format of that code, or null.
CONVFILE_API const Format* FormatByCode(int code);
/// The format that FConvFileDaStrum chooses for an extension (upper case), or null.
CONVFILE_API const Format* FormatByDownloadExtension(std::string_view extension);
/// The first format whose usual extension (upper case) it is, or null.
CONVFILE_API const Format* FormatByExtension(std::string_view extension);
/// All formats that have the extension (upper case), usual or of a download.
CONVFILE_API std::vector<const Format*> FormatsByExtension(std::string_view extension);
/// The format of that short name, or null.
CONVFILE_API const Format* FormatByName(std::string_view name);
