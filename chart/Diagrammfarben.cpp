// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "chart/Diagrammfarben.h"

#include "host/RuvCfg.h"

#include <cmath>

namespace chart
{
namespace
{

constexpr COLORREF kHellesRaster = RGB(230, 230, 230);

unsigned Kanal(COLORREF farbe, unsigned stelle)
{
    return farbe >> (8U * stelle) & 0xFFU;
}

/// Perceived lightness, 0..255.
double Helligkeit(COLORREF farbe)
{
    return 0.299 * Kanal(farbe, 0) + 0.587 * Kanal(farbe, 1) + 0.114 * Kanal(farbe, 2);
}

} // namespace

COLORREF Mische(COLORREF von, COLORREF zu, double anteil)
{
    COLORREF farbe = 0;
    for (unsigned stelle = 0; stelle < 3; ++stelle) {
        const double kanal = Kanal(von, stelle) * (1.0 - anteil) + Kanal(zu, stelle) * anteil;
        farbe |= static_cast<COLORREF>(std::lround(kanal)) << (8U * stelle);
    }
    return farbe;
}

bool IstDunkel(COLORREF grund)
{
    return Helligkeit(grund) < 128.0;
}

COLORREF AufGrund(COLORREF farbe, COLORREF grund)
{
    constexpr double kAbstand = 75.0;
    const COLORREF ziel = IstDunkel(grund) ? RGB(255, 255, 255) : RGB(0, 0, 0);
    for (double anteil = 0.0; anteil < 1.0; anteil += 0.05) {
        const COLORREF gemischt = Mische(farbe, ziel, anteil);
        if (std::abs(Helligkeit(gemischt) - Helligkeit(grund)) >= kAbstand)
            return gemischt;
    }
    return ziel;
}

Diagrammfarben Diagrammfarben::Aus(const CRuvCfg& cfg)
{
    const bool dunkel = IstDunkel(cfg.diagramPlot);
    return {cfg.diagramBackground, cfg.diagramPlot,
            dunkel ? Mische(cfg.diagramPlot, RGB(255, 255, 255), 0.16) : kHellesRaster,
            dunkel ? Mische(cfg.diagramPlot, RGB(255, 255, 255), 0.55) : RGB(96, 102, 112),
            IstDunkel(cfg.diagramBackground) ? RGB(226, 229, 234) : RGB(28, 31, 36)};
}

} // namespace chart
