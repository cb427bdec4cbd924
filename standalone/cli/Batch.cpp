// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "cli/Batch.h"

#include <algorithm>
#include <thread>

namespace cli
{
namespace
{

constexpr std::size_t kLargestParcel = 64;             // lines
constexpr std::size_t kLargestParcelBytes = 1U << 18U; // beyond the first line
constexpr std::size_t kWindowLinesPerJob = 8 * kLargestParcel;
constexpr std::size_t kWindowBytes = 64U << 20U;

} // namespace

std::string BatchParcel(std::span<const std::string_view> lines)
{
    std::size_t bytes = lines.size();
    for (const std::string_view line : lines)
        bytes += line.size();
    std::string parcel = std::to_string(bytes) + "\n";
    parcel.reserve(parcel.size() + bytes);
    for (const std::string_view line : lines)
        (parcel += line) += '\n';
    return parcel;
}

void Batch::Push(Slot slot)
{
    std::unique_lock lock(m_mutex);
    m_space.wait(lock, [&] {
        return m_window.empty() || (m_window.size() < kWindowLinesPerJob * m_jobs && m_bytes < kWindowBytes);
    });
    slot.bytes = slot.line.size() + slot.answer.size();
    m_bytes += slot.bytes;
    const bool answered = slot.done;
    m_window.push_back(std::move(slot));
    m_work.notify_one();
    if (answered)
        m_answered.notify_one();
}

void Batch::Feed()
{
    std::vector<char> buffer(1U << 16U);
    std::string begun;
    bool tooLong = false;
    const auto take = [&](std::string_view piece) {
        tooLong = tooLong || begun.size() + piece.size() > kLongestLine;
        if (tooLong)
            std::string().swap(begun);
        else
            begun += piece;
    };
    const auto push = [&] {
        Push(tooLong ? Slot{{}, m_ends.answerForTooLong(), 0, true} : Slot{std::move(begun), {}, 0, false});
        begun.clear();
        tooLong = false;
    };
    while (const std::size_t count = m_ends.read(buffer.data(), buffer.size())) {
        std::string_view rest(buffer.data(), count);
        for (std::size_t end; (end = rest.find('\n')) != std::string_view::npos; rest.remove_prefix(end + 1)) {
            take(rest.substr(0, end));
            push();
        }
        take(rest);
    }
    if (!begun.empty() || tooLong)
        push();
    const std::lock_guard lock(m_mutex);
    m_ended = true;
    m_work.notify_all();
    m_answered.notify_all();
}

std::vector<Batch::Job> Batch::Take()
{
    std::unique_lock lock(m_mutex);
    const auto waiting = [&] {
        m_taken = std::max(m_taken, m_first); // what had its answer at once may be printed already
        while (m_taken < m_first + m_window.size() && m_window[static_cast<std::size_t>(m_taken - m_first)].done)
            ++m_taken;
        return static_cast<std::size_t>(m_first + m_window.size() - m_taken);
    };
    m_work.wait(lock, [&] { return waiting() > 0 || m_ended; });
    // What is there is shared out: nobody waits for a full parcel, and no worker gets all the last lines.
    const std::size_t share = std::clamp<std::size_t>(waiting() / (2 * m_jobs), 1, kLargestParcel);
    std::vector<Job> jobs;
    for (std::size_t bytes = 0; jobs.size() < share && waiting() > 0 && bytes < kLargestParcelBytes; ++m_taken) {
        std::string& line = m_window[static_cast<std::size_t>(m_taken - m_first)].line;
        bytes += line.size();
        jobs.push_back({m_taken, std::move(line)});
    }
    return jobs;
}

std::unique_ptr<BatchWorker> Batch::StartWorker()
{
    constexpr int kAttempts = 6;
    auto pause = std::chrono::milliseconds(10);
    for (int attempt = 1;; ++attempt, pause *= 2) {
        auto worker = m_ends.startWorker();
        if (worker || attempt == kAttempts)
            return worker;
        std::this_thread::sleep_for(pause);
    }
}

std::size_t Batch::Compute(BatchWorker& worker, std::span<const Job> jobs)
{
    std::vector<std::string_view> lines;
    for (const Job& job : jobs)
        lines.push_back(job.line);
    std::size_t answered = 0;
    if (worker.Write(BatchParcel(lines))) {
        for (; answered < jobs.size(); ++answered) {
            auto answer = worker.ReadLine(m_limit);
            if (!answer)
                break;
            Answer(jobs[answered].number, std::move(*answer));
        }
    }
    return answered;
}

void Batch::ComputeAll(std::unique_ptr<BatchWorker>& worker, std::span<const Job> jobs)
{
    // After a loss the rest goes line by line, so that the line that causes it is known and the others are not lost: it
    // is known when it was alone with its worker. One that was ended from outside says nothing about its line.
    constexpr int kMostEndings = 8; // for one line; the system also ends what takes all memory
    std::size_t parcel = jobs.size();
    int endings = 0;
    while (!jobs.empty()) {
        const bool fresh = !worker;
        if (fresh)
            worker = StartWorker();
        if (!worker) {
            Answer(jobs.front().number, m_ends.answerForLost(jobs.front().line, std::nullopt));
            jobs = jobs.subspan(1);
            continue;
        }
        const std::size_t count = std::min(parcel, jobs.size());
        const std::size_t answered = Compute(*worker, jobs.first(count));
        jobs = jobs.subspan(answered);
        endings = answered > 0 ? 0 : endings;
        if (answered == count)
            continue;
        const BatchWorker::Loss loss = worker->WhyLost();
        worker.reset();
        parcel = 1;
        const bool known = loss == BatchWorker::Loss::ended  ? ++endings == kMostEndings
                           : loss == BatchWorker::Loss::late ? count == 1
                                                             : fresh && count == 1;
        if (!known)
            continue;
        Answer(jobs.front().number, m_ends.answerForLost(jobs.front().line, loss));
        jobs = jobs.subspan(1);
        endings = 0;
    }
}

void Batch::Work()
{
    std::unique_ptr<BatchWorker> worker;
    for (std::vector<Job> jobs = Take(); !jobs.empty(); jobs = Take())
        ComputeAll(worker, jobs);
}

void Batch::Answer(std::uint64_t number, std::string answer)
{
    const std::lock_guard lock(m_mutex);
    Slot& slot = m_window[static_cast<std::size_t>(number - m_first)];
    slot.bytes += answer.size();
    m_bytes += answer.size();
    slot.answer = std::move(answer);
    slot.done = true;
    if (number == m_first)
        m_answered.notify_one();
}

bool Batch::Print()
{
    std::string text;
    for (;;) {
        {
            std::unique_lock lock(m_mutex);
            m_answered.wait(lock, [&] { return m_window.empty() ? m_ended : m_window.front().done; });
            if (m_window.empty())
                return true;
            for (; !m_window.empty() && m_window.front().done; ++m_first) {
                (text += m_window.front().answer) += '\n';
                m_bytes -= m_window.front().bytes;
                m_window.pop_front();
            }
            m_space.notify_one();
        }
        if (!m_ends.write(text))
            return false;
        text.clear();
    }
}

bool Batch::Run()
{
    std::vector<std::thread> threads;
    threads.emplace_back([this] { Feed(); });
    for (unsigned i = 0; i < m_jobs; ++i)
        threads.emplace_back([this] { Work(); });
    const bool printed = Print();
    for (std::thread& thread : threads)
        printed ? thread.join() : thread.detach();
    return printed;
}

} // namespace cli
