// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What the desk shows and has room for: masks on small screens, what was done, the table and the diagram by hand.
#include "tests/desktop/DesktopFixture.h"

#include "base/NumberText.h"
#include "desktop/CasePanels.h"
#include "desktop/DeskOutput.h"
#include "desktop/MaskReport.h"
#include "desktop/case/CaseDetails.h"
#include "desktop/case/PathTimeTable.h"
#include "desktop/case/VehicleEditor.h"
#include "desktop/look/DiagramView.h"
#include "desktop/look/NumberField.h"
#include "desktop/mask/ControlWidgets.h"
#include "desktop/mask/HelpPane.h"
#include "desktop/mask/TornOffMask.h"
#include "desktop/scene/SceneCanvas.h"
#include "desktop/scene/SceneView.h"
#include "frame/MaskTable.h"
#include "framework/UserInput.h"
#include "res/resource.h"
#include "tests/support/TemporaryFolder.h"

#include <QAction>
#include <QDockWidget>
#include <QLabel>
#include <QMenu>
#include <QPrintDialog>
#include <QPrinter>
#include <QScreen>
#include <QScrollBar>
#include <QStatusBar>
#include <QTableView>

namespace
{

class DeskTest : public test::DesktopTest
{
  protected:
    DeskTest() { document.New(); }
    std::string Said() const { return window.statusBar()->currentMessage().toStdString(); }
    /// The first letter opens the editor that takes the others.
    static void TypeEach(const char* text)
    {
        for (; *text != 0; ++text)
            QTest::keyClick(QApplication::focusWidget(), *text);
    }
    const CWegZeitSpalte& Phase(std::size_t column) { return document.Data().WZRechDat(0).spalten[column]; }

    desktop::CasePanels panels = desktop::AddCasePanels(window, document);
    desktop::MaskReport& report = *new desktop::MaskReport(window, document, front);
};

class DeskSizeTest : public DeskTest, public ::testing::WithParamInterface<QSize>
{
};

constexpr int kBars = 110; // menu, tools and status

TEST_P(DeskSizeTest, EveryMaskOpensWholeAndGivesThePanelsTheirRoomBack)
{
    window.resize(GetParam());
    QApplication::processEvents();
    const auto sizes = [&] {
        std::vector<QSize> all;
        for (const QDockWidget* panel : window.CasePanels())
            all.push_back(panel->isHidden() || panel->visibleRegion().isEmpty() ? QSize() : panel->size());
        return all;
    };
    const auto before = sizes();
    for (const MaskEntry& entry : MaskTable()) {
        if (entry.create == nullptr)
            continue;
        desktop::MaskWindow& mask = Open(entry.number);
        const desktop::MaskFrame& shell = *window.Masks().FrameOf(mask);
        EXPECT_TRUE(window.Masks().viewport()->rect().contains(shell.geometry())) << entry.number;
        if (shell.FullSize().height() > window.Masks().height()) {
            // Higher than the screen: it is scrolled, and nothing stands below it.
            EXPECT_GE(window.Masks().height(), GetParam().height() - kBars) << entry.number;
            EXPECT_GE(shell.height(), window.Masks().height() - 1) << entry.number;
        } else {
            EXPECT_TRUE(window.rect().contains(QRect(mask.mapTo(&window, QPoint(0, 0)), mask.size()))) << entry.number;
            EXPECT_EQ(mask.visibleRegion().boundingRect().size(), mask.size()) << entry.number;
        }
        window.CloseMasks();
        QTest::qWait(20);
        EXPECT_EQ(sizes(), before) << entry.number;
    }
    EXPECT_EQ(window.size(), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Screens, DeskSizeTest,
                         ::testing::Values(QSize(1366, 768), QSize(1440, 900), QSize(1920, 1200)));

TEST_F(DeskTest, AMaskLargerThanItsAreaIsScrolledToTheFocus)
{
    window.resize(1000, 680);
    desktop::MaskWindow& mask = Open(487);
    desktop::MaskFrame& shell = *window.Masks().FrameOf(mask);
    shell.resize(300, 200);
    QApplication::processEvents();
    Control(mask, IDC_RECHNEN).enabled = true;
    QWidget& button = Widget(mask, IDC_RECHNEN);
    EXPECT_TRUE(button.visibleRegion().isEmpty());
    button.setFocus(Qt::TabFocusReason);
    QApplication::processEvents();
    EXPECT_EQ(button.visibleRegion().boundingRect().size(), button.size());
}

TEST_F(DeskTest, PhasesAreEnteredByTheKeyboardAlone)
{
    QTableView& view = panels.phases->View();
    view.setFocus();
    view.setCurrentIndex(view.model()->index(0, 0));
    Press(Qt::Key_B);
    QWidget* kinds = QApplication::activePopupWidget();
    ASSERT_NE(kinds, nullptr);
    QTest::keyClick(kinds, Qt::Key_Down);
    QTest::keyClick(kinds, Qt::Key_Return);
    QApplication::processEvents();
    EXPECT_EQ(Phase(3).art, PhasenArt::accelerating) << "the one below braking";
    ASSERT_EQ(QApplication::focusWidget(), &view);
    EXPECT_EQ(view.currentIndex(), view.model()->index(0, 0)) << "the cell stays though there is a column more";
    Press(Qt::Key_Tab);
    EXPECT_EQ(view.currentIndex(), view.model()->index(1, 0));
    TypeEach("50");
    Press(Qt::Key_Return); // goes to the cell's editor
    QApplication::processEvents();
    EXPECT_EQ(Phase(3).vAnf, 50.0);
    EXPECT_EQ(view.currentIndex(), view.model()->index(2, 0));
    // A refused number stays in its cell.
    TypeEach("9999999");
    Press(Qt::Key_Return);
    QApplication::processEvents();
    EXPECT_NE(panels.phases->Refusal(), nullptr);
    EXPECT_EQ(view.currentIndex(), view.model()->index(2, 0));
    QTest::qWait(100);
    EXPECT_NE(panels.phases->Refusal(), nullptr);
}

TEST_F(DeskTest, ADoubleClickOpensTheListAtAnySpeed)
{
    QTableView& view = panels.phases->View();
    const QPoint cell = view.visualRect(view.model()->index(0, 0)).center();
    for (const int pause : {0, 450}) {
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, cell);
        QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, cell);
        QTest::qWait(pause);
        QWidget* kinds = QApplication::activePopupWidget();
        ASSERT_NE(kinds, nullptr) << pause;
        QTest::keyClick(kinds, Qt::Key_Escape);
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
        EXPECT_FALSE(Phase(3).IsUsed());
    }
}

