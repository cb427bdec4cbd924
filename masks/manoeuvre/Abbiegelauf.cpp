// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/manoeuvre/Abbiegelauf.h"

#include "host/Physics.h"

#include <algorithm>
#include <cmath>

namespace abbiegen
{
namespace
{

/// A vehicle that stands starts as if it moved with this speed, m/s.
constexpr double kAnrollen = 0.0001;
/// Above this speed (m/s) stored points lie farther apart.
constexpr double kSchnell = 10.0;
/// The course is thinned out by half when it has this many moments.
constexpr std::size_t kVerlaufspunkte = 400;

/// The steering: an angle that changes evenly from that of the initial radius to that of the end radius.
class Lenkung
{
  public:
    explicit Lenkung(const Vorgabe& g) : m_g(g), m_anfang(g.stellzeit > 0.0 ? g.anfangsradius : g.endradius)
    {
        m_winkel = Lenkwinkel(g.fahrzeug, m_anfang);
        m_rate = g.stellzeit > 0.0 ? (Lenkwinkel(g.fahrzeug, g.endradius) - m_winkel) / g.stellzeit : 0.0;
        m_richtung = g.endradius >= m_anfang ? 1.0 : -1.0;
    }

    double Anfangsradius() const { return m_anfang; }

    double Radius(double t) const
    {
        if (t >= m_g.stellzeit + m_g.lenkbeginn)
            return m_g.endradius;
        double radius = m_anfang;
        if (t > m_g.lenkbeginn) {
            const double winkel = m_winkel + (t - m_g.lenkbeginn) * m_rate;
            radius = winkel < 0.0 ? kGerade : m_g.fahrzeug.radstand / std::tan(winkel) - m_g.fahrzeug.HalbeSpur();
        }
        return (radius - m_g.endradius) * m_richtung > 0.0 || radius < 0.0 ? m_g.endradius : radius;
    }

    /// Whether steering towards straight has come there.
    bool IstGerade(double radius) const { return m_richtung > 0.0 && radius >= kGerade; }

  private:
    const Vorgabe& m_g;
    double m_anfang;
    double m_winkel;
    double m_rate;
    double m_richtung;
};

/// The centre moves on the arc of its radius, the inner rear wheel on that of R. Direction of the motion.
CDPoint Bewege(Lage& lage, double ds, double radius, double mittenradius)
{
    lage.psi += ds / mittenradius;
    const CDPoint richtung{std::cos(lage.psi), std::sin(lage.psi)};
    lage.rad += richtung * (radius * ds / mittenradius);
    return richtung;
}

/// The points that are kept of the way. The last one is always where the vehicle is.
class Punktfolge
{
  public:
    Punktfolge(const Vorgabe& g, CDPoint start) : m_g(g)
    {
        m_punkte.push_back(start * kCmProM);
        m_punkte.push_back(m_punkte.front());
    }

    void Nimm(double t, double s, double v, CDPoint mitte)
    {
        m_punkte.back() = mitte * kCmProM;
        if (std::floor(2.0 * (s - m_sLetzter) * Dichte(t, v) / m_g.punktteiler) < 1.0)
            return;
        m_sLetzter = s;
        m_punkte.push_back(m_punkte.back());
    }

    std::size_t Gespeichert() const { return m_punkte.size() - 1; }

    /// Ends where the vehicle does, once.
    std::vector<CDPoint> Punkte() &&
    {
        if (m_punkte.size() > 2 && m_punkte[m_punkte.size() - 2] == m_punkte.back())
            m_punkte.pop_back();
        return std::move(m_punkte);
    }

  private:
    /// Points lie closer together while the radius changes.
    double Dichte(double t, double v)
    {
        const double stellzeit = m_g.stellzeit;
        if (t < 0.1 * stellzeit)
            m_dichte = 30.0;
        else if (t < 0.2 * stellzeit)
            m_dichte = 15.0;
        else if (t < 0.5 * stellzeit)
            m_dichte = 8.0;
        else if (t < stellzeit)
            m_dichte = 4.0;
        else if (m_dichte > 2.0)
            m_dichte = 1.0;
        if (v > kSchnell)
            m_dichte = std::max(2.0, m_dichte * kSchnell / v);
        return m_dichte;
    }

