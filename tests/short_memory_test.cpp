// A conversion of which one allocation fails, each in turn: that of this program's own operator
// new, or of the database in memory.

#include "app/SharedOutput.h"
#include "memory/PointLibrary.h"
#include "tests/support/Convert.h"
#include "tests/support/Files.h"
#include "views/Conversion.h"
#include "views/Output.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <new>
#include <sqlite3.h>
#include <sstream>
#include <string>
#include <utility>

namespace {

constexpr long kNever = std::numeric_limits<long>::max();
long allocationsLeft = kNever;

bool FailsNow() {
    return allocationsLeft != kNever && allocationsLeft-- == 0;
}

/// Whether there is memory for a file to be opened.
bool opensFiles = true;

sqlite3_mem_methods sqliteMemory;

void* AllocateForSqlite(int size) {
    return FailsNow() ? nullptr : sqliteMemory.xMalloc(size);
}

void* ReallocateForSqlite(void* memory, int size) {
    return FailsNow() ? nullptr : sqliteMemory.xRealloc(memory, size);
}

} // namespace

void* operator new(std::size_t size) {
    void* const memory = FailsNow() ? nullptr : std::malloc(size);
    if (!memory)
        throw std::bad_alloc();
    return memory;
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

extern "C" __attribute__((visibility("default"))) std::FILE* fopen(const char* name,
                                                                   const char* mode) {
    if (std::exchange(opensFiles, true))
        return fopen64(name, mode);
    errno = ENOMEM;
    return nullptr;
}

namespace convfile::test {
namespace {

#if defined(CONVFILE_SANITIZED) // makes each attempt at a job database three times as slow
constexpr long kDatabaseStep = 3;
#else
constexpr long kDatabaseStep = 1;
#endif

struct Attempt {
    views::Conversion result;
    Problem problem;
    bool hadEnough = false; ///< no allocation failed
};

/// Converts a file with that allocation failing.
void ConvertFailing(const Golden& golden, const std::string& bytes, long failing,
                    Attempt& attempt) {
    const Format& format = *FormatByName(golden.format);
    std::string name = golden.Path();
    views::Conversion& result = attempt.result;
    result.path = name;
    const bool isDatabase = format.kind == FormatKind::Database;
    memory::PointLibrary pointLibrary(result.notifications);
    memory::DrawingEngine drawing(result.notifications);
    allocationsLeft = failing;
    result.converted = format.convert(
        {.fieldBook = result.fieldBook,
         .cadastralDocument = &result.document,
         .pointLibrary = &pointLibrary,
         .drawing = &drawing,
         .preparation = {.source = isDatabase ? ByteSource() : ByteSource::Memory(bytes),
                         .problem = &attempt.problem}},
        &name);
    attempt.hadEnough = allocationsLeft >= 0;
    allocationsLeft = kNever;
    result.messages = memory::TakeMessages();
    result.cadastral = format.kind == FormatKind::Cadastral;
}

TEST(EveryFormat, SaysThatAFileDoesNotOpenForWantOfMemory) {
    for (const Golden& golden : GoldenFiles()) {
        views::Conversion result;
        opensFiles = false;
        ConvertAs(golden.format, golden.Path(), result);
        EXPECT_FALSE(result.converted) << golden.file;
        EXPECT_EQ(result.problem, "not enough memory") << golden.file;
    }
}

/// Converter and destructor, which may still write, alike. SQLite does without some of what it asks
/// for: an import may be whole all the same.
TEST(EveryFormat, IsWholeOrFailsWhicheverAllocationFails) {
    ASSERT_EQ(sqlite3_config(SQLITE_CONFIG_GETMALLOC, &sqliteMemory), SQLITE_OK);
    sqlite3_mem_methods failing = sqliteMemory;
    failing.xMalloc = AllocateForSqlite;
    failing.xRealloc = ReallocateForSqlite;
    ASSERT_EQ(sqlite3_config(SQLITE_CONFIG_MALLOC, &failing), SQLITE_OK);
    long failedAtAll = 0;
    for (const Golden& golden : GoldenFiles()) {
        const std::string bytes = ReadBytes(golden.file);
        const bool isDatabase = golden.format == "tlsv";
        if (isDatabase ? golden.file.stem() != "day-jet4" : bytes.size() > 2000)
            continue;
        const std::string expected = ConvertToJson(golden.format, golden.Path());
        const long step = isDatabase ? kDatabaseStep : 1;
        long failed = 0;
        long allocation = 0;
        for (bool hadEnough = false; !hadEnough; allocation += step) {
            Attempt attempt;
            ConvertFailing(golden, bytes, allocation, attempt);
            hadEnough = attempt.hadEnough;
            const bool converted = attempt.result.converted;
            EXPECT_TRUE(converted == hadEnough || (converted && isDatabase)) << golden.file;
            EXPECT_EQ(attempt.problem.text, converted ? "" : "not enough memory") << golden.file;
            if (converted) {
                EXPECT_EQ(JsonOf(attempt.result), expected) << golden.file << ' ' << allocation;
            } else if (isDatabase) {
                EXPECT_TRUE(attempt.result.messages.empty()) << "a driver is not what is missing";
            }
            failed += converted ? 0 : 1;
        }
        EXPECT_GT(2 * failed, allocation / step - 2) << golden.file;
        failedAtAll += failed;
    }
    EXPECT_GT(failedAtAll, 2000);
}

TEST(SharedOutput, KeepsATextWholeOrFails) {
    const Golden golden = GoldenFiles().front();
    views::Conversion conversion;
    ConvertAs(golden.format, golden.Path(), conversion);
    std::ostringstream nowhere;
    for (const std::string& view : views::Views()) {
        app::SharedOutput output(view, nowhere, 2);
        std::string expected;
        bool hadEnough = false;
        for (long failing = kNever; !hadEnough; failing = failing == kNever ? 0 : failing + 1) {
            app::SharedOutput::Part part;
            bool failed = false;
            allocationsLeft = failing;
            try {
                output.Render(
                    conversion, [] { return allocationsLeft < 0; }, part);
            } catch (const std::bad_alloc&) {
                failed = true;
            }
            hadEnough = failing != kNever && allocationsLeft >= 0;
            allocationsLeft = kNever;
            std::string text;
            for (const std::string& piece : part.kept)
                text += piece;
            if (failing == kNever)
                expected = text;
            EXPECT_EQ(failed, failing != kNever && !hadEnough) << view << ' ' << failing;
            EXPECT_FALSE(part.isBegun) << view << ' ' << failing << ": what failed is not written";
            EXPECT_TRUE(failed || text == expected) << view << ' ' << failing;
        }
        EXPECT_GT(expected.size(), 100U) << view;
    }
}

} // namespace
} // namespace convfile::test
