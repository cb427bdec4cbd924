// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The video analysis worked as a user does: a video made here, points and vehicles clicked where a camera above a road
// sees them.
#include "masks/video/CVideoDlg.h"

#include "base/FileSystem.h"
#include "base/NumberText.h"
#include "casefile/CaseFile.h"
#include "casefile/CaseHistory.h"
#include "host/Charts.h"
#include "masks/video/VideoBindungen.h"
#include "res/video.h"
#include "tests/cli/CliProgram.h"
#include "tests/support/MaskFixture.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/vision/RoadCamera.h"
#include "tests/vision/video/VehicleVideo.h"

#include <cmath>
#include <filesystem>
#include <fstream>

namespace
{

using framework::Window;
using test::RoadCamera;

constexpr int kBilder = 40;
constexpr double kTakt = 12800.0; // 1/s
constexpr RoadCamera kKamera{640, 360, 500.0, 6.0, 12.0};

const std::vector<test::RoadVehicle> kFahrzeuge{{{1, 0, 0}, -1.75, 52.0, -50.0 / 3.6},
                                                {{0, 1, 0}, 1.75, 18.0, 60.0 / 3.6}};

/// A network beside the program, as long as this lives.
struct Netz {
    Netz()
    {
        std::filesystem::create_directories(datei.parent_path());
        std::filesystem::copy_file(std::string(TAVELIN_SOURCE_DIR) + "/tests/data/vision/detector.onnx", datei,
                                   std::filesystem::copy_options::overwrite_existing);
    }
    ~Netz() { std::filesystem::remove_all(datei.parent_path()); }
    const std::filesystem::path datei = *DetectorModelPath();
};

/// 30 to 55 ms apart and no pattern.
std::vector<std::int64_t> Zeiten(std::int64_t nach = 0)
{
    std::vector<std::int64_t> zeiten{nach};
    for (int i = 1; i < kBilder; ++i)
        zeiten.push_back(zeiten.back() + 384 + (i * 97) % 320);
    return zeiten;
}

class VideoMaskTest : public test::MaskTest
{
  protected:
    std::string Video(const std::string& name, int keyDistance = 12)
    {
        test::VideoPlan plan;
        plan.width = kKamera.width;
        plan.height = kKamera.height;
        plan.times = Zeiten();
        plan.keyDistance = keyDistance;
        test::WriteVideo(folder.File(name), plan);
        return folder.File(name);
    }
    Window& Oeffne(const std::string& pfad)
    {
        Window& maske = OpenMask(494);
        Waehle(maske, pfad);
        return maske;
    }
    void Waehle(Window& maske, const std::string& pfad)
    {
        front.files = {pfad};
        Press(maske, IDC_IMPORT_WAEHLEN);
    }
    static CVideoDlg& Dialog(Window& maske) { return *static_cast<CVideoDlg*>(maske.object); }
    static CVideoDat& Daten(Window& maske) { return Dialog(maske).Daten(); }
    /// The field shows the frame pixel by pixel.
    void Maus(Window& maske, CMouseEvent::Kind art, VisionPoint wo)
    {
        CMouseEvent ereignis{art, MouseButton::left, 0, {wo.x, wo.y}, 640.0, 360.0};
        framework::Mouse(Control(maske, IDC_VIDEO_BILD), ereignis);
        thread.DispatchPending();
    }
    void Klicke(Window& maske, VisionPoint wo)
    {
        Maus(maske, CMouseEvent::Kind::press, wo);
        Maus(maske, CMouseEvent::Kind::release, wo);
    }
    void Ziehe(Window& maske, VisionPoint von, VisionPoint nach)
    {
        Maus(maske, CMouseEvent::Kind::press, von);
        Maus(maske, CMouseEvent::Kind::move, {von.x + 5.0, von.y});
        Maus(maske, CMouseEvent::Kind::move, nach);
        Maus(maske, CMouseEvent::Kind::release, nach);
    }
    void Kalibriere(Window& maske, const RoadCamera& kamera = kKamera)
    {
        for (const auto& [x, y] : test::kLane)
            Klicke(maske, kamera.See(x, y));
        for (const int breite : {IDC_VIDEO_ABSTAND_12, IDC_VIDEO_ABSTAND_43})
            Enter(maske, static_cast<UINT>(breite), "7");
        for (const int laenge : {IDC_VIDEO_ABSTAND_24, IDC_VIDEO_ABSTAND_31})
            Enter(maske, static_cast<UINT>(laenge), "25");
    }
    /// A vehicle at `v0` km/h that brakes with `a` m/s², clicked in every frame from the one shown on.
    void Verfolge(Window& maske, double v0, int bilder = kBilder - 1, double a = 0.0, double z = 0.0,
                  const RoadCamera& kamera = kKamera)
    {
        const auto zeiten = Zeiten();
        for (int i = 0; i < bilder; ++i) {
            const double t = static_cast<double>(zeiten[static_cast<std::size_t>(i)]) / kTakt;
            Klicke(maske, kamera.See(-1.0, 15.0 + v0 / 3.6 * t - a / 2.0 * t * t, z));
        }
    }
    std::string Status(Window& maske) { return Text(maske, IDC_VIDEO_STATUS); }
    /// Two vehicles as the network sees them, and a field in which the frames are pixel by pixel.
    Window& OeffneFahrzeuge()
    {
        test::VideoPlan plan;
        plan.width = kKamera.width;
        plan.height = kKamera.height;
        plan.times = Zeiten();
        plan.draw = [](AVFrame& frame, int nummer) {
            std::vector<test::ColouredBox> kaesten;
            for (const test::RoadVehicle& fahrzeug : kFahrzeuge)
                kaesten.push_back({fahrzeug.At(Sekunden(nummer), kKamera), fahrzeug.colour});
            test::DrawBoxes(frame, kaesten);
        };
        test::WriteVideo(folder.File("fahrzeuge.mp4"), plan);
        Window& maske = Oeffne(folder.File("fahrzeuge.mp4"));
        Kalibriere(maske);
        return maske;
    }
    static double Sekunden(int bild) { return static_cast<double>(Zeiten()[static_cast<std::size_t>(bild)]) / kTakt; }
    void GeheZu(Window& maske, int bild) { Enter(maske, IDC_VIDEO_ZEIT, Videozeit(Sekunden(bild))); }
    void Spiele(Window& maske, int bilder)
    {
        Press(maske, IDC_VIDEO_PLAY);
        for (int i = 0; i < bilder; ++i)
            thread.FireTimer(maske.handle, 1);
    }
    /// The frames of an ID are these, without a gap.
    static void ErwarteBilder(Window& maske, int id, int von, int bis)
    {
        ASSERT_TRUE(Daten(maske).Spuren().contains(id)) << id;
        const auto& eintraege = Daten(maske).Spuren().at(id).eintraege;
        ASSERT_EQ(eintraege.size(), static_cast<std::size_t>(bis - von + 1)) << id;
        for (int bild = von; bild <= bis; ++bild)
            EXPECT_EQ(eintraege[static_cast<std::size_t>(bild - von)].punkt.frame, bild) << id;
    }
    static std::string Bericht(Window& maske)
    {
        std::string text;
        for (const auto& zeile : Control(maske, IDC_VIDEO_BERICHT).grid->rows)
            text += zeile.front() + '\n';
        return text;
    }
    bool ImFall(const std::string& name) { return data.MaskenWerte(494).contains(name); }
    static chart::Chart& Diagramm(Window& maske)
    {
        return dynamic_cast<chart::Chart&>(
            *static_cast<CChartCtrl*>(Control(maske, IDC_IMPORT_DIAGRAMM).object)->Client());
    }
    /// All that the record says, as text.
    static std::string Zustand(Window& maske)
    {
        std::string text;
        for (const RecordField& feld : Dialog(maske).DescribeRecord()) {
            text += std::string(feld.name) + ':';
            std::visit(
                [&](const auto* werte) {
                    for (std::size_t i = 0; i < feld.count; ++i)
                        text += ' ' + std::to_string(werte[i]);
                },
                feld.value);
            text += '\n';
        }
        return text;
    }

