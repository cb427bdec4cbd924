// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// A folder for what reads files, in memory where the system has such a place.
#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <string_view>

namespace fuzz
{

class ScratchFolder
{
  public:
    ScratchFolder()
    {
        const std::filesystem::path memory = "/dev/shm";
        const auto parent = std::filesystem::is_directory(memory) ? memory : std::filesystem::temp_directory_path();
        m_path = parent / ("ruvmod-fuzz-" + std::to_string(std::random_device()()));
        std::filesystem::create_directory(m_path);
    }
    ~ScratchFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    std::string Path() const { return m_path.string(); }
    std::string File(const std::string& name) const { return (m_path / name).string(); }
    void Write(const std::string& name, std::string_view bytes) const
    {
        std::ofstream(File(name), std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }
    void Clear() const
    {
        for (const auto& entry : std::filesystem::directory_iterator(m_path))
            std::filesystem::remove_all(entry.path());
    }

  private:
    std::filesystem::path m_path;
};

} // namespace fuzz
