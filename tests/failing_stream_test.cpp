// A stream that fails midway ends a file like its end does. This program's own fread() stands
// before the C library's and gives up after as many bytes as it is told.

#include "tests/support/Convert.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <dlfcn.h>
#include <limits>

namespace {

std::size_t bytesUntilFailure = std::numeric_limits<std::size_t>::max();

} // namespace

extern "C" __attribute__((visibility("default"))) std::size_t
fread(void* data, std::size_t size, std::size_t count, std::FILE* file) {
    using Fread = std::size_t(void*, std::size_t, std::size_t, std::FILE*);
    static auto* const real = reinterpret_cast<Fread*>(dlsym(RTLD_NEXT, "fread"));
    const std::size_t wanted = std::min(size * count, bytesUntilFailure);
    const std::size_t read = real(data, 1, wanted, file);
    bytesUntilFailure -= read;
    return size > 0 ? read / size : 0;
}

namespace convfile::test {
namespace {

TEST(EveryFormat, TakesAReadErrorForTheEnd) {
    const TempFolder folder;
    for (const Golden& golden : GoldenFiles()) {
        const std::string bytes = ReadBytes(golden.file);
        const std::string path = folder.Write(golden.file.filename().string(), bytes);
        for (const std::size_t part : {0U, 1U, 2U, 3U, 4U}) {
            const std::size_t length = bytes.size() * part / 5;
            bytesUntilFailure = length;
            const std::string failed = ConvertToJson(golden.format, path);
            bytesUntilFailure = std::numeric_limits<std::size_t>::max();
            folder.Write(golden.file.filename().string(), bytes.substr(0, length));
            EXPECT_EQ(failed, ConvertToJson(golden.format, path)) << golden.file;
            folder.Write(golden.file.filename().string(), bytes);
        }
    }
}

} // namespace
} // namespace convfile::test
