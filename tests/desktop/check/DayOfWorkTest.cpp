// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// A day's work: random keys and mouse on masks, panels and menus, undo, saving and opening again.
#include "tests/desktop/DesktopFixture.h"
#include "tests/support/RandomInput.h"
#include "tests/support/TemporaryFolder.h"

#include "desktop/CasePanels.h"
#include "desktop/MaskReport.h"
#include "desktop/case/PathTimeTable.h"
#include "desktop/case/VehicleEditor.h"
#include "desktop/look/DiagramView.h"
#include "desktop/look/NumberField.h"
#include "desktop/mask/ControlWidgets.h"
#include "desktop/scene/SceneCanvas.h"
#include "desktop/scene/SceneView.h"
#include "frame/MaskTable.h"
#include "krn/VehicleFields.h"

#include <QAction>
#include <QDialog>
#include <QMenu>
#include <QPixmapCache>
#include <QTableView>
#include <QWheelEvent>

#include <fstream>

#include <malloc.h>

namespace
{

QStringList g_warnings;

void Collect(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    const bool ofPlatform = text.startsWith("This plugin does not support");
    if (type != QtDebugMsg && type != QtInfoMsg && !ofPlatform)
        g_warnings << text;
}

/// Of this process, MB. What the allocator keeps for later is given back before: work beside the interface thread
/// leaves such room in places of its own. Qt's cache of pictures has a bound of its own, 10 MB.
double ResidentMemory()
{
    QPixmapCache::clear();
    malloc_trim(0);
    constexpr double kPage = 4096.0 / 1e6;
    std::ifstream file("/proc/self/statm");
    double total = 0.0;
    double resident = 0.0;
    file >> total >> resident;
    return kPage * resident;
}

class DayOfWorkTest : public test::DesktopTest
{
  protected:
    DayOfWorkTest()
    {
        document.New();
        before = qInstallMessageHandler(&Collect);
        // Questions and menus that nobody answers are given up.
        QObject::connect(&closer, &QTimer::timeout, &closer, [] {
            if (QWidget* popup = QApplication::activePopupWidget())
                popup->close();
            else if (auto* box = qobject_cast<QDialog*>(QApplication::activeModalWidget()))
                box->reject();
        });
        closer.start(5);
    }
    ~DayOfWorkTest() override { qInstallMessageHandler(before); }

    /// Keys go to the main window where nothing has the focus.
    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QWidget* focus = QApplication::focusWidget();
        QTest::keyClick(focus == nullptr ? &window : focus, key, modifiers);
        QApplication::processEvents();
    }
    void Type(const std::string& text)
    {
        QWidget* focus = QApplication::focusWidget();
        QTest::keyClicks(focus == nullptr ? &window : focus, QString::fromStdString(text));
        QApplication::processEvents();
    }

    void Act()
    {
        switch (random.Number(15)) {
        case 0:
            return OpenOrCloseMasks();
        case 1:
        case 2:
        case 3:
            return EnterIntoMask();
        case 4:
            return PressInMask();
        case 5:
            return UseVehicles();
        case 6:
        case 7:
            return UseTable();
        case 8:
            return UseScene();
        case 9:
            return UseDiagram();
        case 10:
            return Press(random.Pick({Qt::Key_Z, Qt::Key_Y}), Qt::ControlModifier);
        case 11:
            return Press(static_cast<Qt::Key>(Qt::Key_A + random.Number(26)), Qt::AltModifier);
        case 12:
            return Press(random.Pick({Qt::Key_Tab, Qt::Key_Backtab, Qt::Key_Return, Qt::Key_Escape, Qt::Key_Down,
                                      Qt::Key_Up, Qt::Key_F1, Qt::Key_PageUp, Qt::Key_5}));
        case 13:
            return ArrangeMasks();
        default:
            return KeepOrReopen();
        }
    }

    /// What an event loop does when it is idle: without one, windows that have been closed would stay.
    static void EndOfAction() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

    void ArrangeMasks()
    {
        desktop::MaskArea& area = window.Masks();
        switch (random.Number(6)) {
        case 0:
            return area.SetTabs(!area.HasTabs());
        case 1:
            return area.TearOffActive();
        case 2:
            return area.Tile();
        case 3:
            return area.Cascade();
        case 4:
            return area.MinimiseActive();
        default:
            return area.RestoreAll();
        }
    }

    void OpenOrCloseMasks()
    {
        const auto masks = MaskTable();
        if (window.Masks().Frames().size() > 4 || random.Number(3) == 0)
            return window.Masks().CloseActive();
        const MaskEntry& mask = masks[static_cast<std::size_t>(random.Number(static_cast<int>(masks.size())))];
        if (mask.create != nullptr)
            window.OpenMask(mask.number);
    }

    desktop::ControlView* AnyView(framework::Kind kind)
    {
        desktop::MaskWindow* mask = window.Masks().Active();
        std::vector<desktop::ControlView*> views;
        if (mask != nullptr)
            for (desktop::ControlView* view : mask->Views())
                if (view->Control()->kind == kind && view->Widget()->isEnabled() && view->Widget()->isVisible())
                    views.push_back(view);
        return views.empty() ? nullptr : views[static_cast<std::size_t>(random.Number(static_cast<int>(views.size())))];
    }

    void EnterIntoMask()
    {
        desktop::ControlView* view = AnyView(framework::Kind::edit);
        if (view == nullptr)
            return OpenOrCloseMasks();
        view->Widget()->setFocus();
        if (QApplication::focusWidget() == view->Widget())
            Type(random.Text());
        Press(random.Pick({Qt::Key_Tab, Qt::Key_Return}));
    }

