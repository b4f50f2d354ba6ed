// Reads whatever bytes it is given as the program's arguments, one a line. Each must lead to
// something that the program can do, or be told to the user; nothing is converted.

#include "app/Options.h"
#include "entry/FormatTable.h"
#include "views/Output.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace convfile::app;

void Require(bool condition) {
    if (!condition)
        std::abort();
}

std::vector<std::string> Lines(std::string text) {
    std::vector<std::string> lines;
    std::istringstream stream(std::move(text));
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line.substr(0, line.find('\0'))); // as a program is given them
    return lines;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Options options;
    std::ostringstream out;
    std::ostringstream error;
    const Request request =
        ReadOptions(Lines({reinterpret_cast<const char*>(data), size}), options, out, error);
    Require(out.str().empty() == (request != Request::Nothing));
    Require(error.str().empty() == (request != Request::WrongUsage));
    if (request == Request::Convert) {
        const FormatChoice& choice = options.choice;
        Require(!options.files.empty());
        Require(choice.code.has_value() + choice.name.has_value() + choice.download <= 1);
        Require(!choice.name || FormatByName(*choice.name));
        Require(std::ranges::count(convfile::views::Views(), options.view) == 1);
    }
    return 0;
}
