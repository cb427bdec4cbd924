// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/import/Kreuzsummen.h"

#include "host/Assert.h"
#include "host/Physics.h"

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>

namespace
{

/// Of the error bound |z' − z| ≤ kFehler · u · |x| · |y| with u = 2^-53: Brent, Percival and Zimmermann (Error bounds
/// on complex floating-point multiplication, 2007, theorem 5.1) give (3n + √5 (3n + 1) + 3n β/u) for transforms of 2^n
/// points; stages of radix 4 and 3 multiply less often. β is the error of a root, here at most 5u (product of two
/// entries of tables): 21 n + 3, less than 600 up to n = 28; turning forth and back adds 30, reading the numbers as
/// doubles 2. The rest is reserve.
constexpr double kFehler = 1500.0;
constexpr double kU = 0x1p-53;

/// exp(2πi k / count) for all k from tables of about √count entries.
class Wurzeln
{
  public:
    explicit Wurzeln(std::size_t count) : m_count(count)
    {
        while (m_fein * m_fein < count)
            m_fein *= 2;
        m_niedrig.resize(m_fein);
        m_hoch.resize(count / m_fein + 1);
        for (std::size_t k = 0; k < m_niedrig.size(); ++k)
            m_niedrig[k] = Genau(k);
        for (std::size_t k = 0; k < m_hoch.size(); ++k)
            m_hoch[k] = Genau(k * m_fein);
    }
    std::pair<double, double> operator()(std::size_t k) const
    {
        const auto& [a, b] = m_hoch[k / m_fein];
        const auto& [c, d] = m_niedrig[k % m_fein];
        return {a * c - b * d, a * d + b * c};
    }

  private:
    std::pair<double, double> Genau(std::size_t k) const
    {
        // The eighth of the circle decides, so that the argument is at most π/4 and exact but for one rounding.
        const std::size_t viertel = 4 * k / m_count;
        double winkel = 2.0 * kPi * static_cast<double>(k) / static_cast<double>(m_count);
        winkel -= static_cast<double>(viertel) * kPi / 2.0;
        const double c = std::cos(winkel);
        const double s = std::sin(winkel);
        switch (viertel % 4) {
        case 0:
            return {c, s};
        case 1:
            return {-s, c};
        case 2:
            return {-c, -s};
        default:
            return {s, -c};
        }
    }

