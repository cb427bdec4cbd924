// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/import/FitLeser.h"

#include "masks/import/FitSpur.h"
#include "masks/import/GpxLeser.h"
#include "tests/support/FitSchreiber.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cstdlib>
#include <ctime>
#include <map>
#include <random>
#include <string>

using test::FitSchreiber;

namespace
{

constexpr int kU8 = FitSchreiber::kUint8;
constexpr int kU16 = FitSchreiber::kUint16;
constexpr int kU32 = FitSchreiber::kUint32;
constexpr int kS32 = FitSchreiber::kSint32;
constexpr int kRecord = FitSchreiber::kRecord;
/// 2^30 semicircles are 90°.
constexpr std::int64_t k45Grad = std::int64_t{1} << 29;

const char* const kOhneAnfang = "FIT decode error: ";

std::string Fehler(const std::string& datei)
{
    const std::string fehler = LiesFit(datei).befund.fehler;
    return fehler.empty() ? fehler : fehler.substr(std::string(kOhneAnfang).size());
}

/// Time, position and elevation of each point, to compare.
std::string Kurz(const FitSpur& spur)
{
    std::string text;
    for (const FitPunkt& p : spur.punkte)
        text += std::to_string(p.zeitstempel) + ' ' + std::to_string(p.breite) + ' ' + std::to_string(p.laenge) + ' ' +
                std::to_string(p.hoeheRoh) + '\n';
    return text;
}

/// The process's zone for a test.
class Zeitzone
{
  public:
    explicit Zeitzone(const char* name)
    {
        if (const char* alt = std::getenv("TZ"))
            m_alt = alt;
        setenv("TZ", name, 1);
        tzset();
    }
    ~Zeitzone()
    {
        if (m_alt.empty())
            unsetenv("TZ");
        else
            setenv("TZ", m_alt.c_str(), 1);
        tzset();
    }
    Zeitzone(const Zeitzone&) = delete;
    Zeitzone& operator=(const Zeitzone&) = delete;

  private:
    std::string m_alt;
};

std::string Text(const FitSpur& spur)
{
    GpxText text(spur.punkte);
    std::string ganz;
    for (std::string_view stueck = text.Naechstes(); !stueck.empty(); stueck = text.Naechstes())
        ganz += stueck;
    return ganz;
}

} // namespace

// The check value of CRC-16/ARC, and the method bit by bit for every length around the width of the tables.
TEST(FitCrcTest, IsThatOfTheProtocol)
{
    EXPECT_EQ(FitCrc(0, "123456789"), 0xBB3D);
    std::mt19937 zufall(1);
    std::string bytes;
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(FitCrc(0, bytes), test::PlainFitCrc(bytes)) << i;
        const std::size_t teil = bytes.size() / 3;
        EXPECT_EQ(FitCrc(FitCrc(0, bytes.substr(0, teil)), bytes.substr(teil)), test::PlainFitCrc(bytes)) << i;
        bytes += static_cast<char>(zufall() & 0xFFU);
    }
}

TEST(FitLeserTest, BothByteOrdersAndHeadersGiveTheSame)
{
    for (const bool gross : {false, true})
        for (const std::size_t kopf : {12U, 14U}) {
            FitSchreiber fit(gross);
            fit.DefiniereRecord()
                .Record(1000000000, k45Grad, -2 * k45Grad)
                .Record(1000000001, -1, 7, 0xFFFF, 0xFF, 0x7F);
            const FitSpur spur = LiesFit(fit.Datei(kopf));
            EXPECT_EQ(spur.befund.fehler, "");
            EXPECT_TRUE(spur.befund.unversehrt);
            ASSERT_EQ(spur.punkte.size(), 2U);
            const FitPunkt& a = spur.punkte[0];
            EXPECT_EQ(a.zeitstempel, 1000000000U);
            EXPECT_DOUBLE_EQ(a.Breite(), 45.0);
            EXPECT_DOUBLE_EQ(a.Laenge(), -90.0);
            EXPECT_EQ(a.Hoehe(), 20.0); // 2600 / 5 - 500
            EXPECT_EQ(a.pulsRoh, 120);
            EXPECT_EQ(a.temperaturC, -5);
            EXPECT_EQ(a.Tempo(), -1.0);
            // The second point's elevation, heart rate and temperature are marked invalid.
            EXPECT_EQ(spur.punkte[1].vorhanden, FitPunkt::zeit);
            EXPECT_EQ(spur.punkte[1].breite, -1);
        }
}

