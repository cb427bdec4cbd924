// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "casefile/Journal.h"

#include "base/AtomicFile.h"
#include "base/Deflate.h"
#include "base/JsonValue.h"
#include "base/Utf.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <filesystem>
#include <random>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>

namespace casefile
{
namespace
{

namespace fs = std::filesystem;

constexpr auto kPause = std::chrono::milliseconds(200); // between two writes
constexpr std::string_view kAnyMagic = "tavelin-journal ";
constexpr std::string_view kMagic = "tavelin-journal 1 ";
constexpr const char* kKeptEnding = ".defekt";
constexpr const char* kLockEnding = ".lock";
constexpr std::array<const char*, 2> kFileEndings{".a", ".b"};
constexpr std::size_t kLargestFile = base::kJsonMaxBytes + (std::size_t{1} << 20U);

template <class Number> std::string Digits(Number number, int base = 10)
{
    std::array<char, 32> text{};
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), number, base).ptr};
}

std::string Valid(const std::string& text)
{
    return base::IsUtf8(text) ? text : std::string();
}

struct Record {
    std::uint64_t sequence = 0;
    std::int64_t time = 0;
    std::optional<JournalContent> content;
};

/// First line: magic, checksum of all that follows. Second line: what the record is about. Then the case.
std::string Encode(const Record& record)
{
    base::JsonValue::Object head{{"sequence", static_cast<std::int64_t>(record.sequence)}, {"time", record.time}};
    if (record.content) {
        head.push_back({"path", Valid(record.content->casePath)});
        head.push_back({"title", Valid(record.content->title)});
        head.push_back({"digest", record.content->digest});
        head.push_back({"bytes", static_cast<std::int64_t>(record.content->text.size())});
    }
    std::string body = base::WriteJson(std::move(head), base::JsonLayout::oneLine) + "\n";
    if (record.content)
        body += record.content->text;
    return std::string(kMagic) + Digits(base::Crc32(body), 16) + "\n" + body;
}

std::string StringMember(const base::JsonValue::Object& object, std::string_view name)
{
    const base::JsonValue* value = Find(object, name);
    const auto* text = value == nullptr ? nullptr : value->As<std::string>();
    return text == nullptr ? std::string() : *text;
}

std::int64_t IntegerMember(const base::JsonValue::Object& object, std::string_view name)
{
    const base::JsonValue* value = Find(object, name);
    return value == nullptr ? -1 : value->Integer().value_or(-1);
}

/// Nothing for a file that is not whole.
std::optional<Record> Decode(std::string_view file)
{
    const std::size_t firstLine = file.find('\n');
    if (!file.starts_with(kMagic) || firstLine == std::string_view::npos)
        return std::nullopt;
    const std::string_view body = file.substr(firstLine + 1);
    if (file.substr(kMagic.size(), firstLine - kMagic.size()) != Digits(base::Crc32(body), 16))
        return std::nullopt;
    const std::size_t secondLine = body.find('\n');
    if (secondLine == std::string_view::npos)
        return std::nullopt;
    const base::JsonParsed parsed = base::ParseJson(body.substr(0, secondLine));
    const auto* head = parsed.value ? parsed.value->As<base::JsonValue::Object>() : nullptr;
    if (head == nullptr || IntegerMember(*head, "sequence") < 0)
        return std::nullopt;
    Record record{static_cast<std::uint64_t>(IntegerMember(*head, "sequence")), IntegerMember(*head, "time"), {}};
    if (const std::int64_t bytes = IntegerMember(*head, "bytes"); bytes >= 0) {
        const std::string_view text = body.substr(secondLine + 1);
        if (text.size() != static_cast<std::size_t>(bytes))
            return std::nullopt;
        record.content = JournalContent{StringMember(*head, "path"), StringMember(*head, "title"), std::string(text),
                                        StringMember(*head, "digest")};
    }
    return record;
}

enum class FileState { absent, foreign, whole, unfinished, unreadable };

/// One of the two files of a journal.
struct JournalFile {
    FileState state = FileState::absent;
    Record record;
    std::string reason; ///< why there is no record, German
};

