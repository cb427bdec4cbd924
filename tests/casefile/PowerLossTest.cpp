// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What a power failure may leave, after every single step of saving and of the journal. A disk is simulated that
// forgets as much as POSIX lets it: bytes that were not synced, in whole or from the middle on, and names from any
// point since the folder was synced.
#include "base/AtomicFile.h"
#include "casefile/Journal.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <mutex>
#include <vector>

namespace
{

using Image = std::map<std::string, std::string>; ///< files by name

class Disk
{
  public:
    /// Gets every image that the disk may hold after a step.
    std::function<void(const Image&)> afterPowerLoss;
    int steps = 0;

    base::FileCalls Calls()
    {
        base::FileCalls calls;
        calls.open = [this](const std::string& path, const std::string&, base::FileHandle& handle) {
            if (m_names.contains(path))
                return base::kErrorExists;
            handle = static_cast<base::FileHandle>(m_files.size());
            m_files.emplace_back();
            return Name(path, m_files.size() - 1);
        };
        calls.write = [this](base::FileHandle handle, const char* bytes, std::size_t size, std::size_t& written) {
            constexpr std::size_t kMost = 1000; // also shows what happens between two writes
            written = std::min(size, kMost);
            m_files[static_cast<std::size_t>(handle)].bytes.append(bytes, written);
            return Step();
        };
        calls.sync = [this](base::FileHandle handle) {
            File& file = m_files[static_cast<std::size_t>(handle)];
            file.synced = file.bytes.size();
            return Step();
        };
        calls.rename = [this](const std::string& from, const std::string& to) {
            const std::size_t file = m_names.at(from);
            m_names.erase(from);
            m_names[to] = file;
            m_unsynced.push_back([=](Names& names) {
                names.erase(from);
                names[to] = file;
            });
            return Step();
        };
        calls.syncFolder = [this](const std::string&) {
            m_unsynced.clear();
            m_durable = m_names;
            return Step();
        };
        calls.close = [](base::FileHandle) {};
        calls.remove = [this](const std::string& path) {
            if (m_names.erase(path) == 0)
                return base::kErrorInvalidPath;
            m_unsynced.push_back([=](Names& names) { names.erase(path); });
            return Step();
        };
        return calls;
    }

    /// A file that has been there for long.
    void Keep(const std::string& path, const std::string& bytes)
    {
        m_files.push_back({bytes, bytes.size()});
        m_names[path] = m_durable[path] = m_files.size() - 1;
    }

  private:
    struct File {
        std::string bytes;
        std::size_t synced = 0;
    };
    using Names = std::map<std::string, std::size_t>;

    int Name(const std::string& path, std::size_t file)
    {
        m_names[path] = file;
        m_unsynced.push_back([=](Names& names) { names[path] = file; });
        return Step();
    }

    int Step()
    {
        ++steps;
        Names names = m_durable;
        for (std::size_t kept = 0; kept <= m_unsynced.size(); ++kept) {
            if (kept > 0)
                m_unsynced[kept - 1](names);
            for (const double share : {0.0, 0.5, 1.0}) {
                Image image;
                for (const auto& [path, number] : names) {
                    const File& file = m_files[number];
                    const auto lost =
                        static_cast<std::size_t>(static_cast<double>(file.bytes.size() - file.synced) * share);
                    image[path] = file.bytes.substr(0, file.bytes.size() - lost);
                }
                afterPowerLoss(image);
            }
        }
        return 0;
    }

    std::vector<File> m_files;
    Names m_names;
    Names m_durable;
    std::vector<std::function<void(Names&)>> m_unsynced;
};

TEST(PowerLoss, TheFileHoldsTheOldOrTheNewCaseWhole)
{
    const std::string path = "/nirgends/fall.json";
    const std::string texts[] = {std::string(3500, 'a'), std::string(2500, 'b'), std::string(1200, 'c')};
    Disk disk;
    disk.Keep(path, texts[0]);
    std::size_t saving = 1;
    int images = 0, olds = 0, news = 0;
    disk.afterPowerLoss = [&](const Image& image) {
        ++images;
        const auto file = image.find(path);
        ASSERT_NE(file, image.end());
        olds += file->second == texts[saving - 1];
        news += file->second == texts[saving];
        ASSERT_TRUE(file->second == texts[saving - 1] || file->second == texts[saving])
            << file->second.size() << " bytes";
    };
    for (; saving < std::size(texts); ++saving)
        ASSERT_TRUE(base::WriteFileAtomically(path, texts[saving], disk.Calls()));
    EXPECT_GT(images, 40);
    EXPECT_GT(olds, 0);
    EXPECT_GT(news, 0);
}

TEST(PowerLoss, TheSimulatedDiskFindsASaverThatDoesNotSync)
{
    const std::string path = "/nirgends/fall.json";
    Disk disk;
    disk.Keep(path, "alt");
    bool torn = false;
    disk.afterPowerLoss = [&](const Image& image) {
        const auto file = image.find(path);
        torn = torn || file == image.end() || (file->second != "alt" && file->second != "neu und lang");
    };
    base::FileCalls calls = disk.Calls();
    calls.sync = [](base::FileHandle) { return 0; };
    ASSERT_TRUE(base::WriteFileAtomically(path, "neu und lang", calls));
    EXPECT_TRUE(torn);
}

TEST(PowerLoss, TheJournalHoldsTheLastCaseOrTheOneBefore)
{
    const test::TemporaryFolder temporary;
    const std::string folder = temporary.Folder("state");
    const std::string after = temporary.Folder("after");
    std::mutex mutex;
    int writing = 0, images = 0;
    std::string fault;
    Disk disk;
    disk.afterPowerLoss = [&](const Image& image) {
        const std::lock_guard lock(mutex);
        ++images;
        for (const auto& entry : std::filesystem::directory_iterator(after))
            std::filesystem::remove(entry.path());
        for (const auto& [path, bytes] : image)
            std::ofstream(after + "/" + std::filesystem::path(path).filename().string(), std::ios::binary) << bytes;
        const auto found = casefile::FindJournals(after);
        const int held = found.size() == 1 ? std::stoi(found[0].content.text) : 0;
        if (writing > 1 && held != writing - 1 && held != writing)
            fault += "put " + std::to_string(writing) + " leaves " + std::to_string(held) + "\n";
    };
    {
        casefile::Journal journal(folder, disk.Calls());
        for (int put = 1; put <= 6; ++put) {
            {
                const std::lock_guard lock(mutex);
                writing = put;
            }
            journal.Put({"", "", std::to_string(put) + " " + std::string(1500, 'x')});
            journal.Flush();
            ASSERT_EQ(journal.Error(), "");
        }
        const std::lock_guard lock(mutex);
        disk.afterPowerLoss = [](const Image&) {}; // the clean end removes it
    }
    EXPECT_EQ(fault, "");
    EXPECT_GT(images, 60);
}

} // namespace
