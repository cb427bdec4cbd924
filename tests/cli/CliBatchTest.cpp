// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// How lines are handed out, with workers that live in this process.
#include "cli/Batch.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstring>
#include <numeric>
#include <random>
#include <thread>

namespace
{

using namespace cli;

/// Answers a line with itself in brackets. Dies over the line "die", and over "once" the first time it is seen; does
/// not answer "late" in time, and is ended from outside the first five times it has "shot".
class EchoWorker : public BatchWorker
{
  public:
    explicit EchoWorker(std::atomic<bool>& onceSeen) : m_onceSeen(onceSeen) {}

    bool Write(std::string_view bytes) override
    {
        if (m_dead)
            return false;
        const std::size_t head = bytes.find('\n');
        EXPECT_EQ(std::stoul(std::string(bytes.substr(0, head))), bytes.size() - head - 1);
        bytes.remove_prefix(head + 1);
        for (std::size_t end; (end = bytes.find('\n')) != std::string_view::npos; bytes.remove_prefix(end + 1))
            m_lines.emplace_back(bytes.substr(0, end));
        return true;
    }
    std::optional<std::string> ReadLine(std::chrono::milliseconds) override
    {
        if (m_lines.empty())
            m_dead = true;
        if (m_dead)
            return std::nullopt;
        const std::string line = m_lines.front();
        m_lines.pop_front();
        m_loss = line == "late" ? Loss::late : line == "shot" ? Loss::ended : Loss::crashed;
        m_dead = line == "die" || line == "late" || (line == "shot" && m_shots++ < 5) ||
                 (line == "once" && !m_onceSeen.exchange(true));
        std::this_thread::sleep_for(std::chrono::microseconds(std::hash<std::string>{}(line) % 200));
        return m_dead ? std::nullopt : std::optional("[" + line + "]");
    }

    Loss WhyLost() override { return m_loss; }

  private:
    static inline std::atomic<int> m_shots = 0;
    Loss m_loss = Loss::crashed;
    std::atomic<bool>& m_onceSeen;
    std::deque<std::string> m_lines;
    bool m_dead = false;
};

struct Fixture {
    std::string input;
    std::size_t piece = 1U << 16U; ///< largest read
    std::atomic<bool> onceSeen = false;
    std::atomic<int> started = 0;
    std::atomic<std::size_t> read = 0;
    std::string output;

