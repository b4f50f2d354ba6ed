// Draws a field book of its own: needs neither converters nor a host.

#include "export/Output.h"
#include "routines/OutputBuffer.h"

#include <iostream>

int main() {
    convfile::exports::Work work{.file = "own"};
    auto& setUp = work.jobs.emplace_back().setUps.emplace_back();
    setUp.name = "S1";
    setUp.points.push_back({.name = "1", .reading = {10, 100, 100}});
    OutputBuffer out(std::cout);
    convfile::exports::FindOutputKind("points")->make(out)->Add(work);
}
