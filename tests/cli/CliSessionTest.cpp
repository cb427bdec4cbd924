// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The program as scripts use it. Starts are few, because each takes a while under Wine: what needs no start of its own
// is a line of one batch.
#include "tests/cli/CliProgram.h"

#include <cmath>
#include <map>
#include <set>

namespace
{

using nlohmann::json;
using test::RunCli;

constexpr double kG = 9.81;

/// The lines of one batch by their ID.
class CliMask400 : public ::testing::Test
{
  protected:
    static void SetUpTestSuite()
    {
        const std::map<std::string, std::vector<std::string>> scripts{
            {"level", {"4662=0,8", "press:105"}},
            {"point", {"4662=0.8", "press:105"}},
            {"kept", {"4662=0,8", "press:107"}},
            {"cleared", {"4662=0,8", "answer:1052=6", "press:107", "state", "4662=0,5", "4662+"}},
            {"stepped", {"4662=0,8", "press:105", "4662=0,5", "4662-"}},
            {"ok", {"4662=0,8", "press:100"}},
            {"cancel", {"4662=0,8", "press:2"}},
            {"word", {"4662=0,3", "4662=abc", "press:105"}},
            {"large", {"4662=0,3", "4662=11", "4664=-91", "press:105"}},
            {"empty", {"4662=0,3", "4662=", "press:105"}},
            {"unknown", {"state", "999=1"}},
            {"disabled", {"4663=1"}},
            {"button", {"105=1"}},
            {"noSpinner", {"105+"}},
            {"label", {"press:14663"}},
            {"noList", {"select:4662=0"}},
            {"closed", {"press:2", "4662=1"}},
            {"malformed", {"4662"}},
            {"place", {"place:person=1,2,3,4,5"}},
            {"range", {"range:4662=1,2"}},
            {"vehicle", {"host:wz=16"}},
            {"host", {"host:geo=0", "host:wz=1", "host:upa=15"}},
            {"send", {"4662=0,8", "press:105", "send:0x548,0,0", "send:1335,4664,0"}},
            {"draw", {"draw:4662=x.svg"}},
        };
        std::string input;
        for (const auto& [id, actions] : scripts)
            input += json{{"id", id}, {"mask", 400}, {"actions", actions}}.dump() + "\n";
        const test::Output output = RunCli({"batch", "--jobs", "2"}, input);
        ASSERT_EQ(output.exit, 0) << output.err;
        for (const json& line : test::JsonLines(output.out))
            s_lines[line.at("id")] = line;
        ASSERT_EQ(s_lines.size(), scripts.size());
    }

    static const json& Line(const std::string& id) { return s_lines.at(id); }
    static const json& State(const std::string& id)
    {
        EXPECT_LE(Line(id).at("exit").get<int>(), 1) << Line(id);
        return Line(id).at("result");
    }
    static double Field(const std::string& id, const char* field) { return State(id).at("record").at(field); }
    static std::string Text(const std::string& id, const char* control)
    {
        return State(id).at("controls").at(control).at("text");
    }
    /// The line ended with `exit` and a text that holds all the parts.
    static void ExpectError(const std::string& id, int exit, const std::vector<std::string>& parts)
    {
        EXPECT_EQ(Line(id).at("exit"), exit) << Line(id);
        EXPECT_FALSE(Line(id).contains("result"));
        const std::string error = Line(id).value("error", "");
        for (const std::string& part : parts)
            EXPECT_NE(error.find(part), std::string::npos) << error;
    }

