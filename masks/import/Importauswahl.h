// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <limits>
#include <string>

/// What the user chose in a mask that reads recorded data; part of its record.
struct Importauswahl {
    std::string pfad{};
    std::int64_t fahrzeug = 0;
    std::int64_t phase = 3; ///< column the phases begin at
    // Times of the first and last row of the range, s.
    double von = std::numeric_limits<double>::quiet_NaN();
    double bis = std::numeric_limits<double>::quiet_NaN();
};