    test::TemporaryFolder folder;
};

} // namespace

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
    framework::CloseDialog(maske);
    thread.DispatchPending();
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
    framework::CloseDialog(maske);
    thread.DispatchPending();
    std::filesystem::rename(Video("andere.mp4", 5), pfad);
    Window& geaendert = OpenMask(494);
    EXPECT_NE(Status(geaendert).find("nicht mehr die, die ausgewertet wurde"), std::string::npos) << Status(geaendert);
    EXPECT_EQ(Daten(geaendert).geschwindigkeit, tempo);
    Klicke(geaendert, {100.0, 100.0});
    EXPECT_EQ(Daten(geaendert).geschwindigkeit, tempo);
    framework::CloseDialog(geaendert);
    thread.DispatchPending();
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

TEST_F(VideoMaskTest, TimesPlaybackAndWhatIsNotThere)
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
TEST_F(VideoMaskTest, PlayingFollowsWhatTheNetworkSees)
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

TEST_F(VideoMaskTest, PlayedFromElsewhereTheSearchBeginsAnewAndSaysSo)
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
    framework::CloseDialog(maske);
    thread.DispatchPending();
    EXPECT_EQ(data.MaskenWerte(494)["analysiertAb"], std::vector<double>{29.0});
    EXPECT_TRUE(ImFall("spur_4"));
}

TEST_F(VideoMaskTest, TheButtonAgainEndsTheAnalysisAndPlayingGoesOnWithIt)
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

// A lens bends the road's edges: clicked, they tell how strongly and how surely, and 60 km/h are read as such.
TEST_F(VideoMaskTest, StraightEdgesTellTheLens)
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
    framework::CloseDialog(maske);
    thread.DispatchPending();
    Window& wieder = OpenMask(494);
    GeheZu(wieder, 20);
    EXPECT_EQ(Zustand(wieder), vorher);
    EXPECT_EQ(Daten(wieder).Kanten().size(), 3U);
}