    static inline std::map<std::string, json> s_lines;
};

TEST_F(CliMask400, ComputesOnLevelRoad)
{
    EXPECT_DOUBLE_EQ(Field("level", "verzoegerung"), 0.8 * kG);
    EXPECT_DOUBLE_EQ(Field("point", "verzoegerung"), 0.8 * kG);
    const json& result = State("level").at("controls").at("4663");
    EXPECT_EQ(result.at("kind"), "edit");
    EXPECT_EQ(result.at("label"), "max. Verzögerug");
    EXPECT_EQ(result.at("unit"), "m/s²");
    EXPECT_EQ(result.at("enabled"), false);
    EXPECT_DOUBLE_EQ(result.at("value"), 0.8 * kG);
    EXPECT_EQ(State("level").at("title"), "Berechnung der Beschleunigung");
}

TEST_F(CliMask400, AnswersStepsAndStatesInTheirOrder)
{
    EXPECT_DOUBLE_EQ(Field("kept", "reibungsbeiwert"), 0.8);
    const json& message = State("kept").at("messages").at(0);
    EXPECT_EQ(message.at("number"), 1052);
    EXPECT_EQ(message.at("answer"), 7);
    EXPECT_EQ(Line("kept").at("exit"), 0);
    EXPECT_EQ(State("cleared").at("messages").at(0).at("answer"), 6);
    EXPECT_EQ(Line("cleared").at("states").at(0).at("record").at("reibungsbeiwert"), 0.0);
    EXPECT_DOUBLE_EQ(Field("cleared", "reibungsbeiwert"), 0.51);
    EXPECT_DOUBLE_EQ(Field("stepped", "verzoegerung"), 0.49 * kG);
    EXPECT_EQ(State("stepped").at("posted"),
              json::array({{{"message", 1352}, {"wParam", 0}, {"lParam", 0}, {"to", "mask"}}}));
}

TEST_F(CliMask400, OkComputesAndClosesAndTheStateStays)
{
    EXPECT_EQ(State("ok").at("open"), false);
    EXPECT_DOUBLE_EQ(Field("ok", "verzoegerung"), 0.8 * kG);
    EXPECT_EQ(Text("ok", "4662"), "0,80");
    EXPECT_EQ(State("cancel").at("open"), false);
    EXPECT_EQ(Field("cancel", "verzoegerung"), 0.0);
}

TEST_F(CliMask400, RefusedEntriesNameFieldValueAndRangeAndTheRestIsDone)
{
    EXPECT_EQ(Line("word").at("exit"), 1);
    EXPECT_DOUBLE_EQ(Field("word", "verzoegerung"), 0.3 * kG);
    EXPECT_EQ(Text("word", "4662"), "0,30");
    EXPECT_EQ(Line("large").at("exit"), 1);
    EXPECT_DOUBLE_EQ(Field("large", "verzoegerung"), 0.3 * kG);
    const json& messages = State("large").at("messages");
    ASSERT_EQ(messages.size(), 2U);
    const std::string first = messages[0].at("text");
    for (const char* part : {"Reibungsbeiwert", "11", "0,00", "10,00"})
        EXPECT_NE(first.find(part), std::string::npos) << first;
    const std::string second = messages[1].at("text");
    for (const char* part : {"Straßenneigung", "°", "-91", "-90,00", "90,00"})
        EXPECT_NE(second.find(part), std::string::npos) << second;
    EXPECT_EQ(Line("empty").at("exit"), 0);
    EXPECT_DOUBLE_EQ(Field("empty", "verzoegerung"), 0.3 * kG);
}

TEST_F(CliMask400, MistakesOfTheScriptAreNamed)
{
    ExpectError("unknown", 2, {"999", "400"});
    ExpectError("disabled", 2, {"4663", "max. Verzögerug", "gesperrt"});
    ExpectError("button", 2, {"105", "Rechnen", "ein Knopf"});
    ExpectError("noSpinner", 2, {"105", "ein Knopf"});
    ExpectError("label", 2, {"14663", "ein Text"});
    ExpectError("noList", 2, {"4662", "ein Eingabefeld"});
    ExpectError("closed", 2, {"4662", "geschlossen"});
    ExpectError("malformed", 2, {"„4662“"});
    ExpectError("place", 2, {"place:person", "Szene"});
    ExpectError("range", 2, {"4662", "Diagramm"});
    ExpectError("vehicle", 2, {"16", "0 bis 15"});
    ExpectError("draw", 2, {"4662", "ein Eingabefeld"});
}

TEST_F(CliMask400, TakesMessagesOfTheHost)
{
    EXPECT_EQ(Line("host").at("exit"), 0);
    EXPECT_EQ(Line("send").at("exit"), 0);
    EXPECT_DOUBLE_EQ(Field("send", "verzoegerung"), 0.8 * kG);
}

TEST(CliBatchVerb, KeepsTheOrderAndAnswersEveryLine)
{
    std::string input;
    for (int i = 0; i < 400; ++i)
        input += i % 10 == 3 ? "{\"id\":" + std::to_string(i) + ",\"mask\":418}\n"
                 : i % 10 == 5
                     ? "{\"id\":\n"
                     : json{{"id", i}, {"mask", 400}, {"actions", {"4662=" + std::to_string(i) + "e-2"}}}.dump() + "\n";
    input += "[1]\n\n{\"mask\":400,\"action\":[]}\n{\"id\":[1,\"ä\"],\"mask\":\"400\"}\n";
    input += json{{"id", "big"}, {"mask", 400}, {"actions", {"4662=" + std::string(3000000, '1')}}}.dump() + "\n";
    input +=
        "{\"id\":-0.5,\"mask\":400,\"case\":{}}\n{\"id\":null,\"mask\":400,\"case\":\"missing.json\"}"; // no line break

    const test::Output output = RunCli({"batch"}, input);
    EXPECT_EQ(output.exit, 0) << output.err;
    const auto lines = test::JsonLines(output.out);
    ASSERT_EQ(lines.size(), 407U);
    for (std::size_t i = 0; i < 400; ++i) {
        const json id = i % 10 == 5 ? json(nullptr) : json(i);
        EXPECT_EQ(lines[i].at("id"), id);
        EXPECT_EQ(lines[i].at("exit"), i % 10 == 3 || i % 10 == 5 ? 2 : 0) << lines[i];
        if (lines[i].contains("result"))
            EXPECT_DOUBLE_EQ(lines[i]["result"]["record"]["reibungsbeiwert"], static_cast<double>(i) * 0.01);
        else
            EXPECT_FALSE(lines[i].at("error").get<std::string>().empty());
    }
    const std::vector<std::pair<json, int>> rest{{nullptr, 2}, {nullptr, 2}, {nullptr, 2}, {json{1, "ä"}, 2},
                                                 {"big", 1},   {-0.5, 3},    {nullptr, 3}};
    for (std::size_t i = 0; i < rest.size(); ++i) {
        EXPECT_EQ(lines[400 + i].at("id"), rest[i].first);
        EXPECT_EQ(lines[400 + i].at("exit"), rest[i].second) << lines[400 + i].dump().substr(0, 300);
    }
}

TEST(CliBatchVerb, AnswersWithTheNamedFieldsOnly)
{
    const json actions{"4662=0,8", "press:107", "state", "4665=-5", "press:105"};
    const auto line = [&](const json& fields) {
        return json{{"id", 1}, {"mask", 400}, {"actions", actions}, {"fields", fields}}.dump() + "\n";
    };
    const std::string all = json{{"id", 1}, {"mask", 400}, {"actions", actions}}.dump() + "\n";
    const json wrong[] = {5, json{"verzoegerung", 5}, json{"verzoegerung", "verzoegerung"},
                          json{"verzoegerung", "Tempo"}};
    std::string input = all + line(json{"verzoegerung", "neigungGrad"}) + line(json::array());
    input += json{{"mask", 400}, {"actions", {"press:2"}}, {"fields", {"verzoegerung"}}}.dump() + "\n";
    input += json{{"mask", 400}, {"actions", {"4662=x"}}, {"fields", {"verzoegerung"}}}.dump() + "\n";
    for (const json& fields : wrong)
        input += line(fields);
    const test::Output output = RunCli({"batch", "--jobs", "1"}, input);
    const auto lines = test::JsonLines(output.out);
    ASSERT_EQ(lines.size(), 9U) << output.err;

    const auto same = [](const json& whole) {
        return json{{"record",
                     {{"verzoegerung", whole.at("record").at("verzoegerung")},
                      {"neigungGrad", whole.at("record").at("neigungGrad")}}},
                    {"messages", whole.at("messages")}};
    };
    EXPECT_EQ(lines[1], (json{{"id", 1},
                              {"exit", 0},
                              {"states", json::array({same(lines[0].at("states")[0])})},
                              {"result", same(lines[0].at("result"))}}));
    EXPECT_EQ(lines[1]["result"]["messages"].size(), 1U);
    EXPECT_NEAR(lines[1]["result"]["record"]["verzoegerung"],
                kG * (0.8 * std::cos(std::atan(-0.05)) + std::sin(std::atan(-0.05))), 1e-12);
    EXPECT_EQ(lines[2]["result"]["record"], json::object());
    EXPECT_EQ(lines[3]["result"]["record"], (json{{"verzoegerung", 0.0}})) << "of a mask that has closed";
    EXPECT_EQ(lines[4]["exit"], 1);
    EXPECT_EQ(lines[4]["result"]["messages"].size(), 1U);
    for (std::size_t i = 5; i < lines.size(); ++i) {
        EXPECT_EQ(lines[i]["exit"], 2) << lines[i];
        EXPECT_FALSE(lines[i].contains("result"));
    }
    EXPECT_NE(lines[8]["error"].get<std::string>().find("„Tempo“"), std::string::npos) << lines[8];
}

TEST(CliBatchVerb, InlineCasesAreReadAsFilesAre)
{
    const std::string text = test::Content(TAVELIN_SOURCE_DIR "/examples/kreuzung.json");
    json damaged = json::parse(text);
    damaged["vehicles"][1]["mass"] = "schwer";
    json newer = json::parse(text);
    newer["version"] = "2.0";
    std::string input = json{{"mask", 459}, {"case", TAVELIN_SOURCE_DIR "/examples/kreuzung.json"}}.dump() + "\n";
    for (const json& inlined : {json::parse(text), damaged, newer, json::array()})
        input += json{{"mask", 459}, {"case", inlined}}.dump() + "\n";
    const auto lines = test::JsonLines(RunCli({"batch", "--jobs", "1"}, input).out);
    ASSERT_EQ(lines.size(), 5U);
    EXPECT_EQ(lines[0]["exit"], 0) << lines[0];
    EXPECT_EQ(lines[1], lines[0]);
    const char* const reasons[] = {"/vehicles/1/mass ist keine Zahl", "neueren Version", "kein Fall dieses Programms"};
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(lines[2 + i]["exit"], 3);
        EXPECT_NE(lines[2 + i]["error"].get<std::string>().find(reasons[i]), std::string::npos) << lines[2 + i];
    }
}

