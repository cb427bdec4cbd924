// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Mask 474, "Allgemeine Fahrdaten / GPS Daten importieren".
#pragma once

#include "masks/import/CFLIImportDat.h"
#include "masks/import/CImportDlg.h"

class CFLIImportDlg : public CImportDlg
{
  public:
    CFLIImportDlg(CRuvData& data, CWnd* parent);

    const CMessageMap* GetMessageMap() const override;
    void SetupWindow() override;
    RecordFields DescribeRecord() override { return m_dat.Felder(); }
    std::optional<ReadRows> RowsRead() override;

  protected:
    Importauswahl& Auswahl() override { return m_dat.auswahl; }
    std::int64_t ColorVehicle() const override { return m_dat.auswahl.fahrzeug; }
    Lesung Lies() override;
    Kurve MacheKurve() const override;
    Fahrtbefund Uebertrage(std::size_t erste, std::size_t letzte) override { return m_dat.Uebertragen(erste, letzte); }
    std::span<const std::uint8_t> Vorhanden() const override;
    Bericht MacheBericht() const override { return m_dat.MacheBericht(); }
    void ZeigeDaten() override;
    void ZeigeWeiteres() override;

  private:
    void OnFahrlinie();
    void OnSpalte();
    void OnKanal();
    void OnEinheit();
    void OnZuruecksetzen();

    /// Number of the file's column that is selected in the preview, -1 for none.
    int GewaehlteSpalte() const;
    void ZeigeSpalten();
    void ZeigeZuordnung();
    void Ordne(Kanal kanal, int einheit);
    CGridCtrl& Vorschau() const;
    CComboBox& Combo(UINT id) const;

    CFLIImportDat m_dat;
};
