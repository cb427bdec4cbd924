// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

/// A point of a track. What the file does not hold is -1.
struct GPXTrackPoint {
    double latitude = -1.0;  ///< °
    double longitude = -1.0; ///< °
    double elevation = -1.0; ///< m

    // The time as the text of the file has it.
    std::int32_t year = -1;
    std::int32_t month = -1;
    std::int32_t day = -1;
    std::int32_t hour = -1;
    std::int32_t minute = -1;
    std::int32_t second = -1;
    std::int32_t millisecond = -1;
    std::int16_t zone = 0;          ///< min that the clock of the text is ahead of UTC
    std::uint16_t mikrosekunde = 0; ///< of a text with more than three decimals what follows the milliseconds, µs

    double heartRate = -1.0;   ///< 1/min
    double cadence = -1.0;     ///< 1/min
    double temperature = -1.0; ///< °C

    // Of the conversion into local coordinates.
    double x = 0.0;        ///< m, east
    double y = 0.0;        ///< m, north
    double z = 0.0;        ///< m, up
    double distance = 0.0; ///< m, in space, to the previous point

    double timeStep = 0.0; ///< s, to the previous point
    double speed = 0.0;    ///< m/s
    double speedKmh = 0.0; ///< km/h

    bool HatLage() const { return latitude != -1.0 && longitude != -1.0; }
    bool HatZeit() const { return second != -1; }

    friend bool operator==(const GPXTrackPoint&, const GPXTrackPoint&) = default;
};