TEST(CliBatchVerb, NoLineChangesTheCaseOfTheNext)
{
    // Opened on a case with phases the mask would show them.
    const std::string plain = json{{"mask", 459}}.dump() + "\n";
    const std::string transfer =
        json{{"mask", 459}, {"actions", {"4804=50", "4810=7,5", "4805=1", "4809=0,2", "press:105", "press:109"}}}
            .dump() +
        "\n";
    const test::Output output = RunCli({"batch", "--jobs", "1", "--transfer", "on"}, plain + transfer + plain);
    const auto lines = test::JsonLines(output.out);
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_FALSE(lines[1]["result"]["broadcast"].empty()) << "nothing was transferred: " << lines[1];
    EXPECT_EQ(lines[2], lines[0]);
}

TEST(CliBatchVerb, NoLineChangesTheSettingsOfTheNext)
{
    const std::string plain = json{{"mask", 469}}.dump() + "\n";
    const std::string switching = json{{"mask", 469}, {"actions", {"press:109"}}}.dump() + "\n";
    const test::Output output = RunCli({"batch", "--jobs", "1"}, plain + switching + plain);
    const auto lines = test::JsonLines(output.out);
    ASSERT_EQ(lines.size(), 3U);
    const auto option = [&](std::size_t line) { return lines[line]["result"]["controls"]["109"]["value"]; };
    EXPECT_EQ(option(0), 0);
    EXPECT_EQ(option(1), 1);
    EXPECT_EQ(option(2), 0);
}

