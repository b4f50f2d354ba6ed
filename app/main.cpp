// convfile: files of total stations and field controllers in, a field book out.

#include "app/Choice.h"
#include "app/Conversion.h"
#include "app/Output.h"
#include "app/Platform.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <system_error>
#include <vector>

namespace {

using namespace convfile::app;

constexpr int kAllConverted = 0;
constexpr int kNotAllConverted = 1;
constexpr int kWrongUsage = 2;

struct Options {
    FormatChoice choice;
    std::string view = std::string(kTable);
    std::string outputFile;
    std::vector<std::string> files;
    bool listFormats = false;
};

void Tell(const std::string& text) {
    std::cerr << "convfile: " << text << '\n';
}

void Declare(CLI::App& app, Options& options) {
    auto* const code = app.add_option("--code", options.choice.code,
                                      "Format code, as the host's dialog would return it");
    auto* const name = app.add_option("--format", options.choice.name, "Format by its short name");
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
    app.add_option("FILE", options.files, "Files to convert")->type_name("");
    app.add_subcommand("formats", "List the formats that can be read")->callback([&options] {
        options.listFormats = true;
    });
    app.footer("Without --code, --format or --download the extension of each file chooses.\n"
               "Exit status: 0 all converted, 1 at least one was not, 2 wrong usage.");
}

/// Converts the files one after another; each is shown and forgotten before the next is read.
int Run(const Options& options, std::ostream& out) {
    Sink sink(out);
    const auto output = MakeOutput(options.view, sink, options.files.size());
    bool allConverted = true;
    for (const std::string& file : options.files) {
        Conversion conversion;
        Convert(ChooseRoute(options.choice, file), file, conversion);
        if (!conversion.converted) {
            allConverted = false;
            Tell(file + ": " + conversion.problem);
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

/// True where writing the result would overwrite one of the files it is made from.
bool OverwritesInput(const Options& options) {
    return std::ranges::any_of(options.files, [&](const std::string& file) {
        std::error_code different;
        return std::filesystem::equivalent(file, options.outputFile, different);
    });
}

int RunInto(const Options& options) {
    if (options.outputFile.empty())
        return Run(options, std::cout);
    if (OverwritesInput(options)) {
        Tell(options.outputFile + ": is one of the files to convert");
        return kWrongUsage;
    }
    std::ofstream out(options.outputFile, std::ios::binary);
    if (!out) {
        Tell(options.outputFile + ": cannot be written");
        return kNotAllConverted;
    }
    return Run(options, out);
}

} // namespace

int main(int argc, char** argv) {
    PrepareStandardStreams();
    Options options;
    CLI::App app("Turns the files of total stations and field controllers into a field book.",
                 "convfile");
    Declare(app, options);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? kAllConverted : kWrongUsage;
    }
    if (options.choice.name.size() > 0 && !FormatByName(options.choice.name)) {
        Tell("there is no format named \"" + options.choice.name + "\"; there are:\n" +
             FormatList());
        return kWrongUsage;
    }
    if (options.listFormats) {
        std::cout << FormatList();
        return kAllConverted;
    }
    if (options.files.empty()) {
        std::cerr << app.help();
        return kWrongUsage;
    }
    return RunInto(options);
}
