// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What mask 487 gives to the case, the scene and the report, and takes from them.
#include "casefile/CaseFile.h"
#include "casefile/CaseHistory.h"
#include "host/CDC.h"
#include "krn/Placing.h"
#include "report/Protocol.h"
#include "tests/masks/SchrankenMaske.h"
#include "tests/support/Primitives.h"

#include <algorithm>
#include <cmath>

namespace
{

using framework::Window;

constexpr double kPi = std::numbers::pi;

class SchrankenFallTest : public test::SchrankenMaske
{
};

TEST_F(SchrankenFallTest, ChoosingASpeedHandsItToTheVehicleAtOnce)
{
    Open();
    PlaceAll();
    Press(Page(5), IDC_SCHR_EXPORT_MAXIMUM); // nothing to hand over yet
    EXPECT_FALSE(data.WZDat(0).spalten[3].IsUsed());
    EXPECT_FALSE(Control(Page(5), IDC_SCHR_EXPORT).enabled);
    Compute();
    Press(Page(5), IDC_SCHR_EXPORT_MINIMUM);
    const CWegZeitSpalte& first = data.WZDat(0).spalten[3];
    EXPECT_EQ(first.art, PhasenArt::noTime);
    EXPECT_EQ(first.vEnd, Value(Page(5), IDC_SCHR_EXPORTTEMPO_MINIMUM));
    EXPECT_EQ(first.vAnf, first.vEnd);
    Press(Page(5), IDC_SCHR_EXPORT_MITTEL);
    EXPECT_EQ(first.vEnd, Value(Page(5), IDC_SCHR_EXPORTTEMPO_MITTEL));
    EXPECT_EQ(first.vAnf, first.vEnd);
    EXPECT_FALSE(data.WZDat(1).spalten[2].IsUsed());
    EXPECT_EQ(TransferNews(), (std::vector<std::string>{"main 0", "main 0"}));

    // A phase that is there keeps its time and deceleration and ends at the speed.
    CWegZeitRechDat phases;
    phases.spalten[3].art = PhasenArt::braking;
    phases.spalten[3].vEnd = 20.0;
    phases.spalten[3].verz = 5.0;
    phases.spalten[3].zeit = 1.0;
    phases.Berechnung();
    phases.Uebertragen(data, 0, nullptr, 0);
    Press(Page(5), IDC_SCHR_EXPORT_MAXIMUM);
    EXPECT_EQ(first.vEnd, Value(Page(5), IDC_SCHR_EXPORTTEMPO_MAXIMUM));
    EXPECT_NEAR(first.vAnf, first.vEnd + 18.0, 1e-9);
    EXPECT_EQ(first.zeit, 1.0);
}

TEST_F(SchrankenFallTest, ExportWritesTheCollisionOfPersonAndBicycle)
{
    for (const double turn : {0.0, 70.0, -160.0}) {
        for (const bool fromRight : {true, false}) {
            for (std::size_t i = 0; i < 3; ++i) {
                data.WZRechDat(i) = {};
                data.UPa(i) = {};
            }
            data.MaskenWerte(487).clear();
            front.broadcast.clear();
            CWegZeitSpalte& walking = data.WZRechDat(1).spalten[3];
            walking.art = PhasenArt::constantSpeed;
            walking.vEnd = walking.vAnf = 5.0;
            walking.zeit = 2.0;
            Open();
            PlaceAll(turn);
            Choose(Page(1), IDC_SCHR_FAHRRAD, 1); // the person is not offered
            Place(3, {800, 300}, 40.0, 60, 180);
            Press(Page(2), IDC_SCHR_KUEHNEL_GLOBAL);
            Compute();
            Press(Page(5), fromRight ? IDC_SCHR_VON_RECHTS : IDC_SCHR_VON_LINKS);
            Press(Page(5), IDC_SCHR_EXPORT_MITTEL);
            front.messages.clear();
            Press(Page(5), IDC_SCHR_EXPORT);
            EXPECT_TRUE(front.messages.empty());

            const double heading = turn * kPi / 180.0;
            const CDPoint forward{std::cos(heading), std::sin(heading)};
            const CDPoint left{-forward.y, forward.x};
            const auto along = [&](const CDPoint& p) { return p.x * forward.x + p.y * forward.y; };
            const auto across = [&](const CDPoint& p) { return p.x * left.x + p.y * left.y; };
            const CWegZeitDat& person = data.WZDat(1);
            const CWegZeitSpalte& hit = person.spalten[2];
            const double v = Value(Page(5), IDC_SCHR_EXPORTTEMPO_MITTEL);
            EXPECT_EQ(hit.art, PhasenArt::noTime);
            EXPECT_NEAR(hit.vEnd, 0.8 * v, 1e-12);
            EXPECT_EQ(hit.vAnf, 5.0) << "what the person's phase before it ends with";
            EXPECT_NEAR(hit.endGier, heading, 1e-12);
            ASSERT_EQ(hit.bahn.size(), 4U);
            // On the axis, within the area, and reached from the given side in steps of 20, 10, 5 and 0 cm.
            EXPECT_NEAR(across(hit.bahn[3]), 0.0, 1e-6);
            EXPECT_GE(-along(hit.bahn[3]) / 100.0, Value(*mask, IDC_SCHR_WEG_VON) - 1e-9);
            EXPECT_LE(-along(hit.bahn[3]) / 100.0, Value(*mask, IDC_SCHR_WEG_BIS) + 1e-9);
            const double side = fromRight ? -1.0 : 1.0;
            for (const auto& [index, cm] : {std::pair{0U, 20.0}, {1U, 10.0}, {2U, 5.0}}) {
                EXPECT_NEAR(across(hit.bahn[index]), side * cm, 1e-6);
                EXPECT_NEAR(along(hit.bahn[index]), along(hit.bahn[3]), 1e-6);
            }
            // The rest position lies a fifth of the way back from the person's centre.
            CDPoint centre{400, 0};
            centre.Rotate(heading, {});
            const CDPoint expected = centre - (centre - hit.bahn[3]) * 0.2;
            EXPECT_NEAR(person.endPunkt.x, expected.x, 1e-6);
            EXPECT_NEAR(person.endPunkt.y, expected.y, 1e-6);
            EXPECT_NEAR(person.endRichtung, heading + kPi / 2.0, 1e-12);
            EXPECT_EQ(person.bahnModus, 5);

            const CWegZeitDat& bicycle = data.WZDat(2);
            EXPECT_EQ(bicycle.spalten[2].bahn, hit.bahn);
            EXPECT_NEAR(bicycle.endRichtung, 40.0 * kPi / 180.0, 1e-12);
            // The vehicle stands where its front meets the person, and drives along its axis with the speed it had.
            const CWegZeitDat& vehicle = data.WZDat(0);
            const CWegZeitSpalte& collision = vehicle.spalten[2];
            ASSERT_EQ(collision.bahn.size(), 4U);
            for (const auto& [index, cm] : {std::pair{0U, 20.0}, {1U, 10.0}, {2U, 5.0}, {3U, 0.0}}) {
                EXPECT_NEAR(across(collision.bahn[index]), 0.0, 1e-6);
                EXPECT_NEAR(along(collision.bahn[index]), along(hit.bahn[3]) - 220.0 - cm, 1e-6);
            }
            EXPECT_EQ(collision.art, PhasenArt::noTime);
            EXPECT_EQ(collision.vAnf, v);
            EXPECT_EQ(collision.vAnf, vehicle.spalten[3].vEnd);
            EXPECT_NEAR(collision.endGier, heading, 1e-12);
            EXPECT_EQ(vehicle.bahnModus, 5);
            EXPECT_EQ(vehicle.endPunkt, CDPoint{}) << "where it came to rest is the scene's";

            for (const std::size_t index : {0U, 1U, 2U}) {
                EXPECT_EQ(data.UPa(index).updateFlags, 1ULL << 28 | 1ULL << 29 | 1ULL << 33 | 1ULL << 34);
                for (const UINT message : {1440U, 1341U})
                    EXPECT_TRUE(std::any_of(front.broadcast.begin(), front.broadcast.end(),
                                            [&](const MSG& m) { return m.message == message && m.wParam == index; }));
            }
            EXPECT_EQ(data.WZDat(0).spalten[3].vEnd, v);
            EXPECT_EQ(Hint(IDC_SCHR_EXPORT_HINWEIS), "Geschwindigkeit und Lage wurden in den Fall übertragen.");

            Press(Page(2), IDC_SCHR_KUEHNEL_GLOBAL);
            Press(Page(5), IDC_SCHR_EXPORT); // a hint, no refusal
            ASSERT_EQ(front.messages.size(), 1U);
            EXPECT_EQ(front.messages[0].text, "Bitte wählen Sie mindestens eine Theorie zu den Schranken aus.");
            EXPECT_NE(data.WZDat(0).spalten[3].vEnd, v);
            framework::CloseDialog(*mask);
            thread.DispatchPending();
        }
    }
}

TEST_F(SchrankenFallTest, RecordComesBackWithTheCase)
{
    Open();
    PlaceAll(25.0);
    Press(Page(2), IDC_SCHR_RAU);
    Enter(Page(2), IDC_SCHR_RAU_TOLERANZ, "4");
    Compute();
    const double high = High();
    Press(*mask, IDC_MASKE_OK);
    EXPECT_EQ(Dialog(487), nullptr);
    EXPECT_EQ(Dialog(30022), nullptr) << "pages go with the mask";
    Open();
    EXPECT_EQ(High(), high);
    EXPECT_EQ(Control(Page(2), IDC_SCHR_RAU).check, 1);
    EXPECT_EQ(Control(Page(1), IDC_SCHR_PLATZ_PERSON).check, 1);
    // A placement is kept at once, without OK.
    Place(4, {-900, 0}, 0, 300, 100);
    framework::CloseDialog(*mask);
    thread.DispatchPending();
    Open();
    EXPECT_EQ(Control(Page(1), IDC_SCHR_PLATZ_GESAMTFELD).check, 1);
}

TEST_F(SchrankenFallTest, ReportHasTheLargeDiagramAndNoPrompts)
{
    Open();
    PlaceAll();
    Compute();
    const report::Protocol protocol = report::MakeProtocol(*mask, {});
    ASSERT_EQ(protocol.pictures.size(), 1U);
    const auto words = test::Words(protocol.pictures[0].drawing);
    EXPECT_EQ(std::count(words.begin(), words.end(), "gemeinsamer Bereich"), 1) << "its legend";
    EXPECT_TRUE(protocol.notes.empty()) << protocol.notes.front();
    Place(1, {-1801, 0}, 0, 1, 1);
    const auto notes = report::MakeProtocol(*mask, {}).notes;
    EXPECT_EQ(std::count(notes.begin(), notes.end(), "Kollisionsort schmaler als der Rechenabstand 0,14 m."), 1);
}

TEST_F(SchrankenFallTest, UndoneStepComesBackIntoTheOpenMask)
{
    Open();
    PlaceAll();
    Compute();
    const double high = High();
    std::string before;
    ASSERT_TRUE(casefile::CaseToJson(data, before));
    Place(1, {-2600, -100}, 0, 400, 200);
    EXPECT_GT(High(), high);
    CRuvData earlier;
    ASSERT_TRUE(casefile::CaseFromJson(before, earlier));
    casefile::ReplaceCaseAndTell(data, std::move(earlier));
    EXPECT_EQ(High(), high);
    CRuvData empty;
    casefile::NewExampleCase(empty);
    casefile::ReplaceCaseAndTell(data, std::move(empty));
    EXPECT_EQ(High(), 0.0);
    EXPECT_TRUE(krn::SceneObjects(data).empty());
    EXPECT_EQ(Text(Page(4), IDC_SCHR_KONTROLLE_ANSTOSS), "0,80") << "defaults where the case holds nothing";
}

TEST_F(SchrankenFallTest, ExampleCaseGivesWhatItsHelpPageSays)
{
    ASSERT_TRUE(casefile::LoadCase(TAVELIN_SOURCE_DIR "/examples/fussgaenger.json", data));
    Open();
    Press(*mask, IDC_RECHNEN);
    EXPECT_TRUE(front.messages.empty());
    // The upper end lies on Dettinger's upper curve, the lower one on the braking curve with a - Δa.
    const double window = std::sqrt(0.001);
    const double w = High() - 6.0;
    const double personAhead = 2.469602;
    EXPECT_NEAR(1.64e-5 * w * w * w + 0.00452 * w * w + 0.071 * w + 2.5 - personAhead, Value(*mask, IDC_SCHR_WEG_BIS),
                window + 1e-4);
    const double low = Value(*mask, IDC_SCHR_TEMPO_VON) / 3.6;
    EXPECT_NEAR(low * low / (2 * 6.5), Value(*mask, IDC_SCHR_WEG_VON), window + 1e-4);
    EXPECT_EQ(Text(*mask, IDC_SCHR_TEMPO_VON), "52,65");
    EXPECT_EQ(Text(*mask, IDC_SCHR_TEMPO_BIS), "57,87");
    EXPECT_EQ(Text(Page(4), IDC_SCHR_KOLLISIONSTEMPO), "54,83");
}

TEST_F(SchrankenFallTest, LargeDiagramIsOpenedOnceAndDrawnAfresh)
{
    Open();
    PlaceAll();
    Compute();
    Press(*mask, IDC_SCHR_GROSSES_DIAGRAMM);
    Press(*mask, IDC_SCHR_GROSSES_DIAGRAMM);
    EXPECT_EQ(std::count(front.events.begin(), front.events.end(), "appeared 30044"), 1);
    const Window& field = Control(*Dialog(30044), IDC_SCHR_GROSSES_ZEICHENFELD);
    ASSERT_TRUE(field.painter);
    const auto count = [&] {
        CDC dc(800, 500);
        field.painter(dc, {0, 0, 800, 500});
        return dc.Primitives().size();
    };
    const std::size_t before = count();
    Press(Page(2), IDC_SCHR_KUEHNEL_GLOBAL);
    EXPECT_GT(count(), before);
    framework::CloseDialog(*mask);
    EXPECT_EQ(Dialog(30044), nullptr);
}

TEST_F(SchrankenFallTest, TiedViewGetsTheObjects)
{
    struct View : CMvView {
        void ShowObjects(const std::vector<CPlacedObject>& objects) override { shown = objects; }
        std::vector<CPlacedObject> shown;
    } view;
    Open();
    auto* dialog = static_cast<CSchrankenverfahrenDlg*>(mask->object);
    dialog->SetMovieView(&view);
    PlaceAll();
    ASSERT_EQ(view.shown.size(), 3U);
    EXPECT_EQ(view.shown[0].name, "Fahrzeug");
    dialog->SetMovieView(nullptr);
    Press(Page(1), IDC_SCHR_PLATZ_PERSON);
    EXPECT_EQ(view.shown.size(), 3U);
}

} // namespace