    const Vorgabe& m_g;
    std::vector<CDPoint> m_punkte;
    double m_sLetzter = 0.0;
    double m_dichte = 1.0;
};

/// Moments from start to end, evenly spaced in time.
class Verlauf
{
  public:
    void Nimm(std::size_t schritt, const Lage& lage)
    {
        if (schritt % m_abstand != 0)
            return;
        m_lagen.push_back(lage);
        if (m_lagen.size() < kVerlaufspunkte)
            return;
        m_abstand *= 2;
        for (std::size_t i = 0; 2 * i < m_lagen.size(); ++i)
            m_lagen[i] = m_lagen[2 * i];
        m_lagen.resize((m_lagen.size() + 1) / 2);
    }

    std::vector<Lage> Lagen(const Lage& ende) &&
    {
        if (m_lagen.back().t < ende.t)
            m_lagen.push_back(ende);
        return std::move(m_lagen);
    }

  private:
    std::vector<Lage> m_lagen;
    std::size_t m_abstand = 1;
};

} // namespace

double Vorgabe::ZeitBisGrenze() const
{
    return beschleunigung == 0.0 ? std::numeric_limits<double>::infinity() : (grenze - anfangsgeschw) / beschleunigung;
}

double Vorgabe::WegBisGrenze() const
{
    return beschleunigung == 0.0 ? std::numeric_limits<double>::infinity()
                                 : (grenze * grenze - anfangsgeschw * anfangsgeschw) / (2.0 * beschleunigung);
}

double Mittenradius(const Fahrzeug& fahrzeug, double radius)
{
    const double hinterachse = radius + fahrzeug.HalbeSpur();
    const double voraus = fahrzeug.radstand / 2.0;
    return std::sqrt(hinterachse * hinterachse + voraus * voraus);
}

double Lenkwinkel(const Fahrzeug& fahrzeug, double radius)
{
    return radius >= kGerade ? 0.0 : std::atan(fahrzeug.radstand / (radius + fahrzeug.HalbeSpur()));
}

CDPoint Mitte(const Vorgabe& g, const Lage& lage)
{
    // Half the wheelbase along the vehicle, half the track outwards. In reverse the rear axle leads.
    const double sigma = g.vorwaerts ? 1.0 : -1.0;
    const double diagonale = std::hypot(g.fahrzeug.radstand / 2.0, g.fahrzeug.HalbeSpur());
    const double winkel = lage.psi - sigma * std::atan2(g.fahrzeug.spurweite, g.fahrzeug.radstand);
    return lage.rad + CDPoint{std::cos(winkel), std::sin(winkel)} * (sigma * diagonale);
}

namespace
{

/// Follows a drive's place, what it passes and the way it leaves.
class Aufzeichnung
{
  public:
    explicit Aufzeichnung(const Vorgabe& g) : m_g(g), m_zurMitte(Mitte(g, Lage{})), m_punkte(g, m_zurMitte)
    {
        m_verlauf.Nimm(0, Lage{});
    }

    void Schritt(Fahrt& f, double ds, double mittenradius)
    {
        const CDPoint richtung = Bewege(f.lage, ds, f.radius, mittenradius);
        f.frontversatz = f.lage.rad.y + richtung.y * m_g.fahrzeug.bisFront;
        f.querMax = std::max(f.querMax, f.v * f.v / mittenradius);
        m_vorZwischenlage = m_vorZwischenlage && f.frontversatz <= m_g.zwischenversatz;
        if (m_vorZwischenlage) {
            f.zwischen = f.lage;
            f.frontversatzZwischen = f.frontversatz;
        }
        m_punkte.Nimm(f.lage.t, f.lage.s, f.v,
                      f.lage.rad + CDPoint{richtung.x * m_zurMitte.x - richtung.y * m_zurMitte.y,
                                           richtung.y * m_zurMitte.x + richtung.x * m_zurMitte.y});
        m_verlauf.Nimm(f.schritte, f.lage);
    }

