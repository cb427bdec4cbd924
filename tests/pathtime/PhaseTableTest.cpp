// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "pathtime/PhaseTable.h"

#include "host/CRuvData.h"
#include "krn/VehicleFields.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace
{

using namespace krn;
using namespace pathtime;
using Q = PhaseQuantity;

class PhaseTableTest : public ::testing::Test
{
  protected:
    CRuvData data;
    PhaseTable table{data, 0};
    const CWegZeitSpalte& Phase(std::size_t column) { return table.Phases().spalten[column]; }
    void NewPhase(std::size_t column, PhasenArt kind, const char* deceleration, const char* time)
    {
        table.SetKind(column, kind);
        EXPECT_EQ(table.Enter(column, Q::deceleration, deceleration), "");
        EXPECT_EQ(table.Enter(column, Q::time, time), "");
    }
};

TEST_F(PhaseTableTest, AnEmergencyBrakingIsEnteredFromTheCollisionBackwards)
{
    table.SetKind(3, PhasenArt::braking);
    EXPECT_TRUE(IsIncomplete(Phase(3)));
    table.Enter(3, Q::endSpeed, "18");
    table.Enter(3, Q::deceleration, "8");
    EXPECT_TRUE(IsIncomplete(Phase(3)));
    table.Enter(3, Q::path, "14,0");
    // v0² = v1² + 2·a·s
    const double start = std::sqrt(25.0 + 2.0 * 8.0 * 14.0);
    EXPECT_NEAR(Phase(3).vAnf, 3.6 * start, 1e-9);
    EXPECT_NEAR(Phase(3).zeit, (start - 5.0) / 8.0, 1e-9);

    NewPhase(4, PhasenArt::threshold, "8", "0,2");
    NewPhase(5, PhasenArt::reaction, "0", "1");
    EXPECT_NEAR(Phase(4).vAnf, Phase(3).vAnf + 3.6 * 0.8, 1e-9);
    EXPECT_NEAR(Phase(5).vAnf, Phase(4).vAnf, 1e-9);
    EXPECT_NEAR(Phase(5).sumZeit, Phase(3).zeit + 1.2, 1e-9);
    EXPECT_EQ(table.EndColumn(), 7U);
    EXPECT_TRUE(data.UPa(0).modified);

    // Another collision speed: decelerations and times stay, all speeds before follow.
    table.Enter(3, Q::endSpeed, "36");
    EXPECT_NEAR(Phase(5).vAnf, 36.0 + 3.6 * (start - 5.0) + 3.6 * 0.8, 1e-6);
    EXPECT_FALSE(IsEditable(table.Phases(), 4, Q::endSpeed)) << "follows from the phase after it";
    EXPECT_EQ(Phase(5).verz, 0.0);
}

TEST_F(PhaseTableTest, WhatIsEnteredStaysAndTheRestFollows)
{
    NewPhase(3, PhasenArt::braking, "8", "1");
    table.Enter(3, Q::endSpeed, "36");
    table.Enter(3, Q::startSpeed, "72"); // 10 m/s more at 8 m/s²
    EXPECT_NEAR(Phase(3).zeit, 1.25, 1e-9);
    EXPECT_EQ(Phase(3).verz, 8.0);
    table.Enter(3, Q::startSpeed, "18"); // slower before than after: not with this deceleration
    EXPECT_NEAR(Phase(3).verz, -4.0, 1e-9);
    EXPECT_NEAR(Phase(3).zeit, 1.25, 1e-9);
    table.Enter(3, Q::path, "1000"); // longer than this acceleration lasts: another one
    EXPECT_NEAR(Phase(3).weg, 1000.0, 1e-9);
    EXPECT_NEAR(Phase(3).zeit, 1.25, 1e-9);
    table.Enter(3, Q::deceleration, "0");
    EXPECT_EQ(Phase(3).verz, 0.0);
    EXPECT_NEAR(Phase(3).weg, 12.5, 1e-9);
}

TEST_F(PhaseTableTest, RandomEntriesKeepTheMotionLaw)
{
    std::mt19937 random(21);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    table.SetKind(3, PhasenArt::braking);
    table.Enter(3, Q::endSpeed, "30");
    int complete = 0;
    int refused = 0;
    for (int run = 0; run < 4000; ++run) {
        const std::size_t column = 3 + random() % 5;
        const auto& kinds = OfferedKinds();
        if (random() % 6 == 0 || !Phase(column).IsUsed())
            table.SetKind(column, kinds[1 + random() % (kinds.size() - 1)]);
        const Q quantity = PhaseRows()[random() % 5].quantity;
        const double scale = quantity == Q::deceleration ? 9.0 : quantity == Q::time ? 4.0 : 90.0;
        const std::string text = std::to_string(scale * unit(random) + 0.01);
        if (!IsEditable(table.Phases(), column, quantity))
            continue;
        const CWegZeitRechDat before = table.Phases();
        if (const std::string refusal = table.Enter(column, quantity, text); !refusal.empty()) {
            ++refused;
            ASSERT_EQ(table.Phases(), before) << refusal;
            continue;
        }
        const CWegZeitSpalte& p = Phase(column);
        if (!IsIncomplete(p))
            for (const PhaseRow& row : PhaseRows())
                if (row.quantity == quantity) {
                    ASSERT_NEAR(p.*row.value, std::stod(text), 1e-6)
                        << row.format.label << " of " << PhasenArtName(p.art);
                }
        double sum = 0.0;
        for (std::size_t i = 3; i < 8; ++i) {
            const CWegZeitSpalte& phase = Phase(i);
            if (!phase.IsUsed())
                continue;
            sum += phase.weg;
            ASSERT_NEAR(phase.sumWeg, sum, 1e-6 * std::max(1.0, sum));
            if (i > 3 && Phase(i - 1).IsUsed()) {
                ASSERT_NEAR(phase.vEnd, Phase(i - 1).vAnf, 1e-9);
            }
            if (IsIncomplete(phase) || phase.art == PhasenArt::noTime || phase.art == PhasenArt::threshold)
                continue;
            ++complete;
            const double mean = (phase.vAnf + phase.vEnd) / 7.2;
            ASSERT_NEAR(phase.weg, mean * phase.zeit, 1e-5 * std::max(1.0, std::abs(phase.weg)));
            ASSERT_NEAR((phase.vAnf - phase.vEnd) / 3.6, phase.verz * phase.zeit, 1e-4);
        }
    }
    EXPECT_GT(complete, 1000);
    EXPECT_LT(refused, 100) << "only where a threshold phase depends on the deceleration that would have to change";
}

TEST_F(PhaseTableTest, RefusalsNameFieldValueAndRangeAndChangeNothing)
{
    NewPhase(3, PhasenArt::braking, "8", "1");
    const CWegZeitRechDat before = table.Phases();
    EXPECT_EQ(table.Enter(3, Q::deceleration, "250"),
              "Verzögerung: Der Wert 250 liegt außerhalb des zulässigen Bereichs von -100,00 bis 100,00.");
    EXPECT_EQ(table.Enter(3, Q::time, "abc"),
              "Zeit: „abc“ ist keine Zahl. Zulässig sind Werte von 0,000 bis 100000,000.");
    EXPECT_EQ(table.Enter(3, Q::time, "  "), "");
    EXPECT_EQ(table.Enter(3, Q::time, "1,0000"), "") << "as it is shown";
    EXPECT_EQ(table.Phases(), before);
}

TEST_F(PhaseTableTest, InsertAndRemove)
{
    NewPhase(3, PhasenArt::braking, "8", "1");
    NewPhase(4, PhasenArt::reaction, "0", "1");
    ASSERT_TRUE(table.Insert(4));
    EXPECT_EQ(Phase(4).art, PhasenArt::unused);
    EXPECT_EQ(Phase(5).art, PhasenArt::reaction);
    EXPECT_EQ(table.Phases().selected, 4U);
    EXPECT_EQ(table.EndColumn(), 7U);
    ASSERT_TRUE(table.Remove(4));
    EXPECT_EQ(Phase(4).art, PhasenArt::reaction);
    EXPECT_FALSE(table.Insert(2));
    table.SetKind(47, PhasenArt::rolling);
    EXPECT_FALSE(table.Insert(4)) << "the last phase would be lost";
    EXPECT_EQ(table.EndColumn(), 48U);
}

TEST(VehicleFields, ContradictionsAndRefusals)
{
    for (const auto type : {CKfzDaten::Type::car, CKfzDaten::Type::truck, CKfzDaten::Type::motorcycle,
                            CKfzDaten::Type::bicycle, CKfzDaten::Type::pedestrian}) {
        const CKfzDaten vehicle = TypicalVehicle(type);
        EXPECT_EQ(vehicle.type, type);
        EXPECT_EQ(Contradiction(vehicle), "") << TypeName(type);
        for (const VehicleField& field : VehicleFields()) {
            EXPECT_GE(vehicle.*field.value, field.format.minimum) << field.format.label;
            EXPECT_LE(vehicle.*field.value, field.format.maximum) << field.format.label;
        }
    }
    CKfzDaten car = TypicalCar("", 0);
    car.length = 4.6;
    EXPECT_EQ(Contradiction(car), "Radstand und Überhänge ergeben 4,500 m, die Länge ist 4,600 m.");
    EXPECT_EQ(ReadNumber("61", FieldOf(&CKfzDaten::length).format).refusal,
              "Länge: Der Wert 61 liegt außerhalb des zulässigen Bereichs von 0,000 bis 60,000.");
}

TEST(NumberEntry, TheUsersUnitIsConverted)
{
    UnitsSystemConfiguration::GetInstance().SetSystem(UnitsSystem::imperial);
    const NumberFormat& length = FieldOf(&CKfzDaten::length).format;
    EXPECT_NEAR(*ReadNumber("10", length).value, 3.048, 1e-12); // feet
    EXPECT_EQ(ShowNumber(3.048, length), "10,000");
    EXPECT_EQ(UnitOf(length), "ft");
    EXPECT_EQ(UnitOf(FieldOf(&CKfzDaten::mass).format), "kg");
    UnitsSystemConfiguration::GetInstance().SetSystem(UnitsSystem::metric);
}

} // namespace
