#include "app/Options.h"

#include "entry/FormatTable.h"
#include "views/Display.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <charconv>
#include <limits>
#include <system_error>
#include <thread>
#include <utility>

namespace convfile::app {

using namespace views;

namespace {

constexpr const char* kListCommand = "formats";

/// Any integer; one that no format code can be is as good as the nearest that can.
int ReadCode(const std::string& text) {
    long long code = 0;
    const bool plus = text.starts_with('+') && !text.starts_with("+-");
    const auto [end, error] =
        std::from_chars(text.data() + (plus ? 1 : 0), text.data() + text.size(), code);
    if (error == std::errc::result_out_of_range)
        code = text.starts_with('-') ? std::numeric_limits<int>::min()
                                     : std::numeric_limits<int>::max();
    if (error == std::errc::invalid_argument || end != text.data() + text.size())
        throw CLI::ValidationError("--code", "\"" + text + "\" is no integer");
    return static_cast<int>(std::clamp<long long>(code, std::numeric_limits<int>::min(),
                                                  std::numeric_limits<int>::max()));
}

/// A count of files at a time, from 1.
std::size_t ReadJobs(const std::string& text) {
    constexpr std::size_t kMost = 256;
    std::size_t jobs = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), jobs);
    if (error == std::errc::result_out_of_range)
        jobs = kMost;
    if (error == std::errc::invalid_argument || end != text.data() + text.size() || jobs == 0)
        throw CLI::ValidationError("-j", "\"" + text + "\" is no number from 1");
    return std::min(jobs, kMost);
}

void Declare(CLI::App& app, Options& options, bool& listFormats) {
    app.allow_windows_style_options(false); // a path may begin with a slash there, too
    auto* const code = app.add_option_function<std::string>(
        "--code", [&options](const std::string& text) { options.choice.code = ReadCode(text); },
        "Format code, as the host's dialog would return it");
    code->type_name("N");
    auto* const name = app.add_option("--format", options.choice.name, "Format by its short name");
    name->type_name("NAME");
    auto* const download =
        app.add_flag("--download", options.choice.download,
                     "Files downloaded from an instrument: the format by the file's extension");
    code->excludes(name)->excludes(download);
    name->excludes(download);
    app.add_flag("--complete", options.choice.complete,
                 "Read also what the classic rules leave out: other units, coordinates, line ends");
    app.add_option("--to", options.view, "What to print")
        ->check(CLI::IsMember(Views()))
        ->capture_default_str();
    auto* const file = app.add_option("-o,--output", options.outputFile, "Print into this file");
    file->type_name("OUT");
    app.add_option("-O,--output-folder", options.outputFolder,
                   "Make a file of each that is converted, in this folder, named after it")
        ->type_name("FOLDER")
        ->excludes(file);
    options.jobs = std::max<std::size_t>(std::thread::hardware_concurrency(), 1);
    app.add_option_function<std::string>(
           "-j,--jobs", [&options](const std::string& text) { options.jobs = ReadJobs(text); },
           "Convert so many files at a time, where not given as many as there are processors; what "
           "is printed is the same")
        ->type_name("N");
    app.set_version_flag("--version", "convfile " CONVFILE_VERSION, "Print the version and exit");
    app.add_option("FILE", options.files,
                   "Files to convert; a folder stands for all files below it that a format fits")
        ->type_name("");
    app.add_subcommand(kListCommand, "List the formats that can be read")->callback([&listFormats] {
        listFormats = true;
    });
    app.footer("Without --code, --format or --download the extension of each file chooses, or its "
               "content\n"
               "where several formats have it, or none. \"-\" is standard input.\n"
               "Exit status: 0 all converted, 1 at least one was not, 2 wrong usage.");
}

/// The arguments as the parser takes them: it would split a name in square brackets at its commas,
/// and take the word of the one command for it wherever it stands, also where it is a file.
std::vector<std::string> ForParser(std::vector<std::string> arguments) {
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        std::string& argument = arguments[i];
        if ((argument.starts_with('[') && argument.ends_with(']')) ||
            (i > 0 && argument == kListCommand))
            argument.insert(0, "./");
    }
    std::ranges::reverse(arguments); // which is how the parser wants them
    return arguments;
}

} // namespace

Request ReadOptions(std::vector<std::string> arguments, Options& options, std::ostream& out,
                    std::ostream& error) {
    CLI::App app("Turns the files of total stations and field controllers into a field book.",
                 std::string(kProgram));
    bool listFormats = false;
    Declare(app, options, listFormats);
    try {
        app.parse(ForParser(std::move(arguments)));
    } catch (const CLI::ParseError& problem) {
        return app.exit(problem, out, error) == 0 ? Request::Nothing : Request::WrongUsage;
    }
    if (options.choice.name && !FormatByName(*options.choice.name)) {
        error << kProgram << ": there is no format named \"" << ShownUtf8(*options.choice.name)
              << "\"; there are:\n"
              << FormatList() << '\n';
        return Request::WrongUsage;
    }
    if (listFormats == !options.files.empty()) {
        error << app.help();
        return Request::WrongUsage;
    }
    return listFormats ? Request::ListFormats : Request::Convert;
}

} // namespace convfile::app
