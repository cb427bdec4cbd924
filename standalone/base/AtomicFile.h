// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Files that are there whole or not at all.
#pragma once

#include "base/FileSystem.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace base
{

enum class FileStep { none, read, open, write, sync, rename, syncFolder };

/// What a file operation came to; converts to true when it was done.
struct FileResult {
    FileStep failed = FileStep::none;
    int code = 0;       ///< the system's error code
    std::string reason; ///< its text
    std::string path;   ///< the file that was meant

    explicit operator bool() const { return failed == FileStep::none; }
    /// German sentence for the user, empty when nothing failed.
    std::string Text() const;
};

/// Replaces the content of `path`: writes a temporary file beside it, syncs, renames and syncs the folder. At any
/// moment, power failure included, the file has its old or its new content. When the folder cannot be synced, which is
/// reported as FileStep::syncFolder, the new content is in place but may not outlast a power failure; after any other
/// failure the old content stays and the temporary file is removed.
///
/// A symbolic link stays one and its target is replaced; owner and mode of an existing file stay, a write-protected
/// one is refused, and so is what is not an ordinary file. Other hard links to it keep the old content.
///
/// The temporary file is `.NAME.PROCESS-NUMBER.tmp`. What a killed process left is removed by the next write to the
/// same file; what a running one is writing is not.
FileResult WriteFileAtomically(const std::string& path, std::string_view bytes,
                               const FileCalls& calls = SystemFileCalls());

/// The same for a file too large to be held at once: `next` gives it piece by piece, an empty one at its end.
FileResult WritePiecesAtomically(const std::string& path, const std::function<std::optional<std::string_view>()>& next,
                                 const FileCalls& calls = SystemFileCalls());

/// Reads a file into `bytes`. One of more than `limit` bytes is refused, and so is what is no file of the wanted kind.
FileResult ReadWholeFile(const std::string& path, std::string& bytes, std::size_t limit,
                         Source source = Source::ordinaryFile);

/// Whether something with this name exists; links are followed.
bool FileExists(const std::string& path);

/// Whether it exists and is neither folder, pipe nor device; links are followed.
bool IsOrdinaryFile(const std::string& path);

} // namespace base
