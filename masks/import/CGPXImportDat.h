// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// A track of a GPX or FIT file as path-time phases and driving line of a vehicle.
#pragma once

#include "host/CDlgData.h"
#include "host/RecordField.h"
#include "masks/import/Bericht.h"
#include "masks/import/CGPStoXYZ.h"
#include "masks/import/Fahrphasen.h"
#include "masks/import/FitSpur.h"
#include "masks/import/GpxLeser.h"
#include "masks/import/Importauswahl.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

class CGPXImportDat final : public CDlgData
{
  public:
    enum class Ausgang {
        gpx,         ///< a GPX track was read
        fit,         ///< a FIT file was decoded, to its end or to a damage
        nichtLesbar, ///< the file cannot be opened
        keineSpur,   ///< it is neither of the two, see Hindernis
        abgebrochen, ///< by the user; everything is as before
    };
    /// The speed that curve and transfer take.
    enum Tempoquelle : std::int64_t {
        berechnet = 0,    ///< of positions and time steps
        aufgezeichnet = 1 ///< by the device, in a FIT file
    };
    enum class Ziel { fehlt, gleich, anders };
    static constexpr std::size_t kFlags = 8;

    explicit CGPXImportDat(CRuvData& data) : CDlgData(data), m_konverter(data) {}

    Importauswahl auswahl;
    std::vector<GPXTrackPoint> punkte;
    std::array<std::uint8_t, kFlags> vorhanden{};
    std::int64_t zeilen = 0;
    std::int64_t tempoquelle = berechnet;

    RecordFields Felder();

    /// Whether a path is one of a FIT file: it contains ".fit", in small letters, and would not be its own output.
    static bool IstFitPfad(const std::string& pfad);
    /// The GPX file beside a FIT file: the last three characters replaced.
    static std::string GpxPfad(const std::string& pfad);

    /// Clears the points and reads the file: after `gpx` they are there, a FIT file waits for NimmFit.
    Ausgang Lies();
    // After Ausgang::fit.
    const FitBefund& Fitbefund() const { return m_fit.befund; }
    std::size_t FitPunkte() const { return m_fit.punkte.size(); }
    /// What lies where the GPX text of the track would be written.
    Ziel VergleicheZiel() const;
    /// Writes it unless it lies there already, after which the path is that of the GPX file. The sentence that says why
    /// not, empty when it was.
    std::string SchreibeGpx(Ziel dort);
    /// Takes the points as the GPX text has them.
    void NimmFit();
    /// Drops what was decoded.
    void VerwirfFit();

    /// Every point has position and time. An empty track passes.
    bool Pruefe();
    /// Time steps, coordinates, speeds, presence, in this order.
    void Rechne();
    void Leere();

    /// Why there are no points, in German, after Ausgang::nichtLesbar and keineSpur.
    const std::string& Hindernis() const { return m_hindernis; }
    /// The file that was read, whatever the path is after a conversion.
    const std::string& Quelle() const { return m_herkunft.pfad; }
    bool HatAufgezeichnete() const { return !m_aufgezeichnet.empty(); }

    /// First point of each further segment: the step to it bridges what was not recorded.
    const std::vector<std::size_t>& Nahtstellen() const { return m_nahtstellen; }
    /// Whether a step between the points erste..letzte is such a bridge.
    bool HatNaht(std::size_t erste, std::size_t letzte) const;

    /// Times (s) since the first point; a clock that is set back stands still.
    std::vector<double> Zeiten() const;
    /// km/h of a point, not-a-number where there is none: of a step back in time, or not recorded.
    double Tempo(std::size_t punkt, std::int64_t quelle) const;
    std::vector<double> Geschwindigkeiten(std::int64_t quelle) const;
    /// What was understood of the file last read and what was not, in words.
    Bericht MacheBericht() const;

    // Points erste..letzte, both included.
    Fahrtbefund Uebertrage(std::size_t erste, std::size_t letzte);
    Fahrtbefund UebertrageKoordinaten(std::size_t erste, std::size_t letzte);
    /// Lays them into the scene, the first one at its origin, north up. The sentence that says what was done or why
    /// not.
    std::string LegeInSzene(std::size_t erste, std::size_t letzte);

  private:
    struct Herkunft {
        std::string pfad{};
        std::string sha256{};
        std::size_t bytes = 0;
        bool fit = false;
        bool beschaedigt = false;       ///< its points before the damage are used
        std::string geschrieben{};      ///< the GPX file that was written, or was there with the same content
        std::size_t ersteSchlechte = 0; ///< point that lacks position or time, from 1; 0 = none
        std::size_t gelesen = 0;        ///< points of the file, also when they were rejected
        std::int64_t fitZeit = 0;       ///< the first point's time in a FIT file, s from 1970 UTC
    };

    void BildeZeitschritte();
    void Konvertiere();
    void BildeGeschwindigkeiten();
    void SetzeVorhanden();

    CGPStoXYZ m_konverter;
    std::vector<LocalPoint> m_lokal;
    std::vector<double> m_aufgezeichnet; ///< m/s by point, -1 = none; empty when the file has none
    std::vector<std::size_t> m_nahtstellen;
    FitSpur m_fit;   ///< of a decoded file; without points after NimmFit
    GpxInhalt m_gpx; ///< without points
    Herkunft m_herkunft;
    std::string m_hindernis;
};
