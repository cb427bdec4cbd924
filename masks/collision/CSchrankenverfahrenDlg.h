// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Mask 487, "Schrankenverfahren": collision speed against a pedestrian or cyclist from what lies in the scene.
#pragma once

#include "frame/Export.h"
#include "host/CDialog.h"
#include "host/Placing.h"
#include "masks/collision/CSchrankenverfahrenDat.h"

#include <array>
#include <memory>

class CSchrankDiagrammGrossDlg;
class CSchrankenSeite;
class CSchrankSetzDlg;

class RUVMOD_API CSchrankenverfahrenDlg : public CMDIRechDialog, public CPlacingClient
{
  public:
    CSchrankenverfahrenDlg(CRuvData& data, CWnd* parent);
    ~CSchrankenverfahrenDlg() override;

    const CMessageMap* GetMessageMap() const override;
    void DoDataExchange(CDataExchange* exchange) override;
    BOOL OnInitDialog() override;
    void SetupWindow() override;
    void ShutDownWindow() override;
    void UpdateDialog() override;
    UINT GetDlgResIDForAssistant() override;
    void GlobalGeoDatChanged(UINT_PTR hint) override;
    RecordFields DescribeRecord() override { return m_dat.Felder(); }
    bool ResultsAreOutdated() override { return m_veraltet; }

    /// True when there is enough to compute with; otherwise says what is missing first.
    virtual bool CheckeRechnung();
    virtual void OnRechnen();
    virtual void OnPaint();
    /// Narrows the first n positions of the common area by a barrier's band.
    virtual void FlaechenRechner(const CSchrankenverfahrenDat::Kurvenfeld& schranke, std::size_t n);

    std::vector<CPlacedObject> PlacedObjects() const override;
    void ObjectPlaced(const CPlacedObject& object) override;
    void PlacingEnded() override;

    /// Has the small or the large diagram drawn afresh; nothing when its field is not there.
    void PaintDiagramm(bool gross);
    /// Ties the mask to a view that shows its objects; null unties it.
    void SetMovieView(CMvView* view);
    /// Hands the placed objects to the scene and to the tied view.
    void LadeEllipsen();

    void OK();
    void OnBnClickedSchrBu1();
    void OnBnClickedSchrBu2();
    void OnBnClickedSchrBu3();
    void OnBnClickedSchrBu4();
    void OnBnClickedSchrBu5();
    void OnBnClickedSchrZeichenfeld();
    void OnBnClickedSchrRechnen();

    // What the pages and dialogs of the mask call.

    /// A participant was chosen, or an object came, moved or went.
    void LageGeaendert();
    /// A value of the barriers was changed; a spinner step or a switch recomputes at once, an entry waits for
    /// "Rechnen".
    void EingabeGeaendert(bool sofort);
    /// A value that only the results of pages 4 and 5 depend on.
    void KontrolleGeaendert();
    /// Recomputes when a result stands, projects otherwise, and shows everything.
    void Nachrechnen();
    /// Asks the scene for the place of an object.
    void Setzen(std::size_t objekt);
    /// Takes a placed object out of the computation or back into it; one that has no place yet is placed.
    void Umschalten(std::size_t objekt);
    /// Hands the chosen speed to the vehicle.
    void TempoUebergeben();
    /// Hands speed and collision configuration to the case.
    void Exportieren();
    bool IstExportiert() const { return m_exportiert; }
    /// Lets the static draw the diagram.
    void VerbindeZeichenfeld(CWnd* feld, bool gross);

  private:
    static constexpr std::size_t kSeiten = 5;

    LRESULT OnUpdateDialog(WPARAM, LPARAM);
    void ZeigeSeite(std::size_t seite);
    /// Says what is to be said of the result beside it.
    void ZeigeBefund();
    /// Computes when entries were made since, and says what is missing then. True when a speed can be handed over.
    bool BringeAufStand();
    CPlacedObject Objekt(std::size_t objekt) const;
    CPlacedObject Vorschlag(std::size_t objekt) const;

    CSchrankenverfahrenDat m_dat;
    std::array<std::unique_ptr<CSchrankenSeite>, kSeiten> m_seiten;
    std::unique_ptr<CSchrankSetzDlg> m_setzen;
    std::unique_ptr<CSchrankDiagrammGrossDlg> m_gross;
    CMvView* m_view = nullptr;
    bool m_veraltet = false;   // an entry was made since the standing result
    bool m_exportiert = false; // and nothing was changed since
};
