// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Mouse, keys, tables and files of a dialog made by hand, with the widgets that show it.
#include "tests/desktop/DesktopFixture.h"
#include "tests/support/InputDialog.h"
#include "tests/support/TemporaryFolder.h"

#include <QFileDialog>
#include <QLineEdit>
#include <QProgressDialog>
#include <QTableView>
#include <QWheelEvent>

namespace
{

using desktop::MaskWindow;
using test::InputDialog;
using What = CMouseEvent::Kind;

class InputDevicesTest : public test::DesktopTest
{
  protected:
    InputDevicesTest()
    {
        front.WindowAppeared(*thread.Find(dialog.m_hWnd));
        QApplication::processEvents();
    }
    MaskWindow& Shown() { return *front.WindowOf(dialog.m_hWnd); }
    QWidget& Field() { return Widget(Shown(), InputDialog::kField); }
    QTableView& Table() { return dynamic_cast<QTableView&>(Widget(Shown(), InputDialog::kGrid)); }
    void Edit(int row, int column)
    {
        const QModelIndex cell = Table().model()->index(row, column);
        Table().setFocus();
        Table().setCurrentIndex(cell);
        Table().edit(cell);
        QApplication::processEvents();
    }

    InputDialog dialog{thread};
};

TEST_F(InputDevicesTest, TheMouseReachesTheMaskInThePixelsOfTheField)
{
    const QPoint at(Field().width() / 4, Field().height() / 2);
    QTest::mousePress(&Field(), Qt::LeftButton, Qt::ShiftModifier, at);
    QTest::mouseMove(&Field(), QPoint(-7, 3));
    QTest::mouseRelease(&Field(), Qt::LeftButton, Qt::NoModifier, QPoint(-7, 3));
    std::vector<CMouseEvent>& events = dialog.mouse;
    std::erase_if(events, [](const CMouseEvent& e) { return e.kind == What::move && e.button == MouseButton::none; });
    ASSERT_GE(events.size(), 2U);
    EXPECT_EQ(events.front().kind, What::press);
    EXPECT_EQ(events.front().modifiers, MK_SHIFT);
    EXPECT_EQ(events.front().position.x, at.x());
    EXPECT_EQ(events.front().width, Field().width());
    EXPECT_EQ(events.front().height, Field().height());
    EXPECT_EQ(events.back().kind, What::release);
    EXPECT_EQ(events.back().position.x, -7.0);
    EXPECT_EQ(QApplication::focusWidget(), &Field()) << "a tab stop takes the focus with the click";

    events.clear();
    QTest::mouseDClick(&Field(), Qt::LeftButton, {}, at);
    ASSERT_FALSE(events.empty());
    const auto is = [](What kind) { return [kind](const CMouseEvent& e) { return e.kind == kind; }; };
    EXPECT_EQ(std::count_if(events.begin(), events.end(), is(What::doubleClick)), 1);
    events.clear();
    QWheelEvent wheel(at, Field().mapToGlobal(at), {}, {0, -240}, Qt::NoButton, Qt::ControlModifier, Qt::NoScrollPhase,
                      false);
    QApplication::sendEvent(&Field(), &wheel);
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events[0].wheel, -2.0);
    EXPECT_EQ(events[0].modifiers, MK_CONTROL);
    EXPECT_TRUE(wheel.isAccepted());
    dialog.usesMouse = false;
    QApplication::sendEvent(&Field(), &wheel);
    EXPECT_FALSE(wheel.isAccepted()) << "scrolls what lies behind";
}

TEST_F(InputDevicesTest, TheMaskChoosesTheCursor)
{
    static_cast<CStatic*>(dialog.GetDlgItem(InputDialog::kField))->SetCursorShape(CursorShape::cross);
    EXPECT_EQ(Field().cursor().shape(), Qt::CrossCursor);
    EXPECT_TRUE(Field().hasMouseTracking());
}

