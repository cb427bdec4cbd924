// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/CLadungDat.h"

#include "host/CDC.h"
#include "host/CRuvData.h"
#include "masks/collision/LadungBild.h"
#include "report/Protocol.h"
#include "res/collision.h"
#include "tests/support/MaskFixture.h"
#include "tests/support/Primitives.h"
#include "tests/support/RandomInput.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <random>

namespace
{

constexpr double kDegree = 3.14159265358979324 / 180.0;
constexpr double kG = 9.81;

class LadungDat : public ::testing::Test
{
  protected:
    LadungDat()
    {
        dat.nutzlast = 10000.0;
        dat.ladung = 4000.0;
    }

    /// What holds the load when every lashing pulls with `force`, N: friction under load and lashings, the walls, and
    /// the lashings' own pull. `pull` is the share of the pull against the direction.
    double HeldByTieDown(double force, double walls) const
    {
        const double weight = dat.ladung * kG;
        // Each lashing presses down with sinα on both sides; k tells what of it the second side gets.
        const double pressed =
            static_cast<double>(dat.zurrungen) * force * dat.uebertragungsbeiwert * std::sin(dat.zurrwinkel * kDegree);
        return dat.reibungsbeiwert * weight + (dat.reibungsbeiwert + dat.reibungGurt) * pressed + walls;
    }
    double HeldByDiagonal(double force, double walls, double direction) const
    {
        const double down = std::sin(dat.diagonalAlpha * kDegree);
        const double pull = std::cos(dat.diagonalAlpha * kDegree) * direction;
        return dat.reibungsbeiwert * (dat.ladung * kG + 4.0 * force * down) + 2.0 * force * pull + walls;
    }