TEST(CliProgram, ListsThirtyOneMasks)
{
    const test::Output output = RunCli({"masks", "--json"});
    ASSERT_EQ(output.exit, 0) << output.err;
    const json masks = json::parse(output.out);
    ASSERT_EQ(masks.size(), 31U);
    std::set<int> numbers;
    for (const json& mask : masks)
        numbers.insert(mask.at("number").get<int>());
    EXPECT_EQ(numbers.size(), 31U);
    EXPECT_EQ(*numbers.begin(), 400);
    EXPECT_EQ(*numbers.rbegin(), 494);
    EXPECT_EQ(masks[0].at("built"), true);
}

TEST(CliProgram, DescribesControlsAndRecord)
{
    const json mask = json::parse(RunCli({"describe", "400", "--json"}).out);
    std::map<int, json> controls;
    for (const json& control : mask.at("controls"))
        controls[control.at("id").get<int>()] = control;
    EXPECT_EQ(controls.at(4665).at("minimum"), -90.0);
    EXPECT_EQ(controls.at(4665).at("maximum"), 90.0);
    EXPECT_EQ(controls.at(4665).at("decimals"), 2);
    EXPECT_EQ(controls.at(4665).at("field"), "neigungProzent");
    EXPECT_EQ(controls.at(4665).at("role"), "input");
    EXPECT_EQ(controls.at(4663).at("role"), "result");
    EXPECT_EQ(controls.at(105).at("role"), "button");
    EXPECT_EQ(mask.at("record").at(3),
              (json{{"name", "verzoegerung"}, {"unit", "m/s²"}, {"type", "double"}, {"count", 1}}));
}

