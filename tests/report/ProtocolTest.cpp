// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "report/Protocol.h"

#include "base/Deflate.h"
#include "base/Utf.h"
#include "base/ZipWriter.h"
#include "casefile/CaseFile.h"
#include "frame/RuvMod.h"
#include "report/MessageLog.h"
#include "report/ProtocolHtml.h"
#include "report/ProtocolOdt.h"
#include "res/resource.h"
#include "tests/support/DrawingFiles.h"
#include "tests/support/MaskFixture.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <map>
#include <stdexcept>
#include <string>

namespace
{

using namespace base;
using namespace casefile;
using namespace report;

/// By another library than the one that packed it. It looks a few bytes ahead, which a zip does not have.
std::string Inflated(std::string packed)
{
    int size = 0;
    packed.append(8, '\0');
    char* bytes = stbi_zlib_decode_noheader_malloc(packed.data(), static_cast<int>(packed.size()), &size);
    EXPECT_NE(bytes, nullptr);
    const std::string result(bytes, static_cast<std::size_t>(size));
    std::free(bytes);
    return result;
}

/// Reader of the archives that ZipWriter writes: the files by name, found through the directory at the end.
std::map<std::string, std::string> Unzip(const std::string& zip)
{
    const auto number = [&](std::size_t at, int bytes) {
        std::size_t value = 0;
        for (int i = 0; i < bytes; ++i)
            value |= static_cast<std::size_t>(static_cast<unsigned char>(zip.at(at + static_cast<std::size_t>(i))))
                     << 8 * i;
        return value;
    };
    std::map<std::string, std::string> files;
    const std::size_t end = zip.size() - 22;
    EXPECT_EQ(number(end, 4), 0x06054B50U);
    std::size_t at = number(end + 16, 4);
    for (std::size_t i = 0; i < number(end + 10, 2); ++i) {
        EXPECT_EQ(number(at, 4), 0x02014B50U);
        const std::size_t size = number(at + 24, 4);
        const std::size_t nameSize = number(at + 28, 2);
        const std::string name = zip.substr(at + 46, nameSize);
        const std::size_t local = number(at + 42, 4);
        EXPECT_EQ(number(local, 4), 0x04034B50U);
        EXPECT_EQ(zip.substr(local + 30, nameSize), name);
        const std::string packed = zip.substr(local + 30 + nameSize, number(at + 20, 4));
        files[name] = number(at + 10, 2) == 8 ? Inflated(packed) : packed;
        EXPECT_EQ(files[name].size(), size) << name;
        EXPECT_EQ(Crc32(files[name]), number(at + 16, 4)) << name;
        at += 46 + nameSize;
    }
    EXPECT_EQ(at, end);
    return files;
}

/// First fault of an XML text's nesting, or "".
std::string Fault(const std::string& xml)
{
    std::vector<std::string> open;
    for (std::size_t at = xml.find('<'); at != std::string::npos; at = xml.find('<', at)) {
        const std::size_t end = xml.find('>', at);
        if (end == std::string::npos)
            return "open tag at the end";
        const std::string tag = xml.substr(at + 1, end - at - 1);
        at = end;
        if (tag.starts_with('?') || tag.starts_with('!') || tag.ends_with('/'))
            continue;
        const std::string name =
            tag.substr(tag.starts_with('/') ? 1 : 0, tag.find_first_of(" /", 1) - (tag.starts_with('/') ? 1 : 0));
        if (!tag.starts_with('/'))
            open.push_back(name);
        else if (open.empty() || open.back() != tag.substr(1))
            return "</" + tag.substr(1) + "> closes <" + (open.empty() ? "" : open.back()) + ">";
        else
            open.pop_back();
    }
    return open.empty() ? "" : "<" + open.back() + "> is not closed";
}

class ProtocolTest : public test::MaskTest
{
  protected:
    framework::Window& Open(UINT number)
    {
        ExecuteRuvModRechnungsMaske(number, data);
        thread.DispatchPending();
        for (framework::Window* dialog : thread.Dialogs())
            if (dialog->id == number)
                return *dialog;
        throw std::runtime_error("mask " + std::to_string(number) + " does not open");
    }
    static std::string ValueOf(const std::vector<ProtocolGroup>& groups, const std::string& label,
                               const std::string& unit)
    {
        for (const ProtocolGroup& group : groups)
            for (const ProtocolEntry& entry : group.entries)
                if (entry.label == label && entry.unit == unit)
                    return entry.value;
        return "missing";
    }
    static ProtocolContext Context()
    {
        ProtocolContext context;
        context.number = 400;
        context.helpPage =
            "# 400\n\n## Zweck\n\nx\n\n## Formeln\n\n    a = µ · g   <b>\n\nmit **g** = 9,81\n\n## Grenzen\n";
        context.messages = {"Meldung & mehr"};
        context.caseTitle = "Fall <A>";
        context.caseSha256 = std::string(64, 'a');
        context.date = "12. Mai 2026";
        return context;
    }
};

TEST_F(ProtocolTest, ShowsWhatTheMaskShows)
{
    framework::Window& mask = Open(400);
    Enter(mask, IDC_BESCHL_REIBUNG, "0,8");
    Enter(mask, IDC_BESCHL_NEIGUNG_PROZENT, "-5");
    Press(mask, IDC_RECHNEN);
    const Protocol protocol = MakeProtocol(mask, Context());
    EXPECT_EQ(protocol.title, "400 Berechnung der Beschleunigung");
    EXPECT_EQ(ValueOf(protocol.inputs, "Reibungsbeiwert", ""), "0,80");
    EXPECT_EQ(ValueOf(protocol.inputs, "Straßenneigung", "%"), "-5,00");
    EXPECT_EQ(ValueOf(protocol.inputs, "Straßenneigung", "°"), "-2,86");
    EXPECT_EQ(ValueOf(protocol.results, "max. Verzögerug", "m/s²"), "7,35");
    EXPECT_EQ(ValueOf(protocol.inputs, "max. Verzögerug", "m/s²"), "missing");
    ASSERT_EQ(protocol.formulas.size(), 2U);
    EXPECT_EQ(protocol.formulas[0].lines, std::vector<std::string>{"a = µ · g   <b>"});
    EXPECT_EQ(ProtocolText(protocol).find("Fall"), std::string::npos);
    EXPECT_NE(ProtocolText(protocol).find("Reibungsbeiwert\t0,80\t\n"), std::string::npos);
}

TEST_F(ProtocolTest, AMessageHoldsUntilALaterCalculation)
{
    framework::Window& mask = Open(400);
    MessageLog log;
    const auto said = [&] { return log.Of(mask.handle); };
    log.Note(mask.handle, "Es fehlt etwas.");
    log.EndAction();
    Enter(mask, IDC_BESCHL_REIBUNG, "0,8");
    log.EndAction();
    EXPECT_EQ(said(), std::vector<std::string>{"Es fehlt etwas."});
    Press(mask, IDC_RECHNEN);
    EXPECT_TRUE(said().empty());
    // What is said while it calculates belongs to its results, each sentence once.
    log.Note(mask.handle, "Nur bis 5°.");
    log.Note(mask.handle, "Nur bis 5°.");
    Press(mask, IDC_RECHNEN);
    log.EndAction();
    EXPECT_EQ(said(), std::vector<std::string>{"Nur bis 5°."});
    EXPECT_TRUE(log.Of(Open(401).handle).empty());
    Press(mask, IDC_RECHNEN);
    log.EndAction();
    EXPECT_TRUE(said().empty());
}

TEST_F(ProtocolTest, NamesTheCaseAtItsHead)
{
    ProtocolContext context = Context();
    context.caseDetails = {"3. Mai 2026", "Ulm", "Dr. Ä"};
    const Protocol protocol = MakeProtocol(Open(400), context);
    const std::string html = ProtocolHtml(protocol, HtmlPictures::inlineSvg);
    const std::string odt = Unzip(ProtocolOdt(protocol)).at("content.xml");
    std::size_t inHtml = 0;
    std::size_t inOdt = 0;
    for (const char* text : {"Fall &lt;A&gt;", "Unfalldatum", "3. Mai 2026", "Unfallort", "Ulm", "Bearbeiter", "Dr. Ä",
                             "Datum des Protokolls", "12. Mai 2026", ">Eingaben<"}) {
        EXPECT_NE(inHtml = html.find(text, inHtml), std::string::npos) << text;
        EXPECT_NE(inOdt = odt.find(text, inOdt), std::string::npos) << text;
    }
}

TEST_F(ProtocolTest, JoinsFieldsOfALineAndTellsTheScene)
{
    ASSERT_TRUE(LoadCase(TAVELIN_SOURCE_DIR "/examples/fussgaenger.json", data));
    framework::Window& mask = Open(487);
    Press(mask, IDC_RECHNEN);
    const Protocol protocol = MakeProtocol(mask, Context());
    EXPECT_EQ(ValueOf(protocol.inputs, "Verzögerung", "m/s²"), "7,00 ± 0,50");
    EXPECT_EQ(ValueOf(protocol.inputs, "Nach Dettinger", "km/h"), "ja, ± 6,00");
    EXPECT_EQ(ValueOf(protocol.inputs, "Karosseriekonstante", ""), "1,70 ± 0,30");
    EXPECT_EQ(ValueOf(protocol.inputs, "Anstoßfaktor", ""), "0,80");
    EXPECT_EQ(ValueOf(protocol.results, "Geschwindigkeit", "km/h"), "52,65 bis 57,87");
    EXPECT_EQ(ValueOf(protocol.inputs, "Kollisionsort (Ecke)", ""),
              "x -3,50 m, y -1,50 m, Winkel 11,46 °, Breite 4,00 m, Länge 2,50 m");
    EXPECT_EQ(protocol.pictures.size(), 1U);
}

TEST_F(ProtocolTest, EveryMaskGivesAWellFormedDocument)
{
    for (const UINT number : {400U, 401U, 419U, 459U, 468U, 469U, 471U, 487U, 493U}) {
        framework::Window& mask = Open(number);
        const Protocol protocol = MakeProtocol(mask, Context());
        EXPECT_FALSE(protocol.inputs.empty()) << number;
        for (const auto* groups : {&protocol.inputs, &protocol.results})
            for (const ProtocolGroup& group : *groups)
                for (const ProtocolEntry& entry : group.entries)
                    EXPECT_NE(entry.label, "(ohne Bezeichnung)") << number << ": " << entry.value;
        const std::string odt = ProtocolOdt(protocol);
        EXPECT_EQ(odt, ProtocolOdt(protocol));
        const auto files = Unzip(odt);
        EXPECT_EQ(odt.substr(30, 8), "mimetype") << "first, for programs that look at the beginning only";
        EXPECT_EQ(files.at("mimetype"), "application/vnd.oasis.opendocument.text");
        for (const char* part : {"content.xml", "styles.xml", "meta.xml", "META-INF/manifest.xml"})
            EXPECT_EQ(Fault(files.at(part)), "") << number << " " << part;
        for (const auto& [name, bytes] : files)
            if (name.ends_with(".png")) {
                EXPECT_NE(files.at("content.xml").find(name), std::string::npos);
                EXPECT_NE(files.at("META-INF/manifest.xml").find(name), std::string::npos);
            }
        std::string html = ProtocolHtml(protocol, HtmlPictures::inlineSvg);
        html.erase(html.find("<meta charset=\"utf-8\">"), 22); // HTML does not close it
        EXPECT_EQ(Fault(html), "") << number;
        EXPECT_NE(html.find("Fall &lt;A&gt;"), std::string::npos);
        EXPECT_NE(html.find("a = µ · g   &lt;b&gt;"), std::string::npos);
        EXPECT_EQ(Fault(ProtocolHtmlTable(protocol)), "");
        thread.Destroy(mask.handle);
        thread.DispatchPending();
    }
}

TEST_F(ProtocolTest, BytesThatAreNoTextGiveAWellFormedDocument)
{
    const std::string bytes = "\xE4<&\"\x01\xC3 \xEF\xBF\xBE  \xED\xA0\x80>";
    ProtocolContext context = Context();
    context.caseTitle = bytes;
    context.messages = {bytes};
    context.helpPage = "# 400\n\n## Formeln\n\n" + bytes + "\n\n    " + bytes + "\n";
    const Protocol protocol = MakeProtocol(Open(400), context);
    std::map<std::string, std::string> parts = Unzip(ProtocolOdt(protocol));
    parts["html"] = ProtocolHtml(protocol, HtmlPictures::inlineSvg);
    for (const auto& [name, text] : parts) {
        EXPECT_TRUE(IsUtf8(text)) << name;
        EXPECT_EQ(text.find("\xEF\xBF\xBE"), std::string::npos) << name << ": a character that XML has not";
        EXPECT_EQ(text.find('\x01'), std::string::npos) << name;
        if (name.ends_with("xml")) {
            EXPECT_EQ(Fault(text), "") << name;
        }
    }
    EXPECT_NE(parts["content.xml"].find("\uFFFD&lt;&amp;&quot; \uFFFD"), std::string::npos);
    EXPECT_EQ(ProtocolOdt(protocol), ProtocolOdt(protocol));
}

TEST(ProtocolDateTest, IsTheSameForTheSameDayAndNamesItsZone)
{
    EXPECT_EQ(ProtocolDate("951782400", 0), "29. Februar 2000, 00:00 Uhr (UTC)");
    const std::string before = std::getenv("TZ") != nullptr ? std::getenv("TZ") : "";
    const auto in = [](const char* zone, std::time_t time) {
        setenv("TZ", zone, 1);
        tzset();
        return ProtocolDate(nullptr, time);
    };
    constexpr std::time_t kSummer = 1'720'000'000; // 3 July 2024, 09:46:40 UTC
    EXPECT_EQ(in("UTC0", kSummer), "3. Juli 2024 (UTC+00:00)");
    EXPECT_EQ(in("CET-1CEST,M3.5.0,M10.5.0/3", kSummer), "3. Juli 2024 (UTC+02:00)");
    EXPECT_EQ(in("XYZ9:30", kSummer), "3. Juli 2024 (UTC-09:30)");
    EXPECT_EQ(in("XYZ-14", kSummer + 3600), "4. Juli 2024 (UTC+14:00)");
    EXPECT_EQ(ProtocolDate("kein Datum", kSummer), ProtocolDate(nullptr, kSummer + 60));
    before.empty() ? unsetenv("TZ") : setenv("TZ", before.c_str(), 1);
    tzset();
}

TEST(HelpText, BlocksOfAPage)
{
    const std::string page = "# 1 Titel\n\n## Formeln\n\nText mit **fett** und\n`code`, [Seite](400-x.md).\n\n"
                             "    v = s / t\n\n    s = v · t\n\n- erster\n  weiter\n- zweiter\n1. Zahl\n\n"
                             "| A | B |\n|---|--:|\n| 1 | *2* |\n\n## Formeln danach\nnicht\n";
    const auto blocks = ReadHelpText(HelpSection(page, "Formeln"));
    ASSERT_EQ(blocks.size(), 6U);
    EXPECT_EQ(blocks[0].text,
              (TextLine{{"Text mit "}, {"fett", true}, {" und "}, {"code", false, false, true}, {", Seite."}}));
    EXPECT_EQ(blocks[1].lines, (std::vector<std::string>{"v = s / t", "", "s = v · t"}));
    EXPECT_EQ(blocks[2].text, TextLine{{"erster weiter"}});
    EXPECT_EQ(blocks[2].marker, "•");
    EXPECT_EQ(blocks[4].marker, "1.");
    ASSERT_EQ(blocks[5].rows.size(), 2U);
    EXPECT_EQ(blocks[5].rows[1][1], (TextLine{{"2", false, true}}));
    EXPECT_TRUE(ReadHelpText(HelpSection(page, "Zweck")).empty());
    // What is not closed stands for itself.
    EXPECT_EQ(ReadHelpText("a * b ** c ` d [e](f")[0].text, TextLine{{"a * b ** c ` d [e](f"}});
}

} // namespace
