// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What the case keeps of a video analysis, and how it is taken back.
#include "masks/video/CVideoDat.h"

#include "host/NumberTable.h"
#include "masks/video/VideoBereiche.h"
#include "res/video.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

namespace
{

using namespace videobereich;

constexpr std::string_view kSpur = "spur_";
constexpr const char* kPunkte = "punkte";
constexpr std::string_view kKante = "kante_";
constexpr const char* kHoechsteId = "hoechsteId";
constexpr const char* kGetippterFaktor = "getippterFaktor";
constexpr const char* kGetippteHoehe = "getippteHoehe";
constexpr double kGroessteKoordinate = 1e6; // px

std::vector<double> AlsZahlen(const std::vector<VisionPoint>& punkte)
{
    std::vector<double> zahlen;
    for (const VisionPoint p : punkte)
        zahlen.insert(zahlen.end(), {p.x, p.y});
    return zahlen;
}

std::vector<VisionPoint> AusZahlen(const std::vector<double>& zahlen)
{
    std::vector<VisionPoint> punkte;
    for (std::size_t i = 0; i + 1 < zahlen.size(); i += 2)
        if (std::abs(zahlen[i]) <= kGroessteKoordinate && std::abs(zahlen[i + 1]) <= kGroessteKoordinate)
            punkte.push_back({zahlen[i], zahlen[i + 1]});
    return punkte;
}

std::string Kantenname(std::size_t kante)
{
    return std::string(kKante) + std::to_string(kante + 1);
}

/// What the case keeps under its own name. Factor and height of the camera stand there as typed, not as shown.
RecordFields Behaltene(RecordFields felder)
{
    std::erase_if(felder, [](const RecordField& f) {
        return f.spec->role == FieldRole::internal || f.spec->role == FieldRole::result ||
               f.spec->single == IDC_VIDEO_FAKTOR || f.spec->single == IDC_VIDEO_KAMERAHOEHE;
    });
    return felder;
}

} // namespace

void CVideoDat::Laden()
{
    CVideoDat vorgabe(m_data);
    const RecordFields felder = Behaltene(Felder());
    const RecordFields leer = Behaltene(vorgabe.Felder());
    for (std::size_t i = 0; i < felder.size(); ++i)
        std::visit(
            [&](auto* wert) {
                using Zeiger = decltype(wert);
                std::copy_n(std::get<Zeiger>(leer[i].value), felder[i].count, wert);
            },
            felder[i].value);
    TakeFromCase(m_data, IDD_VIDEO, felder);
    // A case from elsewhere may hold anything.
    const auto halte = [](auto& wert, const NumberRange& bereich, auto sonst) {
        const auto zahl = static_cast<double>(wert);
        if (!(zahl >= bereich.minimum && zahl <= bereich.maximum))
            wert = sonst;
    };
    for (double& abstand : abstaende)
        halte(abstand, kAbstand, 0.0);
    halte(muster, {0, kMuster - 1}, std::int64_t{0});
    halte(kurve, {0, 1}, std::int64_t{ausgeglichen});
    halte(werkzeug, {0, 2}, std::int64_t{kalibrieren});
    halte(linsenstaerke, kStaerke, std::int64_t{0});
    halte(schritt, kSchritt, std::int64_t{1});
    halte(punktHoehe, kPunktHoehe, 0.0);
    halte(flaecheMin, kFlaeche, 0.0);
    halte(flaecheMax, kFlaeche, 0.0);
    halte(ausgleichsspanne, kSpanne, 1.0);
    halte(analysiert, kBilder, std::int64_t{0});
    halte(analysiertAb, kBilder, std::int64_t{0});
    halte(bildgroesse[0], {0, kGroessteKoordinate}, 0.0);
    halte(bildgroesse[1], {0, kGroessteKoordinate}, 0.0);
    halte(bilderJeSekunde, {0, 1e6}, 0.0);

    const auto eine = [this](const char* name, const NumberRange& bereich) {
        const std::vector<double> kept = m_data.GemerkteWerte(IDD_VIDEO, name);
        return kept.size() == 1 && kept[0] >= bereich.minimum && kept[0] <= bereich.maximum ? kept[0] : 0.0;
    };
    m_getippterFaktor = eine(kGetippterFaktor, kFaktor);
    m_getippteHoehe = eine(kGetippteHoehe, kKameraHoehe);
    m_hoechsteId = static_cast<std::int64_t>(eine(kHoechsteId, {0, 1e6}));
    m_punkte = AusZahlen(m_data.GemerkteWerte(IDD_VIDEO, kPunkte));
    m_punkte.resize(std::min(m_punkte.size(), kEcken));
    m_kanten.clear();
    for (bool da = true; da;) {
        auto kante = AusZahlen(m_data.GemerkteWerte(IDD_VIDEO, Kantenname(m_kanten.size())));
        da = !kante.empty();
        if (da)
            m_kanten.push_back(std::move(kante));
    }
    m_spuren.clear();
    const auto maske = m_data.AlleMaskenWerte().find(IDD_VIDEO);
    m_gemerkt = maske == m_data.AlleMaskenWerte().end() ? CMaskenWerte{} : maske->second;
    m_gemerkteQuelle = m_data.Video();
    for (const auto& [name, zahlen] : m_gemerkt) {
        int nummer = 0;
        const char* const ende = name.data() + name.size();
        if (!name.starts_with(kSpur) || std::from_chars(name.data() + kSpur.size(), ende, nummer).ptr != ende ||
            nummer < 1)
            continue;
        if (auto spur = Videospur::AusZahlen(zahlen)) {
            m_spuren[nummer] = std::move(*spur);
            m_hoechsteId = std::max<std::int64_t>(m_hoechsteId, nummer);
        }
    }
    if (!m_spuren.contains(static_cast<int>(id)))
        id = 0;
    Rechne();
}

void CVideoDat::Merken()
{
    CMaskenWerte& kept = m_data.MaskenWerte(IDD_VIDEO);
    kept.clear();
    KeepWithCase(m_data, IDD_VIDEO, Behaltene(Felder()));
    std::erase_if(kept, [](const auto& feld) { // no range
        return std::any_of(feld.second.begin(), feld.second.end(), [](double z) { return !std::isfinite(z); });
    });
    kept[kGetippterFaktor] = {m_getippterFaktor};
    kept[kGetippteHoehe] = {m_getippteHoehe};
    kept[kHoechsteId] = {static_cast<double>(m_hoechsteId)};
    kept[kPunkte] = AlsZahlen(m_punkte);
    for (std::size_t i = 0; i < m_kanten.size(); ++i)
        if (!m_kanten[i].empty())
            kept[Kantenname(i)] = AlsZahlen(m_kanten[i]);
    for (const auto& [nummer, spur] : m_spuren)
        kept[std::string(kSpur) + std::to_string(nummer)] = spur.AlsZahlen();
    m_gemerkt = kept;
    m_gemerkteQuelle = m_data.Video();
    m_data.NotifyMaskenWerte();
    m_data.BroadcastMessage(WM_RUV_UPDATEDIALOG, 0, 0, m_parent); // another window of this mask looks at it too
}

bool CVideoDat::IstFremd() const
{
    const auto maske = m_data.AlleMaskenWerte().find(IDD_VIDEO);
    const bool leer = maske == m_data.AlleMaskenWerte().end();
    return !(m_data.Video() == m_gemerkteQuelle) || (leer ? !m_gemerkt.empty() : maske->second != m_gemerkt);
}
