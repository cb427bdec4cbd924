// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/import/Kartengrund.h"

#include "host/Physics.h"
#include "masks/import/CGPStoXYZ.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace
{

constexpr double kKachelPixel = 256.0; // of a usual tile
constexpr double kWeich = 0.3;         // of a zoom that the map may be enlarged rather than take a finer one
constexpr int kMeisteKacheln = 150;    // for one picture
constexpr int kGroebereZooms = 3;      // in which a tile is looked for that is missing

/// The tiles x0..x1, y0..y1 of a zoom.
struct Feld {
    int zoom = 0;
    int x0 = 0, y0 = 0, x1 = -1, y1 = -1;
    int Anzahl() const { return (x1 - x0 + 1) * (y1 - y0 + 1); }
};

/// What is drawn of one tile: the picture of it, or the part of a coarser one.
struct Stueck {
    std::shared_ptr<const drawing::Bitmap> bild{};
    double links = 0.0; ///< parts of the picture's width and height
    double oben = 0.0;
    double seite = 1.0;
};

/// As fine as it is there. Coarser tiles are asked for only when a finer one will not come.
Stueck Hole(CTileSource& quelle, const CTile& kachel)
{
    Stueck stueck{quelle.Tile(kachel)};
    bool kommt = stueck.bild == nullptr && quelle.IsComing(kachel);
    for (int stufe = 1; stueck.bild == nullptr && stufe <= kGroebereZooms; ++stufe) {
        const CTile grob{kachel.zoom - stufe, kachel.x >> stufe, kachel.y >> stufe};
        if (grob.zoom < quelle.SmallestZoom())
            break;
        stueck.bild = kommt ? quelle.TileAtHand(grob) : quelle.Tile(grob);
        kommt = kommt || (stueck.bild == nullptr && quelle.IsComing(grob));
        stueck.seite = std::ldexp(1.0, -stufe);
        stueck.links = (kachel.x - (grob.x << stufe)) * stueck.seite;
        stueck.oben = (kachel.y - (grob.y << stufe)) * stueck.seite;
    }
    return stueck;
}

class Zeichner
{
  public:
    Zeichner(const Kartenanker& anker, const Kartenausschnitt& ausschnitt) : m_anker(anker), m_ausschnitt(ausschnitt) {}

    /// Latitude and longitude of a pixel's middle.
    double Breite(int zeile) const
    {
        const double nord = m_ausschnitt.mitte.y - (zeile + 0.5 - m_ausschnitt.hoehe / 2.0) / m_ausschnitt.massstab;
        return m_anker.breite + (nord - m_anker.lage.y) / kMeterProGrad;
    }
    double Laenge(double breite, int spalte) const
    {
        const double ost = m_ausschnitt.mitte.x + (spalte + 0.5 - m_ausschnitt.breite / 2.0) / m_ausschnitt.massstab;
        const double phi = (breite + m_anker.breite) / 2.0 * kRadProGrad;
        return m_anker.laenge + (ost - m_anker.lage.x) / (kMeterProGrad * std::cos(phi));
    }

    Feld FeldVon(int zoom) const
    {
        const int letzteZeile = m_ausschnitt.hoehe - 1;
        const int letzteSpalte = m_ausschnitt.breite - 1;
        double links = 1e9;
        double rechts = -1e9;
        for (const int zeile : {0, letzteZeile}) {
            const double breite = Breite(zeile);
            links = std::min(links, Kachelort(breite, Laenge(breite, 0), zoom).x);
            rechts = std::max(rechts, Kachelort(breite, Laenge(breite, letzteSpalte), zoom).x);
        }
        const double anzahl = std::ldexp(1.0, zoom);
        const double oben = std::clamp(Kachelort(Breite(0), 0.0, zoom).y, 0.0, anzahl - 1.0);
        const double unten = std::clamp(Kachelort(Breite(letzteZeile), 0.0, zoom).y, 0.0, anzahl - 1.0);
        if (!(rechts - links < anzahl)) // more than once around the earth
            return {zoom, 0, 0, kMeisteKacheln, kMeisteKacheln};
        return {zoom, static_cast<int>(std::floor(links)), static_cast<int>(std::floor(oben)),
                static_cast<int>(std::floor(rechts)), static_cast<int>(std::floor(unten))};
    }

    /// As fine as the picture, as far as the source has it and the number of tiles allows.
    Feld Waehle(const CTileSource& quelle) const
    {
        const double phi = m_anker.breite * kRadProGrad;
        const double umfang = 360.0 * kMeterProGrad * std::max(std::cos(phi), 0.05);
        const double ideal = std::log2(umfang * m_ausschnitt.massstab / kKachelPixel);
        int zoom = std::clamp(static_cast<int>(std::ceil(ideal - kWeich)), quelle.SmallestZoom(), quelle.LargestZoom());
        Feld feld = FeldVon(zoom);
        while (feld.Anzahl() > kMeisteKacheln && zoom > quelle.SmallestZoom())
            feld = FeldVon(--zoom);
        return feld.Anzahl() > kMeisteKacheln ? Feld{} : feld;
    }

    std::shared_ptr<const drawing::Bitmap> Zeichne(CTileSource& quelle, std::uint32_t leer) const
    {
        const Feld feld = Waehle(quelle);
        const int welt = 1 << feld.zoom;
        std::vector<Stueck> stuecke;
        bool etwas = false;
        for (int y = feld.y0; y <= feld.y1; ++y)
            for (int x = feld.x0; x <= feld.x1; ++x) {
                stuecke.push_back(Hole(quelle, {feld.zoom, (x % welt + welt) % welt, y}));
                etwas = etwas || stuecke.back().bild != nullptr;
            }
        if (!etwas)
            return nullptr;
        auto bild = std::make_shared<drawing::Bitmap>();
        bild->width = m_ausschnitt.breite;
        bild->height = m_ausschnitt.hoehe;
        bild->pixels.reserve(static_cast<std::size_t>(bild->width) * static_cast<std::size_t>(bild->height));
        for (int zeile = 0; zeile < bild->height; ++zeile) {
            const double breite = Breite(zeile);
            // Along a row the place on the map goes on evenly.
            const CDPoint anfang = Kachelort(breite, Laenge(breite, 0), feld.zoom);
            const double schritt = Kachelort(breite, Laenge(breite, 1), feld.zoom).x - anfang.x;
            const int y = static_cast<int>(std::floor(anfang.y));
            for (int spalte = 0; spalte < bild->width; ++spalte) {
                const double ort = anfang.x + spalte * schritt;
                const int x = static_cast<int>(std::floor(ort));
                const bool drin = x >= feld.x0 && x <= feld.x1 && y >= feld.y0 && y <= feld.y1;
                const auto platz =
                    static_cast<std::size_t>(drin ? (y - feld.y0) * (feld.x1 - feld.x0 + 1) + x - feld.x0 : 0);
                const Stueck& stueck = stuecke[platz];
                bild->pixels.push_back(!drin || stueck.bild == nullptr ? leer : Farbe(stueck, ort - x, anfang.y - y));
            }
        }
        return bild;
    }

  private:
    /// Between the four pixels about a place of a tile, given as parts of its width and height; those of the tile
    /// beside it are not asked.
    static std::uint32_t Farbe(const Stueck& stueck, double x, double y)
    {
        const drawing::Bitmap& kachel = *stueck.bild;
        x = stueck.links + x * stueck.seite;
        y = stueck.oben + y * stueck.seite;
        const double px = std::clamp(x * kachel.width - 0.5, 0.0, kachel.width - 1.0);
        const double py = std::clamp(y * kachel.height - 0.5, 0.0, kachel.height - 1.0);
        const auto links = static_cast<std::size_t>(px);
        const auto oben = static_cast<std::size_t>(py);
        const auto breite = static_cast<std::size_t>(kachel.width);
        const std::size_t rechts = std::min(links + 1, breite - 1);
        const std::size_t unten = std::min(oben + 1, static_cast<std::size_t>(kachel.height) - 1);
        const auto wx = static_cast<std::uint32_t>((px - static_cast<double>(links)) * 256.0);
        const auto wy = static_cast<std::uint32_t>((py - static_cast<double>(oben)) * 256.0);
        const std::uint32_t vier[] = {kachel.pixels[oben * breite + links], kachel.pixels[oben * breite + rechts],
                                      kachel.pixels[unten * breite + links], kachel.pixels[unten * breite + rechts]};
        const std::uint32_t gewichte[] = {(256 - wx) * (256 - wy), wx * (256 - wy), (256 - wx) * wy, wx * wy};
        std::uint32_t farbe = 0xFF000000U;
        for (const unsigned kanal : {0U, 8U, 16U}) {
            std::uint32_t summe = 0;
            for (std::size_t i = 0; i < 4; ++i)
                summe += (vier[i] >> kanal & 0xFFU) * gewichte[i];
            farbe |= (summe >> 16U) << kanal;
        }
        return farbe;
    }

    const Kartenanker& m_anker;
    const Kartenausschnitt& m_ausschnitt;
};

} // namespace

CDPoint Kachelort(double breite, double laenge, int zoom)
{
    const double anzahl = std::ldexp(1.0, zoom);
    // x = (λ + 180°) / 360°, y = (1 − arsinh(tan φ) / π) / 2 of the whole map.
    return {(laenge + 180.0) / 360.0 * anzahl, (1.0 - std::asinh(std::tan(breite * kRadProGrad)) / kPi) / 2.0 * anzahl};
}

std::shared_ptr<const drawing::Bitmap> ZeichneKartengrund(CTileSource& quelle, const Kartenanker& anker,
                                                          const Kartenausschnitt& ausschnitt, std::uint32_t leer)
{
    if (ausschnitt.breite < 1 || ausschnitt.hoehe < 1 || !(ausschnitt.massstab > 0.0) ||
        !(std::abs(anker.breite) < 85.0) || !std::isfinite(anker.laenge))
        return nullptr;
    return Zeichner(anker, ausschnitt).Zeichne(quelle, leer);
}
