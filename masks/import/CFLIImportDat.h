// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Driving data of any logger as path-time phases and driving line of a vehicle.
#pragma once

#include "host/CDlgData.h"
#include "host/RecordField.h"
#include "masks/import/Bericht.h"
#include "masks/import/CGPStoXYZ.h"
#include "masks/import/FLIZeilen.h"
#include "masks/import/FahrdatenLeser.h"
#include "masks/import/Importauswahl.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

class CFLIImportDat final : public CDlgData
{
  public:
    enum class Ausgang {
        gelesen,
        abgelehnt,   ///< the file lacks what is needed; no rows are kept
        nichtLesbar, ///< the file cannot be opened; no rows are kept
        abgebrochen, ///< by the user; everything is as before
    };
    enum class Koordinaten {
        keine,
        datei,
        kopplung, ///< of heading and speed
        gps,      ///< of longitude and latitude
    };
    /// Why a file was rejected after its header had been understood.
    enum class Grund {
        keiner,
        zuVieleZeilenUnvollstaendig,
        zeitschrittFehlt, ///< a time step is exactly -1
        zeileZuLang,
    };
    static constexpr std::size_t kFlags = 13;
    static constexpr std::size_t kGezeigteFlags = 12;

    explicit CFLIImportDat(CRuvData& data) : CDlgData(data), m_konverter(data) {}

    Importauswahl auswahl;
    FLIZeilen alleZeilen;
    std::array<std::uint8_t, kFlags> vorhanden{}; ///< at least one row has it; the last one is unused
    std::uint8_t koordinatenVorhanden = 0;
    std::int64_t zeilen = 0;
    std::int64_t zeilenAusgelassen = 0;

    RecordFields Felder();

    // The steps of an import and of its transfer. A transfer takes rows erste..letzte, both included.
    Fahrtbefund Uebertragen(std::size_t erste, std::size_t letzte);
    Fahrtbefund UebertrageKoordinaten(std::size_t erste, std::size_t letzte);
    void Leere();
    /// Everything from opening the file to the rows; the report says what was understood.
    Ausgang Lies();
    void SetzeVorhanden();
    void BildeKoordinaten();
    /// Where no row has a speed: of the rows whose distance to the one before is known.
    void LeiteGeschwindigkeitAb();
    /// Every row has time and position, or time and speed, or time and x, y other than 0.
    bool Pruefe() const;

    /// All steps in their order.
    Ausgang Importiere();

    /// Times (s) since the first row; a clock that is set back stands still.
    std::vector<double> Zeiten() const;
    /// km/h, not-a-number where it is not known.
    std::vector<double> Geschwindigkeiten() const;

    const Leserbericht& LetzterBericht() const { return m_bericht; }
    /// What was understood of the file last read and what was not, in words.
    Bericht MacheBericht() const;

    /// What the user says of a column from now on, for all files with this header line. Kept with the case; the file is
    /// to be read again.
    void Ordne(const Zuordnung& zuordnung);
    /// The header lines speak for themselves again.
    void VergissZuordnungen();
    bool HatZuordnungen() const;

  private:
    Zuordnungen GemerkteZuordnungen() const;
    void Kopple();
    void KonvertierePositionen();
    void Uebernimm(const std::vector<std::size_t>& zeilenNummern);
    std::optional<double> AbstandZurVorigen(std::size_t zeile) const;

    CGPStoXYZ m_konverter;
    std::vector<LocalPoint> m_lokal;
    Leserbericht m_bericht;
    std::string m_dateifehler;
    Grund m_grund = Grund::keiner;
    Koordinaten m_koordinaten = Koordinaten::keine;
    bool m_abgeleitet = false;      ///< the speeds come from distances
    std::size_t m_ohneRichtung = 0; ///< rows that took the heading of another one
    std::size_t m_ohnePosition = 0; ///< rows without coordinates
};
