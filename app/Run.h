#pragma once

#include "app/Options.h"

namespace convfile::app {

inline constexpr int kAllConverted = 0;
inline constexpr int kNotAllConverted = 1;
inline constexpr int kWrongUsage = 2;

/// Converts what the options name and shows it, and tells on standard error what went wrong. Gives
/// the status that the program ends with.
int Run(const Options& options);

/// Says something on standard error. What comes from outside must not steer the terminal.
void Tell(const std::string& text);

} // namespace convfile::app
