// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Mask 450 as the user meets it.
#include "frame/RuvMod.h"
#include "host/CDC.h"
#include "host/Physics.h"
#include "masks/manoeuvre/AbbiegePlan.h"
#include "masks/manoeuvre/CAbVorDlg.h"
#include "scene/SceneModel.h"
#include "scene/ScenePath.h"
#include "tests/support/MaskFixture.h"
#include "tests/support/Primitives.h"
#include "tests/support/RandomInput.h"

#include <algorithm>
#include <cmath>

namespace
{

using framework::Window;
using test::FieldValue;

constexpr UINT kVehicle = 3001, kPhase = 3002, kLeft = 3004, kRight = 3005, kForward = 3006, kReverse = 3007,
               kR0 = 3011, kR1 = 3012, kTs = 3013, kYaw = 3015, kV = 3021, kA = 3022, kLimit = 3023, kPath = 3024;
constexpr UINT kTime = 3025, kReachedYaw = 3016, kReachedRadius = 3018, kWheel = 3014;
constexpr UINT kPicture = 108, kHint = 23002, kKept = 23003;

class AbVorTest : public test::MaskTest
{
  protected:
    Window& Open() { return OpenMask(450); }
    void EnterExample(Window& mask)
    {
        Enter(mask, kR1, "8");
        Enter(mask, kTs, "2");
        Enter(mask, kYaw, "90");
        Enter(mask, kV, "20");
    }
    const CWegZeitSpalte& Column(std::size_t column) const { return data.WZRechDat(0).spalten[column]; }
};

TEST_F(AbVorTest, ShowsTheWorkedExampleAndFollowsChanges)
{
    Window& mask = Open();
    EXPECT_EQ(Value(mask, 3031), 0.5);
    EXPECT_EQ(Text(mask, 3029), "2,91");
    Enter(mask, kR1, "5");
    EXPECT_EQ(Text(mask, kWheel), "382"); // 15.5 · 24.65°
    Enter(mask, kYaw, "90");
    Enter(mask, kV, "18");
    EXPECT_EQ(Value(mask, kTime), 0.0);
    Press(mask, kCalculate);
    EXPECT_EQ(Text(mask, kTime), "1,86");
    EXPECT_EQ(Text(mask, 3017), "4,22");
    EXPECT_EQ(Text(mask, 3019), "12,9");
    EXPECT_EQ(Text(mask, 3027), "8,55");
    EXPECT_EQ(Text(mask, 3028), "4,05");
    EXPECT_NEAR(Value(mask, 3033) + Value(mask, 3036), 9.307, 0.005);
    EXPECT_FALSE(Control(mask, kTime).enabled);

    Press(mask, kRight);
    EXPECT_EQ(Text(mask, 3019), "-12,9");
    Press(mask, kReverse);
    EXPECT_EQ(Text(mask, 3019), "-167,1");
    EXPECT_EQ(Control(mask, kLeft).check, 1); // the side along the travel stays
    Press(mask, kForward);
    StepOnce(mask, kV, 1);
    EXPECT_EQ(Text(mask, kTime), "1,76"); // 9.307 m at 19 km/h
    Enter(mask, kR1, "0");
    EXPECT_EQ(Value(mask, kTime), 0.0); // no radius: no results are left, and no box interrupts
    EXPECT_TRUE(TakeMessages().empty());
    EXPECT_NE(Text(mask, kHint), "");
    Enter(mask, kR1, "5");
    EXPECT_EQ(Text(mask, kTime), "1,76");
    EXPECT_EQ(Text(mask, kHint), "");
}

TEST_F(AbVorTest, RefusalsSpeakByNumber)
{
    Window& mask = Open();
    const auto refused = [&] {
        Press(mask, kCalculate);
        return TakeMessages();
    };
    EXPECT_EQ(refused(), std::vector<UINT>{1336});
    Enter(mask, kR0, "10");
    EXPECT_EQ(refused(), std::vector<UINT>{1332});
    Enter(mask, kV, "20");
    EXPECT_EQ(refused(), std::vector<UINT>{1335});
    Enter(mask, kTs, "2");
    Enter(mask, kA, "-1");
    Enter(mask, kLimit, "21");
    EXPECT_EQ(refused(), std::vector<UINT>{1339});
    Enter(mask, kA, "1");
    Enter(mask, kLimit, "19");
    EXPECT_EQ(refused(), std::vector<UINT>{1340});
    Enter(mask, kLimit, "0");
    EXPECT_EQ(refused(), std::vector<UINT>{1349});
    data.KfzDat(0).length = 0.0;
    EXPECT_EQ(refused(), (std::vector<UINT>{1331, 1349}));
    EXPECT_EQ(data.KfzDat(0).length, 4.0);
}

TEST_F(AbVorTest, QuestionsAreAskedOncePerCalculation)
{
    Window& mask = Open();
    EnterExample(mask);
    Enter(mask, kA, "-3");
    Press(mask, kCalculate);
    EXPECT_EQ(TakeMessages(), std::vector<UINT>{1342});
    EXPECT_LT(Value(mask, kReachedYaw), 80.0);
    EXPECT_NE(Text(mask, kHint), "");
    StepOnce(mask, kYaw, 1);
    EXPECT_TRUE(TakeMessages().empty()); // the answer holds
    front.answers[1342] = fehlerJa;
    Enter(mask, kA, "-2,5"); // another braking is another question
    EXPECT_EQ(TakeMessages(), std::vector<UINT>{1342});
    EXPECT_NEAR(Value(mask, kReachedYaw), Value(mask, kYaw), 0.2);
    EXPECT_EQ(Text(mask, kHint), "");

    Enter(mask, kA, "0");
    Enter(mask, kR0, "8");
    Enter(mask, kR1, "0");
    EXPECT_EQ(TakeMessages(), std::vector<UINT>{1344});
    EXPECT_LT(Value(mask, kReachedYaw), 80.0);
    front.answers[1344] = fehlerJa;
    Press(mask, kCalculate);
    EXPECT_EQ(TakeMessages(), std::vector<UINT>{1344});
    EXPECT_NEAR(Value(mask, kReachedYaw), Value(mask, kYaw), 0.2);
    EXPECT_EQ(Value(mask, kReachedRadius), 0.0);
}

TEST_F(AbVorTest, TransfersEachCalculationWhenSwitchedOn)
{
    Window& mask = Open();
    EnterExample(mask);
    Press(mask, kCalculate);
    EXPECT_FALSE(Column(kFirst).IsUsed());
    front.posted.clear();
    Press(mask, kTransfer);
    EXPECT_TRUE(RuvCfg.transferData);
    EXPECT_EQ(TransferNews(), (std::vector<std::string>{"main 0", "main -1"}));
    EXPECT_EQ(Column(kFirst).art, PhasenArt::turning);
    EXPECT_EQ(Text(mask, kKept), "In den Fall übertragen: Phase 1.");
    Enter(mask, kV, "30");
    EXPECT_EQ(TransferNews(), std::vector<std::string>{"main 0"});
    EXPECT_NEAR(Column(kFirst).vAnf, 30.0, 1e-9);
    EXPECT_EQ(Column(kFirst).zeit, Value(mask, kTime));
    Enter(mask, kR1, "0"); // no result: the case keeps the former turn, and the mask says so
    EXPECT_NEAR(Column(kFirst).vAnf, 30.0, 1e-9);
    EXPECT_NE(Text(mask, kKept).find("zuvor"), std::string::npos);
    Enter(mask, kR1, "8");

    // What the transfer wrote is the vehicle's way in the scene and a phase in the diagram.
    const scene::Scene scene = scene::ReadScene(data);
    ASSERT_EQ(scene.tracks.size(), 2U);
    ASSERT_EQ(scene.tracks[0].trajectories.size(), 1U);
    EXPECT_GT(scene.tracks[0].trajectories[0].back().y, 500.0);

    // With a place of the collision the turn ends there, as the vehicle stands there: 90° turned from its heading.
    CWegZeitRechDat placed = data.WZRechDat(0);
    scene::WriteDrivingLine(placed, {{}, {1000.0, 2000.0}, kPi});
    placed.Uebertragen(data, 0, nullptr, 0);
    const auto before = scene.tracks[0].trajectories[0];
    const auto laid = scene::ReadScene(data).tracks[0].trajectories[0];
    ASSERT_EQ(laid.size(), before.size());
    EXPECT_NEAR(laid.back().x, 1000.0, 1e-6);
    EXPECT_NEAR(laid.back().y, 2000.0, 1e-6);
    const CDPoint way0 = before.back() - before.front();
    const CDPoint way1 = laid.back() - laid.front();
    EXPECT_NEAR(way1.x, -way0.y, 1.0);
    EXPECT_NEAR(way1.y, way0.x, 1.0);

    // A neighbour that is slower makes the case hold other numbers.
    CWegZeitRechDat way = data.WZRechDat(0);
    way.Einfuegen(kFirst);
    way.spalten[kFirst].art = PhasenArt::constantSpeed;
    way.spalten[kFirst].vEnd = way.spalten[kFirst].vAnf = 10.0;
    way.spalten[kFirst].zeit = 1.0;
    way.Berechnung();
    way.Uebertragen(data, 0, nullptr, 0);
    CAbVorDlg::ChangeAbs(static_cast<int>(kFirst), static_cast<int>(kFirst) + 1);
    EXPECT_EQ(FieldValue(mask, "phase"), kFirst + 1.0);
    Enter(mask, kV, "25");
    EXPECT_EQ(Text(mask, kKept), "In den Fall übertragen: Phase 2.");
    EXPECT_NE(Text(mask, kHint).find("andere Werte"), std::string::npos);
    EXPECT_EQ(Column(kFirst).art, PhasenArt::constantSpeed);
}

TEST_F(AbVorTest, OkTransfersAndCloses)
{
    Window& mask = Open();
    EXPECT_NE(AbDat, nullptr);
    EnterExample(mask);
    Press(mask, kOk);
    EXPECT_TRUE(thread.Dialogs().empty());
    EXPECT_EQ(AbDat, nullptr);
    EXPECT_EQ(Column(kFirst).art, PhasenArt::turning);
    EXPECT_GT(Column(kFirst).zeit, 1.0);

    // Opened again it finds the turn and reads it.
    Window& again = Open();
    CAbDaten* const first = AbDat;
    EXPECT_EQ(Text(again, kR1), "8,00");
    EXPECT_EQ(Text(again, kV), "20,00");
    EXPECT_NE(Value(again, kPath), 0.0);
    // Two may be open; the one that closes does not take the other's data.
    Window& second = Open();
    EXPECT_NE(AbDat, first);
    Press(again, 2);
    EXPECT_NE(AbDat, nullptr);
    front.answers[1052] = fehlerJa;
    Press(second, kClear);
    EXPECT_EQ(Value(second, kR1), 0.0);
    EXPECT_NE(Value(second, 3029), 0.0);
    Press(second, kOk); // nothing to calculate: says so and closes, the case stays
    EXPECT_EQ(front.messages.back().number, 1336U);
    EXPECT_TRUE(thread.Dialogs().empty());
    EXPECT_EQ(Column(kFirst).art, PhasenArt::turning);
}

TEST_F(AbVorTest, SidesInTheCaseFollowTheRadioButtons)
{
    Window& mask = Open();
    EnterExample(mask);
    RuvCfg.transferData = true;
    Press(mask, kCalculate);
    RuvCfg.transferData = false;
    data.UPa(0).modified = false;
    const double y = Column(kFirst).bahn.back().y;
    Press(mask, kRight);
    EXPECT_EQ(Column(kFirst).seite, 1);
    EXPECT_EQ(Column(kFirst).bahn.back().y, -y);
    EXPECT_TRUE(data.UPa(0).modified);
    Press(mask, kRight); // chosen already
    EXPECT_EQ(Column(kFirst).seite, 1);
}

TEST_F(AbVorTest, OtherPhaseOrVehicleShowsNoResultsOfTheFormer)
{
    Window& mask = Open();
    EnterExample(mask);
    RuvCfg.transferData = true;
    Press(mask, kCalculate);
    ASSERT_EQ(Column(kFirst).art, PhasenArt::turning);
    Choose(mask, kPhase, 1);
    EXPECT_EQ(Value(mask, kTime), 0.0);
    EXPECT_EQ(Value(mask, kR1), 0.0);
    EXPECT_FALSE(Column(kFirst + 1).IsUsed()); // nothing was written there
    Choose(mask, kVehicle, 1);
    EXPECT_EQ(FieldValue(mask, "fahrzeug"), 1.0);
    EXPECT_EQ(Value(mask, kTime), 0.0);
    // A vehicle that changed its lengths: the turn follows.
    Choose(mask, kVehicle, 0);
    EnterExample(mask);
    Press(mask, kCalculate);
    const double time = Value(mask, kTime);
    data.KfzDat(0).wheelbase = 4.0;
    data.NotifyGeo(0);
    EXPECT_NE(Value(mask, kTime), time);
}

/// Bounding box of everything drawn.
struct Box {
    double left = 1e9, top = 1e9, right = -1e9, bottom = -1e9;
};
Box BoxOf(const CDC& dc)
{
    Box box;
    for (const auto& polygon : test::All<drawing::Polygon>(dc))
        for (const CDPoint& p : polygon.points)
            box = {std::min(box.left, p.x), std::min(box.top, p.y), std::max(box.right, p.x),
                   std::max(box.bottom, p.y)};
    return box;
}

TEST_F(AbVorTest, DrawsTheSweptGroundWithThreeOutlines)
{
    Window& mask = Open();
    auto& dialog = *static_cast<CAbVorDlg*>(mask.object);
    CDC empty(400, 300);
    dialog.ZeichnePlan(empty);
    EXPECT_EQ(empty.Primitives().size(), 2U); // ground and a word
    EnterExample(mask);
    Press(mask, kCalculate);
    Press(mask, kPicture);
    CDC left(400, 300);
    dialog.ZeichnePlan(left);
    Press(mask, kRight);
    CDC right(400, 300);
    dialog.ZeichnePlan(right);
    auto outlines = test::All<drawing::Polygon>(left);
    std::erase_if(outlines, [](const auto& polygon) { return polygon.brush.filled; });
    ASSERT_EQ(outlines.size(), 3U);
    EXPECT_EQ(outlines[1].pen.style, PenStyle::dash);
    EXPECT_EQ(test::Words(left), (std::vector<std::string>{"Beginn", "Zwischenposition", "Ende", "5 m"}));
    // The start is a rectangle of 4.5 m by 1.8 m along the travel; the end stands across.
    const auto& a = outlines[0].points;
    const auto& e = outlines[2].points;
    EXPECT_NEAR(std::hypot(a[2].x - a[1].x, a[2].y - a[1].y) / std::hypot(a[1].x - a[0].x, a[1].y - a[0].y), 2.5, 1e-6);
    EXPECT_NEAR(a[1].y, a[2].y, 1e-6);
    EXPECT_NEAR(e[1].x, e[2].x, 0.1);
    EXPECT_LT(e[1].y, a[1].y);
    const Box l = BoxOf(left);
    const Box r = BoxOf(right);
    EXPECT_GT(l.left, 0.0);
    EXPECT_LT(l.right, 400.0);
    EXPECT_LT(l.bottom, 300.0);
    EXPECT_NEAR(l.right - l.left, r.right - r.left, 1e-6);
    // Names of bodies that stand close together do not lie over each other.
    Enter(mask, 3031, "0,01");
    CDC close(400, 300);
    dialog.ZeichnePlan(close);
    const auto names = test::All<drawing::Text>(close);
    ASSERT_EQ(names.size(), 4U);
    EXPECT_GT(std::abs(names[0].position.y - names[1].position.y), 11.0) << "the height of the letters";

    // Reverse: the rear leads, and the front stands behind it.
    Press(mask, kReverse);
    CDC back(400, 300);
    dialog.ZeichnePlan(back);
    const CAbDaten::Lauf& lauf = *AbDat->LetzterLauf();
    const auto start = abbiegen::Umriss(lauf.vorgabe, abbiegen::Lage{});
    EXPECT_NEAR(start[0].x, -3.55, 1e-9);
    EXPECT_NEAR(start[2].x, 0.95, 1e-9);
    EXPECT_NEAR(start[0].y, 0.125, 1e-9); // half the width less half the track
}

} // namespace
