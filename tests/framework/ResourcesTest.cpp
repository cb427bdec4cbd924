// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "framework/Resources.h"
#include "base/Utf.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <regex>
#include <set>
#include <sstream>

namespace
{

using namespace base;
using namespace framework;

std::string SourceFile(const std::string& name)
{
    const char* folder = std::getenv("TAVELIN_SOURCE_DIR");
    std::ifstream file(std::string(folder == nullptr ? "." : folder) + "/" + name);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

/// All that the resource compiler reads in files of that ending.
std::string SourceFiles(const std::string& ending)
{
    const char* folder = std::getenv("TAVELIN_SOURCE_DIR");
    std::string text;
    for (const auto& entry :
         std::filesystem::directory_iterator(std::string(folder == nullptr ? "." : folder) + "/res"))
        if (entry.path().extension() == ending)
            text += SourceFile("res/" + entry.path().filename().string());
    return text;
}

std::map<std::string, UINT> Defines()
{
    std::map<std::string, UINT> numbers;
    const std::string header = SourceFiles(".h");
    const std::regex define(R"(#define\s+(\w+)\s+(0x[0-9A-Fa-f]+|\d+))");
    for (std::sregex_iterator it(header.begin(), header.end(), define), end; it != end; ++it)
        numbers[(*it)[1]] = static_cast<UINT>(std::stoul((*it)[2], nullptr, 0));
    return numbers;
}

/// The literal as the resource compiler reads it: "" is one quotation mark, \n a line break.
std::string Unquoted(std::string text)
{
    text = std::regex_replace(text, std::regex("\"\""), "\"");
    return std::regex_replace(text, std::regex(R"(\\n)"), "\n");
}

TEST(ResourcesTest, EveryDialogOfTheSourceIsThereWithEveryControlAndText)
{
    const std::string source = SourceFiles(".rc");
    ASSERT_FALSE(source.empty());
    const auto defines = Defines();
    std::istringstream lines(source);
    const std::regex dialogLine(R"(^(\w+)\s+DIALOG(EX)?\s+.*)");
    const std::regex captionLine(R"rx(^\s*CAPTION\s+"((?:[^"]|"")*)".*)rx");
    const std::regex textControl(R"rx(^\s+\w+\s+"((?:[^"]|"")*)",\s*(EINHEIT\()?(\w+)(?: \+ (\d+))?.*)rx");
    const std::regex plainControl(R"(^\s+(?:EDITTEXT|COMBOBOX|LISTBOX)\s+(\w+).*)");
    const std::regex numberLine(R"rx(^\s+ZAHL(_FEST)?(?:_ERSTE)?\("([^"]*)", (\w+), "([^"]*)", .*)rx");
    const DialogTemplate* dialog = nullptr;
    std::string name;
    int dialogs = 0;
    int controls = 0;
    bool strings = false;
    std::set<std::pair<std::string, UINT>> seen;
    const auto number = [&](const std::string& id) {
        const auto found = defines.find(id);
        if (found != defines.end())
            return found->second;
        return id == "IDCANCEL" ? 2U : id == "IDHELP" ? 9U : id == "IDOK" ? 1U : static_cast<UINT>(std::stoul(id));
    };
    for (std::string line; std::getline(lines, line);) {
        std::smatch match;
        strings = (strings && line.rfind("END", 0) != 0) || line.rfind("STRINGTABLE", 0) == 0;
        if (strings) {
            continue;
        } else if (std::regex_match(line, match, dialogLine)) {
            name = match[1];
            dialog = FindDialogTemplate(number(name));
            ASSERT_NE(dialog, nullptr) << name;
            ++dialogs;
        } else if (std::regex_match(line, match, numberLine)) {
            // Label, edit and unit in one line; the unit has a number of its own when the unit system converts it.
            const UINT edit = number(match[3]);
            const UINT unit = match[1].matched ? 0xFFFFU : edit + 10000;
            const auto& all = dialog->controls;
            const auto at =
                std::find_if(all.begin(), all.end(), [&](const TemplateControl& c) { return c.id == edit; });
            ASSERT_TRUE(at != all.end() && at != all.begin() && at + 1 != all.end()) << name << ": " << line;
            EXPECT_EQ((at - 1)->text, match[2]) << name << ": " << line;
            EXPECT_EQ((at + 1)->text, match[4]) << name << ": " << line;
            EXPECT_EQ((at + 1)->id, unit) << name << ": " << line;
            EXPECT_TRUE(seen.insert({name, edit}).second) << name << ": twice " << line;
            controls += 3;
        } else if (std::regex_match(line, match, captionLine)) {
            EXPECT_EQ(dialog->title, Unquoted(match[1])) << name;
        } else if (std::regex_match(line, match, textControl)) {
            const UINT id = number(match[3]) + (match[2].matched ? 10000U : 0U) +
                            (match[4].matched ? static_cast<UINT>(std::stoul(match[4])) : 0U);
            const auto same = [&](const TemplateControl& c) { return c.id == id && c.text == Unquoted(match[1]); };
            EXPECT_TRUE(std::any_of(dialog->controls.begin(), dialog->controls.end(), same)) << name << ": " << line;
            EXPECT_TRUE(id == 0xFFFF || seen.insert({name, id}).second) << name << ": twice " << line;
            ++controls;
        } else if (std::regex_match(line, match, plainControl)) {
            const UINT id = number(match[1]);
            const auto same = [&](const TemplateControl& c) { return c.id == id; };
            EXPECT_TRUE(std::any_of(dialog->controls.begin(), dialog->controls.end(), same)) << name << ": " << line;
            EXPECT_TRUE(seen.insert({name, id}).second) << name << ": twice " << line;
            ++controls;
        }
    }
    EXPECT_GE(dialogs, 1);
    EXPECT_GE(controls, 17);
}

TEST(ResourcesTest, EveryStringOfTheSourceIsThere)
{
    const std::string source = SourceFiles(".rc");
    const auto defines = Defines();
    const std::regex table(R"(STRINGTABLE\s+BEGIN([^\0]*?)\nEND)");
    const std::regex entry(R"rx(\n\s+(\w+),?\s+"((?:[^"]|"")*)")rx");
    int count = 0;
    for (std::sregex_iterator it(source.begin(), source.end(), table), end; it != end; ++it) {
        const std::string body = (*it)[1];
        for (std::sregex_iterator line(body.begin(), body.end(), entry); line != end; ++line, ++count) {
            const auto id = defines.find((*line)[1]);
            ASSERT_NE(id, defines.end()) << (*line)[1];
            EXPECT_EQ(LoadRuvString(id->second), Unquoted((*line)[2])) << (*line)[1];
        }
    }
    EXPECT_GE(count, 1);
    EXPECT_EQ(LoadRuvString(65535), "");
}

TEST(ResourcesTest, SpecialCharactersSurvive)
{
    const DialogTemplate* dialog = FindDialogTemplate(400);
    ASSERT_NE(dialog, nullptr);
    std::string all;
    for (const auto& control : dialog->controls)
        all += control.text + "|";
    for (const char* text : {"Straßenneigung:", "°", "m/s²", "&Löschen", "( Steigung: + , Gefälle: - )"})
        EXPECT_NE(all.find(text), std::string::npos) << text;
    EXPECT_EQ(FindDialogTemplate(399), nullptr);
}

TEST(ResourcesTest, DamagedBytesAreRefusedAndNeverRead)
{
    // A plain template of one button, by hand: style, extended style, count, rectangle, no menu, no class, title.
    const auto words =
        std::vector<std::uint16_t>{0, 0x1000, 0, 0, 1, 0, 0,  10,     20,   0,   0,   'A', 0, 0 /* align */, 0, 0x5000,
                                   0, 0,      1, 2, 3, 4, 77, 0xFFFF, 0x80, 'O', 'k', 0,   0};
    const auto bytes = std::as_bytes(std::span(words));
    const auto whole = ReadDialogTemplate(bytes);
    ASSERT_TRUE(whole);
    ASSERT_EQ(whole->controls.size(), 1U);
    EXPECT_EQ(whole->controls[0].text, "Ok");
    EXPECT_EQ(whole->controls[0].id, 77U);
    EXPECT_EQ(whole->controls[0].rect.right, 4);
    for (std::size_t size = 0; size < bytes.size(); ++size)
        EXPECT_FALSE(ReadDialogTemplate(bytes.first(size))) << size;

    std::mt19937 random(1);
    std::vector<std::byte> noise(400);
    for (int run = 0; run < 2000; ++run) {
        for (auto& value : noise)
            value = static_cast<std::byte>(random());
        ReadDialogTemplate(noise);
        ReadStringBlock(noise);
        EXPECT_FALSE(ReadResourceImage(noise));
    }
    EXPECT_FALSE(ReadResourceImage({}));
}

TEST(UtfTest, CoversAllLengthsAndLoneSurrogates)
{
    EXPECT_EQ(Utf8FromUtf16(std::u16string(u"aä€😀")), "aä€😀");
    const char16_t lone[] = {0xD800, u'x', 0xDC00};
    EXPECT_EQ(Utf8FromUtf16(lone), "\uFFFDx\uFFFD");
    EXPECT_EQ(Utf16Of(U'😀'), u"😀");
    EXPECT_TRUE(IsUtf8("aä€😀"));
    for (const char* none : {"\xE4", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "ä\xC3"}) {
        EXPECT_FALSE(IsUtf8(none));
        EXPECT_TRUE(IsUtf8(ValidUtf8(none)));
    }
}

} // namespace
