// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/dynamics/CVkonstDat.h"

#include "host/CRuvData.h"
#include "host/NumberTable.h"
#include "host/Physics.h"
#include "res/dynamics.h"

#include <algorithm>
#include <cmath>

namespace
{

/// Two speeds that differ by less, as a part of the larger, are the same one in two units.
constexpr double kGleicheGeschwindigkeit = 1e-9;

/// Keeps the old value where the new one is beyond all numbers.
void Setze(double& ziel, double wert)
{
    if (std::isfinite(wert))
        ziel = wert;
}

} // namespace

constexpr CVkonstDat::Edits CVkonstDat::kKmh{IDC_VKONST_KMH_1, IDC_VKONST_KMH_2, IDC_VKONST_KMH_3,
                                             IDC_VKONST_KMH_4, IDC_VKONST_KMH_5, IDC_VKONST_KMH_6};
constexpr CVkonstDat::Edits CVkonstDat::kMs{IDC_VKONST_MS_1, IDC_VKONST_MS_2, IDC_VKONST_MS_3,
                                            IDC_VKONST_MS_4, IDC_VKONST_MS_5, IDC_VKONST_MS_6};
constexpr CVkonstDat::Edits CVkonstDat::kWeg{IDC_VKONST_WEG_1, IDC_VKONST_WEG_2, IDC_VKONST_WEG_3,
                                             IDC_VKONST_WEG_4, IDC_VKONST_WEG_5, IDC_VKONST_WEG_6};
constexpr CVkonstDat::Edits CVkonstDat::kZeit{IDC_VKONST_ZEIT_1, IDC_VKONST_ZEIT_2, IDC_VKONST_ZEIT_3,
                                              IDC_VKONST_ZEIT_4, IDC_VKONST_ZEIT_5, IDC_VKONST_ZEIT_6};

namespace
{

using Dat = CVkonstDat;

constexpr NumberRange kBereich{0, 1000};
constexpr NumberRow<Dat> kZahlen[] = {
    {Dat::kKmh, "geschwindigkeitKmh", At<&Dat::geschwindigkeitKmh>, units::kmh, kBereich, 2, FieldRole::input},
    {Dat::kMs,
     "geschwindigkeitMs",
     At<&Dat::geschwindigkeitMs>,
     units::ms,
     kBereich,
     2,
     FieldRole::input,
     {.label = "Geschwindigkeit"}},
    {Dat::kWeg, "weg", At<&Dat::weg>, units::m, kBereich, 2, FieldRole::input},
    {Dat::kZeit, "zeit", At<&Dat::zeit>, units::s, kBereich, 2, FieldRole::input},
    {"geschwindigkeitBerechnet", At<&Dat::geschwindigkeitBerechnet>, units::none, FieldRole::internal},
    {"wegBerechnet", At<&Dat::wegBerechnet>, units::none, FieldRole::internal},
    {"zeitBerechnet", At<&Dat::zeitBerechnet>, units::none, FieldRole::internal},
};

} // namespace

RecordFields CVkonstDat::Felder()
{
    return Describe(*this, kZahlen);
}

void CVkonstDat::Laden()
{
    Loeschen();
    TakeFromCase(m_data, IDD_KONSTANTE_GESCHWINDIGKEIT, Felder());
}

void CVkonstDat::Merken()
{
    KeepWithCase(m_data, IDD_KONSTANTE_GESCHWINDIGKEIT, Felder());
    m_data.NotifyMaskenWerte();
}

void CVkonstDat::Loeschen()
{
    ClearNumbers(Felder());
}

void CVkonstDat::RechneZeile(std::size_t i)
{
    if (weg[i] == 0.0 || wegBerechnet[i] != 0) {
        Setze(weg[i], zeit[i] * geschwindigkeitMs[i]);
        wegBerechnet[i] = 1;
    } else if (geschwindigkeitMs[i] != 0.0 && geschwindigkeitBerechnet[i] == 0) {
        Setze(zeit[i], weg[i] / geschwindigkeitMs[i]);
    } else if (zeit[i] == 0.0) {
        if (geschwindigkeitMs[i] != 0.0) {
            Setze(zeit[i], weg[i] / geschwindigkeitMs[i]);
            zeitBerechnet[i] = 1;
        }
    } else {
        Setze(geschwindigkeitMs[i], weg[i] / zeit[i]);
        Setze(geschwindigkeitKmh[i], geschwindigkeitMs[i] * kKmhProMs);
        geschwindigkeitBerechnet[i] = 1;
    }
}

void CVkonstDat::KmhGeaendert(std::size_t i)
{
    geschwindigkeitMs[i] = geschwindigkeitKmh[i] / kKmhProMs;
    geschwindigkeitBerechnet[i] = 0;
    RechneZeile(i);
}

void CVkonstDat::MsGeaendert(std::size_t i)
{
    geschwindigkeitKmh[i] = geschwindigkeitMs[i] * kKmhProMs;
    geschwindigkeitBerechnet[i] = 0;
    RechneZeile(i);
}

void CVkonstDat::WegGeaendert(std::size_t i)
{
    if (geschwindigkeitMs[i] == 0.0) {
        if (zeit[i] == 0.0) {
            geschwindigkeitKmh[i] = 0.0;
        } else {
            Setze(geschwindigkeitMs[i], weg[i] / zeit[i]);
            Setze(geschwindigkeitKmh[i], geschwindigkeitMs[i] * kKmhProMs);
        }
        geschwindigkeitBerechnet[i] = 1;
        wegBerechnet[i] = 0;
        zeitBerechnet[i] = 0;
    } else {
        Setze(zeit[i], weg[i] / geschwindigkeitMs[i]);
        zeitBerechnet[i] = 1;
        geschwindigkeitBerechnet[i] = 0;
        wegBerechnet[i] = 0;
    }
}

void CVkonstDat::ZeitGeaendert(std::size_t i)
{
    if (geschwindigkeitMs[i] == 0.0) {
        if (zeit[i] != 0.0)
            Setze(geschwindigkeitMs[i], weg[i] / zeit[i]);
        // The first row's speed, whichever row this is.
        Setze(geschwindigkeitKmh[i], geschwindigkeitMs[0] * kKmhProMs);
        geschwindigkeitBerechnet[i] = 1;
        wegBerechnet[i] = 0;
        zeitBerechnet[i] = 0;
    } else {
        Setze(weg[i], geschwindigkeitMs[i] * zeit[i]);
        wegBerechnet[i] = 1;
        geschwindigkeitBerechnet[i] = 0;
        zeitBerechnet[i] = 0;
    }
}

void CVkonstDat::Rechnen()
{
    for (std::size_t i = 0; i < kZeilen; ++i)
        RechneZeile(i);
}

std::optional<std::size_t> CVkonstDat::UneinigeZeile() const
{
    for (std::size_t i = 0; i < kZeilen; ++i) {
        const double kmh = geschwindigkeitMs[i] * kKmhProMs;
        const double groesser = std::max(std::abs(kmh), std::abs(geschwindigkeitKmh[i]));
        if (std::abs(kmh - geschwindigkeitKmh[i]) > kGleicheGeschwindigkeit * groesser)
            return i;
    }
    return std::nullopt;
}
