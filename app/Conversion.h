#pragma once

#include "app/Choice.h"
#include "entry/ConvertFile.h"
#include "memory/CadastralDocument.h"
#include "memory/FieldBook.h"
#include "memory/LinkTimeHost.h"
#include "memory/Notifications.h"

#include <string>
#include <vector>

namespace convfile::app {

/// One file, converted into the host in memory.
struct Conversion {
    std::string path;
    bool converted = false;
    bool cadastral = false; ///< the cadastral document was filled
    std::vector<memory::Message> messages;
    memory::FieldBook fieldBook;
    memory::CadastralDocument document;
    memory::NotificationLog notifications;
    std::string problem;         ///< for people: why it was not converted
    bool fitsNone = false;       ///< that is why: it was compared with all formats
    FileAccount account;         ///< how it was read
    bool foundByContent = false; ///< only its content told the format
};

/// Converts one file the way it was given; nothing of it is kept anywhere else. Its bytes may lie
/// in memory or come from a stream; then `path` is only its name. (A job database's cannot.) Any
/// number of threads may do so at once.
void Convert(const Route& route, const std::string& path, Conversion& result,
             const ByteSource& source = {});

/// True where a file can be read and no format fits its content.
bool FitsNoFormat(const std::string& path, bool complete);

/// The bare name of the file in UTF-8.
std::string BareName(const std::string& path);

} // namespace convfile::app
