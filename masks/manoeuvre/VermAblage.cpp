// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What the avoidability calculation reads from the case and writes into it.
#include "host/CRuvData.h"
#include "host/Physics.h"
#include "host/RuvCfg.h"
#include "masks/manoeuvre/CVermDat.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr UINT kMaske = 462;
constexpr std::size_t kErste = CWegZeitDat::kErsteSpalte;
/// Path (m) and time (s) of the mask are those of the phases within this.
constexpr double kGleich = 1e-6;

/// V's own variant or G's motion on: what `Berechnung` of the case keeps as it is.
PhasenArt Art(VermFahrt::Phase phase)
{
    switch (phase) {
    case VermFahrt::Phase::reaktion:
        return PhasenArt::reaction;
    case VermFahrt::Phase::schwelle:
        return PhasenArt::threshold;
    case VermFahrt::Phase::bremsung:
        break;
    }
    return PhasenArt::braking;
}

/// The phases of V's drive up to the time `ende`, backwards in time.
std::vector<Folgephase> Phasen(const VermFahrt& fahrt, double ende)
{
    std::vector<Folgephase> folge;
    for (const VermFahrt::Stueck& s : fahrt.Stuecke()) {
        const double dauer = std::min(s.dauer, ende - s.beginn);
        if (dauer < kVermNull)
            break;
        const bool haelt = s.beginn + dauer >= fahrt.Haltezeit();
        const double vEnd = haelt ? 0.0 : std::max(s.GeschwNach(dauer), 0.0);
        folge.insert(folge.begin(), {Art(s.phase), vEnd * kKmhProMs, s.v * kKmhProMs, dauer, s.WegNach(dauer) - s.weg,
                                     0.0 - (s.beschl + s.ruck * dauer)});
    }
    for (std::size_t i = 1; i < folge.size(); ++i)
        folge[i].vEnd = folge[i - 1].vAnf;
    return folge;
}

/// G's way on from the collision: until it has cleared the conflict area, it stops, or `dauer` is over.
std::optional<Folgephase> WegDesGegners(const VermKonflikt& k, double dauer)
{
    double t = std::min(k.tRaeumen, k.gegner.Haltezeit());
    if (std::isinf(t))
        t = dauer;
    const double weg = k.gegner.Weg(t);
    if (!(t > kVermNull && weg > kVermNull))
        return std::nullopt;
    const double a = k.gegner.a;
    const PhasenArt art = a > 0.0 ? PhasenArt::braking : a < 0.0 ? PhasenArt::accelerating : PhasenArt::constantSpeed;
    return Folgephase{art, std::max(k.gegner.Geschw(t), 0.0) * kKmhProMs, k.gegner.v * kKmhProMs, t, weg, a};
}

/// The earliest reaction among the columns up to `letzte`; without one the earliest of them, 0 when none is used.
std::size_t Reaktionsspalte(const CWegZeitDat& data, std::size_t letzte)
{
    const std::size_t frei = data.FirstFree();
    if (frei <= kErste)
        return 0;
    letzte = std::min(letzte, frei - 1);
    for (std::size_t column = letzte; column >= kErste; --column)
        if (data.spalten[column].art == PhasenArt::reaction)
            return column;
    return letzte;
}

/// The way of a phase that begins at a time (s) and path (m), its end left out. A cubic through both ends with both
/// speeds is the motion itself, whether the deceleration stays or rises evenly.
void FuegePhase(std::vector<CDPoint>& punkte, const CWegZeitSpalte& spalte, double beginn, double weg)
{
    constexpr int kStuecke = 12;
    const double v0 = spalte.vAnf / kKmhProMs * spalte.zeit;
    const double v1 = spalte.vEnd / kKmhProMs * spalte.zeit;
    for (int i = 0; i < kStuecke; ++i) {
        const double u = static_cast<double>(i) / kStuecke;
        const double s = u * v0 + u * u * (3.0 * spalte.weg - 2.0 * v0 - v1) + u * u * u * (v0 + v1 - 2.0 * spalte.weg);
        punkte.push_back({beginn + u * spalte.zeit, weg + s});
    }
}

} // namespace

void CVermDat::Oeffne()
{
    Loeschen();
    tR = RuvCfg.defaultReactionTime;
    tS = RuvCfg.defaultThresholdTime;
    const auto gemerkt = [this](const char* name, std::int64_t sonst) {
        const std::vector<double> werte = m_data.GemerkteWerte(kMaske, name);
        const bool gilt = werte.size() == 1 && werte[0] >= 0.0 && werte[0] < static_cast<double>(CRuvData::kFahrzeuge);
        return gilt ? static_cast<std::int64_t>(werte[0]) : sonst;
    };
    fahrzeug = gemerkt("fahrzeug", 0);
    // V and G are each other's opponent; the slots for the variants follow in their order.
    const bool zweites = fahrzeug == 1;
    gegner = gemerkt("gegner", zweites ? 0 : 1);
    ziel = gemerkt("ziel", zweites ? 3 : 2);
    zielGegner = gemerkt("zielGegner", zweites ? 2 : 3);
    FahrzeugGewechselt();
    LeseGegner();
}

void CVermDat::Merken()
{
    CMaskenWerte& werte = m_data.MaskenWerte(kMaske);
    werte["fahrzeug"] = {static_cast<double>(fahrzeug)};
    werte["gegner"] = {static_cast<double>(gegner)};
    werte["ziel"] = {static_cast<double>(ziel)};
    werte["zielGegner"] = {static_cast<double>(zielGegner)};
    m_data.NotifyMaskenWerte();
}

