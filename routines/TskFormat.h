#pragma once

#include <cstdarg>
#include <cstddef>

#include <locale.h>

#if defined(_WIN32)
using tsk_locale_t = _locale_t;
#else
using tsk_locale_t = locale_t;
#endif

/// The C locale, for conversions that must not depend on the process's own: decimal point, no
/// grouping. Made once, never freed, never changed.
tsk_locale_t tsk_get_c_locale();

/// Formatted output in the C locale, cut to the buffer. Returns the length of the whole text
/// (without its end), or a negative number where the format is wrong.
int tsk_vsnprintf(char* buffer, std::size_t size, const char* format, std::va_list arguments);

/// Formatted output into a character buffer, in the C locale, with the conventions of sprintf; what
/// the buffer cannot hold is cut off.
template <std::size_t Size>
int tsk_sprintf(char (&buffer)[Size], const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const int length = tsk_vsnprintf(buffer, Size, format, arguments);
    va_end(arguments);
    return length;
}
