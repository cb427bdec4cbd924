// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/case/CaseDocument.h"
#include "desktop/case/PathTimeModel.h"
#include "desktop/case/PathTimeTable.h"
#include "desktop/case/VehicleEditor.h"
#include "desktop/look/DiagramView.h"
#include "desktop/look/NumberField.h"
#include "desktop/look/Theme.h"
#include "pathtime/PathTimeDiagram.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QImage>
#include <QLineEdit>
#include <QMimeData>
#include <QPrinter>
#include <QTableView>
#include <QTest>

namespace
{

using namespace desktop;
using Q = pathtime::PhaseQuantity;

/// Types into a field as a user does who then presses Tab.
void Type(QLineEdit& field, const char* text)
{
    field.setFocus();
    field.selectAll();
    QTest::keyClicks(&field, QString::fromUtf8(text));
    QTest::keyClick(&field, Qt::Key_Return);
}

class VehicleEditorTest : public ::testing::Test
{
  protected:
    VehicleEditorTest()
    {
        editor.resize(340, 900);
        editor.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&editor));
    }
    CaseDocument document{false};
    VehicleEditor editor{document};
};

TEST_F(VehicleEditorTest, AnEntryChangesTheCaseAndCanBeUndone)
{
    ASSERT_EQ(editor.Vehicle(), 0);
    Type(editor.Field(&CKfzDaten::length), "4,321");
    EXPECT_DOUBLE_EQ(document.Data().KfzDat(0).length, 4.321);
    EXPECT_TRUE(document.UndoLabel().startsWith("Länge"));
    Type(editor.NameField(), "Pkw Ö");
    EXPECT_EQ(document.Data().KfzDat(0).name, "Pkw Ö");
    document.Undo();
    document.Undo();
    EXPECT_DOUBLE_EQ(document.Data().KfzDat(0).length, 4.5);
    EXPECT_EQ(editor.Field(&CKfzDaten::length).text(), "4,500");
    EXPECT_EQ(editor.NameField().text(), "Pkw 1");
    EXPECT_FALSE(document.CanUndo());
}

TEST_F(VehicleEditorTest, ARefusedEntryShowsWhyAndTheOldValue)
{
    NumberField& width = editor.Field(&CKfzDaten::width);
    Type(width, "99");
    ASSERT_NE(width.Refusal(), nullptr);
    EXPECT_EQ(width.Refusal()->Text(),
              "Breite: Der Wert 99 liegt außerhalb des zulässigen Bereichs von 0,000 bis 10,000.");
    EXPECT_EQ(width.text(), "1,800");
    EXPECT_FALSE(document.CanUndo());
    Type(width, "1.9");
    EXPECT_EQ(width.Refusal(), nullptr);
    EXPECT_DOUBLE_EQ(document.Data().KfzDat(0).width, 1.9);
}

TEST_F(VehicleEditorTest, VehiclesComeAndGo)
{
    const int bicycle = editor.AddVehicle(CKfzDaten::Type::bicycle);
    EXPECT_EQ(bicycle, 2);
    EXPECT_EQ(editor.Vehicle(), bicycle);
    document.Data().WZRechDat(2).spalten[3].art = PhasenArt::rolling;
    editor.RemoveVehicle(bicycle);
    EXPECT_FALSE(document.Data().IsFzgValid(bicycle));
    EXPECT_FALSE(document.Data().WZRechDat(2).spalten[3].IsUsed());
    document.Undo();
    EXPECT_EQ(document.Data().KfzDat(2).type, CKfzDaten::Type::bicycle);
    while (editor.AddVehicle(CKfzDaten::Type::car) >= 0) {
    }
    EXPECT_TRUE(document.Data().IsFzgValid(15));
    for (int i = 0; i < 16; ++i)
        editor.RemoveVehicle(i);
    EXPECT_EQ(editor.Vehicle(), -1);
}

class PathTimeTableTest : public ::testing::Test
{
  protected:
    PathTimeTableTest()
    {
        table.resize(900, 400);
        table.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&table));
    }
    const PathTimeModel& Model() const { return static_cast<const PathTimeModel&>(*table.View().model()); }
    const CWegZeitSpalte& Phase(std::size_t column) { return document.Data().WZRechDat(0).spalten[column]; }
    void SetKind(int column, PhasenArt kind)
    {
        table.View().model()->setData(Model().index(0, column), static_cast<int>(kind), Qt::EditRole);
    }
    /// Opens the cell by typing, as a user does.
    void TypeInto(int column, Q quantity, const char* text)
    {
        QTableView& view = table.View();
        view.setFocus();
        view.setCurrentIndex(Model().index(*Model().RowOf(quantity), column));
        QTest::keyClick(&view, Qt::Key_F2);
        auto* editor = view.viewport()->findChild<QLineEdit*>();
        ASSERT_NE(editor, nullptr);
        editor->selectAll();
        QTest::keyClicks(editor, QString::fromUtf8(text));
        QTest::keyClick(editor, Qt::Key_Return);
        QCoreApplication::processEvents(); // the view takes the entry when the key has been handled
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    CaseDocument document{false};
    PathTimeTable table{document};
};

