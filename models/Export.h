#pragma once

/// \file
/// What the library of models shows to its users. Everything else stays hidden.

/// \def QUIRE_MODELS_EXPORT
/// Marks the public surface of the library QuireModels.

#if defined(_WIN32)
#if defined(QUIRE_BUILDING_MODELS)
#define QUIRE_MODELS_EXPORT __declspec(dllexport)
#else
#define QUIRE_MODELS_EXPORT __declspec(dllimport)
#endif
#else
#define QUIRE_MODELS_EXPORT __attribute__((visibility("default")))
#endif
