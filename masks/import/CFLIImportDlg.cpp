// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/import/CFLIImportDlg.h"

#include "res/import.h"

#include <algorithm>

namespace
{

/// Entry of a choice for "none" or "as the file says"; the others follow.
constexpr int kErsterEintrag = 0;
constexpr int kVorschauzeilen = 3;

} // namespace

CFLIImportDlg::CFLIImportDlg(CRuvData& data, CWnd*)
    : CImportDlg(IDD_FAHRDATEN, data, {"*.FLI", "CSV (*.csv)|*.csv||"}), m_dat(data)
{
    m_dat.SetParent(this);
}

const CMessageMap* CFLIImportDlg::GetMessageMap() const
{
    static constexpr CMessageEntry kEntries[] = {
        OnControl<&CFLIImportDlg::OnFahrlinie>(IDC_FLI_FAHRLINIE),
        OnControl<&CFLIImportDlg::OnSpalte>(IDC_FLI_SPALTEN, LBN_SELCHANGE),
        OnControl<&CFLIImportDlg::OnKanal>(IDC_FLI_KANAL, CBN_SELCHANGE),
        OnControl<&CFLIImportDlg::OnEinheit>(IDC_FLI_EINHEIT, CBN_SELCHANGE),
        OnControl<&CFLIImportDlg::OnZuruecksetzen>(IDC_FLI_ZURUECKSETZEN),
    };
    static const CMessageMap kMap{CImportDlg::GetMessageMap(), kEntries};
    return &kMap;
}

void CFLIImportDlg::SetupWindow()
{
    std::vector<CGridCtrl::Column> spalten;
    for (UINT text = IDS_FLI_VORSCHAU; text < IDS_FLI_VORSCHAU + 4; ++text)
        spalten.push_back({LoadRuvString(text)});
    for (int zeile = 1; zeile <= kVorschauzeilen; ++zeile)
        spalten.push_back({LoadRuvString(IDS_FLI_VORSCHAU + 4) + " " + std::to_string(zeile), false, true});
    Vorschau().SetColumns(std::move(spalten));
    CComboBox& kanaele = Combo(IDC_FLI_KANAL);
    kanaele.AddString("–");
    for (UINT kanal = 0; kanal < kKanaele; ++kanal)
        kanaele.AddString(LoadRuvString(IDS_FLI_KANAL + kanal));
    CImportDlg::SetupWindow();
}

std::optional<ReadRows> CFLIImportDlg::RowsRead()
{
    ReadRows rows;
    rows.titles.assign(kFeldtitel.begin(), kFeldtitel.end());
    rows.count = m_dat.alleZeilen.Anzahl();
    rows.get = [this](std::size_t zeile, std::span<double> werte) {
        const FLIRow row = m_dat.alleZeilen.Zeile(zeile);
        std::copy(row.begin(), row.end(), werte.begin());
    };
    rows.file = m_dat.auswahl.pfad;
    return rows;
}

CImportDlg::Lesung CFLIImportDlg::Lies()
{
    switch (m_dat.Importiere()) {
    case CFLIImportDat::Ausgang::gelesen:
        return Lesung::gelesen;
    case CFLIImportDat::Ausgang::abgelehnt:
        return Lesung::abgelehnt;
    case CFLIImportDat::Ausgang::nichtLesbar:
        return Lesung::keine;
    case CFLIImportDat::Ausgang::abgebrochen:
        break;
    }
    return Lesung::abgebrochen;
}

CImportDlg::Kurve CFLIImportDlg::MacheKurve() const
{
    return {m_dat.Zeiten(), m_dat.Geschwindigkeiten()};
}

std::span<const std::uint8_t> CFLIImportDlg::Vorhanden() const
{
    return std::span(m_dat.vorhanden).first(CFLIImportDat::kGezeigteFlags);
}

void CFLIImportDlg::ZeigeDaten()
{
    ZeigeSpalten();
    ZeigeZuordnung();
}

void CFLIImportDlg::ZeigeWeiteres()
{
    Enable(IDC_FLI_FAHRLINIE, m_dat.koordinatenVorhanden != 0 && Bereich() ? TRUE : FALSE);
}

