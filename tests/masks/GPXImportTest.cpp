// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/import/CGPXImportDat.h"

#include "base/FileSystem.h"
#include "base/Sha256.h"
#include "masks/import/CGPXImportDlg.h"
#include "res/import.h"
#include "tests/support/FitSchreiber.h"
#include "tests/support/MaskFixture.h"
#include "tests/support/TemporaryFolder.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <numbers>

using test::FitSchreiber;

namespace
{

constexpr double kGradJeMeter = 1.0 / 111320.0;

std::string Zahl(double wert)
{
    char text[40];
    return {text, std::to_chars(text, text + sizeof text, wert, std::chars_format::fixed, 12).ptr};
}

std::string Trkpt(double breite, double laenge, const std::string& zeit, const std::string& weiteres = "")
{
    return "<trkpt lat=\"" + Zahl(breite) + "\" lon=\"" + Zahl(laenge) + "\"><time>" + zeit + "</time>" + weiteres +
           "</trkpt>\n";
}

std::string Gpx(const std::string& punkte)
{
    return "<gpx><trk><trkseg>\n" + punkte + "</trkseg></trk></gpx>\n";
}

/// A circle at constant speed about 50° N, 8° E, from 2024-05-01 10:00 UTC on, one point each `schritt` ms.
std::string Kreis(double radius, double ms, int schritt, int punkte)
{
    std::string text;
    for (int i = 0; i < punkte; ++i) {
        const double t = i * schritt / 1000.0;
        const double winkel = ms * t / radius;
        const double breite = 50.0 + radius * std::sin(winkel) * kGradJeMeter;
        const double laenge =
            8.0 + radius * std::cos(winkel) * kGradJeMeter / std::cos(50.0 * std::numbers::pi / 180.0);
        char zeit[60];
        std::snprintf(zeit, sizeof zeit, "2024-05-01T10:%02d:%02d.%03dZ", i * schritt / 60000, i * schritt / 1000 % 60,
                      i * schritt % 1000);
        text += Trkpt(breite, laenge, zeit);
    }
    return Gpx(text);
}

FitSchreiber Fitfahrt(int punkte, bool mitTempo = false)
{
    // 2 semicircles are some 1.9 cm: 1000 per second are 9.3 m/s.
    FitSchreiber fit;
    const int s32 = FitSchreiber::kSint32;
    const int u32 = FitSchreiber::kUint32;
    fit.Definiere(0, FitSchreiber::kRecord, {{253, 4, u32}, {0, 4, s32}, {1, 4, s32}, {73, 4, u32}});
    for (int i = 0; i < punkte; ++i)
        fit.Byte(0)
            .Zahl(1000000000 + i, 4)
            .Zahl(600000000 + 1000 * i, 4)
            .Zahl(100000000, 4)
            .Zahl(mitTempo ? 10000 + 100 * i : 0xFFFFFFFF, 4);
    return fit;
}

class GPXImportTest : public test::MaskTest
{
  protected:
    std::string Lege(const std::string& name, const std::string& bytes)
    {
        const std::string pfad = folder.File(name);
        std::ofstream(pfad, std::ios::binary) << bytes;
        return pfad;
    }
    static std::string Inhalt(const std::string& pfad)
    {
        std::ifstream datei(pfad, std::ios::binary);
        return {std::istreambuf_iterator<char>(datei), std::istreambuf_iterator<char>()};
    }
    framework::Window& Importiere(const std::string& pfad)
    {
        framework::Window& maske = OpenMask(492);
        Noch(maske, pfad);
        return maske;
    }
    void Noch(framework::Window& maske, const std::string& pfad)
    {
        front.files = {pfad};
        Press(maske, IDC_IMPORT_WAEHLEN);
    }
    static ReadRows Zeilen(framework::Window& maske) { return *static_cast<CMDIRechDialog*>(maske.object)->RowsRead(); }
    static std::vector<double> Spalte(framework::Window& maske, std::size_t spalte)
    {
        const ReadRows zeilen = Zeilen(maske);
        std::vector<double> werte;
        std::vector<double> zeile(zeilen.titles.size());
        for (std::size_t i = 0; i < zeilen.count; ++i) {
            zeilen.get(i, zeile);
            werte.push_back(zeile[spalte]);
        }
        return werte;
    }
    static std::string Bericht(framework::Window& maske)
    {
        std::string text;
        for (const auto& zeile : Control(maske, IDC_IMPORT_BERICHT).grid->rows)
            text += zeile[0].starts_with("      ") ? zeile[0].substr(6) : "\n" + zeile[0];
        return text;
    }
    std::string Meldungen() const
    {
        std::string text;
        for (const framework::ShownMessage& m : front.messages)
            text += std::to_string(m.number) + " " + m.text + "|";
        return text;
    }
    static chart::Chart& Diagramm(framework::Window& maske)
    {
        return dynamic_cast<chart::Chart&>(
            *static_cast<CChartCtrl*>(Control(maske, IDC_IMPORT_DIAGRAMM).object)->Client());
    }

