// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/CTAB1.h"

#include "host/Bindings.h"
#include "masks/collision/CSchrankenverfahrenDlg.h"
#include "res/collision.h"

namespace
{

using Dat = CSchrankenverfahrenDat;

constexpr int kKeiner = -2; // number of "none chosen"

// The controls of the kinds of objects stand in the order of the kinds.
constexpr UINT Platz(std::size_t objekt)
{
    return IDC_SCHR_PLATZ_FAHRZEUG + static_cast<UINT>(objekt);
}
constexpr UINT Setzen(std::size_t objekt)
{
    return IDC_SCHR_SETZEN_FAHRZEUG + static_cast<UINT>(objekt);
}
static_assert(Platz(Dat::kollisionsort) == IDC_SCHR_PLATZ_KOLLISIONSORT && Platz(Dat::person) == IDC_SCHR_PLATZ_PERSON);
static_assert(Platz(Dat::fahrrad) == IDC_SCHR_PLATZ_FAHRRAD && Platz(Dat::hauptfeld) == IDC_SCHR_PLATZ_HAUPTFELD);
static_assert(Setzen(Dat::kollisionsort) == IDC_SCHR_SETZEN_KOLLISIONSORT &&
              Setzen(Dat::person) == IDC_SCHR_SETZEN_PERSON);
static_assert(Setzen(Dat::fahrrad) == IDC_SCHR_SETZEN_FAHRRAD && Setzen(Dat::hauptfeld) == IDC_SCHR_SETZEN_HAUPTFELD);

} // namespace

CTAB1::CTAB1(CSchrankenverfahrenDlg& maske, CSchrankenverfahrenDat& dat)
    : CSchrankenSeite(IDD_SCHRANKEN_POSITIONIERUNG, maske, dat)
{
}

const CMessageMap* CTAB1::GetMessageMap() const
{
    static constexpr CMessageEntry kEntries[] = {
        OnControl<&CTAB1::OnPlatz>(IDC_SCHR_PLATZ_FAHRZEUG),
        OnControl<&CTAB1::OnPlatz>(IDC_SCHR_PLATZ_KOLLISIONSORT),
        OnControl<&CTAB1::OnPlatz>(IDC_SCHR_PLATZ_PERSON),
        OnControl<&CTAB1::OnPlatz>(IDC_SCHR_PLATZ_FAHRRAD),
        OnControl<&CTAB1::OnPlatz>(IDC_SCHR_PLATZ_GESAMTFELD),
        OnControl<&CTAB1::OnPlatz>(IDC_SCHR_PLATZ_HAUPTFELD),
        OnControl<&CTAB1::OnSetzen>(IDC_SCHR_SETZEN_FAHRZEUG),
        OnControl<&CTAB1::OnSetzen>(IDC_SCHR_SETZEN_KOLLISIONSORT),
        OnControl<&CTAB1::OnSetzen>(IDC_SCHR_SETZEN_PERSON),
        OnControl<&CTAB1::OnSetzen>(IDC_SCHR_SETZEN_FAHRRAD),
        OnControl<&CTAB1::OnSetzen>(IDC_SCHR_SETZEN_GESAMTFELD),
        OnControl<&CTAB1::OnSetzen>(IDC_SCHR_SETZEN_HAUPTFELD),
    };
    static const CMessageMap kMap{CSchrankenSeite::GetMessageMap(), kEntries};
    return &kMap;
}

void CTAB1::BuildObjects()
{
    // A participant is one thing only.
    struct {
        UINT control;
        std::int64_t* nummer;
        std::vector<CIntField> andere;
    } const auswahlen[] = {
        {IDC_SCHR_FAHRZEUG, &m_dat->fahrzeugNr, {&m_dat->personNr, &m_dat->fahrradNr}},
        {IDC_SCHR_PERSON, &m_dat->personNr, {&m_dat->fahrzeugNr, &m_dat->fahrradNr}},
        {IDC_SCHR_FAHRRAD, &m_dat->fahrradNr, {&m_dat->fahrzeugNr, &m_dat->personNr}},
    };
    for (const auto& auswahl : auswahlen) {
        auto* combo = new CFzgCombo(this, auswahl.control, kKeiner, auswahl.nummer, nullptr, nullptr, nullptr);
        combo->Ausser(auswahl.andere);
    }
}

void CTAB1::UpdateDialog()
{
    CSchrankenSeite::UpdateDialog();
    for (std::size_t objekt = 0; objekt < Dat::kObjekte; ++objekt)
        Check(Platz(objekt), m_dat->objekte[objekt].gesetzt != 0);
    const bool gewaehlt = m_dat->FahrzeugGueltig();
    Enable(IDC_SCHR_PLATZ_FAHRZEUG, gewaehlt);
    Enable(IDC_SCHR_SETZEN_FAHRZEUG, gewaehlt);
    ShowPrompt(IDC_SCHR_POSITION_HINWEIS, gewaehlt ? 0 : IDS_SCHRANKEN_ERST_FAHRZEUG);
}

void CTAB1::WertGeaendert(UINT, bool)
{
    m_maske.LageGeaendert();
}

LRESULT CTAB1::OnPlatz(WPARAM wParam, LPARAM)
{
    m_maske.Umschalten(LOWORD(wParam) - IDC_SCHR_PLATZ_FAHRZEUG);
    return 0;
}

LRESULT CTAB1::OnSetzen(WPARAM wParam, LPARAM)
{
    m_maske.Setzen(LOWORD(wParam) - IDC_SCHR_SETZEN_FAHRZEUG);
    return 0;
}