/// PROCESS-NUMBER, as RandomName makes it.
bool IsOurName(std::string_view name)
{
    const std::size_t dash = name.find('-');
    return dash != std::string_view::npos && dash > 0 && dash + 1 < name.size() &&
           name.substr(0, dash).find_first_not_of("0123456789") == std::string_view::npos &&
           name.substr(dash + 1).find_first_not_of("0123456789abcdef") == std::string_view::npos;
}

JournalFile ReadJournalFile(const std::string& path, bool ours)
{
    if (!base::FileExists(path))
        return {};
    std::string bytes;
    if (const base::FileResult read = base::ReadWholeFile(path, bytes, kLargestFile); !read)
        return {ours ? FileState::unreadable : FileState::foreign, {}, "kann nicht gelesen werden: " + read.reason};
    if (std::optional<Record> record = Decode(bytes))
        return {FileState::whole, std::move(*record), {}};
    if (bytes.starts_with(kAnyMagic) && !bytes.starts_with(kMagic))
        return {FileState::unreadable, {}, "stammt von einer neueren Programmversion"};
    if (!ours && !bytes.starts_with(kAnyMagic))
        return {FileState::foreign, {}, {}};
    return {FileState::unfinished, {}, "ist beschädigt"};
}

/// Renames a file that nothing may remove.
KeptJournalFile KeepAside(const std::string& path, const std::string& reason)
{
    constexpr int kMostNames = 1000;
    for (int i = 1; i < kMostNames; ++i) {
        const std::string name = path + (i == 1 ? "" : "-" + Digits(i)) + kKeptEnding;
        if (base::FileExists(name))
            continue;
        if (base::SystemFileCalls().rename(path, name) == 0)
            return {name, reason};
        break;
    }
    return {path, reason};
}

int WriteAll(const base::FileCalls& calls, const std::string& path, std::string_view bytes)
{
    calls.remove(path);
    base::FileHandle handle = 0;
    if (const int error = calls.open(path, {}, handle); error != 0)
        return error;
    int error = 0;
    while (!bytes.empty() && error == 0) {
        std::size_t written = 0;
        error = calls.write(handle, bytes.data(), bytes.size(), written);
        if (error == 0 && written == 0)
            error = base::kErrorInputOutput;
        bytes.remove_prefix(std::min(written, bytes.size()));
    }
    if (error == 0)
        error = calls.sync(handle);
    calls.close(handle);
    return error;
}

std::string RandomName()
{
    std::random_device random;
    return Digits(base::ProcessId()) + "-" + Digits(random(), 16) + Digits(random(), 16);
}

std::int64_t Now()
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::seconds>(now).count();
}

} // namespace

Journal::Journal(std::string folder, base::FileCalls calls)
    : m_folder(std::move(folder)), m_calls(std::move(calls)), m_thread([this] { Run(); })
{
}

Journal::~Journal()
{
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
    }
    m_wake.notify_all();
    m_thread.join();
    RemoveFiles();
}

void Journal::Put(JournalContent content)
{
    {
        const std::lock_guard lock(m_mutex);
        m_wanted.emplace(std::move(content));
    }
    m_wake.notify_all();
}

void Journal::Clear()
{
    {
        const std::lock_guard lock(m_mutex);
        m_wanted.emplace(std::nullopt);
    }
    m_wake.notify_all();
}

void Journal::Flush()
{
    std::unique_lock lock(m_mutex);
    m_hurry = true;
    m_wake.notify_all();
    m_idle.wait(lock, [this] { return !m_wanted && !m_writing; });
    m_hurry = false;
}

std::string Journal::Error() const
{
    const std::lock_guard lock(m_mutex);
    return m_error;
}

void Journal::Run()
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_wake.wait(lock, [this] { return m_wanted || m_ending; });
        if (m_ending)
            return;
        const Wanted wanted = std::move(*m_wanted);
        m_wanted.reset();
        m_writing = true;
        lock.unlock();
        const int error = Write(wanted);
        lock.lock();
        m_writing = false;
        m_error = error == 0 ? std::string() : base::SystemErrorText(error);
        m_idle.notify_all();
        m_wake.wait_for(lock, kPause, [this] { return m_ending || (m_hurry && m_wanted); });
    }
}

