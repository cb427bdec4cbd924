// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Proposals for the next click: found where a known motion leads, refused where the picture does not tell, and nothing
// but a mark until they are taken.
#include "host/vision/PatchSearch.h"

#include "casefile/CaseHistory.h"
#include "host/CDC.h"
#include "tests/vision/video/VideoMaskFixture.h"

#include <cstdint>
#include <cstring>
#include <random>

namespace
{

using framework::InputResult;
using framework::Window;

/// Brightness from 40 to 210 without a pattern, and smooth enough to be moved by parts of a pixel.
double Texture(double x, double y, std::uint32_t seed)
{
    constexpr double kCell = 4.0;
    const auto lattice = [seed](int i, int j) {
        std::uint32_t h =
            seed + static_cast<std::uint32_t>(i) * 374761393U + static_cast<std::uint32_t>(j) * 668265263U;
        h = (h ^ h >> 13U) * 1274126177U;
        return static_cast<double>((h ^ h >> 16U) & 0xFFU) / 255.0;
    };
    const double u = x / kCell;
    const double v = y / kCell;
    const int i = static_cast<int>(std::floor(u));
    const int j = static_cast<int>(std::floor(v));
    const auto eased = [](double t) { return t * t * (3.0 - 2.0 * t); };
    const double s = eased(u - i);
    const double t = eased(v - j);
    const double above = (1.0 - s) * lattice(i, j) + s * lattice(i + 1, j);
    const double below = (1.0 - s) * lattice(i, j + 1) + s * lattice(i + 1, j + 1);
    return 40.0 + 170.0 * ((1.0 - t) * above + t * below);
}

drawing::Bitmap Picture(const std::function<double(double, double)>& brightness)
{
    drawing::Bitmap picture{200, 120, {}, {}};
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x) {
            const auto grey = static_cast<std::uint32_t>(std::lround(brightness(x + 0.5, y + 0.5)));
            picture.pixels.push_back(0xFF000000U | grey << 16U | grey << 8U | grey);
        }
    return picture;
}

} // namespace

TEST(PatchSearch, AMovedPictureIsFoundToPartsOfAPixel)
{
    const auto ground = [](double x, double y) { return Texture(x, y, 7); };
    const drawing::Bitmap before = Picture(ground);
    for (const auto& [dx, dy] : {std::pair{0.0, 0.0}, {3.37, -2.61}, {-11.5, 6.25}}) {
        // Darker and with less contrast.
        const drawing::Bitmap after =
            Picture([&, dx = dx, dy = dy](double x, double y) { return 30.0 + 0.6 * ground(x - dx, y - dy); });
        const PatchPlace place = FindPatch(before, {100.3, 60.8}, after, {98.0, 63.0}, 16.0);
        ASSERT_EQ(place.fault, PatchFault::none);
        EXPECT_NEAR(place.point.x, 100.3 + dx, 0.15);
        EXPECT_NEAR(place.point.y, 60.8 + dy, 0.15);
        EXPECT_GT(place.correlation, 0.9); // of the nearest whole pixel
        EXPECT_LE(place.correlation, 1.0001);
    }
}

TEST(PatchSearch, WhatThePictureDoesNotTellIsSaid)
{
    const drawing::Bitmap before = Picture([](double x, double y) { return Texture(x, y, 7); });
    const drawing::Bitmap other = Picture([](double x, double y) { return Texture(x, y, 8); });
    const VisionPoint p{100.0, 60.0};
    const auto fault = [](const drawing::Bitmap& a, VisionPoint from, const drawing::Bitmap& b, VisionPoint expected,
                          double reach = 16.0) { return FindPatch(a, from, b, expected, reach).fault; };
    EXPECT_EQ(fault(before, p, other, p), PatchFault::unlike);
    EXPECT_EQ(fault(before, {9.0, 60.0}, before, p), PatchFault::atEdge);
    EXPECT_EQ(fault(before, {100.0, 111.0}, before, p), PatchFault::atEdge);
    EXPECT_EQ(fault(before, p, before, {116.0, 60.0}), PatchFault::atEdge) << "at the edge of what is searched";
    EXPECT_EQ(fault(before, p, before, {900.0, 60.0}), PatchFault::atEdge);
    EXPECT_EQ(fault(before, p, before, {115.0, 60.0}), PatchFault::none);
    // Noise of a plain surface; a straight edge, along which every place is the same; two of a kind.
    std::mt19937 random(1);
    const drawing::Bitmap plain = Picture([&](double, double) { return 100.0 + static_cast<double>(random() % 7); });
    EXPECT_EQ(fault(plain, p, plain, p), PatchFault::plain);
    const drawing::Bitmap edge = Picture([](double x, double y) { return x + 0.3 * y < 118.0 ? 60.0 : 180.0; });
    EXPECT_EQ(fault(edge, p, edge, p), PatchFault::ambiguous);
    const drawing::Bitmap twice = Picture([](double x, double y) { return Texture(std::fmod(x, 25.0), y, 7); });
    EXPECT_EQ(fault(twice, p, twice, p, 30.0), PatchFault::ambiguous);
    EXPECT_EQ(fault(twice, p, twice, p, 12.0), PatchFault::none) << "the other one is out of reach";
    drawing::Bitmap smaller = before;
    smaller.height = 100;
    EXPECT_EQ(fault(before, p, smaller, p), PatchFault::noLibrary);
    EXPECT_EQ(fault(before, {std::nan(""), 0.0}, before, p), PatchFault::noLibrary);
}

