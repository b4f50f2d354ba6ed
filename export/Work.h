#pragma once

#include "routines/Numbers.h"
#include "routines/Reading.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// What the outputs are made from: a field book in plain structs. A host fills them from its own
/// book (FromBook.h: from one with the records of the host in memory).
///
/// Texts are bytes in Windows-1252 and belong to the book, which has to last as long as these.
/// Lengths are metres, angles gon; each is the no-value marker where it is absent. A line is that
/// of the file on which the record begins, from 1; 0: there is none.
namespace convfile::exports {

/// Where something is: x east, y north, z height.
struct Coordinates {
    double x = kNoValue;
    double y = kNoValue;
    double z = kNoValue;
};

/// A record of what was observed from a set-up, or of a point that has coordinates.
struct Point {
    std::string_view name = {};
    std::string_view code = {};
    std::string_view note = {};
    double targetHeight = kNoValue;
    Reading reading = {};
    Coordinates coordinates = {};
    std::uint64_t line = 0;
};

/// An instrument over a place, with what it observed.
struct SetUp {
    std::string_view name = {};
    std::string_view code = {};
    double instrumentHeight = kNoValue;
    double orientation = kNoValue; ///< azimuth less reading of the circle
    Coordinates coordinates = {};
    std::uint64_t line = 0;
    std::vector<Point> points = {};
};

struct Job {
    std::string_view name = {};
    std::vector<SetUp> setUps = {};
};

/// A point whose coordinates were known before the work: the book's orientation points.
struct KnownPoint {
    std::string_view name = {};
    Coordinates coordinates = {};
};

/// What one file gave.
struct Work {
    std::string file = {}; ///< its bare name, UTF-8
    std::vector<Job> jobs = {};
    std::vector<KnownPoint> knownPoints = {};
};

} // namespace convfile::exports
