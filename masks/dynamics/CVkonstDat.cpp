// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/dynamics/CVkonstDat.h"

#include "host/CRuvData.h"
#include "host/Physics.h"
#include "res/resource.h"

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

template <class T> void LadeReihe(const CRuvData& data, const char* name, std::array<T, CVkonstDat::kZeilen>& reihe)
{
    const std::vector<double> werte = data.GemerkteWerte(IDD_KONSTANTE_GESCHWINDIGKEIT, name);
    for (std::size_t i = 0; i < reihe.size(); ++i) {
        const double wert = i < werte.size() && std::isfinite(werte[i]) ? werte[i] : 0.0;
        if constexpr (std::is_same_v<T, double>)
            reihe[i] = wert;
        else
            reihe[i] = wert != 0.0 ? 1 : 0;
    }
}

/// Calls `tue` with the name and the six values of each quantity.
template <class Dat, class Tue> void FuerAlleReihen(Dat& dat, const Tue& tue)
{
    tue("geschwindigkeitKmh", dat.geschwindigkeitKmh);
    tue("geschwindigkeitMs", dat.geschwindigkeitMs);
    tue("weg", dat.weg);
    tue("zeit", dat.zeit);
    tue("geschwindigkeitBerechnet", dat.geschwindigkeitBerechnet);
    tue("wegBerechnet", dat.wegBerechnet);
    tue("zeitBerechnet", dat.zeitBerechnet);
}

} // namespace

RecordFields CVkonstDat::Felder()
{
    return {
        {"geschwindigkeitKmh", "km/h", geschwindigkeitKmh.data(), kZeilen},
        {"geschwindigkeitMs", "m/s", geschwindigkeitMs.data(), kZeilen},
        {"weg", "m", weg.data(), kZeilen},
        {"zeit", "s", zeit.data(), kZeilen},
        {"geschwindigkeitBerechnet", "", geschwindigkeitBerechnet.data(), kZeilen},
        {"wegBerechnet", "", wegBerechnet.data(), kZeilen},
        {"zeitBerechnet", "", zeitBerechnet.data(), kZeilen},
    };
}

void CVkonstDat::Lade()
{
    FuerAlleReihen(*this, [this](const char* name, auto& reihe) { LadeReihe(m_data, name, reihe); });
}

void CVkonstDat::Merke()
{
    CMaskenWerte& werte = m_data.MaskenWerte(IDD_KONSTANTE_GESCHWINDIGKEIT);
    FuerAlleReihen(*this, [&](const char* name, const auto& reihe) { werte[name].assign(reihe.begin(), reihe.end()); });
    m_data.NotifyMaskenWerte();
}

void CVkonstDat::Loeschen()
{
    FuerAlleReihen(*this, [](const char*, auto& reihe) { reihe.fill(0); });
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
