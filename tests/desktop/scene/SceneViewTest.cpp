// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/scene/SceneView.h"
#include "desktop/CasePanels.h"
#include "desktop/look/NumberField.h"
#include "desktop/scene/SceneBar.h"
#include "desktop/scene/SceneCanvas.h"
#include "framework/UserInput.h"
#include "krn/Placing.h"
#include "krn/VehicleFields.h"
#include "res/resource.h"
#include "scene/ScenePath.h"
#include "tests/desktop/DesktopFixture.h"

#include <QDockWidget>

#include <algorithm>
#include <cmath>

namespace
{

using desktop::SceneBar;
using desktop::SceneCanvas;
using scene::SceneKind;

class SceneViewTest : public test::DesktopTest
{
  protected:
    SceneViewTest()
    {
        CKfzDaten& person = document.Data().KfzDat(1);
        person = krn::TypicalVehicle(CKfzDaten::Type::pedestrian);
        person.name = "Fußgängerin";
        document.Commit("Anfang");
        window.resize(1760, 1000);
        QApplication::processEvents();
    }

    SceneCanvas& Canvas() { return panels.scene->Canvas(); }
    QPoint Pixel(CDPoint cm)
    {
        const CDPoint pixel = Canvas().Camera().ToPixel(cm);
        return {static_cast<int>(std::lround(pixel.x)), static_cast<int>(std::lround(pixel.y))};
    }
    /// What the mouse can hit: the place of the whole pixel next to it.
    CDPoint Hit(CDPoint cm)
    {
        const QPoint pixel = Pixel(cm);
        return Canvas().Camera().ToScene({static_cast<double>(pixel.x()), static_cast<double>(pixel.y())});
    }
    void MoveTo(CDPoint cm, Qt::KeyboardModifiers modifiers = Qt::NoModifier, Qt::MouseButtons buttons = Qt::NoButton)
    {
        const QPoint pixel = Pixel(cm);
        QMouseEvent event(QEvent::MouseMove, pixel, Canvas().mapToGlobal(pixel), Qt::NoButton, buttons, modifiers);
        QApplication::sendEvent(&Canvas(), &event);
        QApplication::processEvents();
    }
    void Click(CDPoint cm)
    {
        MoveTo(cm);
        QTest::mouseClick(&Canvas(), Qt::LeftButton, Qt::NoModifier, Pixel(cm));
        QApplication::processEvents();
    }
    void Drag(CDPoint from, CDPoint to, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        MoveTo(from);
        QTest::mousePress(&Canvas(), Qt::LeftButton, modifiers, Pixel(from));
        for (const double part : {0.3, 0.7, 1.0})
            MoveTo(from + (to - from) * part, modifiers, Qt::LeftButton);
        QTest::mouseRelease(&Canvas(), Qt::LeftButton, modifiers, Pixel(to));
        QApplication::processEvents();
    }
    /// The object of the open mask, as the scene has it.
    CPlacedObject Object(int kind)
    {
        for (const scene::SceneItem& item : Canvas().Scene().items)
            if (item.id.kind == SceneKind::maskObject && item.id.object == kind)
                return item.pose;
        ADD_FAILURE() << "object " << kind << " does not stand in the scene";
        return {};
    }
    using DesktopTest::Press;
    static void Press(desktop::MaskWindow& onMask, UINT id)
    {
        framework::Window* control = onMask.Dialog()->Child(id);
        for (framework::Window* page : framework::UiThread::Current()->Pages(*onMask.Dialog()))
            control = control == nullptr ? page->Child(id) : control;
        ASSERT_NE(control, nullptr);
        onMask.Act([&] { framework::Click(*control); });
        QApplication::processEvents();
    }
    void OpenExample()
    {
        ASSERT_TRUE(document.Open(QStringLiteral(TAVELIN_SOURCE_DIR "/examples/fussgaenger.json")));
        mask = &Open(487);
        Press(*mask, IDC_RECHNEN);
        Canvas().Fit();
    }
    double Low() { return Value(IDC_SCHR_TEMPO_VON); }
    double Value(UINT id)
    {
        return QString::fromStdString(Text(*mask, id)).replace(QLatin1Char(','), QLatin1Char('.')).toDouble();
    }
    std::size_t Steps()
    {
        std::size_t steps = 0;
        for (; document.CanUndo(); ++steps)
            document.Undo();
        for (std::size_t i = 0; i < steps; ++i)
            document.Redo();
        return steps;
    }

