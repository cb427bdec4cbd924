// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/dynamics/CMRBremsDat.h"

#include "host/CRuvData.h"
#include "host/NumberTable.h"
#include "host/Physics.h"
#include "res/dynamics.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace
{

/// A trace of no length cannot be searched for; it counts as this long, m.
constexpr double kKuerzesteSpur = 0.001;
/// Usual share of the full deceleration at which a trace starts.
constexpr double kUeblicherAnteil = 0.7;

constexpr std::array kSchritte{1e-1, 1e-2, 1e-3, 1e-4, 1e-5, 1e-6, 1e-7, 1e-8, 1e-9, 1e-10};
/// From here on adding the last step changes nothing, and the search would not end.
constexpr double kGrenze = 1048576.0;

/// The last whole number from 0 on up to which the equation is positive at each.
double GanzeSchritte(const CMRBremsDat::Gleichung& f)
{
    // Before the trace starts the equation may rise and fall; after that it only falls.
    double positive = 0.0;
    while (positive < f.l && positive < kGrenze) {
        if (!(f(positive + 1.0) > 0.0))
            return positive;
        positive += 1.0;
    }
    double step = 1.0;
    double negative = positive + step;
    while (f(negative) > 0.0) {
        if (negative >= kGrenze)
            return std::numeric_limits<double>::quiet_NaN();
        positive = negative;
        step *= 2.0;
        negative = std::min(positive + step, kGrenze);
    }
    while (negative - positive > 1.0) {
        const double middle = std::floor((positive + negative) / 2.0);
        (f(middle) > 0.0 ? positive : negative) = middle;
    }
    return positive;
}

} // namespace

double CMRBremsDat::Gleichung::operator()(double x) const
{
    const double e = std::exp(-x);
    const double g = x * x / 2.0 + (x + 1.0) * e - x * l - e * l;
    return w * l + (r - h) + s - w * x - g;
}

double CMRBremsDat::Loese(const Gleichung& gleichung)
{
    double x = GanzeSchritte(gleichung);
    for (const double step : kSchritte) {
        do
            x += step;
        while (gleichung(x) > 0.0);
        x -= step;
    }
    return x;
}

