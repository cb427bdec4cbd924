// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Nothing of others is overwritten, nothing hangs, nothing stays behind.
#include "tests/cli/CliProgram.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <thread>

#include <sys/stat.h>

namespace
{

using nlohmann::json;
using test::RunCli;

bool UnderWine()
{
    return std::getenv("TAVELIN_CLI_REFERENCE") != nullptr;
}

TEST(CliSafety, ACaseThatChangedMeanwhileIsNotOverwritten)
{
    const test::TemporaryFolder folder;
    const std::string path = folder.File("fall.html"); // a protocol of the same name plays the other program
    ASSERT_EQ(RunCli({"case", "new", path}).exit, 0);
    const std::vector<std::string> call{"mask", "400", "--case", path, "--save", path, "protocol:" + path};
    const test::Output kept = RunCli(call);
    EXPECT_EQ(kept.exit, 3);
    EXPECT_NE(kept.err.find("von jemand anderem geändert"), std::string::npos) << kept.err;
    EXPECT_TRUE(test::Content(path).starts_with("<!DOCTYPE html>"));

    const std::string fresh = folder.File("neu.html"); // also where nothing was at first
    EXPECT_EQ(RunCli({"mask", "400", "--save", fresh, "protocol:" + fresh}).exit, 3);
    EXPECT_EQ(RunCli({"mask", "400", "--save", fresh, "--force", "protocol:" + fresh}).exit, 0);
    EXPECT_EQ(RunCli({"case", "check", fresh}).exit, 0);
    EXPECT_EQ(RunCli({"mask", "400", "--case", fresh, "--save", fresh, "4662=0,8"}).exit, 0) << "nobody changed it";
}

TEST(CliSafety, ACaseIsToldWhatStandsAtTheHeadOfItsReports)
{
    const test::TemporaryFolder folder;
    const std::string path = folder.File("fall.json");
    ASSERT_EQ(RunCli({"case", "new", path}).exit, 0);
    EXPECT_EQ(RunCli({"case", "set", path, "title=12 C 34/26", "date=3. Mai 2026", "place=Ulm", "author=Dr. Ä"}).exit,
              0);
    EXPECT_EQ(RunCli({"case", "set", path, "date="}).exit, 0);
    const std::string shown = RunCli({"case", "show", path}).out;
    EXPECT_TRUE(shown.starts_with("Fall: 12 C 34/26\nUnfallort: Ulm\nBearbeiter: Dr. Ä\n\n")) << shown;
    const std::string page = folder.File("p.html");
    EXPECT_EQ(RunCli({"mask", "400", "--case", path, "protocol:" + page}).exit, 0);
    EXPECT_NE(test::Content(page).find("Dr. Ä"), std::string::npos);
    const std::string before = test::Content(path);
    EXPECT_EQ(RunCli({"case", "set", path, "color=rot"}).exit, 2);
    EXPECT_EQ(RunCli({"case", "set", path, "title"}).exit, 2);
    EXPECT_EQ(RunCli({"case", "set", folder.File("keiner.json"), "title=x"}).exit, 3);
    EXPECT_EQ(test::Content(path), before);
}

TEST(CliSafety, ProtocolsAreReproducible)
{
    const test::TemporaryFolder folder;
    setenv("SOURCE_DATE_EPOCH", "951782400", 1);
    for (const char* ending : {"html", "odt"}) {
        std::vector<std::string> bytes;
        for (const char* name : {"a.", "b."}) {
            const std::string path = folder.File(std::string(name) + ending);
            EXPECT_EQ(RunCli({"mask", "400", "4662=0,8", "press:105", "protocol:" + path}).exit, 0);
            bytes.push_back(test::Content(path));
        }
        EXPECT_EQ(bytes[0], bytes[1]);
        EXPECT_GT(bytes[0].size(), 1000U);
    }
    unsetenv("SOURCE_DATE_EPOCH");
    EXPECT_NE(test::Content(folder.File("a.html")).find("29. Februar 2000, 00:00 Uhr (UTC)"), std::string::npos);
}

TEST(CliSafety, PicturesAreFoundAfterSavingElsewhere)
{
    const test::TemporaryFolder folder;
    const std::string path = folder.File("fall.json");
    ASSERT_EQ(RunCli({"case", "new", path}).exit, 0);
    json data = json::parse(test::Content(path));
    data["version"] = "1.1";
    data["scene"]["pictures"] = {
        {{"file", "luftbild.png"}, {"sha256", std::string(64, '0')}, {"size", {4, 4}}, {"metresPerPixel", 0.1}}};
    test::Write(path, data.dump());
    const std::string copy = folder.Folder("kopien") + "/fall.json";
    const test::Output saved = RunCli({"mask", "400", "--case", path, "--save", copy});
    ASSERT_EQ(saved.exit, 0) << saved.err;
    EXPECT_EQ(json::parse(test::Content(copy))["scene"]["pictures"][0]["file"], "../luftbild.png");
}

TEST(CliSafety, BatchWaitsForNoPipeAndNoDevice)
{
    if (UnderWine())
        GTEST_SKIP() << "pipes have no names there";
    const test::TemporaryFolder folder;
    const std::string pipe = folder.File("pipe.json");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    std::string input;
    for (const std::string& path : {pipe, std::string("/dev/zero"), folder.Path()})
        input += json{{"mask", 400}, {"case", path}}.dump() + "\n";
    const auto begin = std::chrono::steady_clock::now();
    const test::Output output = RunCli({"batch"}, input);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
    const auto lines = test::JsonLines(output.out);
    ASSERT_EQ(lines.size(), 3U);
    for (const json& line : lines)
        EXPECT_EQ(line.at("exit"), 3) << line;
}

/// A line that takes minutes: it draws and draws.
std::string SlowLine(const std::string& picture)
{
    json actions = json::array();
    for (int i = 0; i < 20'000; ++i)
        actions.push_back("draw:400=" + picture);
    return json{{"id", "slow"}, {"mask", 400}, {"actions", std::move(actions)}}.dump() + "\n";
}

TEST(CliSafety, ALineThatTakesTooLongIsGivenUp)
{
    const test::TemporaryFolder folder;
    const std::string quick = json{{"id", "quick"}, {"mask", 400}}.dump() + "\n";
    const test::Output output =
        RunCli({"batch", "--jobs", "1", "--line-timeout", "1"}, quick + SlowLine(folder.File("a.png")) + quick);
    EXPECT_EQ(output.exit, 0) << output.err;
    const auto lines = test::JsonLines(output.out);
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0].at("exit"), 0);
    EXPECT_EQ(lines[1].at("exit"), 4);
    EXPECT_EQ(lines[1].at("error"), "die Zeile braucht länger als 1 s (--line-timeout)");
    EXPECT_EQ(lines[1].at("id"), "slow");
    EXPECT_EQ(lines[2].at("exit"), 0);
    EXPECT_EQ(RunCli({"batch", "--line-timeout", "0"}).exit, 2);
}