    Batch::Ends Ends()
    {
        Batch::Ends ends;
        ends.read = [this](char* buffer, std::size_t size) {
            const std::size_t count = std::min({size, piece, input.size() - read});
            input.copy(buffer, count, read);
            read += count;
            return count;
        };
        ends.write = [this](const std::string& text) {
            output += text;
            return true;
        };
        ends.startWorker = [this] {
            ++started;
            return std::make_unique<EchoWorker>(onceSeen);
        };
        ends.answerForLost = [](const std::string& line, std::optional<BatchWorker::Loss> loss) {
            return (!loss ? "none " : *loss == BatchWorker::Loss::late ? "late " : "lost ") + line;
        };
        ends.answerForTooLong = [] { return std::string("too long"); };
        return ends;
    }
};

TEST(CliBatch, AnswersStandInTheOrderOfTheLines)
{
    Fixture f;
    std::string expected;
    std::mt19937 random(1);
    for (int i = 0; i < 5000; ++i) {
        const std::string line = std::to_string(i) + std::string(random() % 300, 'x');
        f.input += line + "\n";
        expected += "[" + line + "]\n";
    }
    f.input.pop_back(); // the last line need not be ended
    f.piece = 777;
    EXPECT_TRUE(Batch(f.Ends(), 4).Run());
    EXPECT_EQ(f.output, expected);
    EXPECT_LE(f.started, 4);
}

TEST(CliBatch, DeathCostsOnlyTheLineThatCausedIt)
{
    Fixture f;
    std::string expected;
    for (int i = 0; i < 600; ++i) {
        const std::string line = i % 100 == 50 ? "die" : i == 333 ? "once" : std::to_string(i);
        f.input += line + "\n";
        expected += line == "die" ? "lost die\n" : "[" + line + "]\n";
    }
    EXPECT_TRUE(Batch(f.Ends(), 2).Run());
    EXPECT_EQ(f.output, expected);
}

TEST(CliBatch, SlowLinesCostThemselvesAndEndsFromOutsideCostNothing)
{
    Fixture f;
    std::string expected;
    for (int i = 0; i < 300; ++i) {
        const std::string line = i % 100 == 50 ? "late" : i == 120 ? "shot" : std::to_string(i);
        f.input += line + "\n";
        expected += line == "late" ? "late late\n" : "[" + line + "]\n";
    }
    EXPECT_TRUE(Batch(f.Ends(), 2).Run());
    EXPECT_EQ(f.output, expected);
}

TEST(CliBatch, ALineThatIsTooLongIsAnsweredAndNotKept)
{
    Fixture f;
    std::size_t given = 0; // of a line that is made while it is read
    constexpr std::size_t kEndless = 2 * Batch::kLongestLine;
    const std::string_view rest = "\nb\n";
    Batch::Ends ends = f.Ends();
    ends.read = [&](char* buffer, std::size_t size) {
        const std::size_t count =
            given < kEndless ? std::min(size, kEndless - given) : std::min(size, kEndless + rest.size() - given);
        if (given < kEndless)
            std::memset(buffer, 'x', count);
        else
            rest.copy(buffer, count, given - kEndless);
        given += count;
        return count;
    };
    EXPECT_TRUE(Batch(std::move(ends), 2).Run());
    EXPECT_EQ(f.output, "too long\n[b]\n");
}

TEST(CliBatch, WithoutAnyWorkerEveryLineSaysSo)
{
    Fixture f;
    f.input = "a\n\nb\n";
    Batch::Ends ends = f.Ends();
    ends.startWorker = [] { return nullptr; };
    EXPECT_TRUE(Batch(std::move(ends), 3).Run());
    EXPECT_EQ(f.output, "none a\nnone \nnone b\n");
}

TEST(CliBatch, ReadsNoFurtherThanItsWindowWhileALineIsSlow)
{
    Fixture f;
    f.piece = 4096;
    for (int i = 0; i < 200000; ++i)
        f.input += "abcdefghi\n";
    std::atomic<bool> go = false;
    class Slow : public EchoWorker
    {
      public:
        Slow(std::atomic<bool>& seen, std::atomic<bool>& go) : EchoWorker(seen), m_go(go) {}
        std::optional<std::string> ReadLine(std::chrono::milliseconds limit) override
        {
            m_go.wait(false);
            return EchoWorker::ReadLine(limit);
        }

      private:
        std::atomic<bool>& m_go;
    };
    Batch::Ends ends = f.Ends();
    ends.startWorker = [&] { return std::make_unique<Slow>(f.onceSeen, go); };
    Batch batch(std::move(ends), 1);
    std::thread runner([&] { batch.Run(); });
    // The reader stops; then it must stay where it is.
    std::size_t before = 0;
    do {
        before = f.read;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    } while (f.read != before);
    EXPECT_LT(f.read, 100000U);
    f.input.resize(f.read);
    go = true;
    go.notify_all();
    runner.join();
    EXPECT_GE(std::count(f.output.begin(), f.output.end(), '\n'), static_cast<std::ptrdiff_t>(before / 10));
}

TEST(CliBatch, AnswersComeWithoutWaitingForMoreLines)
{
    Fixture f;
    std::mutex mutex;
    std::condition_variable answered;
    std::string output;
    int given = 0;
    Batch::Ends ends = f.Ends();
    // The second line is given only when the first is answered.
    ends.read = [&](char* buffer, std::size_t) -> std::size_t {
        std::unique_lock lock(mutex);
        if (given == 1 && !answered.wait_for(lock, std::chrono::seconds(20), [&] { return !output.empty(); }))
            return 0;
        if (given++ == 2)
            return 0;
        buffer[0] = 'a';
        buffer[1] = '\n';
        return 2;
    };
    ends.write = [&](const std::string& text) {
        const std::lock_guard lock(mutex);
        output += text;
        answered.notify_all();
        return true;
    };
    EXPECT_TRUE(Batch(std::move(ends), 2).Run());
    EXPECT_EQ(output, "[a]\n[a]\n");
}

} // namespace