    void PressInMask()
    {
        const auto kind = random.Pick({framework::Kind::button, framework::Kind::check, framework::Kind::radio});
        if (desktop::ControlView* view = AnyView(kind))
            ClickOn(*view->Widget());
    }

    void UseVehicles()
    {
        desktop::VehicleEditor& editor = *panels.vehicles;
        switch (random.Number(6)) {
        case 0:
            editor.AddVehicle(random.Pick({CKfzDaten::Type::car, CKfzDaten::Type::truck, CKfzDaten::Type::pedestrian}));
            return;
        case 1:
            return editor.RemoveVehicle(random.Number(4) == 0 ? editor.Vehicle() : -1);
        case 2:
            return editor.ChooseVehicle(random.Number(16));
        default:
            const auto fields = krn::VehicleFields();
            desktop::NumberField& field =
                editor.Field(fields[static_cast<std::size_t>(random.Number(static_cast<int>(fields.size())))].value);
            field.setFocus();
            if (!field.hasFocus())
                return;
            Type(random.Text());
            Press(random.Pick({Qt::Key_Tab, Qt::Key_Return, Qt::Key_Escape}));
        }
    }

    void UseTable()
    {
        QTableView& view = panels.phases->View();
        const QAbstractItemModel& model = *view.model();
        if (model.columnCount() == 0 || !view.isVisible())
            return;
        view.setFocus();
        view.setCurrentIndex(
            model.index(random.Number(random.Pick({1, model.rowCount()})), random.Number(model.columnCount())));
        if (random.Number(3) == 0)
            QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, view.visualRect(view.currentIndex()).center());
        else
            QTest::keyClicks(&view, random.Pick<const char*>({"b", "r", "5", "12", "k", "s"}));
        for (int i = 0; i < 2; ++i)
            if (QWidget* popup = QApplication::activePopupWidget())
                QTest::keyClick(popup, random.Pick({Qt::Key_Down, Qt::Key_Return, Qt::Key_Escape}));
            else
                Press(random.Pick({Qt::Key_Return, Qt::Key_Tab, Qt::Key_Escape}));
        if (random.Number(10) == 0)
            random.Number(2) == 0 ? panels.phases->InsertPhase() : panels.phases->RemovePhase();
    }

    void UseScene()
    {
        desktop::SceneCanvas& canvas = panels.scene->Canvas();
        const auto point = [&] {
            return QPoint(random.Number(std::max(canvas.width(), 1)), random.Number(std::max(canvas.height(), 1)));
        };
        if (!canvas.isVisible())
            return;
        switch (random.Number(4)) {
        case 0:
            panels.scene->HangVehicle(0, scene::SceneKind::restPose);
            QTest::mouseClick(&canvas, Qt::LeftButton, {}, point());
            break;
        case 1:
            QTest::mousePress(&canvas, Qt::LeftButton, {}, point());
            QTest::mouseMove(&canvas, point());
            QTest::mouseRelease(&canvas, Qt::LeftButton, {}, point());
            break;
        case 2:
            return Wheel(canvas, point());
        default:
            canvas.setFocus();
            Press(random.Pick({Qt::Key_Plus, Qt::Key_Minus, Qt::Key_Home, Qt::Key_Left, Qt::Key_Escape}));
        }
        QApplication::processEvents();
    }

    void UseDiagram()
    {
        if (panels.diagram->isVisible())
            Wheel(*panels.diagram->viewport(), QPoint(random.Number(300), random.Number(200)));
    }

    void Wheel(QWidget& on, QPoint at)
    {
        QWheelEvent event(at, on.mapToGlobal(QPointF(at)), {}, QPoint(0, random.Number(2) == 0 ? 120 : -120),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&on, &event);
        QApplication::processEvents();
    }

    void KeepOrReopen()
    {
        if (random.Number(3) != 0)
            return;
        ASSERT_TRUE(document.SaveAs(path)) << document.Error().toStdString();
        EXPECT_FALSE(window.isWindowModified());
        if (random.Number(2) == 0)
            Reopen();
    }

    void Reopen()
    {
        window.CloseMasks();
        QApplication::processEvents();
        EndOfAction();
        ASSERT_TRUE(document.SaveAs(path));
        const std::string text = document.CaseText();
        ASSERT_TRUE(document.Open(path)) << document.Error().toStdString();
        EXPECT_EQ(document.CaseText(), text);
    }

    test::TemporaryFolder folder;
    QString path = QString::fromStdString(folder.File("fall.json"));
    test::RandomInput random{20260101};
    desktop::CasePanels panels = desktop::AddCasePanels(window, document);
    desktop::MaskReport& report = *new desktop::MaskReport(window, document, front);
    QTimer closer;
    QtMessageHandler before = nullptr;
};

TEST_F(DayOfWorkTest, NothingCrashesWarnsGrowsOrIsLost)
{
    constexpr int kWarm = 1750; // until then fonts, templates, pages of help and the like have come that are kept
    constexpr int kActions = kWarm + 2000;
    double warm = 0.0;
    for (int i = 0; i < kActions && !HasFailure(); ++i) {
        SCOPED_TRACE(i);
        Act();
        EndOfAction();
        if (i == kWarm) {
            Reopen(); // its history begins anew
            warm = ResidentMemory();
        }
        ASSERT_TRUE(g_warnings.isEmpty()) << i << ": " << g_warnings.join('\n').toStdString();
        ASSERT_EQ(window.isWindowModified(), document.IsModified());
    }
    Reopen();
    const double end = ResidentMemory();
    RecordProperty("megabytes", static_cast<int>(end));
    RecordProperty("megabytesBefore", static_cast<int>(warm));
#ifndef __SANITIZE_ADDRESS__ // which keeps freed blocks aside, and finds what is lost by itself
    EXPECT_LE(end, 1.1 * warm);
#endif
}

} // namespace
