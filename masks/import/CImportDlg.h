// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What masks that read recorded driving data share: a file, its curve with a range of rows, what the file holds, what
// was understood of it, and the transfer of the range to a vehicle.
#pragma once

#include "chart/Chart.h"
#include "host/CDialog.h"
#include "masks/import/Bericht.h"
#include "masks/import/Fahrphasen.h"
#include "masks/import/Importauswahl.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

class CImportDlg : public CMDIRechDialog
{
  public:
    const CMessageMap* GetMessageMap() const override;
    void BuildObjects() override;
    void SetupWindow() override;
    void ShutDownWindow() override;

    /// Lets the user choose a file, which is read at once.
    void WaehleDatei();
    /// Reads the chosen file afresh, or asks for one first.
    void Importiere();

  protected:
    enum class Lesung {
        gelesen,
        abgelehnt, ///< it lacks what is needed (message 1093)
        keine,     ///< the file cannot be read
        abgebrochen,
    };
    struct Dateiart {
        const char* endung;
        const char* filter;
    };
    struct Kurve {
        std::vector<double> zeiten;            ///< s, not decreasing
        std::vector<double> geschwindigkeiten; ///< km/h, not-a-number where it is not known
    };

    CImportDlg(UINT nummer, CRuvData& data, Dateiart art);

    /// Of the mask's record.
    virtual Importauswahl& Auswahl() = 0;
    /// Reads Auswahl().pfad; after `abgebrochen` everything must be as before.
    virtual Lesung Lies() = 0;
    virtual Kurve MacheKurve() const = 0;
    /// Hands the rows erste..letzte, both included, to the vehicle as phases.
    virtual Fahrtbefund Uebertrage(std::size_t erste, std::size_t letzte) = 0;
    /// The flags behind the boxes IDC_IMPORT_VORHANDEN and following.
    virtual std::span<const std::uint8_t> Vorhanden() const = 0;
    virtual Bericht MacheBericht() const = 0;
    /// The rows are others now.
    virtual void ZeigeDaten() {}
    /// The rows, or the range of them, are others now.
    virtual void ZeigeWeiteres() {}

    /// The range, when it has the two rows a transfer takes.
    std::optional<chart::Rows> Bereich() const;
    chart::Chart& Diagramm() { return m_diagramm; }
    void ZeigeBericht();
    /// Shows what became of a transfer, and tells the program.
    void ZeigeUebertragung(const Fahrtbefund& befund);

  private:
    LRESULT OnEditChanged(WPARAM controlId, LPARAM);
    void Importiere(std::string pfad);
    void OnUebertragen();
    void BereichGeaendert();
    void ZeigeVorhanden();
    void ZeigeDatei();

    Dateiart m_art;
    chart::Chart m_diagramm;
};
