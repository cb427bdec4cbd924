// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Draws in metres on the plan of a mask: x to the right, y up, one scale for both.
#pragma once

#include "host/CDC.h"

#include <string>
#include <vector>

/// Colours of a plan on the user's ground.
struct Planfarben {
    COLORREF grund;
    COLORREF schrift;
    COLORREF linie; ///< of the road and of dimensions
    COLORREF bahn;

    static Planfarben AusEinstellungen();
};

class Planzeichner
{
  public:
    /// Fills the ground and fits the rectangle from `links unten` to `rechts oben` (m) between margins of that many
    /// lines of text at the top and at the bottom.
    Planzeichner(CDC& dc, CDPoint linksUnten, CDPoint rechtsOben, double zeilenOben, double zeilenUnten);

    const Planfarben& Farben() const { return m_farben; }
    double Zeile() const { return m_zeile; }
    /// False when the field is too small to draw in.
    bool HatPlatz() const { return m_massstab > 0.0; }
    CDPoint Ort(CDPoint meter) const;

    void Linie(const std::vector<CDPoint>& meter, PenStyle style, double width, COLORREF color);
    void Flaeche(const std::vector<CDPoint>& meter, COLORREF line, COLORREF fill);
    /// A body about `mitte`, heading at `winkel` (rad), with a mark across its front.
    void Fahrzeug(CDPoint mitte, double winkel, double laenge, double breite, COLORREF color);
    /// At a place in pixels, kept within the field.
    void Text(CDPoint pixel, const std::string& utf8, TextAlign align, COLORREF color);

    /// An empty field with one line in its middle.
    static void ZeichneLeer(CDC& dc, const std::string& utf8);

  private:
    CDC& m_dc;
    Planfarben m_farben;
    double m_zeile = 0.0;
    double m_massstab = 0.0; // px per m
    CDPoint m_ursprung{};    // of the metres, px
};
