// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>

namespace test
{

/// A folder of a test's own, removed with all it holds.
class TemporaryFolder
{
  public:
    TemporaryFolder()
    {
        static std::atomic<int> number = 0;
        const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
        m_path = std::filesystem::temp_directory_path() /
                 ("tavelin-test-" + std::to_string(now) + "-" + std::to_string(number++));
        std::filesystem::create_directory(m_path);
    }
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string Path() const { return m_path.string(); }
    std::string File(const std::string& name) const { return (m_path / name).string(); }
    std::string Folder(const std::string& name) const
    {
        std::filesystem::create_directory(m_path / name);
        return File(name);
    }
    void Write(const std::string& name, const std::string& bytes) const
    {
        std::ofstream(m_path / name, std::ios::binary) << bytes;
    }
    std::string Read(const std::string& name) const
    {
        std::ifstream file(m_path / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }
    std::set<std::string> Names() const
    {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(m_path)) {
            names.insert(entry.path().filename().string());
        }
        return names;
    }

  private:
    std::filesystem::path m_path;
};

} // namespace test