    test::TemporaryFolder folder;
};

constexpr std::size_t kAbstand = 16;
constexpr std::size_t kZeitschritt = 17;
constexpr std::size_t kTempoMs = 18;
constexpr std::size_t kTempoKmh = 19;

} // namespace

// Length and speed of a chord differ from those of the arc by 1 - (v Δt / r)² / 24; the plane itself is exact here.
TEST_F(GPXImportTest, ACircleGivesSpeedAndLengthBack)
{
    constexpr double kRadius = 100.0;
    constexpr double kMs = 15.0;
    for (const int schritt : {1000, 100}) {
        framework::Window& maske = Importiere(Lege("kreis.gpx", Kreis(kRadius, kMs, schritt, 60000 / schritt + 1)));
        const std::vector<double> abstaende = Spalte(maske, kAbstand);
        const std::vector<double> tempo = Spalte(maske, kTempoKmh);
        ASSERT_EQ(abstaende.size(), static_cast<std::size_t>(60000 / schritt + 1));
        const double halb = kMs * schritt / 1000.0 / kRadius / 2.0;
        const double sehne = std::sin(halb) / halb;
        double weg = 0.0;
        for (const double abstand : abstaende)
            weg += abstand;
        EXPECT_NEAR(weg, kMs * 60.0 * sehne, 900.0 * 2e-5) << schritt; // cos φ over 200 m
        EXPECT_EQ(tempo.front(), 0.0);
        for (std::size_t i = 1; i < tempo.size(); ++i)
            ASSERT_NEAR(tempo[i], kMs * 3.6 * sehne, 0.01) << schritt << ' ' << i;
    }
}

// The worked example of the help page.
TEST_F(GPXImportTest, TwoPointsByHand)
{
    framework::Window& maske = Importiere(
        Lege("zwei.gpx", Gpx(Trkpt(50.0, 8.0, "2024-05-01T10:00:00Z") + Trkpt(50.0001, 8.0001, "2024-05-01T10:00:01Z") +
                             Trkpt(50.0002, 8.0001, "2024-05-01T10:00:01Z"))));
    EXPECT_NEAR(Spalte(maske, 13)[1], 7.15550, 1e-5);
    EXPECT_NEAR(Spalte(maske, 14)[1], 11.132, 1e-5);
    EXPECT_EQ(Spalte(maske, 15)[1], 0.0);
    EXPECT_NEAR(Spalte(maske, kTempoKmh)[1], 47.6402, 1e-4);
    // The same time once more: the speed of the point before.
    EXPECT_EQ(Spalte(maske, kZeitschritt)[2], 0.0);
    EXPECT_EQ(Spalte(maske, kTempoMs)[2], Spalte(maske, kTempoMs)[1]);
    EXPECT_NE(Bericht(maske).find("dessen Geschwindigkeit haben: 1"), std::string::npos) << Bericht(maske);
}

