// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/import/ESOKorrelation.h"

#include "masks/import/Breitzahl.h"
#include "masks/import/Kreuzsummen.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <exception>
#include <limits>
#include <span>
#include <thread>

namespace
{

/// The sums of squares of all numbers of both curves, and of their products, fit into 64 bits.
constexpr double kSchmal = 0x1p62;
/// A sum of doubles of exact numbers is off by less than this part of its terms.
constexpr double kRundung = 8.0 * 0x1p-53;
constexpr std::size_t kFragen = 64; // candidates between two questions whether to go on

/// Sum type of numbers that are small (the usual case) and of any.
struct Schmal {
    using Summe = std::int64_t; // of products
    using Produkt = Ganz128;    // of two sums
};
struct Breit {
    using Summe = Breitzahl;
    using Produkt = Breitzahl;
};

template <class Art> typename Art::Produkt Mal(const typename Art::Summe& a, const typename Art::Summe& b)
{
    return static_cast<typename Art::Produkt>(a) * static_cast<typename Art::Produkt>(b);
}

/// The product of two numbers as a term of a sum.
template <class Art> typename Art::Summe Term(std::int64_t a, std::int64_t b)
{
    if constexpr (std::is_same_v<Art, Schmal>)
        return a * b;
    else
        return Breitzahl(static_cast<Ganz128>(a) * b);
}

/// n·Σu² − (Σu)²
template <class Art>
typename Art::Produkt Streuung(std::size_t n, const typename Art::Summe& quadrate, const typename Art::Summe& summe)
{
    return Mal<Art>(static_cast<std::int64_t>(n), quadrate) - Mal<Art>(summe, summe);
}

/// The one expression of r in double.
double Quotient(double zaehler, double streuungY, double streuungX)
{
    const double wurzel = std::sqrt(streuungY * streuungX);
    return wurzel == 0.0 ? 0.0 : zaehler / wurzel;
}

/// Curve a over its window.
template <class Art> struct Bezug {
    explicit Bezug(std::span<const std::int64_t> x) : werte(x)
    {
        typename Art::Summe quadrate{};
        for (const std::int64_t wert : x) {
            summe = summe + static_cast<typename Art::Summe>(wert);
            quadrate = quadrate + Term<Art>(wert, wert);
        }
        streuung = static_cast<double>(Streuung<Art>(x.size(), quadrate, summe));
    }
    std::span<const std::int64_t> werte;
    typename Art::Summe summe{};
    double streuung = 0.0;
};

template <class Art> double GenauesR(const Bezug<Art>& x, const ESOKurve& b, std::size_t d)
{
    const std::size_t n = x.werte.size();
    typename Art::Summe summe{};
    typename Art::Summe quadrate{};
    typename Art::Summe produkte{};
    for (std::size_t j = 0, ende = d < b.size() ? std::min(n, b.size() - d) : 0; j < ende; ++j) {
        const std::int64_t y = b[d + j];
        summe = summe + static_cast<typename Art::Summe>(y);
        quadrate = quadrate + Term<Art>(y, y);
        produkte = produkte + Term<Art>(x.werte[j], y);
    }
    const auto zaehler = Mal<Art>(static_cast<std::int64_t>(n), produkte) - Mal<Art>(x.summe, summe);
    return Quotient(static_cast<double>(zaehler), static_cast<double>(Streuung<Art>(n, quadrate, summe)), x.streuung);
}

template <class Art> class Suche
{
  public:
    Suche(const Bezug<Art>& x, const ESOKurve& b, const Kreuzsummen& kreuzsummen, std::size_t m)
        : m_x(x), m_b(b), m_kreuz(kreuzsummen.Mit(b)), m_m(m)
    {
        // Numerator of r and scatter of y as doubles. By Cauchy and Schwarz no sum of products is above |x|·|y|, and
        // n times a sum of squares is not below the square of the sum.
        const auto n = static_cast<double>(x.werte.size());
        const auto summeX = static_cast<double>(x.summe);
        const double quadrate = Quadratsumme(b);
        m_zaehlerFehler = n * (m_kreuz.fehler + 2.0 * kRundung * std::sqrt(Quadratsumme(x.werte) * quadrate));
        m_streuungFehler = 2.0 * kRundung * n * quadrate;
        m_streuungen.resize(m);
        double bestes = 0.0; // r² · streuungX
        // Exact sums over the window of y, which moves on by one number each time.
        using Summe = typename Art::Summe;
        Summe summe{};
        Summe quadratsumme{};
        const auto nimm = [&](std::size_t k) {
            if (k < b.size()) {
                summe = summe + static_cast<Summe>(b[k]);
                quadratsumme = quadratsumme + Term<Art>(b[k], b[k]);
            }
        };
        for (std::size_t k = 0; k < x.werte.size(); ++k)
            nimm(k);
        for (std::size_t d = 0; d < m; ++d) {
            const auto summeY = static_cast<double>(summe);
            const double streuung = n * static_cast<double>(quadratsumme) - summeY * summeY;
            double zaehler = n * m_kreuz.summen[d] - summeX * summeY;
            if (streuung <= 2.0 * m_streuungFehler &&
                static_cast<double>(Streuung<Art>(x.werte.size(), quadratsumme, summe)) == 0.0)
                zaehler = -std::numeric_limits<double>::infinity(); // r is 0
            m_streuungen[d] = streuung;
            m_kreuz.summen[d] = zaehler;
            if (zaehler > 0.0 && streuung > m_streuungFehler && zaehler * zaehler > bestes * streuung) {
                bestes = zaehler * zaehler / streuung;
                m_vermutet = d;
            }
            if (d < b.size()) {
                summe = summe - static_cast<Summe>(b[d]);
                quadratsumme = quadratsumme - Term<Art>(b[d], b[d]);
            }
            nimm(d + x.werte.size());
        }
    }

    /// Nothing when stopped.
    std::optional<ESOTreffer> Finde(const std::function<bool()>& weiter) const
    {
        if (m_x.streuung == 0.0 || m_m == 0)
            return ESOTreffer{};
        // The exact r is asked only where the approximate sums let it be as large as the best exact one known.
        const double mindestens = std::max(0.0, R(m_vermutet));
        const double grenze = mindestens * mindestens * m_x.streuung * (1.0 - 4.0 * kRundung); // r itself is rounded
        ESOTreffer treffer;
        std::size_t gefragt = 0;
        for (std::size_t d = 0; d < m_m; ++d) {
            const double oben = m_kreuz.summen[d] + m_zaehlerFehler;
            const double unten = m_streuungen[d] - m_streuungFehler;
            if (oben <= 0.0)
                continue; // no positive r
            // A scatter that is too near to 0 to be told from it may give any r.
            if (unten > m_streuungFehler && oben * oben * (1.0 + kRundung) < grenze * unten)
                continue;
            if (++gefragt % kFragen == 0 && !weiter())
                return std::nullopt;
            if (const double r = R(d); r > treffer.r)
                treffer = {d, r};
        }
        return treffer;
    }

  private:
    double R(std::size_t d) const { return GenauesR(m_x, m_b, d); }

    const Bezug<Art>& m_x;
    const ESOKurve& m_b;
    Kreuzsummen::Ergebnis m_kreuz; // its sums become the numerators
    std::vector<double> m_streuungen;
    double m_zaehlerFehler = 0.0;
    double m_streuungFehler = 0.0;
    std::size_t m_m;
    std::size_t m_vermutet = 0;
};

template <class Art>
std::optional<std::vector<ESOTreffer>> SucheMit(const ESOKurve& bezug, const std::vector<const ESOKurve*>& kurven,
                                                const ESOFenster& fenster, const Fortschritt& fortschritt)
{
    std::vector<ESOTreffer> treffer(kurven.size());
    const std::span<const std::int64_t> werte =
        std::span<const std::int64_t>(bezug).subspan(fenster.s, fenster.e - fenster.s);
    const Bezug<Art> x(werte);
    if (fenster.m == 0 || werte.empty() || x.streuung == 0.0)
        return treffer;
    std::size_t laengste = 0;
    for (const ESOKurve* kurve : kurven)
        laengste = std::max(laengste, kurve->size());
    const Kreuzsummen kreuzsummen(werte, fenster.m, laengste);

    const auto frage = [&](std::size_t fertig) {
        return !fortschritt || fortschritt(static_cast<double>(fertig) / static_cast<double>(kurven.size()));
    };
    // Every second curve on a thread of its own while this one works on the others; only this one asks.
    std::vector<std::optional<Suche<Art>>> suchen(kurven.size());
    std::atomic<bool> abgebrochen = false;
    std::exception_ptr fehler;
    const auto baue = [&](std::size_t i) { suchen[i].emplace(x, *kurven[i], kreuzsummen, fenster.m); };
    const auto baueUngerade = [&] {
        try {
            for (std::size_t i = 1; i < kurven.size() && !abgebrochen; i += 2)
                baue(i);
        } catch (...) {
            fehler = std::current_exception();
        }
    };
    std::thread helfer;
    if (kurven.size() > 1) {
        try {
            helfer = std::thread(baueUngerade);
        } catch (const std::exception&) {
            baueUngerade(); // no thread to be had
        }
    }
    std::exception_ptr eigener;
    try {
        for (std::size_t i = 0; i < kurven.size() && !abgebrochen; i += 2) {
            abgebrochen = !frage(i / 2);
            if (!abgebrochen)
                baue(i);
        }
    } catch (...) {
        eigener = std::current_exception();
        abgebrochen = true;
    }
    if (helfer.joinable())
        helfer.join();
    for (const std::exception_ptr& einer : {eigener, fehler})
        if (einer)
            std::rethrow_exception(einer);
    for (std::size_t i = 0; i < kurven.size(); ++i) {
        if (abgebrochen || !frage((kurven.size() + i) / 2))
            return std::nullopt;
        const auto gefunden = suchen[i]->Finde([&] { return frage((kurven.size() + i) / 2); });
        if (!gefunden)
            return std::nullopt;
        treffer[i] = *gefunden;
    }
    return treffer;
}

} // namespace

