// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/SchrankenKurve.h"

#include "host/Assert.h"
#include "host/Physics.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace schranken
{
namespace
{

constexpr double kSchritt = 0.001; // km/h

/// The speeds the search visits, each the sum of its predecessor and the step.
const std::vector<double>& Geschwindigkeiten()
{
    static const std::vector<double> table = [] {
        std::vector<double> values;
        values.reserve(200002);
        for (double v = 0.0; v <= kHoechstgeschwindigkeit; v += kSchritt)
            values.push_back(v);
        return values;
    }();
    return table;
}

enum class Lage { below, hit, above, nowhere };

Lage LageVon(double f, double s)
{
    const double difference = f - s;
    if (difference * difference < kFenster)
        return Lage::hit;
    if (std::isnan(difference))
        return Lage::nowhere;
    return difference < 0.0 ? Lage::below : Lage::above;
}

/// Samples [first, last] on which the curve runs one way. `scan`: too flat or too short to rely on that.
struct Abschnitt {
    std::size_t first;
    std::size_t last;
    bool rising;
    bool scan;
    double fFirst; ///< value at the first sample; the smallest of a scanned piece
    double fLast;  ///< value at the last sample; the largest of a scanned piece
};

/// Real zeros of the curve's derivative, as speeds v.
std::vector<double> Wendestellen(const Kurve& kurve)
{
    // f'(w) = a·w² + b·w + c
    double a = 0.0;
    double b = 0.0;
    double c = 0.0;
    switch (kurve.form) {
    case Kurve::Form::braking:
        return {};
    case Kurve::Form::deceleration:
        b = 2.0 * 0.0271 / kurve.p;
        c = 0.0178 * kurve.p;
        break;
    case Kurve::Form::polynomial:
        a = 3.0 * kurve.c3;
        b = 2.0 * kurve.c2;
        c = kurve.c1;
        break;
    }
    std::vector<double> zeros;
    if (a == 0.0) {
        if (b != 0.0)
            zeros = {-c / b};
    } else {
        const double discriminant = b * b - 4.0 * a * c;
        if (discriminant >= 0.0) {
            const double q = -0.5 * (b + std::copysign(std::sqrt(discriminant), b));
            zeros = {q / a};
            if (q != 0.0)
                zeros.push_back(c / q);
        } else if (discriminant > -1e-9 * b * b) {
            zeros = {-b / (2.0 * a)}; // nearly flat there, though it never turns
        }
    }
    for (double& zero : zeros)
        zero -= kurve.shift;
    std::sort(zeros.begin(), zeros.end());
    return zeros;
}

/// Rounding can disturb the order of neighbouring values only where the curve is flat: that is around its turning
/// points, where this many samples on either side are looked at one by one.
constexpr std::size_t kRand = 8;

std::vector<Abschnitt> Abschnitte(const Kurve& kurve)
{
    const auto& table = Geschwindigkeiten();
    const std::size_t end = table.size();
    std::vector<Abschnitt> pieces;
    std::size_t at = 0;
    const auto addMonotone = [&](std::size_t until) { // [at, until)
        if (until <= at)
            return;
        const double fFirst = kurve(table[at]);
        const double fLast = kurve(table[until - 1]);
        pieces.push_back({at, until - 1, fLast >= fFirst, false, fFirst, fLast});
        at = until;
    };
    for (const double zero : Wendestellen(kurve)) {
        if (!(zero > -1.0 && zero < kHoechstgeschwindigkeit + 1.0))
            continue;
        const auto nearest = static_cast<std::size_t>(std::max(zero, 0.0) / kSchritt);
        const std::size_t low = std::min(end, nearest > kRand ? nearest - kRand : 0);
        const std::size_t high = std::min(end, nearest + kRand + 1);
        addMonotone(low);
        if (high > at) {
            double lowest = kurve(table[at]);
            double highest = lowest;
            for (std::size_t k = at + 1; k < high; ++k) {
                lowest = std::min(lowest, kurve(table[k]));
                highest = std::max(highest, kurve(table[k]));
            }
            pieces.push_back({at, high - 1, true, true, lowest, highest});
            at = high;
        }
    }
    addMonotone(end);
    return pieces;
}

/// Where the curve crosses `f` on the piece, by Newton's method from `guess`: only a hint, an index of the table.
std::size_t Schaetzung(const Kurve& kurve, const Abschnitt& piece, double f, std::size_t guess)
{
    const auto& table = Geschwindigkeiten();
    double v = table[guess];
    for (int i = 0; i < 3; ++i) {
        const double correction = (f - kurve(v)) / kurve.Ableitung(v);
        if (!std::isfinite(correction))
            break;
        v = std::clamp(v + correction, table[piece.first], table[piece.last]);
        if (std::abs(correction) < kSchritt)
            break;
    }
    return std::clamp(static_cast<std::size_t>(v / kSchritt), piece.first, piece.last);
}

/// First sample of a monotone piece that no longer lies `before` the window of s, or `last + 1`. Searches outwards from
/// the guess in growing steps, then halves what is left.
std::size_t ErsterJenseits(const Kurve& kurve, const Abschnitt& piece, double s, Lage before, std::size_t guess)
{
    const auto& table = Geschwindigkeiten();
    const auto isBefore = [&](std::size_t k) { return LageVon(kurve(table[k]), s) == before; };
    if (LageVon(piece.fFirst, s) != before)
        return piece.first;
    if (LageVon(piece.fLast, s) == before)
        return piece.last + 1;
    std::size_t low = piece.first; // is before
    std::size_t high = piece.last; // is not
    std::size_t step = 1;
    if (isBefore(guess)) {
        for (low = guess; high - low > step; step *= 4) {
            if (!isBefore(low + step)) {
                high = low + step;
                break;
            }
            low += step;
        }
    } else {
        for (high = guess; high - low > step; step *= 4) {
            if (isBefore(high - step)) {
                low = high - step;
                break;
            }
            high -= step;
        }
    }
    while (high - low > 1) {
        const std::size_t middle = low + (high - low) / 2;
        (isBefore(middle) ? low : high) = middle;
    }
    return high;
}

/// Index of the first hit in the piece, or `last + 1`. `guess` is where the last one was found, and is moved along.
std::size_t ErsterTreffer(const Kurve& kurve, const Abschnitt& piece, double s, std::size_t& guess)
{
    const auto& table = Geschwindigkeiten();
    const std::size_t none = piece.last + 1;
    if (piece.scan) {
        if (LageVon(piece.fFirst, s) == Lage::above || LageVon(piece.fLast, s) == Lage::below)
            return none;
        for (std::size_t k = piece.first; k <= piece.last; ++k)
            if (LageVon(kurve(table[k]), s) == Lage::hit)
                return k;
        return none;
    }
    const Lage before = piece.rising ? Lage::below : Lage::above;
    const double edge = piece.rising ? s - std::sqrt(kFenster) : s + std::sqrt(kFenster);
    if (!(edge > std::min(piece.fFirst, piece.fLast) && edge < std::max(piece.fFirst, piece.fLast)))
        guess = piece.first;
    else
        guess = Schaetzung(kurve, piece, edge, std::clamp(guess, piece.first, piece.last));
    const std::size_t k = ErsterJenseits(kurve, piece, s, before, guess);
    return k <= piece.last && LageVon(kurve(table[k]), s) == Lage::hit ? k : none;
}

/// Whether rounding stays far below the change from sample to sample. What is added to all samples alike does not
/// matter: adding rounds the larger of two values to the larger or an equal sum.
bool IstZahm(const Kurve& kurve)
{
    constexpr double kLargest = 1e6;
    const double steepness = std::max({std::abs(kurve.c3), std::abs(kurve.c2), std::abs(kurve.c1)});
    if (kurve.form != Kurve::Form::polynomial && !(std::abs(kurve.p) >= 1e-6 && std::abs(kurve.p) <= 1e3))
        return false;
    if (kurve.form == Kurve::Form::polynomial && !(steepness >= 1e-5 && steepness <= kLargest))
        return false;
    return std::abs(kurve.shift) <= kLargest;
}

} // namespace

double Kurve::operator()(double v) const
{
    switch (form) {
    case Form::braking: {
        const double ms = v / kKmhProMs;
        return ms * ms / (2.0 * p);
    }
    case Form::deceleration: {
        const double w = v + shift;
        return 0.0271 * w * w / p + 0.0178 * w * p + d;
    }
    case Form::polynomial:
        break;
    }
    const double w = v + shift;
    return c3 * w * w * w + c2 * w * w + c1 * w + c0 + d;
}

double Kurve::Ableitung(double v) const
{
    switch (form) {
    case Form::braking:
        return v / (kKmhProMs * kKmhProMs * p);
    case Form::deceleration:
        return 2.0 * 0.0271 * (v + shift) / p + 0.0178 * p;
    case Form::polynomial:
        break;
    }
    const double w = v + shift;
    return (3.0 * c3 * w + 2.0 * c2) * w + c1;
}

double SucheGeschwindigkeit(const Kurve& kurve, double s)
{
    for (double v = 0.0; v <= kHoechstgeschwindigkeit; v += kSchritt) {
        const double difference = kurve(v) - s;
        if (difference * difference < kFenster)
            return v;
    }
    return 0.0;
}

void SucheGeschwindigkeiten(const Kurve& kurve, std::span<const double> s, std::span<double> v)
{
    RUV_ASSERT(s.size() == v.size());
    if (kurve.form != Kurve::Form::polynomial && kurve.p == 0.0) {
        std::fill(v.begin(), v.end(), 0.0); // the curve has no finite value
        return;
    }
    if (!IstZahm(kurve)) {
        std::transform(s.begin(), s.end(), v.begin(), [&](double x) { return SucheGeschwindigkeit(kurve, x); });
        return;
    }
    const auto& table = Geschwindigkeiten();
    const auto pieces = Abschnitte(kurve);
    std::vector<std::size_t> guesses(pieces.size(), 0);
    for (std::size_t i = 0; i < s.size(); ++i) {
        v[i] = 0.0;
        for (std::size_t n = 0; n < pieces.size(); ++n) {
            const std::size_t k = ErsterTreffer(kurve, pieces[n], s[i], guesses[n]);
            if (k <= pieces[n].last) {
                v[i] = table[k];
                break;
            }
        }
    }
}

} // namespace schranken
