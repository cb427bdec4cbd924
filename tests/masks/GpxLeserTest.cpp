// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/import/GpxLeser.h"

#include "masks/import/Gpxwerte.h"
#include "masks/import/XmlLeser.h"
#include "masks/import/Zivilzeit.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cstdlib>
#include <random>
#include <string>

namespace
{

std::string Gpx(const std::string& inhalt)
{
    return "<?xml version=\"1.0\"?>\n<gpx version=\"1.1\">\n<trk><trkseg>\n" + inhalt + "\n</trkseg></trk>\n</gpx>\n";
}

/// Points of the usual spelling are read in another way than all others, and only far from the end of the file. Both
/// ways must give the same: a second blank in their tags keeps them from the shorter one.
GpxInhalt LiesBeide(std::string text)
{
    text.append(1000, ' ');
    const GpxInhalt kurz = LiesGpx(text);
    for (std::size_t p = text.find("<trkpt "); p != std::string::npos; p = text.find("<trkpt ", p + 7))
        text.insert(p + 7, 1, ' ');
    const GpxInhalt lang = LiesGpx(text);
    EXPECT_EQ(kurz.punkte, lang.punkte) << text;
    EXPECT_EQ(kurz.nahtstellen, lang.nahtstellen) << text;
    EXPECT_EQ(kurz.spuren, lang.spuren) << text;
    EXPECT_EQ(kurz.unvollstaendig, lang.unvollstaendig) << text;
    EXPECT_EQ(kurz.unmoeglich, lang.unmoeglich) << text;
    EXPECT_EQ(kurz.vollstaendig, lang.vollstaendig) << text;
    return kurz;
}

GpxInhalt Lies(const std::string& inhalt)
{
    return LiesBeide(Gpx(inhalt));
}

GPXTrackPoint Zeit(const std::string& text)
{
    GPXTrackPoint punkt;
    GpxZeit(text, punkt);
    return punkt;
}

/// All that is read of a point, as text.
std::string Alles(const GPXTrackPoint& p)
{
    std::string text;
    for (const double wert : {p.latitude, p.longitude, p.elevation, p.heartRate, p.cadence, p.temperature}) {
        char zahl[400];
        text.append(zahl, std::to_chars(zahl, zahl + sizeof zahl, wert, std::chars_format::fixed, 6).ptr) += ' ';
    }
    for (const int wert : {p.year, p.month, p.day, p.hour, p.minute, p.second, p.millisecond, int{p.zone}})
        text += std::to_string(wert) + ' ';
    return text;
}

} // namespace

TEST(GpxLeserTest, APointWithEverything)
{
    const GpxInhalt inhalt = Lies("<trkpt lat=\"48.1234567\" lon=\"-11.5\">\n <ele>512.25</ele>\n"
                                  " <time>2024-02-29T23:59:58.040Z</time>\n <extensions>\n"
                                  "  <ns3:TrackPointExtension> <ns3:atemp>21.5</ns3:atemp>\n"
                                  "   <ns3:hr>151</ns3:hr> <ns3:cad>83</ns3:cad>\n  </ns3:TrackPointExtension>\n"
                                  " </extensions>\n</trkpt>");
    EXPECT_EQ(inhalt.ausgang, GpxAusgang::gelesen);
    EXPECT_TRUE(inhalt.vollstaendig);
    ASSERT_EQ(inhalt.punkte.size(), 1U);
    const GPXTrackPoint& p = inhalt.punkte[0];
    EXPECT_EQ(p.latitude, 48.1234567);
    EXPECT_EQ(Alles(p), "48.123457 -11.500000 512.250000 151.000000 83.000000 21.500000 2024 2 29 23 59 58 40 0 ");
}

TEST(GpxLeserTest, WhatAFileLacksIsMinusOne)
{
    const GpxInhalt inhalt = Lies("<trkpt lat=\"nan\" lon=\"\"></trkpt><trkpt><ele>inf</ele><time>bald</time></trkpt>");
    ASSERT_EQ(inhalt.punkte.size(), 2U);
    const std::string nichts = "-1.000000 -1.000000 -1.000000 -1.000000 -1.000000 -1.000000 -1 -1 -1 -1 -1 -1 -1 0 ";
    EXPECT_EQ(Alles(inhalt.punkte[0]), nichts);
    EXPECT_EQ(Alles(inhalt.punkte[1]), nichts);
}