TEST_F(DeskTest, ATransferSaysToWhomAndWhichPhases)
{
    RuvCfg.transferData = true;
    document.Data().KfzDat(0).name = "Krad";
    document.Commit("Name");
    CWegZeitRechDat& phases = document.Data().WZRechDat(0);
    for (const std::size_t column : {4U, 5U}) {
        phases.spalten[column].art = PhasenArt::constantSpeed;
        phases.spalten[column].zeit = 1.0;
    }
    thread.Post(frame.m_hWnd, WM_RUV_MASKTRANSFERRED, 0, 0);
    QApplication::processEvents();
    EXPECT_EQ(Said(), "Übertragen an Krad, Phasen 2–3");
}

TEST_F(DeskTest, WhatWasDoneIsSaid)
{
    desktop::MaskWindow& mask = Open(400);
    for (QAction* action : report.findChildren<QAction*>())
        if (action->text() == "&Werte kopieren")
            action->trigger();
    EXPECT_EQ(Said(), "Werte der Maske 400 in die Zwischenablage kopiert");
    // Passing over a menu or a tool does not wipe it off.
    QStatusTipEvent nothing{QString()};
    QApplication::sendEvent(&window, &nothing);
    EXPECT_EQ(Said(), "Werte der Maske 400 in die Zwischenablage kopiert");
    EXPECT_EQ(window.Masks().FrameOf(mask)->windowTitle(), "400  Berechnung der Beschleunigung");
}

TEST_F(DeskTest, ACaseThatNoFileCanHoldIsMarkedUntilItCan)
{
    const auto* mark = window.findChild<QLabel*>("unprotected");
    ASSERT_NE(mark, nullptr);
    EXPECT_TRUE(mark->isHidden());
    document.Data().KfzDat(0).mass = std::nan("");
    document.Commit("Masse");
    EXPECT_FALSE(mark->isHidden());
    EXPECT_FALSE(mark->toolTip().isEmpty());
    document.Data().KfzDat(0).mass = 1500.0;
    document.Commit("Masse");
    EXPECT_TRUE(mark->isHidden());
}

