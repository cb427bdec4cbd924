// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/manoeuvre/VermBewegung.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr double kNie = std::numeric_limits<double>::infinity();
/// V must reach the conflict point by more than this after the collision to be late, s.
constexpr double kSpaeter = 0.001;

/// First u >= 0 at which w + a·u + r·u²/2 falls to zero, w >= 0; infinite when it does not.
double Nulldurchgang(double w, double a, double r)
{
    const double disc = a * a - 2.0 * r * w;
    if (disc < 0.0)
        return kNie;
    const double root = std::sqrt(disc);
    // Of the two forms of the solution the one that does not cancel.
    if (a > 0.0)
        return r < 0.0 ? (a + root) / -r : kNie;
    return root - a > 0.0 ? 2.0 * w / (root - a) : kNie;
}

/// Ascending times between which nothing about the two motions has a kink.
class Abschnitte
{
  public:
    Abschnitte(double von, double bis)
    {
        m_zeiten[0] = von;
        m_zeiten[1] = bis;
        m_anzahl = 2;
    }
    void Teile(double t)
    {
        if (t > m_zeiten[0] && t < m_zeiten[m_anzahl - 1]) {
            m_zeiten[m_anzahl++] = t;
            std::sort(m_zeiten.begin(), m_zeiten.begin() + static_cast<std::ptrdiff_t>(m_anzahl));
        }
    }
    std::span<const double> Zeiten() const { return {m_zeiten.data(), m_anzahl}; }

  private:
    std::array<double, 24> m_zeiten{};
    std::size_t m_anzahl;
};

/// Between neighbours of these times V's distance to G only rises or only falls.
Abschnitte EinsinnigeAbschnitte(const VermFahrt& fahrt, const VermKonflikt& k, double von, double bis)
{
    Abschnitte knicke(von, bis);
    knicke.Teile(k.tRK);
    knicke.Teile(k.tRK + k.gegner.Haltezeit());
    for (const VermFahrt::Stueck& s : fahrt.Stuecke())
        knicke.Teile(s.beginn + s.dauer);

    Abschnitte alle = knicke;
    const std::span<const double> zeiten = knicke.Zeiten();
    for (std::size_t i = 1; i < zeiten.size(); ++i) {
        const double a = zeiten[i - 1];
        const double mitte = a + (zeiten[i] - a) / 2.0;
        for (const VermFahrt::Stueck& s : fahrt.Stuecke()) {
            if (mitte < s.beginn || mitte >= s.beginn + s.dauer)
                continue;
            // V drives at G's speed where v + beschl·u + ruck·u²/2 = vG - aG·(beginn + u - tRK).
            const bool bewegt = mitte > k.tRK && mitte < k.tRK + k.gegner.Haltezeit();
            const double vG = bewegt ? k.gegner.v - k.gegner.a * (s.beginn - k.tRK) : 0.0;
            const double w = s.v - vG;
            const double b = s.beschl + (bewegt ? k.gegner.a : 0.0);
            const double disc = b * b - 2.0 * s.ruck * w;
            if (disc < 0.0)
                continue;
            const double q = -(b + std::copysign(std::sqrt(disc), b));
            if (q != 0.0)
                alle.Teile(s.beginn + 2.0 * w / q);
            if (s.ruck != 0.0)
                alle.Teile(s.beginn + q / s.ruck);
        }
    }
    return alle;
}

/// First index of (from, to] at which `holds`, when it does at `to` and, once it holds, on.
template <class Holds> std::int64_t ErsterIndex(std::int64_t from, std::int64_t to, Holds holds)
{
    while (to - from > 1) {
        const std::int64_t middle = from + (to - from) / 2;
        (holds(middle) ? to : from) = middle;
    }
    return to;
}

VermAnkunft Ankunft(const VermFahrt& fahrt, double t)
{
    return {t, fahrt.Geschw(t)};
}

double Rasterzeit(std::int64_t index)
{
    return static_cast<double>(index) * kVermZeitraster;
}

} // namespace

VermFahrt::VermFahrt(const VermVorgabe& g)
{
    const double ruck = g.tS > 0.0 ? -(g.aB + g.aR) / g.tS : 0.0;
    const std::array<Stueck, 3> plan{{
        {Phase::reaktion, 0.0, g.tR, 0.0, 0.0, g.aR, 0.0},
        {Phase::schwelle, 0.0, g.tS, 0.0, 0.0, g.aR, ruck},
        {Phase::bremsung, 0.0, kNie, 0.0, 0.0, -g.aB, 0.0},
    }};
    double v = g.v;
    for (Stueck s : plan) {
        s.beginn = m_haltezeit;
        s.weg = m_halteweg;
        s.v = v;
        const double halt = Nulldurchgang(s.v, s.beschl, s.ruck);
        const bool haelt = halt <= s.dauer;
        s.dauer = std::min(s.dauer, halt);
        if (s.dauer > 0.0) {
            m_stuecke[m_anzahl++] = s;
            m_haltezeit = s.beginn + s.dauer;
            m_halteweg = s.WegNach(s.dauer);
            v = haelt ? 0.0 : s.GeschwNach(s.dauer);
        }
        if (haelt)
            return;
    }
}

