// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/manoeuvre/HalbeSichtZeichnung.h"

#include "chart/Diagrammfarben.h"
#include "host/CWnd.h"
#include "masks/manoeuvre/Planzeichner.h"
#include "masks/manoeuvre/Texte.h"
#include "res/manoeuvre.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace
{

constexpr double kRand = 30.0;   // px beside the road line, room for the vehicles
constexpr double kWagen = 22.0;  // px
constexpr double kBreite = 10.0; // px
constexpr double kBalken = 10.0; // px, height of the parts
constexpr double kSchmalster = 3.0;

/// One part of a vehicle's way.
struct Teil {
    const char* name;
    double weg;
    double anteil; // how far its colour is from the ground's
};

std::array<Teil, 3> Teile(const CHalbeSichtDat::Teilnehmer& t)
{
    if (!t.Bremst())
        return {{{"konstant", t.gesamtweg, 0.75}, {"", 0.0, 0.0}, {"", 0.0, 0.0}}};
    return {{{"Reaktion", t.reaktionsweg, 0.75}, {"Schwellen", t.schwellweg, 0.45}, {"Bremsen", t.bremsweg, 0.1}}};
}

} // namespace

void ZeichneHalbeSicht(CDC& dc, const CHalbeSichtDat& dat, COLORREF farbeA, COLORREF farbeB, bool alt)
{
    const bool gueltig = dat.sichtweite > 0.0 && dat.gesamtzeit > 0.0 && dat.a.gesamtweg >= 0.0 &&
                         dat.b.gesamtweg >= 0.0 && dat.a.gesamtweg + dat.b.gesamtweg > 0.0;
    if (!gueltig) {
        Planzeichner::ZeichneLeer(dc, LoadRuvString(IDS_HALBESICHT_LEERE_ZEICHNUNG));
        return;
    }
    // The way as it was computed; the sight distance may have been changed since.
    const double sicht = dat.a.gesamtweg + dat.b.gesamtweg;
    Planzeichner plan(dc, {0.0, 0.0}, {1.0, 1.0}, 0.0, 0.0);
    const Planfarben& farben = plan.Farben();
    const double z = plan.Zeile();
    const double links = kRand;
    const double breite = dc.Width() - 2.0 * kRand;
    const double mitte = dc.Height() / 2.0;
    if (!(breite > kRand && dc.Height() > 4.0 * z))
        return;
    const auto x = [&](double meter) { return links + breite * meter / sicht; };
    const auto line = [&](CDPoint from, CDPoint to, PenStyle style, COLORREF color) {
        dc.SelectPen({style, 1.0, color});
        dc.Line(from, to);
    };
    line({links, mitte}, {links + breite, mitte}, PenStyle::solid, farben.linie);

    double namensbreite = 0.0;
    // A comes from the left, B from the right.
    const std::array<const CHalbeSichtDat::Teilnehmer*, 2> seiten{&dat.a, &dat.b};
    const std::array farbe{farbeA, farbeB};
    for (std::size_t i = 0; i < seiten.size(); ++i) {
        const double start = i == 0 ? 0.0 : sicht;
        const double way = i == 0 ? 1.0 : -1.0;
        double at = start;
        for (const Teil& teil : Teile(*seiten[i])) {
            if (!(teil.weg > 0.0))
                continue;
            const double von = std::min(x(at), x(at + way * teil.weg));
            const double bis = std::max(x(at), x(at + way * teil.weg));
            dc.SelectPen({PenStyle::solid, 1.0, farbe[i]});
            dc.SelectBrush({true, chart::Mische(farbe[i], farben.grund, teil.anteil)});
            dc.Rectangle(von, mitte - kBalken / 2.0, std::max(bis, von + kSchmalster), mitte + kBalken / 2.0);
            const std::string name = std::string(teil.name) + " " + Dezimal(teil.weg, 1) + " m";
            if (dc.TextWidth(name) <= bis - von)
                plan.Text({(von + bis) / 2.0, mitte + kBalken / 2.0 + z}, name, TextAlign::center, farben.schrift);
            at += way * teil.weg;
        }
        dc.SelectPen({PenStyle::solid, 1.0, farbe[i]});
        dc.SelectBrush({true, chart::Mische(farbe[i], farben.grund, 0.5)});
        const double rear = x(start) - way * kWagen;
        dc.Rectangle(std::min(x(start), rear), mitte - kBreite / 2.0, std::max(x(start), rear), mitte + kBreite / 2.0,
                     2.0, 2.0);
        const std::string name = std::string(i == 0 ? "A: " : "B: ") + Dezimal(seiten[i]->anfangsgeschw, 1) + " km/h";
        namensbreite = std::max(namensbreite, dc.TextWidth(name));
        plan.Text({i == 0 ? 4.0 : dc.Width() - 4.0, z}, name, i == 0 ? TextAlign::left : TextAlign::right,
                  farben.schrift);
    }

    // Where they meet, and the middle of the sight distance.
    const double treffen = x(dat.a.gesamtweg);
    line({treffen, mitte - kBalken}, {treffen, mitte + kBalken}, PenStyle::solid, RGB(200, 30, 30));
    // The line leaves out the names of the parts.
    const double unterDenNamen = mitte + kBalken / 2.0 + 1.3 * z;
    line({x(sicht / 2.0), mitte - 1.6 * kBalken}, {x(sicht / 2.0), mitte + 0.7 * kBalken}, PenStyle::dash,
         farben.linie);
    if (unterDenNamen < dc.Height() - 1.2 * z)
        line({x(sicht / 2.0), unterDenNamen}, {x(sicht / 2.0), dc.Height() - 1.2 * z}, PenStyle::dash, farben.linie);
    if (alt) {
        plan.Text({dc.Width() / 2.0, z}, LoadRuvString(IDS_HALBESICHT_ALTE_ZEICHNUNG), TextAlign::center,
                  RGB(200, 60, 30));
    } else {
        // Between the names of the vehicles.
        const std::string text = "Kollision nach " + Dezimal(dat.gesamtzeit, 2) + " s";
        const double rand = std::min(12.0 + namensbreite + dc.TextWidth(text) / 2.0, dc.Width() / 2.0);
        plan.Text({std::clamp(treffen, rand, dc.Width() - rand), z}, text, TextAlign::center, farben.schrift);
    }
    plan.Text({x(sicht / 2.0), dc.Height() - 0.3 * z}, "halbe Sichtweite " + Dezimal(sicht / 2.0, 1) + " m",
              TextAlign::center, farben.schrift);
}
