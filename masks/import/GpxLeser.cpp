// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/import/GpxLeser.h"

#include "host/Memory.h"
#include "masks/import/Gpxwerte.h"
#include "masks/import/XmlLeser.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace
{

constexpr GPXTrackPoint kLeererPunkt{}; // copied, it needs no step of filling with zeros before
constexpr double kGroessteBreite = 90.0;
constexpr double kGroessteLaenge = 360.0; // some count eastwards from Greenwich to 360°

/// A point in the usual spelling has no more bytes, nor those looked at behind it.
constexpr std::ptrdiff_t kKurzwegBytes = 4 * kUeblicheGpxBytes + 256;
constexpr int kNah = 32; // bytes between two tags

/// -1 where the text holds none.
double Zahlwert(std::string_view text)
{
    return GpxZahl(text).value_or(-1.0);
}

/// Comparison with a word of known length, which compilers turn into one or two instructions.
template <std::size_t N> bool Ist(std::string_view name, const char (&wort)[N])
{
    return name.size() == N - 1 && std::memcmp(name.data(), wort, N - 1) == 0;
}

template <std::size_t N> bool Hat(const char* p, const char (&wort)[N])
{
    return std::memcmp(p, wort, N - 1) == 0;
}

/// The next '<' if it is near.
const char* NaheMarke(const char* p)
{
    const char* const fern = p + kNah;
    while (*p != '<' && p != fern)
        ++p;
    return p;
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

    /// <trkpt lat="48.1" lon="11.5"> <ele>512.3</ele> <time>2024-05-01T10:00:00.000Z</time> </trkpt>, spelled as nearly
    /// every file does it, or the beginning of that.
    const char* Kurzweg(const char* p, const char* ende)
    {
        if (m_imPunkt || ende - p < kKurzwegBytes || !Hat(p, "<trkpt lat=\""))
            return nullptr;
        double breite = 0.0;
        double laenge = 0.0;
        p = UeblicheGpxZahl(p + 12, breite);
        if (p == nullptr || !Hat(p, "\" lon=\""))
            return nullptr;
        p = UeblicheGpxZahl(p + 7, laenge);
        if (p == nullptr || !Hat(p, "\">"))
            return nullptr;
        NeuerPunkt();
        m_tiefe = 0;
        m_punkt->latitude = breite;
        m_punkt->longitude = laenge;
        p = NaheMarke(p + 2);
        if (Hat(p, "<ele>")) {
            double hoehe = 0.0;
            const char* const danach = UeblicheGpxZahl(p + 5, hoehe);
            if (danach == nullptr || !Hat(danach, "</ele>"))
                return p;
            m_punkt->elevation = hoehe;
            p = NaheMarke(danach + 6);
        }
        if (Hat(p, "<time>")) {
            const char* const danach = UeblicheGpxZeit(p + 6, *m_punkt);
            if (danach == nullptr)
                return p;
            p = NaheMarke(danach);
        }
        if (!Hat(p, "</trkpt>"))
            return p;
        Nimm();
        m_imPunkt = false;
        return p + 8;
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
            GpxZeit(text, *m_punkt);
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
