// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Small files that can be had again from elsewhere, kept in a folder up to a size; the least recently used go first.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace base
{

class FileCache
{
  public:
    /// The folder is made when something is kept. It belongs to the cache: old files in it are removed.
    FileCache(const std::string& folder, std::uintmax_t mostBytes);

    /// Names are of the characters a-z, 0-9, '-', '.' and '_', with '/' between folders; what is wrong with a file is
    /// the same as its being missing.
    std::optional<std::string> Get(const std::string& name, std::size_t mostBytes);
    void Put(const std::string& name, const std::string& bytes);

    /// What it keeps, as far as it has looked.
    std::uintmax_t Size() const { return m_size; }

  private:
    std::optional<std::filesystem::path> PathOf(const std::string& name) const;
    void Look();
    void MakeRoom();

    std::optional<std::filesystem::path> m_folder;
    std::uintmax_t m_most;
    std::uintmax_t m_size = 0;
    bool m_looked = false;
};

} // namespace base
