// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "host/Files.h"

#include "base/AtomicFile.h"
#include "base/FileSystem.h"
#include "base/Sha256.h"

#include <filesystem>

namespace
{

/// What ends the reading when nothing failed; no code of a system.
constexpr int kStopped = -1;

CFileRead Failed(FileOutcome outcome, const std::string& path, const std::string& reason)
{
    return {outcome, "„" + path + "“ " + reason};
}

} // namespace

CFileRead ReadFileBlocks(const std::string& utf8Path, const FileBlockTaker& take)
{
    if (!base::FileExists(utf8Path))
        return Failed(FileOutcome::notFound, utf8Path, "gibt es nicht.");
    if (!base::IsOrdinaryFile(utf8Path))
        return Failed(FileOutcome::notAFile, utf8Path, "ist keine gewöhnliche Datei.");
    std::error_code ignored;
    const std::uintmax_t size = std::filesystem::file_size(*base::NativePath(utf8Path), ignored);
    const int error = base::ReadBlocks(utf8Path, base::Source::ordinaryFile, [&](std::string_view block) {
        return take(block, ignored ? 0 : size) ? 0 : kStopped;
    });
    if (error == kStopped)
        return Failed(FileOutcome::stopped, utf8Path, "wurde nicht zu Ende gelesen.");
    if (error != 0)
        return Failed(FileOutcome::unreadable, utf8Path,
                      "lässt sich nicht lesen: " + base::SystemErrorText(error) + ".");
    return {};
}

std::string RuvSha256(std::string_view bytes, const std::function<bool(double)>& goOn)
{
    return base::Sha256(bytes, goOn);
}

std::string WriteFilePieces(const std::string& utf8Path, const std::string& source, const FilePieces& next)
{
    const auto target = base::NativePath(utf8Path);
    const auto read = base::NativePath(source);
    std::error_code ignored;
    if (target && read && std::filesystem::equivalent(*target, *read, ignored))
        return "Die Datei „" + utf8Path + "“ ist die gelesene Datei selbst; sie wird nicht überschrieben.";
    return base::WritePiecesAtomically(utf8Path, next).Text();
}
