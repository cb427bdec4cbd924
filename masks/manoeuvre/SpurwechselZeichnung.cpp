// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/manoeuvre/SpurwechselZeichnung.h"

#include "chart/Diagrammfarben.h"
#include "host/CWnd.h"
#include "host/Physics.h"
#include "masks/manoeuvre/Planzeichner.h"
#include "masks/manoeuvre/Texte.h"
#include "res/manoeuvre.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr double kUeblicheBreite = 1.8; // m, of a vehicle whose width is not known
constexpr int kPunkte = 160;
constexpr double kPfeil = 5.0; // px

} // namespace

void ZeichneSpurwechsel(CDC& dc, const CSpurVorDat& dat, COLORREF farbe, bool alt)
{
    if (!dat.LetztesErgebnis()) {
        Planzeichner::ZeichneLeer(dc, LoadRuvString(IDS_SPURVOR_LEERE_ZEICHNUNG));
        return;
    }
    const CSpurVorDat::Ergebnis& e = *dat.LetztesErgebnis();
    const SpurwechselKurve& kurve = e.kurve;
    const double breite = e.breite > 0.0 ? e.breite : kUeblicheBreite;
    const double vorn = e.masse.radstand + e.masse.vorne;
    const double hinten = e.masse.laenge - vorn;
    const CDPoint ende = kurve.Punkt(kurve.Sehne());
    const double versatz = e.seite * ende.y;
    // Room for the body turned on its way.
    const double rand = breite / 2.0 + 0.3;
    Planzeichner plan(dc, {-hinten, std::min(versatz, 0.0) - rand}, {ende.x + vorn, std::max(versatz, 0.0) + rand}, 1.3,
                      2.5);
    if (!plan.HatPlatz())
        return;
    const Planfarben& farben = plan.Farben();

    // Both lanes' middles, and the way.
    const double links = -hinten;
    const double rechts = ende.x + vorn;
    plan.Linie({{links, 0.0}, {rechts, 0.0}}, PenStyle::dashDot, 1.0, farben.linie);
    plan.Linie({{links, versatz}, {rechts, versatz}}, PenStyle::dashDot, 1.0, farben.linie);
    const auto ort = [&](double u, double ahead) {
        const double yaw = kurve.Gierwinkel(u);
        const CDPoint p = kurve.Punkt(u) + CDPoint{std::cos(yaw), std::sin(yaw)} * ahead;
        return CDPoint{p.x, e.seite * p.y};
    };
    const auto body = [&](double u, COLORREF color) {
        plan.Fahrzeug(ort(u, (vorn - hinten) / 2.0), e.seite * kurve.Gierwinkel(u), e.masse.laenge, breite, color);
    };
    body(0.0, farbe);
    body(kurve.Sehne(), farbe);
    if (e.zwischen)
        body(*e.zwischen, chart::Mische(farbe, farben.grund, 0.35));
    std::vector<CDPoint> achse;
    std::vector<CDPoint> front;
    for (int i = 0; i <= kPunkte; ++i) {
        const double u = kurve.Sehne() * i / kPunkte;
        achse.push_back(ort(u, 0.0));
        front.push_back(ort(u, vorn));
    }
    plan.Linie(front, PenStyle::dot, 1.0, farben.bahn);
    plan.Linie(achse, PenStyle::solid, 2.0, farben.bahn);

    // What stands above: the speeds at both ends. Below: the length, from rear axle to rear axle.
    const double z = plan.Zeile();
    const auto tempo = [](const char* where, double speed) {
        return std::string(where) + ": " + Dezimal(speed * kKmhProMs, 1) + " km/h";
    };
    plan.Text({4.0, z}, tempo("Anfang", e.fahrt.Anfangsgeschw()), TextAlign::left, farben.schrift);
    plan.Text({dc.Width() - 4.0, z}, tempo("Ende", e.fahrt.Endgeschw()), TextAlign::right, farben.schrift);
    if (alt)
        plan.Text({dc.Width() / 2.0, z}, LoadRuvString(IDS_SPURVOR_ALTE_ZEICHNUNG), TextAlign::center,
                  RGB(200, 60, 30));
    const double unten = dc.Height() - 1.6 * z;
    const double von = plan.Ort({0.0, 0.0}).x;
    const double bis = plan.Ort(ende).x;
    dc.SelectPen({PenStyle::solid, 1.0, farben.linie});
    dc.Line({von, unten}, {bis, unten});
    for (const auto& [at, way] : {std::pair{von, 1.0}, std::pair{bis, -1.0}}) {
        dc.Line({at, plan.Ort({0.0, std::min(versatz, 0.0)}).y}, {at, unten + kPfeil});
        dc.Polyline(
            {{at + way * kPfeil, unten - kPfeil / 2.0}, {at, unten}, {at + way * kPfeil, unten + kPfeil / 2.0}});
    }
    std::string masse = "Länge " + Dezimal(dat.laenge, 2) + " m · Seitenversatz " + Dezimal(ende.y, 2) + " m · Weg " +
                        Dezimal(dat.weg, 2) + " m · Zeit " + Dezimal(dat.zeit, 2) + " s";
    plan.Text({(von + bis) / 2.0, dc.Height() - 0.4 * z}, masse, TextAlign::center, farben.schrift);
}