TEST_F(DeskTest, TheDetailsOfTheCaseAreOneStep)
{
    desktop::CaseDetailsDialog dialog(document, &window);
    const auto fields = dialog.findChildren<QLineEdit*>();
    ASSERT_EQ(fields.size(), 4);
    const char* texts[] = {"12 C 34/26", "3. Mai 2026", "Ulm", " Dr. Ä "};
    for (int i = 0; i < 4; ++i)
        fields[i]->setText(texts[i]);
    dialog.accept();
    EXPECT_EQ(document.Data().Title(), "12 C 34/26");
    EXPECT_EQ(document.Data().Angaben(), (CFallAngaben{"3. Mai 2026", "Ulm", "Dr. Ä"}));
    document.Undo();
    EXPECT_EQ(document.Data().Angaben(), CFallAngaben{});
    EXPECT_FALSE(document.CanUndo());
}

TEST_F(DeskTest, AVehicleChosenInOnePanelIsChosenInAll)
{
    ASSERT_TRUE(document.Open(QStringLiteral(TAVELIN_SOURCE_DIR "/examples/kreuzung.json")));
    panels.vehicles->ChooseVehicle(1);
    EXPECT_EQ(panels.phases->Vehicle(), 1);
    ASSERT_NE(panels.scene->Canvas().Selected(), nullptr);
    EXPECT_EQ(panels.scene->Canvas().Selected()->id.vehicle, 1U);
    panels.phases->ChooseVehicle(0);
    EXPECT_EQ(panels.vehicles->Vehicle(), 0);
    EXPECT_EQ(panels.scene->Canvas().Selected()->id.vehicle, 0U);
    for (const auto& item : panels.scene->Canvas().Scene().items)
        if (scene::BelongsToVehicle(item.id) && item.id.vehicle == 1) {
            panels.scene->Canvas().Select(item.id);
            break;
        }
    EXPECT_EQ(panels.vehicles->Vehicle(), 1);
    EXPECT_EQ(panels.phases->Vehicle(), 1);
}

TEST_F(DeskTest, APedestrianHasNoWheelbase)
{
    panels.vehicles->ChooseVehicle(panels.vehicles->AddVehicle(CKfzDaten::Type::pedestrian));
    EXPECT_TRUE(panels.vehicles->Field(&CKfzDaten::wheelbase).isHidden());
    EXPECT_FALSE(panels.vehicles->Field(&CKfzDaten::height).isHidden());
    panels.vehicles->ChooseVehicle(0);
    EXPECT_FALSE(panels.vehicles->Field(&CKfzDaten::wheelbase).isHidden());
}

TEST_F(DeskTest, ExportOffersTheDiagramTheSceneAndTheMask)
{
    const desktop::DeskOutput output(window, panels, report);
    EXPECT_EQ(output.Sources().size(), 2U);
    Open(487);
    const auto sources = output.Sources();
    ASSERT_EQ(sources.size(), 3U);
    for (const auto& source : sources)
        EXPECT_FALSE(source.draw().Primitives().empty()) << source.name.toStdString();
    QStringList entries;
    emit window.ExportMenu().aboutToShow();
    for (const QAction* action : window.ExportMenu().actions())
        entries << action->text();
    EXPECT_TRUE(entries.contains("Protokoll der Maske 487…")) << entries.join('|').toStdString();
    EXPECT_TRUE(entries.contains("Szene…"));
}

TEST_F(DeskTest, PrintingTakesWhatHasTheFocus)
{
    const desktop::DeskOutput output(window, panels, report);
    const auto printed = [&] {
        QString name;
        InModal([&](QWidget& modal) {
            if (auto* dialog = qobject_cast<QPrintDialog*>(&modal))
                name = dialog->printer()->docName();
            modal.close();
        });
        window.PrintCommand().trigger();
        return name.toStdString();
    };
    panels.phases->View().setFocus();
    EXPECT_EQ(printed(), "Weg-Zeit-Diagramm") << "without a mask";
    Open(400);
    EXPECT_EQ(printed(), "Protokoll 400");
    const auto focus = [&](QWidget& widget) {
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        widget.setFocus();
        ASSERT_TRUE(widget.hasFocus());
    };
    focus(panels.scene->Canvas());
    EXPECT_EQ(printed(), "Szene");
    for (QDockWidget* panel : window.CasePanels())
        if (panel->widget() == panels.diagram)
            panel->raise();
    QApplication::processEvents();
    focus(*panels.diagram);
    EXPECT_EQ(printed(), "Weg-Zeit-Diagramm");

    // In a mask torn off, by its keys.
    desktop::MaskWindow& torn = Open(469);
    window.Masks().TearOff(*window.Masks().FrameOf(torn));
    desktop::TornOffMask* own = window.Masks().FrameOf(torn)->Own();
    focus(panels.scene->Canvas());
    own->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(own));
    QWidget* field = &Widget(torn, IDC_MRBREMS_SPURLAENGE);
    field->setFocus();
    ASSERT_TRUE(QTest::qWaitFor([&] { return QApplication::focusWidget() == field; }));
    QString name;
    const QWidget* asked = nullptr;
    InModal([&](QWidget& modal) {
        if (auto* dialog = qobject_cast<QPrintDialog*>(&modal))
            name = dialog->printer()->docName();
        asked = modal.parentWidget();
        modal.close();
    });
    Press(Qt::Key_P, Qt::ControlModifier);
    EXPECT_EQ(name, "Protokoll 469");
    EXPECT_EQ(asked, own) << "asked beside it, so that the focus comes back to it";
}

