// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// How alike two measured curves are, and the shift of the second at which they are most alike.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

using ESOKurve = std::vector<std::int64_t>;
inline constexpr std::size_t kESOKurven = 5;
using ESOKurven = std::array<ESOKurve, kESOKurven>;

/// Correlation (Pearson) of a[s + j] and b[d + j], j = 0 … e − s − 1, with 0 beyond the end of b:
///
///     r = (n·Σxy − Σx·Σy) / √((n·Σy² − (Σy)²) · (n·Σx² − (Σx)²))
///
/// The sums are exact whatever the numbers; each bracket is rounded once, then the product, the root and the quotient.
/// 0 when e < s, a is shorter than e, b is shorter than d, or the root is 0. d is not negative.
double Korrelation(const ESOKurve& a, const ESOKurve& b, std::size_t s, std::size_t e, std::size_t d);

/// The stretch of the reference curve that is compared, and how many shifts are tried, for a curve of this length.
struct ESOFenster {
    std::size_t s = 0;
    std::size_t e = 0;
    std::size_t m = 0;
};
ESOFenster FensterVon(std::size_t laenge);

struct ESOTreffer {
    std::size_t d = 0; ///< of the first largest r; 0 when no r is positive
    double r = 0.0;    ///< there, 0 when no r is positive
};

/// Asked now and then with the part that is done; false stops.
using Fortschritt = std::function<bool(double)>;

/// For each of the curves, what trying d = 0 … m − 1 one after the other finds, a strictly larger r replacing the best:
/// the same d and the same r. Nothing when it was stopped.
std::optional<std::vector<ESOTreffer>> SucheVerschiebungen(const ESOKurve& bezug,
                                                           const std::vector<const ESOKurve*>& kurven,
                                                           const Fortschritt& fortschritt = {});

/// The curve shifted by the samples given, as long as the reference; its first and last sample are repeated.
ESOKurve Verschoben(const ESOKurve& kurve, std::int64_t verschiebung, std::size_t laenge);