    std::size_t m_count;
    std::size_t m_fein = 1;
    std::vector<std::pair<double, double>> m_niedrig, m_hoch;
};

/// One transform of the stage: four quarters of decimation in frequency (Cooley and Tukey, radix 4).
void Teile(double* re, double* im, std::size_t viertel, const double* wr, const double* wi)
{
    double* r0 = re;
    double* r1 = re + viertel;
    double* r2 = r1 + viertel;
    double* r3 = r2 + viertel;
    double* i0 = im;
    double* i1 = im + viertel;
    double* i2 = i1 + viertel;
    double* i3 = i2 + viertel;
    for (std::size_t j = 0; j < viertel; ++j) {
        const double ar = r0[j] + r2[j], ai = i0[j] + i2[j];
        const double br = r0[j] - r2[j], bi = i0[j] - i2[j];
        const double cr = r1[j] + r3[j], ci = i1[j] + i3[j];
        const double dr = i1[j] - i3[j], di = r3[j] - r1[j]; // −i (a1 − a3)
        r0[j] = ar + cr;
        i0[j] = ai + ci;
        const double xr = br + dr, xi = bi + di;
        const double yr = ar - cr, yi = ai - ci;
        const double zr = br - dr, zi = bi - di;
        r1[j] = xr * wr[j] - xi * wi[j];
        i1[j] = xr * wi[j] + xi * wr[j];
        r2[j] = yr * wr[viertel + j] - yi * wi[viertel + j];
        i2[j] = yr * wi[viertel + j] + yi * wr[viertel + j];
        r3[j] = zr * wr[2 * viertel + j] - zi * wi[2 * viertel + j];
        i3[j] = zr * wi[2 * viertel + j] + zi * wr[2 * viertel + j];
    }
}

/// Undoes Teile, four times as large.
void Fuege(double* re, double* im, std::size_t viertel, const double* wr, const double* wi)
{
    double* r0 = re;
    double* r1 = re + viertel;
    double* r2 = r1 + viertel;
    double* r3 = r2 + viertel;
    double* i0 = im;
    double* i1 = im + viertel;
    double* i2 = i1 + viertel;
    double* i3 = i2 + viertel;
    for (std::size_t j = 0; j < viertel; ++j) {
        const double xr = r1[j] * wr[j] + i1[j] * wi[j];
        const double xi = i1[j] * wr[j] - r1[j] * wi[j];
        const double yr = r2[j] * wr[viertel + j] + i2[j] * wi[viertel + j];
        const double yi = i2[j] * wr[viertel + j] - r2[j] * wi[viertel + j];
        const double zr = r3[j] * wr[2 * viertel + j] + i3[j] * wi[2 * viertel + j];
        const double zi = i3[j] * wr[2 * viertel + j] - r3[j] * wi[2 * viertel + j];
        const double ar = r0[j] + yr, ai = i0[j] + yi;
        const double br = r0[j] - yr, bi = i0[j] - yi;
        const double cr = xr + zr, ci = xi + zi;
        const double dr = zi - xi, di = xr - zr; // i (b1 − b3)
        r0[j] = ar + cr;
        i0[j] = ai + ci;
        r1[j] = br + dr;
        i1[j] = bi + di;
        r2[j] = ar - cr;
        i2[j] = ai - ci;
        r3[j] = br - dr;
        i3[j] = bi - di;
    }
}

constexpr double kSinus60 = 0.86602540378443864676;

/// The first stage of three times a power of two: three thirds (radix 3).
void TeileDrei(double* re, double* im, std::size_t drittel, const double* wr, const double* wi)
{
    double* r1 = re + drittel;
    double* r2 = r1 + drittel;
    double* i1 = im + drittel;
    double* i2 = i1 + drittel;
    for (std::size_t j = 0; j < drittel; ++j) {
        const double tr = r1[j] + r2[j], ti = i1[j] + i2[j];
        const double nr = kSinus60 * (i1[j] - i2[j]), ni = kSinus60 * (r2[j] - r1[j]);
        const double mr = re[j] - 0.5 * tr, mi = im[j] - 0.5 * ti;
        re[j] += tr;
        im[j] += ti;
        const double xr = mr + nr, xi = mi + ni;
        const double yr = mr - nr, yi = mi - ni;
        r1[j] = xr * wr[j] - xi * wi[j];
        i1[j] = xr * wi[j] + xi * wr[j];
        r2[j] = yr * wr[drittel + j] - yi * wi[drittel + j];
        i2[j] = yr * wi[drittel + j] + yi * wr[drittel + j];
    }
}

/// Undoes TeileDrei, three times as large.
void FuegeDrei(double* re, double* im, std::size_t drittel, const double* wr, const double* wi)
{
    double* r1 = re + drittel;
    double* r2 = r1 + drittel;
    double* i1 = im + drittel;
    double* i2 = i1 + drittel;
    for (std::size_t j = 0; j < drittel; ++j) {
        const double xr = r1[j] * wr[j] + i1[j] * wi[j];
        const double xi = i1[j] * wr[j] - r1[j] * wi[j];
        const double yr = r2[j] * wr[drittel + j] + i2[j] * wi[drittel + j];
        const double yi = i2[j] * wr[drittel + j] - r2[j] * wi[drittel + j];
        const double tr = xr + yr, ti = xi + yi;
        const double nr = kSinus60 * (yi - xi), ni = kSinus60 * (xr - yr);
        const double mr = re[j] - 0.5 * tr, mi = im[j] - 0.5 * ti;
        re[j] += tr;
        im[j] += ti;
        r1[j] = mr + nr;
        i1[j] = mi + ni;
        r2[j] = mr - nr;
        i2[j] = mi - ni;
    }
}

/// Teile (`kHin`) and Fuege of four points, of which no root is needed.
template <bool kHin> void Vier(double* re, double* im)
{
    const double ar = re[0] + re[2], ai = im[0] + im[2];
    const double br = re[0] - re[2], bi = im[0] - im[2];
    const double cr = re[1] + re[3], ci = im[1] + im[3];
    const double dr = kHin ? im[1] - im[3] : im[3] - im[1];
    const double di = kHin ? re[3] - re[1] : re[1] - re[3];
    re[0] = ar + cr;
    im[0] = ai + ci;
    re[1] = br + dr;
    im[1] = bi + di;
    re[2] = ar - cr;
    im[2] = ai - ci;
    re[3] = br - dr;
    im[3] = bi - di;
}

/// The last stage of a length that is no power of four; its own inverse but for the factor.
void Paar(double* werte)
{
    const double a = werte[0];
    werte[0] = a + werte[1];
    werte[1] = a - werte[1];
}

} // namespace

