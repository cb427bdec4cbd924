// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Files of driving data: what each rule makes of a cell, the same content in other dress, and the styles of loggers.
#include "masks/import/FahrdatenLeser.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <random>
#include <sstream>

namespace
{

std::vector<double> Werte(const Fahrdaten& daten, Feld feld)
{
    std::vector<double> werte;
    for (std::size_t i = 0; i < daten.zeilen.Anzahl(); ++i)
        werte.push_back(daten.zeilen.Wert(i, feld));
    return werte;
}

std::vector<FLIRow> Zeilen(const Fahrdaten& daten)
{
    std::vector<FLIRow> zeilen;
    for (std::size_t i = 0; i < daten.zeilen.Anzahl(); ++i)
        zeilen.push_back(daten.zeilen.Zeile(i));
    return zeilen;
}

void ErwarteGleich(const std::vector<double>& ist, const std::vector<double>& soll, double toleranz)
{
    ASSERT_EQ(ist.size(), soll.size());
    for (std::size_t i = 0; i < ist.size(); ++i)
        EXPECT_NEAR(ist[i], soll[i], toleranz) << i;
}

std::string Beispiel(const std::string& name)
{
    std::ostringstream text;
    text << std::ifstream(TAVELIN_SOURCE_DIR "/tests/data/fahrdaten/" + name, std::ios::binary).rdbuf();
    return text.str();
}

/// A file of one row after one at time 0 and speed 0, and what a field of the row is.
struct Zelle {
    const char* titel;
    const char* text;
    Feld feld;
    double wert;
};

TEST(FahrdatenLeser, CellsBecomeTheValuesOfTheirColumn)
{
    // Hand-calculated.
    const Zelle zellen[] = {
        {"Speed (mph)", "10", Feld::geschwindigkeit, 16.09344},
        {"geschw. [m/s]", "10", Feld::geschwindigkeit, 36.0},
        {"velocity [m/sec]", "2.5", Feld::geschwindigkeit, 9.0},
        {"Speed MPH", "10", Feld::geschwindigkeit, 16.09344},
        {"Speed mph", "10", Feld::geschwindigkeit, 16.09344},
        {"v (kn)", "10", Feld::geschwindigkeit, 10.0},
        {"v", "+7", Feld::geschwindigkeit, 7.0},
        {"v", "1e2", Feld::geschwindigkeit, 100.0},
        {"v", "1.5e2", Feld::geschwindigkeit, 1.5},
        {"v", ".5", Feld::geschwindigkeit, 0.5},
        {"v", "5.", Feld::geschwindigkeit, 5.0},
        {"v", "-0.5", Feld::geschwindigkeit, 0.5},
        {"v", "-1.5", Feld::geschwindigkeit, -1.5},
        {"v", "\"3,25\"", Feld::geschwindigkeit, 3.25},
        {"v", "\"1.234,5\"", Feld::geschwindigkeit, 1.234},
        {"v", "\"1,234,5\"", Feld::geschwindigkeit, 1.234},
        {"v", "12.5 km/h", Feld::geschwindigkeit, 12.5},
        {"v", "1234567890123456789012345678901234567890", Feld::geschwindigkeit,
         1234567890123456789012345678901234567890.0},
        {"v", "1234567890123456789012.5", Feld::geschwindigkeit, 1234567890123456789012.0},
        {"v", "0.1234567890123456789012345", Feld::geschwindigkeit, 0.123456789012345678},
        {"heading (rad)", "2", Feld::richtung, 114.591559},
        {"x [km]", "0.5", Feld::x, 500.0},
        {"yaw rate (rad)", "2", Feld::gierrate, 2.0},
        {"lat (rad)", "1", Feld::breite, 57.2957795},
        {"height", "12", Feld::hoehe, 12.0},
        {"lenkwinkel (\xb0)", "4", Feld::lenkwinkel, 4.0},
        {"g-x", "2", Feld::beschleunigungX, 19.62},
        {"g-y (m/s\xc2\xb2)", "2", Feld::beschleunigungY, 2.0},
        {"g-z (g)", "0.5", Feld::beschleunigungZ, 4.905},
        {"accy", "3", Feld::beschleunigungY, 3.0},
        {"accy", "3", Feld::beschleunigungZ, -1.0},
        {"linear accelerationy", "3", Feld::beschleunigungZ, 3.0},
        {"linear acceleration z", "3", Feld::beschleunigungZ, -1.0},
        {"altitude", "nan", Feld::hoehe, -1.0},
        {"altitude", "inf", Feld::hoehe, -1.0},
        {"altitude", "-", Feld::hoehe, -1.0},
        {"altitude", "abc.5", Feld::hoehe, -1.0},
        {"altitude", "", Feld::hoehe, -1.0},
    };
    for (const Zelle& zelle : zellen) {
        const std::string datei =
            std::string("Time,gps_speed,") + zelle.titel + ",rest\n0,0,,\n1,0," + zelle.text + ",0\n";
        const Fahrdaten daten =
            LiesFahrdaten(datei.find("gps_speed") != std::string::npos && zelle.feld == Feld::geschwindigkeit
                              ? std::string("Time,") + zelle.titel + ",rest\n0,0,\n1," + zelle.text + ",0\n"
                              : datei);
        ASSERT_EQ(daten.zeilen.Anzahl(), 2U) << datei;
        const double wert = daten.zeilen.Wert(1, zelle.feld);
        EXPECT_NEAR(wert, zelle.wert, 1e-15 * std::abs(zelle.wert)) << datei;
        EXPECT_EQ(daten.zeilen.Wert(1, Feld::zeitschritt), 1.0);
    }
}

/// A header, two cells of the time, and the step between them.
TEST(FahrdatenLeser, TimesByTheirHeader)
{
    constexpr double kKeine = -999.0;
    const struct {
        const char* kopf;
        const char* erste;
        const char* zweite;
        double schritt;
    } faelle[] = {
        {"time (h)", "12:00:01 am", "1:00:00 pm", 46799.0},
        {"time (h)", "10:00:00.5", "12:30:00", 1800.0 - 79200.5},
        {"time (h)", "11:59:59", "12:00:01", 1.0 - 86399.0},
        {"time (h)", "0:00:00", "23:00:00", 39600.0},
        {"utc time", "10:00:00", "10:00:00,25", 0.25},
        {"zeit", "10-00-00", "10-01-00", 60.0},
        {"zeit", "1,5", "2,25", 0.75},
        {"start zeit", "8.5", "9", 0.5},
        {"zeit (h)", "8.5", "9", kKeine},
        {"time", "10:00:00", "10:00:05", 0.0},
        {"timestamp", "2023-05-01 10:00:00.5", "2023-05-01 10:00:01.5", 0.0},
        {"gps time,ms", "1,0", "3,5", kKeine},
        {"utc time,ms", "10:00:00,900", "10:00:01,150", 0.25},
        {"utc time,foo,local", "10:00:00,0,0:00:00", "10:00:02,0,0:00:09", 2.0},
        {"time,local", "5,10:00:00", "6,10:00:03", 3.0},
        {"local", "5", "7", 2.0},
        {"ms", "5", "7", kKeine},
        {"foo,utc time,ms", "0,10:00:00,900", "0,10:00:01,150", kKeine},
    };
    for (const auto& fall : faelle) {
        const char trenner = std::string(fall.kopf).find(',') == std::string::npos ? ';' : ',';
        const std::string t(1, trenner);
        const std::string datei = fall.kopf + t + "v\n#\n" + fall.erste + t + "36\n" + fall.zweite + t + "36\n";
        const Fahrdaten daten = LiesFahrdaten(datei);
        if (fall.schritt == kKeine) {
            EXPECT_FALSE(daten.brauchbar) << datei;
            EXPECT_EQ(daten.bericht.ausgelassen, 2U) << datei;
            continue;
        }
        ASSERT_EQ(daten.zeilen.Anzahl(), 2U) << datei;
        EXPECT_EQ(daten.zeilen.Wert(0, Feld::zeitschritt), 0.0);
        EXPECT_NEAR(daten.zeilen.Wert(1, Feld::zeitschritt), fall.schritt, 1e-9) << datei;
        EXPECT_EQ(daten.bericht.rueckwaerts, fall.schritt < 0.0 ? 1U : 0U);
        EXPECT_EQ(daten.bericht.stehendeZeit, fall.schritt <= 0.0);
    }
}

TEST(FahrdatenLeser, OneOfSeveralColumnsFeedsTheChannel)
{
    const struct {
        const char* kopf;
        const char* zeile;
        Feld feld;
        double wert;
    } faelle[] = {
        {"t,v,speed (m/s)", "0,10,20", Feld::geschwindigkeit, 10.0},
        {"t,v (mph),speed (km/h)", "0,10,20", Feld::geschwindigkeit, 20.0},
        {"t,v,accel x,imu_acc_x", "0,1,2,3", Feld::beschleunigungX, 2.0},
        {"t,v,imu_acc_x,accel x", "0,1,2,3", Feld::beschleunigungX, 3.0},
        {"t,v,imu_yawrate_z,gier", "0,1,2,3", Feld::gierrate, 3.0},
        {"t,v,gier,imu_yawrate_z", "0,1,2,3", Feld::gierrate, 2.0},
        {"t,v,heading,bearing", "0,1,2,3", Feld::richtung, 3.0},
        {"t,v,x,xpos", "0,1,2,3", Feld::x, 3.0},
    };
    for (const auto& fall : faelle) {
        const Fahrdaten daten = LiesFahrdaten(std::string(fall.kopf) + "\nunit,unit,,\n" + fall.zeile + "\n");
        ASSERT_EQ(daten.zeilen.Anzahl(), 1U) << fall.kopf;
        EXPECT_EQ(daten.zeilen.Wert(0, fall.feld), fall.wert) << fall.kopf;
    }
}

TEST(FahrdatenLeser, HeaderUnitsAndCommentsAreFoundWhereTheyStand)
{
    const struct {
        const char* datei;
        std::vector<double> tempo;
    } faelle[] = {
        {"# v\n1,2\nformat,3\nt;v\n0;1\n1;2\n", {1, 2}},
        {"t,v\ns,m/s\n0,1\nt,v\n# 5,5\n1,2\n", {3.6, 7.2}},
        {"t,v\n# s,m/s\nnone\n[s],[m/s]\n0,1\n", {3.6}},
        {"t,v\n\"0\",\"1\"\n1,2\n", {1, 2}},
        {"t,v (km/h)\nx,y\n0,1\n1,2\n", {1, 2}},
        {"[column names]\nt v\n1 1\n[data]\n0  1\n1\t2\n[end]\n2 3\n", {1, 2}},
        {"[header]\nt\n[column names]\nt;v;a,b\n[data]\n0;1;0\n", {}},
        {"a;b, c;t;v\n0;0;0;1\n0;0;1;2\n", {1, 2}},
        {"t,speed\n\n  \n0,1\n \t 1,2  \n", {1, 2}},
        {"t,v\n", {}},
        {"", {}},
    };
    for (const auto& fall : faelle)
        EXPECT_EQ(Werte(LiesFahrdaten(fall.datei), Feld::geschwindigkeit), fall.tempo) << fall.datei;
    EXPECT_TRUE(LiesFahrdaten("t,v\n").brauchbar);
    EXPECT_FALSE(LiesFahrdaten("").brauchbar);
    EXPECT_FALSE(LiesFahrdaten("speed,x,y\n1,2,3\n").brauchbar);
    EXPECT_FALSE(LiesFahrdaten("t,lat,x\n1,2,3\n").brauchbar);
}

TEST(FahrdatenLeser, RowsThatLackWhatIsNeededGo)
{
    // Speed in 3 of 5 rows, position in 4: the position decides.
    const Fahrdaten position = LiesFahrdaten("t,v,lat,lon\n0,1,50,10\n1,,50,10\n2,3,50\n3,4,50,10\n4,,50,10\n");
    EXPECT_EQ(position.bericht.satz, Zeilensatz::position);
    EXPECT_EQ(Werte(position, Feld::geschwindigkeit), (std::vector<double>{1, -1, 4, -1}));
    EXPECT_EQ(Werte(position, Feld::zeitschritt), (std::vector<double>{0, 1, 2, 1}));
    EXPECT_EQ(position.bericht.ausgelasseneZeilen, (std::vector<std::size_t>{4}));

    // As many rows with either: the speed decides. A row of text goes.
    const Fahrdaten tempo = LiesFahrdaten("t,v,lat,lon\n0,1,50,10\n1,2,50,10\nEnd of log\n");
    EXPECT_EQ(tempo.bericht.satz, Zeilensatz::geschwindigkeit);
    EXPECT_EQ(tempo.bericht.ausgelassen, 1U);

    // x and y of 0 are none; half of the rows may go, more may not.
    const Fahrdaten xy = LiesFahrdaten("t,x,y\n0,0,5\n1,1,0\n2,1,5\n3,2,5\n");
    EXPECT_EQ(Werte(xy, Feld::x), (std::vector<double>{1, 2}));
    EXPECT_TRUE(xy.brauchbar);
    const Fahrdaten zuWenig = LiesFahrdaten("t,x,y\n0,0,5\n1,1,0\n2,1,5\n");
    EXPECT_FALSE(zuWenig.brauchbar);
    EXPECT_EQ(zuWenig.zeilen.Anzahl(), 0U);
    EXPECT_EQ(zuWenig.bericht.ausgelassen, 2U);

    // A time of -1 is a time.
    EXPECT_EQ(Werte(LiesFahrdaten("t,v\n-2,1\n0,9\n"), Feld::geschwindigkeit), (std::vector<double>{9}));
    EXPECT_EQ(Werte(LiesFahrdaten("t,v (km/h)\n-2,1\n-1,2\n0,3\n"), Feld::zeitschritt), (std::vector<double>{0, 1, 1}));
}

TEST(FahrdatenLeser, TheReportNamesWhatIsNotReadAsItStands)
{
    const Fahrdaten daten = LiesFahrdaten("t,v (furlong),accx,lat,lon\n0,1 km/h,-0.5,95,10\n0,2 km/h,-0.25,50,181\n"
                                          "1,3,-1.5,50,10\n2,4,-0.125,50,10\n3,5,-0,50,10\n4,6,-0.0,50,10\n");
    const Leserbericht& bericht = daten.bericht;
    ASSERT_EQ(bericht.spalten.size(), 5U);
    EXPECT_EQ(bericht.spalten[1].einheit, "furlong");
    EXPECT_FALSE(Umgerechnet(Kanal::geschwindigkeit, bericht.spalten[1].einheit).bekannt);
    EXPECT_EQ(bericht.spalten[1].mitRest, 2U);
    EXPECT_EQ(bericht.spalten[1].beispiel, "1 km/h");
    EXPECT_EQ(bericht.spalten[2].vorzeichenlos, 3U); // two of them in rows that are read the long way
    EXPECT_EQ(bericht.keineGrad, 2U);
    EXPECT_EQ(bericht.vorschau.size(), 3U);
    EXPECT_EQ(bericht.vorschau[1][2], "-0.25");

    EXPECT_EQ(LiesFahrdaten("t;v\nzeit;tempo\n10:00;1\n").bericht.einheitenzeile, 2U);
    EXPECT_TRUE(LiesFahrdaten("t,v\n-1,5\n0,6\n").bericht.einheitenSindZahlen);
    EXPECT_EQ(LiesFahrdaten("zeit;v (km/h)\n10:00;1\n---;2\n10:02;3\n").bericht.uhrOhneSekunden, 2U);
    EXPECT_EQ(LiesFahrdaten("utc time;v (km/h)\n10:00:00;1\n--:--;2\n").bericht.keineUhr, 1U);
    EXPECT_TRUE(LiesFahrdaten(std::string("t\0,v\0", 6)).bericht.nullBytes);

    // Where no header is found, the line that comes nearest to one is shown for the user to assign.
    const Fahrdaten fremd = LiesFahrdaten("Bericht, Teil 1\nMoment;Tempo;Ort\n0;1;2\n1;2;3\n");
    EXPECT_FALSE(fremd.brauchbar);
    ASSERT_EQ(fremd.bericht.spalten.size(), 3U);
    EXPECT_EQ(fremd.bericht.spalten[1].name, "tempo");
    EXPECT_EQ(fremd.bericht.vorschau[1], (std::vector<std::string>{"1", "2", "3"}));
}

TEST(FahrdatenLeser, TheUserAssignsColumnsAndUnits)
{
    const std::string datei = "Moment;Tempo;v\n10;2;3\n20;4;5\n";
    const std::uint64_t schluessel = LiesFahrdaten(datei).bericht.schluessel;
    const int ms = 1; // of the units of both channels: ms, m/s
    const Fahrdaten daten =
        LiesFahrdaten(datei, {{schluessel, {{0, Kanal::zeit, ms}, {1, Kanal::geschwindigkeit, ms}}}});
    ErwarteGleich(Werte(daten, Feld::zeitschritt), {0.0, 0.01}, 1e-15);
    ErwarteGleich(Werte(daten, Feld::geschwindigkeit), {7.2, 14.4}, 1e-12);
    EXPECT_EQ(daten.bericht.plan.KanalDer(2), Kanal::keiner);

    // A column beyond the hundredth is one, not two.
    const std::string viele(150, ',');
    const std::string breit = "v" + viele + "Moment\n1" + viele + "5\n2" + viele + "7\n";
    const Fahrdaten weit = LiesFahrdaten(breit, {{Kopfschluessel("v" + viele + "Moment"), {{150, Kanal::zeit, 0}}}});
    EXPECT_EQ(Werte(weit, Feld::zeitschritt), (std::vector<double>{0, 2}));

    // Another header is another file; a column that is taken away feeds nothing.
    EXPECT_FALSE(LiesFahrdaten("Moment;Tempo;w\n10;2;3\n", {{schluessel, {{0, Kanal::zeit, ms}}}}).brauchbar);
    const std::string kopf = "t,v,speed (km/h)\n";
    EXPECT_FALSE(
        LiesFahrdaten(kopf + "0,1,2\n", {{Kopfschluessel("t,v,speed (km/h)"), {{2, Kanal::keiner, -1}}}}).brauchbar);
    EXPECT_EQ(Werte(LiesFahrdaten(kopf + "0,1,2\n",
                                  {{Kopfschluessel("t,v,speed (km/h)"),
                                    {{1, Kanal::geschwindigkeit, -1}, {77, Kanal::x, 0}, {2, Kanal::x, 99}}}}),
                    Feld::geschwindigkeit),
              std::vector<double>{1});
}

TEST(FahrdatenLeser, ReadsTheStylesOfLoggers)
{
    const Fahrdaten semikolon = LiesFahrdaten(Beispiel("semikolon.csv"));
    ErwarteGleich(Werte(semikolon, Feld::geschwindigkeit), {50.4, 49.9, 48.75}, 1e-12);
    ErwarteGleich(Werte(semikolon, Feld::zeitschritt), {0.0, 0.1, 0.1}, 1e-12);
    EXPECT_EQ(semikolon.bericht.spalten[3].einheit, "°/s");
    EXPECT_TRUE(Umgerechnet(Kanal::gierrate, semikolon.bericht.spalten[3].einheit).bekannt);

    const Fahrdaten raceChrono = LiesFahrdaten(Beispiel("racechrono3.csv"));
    EXPECT_EQ(raceChrono.bericht.kopfzeile, 10U);
    EXPECT_EQ(raceChrono.bericht.ausgelasseneZeilen, std::vector<std::size_t>{12});
    ErwarteGleich(Werte(raceChrono, Feld::geschwindigkeit), {36.0, 37.8, 39.6}, 1e-12);
    ErwarteGleich(Werte(raceChrono, Feld::zeitschritt), {0.0, 0.1, 0.1}, 1e-6);
    ErwarteGleich(Werte(raceChrono, Feld::richtung), {90.0, 90.0, 91.5}, 0.0);

    const Fahrdaten trackAddict = LiesFahrdaten(Beispiel("trackaddict.csv"));
    ErwarteGleich(Werte(trackAddict, Feld::geschwindigkeit), {48.28032, 32.18688, 16.09344}, 1e-12);
    ErwarteGleich(Werte(trackAddict, Feld::laenge), {13.3777, 13.37779, 13.37784}, 1e-12);

    // Its time is a date in words: refused, and read when the user says which column the time is.
    EXPECT_FALSE(trackAddict.bericht.zifferzeit);
    EXPECT_FALSE(LiesFahrdaten("t,v\n59,1\n100,1\n161,1\n").bericht.zifferzeit);
    EXPECT_FALSE(LiesFahrdaten(Beispiel("torque.csv")).brauchbar);
    const auto uhr = LiesFahrdaten(Beispiel("torque.csv")).bericht.schluessel;
    const Fahrdaten torque = LiesFahrdaten(Beispiel("torque.csv"), {{uhr, {{1, Kanal::zeit, 2}}}});
    EXPECT_EQ(Einheiten(Kanal::zeit)[2]->text, "Uhrzeit");
    ErwarteGleich(Werte(torque, Feld::zeitschritt), {0.0, 0.5, 0.5}, 1e-9);
    ErwarteGleich(Werte(torque, Feld::geschwindigkeit), {36.0, 38.0, 40.0}, 0.0);

    const Fahrdaten vbox = LiesFahrdaten(Beispiel("vbox.vbo"));
    ErwarteGleich(Werte(vbox, Feld::geschwindigkeit), {50.4, 49.9, 48.75}, 1e-12);
    EXPECT_EQ(vbox.bericht.keineGrad, 3U);
    EXPECT_TRUE(vbox.bericht.zifferzeit);
    const Fahrdaten minuten =
        LiesFahrdaten(Beispiel("vbox.vbo"),
                      {{vbox.bericht.schluessel, {{1, Kanal::zeit, 3}, {2, Kanal::breite, 1}, {3, Kanal::laenge, 1}}}});
    ErwarteGleich(Werte(minuten, Feld::zeitschritt), {0.0, 0.05, 0.05}, 1e-9);
    ErwarteGleich(Werte(minuten, Feld::breite), {52.516, 52.516, 52.516}, 1e-9);

    const Fahrdaten obd = LiesFahrdaten(Beispiel("obd.csv"));
    ErwarteGleich(Werte(obd, Feld::geschwindigkeit), {36.0, 38.0, 40.0}, 0.0);
    ErwarteGleich(Werte(obd, Feld::lenkwinkel), {0.5, 1.25, 2.0}, 0.0);
    EXPECT_EQ(obd.bericht.ausgelasseneZeilen, std::vector<std::size_t>{5});
}

/// The same rows whatever the line ends, marks, blanks, quotes and decimal signs, and wherever the blocks end.
TEST(FahrdatenLeser, TheSameContentInOtherDressGivesTheSameRows)
{
    std::mt19937 random(5);
    const auto zahl = [&](const char* komma) {
        const int art = static_cast<int>(random() % 8);
        const std::string ganze = std::to_string(static_cast<int>(random() % 2000) - 1000);
        return art == 0 ? "" : art == 1 ? ganze : ganze + komma + std::to_string(random() % 100000);
    };
    for (int lauf = 0; lauf < 200; ++lauf) {
        const auto anfang = random();
        const auto datei = [&](const char* trenner, const char* komma, const char* ende, const std::string& davor,
                               const std::string& danach, bool inZitat) {
            random.seed(anfang);
            const std::size_t zeilen = 1 + random() % 9;
            std::string text;
            const auto nimm = [&](std::string zeile) {
                if (inZitat) {
                    // The last cell is quoted, so that the whole row is.
                    const std::size_t letzte = zeile.rfind(trenner[0]) + 1;
                    zeile = "\"" + zeile.substr(0, letzte) + "\"\"" + zeile.substr(letzte) + "\"\"\"";
                }
                text += davor + zeile + danach + ende;
            };
            const std::string t = trenner;
            nimm("Time (s)" + t + "Speed (km/h)" + t + "x" + t + "heading" + t + "rest");
            for (std::size_t i = 0; i < zeilen; ++i)
                nimm(std::to_string(i) + komma + "5" + t + zahl(komma) + t + zahl(komma) + t + zahl(komma) + t + "r");
            return text;
        };
        const std::string schlicht = datei(",", ".", "\n", "", "", false);
        const Fahrdaten soll = LiesFahrdaten(schlicht);
        const std::string kleider[] = {
            datei(",", ".", "\r\n", "", "", false),
            datei(",", ".", "\r", "", "", false),
            datei(",", ".", "\n\n", " \t", " ", false),
            datei(",", ".", "\n", "\xEF\xBB\xBF", "", false),
            datei(",", ".", "\n", "\xC2\xA0", "\xC2\xA0", false),
            datei(";", ",", "\n", "", "", false),
            datei(";", ".", "\r\n", "", "", false),
            datei(",", ".", "\n", "", "", true),
            datei(";", ",", "\n", "", "", true),
            schlicht.substr(0, schlicht.size() - 1),
        };
        for (const std::string& kleid : kleider) {
            const Fahrdaten ist = LiesFahrdaten(kleid);
            EXPECT_EQ(Zeilen(ist), Zeilen(soll)) << kleid;
            EXPECT_EQ(ist.brauchbar, soll.brauchbar) << kleid;

            const Zuordnungen keine;
            FahrdatenLeser leser(keine);
            std::string rest;
            for (std::size_t at = 0; at < kleid.size();) {
                const std::size_t block = std::min<std::size_t>(1 + random() % 40, kleid.size() - at);
                rest += kleid.substr(at, block);
                at += block;
                rest.erase(0, leser.Lies(rest, at == kleid.size()));
            }
            EXPECT_EQ(Zeilen(leser.Fertig()), Zeilen(soll)) << kleid;
        }
    }
}

} // namespace