namespace
{

/// A pattern drives to the right before a still one, and from frame 20 on behind another.
class VideoProposalTest : public test::VideoMaskFixture
{
  protected:
    static constexpr double kTempo = 130.0; // px/s
    static constexpr int kVerdeckt = 20;

    static VisionPoint Ort(int bild, VisionPoint im = {})
    {
        return {60.0 + kTempo * Sekunden(bild) + im.x, 150.0 + im.y};
    }
    Window& OeffneFahrt()
    {
        test::VideoPlan plan;
        plan.width = test::kKamera.width;
        plan.height = test::kKamera.height;
        plan.times = test::Zeiten();
        plan.draw = Zeichne;
        test::WriteVideo(folder.File("fahrt.mp4"), plan);
        Window& maske = Oeffne(folder.File("fahrt.mp4"));
        Press(maske, IDC_VIDEO_VERFOLGEN);
        return maske;
    }
    bool Angeboten(Window& maske) { return Control(maske, IDC_VIDEO_VORSCHLAG).enabled; }
    /// What the field shows, on the screen and in a report.
    static std::string Texte(Window& maske, bool bericht)
    {
        const Window& feld = Control(maske, IDC_VIDEO_BILD);
        CDC dc(640.0, 360.0);
        (bericht ? feld.reportPainter : feld.painter)(dc, {0, 0, 640, 360});
        std::string alle;
        for (const drawing::Primitive& p : dc.Primitives())
            if (const auto* text = std::get_if<drawing::Text>(&p))
                alle += text->utf8 + '\n';
        return alle;
    }

  private:
    static std::vector<std::uint8_t> Flaeche(int breite, int hoehe, double links, double oben, std::uint32_t muster)
    {
        std::vector<std::uint8_t> werte;
        for (int y = 0; y < hoehe; ++y) {
            for (int x = 0; x < breite; ++x) {
                werte.push_back(static_cast<std::uint8_t>(Texture(x + 0.5 - links, y + 0.5 - oben, muster)));
            }
        }
        return werte;
    }
    static void Zeichne(AVFrame& frame, int bild)
    {
        static const auto grund = Flaeche(frame.width, frame.height, 0.0, 0.0, 2);
        static const auto davor = Flaeche(frame.width, 120, 0.0, 0.0, 3);
        const auto lege = [&frame](const std::vector<std::uint8_t>& werte, int links, int oben, int breite) {
            for (std::size_t y = 0; y * static_cast<std::size_t>(breite) < werte.size(); ++y) {
                std::memcpy(frame.data[0] + (oben + static_cast<std::ptrdiff_t>(y)) * frame.linesize[0] + links,
                            &werte[y * static_cast<std::size_t>(breite)], static_cast<std::size_t>(breite));
            }
        };
        for (int plane = 1; plane < 3; ++plane) {
            std::memset(frame.data[plane], 128, static_cast<std::size_t>(frame.linesize[plane] * frame.height / 2));
        }
        lege(grund, 0, 0, frame.width);
        const VisionPoint mitte = Ort(bild);
        const int links = static_cast<int>(mitte.x) - 45;
        const int oben = static_cast<int>(mitte.y) - 25;
        lege(Flaeche(90, 50, mitte.x - links, mitte.y - oben, 1), links, oben, 90);
        if (bild >= kVerdeckt) {
            lege(davor, 0, 90, frame.width);
        }
    }
};

} // namespace