namespace
{

using Dat = CMRBremsDat;

constexpr NumberRow<Dat> kZahlen[] = {
    {IDC_MRBREMS_VOLLVERZOEGERUNG,
     "vollverzoegerung",
     At<&Dat::vollverzoegerung>,
     units::ms2,
     {0, 100},
     2,
     FieldRole::input,
     {.source = ValueSource::maximumDeceleration}},
    {IDC_MRBREMS_SPURVERZOEGERUNG,
     "spurverzoegerung",
     At<&Dat::spurverzoegerung>,
     units::ms2,
     {0, 100},
     2,
     FieldRole::input},
    {IDC_MRBREMS_ERREICHT,
     "erreichteVerzoegerung",
     At<&Dat::erreichteVerzoegerung>,
     units::ms2,
     {0, 100},
     2,
     FieldRole::result},
    {IDC_MRBREMS_VE, "endgeschwindigkeit", At<&Dat::endgeschwindigkeit>, units::kmh, {0, 1000}, 2, FieldRole::input},
    {IDC_MRBREMS_V0,
     "anfangsgeschwindigkeit",
     At<&Dat::anfangsgeschwindigkeit>,
     units::kmh,
     {0, 100},
     2,
     FieldRole::result},
    {"bremszeit", At<&Dat::bremszeit>, units::s, FieldRole::internal},
    {IDC_MRBREMS_SCHWELLDAUER, "schwelldauer", At<&Dat::schwelldauer>, units::s, {0, 100}, 2, FieldRole::result},
    {IDC_MRBREMS_SPURLAENGE, "spurlaenge", At<&Dat::spurlaenge>, units::m, {0, 1000}, 2, FieldRole::input},
    {IDC_MRBREMS_SCHWELLWEG, "schwellweg", At<&Dat::schwellweg>, units::m, {0, 100}, 2, FieldRole::result},
    {IDC_MRBREMS_REAKTIONSPUNKT_WEG,
     "reaktionspunktWeg",
     At<&Dat::reaktionspunktWeg>,
     units::m,
     {0, 100},
     2,
     FieldRole::result},
    {IDC_MRBREMS_REAKTIONSPUNKT_ZEIT,
     "reaktionspunktZeit",
     At<&Dat::reaktionspunktZeit>,
     units::s,
     {0, 100},
     2,
     FieldRole::result},
    {IDC_MRBREMS_ANSTIEG, "anstieg", At<&Dat::anstieg>, units::s, {0, 100}, 2, FieldRole::input},
    {IDC_MRBREMS_REAKTIONSDAUER, "reaktionsdauer", At<&Dat::reaktionsdauer>, units::s, {0, 100}, 2, FieldRole::input},
    {IDC_MRBREMS_BREMS_SCHWELLWEG,
     "bremsSchwellweg",
     At<&Dat::bremsSchwellweg>,
     units::m,
     {0, 100},
     2,
     FieldRole::result},
    {IDC_MRBREMS_BREMS_SCHWELLZEIT,
     "bremsSchwellzeit",
     At<&Dat::bremsSchwellzeit>,
     units::s,
     {0, 100},
     2,
     FieldRole::result},
    {IDC_MRBREMS_LIN_VERZOEGERUNG,
     "linVerzoegerung",
     At<&Dat::linVerzoegerung>,
     units::ms2,
     {0, 100},
     2,
     FieldRole::input},
    {"linGeschwindigkeit", At<&Dat::linGeschwindigkeit>, units::kmh, FieldRole::internal},
    {"linBremszeit", At<&Dat::linBremszeit>, units::s, FieldRole::internal},
    {IDC_MRBREMS_LIN_SCHWELLDAUER,
     "linSchwelldauer",
     At<&Dat::linSchwelldauer>,
     units::s,
     {0, 100},
     2,
     FieldRole::result},
    {IDC_MRBREMS_LIN_BREMSWEG, "linBremsweg", At<&Dat::linBremsweg>, units::m, {0, 100}, 2, FieldRole::result},
    {IDC_MRBREMS_LIN_SCHWELLWEG, "linSchwellweg", At<&Dat::linSchwellweg>, units::m, {0, 100}, 2, FieldRole::result},
    {IDC_MRBREMS_LIN_REAKTIONSDAUER,
     "linReaktionsdauer",
     At<&Dat::linReaktionsdauer>,
     units::s,
     {0, 100},
     2,
     FieldRole::result},
    {"fahrzeug", At<&Dat::fahrzeug>},
    {"phase", At<&Dat::phase>},
    {"berechnet", At<&Dat::berechnet>},
};

} // namespace

RecordFields CMRBremsDat::Felder()
{
    return Describe(*this, kZahlen);
}

void CMRBremsDat::Loeschen()
{
    ClearNumbers(Felder());
}

void CMRBremsDat::FahrzeugGewechselt()
{
    const bool vorhanden = m_data.IsFzgValid(fahrzeug);
    phase = vorhanden ? static_cast<std::int64_t>(WZDat(static_cast<std::size_t>(fahrzeug)).selected) : 0;
}

void CMRBremsDat::VollverzoegerungEingegeben()
{
    linVerzoegerung = vollverzoegerung;
    spurverzoegerung = kUeblicherAnteil * vollverzoegerung;
}

void CMRBremsDat::SpurverzoegerungEingegeben()
{
    if (spurverzoegerung == 0.0)
        spurverzoegerung = kUeblicherAnteil * vollverzoegerung;
}

