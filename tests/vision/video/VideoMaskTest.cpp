// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The video analysis by hand: calibrated, clicked, changed, taken back, kept and transferred.
#include "casefile/CaseFile.h"
#include "casefile/CaseHistory.h"
#include "tests/vision/video/VideoMaskFixture.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace
{

using framework::Window;
using test::kBilder;
using test::kKamera;
using test::kTakt;
using test::Zeiten;

class VideoMaskTest : public test::VideoMaskFixture
{
};

// The times are uneven: with those of the mean rate single speeds would be off by up to a third.
TEST_F(VideoMaskTest, AKnownSpeedIsReadBack)
{
    Window& maske = Oeffne(Video("fahrt.mp4"));
    EXPECT_EQ(Daten(maske).rate, 0.0);
    Kalibriere(maske);
    EXPECT_NEAR(Daten(maske).kameraHoehe, 6.0, 0.01);
    EXPECT_EQ(Daten(maske).faktor, 1.0);
    Verfolge(maske, 60.2);
    const CVideoDat& dat = Daten(maske);
    ASSERT_EQ(dat.ids, std::vector<std::int64_t>{1});
    ASSERT_EQ(dat.zeit.size(), 37U); // of 39 clicks all but the first two
    for (std::size_t i = 0; i < dat.zeit.size(); ++i) {
        EXPECT_NEAR(dat.geschwindigkeit[i], 60.2, 0.01) << i;
        EXPECT_NEAR(dat.ausgleich[i], 60.2, 0.01) << i;
        EXPECT_EQ(dat.bild[i], static_cast<std::int64_t>(i) + 2);
    }
    EXPECT_NEAR(dat.mittel, 60.2, 0.01);
    EXPECT_GT(dat.mittelU, 0.05);
    EXPECT_LT(dat.mittelU, 2.0);
    EXPECT_EQ(Diagramm(maske).State().rows, 37U);
    EXPECT_EQ(dat.bildnummer, 39); // every click went one frame on
    EXPECT_EQ(dat.objekte, 0);
    Press(maske, IDC_VIDEO_ZURUECK);
    EXPECT_EQ(dat.objekte, 1);
    EXPECT_EQ(dat.Beschriftung(1, 38), 61); // round(60.2 + 0.5)
}

TEST_F(VideoMaskTest, PointsAboveTheRoadAreCorrectedByTheCamerasHeight)
{
    Window& maske = Oeffne(Video("fahrt.mp4"));
    Kalibriere(maske);
    Verfolge(maske, 60.0, 20, 0.0, 0.72);
    EXPECT_NEAR(Daten(maske).mittel, 60.0 * 6.0 / (6.0 - 0.72), 0.05);
    Enter(maske, IDC_VIDEO_PUNKTHOEHE, "0,72");
    EXPECT_NEAR(Daten(maske).faktor, 0.88, 0.0003);
    EXPECT_NEAR(Daten(maske).mittel, 60.0, 0.05);
    Enter(maske, IDC_VIDEO_KAMERAHOEHE, "7,2");
    EXPECT_NEAR(Daten(maske).faktor, 0.9, 1e-12);
    Press(maske, IDC_VIDEO_FAKTOR_MINUS);
    EXPECT_NEAR(Daten(maske).faktor, 0.89, 1e-12);
    EXPECT_NEAR(Daten(maske).geschwindigkeit.front(), 60.0 / 0.88 * 0.89, 0.05);
    Enter(maske, IDC_VIDEO_FAKTOR, "0");
    EXPECT_NEAR(Daten(maske).faktor, 0.9, 1e-12);
    Enter(maske, IDC_VIDEO_KAMERAHOEHE, "0");
    EXPECT_NEAR(Daten(maske).kameraHoehe, 6.0, 0.01);
}

// Every number and drawing after a change is that of a calibration made anew with what is shown.
TEST_F(VideoMaskTest, AMovedPointMovesEverySpeed)
{
    Window& maske = Oeffne(Video("fahrt.mp4"));
    Kalibriere(maske);
    Verfolge(maske, 60.0, 20);
    Press(maske, IDC_VIDEO_NEUE_ID);
    Enter(maske, IDC_VIDEO_ZEIT, "0");
    Verfolge(maske, 40.0, 20);
    Diagramm(maske).SetRange({2, 10});
    const auto pruefe = [&](const char* was) {
        SCOPED_TRACE(was);
        CVideoDat& dat = Daten(maske);
        const CPerspectiveRectifier strasse = test::Calibrated(dat.Strasseneingabe());
        ASSERT_EQ(strasse.Fault(), RoadFault::none);
        const VideoSpeeds neu(strasse, {.fps = dat.bilderJeSekunde,
                                        .pointHeight = dat.punktHoehe,
                                        .strengthUncertainty = dat.Staerke() != 0.0 ? 2.0 : 0.0});
        const std::vector<VideoEntry> eintraege = dat.Spur()->Eintraege();
        const auto v = neu.Of(eintraege);
        ASSERT_EQ(v.size(), dat.zeit.size());
        for (std::size_t i = 0; i < v.size(); ++i) {
            EXPECT_EQ(v[i].speed, dat.geschwindigkeit[i]);
            EXPECT_EQ(v[i].uncertainty, dat.unsicherheit[i]);
        }
        EXPECT_EQ(dat.Beschriftung(1, 15).has_value(), true);
        const auto range = Diagramm(maske).Range();
        ASSERT_TRUE(range);
        EXPECT_EQ(Diagramm(maske).Statistics()->lowest,
                  *std::min_element(dat.ausgleich.begin() + 2, dat.ausgleich.begin() + 11));
    };
    const double vorher = Daten(maske).geschwindigkeit[3];
    const int schildVorher = *Daten(maske).Beschriftung(1, 15);
    pruefe("clicked");
    const VisionPoint p3 = kKamera.See(-3.5, 20.0);
    Ziehe(maske, p3, {p3.x + 40.0, p3.y + 6.0});
    pruefe("dragged");
    EXPECT_GT(std::abs(Daten(maske).geschwindigkeit[3] - vorher), 0.5);
    EXPECT_NE(*Daten(maske).Beschriftung(1, 15), schildVorher);
    framework::MoveTrackbar(Control(maske, IDC_VIDEO_LINSE), 30);
    const double ohneLinse = Daten(maske).geschwindigkeit[3];
    Press(maske, IDC_VIDEO_VERZEICHNUNG);
    pruefe("with a lens");
    EXPECT_NE(Daten(maske).geschwindigkeit[3], ohneLinse);
    Press(maske, IDC_VIDEO_QUADRAT_FREI);
    pruefe("another shape");
    // Keys: a tenth of a pixel each.
    const VisionPoint ort = Daten(maske).Punkte()[2];
    Press(maske, IDC_VIDEO_KALIBRIEREN);
    for (int i = 0; i < 3; ++i)
        framework::Key(Control(maske, IDC_VIDEO_BILD), {VK_LEFT});
    EXPECT_NEAR(Daten(maske).Punkte()[2].x, ort.x - 0.3, 1e-9);
    pruefe("by keys");
}

TEST_F(VideoMaskTest, EveryStepIsTakenBackAndTheCaseOpensAsItWas)
{
    casefile::CaseHistory schritte(data);
    Window& maske = Oeffne(Video("fahrt.mp4"));
    Kalibriere(maske);
    std::vector<std::string> zustaende;
    const auto schritt = [&] {
        Enter(maske, IDC_VIDEO_ZEIT, "0");
        ASSERT_TRUE(schritte.Commit("Schritt"));
        zustaende.push_back(Zustand(maske));
    };
    schritt();
    Verfolge(maske, 50.0, 12);
    schritt();
    Press(maske, IDC_VIDEO_RUECKNAHME);
    EXPECT_EQ(Daten(maske).Spur()->eintraege.size(), 11U);
    schritt();
    Enter(maske, IDC_VIDEO_FAKTOR, "0,95");
    Diagramm(maske).SetRange({1, 5});
    schritt();
    Press(maske, IDC_VIDEO_RESET);
    EXPECT_TRUE(Daten(maske).ids.empty());
    EXPECT_EQ(Daten(maske).Punkte().size(), 4U);
    EXPECT_TRUE(Diagramm(maske).IsEmpty());
    schritt();
    for (std::size_t i = zustaende.size() - 1; i-- > 0;) {
        ASSERT_TRUE(schritte.Undo());
        thread.DispatchPending();
        EXPECT_EQ(Zustand(maske), zustaende[i]) << i;
    }
    for (std::size_t i = 1; i < zustaende.size() - 1; ++i) {
        ASSERT_TRUE(schritte.Redo());
        thread.DispatchPending();
        EXPECT_EQ(Zustand(maske), zustaende[i]) << i;
    }
    const std::string pfad = folder.File("fall.json");
    casefile::MovePictures(data, "", pfad);
    EXPECT_EQ(data.Video().datei, "fahrt.mp4");
    ASSERT_TRUE(casefile::SaveCase(pfad, data));
    Schliesse(maske);
    ASSERT_TRUE(casefile::LoadCase(pfad, data));
    Window& wieder = OpenMask(494);
    EXPECT_EQ(Zustand(wieder), zustaende[zustaende.size() - 2]);
    EXPECT_EQ(Text(wieder, IDC_IMPORT_PFAD), folder.File("fahrt.mp4"));
}

TEST_F(VideoMaskTest, AnotherFileDropsWhatBelongsToTheOneBefore)
{
    const std::string erste = Video("fahrt.mp4");
    const std::string andere = Video("andere.mp4", 5);
    std::filesystem::copy_file(erste, folder.File("kopie.mp4"));
    Window& maske = Oeffne(erste);
    Kalibriere(maske);
    Verfolge(maske, 60.0, 10);
    Press(maske, IDC_VIDEO_VERZEICHNUNG);
    framework::MoveTrackbar(Control(maske, IDC_VIDEO_LINSE), 20);
    Enter(maske, IDC_VIDEO_KAMERAHOEHE, "5");
    const std::string vorher = Zustand(maske);
    Waehle(maske, folder.File("kopie.mp4")); // the same video elsewhere
    Enter(maske, IDC_VIDEO_ZEIT, Videozeit(static_cast<double>(Zeiten()[10]) / kTakt));
    EXPECT_EQ(Zustand(maske), vorher);
    // What is no video changes nothing and says why.
    std::ofstream(folder.File("text.mp4")) << "kein Video";
    std::ofstream(folder.File("leer.avi")).flush();
    for (const std::string& pfad : {folder.File("text.mp4"), folder.File("leer.avi"), folder.Path()}) {
        const std::size_t meldungen = front.messages.size();
        front.files = {pfad};
        Dialog(maske).SendMessage(WM_COMMAND, IDC_IMPORT_WAEHLEN);
        thread.DispatchPending();
        EXPECT_EQ(Zustand(maske), vorher) << pfad;
        if (front.messages.size() == meldungen) {
            EXPECT_FALSE(Status(maske).empty()) << pfad;
        }
    }
    Waehle(maske, andere);
    EXPECT_TRUE(Daten(maske).Punkte().empty());
    EXPECT_TRUE(Daten(maske).ids.empty());
    EXPECT_TRUE(Daten(maske).geschwindigkeit.empty());
    EXPECT_EQ(Daten(maske).Staerke(), 0.0);
    EXPECT_FALSE(Daten(maske).KameraHoeheIstGetippt());
    EXPECT_EQ(Daten(maske).abstaende[0], 7.0);
}

// A changed or missing file is said; the speeds stay those of the clicks.
TEST_F(VideoMaskTest, AFileThatChangedOrWentIsNotShown)
{
    const std::string pfad = Video("fahrt.mp4");
    Window& maske = Oeffne(pfad);
    Kalibriere(maske);
    Verfolge(maske, 60.0, 10);
    const std::vector<double> tempo = Daten(maske).geschwindigkeit;
    Schliesse(maske);
    std::filesystem::rename(Video("andere.mp4", 5), pfad);
    Window& geaendert = OpenMask(494);
    EXPECT_NE(Status(geaendert).find("nicht mehr die, die ausgewertet wurde"), std::string::npos) << Status(geaendert);
    EXPECT_EQ(Daten(geaendert).geschwindigkeit, tempo);
    Klicke(geaendert, {100.0, 100.0});
    EXPECT_EQ(Daten(geaendert).geschwindigkeit, tempo);
    Schliesse(geaendert);
    std::filesystem::remove(pfad);
    Window& weg = OpenMask(494);
    EXPECT_NE(Status(weg).find("fehlt"), std::string::npos) << Status(weg);
    EXPECT_EQ(Daten(weg).geschwindigkeit, tempo);
}

TEST_F(VideoMaskTest, ATransferWritesTheCurveThatIsShown)
{
    Window& maske = Oeffne(Video("fahrt.mp4"));
    Kalibriere(maske);
    Verfolge(maske, 60.0, 35, 7.5); // down to some 19 km/h in 1.5 s
    const CVideoDat& dat = Daten(maske);
    EXPECT_FALSE(Control(maske, IDOK).enabled);
    Diagramm(maske).SetRange({0, dat.zeit.size() - 1});
    EXPECT_TRUE(Text(maske, IDC_IMPORT_HINWEIS).starts_with("Ein Transfer schreibt: Weg "))
        << Text(maske, IDC_IMPORT_HINWEIS);
    Press(maske, IDOK);
    ASSERT_TRUE(IsWindow(maske.handle)); // it stays open
    EXPECT_EQ(TransferNews(), std::vector<std::string>{"main 0"});
    EXPECT_TRUE(Text(maske, IDC_IMPORT_HINWEIS).starts_with("Weg ")) << Text(maske, IDC_IMPORT_HINWEIS);
    // Backwards from the last moment: the sum of the times is exact, each phase begins and ends on the curve, and
    // between its ends the curve is no more than 1 km/h from it.
    double zeit = dat.zeit.back();
    double weg = 0.0;
    std::size_t i = dat.zeit.size() - 1;
    int phasen = 0;
    for (std::size_t s = CWegZeitDat::kErsteSpalte; data.WZRechDat(0).spalten[s].IsUsed(); ++s, ++phasen) {
        const CWegZeitSpalte& spalte = data.WZRechDat(0).spalten[s];
        EXPECT_NEAR(spalte.vEnd, dat.ausgleich[i], 1e-9);
        const double anfang = zeit - spalte.zeit;
        for (; i > 0 && dat.zeit[i] > anfang + 1e-9; --i) {
            const double teil = (dat.zeit[i] - anfang) / spalte.zeit;
            EXPECT_NEAR(spalte.vAnf + teil * (spalte.vEnd - spalte.vAnf), dat.ausgleich[i], 1.0) << dat.zeit[i];
        }
        EXPECT_NEAR(spalte.vAnf, dat.ausgleich[i], 1e-9);
        zeit = anfang;
        weg += spalte.weg;
    }
    EXPECT_EQ(i, 0U);
    EXPECT_NEAR(zeit, dat.zeit.front(), 1e-9);
    EXPECT_GE(phasen, 1);
    EXPECT_LT(phasen, 12); // thinned
    const double v0 = 60.0 / 3.6;
    const auto gefahren = [v0](double t) { return v0 * t - 7.5 / 2.0 * t * t; };
    EXPECT_NEAR(weg, gefahren(dat.zeit.back()) - gefahren(dat.zeit.front()), 0.15);
    // From a late phase on fewer fit: it gets coarser, and is still the whole of the time.
    const double dauer = dat.zeit.back() - dat.zeit.front();
    Daten(maske).auswahl.phase = 45;
    const auto grob = dat.MacheVerlauf(0, dat.zeit.size() - 1);
    EXPECT_LE(grob.zeilen.size(), 3U);
    double summe = 0.0;
    for (const Fahrzeile& zeile : grob.zeilen)
        summe += zeile.zeitschritt;
    EXPECT_NEAR(summe, dauer, 1e-12);
}

TEST_F(VideoMaskTest, ChosenFrameLengthsReplaceTheMeasuredOnesOfOneId)
{
    Window& maske = Oeffne(Video("fahrt.mp4"));
    Kalibriere(maske);
    Verfolge(maske, 60.0, 20);
    Press(maske, IDC_VIDEO_NEUE_ID);
    Enter(maske, IDC_VIDEO_ZEIT, "0");
    Verfolge(maske, 40.0, 20);
    const std::vector<double> gemessen = Daten(maske).geschwindigkeit;
    const auto zeiten = Zeiten();
    front.duringModal = [&](Window& dialog) {
        Window& tabelle = Control(dialog, IDC_FRAME_LAENGEN);
        ASSERT_EQ(tabelle.grid->rows.size(), 20U);
        EXPECT_EQ(tabelle.grid->rows[0][2], "–");
        EXPECT_EQ(tabelle.grid->rows[3][1], RuvNumberText(static_cast<double>(zeiten[3] - zeiten[2]) / kTakt, 6));
        for (const char* schlecht : {"0", "-0,04", "vier", "1e400"})
            EXPECT_EQ(framework::EnterCell(tabelle, 5, 2, schlecht), framework::InputResult::refused) << schlecht;
        EXPECT_EQ(Daten(maske).geschwindigkeit, gemessen);
        framework::SelectRows(tabelle, 1, 19);
        framework::EnterCell(tabelle, 4, 2, "0,05");
        EXPECT_EQ(Control(dialog, IDC_FRAME_GEWAEHLT).check, 1);
        // Six frames of 0.05 s instead of those measured.
        for (std::size_t i = 4; i < gemessen.size(); ++i) {
            const double dt = static_cast<double>(zeiten[i + 2] - zeiten[i - 4]) / kTakt;
            EXPECT_NEAR(Daten(maske).geschwindigkeit[i], gemessen[i] * dt / 0.3, 1e-9) << i;
        }
        framework::Click(Control(dialog, IDC_FRAME_GEMESSEN));
        EXPECT_EQ(Daten(maske).geschwindigkeit, gemessen);
        framework::Click(Control(dialog, IDC_FRAME_GEWAEHLT));
        EXPECT_NE(Daten(maske).geschwindigkeit, gemessen);
        framework::Select(Control(dialog, IDC_FRAME_ID), 0); // the other one has its own
        EXPECT_NEAR(Daten(maske).mittel, 60.0, 0.01);
        framework::Select(Control(dialog, IDC_FRAME_ID), 1);
        EXPECT_NE(Daten(maske).geschwindigkeit, gemessen);
        framework::Click(Control(dialog, IDC_FRAME_RESET));
        EXPECT_EQ(Daten(maske).geschwindigkeit, gemessen);
        framework::Click(Control(dialog, IDOK));
    };
    Press(maske, IDC_VIDEO_FRAMES);
    EXPECT_EQ(Daten(maske).geschwindigkeit, gemessen);
}

// What a case from elsewhere holds is taken only where it makes sense.
TEST_F(VideoMaskTest, NonsenseInACaseIsLeftOut)
{
    CMaskenWerte& werte = data.MaskenWerte(494);
    werte["muster"] = {9.0};
    werte["abstand12"] = {-3.0};
    werte["ausgleichsspanne"] = {1e6};
    werte["punkte"] = {1.0, 2.0, 1e300, 4.0, 5.0};
    werte["id"] = {7.0};
    werte["spur_2"] = {0.0, 0.0, 5.0, 0.2, 1.0, 1.0, 0.0, 0.0, 0.0,
                       0.0, 4.0, 0.3, 1.0, 1.0, 0.0, 0.0, 0.0, 0.0}; // back to an earlier frame
    werte["spur_3"] = {0.0, 0.0, 5.0, 0.2, 1.0, 1.0, 0.0, 0.0, 0.0, 0.0};
    werte["spur_x"] = {1.0};
    Window& maske = OpenMask(494);
    const CVideoDat& dat = Daten(maske);
    EXPECT_EQ(dat.muster, 0);
    EXPECT_EQ(dat.abstaende[0], 0.0);
    EXPECT_EQ(dat.ausgleichsspanne, 1.0);
    EXPECT_EQ(dat.Punkte().size(), 1U);
    EXPECT_EQ(dat.id, 0);
    EXPECT_EQ(dat.ids, std::vector<std::int64_t>{3});
}

} // namespace
