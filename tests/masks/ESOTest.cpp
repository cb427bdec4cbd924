// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "chart/Chart.h"
#include "framework/Window.h"
#include "host/Charts.h"
#include "masks/import/Breitzahl.h"
#include "masks/import/CESOImportDat.h"
#include "masks/import/CESOImportDlg.h"
#include "masks/import/ESOLeser.h"
#include "masks/import/Kreuzsummen.h"
#include "res/import.h"
#include "tests/support/MaskFixture.h"
#include "tests/support/Primitives.h"
#include "tests/support/TemporaryFolder.h"

#include <cmath>
#include <random>

namespace
{

using Zufall = std::mt19937_64;

std::int64_t Zwischen(Zufall& zufall, std::int64_t von, std::int64_t bis)
{
    return von + static_cast<std::int64_t>(zufall() % static_cast<std::uint64_t>(bis - von + 1));
}

/// 2^k
Breitzahl Zweierpotenz(int k)
{
    Breitzahl potenz(std::int64_t{1});
    for (; k > 0; --k)
        potenz += potenz;
    return potenz;
}

TEST(Breitzahl, RoundsToTheNearestDoubleAndTiesToEven)
{
    Zufall zufall(1);
    for (int i = 0; i < 3000; ++i) {
        const auto mantisse = static_cast<std::int64_t>((std::uint64_t{1} << 52U) | (zufall() >> 12U));
        const int stellen = 2 + static_cast<int>(zufall() % 200);
        const Breitzahl haelfte = Zweierpotenz(stellen - 1);
        const Breitzahl ganz = Breitzahl(mantisse) * Zweierpotenz(stellen);
        const Breitzahl eins(std::int64_t{1});
        const auto erwartet = [&](std::int64_t m) { return std::ldexp(static_cast<double>(m), stellen); };
        EXPECT_EQ(static_cast<double>(ganz), erwartet(mantisse));
        EXPECT_EQ(static_cast<double>(ganz + haelfte - eins), erwartet(mantisse));
        EXPECT_EQ(static_cast<double>(ganz + haelfte), erwartet(mantisse + mantisse % 2));
        EXPECT_EQ(static_cast<double>(ganz + haelfte + eins), erwartet(mantisse + 1));
        EXPECT_EQ(static_cast<double>(-(ganz + haelfte + eins)), -erwartet(mantisse + 1));
    }
}

TEST(Breitzahl, CountsAsTheBuiltInNumbersDoWhereTheySuffice)
{
    Zufall zufall(2);
    for (int i = 0; i < 3000; ++i) {
        const auto a = static_cast<std::int64_t>(zufall()) >> (zufall() % 63);
        const auto b = static_cast<std::int64_t>(zufall()) >> (zufall() % 63);
        const auto c = static_cast<std::int64_t>(zufall());
        EXPECT_EQ(Breitzahl(a) * Breitzahl(b), Breitzahl(static_cast<Ganz128>(a) * b));
        EXPECT_EQ(Breitzahl(a) - Breitzahl(b), Breitzahl(static_cast<Ganz128>(a) - b));
        EXPECT_EQ(Breitzahl(static_cast<Ganz128>(a) * b) * Breitzahl(c) -
                      Breitzahl(static_cast<Ganz128>(a) * b) * Breitzahl(c - 1),
                  Breitzahl(static_cast<Ganz128>(a) * b));
    }
    EXPECT_EQ(static_cast<double>(Zweierpotenz(63) * Zweierpotenz(63) * Zweierpotenz(40)), 0x1p166);
}

/// r as it is defined, shift for shift; a strictly larger one replaces the best.
ESOTreffer Schlicht(const ESOKurve& a, const ESOKurve& b)
{
    const auto [s, e, m] = FensterVon(a.size());
    const auto n = static_cast<std::int64_t>(e - s);
    const auto mal = [](std::int64_t u, std::int64_t v) { return Breitzahl(static_cast<Ganz128>(u) * v); };
    ESOTreffer bester;
    for (std::size_t d = 0; d < m; ++d) {
        Breitzahl x, y, xx, yy, xy;
        for (std::size_t j = 0; j < e - s; ++j) {
            const std::int64_t u = a[s + j];
            const std::int64_t v = d + j < b.size() ? b[d + j] : 0;
            x += Breitzahl(u);
            y += Breitzahl(v);
            xx += mal(u, u);
            yy += mal(v, v);
            xy += mal(u, v);
        }
        const double wurzel =
            std::sqrt(static_cast<double>(Breitzahl(n) * yy - y * y) * static_cast<double>(Breitzahl(n) * xx - x * x));
        const double r = wurzel == 0.0 ? 0.0 : static_cast<double>(Breitzahl(n) * xy - x * y) / wurzel;
        if (r > bester.r)
            bester = {d, r};
    }
    return bester;
}

/// Curves as a device gives them and as it never would.
ESOKurve Zufallskurve(Zufall& zufall, std::size_t laenge, int art)
{
    ESOKurve kurve(laenge);
    const std::int64_t periode = Zwischen(zufall, 1, 9);
    const auto mitte = static_cast<double>(zufall() % (laenge + 1));
    for (std::size_t k = 0; k < laenge; ++k) {
        const auto i = static_cast<std::int64_t>(k);
        switch (art) {
        case 0: // noise
            kurve[k] = Zwischen(zufall, -2000, 2000);
            break;
        case 1: // a pulse, saturated
            kurve[k] = std::min<std::int64_t>(
                900, std::llround(1500.0 * std::exp(-std::pow((static_cast<double>(k) - mitte) / 9.0, 2))));
            break;
        case 2: // ties everywhere
            kurve[k] = i % periode;
            break;
        case 3: // dead
            kurve[k] = 0;
            break;
        case 4: // few numbers
            kurve[k] = static_cast<std::int64_t>(zufall() % 2);
            break;
        case 5: // one spike
            kurve[k] = static_cast<double>(k) == mitte ? 7 : 0;
            break;
        case 6: // as large as they can be
            kurve[k] = static_cast<std::int64_t>(zufall());
            break;
        case 7: // on the edge of what 64 bits sum up
            kurve[k] = Zwischen(zufall, -(std::int64_t{1} << 28), std::int64_t{1} << 28);
            break;
        case 8: // a large offset, hardly any change
            kurve[k] = (std::int64_t{1} << 55) + static_cast<std::int64_t>(zufall() % 3);
            break;
        default: // dead after a moment
            kurve[k] = k < laenge / 3 ? Zwischen(zufall, -50, 50) : 20;
        }
    }
    return kurve;
}

TEST(ESOSuche, FindsTheSameShiftAndTheSameRAsThePlainSearch)
{
    Zufall zufall(3);
    for (int i = 0; i < 300; ++i) {
        const std::size_t laenge = i < 40 ? static_cast<std::size_t>(i) : zufall() % (i % 100 == 99 ? 500 : 110);
        const int art = static_cast<int>(zufall() % 10);
        const ESOKurve bezug = Zufallskurve(zufall, laenge, art);
        ESOKurve verwandt = bezug; // shifted, with noise
        std::rotate(verwandt.begin(),
                    verwandt.begin() + static_cast<std::ptrdiff_t>(laenge == 0 ? 0 : zufall() % laenge),
                    verwandt.end());
        for (std::int64_t& wert : verwandt)
            wert = wert / 2 + static_cast<std::int64_t>(zufall() % 3);
        const ESOKurve fremd = Zufallskurve(zufall, laenge, static_cast<int>(zufall() % 10));
        const auto gefunden = SucheVerschiebungen(bezug, {&verwandt, &fremd, &bezug}).value();
        const ESOKurve* kurven[] = {&verwandt, &fremd, &bezug};
        for (std::size_t k = 0; k < 3; ++k) {
            const ESOTreffer erwartet = Schlicht(bezug, *kurven[k]);
            ASSERT_EQ(gefunden[k].d, erwartet.d) << "round " << i << ", kind " << art << ", curve " << k;
            ASSERT_EQ(gefunden[k].r, erwartet.r) << "round " << i << ", kind " << art << ", curve " << k;
            const auto [s, e, m] = FensterVon(laenge);
            if (erwartet.r > 0.0) {
                ASSERT_EQ(Korrelation(bezug, *kurven[k], s, e, erwartet.d), erwartet.r);
            }
        }
    }
}

TEST(ESOSuche, SumsOfTheTransformAreWithinTheirBound)
{
    Zufall zufall(4);
    for (int i = 0; i < 150; ++i) {
        const std::size_t n = 1 + zufall() % 300;
        const std::size_t shifts = 1 + zufall() % 300;
        const ESOKurve x = Zufallskurve(zufall, n, 0);
        const ESOKurve y = Zufallskurve(zufall, zufall() % 700, i % 2 == 0 ? 0 : 1);
        const auto ergebnis = Kreuzsummen(x, shifts, y.size()).Mit(y);
        for (std::size_t d = 0; d < shifts; ++d) {
            std::int64_t summe = 0;
            for (std::size_t j = 0; j < n && d + j < y.size(); ++j)
                summe += x[j] * y[d + j];
            ASSERT_LE(std::abs(ergebnis.summen[d] - static_cast<double>(summe)), ergebnis.fehler) << n << " " << shifts;
        }
        EXPECT_LT(ergebnis.fehler, 0.01) << "small beside one";
    }
}

TEST(ESOSuche, RIsZeroWhereItIsNotDefined)
{
    const ESOKurve a{0, 1, 4, 2, 7};
    EXPECT_NEAR(Korrelation(a, a, 0, 5, 0), 1.0, 1e-15);
    // Σx = Σy = 7, Σx² = 21, Σy² = 69 (y = 1 4 2 → s = 1..4; 2 7 0 with the end of b): by hand n = 3
    // x = 1 4 2, y = 2 7 0: Σx = 7, Σy = 9, Σxy = 30, Σx² = 21, Σy² = 53: (90 − 63)/√((159 − 81)(63 − 49)) = 27/√1092
    EXPECT_NEAR(Korrelation(a, a, 1, 4, 3), 27.0 / std::sqrt(1092.0), 1e-15);
    EXPECT_EQ(Korrelation(a, a, 3, 2, 0), 0.0);
    EXPECT_EQ(Korrelation(a, a, 0, 6, 0), 0.0);
    EXPECT_EQ(Korrelation(a, a, 0, 3, 6), 0.0);
    EXPECT_EQ(Korrelation(a, {5, 5, 5, 5, 5}, 0, 5, 0), 0.0);
}

TEST(ESOSuche, StopsWhenItShall)
{
    Zufall zufall(5);
    const ESOKurve kurve = Zufallskurve(zufall, 500, 0);
    EXPECT_FALSE(SucheVerschiebungen(kurve, {&kurve}, [](double) { return false; }));
    double letzter = -1.0;
    EXPECT_TRUE(SucheVerschiebungen(kurve, {&kurve, &kurve, &kurve}, [&](double anteil) {
        EXPECT_GE(anteil, letzter);
        letzter = anteil;
        return true;
    }));
    EXPECT_LT(letzter, 1.0);
}

TEST(ESOSuche, ShiftedCurvesRepeatTheirEnds)
{
    const ESOKurve kurve{10, 11, 12, 13};
    EXPECT_EQ(Verschoben(kurve, 2, 4), (ESOKurve{12, 13, 13, 13}));
    EXPECT_EQ(Verschoben(kurve, -3, 4), (ESOKurve{10, 10, 10, 10}));
    EXPECT_EQ(Verschoben(kurve, -1, 4), (ESOKurve{10, 10, 11, 12}));
}

struct Gelesen {
    ESOBefund befund;
    ESOKurven kurven;
    ESOAufbau aufbau;
    std::size_t zeile;
};

Gelesen Lies(const std::string& text, std::size_t stueck = std::string::npos)
{
    ESOLeser leser(text.size());
    for (std::size_t at = 0; at < text.size(); at += std::min(stueck, text.size() - at))
        if (!leser.Nimm(std::string_view(text).substr(at, stueck)))
            break;
    const ESOBefund befund = leser.Ende();
    return {befund, leser.Kurven(), leser.Aufbau(), leser.Zeile()};
}

TEST(ESOLeser, RecognisesTheLayoutByTheFirstLine)
{
    using enum ESOAufbau;
    struct Fall {
        std::string text;
        ESOAufbau aufbau;
        ESOKurve erste; ///< relative to the first sample
        ESOKurve letzte;
    };
    for (const Fall& fall : {
             Fall{"1;2;3;4;5\n11;12;13;14;25\n", ohneKopf, {0, 10}, {0, 20}},
             {"1,2,3,4,5\n11,12,13,14,25", ohneKopf, {0, 10}, {0, 20}},
             {"a;b;c;d;e\n1;2;3;4;5\n4;5;6;7;9\n", kopfzeile, {0, 3}, {0, 4}},
             {"a;b;c;d;e;\n1;2;3;4;5;\n4;5;6;7;9;\n", kopfzeile, {0, 3}, {0, 4}}, // one field ends with the line
             {"t;a;b;c;d;e\n0,01;1;2;3;4;5\n0,02;2;2;3;4;6\n", vorspalte, {0, 1}, {0, 1}},
             {"t;1;2;3;d;e\nx;1;2;3;4;5\n", vorspalte, {0}, {0}},                    // three numbers
             {"t;1;2;3;4;e\n1;2;3;4;5;6\n5;5;5;5;5;5\n", kopfzeile, {0, 4}, {0, 0}}, // four
             {"1;2;3;4;5;6\n1;2;3;4;5;6\n9;2;3;4;5;6\n", kopfzeile, {0, 8}, {0, 0}}, // that line is dropped
             {"1;2,5;3;4;5\n1;2;3;4;5\n", kopfzeile, {0}, {0}},                      // the semicolon goes before
             {"Messung\n7;2;3;4;5\n8;2;3;4;5", kopfzeile, {0, 1}, {0, 0}},           // neither: semicolon
             {"\xEF\xBB\xBF\r\n\r\n 1 ;\t+2;3;4;-5 \r\n\r\n  \r\n2;2;3;4;5", ohneKopf, {0, 1}, {0, 10}},
             {"1;2;3;4;5;77;text\n2;2;3;4;5;;\n", kopfzeile, {0}, {0}},
             {"1;2;3;4;5\r2;3;4;5;6\r", ohneKopf, {0, 1}, {0, 1}},
             {"1;2;3;4;0012345678901\n0;0;0;0;-9\n", ohneKopf, {0, -1}, {0, -12345678910}},
             {"1;2;3;4;9223372036854775807\n1;2;3;4;0", ohneKopf, {0, 0}, {0, -9223372036854775807}},
         }) {
        const Gelesen gelesen = Lies(fall.text);
        EXPECT_EQ(gelesen.befund, ESOBefund::gelesen) << fall.text;
        EXPECT_EQ(gelesen.aufbau, fall.aufbau) << fall.text;
        EXPECT_EQ(gelesen.kurven[0], fall.erste) << fall.text;
        EXPECT_EQ(gelesen.kurven[4], fall.letzte) << fall.text;
        EXPECT_EQ(gelesen.zeile, 0U);
        for (std::size_t stueck = 1; stueck < 12; ++stueck)
            EXPECT_EQ(Lies(fall.text, stueck).kurven, gelesen.kurven) << fall.text << " in pieces of " << stueck;
    }
}

TEST(ESOLeser, RefusesWhatIsNoCurveAndNamesTheLine)
{
    using enum ESOBefund;
    struct Fall {
        std::string text;
        ESOBefund befund;
        std::size_t zeile;
    };
    for (const Fall& fall : {
             Fall{"", ohneWerte, 0},
             {"a;b;c;d;e\n", ohneWerte, 1},
             {"1;2;3;4;5\n1;2;3;4\n", feldFehlt, 2},
             {"1;2;3;4;5\n\n1;2;3;4;", feldFehlt, 3},
             {"1;2;3;4;5\r\n1;2;3;4;5\r\n1;2;;4;5\r\n", falscherWert, 3},
             {"1;2;3;4;5\n1;2;3.0;4;5\n", falscherWert, 2},
             {"1;2;3;4;5\n1;2;3;4;5x\n", falscherWert, 2},
             {"1;2;3;4;5\n1;2;3 3;4;5\n", falscherWert, 2},
             {"1;2;3;4;5\n1;2;- 3;4;5\n", falscherWert, 2},
             {"1;2;3;4;5\n1;2;0x3;4;5\n", falscherWert, 2},
             {"1;2;3;4;5\n1;2;9223372036854775808;4;5\n", falscherWert, 2},
             {"1;2;3;4;5\n1;2;99999999999999999999999;4;5\n", falscherWert, 2},
             {"1;2;3;4;5\n1,2,3,4,5\n", falscherWert, 2},
             {"t;a;b;c;d;e\n1\n", feldFehlt, 2},
             {"1;2;3;4;5\n" + std::string(ESOLeser::kLaengsteZeile + 1, ' '), zuLang, 2},
         }) {
        const Gelesen gelesen = Lies(fall.text);
        EXPECT_EQ(gelesen.befund, fall.befund) << fall.text.substr(0, 60);
        if (fall.befund != ohneWerte) {
            EXPECT_EQ(gelesen.zeile, fall.zeile) << fall.text.substr(0, 60);
        }
        EXPECT_TRUE(gelesen.kurven[0].empty());
    }
    // A difference to the first sample that 64 bits do not hold: no line of its own.
    EXPECT_EQ(Lies("0;0;0;0;-9223372036854775808\n0;0;0;0;1\n").befund, falscherWert);
    EXPECT_EQ(Lies("0;0;0;0;-9223372036854775808\n0;0;0;0;-1\n").kurven[4], (ESOKurve{0, 9223372036854775807}));
}

class ESOTest : public test::MaskTest
{
  protected:
    /// A file of five pulses at the shifts given; `dead` is a sensor that gives one number only.
    std::string Datei(const std::array<int, kESOKurven>& versatz, std::size_t dead = kESOKurven, int rauschen = 15)
    {
        Zufall zufall(6);
        std::string text = "Messkurve 1;Messkurve 2;Messkurve 3;Messkurve 4;Messkurve 5\n";
        for (int k = 0; k < 1000; ++k)
            for (std::size_t q = 0; q < kESOKurven; ++q) {
                const double t = k - versatz[q];
                const double puls = 1800.0 * std::exp(-std::pow((t - 480.0) / 20.0, 2)) +
                                    700.0 * std::exp(-std::pow((t - 560.0) / 9.0, 2));
                const auto wert = static_cast<std::int64_t>((1.0 + 0.2 * static_cast<double>(q)) * puls) +
                                  Zwischen(zufall, -rauschen, rauschen);
                text += std::to_string(q == dead ? 512 : wert) + (q + 1 < kESOKurven ? ";" : "\n");
            }
        return Schreibe(text);
    }
    std::string Schreibe(const std::string& text, const std::string& name = "messkurven.csv")
    {
        folder.Write(name, text);
        return folder.File(name);
    }
    void Waehle(framework::Window& mask, const std::string& pfad)
    {
        front.files = {pfad};
        Press(mask, IDC_ESO_WAEHLEN);
    }
    std::string Letzte() const { return front.messages.empty() ? std::string() : front.messages.back().text; }
    CChartState Diagramm(framework::Window& mask)
    {
        return static_cast<CChartCtrl*>(Control(mask, IDC_ESO_DIAGRAMM).object)->Client()->State();
    }

