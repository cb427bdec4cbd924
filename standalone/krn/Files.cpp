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

std::string RuvFileSha256(const std::string& utf8Path, const std::function<bool(double)>& goOn)
{
    constexpr std::uint64_t kReports = 200;
    base::Sha256Sum sum;
    std::uint64_t read = 0;
    std::uint64_t reported = 0;
    const CFileRead file = ReadFileBlocks(utf8Path, [&](std::string_view block, std::uint64_t size) {
        sum.Add(block);
        read += block.size();
        if (read - reported <= size / kReports)
            return true;
        reported = read;
        return goOn(size == 0 ? 1.0 : static_cast<double>(read) / static_cast<double>(size));
    });
    return file.outcome == FileOutcome::read ? sum.Digits() : std::string();
}

std::string RuvPathBeside(const std::string& name, const std::string& caseFile)
{
    const auto named = base::NativePath(name);
    const auto file = base::NativePath(caseFile);
    if (!named || !file || caseFile.empty() || named->is_absolute())
        return name;
    return base::Utf8Of((std::filesystem::absolute(*file).parent_path() / *named).lexically_normal());
}

std::string RuvNameBeside(const std::string& utf8Path, const std::string& caseFile)
{
    const auto path = base::NativePath(utf8Path);
    const auto file = base::NativePath(caseFile);
    if (!path || !file)
        return utf8Path;
    const auto absolute = std::filesystem::absolute(*path).lexically_normal();
    const auto relative =
        caseFile.empty()
            ? std::filesystem::path()
            : absolute.lexically_relative(std::filesystem::absolute(*file).lexically_normal().parent_path());
    const std::u8string name = (relative.empty() ? absolute : relative).generic_u8string();
    return {name.begin(), name.end()};
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