TEST(FitLeserTest, FieldsThatAreNotThere)
{
    FitSchreiber fit;
    fit.Definiere(0, kRecord, {{253, 4, kU32}, {0, 4, kS32}}).Byte(0).Zahl(1, 4).Zahl(2, 4); // no longitude
    fit.Definiere(0, kRecord, {{0, 2, kS32}, {1, 4, kS32}}).Byte(0).Zahl(1, 2).Zahl(2, 4);   // narrower than its type
    fit.Definiere(0, kRecord, {{0, 4, kS32}, {1, 4, kS32}}).Byte(0).Zahl(0x7FFFFFFF, 4).Zahl(2, 4); // invalid
    fit.Definiere(0, kRecord, {{0, 6, kS32}, {1, 4, kS32}}).Byte(0).Zahl(1, 6).Zahl(2, 4); // a number and a half
    fit.Definiere(0, kRecord, {{0, 4, FitSchreiber::kString}, {1, 4, kS32}}).Byte(0).Zahl(1, 4).Zahl(2, 4);
    // wider than profile and field, and beyond what they hold
    fit.Definiere(0, kRecord, {{0, 8, 0x8E}, {1, 4, kS32}}).Byte(0).Zahl(std::int64_t{1} << 31, 8).Zahl(2, 4);
    fit.Definiere(0, kRecord, {{0, 8, 0x8E}, {1, 4, kS32}}).Byte(0).Zahl(-(std::int64_t{1} << 31) - 1, 8).Zahl(2, 4);
    // Another message with the same fields is no point, an array gives its first element.
    fit.Definiere(0, 19, {{0, 4, kS32}, {1, 4, kS32}}).Byte(0).Zahl(1, 4).Zahl(2, 4);
    fit.Definiere(0, kRecord, {{0, 8, kS32}, {1, 4, kS32}, {3, 2, kU8}});
    fit.Byte(0).Zahl(11, 4).Zahl(12, 4).Zahl(13, 4).Byte(99).Byte(98);
    const FitSpur spur = LiesFit(fit.Datei());
    EXPECT_EQ(spur.befund.fehler, "");
    ASSERT_EQ(spur.punkte.size(), 1U);
    EXPECT_EQ(spur.punkte[0].breite, 11);
    EXPECT_EQ(spur.punkte[0].laenge, 13);
    EXPECT_EQ(spur.punkte[0].pulsRoh, 99);
    EXPECT_FALSE(spur.punkte[0].Hat(FitPunkt::zeit));
    EXPECT_EQ(spur.ohneLage, 7U);
}

// "altitude" counts when there is no "enhanced_altitude", in whichever order they stand; speeds likewise.
TEST(FitLeserTest, EnhancedFieldsComeFirst)
{
    FitSchreiber fit;
    const auto schreibe = [&](bool genauZuerst, std::int64_t genau) {
        std::vector<FitSchreiber::Feld> felder{{0, 4, kS32}, {1, 4, kS32}};
        const std::vector<FitSchreiber::Feld> einfach{{2, 2, kU16}, {6, 2, kU16}};
        const std::vector<FitSchreiber::Feld> fein{{78, 4, kU32}, {73, 4, kU32}};
        for (const auto& teil : {genauZuerst ? fein : einfach, genauZuerst ? einfach : fein})
            felder.insert(felder.end(), teil.begin(), teil.end());
        fit.Definiere(0, kRecord, felder).Byte(0).Zahl(1, 4).Zahl(2, 4);
        for (const bool istFein : {genauZuerst, !genauZuerst})
            if (istFein)
                fit.Zahl(genau, 4).Zahl(genau, 4);
            else
                fit.Zahl(3000, 2).Zahl(5000, 2);
    };
    schreibe(true, 4000);
    schreibe(false, 4000);
    schreibe(true, 0xFFFFFFFF);
    const FitSpur spur = LiesFit(fit.Datei());
    ASSERT_EQ(spur.punkte.size(), 3U);
    for (const std::size_t i : {0U, 1U}) {
        EXPECT_EQ(spur.punkte[i].Hoehe(), 300.0); // 4000 / 5 - 500
        EXPECT_EQ(spur.punkte[i].Tempo(), 4.0);   // mm/s
    }
    EXPECT_EQ(spur.punkte[2].Hoehe(), 100.0);
    EXPECT_EQ(spur.punkte[2].Tempo(), 5.0);
}

