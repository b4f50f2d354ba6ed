// Converts whatever bytes it is given in one format. A file that could be opened must be converted,
// whatever is in it (but for a damaged database, which is declined whole); the rest is the
// sanitizers' to say. The converters take a file by name, so the bytes go into one in memory.
//
// The extension chooses among several forms of some formats: the first byte says which of the
// format's extensions (and of those of its reference files) is used.

#include "app/Choice.h"
#include "app/Conversion.h"

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <unistd.h>

namespace {

using namespace convfile::app;

std::vector<std::string> Extensions(const Format& format) {
    std::vector<std::string> extensions;
    if (format.code != 0) // otherwise only the extension leads to it
        extensions.emplace_back("txt");
    for (std::string_view list : {format.extensions, format.downloadExtensions}) {
        if (!list.empty())
            extensions.emplace_back(list.substr(0, list.find(' ')));
    }
    return extensions;
}

/// The file of this process, but for its extension. (A fuzz target ends without clean-up: the file
/// goes after each conversion, and stays where one crashed.)
const std::string& Input() {
    static const std::string input =
        std::string(std::filesystem::exists("/dev/shm") ? "/dev/shm" : "/tmp") + "/convfile-fuzz-" +
        std::to_string(getpid()) + ".";
    return input;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Format& format = *FormatByName(CONVFILE_FUZZ_FORMAT);
    static const std::vector<std::string> extensions = Extensions(format);
    const std::string& extension = extensions[size > 0 ? data[0] % extensions.size() : 0];

    FormatChoice choice;
    choice.name = CONVFILE_FUZZ_FORMAT;
    const std::string path = Input() + extension;
    const Route route = ChooseRoute(choice, path);
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    Conversion conversion;
    Convert(route, path, conversion);
    std::filesystem::remove(path);
    if (!conversion.converted && format.kind != FormatKind::Database)
        std::abort();
    return 0;
}
