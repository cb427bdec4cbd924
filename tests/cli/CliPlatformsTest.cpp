// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Two builds of the program say the same: the one under test, and the one that TAVELIN_CLI_REFERENCE names.
#include "tests/cli/CliProgram.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace
{

using nlohmann::json;
using test::RunCli;

/// Equal in structure, and in numbers to 1e-12 of their size.
void ExpectAlike(const json& a, const json& b, const std::string& where)
{
    if (a.is_number() && b.is_number()) {
        const double x = a.get<double>();
        const double y = b.get<double>();
        EXPECT_LE(std::abs(x - y), 1e-12 * std::max(std::abs(x), std::abs(y))) << where << ": " << a << " and " << b;
    } else if (a.is_array() && b.is_array() && a.size() == b.size()) {
        for (std::size_t i = 0; i < a.size(); ++i)
            ExpectAlike(a[i], b[i], where + "/" + std::to_string(i));
    } else if (a.is_object() && b.is_object() && a.size() == b.size()) {
        for (const auto& [name, value] : a.items()) {
            ASSERT_TRUE(b.contains(name)) << where << "/" << name;
            ExpectAlike(value, b[name], where + "/" + name);
        }
    } else {
        EXPECT_EQ(a, b) << where;
    }
}

void ExpectSame(const std::vector<std::string>& arguments, const std::string& input = {})
{
    std::string call;
    for (const std::string& argument : arguments)
        call += argument + " ";
    const test::Output ours = RunCli(arguments, input);
    const test::Output reference = RunCli(arguments, input, std::getenv("TAVELIN_CLI_REFERENCE"));
    EXPECT_EQ(ours.exit, reference.exit) << call << "\n" << ours.err << reference.err;
    EXPECT_EQ(ours.err, reference.err) << call;
    const auto a = test::JsonLines(ours.out);
    const auto b = test::JsonLines(reference.out);
    ASSERT_EQ(a.size(), b.size()) << call;
    EXPECT_FALSE(a.empty() && ours.exit == 0) << call;
    for (std::size_t i = 0; i < a.size(); ++i)
        ExpectAlike(a[i], b[i], call + "line " + std::to_string(i));
}

class CliPlatforms : public ::testing::Test
{
  protected:
    void SetUp() override
    {
        if (std::getenv("TAVELIN_CLI_REFERENCE") == nullptr)
            GTEST_SKIP() << "TAVELIN_CLI_REFERENCE names no other program";
    }
};

TEST_F(CliPlatforms, SayTheSameOfTheMasks)
{
    ExpectSame({"masks", "--json"});
    ExpectSame({"describe", "400", "--json"});
    ExpectSame({"mask", "400", "Größe=1"});
    ExpectSame({"mask", "400", "4662=½\"\\", "4662=0,8", "4665=-5", "press:105", "state", "press:100"});
}

TEST_F(CliPlatforms, ComputeTheSameBatch)
{
    std::string input;
    for (int i = 0; i < 300; ++i)
        input += json{{"id", i},
                      {"mask", 400},
                      {"actions",
                       {"4662=" + std::to_string(i * 37 % 1001) + "e-2", "4664=" + std::to_string(i * 7 % 181 - 90),
                        "press:105", "4665=" + std::to_string(i * 11 % 181 - 90), "4662+"}}}
                     .dump() +
                 "\n";
    input += "{\"id\":\"ä\"}\nno line\n";
    ExpectSame({"batch", "--jobs", "2"}, input);
}

TEST_F(CliPlatforms, ComputeTheSameInEveryMask)
{
    const std::string reference = std::getenv("TAVELIN_CLI_REFERENCE");
    std::mt19937 random(7);
    std::string input;
    for (const json& mask : json::parse(RunCli({"masks", "--json"}, {}, reference).out)) {
        if (!mask.at("built").get<bool>())
            continue;
        const std::string number = std::to_string(mask.at("number").get<int>());
        const json description = json::parse(RunCli({"describe", number, "--json"}, {}, reference).out);
        for (int i = 0; i < 20; ++i) {
            std::vector<std::string> actions;
            for (const json& control : description.at("controls")) {
                if (control.at("role") != "input" || !control.contains("minimum") || random() % 3 == 0)
                    continue;
                const auto largest = static_cast<unsigned>(std::min(control.at("maximum").get<double>(), 100.0));
                actions.push_back(std::to_string(control.at("id").get<int>()) + "=" +
                                  std::to_string(random() % (1000 * largest + 1)) + "e-3");
            }
            actions.push_back("press:105");
            input += json{{"id", number + "/" + std::to_string(i)}, {"mask", mask.at("number")}, {"actions", actions}}
                         .dump() +
                     "\n";
        }
    }
    ExpectSame({"batch", "--jobs", "2"}, input);
}

TEST_F(CliPlatforms, SolveTheSameEquations)
{
    ExpectSame({"eval", "Quadratgl", "1", "-1e3", "0,1", "--json"});
    ExpectSame({"eval", "Quadratgl", "3e-5", "123456,789", "-2", "--json"});
}

} // namespace
