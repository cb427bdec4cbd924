// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Which column of a file of driving data feeds which channel, and in which unit.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// What a column can hold. The numbers are kept with the case.
enum class Kanal : int {
    keiner = -1,
    zeit,
    geschwindigkeit,
    richtung,
    x,
    y,
    gierrate,
    laenge,
    breite,
    hoehe,
    lenkwinkel,
    beschleunigungX,
    beschleunigungY,
    beschleunigungZ,
};
inline constexpr std::size_t kKanaele = 13;

constexpr std::size_t Platz(Kanal kanal)
{
    return static_cast<std::size_t>(kanal);
}

/// The unit a channel has in the rows.
std::string_view Grundeinheit(Kanal kanal);

/// How a value becomes one in the channel's unit.
struct Umrechnung {
    double faktor = 1.0;
    bool bekannt = true; ///< the unit is one of those that can be converted
};
Umrechnung Umgerechnet(Kanal kanal, std::string_view einheit);

/// How the time of a row is read.
enum class Zeitform {
    zahl,            ///< a number
    uhr,             ///< clock time by the rule of twelve hours
    uhrOderSekunden, ///< the same, but a number without separators is a number of seconds
    tageszeit,       ///< clock time of 24 hours, also behind a date
    ziffern,         ///< clock time in the digits of a number, HHMMSS.s
};

/// A unit the user can choose for a column of the channel in place of the one the file names.
struct Einheitenwahl {
    Kanal kanal;
    std::string_view text; ///< UTF-8
    double faktor;
    Zeitform form = Zeitform::zahl;
};
/// All of a channel, the channel's own first.
std::vector<const Einheitenwahl*> Einheiten(Kanal kanal);

inline constexpr int kEinheitDerDatei = -1;

/// What the user says of a column in place of what its header says.
struct Zuordnung {
    int spalte = 0;
    Kanal kanal = Kanal::keiner;
    int einheit = kEinheitDerDatei; ///< of Einheiten(kanal)
    friend bool operator==(const Zuordnung&, const Zuordnung&) = default;
};

/// The columns of a file by channel.
class Spaltenplan
{
  public:
    Spaltenplan() { m_platz.fill(kLeer); }
    /// By names and units (lower case, UTF-8; a missing unit is empty), then by what the user says.
    Spaltenplan(std::span<const std::string> namen, std::span<const std::string> einheiten,
                std::span<const Zuordnung> zuordnungen);

    /// The one column of a channel, -1 when none feeds it. Of the time the first of two.
    int Spalte(Kanal kanal) const;
    /// The channel that a column feeds.
    Kanal KanalDer(int spalte) const;
    /// The column's unit; after a time column without one was found to hold clock time "h".
    const std::string& Einheit(int spalte) const;
    double Faktor(Kanal kanal) const { return m_faktor[Platz(kanal)]; }
    /// The unit that the user chose for the channel, or null.
    const Einheitenwahl* Gewaehlt(Kanal kanal) const { return m_gewaehlt[Platz(kanal)]; }

    // The time. One that is made of two columns has a place above 100: place % 100 is the first of them, place / 100 -
    // 1 the second.
    bool HatZweiZeitspalten() const { return !m_zeitZugeordnet && m_platz[0] > kZweiSpalten; }
    int ZweiteZeitspalte() const;
    Zeitform Form() const { return m_form; }
    /// Of two columns the first holds clock time and the second what it lacks, in ms; otherwise the second holds it.
    bool IstUhrMitMs() const;
    bool IstUhrDerZweiten() const;

    bool Hat(Kanal kanal) const { return m_platz[Platz(kanal)] != kLeer; }
    /// Time and speed, time and position, or time and x and y.
    bool Reicht() const;
    std::size_t Erkannt() const; ///< number of channels

  private:
    static constexpr std::int64_t kLeer = -1;
    static constexpr std::int64_t kZweiSpalten = 100;

    void Erkenne(std::int64_t spalte, const std::string& name);
    void ErkenneZeit(std::int64_t spalte, const std::string& name);
    void Ordne(const Zuordnung& zuordnung);
    void BestimmeZeitform();

    std::array<std::int64_t, kKanaele> m_platz{};
    std::array<double, kKanaele> m_faktor{};
    std::array<const Einheitenwahl*, kKanaele> m_gewaehlt{};
    std::vector<std::string> m_einheit;
    std::vector<bool> m_uhrOhneEinheit; ///< columns whose name alone says clock time
    bool m_zeitZugeordnet = false;      ///< the user named the one column of the time
    Zeitform m_form = Zeitform::zahl;
};

/// A key for files with this header line.
std::uint64_t Kopfschluessel(std::string_view kopfzeile);