    desktop::CasePanels panels = desktop::AddCasePanels(window, document);
    desktop::MaskWindow* mask = nullptr;
};

TEST_F(SceneViewTest, AllObjectsOfTheBarrierMaskArePlacedByMouse)
{
    mask = &Open(487);
    framework::Window* page = framework::UiThread::Current()->Pages(*mask->Dialog()).front();
    mask->Act([&] { framework::Select(*page->Child(IDC_SCHR_FAHRZEUG), 1); });
    mask->Act([&] { framework::Select(*page->Child(IDC_SCHR_PERSON), 1); });
    panels.scene->parentWidget()->hide();

    Press(*mask, IDC_SCHR_SETZEN_FAHRZEUG);
    EXPECT_TRUE(Canvas().isVisible()) << "the scene comes up by itself";
    EXPECT_TRUE(Canvas().hasFocus());
    EXPECT_TRUE(Canvas().Prompt().startsWith("Bitte positionieren Sie das Fahrzeug"));
    const CDPoint place{120, 310};
    Click(place);
    EXPECT_EQ(Object(0).position, Hit(place)) << "a vehicle hangs at its centre";
    ASSERT_NE(krn::OpenPlacingRequest(document.Data()), nullptr) << "it can still be corrected";
    Click({-200, 300});
    EXPECT_EQ(Object(0).position, Hit({-200, 300}));
    QTest::keyClick(&Canvas(), Qt::Key_Return);
    EXPECT_EQ(krn::OpenPlacingRequest(document.Data()), nullptr);
    EXPECT_TRUE(Canvas().Prompt().isEmpty());

    // A rectangle is clicked with the size it is wished, or spanned.
    Press(*mask, IDC_SCHR_SETZEN_PERSON);
    Click({600, 200});
    QTest::keyClick(&Canvas(), Qt::Key_Escape);
    const CPlacedObject person = Object(2);
    EXPECT_DOUBLE_EQ(person.length, 100.0 * document.Data().KfzDat(1).height) << "lying";
    EXPECT_NEAR(scene::CentreOf(person).x, Hit({600, 200}).x, 1e-9);
    EXPECT_NEAR(scene::CentreOf(person).y, Hit({600, 200}).y, 1e-9);

    Press(*mask, IDC_SCHR_SETZEN_KOLLISIONSORT);
    Drag({-500, -200}, {-100, 50});
    QTest::keyClick(&Canvas(), Qt::Key_Escape);
    const CPlacedObject place1 = Object(1);
    EXPECT_NEAR(place1.position.x, Hit({-500, -200}).x, 1e-9);
    EXPECT_NEAR(place1.position.y, Hit({-500, -200}).y, 1e-9);
    EXPECT_NEAR(place1.width, Hit({-100, 50}).x - Hit({-500, -200}).x, 1e-9);
    EXPECT_NEAR(place1.length, Hit({-100, 50}).y - Hit({-500, -200}).y, 1e-9);

    // Esc before a click places nothing.
    Press(*mask, IDC_SCHR_SETZEN_GESAMTFELD);
    MoveTo({0, 0});
    QTest::keyClick(&Canvas(), Qt::Key_Escape);
    EXPECT_EQ(krn::OpenPlacingRequest(document.Data()), nullptr);
    EXPECT_EQ(krn::SceneObjects(document.Data()).size(), 3U);
    Press(*mask, IDC_SCHR_SETZEN_GESAMTFELD);
    Click({100, 0});
    QTest::mouseClick(&Canvas(), Qt::RightButton, Qt::NoModifier, Pixel({0, 0}));
    QContextMenuEvent menu(QContextMenuEvent::Mouse, Pixel({0, 0}), Canvas().mapToGlobal(Pixel({0, 0})));
    QApplication::sendEvent(&Canvas(), &menu);
    EXPECT_EQ(krn::OpenPlacingRequest(document.Data()), nullptr);
    EXPECT_EQ(krn::SceneObjects(document.Data()).size(), 4U);
}

TEST_F(SceneViewTest, DraggingAnObjectChangesTheResultAtOnceAndIsOneStep)
{
    OpenExample();
    const double before = Low();
    ASSERT_GT(before, 0.0);
    const std::size_t steps = Steps();
    const CDPoint from = Object(0).position;
    const CDPoint to = from + CDPoint{120, 20};
    MoveTo(from);
    QTest::mousePress(&Canvas(), Qt::LeftButton, Qt::NoModifier, Pixel(from));
    double last = before;
    for (const double part : {0.25, 0.5, 0.75, 1.0}) {
        MoveTo(from + (to - from) * part, Qt::NoModifier, Qt::LeftButton);
        EXPECT_GT(Low(), last) << "a longer way braking from there needs more speed, seen at part " << part;
        last = Low();
        QTest::qWait(250); // the case is looked at meanwhile
    }
    EXPECT_EQ(document.UndoLabel().contains("Szene"), false) << "the drag goes on";
    QTest::mouseRelease(&Canvas(), Qt::LeftButton, Qt::NoModifier, Pixel(to));
    QApplication::processEvents();
    EXPECT_EQ(document.UndoLabel(), "Szene: Fahrzeug");
    EXPECT_EQ(Steps(), steps + 1);
    const CDPoint moved = Object(0).position - from;
    EXPECT_NEAR(moved.x, (Hit(to) - Hit(from)).x, 1e-9);
    EXPECT_NEAR(moved.y, (Hit(to) - Hit(from)).y, 1e-9);

    document.Undo();
    QApplication::processEvents();
    EXPECT_DOUBLE_EQ(Low(), before) << "an undone step reaches the open mask";
    EXPECT_NEAR(Object(0).position.x, from.x, 1e-9);

    // A drag that is given up leaves nothing behind.
    MoveTo(from);
    QTest::mousePress(&Canvas(), Qt::LeftButton, Qt::NoModifier, Pixel(from));
    MoveTo(to, Qt::NoModifier, Qt::LeftButton);
    EXPECT_GT(Low(), before);
    QTest::keyClick(&Canvas(), Qt::Key_Escape);
    QTest::mouseRelease(&Canvas(), Qt::LeftButton, Qt::NoModifier, Pixel(to));
    EXPECT_DOUBLE_EQ(Low(), before);
    EXPECT_NEAR(Object(0).position.x, from.x, 1e-9);
}

TEST_F(SceneViewTest, NumbersPlaceTheSelectedObject)
{
    OpenExample();
    Click(Object(0).position);
    SceneBar& bar = panels.scene->Bar();
    EXPECT_EQ(bar.Field(SceneBar::x).text(), "12,00");
    EXPECT_EQ(bar.Field(SceneBar::angle).text(), "11,5");
    EXPECT_FALSE(bar.Field(SceneBar::width).isVisible()) << "a vehicle's size is not the scene's";
    const auto type = [&](SceneBar::Number number, const char* text) {
        ClickOn(bar.Field(number));
        bar.Field(number).selectAll();
        Type(QString::fromUtf8(text));
        Press(Qt::Key_Return);
    };
    type(SceneBar::x, "13,5");
    EXPECT_NEAR(Object(0).position.x, 1350.0, 1e-9);
    EXPECT_EQ(document.UndoLabel(), "Szene: Fahrzeug");
    type(SceneBar::angle, "500");
    ASSERT_NE(bar.Field(SceneBar::angle).Refusal(), nullptr);
    EXPECT_EQ(bar.Field(SceneBar::angle).text(), "11,5");
    EXPECT_NEAR(Object(0).angle, 0.2 * 180.0 / 3.141592653589793, 1e-9);

    Canvas().Select(std::nullopt);
    Click(Object(1).position + CDPoint{150, 150});
    ASSERT_NE(Canvas().Selected(), nullptr);
    EXPECT_EQ(Canvas().Selected()->pose.name, "Kollisionsort");
    type(SceneBar::length, "2.75");
    EXPECT_NEAR(Object(1).length, 275.0, 1e-9);
    EXPECT_NEAR(Object(1).position.x, -350.0, 1e-9) << "the corner stays";
}

TEST_F(SceneViewTest, KeysMoveTurnAndWalkTheObjects)
{
    OpenExample();
    Canvas().setFocus();
    std::vector<std::string> names;
    for (int i = 0; i < 50; ++i) {
        Press(Qt::Key_Tab);
        if (!Canvas().hasFocus())
            break;
        names.push_back(Canvas().Selected()->pose.name);
    }
    EXPECT_EQ(names.size(), Canvas().Scene().items.size());
    EXPECT_FALSE(Canvas().hasFocus()) << "after the last one Tab goes on";

    Canvas().setFocus();
    Click(Object(0).position);
    const CPlacedObject before = Object(0);
    Press(Qt::Key_Right);
    Press(Qt::Key_Up, Qt::ControlModifier);
    Press(Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_NEAR(Object(0).position.x, before.position.x + 10.0 - 100.0, 1e-9);
    EXPECT_NEAR(Object(0).position.y, before.position.y + 1.0, 1e-9);
    Press(Qt::Key_PageUp);
    EXPECT_NEAR(Object(0).angle, before.angle + 1.0, 1e-9);
    const double scale = Canvas().Camera().pixelsPerMetre;
    Press(Qt::Key_Plus);
    EXPECT_DOUBLE_EQ(Canvas().Camera().pixelsPerMetre, 1.25 * scale);
    Press(Qt::Key_Home);
    EXPECT_LT(Canvas().Camera().pixelsPerMetre, 1.25 * scale);
}

TEST_F(SceneViewTest, VehiclesAndTheirDrivingLineGoIntoTheCase)
{
    const auto& way = document.Data().WZRechDat(0);
    const std::size_t steps = Steps();
    panels.scene->HangVehicle(0, SceneKind::restPose);
    Click({500, 100});
    EXPECT_EQ(way.endPunkt, Hit({500, 100}));
    panels.scene->HangVehicle(0, SceneKind::collision);
    Click({-300, 100});
    const auto line = scene::ReadDrivingLine(way);
    ASSERT_TRUE(line);
    EXPECT_EQ(line->position, Hit({-300, 100}));
    EXPECT_TRUE(way.spalten[CWegZeitDat::kKollisionsSpalte].IsUsed()) << "or the file would not hold it";

    panels.scene->HangVehicle(0, SceneKind::waypoint);
    Click({-600, 80});
    Click({-650, -200});
    Press(Qt::Key_Escape);
    ASSERT_EQ(scene::ReadDrivingLine(way)->points.size(), 2U);
    EXPECT_EQ(scene::ReadDrivingLine(way)->points[0], Hit({-650, -200})) << "drawn backwards from the collision";
    EXPECT_EQ(Steps(), steps + 4);

    Drag(Hit({-600, 80}), {-550, 150});
    EXPECT_NEAR(scene::ReadDrivingLine(way)->points[1].y, Hit({-550, 150}).y, 1e-9);
    const CDPoint middle = (Hit({-650, -200}) + scene::ReadDrivingLine(way)->points[1]) * 0.5;
    QTest::mouseDClick(&Canvas(), Qt::LeftButton, Qt::NoModifier, Pixel(middle));
    ASSERT_EQ(scene::ReadDrivingLine(way)->points.size(), 3U) << "a double click adds a point";
    EXPECT_EQ(Canvas().Selected()->id.point, 1U);
    QTest::keyClick(&Canvas(), Qt::Key_Delete);
    EXPECT_EQ(scene::ReadDrivingLine(way)->points.size(), 2U);

    // A drag of the rest position that is given up leaves the case as it was, to the last bit.
    const std::string text = document.CaseText();
    const CDPoint at = Hit({500, 100});
    MoveTo(at);
    QTest::mousePress(&Canvas(), Qt::LeftButton, Qt::NoModifier, Pixel(at));
    MoveTo({550, 160}, Qt::NoModifier, Qt::LeftButton);
    EXPECT_NE(way.endPunkt, at);
    QTest::keyClick(&Canvas(), Qt::Key_Escape);
    EXPECT_EQ(document.CaseText(), text);

    Click(at);
    QTest::keyClick(&Canvas(), Qt::Key_Delete);
    EXPECT_FALSE(scene::HasRestPose(way));
    document.Undo();
    EXPECT_TRUE(scene::HasRestPose(way));
}

TEST_F(SceneViewTest, TheWheelKeepsWhatIsUnderTheCursorAndEmptyGroundPans)
{
    OpenExample();
    const CDPoint at{700, 150};
    const QPoint pixel = Pixel(at);
    const CDPoint before = Canvas().Camera().ToScene({double(pixel.x()), double(pixel.y())});
    QWheelEvent wheel(pixel, Canvas().mapToGlobal(pixel), {}, {0, 240}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                      false);
    const double scale = Canvas().Camera().pixelsPerMetre;
    QApplication::sendEvent(&Canvas(), &wheel);
    EXPECT_DOUBLE_EQ(Canvas().Camera().pixelsPerMetre, scale * 1.5625);
    const CDPoint after = Canvas().Camera().ToScene({double(pixel.x()), double(pixel.y())});
    EXPECT_NEAR(after.x, before.x, 1e-9);
    EXPECT_NEAR(after.y, before.y, 1e-9);

    Canvas().Fit();
    const std::string text = document.CaseText();
    const CDPoint centre = Canvas().Camera().centre;
    const QPoint from = Pixel({0, 700});
    ASSERT_FALSE(scene::HitTest(Canvas().Scene(), Canvas().Camera(), {double(from.x()), double(from.y())}, {}));
    QTest::mousePress(&Canvas(), Qt::LeftButton, Qt::NoModifier, from);
    const QPoint to = from + QPoint(60, 25);
    QMouseEvent move(QEvent::MouseMove, to, Canvas().mapToGlobal(to), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&Canvas(), &move);
    QTest::mouseRelease(&Canvas(), Qt::LeftButton, Qt::NoModifier, to);
    EXPECT_NEAR(Canvas().Camera().centre.x, centre.x - Canvas().Camera().Length(60.0), 1e-9);
    EXPECT_NEAR(Canvas().Camera().centre.y, centre.y + Canvas().Camera().Length(25.0), 1e-9);
    EXPECT_EQ(document.CaseText(), text);
}

} // namespace
