// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// A track seen from above, coloured by speed: over the map of the settings or a metric grid, with north arrow and scale
// bar.
#pragma once

#include "host/CDC.h"
#include "host/CDPoint.h"
#include "host/Controls.h"
#include "masks/import/Kartengrund.h"

#include <cstddef>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

class Kartenbild
{
  public:
    /// A point of the track.
    struct Punkt {
        CDPoint lage{};                                           ///< m, east and north
        double kmh = 0.0;                                         ///< not-a-number where it is not known
        double breite = std::numeric_limits<double>::quiet_NaN(); ///< °, to lay a map under the track
        double laenge = std::numeric_limits<double>::quiet_NaN(); ///< °
        bool naht = false; ///< the first one after a gap: the way to it was not recorded
    };
    using Bereich = std::pair<std::size_t, std::size_t>; ///< first and last point, both included

    /// Another track: all of it is shown.
    void SetPunkte(std::vector<Punkt> punkte);
    /// The map's tiles are others than before.
    void NeuerGrund() { m_grund = {}; }
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
    /// False when there is nothing of a map.
    bool ZeichneGrund(CDC& dc, const Abbildung& sicht, bool bericht) const;
    void ZeichneHerkunft(CDC& dc, const std::string& text) const;
    void ZeichneGitter(CDC& dc, const Abbildung& sicht, double schritt) const;
    /// About the track, so that it shows on a map of any colours.
    void ZeichneSpurrand(CDC& dc, const Abbildung& sicht) const;
    void ZeichneSpur(CDC& dc, const Abbildung& sicht) const;
    void ZeichneBereich(CDC& dc, const Abbildung& sicht, bool karte) const;
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

    /// The ground drawn last, as long as it is the same.
    struct Grund {
        Kartenausschnitt ausschnitt{};
        COLORREF leer = 0;
        bool gezeichnet = false;
        std::shared_ptr<const drawing::Bitmap> bild{};
    };
    mutable Grund m_grund;
};
