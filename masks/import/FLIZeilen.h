// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Rows of recorded driving data.
#pragma once

#include "masks/import/Fahrphasen.h"

#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

/// What a row holds; -1 is what the file does not hold.
enum class Feld : std::size_t {
    zeitschritt, ///< s since the row before
    geschwindigkeit,
    richtung,
    x,
    y,
    z,
    gierrate,
    laenge,
    breite,
    hoehe,
    lenkwinkel,
    beschleunigungX,
    beschleunigungY,
    beschleunigungZ,
    abstand, ///< m to the row before
};
inline constexpr std::size_t kFelder = 15;

using FLIRow = std::array<double, kFelder>;

/// Titles of the fields with their units.
inline constexpr std::array<std::string_view, kFelder> kFeldtitel{
    "timeStep [s]",  "speed [km/h]",  "heading [°]",       "x [m]",
    "y [m]",         "z [m]",         "yawRate [°/s]",     "longitude [°]",
    "latitude [°]",  "altitude [m]",  "steeringAngle [°]", "accelX [m/s²]",
    "accelY [m/s²]", "accelZ [m/s²]", "distance [m]"};

/// All rows, by field: a field that no row has takes no memory.
class FLIZeilen
{
  public:
    std::size_t Anzahl() const { return m_anzahl; }
    void Leere() { *this = {}; }
    bool Hat(Feld feld) const { return !m_felder[Index(feld)].empty(); }
    double Wert(std::size_t zeile, Feld feld) const
    {
        const std::vector<double>& werte = m_felder[Index(feld)];
        return werte.empty() ? kNichtVorhanden : werte[zeile];
    }
    bool Hat(std::size_t zeile, Feld feld) const { return Wert(zeile, feld) != kNichtVorhanden; }
    FLIRow Zeile(std::size_t zeile) const
    {
        FLIRow row;
        for (std::size_t i = 0; i < kFelder; ++i)
            row[i] = m_felder[i].empty() ? kNichtVorhanden : m_felder[i][zeile];
        return row;
    }
    /// The values of a field, which has them from now on: -1 where it had none.
    std::vector<double>& Werte(Feld feld)
    {
        std::vector<double>& werte = m_felder[Index(feld)];
        if (werte.size() != m_anzahl)
            werte.resize(m_anzahl, kNichtVorhanden);
        return werte;
    }
    /// The values without making any: empty for a field without.
    const std::vector<double>& Werte(Feld feld) const { return m_felder[Index(feld)]; }
    /// Takes over values of as many rows as there are; the first ones say how many that is.
    void Setze(Feld feld, std::vector<double> werte)
    {
        m_anzahl = werte.size();
        m_felder[Index(feld)] = std::move(werte);
    }

  private:
    static constexpr std::size_t Index(Feld feld) { return static_cast<std::size_t>(feld); }

    std::array<std::vector<double>, kFelder> m_felder{};
    std::size_t m_anzahl = 0;
};