TEST(FitLeserTest, CompressedTimestampsCountOnFromTheLastTime)
{
    FitSchreiber fit;
    fit.Definiere(1, kRecord, {{0, 4, kS32}, {1, 4, kS32}});
    const auto komprimiert = [&](int versatz) { fit.Byte(0x80 | 1 << 5 | versatz).Zahl(1, 4).Zahl(2, 4); };
    komprimiert(3); // nothing to count from
    // Any message sets the time: here one of another kind. 1000 = 31 * 32 + 8.
    fit.Definiere(0, 21, {{253, 4, kU32}}).Byte(0).Zahl(1000, 4);
    komprimiert(8);
    komprimiert(31);
    komprimiert(0); // rolled over
    komprimiert(0);
    komprimiert(30);
    komprimiert(2);
    const FitSpur spur = LiesFit(fit.Datei());
    ASSERT_EQ(spur.punkte.size(), 7U);
    EXPECT_FALSE(spur.punkte[0].Hat(FitPunkt::zeit));
    const std::uint32_t erwartet[] = {1000, 1023, 1024, 1024, 1054, 1058};
    for (std::size_t i = 0; i < 6; ++i)
        EXPECT_EQ(spur.punkte[i + 1].zeitstempel, erwartet[i]) << i;
}

TEST(FitLeserTest, DeveloperFieldsAndRedefinitionsAreFollowed)
{
    FitSchreiber fit;
    fit.Definiere(5, kRecord, {{0, 4, kS32}, {1, 4, kS32}}, {3, 1}).Byte(5).Zahl(1, 4).Zahl(2, 4).Zahl(0x7777, 4);
    fit.Definiere(5, kRecord, {{1, 4, kS32}, {0, 4, kS32}}).Byte(5).Zahl(3, 4).Zahl(4, 4);
    const FitSpur spur = LiesFit(fit.Datei());
    EXPECT_EQ(spur.befund.fehler, "");
    EXPECT_EQ(Kurz(spur), "0 1 2 0\n0 4 3 0\n");
}

TEST(FitLeserTest, ChainedFilesFollowEachOther)
{
    FitSchreiber erste;
    erste.DefiniereRecord().Record(10, 1, 2).Record(11, 3, 4);
    FitSchreiber zweite(true);
    zweite.DefiniereRecord().Record(20, 5, 6);
    const std::string beide = erste.Datei() + zweite.Datei(12);
    const FitSpur spur = LiesFit(beide);
    EXPECT_EQ(spur.befund.fehler, "");
    EXPECT_EQ(spur.befund.dateien, 2U);
    EXPECT_EQ(Kurz(spur), "10 1 2 2600\n11 3 4 2600\n20 5 6 2600\n");
    EXPECT_EQ(spur.nahtstellen, std::vector<std::size_t>{2});
    // The time that compressed time stamps count from ends with its file, as definitions do.
    FitSchreiber komprimiert;
    komprimiert.Definiere(1, kRecord, {{0, 4, kS32}, {1, 4, kS32}}).Byte(0x80 | 1 << 5 | 3).Zahl(1, 4).Zahl(2, 4);
    EXPECT_FALSE(LiesFit(erste.Datei() + komprimiert.Datei()).punkte.at(2).Hat(FitPunkt::zeit));
    // A checksum that begins like a message is none, nor is the file that follows it.
    bool gleich = false;
    for (int i = 0; i < 2000; ++i) {
        FitSchreiber anfang;
        anfang.DefiniereRecord().Record(10, 1, i);
        const std::string bytes = anfang.Datei();
        gleich = gleich || bytes[bytes.size() - 2] == 0;
        ASSERT_EQ(Kurz(LiesFit(bytes + erste.Datei())),
                  "10 1 " + std::to_string(i) + " 2600\n10 1 2 2600\n11 3 4 2600\n");
    }
    EXPECT_TRUE(gleich);
    FitSchreiber ohne;
    ohne.Record(20, 5, 6);
    const std::string lose = erste.Datei() + ohne.Datei();
    EXPECT_EQ(Fehler(lose), "Missing FIT message definition for local message number 0");
}