// Heights count only when every point has one.
TEST_F(GPXImportTest, HeightsOfAllPointsOrNone)
{
    const std::string a = Trkpt(50.0, 8.0, "2024-05-01T10:00:00Z", "<ele>100</ele>");
    const std::string b = "2024-05-01T10:00:01Z";
    framework::Window& maske = Importiere(Lege("mit.gpx", Gpx(a + Trkpt(50.0, 8.0, b, "<ele>103</ele>"))));
    EXPECT_EQ(Spalte(maske, 15)[1], 3.0);
    EXPECT_EQ(Spalte(maske, kAbstand)[1], 3.0);
    Noch(maske, Lege("ohne.gpx", Gpx(a + Trkpt(50.0, 8.0, b))));
    EXPECT_EQ(Spalte(maske, 15)[1], 0.0);
    EXPECT_EQ(Spalte(maske, 2)[1], -1.0);
    EXPECT_NE(Bericht(maske).find("1 Punkte haben keine Höhe"), std::string::npos) << Bericht(maske);
}

// Steps are true whatever the machine's zone, in the night in which its clocks change, and across zone offsets.
TEST_F(GPXImportTest, StepsAreTrueInEveryZoneAndNight)
{
    const std::string bytes =
        Gpx(Trkpt(50.0, 8.0, "2024-03-31T00:59:59.900Z") + Trkpt(50.0, 8.0, "2024-03-31T01:00:00.1Z") +
            Trkpt(50.0, 8.0, "2024-03-31T03:30:00.1+02:30") + Trkpt(50.0, 8.0, "2024-10-27T01:30:00Z") +
            Trkpt(50.0, 8.0, "2024-10-27T02:30:00Z"));
    const char* vorher = std::getenv("TZ");
    const std::string alt = vorher == nullptr ? "" : vorher;
    for (const char* zone : {"UTC", "Europe/Berlin", "America/New_York"}) {
        setenv("TZ", zone, 1);
        tzset();
        framework::Window& maske = Importiere(Lege("nacht.gpx", bytes));
        const std::vector<double> schritte = Spalte(maske, kZeitschritt);
        EXPECT_NEAR(schritte[1], 0.2, 1e-6) << zone;
        EXPECT_NEAR(schritte[2], 0.0, 1e-6) << zone;
        EXPECT_EQ(schritte[4], 3600.0) << zone;
        EXPECT_EQ(Spalte(maske, 6)[2], 3.0) << zone;
    }
    // A FIT file read in that night: 2024-10-27 02:59:58 summer time and on. The clock written falls back, the steps do
    // not.
    setenv("TZ", "Europe/Berlin", 1);
    tzset();
    FitSchreiber fit;
    fit.DefiniereRecord();
    for (int i = 0; i < 4; ++i)
        fit.Record(1729990798 - 631058400 + i, 600000000, 100000000);
    framework::Window& maske = Importiere(Lege("nacht.fit", fit.Datei()));
    EXPECT_EQ(Spalte(maske, 6), (std::vector<double>{2, 2, 2, 2}));
    EXPECT_EQ(Spalte(maske, 8), (std::vector<double>{58, 59, 0, 1}));
    EXPECT_EQ(Spalte(maske, kZeitschritt), (std::vector<double>{0, 1, 1, 1}));
    if (vorher == nullptr)
        unsetenv("TZ");
    else
        setenv("TZ", alt.c_str(), 1);
    tzset();
}

TEST_F(GPXImportTest, APointWithoutPositionOrTimeRejectsTheTrack)
{
    const std::string gut = Trkpt(50.0, 8.0, "2024-05-01T10:00:00Z");
    framework::Window& maske = Importiere(Lege("gut.gpx", Gpx(gut + gut)));
    EXPECT_EQ(Zeilen(maske).count, 2U);
    for (const char* schlecht :
         {"<trkpt lat='50' lon='8'/>", "<trkpt lat='50'><time>2024-05-01T10:00:00Z</time></trkpt>",
          "<trkpt lat='91' lon='8'><time>2024-05-01T10:00:00Z</time></trkpt>"}) {
        front.messages.clear();
        Noch(maske, Lege("schlecht.gpx", Gpx(gut + schlecht + gut)));
        ASSERT_EQ(front.messages.size(), 1U) << schlecht;
        EXPECT_EQ(front.messages[0].number, 1093U);
        EXPECT_EQ(Zeilen(maske).count, 0U);
        EXPECT_NE(Bericht(maske).find("Punkt 2 von 3"), std::string::npos) << Bericht(maske);
        EXPECT_FALSE(Control(maske, IDC_UEBERTRAGEN).enabled);
    }
}

