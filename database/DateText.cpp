#include "database/DateText.h"

#include "routines/TskFormat.h"

#include <chrono>
#include <cmath>

namespace convfile::database {

std::string TextOfDate(double days) {
    using namespace std::chrono;
    constexpr sys_days kDayZero{year{1899} / December / 30};
    constexpr double kYear100 = -657434;
    constexpr double kYear10000 = 2958466;
    if (!(days >= kYear100 && days < kYear10000))
        return {};
    // The time counts from midnight also before the first day: -1.25 is 29 December, 6 o'clock.
    const double day = std::trunc(days);
    const sys_seconds moment = kDayZero + std::chrono::days(std::lround(day)) +
                               seconds(std::lround(std::fabs(days - day) * 86400));
    const auto midnight = floor<std::chrono::days>(moment);
    const year_month_day date(midnight);
    const hh_mm_ss time(moment - midnight);
    char dateText[32];
    char timeText[32];
    tsk_sprintf(dateText, "%02d/%02d/%04d", static_cast<unsigned>(date.day()),
                static_cast<unsigned>(date.month()), static_cast<int>(date.year()));
    tsk_sprintf(timeText, "%02d:%02d:%02d", static_cast<int>(time.hours().count()),
                static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()));
    if (midnight == kDayZero)
        return timeText;
    return moment == midnight ? std::string(dateText) : std::string(dateText) + " " + timeText;
}

} // namespace convfile::database