TEST(FitLeserTest, MetadataCountWhereRecordsHaveNoPosition)
{
    const std::vector<FitSchreiber::Feld> felder{{253, 4, kU32}, {0, 2, kU16}, {1, 4, kS32},
                                                 {2, 4, kS32},   {3, 4, kU32}, {4, 4, kU32}};
    FitSchreiber fit;
    fit.Definiere(0, 160, felder).Definiere(1, kRecord, {{253, 4, kU32}, {3, 1, kU8}});
    for (int i = 0; i < 3; ++i)
        fit.Byte(0).Zahl(50, 4).Zahl(100 * i, 2).Zahl(7, 4).Zahl(8, 4).Zahl(2500 + i, 4).Zahl(12000, 4);
    // A second has a thousand milliseconds.
    for (const int milli : {999, 1000})
        fit.Byte(0).Zahl(51, 4).Zahl(milli, 2).Zahl(7, 4).Zahl(8, 4).Zahl(2500, 4).Zahl(12000, 4);
    fit.Byte(1).Zahl(50, 4).Byte(90);
    const FitSpur spur = LiesFit(fit.Datei());
    EXPECT_TRUE(spur.ausMetadaten);
    ASSERT_EQ(spur.punkte.size(), 5U);
    EXPECT_EQ(spur.punkte[3].millisekunde, 999);
    EXPECT_EQ(spur.punkte[4].millisekunde, 0);
    EXPECT_EQ(spur.punkte[2].millisekunde, 200);
    EXPECT_EQ(spur.punkte[2].breite, 7);
    EXPECT_EQ(spur.punkte[2].laenge, 8);
    EXPECT_NEAR(spur.punkte[2].Hoehe(), 0.4, 1e-12);
    EXPECT_EQ(spur.punkte[2].Tempo(), 12.0);
    fit.DefiniereRecord(2).Record(60, 1, 2, 2600, 120, -5, 2);
    const FitSpur mitRecord = LiesFit(fit.Datei());
    EXPECT_FALSE(mitRecord.ausMetadaten);
    EXPECT_EQ(mitRecord.punkte.size(), 1U);
}

