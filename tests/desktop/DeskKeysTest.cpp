// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Keys, marks and refusals where masks, panels and menus of the whole window meet.
#include "tests/desktop/DesktopFixture.h"

#include "desktop/CasePanels.h"
#include "desktop/SettingsDialog.h"
#include "desktop/case/PathTimeTable.h"
#include "desktop/case/VehicleEditor.h"
#include "desktop/look/NumberField.h"
#include "desktop/scene/SceneView.h"
#include "res/resource.h"

#include <QAbstractButton>
#include <QDockWidget>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>

#include <map>
#include <utility>

namespace
{

using desktop::NumberField;

class DeskKeysTest : public test::DesktopTest
{
  protected:
    DeskKeysTest() { document.New(); }
    NumberField& Length() { return panels.vehicles->Field(&CKfzDaten::length); }
    static void Select(QLineEdit& field)
    {
        field.setFocus();
        field.selectAll();
    }
    desktop::CasePanels panels = desktop::AddCasePanels(window, document);
};

TEST_F(DeskKeysTest, TheUnsavedMarkStaysWhenMasksComeAndGo)
{
    document.Data().KfzDat(0).mass = 1234.0;
    document.Commit("Masse");
    ASSERT_TRUE(window.isWindowModified());
    Open(400);
    EXPECT_TRUE(window.isWindowModified());
    Open(468);
    window.CloseMasks();
    QApplication::processEvents();
    EXPECT_TRUE(window.isWindowModified());
    document.Undo();
    EXPECT_FALSE(window.isWindowModified());
}

TEST_F(DeskKeysTest, UndoAndRedoReachTheCaseFromAFieldWhoseEntryIsFinished)
{
    Select(Length());
    Type("4,25");
    Press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(document.Data().KfzDat(0).length, 4.5);
    Select(Length());
    Type("4,25");
    Press(Qt::Key_Return);
    ASSERT_EQ(document.Data().KfzDat(0).length, 4.25);
    ASSERT_EQ(QApplication::focusWidget(), &Length());
    Press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(document.Data().KfzDat(0).length, 4.5);
    EXPECT_EQ(Length().text(), "4,500");
    Press(Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(document.Data().KfzDat(0).length, 4.25);
    // The same of a name.
    Select(panels.vehicles->NameField());
    Type("Wagen");
    Press(Qt::Key_Return);
    Press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(document.Data().KfzDat(0).name, "Pkw 1");
}

TEST_F(DeskKeysTest, ARefusalStaysWithItsFieldAndGoesWithTheFocus)
{
    Select(Length());
    Type("99");
    Press(Qt::Key_Tab);
    EXPECT_TRUE(QTest::qWaitFor([&] { return Length().Refusal() != nullptr && Length().hasFocus(); }));
    EXPECT_EQ(Length().text(), "4,500");
    const QWidget* bubble = Length().Refusal();
    const QRect place(bubble->mapTo(&window, QPoint(0, 0)), bubble->size());
    EXPECT_TRUE(window.rect().contains(place));
    const NumberField& next = panels.vehicles->Field(&CKfzDaten::width);
    EXPECT_FALSE(place.intersects(QRect(next.mapTo(&window, QPoint(0, 0)), next.size()))) << "the next field is hidden";
    QTest::qWait(100);
    EXPECT_NE(Length().Refusal(), nullptr) << "there is time to read it";
    Press(Qt::Key_Tab);
    EXPECT_TRUE(QTest::qWaitFor([&] { return Length().Refusal() == nullptr; }));

    const auto refuse = [&] {
        Select(Length());
        Type("99");
        Press(Qt::Key_Return);
        ASSERT_NE(Length().Refusal(), nullptr);
    };
    refuse();
    panels.vehicles->ChooseVehicle(1);
    EXPECT_EQ(Length().Refusal(), nullptr);
    refuse();
    document.New();
    EXPECT_EQ(Length().Refusal(), nullptr);
    refuse();
    document.Data().KfzDat(1).length = 4.1;
    panels.vehicles->ChooseVehicle(1);
    document.Commit("Länge");
    EXPECT_EQ(Length().Refusal(), nullptr);
}

TEST_F(DeskKeysTest, ARefusalThatCannotBeShownAtItsFieldIsShownBelow)
{
    Select(Length());
    Type("99");
    // As a click on another vehicle does: first the focus goes, then the choice changes.
    window.Masks().setFocusPolicy(Qt::StrongFocus);
    window.Masks().setFocus();
    panels.vehicles->ChooseVehicle(1);
    EXPECT_TRUE(window.statusBar()->currentMessage().startsWith("Nicht übernommen: Länge"))
        << window.statusBar()->currentMessage().toStdString();
    QApplication::processEvents();
    EXPECT_EQ(Length().Refusal(), nullptr);
}

TEST_F(DeskKeysTest, AltWithALetterThatIsNobodysTypesNothing)
{
    desktop::MaskWindow& mask = Open(469);
    ASSERT_FALSE(Control(mask, IDC_MASKE_OK).enabled);
    auto* edit = mask.findChild<QLineEdit*>();
    ASSERT_NE(edit, nullptr);
    edit->setFocus();
    const QString before = edit->text();
    Press(Qt::Key_O, Qt::AltModifier);
    EXPECT_EQ(edit->text(), before);
    Select(Length());
    Press(Qt::Key_O, Qt::AltModifier);
    EXPECT_EQ(Length().text(), "4,500");
}

/// Counts how often widgets are painted.
class PaintCounter : public QObject
{
  public:
    std::map<const QObject*, int> paints;

  protected:
    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            ++paints[object];
        return false;
    }
};

TEST_F(DeskKeysTest, TheButtonsOfThePagesArePaintedAsTheyStand)
{
    const desktop::MaskWindow& mask = Open(487);
    PaintCounter counter;
    std::map<QAbstractButton*, bool> down;
    for (desktop::ControlView* view : mask.Views())
        if (auto* button = dynamic_cast<QAbstractButton*>(view->Widget());
            button != nullptr && view->Control()->kind == framework::Kind::button) {
            button->installEventFilter(&counter);
            down[button] = button->isChecked();
        }
    for (const auto key : {Qt::Key_2, Qt::Key_3, Qt::Key_1}) {
        counter.paints.clear();
        Press(key, Qt::AltModifier);
        int pressed = 0;
        int changed = 0;
        for (auto& [button, was] : down) {
            pressed += button->isChecked() ? 1 : 0;
            if (std::exchange(was, button->isChecked()) == button->isChecked())
                continue;
            ++changed;
            EXPECT_GT(counter.paints[button], 0) << button->text().toStdString();
        }
        EXPECT_EQ(pressed, 1);
        EXPECT_EQ(changed, 2);
    }
}

/// The letter behind the mark, upper case; empty for none.
QString LetterOf(const QString& text)
{
    const QKeySequence keys = QKeySequence::mnemonic(text);
    return keys.isEmpty() ? QString() : keys.toString().right(1).toUpper();
}

void ExpectEachOnce(const QStringList& texts, const char* where)
{
    std::map<QString, QString> owners;
    for (const QString& text : texts) {
        const QString letter = LetterOf(text);
        if (letter.isEmpty())
            continue;
        const auto [owner, isNew] = owners.emplace(letter, text);
        EXPECT_TRUE(isNew) << where << ": " << letter.toStdString() << " is of both " << owner->second.toStdString()
                           << " and " << text.toStdString();
    }
    EXPECT_FALSE(owners.empty()) << where;
}

QStringList MarkedTexts(const QWidget& parent)
{
    QStringList texts;
    for (const QLabel* label : parent.findChildren<QLabel*>())
        if (label->buddy() != nullptr)
            texts << label->text();
    for (const QAbstractButton* button : parent.findChildren<QAbstractButton*>())
        texts << button->text();
    return texts;
}

TEST_F(DeskKeysTest, EachAltKeyOfTheWindowHasOneOwner)
{
    QStringList desk;
    for (const QAction* menu : window.menuBar()->actions()) {
        desk << menu->text();
        QStringList entries;
        emit menu->menu()->aboutToShow();
        for (const QAction* entry : menu->menu()->actions())
            entries << entry->text();
        ExpectEachOnce(entries, qPrintable(menu->text()));
    }
    for (QDockWidget* panel : window.CasePanels()) {
        ASSERT_NE(panel->widget(), nullptr);
        desk << MarkedTexts(*panel->widget());
    }
    ExpectEachOnce(desk, "menus and panels");
    const desktop::SettingsDialog settings(desktop::Preferences{}, true, &window);
    ExpectEachOnce(MarkedTexts(settings), "settings");
}

} // namespace
