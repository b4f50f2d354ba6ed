#pragma once

#include "app/Conversion.h"
#include "routines/OutputBuffer.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace convfile::app {

/// Where results go.
using Sink = OutputBuffer;

/// One way of showing results, file by file as they are done.
class Output {
public:
    Output() = default;
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;
    virtual ~Output() = default;

    virtual void Add(const Conversion& conversion) = 0;
    virtual void End() {}
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

/// The way of that name; `files` is how many results will come. Null for an unknown name.
std::unique_ptr<Output> MakeOutput(std::string_view name, Sink& sink, std::size_t files);

} // namespace convfile::app