TEST_F(InputDevicesTest, KeysOfTheFocusedFieldReachTheMask)
{
    Field().setFocus(Qt::TabFocusReason);
    Press(Qt::Key_Left, Qt::ShiftModifier);
    Type("b");
    ASSERT_EQ(dialog.keys.size(), 2U);
    EXPECT_EQ(dialog.keys[0].first, VK_LEFT);
    EXPECT_EQ(KeyModifiers(dialog.keys[0].second), MK_SHIFT);
    EXPECT_EQ(KeyControl(dialog.keys[0].second), InputDialog::kField);
    EXPECT_EQ(dialog.keys[1].first, static_cast<WPARAM>('B'));
    EXPECT_EQ(dialog.characters, U"b");
    QKeyEvent letter(QEvent::ShortcutOverride, Qt::Key_B, Qt::NoModifier, "b");
    letter.ignore();
    QApplication::sendEvent(&Field(), &letter);
    EXPECT_TRUE(letter.isAccepted()) << "no shortcut takes it";
    QKeyEvent save(QEvent::ShortcutOverride, Qt::Key_S, Qt::ControlModifier, "\x13");
    save.ignore();
    QApplication::sendEvent(&Field(), &save);
    EXPECT_FALSE(save.isAccepted());
}

TEST_F(InputDevicesTest, ACellIsEnteredRefusedAndLeft)
{
    Edit(0, 1);
    Type("0,5");
    Press(Qt::Key_Return);
    EXPECT_EQ(dialog.Grid().GetItemText(0, 1), "0,5");
    EXPECT_EQ(dialog.pressed, 0) << "Return ends the entry and nothing more";
    Edit(0, 1);
    Type("kurz");
    Press(Qt::Key_Return);
    EXPECT_EQ(dialog.Grid().GetItemText(0, 1), "0,5");
    EXPECT_NE(Shown().Refusal(), nullptr);
    Edit(0, 1);
    Type("7");
    Press(Qt::Key_Escape);
    EXPECT_EQ(dialog.Grid().GetItemText(0, 1), "0,5");
    EXPECT_NE(dialog.m_hWnd, nullptr) << "the dialog stays";
    EXPECT_EQ(dialog.cells.size(), 2U);

    Edit(1, 2);
    Type("neu");
    ClickOn(Widget(Shown(), InputDialog::kButton));
    EXPECT_EQ(dialog.Grid().GetItemText(1, 2), "neu") << "the click takes what was typed";
    EXPECT_EQ(dialog.pressed, 1);
    EXPECT_EQ(dialog.cells.size(), 3U);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(Table().findChild<QLineEdit*>(), nullptr);
    EXPECT_FALSE(Table().model()->flags(Table().model()->index(0, 0)).testFlag(Qt::ItemIsEditable));
}

TEST_F(InputDevicesTest, RowsAreSelectedFromBothSides)
{
    dialog.Grid().SetSelection(1, 2);
    EXPECT_EQ(Table().selectionModel()->selectedRows().size(), 2);
    EXPECT_TRUE(dialog.selections.empty());
    Table().selectRow(0);
    EXPECT_EQ(dialog.selections, (std::vector<std::pair<int, int>>{{0, 0}}));
    const QModelIndex cell = Table().model()->index(2, 0);
    QTest::mouseClick(Table().viewport(), Qt::LeftButton, Qt::ShiftModifier, Table().visualRect(cell).center());
    EXPECT_EQ(dialog.selections.back(), (std::pair{0, 2}));

    dialog.Grid().SetRows(std::vector<CGridCtrl::Row>(100000, CGridCtrl::Row{"x"}));
    EXPECT_EQ(Table().model()->rowCount(), 100000);
    EXPECT_EQ(dialog.selections.size(), 2U) << "the mask's own changes are not told";
}

