// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Sums of products of two curves over all shifts at once, by a Fourier transform: approximate, with a bound of the
// error.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// The sum of the squares, a millionth above it or less, so that no rounding makes it too small.
double Quadratsumme(std::span<const std::int64_t> werte);

/// Σ x_j · y_{d+j} for d = 0 … shifts − 1, with y = 0 beyond its end. One object for one x and several y.
class Kreuzsummen
{
  public:
    /// `longestY` is the length of the longest y.
    Kreuzsummen(std::span<const std::int64_t> x, std::size_t shifts, std::size_t longestY);

    struct Ergebnis {
        std::vector<double> summen; ///< one per shift
        double fehler = 0.0;        ///< none of them is farther from the exact sum
    };
    /// May run on several threads at once.
    Ergebnis Mit(std::span<const std::int64_t> y) const;

  private:
    struct Signal {
        std::vector<double> re, im;
    };
    struct Stufe {
        std::vector<double> re, im; ///< w^j, w^2j and w^3j one after the other
    };

    Signal Vorwaerts(std::span<const std::int64_t> werte, bool umgekehrt) const;
    /// Forth (`kHin`) or back.
    template <bool kHin> void Transformiere(Signal& signal) const;
    template <bool kHin> void Transformiere(double* re, double* im, std::size_t laenge, std::size_t stufe) const;

    std::size_t m_laenge = 1; // of the complex transforms; sums up to twice as long are told apart
    std::size_t m_werte = 0;  // of x
    std::size_t m_shifts = 0;
    bool m_drei = false;         // L is three times a power of two, otherwise one itself
    std::vector<Stufe> m_stufen; // of transforms of L points, then of a quarter (at first of a third) of them, …
    Signal m_dreher;             // exp(iπk / 2L)
    Signal m_x;
    double m_norm = 0.0; // of x
};
