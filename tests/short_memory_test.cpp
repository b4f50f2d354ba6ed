// An import of which one allocation fails, each in turn: that of this program's own operator new,
// and those of the database in memory.

#include "app/Conversion.h"
#include "memory/PointLibrary.h"
#include "tests/support/Convert.h"
#include "tests/support/Files.h"
#include "tests/support/JobDatabase.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <new>
#include <sqlite3.h>

namespace {

constexpr long kNever = std::numeric_limits<long>::max();
long allocationsLeft = kNever;

bool FailsNow() {
    return allocationsLeft != kNever && allocationsLeft-- == 0;
}

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

namespace convfile::test {
namespace {

struct Import {
    app::Conversion result;
    Problem problem;
    long allocations = 0; ///< of those that it was given
};

/// Imports a job with that allocation failing.
void ImportFailing(const std::string& path, long failing, Import& import) {
    import.result.path = path;
    memory::PointLibrary pointLibrary(import.result.notifications);
    memory::DrawingEngine drawing(import.result.notifications);
    std::string fileName = path;
    allocationsLeft = failing;
    import.result.converted = FormatByName("tlsv")->convert({.fieldBook = import.result.fieldBook,
                                                             .pointLibrary = &pointLibrary,
                                                             .drawing = &drawing,
                                                             .preparation =
                                                             {.problem = &import.problem }},
                                                            &fileName);
    import.allocations = failing - allocationsLeft;
    allocationsLeft = kNever;
    import.result.messages = memory::TakeMessages();
}

TEST(JobImport, IsWholeOrFailsWhicheverAllocationFails) {
    ASSERT_EQ(sqlite3_config(SQLITE_CONFIG_GETMALLOC, &sqliteMemory), SQLITE_OK);
    sqlite3_mem_methods failing = sqliteMemory;
    failing.xMalloc = AllocateForSqlite;
    failing.xRealloc = ReallocateForSqlite;
    ASSERT_EQ(sqlite3_config(SQLITE_CONFIG_MALLOC, &failing), SQLITE_OK);

    const TempFolder folder;
    const std::string path =
        folder.Write("job.tlsv", access::Write(access::Version::Jet4, RealisticJob()));
    Import whole;
    ImportFailing(path, kNever - 1, whole);
    ASSERT_TRUE(whole.result.converted);
    const std::string expected = JsonOf(whole.result);
    ASSERT_GT(whole.allocations, 1000);
    long failed = 0;
    for (long i = 0; i < whole.allocations; ++i) {
        Import import;
        ImportFailing(path, i, import);
        if (import.result.converted) {
            EXPECT_EQ(JsonOf(import.result), expected) << "allocation " << i;
        } else {
            EXPECT_EQ(import.problem.text, "not enough memory") << "allocation " << i;
            EXPECT_TRUE(import.result.messages.empty()) << "a driver is not what is missing";
            ++failed;
        }
    }
    EXPECT_GT(failed, whole.allocations / 2);
    RecordProperty("allocations", static_cast<int>(whole.allocations));
    RecordProperty("failed", static_cast<int>(failed));
}

/// The same for every other format, its converter and its destructor, which may still write,
/// included.
TEST(EveryFormat, IsWholeOrFailsWhicheverAllocationFails) {
    long failed = 0;
    for (const Golden& golden : GoldenFiles()) {
        const Format& format = *FormatByName(golden.format);
        const std::string bytes = ReadBytes(golden.file);
        if (format.kind == FormatKind::Database || bytes.size() > 2000)
            continue;
        const std::string expected = ConvertToJson(golden.format, golden.Path());
        std::string name = golden.Path();
        for (long i = 0;; ++i) {
            app::Conversion result;
            result.path = name;
            Problem problem;
            allocationsLeft = i;
            result.converted = format.convert(
                {.fieldBook = result.fieldBook,
                 .cadastralDocument = &result.document,
                 .preparation = {.source = ByteSource::Memory(bytes), .problem = &problem}},
                &name);
            const bool enough = allocationsLeft >= 0;
            allocationsLeft = kNever;
            result.messages = memory::TakeMessages();
            result.cadastral = format.kind == FormatKind::Cadastral;
            EXPECT_EQ(result.converted, enough) << golden.file << " allocation " << i;
            EXPECT_EQ(problem.text, enough ? "" : "not enough memory") << golden.file;
            failed += enough ? 0 : 1;
            if (enough) {
                EXPECT_EQ(JsonOf(result), expected) << golden.file;
                break;
            }
        }
    }
    EXPECT_GT(failed, 1000);
}

} // namespace
} // namespace convfile::test
