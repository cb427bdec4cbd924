// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/import/Kartengrund.h"

#include "host/CRuvData.h"
#include "masks/import/CGPStoXYZ.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>
#include <set>

namespace
{

constexpr std::uint32_t kLeer = 0xFFFFFFFFU;
constexpr int kFeinster = 17;

/// The tiles of zoom kFeinster in one colour each, their column in the green, their row in the blue; those of other
/// zooms show the same.
class Schachbrett final : public CTileSource
{
  public:
    int SmallestZoom() const override { return kleinster; }
    int LargestZoom() const override { return groesster; }
    std::string Attribution() const override { return "Schachbrett"; }
    std::shared_ptr<const drawing::Bitmap> Tile(const CTile& tile) override
    {
        gefragt.insert(tile);
        return TileAtHand(tile);
    }
    std::shared_ptr<const drawing::Bitmap> TileAtHand(const CTile& tile) override
    {
        if (fehlt.count(tile) != 0 || kommt.count(tile) != 0)
            return nullptr;
        std::shared_ptr<drawing::Bitmap>& bitmap = m_gemalt[tile];
        if (bitmap != nullptr)
            return bitmap;
        bitmap = std::make_shared<drawing::Bitmap>();
        bitmap->width = bitmap->height = 256;
        for (int y = 0; y < 256; ++y)
            for (int x = 0; x < 256; ++x)
                bitmap->pixels.push_back(
                    Farbe({tile.zoom, Feinste(tile.zoom, tile.x, x), Feinste(tile.zoom, tile.y, y)}));
        return bitmap;
    }
    bool IsComing(const CTile& tile) const override { return kommt.count(tile) != 0; }

    static int Feinste(int zoom, int kachel, int pixel)
    {
        return zoom > kFeinster ? kachel : (kachel * 256 + pixel) << (kFeinster - zoom) >> 8;
    }
    static std::uint32_t Farbe(const CTile& tile)
    {
        return 0xFF000000U | static_cast<std::uint32_t>(tile.x & 0xFF) << 8U |
               static_cast<std::uint32_t>(tile.y & 0xFF);
    }

    int kleinster = 0;
    int groesster = 19;
    std::set<CTile> gefragt;
    std::set<CTile> fehlt;
    std::set<CTile> kommt; ///< asked for, not yet there

  private:
    std::map<CTile, std::shared_ptr<drawing::Bitmap>> m_gemalt;
};

std::uint32_t Pixel(const drawing::Bitmap& bild, double x, double y)
{
    return bild.pixels.at(static_cast<std::size_t>(std::floor(y)) * static_cast<std::size_t>(bild.width) +
                          static_cast<std::size_t>(std::floor(x)));
}

} // namespace

// The example of the OpenStreetMap wiki, "Slippy map tilenames", and the whole world.
TEST(KartengrundTest, TilesOfPlacesOnTheEarth)
{
    const CDPoint tokio = Kachelort(35.6590699, 139.7006793, 18);
    EXPECT_EQ(std::floor(tokio.x), 232798.0);
    EXPECT_EQ(std::floor(tokio.y), 103246.0);
    EXPECT_NEAR(Kachelort(0.0, 0.0, 1).x, 1.0, 1e-12);
    EXPECT_NEAR(Kachelort(0.0, 0.0, 1).y, 1.0, 1e-12);
    EXPECT_NEAR(Kachelort(85.0511287798066, -180.0, 3).y, 0.0, 1e-9);
    EXPECT_NEAR(Kachelort(-85.0511287798066, 180.0, 3).y, 8.0, 1e-9);
}

// The corners of tiles lie where the conversion of the track puts them.
TEST(KartengrundTest, TilesLieInThePlaneOfTheTrack)
{
    const Kartenanker anker{{1234.0, -567.0}, 50.0, 8.0};
    const Kartenausschnitt ausschnitt{{1234.0 + 40.0, -567.0 + 25.0}, 1.0, 600, 500};
    Schachbrett quelle;
    const auto bild = ZeichneKartengrund(quelle, anker, ausschnitt, kLeer);
    ASSERT_NE(bild, nullptr);
    ASSERT_EQ(bild->width, 600);
    const int zoom = quelle.gefragt.begin()->zoom;
    EXPECT_EQ(zoom, 17); // 0.767 m per pixel on 50° N; zoom 16 would be enlarged by half
    const double welt = std::ldexp(1.0, zoom);
    CRuvData data;
    const CGPStoXYZ konverter(data);
    int ecken = 0;
    for (const CTile& tile : quelle.gefragt) {
        const double laenge = tile.x / welt * 360.0 - 180.0;
        const double breite =
            std::atan(std::sinh(std::numbers::pi * (1.0 - 2.0 * tile.y / welt))) * 180.0 / std::numbers::pi;
        std::vector<LocalPoint> lokal;
        konverter.KonvertiereGPS(std::vector<GPSPunkt>{{anker.breite, anker.laenge}, {breite, laenge}}, lokal);
        const double x = 300.0 + lokal[1].x + anker.lage.x - ausschnitt.mitte.x;
        const double y = 250.0 - (lokal[1].y + anker.lage.y - ausschnitt.mitte.y);
        if (x < 2.0 || x > 598.0 || y < 2.0 || y > 498.0)
            continue;
        ++ecken;
        const auto farbe = [&](int dx, int dy) { return Schachbrett::Farbe({zoom, tile.x + dx, tile.y + dy}); };
        EXPECT_EQ(Pixel(*bild, x + 1.0, y + 1.0), farbe(0, 0));
        EXPECT_EQ(Pixel(*bild, x - 1.0, y + 1.0), farbe(-1, 0));
        EXPECT_EQ(Pixel(*bild, x + 1.0, y - 1.0), farbe(0, -1));
        EXPECT_EQ(Pixel(*bild, x - 1.0, y - 1.0), farbe(-1, -1));
    }
    EXPECT_GE(ecken, 4);
}