int Journal::Write(const Wanted& wanted)
{
    if (!wanted && m_sequence == 0)
        return 0; // nothing was written that could be recovered
    if (!m_lock)
        if (const int error = Claim(); error != 0)
            return error;
    const std::string path = PathOf(kFileEndings[m_sequence % kFileEndings.size()]);
    const int error = WriteAll(m_calls, path, Encode({m_sequence + 1, Now(), wanted}));
    if (error != 0)
        return error; // the next attempt takes the same file: the other one is whole
    ++m_sequence;
    return m_calls.syncFolder(m_folder); // the file is a new one under an old name
}

int Journal::Claim()
{
    if (const auto folder = base::NativePath(m_folder))
        base::MakePrivateFolder(*folder);
    constexpr int kAttempts = 10;
    int error = 0;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        m_name = RandomName();
        base::FileHandle handle = 0;
        error = m_calls.open(PathOf(kLockEnding), {}, handle);
        if (error == 0) {
            m_lock = handle;
            return 0;
        }
        if (error != base::kErrorExists)
            return error;
    }
    return error;
}

void Journal::RemoveFiles()
{
    if (!m_lock)
        return;
    // The lock last: as long as it is there, nobody takes the files for those of a dead program.
    for (const char* ending : kFileEndings)
        m_calls.remove(PathOf(ending));
    m_calls.remove(PathOf(kLockEnding));
    m_calls.close(*m_lock);
    m_calls.remove(PathOf(kLockEnding)); // where an open file cannot be removed
}

std::vector<FoundJournal> FindJournals(const std::string& folder, std::vector<KeptJournalFile>* kept)
{
    std::set<std::string> names;
    const auto native = base::NativePath(folder);
    std::error_code error;
    if (native)
        for (fs::directory_iterator file(*native, error), end; !error && file != end; file.increment(error)) {
            const fs::path& path = file->path();
            const std::string ending = base::Utf8Of(path.extension());
            if (ending == kLockEnding || ending == kFileEndings[0] || ending == kFileEndings[1])
                names.insert(base::Utf8Of(path.stem()));
        }

    std::vector<FoundJournal> found;
    for (const std::string& name : names) {
        const bool ours = IsOurName(name);
        const std::string path = base::Utf8Of(*native / *base::NativePath(name));
        if (const std::string lock = path + kLockEnding; base::FileExists(lock)) {
            if (ours)
                base::RemoveIfAbandoned(*base::NativePath(lock));
            if (base::FileExists(lock))
                continue; // its program is running, or it is no lock
        }
        JournalFile files[] = {ReadJournalFile(path + kFileEndings[0], ours),
                               ReadJournalFile(path + kFileEndings[1], ours)};
        JournalFile* newest = nullptr;
        for (JournalFile& file : files)
            if (file.state == FileState::whole && (!newest || file.record.sequence > newest->record.sequence))
                newest = &file;
        const bool holdsCase = newest != nullptr && newest->record.content;
        for (std::size_t i = 0; i < kFileEndings.size(); ++i) {
            const bool lost =
                files[i].state == FileState::unreadable || (files[i].state == FileState::unfinished && !holdsCase);
            if (lost) {
                const KeptJournalFile aside = KeepAside(path + kFileEndings[i], files[i].reason);
                if (kept != nullptr)
                    kept->push_back(aside);
            }
        }
        if (holdsCase)
            found.push_back({path, newest->record.sequence, newest->record.time, std::move(*newest->record.content)});
        else if (newest != nullptr)
            RemoveJournal({path, 0, 0, {}});
    }
    std::stable_sort(found.begin(), found.end(), [](const auto& a, const auto& b) { return a.time > b.time; });
    return found;
}

void RemoveJournal(const FoundJournal& journal)
{
    const bool ours = IsOurName(base::Utf8Of(base::NativePath(journal.path)->filename()));
    for (const char* ending : kFileEndings) {
        const FileState state = ReadJournalFile(journal.path + ending, ours).state;
        if (state == FileState::whole || state == FileState::unfinished)
            base::SystemFileCalls().remove(journal.path + ending);
    }
}

} // namespace casefile
