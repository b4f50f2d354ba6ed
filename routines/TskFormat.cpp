#include "routines/TskFormat.h"

#include <cstdio>

#if defined(_WIN32)

tsk_locale_t tsk_get_c_locale() {
    static const tsk_locale_t locale = _create_locale(LC_ALL, "C");
    return locale;
}

int tsk_vsnprintf(char* buffer, std::size_t size, const char* format, std::va_list arguments) {
    std::va_list measured;
    va_copy(measured, arguments);
    const int length = _vscprintf_l(format, tsk_get_c_locale(), measured);
    va_end(measured);
    if (size == 0)
        return length;
    // Fills the whole buffer and adds no end where the text is longer.
    _vsnprintf_l(buffer, size, format, tsk_get_c_locale(), arguments);
    buffer[size - 1] = '\0';
    return length;
}

#else

tsk_locale_t tsk_get_c_locale() {
    static const tsk_locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
}

int tsk_vsnprintf(char* buffer, std::size_t size, const char* format, std::va_list arguments) {
    const locale_t before = uselocale(tsk_get_c_locale());
    const int length = std::vsnprintf(buffer, size, format, arguments);
    uselocale(before);
    return length;
}

#endif