TEST_F(GPXImportTest, OtherFilesSayWhatTheyAre)
{
    framework::Window& maske = Importiere(Lege("spur.FIT", Fitfahrt(3).Datei()));
    EXPECT_NE(Meldungen().find("0 Das ist eine FIT-Datei."), std::string::npos) << Meldungen();
    EXPECT_EQ(Zeilen(maske).count, 0U);
    front.messages.clear();
    Noch(maske, Lege("text.gpx", "a;b;c"));
    EXPECT_NE(Meldungen().find("0 Das ist keine GPX-Datei"), std::string::npos) << Meldungen();
}

TEST(GPXImportPathTest, WhichFilesAreFit)
{
    EXPECT_TRUE(CGPXImportDat::IstFitPfad("/a/ride.fit"));
    EXPECT_TRUE(CGPXImportDat::IstFitPfad("/a.fit/ride.bin"));
    EXPECT_FALSE(CGPXImportDat::IstFitPfad("/a/ride.FIT"));
    EXPECT_FALSE(CGPXImportDat::IstFitPfad("/a/ride.fit.gpx"));
    EXPECT_FALSE(CGPXImportDat::IstFitPfad("/a.fit/ride.GPX"));
    EXPECT_FALSE(CGPXImportDat::IstFitPfad("it"));
    EXPECT_EQ(CGPXImportDat::GpxPfad("/a/ride.fit"), "/a/ride.gpx");
}

// The GPX file beside the FIT file: written once, left alone when it is the same, asked for when it is another.
TEST_F(GPXImportTest, AFitFileIsConvertedBesideItself)
{
    const std::string fit = Lege("ride.fit", Fitfahrt(5).Datei());
    const std::string gpx = folder.File("ride.gpx");
    framework::Window& maske = Importiere(fit);
    EXPECT_EQ(Meldungen(), "0 output file generated successfully.\n|");
    EXPECT_EQ(Text(maske, IDC_IMPORT_PFAD), gpx);
    const std::string text = Inhalt(gpx);
    EXPECT_TRUE(text.starts_with(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<gpx creator = \"Tavelin\" version = \"1.0\">\n"));
    EXPECT_TRUE(text.ends_with("</gpx>\n"));
    const std::vector<double> tempo = Spalte(maske, kTempoMs);
    EXPECT_NE(Bericht(maske).find(base::Sha256(Fitfahrt(5).Datei())), std::string::npos);
    // Read as what it is, it gives the same rows.
    Noch(maske, gpx);
    EXPECT_EQ(Spalte(maske, kTempoMs), tempo);
    // The same content is not asked for.
    front.messages.clear();
    Noch(maske, fit);
    EXPECT_EQ(Meldungen(), "0 output file generated successfully.\n|");
    for (const std::string& anderes :
         {std::string("anderes"), text + " ", text.substr(0, text.size() - 1), std::string()}) {
        Lege("ride.gpx", anderes);
        front.messages.clear();
        front.answers.clear();
        Noch(maske, fit);
        ASSERT_EQ(front.messages.size(), 1U) << Meldungen();
        EXPECT_EQ(front.messages[0].number, 1421U);
        EXPECT_EQ(Inhalt(gpx), anderes);
        EXPECT_EQ(Text(maske, IDC_IMPORT_PFAD), fit);
        EXPECT_EQ(Spalte(maske, kTempoMs), tempo);
        front.answers[1421] = IDYES;
        Noch(maske, fit);
        EXPECT_EQ(Inhalt(gpx), text);
    }
}

TEST_F(GPXImportTest, AFolderThatCannotBeWrittenLeavesTheImportInMemory)
{
    const std::string fit = Lege("ride.fit", Fitfahrt(5).Datei());
    std::filesystem::create_directory(folder.File("ride.gpx")); // nothing can be put in place of a folder
    front.answers[1421] = IDYES;
    framework::Window& maske = Importiere(fit);
    EXPECT_NE(Meldungen().find("kann nicht geschrieben werden"), std::string::npos) << Meldungen();
    EXPECT_EQ(Zeilen(maske).count, 5U);
    EXPECT_EQ(Text(maske, IDC_IMPORT_PFAD), fit);
    EXPECT_NE(Bericht(maske).find("aus dem Speicher"), std::string::npos);
}

