// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Limits of avoidance: one quantity is stepped, the others stay, until avoidance begins or ends.
#pragma once

#include "masks/manoeuvre/VermBewegung.h"

#include <cstdint>

/// Most steps of a search.
inline constexpr std::int64_t kVermSchritte = 1'000'000;

enum class VermGroesse { hoechstgeschw, reaktionspunkt, verzoegerung };

/// The values a quantity takes, by the number of the step; step 0 is the entered one.
class VermSchritte
{
  public:
    /// Towards avoidance when it is not avoided as entered: slower, earlier, harder. Otherwise the other way.
    VermSchritte(VermGroesse groesse, const VermVorgabe& vorgabe, const VermKonflikt& konflikt);

    /// +1 towards avoidance, -1 away from it.
    int Vorzeichen() const { return m_vorzeichen; }
    /// The speed in m/s or the deceleration in m/s².
    double Wert(std::int64_t schritt) const;
    /// How much earlier V reacts, s; negative: later.
    double Vorverlegung(std::int64_t schritt) const;
    /// Whether the values of the quantity are positive at this step.
    bool IstPositiv(std::int64_t schritt) const;
    bool Vermieden(std::int64_t schritt) const;

    struct Ende {
        std::int64_t schritt = 0;
        bool bestimmt = false; ///< false: the step is 0 for want of a positive value, or the last one
        friend bool operator==(const Ende&, const Ende&) = default;
    };
    /// Towards avoidance the first step that avoids; away from it the last one up to which all avoid.
    Ende Suche() const;

  private:
    /// Steps from `von` to `bis`, both included; none when `bis` is smaller.
    struct Bereich {
        std::int64_t von = 0;
        std::int64_t bis = -1;
    };
    bool Faellt() const;
    bool Verletzt(const VermBedingung& bedingung, std::int64_t schritt) const;
    std::int64_t LetzterSchritt() const;
    Bereich VerletzterBereich(const VermBedingung& bedingung, std::int64_t letzter) const;
    VermFahrt Fahrt(std::int64_t schritt) const;
    VermKonflikt Konflikt(std::int64_t schritt) const;

    VermGroesse m_groesse;
    VermVorgabe m_vorgabe;
    VermKonflikt m_konflikt;
    VermFahrt m_fahrt;
    VermBedingungen m_bedingungen;
    int m_vorzeichen;
};
