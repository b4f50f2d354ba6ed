#pragma once

#include "app/Choice.h"
#include "memory/CadastralDocument.h"
#include "memory/FieldBook.h"
#include "memory/LinkTimeHost.h"
#include "memory/Notifications.h"

#include <string>
#include <string_view>
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
    std::string problem; ///< for people: why it was not converted
};

/// Converts one file the way it was given; nothing of it is kept anywhere else.
void Convert(const Route& route, const std::string& path, Conversion& result);

/// The same for bytes in memory, as a file of that name would be converted. (A job database cannot
/// be.)
void ConvertBytes(const Format& format, const std::string& name, std::string_view bytes,
                  Conversion& result);

/// The bare name of the file in UTF-8.
std::string BareName(const std::string& path);

} // namespace convfile::app