// Evidence stays as it is, also where the name beside it leads back to it.
// Nothing is left where the file was to be; the points are there all the same.
TEST_F(GPXImportTest, WritingTheGpxFileCanBeStopped)
{
    const std::string fit = Lege("ride.fit", Fitfahrt(20000).Datei());
    front.progress = [](const std::string& was, double) { return was != "Die GPX-Datei wird geschrieben"; };
    framework::Window& maske = Importiere(fit);
    EXPECT_NE(Meldungen().find("abgebrochen"), std::string::npos) << Meldungen();
    EXPECT_EQ(Zeilen(maske).count, 20000U);
    EXPECT_EQ(Zeilen(maske).file, fit);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 1);
    // An import that is stopped earlier leaves what was there.
    const std::string gross = Lege("gross.gpx", Gpx(Trkpt(1, 2, "2024-05-01T10:00:00Z") + std::string(9 << 20, ' ')));
    front.progress = [](const std::string& was, double) { return was != "Die Prüfsumme der Datei wird gebildet"; };
    Noch(maske, gross);
    EXPECT_EQ(Zeilen(maske).count, 20000U);
    EXPECT_EQ(Zeilen(maske).file, fit);
}

TEST_F(GPXImportTest, TheFitFileItselfIsNeverOverwritten)
{
    const std::string bytes = Fitfahrt(5).Datei();
    const std::string fit = Lege("ride.fit", bytes);
    std::filesystem::create_symlink(fit, folder.File("ride.gpx"));
    front.answers[1421] = IDYES;
    framework::Window& maske = Importiere(fit);
    EXPECT_NE(Meldungen().find("ist die gelesene Datei selbst"), std::string::npos) << Meldungen();
    EXPECT_EQ(Inhalt(fit), bytes);
    EXPECT_EQ(Zeilen(maske).count, 5U);
    EXPECT_EQ(Zeilen(maske).file, fit);
}

TEST_F(GPXImportTest, ADamagedFitFileOffersThePointsBeforeTheDamage)
{
    const std::string ganz = Fitfahrt(5).Datei();
    const std::string fit = Lege("ride.fit", ganz.substr(0, ganz.size() - 10));
    framework::Window& maske = Importiere(fit);
    EXPECT_EQ(Meldungen(),
              "0 FIT file integrity failed.\nAttempting to decode...\n|0 FIT decode error: Unexpected end of "
              "input stream at byte: " +
                  std::to_string(ganz.size() - 10) +
                  "|1420 Die Datei ist beschädigt. Vor dem Schaden sind 4 Punkte gelesen. Sollen sie "
                  "verwendet werden?|");
    EXPECT_EQ(Zeilen(maske).count, 0U);
    EXPECT_NE(Bericht(maske).find("nichts verwendet"), std::string::npos) << Bericht(maske);
    EXPECT_FALSE(std::filesystem::exists(folder.File("ride.gpx")));
    front.answers[1420] = IDYES;
    Noch(maske, fit);
    EXPECT_EQ(Zeilen(maske).count, 4U);
    EXPECT_FALSE(std::filesystem::exists(folder.File("ride.gpx")));
    EXPECT_NE(Bericht(maske).find("Verwendet werden die 4 Punkte"), std::string::npos) << Bericht(maske);
    // Without any point there is nothing to offer.
    front.messages.clear();
    Noch(maske, Lege("kopf.fit", ganz.substr(0, 20)));
    EXPECT_EQ(front.messages.size(), 2U) << Meldungen();
    EXPECT_EQ(Zeilen(maske).count, 0U);
}

