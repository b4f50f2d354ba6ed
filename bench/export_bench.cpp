// What the views of a field book cost once it is there, each beside the summary; and the plan: of
// many points, of a chain of set-ups in the best and the worst order, of set-ups that have one name
// in common. CPU time; bytes are those of the view.

#include "bench/GsiFile.h"
#include "export/Plan.h"
#include "views/Output.h"

#include <benchmark/benchmark.h>

#include <deque>
#include <ostream>
#include <streambuf>
#include <string>

namespace {

using namespace convfile;
using namespace convfile::bench;

constexpr long kPoints = 200000;

/// Counts what is written to it, and keeps nothing.
class Counter final : public std::streambuf {
public:
    long Count() const { return count_; }

private:
    std::streamsize xsputn(const char*, std::streamsize size) override {
        count_ += size;
        return size;
    }
    int_type overflow(int_type c) override {
        ++count_;
        return traits_type::not_eof(c);
    }

    long count_ = 0;
};

const views::Conversion& Book() {
    static const auto book = [] {
        auto conversion = std::make_unique<views::Conversion>();
        Convert("gsi", GsiFile(kPoints), *conversion);
        return conversion;
    }();
    return *book;
}

void MakeView(benchmark::State& state, const std::string& view) {
    const views::Conversion& book = Book();
    long bytes = 0;
    for (auto _ : state) {
        Counter counter;
        std::ostream stream(&counter);
        {
            views::Sink sink(stream);
            const auto output = views::MakeOutput(view, sink, 1);
            output->Add(book);
            output->End();
        }
        bytes = counter.Count();
    }
    state.SetBytesProcessed(state.iterations() * bytes);
    state.SetItemsProcessed(state.iterations() * kPoints);
}

/// A traverse: each set-up sights the one before and the next, and points around.
class Chain {
public:
    Chain(long setUps, long points, bool backwards) {
        for (long i = 0; i <= setUps + 1; ++i)
            names_.push_back("S" + std::to_string(i));
        auto& chain = work_.jobs.emplace_back().setUps;
        for (long k = 0; k < setUps; ++k) {
            const auto i = static_cast<std::size_t>(backwards ? setUps - k : k + 1);
            exports::SetUp& setUp = chain.emplace_back();
            setUp.name = names_[i];
            setUp.points = {Seen(names_[i - 1], 300), Seen(names_[i + 1], 100)};
            for (long p = 0; p < points; ++p)
                setUp.points.push_back(Seen({}, static_cast<double>(p)));
        }
        work_.knownPoints = {{"S0", {0, 0, 0}}, {"S1", {50, 0, 0}}};
    }
    const exports::Work& Get() const { return work_; }

private:
    static exports::Point Seen(std::string_view name, double direction) {
        return {.name = name, .reading = {50, 100, direction}};
    }

    std::deque<std::string> names_;
    exports::Work work_;
};

void Measure(benchmark::State& state, const exports::Work& work) {
    for (auto _ : state)
        benchmark::DoNotOptimize(exports::MakePlan(work).places.data());
}

void PlanOfChain(benchmark::State& state, bool backwards) {
    const Chain chain(state.range(0), state.range(1), backwards);
    Measure(state, chain.Get());
}

/// Set-ups without a name that sight one name each, all the same.
void PlanOfOneName(benchmark::State& state) {
    exports::Work work;
    work.jobs.emplace_back().setUps.resize(static_cast<std::size_t>(state.range(0)));
    for (auto& setUp : work.jobs[0].setUps)
        setUp.points.push_back({.name = "1", .reading = {50, 100, 0}});
    Measure(state, work);
}

} // namespace

int main(int argc, char** argv) {
    for (const std::string& view : views::Views()) {
        benchmark::RegisterBenchmark(("View/" + view).c_str(), MakeView, view)
            ->Unit(benchmark::kMillisecond);
    }
    benchmark::RegisterBenchmark("Plan/chain", PlanOfChain, false)
        ->Args({1000, 100})
        ->Args({10000, 0})
        ->Args({20000, 0})
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("Plan/chain_backwards", PlanOfChain, true)
        ->Args({10000, 0})
        ->Args({20000, 0})
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("Plan/one_name", PlanOfOneName)
        ->Arg(10000)
        ->Arg(100000)
        ->Unit(benchmark::kMillisecond);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