// Ways to write the same point.
TEST(GpxLeserTest, TheSamePointInOtherWords)
{
    const std::string schlicht =
        Alles(Lies("<trkpt lat=\"1.5\" lon=\"-2\"><ele>3</ele><time>2024-01-02T03:04:05Z</time>"
                   "<extensions><x:hr>6</x:hr></extensions></trkpt>")
                  .punkte.at(0));
    const char* const anders[] = {
        // single quotes, padding, tabs and line breaks, the other order, a '>' in another attribute
        "<trkpt\tlon = '-2'\r\n a='b>c' lat= \"1.5\" ><ele >3</ele\n><time> 2024-01-02T03:04:05Z </time>"
        "<x:hr>6</x:hr></trkpt >",
        // prefixes and none
        "<gpx:trkpt lat=\"1.5\" lon=\"-2\"><gpx:ele>3</gpx:ele><gpx:time>2024-01-02T03:04:05Z</gpx:time><hr>6</hr>"
        "</gpx:trkpt>",
        // CDATA, entities, comments
        "<trkpt lat=\"&#49;.5\" lon=\"&#x2d;2\"><!-- <ele>9</ele> --><ele><![CDATA[3]]></ele>"
        "<time>2024-01-02<!-- Tag -->T03:04:05<?weg?>Z</time><x:hr>&#54;</x:hr></trkpt>",
        // an empty element, text that belongs to no tag, deeper elements of the same names
        "<trkpt lat=\"1.5\" lon=\"-2\">7<ele>3</ele>8<time>2024-01-02T03:04:05Z</time>9<cad/><extensions>"
        "<a><ele>77</ele><time>1999-01-01T00:00:00Z</time></a><x:hr>6</x:hr>5</extensions></trkpt>",
    };
    for (const char* text : anders) {
        const GpxInhalt inhalt = Lies(text);
        ASSERT_EQ(inhalt.punkte.size(), 1U) << text;
        EXPECT_EQ(Alles(inhalt.punkte[0]), schlicht) << text;
    }
    EXPECT_EQ(Alles(Lies("<trkpt lat='1.5' lon='-2'/>").punkte.at(0)).substr(0, 18), schlicht.substr(0, 18));
    EXPECT_EQ(LiesGpx("\xEF\xBB\xBF" + Gpx("<trkpt/>")).punkte.size(), 1U);
}

