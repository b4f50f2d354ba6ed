#pragma once

#include <string>

namespace convfile::database {

/// The text of a date, whichever engine read it and whatever the user's settings say:
/// day/month/year, then the time where it is not midnight, to the nearest second; the time alone on
/// day 0. `days` count from 30 December 1899. Empty where that is not in the years 100 to 9999.
std::string TextOfDate(double days);

} // namespace convfile::database