// Each text with its byte, counted from 0, or the value that is wrong.
TEST(FitLeserTest, SaysWhatIsWrongAndWhere)
{
    FitSchreiber gut;
    gut.DefiniereRecord().Record(10, 1, 2);
    const std::string datei = gut.Datei();
    const auto geaendert = [&](std::size_t stelle, int wert) {
        std::string kopie = datei;
        kopie[stelle] = static_cast<char>(static_cast<unsigned char>(wert));
        return kopie;
    };
    const std::string laenge = std::to_string(datei.size());
    EXPECT_EQ(Fehler(""), "Unexpected end of input stream at byte: 0");
    EXPECT_EQ(Fehler(geaendert(0, 13)), "File header size invalid.  File is not FIT. Error at byte : 0");
    EXPECT_EQ(Fehler(datei + "abc"), "File header size invalid.  File is not FIT. Error at byte : " + laenge);
    EXPECT_EQ(Fehler(geaendert(1, 0x31)), "Protocol version 3.1");
    EXPECT_EQ(Fehler(geaendert(10, 'J')), "File header signature mismatch.  File is not FIT. Error at byte : 8");
    EXPECT_EQ(Fehler(FitSchreiber().Datei()), "File Size is 0. Error at byte : 4");
    EXPECT_EQ(Fehler(geaendert(datei.size() - 1, 1 ^ datei.back())),
              "File CRC failed. Error at byte: " + std::to_string(datei.size() - 1));
    FitSchreiber halb;
    halb.DefiniereRecord().Record(10, 1, 2).Byte(0).Zahl(11, 4);
    const std::string mitten = halb.Datei();
    EXPECT_EQ(Fehler(mitten), "Decoder not in correct state after last data byte in file. Check message definitions. "
                              "Error at byte: " +
                                  std::to_string(mitten.size() - 2));
    EXPECT_EQ(LiesFit(mitten).punkte.size(), 1U);
    EXPECT_EQ(Fehler(mitten.substr(0, mitten.size() - 2)), // nothing follows the data
              "Unexpected end of input stream at byte: " + std::to_string(mitten.size() - 2));
    EXPECT_EQ(Fehler(FitSchreiber().Byte(7).Datei()), "Missing FIT message definition for local message number 7");
    EXPECT_EQ(Fehler(FitSchreiber().Byte(0x40).Byte(0).Byte(2).Zahl(0, 3).Datei()), "Architecture 2");
    EXPECT_EQ(Fehler(FitSchreiber().Definiere(0, 20, {{0, 0, kS32}}).Datei()), "Invalid Field Size 0");
    EXPECT_EQ(Fehler(FitSchreiber().Definiere(0, 20, {{0, 4, kS32}}, {0}).Datei()), "Invalid Developer Field Size 0");
}

// Only a damage of the file itself spoils its integrity; messages that make no sense may be sound bytes.
TEST(FitLeserTest, IntegrityIsHeaderLengthAndChecksum)
{
    FitSchreiber fit;
    fit.DefiniereRecord().Record(10, 1, 2);
    std::string datei = fit.Datei();
    EXPECT_TRUE(LiesFit(datei).befund.unversehrt);
    EXPECT_FALSE(LiesFit(datei.substr(0, datei.size() - 1)).befund.unversehrt);
    EXPECT_FALSE(LiesFit(datei + "x").befund.unversehrt);
    fit.Byte(9);
    const FitSpur unsinn = LiesFit(fit.Datei());
    EXPECT_NE(unsinn.befund.fehler, "");
    EXPECT_TRUE(unsinn.befund.unversehrt);
    EXPECT_EQ(unsinn.punkte.size(), 1U);
    std::string falsch = fit.Datei();
    falsch.back() = static_cast<char>(falsch.back() ^ 1);
    EXPECT_FALSE(LiesFit(falsch).befund.unversehrt);
    // A header's own checksum may be 0; a wrong one stops nothing.
    datei[12] = static_cast<char>(datei[12] ^ 1);
    const std::string ohneEnde = datei.substr(0, datei.size() - 2);
    const unsigned crc = test::PlainFitCrc(ohneEnde);
    const FitSpur kopf = LiesFit(ohneEnde + static_cast<char>(crc & 0xFFU) + static_cast<char>(crc >> 8U));
    EXPECT_EQ(kopf.befund.fehler, "");
    EXPECT_FALSE(kopf.befund.unversehrt);
}