TEST(CliProgram, EvaluatesTheQuadraticSolver)
{
    const json result = json::parse(RunCli({"eval", "Quadratgl", "2", "-2", "-12", "--json"}).out);
    EXPECT_EQ(result.at("results"), (json{{"count", 2}, {"x1", 3.0}, {"x2", -2.0}}));
    EXPECT_EQ(RunCli({"eval", "Quadratgl", "1", "2"}).exit, 2);
    const json none = json::parse(RunCli({"eval", "Quadratgl", "1", "nan", "-inf", "--json"}).out);
    EXPECT_EQ(none.at("arguments"), (json{{"a", 1}, {"b", "nan"}, {"c", "-inf"}}));
    EXPECT_EQ(none.at("results"), (json{{"count", 0}, {"x1", nullptr}, {"x2", nullptr}}));
}

TEST(CliProgram, RunsAMaskModallyForItsResult)
{
    const json accepted = json::parse(RunCli({"eval", "AMax", "4662=0,8", "press:100", "--json"}).out);
    EXPECT_EQ(accepted.at("results").at("okFlag"), 1);
    EXPECT_DOUBLE_EQ(accepted.at("results").at("result"), 0.8 * kG);
    // Left open, the mask is cancelled and writes nothing.
    const json left = json::parse(RunCli({"eval", "AMax", "4662=0,8", "press:105", "--json"}).out);
    EXPECT_EQ(left.at("results"), (json{{"okFlag", 0}, {"result", nullptr}}));
}

TEST(CliProgram, PrintsEveryStateAndEndsWithTheRefusal)
{
    const test::Output output = RunCli({"mask", "400", "4662=0,8", "state", "4662=abc", "press:105"});
    EXPECT_EQ(output.exit, 1) << output.err;
    const auto states = test::JsonLines(output.out);
    ASSERT_EQ(states.size(), 2U);
    EXPECT_EQ(states[0]["record"]["verzoegerung"], 0.0);
    EXPECT_EQ(states[0]["messages"].size(), 0U);
    EXPECT_DOUBLE_EQ(states[1]["record"]["verzoegerung"], 0.8 * kG);
    EXPECT_EQ(states[1]["messages"].size(), 1U);
}

