#pragma once

#include <atomic>
#include <filesystem>
#include <functional>

namespace convfile::app {

/// A file that is not whole yet and must not be left behind: where the program is interrupted
/// (Ctrl-C, told to end, a pipe without a reader) it is removed before the program ends. One object
/// is used by one thread at a time; any number of threads have some.
class Leftover {
public:
    Leftover() = default;
    Leftover(const Leftover&) = delete;
    Leftover& operator=(const Leftover&) = delete;
    ~Leftover() {
        End([] {});
    }

    /// Makes the file with `make`, which says whether it did; no interrupt comes in between. False
    /// also where too many are unfinished.
    bool Make(const std::filesystem::path& path, const std::function<bool()>& make);
    /// Ends its being unfinished with `end`, which moves it to its place or removes it. Does not
    /// come back where an interrupt was first.
    void End(const std::function<void()>& end);

    /// How many there may be at once.
    static constexpr std::size_t kMost = 512;

    struct Slot;

private:
    std::filesystem::path path_; ///< stays as it is while the slot has it
    Slot* slot_ = nullptr;
};

} // namespace convfile::app
