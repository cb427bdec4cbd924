// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "base/FileSystem.h"

#include "base/Utf.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <string_view>
#include <utility>
#include <vector>

#ifdef _WIN32
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace base
{

static constexpr std::size_t kReadBlock = std::size_t{1} << 16U;

#ifdef _WIN32

namespace
{

int LastError()
{
    return static_cast<int>(GetLastError());
}

int Open(const std::string& path, const std::string&, FileHandle& handle)
{
    // Others may not write to or remove the file while it is open, but this process may rename it.
    const auto wide = WideFromUtf8(path);
    const HANDLE file = CreateFileW(wide ? wide->c_str() : L"", GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_DELETE,
                                    nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return LastError();
    handle = reinterpret_cast<FileHandle>(file);
    return 0;
}

int Write(FileHandle handle, const char* bytes, std::size_t size, std::size_t& written)
{
    constexpr std::size_t kChunk = std::size_t{1} << 24U;
    DWORD done = 0;
    const auto chunk = static_cast<DWORD>(std::min(size, kChunk));
    if (!WriteFile(reinterpret_cast<HANDLE>(handle), bytes, chunk, &done, nullptr))
        return LastError();
    written = done;
    return 0;
}

int Sync(FileHandle handle)
{
    return FlushFileBuffers(reinterpret_cast<HANDLE>(handle)) ? 0 : LastError();
}

int Rename(const std::string& from, const std::string& to)
{
    const auto source = WideFromUtf8(from);
    const auto target = WideFromUtf8(to);
    if (!source || !target)
        return ERROR_INVALID_NAME;
    // Virus scanners and indexers open fresh files for moments.
    int error = 0;
    for (int attempt = 0; attempt < 10; ++attempt) {
        if (MoveFileExW(source->c_str(), target->c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
            return 0;
        error = LastError();
        if (error != ERROR_SHARING_VIOLATION && error != ERROR_ACCESS_DENIED)
            break;
        Sleep(20);
    }
    return error;
}

int SyncFolder(const std::string&)
{
    return 0; // MOVEFILE_WRITE_THROUGH has done it
}

void Close(FileHandle handle)
{
    CloseHandle(reinterpret_cast<HANDLE>(handle));
}

int Remove(const std::string& path)
{
    const auto wide = WideFromUtf8(path);
    return wide && DeleteFileW(wide->c_str()) ? 0 : LastError();
}

std::string EnvironmentVariable(const wchar_t* name)
{
    const wchar_t* value = _wgetenv(name);
    return value ? Utf8FromWide(value) : std::string();
}

} // namespace

const int kErrorExists = ERROR_FILE_EXISTS;
const int kErrorInvalidPath = ERROR_INVALID_NAME;
const int kErrorTooLarge = ERROR_FILE_TOO_LARGE;
const int kErrorCancelled = ERROR_CANCELLED;
const int kErrorInputOutput = ERROR_WRITE_FAULT;

std::optional<std::filesystem::path> NativePath(const std::string& utf8)
{
    const auto wide = WideFromUtf8(utf8);
    if (!wide || utf8.find('\0') != std::string::npos)
        return std::nullopt;
    return std::filesystem::path(*wide);
}

std::string Utf8Of(const std::filesystem::path& path)
{
    return Utf8FromWide(path.native());
}

int ReadBlocks(const std::string& path, Source source, const BlockTaker& take)
{
    const auto wide = WideFromUtf8(path);
    const HANDLE file = CreateFileW(wide ? wide->c_str() : L"", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE,
                                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return LastError();
    if (source == Source::ordinaryFile && GetFileType(file) != FILE_TYPE_DISK) {
        CloseHandle(file);
        return kErrorInvalidPath;
    }
    std::vector<char> block(kReadBlock);
    DWORD count = 0;
    int error = 0;
    do {
        // A pipe ends with an error of its own.
        if (!ReadFile(file, block.data(), static_cast<DWORD>(block.size()), &count, nullptr)) {
            error = LastError() == ERROR_BROKEN_PIPE ? 0 : LastError();
            break;
        }
        error = count > 0 ? take({block.data(), count}) : 0;
    } while (count > 0 && error == 0);
    CloseHandle(file);
    return error;
}

std::string SystemErrorText(int code)
{
    std::array<wchar_t, 512> text{};
    DWORD length = 0;
    for (const DWORD language : {DWORD{MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN)}, DWORD{0}})
        if (length == 0)
            length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                    static_cast<DWORD>(code), language, text.data(), text.size(), nullptr);
    std::wstring_view message(text.data(), length);
    while (!message.empty() && (message.back() <= L' ' || message.back() == L'.'))
        message.remove_suffix(1);
    return message.empty() ? "Fehler " + std::to_string(code) : Utf8FromWide(message);
}

void RemoveIfAbandoned(const std::filesystem::path& path)
{
    // Without sharing, this fails as long as the file's process has it open.
    const HANDLE file =
        CreateFileW(path.c_str(), DELETE, 0, nullptr, OPEN_EXISTING, FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    if (file != INVALID_HANDLE_VALUE)
        CloseHandle(file);
}

std::int64_t ProcessId()
{
    return static_cast<std::int64_t>(GetCurrentProcessId());
}

std::string UserConfigFolder()
{
    const std::string folder = EnvironmentVariable(L"APPDATA");
    return folder.empty() ? folder : folder + "\\Tavelin";
}

std::string UserStateFolder()
{
    const std::string folder = EnvironmentVariable(L"LOCALAPPDATA");
    return folder.empty() ? folder : folder + "\\Tavelin";
}

std::string UserCacheFolder()
{
    const std::string folder = UserStateFolder();
    return folder.empty() ? folder : folder + "\\Cache";
}

#else

namespace
{

int Open(const std::string& path, const std::string& like, FileHandle& handle)
{
    struct stat existing = {};
    const bool exists = stat(like.c_str(), &existing) == 0;
    if (exists && faccessat(AT_FDCWD, like.c_str(), W_OK, AT_EACCESS) != 0)
        return errno; // a rename would not care
    const int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    const int file = open(path.c_str(), flags, exists || like.empty() ? S_IRUSR | S_IWUSR : 0666);
    if (file < 0)
        return errno;
    // The lock ends with the process, which is how RemoveIfAbandoned knows. Where locks are not supported nothing is
    // ever taken for abandoned. It may have looked at the new file before the lock: then another name is due.
    struct stat opened = {};
    struct stat named = {};
    const bool locked = flock(file, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
    if (!locked || fstat(file, &opened) != 0 || stat(path.c_str(), &named) != 0 || opened.st_ino != named.st_ino) {
        close(file);
        return EEXIST;
    }
    if (exists) {
        // The owner only if we may; then the mode, which a change of owner would have trimmed.
        if (fchown(file, existing.st_uid, existing.st_gid) != 0 &&
            fchown(file, static_cast<uid_t>(-1), existing.st_gid) != 0)
            existing.st_mode &= ~static_cast<mode_t>(S_IRWXG | S_ISUID | S_ISGID); // not for another group
        if (fchmod(file, existing.st_mode & 07777U) != 0) {
            const int error = errno;
            close(file);
            unlink(path.c_str());
            return error;
        }
    }
    handle = file;
    return 0;
}

int Write(FileHandle handle, const char* bytes, std::size_t size, std::size_t& written)
{
    ssize_t done = -1;
    do {
        done = write(static_cast<int>(handle), bytes, size);
    } while (done < 0 && errno == EINTR);
    if (done < 0)
        return errno;
    written = static_cast<std::size_t>(done);
    return 0;
}

int Sync(FileHandle handle)
{
    int result = -1;
    do {
        result = fsync(static_cast<int>(handle));
    } while (result != 0 && errno == EINTR);
    return result == 0 ? 0 : errno;
}

int Rename(const std::string& from, const std::string& to)
{
    return rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

int SyncFolder(const std::string& folder)
{
    const int file = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (file < 0)
        return errno == EACCES ? 0 : errno; // a folder may be writable and not readable
    const int error = Sync(file);
    close(file);
    // Some network file systems know no such thing.
    return error == EINVAL || error == ENOTSUP || error == EROFS ? 0 : error;
}

void Close(FileHandle handle)
{
    close(static_cast<int>(handle));
}

int Remove(const std::string& path)
{
    return unlink(path.c_str()) == 0 ? 0 : errno;
}

std::string EnvironmentVariable(const char* name)
{
    const char* value = std::getenv(name);
    return value ? value : std::string();
}

} // namespace

const int kErrorExists = EEXIST;
const int kErrorInvalidPath = EINVAL;
const int kErrorTooLarge = EFBIG;
const int kErrorCancelled = ECANCELED;
const int kErrorInputOutput = EIO;

std::optional<std::filesystem::path> NativePath(const std::string& utf8)
{
    if (utf8.find('\0') != std::string::npos)
        return std::nullopt;
    return std::filesystem::path(utf8);
}

std::string Utf8Of(const std::filesystem::path& path)
{
    return path.native();
}

int ReadBlocks(const std::string& path, Source source, const BlockTaker& take)
{
    // A pipe without a writer would hold up the open itself.
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | (source == Source::ordinaryFile ? O_NONBLOCK : 0));
    if (file < 0)
        return errno;
    struct stat status = {};
    if (source == Source::ordinaryFile && (fstat(file, &status) != 0 || !S_ISREG(status.st_mode))) {
        close(file);
        return S_ISDIR(status.st_mode) ? EISDIR : kErrorInvalidPath;
    }
    std::vector<char> block(kReadBlock);
    ssize_t count = 0;
    int error = 0;
    do {
        count = read(file, block.data(), block.size());
        if (count < 0)
            error = errno == EINTR ? 0 : errno;
        else
            error = count > 0 ? take({block.data(), static_cast<std::size_t>(count)}) : 0;
    } while (count != 0 && error == 0);
    close(file);
    return error;
}

std::string SystemErrorText(int code)
{
    static constexpr std::pair<int, const char*> kTexts[] = {
        {EACCES, "Zugriff verweigert"},
        {EPERM, "Vorgang nicht erlaubt"},
        {ENOENT, "Datei oder Ordner nicht vorhanden"},
        {ENOTDIR, "kein Ordner"},
        {EISDIR, "ist ein Ordner"},
        {EINVAL, "keine gewöhnliche Datei oder ungültiger Name"},
        {ENAMETOOLONG, "Name zu lang"},
        {ELOOP, "zu viele Verknüpfungen"},
        {ENOSPC, "kein Platz auf dem Datenträger"},
        {EDQUOT, "Speicherkontingent erschöpft"},
        {EFBIG, "Datei zu groß"},
        {ECANCELED, "abgebrochen"},
        {EROFS, "Datenträger schreibgeschützt"},
        {EIO, "Ein-/Ausgabefehler"},
        {ENXIO, "Gerät nicht vorhanden"},
        {ENODEV, "Gerät nicht vorhanden"},
        {EBUSY, "wird gerade benutzt"},
        {ETXTBSY, "wird gerade benutzt"},
        {EAGAIN, "vorübergehend nicht möglich"},
        {EEXIST, "gibt es schon"},
        {ENOMEM, "kein Speicher frei"},
        {EMFILE, "zu viele Dateien geöffnet"},
        {ENFILE, "zu viele Dateien geöffnet"},
        {EPIPE, "niemand liest mit"},
        {EXDEV, "liegt auf einem anderen Datenträger"},
        {ENOTSUP, "wird hier nicht unterstützt"},
        {ESTALE, "Verbindung zum Netzlaufwerk verloren"},
        {ETIMEDOUT, "Zeit überschritten"},
        {EHOSTDOWN, "Rechner antwortet nicht"},
        {EHOSTUNREACH, "Rechner nicht erreichbar"},
    };
    for (const auto& [known, text] : kTexts)
        if (known == code)
            return text;
    return "Systemfehler " + std::to_string(code);
}

void RemoveIfAbandoned(const std::filesystem::path& path)
{
    const int file = open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (file < 0)
        return;
    struct stat opened = {};
    if (fstat(file, &opened) == 0 && S_ISREG(opened.st_mode) && flock(file, LOCK_EX | LOCK_NB) == 0)
        unlink(path.c_str());
    close(file);
}

std::int64_t ProcessId()
{
    return getpid();
}

namespace
{

/// `variable` counts only when it names an absolute path.
std::string UserFolder(const char* variable, const char* belowHome)
{
    const std::string folder = EnvironmentVariable(variable);
    if (!folder.empty() && folder.front() == '/')
        return folder + "/tavelin";
    const std::string home = EnvironmentVariable("HOME");
    return home.empty() ? home : home + belowHome + "/tavelin";
}

} // namespace

std::string UserConfigFolder()
{
    return UserFolder("XDG_CONFIG_HOME", "/.config");
}

std::string UserStateFolder()
{
    return UserFolder("XDG_STATE_HOME", "/.local/state");
}

std::string UserCacheFolder()
{
    return UserFolder("XDG_CACHE_HOME", "/.cache");
}

#endif

int ReadAll(const std::string& path, std::string& bytes, std::size_t limit, Source source)
{
    bytes.clear();
    return ReadBlocks(path, source, [&](std::string_view block) {
        if (block.size() > limit - bytes.size())
            return kErrorTooLarge;
        bytes.append(block);
        return 0;
    });
}

void MakePrivateFolder(const std::filesystem::path& folder)
{
    std::error_code ignored; // what is wrong shows when a file is created in it
    std::filesystem::create_directories(folder, ignored);
    std::filesystem::permissions(folder, std::filesystem::perms::owner_all, ignored);
}

const FileCalls& SystemFileCalls()
{
    static const FileCalls calls{Open, Write, Sync, Rename, SyncFolder, Close, Remove};
    return calls;
}

} // namespace base
