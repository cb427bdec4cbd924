// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The course of the chosen ID: its rows, as few moments of it as the phases of a vehicle take, the transfer.
#include "host/Physics.h"
#include "masks/video/CVideoDat.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace
{

/// Between the moments of a transfer the curve is missed by no more, km/h; coarser where phases run out.
constexpr double kToleranz = 1.0;
constexpr double kGroeber = 1.1;
constexpr int kMeisteVergroeberungen = 200;
/// A speed is measured over so many entries at most.
constexpr std::size_t kMessstrecke = 6;

/// The moments of a curve that it takes to miss it by no more than the tolerance (D. Douglas and T. Peucker, 1973,
/// with the speeds' difference as the distance).
std::vector<std::size_t> Ausgeduennt(const std::vector<double>& zeit, const std::vector<double>& kmh, double toleranz)
{
    std::vector<bool> bleibt(zeit.size(), false);
    bleibt.front() = bleibt.back() = true;
    std::vector<std::pair<std::size_t, std::size_t>> offen{{0, zeit.size() - 1}};
    while (!offen.empty()) {
        const auto [von, bis] = offen.back();
        offen.pop_back();
        const double dauer = zeit[bis] - zeit[von];
        std::size_t groesste = von;
        double abweichung = toleranz;
        for (std::size_t i = von + 1; i < bis; ++i) {
            const double anteil = dauer > 0.0 ? (zeit[i] - zeit[von]) / dauer : 0.0;
            const double fehlt = std::abs(kmh[von] + anteil * (kmh[bis] - kmh[von]) - kmh[i]);
            if (fehlt > abweichung) {
                abweichung = fehlt;
                groesste = i;
            }
        }
        if (groesste == von)
            continue;
        bleibt[groesste] = true;
        offen.emplace_back(von, groesste);
        offen.emplace_back(groesste, bis);
    }
    std::vector<std::size_t> stellen;
    for (std::size_t i = 0; i < bleibt.size(); ++i)
        if (bleibt[i])
            stellen.push_back(i);
    return stellen;
}

/// m: s = Σ (v1 + v2) / 2 · Δt.
double Weg(const std::vector<double>& zeit, const std::vector<double>& kmh, const std::vector<std::size_t>& stellen)
{
    double weg = 0.0;
    for (std::size_t i = 1; i < stellen.size(); ++i)
        weg += (kmh[stellen[i - 1]] + kmh[stellen[i]]) / 2.0 / kKmhProMs * (zeit[stellen[i]] - zeit[stellen[i - 1]]);
    return weg;
}

} // namespace

std::vector<std::size_t> CVideoDat::Kurvenzeilen() const
{
    std::vector<std::size_t> zeilen;
    const Videospur* spur = Spur();
    if (spur == nullptr)
        return zeilen;
    const auto& eintraege = spur->eintraege;
    const std::vector<double>& werte = Kurvenwerte();
    for (std::size_t i = 0; i < werte.size(); ++i) {
        const auto ende = spur->ImBild(static_cast<int>(bild[i]));
        if (!std::isfinite(werte[i]) || !ende)
            continue;
        // The centre of a box that the frame's edge cuts is not the vehicle's.
        const std::size_t anfang = *ende - std::min(*ende, kMessstrecke);
        const bool angeschnitten = std::any_of(eintraege.begin() + static_cast<std::ptrdiff_t>(anfang),
                                               eintraege.begin() + static_cast<std::ptrdiff_t>(*ende) + 1,
                                               [](const Videospur::Eintrag& e) { return e.punkt.cut; });
        if (!angeschnitten)
            zeilen.push_back(i);
    }
    return zeilen;
}

CVideoDat::Verlauf CVideoDat::MacheVerlauf(std::size_t erste, std::size_t letzte) const
{
    Verlauf verlauf;
    std::vector<double> zeiten;
    std::vector<double> kmh;
    const std::vector<std::size_t> zeilen = Kurvenzeilen();
    for (std::size_t i = erste; i <= letzte && i < zeilen.size(); ++i) {
        zeiten.push_back(zeit[zeilen[i]]);
        kmh.push_back(Kurvenwerte()[zeilen[i]]);
    }
    const std::size_t platz = std::max<std::size_t>(MeisteFahrzeilen(auswahl.phase), 2);
    if (zeiten.size() < 2)
        return verlauf;
    verlauf.toleranz = kToleranz;
    std::vector<std::size_t> stellen = Ausgeduennt(zeiten, kmh, verlauf.toleranz);
    for (int i = 0; i < kMeisteVergroeberungen && stellen.size() > platz; ++i) {
        verlauf.toleranz *= kGroeber;
        stellen = Ausgeduennt(zeiten, kmh, verlauf.toleranz);
    }
    std::vector<std::size_t> alle(zeiten.size());
    for (std::size_t i = 0; i < alle.size(); ++i)
        alle[i] = i;
    verlauf.kurvenWeg = Weg(zeiten, kmh, alle);
    verlauf.weg = Weg(zeiten, kmh, stellen);
    for (std::size_t i = 0; i < stellen.size(); ++i)
        verlauf.zeilen.push_back({i == 0 ? 0.0 : zeiten[stellen[i]] - zeiten[stellen[i - 1]], kmh[stellen[i]]});
    return verlauf;
}

Fahrtbefund CVideoDat::Uebertrage(const Verlauf& verlauf)
{
    return UebertrageFahrphasen(m_data, auswahl.fahrzeug, auswahl.phase, verlauf.zeilen, m_parent);
}
