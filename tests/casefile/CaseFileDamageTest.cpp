// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "casefile/CaseFile.h"

#include "base/JsonValue.h"
#include "host/CRuvData.h"
#include "tests/support/TemporaryFolder.h"

#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <thread>

#ifndef _WIN32
#include <csignal>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace
{

using casefile::CaseFromJson;
using casefile::CaseOutcome;
using casefile::CaseResult;
using casefile::CaseToJson;

std::string ExampleText()
{
    std::string bytes;
    const auto read = base::ReadWholeFile(TAVELIN_SOURCE_DIR "/examples/kreuzung.json", bytes, 1U << 20U);
    EXPECT_TRUE(read) << read.Text();
    return bytes;
}

/// A damaged text is refused with a reason and changes nothing, or is a case that can be saved and read again.
/// Returns whether it was a case.
bool CheckDamaged(const std::string& text)
{
    CRuvData data;
    data.Title() = "vorher";
    const CaseResult result = CaseFromJson(text, data);
    if (!result) {
        EXPECT_TRUE(result.outcome == CaseOutcome::damaged || result.outcome == CaseOutcome::newerVersion);
        EXPECT_GT(result.Text().size(), 20U);
        EXPECT_EQ(data.Title(), "vorher");
        return false;
    }
    std::string written, again;
    const CaseResult saved = CaseToJson(data, written);
    EXPECT_TRUE(saved) << saved.Text();
    CRuvData read;
    const CaseResult reread = CaseFromJson(written, read);
    EXPECT_TRUE(reread) << reread.Text();
    EXPECT_TRUE(CaseToJson(read, again));
    EXPECT_EQ(again, written);
    return true;
}

TEST(CaseFileDamage, TruncatedAnywhere)
{
    const std::string text = ExampleText();
    const std::size_t lastBrace = text.rfind('}');
    for (std::size_t length = 0; length < text.size(); ++length) {
        ASSERT_EQ(CheckDamaged(text.substr(0, length)), length > lastBrace) << length;
        ASSERT_FALSE(HasFailure()) << length;
    }
}

TEST(CaseFileDamage, EveryBitFlipped)
{
    const std::string text = ExampleText();
    int refused = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        for (unsigned bit = 0; bit < 8; ++bit) {
            std::string flipped = text;
            flipped[i] = static_cast<char>(static_cast<unsigned char>(flipped[i]) ^ (1U << bit));
            refused += !CheckDamaged(flipped);
            ASSERT_FALSE(HasFailure()) << "byte " << i << ", bit " << bit;
        }
    }
    // Structure, names that are required and non-text bytes are noticed; a digit more or less is not.
    EXPECT_GT(refused, static_cast<int>(text.size()) * 2);
}

TEST(CaseFileDamage, NeitherDepthNorSizeCrashes)
{
    const std::string head = "{\"format\": \"tavelin-case\", \"version\": \"1.0\", \"x\": ";
    const auto refusal = [&head](const std::string& value) {
        CRuvData data;
        const CaseResult result = CaseFromJson(head + value + "}", data);
        return result ? std::string() : result.reason;
    };
    const auto nested = [](std::size_t depth) { return std::string(depth, '[') + std::string(depth, ']'); };
    EXPECT_EQ(refusal(nested(base::kJsonMaxDepth - 1)), "");
    EXPECT_TRUE(CheckDamaged(head + nested(base::kJsonMaxDepth - 1) + "}"));
    EXPECT_NE(refusal(nested(base::kJsonMaxDepth)).find("verschachtelt"), std::string::npos);
    EXPECT_NE(refusal(nested(5'000'000)).find("verschachtelt"), std::string::npos);
    EXPECT_NE(refusal(std::string(10'000'000, '[')).find("verschachtelt"), std::string::npos);

    std::string many = "[0";
    for (std::size_t i = 0; i < base::kJsonMaxValues; ++i) {
        many += ",0";
    }
    EXPECT_NE(refusal(many + "]").find("zu viele Werte"), std::string::npos);
    EXPECT_NE(refusal("\"" + std::string(base::kJsonMaxBytes, 'a') + "\"").find("zu groß"), std::string::npos);

    // What could not be read again is not written either.
    CRuvData data;
    data.MaskenWerte(400)["viele"].assign(base::kJsonMaxValues, 0.0);
    std::string json = "unverändert";
    EXPECT_EQ(CaseToJson(data, json).outcome, CaseOutcome::invalidValue);
    casefile::NewExampleCase(data);
    CWegZeitSpalte& phase = data.WZDat(0).spalten[3];
    phase.art = PhasenArt::braking;
    phase.weiteres = "{\"x\": " + nested(base::kJsonMaxDepth - 1) + "}";
    EXPECT_EQ(CaseToJson(data, json).outcome, CaseOutcome::invalidValue);
    EXPECT_EQ(json, "unverändert");
}

#ifndef _WIN32

/// Saves the two cases in turn until it is killed.
[[noreturn]] void SaveForEver(const std::string& path, const CRuvData& one, const CRuvData& other)
{
    for (;;) {
        if (!casefile::SaveCase(path, one) || !casefile::SaveCase(path, other)) {
            _exit(3);
        }
    }
}

TEST(CaseFileDamage, KilledWhileSavingLeavesOneOfBothWhole)
{
    test::TemporaryFolder folder;
    const std::string path = folder.File("fall.json");
    const auto one = std::make_unique<CRuvData>();
    const auto other = std::make_unique<CRuvData>();
    casefile::NewExampleCase(*one);
    casefile::NewExampleCase(*other);
    one->MaskenWerte(487)["kurz"].assign(100, 1.0);
    other->MaskenWerte(487)["lang"].assign(8000, 2.5);
    std::string oneText, otherText;
    ASSERT_TRUE(CaseToJson(*one, oneText));
    ASSERT_TRUE(CaseToJson(*other, otherText));
    const auto begin = std::chrono::steady_clock::now();
    ASSERT_TRUE(casefile::SaveCase(path, *other));
    ASSERT_TRUE(casefile::SaveCase(path, *one));
    // Kills fall anywhere within the first few saves, however fast the machine.
    const std::chrono::duration<double> bothSaves = std::chrono::steady_clock::now() - begin;
    std::mt19937 random(7);
    std::uniform_real_distribution<double> delay(0.0, 3.0 * bothSaves.count());
    int ones = 0, leftovers = 0;
    constexpr int kKills = 40;
    for (int round = 0; round < kKills; ++round) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            SaveForEver(path, *one, *other);
        }
        std::this_thread::sleep_for(std::chrono::duration<double>(delay(random)));
        ASSERT_EQ(kill(child, SIGKILL), 0);
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status)) << "a save failed";

        const std::string found = folder.Read("fall.json");
        ASSERT_TRUE(found == oneText || found == otherText) << "round " << round << ", " << found.size() << " bytes";
        ones += found == oneText;
        const std::size_t files = folder.Names().size();
        ASSERT_LE(files, 2U) << "leftovers pile up";
        leftovers += files == 2;
    }
    EXPECT_GT(leftovers, 0) << "no kill met a save half done";
    EXPECT_GT(ones, 0);
    EXPECT_LT(ones, kKills);
    ASSERT_TRUE(casefile::SaveCase(path, *one));
    EXPECT_EQ(folder.Names(), std::set<std::string>{"fall.json"});
}

#endif

} // namespace