// Pieces of tracks in every order, usual ones and such that are nearly so, whole and cut off anywhere.
TEST(GpxLeserTest, TheUsualSpellingIsReadAsAnyOther)
{
    std::mt19937 zufall(11);
    const auto eine = [&zufall](const std::vector<std::string>& texte) { return texte[zufall() % texte.size()]; };
    const std::vector<std::string> zahlen{"48.1234567",
                                          "-0.5",
                                          "12",
                                          "7.",
                                          ".5",
                                          "-",
                                          "1e1",
                                          "12345678.5",
                                          "123456789",
                                          "0.12345678",
                                          "0.123456789",
                                          "1.1234567890123456",
                                          "1.12345678901234567",
                                          "12345678.1234567",
                                          "48.135135326534509658813476562500",
                                          "90071992.547409931",
                                          "+3",
                                          "&#49;",
                                          "",
                                          " 4",
                                          "4 ",
                                          "91.5",
                                          "1.5/",
                                          "1.:5",
                                          "-1"};
    const std::vector<std::string> zeiten{"2024-05-01T10:20:30Z",
                                          "1999-12-31T23:59:58.070Z",
                                          "2024-05-01T10:20:30.5Z",
                                          "2024-05-01T10:20:30.1234Z",
                                          "2024-05-01T10:20:30+01:00",
                                          "2024-05-01T10:20:30.123+0100",
                                          "2024-5-1T1:2:3Z",
                                          "2024-05-01 10:20:30Z",
                                          "2O24-05-01T10:20:30Z",
                                          "2024-05-01T10:20:3:Z",
                                          "2024-05-01T10:20:/0Z",
                                          "2024-05-01T10:2",
                                          "2024-05-01T10:20:300Z",
                                          "2024/05/01T10:20:30Z",
                                          "2024-05-01T10.20:30Z",
                                          "2024-05-01T10:20:30Z<!-- x -->",
                                          "2024-05-01T10:20:30.12<x/>",
                                          "\xB0"
                                          "024-05-01T10:20:30Z"};
    const std::vector<std::string> zwischen{"",
                                            "",
                                            "\n    ",
                                            " ",
                                            std::string(31, ' '),
                                            std::string(33, '\t'),
                                            "<!-- <trkpt lat=\"8\" lon=\"9\"></trkpt> -->",
                                            "<![CDATA[<trkpt lat=\"8\" lon=\"9\">]]>",
                                            "text",
                                            "<x>",
                                            "</x>"};
    for (int lauf = 0; lauf < 3000; ++lauf) {
        std::string gpx = "<gpx><trk><trkseg>";
        const auto leer = [&] { return zufall() % 4 == 0 ? eine(zwischen) : "\n  "; };
        const auto zahl = [&] {
            return zufall() % 4 == 0 ? eine(zahlen)
                                     : std::to_string(zufall() % 90) + '.' + std::to_string(zufall() % 10000000);
        };
        for (unsigned punkte = 1 + zufall() % 4; punkte > 0; --punkte) {
            gpx += eine({"<trkpt lat=\"", "<trkpt lat=\"", "<trkpt lat='", "<trkpt lon=\""}) + zahl() +
                   eine({"\" lon=\"", "\" lon=\"", "\"  lon=\"", "' lat='"}) + zahl() +
                   eine({"\">", "\">", "\">", "\" >", "\"/>", "'>", ">"});
            for (unsigned kind = zufall() % 4; kind > 0; --kind)
                gpx += leer() + (zufall() % 2 == 0 ? "<ele>" + zahl() + eine({"</ele>", "</ele>", "</ele >", "<b/>"})
                                                   : "<time>" + eine(zeiten) + "</time>");
            gpx += leer() + (zufall() % 8 == 0 ? "<hr>12</hr>" : "") + (zufall() % 8 == 0 ? "" : "</trkpt>") + leer();
            if (zufall() % 6 == 0)
                gpx += "</trkseg><trkseg>";
        }
        gpx += "</trkseg></trk></gpx>";
        LiesBeide(zufall() % 3 == 0 ? gpx.substr(0, zufall() % gpx.size()) : gpx);
        if (HasFailure())
            return;
    }
}

TEST(GpxLeserTest, ExtensionsByTheBeginningOfTheirNames)
{
    const GPXTrackPoint p =
        Lies("<trkpt lat='1' lon='2'><extensions><g:hrv>7</g:hrv><g:hr>100</g:hr><g:hrmax>9</g:hrmax>"
             "<g:cadence>80</g:cadence><hrzone>3</hrzone><atemp>4</atemp></extensions></trkpt>")
            .punkte.at(0);
    EXPECT_EQ(p.heartRate, 100.0);
    EXPECT_EQ(p.cadence, 80.0);
    EXPECT_EQ(p.temperature, 4.0);
}

TEST(GpxLeserTest, OnlyTracksAndTheirJoints)
{
    const std::string punkt = "<trkpt lat='1' lon='2'/>";
    const GpxInhalt inhalt = LiesGpx(
        "<!DOCTYPE gpx [ <!ENTITY a \"<trkpt>\"> ]><gpx><wpt lat='8' lon='9'><ele>1</ele></wpt>"
        "<rte><rtept lat='8' lon='9'/></rte><trk><trkseg></trkseg><trkseg>" +
        punkt + punkt + "</trkseg><trkseg>" + punkt + "</trkseg></trk><trk><trkseg>" + punkt + "</trkseg></trk></gpx>");
    EXPECT_EQ(inhalt.punkte.size(), 4U);
    EXPECT_EQ(inhalt.nahtstellen, (std::vector<std::size_t>{2, 3}));
    EXPECT_EQ(inhalt.spuren, 2U);
}