TEST_F(InputDevicesTest, TheFileChooserStandsAsTheMaskWants)
{
    const test::TemporaryFolder folder;
    folder.Write("fahrt.fli", "x");
    InModal([](QWidget& shell) {
        auto& chooser = dynamic_cast<QFileDialog&>(shell);
        EXPECT_EQ(chooser.windowTitle(), "Datei öffnen");
        EXPECT_EQ(chooser.acceptMode(), QFileDialog::AcceptOpen);
        EXPECT_EQ(chooser.fileMode(), QFileDialog::ExistingFile);
        EXPECT_EQ(chooser.nameFilters(), (QStringList{"GPX; FIT (*.gpx *.fit)", "Alle (*)"}));
        EXPECT_TRUE(chooser.selectedFiles().front().endsWith("fahrt.fli"));
        QMetaObject::invokeMethod(&chooser, "accept");
    });
    CRuvFileDialog chooser(true, "*.fli", folder.File("fahrt.fli"), OFN_FILEMUSTEXIST,
                           "GPX (*.gpx); FIT (*.fit)|*.gpx;*.fit|Alle|*||", &dialog);
    EXPECT_EQ(chooser.DoModal(), IDOK);
    EXPECT_EQ(chooser.GetPathName(), folder.File("fahrt.fli"));
    InModal([](QWidget& shell) {
        EXPECT_EQ(dynamic_cast<QFileDialog&>(shell).acceptMode(), QFileDialog::AcceptSave);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    });
    EXPECT_EQ(CRuvFileDialog(false, "fli", "", 0, "", &dialog).DoModal(), IDCANCEL);
}

TEST_F(InputDevicesTest, ShortWorkShowsTheWaitCursorAndMasksWait)
{
    EXPECT_EQ(RuvProgress("Suchen", 0.0), Work::goOn);
    ASSERT_NE(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    dialog.PostMessage(WM_KEYDOWN, VK_LEFT);
    QElapsedTimer clock;
    for (clock.start(); clock.elapsed() < 400;)
        RuvProgress("Suchen", 0.5);
    EXPECT_TRUE(dialog.keys.empty()) << "nothing changes under the calculation";
    QApplication::processEvents();
    QApplication::processEvents();
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(dialog.keys.size(), 1U);
}

// Real events of the window: those of a button behind a modal dialog would not arrive.
TEST_F(InputDevicesTest, TheButtonThatBeganLongWorkEndsItAndNothingElseCanBeUsed)
{
    QWidget& button = Widget(Shown(), InputDialog::kButton);
    const auto clickIn = [this](QWidget& widget) {
        QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {},
                          widget.mapTo(&window, QPoint(widget.width() / 2, widget.height() / 2)));
    };
    qint64 ended = 0;
    dialog.work = [&] {
        QElapsedTimer clock;
        for (clock.start(); clock.elapsed() < 10'000 && RuvProgress("Suchen", 0.5) == Work::goOn;) {
        }
        ended = clock.elapsed();
    };
    const auto progress = [this]() -> QProgressDialog* {
        const auto dialogs = window.findChildren<QProgressDialog*>();
        return dialogs.isEmpty() || !dialogs.front()->isVisible() ? nullptr : dialogs.front();
    };
    // What the user does while the progress is seen, the last of which ends the work.
    const auto work = [&](const std::function<void()>& user) {
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
            if (progress() == nullptr)
                return;
            timer.stop();
            QTimer::singleShot(100, &timer, user);
        });
        timer.start(20);
        ended = 0;
        clickIn(button);
        EXPECT_GT(ended, 1000);
        EXPECT_LT(ended, 5000);
        QApplication::processEvents();
        EXPECT_EQ(progress(), nullptr);
    };
    work([&] {
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        EXPECT_FALSE(progress()->frameGeometry().intersects(QRect(button.mapToGlobal(QPoint()), button.size())));
        clickIn(Field());
        QTest::keyClick(&Field(), Qt::Key_B);
        QTest::keyClick(&button, Qt::Key_F1);
        window.close();
        window.windowHandle()->close();
        EXPECT_TRUE(window.isVisible());
        EXPECT_EQ(ended, 0);
        clickIn(button);
    });
    EXPECT_EQ(dialog.pressed, 1);
    EXPECT_TRUE(std::none_of(dialog.mouse.begin(), dialog.mouse.end(),
                             [](const CMouseEvent& e) { return e.kind == What::press; }));
    EXPECT_TRUE(dialog.keys.empty());
    work([&] { QTest::keyClick(&window, Qt::Key_Escape); });
    work([&] { QTest::keyClick(progress(), Qt::Key_Escape); });
    EXPECT_EQ(dialog.pressed, 3);
    clickIn(Field());
    EXPECT_FALSE(dialog.mouse.empty()) << "afterwards everything is as before";
}

} // namespace