    CRuvData data;
    CLadungDat dat{data};
};

TEST_F(LadungDat, ChoosersSetTheLowerEndOfTheirRange)
{
    constexpr std::array friction{0.2, 0.2, 0.2, 0.2, 0.1, 0.1, 0.3, 0.3, 0.4, 0.6, 0.3};
    for (std::size_t i = 0; i < friction.size(); ++i) {
        dat.reibungWahl = static_cast<std::int64_t>(i);
        dat.ReibungGewaehlt();
        EXPECT_EQ(dat.reibungsbeiwert, friction[i]) << i;
    }
    constexpr std::array transfer{1.25, 1.5, 2.0};
    for (std::size_t i = 0; i < transfer.size(); ++i) {
        dat.uebertragungWahl = static_cast<std::int64_t>(i);
        dat.UebertragungGewaehlt();
        EXPECT_EQ(dat.uebertragungsbeiwert, transfer[i]) << i;
    }
    for (const std::int64_t none : {-1, 11}) {
        dat.reibungWahl = dat.uebertragungWahl = none;
        dat.ReibungGewaehlt();
        dat.UebertragungGewaehlt();
        EXPECT_EQ(dat.reibungsbeiwert, 0.3);
        EXPECT_EQ(dat.uebertragungsbeiwert, 2.0);
    }
}

TEST_F(LadungDat, ComputedByHand)
{
    // 4 t, µ 0.2, four lashings of 5 kN at 75° with 1.5.
    dat.Rechnen();
    const double fromLashings = 4.0 * 5000.0 * 1.5 * 0.9659258263 * 0.2; // 5795.55
    EXPECT_NEAR(dat.sicherungskraft, 32000.0 - 7848.0, 1e-9);
    EXPECT_NEAR(dat.reibungskraftOhne, 7848.0, 1e-9);
    EXPECT_NEAR(dat.reibungskraftZurrung, fromLashings, 1e-4);
    EXPECT_NEAR(dat.reibungskraftGesamt, 7848.0 + fromLashings, 1e-4);
    EXPECT_NEAR(dat.normKraftVorne, 24152.0 - fromLashings, 1e-4);
    EXPECT_NEAR(dat.normKraftHinten, 20000.0 - 7848.0 - fromLashings, 1e-4);
    EXPECT_NEAR(dat.normKraftSeitlich, dat.normKraftHinten, 1e-9);
    // 24152 N of 1448.9 N each
    EXPECT_EQ(dat.normZurrungen, 17.0);
    // At rest on the level nothing pulls; the direction of the standard that is not computed stays in the count.
    EXPECT_EQ(dat.beschleunigungskraftLaengs, 0.0);
    EXPECT_NEAR(dat.kinKraftVorne, -7848.0 - fromLashings, 1e-4);
    EXPECT_EQ(dat.kinKraftHinten, 0.0);
    EXPECT_EQ(dat.kinZurrkraftHinten, 0.0);
    EXPECT_EQ(dat.kinKraftSeitlich, 0.0);
    EXPECT_EQ(dat.kinZurrkraftSeitlich, 0.0);
    EXPECT_EQ(dat.kinZurrungen, 9.0); // 12152 N to the rear
    // Weaker lashings than their pre-tension count by their limit.
    dat.zurrkraftLC = 2500.0;
    dat.Rechnen();
    EXPECT_EQ(dat.normZurrungen, 34.0);
}

TEST_F(LadungDat, TieDownBalancesInEachDirection)
{
    std::mt19937_64 random(419);
    const auto between = [&](double a, double b) { return std::uniform_real_distribution<double>(a, b)(random); };
    for (int i = 0; i < 200; ++i) {
        dat.ladung = between(100.0, 20000.0);
        dat.reibungsbeiwert = between(0.05, 0.6);
        dat.reibungGurt = between(0.0, 0.2);
        dat.zurrwinkel = between(10.0, 90.0);
        dat.zurrungen = 1 + i % 12;
        dat.formschlussVorne = i % 2 != 0;
        dat.formschlussHinten = i / 2 % 2 != 0;
        dat.formschlussSeitlich = i / 4 % 2 != 0;
        dat.formschlussVorneGrenze = between(0.0, 60000.0);
        dat.zurrkraftSTF = between(500.0, 8000.0);
        dat.reibungLaengs = between(-1.0, 1.0);
        dat.reibungQuer = between(-1.0, 1.0);
        dat.gefaelleLaengs = between(-12.0, 12.0);
        dat.gefaelleQuer = between(-5.0, 5.0);
        dat.Rechnen();
        const double front = dat.formschlussVorne != 0 ? std::min(0.4 * 98100.0, dat.formschlussVorneGrenze) : 0.0;
        const double rear = dat.formschlussHinten != 0 ? 0.4 * 98100.0 : 0.0;
        const double side = dat.formschlussSeitlich != 0 ? 0.3 * 98100.0 : 0.0;
        const double stf = dat.zurrkraftSTF;
        const auto check = [&](double pushed, double walls, double missing, double missingForce) {
            EXPECT_NEAR(missing, pushed - HeldByTieDown(stf, walls), 1e-6);
            EXPECT_NEAR(HeldByTieDown(stf + missingForce, walls), pushed, 1e-6);
        };
        check(dat.ladung * 8.0, front, dat.normKraftVorne, dat.normZurrkraftVorne);
        check(dat.ladung * 5.0, rear, dat.normKraftHinten, dat.normZurrkraftHinten);
        check(dat.ladung * 5.0, side, dat.normKraftSeitlich, dat.normZurrkraftSeitlich);

        // The driving's own forces act on a load that presses with g·cosθ on the slope.
        const double cosL = 1.0 / std::hypot(1.0, 0.01 * dat.gefaelleLaengs);
        const double cosQ = 1.0 / std::hypot(1.0, 0.01 * dat.gefaelleQuer);
        const double weight = dat.ladung * kG;
        const double less = dat.reibungsbeiwert * weight * (1.0 - cosL * cosQ);
        EXPECT_NEAR(dat.reibungskraftOhne, dat.reibungsbeiwert * weight * cosL * cosQ, 1e-6);
        const double along = dat.reibungLaengs * weight * cosL;
        const double across = dat.reibungQuer * weight * cosQ;
        EXPECT_NEAR(dat.beschleunigungskraftLaengs, along, 1e-6);
        EXPECT_NEAR(dat.beschleunigungskraftQuer, across, 1e-6);
        if (along >= 0.0) {
            check(along + less, front, dat.kinKraftVorne, dat.kinZurrkraftVorne);
            EXPECT_EQ(dat.kinKraftHinten, 0.0);
            EXPECT_FALSE(dat.fehltLaengs);
        } else {
            check(along + less, rear, dat.kinKraftHinten, dat.kinZurrkraftHinten);
            EXPECT_EQ(dat.kinKraftVorne, 0.0);
            ASSERT_TRUE(dat.fehltLaengs);
            EXPECT_NEAR(*dat.fehltLaengs, less - along - HeldByTieDown(stf, rear), 1e-6);
        }
        check(across + less, side, dat.kinKraftSeitlich, dat.kinZurrkraftSeitlich);
        ASSERT_EQ(dat.fehltQuer.has_value(), across < 0.0);
        if (dat.fehltQuer) {
            EXPECT_NEAR(*dat.fehltQuer, less - across - HeldByTieDown(stf, side), 1e-6);
        }
    }
}

TEST_F(LadungDat, DiagonalBalancesInEachDirection)
{
    std::mt19937_64 random(4190);
    const auto between = [&](double a, double b) { return std::uniform_real_distribution<double>(a, b)(random); };
    dat.zurrart = CLadungDat::diagonalzurren;
    dat.reibungGurt = 0.3; // has no part in it
    for (int i = 0; i < 200; ++i) {
        dat.ladung = between(100.0, 20000.0);
        dat.reibungsbeiwert = between(0.0, 0.6);
        dat.diagonalAlpha = between(5.0, 80.0);
        dat.diagonalBeta = between(5.0, 85.0);
        dat.formschlussSeitlich = i % 2 != 0;
        dat.formschlussSeitlichGrenze = i % 4 == 1 ? 0.0 : 20000.0;
        dat.zurrkraftSTF = between(500.0, 8000.0);
        dat.reibungLaengs = between(-1.0, 1.0);
        dat.reibungQuer = i % 5 == 0 ? 0.0 : between(-1.0, 1.0);
        dat.Rechnen();
        const double side = dat.formschlussSeitlich != 0 ? (i % 4 == 1 ? 0.3 * 98100.0 : 20000.0) : 0.0;
        const double stf = dat.zurrkraftSTF;
        const double along = std::cos(dat.diagonalBeta * kDegree), across = std::sin(dat.diagonalBeta * kDegree);
        const auto check = [&](double pushed, double walls, double direction, double missing, double missingForce) {
            EXPECT_NEAR(missing, pushed - HeldByDiagonal(stf, walls, direction), 1e-6);
            EXPECT_NEAR(HeldByDiagonal(stf + missingForce, walls, direction), pushed, 1e-6);
        };
        EXPECT_NEAR(dat.reibungskraftGesamt, HeldByDiagonal(stf, 0.0, 0.0), 1e-6);
        check(dat.ladung * 8.0, 0.0, along, dat.normKraftVorne, dat.normZurrkraftVorne);
        check(dat.ladung * 5.0, 0.0, along, dat.normKraftHinten, dat.normZurrkraftHinten);
        check(dat.ladung * 5.0, side, across, dat.normKraftSeitlich, dat.normZurrkraftSeitlich);
        const double kl = dat.reibungLaengs * dat.ladung * kG, kq = dat.reibungQuer * dat.ladung * kG;
        if (kl >= 0.0)
            check(kl, 0.0, along, dat.kinKraftVorne, dat.kinZurrkraftVorne);
        else
            check(kl, 0.0, along, dat.kinKraftHinten, dat.kinZurrkraftHinten);
        EXPECT_EQ(kl >= 0.0 ? dat.kinKraftHinten : dat.kinKraftVorne, 0.0);
        EXPECT_EQ(kl >= 0.0 ? dat.kinZurrkraftHinten : dat.kinZurrkraftVorne, 0.0);
        check(kq, side, across, dat.kinKraftSeitlich, dat.kinZurrkraftSeitlich);
        if (kl < 0.0) {
            EXPECT_NEAR(dat.fehltLaengs.value(), -kl - HeldByDiagonal(stf, 0.0, along), 1e-6);
        }
        if (kq < 0.0) {
            EXPECT_NEAR(dat.fehltQuer.value(), -kq - HeldByDiagonal(stf, side, across), 1e-6);
        }

        // Twice the pull that one pair needs, in lashings.
        const double each = std::min(stf, 5000.0);
        const auto pair = [&](double missingForce) { return 2.0 * (missingForce + stf); };
        const double most =
            std::max({pair(dat.normZurrkraftVorne), pair(dat.normZurrkraftHinten), pair(dat.normZurrkraftSeitlich)});
        EXPECT_GE(dat.normZurrungen * each, 2.0 * most - 1e-6);
        EXPECT_LT((dat.normZurrungen - 1.0) * each, 2.0 * most);
        const double mostDriven =
            std::max(pair(kl >= 0.0 ? dat.kinZurrkraftVorne : dat.kinZurrkraftHinten), pair(dat.kinZurrkraftSeitlich));
        EXPECT_GE(dat.kinZurrungen * each, 2.0 * mostDriven - 1e-6);
        EXPECT_LT((dat.kinZurrungen - 1.0) * each, 2.0 * mostDriven);
    }
}

TEST_F(LadungDat, TheCountOfLashingsIsTheSmallestThatHolds)
{
    dat.ladung = 3300.0;
    dat.Rechnen();
    const auto needed = static_cast<std::int64_t>(dat.normZurrungen);
    ASSERT_GT(needed, 1);
    const auto holds = [&](std::int64_t n) {
        dat.zurrungen = n;
        dat.Rechnen();
        return dat.normKraftVorne <= 0.0 && dat.normKraftHinten <= 0.0 && dat.normKraftSeitlich <= 0.0;
    };
    EXPECT_TRUE(holds(needed));
    EXPECT_EQ(dat.normZurrungen, static_cast<double>(needed));
    EXPECT_FALSE(holds(needed - 1));
    // Sideways can be what needs the most.
    dat.beschleunigungQuer = 9.0;
    dat.Rechnen();
    const double sideways = dat.normZurrungen;
    EXPECT_GT(sideways, static_cast<double>(needed));
    // Driving in a curve alone: forward and rear are less.
    dat.beschleunigungQuer = 5.0;
    dat.reibungLaengs = 0.5;
    dat.reibungQuer = 0.9;
    dat.Rechnen();
    EXPECT_TRUE(holds(static_cast<std::int64_t>(dat.kinZurrungen)) || dat.kinKraftSeitlich <= 0.0);
}

TEST_F(LadungDat, WithoutLashingsNoCountIsANumberOfThem)
{
    for (const bool angle : {false, true}) {
        dat.zurrungen = angle ? 4 : 0;
        dat.zurrwinkel = angle ? 0.0 : 75.0;
        dat.Rechnen();
        EXPECT_TRUE(std::isinf(dat.normZurrkraftVorne));
        EXPECT_FALSE(std::isfinite(dat.normZurrungen));
        EXPECT_FALSE(std::isfinite(dat.kinZurrungen));
        EXPECT_TRUE(std::isfinite(dat.normKraftVorne));
    }
    dat.zurrwinkel = 75.0;
    dat.zurrkraftLC = 0.0;
    dat.Rechnen();
    EXPECT_FALSE(std::isfinite(dat.normZurrungen));
    // Nothing over nothing is no number whatever stands beside it.
    dat.ladung = 0.0;
    dat.zurrungen = 0;
    dat.formschlussSeitlich = 1;
    dat.Rechnen();
    EXPECT_TRUE(std::isnan(dat.normZurrungen));
}

TEST_F(LadungDat, TheDrawingShowsLashingsAtTheirAngles)
{
    const auto angles = [&] {
        CDC dc(800, 160);
        ZeichneLadung(dc, dat);
        std::vector<double> found;
        for (const auto& line : test::All<drawing::Polyline>(dc))
            if (line.points.size() == 2 && line.pen.color == RGB(20, 84, 196)) {
                const CDPoint way = line.points[1] - line.points[0];
                found.push_back(std::atan2(std::abs(way.y), std::abs(way.x)) / kDegree);
            }
        return found;
    };
    dat.zurrwinkel = 60.0;
    dat.zurrungen = 3;
    auto tied = angles(); // three from the side, across the top, two from behind
    ASSERT_EQ(tied.size(), 6U);
    EXPECT_NEAR(tied[3], 0.0, 1e-9);
    EXPECT_NEAR(tied[4], 60.0, 1e-6);
    EXPECT_NEAR(tied[5], 60.0, 1e-6);
    dat.zurrart = CLadungDat::diagonalzurren;
    dat.diagonalAlpha = 50.0;
    dat.diagonalBeta = 30.0;
    auto diagonal = angles(); // two from the side, four from above
    ASSERT_EQ(diagonal.size(), 6U);
    EXPECT_NEAR(diagonal[0], 50.0, 1e-6);
    EXPECT_NEAR(diagonal[5], 30.0, 1e-6);
    dat.Rechnen();
    CDC dc(800, 160);
    ZeichneLadung(dc, dat);
    std::string texts;
    for (const std::string& word : test::Words(dc))
        texts += word + "|";
    EXPECT_NE(texts.find("32,0 kN"), std::string::npos) << texts; // 4 t at 8 m/s²
    EXPECT_NE(texts.find("vorne fehlen"), std::string::npos) << texts;
}

class LadungTest : public test::MaskTest
{
  protected:
    framework::Window& mask = OpenMask(419);
};

TEST_F(LadungTest, OpensWithItsDefaultsAndChoices)
{
    for (const auto& [name, value] :
         std::initializer_list<std::pair<const char*, double>>{{"reibungsbeiwert", 0.2},
                                                               {"zurrpunktbelastbarkeit", 100000},
                                                               {"formschlussVorneProzent", 40},
                                                               {"formschlussHintenProzent", 40},
                                                               {"formschlussSeitlichProzent", 30},
                                                               {"formschlussVorneGrenze", 50000},
                                                               {"formschlussHintenGrenze", 50000},
                                                               {"formschlussSeitlichGrenze", 50000},
                                                               {"beschleunigungVorne", 8},
                                                               {"beschleunigungHinten", 5},
                                                               {"beschleunigungQuer", 5},
                                                               {"zurrkraftLC", 5000},
                                                               {"zurrkraftSTF", 5000},
                                                               {"zurrungen", 4},
                                                               {"zurrwinkel", 75},
                                                               {"uebertragungWahl", 1},
                                                               {"uebertragungsbeiwert", 1.5},
                                                               {"diagonalAlpha", 45},
                                                               {"diagonalBeta", 45},
                                                               {"formschlussVorne", 0},
                                                               {"ladung", 0}})
        EXPECT_EQ(test::FieldValue(mask, name), value) << name;
    EXPECT_EQ(Control(mask, IDC_LADUNG_REIBUNG_WAHL).items.size(), 11U);
    EXPECT_EQ(Control(mask, IDC_LADUNG_REIBUNG_WAHL).items[9], "Antirutschmatte:       0.60");
    EXPECT_EQ(Control(mask, IDC_LADUNG_UEBERTRAGUNG_WAHL).items[2], "beidseitige Spannung     : 2.0");
    Choose(mask, IDC_LADUNG_REIBUNG_WAHL, 9);
    EXPECT_EQ(Text(mask, IDC_LADUNG_REIBUNG), "0,60");
    Choose(mask, IDC_LADUNG_UEBERTRAGUNG_WAHL, 0);
    EXPECT_EQ(Text(mask, IDC_LADUNG_UEBERTRAGUNG), "1,25");
    EXPECT_TRUE(Control(mask, IDC_LADUNG_ZURRWINKEL).enabled);
    EXPECT_FALSE(Control(mask, IDC_LADUNG_ALPHA).enabled);
    Press(mask, IDC_LADUNG_DIAGONALZURREN);
    EXPECT_FALSE(Control(mask, IDC_LADUNG_ZURRWINKEL).enabled);
    EXPECT_FALSE(Control(mask, IDC_LADUNG_REIBUNG_GURT).enabled);
    EXPECT_TRUE(Control(mask, IDC_LADUNG_ALPHA).enabled);
    EXPECT_TRUE(Control(mask, IDC_LADUNG_BETA).enabled);
}

TEST_F(LadungTest, ComputesFollowsAndCountsOrSaysWhyNot)
{
    Enter(mask, IDC_LADUNG_LADUNG, "4000");
    EXPECT_EQ(test::FieldValue(mask, "sicherungskraft"), 0.0);
    Press(mask, IDC_RECHNEN);
    EXPECT_EQ(Text(mask, IDC_LADUNG_NORM_ZURRUNGEN), "17");
    Enter(mask, IDC_LADUNG_NUTZLAST, "10000");
    Press(mask, IDC_LADUNG_FORM_VORNE); // 40 % of 98.1 kN
    EXPECT_NEAR(test::FieldValue(mask, "sicherungskraft"), 24152.0 - 39240.0, 1e-6);
    Enter(mask, IDC_LADUNG_ZURRUNGEN, "0");
    EXPECT_EQ(Text(mask, IDC_LADUNG_NORM_ZURRUNGEN), "–");
    EXPECT_EQ(Text(mask, IDC_LADUNG_KIN_ZURRUNGEN), "–");
    EXPECT_EQ(Text(mask, IDC_LADUNG_HINWEIS), LoadRuvString(IDS_LADUNG_OHNE_ANZAHL));
    StepOnce(mask, IDC_LADUNG_ZURRUNGEN, 1);
    EXPECT_NE(Text(mask, IDC_LADUNG_NORM_ZURRUNGEN), "–");
    EXPECT_EQ(Text(mask, IDC_LADUNG_HINWEIS), "");
    // Braking in reverse: the load pushes to the rear with 0.8·39240 N; friction holds 7848, the lashing 1448.9.
    Enter(mask, IDC_LADUNG_REIBUNG_LAENGS, "-0,8");
    EXPECT_NE(Text(mask, IDC_LADUNG_HINWEIS).find("fehlen 22095 N"), std::string::npos)
        << Text(mask, IDC_LADUNG_HINWEIS);
    Enter(mask, IDC_LADUNG_REIBUNG_QUER, "-0,7"); // a line of its own
    const std::string hint = Text(mask, IDC_LADUNG_HINWEIS);
    EXPECT_NE(hint.find("fehlen 22095 N.\nQuerkraft"), std::string::npos) << hint;
    EXPECT_NE(hint.find("fehlen 18171 N"), std::string::npos) << hint;
    const report::Protocol protocol = report::MakeProtocol(mask, {});
    EXPECT_EQ(protocol.notes, std::vector{hint});
    const auto listed = [&](const std::string& label, const std::string& value) {
        for (const auto& group : protocol.inputs)
            for (const auto& entry : group.entries)
                if (entry.label == label)
                    return entry.value == value;
        return false;
    };
    EXPECT_TRUE(listed("Zurrwinkel (alpha)", "75,0"));
    EXPECT_TRUE(listed("Reibung im Gurt", "0,00"));
    EXPECT_TRUE(listed("Paarung", "Holz/Holz trocken:     0.20 - 0.50"));
    EXPECT_TRUE(listed("Vorgabe", "VDI 2700   (einseit. Sp.): 1.5"));
    EXPECT_TRUE(listed("Formschluss vorne (% der Nutzlast)", "40"));
}

TEST_F(LadungTest, TheVehicleGivesItsPayloadAndCancelRestores)
{
    data.KfzDat(1).payload = 7500.0;
    Enter(mask, IDC_LADUNG_NUTZLAST, "1234");
    Choose(mask, IDC_LADUNG_FAHRZEUG, 1); // "(keines)" heads the list; Pkw 1 has no payload
    EXPECT_EQ(Text(mask, IDC_LADUNG_NUTZLAST), "1234");
    Choose(mask, IDC_LADUNG_FAHRZEUG, 2);
    EXPECT_EQ(Text(mask, IDC_LADUNG_NUTZLAST), "7500");
    Press(mask, IDC_LADUNG_DIAGONALZURREN);
    Press(mask, IDC_RECHNEN);
    std::map<std::string, std::vector<double>> left;
    auto& dialog = *static_cast<CMDIRechDialog*>(mask.object);
    // The object lives until pending messages are handled.
    dialog.OnCommand(IDCANCEL, 0);
    for (const RecordField& field : dialog.DescribeRecord())
        left[std::string(field.name)] = test::FieldValues(field);
    EXPECT_EQ(left["nutzlast"], std::vector<double>{0.0});
    EXPECT_EQ(left["fahrzeug"], std::vector<double>{-1.0});
    EXPECT_EQ(left["zurrart"], std::vector<double>{0.0});
    thread.DispatchPending();
    EXPECT_TRUE(thread.Dialogs().empty());
}

} // namespace