// Cut off anywhere, a file gives the points before and says that it ends.
// Messages of one kind in a row are read together; one of another kind between them changes nothing, nor do pauses for
// the checksum and the question whether to go on.
TEST(FitLeserTest, ManyMessagesInARowOrMixed)
{
    constexpr int kPunkte = 300000; // more than 4 MB
    for (const bool bigEndian : {false, true}) {
        FitSchreiber reihe(bigEndian);
        FitSchreiber gemischt(bigEndian);
        reihe.DefiniereRecord();
        gemischt.DefiniereRecord().DefiniereRecord(5).Definiere(1, 21, {{0, 1, kU8}});
        for (int i = 0; i < kPunkte; ++i) {
            reihe.Record(1000000000 + i, i, -i, i % 60000, i % 200, i % 100);
            gemischt.Record(1000000000 + i, i, -i, i % 60000, i % 200, i % 100, i % 7 < 3 ? 5 : 0);
            if (i % 11 == 0)
                gemischt.Byte(1).Byte(7);
        }
        int fragen = 0;
        const FitSpur a = LiesFit(reihe.Datei(), [&fragen](double teil) {
            ++fragen;
            return teil > 0.0 && teil < 1.0;
        });
        const FitSpur b = LiesFit(gemischt.Datei());
        EXPECT_EQ(fragen, 1);
        EXPECT_TRUE(a.befund.unversehrt && b.befund.unversehrt);
        EXPECT_EQ(a.befund.nachrichten, static_cast<std::size_t>(kPunkte));
        ASSERT_EQ(a.punkte.size(), static_cast<std::size_t>(kPunkte));
        EXPECT_EQ(a.punkte.back().laenge, 1 - kPunkte);
        EXPECT_EQ(Kurz(a), Kurz(b));
    }
}

TEST(FitLeserTest, EveryPrefixGivesThePointsBefore)
{
    FitSchreiber erste;
    erste.DefiniereRecord();
    for (int i = 0; i < 5; ++i)
        erste.Record(10 + i, i, -i);
    FitSchreiber zweite(true);
    zweite.DefiniereRecord().Record(20, 5, 6);
    const std::string datei = erste.Datei() + zweite.Datei();
    const std::size_t naht = erste.Datei().size();
    constexpr std::size_t kKopf = 14;
    constexpr std::size_t kDefinition = 6 + 6 * 3;
    constexpr std::size_t kRecordBytes = 17;
    const std::string alle = Kurz(LiesFit(datei));
    for (std::size_t laenge = 0; laenge < datei.size(); ++laenge) {
        const FitSpur spur = LiesFit(std::string_view(datei).substr(0, laenge));
        const std::size_t daten = laenge < kKopf + kDefinition ? 0 : laenge - kKopf - kDefinition;
        std::size_t erwartet = std::min<std::size_t>(daten / kRecordBytes, 5);
        if (laenge >= naht + kKopf + kDefinition + kRecordBytes)
            erwartet = 6;
        EXPECT_EQ(spur.punkte.size(), erwartet) << laenge;
        EXPECT_TRUE(alle.starts_with(Kurz(spur))) << laenge;
        EXPECT_EQ(spur.befund.fehler, laenge == naht ? ""
                                                     : "FIT decode error: Unexpected end of input stream at byte: " +
                                                           std::to_string(laenge));
    }
}

// The text of a track, letter by letter. 120 s after the FIT epoch, two hours are missing: 1989-12-30 22:02.
TEST(FitSpurTest, TextOfTheTrack)
{
    const Zeitzone utc("UTC");
    FitSchreiber fit;
    fit.DefiniereRecord().Record(120, k45Grad, 1).Record(121, -k45Grad, k45Grad, 0xFFFF, 0xFF, 0x7F);
    fit.Definiere(1, kRecord, {{0, 4, kS32}, {1, 4, kS32}, {4, 1, kU8}}).Byte(1).Zahl(0, 4).Zahl(0, 4).Byte(88);
    // 2^-31 * 180 = 8.381903171539306640625e-08 exactly; the factor above has 16 digits of 2^-31.
    const std::string erwartet = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                 "<gpx creator = \"Tavelin\" version = \"1.0\">\n"
                                 "  <trk>\n"
                                 "    <name>Tavelin</name>\n"
                                 "    <type>cycling</type>\n"
                                 "    <trkseg>\n"
                                 "      <trkpt lat=\"45\" lon=\"8.381903171539306640625e-08\">\n"
                                 "        <ele>20</ele>\n"
                                 "        <time>1989-12-30T22:02:00.000Z</time>\n"
                                 "        <extensions>\n"
                                 "          <ns3:TrackPointExtension>\n"
                                 "            <ns3:atemp>-5</ns3:atemp>\n"
                                 "            <ns3:hr>120</ns3:hr>\n"
                                 "          </ns3:TrackPointExtension>\n"
                                 "        </extensions>\n"
                                 "      </trkpt>\n"
                                 "      <trkpt lat=\"-45\" lon=\"45\">\n"
                                 "        <time>1989-12-30T22:02:01.000Z</time>\n"
                                 "      </trkpt>\n"
                                 "      <trkpt lat=\"0\" lon=\"0\">\n"
                                 "        <extensions>\n"
                                 "          <ns3:TrackPointExtension>\n"
                                 "            <ns3:cad>88</ns3:cad>\n"
                                 "          </ns3:TrackPointExtension>\n"
                                 "        </extensions>\n"
                                 "      </trkpt>\n"
                                 "    </trkseg>\n"
                                 "  </trk>\n"
                                 "</gpx>\n";
    EXPECT_EQ(Text(LiesFit(fit.Datei())), erwartet);
}

