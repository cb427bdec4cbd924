// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The workstation in a real window of an X server, driven by real key presses: Xvfb and xdotool.
#include "tests/desktop/DesktopFixture.h"
#include "tests/desktop/XServer.h"

#include "desktop/CasePanels.h"
#include "desktop/case/PathTimeTable.h"
#include "desktop/case/VehicleEditor.h"
#include "desktop/look/NumberField.h"
#include "desktop/look/RefusalBubble.h"
#include "desktop/mask/ControlWidgets.h"
#include "desktop/mask/QuickOpener.h"
#include "res/resource.h"

#include <QFileInfo>
#include <QGuiApplication>
#include <QScreen>
#include <QTableView>
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

    /// Keys for the window that has the focus. What they do is waited for with Comes: they are still on their way.
    static void Do(const QStringList& commands)
    {
        bool failed = false;
        test::Xdotool(commands, QProcessEnvironment::systemEnvironment(), &failed);
        EXPECT_FALSE(failed) << commands.join(' ').toStdString();
    }
    static QStringList Text(const QString& text) { return {"type", "--args", "1", "--", text}; }
    /// No window manager gives the focus back when a dialog has closed.
    void Focus()
    {
        Do({"windowfocus", "--sync", QString::number(window.winId())});
        EXPECT_TRUE(Comes([&] { return window.isActiveWindow(); }));
    }
    /// Opens a modal window by keys, answers it, and waits until it has closed.
    void Answer(const QStringList& opening, const QStringList& answer)
    {
        bool answered = false;
        InModal([&](QWidget&) {
            Do(answer);
            answered = true;
        });
        Do(opening);
        EXPECT_TRUE(Comes([&] { return answered && QApplication::activeModalWidget() == nullptr; }));
        Focus();
    }
    static bool Comes(const std::function<bool()>& condition) { return test::Comes(condition); }
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

    Answer({"key", "alt+l"}, {"key", "n"});
    EXPECT_EQ(Shown(kFriction), "0,80");
    EXPECT_EQ(Shown(kResult), "7,35");
    Answer({"key", "alt+l"}, {"key", "j"});
    EXPECT_TRUE(Comes([&] { return Shown(kFriction) == "0,00"; }));
    EXPECT_EQ(Shown(kResult), "0,00");

    Widget(*Mask(), kFriction).setFocus();
    Do(QStringList{"key", "ctrl+a"} + Text("11"));
    Do({"key", "Tab"});
    EXPECT_TRUE(Comes([&] { return Mask()->Refusal() != nullptr && Mask()->Refusal()->isVisible(); }));
    EXPECT_EQ(QApplication::focusWidget(), &Widget(*Mask(), kFriction));
    Do({"key", "Up"});
    EXPECT_TRUE(Comes([&] { return Shown(kFriction) == "0,01"; }));
    EXPECT_EQ(Mask()->Refusal(), nullptr);
    Do({"key", "Escape"});
    EXPECT_TRUE(Comes([&] { return thread.Dialogs().empty(); }));
}

TEST_F(RealKeysTest, ACaseIsSavedAndOpenedAgain)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("fall.json");
    const QStringList answer = QStringList{"key", "ctrl+a"} + Text(path) + QStringList{"key", "Return"};
    document.Data().KfzDat(0).mass = 1234.5;
    document.Commit("Masse");
    ASSERT_TRUE(document.IsModified());
    Answer({"key", "ctrl+s"}, answer);
    ASSERT_TRUE(Comes([&] { return !document.IsModified(); })) << document.Error().toStdString();
    EXPECT_EQ(document.Path(), path);
    EXPECT_TRUE(QFileInfo::exists(path));

    Do({"key", "ctrl+n"});
    EXPECT_TRUE(Comes([&] { return document.Path().isEmpty(); }));
    EXPECT_NE(document.Data().KfzDat(0).mass, 1234.5);
    Answer({"key", "ctrl+o"}, answer);
    EXPECT_TRUE(Comes([&] { return document.Path() == path; }));
    EXPECT_EQ(document.Data().KfzDat(0).mass, 1234.5);
    document.Data().KfzDat(0).mass = 1300.0;
    document.Commit("Masse");
    Do({"key", "ctrl+z"});
    EXPECT_TRUE(Comes([&] { return document.Data().KfzDat(0).mass == 1234.5; }));
    Do({"key", "ctrl+y"});
    EXPECT_TRUE(Comes([&] { return document.Data().KfzDat(0).mass == 1300.0; }));
}

