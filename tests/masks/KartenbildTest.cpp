// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/import/Kartenbild.h"

#include "host/RuvCfg.h"
#include "krn/Tiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

namespace
{

constexpr double kBreite = 400.0;
constexpr double kHoehe = 300.0;
constexpr double kStift = 3.0; // width of the track's pen

class KartenbildTest : public ::testing::Test
{
  protected:
    KartenbildTest()
    {
        RuvCfg = CRuvCfg{};
        // A circle of 500 m radius, 10 km/h in the south-east, 80 km/h in the north-west.
        std::vector<Kartenbild::Punkt> punkte;
        for (int i = 0; i <= 360; ++i) {
            const double winkel = i * 3.14159265358979 / 180.0;
            punkte.push_back(
                {{500.0 * std::cos(winkel), 500.0 * std::sin(winkel)}, 45.0 + 35.0 * std::sin(winkel - 0.785)});
        }
        karte.SetPunkte(std::move(punkte));
        karte.OnKlick([this](std::size_t punkt) { geklickt = static_cast<int>(punkt); });
    }
    bool Maus(CMouseEvent::Kind art, CDPoint wo, double raste = 0.0)
    {
        CMouseEvent ereignis;
        ereignis.kind = art;
        ereignis.button = art == CMouseEvent::Kind::wheel ? MouseButton::none : MouseButton::left;
        ereignis.position = wo;
        ereignis.width = kBreite;
        ereignis.height = kHoehe;
        ereignis.wheel = raste;
        return karte.Maus(ereignis);
    }
    int Klick(CDPoint wo)
    {
        geklickt = -1;
        Maus(CMouseEvent::Kind::press, wo);
        Maus(CMouseEvent::Kind::release, wo);
        return geklickt;
    }
    void Ziehe(CDPoint von, CDPoint nach)
    {
        Maus(CMouseEvent::Kind::press, von);
        Maus(CMouseEvent::Kind::move, nach);
        Maus(CMouseEvent::Kind::release, nach);
    }
    CDC Bild(bool bericht = false) const
    {
        CDC dc(kBreite, kHoehe);
        karte.Zeichne(dc, bericht);
        return dc;
    }
    /// The points of the track's lines.
    static std::vector<CDPoint> Spur(const CDC& dc)
    {
        std::vector<CDPoint> punkte;
        for (const drawing::Primitive& primitive : dc.Primitives())
            if (const auto* linie = std::get_if<drawing::Polyline>(&primitive);
                linie != nullptr && linie->pen.width == kStift)
                punkte.insert(punkte.end(), linie->points.begin(), linie->points.end());
        return punkte;
    }
    static bool HatText(const CDC& dc, const std::string& text)
    {
        return std::any_of(dc.Primitives().begin(), dc.Primitives().end(), [&](const drawing::Primitive& primitive) {
            const auto* worte = std::get_if<drawing::Text>(&primitive);
            return worte != nullptr && worte->utf8 == text;
        });
    }

    Kartenbild karte;
    int geklickt = -1;
};

} // namespace

// 1000 m on 272 px: north up, both directions in the same scale, in the middle.
TEST_F(KartenbildTest, TheWholeTrackLiesInTheMiddleNorthUp)
{
    const std::vector<CDPoint> spur = Spur(Bild());
    const auto [links, rechts] =
        std::minmax_element(spur.begin(), spur.end(), [](auto a, auto b) { return a.x < b.x; });
    const auto [oben, unten] = std::minmax_element(spur.begin(), spur.end(), [](auto a, auto b) { return a.y < b.y; });
    EXPECT_NEAR(links->x, 200.0 - 136.0, 0.1);
    EXPECT_NEAR(rechts->x, 200.0 + 136.0, 0.1);
    EXPECT_NEAR(oben->y, 14.0, 0.1);
    EXPECT_NEAR(unten->y, 286.0, 0.1);
    EXPECT_EQ(Klick({200.0, 14.0}), 90); // the north
    EXPECT_EQ(Klick({336.0, 150.0}) % 360, 0);
    EXPECT_EQ(Klick({200.0, 150.0}), -1);
    // 55 px are 202 m: the grid takes 500 m, the legend the speeds.
    EXPECT_TRUE(HatText(Bild(), "500 m"));
    EXPECT_TRUE(HatText(Bild(), "10"));
    EXPECT_TRUE(HatText(Bild(), "80 km/h"));
}

