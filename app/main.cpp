// convfile: files of total stations and field controllers in, a field book out.

#include "app/Choice.h"
#include "app/Conversion.h"
#include "app/Display.h"
#include "app/Output.h"
#include "app/Platform.h"
#include "routines/CodePage.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <limits>
#include <string>
#include <system_error>
#include <vector>

namespace {

using namespace convfile::app;

constexpr int kAllConverted = 0;
constexpr int kNotAllConverted = 1;
constexpr int kWrongUsage = 2;

constexpr const char* kListCommand = "formats";

struct Options {
    FormatChoice choice;
    std::string view = std::string(kTable);
    std::string outputFile;
    std::vector<std::string> files;
    bool listFormats = false;
};

/// Says something on standard error. What comes from outside must not steer the terminal.
void Tell(const std::string& text) {
    std::cerr << "convfile: " << text << '\n';
}

void TellOfFile(const std::string& file, const std::string& text) {
    Tell(ShownUtf8(Utf8OfName(file)) + ": " + text);
}

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

void Declare(CLI::App& app, Options& options) {
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
    app.add_option("--to", options.view, "What to print")
        ->check(CLI::IsMember({std::string(kSummary), std::string(kTable), std::string(kJson),
                               std::string(kJsonLines)}))
        ->capture_default_str();
    app.add_option("-o,--output", options.outputFile, "Print into this file")->type_name("OUT");
    app.set_version_flag("--version", "convfile " CONVFILE_VERSION, "Print the version and exit");
    app.add_option("FILE", options.files, "Files to convert")->type_name("");
    app.add_subcommand(kListCommand, "List the formats that can be read")->callback([&options] {
        options.listFormats = true;
    });
    app.footer("Without --code, --format or --download the extension of each file chooses.\n"
               "Exit status: 0 all converted, 1 at least one was not, 2 wrong usage.");
}

/// The arguments as the parser takes them: it would split a name in square brackets at its commas,
/// and take the word of the one command for it wherever it stands, also where it is a file.
std::vector<std::string> Arguments(int argc, char** argv) {
    std::vector<std::string> arguments(argv + 1, argv + argc);
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        std::string& argument = arguments[i];
        if ((argument.starts_with('[') && argument.ends_with(']')) ||
            (i > 0 && argument == kListCommand))
            argument.insert(0, "./");
    }
    std::ranges::reverse(arguments); // which is how the parser wants them
    return arguments;
}

/// Converts the files one after another; each is shown and forgotten before the next is read.
int Run(const Options& options, std::ostream& out) {
    Sink sink(out);
    const auto output = MakeOutput(options.view, sink, options.files.size());
    bool allConverted = true;
    bool formatsTold = false;
    for (const std::string& file : options.files) {
        const Route route = ChooseRoute(options.choice, file);
        Conversion conversion;
        Convert(route, file, conversion);
        if (!conversion.converted) {
            allConverted = false;
            TellOfFile(file, conversion.problem);
        }
        if (route.unknownExtension && !formatsTold) {
            Tell("the formats are:\n" + FormatList());
            formatsTold = true;
        }
        output->Add(conversion);
    }
    output->End();
    sink.Flush();
    if (sink.Failed()) {
        Tell("the result could not be written");
        return kNotAllConverted;
    }
    return allConverted ? kAllConverted : kNotAllConverted;
}

/// True where writing the result would overwrite one of the files it is made from, or make a file
/// that is missing.
bool OverwritesInput(const Options& options) {
    namespace fs = std::filesystem;
    std::error_code ignored;
    const fs::path output = fs::absolute(PathOf(options.outputFile), ignored);
    return std::ranges::any_of(options.files, [&](const std::string& file) {
        const fs::path input = fs::absolute(PathOf(file), ignored);
        return fs::equivalent(input, output, ignored) ||
               fs::weakly_canonical(input, ignored) == fs::weakly_canonical(output, ignored);
    });
}

int RunInto(const Options& options) {
    if (options.outputFile.empty())
        return Run(options, std::cout);
    if (OverwritesInput(options)) {
        TellOfFile(options.outputFile, "is one of the files to convert");
        return kWrongUsage;
    }
    std::ofstream out(options.outputFile, std::ios::binary);
    if (!out) {
        TellOfFile(options.outputFile, "cannot be written");
        return kNotAllConverted;
    }
    return Run(options, out);
}

int ListFormats() {
    std::cout << FormatList() << std::flush;
    if (std::cout)
        return kAllConverted;
    Tell("the list could not be written");
    return kNotAllConverted;
}

} // namespace

int main(int argc, char** argv) {
    PrepareStandardStreams();
    Options options;
    CLI::App app("Turns the files of total stations and field controllers into a field book.",
                 "convfile");
    Declare(app, options);
    try {
        app.parse(Arguments(argc, argv));
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? kAllConverted : kWrongUsage;
    }
    if (options.choice.name && !FormatByName(*options.choice.name)) {
        Tell("there is no format named \"" + ShownUtf8(*options.choice.name) + "\"; there are:\n" +
             FormatList());
        return kWrongUsage;
    }
    if (options.listFormats && options.files.empty())
        return ListFormats();
    if (options.listFormats || options.files.empty()) {
        std::cerr << app.help();
        return kWrongUsage;
    }
    return RunInto(options);
}
