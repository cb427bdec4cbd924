// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Mask 462, "Vermeidbarkeitsberechnung".
#pragma once

#include "host/CDrawingDialog.h"
#include "masks/manoeuvre/CVermDat.h"

#include <array>
#include <optional>
#include <string>

class CVermDlg : public CMDIRechDialog
{
  public:
    CVermDlg(CRuvData& data, CWnd* parent);

    const CMessageMap* GetMessageMap() const override;
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;
    void SetupWindow() override;
    void UpdateDialog() override;
    void IncValue(int controlId) override;
    void BuildObjects() override;
    void GlobalWZDatChanged(UINT_PTR hint) override;
    RecordFields DescribeRecord() override { return m_dat.Felder(); }

    void Rechnen();
    void Loeschen();
    void Graphik();

  protected:
    std::int64_t ColorVehicle() const override { return m_dat.fahrzeug; }
    std::int64_t ColorVehicleOf(const void* field) const override;

  private:
    LRESULT OnEditChanged(WPARAM controlId, LPARAM);
    void OnButtonOk();
    void OnTransferOption();

    std::array<std::int64_t*, 4> Fahrzeuge();
    void TauscheFahrzeug(UINT controlId);
    /// Calculates; what stops it is always told, the rest only on demand.
    bool RechneUndMelde(bool alles);
    bool BringeAufStand();
    void Uebertrage();
    void AendereEingabe();
    void VerwirfErgebnis();
    /// The case holds what the mask shows: as the last transfer left it, and the mask as it was then.
    bool FallGilt();
    std::optional<CWegZeitDat> Phasen(std::int64_t fahrzeug) const;
    void ZeigeBefund();
    void Zeichne(CDC& dc);

    CVermDat m_dat;
    CDrawingDialog m_graphik;                 // the drawing in a window of its own
    std::array<std::int64_t, 4> m_gewaehlt{}; // vehicles before the choice that is being made
    bool m_geaendert = false;                 // an input, since the last calculation
    bool m_ergebnis = false;                  // results are shown that belong to a calculation
    bool m_uebertragen = false;               // the case held a transfer of this mask
    // The last transfer: the mask's inputs and choices, what the case held after it, and what was said of it.
    struct Stand {
        std::vector<double> eingaben;
        std::optional<CWegZeitDat> ziel;
        std::optional<CWegZeitDat> gegner;
        std::string satz;
        std::string satzGegner;
    };
    std::optional<Stand> m_stand;
};
