// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Every kind of control, on a dialog made by hand, and dialogs that run modally.
#include "tests/desktop/DesktopFixture.h"

#include "desktop/look/Style.h"
#include "desktop/look/Theme.h"
#include "framework/UserInput.h"
#include "host/CDC.h"
#include "host/CDialog.h"
#include "masks/dynamics/CBeschlDlg.h"
#include "res/manoeuvre.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QSlider>

namespace
{

using desktop::MaskWindow;
using framework::Kind;
using framework::Window;

/// Writes down what its controls report.
class Listener : public CDialog
{
  public:
    Listener() : CDialog(9999, nullptr) {}
    std::vector<std::pair<UINT, UINT>> commands; // control, notification code
    std::vector<std::pair<LPARAM, WPARAM>> scrolls;
    std::vector<UINT_PTR> timers;

    BOOL OnCommand(WPARAM wParam, LPARAM) override
    {
        commands.emplace_back(LOWORD(wParam), HIWORD(wParam));
        return TRUE;
    }

  protected:
    LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == WM_HSCROLL)
            scrolls.emplace_back(lParam, wParam);
        if (message == WM_TIMER) {
            timers.push_back(wParam);
            KillTimer(wParam);
        }
        return 0;
    }
};

class ControlsTest : public test::DesktopTest
{
  protected:
    ControlsTest()
    {
        dialog.text = "Steuerelemente";
        dialog.rect = {0, 0, 200, 150};
        Make(Kind::label, 1, {5, 5, 60, 13}, "&Wert:");
        Make(Kind::edit, 2, {70, 5, 120, 17}, "").tabStop = true;
        for (UINT id = 11; id <= 13; ++id) {
            const int top = 10 + static_cast<int>(id - 10) * 12;
            Window& radio = Make(Kind::radio, id, {5, top, 60, top + 10}, "Wahl &" + std::to_string(id - 10));
            radio.automatic = true;
            radio.groupStart = id == 11;
        }
        Window& check = Make(Kind::check, 20, {70, 22, 130, 32}, "&Haken");
        check.automatic = check.tabStop = check.groupStart = true;
        Window& limit = Make(Kind::edit, 21, {140, 22, 180, 34}, "3");
        limit.enabled = false;
        Make(Kind::check, 22, {70, 36, 130, 46}, "von Hand").tabStop = true; // switches only when told
        Window& combo = Make(Kind::combo, 30, {70, 50, 130, 110}, "");
        combo.items = {"eins", "zwei", "drei"};
        combo.tabStop = true;
        Window& list = Make(Kind::list, 40, {5, 60, 60, 100}, "");
        list.items = {"a", "b"};
        list.tabStop = true;
        Window& slider = Make(Kind::trackbar, 50, {70, 70, 130, 82}, "");
        slider.trackMaximum = 10;
        slider.tabStop = true;
        Make(Kind::button, 60, {140, 70, 190, 84}, "&Los").tabStop = true;
        Window& field = Make(Kind::field, 70, {5, 105, 195, 145}, "");
        field.painter = [this](CDC& dc, const CRect& area) {
            painted = area;
            dc.SelectBrush({true, RGB(45, 175, 20)});
            dc.SelectPen({PenStyle::none, 1.0, 0});
            dc.Rectangle(0, 0, area.right / 2.0, area.bottom);
        };
        front.WindowAppeared(dialog);
        QApplication::processEvents();
    }
    ~ControlsTest() override { thread.Destroy(dialog.handle); }

    Window& Make(Kind kind, UINT id, CRect rect, const std::string& text)
    {
        Window& control = thread.CreateControl(dialog, kind, id);
        control.rect = rect;
        control.text = text;
        return control;
    }
    MaskWindow& Shown() { return *front.WindowOf(dialog.handle); }
    template <class T> T& As(UINT id) { return dynamic_cast<T&>(Widget(Shown(), id)); }

    Listener listener;
    Window& dialog = thread.CreateTopWindow(listener, Kind::dialog, 9999, nullptr);
    CRect painted{};
};

