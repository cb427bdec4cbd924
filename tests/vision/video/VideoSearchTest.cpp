// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What plays and searches, and the lens. The network lies beside the test program, or does not: one suite, since suites
// run at the same time.
#include "casefile/CaseHistory.h"
#include "tests/vision/video/VideoMaskFixture.h"

#include <cstdlib>

namespace
{

using framework::Window;
using test::kBilder;
using test::kFahrzeuge;
using test::kKamera;
using test::kTakt;
using test::Netz;
using test::RoadCamera;
using test::Zeiten;

class VideoSearchTest : public test::VideoMaskFixture
{
};

TEST_F(VideoSearchTest, TimesPlaybackAndWhatIsNotThere)
{
    Window& maske = OpenMask(494);
    for (const int knopf : {IDC_VIDEO_VOR, IDC_VIDEO_PLAY, IDC_VIDEO_KOMPLETT}) {
        Press(maske, static_cast<UINT>(knopf));
        EXPECT_EQ(Status(maske), "Zuerst ein Video wählen.");
    }
    Waehle(maske, Video("fahrt.mp4"));
    const auto zeiten = Zeiten();
    const auto sekunden = [&](int bild) { return static_cast<double>(zeiten[static_cast<std::size_t>(bild)]) / kTakt; };
    for (int bild = 0; bild < kBilder; ++bild) { // what is shown, typed again, is the same frame
        Enter(maske, IDC_VIDEO_ZEIT, Videozeit(sekunden(bild)));
        EXPECT_EQ(Daten(maske).bildnummer, bild);
        EXPECT_EQ(Text(maske, IDC_VIDEO_ZEIT), Videozeit(sekunden(bild)));
    }
    Enter(maske, IDC_VIDEO_ZEIT, Videozeit(sekunden(7) - 0.002));
    EXPECT_EQ(Daten(maske).bildnummer, 6);
    for (const char* schlecht : {"eins", "1:75", "-1", "1:2:3:4", "1,5:20"})
        EXPECT_EQ(Enter(maske, IDC_VIDEO_ZEIT, schlecht), framework::InputResult::refused) << schlecht;
    EXPECT_EQ(Daten(maske).bildnummer, 6);
    EXPECT_EQ(Videozeit(3723.0456), "01:02:03.046");
    EXPECT_EQ(LiesVideozeit("1:02:03,046"), 3723.046);
    // Played to its end, frame by frame.
    Press(maske, IDC_VIDEO_PLAY);
    EXPECT_EQ(Text(maske, IDC_VIDEO_PLAY), "Pause");
    for (int i = 0; i < kBilder; ++i)
        thread.FireTimer(maske.handle, 1);
    EXPECT_EQ(Daten(maske).bildnummer, kBilder - 1);
    EXPECT_EQ(Text(maske, IDC_VIDEO_PLAY), "Reset and Play");
    Press(maske, IDC_VIDEO_PLAY);
    EXPECT_EQ(Daten(maske).bildnummer, 0);
    thread.FireTimer(maske.handle, 1);
    EXPECT_EQ(Daten(maske).bildnummer, 1);
    // Without a network there is no analysis, no question and no message.
    Press(maske, IDC_VIDEO_KOMPLETT);
    EXPECT_TRUE(Status(maske).starts_with("Keine Komplettanalyse: ")) << Status(maske);
    EXPECT_TRUE(front.messages.empty());
}

// One playing after the other finds what the analysis of all frames does, and is one step of the case.
TEST_F(VideoSearchTest, PlayingFollowsWhatTheNetworkSees)
{
    const Netz netz;
    Window& maske = OeffneFahrzeuge();
    Klicke(maske, kKamera.See(-1.0, 15.0)); // ID 1, by hand
    GeheZu(maske, 0);
    casefile::CaseHistory schritte(data);
    const CVideoDat& dat = Daten(maske);
    Spiele(maske, 19);
    EXPECT_EQ(dat.bildnummer, 19);
    EXPECT_EQ(dat.ids, (std::vector<std::int64_t>{1, 2, 3}));
    EXPECT_EQ(dat.objekte, 2);
    for (const int id : {2, 3}) {
        ErwarteBilder(maske, id, 0, 19);
        const test::RoadVehicle& fahrzeug =
            kFahrzeuge[dat.Spuren().at(id).eintraege[0].punkt.point.x < kKamera.width / 2.0 ? 0 : 1];
        for (const Videospur::Eintrag& e : dat.Spuren().at(id).eintraege) {
            const VideoBox kasten = fahrzeug.At(Sekunden(e.punkt.frame), kKamera);
            EXPECT_LT(Distance(e.punkt.point, kasten.Centre()), 1.5) << e.punkt.frame;
            EXPECT_NEAR(e.breite, kasten.w, 3.0) << e.punkt.frame;
        }
        ASSERT_TRUE(dat.Beschriftung(id, 19));
        EXPECT_NEAR(*dat.Beschriftung(id, 19), std::abs(fahrzeug.v) * 3.6, 6.0);
    }
    EXPECT_EQ(dat.id, 1); // the one that was chosen
    EXPECT_FALSE(ImFall("spur_2"));
    Press(maske, IDC_VIDEO_PLAY);
    EXPECT_TRUE(ImFall("spur_2"));
    EXPECT_NE(Bericht(maske).find("unvollständig, nur 20 Bilder ab Bild 1\n"), std::string::npos) << Bericht(maske);
    const std::string halb = Zustand(maske);
    ASSERT_TRUE(schritte.Commit("Play"));
    // On from there, up to the end: what was seen is seen on.
    Spiele(maske, kBilder);
    EXPECT_EQ(Text(maske, IDC_VIDEO_PLAY), "Reset and Play");
    EXPECT_EQ(dat.ids, (std::vector<std::int64_t>{1, 2, 3}));
    EXPECT_NE(Bericht(maske).find("alle 40 Bilder\n"), std::string::npos) << Bericht(maske);
    const auto gespielt = dat.Spuren();
    ASSERT_TRUE(schritte.Commit("Play"));
    front.answers[1980] = IDOK;
    Press(maske, IDC_VIDEO_KOMPLETT);
    EXPECT_EQ(TakeMessages(), (std::vector<UINT>{1980, 30202}));
    EXPECT_EQ(dat.Spuren(), gespielt);
    // A whole analysis stands, whatever is played after it.
    Enter(maske, IDC_VIDEO_FLAECHE_MIN, "100000");
    GeheZu(maske, 5);
    Spiele(maske, 3);
    Press(maske, IDC_VIDEO_PLAY);
    EXPECT_EQ(dat.Spuren(), gespielt);
    GeheZu(maske, 19);
    schritte.Revert();
    ASSERT_TRUE(schritte.Undo());
    thread.DispatchPending();
    EXPECT_EQ(Zustand(maske), halb);
    ErwarteBilder(maske, 2, 0, 19);
    // The tracker went with what it had followed, its frames are not searched twice.
    GeheZu(maske, 3);
    Spiele(maske, 10);
    Press(maske, IDC_VIDEO_PLAY);
    ErwarteBilder(maske, 2, 0, 19);
    ASSERT_TRUE(schritte.Undo());
    thread.DispatchPending();
    EXPECT_EQ(dat.ids, std::vector<std::int64_t>{1});
}

TEST_F(VideoSearchTest, PlayedFromElsewhereTheSearchBeginsAnewAndSaysSo)
{
    const Netz netz;
    Window& maske = OeffneFahrzeuge();
    const CVideoDat& dat = Daten(maske);
    Spiele(maske, 5);
    Press(maske, IDC_VIDEO_PLAY);
    EXPECT_EQ(dat.id, 1); // found first, nothing else was there to choose
    Press(maske, IDC_VIDEO_NEUE_ID);
    Klicke(maske, kKamera.See(-1.0, 15.0)); // ID 3, by hand
    Spiele(maske, 2);                       // from frame 6 on, as before
    Press(maske, IDC_VIDEO_PLAY);
    ErwarteBilder(maske, 2, 0, 8);
    EXPECT_EQ(dat.ids, (std::vector<std::int64_t>{1, 2, 3}));
    GeheZu(maske, 20);
    Spiele(maske, 4);
    EXPECT_TRUE(Status(maske).starts_with("Ab Bild 21 sucht der Detektor von vorn;")) << Status(maske);
    EXPECT_EQ(dat.ids, (std::vector<std::int64_t>{3, 4, 5}));
    ErwarteBilder(maske, 4, 20, 24);
    EXPECT_NE(Bericht(maske).find("unvollständig, nur 5 Bilder ab Bild 21\n"), std::string::npos) << Bericht(maske);
    Press(maske, IDC_VIDEO_PLAY);
    GeheZu(maske, 21); // seen already
    Spiele(maske, 6);
    ErwarteBilder(maske, 4, 20, 27);
    // Other limits are another search.
    Enter(maske, IDC_VIDEO_FLAECHE_MIN, "100000");
    thread.FireTimer(maske.handle, 1);
    EXPECT_EQ(dat.ids, std::vector<std::int64_t>{3});
    EXPECT_EQ(dat.analysiertAb, 28);
    // Closed while it plays, the case keeps what was seen.
    Enter(maske, IDC_VIDEO_FLAECHE_MIN, "0");
    thread.FireTimer(maske.handle, 1);
    ErwarteBilder(maske, 4, 29, 29);
    Schliesse(maske);
    EXPECT_EQ(data.MaskenWerte(494)["analysiertAb"], std::vector<double>{29.0});
    EXPECT_TRUE(ImFall("spur_4"));
}

TEST_F(VideoSearchTest, TheButtonAgainEndsTheAnalysisAndPlayingGoesOnWithIt)
{
    const Netz netz;
    Window& maske = OeffneFahrzeuge();
    front.answers[1980] = IDOK;
    int schritt = 0;
    front.progress = [&](const std::string&, double) {
        EXPECT_EQ(Text(maske, IDC_VIDEO_KOMPLETT), std::to_string(schritt + 1));
        if (++schritt == 8)
            framework::Click(Control(maske, IDC_VIDEO_KOMPLETT));
        return true;
    };
    Press(maske, IDC_VIDEO_KOMPLETT);
    front.progress = {};
    EXPECT_EQ(schritt, 8);
    EXPECT_EQ(TakeMessages(), std::vector<UINT>{1980});
    EXPECT_EQ(Status(maske), "Die Analyse ist unvollständig: Sie wurde abgebrochen.");
    EXPECT_EQ(Text(maske, IDC_VIDEO_KOMPLETT), "&Komplettanalyse");
    ErwarteBilder(maske, 1, 0, 6);
    EXPECT_EQ(Daten(maske).unvollstaendig, 1);
    GeheZu(maske, 7);
    Spiele(maske, 3);
    Press(maske, IDC_VIDEO_PLAY);
    ErwarteBilder(maske, 1, 0, 10);
    ErwarteBilder(maske, 2, 0, 10);
}

TEST_F(VideoSearchTest, TheLogSaysWhatWasDoneAndWhatFailed)
{
    const std::string log = folder.File("log.txt");
    ::setenv("TAVELIN_LOG", log.c_str(), 1);
    Window& ohne = OpenMask(494);
    Press(ohne, IDC_VIDEO_KOMPLETT);
    Waehle(ohne, Video("fahrt.mp4"));
    Spiele(ohne, 2);
    Press(ohne, IDC_VIDEO_PLAY);
    Schliesse(ohne);
    const std::string modell = *DetectorModelPath();
    const std::string offen = "[CVideoDlg::BuildObjects] Video analysis building objects started...\n"
                              "[CVideoDlg::BuildObjects] Video analysis building objects finished successfully!\n"
                              "[CVideoDlg::SetupWindow] Video analysis module opened!\n";
    EXPECT_EQ(folder.Read("log.txt"), offen +
                                          "[CVideoDlg::AnalyzeVideo] Analyzing video failed. Path does not exist\n"
                                          "[CVideoDlg::InitVideoReader] Video reader initialized properly!\n"
                                          "[CVideoDlg::LoadVideo] Loaded new video: " +
                                          folder.File("fahrt.mp4") +
                                          "\n[CVideoDlg::OnPlay] Play button pressed\n"
                                          "[CVideoDlg::InitObjDetector] Weight path: " +
                                          modell +
                                          "\n[CVideoDlg::InitObjDetector] Config path: \n"
                                          "[CVideoDlg::InitObjDetector] Object detector could not read the model\n"
                                          "[CVideoDlg::DetectTrackAndDrawObjs] Object detector,  is a null pointer\n"
                                          "[CVideoDlg::OnPlay] Pause button pressed\n"
                                          "[CVideoDlg::ShutDownWindow] Video analysis module closed!\n");
    const Netz netz;
    Window& mit = OeffneFahrzeuge();
    folder.Write("log.txt", "");
    Spiele(mit, 1);
    Press(mit, IDC_VIDEO_PLAY);
    ::unsetenv("TAVELIN_LOG");
    EXPECT_EQ(folder.Read("log.txt"), "[CVideoDlg::OnPlay] Play button pressed\n"
                                      "[CVideoDlg::InitObjDetector] Weight path: " +
                                          modell +
                                          "\n[CVideoDlg::InitObjDetector] Config path: \n"
                                          "[CVideoDlg::InitObjDetector] Object detector initialsed properly!\n"
                                          "[CVideoDlg::InitObjTracker] Initializing object tracker...\n"
                                          "[CVideoDlg::InitObjTracker] Object tracker initialsed properly!\n"
                                          "[CVideoDlg::DetectTrackAndDrawObjs] Detected vehicle ID: 1\n"
                                          "[CVideoDlg::DetectTrackAndDrawObjs] Detected vehicle ID: 2\n"
                                          "[CVideoDlg::OnPlay] Pause button pressed\n");
}

// A lens bends the road's edges: clicked, they tell how strongly and how surely, and 60 km/h are read as such.
TEST_F(VideoSearchTest, StraightEdgesTellTheLens)
{
    RoadCamera kamera = kKamera;
    kamera.strength = 35.4;
    Window& maske = Oeffne(Video("fahrt.mp4"));
    const CVideoDat& dat = Daten(maske);
    Press(maske, IDC_VIDEO_KANTE);
    EXPECT_EQ(Text(maske, IDC_VIDEO_NEUE_ID), "Neue Kante");
    for (const double x : {-6.0, 6.0}) {
        for (int i = 0; i < 6; ++i) {
            if (x < 0.0 && i < 3) {
                EXPECT_FALSE(dat.Linse()) << i; // two points are always straight
            }
            Klicke(maske, kamera.See(x, 12.0 + 5.0 * i));
        }
        Press(maske, IDC_VIDEO_NEUE_ID);
    }
    for (int i = 0; i < 8; ++i)
        Klicke(maske, kamera.See(-7.0 + 2.0 * i, 13.0));
    ASSERT_EQ(dat.Kanten().size(), 3U);
    EXPECT_TRUE(dat.ids.empty());
    ASSERT_TRUE(dat.Linse());
    EXPECT_NEAR(dat.Linse()->strength, 35.4, 0.01);
    EXPECT_TRUE(Text(maske, IDC_VIDEO_LINSE_VORSCHLAG).starts_with("Die geraden Kanten ergeben die Stärke 35,4 ± "))
        << Text(maske, IDC_VIDEO_LINSE_VORSCHLAG);
    EXPECT_EQ(dat.Staerke(), 0.0); // not before it is taken
    Press(maske, IDC_VIDEO_LINSE_NEHMEN);
    EXPECT_EQ(dat.Staerke(), dat.Linse()->strength);
    EXPECT_EQ(dat.linsenstaerke, 35);
    EXPECT_FALSE(Control(maske, IDC_VIDEO_LINSE_NEHMEN).enabled);
    Press(maske, IDC_VIDEO_KALIBRIEREN);
    EXPECT_EQ(Text(maske, IDC_VIDEO_NEUE_ID), "Neue &ID");
    Kalibriere(maske, kamera);
    Verfolge(maske, 60.0, 20, 0.0, 0.0, kamera);
    EXPECT_NEAR(dat.mittel, 60.0, 0.05);
    const auto erwarteUnsicherheit = [&](double u) {
        const VideoSpeeds v(dat.Strasse(), {.fps = dat.bilderJeSekunde, .strengthUncertainty = u});
        const auto mean = v.Mean(dat.Spur()->Eintraege());
        ASSERT_TRUE(mean);
        EXPECT_EQ(dat.mittelU, mean->uncertainty);
    };
    erwarteUnsicherheit(dat.Linse()->uncertainty);
    EXPECT_GT(std::abs(dat.Linse()->uncertainty - 2.0), 0.1);
    EXPECT_NE(Bericht(maske).find(" aus geraden Kanten; Kanten 3, Punkte 20\n"), std::string::npos) << Bericht(maske);
    casefile::CaseHistory schritte(data);
    const std::string vorher = Zustand(maske);
    // What was taken follows the points.
    Press(maske, IDC_VIDEO_KANTE);
    const VisionPoint ecke = kamera.See(-6.0, 12.0);
    Ziehe(maske, ecke, {ecke.x + 12.0, ecke.y});
    EXPECT_EQ(dat.Staerke(), dat.Linse()->strength);
    EXPECT_GT(std::abs(dat.Staerke() - 35.4), 1.0);
    ASSERT_TRUE(schritte.Commit("Punkt"));
    framework::MoveTrackbar(Control(maske, IDC_VIDEO_LINSE), 34);
    thread.DispatchPending();
    EXPECT_EQ(dat.Staerke(), 34.0);
    erwarteUnsicherheit(2.0);
    EXPECT_NE(Bericht(maske).find("Stärke 34,0 ± 4,0 (k = 2), von Hand gestellt\n"), std::string::npos)
        << Bericht(maske);
    Press(maske, IDC_VIDEO_LINSE_NEHMEN);
    Press(maske, IDC_VIDEO_RUECKNAHME);
    EXPECT_EQ(dat.Kanten().back().size(), 7U);
    Press(maske, IDC_VIDEO_PUNKTE_LOESCHEN);
    EXPECT_TRUE(dat.Kanten().empty());
    EXPECT_EQ(dat.Punkte().size(), 4U);
    EXPECT_EQ(dat.staerkeAusKanten, 0); // nothing is left that it is from
    ASSERT_TRUE(schritte.Commit("Linse"));
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(schritte.Undo());
        thread.DispatchPending();
    }
    GeheZu(maske, 20);
    EXPECT_EQ(Zustand(maske), vorher);
    Schliesse(maske);
    Window& wieder = OpenMask(494);
    GeheZu(wieder, 20);
    EXPECT_EQ(Zustand(wieder), vorher);
    EXPECT_EQ(Daten(wieder).Kanten().size(), 3U);
}

} // namespace
