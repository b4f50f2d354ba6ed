#pragma once

#include "export/Work.h"

#include <string>
#include <utility>

namespace convfile::exports {

/// The coordinates of a record, absent where none were set.
template <class Record>
Coordinates CoordinatesOf(const Record& record) {
    const auto& extras = record.GetExtras();
    if (!extras.coordinatesSet)
        return {};
    return {extras.coordinates.x, extras.coordinates.y, extras.coordinates.z};
}

template <class Record>
Point PointFrom(const Record& record) {
    return {.name = record.GetNome(),
            .code = record.Code(),
            .note = record.GetExtras().note,
            .targetHeight = record.TargetHeight(),
            .reading = {.slopeDistance = record.SlopeDistance(),
                        .zenithAngle = record.ZenithAngle(),
                        .horizontalAngle = record.HorizontalAngle()},
            .coordinates = CoordinatesOf(record),
            .line = record.Line()};
}

template <class Record>
SetUp SetUpFrom(const Record& record) {
    SetUp setUp{.name = record.GetNome(),
                .code = record.Identifier(),
                .instrumentHeight = record.InstrumentHeight(),
                .orientation = record.Orientation(),
                .coordinates = CoordinatesOf(record),
                .line = record.Line()};
    setUp.points.reserve(record.points.size());
    for (const auto& point : record.points)
        setUp.points.push_back(PointFrom(*point));
    return setUp;
}

/// The work in a field book that answers as that of the host in memory does; `file` is the bare
/// name of the file that it was filled from, in UTF-8. The book has to outlive the result.
template <class Book>
Work WorkFrom(const Book& book, std::string file) {
    Work work{.file = std::move(file)};
    work.jobs.reserve(book.Jobs().size());
    for (const auto& job : book.Jobs()) {
        Job& copy = work.jobs.emplace_back(Job{.name = job->Name()});
        copy.setUps.reserve(job->stations.size());
        for (const auto& station : job->stations)
            copy.setUps.push_back(SetUpFrom(*station));
    }
    for (const auto& point : book.OrientationPoints())
        work.knownPoints.push_back({point->GetNome(), CoordinatesOf(*point)});
    return work;
}

} // namespace convfile::exports