    test::TemporaryFolder folder;
};

TEST_F(ESOTest, SynthesisedShiftsComeBackExactly)
{
    CESOImportDat dat(data);
    ASSERT_EQ(dat.Lies(Datei({0, 3, 7, -12, 40})), CESOImportDat::Lesung::gelesen);
    EXPECT_EQ(dat.verschiebungen, (std::array<std::int64_t, kESOKurven>{0, 3, 7, -12, 40}));
    EXPECT_EQ(dat.verschiebung, (std::array<double, 3>{3.0, 4.0, 7.0}));
    EXPECT_EQ(dat.ausgerichtet[4][100], dat.roh[4][140]);
    EXPECT_EQ(dat.ausgerichtet[3][0], 0) << "before its start a curve repeats its first sample";
    for (std::size_t i = 0; i < CESOImportDat::kPaare; ++i)
        EXPECT_TRUE(dat.IstVerlaesslich(i));
    // 3.6 · distance / (shift · 0.01 s), and half a sample more and less
    EXPECT_NEAR(dat.v[0], 3.6 * 0.25 / 0.03, 1e-9);
    EXPECT_NEAR(dat.v[1], 3.6 * 0.25 / 0.04, 1e-9);
    EXPECT_NEAR(dat.v[2], 3.6 * 0.50 / 0.07, 1e-9);
    EXPECT_NEAR(dat.vVon[0], 3.6 * 0.25 / 0.035, 1e-9);
    EXPECT_NEAR(dat.vBis[0], 3.6 * 0.25 / 0.025, 1e-9);
    EXPECT_GT(dat.vParabel[0], dat.vVon[0]);
    EXPECT_LT(dat.vParabel[0], dat.vBis[0]);
    dat.abstand12 = 0.5;
    dat.abtastzeit = 0.02;
    dat.Auswerten();
    EXPECT_NEAR(dat.v[0], 3.6 * 0.5 / 0.06, 1e-9);
    EXPECT_NEAR(dat.v[2], 3.6 * 0.75 / 0.14, 1e-9);
}

/// A pulse between two samples: the parabola sees the part that whole shifts cannot.
TEST_F(ESOTest, TheParabolaFindsPartsOfASample)
{
    std::string text;
    for (int k = 0; k < 400; ++k)
        for (int q = 0; q < 5; ++q)
            text += std::to_string(std::llround(1e6 * std::exp(-std::pow((k - 200.0 - 2.3 * q) / 15.0, 2)))) +
                    (q < 4 ? ";" : "\n");
    CESOImportDat dat(data);
    ASSERT_EQ(dat.Lies(Schreibe(text)), CESOImportDat::Lesung::gelesen);
    EXPECT_EQ(dat.verschiebung[0], 2.0);
    EXPECT_NEAR(dat.vParabel[0], 3.6 * 0.25 / 0.023, 0.05);
    EXPECT_NEAR(dat.vParabel[2], 3.6 * 0.50 / 0.046, 0.05);
}

TEST_F(ESOTest, ADeadSensorAndAShiftOfNothingGiveNoSpeed)
{
    CESOImportDat dat(data);
    ASSERT_EQ(dat.Lies(Datei({0, 0, -5, 1, 2}, 3)), CESOImportDat::Lesung::gelesen);
    EXPECT_EQ(dat.verschiebungen[3], -100) << "−s";
    EXPECT_EQ(dat.verschiebung[0], 0.0);
    EXPECT_TRUE(std::isnan(dat.v[0]) && std::isnan(dat.vVon[0]) && std::isnan(dat.vParabel[0]));
    EXPECT_NEAR(dat.v[2], -3.6 * 0.5 / 0.05, 1e-9) << "with the sign of the shift";
    EXPECT_LT(dat.vVon[2], dat.v[2]);
    EXPECT_GT(dat.vBis[2], dat.v[2]);
    ASSERT_EQ(dat.Lies(Datei({0, 4, 6, 1, 2}, 1)), CESOImportDat::Lesung::gelesen);
    EXPECT_EQ(dat.r[0], 0.0);
    EXPECT_FALSE(dat.IstVerlaesslich(0));
    EXPECT_TRUE(std::isnan(dat.v[0])) << "of a shift that means nothing";
}

TEST_F(ESOTest, LoadsShowsAndWritesWhatItRead)
{
    framework::Window& mask = OpenMask(486);
    EXPECT_EQ(Diagramm(mask).note, "Es sind keine Daten geladen.");
    EXPECT_EQ(Control(mask, IDC_ESO_V_12).text, "");
    const std::string pfad = Datei({0, 0, 7, -12, 40});
    Waehle(mask, pfad);
    EXPECT_TRUE(front.messages.empty());
    EXPECT_EQ(front.broadcast.front().message, WM_RUV_BEFOREIMPORT);
    EXPECT_EQ(front.requests.front().filter, "CSV(*.csv)|*.csv||");
    EXPECT_EQ(Control(mask, IDC_ESO_DATEI).text, pfad);
    EXPECT_EQ(Control(mask, IDC_ESO_V_12).text, "–");
    EXPECT_EQ(Control(mask, IDC_ESO_V_13).text, "25,71");
    EXPECT_EQ(Diagramm(mask).rows, 1000U);
    EXPECT_EQ(Diagramm(mask).series.size(), 5U);
    EXPECT_NE(Control(mask, IDC_ESO_BEFUND).text.find("1.000 Messwerte"), std::string::npos);

    std::string why;
    framework::TakeRange(Control(mask, IDC_ESO_DIAGRAMM), 4.0, 6.0, why);
    Press(mask, IDC_ESO_KORRELIEREN);
    Press(mask, IDC_ESO_RESIDUEN);
    EXPECT_EQ(Diagramm(mask).series.size(), 9U);
    EXPECT_EQ(Diagramm(mask).first, 400U) << "the range stays while the file does";
    EXPECT_EQ(Control(mask, IDC_ESO_VON).text, "4,000");
    Enter(mask, IDC_ESO_BIS, "5");
    EXPECT_EQ(Diagramm(mask).last, 500U);
    Enter(mask, IDC_ESO_ABTASTZEIT, "0,02");
    EXPECT_EQ(Control(mask, IDC_ESO_V_13).text, "12,86");
    EXPECT_EQ(Control(mask, IDC_ESO_VON).text, "8,000") << "the same rows, at other times";
    framework::MoveTrackbar(Control(mask, IDC_ESO_LINIENSTAERKE), 7);
    EXPECT_EQ(Control(mask, IDC_ESO_LINIENSTAERKE_WERT).text, "7");

    const auto rows = static_cast<CMDIRechDialog*>(mask.object)->RowsRead();
    ASSERT_EQ(rows->count, 1000U);
    std::vector<double> werte(rows->titles.size());
    rows->get(480, werte);
    EXPECT_EQ(werte[0], 480 * 0.02);
    EXPECT_EQ(rows->titles[10], "aligned5");
    rows->get(520, std::span(werte));
    const double roh5 = werte[5];
    rows->get(480, werte);
    EXPECT_EQ(werte[10], roh5);

    // What the case keeps, another mask of the same case begins with.
    CESOImportDat wieder(data);
    wieder.Laden();
    EXPECT_EQ(wieder.abtastzeit, 0.02);
    EXPECT_TRUE(wieder.IstLeer());
}

TEST_F(ESOTest, SaysWhatCannotBeDoneAndShowsNothingOfIt)
{
    framework::Window& mask = OpenMask(486);
    Press(mask, IDC_ESO_KORRELIEREN);
    EXPECT_EQ(Letzte(), "Load csv data in order to display correlated graph");
    EXPECT_EQ(Control(mask, IDC_ESO_KORRELIEREN).check, 0);
    Press(mask, IDC_ESO_BILD_LADEN);
    EXPECT_EQ(Letzte(), "Load csv data in order to display image");
    Waehle(mask, Datei({0, 3, 7, -12, 40}));
    Press(mask, IDC_ESO_KORRELIEREN);
    EXPECT_EQ(Control(mask, IDC_ESO_KORRELIEREN).check, 1);
    Waehle(mask, folder.File("gibt-es-nicht.csv"));
    EXPECT_EQ(Letzte(), "Couldn't open file");
    EXPECT_EQ(Diagramm(mask).rows, 0U);
    EXPECT_EQ(Control(mask, IDC_ESO_V_13).text, "");
    EXPECT_EQ(Control(mask, IDC_ESO_R_13).text, "");
    Waehle(mask, Datei({0, 3, 7, -12, 40}));
    EXPECT_EQ(Control(mask, IDC_ESO_KORRELIEREN).check, 0) << "at first the raw curves";
    Waehle(mask, Schreibe("1;2;3;4;5\n1;2;3;4;5\n1;2;x;4;5\n"));
    EXPECT_EQ(Letzte(), "Unsuported csv format");
    EXPECT_NE(Control(mask, IDC_ESO_BEFUND).text.find("Zeile 3"), std::string::npos);
    EXPECT_EQ(Diagramm(mask).note, "Es sind keine Daten geladen.");
    const auto rows = static_cast<CMDIRechDialog*>(mask.object)->RowsRead();
    EXPECT_EQ(rows->count, 0U);
    EXPECT_EQ(rows->titles.size(), 11U);
    const std::size_t bisher = front.messages.size();
    Waehle(mask, Schreibe("a;b;c;d;e\n"));
    EXPECT_NE(Control(mask, IDC_ESO_BEFUND).text.find("keine Messwerte"), std::string::npos);
    EXPECT_EQ(front.messages.size(), bisher);
    Waehle(mask, Datei({0, 3, 7, -12, 40}, 1));
    EXPECT_NE(Control(mask, IDC_ESO_URTEIL).text.find("1–2, 2–3"), std::string::npos);
}

TEST_F(ESOTest, ACancelledFileLeavesEverythingAsItWas)
{
    framework::Window& mask = OpenMask(486);
    const std::string pfad = Datei({0, 3, 7, -12, 40});
    Waehle(mask, pfad);
    std::string text;
    for (int k = 0; k < 90; ++k)
        text += std::to_string(k % 7) + ";" + std::to_string(k % 5) + ";" + std::to_string(k % 8) + ";1;2\n";
    const std::string andere = Schreibe(text, "andere.csv");
    for (const double ab : {0.0, 0.5, 0.9}) {
        front.progress = [ab](const std::string&, double anteil) { return anteil < ab; };
        Waehle(mask, andere);
        EXPECT_EQ(Control(mask, IDC_ESO_V_12).text, "30,00");
        EXPECT_EQ(Diagramm(mask).rows, 1000U);
        EXPECT_EQ(Control(mask, IDC_ESO_DATEI).text, pfad);
    }
}

TEST_F(ESOTest, APictureStandsBesideTheChart)
{
    framework::Window& mask = OpenMask(486);
    Waehle(mask, Datei({0, 3, 7, -12, 40}));
    // 4 × 2 pixels of a bitmap file, 24 bits, rows from the bottom.
    std::string bmp("BM\x4e\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\x04\0\0\0\x02\0\0\0\x01\0\x18\0\0\0\0\0\x18\0\0\0", 38);
    bmp += std::string(16, '\0') + std::string(24, '\x55');
    const std::string pfad = Schreibe(bmp, "bild.bmp");
    const auto bild = [&]() -> std::optional<drawing::Picture> {
        CDC dc(200, 200);
        Control(mask, IDC_ESO_BILD).painter(dc, {0, 0, 200, 200});
        const auto pictures = test::All<drawing::Picture>(dc);
        return pictures.empty() ? std::nullopt : std::optional(pictures.front());
    };
    EXPECT_FALSE(bild());
    front.files = {folder.File("nichts.emf")};
    Press(mask, IDC_ESO_BILD_LADEN);
    EXPECT_EQ(Letzte(), "Couldn't load image");
    front.files = {pfad};
    Press(mask, IDC_ESO_BILD_LADEN);
    ASSERT_TRUE(bild());
    EXPECT_EQ(bild()->across.x, 200.0);
    EXPECT_EQ(bild()->down.y, 100.0);
    EXPECT_EQ(bild()->across.y, 0.0); // upright, wherever it lies
    EXPECT_EQ(bild()->down.x, 0.0);
    framework::MoveTrackbar(Control(mask, IDC_ESO_SKALIEREN), 50);
    EXPECT_EQ(bild()->across.x, 100.0);
    framework::MoveTrackbar(Control(mask, IDC_ESO_SKALIEREN),
                            400); // four times the field's width: one column of pixels
    EXPECT_EQ(bild()->bitmap->width, 1);
    EXPECT_EQ(bild()->across.x, 200.0);
    EXPECT_LE(bild()->down.y, 200.0);
    Press(mask, IDC_ESO_BILD_WEG);
    EXPECT_FALSE(bild());
}

/// Apart from the ground and from each other, also for those who see no red or no green.
TEST(ChartColors, StayApart)
{
    // What protanopes and deuteranopes see: Viénot, Brettel and Mollon 1999, on linear light.
    const auto linear = [](COLORREF color, unsigned shift) {
        const double c = (color >> shift & 0xFFU) / 255.0;
        return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    const auto seen = [&](COLORREF color, int kind) {
        const double r = linear(color, 0), g = linear(color, 8), b = linear(color, 16);
        if (kind == 0)
            return std::array{r, g, b};
        const double rg = kind == 1 ? 0.11238 * r + 0.88762 * g : 0.29275 * r + 0.70725 * g;
        return std::array{rg, rg, (kind == 1 ? 0.00401 * r - 0.00401 * g : -0.02234 * r + 0.02234 * g) + b};
    };
    for (const COLORREF ground : {RGB(255, 255, 255), RGB(30, 32, 37)})
        for (int kind = 0; kind < 3; ++kind)
            for (std::size_t i = 0; i < kESOKurven; ++i)
                for (std::size_t k = i + 1; k < kESOKurven; ++k) {
                    const auto a = seen(drawing::Legible(chart::kCurveColors[i], ground, 3.0), kind);
                    const auto b = seen(drawing::Legible(chart::kCurveColors[k], ground, 3.0), kind);
                    double distance = 0.0;
                    for (std::size_t c = 0; c < 3; ++c)
                        distance += std::pow(std::cbrt(std::max(a[c], 0.0)) - std::cbrt(std::max(b[c], 0.0)), 2);
                    EXPECT_GT(std::sqrt(distance), 0.12) << i << " and " << k << ", kind " << kind;
                }
}

} // namespace
