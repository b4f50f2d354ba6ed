#pragma once

#include "routines/OutputBuffer.h"
#include "views/Conversion.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace convfile::views {

/// Where results go.
using Sink = OutputBuffer;

/// One way of showing results, file by file as they are done.
class Output {
public:
    explicit Output(Sink& sink) : sink_(sink) {}
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;
    virtual ~Output() = default;

    void Add(const Conversion& conversion) {
        Separate();
        Write(conversion);
    }
    /// Begins with one that Render makes; its text goes to the sink from here on.
    void Begin() { Separate(); }
    virtual void End() {}

protected:
    Sink& Out() { return sink_; }

private:
    /// Writes what stands between this file and the one before.
    virtual void Separate() {}
    virtual void Write(const Conversion& conversion) = 0;

    Sink& sink_;
};

/// Names of the ways, for the command line.
inline constexpr std::string_view kSummary = "summary";
inline constexpr std::string_view kTable = "table";
inline constexpr std::string_view kJson = "json";
inline constexpr std::string_view kJsonLines = "jsonl";
/// All of them, those made by export/ among them.
std::vector<std::string> Views();

/// True for a drawing, which shows one file.
bool TakesOneFile(std::string_view view);

/// The way of that name; `files` is how many results may come. Null for an unknown name.
std::unique_ptr<Output> MakeOutput(std::string_view name, Sink& sink, std::size_t files);

/// Hands on what is shown of one file among several, without what stands before, between and behind
/// them: in pieces, as a long text that grows would be copied, and asked of the system, again and
/// again. `take` must not throw: streams keep to themselves what is thrown below them.
void Render(std::string_view view, const Conversion& conversion,
            const std::function<void(std::string_view piece)>& take);

/// The extension of a file of that kind alone.
std::string_view ExtensionOf(std::string_view view);

} // namespace convfile::views
