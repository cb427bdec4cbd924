// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What the desk shows and has room for: masks on small screens, what was done, the table and the diagram by hand.
#include "tests/desktop/DesktopFixture.h"

#include "desktop/CasePanels.h"
#include "desktop/DeskOutput.h"
#include "desktop/MaskReport.h"
#include "desktop/case/CaseDetails.h"
#include "desktop/case/PathTimeTable.h"
#include "desktop/case/VehicleEditor.h"
#include "desktop/look/DiagramView.h"
#include "desktop/look/NumberField.h"
#include "desktop/mask/ControlWidgets.h"
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
