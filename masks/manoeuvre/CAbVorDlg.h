// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Mask 450, "Abbiege-Vorgang".
#pragma once

#include "frame/Export.h"
#include "host/CDrawingDialog.h"
#include "masks/manoeuvre/CAbDaten.h"

class RUVMOD_API CAbVorDlg : public CMDIRechDialog
{
  public:
    /// Lies on the calling thread's main window.
    CAbVorDlg(CRuvData& data, UINT id);
    ~CAbVorDlg() override;

    const CMessageMap* GetMessageMap() const override;
    void SetupWindow() override;
    void UpdateDialog() override;
    void IncValue(int controlId) override;
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;
    void BuildObjects() override;
    void GlobalGeoDatChanged(UINT_PTR vehicle) override;
    void GlobalWZDatChanged(UINT_PTR vehicle) override;
    RecordFields DescribeRecord() override { return m_dat.Felder(); }

    void Rechnen();
    void Loeschen();
    /// Computes and shows the angle of the steering wheel.
    void BerechneDrehWinkel();
    /// The button OK: calculates if need be, writes into the case, closes.
    void SpurVorOK();
    /// The phase that was in column `alt` of the open mask's vehicle is in column `neu` now.
    static void ChangeAbs(int alt, int neu);
    LRESULT EditModified(WPARAM controlId, LPARAM);
    LRESULT UpdateDialog(WPARAM, LPARAM);
    void SetFzgEditColors();

    /// Draws the way of the last calculation into the whole of `dc`.
    void ZeichnePlan(CDC& dc) const;

  protected:
    std::int64_t ColorVehicle() const override { return m_dat.fahrzeug; }

  private:
    void OnSchalter();
    void OnGraphik();

    CAbDaten::Ausgang Berechne();
    void RechneNach();
    bool Uebertrage();
    void ZeigeHinweis(CAbDaten::Ausgang ausgang);
    void BeginneNeu();
    void PruefeFahrzeug();

    CAbDaten m_dat;
    bool m_uebertragen = false; // this turn, since it was chosen
    CDrawingDialog m_graphik;   // the drawing in a window of its own
};