TEST_F(DeskTest, ADrawingInAWindowOfItsOwnIsThatOfItsMask)
{
    const desktop::DeskOutput output(window, panels, report);
    desktop::MaskWindow& mask = Open(487);
    mask.Act([&] { framework::Click(Control(mask, IDC_SCHR_GROSSES_DIAGRAMM)); });
    QApplication::processEvents();
    desktop::MaskWindow* drawing = window.Masks().Active();
    ASSERT_NE(drawing, &mask);
    EXPECT_EQ(window.Masks().FrameOf(*drawing)->windowTitle(), "487  Schrankenverfahren - Diagramm");
    ASSERT_EQ(output.Sources().size(), 3U);
    EXPECT_EQ(output.Sources().back().name, "Maske 487, Diagramm");
    const auto asked = [&](const auto& command) {
        QString name;
        InModal([&](QWidget& modal) {
            if (auto* dialog = qobject_cast<QPrintDialog*>(&modal))
                name = dialog->printer()->docName();
            modal.close();
        });
        command();
        return name.toStdString();
    };
    EXPECT_EQ(asked([&] { window.PrintCommand().trigger(); }), "Maske 487, Diagramm");
    EXPECT_EQ(asked([&] { report.AskAndPrint(); }), "Protokoll 487") << "of the mask";
}

TEST_F(DeskTest, TheDiagramReadsTheMotionUnderTheMouse)
{
    CWegZeitRechDat& phases = document.Data().WZRechDat(0);
    CWegZeitSpalte& braking = phases.spalten[CWegZeitDat::kErsteSpalte];
    braking.art = PhasenArt::braking;
    braking.verz = 5.0;
    braking.zeit = 2.0;
    phases.Berechnung();
    document.Commit("Bremsung");
    for (QDockWidget* panel : window.CasePanels())
        if (panel->widget() == panels.diagram)
            panel->raise();
    QApplication::processEvents();
    desktop::DiagramView& diagram = *panels.diagram;
    const QImage before = diagram.viewport()->grab().toImage();
    std::vector<QString> lines;
    for (int x = 0; x < diagram.viewport()->width(); ++x)
        if (const auto reading = diagram.ReadingAt(QPointF(x, diagram.viewport()->height() / 3.0)))
            if (reading->texts.size() == 2 && reading->texts.front().first == "t = -1,00 s")
                lines.push_back(reading->texts.back().first);
    // Braking to a stop with 5 m/s², a second before it: 5 m/s, 2.5 m to go.
    ASSERT_FALSE(lines.empty());
    EXPECT_TRUE(lines.front().endsWith(" m, v = 18,0 km/h, a = -5,00 m/s²")) << lines.front().toStdString();
    const QString path = lines.front().section("s = ", 1).section(' ', 0, 0);
    EXPECT_NEAR(base::ParseNumber(path.toStdString()).value_or(0.0), -2.5, 0.03)
        << "a pixel is some hundredths of a second";
    EXPECT_FALSE(diagram.ReadingAt(QPointF(1.0, 1.0)));
    // Under the mouse it is shown, and gone with the mouse.
    QTest::mouseMove(diagram.viewport(), diagram.viewport()->rect().center());
    EXPECT_NE(diagram.viewport()->grab().toImage(), before);
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&diagram, &leave);
    EXPECT_EQ(diagram.viewport()->grab().toImage(), before);
}

