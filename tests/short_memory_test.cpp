// An import of which one allocation fails, each in turn: that of this program's own operator new,
// and those of the database in memory.

#include "app/Conversion.h"
#include "database/ConvFileTLSV.h"
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
    std::string problem;
    long allocations = 0; ///< of those that it was given
};

/// Imports a job with that allocation failing.
void ImportFailing(const std::string& path, long failing, Import& import) {
    import.result.path = path;
    memory::PointLibrary pointLibrary(import.result.notifications);
    memory::DrawingEngine drawing(import.result.notifications);
    std::string fileName = path;
    {
        CConvFileTLSV converter(import.result.fieldBook, pointLibrary, drawing, &fileName);
        converter.TellProblemTo(&import.problem);
        allocationsLeft = failing;
        import.result.converted = converter.Esegui();
    }
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
            EXPECT_EQ(import.problem, "not enough memory") << "allocation " << i;
            EXPECT_TRUE(import.result.messages.empty()) << "a driver is not what is missing";
            ++failed;
        }
    }
    EXPECT_GT(failed, whole.allocations / 2);
    RecordProperty("allocations", static_cast<int>(whole.allocations));
    RecordProperty("failed", static_cast<int>(failed));
}

} // namespace
} // namespace convfile::test