using Commands = std::vector<std::pair<UINT, UINT>>;

TEST_F(ControlsTest, ArrowsMoveThroughRadioButtonsAndTabVisitsOne)
{
    Press(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), &Widget(Shown(), 11));
    Press(Qt::Key_Down);
    EXPECT_TRUE(As<QAbstractButton>(12).isChecked());
    EXPECT_EQ(QApplication::focusWidget(), &Widget(Shown(), 12));
    Press(Qt::Key_Right);
    Press(Qt::Key_Right); // from the last to the first
    EXPECT_EQ(Control(Shown(), 11).check, 1);
    EXPECT_EQ(Control(Shown(), 13).check, 0);
    EXPECT_FALSE(As<QAbstractButton>(13).isChecked());
    Press(Qt::Key_Up);
    EXPECT_EQ(Control(Shown(), 13).check, 1);
    EXPECT_EQ(listener.commands, (Commands{{12, 0}, {13, 0}, {11, 0}, {13, 0}}));
    Press(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), &Widget(Shown(), 20));
    Press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(QApplication::focusWidget(), &Widget(Shown(), 13)) << "the chosen one stands for its group";
}

TEST_F(ControlsTest, AMarkFollowsTheDialogNotTheClick)
{
    ClickOn(Widget(Shown(), 20));
    EXPECT_EQ(Control(Shown(), 20).check, 1);
    Press(Qt::Key_Space);
    EXPECT_EQ(Control(Shown(), 20).check, 0);
    ClickOn(Widget(Shown(), 22));
    EXPECT_FALSE(As<QAbstractButton>(22).isChecked()) << "it does not switch itself";
    static_cast<CButton*>(listener.GetDlgItem(22))->SetCheck(1);
    EXPECT_TRUE(As<QAbstractButton>(22).isChecked());
    EXPECT_EQ(listener.commands, (Commands{{20, 0}, {20, 0}, {22, 0}}));
}

TEST_F(ControlsTest, ListsCombosAndSlidersReportWhatTheUserChoseOnly)
{
    static_cast<CComboBox*>(listener.GetDlgItem(30))->SetCurSel(2);
    static_cast<CSliderCtrl*>(listener.GetDlgItem(50))->SetPos(4);
    EXPECT_EQ(As<QComboBox>(30).currentText(), "drei");
    EXPECT_EQ(As<QSlider>(50).value(), 4);
    EXPECT_TRUE(listener.commands.empty());
    EXPECT_TRUE(listener.scrolls.empty());

    Widget(Shown(), 30).setFocus();
    Press(Qt::Key_Up);
    EXPECT_EQ(Control(Shown(), 30).selection, 1);
    Widget(Shown(), 40).setFocus();
    Press(Qt::Key_Down);
    Press(Qt::Key_Down);
    EXPECT_EQ(Control(Shown(), 40).selection, 1);
    Widget(Shown(), 50).setFocus();
    Press(Qt::Key_Right);
    EXPECT_EQ(Control(Shown(), 50).trackPosition, 5);
    EXPECT_EQ(listener.scrolls, (std::vector<std::pair<LPARAM, WPARAM>>{{50, 5}}));
    ASSERT_FALSE(listener.commands.empty());
    EXPECT_EQ(listener.commands.front(), (std::pair<UINT, UINT>{30, CBN_SELCHANGE}));
    EXPECT_EQ(listener.commands.back(), (std::pair<UINT, UINT>{40, LBN_SELCHANGE}));

    auto* list = static_cast<CListBox*>(listener.GetDlgItem(40));
    list->ResetContent();
    list->AddString("neu");
    EXPECT_EQ(As<QListWidget>(40).count(), 1);
    EXPECT_EQ(As<QListWidget>(40).item(0)->text(), "neu");
}