TEST_F(DeskTest, AMaskAsTabOrTornOffWorksAsInAWindow)
{
    window.resize(1366, 768);
    window.Masks().SetTabs(true);
    desktop::MaskWindow& first = Open(400);
    desktop::MaskWindow& second = Open(468);
    QApplication::processEvents();
    const auto& area = window.Masks();
    EXPECT_TRUE(area.FrameOf(second)->isMaximized());
    EXPECT_TRUE(first.visibleRegion().isEmpty()) << "behind its tab";
    EXPECT_EQ(second.visibleRegion().boundingRect().size(), second.size());
    window.Masks().GoTo(*area.FrameOf(first));
    QApplication::processEvents();
    EXPECT_EQ(area.Active(), &first);
    EXPECT_EQ(first.visibleRegion().boundingRect().size(), first.size());
    EXPECT_TRUE(second.visibleRegion().isEmpty());

    window.Masks().TearOffActive();
    desktop::TornOffMask* own = area.FrameOf(first)->Own();
    ASSERT_NE(own, nullptr);
    ASSERT_TRUE(QTest::qWaitForWindowActive(own));
    EXPECT_TRUE(own->isWindow());
    EXPECT_EQ(own->windowTitle(), "400  Berechnung der Beschleunigung");
    EXPECT_EQ(area.Active(), &first);
    EXPECT_EQ(first.visibleRegion().boundingRect().size(), first.size());
    ASSERT_TRUE(QTest::qWaitFor([&] { return first.isAncestorOf(QApplication::focusWidget()); }));
    Type("0,8");
    Press(Qt::Key_Return);
    EXPECT_EQ(Text(first, IDC_BESCHL_VERZOEGERUNG), "7,85");
    const double mass = document.Data().KfzDat(0).mass;
    document.Data().KfzDat(0).mass = mass + 100.0;
    document.Commit("Masse");
    Press(Qt::Key_Z, Qt::ControlModifier); // the keys of the menus work there
    EXPECT_EQ(document.Data().KfzDat(0).mass, mass);
    first.Act([&] { first.Dialog()->object->ShowWindow(SW_MINIMIZE); });
    EXPECT_TRUE(own->isMinimized());
    window.OpenMask(400);
    EXPECT_FALSE(own->isMinimized()) << "its entry restores it";

    window.Masks().TakeBack(*area.FrameOf(first));
    QApplication::processEvents();
    EXPECT_EQ(area.FrameOf(first)->Own(), nullptr);
    EXPECT_EQ(first.window(), &window);
    EXPECT_EQ(first.visibleRegion().boundingRect().size(), first.size());
    window.Masks().SetTabs(false);
    QApplication::processEvents();
    for (const desktop::MaskFrame* shell : area.Frames()) {
        EXPECT_FALSE(shell->isMaximized());
        EXPECT_TRUE(area.viewport()->rect().contains(shell->geometry())) << shell->Mask()->Number();
        EXPECT_LE(shell->width(), shell->FullSize().width());
    }

    // Closed in its own window, and torn off when the program closes all.
    window.Masks().TearOff(*area.FrameOf(first));
    area.FrameOf(first)->Own()->close();
    QApplication::processEvents();
    ASSERT_EQ(area.Frames().size(), 1U);
    EXPECT_EQ(area.Active(), &second);
    window.Masks().TearOff(*area.FrameOf(second));
    window.CloseMasks();
    QApplication::processEvents();
    EXPECT_TRUE(area.Frames().empty());
    EXPECT_EQ(area.Active(), nullptr);
    EXPECT_TRUE(thread.Dialogs().empty());
}

TEST_F(DeskTest, AMaskIsTornOffToWhereItWasLastAndNeverBeyondAnEdge)
{
    const test::TemporaryFolder folder;
    const QString kept = QString::fromStdString(folder.File("desktop.ini"));
    window.UsePreferences({}, kept);
    const auto tearOff = [this](UINT number) -> desktop::TornOffMask& {
        window.Masks().TearOff(*window.Masks().FrameOf(Open(number)));
        return *window.Masks().FrameOf(*window.Masks().Active())->Own();
    };
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    desktop::TornOffMask& own = tearOff(400);
    own.setGeometry(QRect(screen.topLeft() + QPoint(31, 57), own.size() + QSize(20, 10)));
    const QRect place = own.geometry();
    ASSERT_TRUE(screen.contains(place));
    // Kept with the other settings, with the size of the screen, when the program ends.
    window.close();
    ASSERT_TRUE(window.Masks().Frames().empty());
    window.Masks().SetOwnPlaces({});
    window.show();
    window.UsePreferences(desktop::Preferences::Load(kept), kept);
    EXPECT_EQ(tearOff(400).geometry(), place);

    // A screen that is gone.
    QWidget beyond;
    beyond.setGeometry(screen.right() + 3000, screen.bottom() + 2000, 5 * screen.width(), 200);
    window.Masks().SetOwnPlaces({{401, beyond.saveGeometry()}, {469, "no geometry"}});
    EXPECT_TRUE(screen.contains(tearOff(401).frameGeometry()));
    EXPECT_TRUE(screen.contains(tearOff(469).frameGeometry()));

    for (QAction* action : window.findChildren<QAction*>())
        if (action->text() == "Anordnung &zurücksetzen")
            action->trigger();
    EXPECT_TRUE(window.Masks().OwnPlaces().isEmpty());
    const auto layouts = desktop::Preferences::Load(kept).ofScreen;
    ASSERT_EQ(layouts.size(), 1);
    EXPECT_TRUE(layouts.first().tornOff.isEmpty());
}

