#pragma once

#include "app/Conversion.h"

#include <memory>
#include <ostream>
#include <string>
#include <string_view>

namespace convfile::app {

/// Where results go: a buffer in front of a stream.
class Sink {
public:
    explicit Sink(std::ostream& stream) : stream_(stream) {}
    Sink(const Sink&) = delete;
    Sink& operator=(const Sink&) = delete;
    ~Sink() { Flush(); }

    void Put(char c) {
        if (used_ == kSize)
            Empty();
        buffer_[used_++] = c;
    }
    void Write(std::string_view text) {
        for (const char c : text)
            Put(c);
    }
    /// Hands everything on to the stream and further to the system.
    void Flush();
    /// True once something could not be written.
    bool Failed() const { return !stream_; }

private:
    static constexpr std::size_t kSize = 64UL * 1024;

    void Empty();

    std::ostream& stream_;
    std::unique_ptr<char[]> buffer_ = std::make_unique_for_overwrite<char[]>(kSize);
    std::size_t used_ = 0;
};

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
inline constexpr std::string_view kViews[] = {kSummary, kTable, kJson, kJsonLines};

/// The way of that name; `files` is how many results will come. Null for an unknown name.
std::unique_ptr<Output> MakeOutput(std::string_view name, Sink& sink, std::size_t files);

} // namespace convfile::app
