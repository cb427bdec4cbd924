// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "drawing/DiagramColor.h"

#include <algorithm>
#include <cmath>

namespace drawing
{
namespace
{

constexpr unsigned kChannelShifts[] = {0, 8, 16};

unsigned Channel(COLORREF color, unsigned shift)
{
    return color >> shift & 0xFFU;
}

/// Linear light of an sRGB channel, 0..1.
double Linear(unsigned channel)
{
    const double c = channel / 255.0;
    return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
}

double Luminance(COLORREF color)
{
    return 0.2126 * Linear(Channel(color, 0)) + 0.7152 * Linear(Channel(color, 8)) +
           0.0722 * Linear(Channel(color, 16));
}

} // namespace

COLORREF Blend(COLORREF from, COLORREF to, double part)
{
    COLORREF blended = 0;
    for (const unsigned shift : kChannelShifts) {
        const double channel = Channel(from, shift) * (1.0 - part) + Channel(to, shift) * part;
        blended |= static_cast<COLORREF>(std::lround(std::clamp(channel, 0.0, 255.0))) << shift;
    }
    return blended;
}

double Contrast(COLORREF a, COLORREF b)
{
    const auto [darker, lighter] = std::minmax({Luminance(a), Luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

COLORREF Legible(COLORREF color, COLORREF background, double contrast)
{
    constexpr COLORREF kBlack = RGB(0, 0, 0);
    constexpr COLORREF kWhite = RGB(255, 255, 255);
    const COLORREF towards = Contrast(kWhite, background) > Contrast(kBlack, background) ? kWhite : kBlack;
    constexpr int kSteps = 50;
    for (int step = 0; step < kSteps; ++step) {
        const COLORREF shifted = Blend(color, towards, static_cast<double>(step) / kSteps);
        if (Contrast(shifted, background) >= contrast)
            return shifted;
    }
    return towards;
}

bool LookAlike(COLORREF a, COLORREF b)
{
    constexpr double kNear = 60.0; // of at most 442
    double squares = 0.0;
    for (const unsigned shift : kChannelShifts) {
        const double difference = static_cast<double>(Channel(a, shift)) - static_cast<double>(Channel(b, shift));
        squares += difference * difference;
    }
    return squares < kNear * kNear;
}

} // namespace drawing