double Korrelation(const ESOKurve& a, const ESOKurve& b, std::size_t s, std::size_t e, std::size_t d)
{
    if (e < s || a.size() < e || b.size() < d)
        return 0.0;
    const std::span<const std::int64_t> werte(a);
    const std::span<const std::int64_t> fenster = werte.subspan(s, e - s);
    return Quadratsumme(a) < kSchmal && Quadratsumme(b) < kSchmal ? GenauesR(Bezug<Schmal>(fenster), b, d)
                                                                  : GenauesR(Bezug<Breit>(fenster), b, d);
}

ESOFenster FensterVon(std::size_t laenge)
{
    const auto n = static_cast<double>(laenge);
    return {static_cast<std::size_t>(0.1 * n), static_cast<std::size_t>(0.75 * n), static_cast<std::size_t>(0.65 * n)};
}

std::optional<std::vector<ESOTreffer>>
SucheVerschiebungen(const ESOKurve& bezug, const std::vector<const ESOKurve*>& kurven, const Fortschritt& fortschritt)
{
    const ESOFenster fenster = FensterVon(bezug.size());
    double groesste = Quadratsumme(bezug);
    for (const ESOKurve* kurve : kurven)
        groesste = std::max(groesste, Quadratsumme(*kurve));
    // Σxy and Σx are not above the larger sum of squares either (Cauchy and Schwarz; whole numbers).
    return groesste < kSchmal ? SucheMit<Schmal>(bezug, kurven, fenster, fortschritt)
                              : SucheMit<Breit>(bezug, kurven, fenster, fortschritt);
}

ESOKurve Verschoben(const ESOKurve& kurve, std::int64_t verschiebung, std::size_t laenge)
{
    ESOKurve ergebnis(laenge);
    if (kurve.empty())
        return ergebnis;
    const auto letzte = static_cast<std::int64_t>(std::min(laenge, kurve.size())) - 1;
    for (std::size_t k = 0; k < laenge; ++k)
        ergebnis[k] = kurve[static_cast<std::size_t>(
            std::clamp<std::int64_t>(static_cast<std::int64_t>(k) + verschiebung, 0, letzte))];
    return ergebnis;
}