std::int64_t CVermDat::Phasenzahl() const
{
    return std::max<std::int64_t>(phase - static_cast<std::int64_t>(kErste) + 1, 0);
}

std::int64_t CVermDat::Reaktionsphase() const
{
    if (!m_data.IsFzgValid(fahrzeug))
        return 0;
    const CWegZeitDat& data = WZDat(static_cast<std::size_t>(fahrzeug));
    const std::size_t frei = data.FirstFree();
    if (frei <= kErste)
        return 0;
    std::size_t column = kErste;
    while (column + 1 < frei && data.spalten[column].art != PhasenArt::reaction)
        ++column;
    return static_cast<std::int64_t>(data.spalten[column].art == PhasenArt::reaction ? column : frei - 1);
}

void CVermDat::FahrzeugGewechselt()
{
    phase = m_phaseNachRegel = Reaktionsphase();
    LeseFahrzeug();
}

void CVermDat::FahrzeugGeaendert()
{
    if (phase == m_phaseNachRegel)
        phase = Reaktionsphase();
    m_phaseNachRegel = Reaktionsphase();
    LeseFahrzeug();
}

void CVermDat::LeseFahrzeug()
{
    berechnet = 0;
    m_stand.reset();
    vT = vKoll = sRK = tRK = 0.0;
    if (!m_data.IsFzgValid(fahrzeug) || phase < static_cast<std::int64_t>(kErste))
        return;
    const CWegZeitDat& data = WZDat(static_cast<std::size_t>(fahrzeug));
    if (data.FirstFree() <= kErste)
        return;
    phase = std::min(phase, static_cast<std::int64_t>(data.FirstFree()) - 1);
    const std::size_t column = Reaktionsspalte(data, static_cast<std::size_t>(phase));
    vT = data.spalten[column].vAnf;
    vKoll = data.spalten[kErste].vEnd;
    sRK = data.spalten[column].sumWeg;
    tRK = data.spalten[column].sumZeit;
}

void CVermDat::LeseGegner()
{
    berechnet = 0;
    m_stand.reset();
    aGErrechnet = vGErrechnet = 0;
    vG = aG = 0.0;
    if (!m_data.IsFzgValid(gegner))
        return;
    const CWegZeitSpalte& spalte = WZDat(static_cast<std::size_t>(gegner)).spalten[kErste];
    if (!spalte.IsUsed())
        return;
    vG = spalte.vEnd;
    aG = spalte.verz;
}

CVermDat::Tatsaechlich CVermDat::GibTatsaechlich() const
{
    if (!m_stand)
        return {{}, true};
    const double path = m_stand->konflikt.sRK;
    const double time = m_stand->konflikt.tRK;
    if (m_data.IsFzgValid(fahrzeug) && phase >= static_cast<std::int64_t>(kErste)) {
        const CWegZeitDat& data = WZDat(static_cast<std::size_t>(fahrzeug));
        const std::size_t column = Reaktionsspalte(data, static_cast<std::size_t>(phase));
        if (column >= kErste && std::abs(data.spalten[column].sumWeg - path) < kGleich &&
            std::abs(data.spalten[column].sumZeit - time) < kGleich) {
            std::vector<CDPoint> punkte;
            for (std::size_t c = column; c >= kErste; --c)
                FuegePhase(punkte, data.spalten[c], time - data.spalten[c].sumZeit, path - data.spalten[c].sumWeg);
            punkte.push_back({time, path});
            return {punkte, false};
        }
    }
    return {{{0.0, 0.0}, {time, path}}, true};
}

CVermDat::Ergebnis CVermDat::Uebertragen()
{
    Ergebnis ergebnis{Uebertragung::keinFahrzeug, Uebertragung::keinFahrzeug, true, true};
    if (!m_stand || berechnet == 0)
        return ergebnis;
    const Variante variante = GibVariante(version);
    const VermFahrt fahrt(variante.vorgabe);
    const double ende = Fahrtende(variante);
    std::vector<Folgephase> folge = Phasen(fahrt, ende);
    ergebnis.ohneWeg = folge.empty();
    const double vorlauf = std::abs(variante.vorverlegung);
    if (!folge.empty() && vorlauf > kVermNull) {
        const double v = variante.vorgabe.v;
        folge.push_back({PhasenArt::constantSpeed, v * kKmhProMs, v * kKmhProMs, vorlauf, v * vorlauf, 0.0});
    }
    const VermKonflikt k = m_stand->konflikt.Frueher(variante.vorverlegung, variante.vorgabe.v);
    const std::optional<Folgephase> weiter = WegDesGegners(k, ende - k.tRK);
    ergebnis.ohneWegDesGegners = !weiter;

    const auto spalte = static_cast<std::int64_t>(kErste);
    if (!folge.empty())
        ergebnis.fahrzeug = UebertrageFolge(m_data, ziel, spalte, folge, std::nullopt, m_parent);
    // In the case a threshold phase rises from the deceleration of the phase before it: from aR only after a reaction.
    ergebnis.geaendert = ergebnis.fahrzeug == Uebertragung::erfolgt &&
                         VergleicheFolge(folge, m_data.WZRechDat(static_cast<std::size_t>(ziel)), kErste).ausgang !=
                             Uebertragung::erfolgt;
    if (weiter)
        ergebnis.gegner = UebertrageFolge(m_data, zielGegner, spalte, {&*weiter, 1}, std::nullopt, m_parent);
    return ergebnis;
}