    void Beende(Fahrt& f)
    {
        f.zwischenIstEnde = m_vorZwischenlage;
        f.gespeichert = m_punkte.Gespeichert();
        f.punkte = std::move(m_punkte).Punkte();
        f.verlauf = std::move(m_verlauf).Lagen(f.lage);
    }

  private:
    const Vorgabe& m_g;
    CDPoint m_zurMitte;
    Punktfolge m_punkte;
    Verlauf m_verlauf;
    bool m_vorZwischenlage = true;
};

/// Follows nothing but the yaw.
class NurGieren
{
  public:
    explicit NurGieren(const Vorgabe&) {}
    void Schritt(Fahrt& f, double ds, double mittenradius) { f.lage.psi += ds / mittenradius; }
    void Beende(Fahrt&) {}
};

template <class Beobachter> Fahrt FahreMit(const Vorgabe& g)
{
    const Lenkung lenkung(g);
    const double tGrenze = g.ZeitBisGrenze();
    const double sGrenze = g.WegBisGrenze();
    Fahrt f;
    Lage& lage = f.lage;
    f.radius = lenkung.Anfangsradius();
    f.v = g.anfangsgeschw == 0.0 ? kAnrollen : g.anfangsgeschw;
    double mittenradius = Mittenradius(g.fahrzeug, f.radius);
    Beobachter beobachter(g);

    const auto fehlt = [&] { return g.ziel - (g.bisWeg ? lage.s : lage.psi); };
    while (fehlt() > kZielgenauigkeit && f.v > 0.0 && !lenkung.IstGerade(f.radius)) {
        if (f.schritte == kMaxSchritte) {
            f.ende = Ende::zuLang;
            break;
        }
        ++f.schritte;
        lage.t += kZeitschritt;

        const double radius = lenkung.Radius(lage.t);
        if (radius != f.radius) {
            f.radius = radius;
            mittenradius = Mittenradius(g.fahrzeug, radius);
        }

        // v = vA + a·t and s = vA·t + a·t²/2 until the limit is reached, then at the limit
        const double sVorher = lage.s;
        const double dauer = std::max(0.0, lage.t - g.verzug);
        f.v = g.anfangsgeschw + g.beschleunigung * dauer;
        f.grenzeErreicht = (g.beschleunigung > 0.0 && f.v > g.grenze) || (g.beschleunigung < 0.0 && f.v < g.grenze);
        if (f.grenzeErreicht) {
            f.v = g.grenze;
            lage.s = (lage.t - g.verzug - tGrenze) * g.grenze + sGrenze + g.anfangsgeschw * g.verzug;
        } else {
            lage.s = g.anfangsgeschw * lage.t + g.beschleunigung / 2.0 * (dauer * dauer);
        }
        beobachter.Schritt(f, lage.s - sVorher, mittenradius);
    }
    if (f.ende != Ende::zuLang && fehlt() > kZielgenauigkeit)
        f.ende = f.v > 0.0 ? Ende::gerade : Ende::stillstand;
    beobachter.Beende(f);
    return f;
}

} // namespace

Fahrt Fahre(const Vorgabe& g)
{
    return FahreMit<Aufzeichnung>(g);
}

Fahrt FahreSuchend(const Vorgabe& g)
{
    return FahreMit<NurGieren>(g);
}

void FahreWeiter(const Vorgabe& g, Fahrt& f, double dt, double ds)
{
    f.lage.t += dt;
    f.lage.s += ds;
    Bewege(f.lage, ds, f.radius, Mittenradius(g.fahrzeug, f.radius));
    f.frontversatz = f.lage.rad.y + std::sin(f.lage.psi) * g.fahrzeug.bisFront;
    f.punkte.back() = Mitte(g, f.lage) * kCmProM;
    f.verlauf.back() = f.lage;
    if (f.zwischenIstEnde) {
        f.zwischen = f.lage;
        f.frontversatzZwischen = f.frontversatz;
    }
}

} // namespace abbiegen
