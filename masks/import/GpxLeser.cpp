// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/import/GpxLeser.h"

#include "host/Memory.h"
#include "masks/import/XmlLeser.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>

namespace
{

/// A number in a calendar text has no more digits.
constexpr int kHoechstensZiffern = 9;
/// Whole numbers up to here and powers of ten up to the 22nd are exact doubles, so that their quotient is the nearest
/// double to the decimal number (W. D. Clinger, How to read floating point numbers accurately, 1990).
constexpr std::uint64_t kExakt = std::uint64_t{1} << 53U;
constexpr std::array<double, 23> kZehnerpotenzen{1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                                 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr GPXTrackPoint kLeererPunkt{}; // copied, it needs no step of filling with zeros before
constexpr double kGroessteBreite = 90.0;
constexpr double kGroessteLaenge = 360.0; // some count eastwards from Greenwich to 360°

bool IstZiffer(char c)
{
    return c >= '0' && c <= '9';
}

bool IstLeer(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

std::string_view OhneLeerraum(std::string_view text)
{
    while (!text.empty() && IstLeer(text.front()))
        text.remove_prefix(1);
    return text;
}

/// Takes a number without decimals from the front of the text, blanks and sign before it allowed.
bool NimmGanze(std::string_view& text, std::int32_t& zahl)
{
    text = OhneLeerraum(text);
    std::size_t i = 0;
    const bool negativ = !text.empty() && text.front() == '-';
    if (negativ || (!text.empty() && text.front() == '+'))
        i = 1;
    const std::size_t von = i;
    std::int32_t wert = 0;
    while (i < text.size() && IstZiffer(text[i])) {
        if (i - von == kHoechstensZiffern)
            return false;
        wert = wert * 10 + (text[i] - '0');
        ++i;
    }
    if (i == von)
        return false;
    zahl = negativ ? -wert : wert;
    text.remove_prefix(i);
    return true;
}

bool NimmZeichen(std::string_view& text, char zeichen)
{
    if (text.empty() || text.front() != zeichen)
        return false;
    text.remove_prefix(1);
    return true;
}

/// "2024-05-01T10:00:00", as nearly every file writes it, without a look at each digit's neighbours. False for anything
/// else, which is read number by number.
bool NimmUeblicheZeit(std::string_view& text, GPXTrackPoint& punkt)
{
    constexpr std::size_t kLaenge = 19;
    if (text.size() < kLaenge || text[4] != '-' || text[7] != '-' || text[10] != 'T' || text[13] != ':' ||
        text[16] != ':' || (text.size() > kLaenge && IstZiffer(text[kLaenge])))
        return false;
    bool ziffern = true;
    const auto zwei = [&](std::size_t stelle) {
        const auto zehner = static_cast<unsigned>(text[stelle] - '0');
        const auto einer = static_cast<unsigned>(text[stelle + 1] - '0');
        ziffern = ziffern && zehner <= 9 && einer <= 9;
        return static_cast<std::int32_t>(zehner * 10 + einer);
    };
    const std::array<std::int32_t, 7> werte{zwei(0), zwei(2), zwei(5), zwei(8), zwei(11), zwei(14), zwei(17)};
    if (!ziffern)
        return false;
    punkt.year = werte[0] * 100 + werte[1];
    punkt.month = werte[2];
    punkt.day = werte[3];
    punkt.hour = werte[4];
    punkt.minute = werte[5];
    punkt.second = werte[6];
    text.remove_prefix(kLaenge);
    return true;
}

/// The decimals of the seconds: milliseconds, and microseconds beyond them.
void NimmBruchteil(std::string_view& text, GPXTrackPoint& punkt)
{
    std::int32_t mikro = 0;
    std::int32_t gewicht = 100000;
    std::size_t i = 0;
    for (; i < text.size() && IstZiffer(text[i]); ++i) {
        mikro += (text[i] - '0') * gewicht;
        gewicht /= 10;
    }
    punkt.millisecond = mikro / 1000;
    punkt.mikrosekunde = static_cast<std::uint16_t>(mikro % 1000);
    text.remove_prefix(i);
}

/// "+01:00", "+0100" or "+01" as minutes; 0 for anything else.
std::int16_t Zonenversatz(std::string_view text)
{
    if (text.empty() || (text.front() != '+' && text.front() != '-'))
        return 0;
    std::array<int, 4> ziffern{};
    std::size_t anzahl = 0;
    for (const char c : text.substr(1))
        if (IstZiffer(c) && anzahl < 4)
            ziffern[anzahl++] = c - '0';
        else if (c != ':' || anzahl != 2)
            break;
    if (anzahl < 2)
        return 0;
    const int minuten = (ziffern[0] * 10 + ziffern[1]) * 60 + ziffern[2] * 10 + ziffern[3];
    return static_cast<std::int16_t>(text.front() == '-' ? -minuten : minuten);
}

/// See GpxZeit.
void NimmZeit(std::string_view text, GPXTrackPoint& punkt)
{
    if (!NimmUeblicheZeit(text, punkt) &&
        (!NimmGanze(text, punkt.year) || !NimmZeichen(text, '-') || !NimmGanze(text, punkt.month) ||
         !NimmZeichen(text, '-') || !NimmGanze(text, punkt.day) || !NimmZeichen(text, 'T') ||
         !NimmGanze(text, punkt.hour) || !NimmZeichen(text, ':') || !NimmGanze(text, punkt.minute) ||
         !NimmZeichen(text, ':') || !NimmGanze(text, punkt.second)))
        return;
    punkt.millisecond = 0;
    punkt.mikrosekunde = 0;
    if (NimmZeichen(text, '.') || NimmZeichen(text, ','))
        NimmBruchteil(text, punkt);
    punkt.zone = Zonenversatz(text);
}

/// See GpxZahl; false when there is no number.
bool NimmZahl(std::string_view text, double& zahl)
{
    if (!text.empty() && IstLeer(text.front()))
        text = OhneLeerraum(text);
    if (!text.empty() && text.front() == '+')
        text.remove_prefix(1);
    const char* p = text.data();
    const char* const ende = p + text.size();
    const bool negativ = p != ende && *p == '-';
    if (negativ)
        ++p;
    std::uint64_t ziffern = 0;
    std::size_t nachkomma = 0;
    const char* const von = p;
    while (p != ende && IstZiffer(*p))
        ziffern = ziffern * 10 + static_cast<unsigned>(*p++ - '0');
    std::size_t anzahl = static_cast<std::size_t>(p - von);
    if (p != ende && *p == '.') {
        const char* const punkt = ++p;
        while (p != ende && IstZiffer(*p))
            ziffern = ziffern * 10 + static_cast<unsigned>(*p++ - '0');
        nachkomma = static_cast<std::size_t>(p - punkt);
        anzahl += nachkomma;
    }
    if (anzahl == 0)
        return false; // "nan", "inf"
    // 19 digits fit into 64 bits.
    if (anzahl <= 19 && ziffern <= kExakt && (p == ende || (*p != 'e' && *p != 'E'))) {
        const double betrag = static_cast<double>(ziffern) / kZehnerpotenzen[nachkomma];
        zahl = negativ ? -betrag : betrag;
        return true;
    }
    const auto ergebnis = std::from_chars(text.data(), ende, zahl);
    return ergebnis.ec == std::errc{} && std::isfinite(zahl);
}

/// -1 where the text holds none.
double Zahlwert(std::string_view text)
{
    double zahl = 0.0;
    return NimmZahl(text, zahl) ? zahl : -1.0;
}

/// Comparison with a word of known length, which compilers turn into one or two instructions.
template <std::size_t N> bool Ist(std::string_view name, const char (&wort)[N])
{
    return name.size() == N - 1 && std::memcmp(name.data(), wort, N - 1) == 0;
}

class Spurleser
{
  public:
    Spurleser(GpxInhalt& inhalt, std::size_t bytes) : m_inhalt(inhalt), m_bytes(bytes) {}

    void SetLeser(const XmlLeser<Spurleser>& leser) { m_leser = &leser; }

    void Start(const XmlName& name)
    {
        m_feld = nullptr;
        m_zeit = false;
        m_attribute = false;
        const std::string_view ort = name.ort;
        if (Ist(ort, "trkpt")) {
            NeuerPunkt();
            m_attribute = true;
            m_tiefe = 0;
        } else if (m_imPunkt) {
            ++m_tiefe;
            WaehleFeld(name);
        } else if (Ist(ort, "trkseg") || Ist(ort, "trk")) {
            m_neuerAbschnitt = true;
            m_inhalt.spuren += Ist(ort, "trk") ? 1U : 0U;
        } else if (Ist(ort, "gpx")) {
            m_inhalt.ausgang = GpxAusgang::gelesen;
        }
    }

    bool WillAttribute() const { return m_attribute; }
    bool WillText() const { return m_feld != nullptr || m_zeit; }

    void Attribut(std::string_view name, std::string_view wert)
    {
        if (Ist(name, "lat"))
            m_punkt->latitude = Zahlwert(wert);
        else if (Ist(name, "lon"))
            m_punkt->longitude = Zahlwert(wert);
    }

    void Text(std::string_view text)
    {
        if (m_zeit)
            NimmZeit(text, *m_punkt);
        else
            *m_feld = Zahlwert(text);
    }

    void Ende(const XmlName& name)
    {
        if (m_imPunkt && Ist(name.ort, "trkpt")) {
            Nimm();
            m_imPunkt = false;
        } else if (m_imPunkt) {
            --m_tiefe;
        } else if (Ist(name.ort, "gpx")) {
            m_inhalt.vollstaendig = true;
        }
    }

    void Schluss()
    {
        if (!m_imPunkt)
            return;
        ++m_inhalt.unvollstaendig;
        m_inhalt.punkte.pop_back();
    }

  private:
    /// A point is read where it stays; one that the file does not end gives its place to the next.
    void NeuerPunkt()
    {
        if (m_imPunkt) {
            ++m_inhalt.unvollstaendig;
            *m_punkt = kLeererPunkt;
            return;
        }
        if (m_inhalt.punkte.size() == m_inhalt.punkte.capacity())
            SchaffePlatz();
        m_punkt = &m_inhalt.punkte.emplace_back(kLeererPunkt);
        m_imPunkt = true;
    }

    void WaehleFeld(const XmlName& name)
    {
        if (m_tiefe == 1 && Ist(name.ort, "ele")) {
            m_feld = &m_punkt->elevation;
        } else if (m_tiefe == 1 && Ist(name.ort, "time")) {
            m_zeit = true;
        } else {
            WaehleMesswert(name, "hr", m_punkt->heartRate);
            WaehleMesswert(name, "cad", m_punkt->cadence);
            WaehleMesswert(name, "atemp", m_punkt->temperature);
        }
    }

    /// The plain name, or with a prefix one that begins like it ("gpxdata:cadence"), which gives way to the plain one.
    template <std::size_t N> void WaehleMesswert(const XmlName& name, const char (&wort)[N], double& feld)
    {
        if (Ist(name.ort, wort) || (name.HatVorsatz() && feld == -1.0 && name.ort.starts_with(wort)))
            m_feld = &feld;
    }

    void Nimm()
    {
        if (std::abs(m_punkt->latitude) > kGroessteBreite || std::abs(m_punkt->longitude) > kGroessteLaenge) {
            ++m_inhalt.unmoeglich;
            m_punkt->latitude = m_punkt->longitude = -1.0;
        }
        if (m_neuerAbschnitt && m_inhalt.punkte.size() > 1)
            m_inhalt.nahtstellen.push_back(m_inhalt.punkte.size() - 1);
        m_neuerAbschnitt = false;
    }

    /// Room for as many points as the rest of the file holds if it goes on like this, instead of twice as many.
    void SchaffePlatz()
    {
        const std::size_t anzahl = m_inhalt.punkte.size();
        const double jePunkt = static_cast<double>(m_leser->Stelle()) / static_cast<double>(anzahl + 1);
        const auto gesamt = static_cast<std::size_t>(static_cast<double>(m_bytes) / jePunkt * 1.02);
        m_inhalt.punkte.reserve(std::max(anzahl + anzahl / 8 + 64, anzahl < 64 ? 64 : gesamt));
        RuvWillFill(m_inhalt.punkte.data(), m_inhalt.punkte.capacity() * sizeof(GPXTrackPoint));
    }

    GpxInhalt& m_inhalt;
    std::size_t m_bytes;
    const XmlLeser<Spurleser>* m_leser = nullptr;
    GPXTrackPoint* m_punkt = nullptr; ///< the one that is read, the last
    double* m_feld = nullptr;         ///< that the text goes to
    int m_tiefe = 0;                  ///< elements open inside the point
    bool m_imPunkt = false;
    bool m_zeit = false; ///< the text is the point's time
    bool m_attribute = false;
    bool m_neuerAbschnitt = false;
};

} // namespace

std::optional<double> GpxZahl(std::string_view text)
{
    double zahl = 0.0;
    return NimmZahl(text, zahl) ? std::optional(zahl) : std::nullopt;
}

void GpxZeit(std::string_view text, GPXTrackPoint& punkt)
{
    NimmZeit(text, punkt);
}

GpxInhalt LiesGpx(std::string_view bytes, const std::function<bool(double)>& weiter)
{
    GpxInhalt inhalt;
    if (bytes.size() >= 12 && bytes.substr(8, 4) == ".FIT") {
        inhalt.ausgang = GpxAusgang::istFit;
        return inhalt;
    }
    if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) {
        inhalt.ausgang = GpxAusgang::istUtf16;
        return inhalt;
    }
    Spurleser spur(inhalt, bytes.size());
    XmlLeser<Spurleser> leser(bytes, spur);
    spur.SetLeser(leser);
    if (!leser.Lies(weiter)) {
        inhalt = GpxInhalt{};
        inhalt.ausgang = GpxAusgang::abgebrochen;
        return inhalt;
    }
    spur.Schluss();
    return inhalt;
}