void CFLIImportDlg::OnFahrlinie()
{
    if (const auto bereich = Bereich())
        ZeigeUebertragung(m_dat.UebertrageKoordinaten(bereich->first, bereich->last));
}

void CFLIImportDlg::ZeigeSpalten()
{
    const Leserbericht& bericht = m_dat.LetzterBericht();
    std::vector<CGridCtrl::Row> zeilen;
    for (std::size_t i = 0; i < bericht.spalten.size(); ++i) {
        const auto spalte = static_cast<int>(i);
        const Kanal kanal = bericht.plan.KanalDer(spalte);
        CGridCtrl::Row zeile{std::to_string(spalte + 1), bericht.spalten[i].name, bericht.spalten[i].einheit};
        zeile.push_back(kanal == Kanal::keiner ? "–" : LoadRuvString(IDS_FLI_KANAL + static_cast<UINT>(kanal)));
        if (kanal != Kanal::keiner && bericht.plan.Gewaehlt(kanal) != nullptr)
            zeile.back() += " [" + std::string(bericht.plan.Gewaehlt(kanal)->text) + "]";
        for (const std::vector<std::string>& zellen : bericht.vorschau)
            zeile.push_back(i < zellen.size() ? zellen[i] : std::string());
        zeilen.push_back(std::move(zeile));
    }
    Vorschau().SetRows(std::move(zeilen));
}

void CFLIImportDlg::OnSpalte()
{
    ZeigeZuordnung();
}

void CFLIImportDlg::ZeigeZuordnung()
{
    const int spalte = GewaehlteSpalte();
    const Spaltenplan& plan = m_dat.LetzterBericht().plan;
    const Kanal kanal = spalte < 0 ? Kanal::keiner : plan.KanalDer(spalte);
    Combo(IDC_FLI_KANAL).SetCurSel(spalte < 0 ? -1 : static_cast<int>(kanal) + 1);
    Enable(IDC_FLI_KANAL, spalte >= 0);
    CComboBox& einheiten = Combo(IDC_FLI_EINHEIT);
    einheiten.ResetContent();
    if (kanal != Kanal::keiner) {
        einheiten.AddString(LoadRuvString(IDS_FLI_WIE_DATEI));
        int gewaehlt = kErsterEintrag;
        for (const Einheitenwahl* wahl : Einheiten(kanal)) {
            const int eintrag = einheiten.AddString(std::string(wahl->text));
            if (wahl == plan.Gewaehlt(kanal))
                gewaehlt = eintrag;
        }
        einheiten.SetCurSel(gewaehlt);
    }
    Enable(IDC_FLI_EINHEIT, kanal != Kanal::keiner);
    Enable(IDC_FLI_ZURUECKSETZEN, m_dat.HatZuordnungen());
}

void CFLIImportDlg::OnKanal()
{
    Ordne(static_cast<Kanal>(Combo(IDC_FLI_KANAL).GetCurSel() - 1), kEinheitDerDatei);
}

void CFLIImportDlg::OnEinheit()
{
    const int spalte = GewaehlteSpalte();
    if (spalte >= 0)
        Ordne(m_dat.LetzterBericht().plan.KanalDer(spalte), Combo(IDC_FLI_EINHEIT).GetCurSel() - 1);
}

void CFLIImportDlg::Ordne(Kanal kanal, int einheit)
{
    const int spalte = GewaehlteSpalte();
    if (spalte < 0)
        return;
    m_dat.Ordne({spalte, kanal, einheit});
    Importiere();
    Vorschau().SetSelection(spalte, spalte);
    ZeigeZuordnung();
}

void CFLIImportDlg::OnZuruecksetzen()
{
    m_dat.VergissZuordnungen();
    Importiere();
}

int CFLIImportDlg::GewaehlteSpalte() const
{
    return Vorschau().GetFirstSelected();
}

CGridCtrl& CFLIImportDlg::Vorschau() const
{
    return *static_cast<CGridCtrl*>(GetDlgItem(IDC_FLI_SPALTEN));
}

CComboBox& CFLIImportDlg::Combo(UINT id) const
{
    return *static_cast<CComboBox*>(GetDlgItem(id));
}
