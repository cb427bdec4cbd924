// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/dynamics/CTeilanhDat.h"

#include "host/CRuvData.h"
#include "host/NumberTable.h"
#include "host/Physics.h"
#include "host/Quadratgl.h"
#include "host/RuvCfg.h"
#include "res/dynamics.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace
{

/// Speeds (km/h), times (s) and paths (m) this near to zero are the rounding of none at all.
constexpr double kRundung = 1e-6;

/// Quantities that do not change during a calculation.
struct Vorgabe {
    double tR;
    double tS;
    double aR;
    double aB;

    /// Change of speed over the threshold phase: the mean of -aR and aB.
    double Schwellverlust() const { return (aB - aR) / 2.0 * tS; }
    double Schwellverkuerzung() const { return (aB - 2.0 * aR) * (tS * tS) / 6.0; }
};

/// The motion during a calculation, in m/s, m and s.
struct Ablauf {
    double vA;
    double vE;
    double tB;
    double vR = 0.0;
    double vS = 0.0;
    double sR = 0.0;
    double sS = 0.0;
    double sB = 0.0;
    double tG = 0.0;
    double sG = 0.0;
    double sBS = 0.0;

    /// Reaction and threshold phase from the initial speed.
    void BisBremsbeginn(const Vorgabe& g)
    {
        vR = vA + g.aR * g.tR;
        sR = g.aR / 2.0 * (g.tR * g.tR) + vA * g.tR;
        vS = vR - g.Schwellverlust();
        sS = vR * g.tS - g.Schwellverkuerzung();
    }
    void AnfangsgeschwAusBremszeit(const Vorgabe& g)
    {
        vA = g.aB * tB - g.aR * g.tR + g.Schwellverlust() + vE;
        BisBremsbeginn(g);
    }
    void Summiere(const Vorgabe& g)
    {
        sB = vS * tB - g.aB / 2.0 * (tB * tB);
        tG = g.tR + g.tS + tB;
        sG = sR + sS + sB;
        sBS = sB + sS;
    }
    bool IstEndlich() const
    {
        const std::array quantities{vA, vR, vS, vE, tB, sR, sS, sB, tG, sG, sBS};
        return std::all_of(quantities.begin(), quantities.end(), [](double q) { return std::isfinite(q * kKmhProMs); });
    }
};

/// The braking time from a·t² + b·t + c = 0: the smaller root unless it is negative, then the larger one.
bool LoeseBremszeit(double a, double b, double c, double& tB)
{
    if (a == 0.0) {
        if (b == 0.0)
            return false;
        tB = -c / b + 0.0; // + 0.0: no negative zero
        return true;
    }
    const double sign = a < 0.0 ? -1.0 : 1.0;
    double larger = 0.0;
    double smaller = 0.0;
    int count = 0;
    Quadratgl(sign * a, sign * b, sign * c, larger, smaller, count);
    if (count == 0)
        return false;
    tB = smaller >= 0.0 ? smaller : larger;
    return true;
}

using Ausgang = CTeilanhDat::Ausgang;

Ausgang AnfangsgeschwAusGesamtweg(Ablauf& m, const Vorgabe& g, double sG)
{
    const double t = g.tR + g.tS;
    const double c = m.vE * t + g.Schwellverlust() * t - g.Schwellverkuerzung() - g.aR / 2.0 * (g.tR * g.tR) - sG;
    if (!LoeseBremszeit(g.aB / 2.0, g.aB * t + m.vE, c, m.tB))
        return Ausgang::keineBremszeit;
    m.AnfangsgeschwAusBremszeit(g);
    return Ausgang::berechnet;
}

Ausgang AnfangsgeschwAusBremsweg(Ablauf& m, const Vorgabe& g, double sB)
{
    if (!LoeseBremszeit(g.aB / 2.0, m.vE, -sB, m.tB))
        return Ausgang::keineBremszeit;
    m.AnfangsgeschwAusBremszeit(g);
    return Ausgang::berechnet;
}

Ausgang EndgeschwAusBremsweg(Ablauf& m, const Vorgabe& g, double sB)
{
    if (!LoeseBremszeit(g.aB / 2.0, -m.vS, sB, m.tB))
        return Ausgang::keineBremszeit;
    m.vE = m.vS - g.aB * m.tB;
    return Ausgang::berechnet;
}

Ausgang EndgeschwAusGesamtweg(Ablauf& m, const Vorgabe& g, double sG)
{
    if (m.sR + m.sS > sG)
        return Ausgang::reaktionZuLang;
    return EndgeschwAusBremsweg(m, g, sG - m.sR - m.sS);
}

} // namespace

