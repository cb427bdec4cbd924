// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What the user chose in a mask that reads recorded data, and its rows in the tables of their records.
#pragma once

#include "host/NumberTable.h"
#include "res/import.h"

#include <cstdint>
#include <limits>
#include <string>

/// Part of such a record, as `auswahl`.
struct Importauswahl {
    std::string pfad{};
    std::int64_t fahrzeug = 0;
    std::int64_t phase = 3; ///< column the phases begin at
    // Times of the first and last row of the range, s.
    double von = std::numeric_limits<double>::quiet_NaN();
    double bis = std::numeric_limits<double>::quiet_NaN();
};

/// Spinner of the times of a range, s.
inline constexpr SpinnerRange kZeitraumDrehknopf{0.0, 1e9, 0.1};

template <class Dat>
inline constexpr NumberRow<Dat> kZeileFahrzeug{"fahrzeug", At<&Dat::auswahl, &Importauswahl::fahrzeug>};
template <class Dat> inline constexpr NumberRow<Dat> kZeilePhase{"phase", At<&Dat::auswahl, &Importauswahl::phase>};
template <class Dat>
inline constexpr NumberRow<Dat> kZeileVon{IDC_IMPORT_VON,
                                          "bereichVon",
                                          At<&Dat::auswahl, &Importauswahl::von>,
                                          units::s,
                                          {0, 1e9},
                                          3,
                                          FieldRole::input,
                                          {.spinner = kZeitraumDrehknopf}};
template <class Dat>
inline constexpr NumberRow<Dat> kZeileBis{IDC_IMPORT_BIS,
                                          "bereichBis",
                                          At<&Dat::auswahl, &Importauswahl::bis>,
                                          units::s,
                                          {0, 1e9},
                                          3,
                                          FieldRole::input,
                                          {.joint = Joint::upTo, .spinner = kZeitraumDrehknopf}};
