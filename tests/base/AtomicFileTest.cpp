// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "base/AtomicFile.h"

#include "tests/support/TemporaryFolder.h"

#include <cerrno>
#include <functional>
#include <gtest/gtest.h>
#include <set>

#ifndef _WIN32
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace
{

using base::FileCalls;
using base::FileHandle;
using base::FileResult;
using base::FileStep;
using base::WriteFileAtomically;

class AtomicFile : public testing::Test
{
  protected:
    test::TemporaryFolder folder;
    std::string path = folder.File("fall.json");

    std::string Content(const std::string& name = "fall.json")
    {
        std::string bytes;
        const FileResult read = base::ReadWholeFile(folder.File(name), bytes, 1U << 20U);
        return read ? bytes : read.Text();
    }
};

TEST_F(AtomicFile, WritesAndReplaces)
{
    ASSERT_TRUE(WriteFileAtomically(path, "alt"));
    EXPECT_EQ(Content(), "alt");
    const std::string large(3'000'000, 'x');
    ASSERT_TRUE(WriteFileAtomically(path, large));
    std::string bytes;
    ASSERT_TRUE(base::ReadWholeFile(path, bytes, large.size()));
    EXPECT_EQ(bytes, large);
    EXPECT_FALSE(base::ReadWholeFile(path, bytes, large.size() - 1));
    ASSERT_TRUE(WriteFileAtomically(path, ""));
    EXPECT_EQ(Content(), "");
    EXPECT_EQ(folder.Names(), std::set<std::string>{"fall.json"});
}

TEST_F(AtomicFile, EveryFailedStepLeavesTheOldFileWhole)
{
    ASSERT_TRUE(WriteFileAtomically(path, "alt"));
    const FileCalls& system = base::SystemFileCalls();
    struct Case {
        FileStep step;
        int code;
        std::function<void(FileCalls&)> spoil;
    };
    int writes = 0;
    const Case cases[] = {
        {FileStep::open, EACCES, [](FileCalls& c) { c.open = [](auto&, auto&, auto&) { return EACCES; }; }},
        {FileStep::open, base::kErrorExists,
         [](FileCalls& c) { c.open = [](auto&, auto&, auto&) { return base::kErrorExists; }; }},
        {FileStep::write, ENOSPC, [](FileCalls& c) { c.write = [](auto, auto, auto, auto&) { return ENOSPC; }; }},
        // The disk fills up after a part has been written.
        {FileStep::write, ENOSPC,
         [&](FileCalls& c) {
             c.write = [&](FileHandle handle, const char* bytes, std::size_t, std::size_t& written) {
                 return ++writes == 3 ? ENOSPC : system.write(handle, bytes, 1, written);
             };
         }},
        {FileStep::write, base::kErrorInputOutput,
         [](FileCalls& c) { c.write = [](auto, auto, auto, std::size_t& written) { return written = 0, 0; }; }},
        {FileStep::sync, EIO, [](FileCalls& c) { c.sync = [](auto) { return EIO; }; }},
        {FileStep::rename, EIO, [](FileCalls& c) { c.rename = [](auto&, auto&) { return EIO; }; }},
    };
    for (const Case& failing : cases) {
        FileCalls calls = system;
        failing.spoil(calls);
        const FileResult result = WriteFileAtomically(path, "neuer Inhalt", calls);
        EXPECT_FALSE(result);
        EXPECT_EQ(result.failed, failing.step);
        EXPECT_EQ(result.code, failing.code);
        EXPECT_EQ(result.path, path);
        EXPECT_NE(result.Text().find("fall.json"), std::string::npos);
        EXPECT_EQ(Content(), "alt");
        EXPECT_EQ(folder.Names(), std::set<std::string>{"fall.json"}) << "the temporary file is still there";
    }

    FileCalls calls = system;
    calls.syncFolder = [](auto&) { return EIO; };
    const FileResult unsynced = WriteFileAtomically(path, "neuer Inhalt", calls);
    EXPECT_EQ(unsynced.failed, FileStep::syncFolder);
    EXPECT_EQ(Content(), "neuer Inhalt");
}

TEST_F(AtomicFile, StepsComeInOrderAndShortWritesAreContinued)
{
    const FileCalls& system = base::SystemFileCalls();
    std::string order;
    FileCalls calls = system;
    calls.open = [&](const auto& name, const auto& like, auto& handle) {
        order += 'o';
        return system.open(name, like, handle);
    };
    calls.write = [&](auto handle, auto bytes, auto size, auto& written) {
        order += 'w';
        return system.write(handle, bytes, std::min<std::size_t>(size, 2), written);
    };
    calls.sync = [&](auto handle) {
        order += 's';
        return system.sync(handle);
    };
    calls.rename = [&](const auto& from, const auto& to) {
        order += 'r';
        return system.rename(from, to);
    };
    calls.syncFolder = [&](const auto& name) {
        order += 'f';
        EXPECT_EQ(name, folder.Path());
        return system.syncFolder(name);
    };
    ASSERT_TRUE(WriteFileAtomically(path, "fünf!", calls));
    EXPECT_EQ(order, "owwwsrf");
    EXPECT_EQ(Content(), "fünf!");
}

TEST_F(AtomicFile, LeftoversOfTheDeadAreRemovedAndOnlyThose)
{
    // What a process that was killed left, what this one is just writing, and files of others.
    const std::string running = folder.File(".fall.json.1-7.tmp");
    FileHandle handle = 0;
    ASSERT_EQ(base::SystemFileCalls().open(running, path, handle), 0);
    folder.Write(".fall.json.1-8.tmp", "halb");
    folder.Write(".fall.json.4294967295-0.tmp", "");
    const std::set<std::string> others = {".fall.json.tmp", ".fall.json.1-x.tmp", ".anderer.json.1-8.tmp",
                                          "fall.json.1-8.tmp"};
    for (const std::string& name : others) {
        folder.Write(name, "fremd");
    }
    ASSERT_TRUE(WriteFileAtomically(path, "neu"));
    std::set<std::string> expected = others;
    expected.insert({"fall.json", ".fall.json.1-7.tmp"});
    EXPECT_EQ(folder.Names(), expected);

    base::SystemFileCalls().close(handle);
    ASSERT_TRUE(WriteFileAtomically(path, "neu"));
    expected.erase(".fall.json.1-7.tmp");
    EXPECT_EQ(folder.Names(), expected);
}

TEST_F(AtomicFile, OddNamesAndTargets)
{
    EXPECT_EQ(WriteFileAtomically(folder.Path(), "x").failed, FileStep::open);
    EXPECT_EQ(WriteFileAtomically(folder.File("fehlt/fall.json"), "x").failed, FileStep::open);
    EXPECT_EQ(WriteFileAtomically(folder.File(""), "x").failed, FileStep::open);
    EXPECT_EQ(WriteFileAtomically("", "x").failed, FileStep::open);
    EXPECT_EQ(WriteFileAtomically(path + std::string("\0.json", 6), "x").failed, FileStep::open);
    EXPECT_EQ(folder.Names(), std::set<std::string>());

    const std::string longest = std::string(249, 'n') + "ü.json"; // 256 bytes would be too many
    ASSERT_EQ(longest.size(), 256U);
    EXPECT_FALSE(WriteFileAtomically(folder.File(longest), "x"));
    const std::string fits = std::string(199, 'n') + "ü" + std::string(54, 'n');
    ASSERT_EQ(fits.size(), 255U);
    EXPECT_TRUE(WriteFileAtomically(folder.File(fits), "x"));
    EXPECT_EQ(Content(fits), "x");
}

#ifndef _WIN32

mode_t ModeOf(const std::string& path)
{
    struct stat status = {};
    EXPECT_EQ(lstat(path.c_str(), &status), 0);
    return status.st_mode;
}

TEST_F(AtomicFile, KeepsModeAndSymbolicLinks)
{
    ASSERT_TRUE(WriteFileAtomically(path, "alt"));
    for (const mode_t mode : {0600U, 0644U, 0666U, 0640U}) {
        ASSERT_EQ(chmod(path.c_str(), mode), 0);
        ASSERT_TRUE(WriteFileAtomically(path, "neu"));
        EXPECT_EQ(ModeOf(path) & 07777U, mode);
    }

    // A link in another folder to a link beside the file, and one to a file that is still missing.
    const std::string other = folder.Folder("anderswo");
    ASSERT_EQ(symlink("fall.json", folder.File("naher").c_str()), 0);
    ASSERT_EQ(symlink("../naher", (other + "/ferner").c_str()), 0);
    ASSERT_TRUE(WriteFileAtomically(other + "/ferner", "durch den Verweis"));
    EXPECT_EQ(Content(), "durch den Verweis");
    EXPECT_TRUE(S_ISLNK(ModeOf(other + "/ferner")));
    EXPECT_TRUE(S_ISLNK(ModeOf(folder.File("naher"))));
    ASSERT_EQ(symlink("../spaeter.json", (other + "/offen").c_str()), 0);
    ASSERT_TRUE(WriteFileAtomically(other + "/offen", "erst jetzt"));
    EXPECT_EQ(Content("spaeter.json"), "erst jetzt");
    ASSERT_EQ(symlink("kreis", folder.File("kreis").c_str()), 0);
    EXPECT_EQ(WriteFileAtomically(folder.File("kreis"), "x").failed, FileStep::open);
}

TEST_F(AtomicFile, RefusesWhatIsNoOrdinaryFileOrWriteProtected)
{
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    EXPECT_EQ(WriteFileAtomically(path, "x").failed, FileStep::open);
    EXPECT_TRUE(S_ISFIFO(ModeOf(path)));

    // Reading waits for none of these either.
    std::string bytes;
    EXPECT_EQ(base::ReadWholeFile(path, bytes, 100).code, EINVAL);
    EXPECT_EQ(base::ReadWholeFile("/dev/zero", bytes, 100).code, EINVAL);
    EXPECT_EQ(base::ReadWholeFile(folder.Path(), bytes, 100).code, EISDIR);
    ASSERT_EQ(symlink("kreis", folder.File("kreis").c_str()), 0);
    EXPECT_EQ(base::ReadWholeFile(folder.File("kreis"), bytes, 100).reason, "zu viele Verknüpfungen");

    folder.Write("fest.json", "alt");
    const std::string fixed = folder.File("fest.json");
    ASSERT_EQ(chmod(fixed.c_str(), 0444), 0);
    if (access(fixed.c_str(), W_OK) != 0) { // the superuser may write everything
        EXPECT_EQ(WriteFileAtomically(fixed, "neu").code, EACCES);
        EXPECT_EQ(Content("fest.json"), "alt");
    }
}

#endif

} // namespace
