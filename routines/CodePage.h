#pragma once

#include <string>
#include <string_view>

/// The code page of instrument files and field books, Windows-1252. Its five unused bytes stand
/// for U+0081, U+008D, U+008F, U+0090 and U+009D, so that every text comes back as it was.

/// True where the text is well-formed UTF-8 (no overlong form, no surrogate).
bool IsUtf8(std::string_view text);

/// UTF-8 to Windows-1252: "?" for a character that the code page lacks and for a byte that is no
/// UTF-8.
std::string Windows1252FromUtf8(std::string_view text);

/// One UTF-16 unit to Windows-1252, or "?".
char Windows1252FromUnit(char32_t character);

/// Windows-1252 to UTF-8.
std::string Utf8FromWindows1252(std::string_view text);

#if defined(_WIN32)
/// Bytes of the system's code page (file names, statements) as the platform's texts.
std::wstring WideFromSystem(std::string_view bytes);
#endif
