// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// A frame of the video with what lies on it: the four points and their quadrilateral, what is followed, a magnifier;
// and what the mouse does to it. All points are those of the raw frame.
#pragma once

#include "host/CDC.h"
#include "host/Controls.h"
#include "host/vision/VisionPoint.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

class Videobild
{
  public:
    /// Something that the mouse can take hold of.
    struct Griff {
        enum class Art { punkt, klick, kante } art = Art::punkt;
        std::size_t nummer = 0; ///< of the point, from 0; of an edge: among those of all edges
        friend bool operator==(const Griff&, const Griff&) = default;
    };
    /// What is followed, in this frame.
    struct Objekt {
        int id = 0;
        VisionPoint punkt{};
        double breite = 0.0; ///< px, of its box; 0 without
        double hoehe = 0.0;
        std::optional<int> kmh{};
        bool gewaehlt = false;
    };
    /// A place that is only proposed.
    struct Vorschlag {
        VisionPoint punkt{};
        std::string text{};
    };
    struct Inhalt {
        std::vector<VisionPoint> punkte{};
        std::vector<std::vector<VisionPoint>> kanten{}; ///< of the quadrilateral, as the lens bends them
        std::vector<std::vector<VisionPoint>> gerade{}; ///< points along edges that are straight in nature
        std::vector<VisionPoint> spur{};                ///< of the chosen ID, in other frames
        std::vector<Objekt> objekte{};
        std::optional<Vorschlag> vorschlag{};
        std::optional<Griff> aktiv{}; ///< the arrow keys move it
        bool punkteZuerst = true;     ///< where a point and a click lie together
        bool nurKanten = false;       ///< nothing else can be taken hold of
    };

    void SetBild(std::shared_ptr<const drawing::Bitmap> bild, std::string ohneBild);
    const std::shared_ptr<const drawing::Bitmap>& Bild() const { return m_bild; }
    void SetInhalt(Inhalt inhalt) { m_inhalt = std::move(inhalt); }
    /// A click into the frame that took hold of nothing, or did not move it.
    void OnKlick(std::function<void(VisionPoint, std::optional<Griff>)> klick) { m_klick = std::move(klick); }
    /// Something is dragged; `fertig` when it was let go.
    void OnZug(std::function<void(Griff, VisionPoint, bool fertig)> zug) { m_zug = std::move(zug); }

    /// `bericht`: the whole frame, without magnifier.
    void Zeichne(CDC& dc, bool bericht);
    bool Maus(const CMouseEvent& ereignis);
    void ZeigeGanz();

  private:
    struct Sicht {
        CDPoint ecke{}; ///< of the raw frame in the drawing
        double massstab = 1.0;
        double breite = 0.0; ///< of the drawing
        double hoehe = 0.0;
        CDPoint Auf(VisionPoint p) const { return {ecke.x + p.x * massstab, ecke.y + p.y * massstab}; }
        VisionPoint Von(CDPoint p) const { return {(p.x - ecke.x) / massstab, (p.y - ecke.y) / massstab}; }
    };

    Sicht MacheSicht(double breite, double hoehe, bool ganz) const;
    std::optional<Griff> Treffer(const Sicht& sicht, CDPoint wo) const;
    VisionPoint Ort(Griff griff) const;
    VisionPoint ImBild(VisionPoint p) const;
    void ZeichneBild(CDC& dc, const Sicht& sicht);
    void ZeichneViereck(CDC& dc, const Sicht& sicht) const;
    void ZeichneKanten(CDC& dc, const Sicht& sicht) const;
    /// Number and place of each point of the edges.
    std::vector<std::pair<Griff, VisionPoint>> Kantenpunkte() const;
    void ZeichneObjekt(CDC& dc, const Sicht& sicht, const Objekt& objekt) const;
    void ZeichneVorschlag(CDC& dc, const Sicht& sicht) const;
    void ZeichneLupe(CDC& dc, const Sicht& sicht) const;
    std::shared_ptr<const drawing::Bitmap> Ausschnitt(int links, int oben, int breite, int hoehe) const;

    std::shared_ptr<const drawing::Bitmap> m_bild;
    std::string m_ohneBild;
    Inhalt m_inhalt;
    std::function<void(VisionPoint, std::optional<Griff>)> m_klick;
    std::function<void(Griff, VisionPoint, bool)> m_zug;

    double m_vergroesserung = 1.0;
    VisionPoint m_mitte{}; // of what is seen
    // The part that is seen of a frame that is larger.
    std::shared_ptr<const drawing::Bitmap> m_ausschnitt;
    CRect m_ausschnittVon{};

    std::optional<CDPoint> m_gedrueckt;
    std::optional<Griff> m_griff;
    VisionPoint m_griffOrt{};
    VisionPoint m_mitteVorher{};
    bool m_schiebt = false;
    bool m_gezogen = false;
    std::optional<CDPoint> m_zeiger; // where the magnifier looks
};
