// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Lines are always computed by processes of their own, also with one job: a line that crashes costs only itself.
#include "cli/Verbs.h"

#include "base/NumberText.h"
#include "cli/Batch.h"
#include "cli/BatchLine.h"
#include "cli/ExitCode.h"
#include "cli/Options.h"
#include "cli/Platform.h"
#include "cli/WorkerProcess.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <thread>

namespace cli
{
namespace
{

bool WriteOut(const std::string& text)
{
    return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
}

/// Standard input as parcels.
class ParcelReader
{
  public:
    /// The lines of the next parcel, each with its line break; nothing at the end.
    std::optional<std::string> Next()
    {
        std::size_t head = 0;
        while ((head = m_pending.find('\n')) == std::string::npos)
            if (!More())
                return std::nullopt;
        std::size_t size = 0;
        std::from_chars(m_pending.data(), m_pending.data() + head, size);
        m_pending.erase(0, head + 1);
        while (m_pending.size() < size)
            if (!More())
                return std::nullopt;
        std::string lines = m_pending.substr(0, size);
        m_pending.erase(0, size);
        return lines;
    }

  private:
    bool More()
    {
        const std::size_t old = m_pending.size();
        m_pending.resize(old + (1U << 16U));
        m_pending.resize(old + ReadInput(m_pending.data() + old, 1U << 16U));
        return m_pending.size() > old;
    }

    std::string m_pending;
};

int RunWorker()
{
    // Quick lines are answered together, slow ones each when it is done.
    constexpr auto kLongestWait = std::chrono::milliseconds(20);
    KeepFreedMemory();
    EndWithParent();
    ParcelReader reader;
    while (const auto parcel = reader.Next()) {
        std::string answers;
        auto flushed = std::chrono::steady_clock::now();
        std::string_view rest = *parcel;
        for (std::size_t end; (end = rest.find('\n')) != std::string_view::npos; rest.remove_prefix(end + 1)) {
            (answers += ComputeBatchLine(rest.substr(0, end))) += '\n';
            const auto now = std::chrono::steady_clock::now();
            if (now - flushed < kLongestWait)
                continue;
            if (!WriteOut(answers))
                return exitFile;
            answers.clear();
            flushed = now;
        }
        if (!WriteOut(answers))
            return exitFile;
    }
    return exitDone;
}

std::string AnswerForLost(const std::string& line, std::optional<BatchWorker::Loss> loss, double limit)
{
    if (!loss)
        return FailedBatchLine(line, exitCrashed, "es ließ sich kein Rechenprozess starten");
    switch (*loss) {
    case BatchWorker::Loss::crashed:
        break;
    case BatchWorker::Loss::ended:
        return FailedBatchLine(line, exitCrashed, "der Rechenprozess wurde bei dieser Zeile immer wieder beendet");
    case BatchWorker::Loss::late:
        return FailedBatchLine(line, exitCrashed,
                               "die Zeile braucht länger als " + base::FormatNumber(limit) + " s (--line-timeout)");
    }
    return FailedBatchLine(line, exitCrashed, "der Rechenprozess ist bei dieser Zeile abgestürzt");
}

} // namespace

int BatchVerb(const std::vector<std::string>& arguments)
{
    const Options options = ParseOptions(
        arguments, {"--jobs", "--line-timeout", "--transfer", "--units", "--config", "--json", "--worker"});
    if (!options.error.empty())
        return Complain(exitUsage, options.error);
    if (!options.rest.empty())
        return Complain(exitUsage,
                        "batch liest seine Zeilen von der Standardeingabe; „" + options.rest.front() + "“ ist zu viel");
    if (const auto error = ApplySettings(options))
        return Complain(exitFile, *error);
    if (options.worker)
        return RunWorker();

    std::vector<std::string> workerArguments{"batch", "--worker"};
    workerArguments.insert(workerArguments.end(), arguments.begin(), arguments.end());
    Batch::Ends ends;
    ends.read = ReadInput;
    ends.write = WriteOut;
    ends.startWorker = [&]() -> std::unique_ptr<BatchWorker> { return WorkerProcess::Start(workerArguments); };
    const double limit = options.lineTimeout.value_or(std::chrono::duration<double>(Batch::kLineTimeout).count());
    ends.answerForLost = [&](const std::string& line, std::optional<BatchWorker::Loss> loss) {
        return AnswerForLost(line, loss, limit);
    };
    ends.answerForTooLong = [] { return FailedBatchLine("null", exitUsage, "die Zeile ist länger als 64 MB"); };
    Batch batch(std::move(ends), options.jobs.value_or(std::max(1U, std::thread::hardware_concurrency())),
                std::chrono::milliseconds(std::lround(limit * 1000.0)));
    if (batch.Run())
        return InputFailed() ? Complain(exitFile, "die Standardeingabe ließ sich nicht zu Ende lesen") : exitDone;
    Complain(exitFile, "die Ausgabe konnte nicht geschrieben werden");
    std::_Exit(exitFile); // threads may still be waiting
}

} // namespace cli