TEST_F(ControlsTest, AltWithALetterPressesOrGoesToTheField)
{
    Widget(Shown(), 50).setFocus();
    Press(Qt::Key_W, Qt::AltModifier);
    EXPECT_EQ(QApplication::focusWidget(), &Widget(Shown(), 2)) << "the label speaks for its field";
    Press(Qt::Key_L, Qt::AltModifier);
    Press(Qt::Key_2, Qt::AltModifier);
    EXPECT_EQ(listener.commands, (Commands{{60, 0}, {12, 0}}));
    listener.GetDlgItem(60)->EnableWindow(FALSE);
    EXPECT_FALSE(Widget(Shown(), 60).isEnabled());
    Press(Qt::Key_L, Qt::AltModifier);
    EXPECT_EQ(listener.commands.size(), 2U);
}

TEST_F(ControlsTest, AFieldThatItsCheckBoxSwitchesOffLooksDisabled)
{
    const auto look = [&](UINT id) { return Widget(Shown(), id).property(desktop::kLookProperty).toInt(); };
    EXPECT_EQ(look(21), static_cast<int>(desktop::FieldLook::disabled));
    EXPECT_FALSE(Widget(Shown(), 21).isEnabled());
    listener.GetDlgItem(21)->EnableWindow(TRUE);
    EXPECT_EQ(look(21), static_cast<int>(desktop::FieldLook::input));
    listener.GetDlgItem(2)->EnableWindow(FALSE); // was an input once
    EXPECT_EQ(look(2), static_cast<int>(desktop::FieldLook::disabled));
    static_cast<CEdit*>(listener.GetDlgItem(21))->SetReadOnly(TRUE);
    EXPECT_EQ(look(21), static_cast<int>(desktop::FieldLook::result));
    listener.GetDlgItem(1)->ShowWindow(SW_HIDE);
    EXPECT_FALSE(Widget(Shown(), 1).isVisible());
}

TEST_F(ControlsTest, ADrawingFieldShowsWhatTheMaskDraws)
{
    QWidget& field = Widget(Shown(), 70);
    const QImage shown = field.grab().toImage();
    EXPECT_EQ(painted.right, field.width());
    EXPECT_EQ(shown.pixelColor(shown.width() / 4, shown.height() / 2), QColor(45, 175, 20));
    EXPECT_NE(shown.pixelColor(shown.width() * 3 / 4, shown.height() / 2), QColor(45, 175, 20));
}

TEST_F(ControlsTest, TimersAndPostedMessagesComeThroughTheEventLoop)
{
    listener.SetTimer(7, 20);
    QTest::qWait(120);
    EXPECT_EQ(listener.timers, std::vector<UINT_PTR>{7}) << "stopped by its own handler";
    listener.PostMessage(WM_COMMAND, MAKEWPARAM(60, 0));
    EXPECT_TRUE(listener.commands.empty());
    QApplication::processEvents();
    EXPECT_EQ(listener.commands, (Commands{{60, 0}}));
}

class ModalTest : public test::DesktopTest
{
};

TEST_F(ModalTest, AMaskRunsModallyAndHandsItsResultBack)
{
    InModal([](QWidget& shell) {
        EXPECT_EQ(shell.windowTitle(), "Berechnung der Beschleunigung");
        QTest::keyClicks(QApplication::focusWidget(), "0,6");
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_O, Qt::AltModifier);
    });
    CBeschlDlg dialog(document.Data(), &frame);
    EXPECT_EQ(dialog.DoModal(), IDOK);
    EXPECT_NEAR(dialog.Ergebnis(), 0.6 * 9.81, 1e-12);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);

    InModal([](QWidget& shell) { shell.close(); });
    EXPECT_EQ(CBeschlDlg(document.Data(), &frame).DoModal(), IDCANCEL);
    InModal([](QWidget&) { QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape); });
    EXPECT_EQ(CBeschlDlg(document.Data(), &frame).DoModal(), IDCANCEL);
    EXPECT_TRUE(thread.Dialogs().empty());
}

