// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// A drawing to scale of what a mask computes: the world's lengths in one unit, y upwards, the user's diagram colours.
#pragma once

#include "chart/Diagrammfarben.h"
#include "host/CDC.h"
#include "host/Units.h"

#include <string>
#include <vector>

namespace skizze
{

/// A number with the user's decimal sign and a true minus; "–" for what is not finite.
std::string Zahl(double wert, int stellen);
/// A metric value in the user's unit, with that unit.
std::string MitEinheit(double metrisch, unitType einheit, int stellen);

/// A text of the module with the number in place of its "#".
std::string MitZahl(UINT text, const std::string& zahl);

/// What must be seen, in units of the world.
struct Ausschnitt {
    double links = 0.0;
    double unten = 0.0;
    double rechts = 0.0;
    double oben = 0.0;

    void Nimm(CDPoint punkt);
};

/// Part of the drawing, in shares of its width.
struct Spalte {
    double von = 0.0;
    double bis = 1.0;
};

constexpr COLORREF kBlau = RGB(20, 84, 196);
constexpr COLORREF kRot = RGB(192, 24, 32);
constexpr COLORREF kGruen = RGB(24, 128, 40);
constexpr COLORREF kOrange = RGB(214, 108, 0);

/// Fills the whole drawing with its ground.
void Grundieren(CDC& dc);

class Blatt
{
  public:
    /// Fits the section into a column of the drawing, with room for labels around it.
    Blatt(CDC& dc, const Ausschnitt& ausschnitt, const Spalte& spalte = {});

    CDPoint Pixel(CDPoint welt) const;
    double Zeile() const { return m_zeile; }
    COLORREF Rahmen() const { return m_farben.rahmen; }
    COLORREF Blass() const { return m_farben.raster; }

    void Stift(COLORREF farbe, double breite = 1.0, PenStyle stil = PenStyle::solid);
    /// Fills what is drawn closed from here on; none without a colour.
    void Fuellung(COLORREF farbe);
    void OhneFuellung();
    void Linie(CDPoint von, CDPoint nach);
    void Zug(const std::vector<CDPoint>& punkte);
    void Vieleck(const std::vector<CDPoint>& punkte);
    void Ellipse(CDPoint mitte, double rx, double ry, double winkel = 0.0);
    /// The whole width of the column at a height.
    void Waagrechte(double y);
    void Pfeil(CDPoint von, CDPoint nach);
    void Punkt(CDPoint ort);
    /// A line of text beside a point of the world, moved by pixels; kept inside the drawing.
    void Text(CDPoint ort, double dx, double dy, const std::string& text, TextAlign align = TextAlign::left);
    /// A line with a head at each end.
    void Mass(CDPoint von, CDPoint nach);

  private:
    void Spitze(CDPoint von, CDPoint nach);

    CDC& m_dc;
    chart::Diagrammfarben m_farben;
    CPen m_stift{};
    double m_zeile;
    double m_massstab = 1.0;
    CDPoint m_ursprung{}; ///< pixel of the world's (0, 0)
    double m_von;
    double m_bis;
};

} // namespace skizze
