// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The program itself in a window of an X server: killed at work, started again. Seen from outside: by its windows, its
// files and its end.
#include "tests/desktop/XServer.h"

#include "casefile/CaseFile.h"
#include "host/CRuvData.h"
#include "tests/support/TemporaryFolder.h"

#include <QCoreApplication>
#include <QRegularExpression>

#include <algorithm>
#include <filesystem>
#include <memory>

namespace
{

using test::Comes;

class RealProgramTest : public ::testing::Test
{
  protected:
    void SetUp() override
    {
        if (!test::XServer::IsInstalled())
            GTEST_SKIP() << "Xvfb or xdotool is not installed";
        server = std::make_unique<test::XServer>();
        ASSERT_TRUE(server->IsRunning()) << "Xvfb does not start";
        environment = server->Environment();
        for (const char* variable : {"XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_RUNTIME_DIR"})
            environment.insert(variable, QString::fromStdString(folder.Folder(variable)));
        // Qt takes a runtime folder that others may enter for none, and makes one that stays.
        std::filesystem::permissions(folder.File("XDG_RUNTIME_DIR"), std::filesystem::perms::owner_all);
        std::filesystem::copy_file(TAVELIN_SOURCE_DIR "/examples/kreuzung.json", folder.File("fall.json"));
    }
    void TearDown() override
    {
        if (program.state() != QProcess::NotRunning) {
            program.kill();
            program.waitForFinished(test::kDeadline);
        }
    }

    void Start()
    {
        program.setProcessEnvironment(environment);
        program.setProcessChannelMode(QProcess::MergedChannels);
        program.start(QCoreApplication::applicationDirPath() + "/tavelin", {Path()});
        ASSERT_TRUE(program.waitForStarted());
    }
    bool Ends()
    {
        return Comes([&] { return program.state() == QProcess::NotRunning; });
    }
    QString Path() const { return QString::fromStdString(folder.File("fall.json")); }

    QString Tool(const QStringList& commands) const { return test::Xdotool(commands, environment); }
    /// Number of the visible window with this title, empty when there is none. Its dash may be anything: a program in
    /// a locale without one cannot tell it to the window manager.
    QString WindowWith(const QString& title) const
    {
        const QString pattern =
            "^" + QRegularExpression::escape(title).replace("\\ ", " ").replace(QRegularExpression("\\\\?–"), ".*") +
            "$";
        return Tool({"search", "--onlyvisible", "--name", pattern}).section('\n', 0, 0);
    }
    /// Waits for the window and gives it the keyboard.
    bool Focus(const QString& title) const
    {
        QString number;
        if (!Comes([&] { return !(number = WindowWith(title)).isEmpty() || program.state() == QProcess::NotRunning; }))
            return false;
        bool failed = true;
        test::Xdotool({"windowfocus", "--sync", number}, environment, &failed);
        return !failed;
    }
    std::vector<std::string> Journals() const
    {
        std::vector<std::string> names;
        std::error_code ignored;
        for (const auto& entry : std::filesystem::directory_iterator(folder.File("XDG_STATE_HOME/tavelin"), ignored))
            if (entry.path().filename() != "recent.ini")
                names.push_back(entry.path().filename().string());
        return names;
    }
    bool HasWrittenJournal() const
    {
        for (const std::string& name : Journals())
            if (name.ends_with(".a") || name.ends_with(".b"))
                return true;
        return false;
    }

    test::TemporaryFolder folder;
    std::unique_ptr<test::XServer> server;
    QProcessEnvironment environment;
    QProcess program;
};

TEST_F(RealProgramTest, IsKilledAtWorkAndRecoversTheCase)
{
    Start();
    ASSERT_TRUE(Focus("fall.json – Tavelin")) << program.readAll().toStdString();
    // Mask 468 keeps its values in the case; the keys arrive one after the other, so nothing needs waiting for.
    Tool(QStringList{"key", "ctrl+k", "type", "--args", "1",   "468",  "key",    "Return", "type", "--args", "1",
                     "50",  "key",    "Tab",  "key",    "Tab", "type", "--args", "1",      "25",   "key",    "Return"});
    ASSERT_TRUE(Comes([&] { return !WindowWith("fall.json* – Tavelin").isEmpty(); })) << "no mark of a change";
    ASSERT_TRUE(Comes([&] { return HasWrittenJournal(); }));
    program.kill();
    ASSERT_TRUE(Ends());
    ASSERT_EQ(program.exitStatus(), QProcess::CrashExit);
    CRuvData saved;
    ASSERT_TRUE(casefile::LoadCase(Path().toStdString(), saved));
    EXPECT_FALSE(saved.AlleMaskenWerte().contains(468)) << "the file itself is as it was";

    Start();
    ASSERT_TRUE(Focus("Fall wiederherstellen")) << program.readAll().toStdString();
    Tool({"key", "alt+w"});
    ASSERT_TRUE(Focus("fall.json* – Tavelin"));
    Tool({"key", "ctrl+s"});
    ASSERT_TRUE(Focus("fall.json – Tavelin"));
    ASSERT_TRUE(casefile::LoadCase(Path().toStdString(), saved));
    ASSERT_TRUE(saved.AlleMaskenWerte().contains(468));
    const auto& values = saved.AlleMaskenWerte().at(468);
    const auto holds = [&](double value) {
        return std::any_of(values.begin(), values.end(), [value](const auto& list) {
            return std::find(list.second.begin(), list.second.end(), value) != list.second.end();
        });
    };
    EXPECT_TRUE(holds(25.0)) << "the path in m";
    Tool({"key", "ctrl+q"});
    ASSERT_TRUE(Ends());
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), 0) << program.readAll().toStdString();
    EXPECT_TRUE(Journals().empty()) << Journals().front();
}

} // namespace
