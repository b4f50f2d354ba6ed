// A call of each trigonometric function, beside the C library's, over angles of a whole turn,
// tangents of both sides of 1, and cosines.

#include "routines/Trigonometry.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <random>

namespace {

/// A thousand arguments between two bounds.
std::array<double, 1024> ArgumentsBetween(double from, double to) {
    std::mt19937_64 random(1);
    std::array<double, 1024> arguments{};
    for (double& argument : arguments)
        argument = std::uniform_real_distribution(from, to)(random);
    return arguments;
}

template <class Function>
void Call(benchmark::State& state, Function function, double from, double to) {
    const auto arguments = ArgumentsBetween(from, to);
    std::size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(function(arguments[++i % arguments.size()]));
}

constexpr double kTurn = 6.28;

BENCHMARK_CAPTURE(Call, Sin, Sin, 0, kTurn);
BENCHMARK_CAPTURE(
    Call, std_sin, [](double x) { return std::sin(x); }, 0, kTurn);
BENCHMARK_CAPTURE(Call, Cos, Cos, 0, kTurn);
BENCHMARK_CAPTURE(
    Call, std_cos, [](double x) { return std::cos(x); }, 0, kTurn);
BENCHMARK_CAPTURE(Call, ArcTan, ArcTan, -20, 20);
BENCHMARK_CAPTURE(
    Call, std_atan, [](double x) { return std::atan(x); }, -20, 20);
BENCHMARK_CAPTURE(
    Call, ArcTan2, [](double x) { return ArcTan2(x, 100 - x); }, -500, 500);
BENCHMARK_CAPTURE(
    Call, std_atan2, [](double x) { return std::atan2(x, 100 - x); }, -500, 500);
BENCHMARK_CAPTURE(Call, ArcCos, ArcCos, -1, 1);
BENCHMARK_CAPTURE(
    Call, std_acos, [](double x) { return std::acos(x); }, -1, 1);
BENCHMARK_CAPTURE(Call, Sin_of_huge, Sin, 1e300, 1e308);

} // namespace

BENCHMARK_MAIN();
