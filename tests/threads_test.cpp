// Nothing is shared between two conversions: two threads converting at once give what one gives.

#include "tests/support/Convert.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <thread>

namespace convfile::test {
namespace {

std::vector<std::string> ConvertAll(const std::vector<Golden>& files) {
    std::vector<std::string> results;
    results.reserve(files.size());
    for (const Golden& golden : files)
        for (const Rules rules : {Rules::Classic, Rules::Complete})
            results.push_back(ConvertToJson(golden.format, golden.Path(), rules));
    return results;
}

TEST(Threads, TwoConversionsAtOnceDoNotMeet) {
    const std::vector<Golden> files = GoldenFiles();
    const std::vector<std::string> expected = ConvertAll(files);
    std::vector<std::string> first;
    std::vector<std::string> second;
    std::thread one([&] { first = ConvertAll(files); });
    std::thread two([&] { second = ConvertAll(files); });
    one.join();
    two.join();
    EXPECT_EQ(first, expected);
    EXPECT_EQ(second, expected);
}

} // namespace
} // namespace convfile::test
