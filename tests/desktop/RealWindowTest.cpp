// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The workstation in a real window of an X server, driven by real key presses: Xvfb and xdotool.
#include "DesktopFixture.h"

#include "desktop/QuickOpener.h"
#include "desktop/RefusalBubble.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QGuiApplication>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace
{

constexpr const char* kMark = "TAVELIN_REAL_KEYS"; // set for the program that RealWindowTest starts
constexpr UINT kFriction = 4662;
constexpr UINT kResult = 4663;

class RealKeysTest : public test::DesktopTest
{
  protected:
    void SetUp() override
    {
        if (!qEnvironmentVariableIsSet(kMark))
            GTEST_SKIP() << "RealWindowTest runs this on an X server";
        ASSERT_EQ(QGuiApplication::platformName(), "xcb");
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
        Focus();
    }

    /// One call of xdotool. The event loop runs meanwhile, also that of a dialog the keys open: see InModal.
    static void Do(const QStringList& commands)
    {
        QProcess tool;
        tool.start(QStringLiteral("xdotool"), commands);
        ASSERT_TRUE(tool.waitForStarted());
        EXPECT_TRUE(QTest::qWaitFor([&] { return tool.state() == QProcess::NotRunning; }, 20000));
        EXPECT_EQ(tool.exitCode(), 0) << tool.readAllStandardError().toStdString();
        QTest::qWait(30);
    }
    static QStringList Text(const QString& text) { return {"type", "--args", "1", "--", text}; }
    /// No window manager gives the focus back when a dialog has closed.
    void Focus() { Do({"windowfocus", "--sync", QString::number(window.winId())}); }
    static bool Comes(const std::function<bool()>& condition) { return QTest::qWaitFor(condition, 5000); }
    std::string Shown(UINT id) const { return DesktopTest::Text(*Mask(), id); }
    desktop::MaskWindow* Mask() const { return window.Masks().Active(); }
};

TEST_F(RealKeysTest, AMaskIsOpenedFilledReadAndCleared)
{
    Do({"key", "ctrl+k"});
    ASSERT_TRUE(Comes([&] { return window.Opener().isVisible(); }));
    Do(Text("400"));
    Do({"key", "Return"});
    ASSERT_TRUE(Comes([&] { return Mask() != nullptr && Mask()->Number() == 400; }));
    ASSERT_TRUE(Comes([&] { return QApplication::focusWidget() == &Widget(*Mask(), kFriction); }));
    Do(Text("0,8"));
    Do({"key", "Return"});
    EXPECT_TRUE(Comes([&] { return Shown(kResult) == "7,85"; }));

    // Twice down to the field in percent, then the button by its letter.
    Do(QStringList{"key", "Tab", "key", "Tab"} + Text("-5"));
    Do({"key", "alt+r"});
    EXPECT_TRUE(Comes([&] { return Shown(kResult) == "7,35"; })) << Shown(kResult);

    InModal([](QWidget&) { Do({"key", "n"}); });
    Do({"key", "alt+l"});
    Focus();
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_EQ(Shown(kFriction), "0,80");
    EXPECT_EQ(Shown(kResult), "7,35");
    InModal([](QWidget&) { Do({"key", "j"}); });
    Do({"key", "alt+l"});
    Focus();
    EXPECT_TRUE(Comes([&] { return Shown(kFriction) == "0,00"; }));
    EXPECT_EQ(Shown(kResult), "0,00");

    Widget(*Mask(), kFriction).setFocus();
    Do(QStringList{"key", "ctrl+a"} + Text("11"));
    Do({"key", "Tab"});
    EXPECT_TRUE(Comes([&] { return Mask()->Refusal() != nullptr && Mask()->Refusal()->isVisible(); }));
    EXPECT_EQ(QApplication::focusWidget(), &Widget(*Mask(), kFriction));
    Do({"key", "Up"});
    EXPECT_EQ(Mask()->Refusal(), nullptr);
    EXPECT_EQ(Shown(kFriction), "0,01");
    Do({"key", "Escape"});
    EXPECT_TRUE(Comes([&] { return thread.Dialogs().empty(); }));
}

TEST_F(RealKeysTest, ACaseIsSavedAndOpenedAgain)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("fall.json");
    const auto answer = [&](QWidget&) {
        Do({"key", "ctrl+a"});
        Do(Text(path));
        Do({"key", "Return"});
    };
    document.Data().KfzDat(0).mass = 1234.5;
    document.Commit("Masse");
    ASSERT_TRUE(document.IsModified());
    InModal(answer);
    Do({"key", "ctrl+s"});
    Focus();
    ASSERT_TRUE(Comes([&] { return !document.IsModified(); })) << document.Error().toStdString();
    EXPECT_EQ(document.Path(), path);
    EXPECT_TRUE(QFileInfo::exists(path));

    Do({"key", "ctrl+n"});
    EXPECT_TRUE(Comes([&] { return document.Path().isEmpty(); }));
    EXPECT_NE(document.Data().KfzDat(0).mass, 1234.5);
    InModal(answer);
    Do({"key", "ctrl+o"});
    Focus();
    EXPECT_TRUE(Comes([&] { return document.Path() == path; }));
    EXPECT_EQ(document.Data().KfzDat(0).mass, 1234.5);
    document.Data().KfzDat(0).mass = 1300.0;
    document.Commit("Masse");
    Do({"key", "ctrl+z"});
    EXPECT_EQ(document.Data().KfzDat(0).mass, 1234.5);
    Do({"key", "ctrl+y"});
    EXPECT_EQ(document.Data().KfzDat(0).mass, 1300.0);
}

/// Starts this program again on an X server of its own.
TEST(RealWindowTest, KeysOfARealKeyboard)
{
    const QString server = QStandardPaths::findExecutable("Xvfb");
    if (server.isEmpty() || QStandardPaths::findExecutable("xdotool").isEmpty())
        GTEST_SKIP() << "Xvfb or xdotool is not installed";
    QProcess x;
    x.setStandardErrorFile(QProcess::nullDevice());
    x.start(server, {"-displayfd", "1", "-screen", "0", "1920x1200x24", "-nolisten", "tcp"});
    ASSERT_TRUE(x.waitForStarted());
    QByteArray display;
    QElapsedTimer clock;
    clock.start();
    while (!display.contains('\n') && clock.elapsed() < 20000) {
        x.waitForReadyRead(200);
        display += x.readAllStandardOutput();
    }
    ASSERT_TRUE(display.contains('\n')) << "Xvfb does not start";

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("DISPLAY", ":" + QString::fromLatin1(display.trimmed()));
    environment.insert("QT_QPA_PLATFORM", "xcb");
    environment.insert(kMark, "1");
    QProcess inner;
    inner.setProcessEnvironment(environment);
    inner.setProcessChannelMode(QProcess::MergedChannels);
    inner.start(QCoreApplication::applicationFilePath(), {"--gtest_filter=RealKeysTest.*"});
    const bool finished = inner.waitForFinished(120000);
    const std::string output = inner.readAll().toStdString();
    if (!finished)
        inner.kill();
    x.terminate();
    x.waitForFinished(5000);
    EXPECT_TRUE(finished);
    EXPECT_EQ(inner.exitCode(), 0) << output;
    EXPECT_NE(output.find("[  PASSED  ] 2 tests."), std::string::npos) << output;
}

} // namespace