// What is imported from memory is what the written file says. C's printf is the second method for the digits.
TEST(FitSpurTest, TextAndMemoryAgree)
{
    const Zeitzone utc("UTC");
    std::mt19937 zufall(3);
    FitSchreiber fit;
    fit.DefiniereRecord();
    for (int i = 0; i < 300; ++i)
        fit.Record(1000000000 + i, static_cast<std::int32_t>(zufall() >> 1U) - (1 << 30),
                   static_cast<std::int32_t>(zufall()), static_cast<int>(zufall() % 65535), 60 + i % 100, i % 50);
    const FitSpur spur = LiesFit(fit.Datei());
    const std::string text = Text(spur);
    const GpxInhalt gelesen = LiesGpx(text);
    ASSERT_EQ(gelesen.punkte.size(), spur.punkte.size());
    Ortsuhr uhr;
    for (std::size_t i = 0; i < spur.punkte.size(); ++i) {
        const GPXTrackPoint a = AlsTrackPoint(spur.punkte[i], uhr);
        const GPXTrackPoint& b = gelesen.punkte[i];
        EXPECT_EQ(a.latitude, b.latitude);
        EXPECT_EQ(a.longitude, b.longitude);
        EXPECT_EQ(a.elevation, b.elevation);
        EXPECT_EQ(a.second, b.second);
        EXPECT_EQ(a.heartRate, b.heartRate);
        EXPECT_EQ(a.temperature, b.temperature);
        const auto stellen = [](double wert) {
            char zahl[60];
            return std::string(zahl, std::to_chars(zahl, zahl + sizeof zahl, wert, std::chars_format::general, 30).ptr);
        };
        const std::string lage = "lat=\"" + stellen(a.latitude) + "\" lon=\"" + stellen(a.longitude) + "\"";
        EXPECT_NE(text.find(lage), std::string::npos) << lage;
    }
}

// The text has the machine's clock, as C's localtime shows it; how far that is ahead of UTC is known beside it.
TEST(FitSpurTest, LocalClockThroughTheYear)
{
    for (const char* zone : {"UTC", "Europe/Berlin", "America/St_Johns", "Australia/Lord_Howe"}) {
        const Zeitzone gesetzt(zone);
        Ortsuhr uhr;
        for (std::int64_t zeit = 1700000000; zeit < 1732000000; zeit += 3599 * 3) {
            const auto t = static_cast<std::time_t>(zeit);
            const std::tm ort = *std::localtime(&t);
            const Ortszeit& ist = uhr.Zeit(zeit);
            const Zivilzeit soll{ort.tm_year + 1900, ort.tm_mon + 1, ort.tm_mday, ort.tm_hour, ort.tm_min, ort.tm_sec};
            ASSERT_EQ(ist.zeit, soll) << zone << ' ' << zeit;
            ASSERT_EQ(SekundenSeit1970(ist.zeit) - ist.voraus * 60, zeit) << zone;
        }
    }
}
