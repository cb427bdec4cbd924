// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Mask 494: the followed point is clicked, and where it may be in the next frame is proposed.
#include "host/vision/PatchSearch.h"
#include "masks/manoeuvre/Texte.h"
#include "masks/video/CVideoDlg.h"
#include "res/video.h"

#include <algorithm>

namespace
{

/// px around where the track leads: without a motion yet, with one at least, and for each px of it.
constexpr double kErsteReichweite = 96.0;
constexpr double kReichweite = 16.0;
constexpr double kJeBewegung = 0.5;
constexpr double kGroessteReichweite = 96.0;

UINT Grund(PatchFault fault)
{
    switch (fault) {
    case PatchFault::atEdge:
        return IDS_VIDEO_KEIN_VORSCHLAG_RAND;
    case PatchFault::plain:
        return IDS_VIDEO_KEIN_VORSCHLAG_LEER;
    case PatchFault::unlike:
        return IDS_VIDEO_KEIN_VORSCHLAG_ANDERS;
    case PatchFault::ambiguous:
        return IDS_VIDEO_KEIN_VORSCHLAG_MEHRERE;
    default:
        return 0;
    }
}

} // namespace

void CVideoDlg::KlickeFahrzeug(VisionPoint wo)
{
    const auto bildVorher = static_cast<int>(m_dat.bildnummer);
    m_dat.Klicke(bildVorher, m_dat.stelle, wo);
    m_aktiv = Videobild::Griff{Videobild::Griff::Art::klick, 0};
    m_angebot.reset();
    if (m_dat.schritt > 0) {
        const auto vorher = m_bild.Bild();
        ZeigeFrame(m_dat.bildnummer + m_dat.schritt);
        SucheVorschlag(vorher.get(), bildVorher, wo);
    }
    Zeige();
}

void CVideoDlg::SucheVorschlag(const drawing::Bitmap* vorher, int bildVorher, VisionPoint wo)
{
    const auto bild = static_cast<int>(m_dat.bildnummer);
    const Videospur* spur = m_dat.Spur();
    const drawing::Bitmap* hier = m_bild.Bild().get();
    // What a damaged frame shows is no place to look for anything; the status line says that it is one.
    if (spur == nullptr || vorher == nullptr || hier == nullptr || bild == bildVorher || spur->ImBild(bild) ||
        m_leser->IsDamaged(bild) || m_leser->IsDamaged(bildVorher))
        return;
    const auto erwartet = spur->Erwartet(m_dat.stelle);
    if (!erwartet)
        return;
    const double reichweite = erwartet->bewegung
                                  ? std::min(kReichweite + kJeBewegung * *erwartet->bewegung, kGroessteReichweite)
                                  : kErsteReichweite;
    const PatchPlace ort = FindPatch(*vorher, wo, *hier, erwartet->punkt, reichweite);
    const std::string korrelation = RuvNumberText(ort.correlation, 2);
    if (ort.fault != PatchFault::none) {
        if (const UINT grund = Grund(ort.fault); grund != 0)
            ShowPrompt(IDC_VIDEO_STATUS,
                       Eingesetzt(LoadRuvString(grund), {korrelation, RuvNumberText(kLeastCorrelation, 2)}));
        return;
    }
    m_angebot = Angebot{m_dat.id, bild, bildVorher, wo, ort.point, ort.correlation};
    ShowPrompt(IDC_VIDEO_STATUS, Eingesetzt(LoadRuvString(IDS_VIDEO_VORSCHLAG), {korrelation}));
}

std::optional<VisionPoint> CVideoDlg::Vorschlag() const
{
    const Videospur* spur = m_dat.Spur();
    if (!m_angebot || spur == nullptr || m_dat.werkzeug != CVideoDat::verfolgen || m_angebot->id != m_dat.id ||
        m_angebot->bild != m_dat.bildnummer || spur->ImBild(m_angebot->bild))
        return std::nullopt;
    const auto klick = spur->ImBild(m_angebot->bildVorher);
    if (!klick)
        return std::nullopt;
    const VisionPoint wo = spur->eintraege[*klick].punkt.point;
    return wo.x == m_angebot->klick.x && wo.y == m_angebot->klick.y ? std::optional(m_angebot->punkt) : std::nullopt;
}

void CVideoDlg::OnVorschlag()
{
    if (const auto wo = Vorschlag(); wo && HatVideo()) {
        HalteAn();
        KlickeFahrzeug(*wo);
    }
}
