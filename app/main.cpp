// convfile: files of total stations and field controllers in, a field book out.

#include "app/Choice.h"
#include "app/Conversion.h"
#include "app/Display.h"
#include "app/Options.h"
#include "app/Output.h"
#include "app/OutputFile.h"
#include "app/Platform.h"
#include "routines/CodePage.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <new>
#include <string>
#include <system_error>
#include <vector>

namespace {

using namespace convfile::app;

constexpr int kAllConverted = 0;
constexpr int kNotAllConverted = 1;
constexpr int kWrongUsage = 2;

/// Says something on standard error. What comes from outside must not steer the terminal.
void Tell(const std::string& text) {
    std::cerr << kProgram << ": " << text << '\n';
}

void TellOfFile(const std::string& file, const std::string& text) {
    Tell(ShownUtf8(Utf8OfName(file)) + ": " + text);
}

/// The bytes of "-" are those of standard input.
ByteSource SourceOf(const std::string& file) {
    return file == kStandardInput ? ByteSource::Stream(stdin) : ByteSource{};
}

/// Converts one file, shows it and forgets it; false where it was not converted.
bool ConvertAndShow(const Route& route, const std::string& file, Output& output) {
    Conversion conversion;
    Convert(route, file, conversion, SourceOf(file));
    if (!conversion.converted)
        TellOfFile(file, conversion.problem);
    output.Add(conversion);
    return conversion.converted;
}

/// Says without any memory that a file failed for want of it.
void TellOfShortMemory(const std::string& file) {
    std::fputs(kProgram.data(), stderr); // of a literal
    std::fputs(": ", stderr);
    for (const char c : file)
        std::fputc(static_cast<unsigned char>(c) < ' ' ? '?' : c, stderr);
    std::fputs(": not enough memory\n", stderr);
}

/// Converts the files one after another; each is shown and forgotten before the next is read.
int Run(const Options& options, std::ostream& out, bool& someConverted) {
    Sink sink(out);
    const auto output = MakeOutput(options.view, sink, options.files.size());
    bool allConverted = true;
    for (const std::string& file : options.files) {
        try {
            const Route route = ChooseRoute(options.choice, file);
            const bool converted = ConvertAndShow(route, file, *output);
            allConverted = converted && allConverted;
            someConverted = converted || someConverted;
        } catch (const std::bad_alloc&) {
            TellOfShortMemory(file);
            allConverted = false;
        }
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
        if (file == kStandardInput)
            return false;
        const fs::path input = fs::absolute(PathOf(file), ignored);
        return fs::equivalent(input, output, ignored) ||
               fs::weakly_canonical(input, ignored) == fs::weakly_canonical(output, ignored);
    });
}

int RunInto(const Options& options) {
    bool someConverted = false;
    if (options.outputFile.empty())
        return Run(options, std::cout, someConverted);
    if (OverwritesInput(options)) {
        TellOfFile(options.outputFile, "is one of the files to convert");
        return kWrongUsage;
    }
    OutputFile file;
    if (!file.Open(PathOf(options.outputFile))) {
        TellOfFile(options.outputFile, "cannot be written");
        return kNotAllConverted;
    }
    const int status = Run(options, file.Stream(), someConverted);
    if (!someConverted || !file.Stream())
        return kNotAllConverted;
    if (!file.Finish()) {
        Tell("the result could not be written");
        return kNotAllConverted;
    }
    return status;
}

int ListFormats() {
    std::cout << FormatList() << std::flush;
    if (std::cout)
        return kAllConverted;
    Tell("the list could not be written");
    return kNotAllConverted;
}

int Main(int argc, char** argv) {
    PrepareStandardStreams();
    Options options;
    switch (ReadOptions(Arguments(argc, argv), options, std::cout, std::cerr)) {
    case Request::Convert:
        return RunInto(options);
    case Request::ListFormats:
        return ListFormats();
    case Request::Nothing:
        return kAllConverted;
    case Request::WrongUsage:
        break;
    }
    return kWrongUsage;
}

} // namespace

int main(int argc, char** argv) {
    try {
        return Main(argc, argv);
    } catch (const std::bad_alloc&) {
        std::fputs("convfile: not enough memory\n", stderr);
        return kNotAllConverted;
    }
}
