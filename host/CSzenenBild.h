// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// A picture under the scene: an aerial view or a sketch.
#pragma once

#include "host/CDPoint.h"

#include <cstdint>
#include <string>

struct CSzenenBild {
    static constexpr std::size_t kMeiste = 32; ///< of a case

    std::string datei;       ///< PNG or JPEG; relative to the case file where there is one, with "/"
    std::string sha256;      ///< of the file when it was taken up, 64 hexadecimal digits
    std::int64_t breite = 0; ///< pixels
    std::int64_t hoehe = 0;  ///< pixels
    CDPoint mitte{};         ///< cm
    double meterProPixel = 0.05;
    double winkel = 0.0;    ///< rad, of the rows, counter-clockwise
    double deckkraft = 1.0; ///< 0 to 1
    bool sichtbar = true;
    bool gesperrt = false;  ///< cannot be moved by the mouse
    std::string weiteres{}; ///< what a newer program's case file says of it besides, as it stood there

    friend bool operator==(const CSzenenBild&, const CSzenenBild&) = default;
};