TEST_F(RealKeysTest, PanelsTakeKeysAsMasksDo)
{
    const desktop::CasePanels panels = desktop::AddCasePanels(window, document);
    desktop::NumberField& length = panels.vehicles->Field(&CKfzDaten::length);
    document.New();
    length.setFocus();
    Do(QStringList{"key", "ctrl+a"} + Text("4,25"));
    Do({"key", "Return"});
    EXPECT_TRUE(Comes([&] { return document.Data().KfzDat(0).length == 4.25 && window.isWindowModified(); }));
    Open(400);
    EXPECT_TRUE(window.isWindowModified());
    window.CloseMasks();
    QApplication::processEvents();
    EXPECT_TRUE(window.isWindowModified());
    length.setFocus();
    Do({"key", "ctrl+z"});
    EXPECT_TRUE(Comes([&] { return document.Data().KfzDat(0).length == 4.5; }));
    Do({"key", "ctrl+y"});
    EXPECT_TRUE(Comes([&] { return document.Data().KfzDat(0).length == 4.25; }));
    Do({"key", "alt+e"}); // opens the menu Extras and removes nothing
    EXPECT_TRUE(Comes([&] { return QApplication::activePopupWidget() != nullptr; }));
    Do({"key", "Escape", "key", "Escape"});
    EXPECT_TRUE(Comes([&] { return QApplication::activePopupWidget() == nullptr; }));
    EXPECT_TRUE(document.Data().IsFzgValid(0));
    length.setFocus();
    Do(QStringList{"key", "ctrl+a"} + Text("99"));
    Do({"key", "Tab"});
    EXPECT_TRUE(Comes([&] { return length.Refusal() != nullptr && length.hasFocus(); }));
    Do({"key", "Tab"});
    EXPECT_TRUE(Comes([&] { return length.Refusal() == nullptr; }));

    QTableView& table = panels.phases->View();
    table.setFocus();
    table.setCurrentIndex(table.model()->index(0, 0));
    Do({"key", "b"});
    EXPECT_TRUE(Comes([&] { return QApplication::activePopupWidget() != nullptr; }));
    Do({"key", "Down", "key", "Return"});
    const auto phase = [&]() -> const CWegZeitSpalte& { return document.Data().WZRechDat(0).spalten[3]; };
    EXPECT_TRUE(Comes([&] { return phase().art == PhasenArt::accelerating; }));
    Do(QStringList{"key", "Tab"} + Text("50"));
    Do({"key", "Return"});
    EXPECT_TRUE(Comes([&] { return phase().vAnf == 50.0 && table.currentIndex().row() == 2; }));
}

/// What the screen shows after Alt and a number is one page, and one button looks like that of the current page.
TEST_F(RealKeysTest, AltAndANumberShowOnePageAtEveryWindowSize)
{
    ASSERT_TRUE(document.Open(QStringLiteral(TAVELIN_SOURCE_DIR "/examples/fussgaenger.json")));
    desktop::AddCasePanels(window, document);
    constexpr UINT kButtons[] = {IDC_SCHR_BU1, IDC_SCHR_BU2, IDC_SCHR_BU3, IDC_SCHR_BU4, IDC_SCHR_BU5};
    for (const QSize size : {QSize(1000, 680), QSize(1366, 768), QSize(1440, 900), QSize(1920, 1200)}) {
        window.resize(size);
        ASSERT_TRUE(Comes([&] { return window.size() == size; }));
        desktop::MaskWindow& mask = Open(487);
        Focus();
        const auto shown = [&](QWidget& widget) {
            const QRect seen = widget.visibleRegion().boundingRect();
            const QPoint at = widget.mapTo(&window, seen.topLeft());
            return window.screen()->grabWindow(window.winId(), at.x(), at.y(), seen.width(), seen.height()).toImage();
        };
        const auto ground = [&](UINT button) {
            const QImage image = shown(Widget(mask, button));
            return image.isNull() ? 0U : image.pixel(image.width() - 5, image.height() / 2);
        };
        for (const int number : {2, 4, 3, 5, 1, 3, 2}) {
            Do({"key", QStringLiteral("alt+%1").arg(number)});
            const UINT chosen = kButtons[number - 1];
            ASSERT_TRUE(Comes([&] { return Control(mask, chosen).check != 0; })) << number;
            std::vector<desktop::MaskWindow*> pages;
            for (auto* page : mask.findChildren<desktop::MaskWindow*>())
                if (page->isVisible())
                    pages.push_back(page);
            ASSERT_EQ(pages.size(), 1U) << number;
            const QRect seen = pages.front()->visibleRegion().boundingRect();
            ASSERT_FALSE(seen.isEmpty());
            const auto wanted = [&] {
                return pages.front()->grab(seen).toImage().convertToFormat(QImage::Format_RGB32);
            };
            EXPECT_TRUE(Comes([&] { return shown(*pages.front()).convertToFormat(QImage::Format_RGB32) == wanted(); }))
                << "the screen shows another page than " << number;
            for (const UINT button : kButtons)
                if (!Widget(mask, button).visibleRegion().isEmpty()) {
                    EXPECT_EQ(ground(button) == ground(chosen), button == chosen) << number << ": " << button;
                }
            if (const QString folder = qEnvironmentVariable("TAVELIN_PICTURES"); !folder.isEmpty())
                window.screen()
                    ->grabWindow(window.winId())
                    .save(QStringLiteral("%1/%2-%3.png").arg(folder).arg(size.width()).arg(number));
        }
        window.CloseMasks();
    }
}

/// Starts this program again on an X server of its own.
TEST(RealWindowTest, KeysOfARealKeyboard)
{
    if (!test::XServer::IsInstalled())
        GTEST_SKIP() << "Xvfb or xdotool is not installed";
    const test::XServer server;
    ASSERT_TRUE(server.IsRunning()) << "Xvfb does not start";
    QProcessEnvironment environment = server.Environment();
    environment.insert(kMark, "1");
    QProcess inner;
    inner.setProcessEnvironment(environment);
    inner.setProcessChannelMode(QProcess::MergedChannels);
    inner.start(QCoreApplication::applicationFilePath(), {"--gtest_filter=RealKeysTest.*"});
    const bool finished = inner.waitForFinished(4 * test::kDeadline);
    const std::string output = inner.readAll().toStdString();
    if (!finished)
        inner.kill();
    EXPECT_TRUE(finished);
    EXPECT_EQ(inner.exitCode(), 0) << output;
    EXPECT_NE(output.find("[  PASSED  ] 4 tests."), std::string::npos) << output;
}

} // namespace
