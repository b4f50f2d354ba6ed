#pragma once

/// Marks what the library makes visible: the entry functions; the two base classes and the query
/// helper, whole; of the converters what their users call. CONVFILE_BUILD is defined while the
/// library itself is compiled.
#if defined(_WIN32)
#if defined(CONVFILE_BUILD)
#define CONVFILE_API __declspec(dllexport)
#else
#define CONVFILE_API __declspec(dllimport)
#endif
#else
#define CONVFILE_API __attribute__((visibility("default")))
#endif
