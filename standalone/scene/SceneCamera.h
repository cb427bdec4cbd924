// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The view of the scene. Scene coordinates are cm, x to the right and y up; those of a drawing are pixels, y down.
#pragma once

#include "host/CDPoint.h"

namespace scene
{

/// The smallest upright rectangle about what was added, cm.
struct SceneBounds {
    CDPoint low{};
    CDPoint high{};
    bool empty = true;

    /// A point that is no number is left out.
    void Add(CDPoint point);
};

struct SceneCamera {
    static constexpr double kSmallestScale = 0.01;
    static constexpr double kLargestScale = 5000.0;

    CDPoint centre{};             ///< cm, what is shown in the middle
    double pixelsPerMetre = 20.0; ///< kSmallestScale to kLargestScale
    double width = 1.0;           ///< pixels
    double height = 1.0;

    CDPoint ToPixel(CDPoint scene) const;
    CDPoint ToScene(CDPoint pixel) const;
    /// A length in cm as pixels, and back.
    double Pixels(double length) const { return length * pixelsPerMetre / 100.0; }
    double Length(double pixels) const { return pixels * 100.0 / pixelsPerMetre; }

    /// What is shown at the pixel stays there.
    void ZoomAbout(CDPoint pixel, double factor);
    /// Moves the ground by so many pixels.
    void Pan(CDPoint pixels);
    /// Shows all of it with `margin` pixels around; nothing, or a single point, is shown at a usual scale.
    void Fit(const SceneBounds& bounds, double margin);
    /// The same part of the scene, as much of it as fits, in a view of another size.
    SceneCamera For(double otherWidth, double otherHeight) const;
};

/// The largest of 1, 2 and 5 times a power of ten that is not above `most` > 0.
double RoundLength(double most);

} // namespace scene