CMRBremsDat::Ausgang CMRBremsDat::Rechnen()
{
    if (spurlaenge <= 0.0)
        spurlaenge = kKuerzesteSpur;
    const double a = vollverzoegerung;
    const double tau = anstieg;
    const double vE = endgeschwindigkeit / kKmhProMs;

    const double r = (a - spurverzoegerung) / a;
    const double l = std::log(1.0 / r);
    const double h = l * l / 2.0;
    const Gleichung gleichung{r, l, h, spurlaenge / (tau * tau * a), vE / (a * tau)};
    const double x = Loese(gleichung);
    const double e = std::exp(-x);
    const double m = e + x - 1.0;

    bremsSchwellzeit = tau * x;
    schwelldauer = tau * l;
    bremszeit = bremsSchwellzeit - schwelldauer;
    schwellweg = tau * vE * l + tau * tau * a * l * m - (h - r - l + 1.0) * (tau * tau) * a;
    const double v0 = m * a * tau + vE;
    bremsSchwellweg = bremsSchwellzeit * (a * tau * m + vE) - (x * x / 2.0 - e + 1.0 - x) * (tau * tau) * a;
    reaktionspunktWeg = v0 * reaktionsdauer + bremsSchwellweg;
    reaktionspunktZeit = bremsSchwellzeit + reaktionsdauer;
    erreichteVerzoegerung = (1.0 - std::exp(-bremsSchwellzeit / tau)) * a;
    anfangsgeschwindigkeit = v0 * kKmhProMs;
    endgeschwindigkeit = vE * kKmhProMs;

    if (linVerzoegerung == 0.0)
        linVerzoegerung = a;
    return LineareGroessen(v0, vE) ? Ausgang::berechnet : Ausgang::ohneLineares;
}

bool CMRBremsDat::LineareGroessen(double v0, double vE)
{
    const double a = linVerzoegerung;
    const double weg = v0 * reaktionsdauer + bremsSchwellweg;
    const double zeit = bremsSchwellzeit + reaktionsdauer;
    // The same path in the same time: d = (a·t)² for the build-up time t.
    const double d = (weg - zeit * v0) * (-24.0 * a) - (v0 * v0 - 2.0 * v0 * vE + vE * vE) * 12.0;
    if (!(d > 0.0))
        return false;
    const double t = std::sqrt(d) / a;
    const double u = a * t / 2.0; // speed lost over the build-up
    const double bremsen = (v0 - vE - u) / a;
    const double bremsweg = ((v0 - u) * (v0 - u) - vE * vE) * 0.5 / a;
    const double schwellen = t * v0 - t * t * a / 6.0;
    const double reaktion = zeit - bremsen - t;
    for (const double quantity : {t, bremsen, bremsweg, schwellen, reaktion, v0 * kKmhProMs})
        if (!std::isfinite(quantity))
            return false;
    linSchwelldauer = t;
    linBremszeit = bremsen;
    linReaktionsdauer = reaktion;
    linBremsweg = bremsweg;
    linSchwellweg = schwellen;
    linGeschwindigkeit = (v0 - u) * kKmhProMs;
    return true;
}

CMRBremsDat::Vorbehalt CMRBremsDat::PruefeErgebnis(Ausgang ausgang) const
{
    if (spurverzoegerung >= vollverzoegerung)
        return Vorbehalt::spurverzoegerung;
    if (anstieg == 0.0)
        return Vorbehalt::ohneAnstieg;
    if (!(bremszeit >= 0.0))
        return Vorbehalt::spurZuKurz;
    if (ausgang == Ausgang::ohneLineares)
        return Vorbehalt::ohneLineares;
    return linReaktionsdauer < 0.0 || linBremszeit < 0.0 ? Vorbehalt::negativeDauer : Vorbehalt::keiner;
}

Uebertragungsbefund CMRBremsDat::Uebertragen()
{
    const double reaktionsweg = anfangsgeschwindigkeit / kKmhProMs * linReaktionsdauer;
    const std::array<Folgephase, 3> folge{{
        {PhasenArt::braking, endgeschwindigkeit, linGeschwindigkeit, linBremszeit, linBremsweg, linVerzoegerung},
        {PhasenArt::threshold, linGeschwindigkeit, anfangsgeschwindigkeit, linSchwelldauer, linSchwellweg,
         linVerzoegerung},
        {PhasenArt::reaction, anfangsgeschwindigkeit, anfangsgeschwindigkeit, linReaktionsdauer, reaktionsweg, 0.0},
    }};
    const Uebertragungsbefund befund = UebertrageUndVergleiche(m_data, fahrzeug, phase, folge, std::nullopt, m_parent);
    if (befund.IstGeschrieben())
        phase = ErsteSpalteDerFolge(phase);
    return befund;
}
