// Nothing is shared between two conversions: two threads converting at once give what one gives,
// and so do some that share an output.

#include "app/SharedOutput.h"
#include "app/Workers.h"
#include "tests/support/Convert.h"
#include "tests/support/Files.h"
#include "views/Conversion.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <new>
#include <sstream>
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

TEST(Threads, ShareOneOutput) {
    const std::vector<Golden> files = GoldenFiles();
    const auto convert = [&](std::size_t i) {
        auto conversion = std::make_unique<views::Conversion>();
        ConvertAs(files[i].format, files[i].Path(), *conversion);
        return conversion;
    };
    std::ostringstream expected;
    views::Sink sink(expected);
    const auto alone = views::MakeOutput(views::kJson, sink, files.size());
    for (std::size_t i = 0; i < files.size(); ++i)
        alone->Add(*convert(i));
    alone->End();
    sink.Flush();

    std::ostringstream text;
    app::SharedOutput output(views::kJson, text, files.size());
    app::Workers<app::SharedOutput::Part> workers(
        files.size(), 4,
        [&](std::size_t i) {
            app::SharedOutput::Part part;
            output.Render(
                *convert(i), [&] { return workers.IsNext(i); }, part);
            return part;
        },
        [&](std::size_t, app::SharedOutput::Part& part) { output.Finish(part); });
    workers.Run([](std::size_t) {});
    EXPECT_TRUE(output.End());
    EXPECT_EQ(text.str(), expected.str());
}

TEST(Workers, TakeOneAfterTheOtherAndStopAtWhatIsThrown) {
    constexpr std::size_t kCount = 2000;
    constexpr std::size_t kNone = kCount;
    for (const std::size_t bad : {kNone, std::size_t{0}, std::size_t{777}, kCount - 1}) {
        std::vector<std::size_t> taken;
        app::Workers<std::size_t> workers(
            kCount, 3, [&](std::size_t i) { return i == bad ? throw std::bad_alloc() : 2 * i; },
            [&](std::size_t i, std::size_t& result) {
                EXPECT_TRUE(workers.IsNext(i) && result == 2 * i) << i;
                taken.push_back(i);
            });
        if (bad == kNone)
            workers.Run([](std::size_t) {});
        else
            EXPECT_THROW(workers.Run([](std::size_t) {}), std::bad_alloc) << bad;
        EXPECT_TRUE(std::ranges::is_sorted(taken, std::less_equal())); // nothing twice
        EXPECT_LE(taken.size(), bad);
        EXPECT_TRUE(bad != kNone || taken.size() == kCount);
    }
}

} // namespace
} // namespace convfile::test
