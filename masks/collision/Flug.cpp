// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/Flug.h"

#include "host/Physics.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace flug
{
namespace
{

constexpr long kSchritte = static_cast<long>(kLaengsterFlug / kZeitschritt);
constexpr std::size_t kBahnpunkte = 400;

struct Zustand {
    double vx;
    double vz;
    double x = 0.0;
    double z = 0.0;

    Zustand(const Bedingung& b, double v0) : vx(v0 * std::cos(b.winkel)), vz(v0 * std::sin(b.winkel)) {}
    Zustand(double anfangVx, double anfangVz, double anfangX, double anfangZ)
        : vx(anfangVx), vz(anfangVz), x(anfangX), z(anfangZ)
    {
    }

    bool Fliegt(double hoehe) const { return vz > 0.0 || z > hoehe || z > 0.0; }
};

/// Deceleration by the air at a speed u against it, per axis, against u.
inline double Bremsung(double k, double u)
{
    return -std::copysign(k * (u * u), u);
}

/// One step of time: a = -sign(u)·k·u² per axis and the weight, then v += a·dt, then the place += v·dt.
inline void Schritt(double& vx, double& vz, double& x, double& z, double k, double gegenwind)
{
    const double ax = Bremsung(k, gegenwind + vx);
    const double az = Bremsung(k, vz) - kErdbeschleunigung;
    vx += ax * kZeitschritt;
    vz += az * kZeitschritt;
    x += vx * kZeitschritt;
    z += vz * kZeitschritt;
}

/// Several flights in lockstep, none of them looked at between the steps of a block.
class Gruppe
{
  public:
    Gruppe(const Bedingung& b, const Geschwindigkeiten& v0)
    {
        for (std::size_t i = 0; i < kNebeneinander; ++i) {
            const Zustand s(b, v0[i]);
            m_vx[i] = s.vx;
            m_vz[i] = s.vz;
        }
    }

    Zustand Einer(std::size_t i) const { return {m_vx[i], m_vz[i], m_x[i], m_z[i]}; }

    void Fliege(const Bedingung& b, long schritte)
    {
        const double k = b.luftwiderstand;
        const double wind = b.gegenwind;
        Gruppe g = *this;
        for (long n = 0; n < schritte; ++n)
            for (std::size_t i = 0; i < kNebeneinander; ++i)
                Schritt(g.m_vx[i], g.m_vz[i], g.m_x[i], g.m_z[i], k, wind);
        *this = g;
    }

  private:
    Geschwindigkeiten m_vx{};
    Geschwindigkeiten m_vz{};
    Geschwindigkeiten m_x{};
    Geschwindigkeiten m_z{};
};

constexpr long kBlock = 64;

/// Whether a block of steps neither ended the flight nor crossed the impact height nor passed the apex, so that its
/// last step tells all of it.
bool IstGlatt(const Zustand& vorher, const Zustand& nachher, double hoehe)
{
    return nachher.Fliegt(hoehe) && (vorher.vz > 0.0) == (nachher.vz > 0.0) &&
           (vorher.z >= hoehe) == (nachher.z >= hoehe);
}

/// A block of steps, each looked at.
Zustand Einzeln(Zustand s, const Bedingung& b, Landung& landung)
{
    for (long n = 0; n < kBlock && s.Fliegt(b.hoehe); ++n) {
        Schritt(s.vx, s.vz, s.x, s.z, b.luftwiderstand, b.gegenwind);
        if (s.z >= b.hoehe) {
            landung.weite = s.x;
            landung.erreicht = true;
        }
    }
    return s;
}

/// Keeps evenly spaced points of a path of unknown length: every second one goes when there are too many.
class Bahn
{
  public:
    void Nimm(double x, double z)
    {
        if (++m_seit < m_abstand)
            return;
        m_seit = 0;
        if (m_punkte.size() == kBahnpunkte) {
            for (std::size_t i = 0; i < kBahnpunkte / 2; ++i)
                m_punkte[i] = m_punkte[2 * i];
            m_punkte.resize(kBahnpunkte / 2);
            m_abstand *= 2;
        }
        m_punkte.push_back({x, z});
    }
    std::vector<CDPoint> Fertig(double x, double z)
    {
        m_punkte.push_back({x, z});
        return std::move(m_punkte);
    }

  private:
    std::vector<CDPoint> m_punkte{{0.0, 0.0}};
    long m_abstand = 16;
    long m_seit = 0;
};

} // namespace

Flug Fliege(const Bedingung& b, double v0)
{
    Flug flug;
    Bahn bahn;
    Zustand s(b, v0);
    const double k = b.luftwiderstand;
    const double amStart = std::max(std::abs(b.gegenwind + s.vx), std::abs(s.vz));
    double t = 0.0;
    long schritt = 0;
    for (; schritt < kSchritte && s.Fliegt(b.hoehe); ++schritt) {
        const double uz = s.vz;
        Schritt(s.vx, s.vz, s.x, s.z, k, b.gegenwind);
        if (s.z >= 0.0 && s.x >= flug.groessteWeite) {
            flug.groessteWeite = s.x;
            flug.groessteWeiteZeit = t;
        }
        if (s.z >= flug.wurfhoehe) {
            flug.wurfhoehe = s.z;
            flug.wurfhoeheZeit = t;
        } else {
            flug.verlust += std::abs(k * (uz * uz) * kZeitschritt);
        }
        if (s.z >= b.hoehe) {
            flug.weite = s.x;
            flug.weiteZeit = t;
        }
        bahn.Nimm(s.x, s.z);
        t += kZeitschritt;
    }
    flug.vx = s.vx;
    flug.vz = s.vz;
    // The speed against the air is largest at the start or, falling, at the end.
    flug.daempfung = k * std::max(amStart, std::abs(s.vz)) * kZeitschritt;
    flug.gelandet = !s.Fliegt(b.hoehe);
    flug.bahn = bahn.Fertig(s.x, s.z);
    return flug;
}

std::array<Landung, kNebeneinander> Lande(const Bedingung& b, const Geschwindigkeiten& v0, double& dauer)
{
    std::array<Landung, kNebeneinander> landungen;
    Gruppe gruppe(b, v0);
    std::array<bool, kNebeneinander> unterwegs;
    for (std::size_t i = 0; i < kNebeneinander; ++i) {
        landungen[i].vx = gruppe.Einer(i).vx;
        unterwegs[i] = gruppe.Einer(i).Fliegt(b.hoehe);
    }
    long schritt = 0;
    while (schritt < kSchritte && std::find(unterwegs.begin(), unterwegs.end(), true) != unterwegs.end()) {
        const Gruppe vorher = gruppe;
        gruppe.Fliege(b, kBlock);
        for (std::size_t i = 0; i < kNebeneinander; ++i) {
            if (!unterwegs[i])
                continue;
            Zustand s = gruppe.Einer(i);
            if (IstGlatt(vorher.Einer(i), s, b.hoehe)) {
                if (s.z >= b.hoehe) {
                    landungen[i].weite = s.x;
                    landungen[i].erreicht = true;
                }
            } else {
                s = Einzeln(vorher.Einer(i), b, landungen[i]);
            }
            unterwegs[i] = s.Fliegt(b.hoehe);
            landungen[i].vx = s.vx;
        }
        schritt += kBlock;
    }
    dauer += static_cast<double>(schritt) * kZeitschritt;
    for (std::size_t i = 0; i < kNebeneinander; ++i)
        landungen[i].gelandet = !unterwegs[i];
    return landungen;
}

} // namespace flug
