// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What is followed in a video: clicked by hand or found by the detector, in the raw frame, with its frame lengths.
#pragma once

#include "host/vision/VideoSpeeds.h"
#include "host/vision/VideoTracks.h"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

struct Videospur {
    struct Eintrag {
        VideoEntry punkt{};  ///< at its measured time
        double breite = 0.0; ///< px, of the box; 0 for a click
        double hoehe = 0.0;  ///< px
        double laenge = 0.0; ///< s, chosen since the entry before; 0 = as measured
        friend bool operator==(const Eintrag& a, const Eintrag& b)
        {
            return a.punkt.time == b.punkt.time && a.punkt.frame == b.punkt.frame &&
                   a.punkt.point.x == b.punkt.point.x && a.punkt.point.y == b.punkt.point.y &&
                   a.punkt.cut == b.punkt.cut && a.breite == b.breite && a.hoehe == b.hoehe && a.laenge == b.laenge;
        }
    };

    double punktHoehe = 0.0;          ///< m, of its points above the road
    bool gewaehlteLaengen = false;    ///< the chosen frame lengths count
    std::vector<Eintrag> eintraege{}; ///< ascending by frame

    friend bool operator==(const Videospur&, const Videospur&) = default;

    /// By the detector, which sees boxes.
    bool IstGefunden() const { return !eintraege.empty() && eintraege.front().breite > 0.0; }
    /// The entry of a frame; one per frame.
    std::optional<std::size_t> ImBild(int bild) const;
    /// Puts a click into its frame, in the place of the one there.
    void Setze(int bild, double zeit, VisionPoint punkt);
    /// Since the entry before it: as measured, and as it counts now. 0 of the first.
    double GemesseneLaenge(std::size_t eintrag) const;
    double Laenge(std::size_t eintrag) const;
    /// With the times that count: the chosen lengths sum up from the first entry's time on.
    std::vector<VideoEntry> Eintraege() const;

    /// Where the entry before that time leads, straight on from the one before it; where it is, when it is the first.
    /// Nothing without any. And by how much, px.
    struct Erwartung {
        VisionPoint punkt{};
        std::optional<double> bewegung{};
    };
    std::optional<Erwartung> Erwartet(double zeit) const;

    /// As numbers that a case keeps, and back; nothing when they are none.
    std::vector<double> AlsZahlen() const;
    static std::optional<Videospur> AusZahlen(std::span<const double> zahlen);
};