TEST_F(ModalTest, LongWorkShowsItselfAndCanBeStopped)
{
    bool busySeen = false;
    QObject::connect(&front, &desktop::QtFrontEnd::busy, [&] { busySeen = true; });
    QElapsedTimer clock;
    clock.start();
    bool dialogBefore = false;
    bool stopped = false;
    while (clock.elapsed() < 5000 && !stopped) {
        QWidget* modal = QApplication::activeModalWidget();
        dialogBefore = dialogBefore || (modal != nullptr && clock.elapsed() < 900);
        if (clock.elapsed() < 150) {
            EXPECT_FALSE(busySeen);
        }
        if (modal != nullptr && clock.elapsed() > 1200)
            if (auto* cancel = modal->findChild<QAbstractButton*>()) {
                EXPECT_EQ(cancel->text(), "Abbrechen");
                cancel->click();
            }
        stopped = !front.Progress("Bilder lesen", static_cast<double>(clock.elapsed()) / 5000.0);
    }
    EXPECT_TRUE(stopped);
    EXPECT_TRUE(busySeen);
    EXPECT_FALSE(dialogBefore);
    EXPECT_GE(clock.elapsed(), 1000);
    EXPECT_LT(clock.elapsed(), 3000);
    QApplication::processEvents();
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << "gone when the work has ended";
}

class VehicleColorTest : public test::DesktopTest
{
  protected:
    static QColor Tint(const MaskWindow& mask, UINT id)
    {
        return Widget(mask, id).property(desktop::kTintProperty).value<QColor>();
    }
    QColor ColorOf(std::size_t vehicle) { return desktop::FromColorRef(document.Data().KfzDat(vehicle).color); }
};

TEST_F(VehicleColorTest, AFieldTakesTheColourOfTheVehicleItBelongsTo)
{
    document.Data().KfzDat(2) = TypicalCar("Pkw 3", RGB(0, 130, 70));
    MaskWindow& sight = Open(472);
    EXPECT_EQ(Tint(sight, IDC_HALBESICHT_A_VERZOEGERUNG), ColorOf(0));
    EXPECT_EQ(Tint(sight, IDC_HALBESICHT_A_ANHALTEWEG), ColorOf(0));
    EXPECT_EQ(Tint(sight, IDC_HALBESICHT_B_VERZOEGERUNG), ColorOf(1));
    EXPECT_EQ(Tint(sight, IDC_HALBESICHT_B_GRENZGESCHW), ColorOf(1));
    for (const UINT both :
         std::initializer_list<UINT>{IDC_HALBESICHT_SICHTWEITE, IDC_HALBESICHT_GESAMTZEIT, IDC_HALBESICHT_SUMME})
        EXPECT_FALSE(Tint(sight, both).isValid()) << both;
    // Chosen anew, or without a vehicle.
    sight.Act([&] { framework::Select(Control(sight, IDC_HALBESICHT_B_FAHRZEUG), 1); });
    ASSERT_NE(Control(sight, IDC_HALBESICHT_B_FAHRZEUG).text, "Pkw 2");
    EXPECT_EQ(Tint(sight, IDC_HALBESICHT_A_VERZOEGERUNG), ColorOf(0));
    EXPECT_EQ(Tint(sight, IDC_HALBESICHT_B_VERZOEGERUNG), ColorOf(2));
    document.Data().KfzDat(2).color = RGB(1, 2, 3);
    document.Data().NotifyGeo(2);
    EXPECT_EQ(Tint(sight, IDC_HALBESICHT_B_VERZOEGERUNG), QColor(1, 2, 3));
    document.Data().KfzDat(2) = {};
    document.Data().NotifyGeo(2);
    EXPECT_FALSE(Tint(sight, IDC_HALBESICHT_B_VERZOEGERUNG).isValid());
    EXPECT_EQ(Tint(sight, IDC_HALBESICHT_A_VERZOEGERUNG), ColorOf(0));

    const MaskWindow& avoidable = Open(462);
    EXPECT_EQ(Tint(avoidable, IDC_VERM_VT), ColorOf(0));
    EXPECT_EQ(Tint(avoidable, IDC_VERM_VHOECHST), ColorOf(0));
    EXPECT_EQ(Tint(avoidable, IDC_VERM_VG), ColorOf(1));
    EXPECT_EQ(Tint(avoidable, IDC_VERM_SFR), ColorOf(1));
}

} // namespace
