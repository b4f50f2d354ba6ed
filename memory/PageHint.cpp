#include "memory/PageHint.h"

#if defined(__linux__)
#include <cstdint>
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace convfile::memory {

#if defined(__linux__) && defined(MADV_POPULATE_WRITE)

void WillBeWritten(void* memory, std::size_t size) {
    const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const auto begin = (reinterpret_cast<std::uintptr_t>(memory) + page - 1) / page * page;
    const auto end = (reinterpret_cast<std::uintptr_t>(memory) + size) / page * page;
    if (begin < end) {
        auto* const first = reinterpret_cast<void*>(begin); // NOLINT(performance-no-int-to-ptr)
        madvise(first, end - begin, MADV_POPULATE_WRITE);
    }
}

#else

void WillBeWritten(void*, std::size_t) {}

#endif

} // namespace convfile::memory
