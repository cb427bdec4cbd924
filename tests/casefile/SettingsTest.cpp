// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "casefile/Settings.h"

#include "host/RuvCfg.h"
#include "host/Units.h"
#include "tests/support/TemporaryFolder.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace
{

UnitsSystemConfiguration& Units()
{
    return UnitsSystemConfiguration::GetInstance();
}

class Settings : public testing::Test
{
  protected:
    test::TemporaryFolder folder;
    std::string path = folder.File("tavelin/settings.json");

    ~Settings() override
    {
        RuvCfg = CRuvCfg();
        Units().SetSystem(UnitsSystem::metric);
    }

    std::string LoadText(const std::string& text)
    {
        folder.Write("text.json", text);
        return casefile::LoadSettings(folder.File("text.json"));
    }
};

TEST_F(Settings, ComeBackAsTheyWere)
{
    EXPECT_EQ(casefile::LoadSettings(path), "");
    EXPECT_EQ(RuvCfg.defaultReactionTime, 1.0);
    EXPECT_EQ(RuvCfg.defaultThresholdTime, 0.2);
    EXPECT_EQ(Units().System(), UnitsSystem::metric);

    RuvCfg.transferData = true;
    RuvCfg.useVehicleColors = false;
    RuvCfg.decimalPoint = true;
    RuvCfg.defaultReactionTime = 0.8;
    RuvCfg.defaultThresholdTime = 0.15;
    RuvCfg.editColors = {RGB(1, 2, 3), RGB(4, 5, 6)};
    RuvCfg.resultColors = {RGB(0x10, 0xAB, 0xFF), RGB(255, 254, 253)};
    RuvCfg.diagramBackground = RGB(7, 8, 9);
    RuvCfg.diagramPlot = RGB(10, 11, 12);
    RuvCfg.schranken.bremsungDettinger = RGB(13, 14, 15);
    RuvCfg.schranken.geschwindigkeit = RGB(16, 17, 18);
    RuvCfg.karte = {CKartenCfg::Quelle::server, "/karten/ö.mbtiles", "https://k.example/{z}/{x}/{y}.png", "© Amt"};
    Units().SetSystem(UnitsSystem::imperial);
    ASSERT_TRUE(casefile::SaveSettings(path));
    EXPECT_NE(folder.Read("tavelin/settings.json").find("\"resultText\": \"#10abff\""), std::string::npos);

    const CRuvCfg saved = RuvCfg;
    RuvCfg = CRuvCfg();
    Units().SetSystem(UnitsSystem::metric);
    EXPECT_EQ(casefile::LoadSettings(path), "");
    EXPECT_TRUE(RuvCfg.transferData);
    EXPECT_FALSE(RuvCfg.useVehicleColors);
    EXPECT_TRUE(RuvCfg.decimalPoint);
    EXPECT_EQ(RuvCfg.defaultReactionTime, 0.8);
    EXPECT_EQ(RuvCfg.defaultThresholdTime, 0.15);
    EXPECT_EQ(RuvCfg.editColors.text, saved.editColors.text);
    EXPECT_EQ(RuvCfg.editColors.background, saved.editColors.background);
    EXPECT_EQ(RuvCfg.resultColors.text, saved.resultColors.text);
    EXPECT_EQ(RuvCfg.resultColors.background, saved.resultColors.background);
    EXPECT_EQ(RuvCfg.diagramBackground, saved.diagramBackground);
    EXPECT_EQ(RuvCfg.diagramPlot, saved.diagramPlot);
    EXPECT_EQ(RuvCfg.schranken.bremsungDettinger, saved.schranken.bremsungDettinger);
    EXPECT_EQ(RuvCfg.schranken.geschwindigkeit, saved.schranken.geschwindigkeit);
    EXPECT_EQ(RuvCfg.schranken.abwicklung, CRuvCfg().schranken.abwicklung);
    EXPECT_EQ(RuvCfg.karte, saved.karte);
    EXPECT_EQ(Units().System(), UnitsSystem::imperial);
}

TEST_F(Settings, MembersOfANewerProgramStay)
{
    EXPECT_EQ(LoadText(R"({"transferData": true, "windows": {"400": [1, 2.50]}, "colors": {"grid": "#123456"}})"), "");
    EXPECT_TRUE(RuvCfg.transferData);
    RuvCfg.transferData = false;
    ASSERT_TRUE(casefile::SaveSettings(folder.File("text.json")));
    const std::string text = folder.Read("text.json");
    EXPECT_NE(text.find(R"("windows": {"400": [1, 2.5]})"), std::string::npos) << text;
    EXPECT_NE(text.find(R"("grid": "#123456")"), std::string::npos) << text;
    EXPECT_NE(text.find(R"("transferData": false)"), std::string::npos) << text;
    EXPECT_FALSE(base::FileExists(folder.File("text.json.bak")));
}

// A server whose address is none is never asked, whoever wrote it there.
TEST_F(Settings, AServerThatIsNoneIsNotUsed)
{
    for (const char* map : {R"({"source": "server"})", R"({"source": "server", "server": "ftp://k/{z}/{x}/{y}"})",
                            R"({"source": "server", "server": 7})", R"({"source": "netz"})", R"([1])"}) {
        LoadText(std::string(R"({"map": )") + map + "}");
        EXPECT_EQ(RuvCfg.karte.quelle, CKartenCfg::Quelle::keine) << map;
        EXPECT_EQ(RuvCfg.karte.server, "") << map;
    }
    EXPECT_NE(LoadText(R"({"map": {"source": "netz"}})").find("map/source"), std::string::npos);
    EXPECT_EQ(LoadText(R"({"map": {"source": "file", "file": "/k.mbtiles", "zoom": 3}})"), "");
    EXPECT_EQ(RuvCfg.karte.quelle, CKartenCfg::Quelle::datei);
    ASSERT_TRUE(casefile::SaveSettings(folder.File("text.json")));
    EXPECT_NE(folder.Read("text.json").find("\"zoom\": 3"), std::string::npos);
}

TEST_F(Settings, DamagedFileGivesDefaultsAndIsKept)
{
    for (const std::string damaged : {"", "{\"transferData\": tr", "[]", "{\"format\": \"anderes\"}"}) {
        RuvCfg.transferData = true;
        RuvCfg.defaultReactionTime = 7.0;
        EXPECT_NE(LoadText(damaged).find("text.json"), std::string::npos) << damaged;
        EXPECT_FALSE(RuvCfg.transferData);
        EXPECT_EQ(RuvCfg.defaultReactionTime, 1.0);
        EXPECT_EQ(folder.Read("text.json"), damaged);
        ASSERT_TRUE(casefile::SaveSettings(folder.File("text.json")));
        EXPECT_EQ(folder.Read("text.json.bak"), damaged);
        EXPECT_EQ(casefile::LoadSettings(folder.File("text.json")), "");
    }
}

TEST_F(Settings, WrongMembersAreNamedAndTheOthersTaken)
{
    const std::string warning = LoadText(R"({"transferData": 1, "useVehicleColors": false, "defaultReactionTime": -0.1,
        "defaultThresholdTime": 1e3, "units": "nautical", "colors": {"editText": "#12345", "resultText": "#00ff00"}})");
    for (const char* name :
         {"transferData", "defaultReactionTime", "defaultThresholdTime", "units", "colors/editText"}) {
        EXPECT_NE(warning.find(name), std::string::npos) << name;
    }
    EXPECT_EQ(warning.find("useVehicleColors"), std::string::npos);
    EXPECT_EQ(warning.find("resultText"), std::string::npos);
    EXPECT_FALSE(RuvCfg.useVehicleColors);
    EXPECT_EQ(RuvCfg.resultColors.text, RGB(0, 255, 0));
    EXPECT_EQ(RuvCfg.defaultReactionTime, 1.0);
    EXPECT_EQ(RuvCfg.editColors.text, CRuvCfg().editColors.text);
}

#ifndef _WIN32
TEST_F(Settings, LieInTheConfigurationFolder)
{
    const char* names[] = {"XDG_CONFIG_HOME", "HOME"};
    std::string before[2];
    for (int i = 0; i < 2; ++i) {
        const char* value = std::getenv(names[i]);
        before[i] = value ? value : "";
    }
    setenv("HOME", "/home/frau", 1);
    setenv("XDG_CONFIG_HOME", "/konfig", 1);
    EXPECT_EQ(casefile::DefaultSettingsPath(), "/konfig/tavelin/settings.json");
    setenv("XDG_CONFIG_HOME", "nicht/absolut", 1);
    EXPECT_EQ(casefile::DefaultSettingsPath(), "/home/frau/.config/tavelin/settings.json");
    unsetenv("XDG_CONFIG_HOME");
    unsetenv("HOME");
    EXPECT_EQ(casefile::DefaultSettingsPath(), "");
    for (int i = 0; i < 2; ++i) {
        if (!before[i].empty()) {
            setenv(names[i], before[i].c_str(), 1);
        }
    }
}
#endif

TEST(Units, ImperialFactors)
{
    auto& units = Units();
    const UnitType kmh(unitType::speedKmh), ms(unitType::speedMs), ms2(unitType::acceleration), m(unitType::length);
    units.SetSystem(UnitsSystem::imperial);
    EXPECT_DOUBLE_EQ(units.ToShown(160.9344, kmh), 100.0); // mph
    EXPECT_DOUBLE_EQ(units.ToShown(9.80665, ms2), 9.80665 / 0.3048);
    EXPECT_DOUBLE_EQ(units.ToMetric(10.0, m), 3.048);
    EXPECT_DOUBLE_EQ(units.ToMetric(10.0, ms), 3.048);
    EXPECT_EQ(units.GetSpeedUnit() + units.UnitString(ms) + units.UnitString(ms2) + units.UnitString(m),
              "mphft/sft/s²ft");
    EXPECT_EQ(units.ToShown(7.0, UnitType(unitType::none)), 7.0);
    units.SetSystem(UnitsSystem::metric);
    EXPECT_EQ(units.ConvertSpeedMetricToUnit(50.0), 50.0);
    EXPECT_EQ(units.GetSpeedUnit() + units.UnitString(ms) + units.UnitString(ms2) + units.UnitString(m),
              "km/hm/sm/s²m");
}

} // namespace
