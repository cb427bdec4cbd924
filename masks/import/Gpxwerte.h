// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Numbers and times as GPX files write them.
#pragma once

#include "masks/import/GPXTrackPoint.h"

#include <cstddef>
#include <optional>
#include <string_view>

/// The number a text begins with, blanks before it allowed; nothing when it begins with none or one that is not finite.
std::optional<double> GpxZahl(std::string_view text);
/// Takes over the time of a text like "2024-05-01T10:00:00.5Z". As far as the text goes: what it lacks stays.
void GpxZeit(std::string_view text, GPXTrackPoint& punkt);

// The same in the spelling of nearly every file, without a look at each character: the place behind it, or null, with
// nothing changed, for any other spelling. So many bytes from `p` on must be there:
inline constexpr std::ptrdiff_t kUeblicheGpxBytes = 40;
/// "-12.3456789"
const char* UeblicheGpxZahl(const char* p, double& zahl);
/// "2024-05-01T10:00:00Z</time>", and with milliseconds.
const char* UeblicheGpxZeit(const char* p, GPXTrackPoint& punkt);