TEST(GpxLeserTest, DamageIsCounted)
{
    const std::string ganz =
        Gpx("<trkpt lat='1' lon='2'><ele>3</ele></trkpt><trkpt lat='3' lon='4'><ele>5</ele></trkpt>");
    const std::size_t ersterEnde = ganz.find("</trkpt>") + 8;
    const std::size_t zweiter = ganz.rfind("<trkpt") + 6;
    const std::size_t zweiterEnde = ganz.rfind("</trkpt>") + 8;
    for (std::size_t laenge = 0; laenge < ganz.size(); ++laenge) {
        const GpxInhalt inhalt = LiesGpx(ganz.substr(0, laenge));
        EXPECT_EQ(inhalt.punkte.size(), laenge < ersterEnde ? 0U : laenge < zweiterEnde ? 1U : 2U) << laenge;
        EXPECT_LE(inhalt.unvollstaendig, 1U);
        if (laenge > zweiter && laenge < zweiterEnde) {
            EXPECT_EQ(inhalt.unvollstaendig, 1U) << laenge;
        }
        EXPECT_EQ(inhalt.vollstaendig, laenge >= ganz.size() - 1) << laenge;
    }
    const GpxInhalt offen = Lies("<trkpt lat='1' lon='2'><trkpt lat='3' lon='4'></trkpt>");
    EXPECT_EQ(offen.punkte.size(), 1U);
    EXPECT_EQ(offen.punkte.at(0).latitude, 3.0);
    EXPECT_EQ(offen.unvollstaendig, 1U);
    // What one point leaves open does not reach into the next.
    EXPECT_EQ(
        Lies("<trkpt lat='1' lon='2'><x></trkpt><trkpt lat='3' lon='4'><ele>5</ele></trkpt>").punkte.at(1).elevation,
        5.0);
    const GpxInhalt weit = Lies("<trkpt lat='90.5' lon='2'/><trkpt lat='-90' lon='359'/><trkpt lat='9' lon='-361'/>");
    EXPECT_EQ(weit.unmoeglich, 2U);
    EXPECT_FALSE(weit.punkte.at(0).HatLage());
    EXPECT_TRUE(weit.punkte.at(1).HatLage());
    EXPECT_FALSE(weit.punkte.at(2).HatLage());
}

TEST(GpxLeserTest, OtherFilesAreNamed)
{
    EXPECT_EQ(LiesGpx("").ausgang, GpxAusgang::keinGpx);
    EXPECT_EQ(LiesGpx("zeit;tempo\n0;1").ausgang, GpxAusgang::keinGpx);
    EXPECT_EQ(LiesGpx(std::string("\x0E\x10\x00\x00\x05\x00\x00\x00.FIT..", 14)).ausgang, GpxAusgang::istFit);
    EXPECT_EQ(LiesGpx("\xFF\xFE<").ausgang, GpxAusgang::istUtf16);
    const std::string lang = "<gpx>" + std::string(5 << 20, ' ') + "<trk>";
    EXPECT_EQ(LiesGpx(lang, [](double) { return false; }).ausgang, GpxAusgang::abgebrochen);
    EXPECT_EQ(LiesGpx(lang, [](double teil) { return teil > 0.9 && teil <= 1.0; }).spuren, 1U);
}

