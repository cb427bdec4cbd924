// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Hands lines to workers and their answers out in the order of the lines. Memory is bounded by a window of lines: what
// stands before the slowest line waits, what comes after it is not read yet.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace cli
{

/// Takes parcels of lines and answers each line with one line, in order, the first answer after the last byte of the
/// parcel at the earliest. A parcel is the number of its bytes, a line break, and that many bytes of lines.
class BatchWorker
{
  public:
    virtual ~BatchWorker() = default;
    /// False when the worker has died.
    virtual bool Write(std::string_view bytes) = 0;
    /// The next answer without its line break; nothing when the worker has died or did not answer within `limit`.
    virtual std::optional<std::string> ReadLine(std::chrono::milliseconds limit) = 0;

    enum class Loss {
        crashed, ///< over what it computed
        ended,   ///< from outside
        late,    ///< no answer within the limit
    };
    /// Why Write or ReadLine failed; the worker does not run any more.
    virtual Loss WhyLost() = 0;
};

std::string BatchParcel(std::span<const std::string_view> lines);

class Batch
{
  public:
    struct Ends {
        /// Reads at most that many bytes, waiting only when there are none; 0 at the end.
        std::function<std::size_t(char*, std::size_t)> read;
        /// Writes answers and hands them on at once. False when nobody takes them any more.
        std::function<bool(const std::string&)> write;
        /// A new worker, or null when none can be had.
        std::function<std::unique_ptr<BatchWorker>()> startWorker;
        /// The answer to a line whose worker was lost over it, or for which none could be had.
        std::function<std::string(const std::string& line, std::optional<BatchWorker::Loss>)> answerForLost;
        /// The answer to a line of more than kLongestLine bytes, which is not kept.
        std::function<std::string()> answerForTooLong;
    };
    static constexpr std::size_t kLongestLine = std::size_t{64} << 20U;
    static constexpr std::chrono::seconds kLineTimeout{60};

    /// `limit` is the time that a line may take.
    Batch(Ends ends, unsigned jobs, std::chrono::milliseconds limit = kLineTimeout)
        : m_ends(std::move(ends)), m_jobs(jobs), m_limit(limit)
    {
    }

    /// Works until the input ends. False when the answers could not be written: then threads may still be waiting for
    /// input or workers, and the program should end.
    bool Run();

  private:
    struct Slot {
        std::string line;
        std::string answer;
        std::size_t bytes = 0;
        bool done = false;
    };
    struct Job {
        std::uint64_t number;
        std::string line;
    };

    void Feed();
    void Push(Slot slot);
    void Work();
    std::vector<Job> Take();
    /// Starts a worker; waits and tries again when none can be had at the moment.
    std::unique_ptr<BatchWorker> StartWorker();
    /// Returns how many lines were answered.
    std::size_t Compute(BatchWorker& worker, std::span<const Job> jobs);
    void ComputeAll(std::unique_ptr<BatchWorker>& worker, std::span<const Job> jobs);
    void Answer(std::uint64_t number, std::string answer);
    bool Print();

    Ends m_ends;
    unsigned m_jobs;
    std::chrono::milliseconds m_limit;
    std::mutex m_mutex;
    std::condition_variable m_space;
    std::condition_variable m_work;
    std::condition_variable m_answered;
    std::deque<Slot> m_window;
    std::uint64_t m_first = 0; // number of the window's first line
    std::uint64_t m_taken = 0; // number of the first line no worker has
    std::size_t m_bytes = 0;   // of lines and answers in the window
    bool m_ended = false;
};

} // namespace cli
