// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/manoeuvre/VermSuche.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace
{

constexpr double kGeschwSchritt = 0.0001; // m/s
constexpr double kZeitSchritt = 0.0001;   // s
constexpr double kVerzSchritt = 0.001;    // m/s²

/// First index of [from, to] at which `holds`, to + 1 when it nowhere does. Once it holds, it holds on.
template <class Holds> std::int64_t Erster(std::int64_t from, std::int64_t to, Holds holds)
{
    ++to;
    while (from < to) {
        const std::int64_t middle = from + (to - from) / 2;
        if (holds(middle))
            to = middle;
        else
            from = middle + 1;
    }
    return from;
}

} // namespace

VermSchritte::VermSchritte(VermGroesse groesse, const VermVorgabe& vorgabe, const VermKonflikt& konflikt)
    : m_groesse(groesse), m_vorgabe(vorgabe), m_konflikt(konflikt), m_fahrt(vorgabe),
      m_bedingungen(konflikt, m_fahrt, vorgabe.v), m_vorzeichen(m_bedingungen.Vermieden(m_fahrt, konflikt) ? -1 : 1)
{
}

double VermSchritte::Wert(std::int64_t schritt) const
{
    const double n = static_cast<double>(m_vorzeichen * schritt);
    return m_groesse == VermGroesse::hoechstgeschw ? m_vorgabe.v - n * kGeschwSchritt : m_vorgabe.aB + n * kVerzSchritt;
}

double VermSchritte::Vorverlegung(std::int64_t schritt) const
{
    return static_cast<double>(m_vorzeichen * schritt) * kZeitSchritt;
}

bool VermSchritte::IstPositiv(std::int64_t schritt) const
{
    if (m_groesse != VermGroesse::reaktionspunkt)
        return Wert(schritt) > kVermNull;
    const VermKonflikt k = Konflikt(schritt);
    return k.sRK > kVermNull && k.tRK > kVermNull;
}

bool VermSchritte::Faellt() const
{
    return (m_groesse == VermGroesse::hoechstgeschw) == (m_vorzeichen > 0);
}

VermFahrt VermSchritte::Fahrt(std::int64_t schritt) const
{
    VermVorgabe vorgabe = m_vorgabe;
    if (m_groesse == VermGroesse::hoechstgeschw)
        vorgabe.v = Wert(schritt);
    else if (m_groesse == VermGroesse::verzoegerung)
        vorgabe.aB = Wert(schritt);
    return VermFahrt(vorgabe);
}

VermKonflikt VermSchritte::Konflikt(std::int64_t schritt) const
{
    return m_groesse == VermGroesse::reaktionspunkt ? m_konflikt.Frueher(Vorverlegung(schritt), m_vorgabe.v)
                                                    : m_konflikt;
}

bool VermSchritte::Verletzt(const VermBedingung& bedingung, std::int64_t schritt) const
{
    if (m_groesse == VermGroesse::reaktionspunkt)
        return bedingung.Verletzt(m_fahrt, Konflikt(schritt));
    return bedingung.Verletzt(Fahrt(schritt), m_konflikt);
}

bool VermSchritte::Vermieden(std::int64_t schritt) const
{
    const auto alle = m_bedingungen.Alle();
    return std::none_of(alle.begin(), alle.end(), [&](const VermBedingung& b) { return Verletzt(b, schritt); });
}

std::int64_t VermSchritte::LetzterSchritt() const
{
    if (!Faellt())
        return kVermSchritte;
    return Erster(0, kVermSchritte, [&](std::int64_t n) { return !IstPositiv(n); }) - 1;
}

/// The steps up to `letzter` that violate the condition lie together, and the worst of them is known: slower and harder
/// is always better, and for the reaction point the condition says it.
VermSchritte::Bereich VermSchritte::VerletzterBereich(const VermBedingung& bedingung, std::int64_t letzter) const
{
    if (letzter < 0)
        return {};
    std::int64_t schlimmster = m_vorzeichen > 0 ? 0 : letzter;
    if (m_groesse == VermGroesse::reaktionspunkt && std::isfinite(bedingung.schlimmste)) {
        const double schritt = m_vorzeichen * bedingung.schlimmste / kZeitSchritt;
        schlimmster = std::llround(std::clamp(schritt, 0.0, static_cast<double>(letzter)));
    }
    // The worst value may lie between two steps.
    for (const std::int64_t neben : {schlimmster, schlimmster - 1, schlimmster + 1}) {
        if (neben < 0 || neben > letzter || !Verletzt(bedingung, neben))
            continue;
        return {Erster(0, neben, [&](std::int64_t n) { return Verletzt(bedingung, n); }),
                Erster(neben, letzter, [&](std::int64_t n) { return !Verletzt(bedingung, n); }) - 1};
    }
    return {};
}

VermSchritte::Ende VermSchritte::Suche() const
{
    const std::int64_t letzter = LetzterSchritt();
    const auto bedingungen = m_bedingungen.Alle();
    std::array<Bereich, 3> bereiche{};
    std::transform(bedingungen.begin(), bedingungen.end(), bereiche.begin(),
                   [&](const VermBedingung& bedingung) { return VerletzterBereich(bedingung, letzter); });

    std::int64_t schritt = 0;
    if (m_vorzeichen > 0) {
        // Out of one condition's range the step may stand in another's.
        for (std::size_t runde = 0; runde < bereiche.size(); ++runde)
            for (const Bereich& bereich : bereiche)
                if (bereich.von <= schritt && schritt <= bereich.bis)
                    schritt = bereich.bis + 1;
    } else {
        schritt = letzter + 1;
        for (const Bereich& bereich : bereiche)
            if (bereich.von <= bereich.bis)
                schritt = std::min(schritt, bereich.von - 1);
    }
    if (schritt <= letzter)
        return IstPositiv(schritt) ? Ende{schritt, true} : Ende{0, false};
    // All steps are used up, or the values with them.
    return {letzter == kVermSchritte ? kVermSchritte : 0, false};
}