// The transfer writes what the chosen speed is, and the phases take the time of the points.
TEST_F(GPXImportTest, ThePhasesAreThoseOfTheChosenSpeed)
{
    framework::Window& maske = Importiere(Lege("ride.fit", Fitfahrt(12, true).Datei()));
    EXPECT_EQ(Diagramm(maske).State().series.size(), 2U);
    ASSERT_TRUE(Diagramm(maske).SetRange({2, 8}));
    Press(maske, IDC_UEBERTRAGEN);
    const CWegZeitRechDat& wz = data.WZRechDat(0);
    const double berechnet = Spalte(maske, kTempoKmh)[8];
    EXPECT_NEAR(berechnet, 1000 * 180.0 / 2147483648.0 * 111320.0 * 3.6, 1e-3);
    EXPECT_DOUBLE_EQ(wz.spalten[3].vEnd, berechnet);
    ASSERT_EQ(Press(maske, IDC_GPX_AUFGEZEICHNET), framework::InputResult::done);
    // The range stays, and what is shown first is the recorded speed: 10 m/s and 0.1 m/s more each second.
    EXPECT_EQ(Diagramm(maske).Range(), (chart::Rows{2, 8}));
    EXPECT_EQ(Diagramm(maske).State().series.front(), "aufgezeichnet");
    EXPECT_NE(Bericht(maske).find("vom Gerät aufgezeichnet"), std::string::npos);
    Press(maske, IDC_UEBERTRAGEN);
    EXPECT_DOUBLE_EQ(wz.spalten[3].vEnd, 10.8 * 3.6);
    EXPECT_DOUBLE_EQ(wz.spalten[8].vAnf, 10.2 * 3.6);
    EXPECT_EQ(wz.spalten[9].art, PhasenArt::unused);
    double zeit = 0.0;
    for (std::size_t k = 3; k < 9; ++k) {
        zeit += wz.spalten[k].zeit;
        EXPECT_EQ(wz.spalten[k].art, PhasenArt::accelerating);
        EXPECT_NEAR(wz.spalten[k].verz, -0.1, 1e-9);
    }
    EXPECT_DOUBLE_EQ(zeit, 6.0);
    Press(maske, IDC_GPX_FAHRLINIE);
    ASSERT_EQ(wz.fahrlinie.size(), 7U);
    EXPECT_NEAR(wz.fahrlinie[6].y, 6 * 1000 * 180.0 / 2147483648.0 * 11132000.0, 0.01); // cm
}

// A clock that is set back leaves no speed there, and no transfer across it.
TEST_F(GPXImportTest, AStepBackInTimeIsNotTransferred)
{
    std::string punkte;
    for (const char* zeit : {"10:00:00", "10:00:01", "09:00:02", "09:00:03", "09:00:04"})
        punkte += Trkpt(50.0 + 0.0001 * static_cast<double>(punkte.size()) / 90.0, 8.0,
                        "2024-05-01T" + std::string(zeit) + "Z");
    framework::Window& maske = Importiere(Lege("zurueck.gpx", Gpx(punkte)));
    EXPECT_LT(Spalte(maske, kTempoMs)[2], 0.0); // as computed
    EXPECT_NE(Bericht(maske).find("läuft 1-mal zurück, bei Punkt 3"), std::string::npos) << Bericht(maske);
    ASSERT_TRUE(Diagramm(maske).SetRange({1, 4}));
    const CWegZeitRechDat vorher = data.WZRechDat(0);
    Press(maske, IDC_UEBERTRAGEN);
    EXPECT_TRUE(static_cast<const CWegZeitDat&>(vorher) == data.WZRechDat(0));
    EXPECT_NE(Text(maske, IDC_IMPORT_HINWEIS).find("Nichts übertragen"), std::string::npos);
    ASSERT_TRUE(Diagramm(maske).SetRange({3, 4}));
    Press(maske, IDC_UEBERTRAGEN);
    EXPECT_EQ(data.WZRechDat(0).spalten[3].zeit, 1.0);
}