namespace
{

using Dat = CTeilanhDat;

// Speeds and paths that the mode computes are inputs that the dialog write-protects.
constexpr NumberRow<Dat> kZahlen[] = {
    {IDC_TEILANH_VA, "vA", At<&Dat::vA>, units::kmh, {0, 1000}, 2, FieldRole::input},
    {IDC_TEILANH_VR, "vR", At<&Dat::vR>, units::kmh, {0, 1000}, 2, FieldRole::result},
    {"vS", At<&Dat::vS>, units::kmh, FieldRole::internal},
    {IDC_TEILANH_VE, "vE", At<&Dat::vE>, units::kmh, {0, 1000}, 2, FieldRole::input},
    {IDC_TEILANH_TB, "tB", At<&Dat::tB>, units::s, {0, 100}, 2, FieldRole::result},
    {IDC_TEILANH_TR, "tR", At<&Dat::tR>, units::s, {0, 100}, 2, FieldRole::input},
    {IDC_TEILANH_TS, "tS", At<&Dat::tS>, units::s, {0, 100}, 2, FieldRole::input},
    {IDC_TEILANH_TG, "tG", At<&Dat::tG>, units::s, {0, 100}, 2, FieldRole::result},
    {IDC_TEILANH_SB, "sB", At<&Dat::sB>, units::m, {0, 1000}, 2, FieldRole::input},
    {"sR", At<&Dat::sR>, units::m, FieldRole::internal},
    {"sS", At<&Dat::sS>, units::m, FieldRole::internal},
    {IDC_TEILANH_SG, "sG", At<&Dat::sG>, units::m, {0, 1000}, 2, FieldRole::input},
    {IDC_TEILANH_SBS, "sBS", At<&Dat::sBS>, units::m, {0, 1000}, 2, FieldRole::result},
    {IDC_TEILANH_AR, "aR", At<&Dat::aR>, units::ms2, {-100, 100}, 2, FieldRole::input},
    {IDC_TEILANH_AB,
     "aB",
     At<&Dat::aB>,
     units::ms2,
     {-100, 100},
     2,
     FieldRole::input,
     {.source = ValueSource::maximumDeceleration}},
    {"fahrzeug", At<&Dat::fahrzeug>},
    {"phase", At<&Dat::phase>},
    {"modus", At<&Dat::modus>},
    {"berechnet", At<&Dat::berechnet>},
    {"status", At<&Dat::status>},
    {"ergebnis", At<&Dat::ergebnis>},
};

} // namespace

RecordFields CTeilanhDat::Felder()
{
    return Describe(*this, kZahlen);
}

void CTeilanhDat::Loeschen()
{
    ClearNumbers(Felder());
    phase = 0;
    modus = nichtGewaehlt;
    ergebnis = 0;
    status = 1;
}

void CTeilanhDat::Oeffne()
{
    berechnet = 0;
    Loeschen();
    fahrzeug = 0;
    FahrzeugGewechselt();
}

void CTeilanhDat::FahrzeugGewechselt()
{
    const bool vorhanden = fahrzeug >= 0 && fahrzeug < static_cast<std::int64_t>(CRuvData::kFahrzeuge);
    phase = 0;
    modus = nichtGewaehlt;
    if (vorhanden) {
        const CWegZeitDat& daten = WZDat(static_cast<std::size_t>(fahrzeug));
        phase = static_cast<std::int64_t>(daten.selected);
        if (daten.mode >= gesamtwegUndEndgeschw && daten.mode <= bremswegUndAnfangsgeschw)
            modus = daten.mode;
    }
    LeseSpalte();
}

void CTeilanhDat::LeseSpalte()
{
    berechnet = 0;
    if (fahrzeug < 0 || fahrzeug >= static_cast<std::int64_t>(CRuvData::kFahrzeuge) || phase < 0)
        return;
    const CWegZeitDat& data = WZDat(static_cast<std::size_t>(fahrzeug));
    const CWegZeitSpalte leer;
    const auto spalte = [&](std::size_t index) -> const CWegZeitSpalte& {
        return index < CWegZeitDat::kSpalten ? data.spalten[index] : leer;
    };
    const auto c = static_cast<std::size_t>(phase);

    const CWegZeitSpalte& bremsen = spalte(c);
    const bool ersteSpalte = c <= CWegZeitDat::kErsteSpalte || !spalte(c - 1).IsUsed();
    vE = ersteSpalte ? bremsen.vEnd : spalte(c - 1).vAnf;
    vS = bremsen.vAnf;
    aB = bremsen.verz;
    sB = bremsen.weg;
    tB = bremsen.zeit;

    std::size_t r = c + 1;
    if (spalte(r).art == PhasenArt::threshold) {
        vR = spalte(r).vAnf;
        tS = spalte(r).zeit;
        sS = spalte(r).weg;
        ++r;
    } else {
        vR = bremsen.vAnf;
        tS = vR == 0.0 ? RuvCfg.defaultThresholdTime : 0.0;
        sS = 0.0;
    }

    const CWegZeitSpalte& reaktion = spalte(r);
    tR = reaktion.art == PhasenArt::reaction ? reaktion.zeit : RuvCfg.defaultReactionTime;
    aR = 0.0 - reaktion.verz;
    vA = reaktion.vAnf;
    sR = reaktion.weg;
    // The sums count from the collision; what lies between it and the braking phase is not part of this sequence.
    const bool folge = reaktion.IsUsed();
    tG = folge ? reaktion.sumZeit - (bremsen.sumZeit - bremsen.zeit) : 0.0;
    sG = folge ? reaktion.sumWeg - (bremsen.sumWeg - bremsen.weg) : 0.0;
    sBS = sB + sS;
}

