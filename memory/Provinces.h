#pragma once

#include <string_view>

namespace convfile::memory {

/// The two-letter abbreviation of an Italian province, by its name in Windows-1252, whatever the
/// letter case; also by the shorter names in use, and for the provinces of Sardinia that came and
/// went. Empty for any other name.
std::string_view ProvinceAbbreviation(std::string_view name);

} // namespace convfile::memory
