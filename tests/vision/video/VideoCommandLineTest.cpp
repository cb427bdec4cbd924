// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The video analysis by a script of the command line.
#include "base/NumberText.h"
#include "casefile/CaseFile.h"
#include "tests/cli/CliProgram.h"
#include "tests/vision/video/VideoMaskFixture.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

namespace
{

using test::RoadCamera;

// A script's work from the file to the case: points clicked in the field, the whole video analysed, the range handed
// over.
TEST(VideoMaskCommandLine, AWholeAnalysisFromFileToPhases)
{
    const test::TemporaryFolder folder;
    const RoadCamera kamera;
    test::VideoPlan plan;
    plan.width = kamera.width;
    plan.height = kamera.height;
    plan.times = test::EvenTimes(25, 512);
    plan.draw = test::DrawVehicles(kamera, [](int nummer) { return 0.04 * nummer; });
    test::WriteVideo(folder.File("road.mp4"), plan);
    // The network lies beside the program.
    const auto programme = std::filesystem::path(test::CliPath()).parent_path();
    std::filesystem::copy_file(test::CliPath(), folder.File("tavelin-cli"));
    for (const char* library : {"libClassKrn.so", "libRuvMod.so", "libRuvFunc.so", "libRuvVideo.so"})
        std::filesystem::create_symlink(programme / library, folder.File(library));
    folder.Folder("Dnn");
    std::filesystem::copy_file(std::string(TAVELIN_SOURCE_DIR) + "/tests/data/vision/detector.onnx",
                               folder.File("Dnn/detector.onnx"));
    const std::string fall = folder.File("fall.json");
    // The field is 768 by 360 pixels, the picture in it 640 by 360.
    std::vector<std::string> skript{"mask",       "494",     "--save",   fall,      "file:" + folder.File("road.mp4"),
                                    "press:5201", "49418=7", "49419=25", "49420=7", "49421=25"};
    for (const auto& [x, y] : test::kLane) {
        const VisionPoint p = kamera.See(x, y);
        skript.push_back("click:49401=" + base::ShortestDigits(p.x / 3.0 + 64.0) + "," +
                         base::ShortestDigits(p.y / 3.0));
    }
    for (const char* aktion : {"answer:1980=1", "press:49417", "range:5202=0.2,0.8", "state", "press:1"})
        skript.emplace_back(aktion);
    const test::Output lauf = test::RunCli(skript, {}, folder.File("tavelin-cli"));
    ASSERT_EQ(lauf.exit, 0) << lauf.err;
    const auto zustand = test::JsonLines(lauf.out).front();
    const auto& record = zustand.at("record");
    EXPECT_EQ(record.at("ids").size(), 2U);
    EXPECT_EQ(record.at("rate"), 0.05);
    EXPECT_NEAR(record.at("kameraHoehe").get<double>(), 6.0, 0.05);
    EXPECT_NEAR(record.at("faktor").get<double>(), 0.88, 0.002);
    EXPECT_EQ(record.at("reste").size(), 6U);
    EXPECT_EQ(record.at("reste")[4], "nan"); // not measured
    const double tempo = record.at("mittel").get<double>();
    EXPECT_LT(std::min(std::abs(tempo - 50.0), std::abs(tempo - 60.0)), 1.5) << tempo;
    const auto meldungen = zustand.at("messages").dump();
    EXPECT_NE(meldungen.find("Video erfolgreich analysiert"), std::string::npos) << meldungen;
    CRuvData data;
    ASSERT_TRUE(casefile::LoadCase(fall, data));
    EXPECT_EQ(data.Video().datei, "road.mp4");
    double zeit = 0.0;
    for (const CWegZeitSpalte& spalte : data.WZRechDat(0).spalten)
        zeit += spalte.IsUsed() ? spalte.zeit : 0.0;
    EXPECT_NEAR(zeit, 0.6, 0.041); // the rows within the range
    // It opens as it was left, here without the network.
    const test::Output wieder = test::RunCli({"mask", "494", "--case", fall, "state"});
    ASSERT_EQ(wieder.exit, 0) << wieder.err;
    const auto danach = test::JsonLines(wieder.out).front().at("record");
    for (const char* feld : {"ids", "zeit", "geschwindigkeit", "unsicherheit", "ausgleich", "mittel", "faktor"})
        EXPECT_EQ(danach.at(feld), record.at(feld)) << feld;
}

} // namespace
