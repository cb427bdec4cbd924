// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The few things of the operating system that files of the case and of the settings need. Paths and texts are UTF-8.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace base
{

/// A path of the platform; nothing for text that cannot be one.
std::optional<std::filesystem::path> NativePath(const std::string& utf8);
std::string Utf8Of(const std::filesystem::path& path);

using FileHandle = std::intptr_t;

/// The calls that an atomic write is made of; a test replaces any of them. All but `close` return 0 or the system's
/// error code.
struct FileCalls {
    /// Creates `path` for writing with owner and mode of the existing file `like`; an error when it exists already,
    /// and when `like` is write-protected. With an empty `like` the file is for the user alone. The file counts as
    /// abandoned as soon as its process ends.
    std::function<int(const std::string& path, const std::string& like, FileHandle& handle)> open;
    /// May write less than asked.
    std::function<int(FileHandle, const char* bytes, std::size_t size, std::size_t& written)> write;
    std::function<int(FileHandle)> sync;
    /// Replaces `to`.
    std::function<int(const std::string& from, const std::string& to)> rename;
    std::function<int(const std::string& folder)> syncFolder;
    std::function<void(FileHandle)> close;
    std::function<int(const std::string& path)> remove;
};

/// The calls of this system.
const FileCalls& SystemFileCalls();

/// What FileCalls::open returns for a file that exists.
extern const int kErrorExists;
/// A path that cannot be a file's, or names something else.
extern const int kErrorInvalidPath;
/// A call that claims success and did nothing.
extern const int kErrorInputOutput;
extern const int kErrorTooLarge;
/// What was to be written is not wanted any more.
extern const int kErrorCancelled;

enum class Source {
    any,          ///< also a pipe or a device, to its end
    ordinaryFile, ///< links are followed; anything else is an error and never waited for
};
/// Gets a file block by block; anything but 0 ends the reading with this code.
using BlockTaker = std::function<int(std::string_view block)>;
int ReadBlocks(const std::string& path, Source source, const BlockTaker& take);
/// Reads to the end; more than `limit` bytes are an error. Returns 0 or the error code.
int ReadAll(const std::string& path, std::string& bytes, std::size_t limit, Source source);

/// German for the frequent errors, otherwise in the system's words.
std::string SystemErrorText(int code);

/// Removes a file that FileCalls::open created when the process that did is gone.
void RemoveIfAbandoned(const std::filesystem::path& path);

std::int64_t ProcessId();

/// Creates the folder with those above it when it is not there, and in any case leaves it to the user alone.
void MakePrivateFolder(const std::filesystem::path& folder);

/// The user's folder for settings of this program, empty when the environment names none.
std::string UserConfigFolder();
/// The user's folder for what a program keeps between its runs, empty when the environment names none.
std::string UserStateFolder();
/// The user's folder for what can be had again, empty when the environment names none.
std::string UserCacheFolder();

} // namespace base
