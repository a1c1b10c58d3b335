#pragma once

/// \file
/// What a dynamic library shows to its users. Everything else stays hidden.

/// \def QUIRE_EXPORT
/// Marks the public surface of the library.
/// \def QUIRE_PLATFORM_EXPORT
/// Marks the automation functions that the native build provides in place of the system's.

#if defined(_WIN32)
#if defined(QUIRE_BUILDING_LIBRARY)
#define QUIRE_EXPORT __declspec(dllexport)
#else
#define QUIRE_EXPORT __declspec(dllimport)
#endif
#else
#define QUIRE_EXPORT __attribute__((visibility("default")))
#define QUIRE_PLATFORM_EXPORT __attribute__((visibility("default")))
#endif
