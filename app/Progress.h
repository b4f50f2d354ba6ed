#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace convfile::app {

/// A line on the terminal that says how far a run is, drawn over itself. None where standard error
/// is no terminal, and for a single file.
class Progress {
public:
    explicit Progress(std::size_t files);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress() { Clear(); }

    /// So many are done, and this one is next; drawn a few times a second.
    void Show(std::size_t done, const std::string& file);
    /// Takes the line away: something else is to be written.
    void Clear();

private:
    using Clock = std::chrono::steady_clock;

    std::size_t files_;
    std::size_t columns_; ///< of the terminal; 0: none
    std::size_t shown_ = 0;
    Clock::time_point start_ = Clock::now();
    Clock::time_point drawn_;
};

/// "123 of 500, 0:45 left: name", its name cut in front where it has no room in so many columns.
std::string ProgressLine(std::size_t done, std::size_t files, double secondsSoFar,
                         const std::string& name, std::size_t columns);

} // namespace convfile::app
