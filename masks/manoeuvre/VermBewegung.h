// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The two motions of the avoidability calculation and what they have to do with each other. SI units throughout. The
// axis runs along the way of the vehicle under study, V; its path and time count from its reaction point.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>

/// Paths (m) that differ by no more than this are equal.
inline constexpr double kVermNull = 1e-9;
/// Grid of the times at which V is looked at, s.
inline constexpr double kVermZeitraster = 1e-5;

/// What V is given: reaction, rising deceleration, full braking to the stop.
struct VermVorgabe {
    double v;  ///< initial speed, m/s, positive
    double aR; ///< acceleration during the reaction, m/s²
    double tR; ///< reaction time, s
    double tS; ///< threshold time, s
    double aB; ///< braking deceleration, m/s², positive
};

/// V's motion from its reaction point on. It stops once, in whichever phase that is, and stays.
class VermFahrt
{
  public:
    enum class Phase { reaktion, schwelle, bremsung };
    /// A stretch of the motion: speed changes by beschl·u + ruck·u²/2 in the time u from its start.
    struct Stueck {
        Phase phase = Phase::reaktion;
        double beginn = 0.0; ///< s
        double dauer = 0.0;  ///< s
        double weg = 0.0;    ///< path at its start, m
        double v = 0.0;      ///< speed at its start, m/s
        double beschl = 0.0; ///< m/s²
        double ruck = 0.0;   ///< m/s³

        double WegNach(double u) const { return weg + u * (v + u * (beschl / 2.0 + u * (ruck / 6.0))); }
        double GeschwNach(double u) const { return v + u * (beschl + u * (ruck / 2.0)); }
    };

    explicit VermFahrt(const VermVorgabe& vorgabe);

    double Weg(double t) const;
    double Geschw(double t) const;
    double Haltezeit() const { return m_haltezeit; }
    double Halteweg() const { return m_halteweg; }
    /// When its speed is back at (or from the start not above) the initial one; s.
    double Rueckkehrzeit() const;
    /// The stretches up to the stop, those without duration left out.
    std::span<const Stueck> Stuecke() const { return {m_stuecke.data(), m_anzahl}; }

  private:
    const Stueck* Finde(double t) const;

    std::array<Stueck, 3> m_stuecke{};
    std::size_t m_anzahl = 0;
    double m_haltezeit = 0.0;
    double m_halteweg = 0.0;
};

/// The opponent G from the collision on: it stops once and stays.
struct VermGegner {
    double v = 0.0; ///< collision speed, m/s
    double a = 0.0; ///< deceleration, m/s²

    /// Infinite when it never stops.
    double Haltezeit() const;
    double Weg(double tau) const;
    double Geschw(double tau) const;
};

enum class VermRichtung : std::int64_t { entgegen = 1, quer = 2, gleich = 3 };
enum class VermKenngroesse : std::int64_t { raeumlich = 1, zeitlich = 2 };

/// Where and when V would have to be for a contact.
struct VermKonflikt {
    VermRichtung richtung = VermRichtung::entgegen;
    VermKenngroesse art = VermKenngroesse::raeumlich;
    double sRK = 0.0; ///< from the reaction point to the collision point, m
    double tRK = 0.0; ///< from the reaction point to the collision, s
    double sFB = 0.0; ///< G's missing braking distance, m
    double xV = 0.0;  ///< vanishing point, m
    VermGegner gegner{};
    /// How long after the collision G has cleared the conflict area; infinite when it never does.
    double tRaeumen = std::numeric_limits<double>::infinity();

    /// The same when V reacts `delta` s earlier, driving at v until then.
    VermKonflikt Frueher(double delta, double v) const;
    /// V's path up to where it must not come.
    double Sperrweg() const;
    /// V's time from which on G has cleared the conflict area.
    double Freizeit() const;
    /// Path from V to G at V's time t, at least that of the collision; negative beyond G.
    double Abstand(const VermFahrt& fahrt, double t) const;
};

/// One condition of avoidance. The values of a search for which it is violated lie together.
struct VermBedingung {
    enum class Art {
        halteweg,  ///< V stops within the blocked path
        raeumung,  ///< or G has cleared the conflict area before V is there
        beruehrung ///< V does not touch G from `von` to `bis` s after the collision
    };
    Art art = Art::halteweg;
    double von = 0.0;
    double bis = std::numeric_limits<double>::infinity();
    /// When V reacts so much earlier (s), it is violated most; -infinity: the later the worse.
    double schlimmste = -std::numeric_limits<double>::infinity();

    bool Verletzt(const VermFahrt& fahrt, const VermKonflikt& konflikt) const;
};

class VermBedingungen
{
  public:
    /// `fahrt` starts with the initial speed `v`.
    VermBedingungen(const VermKonflikt& konflikt, const VermFahrt& fahrt, double v);

    bool Vermieden(const VermFahrt& fahrt, const VermKonflikt& konflikt) const;
    std::span<const VermBedingung> Alle() const { return {m_bedingungen.data(), m_anzahl}; }

  private:
    void Fuege(const VermBedingung& bedingung) { m_bedingungen[m_anzahl++] = bedingung; }

    std::array<VermBedingung, 3> m_bedingungen{};
    std::size_t m_anzahl = 0;
};

/// V's time and speed at some point of its way.
struct VermAnkunft {
    double zeit;   ///< s
    double geschw; ///< m/s
};

/// V where it has covered `weg`, not more than its stopping distance. During braking from the path; before, at the
/// first time of the grid.
VermAnkunft VermErreicht(const VermFahrt& fahrt, double weg);
/// V where it meets G, at the first time of the grid. Before the collision G is taken to be at its place. Nothing when
/// they do not meet.
std::optional<VermAnkunft> VermTrifft(const VermFahrt& fahrt, const VermKonflikt& konflikt);