#ifdef __linux__
/// Processes whose parent is `process`, as the system lists them.
std::vector<pid_t> ChildrenOf(pid_t process)
{
    std::vector<pid_t> children;
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        const std::string name = entry.path().filename().string();
        const std::string status = test::Content(entry.path().string() + "/stat");
        const std::size_t end = status.rfind(')');
        if (name.find_first_not_of("0123456789") == std::string::npos && end != std::string::npos &&
            std::stoi(status.substr(end + 4)) == process)
            children.push_back(std::stoi(name));
    }
    return children;
}

TEST(CliSafety, NoWorkerOutlivesItsParent)
{
    if (UnderWine())
        GTEST_SKIP() << "processes are Wine's there";
    const test::TemporaryFolder folder;
    test::Write(folder.File("in"), SlowLine(folder.File("a.png")));
    const pid_t parent = fork();
    if (parent == 0) {
        if (std::freopen(folder.File("in").c_str(), "r", stdin) == nullptr ||
            std::freopen(folder.File("out").c_str(), "w", stdout) == nullptr)
            _exit(1);
        ::execl(test::CliPath().c_str(), "tavelin-cli", "batch", "--jobs", "1", nullptr);
        _exit(1);
    }
    const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    std::vector<pid_t> workers;
    while (workers.empty() && std::chrono::steady_clock::now() < until) {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        workers = ChildrenOf(parent);
    }
    ASSERT_EQ(workers.size(), 1U);
    std::this_thread::sleep_for(std::chrono::milliseconds(300)); // it is at work
    ::kill(parent, SIGKILL);
    ::waitpid(parent, nullptr, 0);
    const auto gone = [&] { // or its new parent has not looked after it yet
        const std::string status = test::Content("/proc/" + std::to_string(workers[0]) + "/stat");
        return status.empty() || status[status.rfind(')') + 2] == 'Z';
    };
    while (!gone() && std::chrono::steady_clock::now() < until)
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_TRUE(gone());
}
#endif

} // namespace
