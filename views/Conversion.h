#pragma once

#include "entry/ConvertFile.h"
#include "memory/CadastralDocument.h"
#include "memory/FieldBook.h"
#include "memory/LinkTimeHost.h"
#include "memory/Notifications.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace convfile::views {

/// The format that a file is to be read in.
struct Route {
    std::string format = {};  ///< short name; empty: extension and content choose
    std::string problem = {}; ///< why there is no way for this file; empty: there is
    bool complete = false;
    bool trustsFormat = false; ///< it is not compared with others
};

/// One file, converted into the host in memory.
struct Conversion {
    std::string path; ///< as it was named
    bool converted = false;
    bool cadastral = false; ///< the cadastral document was filled
    std::vector<memory::Message> messages;
    memory::FieldBook fieldBook;
    memory::CadastralDocument document;
    memory::NotificationLog notifications;
    std::string problem;         ///< for people: why it was not converted
    bool fitsNone = false;       ///< that is why: it was compared with all formats
    bool shortOfMemory = false;  ///< that is why
    FileAccount account;         ///< how it was read
    bool foundByContent = false; ///< only its content told the format
};

/// Told of the bytes read so far; false ends the conversion.
using Progress = std::function<bool(std::uint64_t)>;

/// Converts one file the way it was given; nothing of it is kept anywhere else. `name` is that by
/// which the library opens it; where `source` has its bytes, it is only its name. (A job database
/// has to be a file.) Any number of threads may do so at once.
void Convert(const Route& route, const std::string& name, const ByteSource& source,
             Conversion& result, const Progress& progress = {});

/// The bare name of the file in UTF-8.
std::string BareName(const std::string& path);

} // namespace convfile::views
