// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// Marks what the module hands to its host by name.
#ifdef _WIN32
#ifdef RuvMod_EXPORTS
#define RUVMOD_API __declspec(dllexport)
#else
#define RUVMOD_API __declspec(dllimport)
#endif
#else
#define RUVMOD_API __attribute__((visibility("default")))
#endif
