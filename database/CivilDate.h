#pragma once

#include <cstdint>

namespace convfile::database {

/// A date of the Gregorian calendar.
struct CivilDate {
    std::int64_t year;
    int month; ///< 1 to 12
    int day;   ///< 1 to 31
};

/// The date that many days after 1 January 1970 (before it where negative).
CivilDate CivilFromDays(std::int64_t days);

} // namespace convfile::database
