#pragma once

/// Marks what the host library `convfile_host` supplies at link time. Whoever builds that library
/// defines CONVFILE_HOST_BUILD.
#if defined(_WIN32)
#if defined(CONVFILE_HOST_BUILD)
#define CONVFILE_HOST_API __declspec(dllexport)
#else
#define CONVFILE_HOST_API __declspec(dllimport)
#endif
#else
#define CONVFILE_HOST_API __attribute__((visibility("default")))
#endif
