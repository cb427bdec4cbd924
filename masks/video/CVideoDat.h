// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The analysis of a video: which file, the road's calibration, what is followed in it, its speeds. All that the user
// enters lies in the case; whatever of it changes, all speeds are computed again.
#pragma once

#include "host/CDlgData.h"
#include "host/CRuvData.h"
#include "host/RecordField.h"
#include "host/vision/CPerspectiveRectifier.h"
#include "host/vision/VideoBox.h"
#include "host/vision/VideoSpeeds.h"
#include "masks/import/Fahrphasen.h"
#include "masks/import/Importauswahl.h"
#include "masks/video/Videospur.h"

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

class CVideoDat final : public CDlgData
{
  public:
    enum Kurve : std::int64_t { ausgeglichen = 0, gemessen = 1 };
    enum Werkzeug : std::int64_t { kalibrieren = 0, verfolgen = 1, begradigen = 2 };
    static constexpr std::size_t kAbstaende = 6;
    static constexpr double kSchrittFaktor = 0.01; ///< of the buttons "-" and "+"
    static constexpr double kKastenHoehe = 0.72;   ///< m, of a box's centre above the road

    /// A video as its reader describes it.
    struct Videodaten {
        std::string pfad{};
        std::string sha256{};
        double breite = 0.0; ///< px
        double hoehe = 0.0;
        double bilderJeSekunde = 0.0;
    };
    /// The motion that a transfer writes.
    struct Verlauf {
        std::vector<Fahrzeile> zeilen{};
        double toleranz = 0.0;  ///< km/h, by which it may miss the curve between its moments
        double weg = 0.0;       ///< m, of these moments
        double kurvenWeg = 0.0; ///< m, of all of the curve
    };

    explicit CVideoDat(CRuvData& data) : CDlgData(data) {}

    Importauswahl auswahl;
    std::array<double, 2> bildgroesse{};        ///< px; 0 without a video
    double bilderJeSekunde = 0.0;               ///< 1/s
    double stelle = 0.0;                        ///< s, time of the frame shown
    std::int64_t bildnummer = 0;                ///< of the frame shown, from 0
    std::array<double, kAbstaende> abstaende{}; ///< m: P1P2, P2P4, P4P3, P3P1, P1P4, P2P3; 0 = not measured
    std::int64_t muster = 0;                    ///< 0..3 exact: square, trapez, rhombus L, rhombus R; 4..7 free
    std::uint8_t verzeichnungKorrigieren = 0;
    std::int64_t linsenstaerke = 0;    ///< of the trackbar, -100..100
    std::uint8_t staerkeAusKanten = 0; ///< what straightens the edges counts, rounded on the trackbar
    double faktor = 1.0;               ///< on every speed of the chosen ID, as it counts
    double punktHoehe = 0.0;           ///< m, of the chosen ID
    double kameraHoehe = 0.0;          ///< m, as it counts; 0 = not known
    double flaecheMin = 0.0;           ///< px², 0 = no limit
    double flaecheMax = 0.0;
    double ausgleichsspanne = 1.0; ///< s
    std::int64_t kurve = ausgeglichen;
    std::int64_t werkzeug = kalibrieren;
    std::int64_t schritt = 1;      ///< frames to step on after a click
    std::int64_t abspielstufe = 0; ///< -3..2: speed of the player 2^stufe
    std::uint8_t bereichZeigen = 1;
    std::int64_t analysiert = 0;     ///< frames that the detector went through
    std::int64_t analysiertAb = 0;   ///< the first of them, from 0
    std::uint8_t unvollstaendig = 0; ///< they are not all frames
    std::int64_t id = 0;             ///< chosen, 0 = none
    std::int64_t objekte = 0;        ///< IDs that the frame shown has
    std::vector<std::int64_t> ids;

    // Results.
    double rate = 0.0;                      ///< m per rectified pixel, 0 = not calibrated
    std::array<double, kAbstaende> reste{}; ///< m, measured minus computed; not-a-number where none was measured
    double brennweite = 0.0;                ///< px, 0 = not known
    double mittel = 0.0;                    ///< km/h of the range, not-a-number without
    double mittelU = 0.0;                   ///< km/h, standard uncertainty
    // Of the chosen ID, by speed.
    std::vector<double> zeit;            ///< s
    std::vector<double> geschwindigkeit; ///< km/h
    std::vector<double> unsicherheit;    ///< km/h, standard uncertainty
    std::vector<std::int64_t> bild;      ///< frame at which its interval ends, from 0
    std::vector<double> ausgleich;       ///< km/h, not-a-number where there is none
    std::vector<double> ausgleichU;      ///< km/h, standard uncertainty

    RecordFields Felder();
    /// Takes what the case keeps, and keeps it there.
    void Laden();
    void Merken();
    /// What the case holds is not what this record last read or wrote.
    bool IstFremd() const;

    /// Another file than the one before drops the points, the lens, heights, factor and all IDs.
    void NimmVideo(const Videodaten& video);
    /// First frame, no IDs; the calibration stays.
    void Zuruecksetzen();
    /// Where the video of the case lies; empty without one.
    std::string Videopfad() const;

