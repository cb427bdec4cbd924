// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The journal that a running document keeps of its case, and what programs that died left of theirs.
//
// A journal consists of NAME.lock, which its process holds open, and of NAME.a and NAME.b, which are written in turn.
// Each of these holds a sequence number and a checksum of itself, so that a half-written file is told from a whole one
// and the newer from the older without asking for file times. A journal whose process is gone is found by its lock.
#pragma once

#include "base/FileSystem.h"

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace casefile
{

struct JournalContent {
    std::string casePath; ///< the case's file, empty when it was never saved
    std::string title;
    std::string text;     ///< the case as a file would hold it
    std::string digest{}; ///< of the file when the case was read from it or written to it, see FileDigest
};

class Journal
{
  public:
    /// Creates `folder`, for the user alone, when it is not there. Nothing is written before the first Put.
    explicit Journal(std::string folder, base::FileCalls calls = base::SystemFileCalls());
    /// The clean end of a document: removes the journal.
    ~Journal();
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;

    /// Hands the case over to be written and returns at once. Of several cases handed over in quick succession only the
    /// last is written; none waits longer than a quarter of a second.
    void Put(JournalContent content);
    /// The case is safe in its file: there is nothing to recover until the next Put.
    void Clear();
    /// Waits until what was handed over is on the disk or has failed.
    void Flush();
    /// Why the last write failed, in German; empty when it was done.
    std::string Error() const;

  private:
    using Wanted = std::optional<JournalContent>; ///< nothing: cleared

    void Run();
    /// Returns the error, 0 when it was done.
    int Write(const Wanted& wanted);
    int Claim();
    void RemoveFiles();
    std::string PathOf(const char* ending) const { return m_folder + "/" + m_name + ending; }

    const std::string m_folder;
    const base::FileCalls m_calls;

    // Of the writing thread alone.
    std::string m_name;
    std::optional<base::FileHandle> m_lock;
    std::uint64_t m_sequence = 0;

    mutable std::mutex m_mutex;
    std::condition_variable m_wake;
    std::condition_variable m_idle;
    std::optional<Wanted> m_wanted;
    bool m_hurry = false;
    bool m_ending = false;
    bool m_writing = false;
    std::string m_error;
    std::thread m_thread; ///< last, so that it finds the rest ready
};

/// A journal without a living process.
struct FoundJournal {
    std::string path; ///< without ending
    std::uint64_t sequence = 0;
    std::int64_t time = 0; ///< s since 1970 (UTC) by the clock of its program; for show
    JournalContent content;
};

/// A journal's file that holds something this program cannot read. It is never deleted.
struct KeptJournalFile {
    std::string path;   ///< where it lies now
    std::string reason; ///< German: "ist beschädigt"
};

/// The journals in the folder that hold a case, latest `time` first. Those that hold none because the case was saved
/// are removed. What cannot be read (damaged, of a newer version, not permitted) is renamed to end in `.defekt` and
/// appended to `kept`, but for the file that a crash left unfinished beside a whole one. Files that are no journal's
/// are left alone.
std::vector<FoundJournal> FindJournals(const std::string& folder, std::vector<KeptJournalFile>* kept = nullptr);
/// Removes the files that FindJournals has read.
void RemoveJournal(const FoundJournal& journal);

} // namespace casefile
