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

void Batch::Push(std::string line)
{
    std::unique_lock lock(m_mutex);
    m_space.wait(lock, [&] {
        return m_window.empty() || (m_window.size() < kWindowLinesPerJob * m_jobs && m_bytes < kWindowBytes);
    });
    const std::size_t bytes = line.size();
    m_bytes += bytes;
    m_window.push_back({std::move(line), {}, bytes, false});
    m_work.notify_one();
}

void Batch::Feed()
{
    std::vector<char> buffer(1U << 16U);
    std::string begun;
    while (const std::size_t count = m_ends.read(buffer.data(), buffer.size())) {
        std::string_view rest(buffer.data(), count);
        for (std::size_t end; (end = rest.find('\n')) != std::string_view::npos; rest.remove_prefix(end + 1)) {
            begun += rest.substr(0, end);
            Push(std::move(begun));
            begun.clear();
        }
        begun += rest;
    }
    if (!begun.empty())
        Push(std::move(begun));
    const std::lock_guard lock(m_mutex);
    m_ended = true;
    m_work.notify_all();
    m_answered.notify_all();
}

std::vector<Batch::Job> Batch::Take()
{
    std::unique_lock lock(m_mutex);
    const auto waiting = [&] { return static_cast<std::size_t>(m_first + m_window.size() - m_taken); };
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

std::size_t Batch::Compute(std::unique_ptr<BatchWorker>& worker, const Job* jobs, std::size_t count)
{
    std::vector<std::string_view> lines;
    for (std::size_t i = 0; i < count; ++i)
        lines.push_back(jobs[i].line);
    std::size_t answered = 0;
    if (worker->Write(BatchParcel(lines))) {
        for (; answered < count; ++answered) {
            auto answer = worker->ReadLine();
            if (!answer)
                break;
            Answer(jobs[answered].number, std::move(*answer));
        }
    }
    if (answered < count)
        worker.reset();
    return answered;
}

void Batch::Work()
{
    std::unique_ptr<BatchWorker> worker;
    for (;;) {
        const std::vector<Job> jobs = Take();
        if (jobs.empty())
            return;
        // After a death the rest goes line by line, so that the line that kills is known and the others are not lost.
        // It is known when a worker dies that was started for it: another may have been ended from outside.
        std::size_t parcel = jobs.size();
        for (std::size_t next = 0; next < jobs.size();) {
            const bool fresh = !worker;
            if (fresh)
                worker = m_ends.startWorker();
            const bool started = worker != nullptr;
            const std::size_t count = std::min(parcel, jobs.size() - next);
            if (started)
                next += Compute(worker, &jobs[next], count);
            if (worker)
                continue;
            if (!started || (fresh && count == 1)) {
                Answer(jobs[next].number, m_ends.answerForLost(jobs[next].line, started));
                ++next;
            }
            parcel = 1;
        }
    }
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
