// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The workstation as a whole: examples, diagrams of masks, switches that masks share with the menus, pictures.
#include "tests/desktop/DesktopFixture.h"

#include "desktop/CasePanels.h"
#include "desktop/CommandLine.h"
#include "desktop/SettingsDialog.h"
#include "desktop/case/CaseFileDialogs.h"
#include "desktop/scene/SceneCanvas.h"
#include "desktop/scene/SceneView.h"
#include "framework/UserInput.h"
#include "pathtime/PathTimeDiagram.h"
#include "res/resource.h"
#include "tests/support/TemporaryFolder.h"

#include <QAction>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QImage>
#include <QMenu>
#include <QMimeData>
#include <QProcess>
#include <QPushButton>

#include <cmath>
#include <filesystem>
#include <memory>

namespace
{

class WorkstationTest : public test::DesktopTest
{
  protected:
    WorkstationTest() { document.New(); } // nothing to be asked about
    desktop::MaskWindow& OpenBarriers()
    {
        EXPECT_TRUE(desktop::OpenExample(document, &window, "fussgaenger"));
        desktop::MaskWindow& mask = Open(487);
        Press(mask, IDC_RECHNEN);
        return mask;
    }
    using DesktopTest::Press;
    static void Press(desktop::MaskWindow& mask, UINT button)
    {
        mask.Act([&] { framework::Click(Control(mask, button)); });
        QApplication::processEvents();
    }
    static QAction* Entry(const QWidget& owner, const QString& text)
    {
        for (const QMenu* menu : owner.findChildren<QMenu*>())
            for (QAction* action : menu->actions())
                if (QString(action->text()).remove('&') == text)
                    return action;
        return nullptr;
    }
};

TEST_F(WorkstationTest, ExamplesOpenAsNewCases)
{
    EXPECT_EQ(desktop::ExampleNames(), (QStringList{"fussgaenger", "kreuzung"}));
    for (const QString& name : desktop::ExampleNames()) {
        ASSERT_TRUE(desktop::OpenExample(document, &window, name)) << name.toStdString();
        EXPECT_TRUE(document.Path().isEmpty()) << "saving must ask for a file";
        EXPECT_FALSE(document.IsModified());
        EXPECT_FALSE(document.Data().Title().empty());
    }
    InModal([](QWidget& box) { QTest::keyClick(&box, Qt::Key_Escape); });
    EXPECT_FALSE(desktop::OpenExample(document, &window, "../main"));
}

TEST_F(WorkstationTest, ADiagramOfAMaskIsCopied)
{
    desktop::MaskWindow& mask = OpenBarriers();
    QWidget& field = Widget(mask, IDC_SCHR_ZEICHENFELD);
    QContextMenuEvent wanted(QContextMenuEvent::Mouse, QPoint(5, 5), field.mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(&field, &wanted);
    QAction* copy = Entry(field, "Kopieren");
    ASSERT_NE(copy, nullptr);
    EXPECT_NE(Entry(field, "Drucken…"), nullptr);
    QApplication::clipboard()->clear();
    copy->trigger();
    const QMimeData* copied = QApplication::clipboard()->mimeData();
    EXPECT_GT(qvariant_cast<QImage>(copied->imageData()).width(), 600);
    EXPECT_TRUE(copied->data("image/svg+xml").contains("Geschwindigkeit in km/h"));
    window.CloseMasks(); // with its menu open
    QApplication::processEvents();
}

TEST_F(WorkstationTest, ALargeDiagramFitsAndCanBeResized)
{
    desktop::MaskWindow& mask = OpenBarriers();
    window.resize(1100, 700);
    QApplication::processEvents();
    Press(mask, IDC_SCHR_GROSSES_DIAGRAMM);
    desktop::MaskWindow* diagram = window.Masks().Active();
    ASSERT_NE(diagram, &mask);
    ASSERT_TRUE(diagram->IsDrawing());
    EXPECT_FALSE(mask.IsDrawing());
    QWidget* shell = window.Masks().FrameOf(*diagram);
    EXPECT_TRUE(window.Masks().viewport()->rect().contains(shell->geometry()));
    QWidget& field = *diagram->Views().front()->Widget();
    const QSize before = field.size();
    shell->resize(shell->size() - QSize(100, 60));
    QApplication::processEvents();
    EXPECT_EQ(field.size(), before - QSize(100, 60));
}

TEST_F(WorkstationTest, TheTransferSwitchOfAMaskIsThatOfTheMenu)
{
    desktop::MaskWindow& mask = Open(469);
    QAction* transfer = Entry(window, "Daten übertragen");
    ASSERT_NE(transfer, nullptr);
    EXPECT_FALSE(transfer->isChecked());
    Press(mask, IDC_UEBERTRAGEN);
    EXPECT_TRUE(RuvCfg.transferData);
    EXPECT_TRUE(transfer->isChecked());
}

/// What a manoeuvre writes into the case when the transfer is switched on is seen beside it, and is one step back.
class TransferTest : public test::DesktopTest
{
  protected:
    TransferTest()
    {
        document.Commit("Anfang");
        RuvCfg.transferData = true;
    }
    desktop::MaskWindow& Calculate(UINT number, std::initializer_list<std::pair<UINT, const char*>> entries)
    {
        desktop::MaskWindow& mask = Open(number);
        for (const auto& entry : entries)
            mask.Act([&] { framework::EnterText(Control(mask, entry.first), entry.second); });
        mask.Act([&] { framework::Click(Control(mask, IDC_RECHNEN)); });
        QApplication::processEvents();
        return mask;
    }
    bool HasPhases(std::size_t vehicle)
    {
        return document.Data().WZRechDat(vehicle).spalten[CWegZeitDat::kErsteSpalte].IsUsed();
    }
    std::vector<pathtime::DiagramVehicle> Diagram() { return pathtime::DiagramVehicles(document.Data()); }
    std::vector<std::vector<CDPoint>> Ways()
    {
        std::vector<std::vector<CDPoint>> ways;
        for (const scene::SceneTrack& track : panels.scene->Canvas().Scene().tracks)
            ways.insert(ways.end(), track.trajectories.begin(), track.trajectories.end());
        return ways;
    }

    desktop::CasePanels panels = desktop::AddCasePanels(window, document);
};

TEST_F(TransferTest, ATurnIsAWayInTheSceneAndACurveInTheDiagram)
{
    ASSERT_TRUE(Ways().empty());
    ASSERT_TRUE(Diagram().empty());
    // A quarter of a circle: the inner rear wheel on 5 m, the centre on 5.925 m, driven at 5 m/s in 1.861 s.
    desktop::MaskWindow& mask =
        Calculate(450, {{IDC_ABVOR_ENDRADIUS, "5"}, {IDC_ABVOR_GIERZIEL, "90"}, {IDC_ABVOR_ANFANGSGESCHW, "18"}});
    ASSERT_EQ(Ways().size(), 1U);
    const CDPoint chord = Ways()[0].back() - Ways()[0].front();
    EXPECT_NEAR(std::hypot(chord.x, chord.y), 592.5 * std::sqrt(2.0), 1.0) << "cm";
    const auto diagram = Diagram();
    ASSERT_EQ(diagram.size(), 1U);
    const auto& curve = diagram[0].curve;
    EXPECT_NEAR(curve.StartTime(), -1.861, 0.001);
    EXPECT_NE(Text(mask, IDC_ABVOR_FALL), "");
    EXPECT_TRUE(document.UndoLabel().contains("450")) << document.UndoLabel().toStdString();

    document.Undo();
    QApplication::processEvents();
    EXPECT_EQ(document.UndoLabel(), "Anfang") << "the open mask wrote again";
    EXPECT_FALSE(HasPhases(0));
    EXPECT_TRUE(Ways().empty());
    EXPECT_TRUE(Diagram().empty());
    EXPECT_EQ(Text(mask, IDC_ABVOR_FALL), "") << "the case no longer has it";
    document.Redo();
    QApplication::processEvents();
    EXPECT_TRUE(HasPhases(0));
    EXPECT_EQ(Ways().size(), 1U);
}

TEST_F(TransferTest, LaneChangeAndHalfSightAreTakenBackInOneStep)
{
    desktop::MaskWindow& lane = Calculate(
        458, {{IDC_SPURVOR_SEITENVERSATZ, "3"}, {IDC_SPURVOR_QUERBESCHL, "3"}, {IDC_SPURVOR_ANFANGSGESCHW, "50"}});
    EXPECT_EQ(Ways().size(), 1U);
    EXPECT_NE(Text(lane, IDC_SPURVOR_FALL), "");
    document.Undo();
    QApplication::processEvents();
    EXPECT_FALSE(HasPhases(0));
    EXPECT_TRUE(Ways().empty());
    EXPECT_EQ(Text(lane, IDC_SPURVOR_FALL), "");

    desktop::MaskWindow& sight = Calculate(472, {{IDC_HALBESICHT_SICHTWEITE, "80"},
                                                 {IDC_HALBESICHT_A_VERZOEGERUNG, "7"},
                                                 {IDC_HALBESICHT_B_VERZOEGERUNG, "6"}});
    EXPECT_EQ(Diagram().size(), 2U);
    EXPECT_NE(Text(sight, IDC_HALBESICHT_FALL), "");
    document.Undo();
    QApplication::processEvents();
    EXPECT_EQ(document.UndoLabel(), "Anfang");
    EXPECT_FALSE(HasPhases(0) || HasPhases(1));
    EXPECT_EQ(document.Data().WZDat(0).marke, 0);
    EXPECT_EQ(Text(sight, IDC_HALBESICHT_FALL), "");
}

TEST_F(WorkstationTest, ColoursOfBarriersAreTakenAndReset)
{
    RuvCfg.schranken.abwicklung = RGB(1, 2, 3);
    desktop::Preferences preferences;
    desktop::SettingsDialog dialog(preferences, false, &window);
    dialog.Apply(preferences);
    EXPECT_EQ(RuvCfg.schranken.abwicklung, RGB(1, 2, 3)) << "nothing was chosen";
    for (QPushButton* button : dialog.findChildren<QPushButton*>())
        if (button->text() == "&Voreingestellte Farben")
            button->click();
    EXPECT_EQ(RuvCfg.schranken.abwicklung, RGB(1, 2, 3)) << "not before OK";
    dialog.Apply(preferences);
    EXPECT_EQ(RuvCfg.schranken.abwicklung, CRuvCfg().schranken.abwicklung);
}

TEST(CommandLineTest, NamesWhatItDoesNotUnderstand)
{
    const auto read = [](std::vector<std::string> words) {
        std::vector<char*> arguments;
        for (std::string& word : words)
            arguments.push_back(word.data());
        return desktop::ReadCommandLine(arguments);
    };
    const auto line =
        read({"--shot", "bilder", "400", "487", "--scheme", "dunkel", "--scale", "1,5", "--case", "f.json"});
    EXPECT_EQ(line.error, "");
    EXPECT_EQ(line.shotFolder, "bilder");
    EXPECT_EQ(line.numbers, (std::vector<UINT>{400, 487}));
    EXPECT_TRUE(line.dark);
    EXPECT_EQ(line.scale, 1.5);
    EXPECT_EQ(line.casePath, "f.json");
    EXPECT_NE(read({"--scheme", "bunt"}).error, "");
    EXPECT_NE(read({"--scale", "9"}).error, "");
    EXPECT_NE(read({"--shot"}).error, "");
    EXPECT_NE(read({"--example", "kreuzung", "f.json"}).error, "");
    EXPECT_NE(read({"--unsinn"}).error, "");
}

TEST(ShotTest, WritesMasksWithTheirPagesInTheSchemeAndScale)
{
    const test::TemporaryFolder folder;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove("DISPLAY");
    environment.remove("QT_QPA_PLATFORM");
    const auto shoot = [&](const QStringList& more) {
        QProcess program;
        program.setProcessEnvironment(environment);
        program.start(QCoreApplication::applicationDirPath() + "/tavelin",
                      QStringList{"--shot", QString::fromStdString(folder.Path())} + more);
        EXPECT_TRUE(program.waitForFinished(120000));
        return program.exitCode();
    };
    ASSERT_EQ(shoot({"400"}), 0);
    const QImage light(QString::fromStdString(folder.File("400.png")));
    ASSERT_EQ(shoot({"400", "487", "--example", "fussgaenger", "--scheme", "dunkel", "--scale", "2"}), 0);
    const QImage dark(QString::fromStdString(folder.File("400.png")));
    EXPECT_NEAR(dark.width(), 2 * light.width(), 4);
    const QPoint corner(40, light.height() - 6);
    EXPECT_GT(light.pixelColor(corner).lightness(), 200);
    EXPECT_LT(dark.pixelColor(2 * corner).lightness(), 80);
    for (const char* page : {"487", "487-2", "487-3", "487-4", "487-5", "487-diagramm"})
        EXPECT_FALSE(QImage(QString::fromStdString(folder.File(std::string(page) + ".png"))).isNull()) << page;
    EXPECT_NE(shoot({"999"}), 0);
    EXPECT_NE(shoot({"--case", "/no/case.json"}), 0);
    EXPECT_NE(shoot({"--example", "keines"}), 0);
}

} // namespace
