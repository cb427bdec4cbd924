// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "base/AtomicFile.h"

#include "base/Utf.h"

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>
#include <vector>

namespace base
{
namespace
{

namespace fs = std::filesystem;

constexpr std::string_view kTemporaryEnd = ".tmp";

FileResult Failure(FileStep step, int code, const std::string& path)
{
    return {step, code, SystemErrorText(code), path};
}

/// Where a chain of symbolic links leads, whether or not something is there.
std::optional<fs::path> FollowLinks(fs::path path)
{
    constexpr int kMostLinks = 40;
    std::error_code error;
    for (int i = 0; i < kMostLinks; ++i) {
        if (!fs::is_symlink(fs::symlink_status(path, error)))
            return path;
        const fs::path next = fs::read_symlink(path, error);
        if (error)
            return std::nullopt;
        path = path.parent_path() / next; // an absolute link replaces the folder
    }
    return std::nullopt;
}

/// What all temporary files for a target begin with. A long name is cut, so that the whole stays below the 255 bytes
/// of most file systems.
std::string TemporaryBegin(const fs::path& target)
{
    constexpr std::size_t kMost = 200;
    std::string name = Utf8Of(target.filename());
    if (name.size() > kMost) {
        std::size_t cut = kMost;
        while (cut > 0 && ContinuesCharacter(name[cut]))
            --cut;
        name.resize(cut);
    }
    return "." + name + ".";
}

/// PROCESS-NUMBER
bool IsTemporaryMark(std::string_view mark)
{
    const std::size_t dash = mark.find('-');
    const auto isNumber = [](std::string_view text) {
        return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
    };
    return dash != std::string_view::npos && isNumber(mark.substr(0, dash)) && isNumber(mark.substr(dash + 1));
}

void RemoveLeftovers(const fs::path& folder, const std::string& begin)
{
    std::error_code error;
    std::vector<fs::path> leftovers;
    fs::directory_iterator entry(folder.empty() ? fs::path(".") : folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const std::string name = Utf8Of(entry->path().filename());
        if (name.size() > begin.size() + kTemporaryEnd.size() && name.starts_with(begin) &&
            name.ends_with(kTemporaryEnd) &&
            IsTemporaryMark(
                std::string_view(name).substr(begin.size(), name.size() - begin.size() - kTemporaryEnd.size())))
            leftovers.push_back(entry->path());
    }
    std::for_each(leftovers.begin(), leftovers.end(), RemoveIfAbandoned);
}

int WriteAll(FileHandle handle, std::string_view bytes, const FileCalls& calls)
{
    while (!bytes.empty()) {
        std::size_t written = 0;
        if (const int error = calls.write(handle, bytes.data(), bytes.size(), written))
            return error;
        if (written == 0 || written > bytes.size())
            return kErrorInputOutput;
        bytes.remove_prefix(written);
    }
    return 0;
}

} // namespace

std::string FileResult::Text() const
{
    if (*this)
        return {};
    const char* what = failed == FileStep::read         ? "kann nicht gelesen werden"
                       : failed == FileStep::syncFolder ? "ist geschrieben, aber nicht gegen Stromausfall gesichert"
                                                        : "kann nicht geschrieben werden";
    return "Die Datei „" + path + "“ " + what + ": " + reason + ".";
}

FileResult WriteFileAtomically(const std::string& path, std::string_view bytes, const FileCalls& calls)
{
    return WritePiecesAtomically(
        path, [&bytes] { return std::exchange(bytes, {}); }, calls);
}

FileResult WritePiecesAtomically(const std::string& path, const std::function<std::optional<std::string_view>()>& next,
                                 const FileCalls& calls)
{
    const auto native = NativePath(path);
    const auto target = native ? FollowLinks(*native) : std::nullopt;
    std::error_code ignored;
    const fs::file_status status = target ? fs::status(*target, ignored) : fs::file_status();
    if (!target || !target->has_filename() || (fs::exists(status) && !fs::is_regular_file(status)))
        return Failure(FileStep::open, kErrorInvalidPath, path);
    const fs::path folder = target->parent_path();
    const std::string targetName = Utf8Of(*target);
    const std::string begin = TemporaryBegin(*target);
    RemoveLeftovers(folder, begin);

    static std::atomic<unsigned> number = 0;
    constexpr int kMostNames = 100;
    std::string temporary;
    FileHandle handle = 0;
    int error = kErrorExists;
    for (int i = 0; i < kMostNames && error == kErrorExists; ++i) {
        const std::string mark = std::to_string(ProcessId()) + "-" + std::to_string(number++);
        temporary = Utf8Of(folder / *NativePath(begin + mark + std::string(kTemporaryEnd)));
        error = calls.open(temporary, targetName, handle);
    }
    if (error != 0)
        return Failure(FileStep::open, error, path);

    FileStep step = FileStep::write;
    for (bool more = true; more && error == 0;) {
        const std::optional<std::string_view> piece = next();
        more = piece && !piece->empty();
        error = !piece ? kErrorCancelled : more ? WriteAll(handle, *piece, calls) : 0;
    }
    if (error == 0) {
        step = FileStep::sync;
        error = calls.sync(handle);
    }
    if (error == 0) {
        // Still open: as long as it is, nobody takes the temporary file for abandoned.
        step = FileStep::rename;
        error = calls.rename(temporary, targetName);
    }
    calls.close(handle);
    if (error != 0) {
        calls.remove(temporary);
        return Failure(step, error, path);
    }
    if (const int folderError = calls.syncFolder(folder.empty() ? "." : Utf8Of(folder)))
        return Failure(FileStep::syncFolder, folderError, path);
    return {};
}

FileResult ReadWholeFile(const std::string& path, std::string& bytes, std::size_t limit, Source source)
{
    const int error = ReadAll(path, bytes, limit, source);
    return error == 0 ? FileResult() : Failure(FileStep::read, error, path);
}

bool FileExists(const std::string& path)
{
    std::error_code ignored;
    const auto native = NativePath(path);
    return native && fs::exists(*native, ignored);
}

bool IsOrdinaryFile(const std::string& path)
{
    std::error_code ignored;
    const auto native = NativePath(path);
    return native && fs::is_regular_file(*native, ignored);
}

} // namespace base