TEST(GpxZeitTest, FractionsAndZones)
{
    struct Fall {
        const char* text;
        int millisekunde, mikrosekunde, zone;
    };
    for (const Fall& fall :
         {Fall{"2024-05-01T10:00:07Z", 0, 0, 0}, Fall{"2024-05-01T10:00:07.123Z", 123, 0, 0},
          Fall{"2024-05-01T10:00:07.5Z", 500, 0, 0}, Fall{"2024-05-01T10:00:07.05Z", 50, 0, 0},
          Fall{"2024-05-01T10:00:07.1234Z", 123, 400, 0}, Fall{"2024-05-01T10:00:07.1234567891Z", 123, 456, 0},
          Fall{"2024-05-01T10:00:07+01:00", 0, 0, 60}, Fall{"2024-05-01T10:00:07.25-0330", 250, 0, -210},
          Fall{"2024-05-01T10:00:07+02", 0, 0, 120}, Fall{"2024-05-01T10:00:07+01:305", 0, 0, 90},
          Fall{"2024-05-01T10:00:07+01 30", 0, 0, 60}, Fall{" 2024-5-1T10:0:7Z", 0, 0, 0}}) {
        const GPXTrackPoint p = Zeit(fall.text);
        EXPECT_EQ(p.year, 2024) << fall.text;
        EXPECT_EQ(p.month, 5) << fall.text;
        EXPECT_EQ(p.day, 1) << fall.text;
        EXPECT_EQ(p.hour, 10) << fall.text;
        EXPECT_EQ(p.minute, 0) << fall.text;
        EXPECT_EQ(p.second, 7) << fall.text;
        EXPECT_EQ(p.millisecond, fall.millisekunde) << fall.text;
        EXPECT_EQ(p.mikrosekunde, fall.mikrosekunde) << fall.text;
        EXPECT_EQ(p.zone, fall.zone) << fall.text;
    }
    // As far as the text goes.
    EXPECT_EQ(Zeit("2024-05-01").day, 1);
    EXPECT_EQ(Zeit("2024-05-01").hour, -1);
    EXPECT_EQ(Zeit("2024-05-01 10:00:07Z").second, -1);
    EXPECT_EQ(Zeit("2024-05-01T10:00Z").second, -1);
    EXPECT_EQ(Zeit("99999999999999999999-05-01T10:00:00Z").second, -1);
}

// The nearest double, as the standard library reads it.
TEST(GpxZahlTest, IsTheNearestDouble)
{
    std::mt19937_64 zufall(5);
    for (int i = 0; i < 20000; ++i) {
        char text[80];
        const double wert = std::ldexp(static_cast<double>(zufall()) - 9e18, static_cast<int>(zufall() % 90) - 100);
        const auto stellen = static_cast<int>(zufall() % 26);
        const char* const ende = std::to_chars(text, text + sizeof text, wert, std::chars_format::fixed, stellen).ptr;
        double naechste = 0.0;
        std::from_chars(text, ende, naechste);
        ASSERT_EQ(GpxZahl({text, static_cast<std::size_t>(ende - text)}), naechste) << wert;
    }
    EXPECT_EQ(GpxZahl(" +12.5 m"), 12.5);
    EXPECT_EQ(GpxZahl("-.5"), -0.5);
    EXPECT_EQ(GpxZahl(std::string_view("12345").substr(0, 2)), 12.0); // and not beyond the text
    EXPECT_EQ(GpxZahl(std::string_view("1.5e3").substr(0, 3)), 1.5);
    EXPECT_EQ(GpxZahl("1e3"), 1000.0);
    EXPECT_EQ(GpxZahl("9007199254740993"),
              9007199254740992.0); // 2^53 + 1 lies between two doubles, the even one counts
    EXPECT_EQ(GpxZahl("0.0000000000000000000000001"), 1e-25);
    for (const char* keine : {"", " ", "-", ".", "nan", "inf", "abc", "1e999", "-1e999"})
        EXPECT_EQ(GpxZahl(keine), std::nullopt) << keine;
}

