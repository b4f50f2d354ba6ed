#pragma once

#include <string>

#if defined(__cpp_exceptions)
#include <exception>
#include <new>
#endif

/// What kept a conversion from being carried out to its end.
struct Problem {
    bool failed = false;
    bool shortOfMemory = false; ///< that is what failed
    std::string text;           ///< for people, in English; may be empty

    /// Notes a failure; the first one counts. Raises nothing: where memory is short even for the
    /// reason, that it failed must do.
    void Note(const char* reason) noexcept;
};

/// Runs `work`. What it raises ends here and is noted where somebody wants to know: so a destructor
/// that still writes, and an entry function, let nothing out. False where it raised something. The
/// one place that catches in the conversion of files, for builds without exceptions.
template <class Work>
bool Guarded(Problem* problem, Work work) noexcept {
#if defined(__cpp_exceptions)
    const auto note = [problem](const char* reason) {
        if (problem)
            problem->Note(reason);
        return false;
    };
    try {
        work();
    } catch (const std::bad_alloc&) {
        if (problem)
            problem->shortOfMemory = true;
        return note("not enough memory");
    } catch (const std::exception& error) {
        return note(error.what());
    } catch (...) {
        return note("the host raised an error");
    }
#else
    static_cast<void>(problem);
    work();
#endif
    return true;
}

inline void Problem::Note(const char* reason) noexcept {
    if (failed)
        return;
    failed = true;
    Guarded(nullptr, [&] { text = reason; });
}
