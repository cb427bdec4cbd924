// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// That a program works on a case file, for the user's other programs to see: a locked file in the state folder.
#pragma once

#include "base/FileSystem.h"

#include <memory>
#include <string>

namespace casefile
{

class FileClaim
{
  public:
    /// Claims the file, by whatever name it is reached; null when another claim stands. A claim ends with its process.
    static std::unique_ptr<FileClaim> Take(const std::string& stateFolder, const std::string& file);
    ~FileClaim();
    FileClaim(const FileClaim&) = delete;
    FileClaim& operator=(const FileClaim&) = delete;

  private:
    FileClaim(std::string lock, base::FileHandle handle) : m_lock(std::move(lock)), m_handle(handle) {}

    std::string m_lock;
    base::FileHandle m_handle;
};

} // namespace casefile
