// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// A recorded track under the scene: where a device was, laid by hand onto the ground it was recorded on.
#pragma once

#include "host/CDPoint.h"

#include <cstddef>
#include <string>
#include <vector>

struct CSzenenSpur {
    static constexpr std::size_t kMeiste = 16; ///< of a case
    static constexpr std::size_t kMeistePunkte = 5000;

    std::string name;
    std::vector<CDPoint> punkte; ///< cm, from the middle of the box about them; one that stands twice ends a stretch
    CDPoint mitte{};             ///< cm, where that middle lies
    double winkel = 0.0;         ///< rad, counter-clockwise, that the points are turned by
    bool sichtbar = true;
    bool gesperrt = false;  ///< cannot be moved by the mouse
    std::string weiteres{}; ///< what a newer program's case file says of it besides, as it stood there

    friend bool operator==(const CSzenenSpur&, const CSzenenSpur&) = default;
};