CTeilanhDat::Pruefung CTeilanhDat::Pruefe()
{
    const Pruefung found{aB == 0.0, vA == 0.0 && vE == 0.0 && sG == 0.0 && sB == 0.0};
    if (!found.Bestanden())
        ergebnis = 0;
    return found;
}

CTeilanhDat::Modus CTeilanhDat::WaehleModus() const
{
    if (sG > kRundung)
        return vA > kRundung ? gesamtwegUndAnfangsgeschw : gesamtwegUndEndgeschw;
    if (sB > kRundung)
        return vE > kRundung ? bremswegUndEndgeschw : bremswegUndAnfangsgeschw;
    return beideGeschw;
}

CTeilanhDat::Ausgang CTeilanhDat::Rechnen()
{
    const Vorgabe g{tR, tS, aR, aB};
    Ablauf m{vA / kKmhProMs, vE / kKmhProMs, tB};
    m.BisBremsbeginn(g);

    const bool waehlt = modus == nichtGewaehlt;
    if (waehlt)
        modus = WaehleModus();
    Ausgang ausgang = Ausgang::berechnet;
    switch (modus) {
    case gesamtwegUndEndgeschw:
        ausgang = AnfangsgeschwAusGesamtweg(m, g, sG);
        break;
    case gesamtwegUndAnfangsgeschw:
        ausgang = EndgeschwAusGesamtweg(m, g, sG);
        break;
    case bremswegUndEndgeschw:
        ausgang = AnfangsgeschwAusBremsweg(m, g, sB);
        break;
    case bremswegUndAnfangsgeschw:
        ausgang = EndgeschwAusBremsweg(m, g, sB);
        // An initial speed of 0 may mean that it is not known.
        if (ausgang == Ausgang::keineBremszeit && waehlt && vA <= kRundung) {
            ausgang = AnfangsgeschwAusBremsweg(m, g, sB);
            if (ausgang == Ausgang::berechnet)
                modus = bremswegUndEndgeschw;
        }
        break;
    default:
        if (g.aB != 0.0)
            m.tB = (m.vS - m.vE) / g.aB;
        break;
    }

    m.Summiere(g);
    if (m.IstEndlich()) {
        vA = m.vA * kKmhProMs;
        vR = m.vR * kKmhProMs;
        vS = m.vS * kKmhProMs;
        vE = m.vE * kKmhProMs;
        sR = m.sR;
        sS = m.sS;
        if (ausgang == Ausgang::berechnet) {
            tB = m.tB;
            sB = m.sB;
            tG = m.tG;
            sG = m.sG;
            sBS = m.sBS;
            berechnet = 1;
        }
    } else if (ausgang == Ausgang::berechnet) {
        ausgang = Ausgang::unendlich;
    }
    if (waehlt && ausgang != Ausgang::berechnet)
        modus = nichtGewaehlt; // what failed settles nothing
    ergebnis = ausgang == Ausgang::berechnet ? 1 : 0;
    status = 1 - ergebnis;
    return ausgang;
}

CTeilanhDat::Vorbehalt CTeilanhDat::PruefeErgebnis() const
{
    if (ergebnis == 0)
        return Vorbehalt::keiner;
    if (tB < -kRundung)
        return Vorbehalt::negativeBremszeit;
    return std::min({vA, vR, vS, vE}) < -kRundung ? Vorbehalt::negativeGeschwindigkeit : Vorbehalt::keiner;
}

Uebertragungsbefund CTeilanhDat::Uebertragen()
{
    status = 1;
    const std::array<Folgephase, 3> folge{{
        {aB > 0.0 ? PhasenArt::braking : PhasenArt::accelerating, vE, vS, tB, sB, aB},
        {PhasenArt::threshold, vS, vR, tS, sS, aB},
        {PhasenArt::reaction, vR, vA, tR, sR, 0.0 - aR},
    }};
    const std::array<Folgephase, 2> ohneSchwellphase{folge[0], folge[2]};
    const auto phasen = tS != 0.0 ? std::span<const Folgephase>(folge) : std::span<const Folgephase>(ohneSchwellphase);
    const Uebertragungsbefund befund = UebertrageUndVergleiche(m_data, fahrzeug, phase, phasen, modus, m_parent);
    if (befund.IstGeschrieben())
        phase = ErsteSpalteDerFolge(phase);
    return befund;
}
