// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "base/NumberText.h"
#include "cli/Actions.h"
#include "cli/JsonText.h"
#include "cli/Options.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace
{

using namespace cli;

template <class T> T Parsed(const std::string& text)
{
    const ParsedAction parsed = ParseAction(text);
    if (!parsed.action)
        throw std::invalid_argument(parsed.error);
    return std::get<T>(*parsed.action);
}

TEST(CliActions, EntryTakesEverythingAfterTheFirstEqualsSign)
{
    EXPECT_EQ(Parsed<EnterAction>("4662=0,8").id, 4662U);
    EXPECT_EQ(Parsed<EnterAction>("4662=0,8").text, "0,8");
    EXPECT_EQ(Parsed<EnterAction>("4665=-5").text, "-5");
    EXPECT_EQ(Parsed<EnterAction>("4665=a=b+").text, "a=b+");
    EXPECT_EQ(Parsed<EnterAction>("4665=").text, "");
}

TEST(CliActions, SignBehindTheNumberIsASpinnerStep)
{
    EXPECT_EQ(Parsed<StepAction>("4662+").direction, 1);
    EXPECT_EQ(Parsed<StepAction>("4662-").direction, -1);
    EXPECT_EQ(Parsed<StepAction>("4662-").id, 4662U);
}

TEST(CliActions, WordsWithValues)
{
    EXPECT_EQ(Parsed<PressAction>("press:105").id, 105U);
    EXPECT_EQ(Parsed<SelectAction>("select:100=-1").index, -1);
    EXPECT_EQ(Parsed<AnswerAction>("answer:1052=6").answer, 6);
    EXPECT_EQ(Parsed<FileAction>("file:C:\\a b=c,d.gpx").path, "C:\\a b=c,d.gpx");
    EXPECT_EQ(Parsed<HostAction>("host:upa=15").change, HostAction::Change::parameters);
    EXPECT_EQ(Parsed<HostAction>("host:wz=3").vehicle, 3U);
    EXPECT_EQ(Parsed<DrawAction>("draw:400=a=b.PNG").file, "a=b.PNG");
    EXPECT_EQ(Parsed<RowsAction>("rows:474=a=b,c.csv").id, 474U);
    EXPECT_EQ(Parsed<RowsAction>("rows:474=a=b,c.csv").file, "a=b,c.csv");
    EXPECT_NO_THROW(Parsed<StateAction>("state"));

    const auto range = Parsed<RangeAction>("range:7=-1.5,2e3");
    EXPECT_DOUBLE_EQ(range.from, -1.5);
    EXPECT_DOUBLE_EQ(range.to, 2000.0);
    const auto place = Parsed<PlaceAction>("place:person=1,2,-3,4,5.5");
    EXPECT_EQ(place.kind, "person");
    EXPECT_DOUBLE_EQ(place.angle, -3.0);
    EXPECT_DOUBLE_EQ(place.height, 5.5);
}

TEST(CliActions, MessageWordsWrapAroundAsTheMachinesDo)
{
    const auto send = Parsed<SendAction>("send:0x548,-1,-2");
    EXPECT_EQ(send.message, 1352U);
    EXPECT_EQ(send.wParam, std::numeric_limits<WPARAM>::max());
    EXPECT_EQ(send.lParam, -2);
}

TEST(CliActions, MalformedOnesSayWhatIsExpected)
{
    for (const char* text : {"",
                             "4662",
                             "+",
                             "=5",
                             "-4662+",
                             "4662++",
                             " 4662=1",
                             "press:",
                             "press:1x",
                             "press:-1",
                             "press:4294967296",
                             "select:1",
                             "select:1=",
                             "answer:=6",
                             "file:",
                             "send:1,2",
                             "send:1,2,3,4",
                             "send:65536,0,0",
                             "send:0x,0,0",
                             "host:wz",
                             "host:foo=1",
                             "host:wz=-1",
                             "range:1=2",
                             "range:1=2,nan",
                             "place:=1,2,3,4,5",
                             "place:x=1,2,3,4",
                             "draw:1=a.txt",
                             "draw:x=a.svg",
                             "draw:1=",
                             "State",
                             "state "}) {
        const ParsedAction parsed = ParseAction(text);
        EXPECT_FALSE(parsed.action) << text;
        EXPECT_NE(parsed.error.find("„" + std::string(text) + "“"), std::string::npos) << parsed.error;
    }
    EXPECT_NE(ParseAction("range:1=2").error.find("range:ID="), std::string::npos);
}

TEST(CliOptions, NegativeNumbersAndActionsAreNoOptions)
{
    const Options options = ParseOptions({"400", "--units=imperial", "-5", "4665=-5", "--transfer", "on", "4662-"},
                                         {"--units", "--transfer"});
    EXPECT_EQ(options.error, "");
    EXPECT_EQ(options.rest, (std::vector<std::string>{"400", "-5", "4665=-5", "4662-"}));
    EXPECT_EQ(options.units, UnitsSystem::imperial);
    EXPECT_EQ(options.transfer, true);
    EXPECT_EQ(ParseOptions({"--", "--units"}, {}).rest, std::vector<std::string>{"--units"});
}

TEST(CliOptions, MistakesAreNamed)
{
    EXPECT_NE(ParseOptions({"--jobs", "2"}, {"--json"}).error.find("--jobs"), std::string::npos);
    for (const char* jobs : {"0", "-1", "x", "1.5", "99999999999", ""})
        EXPECT_NE(ParseOptions({"--jobs", jobs}, {"--jobs"}).error, "") << jobs;
    EXPECT_NE(ParseOptions({"--case"}, {"--case"}).error, "");
    EXPECT_NE(ParseOptions({"--case="}, {"--case"}).error, "");
    EXPECT_NE(ParseOptions({"--transfer", "ja"}, {"--transfer"}).error, "");
}

TEST(CliJsonText, NumbersReadBackAsTheSameDouble)
{
    for (const double value : {0.1, 1.0 / 3.0, 7.848000000000001, 5e-324, 1.7976931348623157e308, -2.5, 1e21}) {
        const std::string text = JsonText().Number(value).Str();
        EXPECT_EQ(base::ParseNumber(text), value) << text;
    }
    EXPECT_EQ(JsonText().Number(0.8).Str(), "0.8");
    EXPECT_EQ(JsonText().Number(-0.0).Str(), "-0.0");
    EXPECT_EQ(JsonText().Number(std::nan("")).Str(), "\"nan\"");
    EXPECT_EQ(JsonText().Number(-HUGE_VAL).Str(), "\"-inf\"");
}

TEST(CliJsonText, TextIsEscapedAndBrokenUtf8Replaced)
{
    EXPECT_EQ(JsonText().Text("Größe \"x\"\\\n\x01").Str(), R"("Größe \"x\"\\\n\u0001")");
    // Overlong form, surrogate, above the last character, cut off.
    EXPECT_EQ(JsonText().Text("a\xC0\x80z").Str(), "\"a\xEF\xBF\xBD\xEF\xBF\xBDz\"");
    EXPECT_EQ(JsonText().Text("\xED\xA0\x80").Str(), "\"\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\"");
    EXPECT_EQ(JsonText().Text("\xF4\x90\x80\x80").Str().size(), 2U + 4U * 3U);
    EXPECT_EQ(JsonText().Text("\xE2\x82").Str(), "\"\xEF\xBF\xBD\xEF\xBF\xBD\"");
}

} // namespace
