// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "scene/SceneGround.h"

#include "base/NumberText.h"
#include "drawing/DiagramColor.h"
#include "host/Physics.h"
#include "host/Units.h"

#include <algorithm>
#include <cmath>

namespace scene
{
namespace
{

// Pixels.
constexpr double kLeastGrid = 14.0;
constexpr double kLongestBar = 150.0;
constexpr double kPad = 14.0;
constexpr double kBarHeight = 5.0;
constexpr CFont kBarFont{12.0, false};

constexpr double kFineGrid = 0.45; // of the colour that whole steps have
constexpr int kMostLines = 2000;

double Sharp(double coordinate)
{
    return std::floor(coordinate) + 0.5;
}

/// Decimals that a round length needs.
int DecimalsOf(double length)
{
    return std::max(0, static_cast<int>(-std::floor(std::log10(length) + 1e-9)));
}

} // namespace

double GridStep(const SceneCamera& camera)
{
    // The next round length above the least distance: half of ten times the one below.
    const double least = camera.Length(kLeastGrid);
    const double below = RoundLength(least);
    if (below >= least)
        return below;
    const double leading = below / std::pow(10.0, std::floor(std::log10(below) + 1e-9));
    return below * (leading > 1.5 && leading < 3.0 ? 2.5 : 2.0);
}

void DrawSceneGrid(CDC& dc, const SceneCamera& camera, const drawing::DiagramPalette& palette)
{
    const double step = GridStep(camera);
    const CDPoint low = camera.ToScene({0.0, camera.height});
    const CDPoint high = camera.ToScene({camera.width, 0.0});
    // Every fifth or tenth line is a stronger one; they are again at round lengths.
    const double leading = step / std::pow(10.0, std::floor(std::log10(step) + 1e-9));
    const double strongEach = leading > 1.5 && leading < 3.0 ? 5.0 : leading > 3.0 ? 4.0 : 10.0;
    const COLORREF fine = drawing::Blend(palette.plot, palette.grid, kFineGrid);
    for (const bool strong : {false, true}) {
        dc.SelectPen({PenStyle::solid, 1.0, strong ? palette.grid : fine});
        const auto lines = [&](double from, double to, auto line) {
            const double first = std::ceil(from / step);
            const double last = std::min(std::floor(to / step), first + kMostLines);
            for (double i = first; i <= last; ++i)
                if ((std::fmod(i, strongEach) == 0.0) == strong)
                    line(i * step);
        };
        lines(low.x, high.x, [&](double x) {
            const double at = Sharp(camera.ToPixel({x, 0.0}).x);
            dc.Line({at, 0.0}, {at, camera.height});
        });
        lines(low.y, high.y, [&](double y) {
            const double at = Sharp(camera.ToPixel({0.0, y}).y);
            dc.Line({0.0, at}, {camera.width, at});
        });
    }
}

void DrawScaleBar(CDC& dc, const SceneCamera& camera, const drawing::DiagramPalette& palette)
{
    const auto& units = UnitsSystemConfiguration::GetInstance();
    const UnitType unit(unitType::length);
    const double longest = std::min(kLongestBar, camera.width / 3.0);
    const double shown = RoundLength(units.ToShown(camera.Length(longest) / kCmProM, unit));
    const double length = camera.Pixels(units.ToMetric(shown, unit) * kCmProM);
    const std::string text = base::FormatNumber(shown, DecimalsOf(shown)) + " " + units.UnitString(unit);
    dc.SelectFont(kBarFont);
    const double width = length + 8.0 + dc.TextWidth(text);
    const double bottom = camera.height - kPad;
    const double height = std::max(dc.TextHeight(), kBarHeight);
    dc.SelectPen({PenStyle::none});
    dc.SelectBrush({true, palette.plot});
    dc.Rectangle(kPad - 6.0, bottom - height - 4.0, kPad + width + 6.0, bottom + 4.0, 4.0, 4.0);

    const double top = bottom - height / 2.0 - kBarHeight / 2.0;
    dc.SelectPen({PenStyle::solid, 1.0, palette.text});
    dc.SelectBrush({true, palette.text});
    dc.Rectangle(kPad, top, kPad + length / 2.0, top + kBarHeight);
    dc.SelectBrush({true, palette.plot});
    dc.Rectangle(kPad + length / 2.0, top, kPad + length, top + kBarHeight);
    dc.SetTextColor(palette.text);
    dc.TextOut({kPad + length + 8.0, bottom - height / 2.0 + 0.36 * kBarFont.size}, text);
}

} // namespace scene
