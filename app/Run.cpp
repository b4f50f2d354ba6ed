#include "app/Run.h"

#include "app/FileConversion.h"
#include "app/Inputs.h"
#include "app/OutputFile.h"
#include "app/OutputNames.h"
#include "app/Platform.h"
#include "app/Progress.h"
#include "app/SharedOutput.h"
#include "app/Workers.h"
#include "routines/FileName.h"
#include "views/Display.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <memory>
#include <new>
#include <optional>
#include <system_error>
#include <utility>
#include <vector>

namespace convfile::app {

using namespace views;

namespace {

namespace fs = std::filesystem;

constexpr const char* kCannotBeWritten = "cannot be written";

void TellOfFile(const std::string& file, const std::string& text) {
    Tell(ShownUtf8(Utf8OfName(file)) + ": " + text);
}

/// Says without any memory that a file failed for want of it.
void TellOfShortMemory(const std::string& file) {
    std::fputs(kProgram.data(), stderr); // of a literal
    std::fputs(": ", stderr);
    for (const char c : file)
        std::fputc(static_cast<unsigned char>(c) < ' ' ? '?' : c, stderr);
    std::fputs(": not enough memory\n", stderr);
}

/// The bytes of "-" are those of standard input.
ByteSource SourceOf(const std::string& file) {
    return file == kStandardInput ? ByteSource::Stream(stdin) : ByteSource{};
}

/// What became of one file.
struct Done {
    std::unique_ptr<Conversion> conversion; ///< until it is written
    SharedOutput::Part part;                ///< of the one output
    bool isLeftOut = false;                 ///< it was found in a folder, and no format fits
    bool shortOfMemory = false;
    std::string problem; ///< what is to be told of it
};

/// All files of a run.
class Files {
public:
    explicit Files(const Options& options) : options_(options) {}

    /// Finds the files and names their outputs; false, and says why, where the usage is wrong.
    bool Prepare() {
        const fs::path folder = PathOf(options_.outputFolder);
        inputs_ = FindInputs(options_.files, folder);
        if (folder.empty() && TakesOneFile(options_.view) &&
            (inputs_.files.size() > 1 || !inputs_.folders.empty())) {
            Tell("--to " + options_.view + " draws one file; -O FOLDER takes several");
            return false;
        }
        std::string problem;
        const auto fitsNothing = [&](const Input& input) {
            return FitsNoFormat(input.file, options_.choice.complete);
        };
        fitting_.assign(inputs_.folders.size(), 0);
        if (!folder.empty())
            outputs_ = NameOutputs(inputs_, folder, ExtensionOf(options_.view), fitsNothing,
                                   leftOut_, problem);
        else if (!options_.outputFile.empty())
            leftOut_ = TakeOutOutput(inputs_, PathOf(options_.outputFile), fitsNothing, problem);
        if (!problem.empty())
            Tell(problem);
        return problem.empty();
    }

    /// Converts them into one output.
    void ConvertInto(std::ostream& out) {
        // What a folder holds is an array even where that is one file, or none.
        const std::size_t most = inputs_.folders.empty() ? inputs_.files.size() : 2;
        SharedOutput output(options_.view, out, most);
        const bool sharesTerminal = &out == &std::cout && PrintsToTerminal();
        InOrder(
            [&](std::size_t i, const SharedOutput::IsTurn& isTurn) {
                Done done = ConvertOne(i);
                Render(done, output, [&] { return !sharesTerminal && isTurn(); });
                return done;
            },
            [&](const Done& done) {
                if (sharesTerminal)
                    progress_->Clear();
                if (!done.isLeftOut && !done.shortOfMemory)
                    output.Finish(done.part);
                if (sharesTerminal)
                    output.Flush();
            });
        if (!output.End())
            TellOfFailure("the result could not be written");
        TellOfFolders();
    }

    /// Converts each into a file of its own.
    void ConvertEach() {
        InOrder(
            [&](std::size_t i, const SharedOutput::IsTurn&) {
                Done done = ConvertOne(i);
                if (done.conversion && done.conversion->converted)
                    WriteOne(i, done);
                done.conversion.reset();
                return done;
            },
            [](const Done&) {});
        TellOfFolders();
    }

    bool AreAllConverted() const { return allConverted_; }
    bool IsAnyConverted() const { return anyConverted_; }

    void TellOfFailure(const std::string& text) {
        Tell(text);
        allConverted_ = false;
    }

private:
    std::size_t CountThreads() const {
        const auto isStandardInput = [](const Input& input) {
            return input.file == kStandardInput;
        };
        if (std::ranges::count_if(inputs_.files, isStandardInput) > 1)
            return 1; // which of them gets its bytes must not be chance
        return std::min(options_.jobs, inputs_.files.size());
    }