TEST_F(VideoMaskTest, TheLogSaysWhatWasDoneAndWhatFailed)
{
    const std::string log = folder.File("log.txt");
    ::setenv("TAVELIN_LOG", log.c_str(), 1);
    Window& ohne = OpenMask(494);
    Press(ohne, IDC_VIDEO_KOMPLETT);
    Waehle(ohne, Video("fahrt.mp4"));
    Spiele(ohne, 2);
    Press(ohne, IDC_VIDEO_PLAY);
    framework::CloseDialog(ohne);
    thread.DispatchPending();
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

// A script's work from the file to the case: points clicked in the field, the whole video analysed, the range handed
// over.
TEST(VideoMaskCommandLine, AWholeAnalysisFromFileToPhases)
{
    const test::TemporaryFolder folder;
    const RoadCamera kamera;
    test::VideoPlan plan;
    plan.width = kamera.width;
    plan.height = kamera.height;
    plan.times = test::EvenTimes(25, 512);
    const std::vector<test::RoadVehicle> fahrzeuge{{{1, 0, 0}, -1.75, 52.0, -50.0 / 3.6},
                                                   {{0, 1, 0}, 1.75, 18.0, 60.0 / 3.6}};
    plan.draw = [&](AVFrame& frame, int nummer) {
        std::vector<test::ColouredBox> kaesten;
        for (const test::RoadVehicle& fahrzeug : fahrzeuge)
            kaesten.push_back({fahrzeug.At(0.04 * nummer, kamera), fahrzeug.colour});
        test::DrawBoxes(frame, kaesten);
    };
    test::WriteVideo(folder.File("road.mp4"), plan);
    // The network lies beside the program.
    const auto programme = std::filesystem::path(test::CliPath()).parent_path();
    std::filesystem::copy_file(test::CliPath(), folder.File("tavelin-cli"));
    for (const char* library : {"libClassKrn.so", "libRuvMod.so", "libRuvFunc.so", "libRuvVideo.so"})
        std::filesystem::create_symlink(programme / library, folder.File(library));
    folder.Folder("Dnn");
    std::filesystem::copy_file(std::string(TAVELIN_SOURCE_DIR) + "/tests/data/vision/detector.onnx",
                               folder.File("Dnn/detector.onnx"));
    const std::string fall = folder.File("fall.json");
    // The field is 768 by 360 pixels, the picture in it 640 by 360.
    std::vector<std::string> skript{"mask",       "494",     "--save",   fall,      "file:" + folder.File("road.mp4"),
                                    "press:5201", "49418=7", "49419=25", "49420=7", "49421=25"};
    for (const auto& [x, y] : test::kLane) {
        const VisionPoint p = kamera.See(x, y);
        skript.push_back("click:49401=" + base::ShortestDigits(p.x / 3.0 + 64.0) + "," +
                         base::ShortestDigits(p.y / 3.0));
    }
    for (const char* aktion : {"answer:1980=1", "press:49417", "range:5202=0.2,0.8", "state", "press:1"})
        skript.emplace_back(aktion);
    const test::Output lauf = test::RunCli(skript, {}, folder.File("tavelin-cli"));
    ASSERT_EQ(lauf.exit, 0) << lauf.err;
    const auto zustand = test::JsonLines(lauf.out).front();
    const auto& record = zustand.at("record");
    EXPECT_EQ(record.at("ids").size(), 2U);
    EXPECT_EQ(record.at("rate"), 0.05);
    EXPECT_NEAR(record.at("kameraHoehe").get<double>(), 6.0, 0.05);
    EXPECT_NEAR(record.at("faktor").get<double>(), 0.88, 0.002);
    EXPECT_EQ(record.at("reste").size(), 6U);
    EXPECT_EQ(record.at("reste")[4], "nan"); // not measured
    const double tempo = record.at("mittel").get<double>();
    EXPECT_LT(std::min(std::abs(tempo - 50.0), std::abs(tempo - 60.0)), 1.5) << tempo;
    const auto meldungen = zustand.at("messages").dump();
    EXPECT_NE(meldungen.find("Video erfolgreich analysiert"), std::string::npos) << meldungen;
    CRuvData data;
    ASSERT_TRUE(casefile::LoadCase(fall, data));
    EXPECT_EQ(data.Video().datei, "road.mp4");
    double zeit = 0.0;
    for (const CWegZeitSpalte& spalte : data.WZRechDat(0).spalten)
        zeit += spalte.IsUsed() ? spalte.zeit : 0.0;
    EXPECT_NEAR(zeit, 0.6, 0.041); // the rows within the range
    // It opens as it was left, here without the network.
    const test::Output wieder = test::RunCli({"mask", "494", "--case", fall, "state"});
    ASSERT_EQ(wieder.exit, 0) << wieder.err;
    const auto danach = test::JsonLines(wieder.out).front().at("record");
    for (const char* feld : {"ids", "zeit", "geschwindigkeit", "unsicherheit", "ausgleich", "mittel", "faktor"})
        EXPECT_EQ(danach.at(feld), record.at(feld)) << feld;
}
