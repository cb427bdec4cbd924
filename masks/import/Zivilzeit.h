// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Calendar times and seconds, without the machine's time zone.
#pragma once

#include <cstdint>

struct Zivilzeit {
    std::int32_t jahr = 1970;
    std::int32_t monat = 1; ///< 1..12
    std::int32_t tag = 1;   ///< 1..31
    std::int32_t stunde = 0;
    std::int32_t minute = 0;
    std::int32_t sekunde = 0;
    friend bool operator==(const Zivilzeit&, const Zivilzeit&) = default;
};

/// Seconds from 1970-01-01 00:00:00 of the same clock. A month, day, hour, minute or second out of its range counts on,
/// as with mktime: the 13th month is the next year's first, second 60 the next minute's first.
constexpr std::int64_t SekundenSeit1970(const Zivilzeit& zeit)
{
    const std::int64_t monate = std::int64_t{zeit.jahr} * 12 + zeit.monat - 1;
    // Years begin in March, so that the leap day is the last day of one (proleptic Gregorian calendar).
    const std::int64_t abMaerz = monate - 2;
    const std::int64_t jahr = abMaerz >= 0 ? abMaerz / 12 : (abMaerz - 11) / 12;
    const std::int64_t monat = abMaerz - jahr * 12; // 0 = March
    const std::int64_t zyklus = jahr >= 0 ? jahr / 400 : (jahr - 399) / 400;
    const std::int64_t jahrImZyklus = jahr - zyklus * 400;
    const std::int64_t tagImJahr = (153 * monat + 2) / 5 + zeit.tag - 1;
    // 719468 days lie between 0000-03-01 and 1970-01-01; 146097 are in 400 years.
    const std::int64_t tage =
        zyklus * 146097 + jahrImZyklus * 365 + jahrImZyklus / 4 - jahrImZyklus / 100 + tagImJahr - 719468;
    return ((tage * 24 + zeit.stunde) * 60 + zeit.minute) * 60 + zeit.sekunde;
}

/// The calendar time of so many seconds from 1970-01-01 00:00:00; the years -9999..9999.
constexpr Zivilzeit ZivilzeitVon(std::int64_t sekunden)
{
    const std::int64_t tage = sekunden >= 0 ? sekunden / 86400 : (sekunden - 86399) / 86400;
    const std::int64_t imTag = sekunden - tage * 86400;
    const std::int64_t verschoben = tage + 719468;
    const std::int64_t zyklus = verschoben >= 0 ? verschoben / 146097 : (verschoben - 146096) / 146097;
    const std::int64_t imZyklus = verschoben - zyklus * 146097;
    const std::int64_t jahr = (imZyklus - imZyklus / 1460 + imZyklus / 36524 - imZyklus / 146096) / 365;
    const std::int64_t tagImJahr = imZyklus - (365 * jahr + jahr / 4 - jahr / 100);
    const std::int64_t abMaerz = (5 * tagImJahr + 2) / 153;
    const std::int64_t monat = abMaerz < 10 ? abMaerz + 3 : abMaerz - 9;
    return {static_cast<std::int32_t>(jahr + zyklus * 400 + (monat <= 2 ? 1 : 0)),
            static_cast<std::int32_t>(monat),
            static_cast<std::int32_t>(tagImJahr - (153 * abMaerz + 2) / 5 + 1),
            static_cast<std::int32_t>(imTag / 3600),
            static_cast<std::int32_t>(imTag / 60 % 60),
            static_cast<std::int32_t>(imTag % 60)};
}