// A click near the track on the map picks the same range as one in the chart; the whole track lies in the picture.
// Two segments with a pause of a minute between them.
TEST_F(GPXImportTest, AJointInTheRangeIsSaid)
{
    std::string punkte;
    for (int i = 0; i < 6; ++i)
        punkte +=
            (i == 3 ? "</trkseg><trkseg>" : "") +
            Trkpt(50.0 + i * 1e-4, 8.0, "2024-05-01T10:0" + std::to_string(i / 3) + ":0" + std::to_string(i) + "Z");
    framework::Window& maske = Importiere(Lege("pause.gpx", Gpx(punkte)));
    const auto hinweis = [&] { return Control(maske, IDC_IMPORT_HINWEIS).text; };
    const auto sagtNaht = [&] { return hinweis().find("Nahtstelle") != std::string::npos; };
    EXPECT_NE(Bericht(maske).find("Vor Punkt 4 beginnt"), std::string::npos);
    Diagramm(maske).SetRange({0, 2});
    EXPECT_FALSE(sagtNaht()) << hinweis();
    Diagramm(maske).SetRange({2, 3});
    EXPECT_TRUE(sagtNaht());
    Diagramm(maske).SetRange({3, 5});
    EXPECT_FALSE(sagtNaht()) << hinweis();
    // In the scene the stretch ends where the pause begins: that point stands twice.
    Diagramm(maske).SetRange({0, 5});
    Press(maske, IDC_GPX_SZENE);
    const std::vector<CDPoint>& spur = data.Spuren().at(0).punkte;
    ASSERT_EQ(spur.size(), 7U);
    for (std::size_t i = 1; i < spur.size(); ++i)
        EXPECT_EQ(spur[i] == spur[i - 1], i == 3) << i;
    // The chart shades the minute, in its whole width of 63 s times the width of the plot.
    CDC dc(600.0, 300.0);
    Diagramm(maske).DropRange();
    Diagramm(maske).Paint(dc, false);
    std::vector<double> breiten;
    for (const drawing::Primitive& primitive : dc.Primitives())
        if (const auto* flaeche = std::get_if<drawing::Rectangle>(&primitive); flaeche != nullptr)
            breiten.push_back(flaeche->right - flaeche->left);
    ASSERT_EQ(breiten.size(), 3U); // ground, plot, gap
    EXPECT_NEAR(breiten[2], breiten[1] * 61.0 / 65.0, 0.01);
}

// The points in cm from the middle of their box, the first one at the origin of the scene.
TEST_F(GPXImportTest, TheTrackGoesIntoTheScene)
{
    framework::Window& maske = OpenMask(492);
    EXPECT_FALSE(Control(maske, IDC_GPX_SZENE).enabled);
    Noch(maske, Lege("kreis.gpx", Kreis(50.0, 10.0, 100, 300)));
    Press(maske, IDC_GPX_SZENE);
    ASSERT_EQ(data.Spuren().size(), 1U);
    const CSzenenSpur& spur = data.Spuren()[0];
    EXPECT_EQ(spur.name, "kreis.gpx");
    ASSERT_EQ(spur.punkte.size(), 300U);
    const auto lage = [&](std::size_t i) { return spur.mitte + spur.punkte[i]; };
    EXPECT_NEAR(lage(0).x, 0.0, 1e-6);
    EXPECT_NEAR(lage(0).y, 0.0, 1e-6);
    const std::vector<double> x = Spalte(maske, 13);
    const std::vector<double> y = Spalte(maske, 14);
    for (std::size_t i = 0; i < x.size(); i += 37) {
        EXPECT_NEAR(lage(i).x, 100.0 * x[i], 1e-6) << i;
        EXPECT_NEAR(lage(i).y, 100.0 * y[i], 1e-6) << i;
    }
    EXPECT_NE(Control(maske, IDC_IMPORT_HINWEIS).text.find("mit 300 Punkten"), std::string::npos);
    // The chosen range alone; of too many points those that say the same way.
    Diagramm(maske).SetRange({10, 19});
    Press(maske, IDC_GPX_SZENE);
    EXPECT_EQ(data.Spuren().at(1).punkte.size(), 10U);
    Noch(maske, Lege("lang.gpx", Kreis(1000.0, 1.0, 20, 20000))); // 2 cm apart
    Press(maske, IDC_GPX_SZENE);
    const std::vector<CDPoint>& wenige = data.Spuren().at(2).punkte;
    EXPECT_LE(wenige.size(), CSzenenSpur::kMeistePunkte);
    EXPECT_GT(wenige.size(), CSzenenSpur::kMeistePunkte / 2);
    for (std::size_t i = 2; i < wenige.size(); ++i)
        ASSERT_LT(std::hypot(wenige[i].x - wenige[i - 1].x, wenige[i].y - wenige[i - 1].y), 13.0)
            << i; // 10 cm and a step
    for (int i = 3; i < 17; ++i)
        Press(maske, IDC_GPX_SZENE);
    EXPECT_EQ(data.Spuren().size(), CSzenenSpur::kMeiste);
    EXPECT_NE(Control(maske, IDC_IMPORT_HINWEIS).text.find("schon 16 Spuren"), std::string::npos);
}