TEST_F(VideoProposalTest, ProposalsFollowAKnownMotionAndCountOnceTheyAreTaken)
{
    Window& maske = OeffneFahrt();
    const CVideoDat& dat = Daten(maske);
    const VisionPoint im{-20.0, 8.0}; // somewhere on the vehicle
    EXPECT_FALSE(Angeboten(maske));
    Klicke(maske, Ort(0, im));
    for (int bild = 1; bild < 12; ++bild) {
        ASSERT_TRUE(Angeboten(maske)) << bild << Text(maske, IDC_VIDEO_STATUS);
        EXPECT_TRUE(Status(maske).starts_with("Vorschlag für dieses Bild, Korrelation ")) << Status(maske);
        ASSERT_EQ(dat.bildnummer, bild);
        ASSERT_EQ(dat.Spur()->eintraege.size(), static_cast<std::size_t>(bild)) << "not before it is taken";
        if (bild % 2 == 0)
            Press(maske, IDC_VIDEO_VORSCHLAG);
        else
            ASSERT_EQ(framework::Key(Control(maske, IDC_VIDEO_BILD), {VK_RETURN, 0, 0}), InputResult::done);
        const VideoEntry& e = dat.Spur()->eintraege.back().punkt;
        ASSERT_EQ(e.frame, bild);
        EXPECT_EQ(e.time, Sekunden(bild));
        EXPECT_LT(Distance(e.point, Ort(bild, im)), 1.0) << bild;
    }
}

TEST_F(VideoProposalTest, WhatIsHiddenIsNotProposed)
{
    Window& maske = OeffneFahrt();
    GeheZu(maske, kVerdeckt - 2);
    Klicke(maske, Ort(kVerdeckt - 2));
    ASSERT_TRUE(Angeboten(maske));
    Klicke(maske, Ort(kVerdeckt - 1));
    EXPECT_FALSE(Angeboten(maske));
    EXPECT_TRUE(Status(maske).starts_with("Kein Vorschlag: Keine Stelle sieht aus wie die angeklickte (Korrelation 0,"))
        << Status(maske);
    EXPECT_EQ(framework::Key(Control(maske, IDC_VIDEO_BILD), {VK_RETURN, 0, 0}), InputResult::unused);
    EXPECT_EQ(Texte(maske, false).find("Vorschlag"), std::string::npos);
}

TEST_F(VideoProposalTest, AProposalIsAMarkAndGoesWithWhatItCameFrom)
{
    Window& maske = OeffneFahrt();
    const CVideoDat& dat = Daten(maske);
    Press(maske, IDC_VIDEO_KALIBRIEREN);
    Kalibriere(maske);
    for (int bild = 0; bild < 4; ++bild)
        Klicke(maske, Ort(bild));
    ASSERT_TRUE(Angeboten(maske));
    EXPECT_NE(Texte(maske, false).find("Vorschlag "), std::string::npos) << Texte(maske, false);
    EXPECT_EQ(Texte(maske, true).find("Vorschlag"), std::string::npos) << "a report shows what counts";
    EXPECT_EQ(dat.zeit.size(), 2U);
    EXPECT_EQ(dat.objekte, 0);
    const auto imFall = data.MaskenWerte(494);
    EXPECT_EQ(imFall.at("spur_1").size(), 2U + 4U * 8U);

    // Elsewhere, with another tool, for another ID: none. Back again: the same.
    const auto wegUndWieder = [&](const std::function<void()>& weg, const std::function<void()>& wieder) {
        weg();
        EXPECT_FALSE(Angeboten(maske));
        EXPECT_EQ(Texte(maske, false).find("Vorschlag"), std::string::npos);
        wieder();
        EXPECT_TRUE(Angeboten(maske));
    };
    wegUndWieder([&] { Press(maske, IDC_VIDEO_VOR); }, [&] { Press(maske, IDC_VIDEO_ZURUECK); });
    wegUndWieder([&] { Press(maske, IDC_VIDEO_KALIBRIEREN); }, [&] { Press(maske, IDC_VIDEO_VERFOLGEN); });
    wegUndWieder([&] { Press(maske, IDC_VIDEO_NEUE_ID); }, [&] { framework::Select(Control(maske, IDC_VIDEO_ID), 0); });
    EXPECT_EQ(dat.Spur()->eintraege.size(), 4U);
    // A click elsewhere replaces it.
    const VisionPoint daneben{300.0, 300.0};
    Klicke(maske, daneben);
    ASSERT_EQ(dat.Spur()->eintraege.size(), 5U);
    EXPECT_EQ(dat.Spur()->eintraege.back().punkt.point.x, daneben.x);
    Press(maske, IDC_VIDEO_RUECKNAHME);
    EXPECT_FALSE(Angeboten(maske)) << "what it came from is gone";
    Klicke(maske, Ort(4));
    ASSERT_TRUE(Angeboten(maske));
    GeheZu(maske, 4);
    Ziehe(maske, Ort(4), {Ort(4).x + 12.0, Ort(4).y});
    Press(maske, IDC_VIDEO_VOR);
    EXPECT_FALSE(Angeboten(maske)) << "the click that it came from lies elsewhere now";
}
