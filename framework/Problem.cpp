#include "framework/Problem.h"

void Problem::Note(const char* reason) noexcept {
    if (failed)
        return;
    failed = true;
    // Where memory is short even for the reason, that it failed must do.
    Guarded(nullptr, [&] { text = reason; });
}