const VermFahrt::Stueck* VermFahrt::Finde(double t) const
{
    for (const Stueck& s : Stuecke())
        if (t < s.beginn + s.dauer)
            return &s;
    return nullptr;
}

double VermFahrt::Weg(double t) const
{
    const Stueck* const s = Finde(t);
    return s == nullptr ? m_halteweg : s->WegNach(t - s->beginn);
}

double VermFahrt::Geschw(double t) const
{
    const Stueck* const s = Finde(t);
    return s == nullptr ? 0.0 : std::max(s->GeschwNach(t - s->beginn), 0.0);
}

double VermFahrt::Rueckkehrzeit() const
{
    const std::span<const Stueck> stuecke = Stuecke();
    if (stuecke.empty() || stuecke.front().beschl <= 0.0)
        return 0.0;
    for (const Stueck& s : stuecke) {
        const double u = Nulldurchgang(std::max(s.v - stuecke.front().v, 0.0), s.beschl, s.ruck);
        if (u <= s.dauer)
            return s.beginn + u;
    }
    return m_haltezeit;
}

double VermGegner::Haltezeit() const
{
    if (a == 0.0)
        return v == 0.0 ? 0.0 : kNie;
    if (v == 0.0)
        return a > 0.0 ? 0.0 : kNie;
    return (v > 0.0) == (a > 0.0) ? v / a : kNie;
}

double VermGegner::Weg(double tau) const
{
    const double t = std::min(tau, Haltezeit());
    return t * (v - a / 2.0 * t);
}

double VermGegner::Geschw(double tau) const
{
    return tau < Haltezeit() ? v - a * tau : 0.0;
}

VermKonflikt VermKonflikt::Frueher(double delta, double v) const
{
    VermKonflikt k = *this;
    k.sRK = sRK + v * delta;
    k.tRK = tRK + delta;
    return k;
}

double VermKonflikt::Sperrweg() const
{
    switch (richtung) {
    case VermRichtung::entgegen:
        return sRK - sFB;
    case VermRichtung::quer:
        return sRK + xV;
    case VermRichtung::gleich:
        break;
    }
    return sRK + sFB;
}

double VermKonflikt::Freizeit() const
{
    return tRK + std::max(kSpaeter, tRaeumen);
}

double VermKonflikt::Abstand(const VermFahrt& fahrt, double t) const
{
    // A G that stands has its missing braking distance behind it.
    const bool steht = richtung == VermRichtung::entgegen && gegner.v == 0.0;
    const double weg = steht ? sFB : gegner.Weg(std::max(t - tRK, 0.0));
    return (richtung == VermRichtung::gleich ? sRK + weg : sRK - weg) - fahrt.Weg(t);
}

bool VermBedingung::Verletzt(const VermFahrt& fahrt, const VermKonflikt& k) const
{
    if (art != Art::beruehrung) {
        if (fahrt.Halteweg() - k.Sperrweg() <= kVermNull)
            return false;
        return art == Art::halteweg || k.tRaeumen == kNie || fahrt.Weg(k.Freizeit()) - k.Sperrweg() >= -kVermNull;
    }
    // After V's stop the distance can only shrink when G comes backwards.
    const double ende = std::max(fahrt.Haltezeit(), k.tRK);
    const double gegnerHalt = k.tRK + k.gegner.Haltezeit();
    if (bis == kNie && gegnerHalt == kNie && k.gegner.Geschw(ende - k.tRK) < 0.0)
        return true;
    const double letzte = std::max(ende, gegnerHalt == kNie ? ende : gegnerHalt);
    const Abschnitte abschnitte =
        EinsinnigeAbschnitte(fahrt, k, k.tRK + von, std::max(k.tRK + von, std::min(k.tRK + bis, letzte)));
    const std::span<const double> zeiten = abschnitte.Zeiten();
    return std::any_of(zeiten.begin(), zeiten.end(), [&](double t) { return k.Abstand(fahrt, t) < -kVermNull; });
}

