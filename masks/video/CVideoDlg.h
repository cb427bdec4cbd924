// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Mask 494, "Videoanalyse": how fast is a vehicle that a video shows?
#pragma once

#include "chart/Chart.h"
#include "host/CDialog.h"
#include "host/vision/CObjDetector.h"
#include "host/vision/CVideoReader.h"
#include "masks/video/CVideoDat.h"
#include "masks/video/Videobild.h"
#include "masks/video/Videosuche.h"

#include <memory>
#include <optional>
#include <span>
#include <string>

class CVideoDlg final : public CMDIRechDialog
{
  public:
    CVideoDlg(CRuvData& data, CWnd* parent);
    ~CVideoDlg() override;

    const CMessageMap* GetMessageMap() const override;
    void BuildObjects() override;
    void SetupWindow() override;
    void ShutDownWindow() override;
    void IncValue(int controlId) override;
    RecordFields DescribeRecord() override { return m_dat.Felder(); }
    std::optional<ReadRows> RowsRead() override;

    CVideoDat& Daten() { return m_dat; }
    /// The frame lengths of an ID are others: its speeds, and all that shows them.
    void ApplyFrameRateChanges();

  protected:
    std::int64_t ColorVehicle() const override { return m_dat.auswahl.fahrzeug; }
    /// The numbers are those of the camera and of all that drives before it.
    std::int64_t ColorVehicleOf(const void*) const override { return -1; }

  private:
    LRESULT OnUpdateDialog(WPARAM, LPARAM);
    LRESULT OnEditChanged(WPARAM controlId, LPARAM);
    LRESULT OnHScroll(WPARAM position, LPARAM controlId);
    LRESULT OnKeyDown(WPARAM key, LPARAM how);
    LRESULT OnTimer(WPARAM, LPARAM);
    void WaehleDatei();
    void OnZurueck() { GeheZu(m_dat.bildnummer - 1); }
    void OnVor() { GeheZu(m_dat.bildnummer + 1); }
    void OnPlay();
    void OnReset();
    void OnFaktorMinus() { SchrittFaktor(-CVideoDat::kSchrittFaktor); }
    void OnFaktorPlus() { SchrittFaktor(CVideoDat::kSchrittFaktor); }
    void OnRuecknahme();
    void OnNeueId();
    void OnVorschlag();
    void OnPunkteLoeschen();
    void OnLinseNehmen();
    void OnKomplettanalyse();
    void OnFrames();
    void OnTransfer();

    bool LoadVideo(const std::string& pfad);
    void OeffneVideoDesFalls();
    std::string InitObjDetector();
    void AnalyzeVideo();
    void BeginneSuche();
    bool MussSuchen(std::int64_t bild) const;
    void NimmGefundene();
    bool SpieleFrame(std::int64_t bild);
    void Spiele();
    void HalteAn();
    /// Another frame: playing stops.
    void GeheZu(std::int64_t bild);
    void ZeigeFrame(std::int64_t bild);
    void OnKlick(VisionPoint wo, std::optional<Videobild::Griff> griff);
    /// A click on the followed point of the vehicle, then on to where the next one is wanted.
    void KlickeFahrzeug(VisionPoint wo);
    /// In the frame shown, for what was clicked in another one.
    void SucheVorschlag(const drawing::Bitmap* vorher, int bildVorher, VisionPoint wo);
    /// Of the frame shown; nothing once anything that it came from is another.
    std::optional<VisionPoint> Vorschlag() const;
    void OnZug(Videobild::Griff griff, VisionPoint wo, bool fertig);
    /// What the arrow keys move now.
    std::optional<Videobild::Griff> Aktiv() const;
    void SchrittFaktor(double um);
    void BereichGeaendert();

    /// Shows what follows from the record, and lets the case keep it.
    void Zeige(bool merken = true);
    void ZeigeInhalt();
    void ZeigeKurve();
    void ZeigeTexte();
    void ZeigeStrasse();
    void ZeigeLinse();
    std::string Linsentext();
    std::string Resttext(std::size_t abstand);
    void ZeigeMittel();
    void ZeigeVerlauf();
    void ZeigeBericht();
    void Status(const std::string& text);
    std::string Zahltext(UINT control, UINT text, std::span<const ShownNumber> zahlen);
    std::optional<chart::Rows> Bereich() const;
    bool HatVideo() const { return m_leser && m_leser->IsOpened() != 0; }
    std::string Gezaehlt() const;

    /// Not an entry: neither the case nor a speed knows it before the user takes it.
    struct Angebot {
        std::int64_t id = 0;
        int bild = 0;        ///< that it lies in
        int bildVorher = 0;  ///< that was clicked in
        VisionPoint klick{}; ///< there
        VisionPoint punkt{};
        double korrelation = 0.0;
    };

    CVideoDat m_dat;
    std::unique_ptr<CVideoReader> m_leser;
    std::unique_ptr<CYoloV5ORTDetector> m_detektor;
    std::unique_ptr<Videosuche> m_suche;      // of the open video, as long as what it found stands in the record
    std::optional<std::int64_t> m_sucheNeuAb; // frame from which on playing dropped what had been found before
    std::string m_offen;                      // SHA-256 of the open video
    Videobild m_bild;
    chart::Chart m_diagramm;
    std::optional<Videobild::Griff> m_aktiv;
    std::optional<Angebot> m_angebot;
    bool m_spielt = false;
    bool m_sucht = false;     // while it plays
    bool m_ungemerkt = false; // playing found what the case does not keep yet
    bool m_amEnde = false;
    bool m_zeigtKurve = false; // the range that comes and goes meanwhile is not the user's
    std::int64_t m_gezeigtesMuster = 0;
    std::uint8_t m_gezeigteVerzeichnung = 0;
    std::int64_t m_gezeigteId = 0;
};
