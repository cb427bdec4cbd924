// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The video analysis worked as a user does: a video made here, points and vehicles clicked where a camera above a road
// sees them.
#pragma once

#include "host/Charts.h"
#include "masks/video/CVideoDlg.h"
#include "masks/video/VideoBindungen.h"
#include "res/video.h"
#include "tests/support/MaskFixture.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/vision/RoadCamera.h"
#include "tests/vision/video/VehicleVideo.h"

#include <cmath>
#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace test
{

inline constexpr int kBilder = 40;
inline constexpr double kTakt = 12800.0; // 1/s
inline constexpr RoadCamera kKamera{640, 360, 500.0, 6.0, 12.0};

inline const std::vector<RoadVehicle> kFahrzeuge{{{1, 0, 0}, -1.75, 52.0, -50.0 / 3.6},
                                                 {{0, 1, 0}, 1.75, 18.0, 60.0 / 3.6}};

/// A network beside the program, as long as this lives.
struct Netz {
    Netz()
    {
        std::filesystem::create_directories(datei.parent_path());
        std::filesystem::copy_file(std::string(TAVELIN_SOURCE_DIR) + "/tests/data/vision/detector.onnx", datei,
                                   std::filesystem::copy_options::overwrite_existing);
    }
    ~Netz() { std::filesystem::remove_all(datei.parent_path()); }
    const std::filesystem::path datei = *DetectorModelPath();
};

/// 30 to 55 ms apart and no pattern.
inline std::vector<std::int64_t> Zeiten(std::int64_t nach = 0)
{
    std::vector<std::int64_t> zeiten{nach};
    for (int i = 1; i < kBilder; ++i)
        zeiten.push_back(zeiten.back() + 384 + (i * 97) % 320);
    return zeiten;
}

/// The two vehicles at the time of each picture.
inline std::function<void(AVFrame&, int)> DrawVehicles(const RoadCamera& kamera, std::function<double(int)> sekunden)
{
    return [kamera, sekunden = std::move(sekunden)](AVFrame& frame, int nummer) {
        std::vector<ColouredBox> kaesten;
        for (const RoadVehicle& fahrzeug : kFahrzeuge)
            kaesten.push_back({fahrzeug.At(sekunden(nummer), kamera), fahrzeug.colour});
        DrawBoxes(frame, kaesten);
    };
}

class VideoMaskFixture : public MaskTest
{
  protected:
    using Window = framework::Window;

    std::string Video(const std::string& name, int keyDistance = 12)
    {
        VideoPlan plan;
        plan.width = kKamera.width;
        plan.height = kKamera.height;
        plan.times = Zeiten();
        plan.keyDistance = keyDistance;
        WriteVideo(folder.File(name), plan);
        return folder.File(name);
    }
    Window& Oeffne(const std::string& pfad)
    {
        Window& maske = OpenMask(494);
        Waehle(maske, pfad);
        return maske;
    }
    void Waehle(Window& maske, const std::string& pfad)
    {
        front.files = {pfad};
        Press(maske, IDC_IMPORT_WAEHLEN);
    }
    void Schliesse(Window& maske)
    {
        framework::CloseDialog(maske);
        thread.DispatchPending();
    }
    static CVideoDlg& Dialog(Window& maske) { return *static_cast<CVideoDlg*>(maske.object); }
    static CVideoDat& Daten(Window& maske) { return Dialog(maske).Daten(); }
    /// The field shows the frame pixel by pixel.
    void Maus(Window& maske, CMouseEvent::Kind art, VisionPoint wo)
    {
        CMouseEvent ereignis{art, MouseButton::left, 0, {wo.x, wo.y}, 640.0, 360.0};
        framework::Mouse(Control(maske, IDC_VIDEO_BILD), ereignis);
        thread.DispatchPending();
    }
    void Klicke(Window& maske, VisionPoint wo)
    {
        Maus(maske, CMouseEvent::Kind::press, wo);
        Maus(maske, CMouseEvent::Kind::release, wo);
    }
    void Ziehe(Window& maske, VisionPoint von, VisionPoint nach)
    {
        Maus(maske, CMouseEvent::Kind::press, von);
        Maus(maske, CMouseEvent::Kind::move, {von.x + 5.0, von.y});
        Maus(maske, CMouseEvent::Kind::move, nach);
        Maus(maske, CMouseEvent::Kind::release, nach);
    }
    void Kalibriere(Window& maske, const RoadCamera& kamera = kKamera)
    {
        for (const auto& [x, y] : kLane)
            Klicke(maske, kamera.See(x, y));
        for (const int breite : {IDC_VIDEO_ABSTAND_12, IDC_VIDEO_ABSTAND_43})
            Enter(maske, static_cast<UINT>(breite), "7");
        for (const int laenge : {IDC_VIDEO_ABSTAND_24, IDC_VIDEO_ABSTAND_31})
            Enter(maske, static_cast<UINT>(laenge), "25");
    }
    /// A vehicle at `v0` km/h that brakes with `a` m/s², clicked in every frame from the one shown on.
    void Verfolge(Window& maske, double v0, int bilder = kBilder - 1, double a = 0.0, double z = 0.0,
                  const RoadCamera& kamera = kKamera)
    {
        const auto zeiten = Zeiten();
        for (int i = 0; i < bilder; ++i) {
            const double t = static_cast<double>(zeiten[static_cast<std::size_t>(i)]) / kTakt;
            Klicke(maske, kamera.See(-1.0, 15.0 + v0 / 3.6 * t - a / 2.0 * t * t, z));
        }
    }
    std::string Status(Window& maske) { return Text(maske, IDC_VIDEO_STATUS); }
    /// Two vehicles as the network sees them, and a field in which the frames are pixel by pixel.
    Window& OeffneFahrzeuge()
    {
        VideoPlan plan;
        plan.width = kKamera.width;
        plan.height = kKamera.height;
        plan.times = Zeiten();
        plan.draw = DrawVehicles(kKamera, Sekunden);
        WriteVideo(folder.File("fahrzeuge.mp4"), plan);
        Window& maske = Oeffne(folder.File("fahrzeuge.mp4"));
        Kalibriere(maske);
        return maske;
    }
    static double Sekunden(int bild) { return static_cast<double>(Zeiten()[static_cast<std::size_t>(bild)]) / kTakt; }
    void GeheZu(Window& maske, int bild) { Enter(maske, IDC_VIDEO_ZEIT, Videozeit(Sekunden(bild))); }
    void Spiele(Window& maske, int bilder)
    {
        Press(maske, IDC_VIDEO_PLAY);
        for (int i = 0; i < bilder; ++i)
            thread.FireTimer(maske.handle, 1);
    }
    /// The frames of an ID are these, without a gap.
    static void ErwarteBilder(Window& maske, int id, int von, int bis)
    {
        ASSERT_TRUE(Daten(maske).Spuren().contains(id)) << id;
        const auto& eintraege = Daten(maske).Spuren().at(id).eintraege;
        ASSERT_EQ(eintraege.size(), static_cast<std::size_t>(bis - von + 1)) << id;
        for (int bild = von; bild <= bis; ++bild)
            EXPECT_EQ(eintraege[static_cast<std::size_t>(bild - von)].punkt.frame, bild) << id;
    }
    static std::string Bericht(Window& maske)
    {
        std::string text;
        for (const auto& zeile : Control(maske, IDC_VIDEO_BERICHT).grid->rows)
            text += zeile.front() + '\n';
        return text;
    }
    bool ImFall(const std::string& name) { return data.MaskenWerte(494).contains(name); }
    static chart::Chart& Diagramm(Window& maske)
    {
        return dynamic_cast<chart::Chart&>(
            *static_cast<CChartCtrl*>(Control(maske, IDC_IMPORT_DIAGRAMM).object)->Client());
    }
    /// All that the record says, as text.
    static std::string Zustand(Window& maske)
    {
        std::string text;
        for (const RecordField& feld : Dialog(maske).DescribeRecord()) {
            text += std::string(feld.name) + ':';
            std::visit(
                [&](const auto* werte) {
                    for (std::size_t i = 0; i < feld.count; ++i)
                        text += ' ' + std::to_string(werte[i]);
                },
                feld.value);
            text += '\n';
        }
        return text;
    }

    TemporaryFolder folder;
};

} // namespace test
