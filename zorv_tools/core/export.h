#pragma once

/// @file
/// The one macro that makes a name visible outside the library. Everything else stays hidden.

/// Stands in front of every function and class that the library exports. Hosts that link the static library define
/// `ZORV_TOOLS_STATIC`, as the CMake package and pkg-config do for them; the library's own build defines
/// `ZORV_TOOLS_BUILDING`.
#if defined(ZORV_TOOLS_STATIC)
#define ZORV_TOOLS_EXPORT
#elif defined(_WIN32)
#if defined(ZORV_TOOLS_BUILDING)
#define ZORV_TOOLS_EXPORT __declspec(dllexport)
#else
#define ZORV_TOOLS_EXPORT __declspec(dllimport)
#endif
#else
#define ZORV_TOOLS_EXPORT __attribute__((visibility("default")))
#endif
