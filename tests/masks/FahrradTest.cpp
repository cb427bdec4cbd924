// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/collision/CFahrradDat.h"

#include "host/CRuvData.h"

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

} // namespace
