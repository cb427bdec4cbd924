// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Mask 474: from the file to the case.
#include "masks/import/CFLIImportDat.h"
#include "masks/import/CFLIImportDlg.h"
#include "res/import.h"
#include "tests/support/MaskFixture.h"
#include "tests/support/TemporaryFolder.h"

#include <cmath>
#include <fstream>

namespace
{

using framework::InputResult;
using framework::Window;

class FLIImportTest : public test::MaskTest
{
  protected:
    Window& mask = OpenMask(IDD_FAHRDATEN);
    test::TemporaryFolder folder;

    std::string Datei(const std::string& inhalt, const std::string& name = "fahrt.csv")
    {
        std::ofstream(folder.File(name), std::ios::binary) << inhalt;
        return folder.File(name);
    }
    void Oeffne(const std::string& inhalt, const std::string& name = "fahrt.csv")
    {
        front.files.push_back(Datei(inhalt, name));
        ASSERT_EQ(Press(mask, IDC_IMPORT_WAEHLEN), InputResult::done);
    }
    CFLIImportDlg& Dialog() { return *static_cast<CFLIImportDlg*>(mask.object); }
    std::vector<double> Spalte(Feld feld)
    {
        const auto rows = Dialog().RowsRead();
        std::vector<double> werte;
        std::vector<double> zeile(kFelder);
        for (std::size_t i = 0; i < rows->count; ++i) {
            rows->get(i, zeile);
            werte.push_back(zeile[static_cast<std::size_t>(feld)]);
        }
        return werte;
    }
    void ErwarteSpalte(Feld feld, const std::vector<double>& soll)
    {
        const std::vector<double> ist = Spalte(feld);
        ASSERT_EQ(ist.size(), soll.size());
        for (std::size_t i = 0; i < soll.size(); ++i)
            EXPECT_NEAR(ist[i], soll[i], 1e-6) << i;
    }
    std::string Bericht()
    {
        std::string text;
        for (const auto& zeile : Control(mask, IDC_IMPORT_BERICHT).grid->rows)
            text += zeile[0].starts_with("      ") ? zeile[0].substr(6) : "\n" + zeile[0];
        return text;
    }
    std::string Vorhanden()
    {
        std::string boxen;
        for (UINT i = 0; i < 12; ++i)
            boxen += Control(mask, IDC_IMPORT_VORHANDEN + i).check != 0 ? '1' : '0';
        return boxen;
    }
    void Zeitraum(const char* von, const char* bis)
    {
        Enter(mask, IDC_IMPORT_VON, von);
        Enter(mask, IDC_IMPORT_BIS, bis);
    }
    bool Offen(UINT id) { return Control(mask, id).enabled; }
};

TEST_F(FLIImportTest, ChoosesReadsAndTransfers)
{
    EXPECT_FALSE(Offen(IDC_UEBERTRAGEN));
    EXPECT_EQ(Text(mask, IDC_IMPORT_HINWEIS), LoadRuvString(IDS_IMPORT_ERST_DATEI));
    front.broadcast.clear();
    Oeffne("Time,Speed (mph)\n0,30\n1,20\n2,10\n3,10\n");
    EXPECT_TRUE(front.requests.back().mustExist);
    EXPECT_EQ(front.requests.back().defaultExtension, "FLI");
    EXPECT_EQ(front.broadcast.front().message, 1364U);
    EXPECT_TRUE(front.messages.empty());
    EXPECT_EQ(Text(mask, IDC_IMPORT_PFAD), folder.File("fahrt.csv"));
    EXPECT_EQ(Vorhanden(), "110000000000");
    EXPECT_NE(Bericht().find("Einheit mph, umgerechnet in km/h (× 1,609344)"), std::string::npos);
    EXPECT_FALSE(Offen(IDC_UEBERTRAGEN));
    EXPECT_EQ(Text(mask, IDC_IMPORT_HINWEIS), LoadRuvString(IDS_IMPORT_ERST_ZEITRAUM));

    // A click on a box changes nothing.
    Press(mask, IDC_IMPORT_VORHANDEN + 1);
    Press(mask, IDC_IMPORT_VORHANDEN + 11);
    EXPECT_EQ(Vorhanden(), "110000000000");

    Zeitraum("0", "2");
    ASSERT_TRUE(Offen(IDC_UEBERTRAGEN));
    EXPECT_FALSE(Offen(IDC_FLI_FAHRLINIE));
    Press(mask, IDC_UEBERTRAGEN);
    const CWegZeitDat& fall = data.WZRechDat(0);
    EXPECT_NEAR(fall.spalten[3].vEnd, 16.09344, 1e-9);
    EXPECT_NEAR(fall.spalten[4].vAnf, 48.28032, 1e-9);
    EXPECT_EQ(fall.spalten[3].art, PhasenArt::braking);
    EXPECT_FALSE(fall.spalten[5].IsUsed());
    EXPECT_EQ(Text(mask, IDC_IMPORT_HINWEIS),
              "Übertragen: 2 Phasen ab Phase 1; von 48,28 km/h auf 16,09 km/h, Weg 17,88 m, Zeit 2,00 s.");
    EXPECT_EQ(TransferNews(), std::vector<std::string>{"main 0"});

    // Another range is not the one that was transferred.
    Zeitraum("1", "2");
    EXPECT_EQ(Text(mask, IDC_IMPORT_HINWEIS), "");
    Enter(mask, IDC_IMPORT_VON, "77");
    EXPECT_EQ(Text(mask, IDC_IMPORT_HINWEIS), LoadRuvString(IDS_IMPORT_KEINE_ZEILE));
    EXPECT_EQ(Text(mask, IDC_IMPORT_VON), "1,000");
}

TEST_F(FLIImportTest, OfAFileWithPositionsOnlyTheSpeedFollowsFromTheDistances)
{
    // 0.0001° of latitude are 11.132 m; the third row repeats the second one's time.
    Oeffne("Time;lat;lon;height\n0;50;10;5\n1;50,0001;10;5\n1;50,0002;10;5\n3;50,0002;10;9\n");
    ErwarteSpalte(Feld::abstand, {0.0, 11.132, 11.132, 4.0});
    ErwarteSpalte(Feld::geschwindigkeit, {0.0, 40.0752, 40.0752, 7.2});
    ErwarteSpalte(Feld::y, {0.0, 11.132, 22.264, 22.264});
    ErwarteSpalte(Feld::z, {0.0, 0.0, 0.0, 4.0});
    EXPECT_EQ(Vorhanden(), "110111111000");
    Zeitraum("0", "3");
    ASSERT_TRUE(Offen(IDC_FLI_FAHRLINIE));
    Press(mask, IDC_FLI_FAHRLINIE);
    ASSERT_EQ(data.WZRechDat(0).fahrlinie.size(), 4U);
    EXPECT_NEAR(data.WZRechDat(0).fahrlinie[1].y, 1113.2, 1e-6);
    EXPECT_EQ(data.WZRechDat(0).bahnModus, 20);
}

TEST_F(FLIImportTest, CoordinatesComeFromTheFileOrHeadingAndSpeedOrPosition)
{
    Oeffne("t,v,x,y,heading,lat,lon\n0,1,3,4,90,50,10\n1,1,6,8,90,50,10\n");
    ErwarteSpalte(Feld::x, {3, 6});
    ErwarteSpalte(Feld::abstand, {-1, -1});
    EXPECT_TRUE(Bericht().find("Koordinaten: aus der Datei") != std::string::npos);

    Oeffne("t,v,heading,lat,lon\n0,36,90,50,10\n1,36,,50,10\n2,18,180,50,10\n");
    ErwarteSpalte(Feld::x, {0, 10, 10});
    ErwarteSpalte(Feld::y, {0, 0, -5});
    ErwarteSpalte(Feld::richtung, {90, -1, 180});
    EXPECT_NE(Bericht().find("In 1 Zeilen fehlt die Richtung"), std::string::npos);

    Oeffne("t,heading,lat,lon\n0,90,50,10\n1,90,50.0001,10\n");
    ErwarteSpalte(Feld::geschwindigkeit, {0, 40.0752});
    ErwarteSpalte(Feld::y, {0, 11.132});

    // Without speed, of x and y the plane distance; none is stored.
    Oeffne("t,x,y\n0,3,4\n1,6,8\n2,6,8\n");
    ErwarteSpalte(Feld::geschwindigkeit, {0, 18, 0});
    ErwarteSpalte(Feld::abstand, {-1, -1, -1});

    // A row without position has no coordinates, and the points beside it are its neighbours.
    Oeffne("t,v,lat,lon\n0,1,50,10\n1,1,,\n2,1,50.0001,10\n");
    ErwarteSpalte(Feld::y, {0, -1, 11.132});
    Zeitraum("0", "2");
    Press(mask, IDC_FLI_FAHRLINIE);
    EXPECT_EQ(data.WZRechDat(0).fahrlinie.size(), 2U);
}

TEST_F(FLIImportTest, ARefusedFileLeavesNothingBehind)
{
    Oeffne("t,v,x,y\n0,1,2,3\n1,2,3,4\n");
    Zeitraum("0", "1");
    Oeffne("t;temperatur\n0;20\n1;21\n", "klima.csv");
    ASSERT_EQ(front.messages.size(), 1U);
    EXPECT_EQ(front.messages[0].number, 1093);
    EXPECT_EQ(Spalte(Feld::zeitschritt).size(), 0U);
    EXPECT_EQ(Vorhanden(), "000000000000");
    EXPECT_FALSE(Offen(IDC_UEBERTRAGEN));
    EXPECT_FALSE(Offen(IDC_FLI_FAHRLINIE));
    EXPECT_EQ(Text(mask, IDC_IMPORT_PFAD), folder.File("klima.csv"));
    EXPECT_EQ(Bericht().rfind("\nAbgelehnt: ", 0), 0U);

    // A clock that is set back by a second leaves a step of -1, which stands for no time.
    Oeffne("t,v\n5,1\n4,2\n");
    EXPECT_EQ(front.messages.size(), 2U);
    Oeffne("t,v\n5,1\n6,2\n");
    EXPECT_EQ(front.messages.size(), 2U);
    EXPECT_EQ(Spalte(Feld::zeitschritt).size(), 2U);

    // A file that went away meanwhile: nothing is shown, and the report says why.
    std::filesystem::remove(folder.File("fahrt.csv"));
    Dialog().Importiere();
    EXPECT_EQ(front.messages.size(), 2U);
    EXPECT_EQ(Spalte(Feld::zeitschritt).size(), 0U);
    EXPECT_NE(Bericht().find("gibt es nicht"), std::string::npos);
}

TEST_F(FLIImportTest, CancellingLeavesTheFormerFile)
{
    Oeffne("t,v\n0,1\n1,2\n");
    std::string gross = "t,v\n";
    while (gross.size() < (std::size_t{17} << 20U))
        gross += "12345678,12345678\n";
    double weitester = 0.0;
    front.progress = [&](const std::string&, double done) { return (weitester = done) < 0.5; };
    Oeffne(gross, "gross.csv");
    EXPECT_GE(weitester, 0.5);
    EXPECT_LT(weitester, 0.6);
    EXPECT_EQ(Text(mask, IDC_IMPORT_PFAD), folder.File("fahrt.csv"));
    EXPECT_EQ(Spalte(Feld::geschwindigkeit), (std::vector<double>{1, 2}));
    EXPECT_TRUE(front.messages.empty());
}

TEST_F(FLIImportTest, ARangeHoldsAsManyRowsAsThePhasesHaveRoom)
{
    std::string inhalt = "t,v\n";
    for (int i = 0; i < 100; ++i)
        inhalt += std::to_string(i) + "," + std::to_string(i + 1) + "\n";
    Oeffne(inhalt);
    Zeitraum("0", "99");
    EXPECT_EQ(Text(mask, IDC_IMPORT_BIS), "44,000"); // 48 - 3 rows
    Press(mask, IDC_UEBERTRAGEN);
    EXPECT_EQ(data.WZRechDat(0).FirstFree(), 47U);
    EXPECT_EQ(data.WZRechDat(0).spalten[3].vEnd, 45.0);
    EXPECT_EQ(data.WZRechDat(0).spalten[46].vAnf, 1.0);
}

TEST_F(FLIImportTest, AClockThatIsSetBackStandsStillInChartAndCase)
{
    Oeffne("time (h),v (km/h)\n11:59:58,36\n11:59:59,36\n12:00:01,72\n12:00:02,72\n");
    EXPECT_NE(Bericht().find("An 1 Stellen läuft die Zeit zurück"), std::string::npos);
    Zeitraum("0", "2");
    EXPECT_EQ(Text(mask, IDC_IMPORT_BIS), "2,000");
    Press(mask, IDC_UEBERTRAGEN);
    EXPECT_EQ(data.WZRechDat(0).spalten[4].art, PhasenArt::noTime);
    EXPECT_EQ(data.WZRechDat(0).spalten[5].sumZeit, 2.0);
    EXPECT_EQ(Text(mask, IDC_IMPORT_HINWEIS).rfind("Übertragen: 3 Phasen", 0), 0U);
    EXPECT_EQ(Text(mask, IDC_IMPORT_HINWEIS).find("anderes"), std::string::npos);
}

TEST_F(FLIImportTest, AColumnIsAssignedOnceForAllFilesWithItsHeader)
{
    Oeffne("Moment;Tempo\n0;10\n1;20\n");
    ASSERT_EQ(front.messages.size(), 1U);
    const auto ordne = [&](int spalte, int kanal, int einheit) {
        framework::SelectRows(Control(mask, IDC_FLI_SPALTEN), spalte, spalte);
        thread.DispatchPending();
        Choose(mask, IDC_FLI_KANAL, kanal);
        if (einheit > 0)
            Choose(mask, IDC_FLI_EINHEIT, einheit);
    };
    EXPECT_FALSE(Offen(IDC_FLI_KANAL));
    ordne(0, 1, 0); // time
    ordne(1, 2, 2); // speed, m/s
    ErwarteSpalte(Feld::geschwindigkeit, {36, 72});
    EXPECT_EQ(Control(mask, IDC_FLI_SPALTEN).grid->firstSelected, 1);
    EXPECT_EQ(Control(mask, IDC_FLI_SPALTEN).grid->rows[1][3], "Geschwindigkeit [m/s]");
    EXPECT_EQ(Control(mask, IDC_FLI_EINHEIT).selection, 2);

    const std::size_t meldungen = front.messages.size();
    Oeffne("Moment;Tempo\n0;1\n1;2\n", "zweite.csv");
    ErwarteSpalte(Feld::geschwindigkeit, {3.6, 7.2});
    EXPECT_EQ(front.messages.size(), meldungen);
    ASSERT_TRUE(Offen(IDC_FLI_ZURUECKSETZEN));
    Press(mask, IDC_FLI_ZURUECKSETZEN);
    EXPECT_EQ(front.messages.size(), meldungen + 1);
    EXPECT_FALSE(Offen(IDC_FLI_ZURUECKSETZEN));
}

} // namespace