// The shorter ways, beside the others on the same texts.
TEST(GpxwerteTest, TheUsualSpellings)
{
    const std::string rest(kUeblicheGpxBytes, 'x');
    std::mt19937_64 zufall(3);
    for (int i = 0; i < 20000; ++i) {
        char text[80];
        const double wert = static_cast<double>(zufall() >> (11U + zufall() % 40U)) / 1e9;
        const auto stellen = static_cast<int>(zufall() % 18);
        std::string zahl(text, std::to_chars(text, text + 60, wert, std::chars_format::fixed, stellen).ptr);
        if (zufall() % 2 == 0)
            zahl.insert(0, 1, '-');
        double gelesen = 0.0;
        const std::string mitRest = zahl + rest;
        const char* const ende = UeblicheGpxZahl(mitRest.data(), gelesen);
        if (ende == nullptr || *ende != 'x')
            continue; // too many digits for it
        ASSERT_EQ(ende - mitRest.data(), static_cast<std::ptrdiff_t>(zahl.size()));
        ASSERT_EQ(gelesen, GpxZahl(zahl)) << zahl;
    }
    for (const char* usual : {"48.1234567", "-11.57", "0", "512.3", "12345678.12345678"}) {
        double zahl = 0.0;
        EXPECT_NE(UeblicheGpxZahl((usual + rest).c_str(), zahl), nullptr) << usual;
        EXPECT_EQ(zahl, GpxZahl(usual));
    }
    for (const std::string text : {"2024-02-29T23:59:58Z", "1999-12-31T00:00:09.807Z"}) {
        GPXTrackPoint punkt;
        EXPECT_NE(UeblicheGpxZeit((text + "</time>" + rest).c_str(), punkt), nullptr);
        EXPECT_EQ(punkt, Zeit(text));
        // With any one character changed it is read alike or left to the other way, untouched.
        for (std::size_t stelle = 0; stelle < text.size(); ++stelle)
            for (int zeichen = 1; zeichen < 256; ++zeichen) {
                std::string anders = text;
                anders[stelle] = static_cast<char>(zeichen);
                GPXTrackPoint kurz;
                const bool gelesen = UeblicheGpxZeit((anders + "</time>" + rest).c_str(), kurz) != nullptr;
                ASSERT_EQ(kurz, gelesen ? Zeit(anders) : GPXTrackPoint{}) << anders;
                ASSERT_EQ(gelesen, (zeichen >= '0' && zeichen <= '9' && text[stelle] >= '0' && text[stelle] <= '9') ||
                                       anders == text)
                    << anders;
            }
    }
}

TEST(XmlTextTest, EntitiesAndWhatIsNone)
{
    EXPECT_EQ(XmlText("&lt;&gt;&amp;&quot;&apos;"), "<>&\"'");
    EXPECT_EQ(XmlText("&#65;&#x42;&#xe4;&#x20AC;&#x1F600;"), "AB\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80");
    EXPECT_EQ(XmlText("&amp;lt;"), "&lt;");
    for (const char* keine : {"&", "&;", "&nbsp;", "&#;", "&#x;", "&#0;", "&#xD800;", "&#x110000;", "&#12a;", "a & b;"})
        EXPECT_EQ(XmlText(keine), keine);
}

// mktime counts the same seconds in a zone without changes; timegm is its twin for UTC.
TEST(ZivilzeitTest, SecondsAndCalendarAgreeWithC)
{
    std::mt19937_64 zufall(7);
    for (int i = 0; i < 5000; ++i) {
        const auto sekunden = static_cast<std::int64_t>(zufall() % 200000000000U) - 60000000000;
        const auto zeit = static_cast<std::time_t>(sekunden);
        std::tm c{};
        gmtime_r(&zeit, &c);
        const Zivilzeit soll{c.tm_year + 1900, c.tm_mon + 1, c.tm_mday, c.tm_hour, c.tm_min, c.tm_sec};
        ASSERT_EQ(ZivilzeitVon(sekunden), soll) << sekunden;
        ASSERT_EQ(SekundenSeit1970(soll), sekunden);
    }
    for (int i = 0; i < 2000; ++i) {
        const auto bis = [&](int grenze) {
            return static_cast<int>(zufall() % static_cast<unsigned>(2 * grenze)) - grenze;
        };
        const Zivilzeit schief{bis(3000), bis(100), bis(1000), bis(100), bis(1000), bis(10000)};
        std::tm c{};
        c.tm_year = schief.jahr - 1900;
        c.tm_mon = schief.monat - 1;
        c.tm_mday = schief.tag;
        c.tm_hour = schief.stunde;
        c.tm_min = schief.minute;
        c.tm_sec = schief.sekunde;
        ASSERT_EQ(SekundenSeit1970(schief), timegm(&c));
    }
}
