// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Mask 492 "GPX Daten importieren".
#pragma once

#include "masks/import/CGPXImportDat.h"
#include "masks/import/CImportDlg.h"
#include "masks/import/Kartenbild.h"

class CGPXImportDlg final : public CImportDlg
{
  public:
    CGPXImportDlg(CRuvData& data, CWnd* parent);

    const CMessageMap* GetMessageMap() const override;
    void SetupWindow() override;
    void ShutDownWindow() override;
    RecordFields DescribeRecord() override { return m_dat.Felder(); }
    std::optional<ReadRows> RowsRead() override;

  protected:
    Importauswahl& Auswahl() override { return m_dat.auswahl; }
    std::int64_t ColorVehicle() const override { return m_dat.auswahl.fahrzeug; }
    Lesung Lies() override;
    Kurve MacheKurve() const override;
    Fahrtbefund Uebertrage(std::size_t erste, std::size_t letzte) override { return m_dat.Uebertrage(erste, letzte); }
    std::span<const std::uint8_t> Vorhanden() const override { return m_dat.vorhanden; }
    Bericht MacheBericht() const override { return m_dat.MacheBericht(); }
    void ZeigeDaten() override;
    void ZeigeWeiteres() override;

  private:
    /// Asks what to do with a decoded FIT file; false when nothing of it is used.
    bool NimmFit();
    /// Puts the GPX file beside it, after a question where another one lies there.
    void WandleUm();
    void ZeigeKurven();
    void ZeigeNahtstellen();
    void WechsleTempoquelle();
    void OnFahrlinie();
    void OnSzene();
    void OnKartenklick(std::size_t punkt);
    void OnDiagrammzeiger(double zeit);
    void OnKartenzeiger(std::optional<std::size_t> punkt);

    CGPXImportDat m_dat;
    Kartenbild m_karte;
    std::optional<CTilesListener> m_kacheln; // while the window stands
    std::vector<double> m_zeiten;            // s, by point
    std::int64_t m_gezeigteQuelle = CGPXImportDat::berechnet;
    std::optional<std::size_t> m_kartenanfang; // first of two clicks on the map
};
