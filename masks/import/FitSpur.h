// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The track of a FIT activity file: its record messages, or where those have no position its gps_metadata messages
// (global messages 20 and 160 of the published FIT profile).
#pragma once

#include "masks/import/FitLeser.h"
#include "masks/import/GPXTrackPoint.h"
#include "masks/import/Zivilzeit.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// A point as the file holds it, in the file's own units.
struct FitPunkt {
    /// Which of them the file has; the position always.
    enum Vorhanden : std::uint16_t { zeit = 1, hoehe = 2, tempo = 4, puls = 8, tritt = 16, temperatur = 32 };

    std::int32_t breite = 0;       ///< semicircles of 180° / 2^31
    std::int32_t laenge = 0;       ///< the same
    std::uint32_t zeitstempel = 0; ///< s from 1989-12-31 00:00 UTC
    std::uint32_t hoeheRoh = 0;    ///< 0.2 m above -500 m
    std::uint32_t tempoRoh = 0;    ///< mm/s
    std::uint16_t millisekunde = 0;
    std::uint16_t vorhanden = 0;
    std::uint16_t pulsRoh = 0;    ///< 1/min
    std::uint16_t trittRoh = 0;   ///< 1/min
    std::int16_t temperaturC = 0; ///< °C

    bool Hat(Vorhanden was) const { return (vorhanden & was) != 0; }
    /// °
    double Breite() const;
    double Laenge() const;
    /// m
    double Hoehe() const;
    /// m/s as the device recorded it, -1 when it did not
    double Tempo() const;
};

struct FitSpur {
    FitBefund befund{};
    std::vector<FitPunkt> punkte{};
    bool ausMetadaten = false;              ///< the points are of gps_metadata
    std::size_t ohneLage = 0;               ///< record messages without a position
    std::vector<std::size_t> nahtstellen{}; ///< first point of each further chained file
};

/// Reads all points, those before a damage too.
FitSpur LiesFit(std::string_view bytes, const std::function<bool(double)>& weiter = {});

/// Seconds that the clock of the written track lies after the FIT one. Two hours less than the distance between
/// 1970-01-01 and 1989-12-31, and read as local time: in a country two hours ahead of UTC, the text is UTC.
inline constexpr std::int64_t kFitZeitVersatz = 631058400;
inline constexpr std::int64_t kFitEpoche = 631065600;

/// The local clock of the machine at an instant, and how far it is ahead of UTC.
struct Ortszeit {
    Zivilzeit zeit{};
    std::int16_t voraus = 0; ///< min
};

/// Asks the system once for each quarter of an hour: clocks change at no other moments.
class Ortsuhr
{
  public:
    /// Of seconds from 1970-01-01 00:00 UTC, not before it.
    const Ortszeit& Zeit(std::int64_t unixSekunden);

  private:
    static constexpr std::int64_t kBlock = 900;
    void StelleAuf(std::int64_t unixSekunden);

    std::int64_t m_blockanfang = -kBlock;
    std::int64_t m_voraus = 0; // s
    Ortszeit m_zeit{};
};

/// The point as the GPX text of it says, but with the zone of its clock, so that steps across a change of the clock are
/// what they were.
GPXTrackPoint AlsTrackPoint(const FitPunkt& punkt, Ortsuhr& uhr);

/// The GPX text of a track, piece by piece. Numbers have 30 significant digits.
class GpxText
{
  public:
    /// The points must outlive the text.
    explicit GpxText(std::span<const FitPunkt> punkte) : m_punkte(punkte), m_anzahl(punkte.size()) {}
    /// About a megabyte; it lasts until the next one is asked for. Empty at the end.
    std::string_view Naechstes();
    /// The part of the points in the text so far.
    double Anteil() const
    {
        return m_anzahl == 0 ? 0.0 : 1.0 - static_cast<double>(m_punkte.size()) / static_cast<double>(m_anzahl);
    }

  private:
    void HaengeAn(const FitPunkt& punkt);

    std::span<const FitPunkt> m_punkte;
    std::size_t m_anzahl;
    std::string m_text;
    Ortsuhr m_uhr;
    bool m_begonnen = false;
    bool m_beendet = false;
};
