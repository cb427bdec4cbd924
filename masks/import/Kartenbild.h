// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// A track seen from above: over a metric grid with north arrow and scale bar, coloured by speed.
#pragma once

#include "host/CDC.h"
#include "host/CDPoint.h"
#include "host/Controls.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

class Kartenbild
{
  public:
    /// A point of the track: position (m, east and north) and speed (km/h, not-a-number where it is not known).
    struct Punkt {
        CDPoint lage{};
        double kmh = 0.0;
    };
    using Bereich = std::pair<std::size_t, std::size_t>; ///< first and last point, both included

    /// Another track: all of it is shown.
    void SetPunkte(std::vector<Punkt> punkte);
    /// The same points with other speeds.
    void SetTempo(const std::vector<double>& kmh);
    void SetBereich(std::optional<Bereich> bereich) { m_bereich = bereich; }
    /// The point that another view points at.
    void SetMarke(std::optional<std::size_t> punkt) { m_marke = punkt; }

    /// A click near the track chooses a point, a move over it points at one.
    void OnKlick(std::function<void(std::size_t)> klick) { m_klick = std::move(klick); }
    void OnZeige(std::function<void(std::optional<std::size_t>)> zeige) { m_zeige = std::move(zeige); }

    /// `bericht`: for paper, the whole track without the mark.
    void Zeichne(CDC& dc, bool bericht) const;
    /// Wheel zooms about the pointer, dragging moves, a double click shows all. False when it is not used.
    bool Maus(const CMouseEvent& ereignis);

  private:
    struct Abbildung {
        CDPoint mitte{};       ///< m, in the middle of the drawing
        double massstab = 1.0; ///< px per m
        double breite = 0.0;
        double hoehe = 0.0;
        CDPoint Bild(CDPoint lage) const;
        CDPoint Lage(CDPoint bild) const;
    };
    Abbildung Ganze(double breite, double hoehe) const;
    Abbildung Sicht(double breite, double hoehe) const;
    std::optional<std::size_t> Naechster(const Abbildung& sicht, CDPoint bild) const;
    void ZeichneGitter(CDC& dc, const Abbildung& sicht, double schritt) const;
    void ZeichneSpur(CDC& dc, const Abbildung& sicht) const;
    void ZeichneBereich(CDC& dc, const Abbildung& sicht) const;
    void ZeichneLegende(CDC& dc, const Abbildung& sicht, double schritt) const;

    std::vector<Punkt> m_punkte;
    CDPoint m_unten{}; ///< corners of the box about the track, m
    CDPoint m_oben{};
    double m_langsamste = 0.0; ///< km/h
    double m_schnellste = 0.0;
    std::optional<Bereich> m_bereich;
    std::optional<std::size_t> m_marke;
    std::function<void(std::size_t)> m_klick;
    std::function<void(std::optional<std::size_t>)> m_zeige;

    double m_vergroesserung = 1.0;  ///< of the whole track's scale
    std::optional<CDPoint> m_mitte; ///< m, that of the track without
    std::optional<CDPoint> m_gegriffen;
    CDPoint m_mitteBeimGreifen{};
    bool m_gezogen = false;
};