TEST_F(PathTimeTableTest, AnEditedPhaseRecomputesThePhases)
{
    EXPECT_EQ(Model().columnCount(), 1) << "one free column to begin with";
    SetKind(0, PhasenArt::braking);
    TypeInto(0, Q::endSpeed, "18");
    TypeInto(0, Q::deceleration, "8");
    TypeInto(0, Q::time, "1");
    SetKind(1, PhasenArt::constantSpeed);
    TypeInto(1, Q::time, "2");
    EXPECT_NEAR(Phase(4).weg, 2.0 * (5.0 + 8.0), 1e-9);
    EXPECT_EQ(Model().columnCount(), 3);
    TypeInto(0, Q::deceleration, "6,0");
    EXPECT_NEAR(Phase(4).weg, 2.0 * (5.0 + 6.0), 1e-9);
    EXPECT_EQ(Model().index(*Model().RowOf(Q::path), 1).data().toString(), "22,00");
    EXPECT_EQ(document.UndoLabel(), "Verzögerung");
    document.Undo();
    EXPECT_EQ(Model().index(*Model().RowOf(Q::path), 1).data().toString(), "26,00");

    TypeInto(0, Q::deceleration, "1000");
    ASSERT_NE(table.Refusal(), nullptr);
    EXPECT_TRUE(table.Refusal()->Text().startsWith("Verzögerung: Der Wert 1000"));
    EXPECT_EQ(Phase(3).verz, 8.0);
}

TEST_F(PathTimeTableTest, PhasesAreInsertedAndRemoved)
{
    SetKind(0, PhasenArt::braking);
    SetKind(1, PhasenArt::reaction);
    table.View().setCurrentIndex(Model().index(1, 1));
    table.InsertPhase();
    EXPECT_EQ(Phase(4).art, PhasenArt::unused);
    EXPECT_EQ(Phase(5).art, PhasenArt::reaction);
    table.View().setCurrentIndex(Model().index(1, 1));
    table.RemovePhase();
    EXPECT_EQ(Phase(4).art, PhasenArt::reaction);
    EXPECT_EQ(Model().columnCount(), 3);
}

TEST_F(PathTimeTableTest, TurningShowsItsOwnQuantitiesAndAnotherVehicleItsPhases)
{
    EXPECT_FALSE(Model().RowOf(Q::startRadius));
    SetKind(0, PhasenArt::turning);
    ASSERT_TRUE(Model().RowOf(Q::startRadius));
    TypeInto(0, Q::startRadius, "12,5");
    EXPECT_EQ(Phase(3).radiusAnf, 12.5);
    table.ChooseVehicle(1);
    EXPECT_FALSE(Model().RowOf(Q::startRadius));
    SetKind(0, PhasenArt::rolling);
    EXPECT_EQ(document.Data().WZRechDat(1).spalten[3].art, PhasenArt::rolling);
    document.Data().KfzDat(1) = {};
    document.Commit("weg");
    EXPECT_EQ(table.Vehicle(), 0);
}

class DiagramViewTest : public ::testing::Test
{
  protected:
    DiagramViewTest()
    {
        data.KfzDat(0) = TypicalCar("Pkw", RGB(200, 0, 0));
        CWegZeitRechDat& phases = data.WZRechDat(0);
        phases.spalten[3].art = PhasenArt::braking;
        phases.spalten[3].verz = 8.0;
        phases.spalten[3].zeit = 2.0;
        phases.Berechnung();
        view.resize(700, 500);
        view.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&view));
    }
    CRuvData data;
    DiagramView view{[this](CDC& drawing, Ground ground) {
                         pathtime::PathTimeDiagramOptions options;
                         options.palette = PaletteFor(ground);
                         pathtime::DrawPathTimeDiagram(drawing, pathtime::DiagramVehicles(data), options);
                     },
                     "Weg-Zeit-Diagramm"};
};

TEST_F(DiagramViewTest, WhatLeavesTheProgramIsDrawnForPaper)
{
    ApplyTheme(Scheme::dark);
    const QImage screen = view.grab().toImage();
    EXPECT_LT(screen.pixelColor(3, 3).lightness(), 80);
    view.Copy();
    ApplyTheme(Scheme::light);
    const QMimeData* copied = QApplication::clipboard()->mimeData();
    const auto image = qvariant_cast<QImage>(copied->imageData());
    ASSERT_FALSE(image.isNull());
    EXPECT_EQ(image.pixelColor(3, 3), QColor(Qt::white));
    EXPECT_TRUE(copied->data("image/svg+xml").contains("<svg"));

    const test::TemporaryFolder folder;
    for (const char* name : {"d.svg", "d.pdf", "d.png"}) {
        EXPECT_EQ(view.SaveAs(QString::fromStdString(folder.File(name))), "");
        EXPECT_GT(folder.Read(name).size(), 1000U) << name;
    }
    EXPECT_EQ(folder.Read("d.pdf").substr(0, 5), "%PDF-");
    EXPECT_NE(view.SaveAs(QString::fromStdString(folder.File("d.txt"))), "");
    EXPECT_NE(view.SaveAs(QString::fromStdString(folder.File("kein/ordner.svg"))), "");

    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(QString::fromStdString(folder.File("print.pdf")));
    view.PrintOn(printer);
    EXPECT_GT(folder.Read("print.pdf").size(), 1000U);
}

TEST_F(DiagramViewTest, ThePointUnderTheMouseStaysWhenZooming)
{
    view.SetZoom(2.0, {350.0, 250.0});
    EXPECT_EQ(view.Zoom(), 2.0);
    const QImage enlarged = view.grab().toImage();
    view.SetZoom(1.0, {350.0, 250.0});
    const QImage whole = view.grab().toImage();
    EXPECT_NE(enlarged, whole);
    view.SetZoom(1000.0, {0.0, 0.0});
    EXPECT_LE(view.Zoom(), 16.0);
    view.SetZoom(0.1, {0.0, 0.0});
    EXPECT_EQ(view.Zoom(), 1.0);
    EXPECT_EQ(view.grab().toImage(), whole);
}

} // namespace
