#pragma once

#include "routines/Text.h"

#include <algorithm>
#include <array>
#include <string_view>

/// The tables of a field controller's job database, as far as they are read. Angles are degrees,
/// lengths metres; keys are whole numbers, and a "fkey" is the key of a row of another table.
namespace convfile::database {

struct JobTable {
    std::string_view name;
    std::array<std::string_view, 9> columns; ///< that are read by their names; empty ones are none
    std::size_t leastColumns = 1;
};

// clang-format off
inline constexpr std::array<JobTable, 10> kJobTables = {{
    {"tblCrdObsSession", {"StartSecondsFrom1970"}},
    {"tblObsEquipment", {"TextId"}},
    // Set-ups. The first three columns are read, in their displayed order: key, point key,
    // instrument height.
    {"tblTsOccups", {}, 3},
    {"tblTsShots", {"keyTsShot", "fkeyTsOccupations", "fkeyTargetStation", "HAngle", "VAngle",
                    "SDistance", "TargetAntHeight", "aFlag", "fkeyCrdRawMeas"}},
    // C1 is north, C2 east.
    {"tblSoPoints", {"keySoPoint", "fkeyStationDef", "Name", "C1", "C2", "C3", "StationType"}},
    {"tblStations", {"keyStation", "fkeySoPoint", "Name", "C1", "C2", "C3", "StationType",
                     "Notes"}},
    {"tblCrdRawMeas", {"keyCrdRawMeas", "MeasExtraType"}},
    {"tblCodesToPts", {"fkeyPoint", "fkeyCodeDef"}},
    {"tblCodeDefs", {"keyCodeDef", "nameCode"}},
    {"tblCrdImageData", {"fkeyShot", "ImageFileName", "ImageType"}},
}};
// clang-format on

/// The table of that name, whatever its letter case, or null.
inline const JobTable* JobTableNamed(std::string_view name) {
    const auto* const found = std::ranges::find_if(
        kJobTables, [&](const JobTable& table) { return EqualIgnoringCase(table.name, name); });
    return found == kJobTables.end() ? nullptr : found;
}

} // namespace convfile::database