TEST(KartengrundTest, FinenessGapsAndLimits)
{
    const Kartenanker anker{{0.0, 0.0}, 50.0, 8.0};
    Schachbrett quelle;
    const auto zoom = [&](double massstab) {
        quelle.gefragt.clear();
        const auto bild = ZeichneKartengrund(quelle, anker, {{0.0, 0.0}, massstab, 400, 300}, kLeer);
        return bild == nullptr ? -1 : quelle.gefragt.begin()->zoom;
    };
    EXPECT_EQ(zoom(100.0), 19); // no finer than the source
    EXPECT_EQ(zoom(0.01), 10);  // 98 m per pixel of zoom 10
    quelle.kleinster = 15;
    EXPECT_EQ(zoom(0.001), -1); // 400 km would take too many
    EXPECT_LE(quelle.gefragt.size(), 0U);
    quelle.kleinster = 0;
    // When all is missing there is no picture.
    EXPECT_EQ(zoom(1.0), 17);
    quelle.fehlt = quelle.gefragt;
    quelle.kleinster = 17;
    EXPECT_EQ(ZeichneKartengrund(quelle, anker, {{0.0, 0.0}, 1.0, 400, 300}, kLeer), nullptr);
    quelle.kleinster = 0;
    // Across the date line the columns begin anew; near the poles there is no map.
    quelle.fehlt.clear();
    quelle.gefragt.clear();
    EXPECT_NE(ZeichneKartengrund(quelle, {{0.0, 0.0}, 0.0, 179.9999}, {{0.0, 0.0}, 1.0, 400, 300}, kLeer), nullptr);
    EXPECT_EQ(quelle.gefragt.begin()->x, 0);
    EXPECT_EQ(quelle.gefragt.rbegin()->x, (1 << quelle.gefragt.rbegin()->zoom) - 1);
    EXPECT_EQ(ZeichneKartengrund(quelle, {{0.0, 0.0}, 89.0, 8.0}, {{0.0, 0.0}, 1.0, 400, 300}, kLeer), nullptr);
}

// The part of a coarser tile that shows the same, from up to three zooms away; beyond that the place is empty. While
// the tile itself may come, no coarser one is asked for.
TEST(KartengrundTest, CoarserTilesTakeThePlaceOfMissingOnes)
{
    const Kartenanker anker{{0.0, 0.0}, 50.0, 8.0};
    const Kartenausschnitt ausschnitt{{0.0, 0.0}, 1.0, 400, 300};
    Schachbrett quelle;
    const auto ganz = ZeichneKartengrund(quelle, anker, ausschnitt, kLeer);
    ASSERT_NE(ganz, nullptr);
    const std::set<CTile> feine = quelle.gefragt;
    ASSERT_EQ(feine.begin()->zoom, kFeinster);
    for (const CTile& tile : feine)
        for (int stufe = 0; stufe < 3; ++stufe) {
            quelle.fehlt.insert({tile.zoom - stufe, tile.x >> stufe, tile.y >> stufe});
            quelle.gefragt.clear();
            const auto bild = ZeichneKartengrund(quelle, anker, ausschnitt, kLeer);
            ASSERT_NE(bild, nullptr);
            EXPECT_EQ(quelle.gefragt.begin()->zoom, quelle.fehlt.begin()->zoom - 1);
            // Only between two tiles the mixture is another.
            std::size_t andere = 0;
            for (std::size_t i = 0; i < bild->pixels.size(); ++i)
                andere += bild->pixels[i] == ganz->pixels[i] ? 0U : 1U;
            EXPECT_LT(andere, bild->pixels.size() / 25) << stufe;
            EXPECT_EQ(std::count(bild->pixels.begin(), bild->pixels.end(), kLeer), 0);
        }
    const CTile erste = *feine.begin();
    quelle.fehlt.insert({erste.zoom - 3, erste.x >> 3, erste.y >> 3});
    quelle.gefragt.clear();
    const auto loch = ZeichneKartengrund(quelle, anker, ausschnitt, kLeer);
    ASSERT_TRUE(loch == nullptr || std::count(loch->pixels.begin(), loch->pixels.end(), kLeer) > 0);
    EXPECT_EQ(quelle.gefragt.begin()->zoom, kFeinster - 3);

    quelle.fehlt.clear();
    quelle.kommt = {erste};
    quelle.gefragt.clear();
    const auto bald = ZeichneKartengrund(quelle, anker, ausschnitt, kLeer);
    EXPECT_EQ(quelle.gefragt, feine);
    ASSERT_NE(bald, nullptr);
    EXPECT_EQ(std::count(bald->pixels.begin(), bald->pixels.end(), kLeer), 0);
}