    const std::vector<VisionPoint>& Punkte() const { return m_punkte; }
    void SetzePunkt(std::size_t punkt, VisionPoint wo);
    void LoeschePunkte();

    /// Points of the raw frame along edges that are straight in nature; from three on an edge counts.
    const std::vector<std::vector<VisionPoint>>& Kanten() const { return m_kanten; }
    void NeueKante();
    /// On the last edge.
    void KlickeKante(VisionPoint wo);
    /// Point of all edges in turn, from 0.
    std::optional<VisionPoint> Kantenpunkt(std::size_t nummer) const;
    void SetzeKantenpunkt(std::size_t nummer, VisionPoint wo);
    /// The last one; false when there is none.
    bool NimmKantenpunktZurueck();
    void LoescheKanten();
    /// The strength that straightens the edges; nothing as long as they do not tell it.
    const std::optional<LensEstimate>& Linse() const { return m_linse; }
    /// From now on that one counts, and is corrected.
    void NimmLinse();
    /// By hand.
    void StelleLinse(std::int64_t staerke);

    const std::map<int, Videospur>& Spuren() const { return m_spuren; }
    const Videospur* Spur() const;
    Videospur* Spur();
    /// A new one, which is chosen then; IDs are not used twice.
    void NeueSpur();
    /// What the detector saw of a vehicle in the next frame; an ID that is not there yet is made.
    void NimmKasten(int nummer, const VideoEntry& eintrag, const VideoBox& kasten);
    /// Those that the detector found; what was clicked stays.
    void LoescheGefundene();
    bool IstGesucht(std::int64_t nummer) const { return nummer >= analysiertAb && nummer - analysiertAb < analysiert; }
    bool IstGanzGesucht() const { return analysiert > 0 && unvollstaendig == 0; }
    std::int64_t HoechsteId() const { return m_hoechsteId; }
    void Klicke(int bildnummer, double zeit, VisionPoint wo);
    /// Takes back the last click of the chosen ID: its frame, nothing when there is none.
    std::optional<int> NimmZurueck();
    void WaehleSpur(std::int64_t nummer);

    /// What was entered counts from now on; 0 is: as the four points or z and h give it.
    void TippeFaktor();
    void TippeKameraHoehe();
    void TippePunktHoehe();
    bool FaktorIstGetippt() const { return m_getippterFaktor > 0.0; }
    bool KameraHoeheIstGetippt() const { return m_getippteHoehe > 0.0; }
    /// z, but no h to compute a factor with.
    bool FaktorIstUnbekannt() const { return m_faktorUnbekannt; }

    /// All results from all inputs.
    void Rechne();
    const CPerspectiveRectifier& Strasse() const { return m_strasse; }
    RoadInput Strasseneingabe() const;
    /// Of the lens, as it is set; and as it counts.
    double Linsenstaerke() const
    {
        return staerkeAusKanten != 0 && m_linse ? m_linse->strength : static_cast<double>(linsenstaerke);
    }
    double Staerke() const { return verzeichnungKorrigieren != 0 ? Linsenstaerke() : 0.0; }
    /// Standard uncertainty of the strength that is set.
    double Staerkeunsicherheit() const;
    /// Of the ID in the frame, as it stands beside it; nothing without a speed there.
    std::optional<int> Beschriftung(int nummer, int bildnummer) const;
    /// Mean speed of the entries between two times.
    void RechneMittel(double von, double bis);
    std::optional<MeanKind> Mittelart() const { return m_mittelart; }

    /// The chosen curve: of the rows of `zeit` those that have a value.
    std::vector<std::size_t> Kurvenzeilen() const;
    const std::vector<double>& Kurvenwerte() const { return kurve == gemessen ? geschwindigkeit : ausgleich; }
    /// The curve between two of its rows in as few moments as 1 km/h allows, in fewer where phases run out.
    Verlauf MacheVerlauf(std::size_t erste, std::size_t letzte) const;
    Fahrtbefund Uebertrage(const Verlauf& verlauf);

  private:
    VideoSpeeds Geschwindigkeiten(double z) const;
    void SchaetzeLinse();
    void LoescheSpuren();
    void ZeigeSpur();

    std::vector<VisionPoint> m_punkte;              // P1 and on, in the raw frame
    std::vector<std::vector<VisionPoint>> m_kanten; // none is empty but the last
    std::optional<LensEstimate> m_linse;
    std::map<int, Videospur> m_spuren;
    std::int64_t m_hoechsteId = 0;
    double m_getippterFaktor = 0.0;
    double m_getippteHoehe = 0.0;
    bool m_faktorUnbekannt = false;
    CPerspectiveRectifier m_strasse;
    std::optional<VideoSpeeds> m_geschwindigkeiten;     // of points as high as those of the chosen ID
    std::map<int, std::vector<VideoSpeed>> m_verlaeufe; // by ID
    std::optional<MeanKind> m_mittelart;
    CMaskenWerte m_gemerkt;
    CVideoQuelle m_gemerkteQuelle;
};
