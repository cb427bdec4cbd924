// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/video/Videospur.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr std::size_t kKopf = 2;      // numbers before the entries
constexpr std::size_t kJeEintrag = 8; // numbers of an entry
constexpr double kGroesstes = 1e9;    // of any of them

auto Stelle(const std::vector<Videospur::Eintrag>& eintraege, int bild)
{
    return std::lower_bound(
        eintraege.begin(), eintraege.end(), bild,
        [](const Videospur::Eintrag& e, int frame) { return e.punkt.frame < frame; });
}

} // namespace

std::optional<std::size_t> Videospur::ImBild(int bild) const
{
    const auto stelle = Stelle(eintraege, bild);
    if (stelle == eintraege.end() || stelle->punkt.frame != bild)
        return std::nullopt;
    return static_cast<std::size_t>(stelle - eintraege.begin());
}

void Videospur::Setze(int bild, double zeit, VisionPoint punkt)
{
    if (const auto da = ImBild(bild)) {
        eintraege[*da].punkt.point = punkt;
        return;
    }
    eintraege.insert(Stelle(eintraege, bild), Eintrag{VideoEntry{zeit, bild, punkt, false}});
}

double Videospur::GemesseneLaenge(std::size_t eintrag) const
{
    return eintrag == 0 ? 0.0 : eintraege[eintrag].punkt.time - eintraege[eintrag - 1].punkt.time;
}

double Videospur::Laenge(std::size_t eintrag) const
{
    const double gewaehlt = eintraege[eintrag].laenge;
    return gewaehlteLaengen && eintrag > 0 && gewaehlt > 0.0 ? gewaehlt : GemesseneLaenge(eintrag);
}

std::vector<VideoEntry> Videospur::Eintraege() const
{
    std::vector<VideoEntry> alle;
    alle.reserve(eintraege.size());
    double zeit = eintraege.empty() ? 0.0 : eintraege.front().punkt.time;
    for (std::size_t i = 0; i < eintraege.size(); ++i) {
        alle.push_back(eintraege[i].punkt);
        if (gewaehlteLaengen)
            alle.back().time = zeit += Laenge(i);
    }
    return alle;
}

std::optional<Videospur::Erwartung> Videospur::Erwartet(double zeit) const
{
    const auto danach =
        std::find_if(eintraege.begin(), eintraege.end(), [zeit](const Eintrag& e) { return e.punkt.time >= zeit; });
    if (danach == eintraege.begin())
        return std::nullopt;
    const VideoEntry& letzter = std::prev(danach)->punkt;
    if (danach - eintraege.begin() < 2)
        return Erwartung{letzter.point, {}};
    const VideoEntry& vorher = std::prev(danach, 2)->punkt;
    const double schritt = letzter.time - vorher.time;
    if (!(schritt > 0.0))
        return Erwartung{letzter.point, {}};
    const double teil = (zeit - letzter.time) / schritt;
    const VisionPoint d = letzter.point - vorher.point;
    return Erwartung{{letzter.point.x + teil * d.x, letzter.point.y + teil * d.y}, teil * std::hypot(d.x, d.y)};
}

std::vector<double> Videospur::AlsZahlen() const
{
    std::vector<double> zahlen{punktHoehe, gewaehlteLaengen ? 1.0 : 0.0};
    zahlen.reserve(kKopf + kJeEintrag * eintraege.size());
    for (const Eintrag& e : eintraege)
        zahlen.insert(zahlen.end(), {static_cast<double>(e.punkt.frame), e.punkt.time, e.punkt.point.x, e.punkt.point.y,
                                     e.punkt.cut ? 1.0 : 0.0, e.breite, e.hoehe, e.laenge});
    return zahlen;
}

std::optional<Videospur> Videospur::AusZahlen(std::span<const double> zahlen)
{
    if (zahlen.size() < kKopf || (zahlen.size() - kKopf) % kJeEintrag != 0 ||
        std::any_of(zahlen.begin(), zahlen.end(), [](double z) { return !(std::abs(z) <= kGroesstes); }))
        return std::nullopt;
    Videospur spur;
    spur.punktHoehe = std::max(zahlen[0], 0.0);
    spur.gewaehlteLaengen = zahlen[1] != 0.0;
    for (std::size_t i = kKopf; i < zahlen.size(); i += kJeEintrag) {
        const auto z = zahlen.subspan(i, kJeEintrag);
        Eintrag e{VideoEntry{z[1], static_cast<int>(z[0]), {z[2], z[3]}, z[4] != 0.0}, z[5], z[6], std::max(z[7], 0.0)};
        // Frame by frame, and no way back in time.
        if (!spur.eintraege.empty() &&
            (e.punkt.frame <= spur.eintraege.back().punkt.frame || e.punkt.time < spur.eintraege.back().punkt.time))
            return std::nullopt;
        spur.eintraege.push_back(e);
    }
    return spur;
}