    /// Does the work for each file, some at a time, and takes what comes of it in their order.
    template <class Work, class Take>
    void InOrder(const Work& work, const Take& take) {
        const std::size_t count = inputs_.files.size();
        const auto show = [&](std::size_t i) {
            if (i < count)
                progress_->Show(i, inputs_.files[i].file);
        };
        const auto takeOne = [&](std::size_t i, const Done& done) {
            take(done);
            Count(i, done);
            show(i + 1);
        };
        progress_.emplace(count);
        show(0);
        if (const std::size_t threads = CountThreads(); threads > 1) {
            KeepFreedMemory();
            Workers<Done> workers(
                count, threads,
                [&](std::size_t i) { return work(i, [&, i] { return workers.IsNext(i); }); },
                takeOne);
            workers.Run(show);
        } else {
            for (std::size_t i = 0; i < count; ++i)
                takeOne(i, work(i, [] { return true; }));
        }
        progress_->Clear();
    }

    static void Render(Done& done, SharedOutput& output, const SharedOutput::IsTurn& isTurn) {
        if (!done.conversion)
            return;
        try {
            if (!done.isLeftOut)
                output.Render(*done.conversion, isTurn, done.part);
        } catch (const std::bad_alloc&) {
            if (done.part.isBegun)
                throw; // half of it is in the output
            done.part = {};
            done.shortOfMemory = true;
        }
        done.conversion.reset();
    }

    Done ConvertOne(std::size_t i) const {
        Done done;
        const Input& input = inputs_.files[i];
        try {
            done.conversion = std::make_unique<Conversion>();
            Convert(ChooseRoute(options_.choice, input.file), input.file, *done.conversion,
                    SourceOf(input.file));
            done.isLeftOut = input.IsFound() && done.conversion->fitsNone;
            done.problem = done.conversion->problem;
        } catch (const std::bad_alloc&) {
            done.conversion.reset();
            done.shortOfMemory = true;
        }
        return done;
    }

    void WriteOne(std::size_t i, Done& done) const {
        try {
            std::error_code error;
            fs::create_directories(outputs_[i].parent_path(), error);
            OutputFile file;
            bool isWritten = file.Open(outputs_[i]);
            if (isWritten) {
                Sink sink(file.Stream());
                const auto output = MakeOutput(options_.view, sink, 1);
                output->Add(*done.conversion);
                output->End();
                sink.Flush();
                isWritten = file.Finish();
            }
            if (!isWritten)
                done.problem = "its output " + ShownUtf8(Utf8OfName(NameOf(outputs_[i]))) + " " +
                               kCannotBeWritten;
        } catch (const std::bad_alloc&) {
            done.shortOfMemory = true;
        }
    }

    /// Tells what there is to tell of a file, and counts it.
    void Count(std::size_t i, const Done& done) {
        const Input& input = inputs_.files[i];
        if (done.isLeftOut) {
            ++leftOut_;
            return;
        }
        if (input.IsFound())
            ++fitting_[input.folder];
        const bool isWell = !done.shortOfMemory && done.problem.empty();
        if (!isWell)
            progress_->Clear();
        if (done.shortOfMemory)
            TellOfShortMemory(input.file);
        else if (!isWell)
            TellOfFile(input.file, done.problem);
        allConverted_ = allConverted_ && isWell;
        anyConverted_ = anyConverted_ || isWell;
    }

    void TellOfFolders() {
        for (const std::string& folder : inputs_.unreadable)
            TellOfFailure(ShownUtf8(Utf8OfName(folder)) + ": the folder cannot be read");
        if (leftOut_ > 0)
            Tell(leftOut_ == 1 ? "1 file was left out: no format fits"
                               : std::to_string(leftOut_) + " files were left out: no format fits");
        for (std::size_t i = 0; i < fitting_.size(); ++i) {
            if (fitting_[i] == 0)
                TellOfFailure(ShownUtf8(Utf8OfName(inputs_.folders[i])) +
                              ": the folder holds no file that a format fits");
        }
    }

    const Options& options_;
    Inputs inputs_;
    std::vector<fs::path> outputs_;    ///< one a file, where each has its own
    std::vector<std::size_t> fitting_; ///< in each folder
    std::optional<Progress> progress_;
    std::size_t leftOut_ = 0;
    bool allConverted_ = true;
    bool anyConverted_ = false;
};

void RunIntoFile(const Options& options, Files& files) {
    OutputFile file;
    if (!file.Open(PathOf(options.outputFile))) {
        files.TellOfFailure(ShownUtf8(Utf8OfName(options.outputFile)) + ": " + kCannotBeWritten);
        return;
    }
    files.ConvertInto(file.Stream());
    if (files.IsAnyConverted() && file.Stream() && !file.Finish())
        files.TellOfFailure("the result could not be written");
}

} // namespace

void Tell(const std::string& text) {
    std::cerr << kProgram << ": " << text << '\n';
}

int Run(const Options& options) {
    Files files(options);
    if (!files.Prepare())
        return kWrongUsage;
    if (!options.outputFolder.empty())
        files.ConvertEach();
    else if (!options.outputFile.empty())
        RunIntoFile(options, files);
    else
        files.ConvertInto(std::cout);
    return files.AreAllConverted() ? kAllConverted : kNotAllConverted;
}

} // namespace convfile::app