// What lies under the pointer stays there while it is magnified; nothing is drawn beyond the edge; the report shows
// all.
TEST_F(KartenbildTest, MagnifiesAboutThePointerAndCutsAtTheEdge)
{
    const CDPoint ort{200.0, 14.0};
    const CDC ganz = Bild();
    for (int i = 0; i < 12; ++i) {
        Maus(CMouseEvent::Kind::wheel, ort, 1.0);
        ASSERT_EQ(Klick(ort), 90) << i;
        const std::vector<CDPoint> spur = Spur(Bild());
        ASSERT_FALSE(spur.empty()) << i;
        for (const CDPoint& p : spur)
            ASSERT_TRUE(p.x > -1e-6 && p.x < kBreite + 1e-6 && p.y > -1e-6 && p.y < kHoehe + 1e-6) << i;
    }
    EXPECT_TRUE(HatText(Bild(), "20 m")); // 1.25^12 = 14.6 times as large: 55 px are 13.9 m
    EXPECT_EQ(Spur(Bild(true)).size(), Spur(ganz).size());
    // Drawn aside, the point goes along; a double click shows all again.
    Ziehe({100.0, 100.0}, {130.0, 140.0});
    EXPECT_EQ(Klick({230.0, 54.0}), 90);
    Maus(CMouseEvent::Kind::doubleClick, ort);
    EXPECT_EQ(Klick(ort), 90);
    EXPECT_EQ(Spur(Bild()).size(), Spur(ganz).size());
}

// The way across a gap is dotted, whatever the speed.
TEST_F(KartenbildTest, TheStepAcrossAGapIsNotDrawnAsWay)
{
    std::vector<Kartenbild::Punkt> punkte;
    for (const double x : {0.0, 100.0, 400.0, 500.0})
        punkte.push_back({{x, 0.0}, 50.0});
    punkte[2].naht = true;
    karte.SetPunkte(std::move(punkte));
    const CDC dc = Bild();
    double gepunktet = 0.0;
    for (const drawing::Primitive& primitive : dc.Primitives())
        if (const auto* linie = std::get_if<drawing::Polyline>(&primitive);
            linie != nullptr && linie->pen.style == PenStyle::dot)
            gepunktet += linie->points.back().x - linie->points.front().x;
    EXPECT_NEAR(gepunktet, 372.0 * 300.0 / 500.0, 1e-9); // 500 m on 372 px
    EXPECT_EQ(Spur(dc).size(), 4U);
}

TEST_F(KartenbildTest, NothingAndStandingStill)
{
    karte.SetPunkte({});
    EXPECT_TRUE(HatText(Bild(), "Es ist keine Spur geladen."));
    EXPECT_FALSE(Maus(CMouseEvent::Kind::wheel, {10.0, 10.0}, 1.0));
    karte.SetPunkte({{{3.0, 4.0}, std::nan("")}, {{3.0, 4.0}, std::nan("")}});
    EXPECT_TRUE(HatText(Bild(), "5 m")); // 272 px are 10 m
    EXPECT_EQ(Klick({200.0, 150.0}), 0);
}

// Where a pixel of the drawing is two of the screen's, the map has as many, of tiles one zoom finer, in the same place.
TEST_F(KartenbildTest, TheMapIsAsFineAsTheScreen)
{
    struct Grau final : CTileSource {
        explicit Grau(int& zoom) : m_zoom(zoom) {}
        int SmallestZoom() const override { return 0; }
        int LargestZoom() const override { return 19; }
        std::string Attribution() const override { return "grau"; }
        std::shared_ptr<const drawing::Bitmap> Tile(const CTile& tile) override
        {
            m_zoom = tile.zoom;
            auto bitmap = std::make_shared<drawing::Bitmap>();
            bitmap->width = bitmap->height = 1;
            bitmap->pixels = {0xFF808080U};
            return bitmap;
        }
        int& m_zoom;
    };
    int zoom = 0;
    krn::SetServerTiles([&zoom](const CKartenCfg&) { return std::make_unique<Grau>(zoom); });
    RuvCfg.karte.quelle = CKartenCfg::Quelle::server;
    RuvCfg.karte.server = "https://karte.example/{z}/{x}/{y}.png";
    karte.SetPunkte({{{0.0, 0.0}, 10.0, 50.0, 8.0}, {{715.0, 1113.0}, 10.0, 50.01, 8.01}});
    int erster = 0;
    for (const double schaerfe : {1.0, 1.5, 2.0, 1.0}) {
        CDC dc(kBreite, kHoehe, schaerfe);
        karte.Zeichne(dc, false);
        const drawing::Picture* bild = nullptr;
        for (const drawing::Primitive& primitive : dc.Primitives())
            if (const auto* eines = std::get_if<drawing::Picture>(&primitive))
                bild = eines;
        ASSERT_NE(bild, nullptr);
        EXPECT_EQ(bild->bitmap->width, static_cast<int>(kBreite * schaerfe));
        EXPECT_EQ(bild->bitmap->height, static_cast<int>(kHoehe * schaerfe));
        EXPECT_NEAR(bild->across.x, kBreite, 1e-9);
        EXPECT_NEAR(bild->down.y, kHoehe, 1e-9);
        erster = erster == 0 ? zoom : erster;
        EXPECT_EQ(zoom, schaerfe == 2.0 ? erster + 1 : schaerfe == 1.0 ? erster : zoom);
    }
    krn::SetServerTiles({});
    RuvCfg = CRuvCfg{};
}
