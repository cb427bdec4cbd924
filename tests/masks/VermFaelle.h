// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "masks/manoeuvre/CVermDat.h"

#include <algorithm>
#include <vector>

namespace test
{

using Meldung = CVermDat::Meldung;
using Meldungen = std::vector<Meldung>;

inline constexpr double kKmh = 3.6;

inline bool Says(const Meldungen& messages, Meldung which)
{
    return std::find(messages.begin(), messages.end(), which) != messages.end();
}

/// Which way the other vehicle goes, and what is avoided.
struct Setting {
    VermRichtung direction;
    VermKenngroesse kind;
};
inline constexpr Setting kSettings[] = {
    {VermRichtung::entgegen, VermKenngroesse::raeumlich}, {VermRichtung::entgegen, VermKenngroesse::zeitlich},
    {VermRichtung::quer, VermKenngroesse::raeumlich},     {VermRichtung::quer, VermKenngroesse::zeitlich},
    {VermRichtung::gleich, VermKenngroesse::raeumlich},   {VermRichtung::gleich, VermKenngroesse::zeitlich},
};

} // namespace test
