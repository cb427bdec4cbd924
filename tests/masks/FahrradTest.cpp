// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/CFahrradDat.h"

#include "host/CDC.h"
#include "host/CRuvData.h"
#include "masks/collision/FahrradBild.h"
#include "report/Protocol.h"
#include "res/collision.h"
#include "tests/support/MaskFixture.h"
#include "tests/support/RandomInput.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

namespace
{

using Befund = CFahrradDat::Befund;

constexpr double kDegree = 3.14159265358979324 / 180.0;

class FahrradDat : public ::testing::Test
{
  protected:
    /// A city bicycle at 18 km/h on wet ground; a mark from 92 to 100 cm, 50 cm long.
    FahrradDat()
    {
        dat.fahrradtyp = 3;
        dat.TypGewaehlt();
        dat.hoeheMax = 100.0;
        dat.hoeheMin = 92.0;
        dat.laenge = 50.0;
        dat.geschwindigkeit = 18.0;
        dat.reibwert = 0.5;
    }

    CRuvData data;
    CFahrradDat dat{data};
};

TEST_F(FahrradDat, TypesFillTheirMeasures)
{
    constexpr std::array<std::array<double, 5>, 6> types{{{98, 29, 105, 57, 20},
                                                          {70, 20, 65, 35, 16},
                                                          {75, 26, 95, 45, 19},
                                                          {98, 29, 105, 57, 20},
                                                          {95, 28, 105, 65, 16},
                                                          {90, 22, 110, 68, 16}}};
    for (std::size_t i = 0; i < types.size(); ++i) {
        dat.fahrradtyp = static_cast<std::int64_t>(i); // the first choice, none, leaves the city bicycle
        dat.TypGewaehlt();
        EXPECT_EQ((std::array{dat.bauteilHoehe, dat.bauteilAbstand, dat.radstand, dat.durchmesser, dat.pedalAbstand}),
                  types[i]);
    }
    EXPECT_EQ(dat.hoeheMax, 100.0);
    dat.fahrradtyp = 6;
    dat.TypGewaehlt();
    EXPECT_EQ(dat.bauteilHoehe, 90.0);
}

TEST_F(FahrradDat, ComputedByHand)
{
    EXPECT_EQ(dat.Rechnen(), Befund::ueberZunahme); // the handlebar rises by 4.2 cm, the band is 8 cm wide
    EXPECT_EQ(dat.bandbreite, 8.0);
    EXPECT_NEAR(dat.beschaedigungshoehe, 102.2008, 1e-4);
    EXPECT_NEAR(dat.hoehenzunahme, 4.2008, 1e-4);
    EXPECT_NEAR(std::tan(dat.neigungBeschaedigung * kDegree), 29.0 / 98.0, 1e-12);
    EXPECT_NEAR(std::sin(dat.neigungKratzspur * kDegree), 8.0 / 29.0, 1e-12);
    EXPECT_NEAR(dat.kurvenradius, 25.0 / 4.905 * 100.0, 1e-9); // 5 m/s
    EXPECT_NEAR(dat.maxNeigungswinkel, 26.565051, 1e-6);
    EXPECT_NEAR(dat.beruehrzeit, 0.1, 1e-12);
    EXPECT_NEAR(std::tan(dat.lenkeinschlag * kDegree), 105.0 / 509.684, 1e-6);
    EXPECT_NEAR(dat.radausstellhoehe, 28.5 * 105.0 / std::hypot(105.0, 509.6840), 1e-6);
    EXPECT_EQ(dat.ergebnisSteht, 1);
    dat.hoeheMin = 96.0;
    EXPECT_EQ(dat.Rechnen(), Befund::keiner);
}

TEST_F(FahrradDat, VerdictsOnBothSidesAndAtEquality)
{
    // 3-4-5: the part reaches 50 cm.
    dat.bauteilHoehe = 40.0;
    dat.bauteilAbstand = 30.0;
    for (const auto& [height, reached] : {std::pair{49.9, true}, {50.0, false}, {50.1, false}}) {
        dat.hoeheMax = height;
        dat.hoeheMin = height;
        dat.Rechnen();
        EXPECT_EQ(dat.IstHoeheErreicht(), reached) << height;
    }
    // The band is just as wide as the part rises.
    dat.hoeheMax = 50.0;
    dat.hoeheMin = 40.0;
    EXPECT_EQ(dat.Rechnen(), Befund::keiner);
    dat.hoeheMin = 50.0;
    // No band and no friction: both angles are zero.
    dat.reibwert = 0.0;
    dat.Rechnen();
    EXPECT_FALSE(dat.IstNeigungUeberschritten());
    // A band of half the distance needs 30°, tan 30° = 0.57735.
    dat.hoeheMin = dat.hoeheMax - 15.0;
    for (const auto& [friction, exceeded] : {std::pair{0.57, true}, {0.58, false}}) {
        dat.reibwert = friction;
        dat.Rechnen();
        EXPECT_EQ(dat.IstNeigungUeberschritten(), exceeded) << friction;
    }
    // At rest the wheel is turned by 90°: it stands out by its radius.
    dat.geschwindigkeit = 0.0;
    dat.durchmesser = 40.0;
    for (const auto& [pedal, impossible] : {std::pair{19.9, true}, {20.0, false}, {20.1, false}}) {
        dat.pedalAbstand = pedal;
        dat.Rechnen();
        EXPECT_EQ(dat.radausstellhoehe, 20.0);
        EXPECT_EQ(dat.IstBeruehrungUnmoeglich(), impossible) << pedal;
    }
}

TEST_F(FahrradDat, LimitsAreSaid)
{
    dat.hoeheMin = 60.0; // 40 cm of band, 29 cm of distance
    EXPECT_EQ(dat.Rechnen(), Befund::ohneNeigung);
    EXPECT_TRUE(std::isnan(dat.neigungKratzspur));
    EXPECT_FALSE(dat.IstNeigungUeberschritten());
    dat.hoeheMin = 71.0; // just as wide as the distance: lying flat
    EXPECT_EQ(dat.Rechnen(), Befund::ueberZunahme);
    EXPECT_NEAR(dat.neigungKratzspur, 90.0, 1e-9);
    dat.hoeheMin = 101.0;
    EXPECT_EQ(dat.Rechnen(), Befund::bandNegativ);
    EXPECT_LT(dat.neigungKratzspur, 0.0);
    dat.hoeheMin = 98.0;
    dat.geschwindigkeit = 0.0;
    EXPECT_EQ(dat.Rechnen(), Befund::unvollstaendig);
    EXPECT_TRUE(std::isinf(dat.beruehrzeit));
    EXPECT_EQ(dat.kurvenradius, 0.0);
    EXPECT_EQ(dat.lenkeinschlag, 90.0);
    dat.geschwindigkeit = 18.0;
    EXPECT_EQ(dat.Rechnen(), Befund::keiner);
    dat.reibwert = 0.0;
    EXPECT_EQ(dat.Rechnen(), Befund::unvollstaendig);
    EXPECT_TRUE(std::isinf(dat.kurvenradius));
    EXPECT_EQ(dat.lenkeinschlag, 0.0);
}

TEST_F(FahrradDat, NegativeInputsBecomeZero)
{
    const std::array inputs{&dat.hoeheMax,        &dat.hoeheMin, &dat.laenge,      &dat.bauteilHoehe,
                            &dat.bauteilAbstand,  &dat.radstand, &dat.durchmesser, &dat.pedalAbstand,
                            &dat.geschwindigkeit, &dat.reibwert};
    for (double* input : inputs)
        *input = -1.0;
    dat.Rechnen();
    for (const double* input : inputs)
        EXPECT_EQ(*input, 0.0);
    dat.hoehenzunahme = 3.0;
    dat.Loeschen();
    for (const RecordField& field : dat.Felder())
        if (double* const* value = std::get_if<double*>(&field.value)) {
            EXPECT_EQ(**value, 0.0) << field.name;
        }
    EXPECT_EQ(dat.fahrradtyp, 0);
    EXPECT_EQ(dat.ergebnisSteht, 0);
}

TEST_F(FahrradDat, TheDrawingShowsBandAndLargestHeightToScale)
{
    dat.hoeheMin = 96.0;
    dat.Rechnen();
    CDC dc(240, 360);
    ZeichneFahrrad(dc, dat);
    const drawing::Polygon* band = nullptr;
    const drawing::Ellipse* part = nullptr;
    double ground = 0.0;
    for (const auto& primitive : dc.Primitives()) {
        if (const auto* polygon = std::get_if<drawing::Polygon>(&primitive))
            band = polygon;
        if (const auto* ellipse = std::get_if<drawing::Ellipse>(&primitive);
            ellipse != nullptr && ellipse->rx == ellipse->ry)
            part = ellipse;
        if (const auto* line = std::get_if<drawing::Polyline>(&primitive); line != nullptr && ground == 0.0)
            ground = line->points.front().y;
    }
    ASSERT_TRUE(band != nullptr && part != nullptr);
    const double lower = ground - band->points[0].y, upper = ground - band->points[2].y;
    EXPECT_NEAR(upper / lower, 100.0 / 96.0, 1e-6);
    EXPECT_NEAR((ground - part->centre.y) / upper, dat.beschaedigungshoehe / 100.0, 1e-6);
    EXPECT_GT(upper, 150.0);
}

class FahrradTest : public test::MaskTest
{
  protected:
    framework::Window& mask = OpenMask(493);
};

TEST_F(FahrradTest, ChoosesComputesAndTellsTheHost)
{
    EXPECT_EQ(Control(mask, IDC_FAHRRAD_TYP).items.front(), "Wählen Sie ein Fahrrad");
    Choose(mask, IDC_FAHRRAD_TYP, 5);
    EXPECT_EQ(Text(mask, IDC_FAHRRAD_BAUTEIL_HOEHE), "90,0");
    Enter(mask, IDC_FAHRRAD_BAUTEIL_HOEHE, "91");
    Choose(mask, IDC_FAHRRAD_TYP, 0);
    EXPECT_EQ(Text(mask, IDC_FAHRRAD_BAUTEIL_HOEHE), "91,0");
    Enter(mask, IDC_FAHRRAD_HOEHE_MAX, "92");
    Enter(mask, IDC_FAHRRAD_HOEHE_MIN, "-5");
    Enter(mask, IDC_FAHRRAD_REIBWERT, "0,5");
    EXPECT_EQ(Text(mask, IDC_FAHRRAD_BEFUND_HOEHE), "");
    front.posted.clear();
    Press(mask, IDC_RECHNEN);
    EXPECT_EQ(Text(mask, IDC_FAHRRAD_HOEHE_MIN), "0,0");
    ASSERT_EQ(front.posted.size(), 1U);
    EXPECT_EQ(front.posted[0].message, 1352U);
    // 92 cm of band: no lean at all.
    EXPECT_EQ(Text(mask, IDC_FAHRRAD_HINWEIS), LoadRuvString(IDS_FAHRRAD_OHNE_NEIGUNG));
    EXPECT_EQ(Text(mask, IDC_FAHRRAD_BEFUND_HOEHE), "Beschädigungsbereich ist vollst. erreicht");
    EXPECT_EQ(Text(mask, IDC_FAHRRAD_BEFUND_NEIGUNG), "Phys. Neigungswinkel ist unterschritten");
    // At rest the wheel stands out by its radius, 34 cm of 16.
    EXPECT_EQ(Text(mask, IDC_FAHRRAD_BEFUND_BERUEHRUNG), "Berührung ist unmöglich");
    Enter(mask, IDC_FAHRRAD_PEDAL, "40"); // every edit computes from now on
    EXPECT_EQ(Text(mask, IDC_FAHRRAD_BEFUND_BERUEHRUNG), "Berührung ist möglich");
    EXPECT_EQ(front.posted.size(), 2U);
    StepOnce(mask, IDC_FAHRRAD_HOEHE_MAX, 1);
    EXPECT_EQ(Text(mask, IDC_FAHRRAD_BEFUND_HOEHE), "Beschädigungsbereich ist vollst. erreicht");
    Enter(mask, IDC_FAHRRAD_HOEHE_MAX, "120");
    EXPECT_EQ(Text(mask, IDC_FAHRRAD_BEFUND_HOEHE), "Beschädigungsbereich ist vollst. nicht erreicht");
    const std::vector<std::string> verdicts{"Beschädigungsbereich ist vollst. nicht erreicht",
                                            "Phys. Neigungswinkel ist unterschritten", "Berührung ist möglich",
                                            LoadRuvString(IDS_FAHRRAD_OHNE_NEIGUNG)};
    EXPECT_EQ(report::MakeProtocol(mask, {}).notes, verdicts);
    front.answers[1052] = fehlerJa;
    Press(mask, IDC_LOESCHEN);
    EXPECT_EQ(Text(mask, IDC_FAHRRAD_BEFUND_HOEHE), "");
    EXPECT_EQ(Text(mask, IDC_FAHRRAD_HINWEIS), "");
    EXPECT_EQ(test::FieldValue(mask, "bauteilHoehe"), 0.0);
}

} // namespace
