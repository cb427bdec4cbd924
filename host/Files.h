// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Files that masks read and write.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
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

/// SHA-256 of the bytes, 64 lower-case hexadecimal digits: tells in a report which file was read. `goOn` is asked every
/// few megabytes with the part done; after a no the result is empty.
std::string RuvSha256(std::string_view bytes, const std::function<bool(double)>& goOn = {});

/// The same of a file, however large; empty when it cannot be read, or when `goOn`, asked now and then with the part
/// that is read, says no.
std::string RuvFileSha256(const std::string& utf8Path, const std::function<bool(double)>& goOn);

/// Where a file lies that a case of this file names so: relative to its own, or in full.
std::string RuvPathBeside(const std::string& name, const std::string& caseFile);
/// How such a case names the file: relative to its own, in full where they lie on another drive or the case has none.
std::string RuvNameBeside(const std::string& utf8Path, const std::string& caseFile);

/// Gives a file piece by piece, an empty one at its end; a piece must last until the next is asked for. Nothing: the
/// file is not wanted any more.
using FilePieces = std::function<std::optional<std::string_view>()>;

/// Puts a file in place whole or not at all: it is written under another name beside it first. Never takes the place of
/// `source`, the file that the content comes from, under whichever name. The German sentence that says why it was not
/// written, empty when it was.
std::string WriteFilePieces(const std::string& utf8Path, const std::string& source, const FilePieces& next);