double Quadratsumme(std::span<const std::int64_t> werte)
{
    double summen[4] = {}; // side by side: a sum waits for the one before
    std::size_t k = 0;
    for (; k + 4 <= werte.size(); k += 4)
        for (std::size_t i = 0; i < 4; ++i)
            summen[i] += static_cast<double>(werte[k + i]) * static_cast<double>(werte[k + i]);
    for (; k < werte.size(); ++k)
        summen[0] += static_cast<double>(werte[k]) * static_cast<double>(werte[k]);
    return (summen[0] + summen[1] + summen[2] + summen[3]) * (1.0 + 1e-6);
}

Kreuzsummen::Kreuzsummen(std::span<const std::int64_t> x, std::size_t shifts, std::size_t longestY)
    : m_werte(x.size()), m_shifts(shifts), m_norm(std::sqrt(Quadratsumme(x)))
{
    RUV_ASSERT(!x.empty() && shifts > 0);
    // Turned by exp(iπk/2L), transforms of L complex points tell 2L sums apart (right-angle convolution: Crandall and
    // Fagin, Discrete weighted transforms, 1994). The sums from n − 1 on are wanted; what wraps round must fall before.
    const std::size_t noetig = std::max(x.size() + shifts - 1, longestY);
    while (2 * m_laenge < noetig)
        m_laenge *= 2;
    // Three quarters of that often suffice.
    m_drei = m_laenge >= 16 && 2 * (m_laenge / 4 * 3) >= noetig;
    if (m_drei)
        m_laenge = m_laenge / 4 * 3;
    const Wurzeln wurzeln(4 * m_laenge);
    m_dreher.re.resize(m_laenge);
    m_dreher.im.resize(m_laenge);
    for (std::size_t k = 0; k < m_laenge; ++k)
        std::tie(m_dreher.re[k], m_dreher.im[k]) = wurzeln(k);
    for (std::size_t laenge = m_laenge; laenge > 4;) {
        const std::size_t teile = m_drei && laenge == m_laenge ? 3 : 4;
        const std::size_t teil = laenge / teile;
        Stufe stufe{std::vector<double>((teile - 1) * teil), std::vector<double>((teile - 1) * teil)};
        // exp(−2πi/laenge)^(potenz · j), from the table of exp(iπk/2L).
        const std::size_t schritt = 4 * m_laenge / laenge;
        for (std::size_t potenz = 1; potenz < teile; ++potenz)
            for (std::size_t j = 0; j < teil; ++j) {
                const std::size_t k = potenz * j * schritt; // below 3L
                const double re = m_dreher.re[k % m_laenge];
                const double im = m_dreher.im[k % m_laenge];
                const bool quer = k >= m_laenge && k < 2 * m_laenge; // a quarter of the circle farther
                const double vorzeichen = k < 2 * m_laenge ? 1.0 : -1.0;
                stufe.re[(potenz - 1) * teil + j] = quer ? -im : vorzeichen * re;
                stufe.im[(potenz - 1) * teil + j] = quer ? -re : -vorzeichen * im;
            }
        m_stufen.push_back(std::move(stufe));
        laenge = teil;
    }
    m_x = Vorwaerts(x, true);
}

