#include "database/CivilDate.h"

namespace convfile::database {

// Years counted from March have their leap day at the end, and every 400 of them (an era) have the
// same number of days; so the date follows by divisions.
CivilDate CivilFromDays(std::int64_t days) {
    constexpr std::int64_t kDaysOfEra = 146097;
    constexpr std::int64_t kFromMarchOfYear0 = 719468; // to 1 January 1970
    days += kFromMarchOfYear0;
    const std::int64_t era = (days >= 0 ? days : days - kDaysOfEra + 1) / kDaysOfEra;
    const std::int64_t dayOfEra = days - era * kDaysOfEra;
    const std::int64_t yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int64_t monthFromMarch = (5 * dayOfYear + 2) / 153;
    const auto day = static_cast<int>(dayOfYear - (153 * monthFromMarch + 2) / 5 + 1);
    const auto month =
        static_cast<int>(monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9);
    return {yearOfEra + era * 400 + (month <= 2 ? 1 : 0), month, day};
}

} // namespace convfile::database
