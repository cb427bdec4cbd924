// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "base/FileCache.h"

#include "base/AtomicFile.h"
#include "base/FileSystem.h"

#include <algorithm>
#include <system_error>
#include <utility>
#include <vector>

namespace base
{
namespace
{

constexpr double kKept = 0.9; // of the most, once something has to go

/// Files below the folder with their time and size; links are none.
template <class Take> void EachFile(const std::filesystem::path& folder, const Take& take)
{
    std::error_code failure;
    std::filesystem::recursive_directory_iterator entry(folder, failure);
    for (; !failure && entry != std::filesystem::recursive_directory_iterator(); entry.increment(failure)) {
        std::error_code gone;
        if (!entry->is_symlink(gone) && entry->is_regular_file(gone))
            take(entry->path(), entry->last_write_time(gone), entry->file_size(gone));
    }
}

} // namespace

FileCache::FileCache(const std::string& folder, std::uintmax_t mostBytes)
    : m_folder(folder.empty() ? std::nullopt : NativePath(folder)), m_most(mostBytes)
{
}

std::optional<std::filesystem::path> FileCache::PathOf(const std::string& name) const
{
    const bool plain = name.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-._/") == std::string::npos;
    if (!m_folder || !plain || name.empty() || name.front() == '/' || name.find("..") != std::string::npos)
        return std::nullopt;
    return *m_folder / name;
}

std::optional<std::string> FileCache::Get(const std::string& name, std::size_t mostBytes)
{
    const auto path = PathOf(name);
    std::string bytes;
    if (!path || ReadAll(Utf8Of(*path), bytes, mostBytes, Source::ordinaryFile) != 0)
        return std::nullopt;
    std::error_code ignored; // it will go sooner, nothing else
    std::filesystem::last_write_time(*path, std::filesystem::file_time_type::clock::now(), ignored);
    return bytes;
}

void FileCache::Put(const std::string& name, const std::string& bytes)
{
    const auto path = PathOf(name);
    if (!path || bytes.size() > m_most)
        return;
    if (!std::exchange(m_looked, true))
        Look();
    std::error_code ignored; // what is wrong shows when the file is written
    std::filesystem::create_directories(path->parent_path(), ignored);
    const std::uintmax_t before = std::filesystem::file_size(*path, ignored);
    if (!ignored)
        m_size -= std::min(m_size, before);
    if (WriteFileAtomically(Utf8Of(*path), bytes))
        m_size += bytes.size();
    if (m_size > m_most)
        MakeRoom();
}

void FileCache::Look()
{
    m_size = 0;
    EachFile(*m_folder, [this](const auto&, auto, std::uintmax_t size) { m_size += size; });
}

void FileCache::MakeRoom()
{
    struct File {
        std::filesystem::file_time_type used;
        std::filesystem::path path;
        std::uintmax_t size;
    };
    std::vector<File> files;
    EachFile(
        *m_folder,
        [&files](const auto& path, auto used, std::uintmax_t size) {
            files.push_back({used, path, size});
        });
    std::sort(files.begin(), files.end(), [](const File& a, const File& b) { return a.used < b.used; });
    m_size = 0;
    for (const File& file : files)
        m_size += file.size;
    for (const File& file : files) {
        if (static_cast<double>(m_size) <= kKept * static_cast<double>(m_most))
            return;
        std::error_code failure;
        if (std::filesystem::remove(file.path, failure))
            m_size -= file.size;
    }
}

} // namespace base