TEST_P(DeskSizeTest, SideBySideNoMaskCoversAnother)
{
    window.resize(GetParam());
    for (const UINT number : {487U, 450U, 472U, 400U, 471U, 419U})
        Open(number);
    const auto& area = window.Masks();
    for (const bool narrower : {false, true}) {
        window.Masks().Tile();
        if (narrower)
            window.resize(1000, 680); // they follow
        QApplication::processEvents();
        int open = 0;
        for (const desktop::MaskFrame* shell : area.Frames()) {
            if (shell->isMinimized())
                continue;
            ++open;
            EXPECT_TRUE(area.viewport()->rect().contains(shell->geometry())) << shell->Mask()->Number();
            const QSize least = shell->FullSize().boundedTo(QSize(300, 200));
            EXPECT_GE(shell->width(), least.width());
            EXPECT_GE(shell->height(), least.height());
            for (const desktop::MaskFrame* other : area.Frames())
                EXPECT_TRUE(other == shell || other->isMinimized() || !other->geometry().intersects(shell->geometry()))
                    << shell->Mask()->Number() << " and " << other->Mask()->Number();
        }
        EXPECT_GE(open, narrower ? 1 : 2);
        EXPECT_FALSE(area.FrameOf(*area.Active())->isMinimized());
    }
}

TEST_P(DeskSizeTest, ClosingTheHelpGivesTheSpaceBack)
{
    window.resize(GetParam());
    QApplication::processEvents();
    auto* help = window.findChild<QDockWidget*>("help");
    ASSERT_NE(help, nullptr);
    std::vector<QSize> before;
    for (const QDockWidget* panel : window.CasePanels())
        before.push_back(panel->size());
    for (const UINT page : {487U, 400U}) {
        window.ShowHelp(page);
        QTest::qWait(20);
        ASSERT_TRUE(help->isVisible());
        help->close();
        QTest::qWait(20);
        for (std::size_t i = 0; i < before.size(); ++i) {
            const QDockWidget& panel = *window.CasePanels()[i];
            EXPECT_NEAR(panel.width(), before[i].width(), 2) << panel.windowTitle().toStdString();
            EXPECT_NEAR(panel.height(), before[i].height(), 2) << panel.windowTitle().toStdString();
        }
    }
}

TEST_F(DeskTest, EveryHelpPageFitsItsPane)
{
    desktop::HelpPane pane;
    for (const int width : {300, 420}) {
        pane.resize(width, 600);
        pane.show();
        for (const MaskEntry& entry : MaskTable()) {
            if (desktop::HelpPane::PageText(entry.number).isEmpty())
                continue;
            pane.ShowPage(entry.number);
            QApplication::processEvents();
            EXPECT_EQ(pane.horizontalScrollBar()->maximum(), 0) << entry.number << " at " << width;
        }
    }
}

TEST_F(DeskTest, TheProtokollIsWholeOnItsPagesAndItsDiagramOfLines)
{
    ASSERT_TRUE(document.Open(QStringLiteral(TAVELIN_SOURCE_DIR "/examples/fussgaenger.json")));
    desktop::MaskWindow& mask = Open(487);
    mask.Act([&] { framework::Click(Control(mask, IDC_RECHNEN)); });
    const test::TemporaryFolder folder;
    ASSERT_EQ(report.Save(mask, QString::fromStdString(folder.File("p.pdf"))), "");
    EXPECT_EQ(folder.Read("p.pdf").find("/Subtype /Image"), std::string::npos);
}

} // namespace
