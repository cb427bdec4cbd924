// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "casefile/CaseFile.h"

#include "host/CRuvData.h"
#include "krn/CaseUnknown.h"
#include "tests/support/TemporaryFolder.h"

#include <cerrno>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace
{

using casefile::CaseFromJson;
using casefile::CaseOutcome;
using casefile::CaseResult;
using casefile::CaseToJson;

const std::string kExample = TAVELIN_SOURCE_DIR "/examples/kreuzung.json";

std::string Written(const CRuvData& data)
{
    std::string json;
    const CaseResult result = CaseToJson(data, json);
    EXPECT_TRUE(result) << result.Text();
    return json;
}

std::string ExampleText()
{
    std::string bytes;
    const base::FileResult read = base::ReadWholeFile(kExample, bytes, 1U << 20U);
    EXPECT_TRUE(read) << read.Text();
    return bytes;
}

void Replace(std::string& text, const std::string& from, const std::string& to)
{
    const std::size_t at = text.find(from);
    ASSERT_NE(at, std::string::npos) << from;
    text.replace(at, from.size(), to);
}

/// A finite number of any size within ±limit; zero, and numbers with many digits, are frequent.
double RandomNumber(std::mt19937_64& random, double limit)
{
    const double mantissa = std::uniform_real_distribution<double>(-1.0, 1.0)(random);
    switch (random() % 4) {
    case 0:
        return 0.0;
    case 1:
        return std::round(mantissa * 1000.0) / 10.0;
    case 2:
        return mantissa * limit;
    default:
        return std::ldexp(mantissa, static_cast<int>(random() % 80) - 60);
    }
}

void FillAtRandom(CRuvData& data, std::mt19937_64& random)
{
    const char* const names[] = {"", "Pkw", "Größe \"ß\" \\ \n\t/~", "日本 \U0001F697"};
    data.Title() = names[random() % 4];
    data.FallParameter().luftdichte = random() % 2 == 0 ? 1.2 : std::fmod(std::abs(RandomNumber(random, 100.0)), 100.0);
    for (std::size_t i = 0; i < CRuvData::kFahrzeuge; i += 1 + random() % 4) {
        CKfzDaten& kfz = data.KfzDat(i);
        kfz = TypicalCar(names[random() % 4], static_cast<COLORREF>(random() & 0xFFFFFFU));
        kfz.type = static_cast<CKfzDaten::Type>(random() % 6);
        kfz.mass = std::abs(RandomNumber(random, 1e6));
        kfz.payload = std::abs(RandomNumber(random, 1e6));
        kfz.frontOverhang = RandomNumber(random, 1e6);
        CWegZeitRechDat& wz = data.WZRechDat(i);
        const std::size_t firstColumn = random() % 5;
        for (std::size_t c = firstColumn; c < CWegZeitDat::kSpalten; c += 1 + random() % 9) {
            CWegZeitSpalte& s = wz.spalten[c];
            s.art = static_cast<PhasenArt>(1 + random() % 20); // kinds without a name too
            s.unterArt = static_cast<int>(random() % 5) - 2;
            for (double* q : {&s.vEnd, &s.vAnf, &s.verz, &s.zeit, &s.weg, &s.sumZeit, &s.sumWeg, &s.schwellDauer,
                              &s.radiusAnf, &s.radiusEnd, &s.lenkZeit, &s.richtung, &s.endWeg, &s.endGier}) {
                *q = RandomNumber(random, 1e9);
            }
            s.seite = static_cast<int>(random() % 3);
            for (std::size_t n = random() % 6; n > 0; --n) {
                s.bahn.push_back({RandomNumber(random, 1e9), RandomNumber(random, 1e9)});
            }
        }
        if (kfz.IsValid()) {
            wz.selected = random() % CWegZeitDat::kSpalten;
            wz.mode = static_cast<std::int64_t>(random() % 6);
            wz.bahnModus = static_cast<std::int64_t>(random() % 21);
            wz.marke = random() % 2 == 0 ? CWegZeitDat::kMarkeHalbeSicht : 0;
            for (std::size_t n = random() % 6; n > 0; --n) {
                wz.fahrlinie.push_back({RandomNumber(random, 1e9), RandomNumber(random, 1e9)});
            }
            wz.endPunkt = {RandomNumber(random, 1e9), RandomNumber(random, 1e9)};
            wz.endRichtung = RandomNumber(random, 1e9);
            data.UPa(i).modified = random() % 2 == 0;
            data.UPa(i).updateFlags = random() % 2 == 0 ? random() : 0;
        } else if (wz.FirstFree() == CWegZeitDat::kErsteSpalte) {
            kfz = {}; // neither valid nor with phases: nothing of it is kept
            wz = {};
        }
    }
    for (const UINT mask : {400U, 487U}) {
        if (random() % 2 == 0) {
            data.MaskenWerte(mask)["a/b~c \"Länge\""] = {RandomNumber(random, 1e300), -0.0, 5e-324};
            data.MaskenWerte(mask)[""] = {};
        }
    }
}

void ExpectSame(const CRuvData& a, const CRuvData& b)
{
    ASSERT_EQ(a.Title(), b.Title());
    ASSERT_EQ(a.FallParameter(), b.FallParameter());
    for (std::size_t i = 0; i < CRuvData::kFahrzeuge; ++i) {
        ASSERT_EQ(a.KfzDat(i), b.KfzDat(i)) << "vehicle " << i;
        ASSERT_EQ(a.WZRechDat(i), b.WZRechDat(i)) << "vehicle " << i;
        ASSERT_EQ(a.UPa(i), b.UPa(i)) << "vehicle " << i;
    }
    ASSERT_EQ(a.AlleMaskenWerte(), b.AlleMaskenWerte());
}

TEST(CaseFile, RandomCasesComeBackBitForBit)
{
    std::mt19937_64 random(5);
    for (int round = 0; round < 300; ++round) {
        CRuvData data;
        FillAtRandom(data, random);
        const std::string json = Written(data);
        CRuvData read;
        const CaseResult result = CaseFromJson(json, read);
        ASSERT_TRUE(result) << result.Text() << '\n' << json;
        ExpectSame(data, read);
        ASSERT_EQ(Written(read), json);
        data.Clear();
        ExpectSame(data, CRuvData());
        ASSERT_EQ(Written(data), Written(CRuvData()));
    }
}

TEST(CaseFile, ExampleIsAsThisVersionWritesItAndDrives)
{
    const std::string text = ExampleText();
    CRuvData data;
    ASSERT_TRUE(casefile::LoadCase(kExample, data));
    EXPECT_EQ(Written(data), text);

    for (std::size_t vehicle = 0; vehicle < 2; ++vehicle) {
        CWegZeitRechDat computed = data.WZRechDat(vehicle);
        EXPECT_GE(computed.FirstFree(), 5U);
        computed.Berechnung();
        EXPECT_EQ(computed, data.WZRechDat(vehicle));
        const CKfzDaten& kfz = data.KfzDat(vehicle);
        EXPECT_NEAR(kfz.frontOverhang + kfz.wheelbase + kfz.rearOverhang, kfz.length, 1e-9);
    }
    // Energy: what 12.5 m of braking at 7.5 m/s² take away.
    const CWegZeitSpalte& braking = data.WZRechDat(0).spalten[3];
    EXPECT_NEAR(braking.vAnf * braking.vAnf / 12.96, braking.vEnd * braking.vEnd / 12.96 + 2.0 * 7.5 * 12.5, 1e-9);
}

TEST(CaseFile, NewCaseHoldsTwoCompleteCarsAndNothingElse)
{
    std::mt19937_64 random(6);
    CRuvData data;
    FillAtRandom(data, random);
    data.MaskenWerte(487)["winkel"] = {1.0};
    casefile::NewExampleCase(data);
    CRuvData again;
    ASSERT_TRUE(CaseFromJson(Written(data), again));
    for (std::size_t i = 0; i < CRuvData::kFahrzeuge; ++i) {
        EXPECT_EQ(data.IsFzgValid(static_cast<std::int64_t>(i)), i < 2);
        EXPECT_EQ(data.WZRechDat(i), CWegZeitRechDat());
        EXPECT_EQ(again.KfzDat(i), data.KfzDat(i));
    }
    const CKfzDaten& car = data.KfzDat(0);
    for (const double length : {car.mass, car.length, car.width, car.height, car.wheelbase, car.track,
                                car.frontOverhang, car.rearOverhang, car.turningCircle, car.steeringRatio}) {
        EXPECT_GT(length, 0.0);
    }
    EXPECT_TRUE(again.AlleMaskenWerte().empty());
}

TEST(CaseFile, MembersOfANewerProgramStayAtEveryLevel)
{
    std::string text = ExampleText();
    Replace(text, "\"version\": \"1.0\"",
            "\"version\": \"1.7\", \"scene\": {\"scale\": [0.1, {\"deep\": null}]}, "
            "\"parameters\": {\"airDensity\": 1.1, \"weather\": \"Regen\"}");
    Replace(text, "\"name\": \"Pkw 2", "\"insurance\": 9223372036854775809, \"name\": \"Pkw 2");
    Replace(text, "\"selected\": 3", "\"selected\": 3, \"source\": \"Gerät\"");
    Replace(text, "\"kind\": 4", "\"kind\": 4, \"tyre\": {\"temperature\": 30.50}");
    Replace(text, "\"pathTime\"", "\"parameters\": {\"colour\": true}, \"pathTime\"");
    CRuvData data;
    const CaseResult result = CaseFromJson(text, data);
    ASSERT_TRUE(result) << result.Text();

    // The threshold phase moves by one column and takes along what is known of it.
    ASSERT_TRUE(data.WZRechDat(0).Einfuegen(4));
    const std::string written = Written(data);
    for (const char* kept :
         {"\"version\": \"1.7\"", "\"deep\": null", "\"insurance\": 9223372036854775809", "\"airDensity\": 1.1",
          "\"weather\": \"Regen\"", "\"source\": \"Gerät\"", "\"parameters\": {\"colour\": true}"}) {
        EXPECT_NE(written.find(kept), std::string::npos) << kept;
    }
    const std::size_t tyre = written.find("\"tyre\": {\"temperature\": 30.5}");
    EXPECT_LT(written.find("\"column\": 5"), tyre);
    EXPECT_GT(written.find("\"column\": 6"), tyre);
    EXPECT_NE(tyre, std::string::npos);

    CRuvData again;
    ASSERT_TRUE(CaseFromJson(written, again));
    EXPECT_EQ(Written(again), written);
    casefile::NewExampleCase(again);
    EXPECT_EQ(Written(again).find("scene"), std::string::npos);
}

TEST(CaseFile, IsWrittenAsTheLowestVersionThatHasAllItHolds)
{
    const auto version = [](const CRuvData& data) {
        const std::string text = Written(data);
        const std::string before = "\"version\": \"";
        return text.substr(text.find(before) + before.size(), 3);
    };
    CRuvData data;
    casefile::NewExampleCase(data);
    data.WZDat(0).bahnModus = CWegZeitDat::kBahnAusFahrdaten;
    EXPECT_EQ(version(data), "1.0");
    data.Bilder().push_back({"bild.png", std::string(64, '0'), 10, 10});
    EXPECT_EQ(version(data), "1.1");
    const std::function<void(CRuvData&)> additions[] = {
        [](CRuvData& d) { d.FallParameter().luftdichte = 1.15; },
        [](CRuvData& d) { d.KfzDat(1).payload = 500.0; },
        [](CRuvData& d) { d.WZDat(1).marke = CWegZeitDat::kMarkeHalbeSicht; },
        [](CRuvData& d) {
            d.WZDat(1).fahrlinie = {{0.0, 0.0}, {100.0, -25.5}};
        },
    };
    for (const auto& add : additions) {
        CRuvData more;
        ASSERT_TRUE(CaseFromJson(Written(data), more));
        more.unknown.reset();
        add(more);
        EXPECT_EQ(version(more), "1.2");
    }
    for (std::string CFallAngaben::*text : {&CFallAngaben::datum, &CFallAngaben::ort, &CFallAngaben::bearbeiter}) {
        CRuvData more;
        ASSERT_TRUE(CaseFromJson(Written(data), more));
        more.unknown.reset();
        more.Angaben().*text = "Ö";
        EXPECT_EQ(version(more), "1.3");
        CRuvData read;
        ASSERT_TRUE(CaseFromJson(Written(more), read));
        EXPECT_EQ(read.Angaben(), more.Angaben());
        casefile::NewExampleCase(read);
        EXPECT_EQ(read.Angaben(), CFallAngaben{});
    }
    // A driving line is kept though the vehicle is not described; what belongs to no vehicle is not.
    data.WZDat(7).fahrlinie = {{1.0, 2.0}};
    data.WZDat(8).marke = CWegZeitDat::kMarkeHalbeSicht;
    CRuvData read;
    ASSERT_TRUE(CaseFromJson(Written(data), read));
    EXPECT_EQ(read.WZDat(7).fahrlinie, data.WZDat(7).fahrlinie);
    EXPECT_EQ(read.WZDat(8).marke, 0);
    casefile::NewExampleCase(read);
    EXPECT_EQ(read.WZDat(7).fahrlinie.size(), 0U);
    EXPECT_EQ(read.FallParameter().luftdichte, 1.2);
}

struct Refusal {
    const char* from;
    const char* to;
    const char* pointer;
};

TEST(CaseFile, WrongValuesAreRefusedByName)
{
    const std::string example = ExampleText();
    const Refusal refusals[] = {
        {"\"tavelin-case\"", "\"anderes\"", ""},
        {"\"1.0\"", "\"1\"", "/version"},
        {"\"1.0\"", "\"0.9\"", "/version"},
        {"\"1.0\"", "1.0", "/version"},
        {"\"title\": ", "\"title\": 3, \"titel\": ", "/title"},
        {"\"vehicles\": [", "\"masks\": [], \"vehicles\": [", "/masks"},
        {"\"vehicles\": [", "\"masks\": {\"0400\": {}}, \"vehicles\": [", "/masks/0400"},
        {"\"vehicles\": [", "\"masks\": {\"400\": {\"a/~\": [1, \"2\"]}}, \"vehicles\": [", "/masks/400/a~1~0/1"},
        {"\"vehicles\": [", "\"vehicles\": [null, ", "/vehicles/0"},
        {"\"index\": 1", "\"index\": 0", "/vehicles/1/index"},
        {"\"index\": 1", "\"index\": 16", "/vehicles/1/index"},
        {"\"index\": 1", "\"index\": 1.5", "/vehicles/1/index"},
        {"\"index\": 1,", "", "/vehicles/1/index"},
        {"\"type\": \"car\"", "\"type\": \"Raumschiff\"", "/vehicles/0/type"},
        {"\"type\": \"car\",", "", "/vehicles/0/type"},
        {"\"#c81e1e\"", "\"rot\"", "/vehicles/0/color"},
        {"\"vehicles\": [", "\"parameters\": [], \"vehicles\": [", "/parameters"},
        {"\"vehicles\": [", "\"parameters\": {\"airDensity\": -0.1}, \"vehicles\": [", "/parameters/airDensity"},
        {"\"mass\": 1500.0", "\"mass\": 1500.0, \"payload\": -1", "/vehicles/0/payload"},
        {"\"selected\": 3", "\"selected\": 3, \"marker\": 0.5", "/vehicles/0/pathTime/marker"},
        {"\"selected\": 3", "\"selected\": 3, \"line\": [[0, 0], [1, 2, 3]]", "/vehicles/0/pathTime/line/1"},
        {"\"selected\": 3", "\"selected\": 3, \"line\": {}", "/vehicles/0/pathTime/line"},
        {"\"mass\": 1500.0", "\"mass\": \"1500\"", "/vehicles/0/mass"},
        {"\"mass\": 1500.0", "\"mass\": -1", "/vehicles/0/mass"},
        {"\"mass\": 1500.0", "\"mass\": 1e7", "/vehicles/0/mass"},
        {"\"mass\": 1500.0", "\"mass\": null", "/vehicles/0/mass"},
        {"\"pathTime\": {", "\"parameters\": {\"modified\": 1}, \"pathTime\": {", "/vehicles/0/parameters/modified"},
        {"\"pathTime\": {", "\"parameters\": {\"updateFlags\": [28, 64]}, \"pathTime\": {",
         "/vehicles/0/parameters/updateFlags/1"},
        {"\"restPoint\": [-40.0, 110.0]", "\"restPoint\": [1]", "/vehicles/0/pathTime/restPoint"},
        {"\"restHeading\": 0.42", "\"restHeading\": \"N\"", "/vehicles/0/pathTime/restHeading"},
        {"\"selected\": 3", "\"lineMode\": 100, \"selected\": 3", "/vehicles/0/pathTime/lineMode"},
        {"\"selected\": 3", "\"selected\": 48", "/vehicles/0/pathTime/selected"},
        {"\"phases\": [", "\"phases\": 5, \"x\": [", "/vehicles/0/pathTime/phases"},
        {"\"column\": 4", "\"column\": 3", "/vehicles/0/pathTime/phases/2/column"},
        {"\"kind\": 4", "\"kind\": 0", "/vehicles/0/pathTime/phases/2/kind"},
        {"\"kind\": 4", "\"kind\": 4, \"side\": 3", "/vehicles/0/pathTime/phases/2/side"},
        {"\"endSpeed\": 22.0", "\"endSpeed\": 1e10", "/vehicles/0/pathTime/phases/1/endSpeed"},
        {"\"kind\": 4", "\"kind\": 4, \"trajectory\": [[0, 1], [2]]", "/vehicles/0/pathTime/phases/2/trajectory/1"},
        {"\"kind\": 4", "\"kind\": 4, \"trajectory\": [[0, 1e13]]", "/vehicles/0/pathTime/phases/2/trajectory/0"},
        // Not JSON at all, or not this kind of it.
        {"\"mass\": 1500.0", "\"mass\": NaN", ""},
        {"\"mass\": 1500.0", "\"mass\": 1e999", ""},
        {"\"mass\": 1500.0", "\"mass\": 1500.0, \"mass\": 1500.0", ""},
        {"Pkw 2", "Pkw \xFF", ""},
    };
    for (const Refusal& refusal : refusals) {
        std::string text = example;
        Replace(text, refusal.from, refusal.to);
        CRuvData data;
        data.Title() = "vorher";
        const CaseResult result = CaseFromJson(text, data);
        EXPECT_EQ(result.outcome, CaseOutcome::damaged) << refusal.to;
        EXPECT_EQ(result.pointer, refusal.pointer) << refusal.to;
        EXPECT_FALSE(result.reason.empty());
        EXPECT_NE(result.Text().find(refusal.pointer), std::string::npos);
        EXPECT_EQ(data.Title(), "vorher");
        EXPECT_FALSE(data.IsFzgValid(0));
    }
}

TEST(CaseFile, UnsavableValuesAreNamed)
{
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    struct Spoiled {
        std::function<void(CRuvData&)> spoil;
        const char* pointer;
    };
    const Spoiled cases[] = {
        {[](CRuvData& d) { d.KfzDat(1).mass = nan; }, "/vehicles/1/mass"},
        {[](CRuvData& d) { d.KfzDat(1).wheelbase = -1.0; }, "/vehicles/1/wheelbase"},
        {[](CRuvData& d) { d.KfzDat(1).payload = nan; }, "/vehicles/1/payload"},
        {[](CRuvData& d) { d.FallParameter().luftdichte = infinity; }, "/parameters/airDensity"},
        {[](CRuvData& d) { d.WZDat(1).marke = 100; }, "/vehicles/1/pathTime/marker"},
        {[](CRuvData& d) {
             d.WZDat(1).fahrlinie = {{0, 0}, {infinity, 0}};
         },
         "/vehicles/1/pathTime/line/1"},
        {[](CRuvData& d) { d.KfzDat(0).name = "\xC3"; }, "/vehicles/0/name"},
        {[](CRuvData& d) { d.KfzDat(0).color = 0x1000000; }, "/vehicles/0/color"},
        {[](CRuvData& d) { d.WZDat(0).spalten[5].richtung = nan; }, "/vehicles/0/pathTime/phases/3/direction"},
        {[](CRuvData& d) { d.WZDat(0).spalten[5].zeit = -infinity; }, "/vehicles/0/pathTime/phases/3/time"},
        {[](CRuvData& d) {
             d.WZDat(0).spalten[5].bahn = {{0, 0}, {0, nan}};
         },
         "/vehicles/0/pathTime/phases/3/trajectory/1"},
        {[](CRuvData& d) { d.WZDat(0).spalten[5].seite = 7; }, "/vehicles/0/pathTime/phases/3/side"},
        {[](CRuvData& d) { d.WZDat(1).selected = 48; }, "/vehicles/1/pathTime/selected"},
        {[](CRuvData& d) {
             d.MaskenWerte(487)["b/a"] = {1.0, infinity};
         },
         "/masks/487/b~1a/1"},
    };
    test::TemporaryFolder folder;
    const std::string path = folder.File("fall.json");
    folder.Write("fall.json", ExampleText());
    for (const Spoiled& spoiled : cases) {
        CRuvData data;
        ASSERT_TRUE(casefile::LoadCase(path, data));
        spoiled.spoil(data);
        const CaseResult result = casefile::SaveCase(path, data, casefile::Overwrite::force);
        EXPECT_EQ(result.outcome, CaseOutcome::invalidValue) << spoiled.pointer;
        EXPECT_EQ(result.pointer, spoiled.pointer);
        EXPECT_NE(result.Text().find(spoiled.pointer), std::string::npos);
        EXPECT_EQ(folder.Read("fall.json"), ExampleText());
    }
}

TEST(CaseFile, NewerAndDamagedFilesAreNotOverwritten)
{
    test::TemporaryFolder folder;
    const std::string path = folder.File("fall.json");
    CRuvData data;
    casefile::NewExampleCase(data);
    const std::string example = ExampleText();
    const auto with = [&example](const char* from, const char* to) {
        std::string text = example;
        Replace(text, from, to);
        return text;
    };
    const struct {
        std::string existing;
        CaseOutcome loading;
        CaseOutcome saving;
    } cases[] = {
        {with("\"1.0\"", "\"2.0\""), CaseOutcome::newerVersion, CaseOutcome::keepsNewer},
        {with("\"1.0\"", "\"17.3\""), CaseOutcome::newerVersion, CaseOutcome::keepsNewer},
        // A newer minor version whose content is beyond this program.
        {with("\"1.0\",", "\"1.9\", \"masks\": 5,"), CaseOutcome::newerVersion, CaseOutcome::keepsNewer},
        {example.substr(0, 700), CaseOutcome::damaged, CaseOutcome::keepsDamaged},
        {"Einkaufszettel", CaseOutcome::damaged, CaseOutcome::keepsDamaged},
    };
    for (const auto& c : cases) {
        folder.Write("fall.json", c.existing);
        CRuvData read;
        EXPECT_EQ(casefile::LoadCase(path, read).outcome, c.loading);
        const CaseResult refused = casefile::SaveCase(path, data);
        EXPECT_EQ(refused.outcome, c.saving);
        EXPECT_NE(refused.Text().find("nicht überschrieben"), std::string::npos);
        EXPECT_EQ(folder.Read("fall.json"), c.existing);
        EXPECT_TRUE(casefile::SaveCase(path, data, casefile::Overwrite::force));
        EXPECT_EQ(folder.Read("fall.json"), Written(data));
    }
    folder.Write("fall.json", ""); // nothing to lose
    EXPECT_TRUE(casefile::SaveCase(path, data));
    EXPECT_TRUE(casefile::SaveCase(path, data));

    EXPECT_EQ(casefile::LoadCase(folder.File("fehlt.json"), data).outcome, CaseOutcome::notReadable);
    EXPECT_EQ(casefile::LoadCase(folder.Path(), data).outcome, CaseOutcome::notReadable);
    EXPECT_EQ(casefile::SaveCase(folder.Path(), data).outcome, CaseOutcome::notWritable);

    base::FileCalls full = base::SystemFileCalls();
    full.sync = [](auto) { return ENOSPC; };
    data.Title() = "neu";
    EXPECT_EQ(casefile::SaveCase(path, data, casefile::Overwrite::onlyCases, full).outcome, CaseOutcome::notWritable);
    EXPECT_EQ(folder.Read("fall.json").find("neu"), std::string::npos);
}

} // namespace
