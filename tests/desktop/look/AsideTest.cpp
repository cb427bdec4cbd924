// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Long work beside the interface: what goes on meanwhile, and what is left when it is cancelled.
#include "tests/desktop/DesktopFixture.h"

#include "desktop/CasePanels.h"
#include "desktop/MaskReport.h"
#include "desktop/look/Aside.h"
#include "desktop/look/DiagramView.h"
#include "desktop/look/DrawingOutput.h"
#include "desktop/mask/ProtocolPages.h"
#include "tests/support/TemporaryFolder.h"

#include <QPrinter>
#include <QProgressBar>
#include <QProgressDialog>
#include <QPushButton>
#include <QStatusBar>

#include <thread>

namespace
{

using desktop::AsideWork;

class AsideTest : public test::DesktopTest
{
};

TEST_F(AsideTest, TheInterfaceGoesOnAndWhatTheUserDoesWaits)
{
    desktop::MaskWindow& mask = Open(400);
    std::thread::id worker;
    int beats = 0;
    QTimer beat;
    QObject::connect(&beat, &QTimer::timeout, [&] { ++beats; });
    beat.start(5);
    QProgressBar* mark = nullptr;
    for (auto* bar : window.statusBar()->findChildren<QProgressBar*>())
        mark = bar;
    ASSERT_NE(mark, nullptr);
    bool marked = false;
    bool worked = false;
    EXPECT_TRUE(desktop::DoAside(&window, QStringLiteral("Es dauert"), [&](AsideWork& work) {
        worker = std::this_thread::get_id();
        work.Report(0.5);
        for (int i = 0; i < 400 && !marked; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
            QMetaObject::invokeMethod(&window, [&] { marked |= mark->isVisible() && mark->value() == 50; });
        }
        worked = true;
    }));
    EXPECT_TRUE(worked);
    EXPECT_NE(worker, std::this_thread::get_id());
    EXPECT_GT(beats, 4);
    EXPECT_TRUE(marked);
    EXPECT_FALSE(mark->isVisible());
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    EXPECT_NE(mask.Dialog(), nullptr);
}

TEST_F(AsideTest, AfterASecondItCanBeCancelledAndTheWorkHearsOfIt)
{
    std::atomic<bool> heard = false;
    std::atomic<bool> kept = true;
    InModal([](QWidget& modal) {
        auto* dialog = qobject_cast<QProgressDialog*>(&modal);
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(dialog->labelText(), "Es dauert");
        dialog->findChild<QPushButton*>()->click();
    });
    EXPECT_FALSE(desktop::DoAside(&window, QStringLiteral("Es dauert"), [&](AsideWork& work) {
        while (!work.IsCancelled())
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        kept = work.BeginToKeep();
        heard = true;
    }));
    EXPECT_TRUE(QTest::qWaitFor([&] { return heard.load(); }));
    EXPECT_FALSE(kept);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    AsideWork late;
    EXPECT_TRUE(late.BeginToKeep());
    EXPECT_FALSE(late.Cancel()) << "a file that is being written stays";
    EXPECT_FALSE(late.IsCancelled());
}

TEST_F(AsideTest, WhatIsCancelledLeavesNoFile)
{
    const desktop::CasePanels panels = desktop::AddCasePanels(window, document);
    desktop::MaskReport& report = *new desktop::MaskReport(window, document, front);
    const test::TemporaryFolder folder;
    const auto path = [&](const char* name) { return QString::fromStdString(folder.File(name)); };
    AsideWork cancelled;
    ASSERT_TRUE(cancelled.Cancel());
    for (const char* name : {"d.svg", "d.pdf", "d.png"}) {
        EXPECT_EQ(desktop::SaveDrawing(panels.diagram->ForPaper(), path(name), cancelled), "");
        EXPECT_FALSE(QFileInfo::exists(path(name))) << name;
    }
    const report::Protocol protocol = report.ProtocolOf(Open(400));
    const auto print = [&](AsideWork& work) {
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(path("p.pdf"));
        EXPECT_EQ(desktop::PrintProtocol(protocol, printer, work), "");
        return QFileInfo::exists(path("p.pdf"));
    };
    EXPECT_FALSE(print(cancelled));
    AsideWork wanted;
    EXPECT_TRUE(print(wanted));
}

} // namespace