TEST_F(GPXImportTest, TheMapPicksTheRange)
{
    framework::Window& maske = Importiere(Lege("kreis.gpx", Kreis(100.0, 15.0, 1000, 30)));
    framework::Window& karte = Control(maske, IDC_GPX_KARTE);
    // Points 0 and 10 of the circle, as the map fits it: width 400, height 300, 14 px about it.
    const auto klick = [&](double x, double y) {
        for (const auto kind : {CMouseEvent::Kind::press, CMouseEvent::Kind::release}) {
            CMouseEvent ereignis;
            ereignis.kind = kind;
            ereignis.button = MouseButton::left;
            ereignis.position = {x, y};
            ereignis.width = 400.0;
            ereignis.height = 300.0;
            framework::Mouse(karte, ereignis);
        }
    };
    const std::vector<double> x = Spalte(maske, 13);
    const std::vector<double> y = Spalte(maske, 14);
    const auto mitte = [](const std::vector<double>& werte) {
        const auto [kleinster, groesster] = std::minmax_element(werte.begin(), werte.end());
        return std::pair((*kleinster + *groesster) / 2.0, *groesster - *kleinster);
    };
    const double massstab = std::min(372.0 / mitte(x).second, 272.0 / mitte(y).second);
    const auto bild = [&](std::size_t i) {
        klick(200.0 + (x[i] - mitte(x).first) * massstab, 150.0 - (y[i] - mitte(y).first) * massstab);
    };
    bild(10);
    bild(4);
    EXPECT_EQ(Diagramm(maske).Range(), (chart::Rows{4, 10}));
    klick(200.0, 150.0); // far from the track
    EXPECT_EQ(Diagramm(maske).Range(), (chart::Rows{4, 10}));
}

// Small time stamps are no date: the report must not call them one.
TEST_F(GPXImportTest, TimeSinceTheStartOfTheDeviceIsNoDate)
{
    FitSchreiber fit;
    fit.DefiniereRecord().Record(0x0FFFFFFE, 1, 2).Record(0x0FFFFFFF, 3, 4);
    framework::Window& maske = Importiere(Lege("start.fit", fit.Datei()));
    EXPECT_NE(Bericht(maske).find("vom Einschalten des Geräts"), std::string::npos) << Bericht(maske);
    EXPECT_EQ(Spalte(maske, kZeitschritt)[1], 1.0);
    FitSchreiber uhr;
    uhr.DefiniereRecord().Record(0x10000000, 1, 2).Record(0x10000001, 3, 4);
    Noch(maske, Lege("uhr.fit", uhr.Datei()));
    // 2^28 s from 1989-12-31: 3106 days, 21 h 24 min 16 s
    EXPECT_NE(Bericht(maske).find("erste Punkt von 03.07.1998 21:24:16 UTC"), std::string::npos) << Bericht(maske);
}

// A sparse file of 2 GB takes no room on the disk.
TEST_F(GPXImportTest, AFileTooLargeForMemoryIsRefused)
{
    const std::string pfad = Lege("riese.gpx", "<gpx>");
    std::filesystem::resize_file(pfad, std::uintmax_t{2} << 30U);
    framework::Window& maske = Importiere(pfad);
    EXPECT_NE(Meldungen().find("größer als 1 GB"), std::string::npos) << Meldungen();
    EXPECT_EQ(Zeilen(maske).count, 0U);
}