TEST(CliProgram, WrongUsageEndsWithTwoAndKeepsWhatWasPrinted)
{
    const test::Output output = RunCli({"mask", "400", "state", "999=1"});
    EXPECT_EQ(output.exit, 2);
    EXPECT_EQ(test::JsonLines(output.out).size(), 1U);
    EXPECT_NE(output.err.find("999"), std::string::npos) << output.err;
    const test::Output early = RunCli({"mask", "400", "state", "select:1"});
    EXPECT_EQ(early.exit, 2);
    EXPECT_EQ(early.out, "");
}

TEST(CliProgram, SavesACaseThatChecksAndRefusesADamagedOne)
{
    const test::TemporaryFolder folder;
    const std::string path = folder.File("fall.json");
    EXPECT_EQ(RunCli({"case", "new", path}).exit, 0);
    const std::string first = test::Content(path);
    EXPECT_EQ(RunCli({"case", "new", path}).exit, 3);
    const std::string copy = folder.File("kopie.json");
    const test::Output saved =
        RunCli({"mask", "400", "--case", path, "--save", copy, "--units", "imperial", "4662=0,8", "press:105"});
    EXPECT_EQ(saved.exit, 0) << saved.err;
    EXPECT_EQ(test::Content(copy), first);
    const json result = json::parse(saved.out);
    EXPECT_EQ(result["controls"]["4663"]["unit"], "ft/s²");
    EXPECT_EQ(result["controls"]["4663"]["text"], "25,75"); // 7.848 m/s² / 0.3048 m
    EXPECT_DOUBLE_EQ(result["record"]["verzoegerung"], 0.8 * kG);

    test::Write(copy, first.substr(0, first.size() / 2));
    const test::Output damaged = RunCli({"mask", "400", "--case", copy, "4662=0,8"});
    EXPECT_EQ(damaged.exit, 3);
    EXPECT_EQ(damaged.out, "");
    EXPECT_NE(damaged.err.find("kopie.json"), std::string::npos) << damaged.err;
    EXPECT_EQ(RunCli({"case", "check", copy}).exit, 3);
}

TEST(CliProgram, WritesAPictureOfTheMask)
{
    const test::TemporaryFolder folder;
    const std::string path = folder.File("maske.svg");
    EXPECT_EQ(RunCli({"mask", "400", "4662=0,8", "press:105", "draw:400=" + path}).exit, 0);
    const std::string picture = test::Content(path);
    for (const char* part : {"<svg", "Berechnung der Beschleunigung", "Reibungsbeiwert:", "7,85", "m/s²", "Löschen"})
        EXPECT_NE(picture.find(part), std::string::npos) << part;
    EXPECT_EQ(picture.find("&amp;Rechnen"), std::string::npos);
    EXPECT_EQ(RunCli({"mask", "400", "draw:400=" + folder.File("fehlt/maske.svg")}).exit, 3);
}

TEST(CliProgram, WritesTheProtocolOfTheMask)
{
    const test::TemporaryFolder folder;
    const std::string path = folder.File("protokoll.html");
    const std::string kase = std::string(TAVELIN_SOURCE_DIR) + "/examples/fussgaenger.json";
    EXPECT_EQ(
        RunCli({"mask", "487", "--case", kase, "press:105", "protocol:" + path, "protocol:" + path + ".ODT"}).exit, 0);
    const std::string page = test::Content(path);
    for (const char* part : {"487 Schrankenverfahren", "<svg", "SHA-256", "Kollisionsort", "Nach Dettinger", "w = v"})
        EXPECT_NE(page.find(part), std::string::npos) << part;
    EXPECT_EQ(test::Content(path + ".ODT").substr(0, 2), "PK");
    EXPECT_EQ(RunCli({"mask", "400", "protocol:" + folder.File("p.pdf")}).exit, 2);
    EXPECT_EQ(RunCli({"mask", "400", "protocol:" + folder.File("fehlt/p.html")}).exit, 3);
    const auto closed = RunCli({"mask", "400", "press:100", "protocol:" + path});
    EXPECT_EQ(closed.exit, 2);
}

} // namespace
