#include "app/Progress.h"

#include "app/Platform.h"
#include "routines/FileName.h"
#include "views/Display.h"

#include <algorithm>
#include <cmath>
#include <iostream>

namespace convfile::app {

using namespace views;

namespace {

constexpr std::chrono::milliseconds kBetweenDrawings{100};

/// Whole minutes and seconds.
std::string ShownTime(double seconds) {
    const auto whole = static_cast<long long>(std::ceil(seconds));
    const std::string rest = std::to_string(whole % 60);
    return std::to_string(whole / 60) + (rest.size() < 2 ? ":0" : ":") + rest;
}

/// The end of a shown text, where it is too wide.
std::string CutInFront(const std::string& shown, std::size_t columns) {
    constexpr std::string_view kCut = "...";
    std::size_t width = ShownWidth(shown);
    if (width <= columns)
        return shown;
    if (columns < kCut.size())
        return {};
    std::size_t begin = 0;
    while (width > columns - kCut.size()) {
        do { // one character
            ++begin;
        } while (begin < shown.size() &&
                 (static_cast<unsigned char>(shown[begin]) & 0xC0U) == 0x80);
        --width;
    }
    return std::string(kCut) + shown.substr(begin);
}

} // namespace

std::string ProgressLine(std::size_t done, std::size_t files, double secondsSoFar,
                         const std::string& name, std::size_t columns) {
    std::string line = std::to_string(done) + " of " + std::to_string(files);
    if (done > 0) {
        const double left =
            secondsSoFar / static_cast<double>(done) * static_cast<double>(files - done);
        line += ", " + ShownTime(left) + " left";
    }
    line += ": ";
    return line + CutInFront(ShownUtf8(name), columns - std::min(columns, line.size()));
}

Progress::Progress(std::size_t files)
    : files_(files), columns_(files > 1 ? ColumnsOfTerminal() : 0) {}

void Progress::Show(std::size_t done, const std::string& file) {
    const Clock::time_point now = Clock::now();
    if (columns_ == 0 || now - drawn_ < kBetweenDrawings)
        return;
    drawn_ = now;
    const std::chrono::duration<double> soFar = now - start_;
    const std::string line =
        ProgressLine(done, files_, soFar.count(), Utf8OfName(file), columns_ - 1);
    const std::size_t width = ShownWidth(line);
    std::cerr << '\r' << line << std::string(shown_ - std::min(shown_, width), ' ') << std::flush;
    shown_ = width;
}

void Progress::Clear() {
    if (shown_ == 0)
        return;
    std::cerr << '\r' << std::string(shown_, ' ') << '\r' << std::flush;
    shown_ = 0;
    drawn_ = {};
}

} // namespace convfile::app
