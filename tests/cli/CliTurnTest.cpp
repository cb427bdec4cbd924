// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The turning mask in scripts: both questions both ways, the case it writes, and cases that hold nonsense.
#include "tests/cli/CliProgram.h"

namespace
{

using nlohmann::json;
using test::RunCli;

json Turn(std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), {"mask", "450"});
    const test::Output output = RunCli(arguments);
    EXPECT_EQ(output.exit, 0) << output.err;
    return json::parse(output.out);
}

TEST(CliTurn, AnswersBothQuestionsBothWays)
{
    for (const char* answer : {"6", "7"}) {
        const bool yes = answer[0] == '6';
        const json stop = Turn(
            {std::string("answer:1342=") + answer, "3012=8", "3013=2", "3015=90", "3021=20", "3022=-3", "press:105"});
        ASSERT_EQ(stop["messages"].size(), 1U);
        EXPECT_EQ(stop["messages"][0]["number"], 1342);
        EXPECT_LE(stop["record"]["endgeschw"].get<double>(), 0.5);
        EXPECT_EQ(stop["record"]["gierwinkel"].get<double>() > 89.8, yes);

        const json straight =
            Turn({std::string("answer:1344=") + answer, "3011=8", "3013=1", "3015=90", "3021=20", "press:105"});
        ASSERT_EQ(straight["messages"].size(), 1U);
        EXPECT_EQ(straight["messages"][0]["number"], 1344);
        EXPECT_EQ(straight["record"]["erreichterRadius"], 0);
        EXPECT_EQ(straight["record"]["gierwinkel"].get<double>() > 89.8, yes);
    }
}

TEST(CliTurn, SavesTheTurnAndReadsItAgain)
{
    const test::TemporaryFolder folder;
    const std::string file = folder.File("turn.json");
    const json first = Turn({"--save", file, "3012=10", "3015=120", "3022=2", "3023=18", "press:109", "press:105"});
    const json phases = json::parse(test::Content(file))["vehicles"][0]["pathTime"]["phases"];
    ASSERT_EQ(phases.size(), 2U);
    EXPECT_EQ(phases[0]["kind"], 13);
    EXPECT_FALSE(phases[0]["trajectory"].empty());
    EXPECT_NEAR(phases[1]["time"].get<double>(), 2.5, 1e-9);
    const json again = Turn({"--case", file, "press:105"});
    EXPECT_NEAR(again["record"]["zeit"].get<double>(), first["record"]["zeit"].get<double>(), 0.002);
}

TEST(CliTurn, CasesWithNonsenseDoNoHarm)
{
    const test::TemporaryFolder folder;
    const std::string file = folder.File("odd.json");
    ASSERT_EQ(RunCli({"case", "new", file}).exit, 0);
    json odd = json::parse(test::Content(file));
    odd["vehicles"] = json::array({{{"index", 0}, {"type", "car"}}}); // no lengths
    odd["vehicles"][0]["pathTime"]["phases"] = json::array({{{"column", 3},
                                                             {"kind", 13},
                                                             {"startRadius", 1e20},
                                                             {"endRadius", -5},
                                                             {"steeringTime", -3},
                                                             {"startSpeed", 1e9},
                                                             {"deceleration", -1e9},
                                                             {"direction", 0},
                                                             {"path", -1e9},
                                                             {"trajectory", json::array({{1e12, -1e12}})}}});
    test::Write(file, odd.dump());
    const json empty = Turn({"--case", file, "--transfer", "on", "press:105"});
    ASSERT_EQ(empty["messages"].size(), 2U);
    EXPECT_EQ(empty["messages"][0]["number"], 1331);
    EXPECT_EQ(empty["messages"][1]["number"], 1336);
    EXPECT_EQ(empty["record"]["endradius"], 0);
    EXPECT_EQ(empty["record"]["anfangsgeschw"], 0);

    for (int column = 3; column < 48; ++column)
        odd["vehicles"][0]["pathTime"]["phases"][static_cast<std::size_t>(column - 3)] = {
            {"column", column}, {"kind", 7}, {"startSpeed", 10}, {"endSpeed", 10}, {"time", 1}};
    test::Write(file, odd.dump());
    const std::string after = folder.File("after.json");
    const json full =
        Turn({"--case", file, "--transfer", "on", "--save", after, "3012=8", "3015=90", "3021=20", "press:105"});
    EXPECT_GT(full["record"]["zeit"].get<double>(), 1.0);
    EXPECT_EQ(full["messages"].back()["number"], 0); // no phase is free
    EXPECT_EQ(json::parse(test::Content(after))["vehicles"][0]["pathTime"]["phases"].size(), 45U);
}

} // namespace