VermBedingungen::VermBedingungen(const VermKonflikt& k, const VermFahrt& fahrt, double v)
{
    using Art = VermBedingung::Art;
    const bool raeumlich = k.art == VermKenngroesse::raeumlich;
    // Reacting earlier by delta shifts V against G by v·delta and delta: with G's time tau and V's time u = tau + tRK +
    // delta the distance is P(tau) + Q(u) + const, P = xG - v·tau and Q = v·u - s(u). Q falls until V is back at v and
    // rises from then on; where P is smallest too, contact is worst.
    const double zurueck = fahrt.Rueckkehrzeit() - k.tRK;
    switch (k.richtung) {
    case VermRichtung::entgegen:
        Fuege({Art::halteweg});
        break;
    case VermRichtung::quer:
        if (raeumlich || k.tRaeumen == kNie)
            Fuege({Art::halteweg});
        else
            Fuege({Art::raeumung, 0.0, kNie, zurueck - (k.Freizeit() - k.tRK)});
        break;
    case VermRichtung::gleich: {
        const VermGegner& g = k.gegner;
        const double schneller = g.v - v;
        if (g.a > 0.0 && schneller > 0.0) {
            // G draws away at first; P has its maximum between two stretches that may violate.
            const double gleichauf = schneller / g.a;
            Fuege({Art::beruehrung, 0.0, gleichauf, zurueck});
            Fuege({Art::beruehrung, gleichauf, kNie});
        } else if (g.a < 0.0 && schneller < 0.0) {
            Fuege({Art::beruehrung, 0.0, kNie, zurueck - schneller / g.a});
        } else if (schneller > 0.0) {
            Fuege({Art::beruehrung, 0.0, kNie, zurueck});
        } else if (g.a < 0.0) {
            Fuege({Art::beruehrung, 0.0, kNie, zurueck});
        } else {
            Fuege({Art::beruehrung});
        }
        if (raeumlich)
            Fuege({Art::halteweg});
        break;
    }
    }
}

bool VermBedingungen::Vermieden(const VermFahrt& fahrt, const VermKonflikt& konflikt) const
{
    const auto alle = Alle();
    return std::none_of(alle.begin(), alle.end(), [&](const VermBedingung& b) { return b.Verletzt(fahrt, konflikt); });
}

VermAnkunft VermErreicht(const VermFahrt& fahrt, double weg)
{
    if (weg <= 0.0)
        return Ankunft(fahrt, 0.0);
    for (const VermFahrt::Stueck& s : fahrt.Stuecke()) {
        if (s.phase != VermFahrt::Phase::bremsung || weg <= s.weg)
            continue;
        // vE² = vS² - 2·aB·(D - sR - sS)
        const double vE = std::sqrt(std::max(s.v * s.v + 2.0 * s.beschl * (weg - s.weg), 0.0));
        return {s.beginn + (s.v - vE) / -s.beschl, vE};
    }
    const auto ende = static_cast<std::int64_t>(std::ceil(fahrt.Haltezeit() / kVermZeitraster)) + 1;
    return Ankunft(fahrt, Rasterzeit(ErsterIndex(
                              0, ende, [&](std::int64_t index) { return fahrt.Weg(Rasterzeit(index)) >= weg; })));
}

std::optional<VermAnkunft> VermTrifft(const VermFahrt& fahrt, const VermKonflikt& k)
{
    const auto dahinter = [&](double t) { return k.Abstand(fahrt, t) < -kVermNull; };
    if (dahinter(0.0))
        return Ankunft(fahrt, 0.0);
    const double gegnerHalt = k.tRK + k.gegner.Haltezeit();
    const double ende = std::max({fahrt.Haltezeit(), k.tRK, gegnerHalt == kNie ? 0.0 : gegnerHalt});
    const Abschnitte abschnitte = EinsinnigeAbschnitte(fahrt, k, 0.0, ende);
    const std::span<const double> zeiten = abschnitte.Zeiten();
    for (std::size_t i = 1; i < zeiten.size(); ++i) {
        if (!dahinter(zeiten[i]))
            continue;
        const auto vorher = static_cast<std::int64_t>(std::floor(zeiten[i - 1] / kVermZeitraster));
        const auto nachher = static_cast<std::int64_t>(std::floor(zeiten[i] / kVermZeitraster));
        if (nachher > vorher && dahinter(Rasterzeit(nachher)))
            return Ankunft(fahrt, Rasterzeit(ErsterIndex(vorher, nachher, [&](std::int64_t index) {
                               return dahinter(Rasterzeit(index));
                           })));
        // No time of the grid before the end of this stretch: the next one, when it still holds then.
        const double naechste = Rasterzeit(nachher + 1);
        return Ankunft(fahrt, dahinter(naechste) ? naechste : zeiten[i]);
    }
    return std::nullopt;
}
