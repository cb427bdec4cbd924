// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// How calls end: what is saved, printed and answered when something goes wrong beside the calculation.
#include "tests/cli/CliProgram.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <filesystem>

namespace
{

using nlohmann::json;
using test::Output;
using test::RunCli;

TEST(CliEnds, AFailingPictureCostsNeitherStateNorCase)
{
    const test::TemporaryFolder folder;
    const std::string saved = folder.File("case.json");
    const Output output = RunCli({"mask", "459", "--save", saved, "4804=50", "4810=7,5",
                                  "draw:459=" + folder.File("missing/a.png"), "press:105"});
    EXPECT_EQ(output.exit, 3);
    EXPECT_NE(output.err.find("draw:"), std::string::npos);
    EXPECT_EQ(json::parse(output.out).at("record").at("berechnet"), 1) << "the actions after it were done";
    EXPECT_TRUE(std::filesystem::exists(saved));
}

TEST(CliEnds, ARefusedEntryIsNotSavedUnlessWished)
{
    const test::TemporaryFolder folder;
    const std::string saved = folder.File("case.json");
    const Output refused = RunCli({"mask", "459", "--save", saved, "4804=5000"});
    EXPECT_EQ(refused.exit, 1);
    EXPECT_NE(refused.err.find("--save-refused"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(saved));
    EXPECT_EQ(RunCli({"mask", "459", "--save", saved, "--save-refused", "4804=5000"}).exit, 1);
    EXPECT_TRUE(std::filesystem::exists(saved));
}

TEST(CliEnds, AnIdComesBackAsTheVeryTextItWas)
{
    for (const char* id :
         {"1.0", "1e3", "\"\\u0041 b\"", "[1, 2.50 ]", "{\"a\" : [\"}\"]}", "-0", "12345678901234567890"}) {
        const std::string line =
            std::string(R"({"note":1,"mask":400,"id" :  )") + id + R"( ,"actions":["4662=0,8"]})" + "\n";
        const std::string known = line.substr(0, 1) + line.substr(10);
        EXPECT_EQ(RunCli({"batch"}, known).out.rfind("{\"id\":" + std::string(id) + ",", 0), 0U) << id;
        EXPECT_EQ(RunCli({"batch"}, line).out.rfind("{\"id\":" + std::string(id) + ",", 0), 0U) << id << ", refused";
    }
}

TEST(CliEnds, ControlCharactersDoNotReachTheTerminal)
{
    const Output output = RunCli({"mask", "400", "\x1B[31m\xC2\x9Bx"});
    EXPECT_EQ(output.exit, 2);
    EXPECT_EQ(output.err.find('\x1B'), std::string::npos);
    EXPECT_NE(output.err.find("\\x1B[31m\\x9Bx"), std::string::npos) << output.err;
}

TEST(CliEnds, AnswersAreButtonsAndSettingsAreKnown)
{
    EXPECT_EQ(RunCli({"mask", "400", "answer:1052=3"}).exit, 2);
    EXPECT_EQ(RunCli({"mask", "400", "answer:1052=6", "press:107"}).exit, 0);
    const test::TemporaryFolder folder;
    folder.Write("settings.json", R"({"unitss":"imperial","colors":{"editTexxt":"#000000"}})");
    const Output output = RunCli({"describe", "400", "--config", folder.File("settings.json")});
    EXPECT_EQ(output.exit, 3);
    EXPECT_NE(output.err.find("unitss, colors/editTexxt"), std::string::npos) << output.err;
    EXPECT_EQ(output.err.find("Voreinstellung"), std::string::npos);
}

TEST(CliEnds, AFunctionOfAMaskSaysWhyItHasNoResult)
{
    const Output open = RunCli({"eval", "AMax", "4662=0,8"});
    EXPECT_NE(open.err.find("press:100"), std::string::npos) << open.err;
    const Output none = RunCli({"eval", "--json", "VGrenz", "4651=0,7", "press:100"});
    EXPECT_NE(none.err.find("kein Ergebnis"), std::string::npos);
    EXPECT_NE(none.out.find("null"), std::string::npos) << "no OK value without a limit speed";
    EXPECT_EQ(RunCli({"eval", "VGrenz", "4651=0,7", "4652=50", "press:100"}).err, "");
}

TEST(CliEnds, RangesStandInTheUnitShown)
{
    const Output text = RunCli({"describe", "459", "--units", "imperial"});
    EXPECT_NE(text.out.find("0 … 621.37"), std::string::npos) << "1000 km/h in mph";
    const json described = json::parse(RunCli({"describe", "459", "--units", "imperial", "--json"}).out);
    for (const json& control : described.at("controls"))
        if (control.at("id") == 4804) {
            EXPECT_EQ(control.at("maximum"), 1000);
            EXPECT_NEAR(control.at("shownMaximum").get<double>(), 1000.0 / 1.609344, 1e-9);
        }
}

} // namespace
