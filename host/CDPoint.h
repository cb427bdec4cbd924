// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cmath>

/// A point or vector of the plane; the unit is its owner's.
struct CDPoint {
    double x = 0.0;
    double y = 0.0;

    CDPoint& operator+=(const CDPoint& other)
    {
        x += other.x;
        y += other.y;
        return *this;
    }
    CDPoint& operator-=(const CDPoint& other)
    {
        x -= other.x;
        y -= other.y;
        return *this;
    }
    CDPoint& operator*=(double factor)
    {
        x *= factor;
        y *= factor;
        return *this;
    }
    /// Turns the point counter-clockwise by `angle` (rad) about `centre`.
    void Rotate(double angle, const CDPoint& centre)
    {
        const double c = std::cos(angle);
        const double s = std::sin(angle);
        const double dx = x - centre.x;
        const double dy = y - centre.y;
        x = centre.x + c * dx - s * dy;
        y = centre.y + s * dx + c * dy;
    }

    friend CDPoint operator+(CDPoint a, const CDPoint& b) { return a += b; }
    friend CDPoint operator-(CDPoint a, const CDPoint& b) { return a -= b; }
    friend CDPoint operator*(CDPoint a, double factor) { return a *= factor; }
    friend bool operator==(const CDPoint&, const CDPoint&) = default;
};
