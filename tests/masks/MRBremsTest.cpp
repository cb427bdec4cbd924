// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "frame/RuvMod.h"
#include "masks/dynamics/CMRBremsDlg.h"
#include "tests/support/Drive.h"
#include "tests/support/MaskFixture.h"
#include "tests/support/RandomInput.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace
{

using framework::InputResult;
using framework::Window;
using test::FieldValue;
using test::FieldValues;

using Ausgang = CMRBremsDat::Ausgang;
using Vorbehalt = CMRBremsDat::Vorbehalt;

constexpr UINT kFull = 5100, kRise = 5101, kAtTrace = 5102, kTrace = 5103, kVE = 5104, kReaction = 5105, kV0 = 5108,
               kVehicle = 5116, kPhase = 5117, kLinear = 5119, kHint = 25100;
constexpr double kKmh = 3.6;

/// The search as it is defined: digit by digit, one step after the other.
double PlainSearch(const CMRBremsDat::Gleichung& q)
{
    double x = 0.0;
    int k = 0;
    for (;;) {
        const double step = std::pow(10.0, -k);
        x += step;
        const double e = std::exp(-x);
        const double g = x * x / 2.0 + (x + 1.0) * e - x * q.l - e * q.l;
        const double f = q.w * q.l + (q.r - q.h) + q.s - q.w * x - g;
        if (f > 0.0)
            continue;
        ++k;
        x -= step;
        if (k > 10)
            return x;
    }
}

TEST(MRBremsDat, FastSearchFindsTheSameNumberAsTheStepwiseOne)
{
    std::mt19937_64 random(469);
    const auto between = [&](double from, double to) {
        return std::uniform_real_distribution<double>(from, to)(random);
    };
    int nothing = 0, large = 0;
    for (int round = 0; round < 20000; ++round) {
        CMRBremsDat::Gleichung q{};
        q.r = round % 7 == 0 ? std::pow(10.0, between(-16.0, 0.0)) : between(0.001, 1.0);
        q.l = std::log(1.0 / q.r);
        q.h = q.l * q.l / 2.0;
        q.s = std::pow(10.0, between(-5.0, round % 11 == 0 ? 7.0 : 3.0));
        q.w = round % 3 == 0 ? 0.0 : std::pow(10.0, between(-3.0, 3.0));
        const double x = CMRBremsDat::Loese(q);
        ASSERT_EQ(x, PlainSearch(q)) << "r " << q.r << ", s " << q.s << ", w " << q.w;
        nothing += x == 0.0;
        large += x > 100.0;
    }
    EXPECT_GT(nothing, 20);
    EXPECT_GT(large, 200);
    // What the stepwise search would never find.
    EXPECT_TRUE(std::isnan(CMRBremsDat::Loese({0.3, 1.2, 0.72, 1e300, 0.0})));
}

TEST(MRBremsDat, ResultsAreTheMotionItself)
{
    CRuvData data;
    CMRBremsDat dat(data);
    std::mt19937_64 random(4690);
    const auto between = [&](double from, double to) {
        return std::uniform_real_distribution<double>(from, to)(random);
    };
    int found = 0, linear = 0;
    for (int round = 0; round < 3000; ++round) {
        dat.Loeschen();
        const double a = dat.vollverzoegerung = between(3.0, 11.0);
        dat.spurverzoegerung = between(0.3, 0.95) * a;
        const double tau = dat.anstieg = between(0.05, 0.6);
        dat.spurlaenge = between(3.0, 60.0);
        dat.endgeschwindigkeit = round % 3 == 0 ? 0.0 : between(0.0, 60.0);
        dat.reaktionsdauer = between(0.0, 2.0);
        dat.linVerzoegerung = round % 2 == 0 ? 0.0 : between(0.7, 1.3) * a;
        SCOPED_TRACE(testing::Message() << "round " << round << ": a " << a << ", a0 " << dat.spurverzoegerung
                                        << ", tau " << tau << ", s " << dat.spurlaenge << ", ve "
                                        << dat.endgeschwindigkeit);
        const double vE = dat.endgeschwindigkeit / kKmh;
        const Ausgang ausgang = dat.Rechnen();
        ASSERT_NEAR(dat.endgeschwindigkeit / kKmh, vE, 1e-12);

        if (dat.bremszeit < 0.0) { // the steps ended before the trace starts
            ASSERT_EQ(dat.PruefeErgebnis(ausgang), Vorbehalt::spurZuKurz);
            continue;
        }
        ++found;

        // The deceleration rises exponentially; the trace starts where it has reached its value there.
        const double v0 = dat.anfangsgeschwindigkeit / kKmh;
        const auto rising = [&](double t) { return a * (1.0 - std::exp(-t / tau)); };
        const double tS = dat.schwelldauer;
        ASSERT_NEAR(rising(tS), dat.spurverzoegerung, 1e-9);
        const test::Driven buildUp = test::Drive(v0, tS, rising, 200);
        ASSERT_NEAR(buildUp.path, dat.schwellweg, 1e-6);
        const auto onTrace = [&](double t) { return rising(tS + t); };
        const test::Driven trace = test::Drive(buildUp.v, dat.bremszeit, onTrace, 600);
        ASSERT_NEAR(trace.path, dat.spurlaenge, 1e-6);
        ASSERT_NEAR(trace.v, vE, 1e-6);
        ASSERT_NEAR(dat.bremsSchwellweg, buildUp.path + trace.path, 1e-6);
        ASSERT_NEAR(dat.bremsSchwellzeit, tS + dat.bremszeit, 1e-12);
        ASSERT_NEAR(dat.erreichteVerzoegerung, rising(dat.bremsSchwellzeit), 1e-9);
        ASSERT_NEAR(dat.reaktionspunktWeg, v0 * dat.reaktionsdauer + dat.bremsSchwellweg, 1e-9);
        ASSERT_NEAR(dat.reaktionspunktZeit, dat.reaktionsdauer + dat.bremsSchwellzeit, 1e-12);

        if (ausgang != Ausgang::berechnet)
            continue;
        ++linear;
        // The linear model drives the same path in the same time to the same end speed.
        const double aL = dat.linVerzoegerung;
        ASSERT_NEAR(dat.linReaktionsdauer + dat.linSchwelldauer + dat.linBremszeit, dat.reaktionspunktZeit, 1e-9);
        const auto linearRise = [&](double t) { return aL * t / dat.linSchwelldauer; };
        const test::Driven rise = test::Drive(v0, dat.linSchwelldauer, linearRise);
        ASSERT_NEAR(rise.path, dat.linSchwellweg, 1e-8);
        ASSERT_NEAR(rise.v, dat.linGeschwindigkeit / kKmh, 1e-8);
        const test::Driven braking = test::Drive(rise.v, dat.linBremszeit, [&](double) { return aL; });
        ASSERT_NEAR(braking.path, dat.linBremsweg, 1e-7);
        ASSERT_NEAR(braking.v, vE, 1e-7);
        ASSERT_NEAR(v0 * dat.linReaktionsdauer + rise.path + braking.path, dat.reaktionspunktWeg, 1e-6);
    }
    EXPECT_GT(found, 2900);
    EXPECT_GT(linear, 2000);
}

TEST(MRBremsDat, WithoutALinearModelTheRestStaysAndSoDoItsFormerQuantities)
{
    CRuvData data;
    CMRBremsDat dat(data);
    dat.vollverzoegerung = 9.0;
    dat.VollverzoegerungEingegeben();
    dat.anstieg = 0.25;
    dat.spurlaenge = 20.0;
    dat.reaktionsdauer = 1.0;
    dat.endgeschwindigkeit = 10.0;
    ASSERT_EQ(dat.Rechnen(), Ausgang::berechnet);
    EXPECT_EQ(dat.PruefeErgebnis(Ausgang::berechnet), Vorbehalt::keiner);
    const double linear = dat.linBremsweg;
    const double v0 = dat.anfangsgeschwindigkeit;
    dat.linVerzoegerung = 4.0; // cannot stop that soon
    dat.reaktionsdauer = 0.5;
    EXPECT_EQ(dat.Rechnen(), Ausgang::ohneLineares);
    EXPECT_EQ(dat.PruefeErgebnis(Ausgang::ohneLineares), Vorbehalt::ohneLineares);
    EXPECT_NEAR(dat.anfangsgeschwindigkeit, v0, 1e-9);
    EXPECT_NEAR(dat.endgeschwindigkeit, 10.0, 1e-12);
    EXPECT_EQ(dat.linBremsweg, linear);
    EXPECT_NEAR(dat.reaktionspunktWeg, v0 / kKmh * 0.5 + dat.bremsSchwellweg, 1e-9);

    // Half a metre of trace before a rise over several seconds, and inputs that say nothing.
    dat.anstieg = 5.0;
    dat.spurlaenge = 0.5;
    dat.endgeschwindigkeit = 0.0;
    EXPECT_EQ(dat.PruefeErgebnis(dat.Rechnen()), Vorbehalt::spurZuKurz);
    dat.anstieg = 0.0;
    EXPECT_EQ(dat.PruefeErgebnis(dat.Rechnen()), Vorbehalt::ohneAnstieg);
    dat.anstieg = 0.25;
    dat.spurverzoegerung = 9.0;
    EXPECT_EQ(dat.Rechnen(), Ausgang::ohneLineares);
    EXPECT_EQ(dat.PruefeErgebnis(Ausgang::ohneLineares), Vorbehalt::spurverzoegerung);
    EXPECT_FALSE(std::isfinite(dat.schwelldauer));
}

class MRBremsTest : public test::MaskTest
{
  protected:
    MRBremsTest() { data.KfzDat(1).type = CKfzDaten::Type::motorcycle; }
    Window& Open() { return OpenMask(469); }
    void EnterExample(Window& mask)
    {
        Enter(mask, kFull, "9");
        Enter(mask, kRise, "0,25");
        Enter(mask, kTrace, "20");
        Enter(mask, kReaction, "1");
    }
};

TEST_F(MRBremsTest, DefaultsFollowTypingAndNotTheSpinner)
{
    Window& mask = Open();
    Enter(mask, kAtTrace, "3");
    Enter(mask, kLinear, "4");
    Enter(mask, kFull, "9");
    EXPECT_NEAR(Value(mask, kAtTrace), 6.3, 1e-12);
    EXPECT_EQ(Value(mask, kLinear), 9.0);
    Enter(mask, kAtTrace, "5");
    EXPECT_EQ(Value(mask, kAtTrace), 5.0);
    Enter(mask, kAtTrace, "0");
    EXPECT_EQ(Text(mask, kAtTrace), "6,30");
    StepOnce(mask, kFull, +1);
    EXPECT_NEAR(Value(mask, kFull), 9.1, 1e-12);
    EXPECT_NEAR(Value(mask, kAtTrace), 6.3, 1e-12);
    EXPECT_EQ(Value(mask, kLinear), 9.0);
    Enter(mask, kAtTrace, "0,1");
    StepOnce(mask, kAtTrace, -1);
    EXPECT_EQ(Value(mask, kAtTrace), 0.0);
}

TEST_F(MRBremsTest, OkAndTheCheckBoxShowTheTransferOption)
{
    Window& mask = Open();
    EXPECT_EQ(Press(mask, kOk), InputResult::disabled);
    EXPECT_EQ(Control(mask, kTransfer).check, 0);
    Press(mask, kTransfer);
    EXPECT_TRUE(RuvCfg.transferData);
    EXPECT_TRUE(Control(mask, kOk).enabled);
    RuvCfg.transferData = false; // elsewhere, in the settings
    mask.object->SendMessage(WM_RUV_UPDATEDIALOG);
    EXPECT_EQ(Control(mask, kTransfer).check, 0);
    EXPECT_FALSE(Control(mask, kOk).enabled);
    Press(mask, kTransfer);
    EnterExample(mask);
    Press(mask, kOk);
    EXPECT_TRUE(thread.Dialogs().empty());
    EXPECT_EQ(data.WZRechDat(0), CWegZeitRechDat{}) << "OK calculates nothing";
}

TEST_F(MRBremsTest, CalculatingTransfersTheLinearModelWhenTheOptionIsOn)
{
    CWegZeitRechDat& phases = data.WZRechDat(1);
    for (std::size_t column = kFirst; column < 12; ++column)
        phases.spalten[column].art = PhasenArt::rolling;
    phases.selected = 4;
    const CWegZeitRechDat before = phases;
    Window& mask = Open();
    EnterExample(mask);
    Choose(mask, kVehicle, 1);
    EXPECT_EQ(mask.vehicle, 1);
    EXPECT_EQ(FieldValue(mask, "phase"), 4);
    Press(mask, kCalculate);
    EXPECT_EQ(TransferNews(), std::vector<std::string>{"main -1"});
    EXPECT_EQ(phases, before);

    Press(mask, kTransfer);
    data.UPa(1).modified = true;
    Choose(mask, kPhase, 0);
    Press(mask, kCalculate);
    EXPECT_EQ(phases.selected, kFirst);
    const CWegZeitSpalte& braking = phases.spalten[3];
    EXPECT_EQ(braking.art, PhasenArt::braking);
    EXPECT_EQ(braking.vEnd, 0.0);
    EXPECT_EQ(braking.vAnf, FieldValue(mask, "linGeschwindigkeit"));
    EXPECT_EQ(braking.zeit, FieldValue(mask, "linBremszeit"));
    EXPECT_EQ(braking.weg, FieldValue(mask, "linBremsweg"));
    EXPECT_EQ(braking.verz, 9.0);
    const CWegZeitSpalte& threshold = phases.spalten[4];
    EXPECT_EQ(threshold.art, PhasenArt::threshold);
    EXPECT_EQ(threshold.vAnf, FieldValue(mask, "anfangsgeschwindigkeit"));
    EXPECT_EQ(threshold.zeit, FieldValue(mask, "linSchwelldauer"));
    EXPECT_EQ(threshold.weg, FieldValue(mask, "linSchwellweg"));
    const CWegZeitSpalte& reaction = phases.spalten[5];
    EXPECT_EQ(reaction.art, PhasenArt::reaction);
    EXPECT_EQ(reaction.vEnd, reaction.vAnf);
    EXPECT_EQ(reaction.zeit, FieldValue(mask, "linReaktionsdauer"));
    EXPECT_NEAR(reaction.sumWeg, FieldValue(mask, "reaktionspunktWeg"), 1e-9);
    EXPECT_NEAR(reaction.sumZeit, FieldValue(mask, "reaktionspunktZeit"), 1e-9);
    EXPECT_FALSE(phases.spalten[6].IsUsed());
    EXPECT_FALSE(phases.spalten[11].IsUsed());
    ASSERT_EQ(front.broadcast.size(), 1U);
    EXPECT_EQ(front.broadcast[0].message, 1342U);
    EXPECT_EQ(data.WZRechDat(0), CWegZeitRechDat{});

    // A spinner step calculates, and that is all.
    const CWegZeitRechDat transferred = phases;
    const double v0 = Value(mask, kV0);
    TransferNews();
    StepOnce(mask, kTrace, +1);
    EXPECT_GT(Value(mask, kV0), v0);
    EXPECT_EQ(phases, transferred);
    EXPECT_EQ(TransferNews(), std::vector<std::string>{});
}

TEST_F(MRBremsTest, FailureIsSaidAndNothingTransferred)
{
    RuvCfg.transferData = true;
    Window& mask = Open();
    EnterExample(mask);
    Enter(mask, kVE, "36");
    Enter(mask, kTrace, "0");
    Press(mask, kCalculate);
    EXPECT_EQ(Value(mask, kTrace), 0.001);
    front.messages.clear();
    front.posted.clear();
    const CWegZeitRechDat before = data.WZRechDat(0);
    for (const auto& [field, text] : {std::pair{kAtTrace, "9"}, {kRise, "0"}, {kFull, "0"}}) {
        Enter(mask, field, text);
        Press(mask, kCalculate);
        ASSERT_EQ(front.messages.size(), 1U);
        EXPECT_EQ(front.messages[0].number, 1443U);
        EXPECT_EQ(front.messages[0].text.find("Meldung"), std::string::npos);
        EXPECT_NE(Text(mask, kHint), "");
        EXPECT_EQ(Text(mask, kVE), "36,00");
        front.messages.clear();
    }
    EXPECT_TRUE(front.posted.empty());
    EXPECT_EQ(data.WZRechDat(0), before);

    front.answers[1052] = fehlerJa;
    Press(mask, kClear);
    for (const RecordField& field : static_cast<CMDIRechDialog*>(mask.object)->DescribeRecord())
        EXPECT_EQ(FieldValues(field).at(0), field.name == "berechnet" ? 1.0
                                            : field.name == "phase"   ? 3.0
                                                                      : 0.0)
            << field.name;
    EXPECT_EQ(Text(mask, kHint), "");
    EnterExample(mask);
    Press(mask, kCalculate);
    EXPECT_EQ(data.WZRechDat(0).spalten[kFirst].art, PhasenArt::braking);
    EXPECT_EQ(Control(mask, kPhase).selection, 0);
}

TEST_F(MRBremsTest, ClearingKeepsWhereTheNextTransferGoes)
{
    RuvCfg.transferData = true;
    data.WZRechDat(1).selected = 4;
    Window& mask = Open();
    Choose(mask, kVehicle, 1);
    EnterExample(mask);
    front.answers[1052] = fehlerJa;
    Press(mask, kClear);
    EXPECT_EQ(FieldValue(mask, "fahrzeug"), 1);
    EXPECT_EQ(FieldValue(mask, "phase"), 4);
    EXPECT_EQ(Value(mask, kFull), 0.0);
    EnterExample(mask);
    Press(mask, kCalculate);
    EXPECT_EQ(data.WZRechDat(0), CWegZeitRechDat{});
    EXPECT_EQ(data.WZRechDat(1).spalten[4].art, PhasenArt::braking);
}

TEST_F(MRBremsTest, NegativeDurationsAreNotTransferred)
{
    RuvCfg.transferData = true;
    Window& mask = Open();
    EnterExample(mask);
    Press(mask, kCalculate);
    const CWegZeitRechDat good = data.WZRechDat(0);
    ASSERT_TRUE(good.spalten[kFirst].IsUsed());
    Enter(mask, kReaction, "0"); // the linear model would have to react before there is time for it
    Enter(mask, kLinear, "20");
    Press(mask, kCalculate);
    if (FieldValue(mask, "linReaktionsdauer") < 0.0 || FieldValue(mask, "linBremszeit") < 0.0) {
        EXPECT_EQ(data.WZRechDat(0), good);
        EXPECT_EQ(Text(mask, kHint), "Nichts übertragen: Eine Dauer, ein Weg oder eine Geschwindigkeit ist negativ.");
    } else {
        ADD_FAILURE() << "the case is not the one meant";
    }
    data.KfzDat(0) = {};
    Enter(mask, kReaction, "1");
    Enter(mask, kLinear, "9");
    Press(mask, kCalculate);
    EXPECT_EQ(data.WZRechDat(0), good);
    EXPECT_EQ(Text(mask, kHint), "Nichts übertragen: Das Fahrzeug ist nicht mehr im Fall.");
}

TEST_F(MRBremsTest, CarelessInputLeavesNumbersInTheCase)
{
    test::RandomInput random(469);
    RuvCfg.transferData = true;
    int transferred = 0;
    for (int round = 0; round < 150; ++round) {
        data.KfzDat(0).type = round % 5 == 0 ? CKfzDaten::Type::none : CKfzDaten::Type::car;
        Window& mask = Open();
        if (round % 2 == 0)
            EnterExample(mask);
        for (int action = 0; action < 20; ++action) {
            const UINT field = random.Pick<UINT>({kFull, kRise, kAtTrace, kTrace, kVE, kReaction, kLinear, kV0});
            switch (random.Number(6)) {
            case 0:
            case 1:
                Press(mask, random.Pick<UINT>({kCalculate, kCalculate, kClear}));
                break;
            case 2:
                StepOnce(mask, field, random.Number(2) * 2 - 1);
                break;
            case 3:
                Choose(mask, random.Pick<UINT>({kVehicle, kPhase}), random.Number(3));
                break;
            default:
                Enter(mask, field, random.Text());
            }
        }
        CloseAllDialogs();
        for (const std::size_t vehicle : {0U, 1U})
            for (const CWegZeitSpalte& s : data.WZRechDat(vehicle).spalten) {
                transferred += s.IsUsed();
                for (const double value : {s.vEnd, s.vAnf, s.verz, s.zeit, s.weg, s.sumZeit, s.sumWeg})
                    ASSERT_TRUE(std::isfinite(value));
            }
    }
    EXPECT_GT(transferred, 0);
}

} // namespace
