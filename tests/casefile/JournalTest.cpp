// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "casefile/Journal.h"

#include "base/AtomicFile.h"
#include "base/Deflate.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <set>

#ifndef _WIN32
#include <csignal>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace
{

namespace fs = std::filesystem;
using namespace base;
using namespace casefile;
using Clock = std::chrono::steady_clock;

class JournalTest : public ::testing::Test
{
  protected:
    std::string Folder() const { return Utf8Of(m_folder); }
    std::vector<fs::path> Files() const
    {
        std::vector<fs::path> files;
        if (fs::exists(m_folder))
            for (const auto& entry : fs::directory_iterator(m_folder))
                files.push_back(entry.path());
        std::sort(files.begin(), files.end());
        return files;
    }
    /// As a crash would leave it: the files of a living journal, copied without its lock.
    fs::path CopyAsLeftBehind(const std::string& name) const
    {
        for (const fs::path& file : Files())
            if (file.extension() != ".lock")
                fs::copy_file(file, m_folder / (name + file.extension().string()));
        return m_folder / name;
    }
    static std::string Read(const fs::path& path)
    {
        std::string bytes;
        EXPECT_TRUE(ReadWholeFile(Utf8Of(path), bytes, 1U << 28U));
        return bytes;
    }
    static void Overwrite(const fs::path& path, const std::string& bytes)
    {
        std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }

    test::TemporaryFolder m_temporary;
    const fs::path m_folder = fs::path(m_temporary.Path()) / "state" / "tavelin";
};

TEST(Crc32, KnownValues)
{
    EXPECT_EQ(Crc32("123456789"), 0xCBF43926U); // the check value of the polynomial
    EXPECT_EQ(Crc32(""), 0U);
}

TEST_F(JournalTest, IsThereWhileItsDocumentRunsAndGoneAfterwards)
{
    {
        Journal journal(Folder());
        EXPECT_TRUE(Files().empty());
        journal.Put({"/fälle/a.json", "Müller ./. Schulze\n\"x\"", "{\"case\": 1}\n"});
        journal.Flush();
        EXPECT_EQ(journal.Error(), "");
        EXPECT_EQ(Files().size(), 2U);
        journal.Put({"/fälle/a.json", "", "{\"case\": 2}\n"});
        journal.Flush();
        EXPECT_EQ(Files().size(), 3U);
        EXPECT_TRUE(FindJournals(Folder()).empty()) << "its program is running";
#ifndef _WIN32
        EXPECT_EQ(fs::status(m_folder).permissions() & (fs::perms::group_all | fs::perms::others_all), fs::perms::none);
#endif

        CopyAsLeftBehind("crashed");
        const auto found = FindJournals(Folder());
        ASSERT_EQ(found.size(), 1U);
        EXPECT_EQ(found[0].content.text, "{\"case\": 2}\n");
        EXPECT_EQ(found[0].content.casePath, "/fälle/a.json");
        EXPECT_EQ(found[0].sequence, 2U);
        RemoveJournal(found[0]);
        EXPECT_TRUE(FindJournals(Folder()).empty());
    }
    EXPECT_TRUE(Files().empty());
}

TEST_F(JournalTest, ASavedCaseIsNotOffered)
{
    Journal journal(Folder());
    journal.Clear();
    journal.Flush();
    EXPECT_TRUE(Files().empty()) << "nothing to clear";
    journal.Put({"", "", "one"});
    journal.Flush();
    journal.Clear();
    journal.Flush();
    CopyAsLeftBehind("crashed");
    EXPECT_TRUE(FindJournals(Folder()).empty());
    for (const fs::path& file : Files())
        EXPECT_NE(file.stem(), "crashed") << "an empty journal is tidied up";
}

TEST_F(JournalTest, TheNewestWholeFileIsTakenWhateverTheFileTimesSay)
{
    fs::path left;
    {
        Journal journal(Folder());
        for (const char* text : {"first", "second", "third"}) {
            journal.Put({"", "", text});
            journal.Flush();
        }
        left = CopyAsLeftBehind("crashed");
    }
    const fs::path a = left.string() + ".a"; // third
    const fs::path b = left.string() + ".b"; // second
    fs::last_write_time(b, fs::last_write_time(a) + std::chrono::hours(1));
    ASSERT_EQ(FindJournals(Folder()).at(0).content.text, "third");

    // Damage the newer file in every way a crash can: cut off anywhere, or a changed byte.
    const std::string whole = Read(a);
    for (std::size_t size = 0; size < whole.size(); ++size) {
        Overwrite(a, whole.substr(0, size));
        ASSERT_EQ(FindJournals(Folder()).at(0).content.text, "second") << "cut to " << size;
    }
    std::mt19937 random(1);
    for (int run = 0; run < 200; ++run) {
        std::string damaged = whole;
        damaged[random() % damaged.size()] ^= static_cast<char>(1U << random() % 8U);
        Overwrite(a, damaged);
        ASSERT_EQ(FindJournals(Folder()).at(0).content.text, "second");
    }
    Overwrite(a, whole + "more");
    EXPECT_EQ(FindJournals(Folder()).at(0).content.text, "second");
    Overwrite(b, std::string(100, '\0'));
    EXPECT_TRUE(FindJournals(Folder()).empty());
}

TEST_F(JournalTest, WhatCannotBeReadIsKeptAsideAndForeignFilesAreLeftAlone)
{
    {
        Journal journal(Folder());
        journal.Put({"", "", "case"});
        journal.Flush();
        CopyAsLeftBehind("77-ab");
    }
    const std::string whole = Read(m_folder / "77-ab.a");
    fs::remove(m_folder / "77-ab.a");
    std::string newer = whole;
    newer.replace(newer.find(" 1 "), 3, " 2 ");
    const std::map<std::string, std::string> contents{
        {"1-a.a", std::string(100, '\0')},            // as power failures leave files
        {"2-b.a", whole.substr(0, whole.size() - 1)}, // nothing whole beside it
        {"3-c.b", newer},
        {"4-d.a", newer}, // perhaps newer than what can be read
        {"4-d.b", whole},
        {"5-e.a", whole.substr(0, 20)}, // the write that the crash cut off
        {"5-e.b", whole},
        {"notes.a", "a text of the user's"},
        {"notes.lock", ""},
        {"recent.ini", "[General]"},
    };
    for (const auto& [name, bytes] : contents)
        Overwrite(m_folder / name, bytes);
    fs::create_directory(m_folder / "6-f.a"); // an error when read

    std::vector<KeptJournalFile> kept;
    const auto found = FindJournals(Folder(), &kept);
    std::set<std::string> names;
    for (const FoundJournal& journal : found)
        names.insert(fs::path(journal.path).filename().string());
    EXPECT_EQ(names, (std::set<std::string>{"4-d", "5-e"}));
    std::map<std::string, std::string> reasons;
    for (const KeptJournalFile& file : kept) {
        EXPECT_TRUE(fs::exists(file.path)) << file.path;
        reasons[fs::path(file.path).filename().string()] = file.reason;
    }
    EXPECT_EQ(reasons, (std::map<std::string, std::string>{
                           {"1-a.a.defekt", "ist beschädigt"},
                           {"2-b.a.defekt", "ist beschädigt"},
                           {"3-c.b.defekt", "stammt von einer neueren Programmversion"},
                           {"4-d.a.defekt", "stammt von einer neueren Programmversion"},
                           {"6-f.a.defekt", "kann nicht gelesen werden: ist ein Ordner"},
                       }));
    EXPECT_EQ(Read(m_folder / "2-b.a.defekt"), contents.at("2-b.a"));
    for (const FoundJournal& journal : found)
        RemoveJournal(journal);
    EXPECT_EQ(Read(m_folder / "notes.a"), contents.at("notes.a"));
    EXPECT_TRUE(fs::exists(m_folder / "notes.lock"));
    EXPECT_TRUE(fs::exists(m_folder / "recent.ini"));
    EXPECT_EQ(Files().size(), 5U + 3U) << "the read ones are gone, the others are all there";
    EXPECT_TRUE(FindJournals(Folder(), &kept).empty());
    EXPECT_EQ(kept.size(), 5U) << "said once";
}

#ifndef _WIN32
TEST_F(JournalTest, IsForTheUserAlone)
{
    fs::create_directories(m_folder);
    fs::permissions(m_folder, fs::perms(0755));
    const mode_t before = umask(0);
    {
        Journal journal(Folder());
        journal.Put({"", "", "one"});
        journal.Flush();
        journal.Put({"", "", "two"});
        journal.Flush();
        EXPECT_EQ(fs::status(m_folder).permissions(), fs::perms(0700));
        for (const fs::path& file : Files())
            EXPECT_EQ(fs::status(file).permissions(), fs::perms(0600)) << file;
        EXPECT_EQ(Files().size(), 3U);
    }
    umask(before);
}

TEST_F(JournalTest, AJournalWithoutPermissionIsKept)
{
    if (geteuid() == 0)
        GTEST_SKIP() << "the superuser may read everything";
    fs::create_directories(m_folder);
    Overwrite(m_folder / "1-a.a", "x");
    fs::permissions(m_folder / "1-a.a", fs::perms::none);
    std::vector<KeptJournalFile> kept;
    EXPECT_TRUE(FindJournals(Folder(), &kept).empty());
    EXPECT_EQ(kept.at(0).reason, "kann nicht gelesen werden: Zugriff verweigert");
    EXPECT_TRUE(fs::exists(m_folder / "1-a.a.defekt"));
}
#endif

TEST_F(JournalTest, AFailedWriteIsReportedAndLeavesTheOtherFileWhole)
{
    FileCalls calls = SystemFileCalls();
    std::atomic<bool> diskFull = false;
    calls.write = [&](FileHandle handle, const char* bytes, std::size_t size, std::size_t& written) {
        if (!diskFull)
            return SystemFileCalls().write(handle, bytes, size, written);
        return size <= 3 ? kErrorInputOutput : SystemFileCalls().write(handle, bytes, 3, written);
    };
    Journal journal(Folder(), calls);
    journal.Put({"", "", "good"});
    journal.Flush();
    diskFull = true;
    for (const char* text : {"lost", "lost too"}) {
        journal.Put({"", "", text});
        journal.Flush();
        EXPECT_NE(journal.Error(), "");
    }
    diskFull = false;
    CopyAsLeftBehind("crashed");
    EXPECT_EQ(FindJournals(Folder()).at(0).content.text, "good");
    journal.Put({"", "", "again"});
    journal.Flush();
    EXPECT_EQ(journal.Error(), "");
}

TEST_F(JournalTest, AFolderThatCannotBeMadeIsReported)
{
    fs::create_directories(m_folder);
    Overwrite(m_folder / "file", "");
    Journal journal(Folder() + "/file/state");
    journal.Put({"", "", "text"});
    journal.Flush();
    EXPECT_NE(journal.Error(), "");
}

#ifndef _WIN32
TEST_F(JournalTest, KilledProgramLosesAtMostASecond)
{
    std::mt19937 random(2);
    for (int run = 0; run < 6; ++run) {
        int pipe[2];
        ASSERT_EQ(::pipe(pipe), 0);
        const pid_t child = fork();
        if (child == 0) {
            Journal journal(Folder());
            for (int edit = 1;; ++edit) {
                journal.Put({"", "", std::to_string(edit) + " " + std::string(200'000, 'x')});
                if (::write(pipe[1], &edit, sizeof edit) != sizeof edit)
                    _exit(1);
                usleep(3000);
            }
        }
        ::close(pipe[1]);
        struct Edit {
            int number;
            Clock::time_point time;
        };
        std::vector<Edit> edits;
        const auto end = Clock::now() + std::chrono::milliseconds(300 + random() % 1000);
        int number = 0;
        while (Clock::now() < end && ::read(pipe[0], &number, sizeof number) == sizeof number)
            edits.push_back({number, Clock::now()});
        const auto killed = Clock::now();
        ASSERT_EQ(kill(child, SIGKILL), 0);
        ASSERT_EQ(waitpid(child, nullptr, 0), child);
        ::close(pipe[0]);

        const auto found = FindJournals(Folder());
        ASSERT_EQ(found.size(), 1U) << "run " << run;
        const std::string& text = found[0].content.text;
        const int recovered = std::stoi(text);
        EXPECT_EQ(text, std::to_string(recovered) + " " + std::string(200'000, 'x'));
        for (const Edit& edit : edits) {
            if (killed - edit.time > std::chrono::seconds(1)) {
                EXPECT_GE(recovered, edit.number);
            }
        }
        RemoveJournal(found[0]);
        EXPECT_TRUE(Files().empty());
    }
}
#endif

} // namespace