template <bool kHin> void Kreuzsummen::Transformiere(Signal& signal) const
{
    double* const re = signal.re.data();
    double* const im = signal.im.data();
    if (!m_drei) {
        Transformiere<kHin>(re, im, m_laenge, 0);
        return;
    }
    const std::size_t drittel = m_laenge / 3;
    if (kHin)
        TeileDrei(re, im, drittel, m_stufen[0].re.data(), m_stufen[0].im.data());
    for (std::size_t at = 0; at < m_laenge; at += drittel)
        Transformiere<kHin>(re + at, im + at, drittel, 1);
    if (!kHin)
        FuegeDrei(re, im, drittel, m_stufen[0].re.data(), m_stufen[0].im.data());
}

/// One quarter after the other down to the last stage: what is worked on stays in the cache.
template <bool kHin>
void Kreuzsummen::Transformiere(double* re, double* im, std::size_t laenge, std::size_t stufe) const
{
    if (laenge == 4) {
        Vier<kHin>(re, im);
    } else if (laenge == 2) {
        Paar(re);
        Paar(im);
    } else if (laenge > 4) {
        const std::size_t viertel = laenge / 4;
        const auto& [wr, wi] = m_stufen[stufe];
        if (kHin)
            Teile(re, im, viertel, wr.data(), wi.data());
        for (std::size_t at = 0; at < laenge; at += viertel)
            Transformiere<kHin>(re + at, im + at, viertel, stufe + 1);
        if (!kHin)
            Fuege(re, im, viertel, wr.data(), wi.data());
    }
}

Kreuzsummen::Signal Kreuzsummen::Vorwaerts(std::span<const std::int64_t> werte, bool umgekehrt) const
{
    Signal signal{std::vector<double>(m_laenge), std::vector<double>(m_laenge)};
    const std::size_t n = werte.size();
    const auto wert = [&](std::size_t k) { return static_cast<double>(werte[umgekehrt ? n - 1 - k : k]); };
    // Modulo z^L = i: the second half of the numbers is the imaginary part.
    for (std::size_t k = 0; k < std::min(n, m_laenge); ++k) {
        const double re = wert(k);
        const double im = k + m_laenge < n ? wert(k + m_laenge) : 0.0;
        signal.re[k] = re * m_dreher.re[k] - im * m_dreher.im[k];
        signal.im[k] = re * m_dreher.im[k] + im * m_dreher.re[k];
    }
    Transformiere<true>(signal);
    return signal;
}

Kreuzsummen::Ergebnis Kreuzsummen::Mit(std::span<const std::int64_t> y) const
{
    RUV_ASSERT(y.size() <= 2 * m_laenge);
    Signal signal = Vorwaerts(y, false);
    for (std::size_t k = 0; k < m_laenge; ++k) {
        const double re = signal.re[k] * m_x.re[k] - signal.im[k] * m_x.im[k];
        signal.im[k] = signal.re[k] * m_x.im[k] + signal.im[k] * m_x.re[k];
        signal.re[k] = re;
    }
    Transformiere<false>(signal);
    Ergebnis ergebnis{std::vector<double>(m_shifts), kFehler * kU * m_norm * std::sqrt(Quadratsumme(y))};
    const double anteil = 1.0 / static_cast<double>(m_laenge);
    for (std::size_t d = 0; d < m_shifts; ++d) {
        const std::size_t k = m_werte - 1 + d; // x is reversed: its last number meets y_0 at n − 1
        const std::size_t i = k % m_laenge;
        const double re = signal.re[i] * m_dreher.re[i] + signal.im[i] * m_dreher.im[i];
        const double im = signal.im[i] * m_dreher.re[i] - signal.re[i] * m_dreher.im[i];
        ergebnis.summen[d] = (k < m_laenge ? re : im) * anteil;
    }
    return ergebnis;
}
