// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "host/Bindings.h"

#include <cstdint>
#include <string>

/// Colours of the barrier method's curves on a light ground. Two pairs of barriers share one on purpose.
struct CSchrankenFarben {
    COLORREF bremsungDettinger = RGB(192, 24, 32);
    COLORREF globalRau = RGB(20, 84, 196);
    COLORREF kuehnelVerzoegerung = RGB(124, 36, 168);
    COLORREF ritterKrieg = RGB(0, 134, 140);
    COLORREF frontscheibe = RGB(214, 108, 0);
    COLORREF scheinwerferHaupt = RGB(136, 84, 44);
    COLORREF scheinwerferGesamt = RGB(204, 52, 140);
    COLORREF abwicklung = RGB(112, 118, 0);
    COLORREF geschwindigkeit = RGB(72, 78, 88);
};

/// Where the ground of maps comes from.
struct CKartenCfg {
    enum class Quelle {
        keine, ///< there is none
        datei, ///< an MBTiles file
        server ///< asked only because the user entered it
    };
    Quelle quelle = Quelle::keine;
    std::string datei{};    ///< path
    std::string server{};   ///< address with {z}, {x} and {y}
    std::string herkunft{}; ///< of the server's map, as it must be shown

    friend bool operator==(const CKartenCfg&, const CKartenCfg&) = default;
};

/// Colour keys name the colours that edits take. The key of a vehicle's colour is its index (0..15) above this one.
inline constexpr std::int64_t kFzgFarbSchluessel = 17270;

/// The colour key of a vehicle, -1 for a number that is no vehicle's.
constexpr std::int64_t FzgFarbSchluessel(std::int64_t vehicle)
{
    return vehicle >= 0 && vehicle < 16 ? vehicle + kFzgFarbSchluessel : -1;
}

/// The vehicle of a colour key, -1 for any other number.
constexpr std::int64_t FzgZuFarbSchluessel(std::int64_t key)
{
    return key >= kFzgFarbSchluessel && key < kFzgFarbSchluessel + 16 ? key - kFzgFarbSchluessel : -1;
}

/// The user's settings as masks see them.
class CRuvCfg
{
  public:
    bool transferData = false;         ///< "Daten übertragen"
    double defaultReactionTime = 1.0;  ///< s
    double defaultThresholdTime = 0.2; ///< s
    bool useVehicleColors = true;      ///< edits follow the colour of the chosen vehicle
    bool decimalPoint = false;         ///< numbers are shown with a point instead of a comma
    CEditColors editColors{};          ///< inputs
    CEditColors resultColors{RGB(0, 0, 0), RGB(240, 240, 240)};
    COLORREF diagramBackground = RGB(255, 255, 255);
    COLORREF diagramPlot = RGB(255, 255, 255);
    CSchrankenFarben schranken{};
    CKartenCfg karte{};
};

extern CRuvCfg RuvCfg;
