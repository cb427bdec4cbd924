// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Files that masks read.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

enum class FileOutcome {
    read,
    notFound,
    notAFile,   ///< a folder, pipe or device
    unreadable, ///< the system does not let it be read
    stopped,    ///< the one who takes the blocks has had enough
};

struct CFileRead {
    FileOutcome outcome = FileOutcome::read;
    std::string error; ///< German sentence that names the file, empty when it was read
};

/// Gets the file from its beginning in blocks of some 10 KB; false stops. `size` is that of the whole file, for showing
/// how far the work has come.
using FileBlockTaker = std::function<bool(std::string_view block, std::uint64_t size)>;

/// Reads an ordinary file; links are followed.
CFileRead ReadFileBlocks(const std::string& utf8Path, const FileBlockTaker& take);
