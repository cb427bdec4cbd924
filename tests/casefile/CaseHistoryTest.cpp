// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "casefile/CaseHistory.h"

#include "tests/support/MaskFixture.h"
#include "tests/support/Rounds.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <limits>
#include <random>

namespace
{

using namespace base;
using namespace casefile;

std::string FileOf(const CRuvData& data)
{
    std::string text;
    EXPECT_TRUE(CaseToJson(data, text));
    return text;
}

TEST(TextDiff, TurnsEachTextIntoTheOther)
{
    std::mt19937 random(4);
    const auto randomText = [&] {
        std::string text;
        const auto lines = random() % 12;
        for (std::size_t i = 0; i < lines; ++i)
            text += std::string(1, static_cast<char>('a' + random() % 3)) + std::string(random() % 3, 'x') + "\n";
        if (random() % 4 == 0)
            text += "no line break";
        return text;
    };
    for (int run = 0; run < 5000; ++run) {
        const std::string a = randomText();
        const std::string b = random() % 8 == 0 ? a : randomText();
        const TextDiff diff(a, b);
        ASSERT_EQ(diff.Forward(a), b);
        ASSERT_EQ(diff.Backward(b), a);
        ASSERT_EQ(diff.IsEmpty(), a == b);
    }
    std::string numbers;
    std::string others;
    for (int i = 0; i < 3000; ++i) {
        numbers += std::to_string(i) + "\n";
        others += std::to_string(i % 3 == 0 ? i + 1 : i) + "\n"; // beyond the shortest edit's limit
    }
    const TextDiff many(numbers, others);
    EXPECT_EQ(many.Forward(numbers), others);
    EXPECT_EQ(many.Backward(others), numbers);
}

TEST(TextDiff, TakesRoomForWhatDiffers)
{
    std::string before;
    for (int i = 0; i < 20'000; ++i)
        before += "line " + std::to_string(i) + "\n";
    std::string after = before;
    after.replace(after.find("line 3\n"), 6, "LINE 3");
    after.insert(after.find("line 19000\n"), "new\n");
    after.erase(after.find("line 10000\n"), 11);
    const TextDiff diff(before, after);
    EXPECT_EQ(diff.Forward(before), after);
    EXPECT_LT(diff.Size(), 600U);
}

/// One thing a user may do to a case, which stays of a bounded size.
void RandomEdit(CRuvData& data, std::mt19937& random)
{
    const auto vehicle = random() % 4 * 5;
    const double number = std::uniform_real_distribution<double>(-50.0, 50.0)(random);
    CWegZeitRechDat& phases = data.WZRechDat(vehicle);
    const auto column = 3 + random() % 6;
    CWegZeitSpalte& phase = phases.spalten[column];
    switch (random() % 10) {
    case 0:
        data.KfzDat(vehicle) =
            TypicalCar("Pkw " + std::to_string(random() % 100), static_cast<COLORREF>(random() & 0xFFFFFFU));
        break;
    case 1:
        data.KfzDat(vehicle).mass = std::abs(number);
        break;
    case 2:
        if (std::string& name = data.KfzDat(vehicle).name; name.size() > 40)
            name.clear();
        else
            name += "ö\"";
        break;
    case 3:
        phase.art = PhasenArt::braking;
        phase.verz = number;
        phase.zeit = 1.0;
        phases.Berechnung();
        break;
    case 4:
        if (!phases.spalten[12].IsUsed())
            phases.Einfuegen(column);
        break;
    case 5:
        phases.Entfernen(column);
        break;
    case 6:
        phase.bahn.assign(random() % 40, {number, -number});
        phase.art = PhasenArt::turning;
        break;
    case 7:
        data.MaskenWerte(static_cast<UINT>(400 + random() % 3))["wert" + std::to_string(random() % 4)] = {number, 1.0};
        break;
    case 8:
        data.UPa(vehicle).modified = !data.UPa(vehicle).modified;
        break;
    default:
        data.Title() = "Fall " + std::to_string(random() % 1000);
    }
}

constexpr std::size_t kSteps = test::Rounds(1000);

TEST(CaseHistory, RandomEditsUndoneAndRedoneGiveTheSameFiles)
{
    std::mt19937 random(17);
    CRuvData data;
    CaseHistory history(data);
    std::vector<std::string> files{FileOf(data)};
    std::vector<std::uint64_t> states{history.State()};
    while (files.size() <= kSteps) {
        RandomEdit(data, random);
        const std::string file = FileOf(data);
        ASSERT_EQ(history.Commit("Schritt " + std::to_string(files.size())), file != files.back());
        if (file == files.back())
            continue;
        files.push_back(file);
        states.push_back(history.State());
    }
    ASSERT_EQ(history.StepCount(), kSteps);

    for (std::size_t i = kSteps; i > 0; --i) {
        ASSERT_EQ(history.UndoLabel(), "Schritt " + std::to_string(i));
        ASSERT_TRUE(history.Undo());
        ASSERT_EQ(FileOf(data), files[i - 1]);
        ASSERT_EQ(history.State(), states[i - 1]);
    }
    EXPECT_FALSE(history.Undo());
    for (std::size_t i = 1; i <= kSteps; ++i) {
        ASSERT_EQ(history.RedoLabel(), "Schritt " + std::to_string(i));
        ASSERT_TRUE(history.Redo());
        ASSERT_EQ(FileOf(data), files[i]);
    }
    EXPECT_FALSE(history.Redo());
}

/// Steps of the walk below; more with RUV_UNDO_STEPS.
std::size_t WalkSteps()
{
    const char* steps = std::getenv("RUV_UNDO_STEPS");
    return steps != nullptr ? std::stoul(steps) : kSteps;
}

TEST(CaseHistory, AnyWalkOfEditsUndosRedosAndSavesShowsTheSameFiles)
{
    const test::TemporaryFolder folder;
    const std::string path = folder.File("fall.json");
    std::mt19937 random(23);
    CRuvData data;
    CaseHistory history(data);
    const auto digest = [](const std::string& text) { return std::hash<std::string>{}(text); };
    std::vector<std::size_t> model{digest(FileOf(data))}; // the files of all states from the first to the last redoable
    std::size_t now = 0;
    int undos = 0, redos = 0, saves = 0;
    for (std::size_t step = 0; step < WalkSteps(); ++step) {
        const auto choice = random() % 16;
        if (choice < 6) {
            RandomEdit(data, random);
            const std::size_t file = digest(FileOf(data));
            ASSERT_EQ(history.Commit("x"), file != model[now]);
            if (file != model[now]) {
                model.resize(++now);
                model.push_back(file);
            }
        } else if (choice < 11) {
            ASSERT_EQ(history.Undo(), now > 0);
            now -= now > 0;
            ++undos;
        } else if (choice < 15) {
            ASSERT_EQ(history.Redo(), now + 1 < model.size());
            now += now + 1 < model.size();
            ++redos;
        } else {
            CRuvData reopened;
            ASSERT_TRUE(SaveCase(path, data));
            ASSERT_TRUE(LoadCase(path, reopened));
            ASSERT_EQ(digest(FileOf(reopened)), model[now]);
            ++saves;
        }
        ASSERT_EQ(digest(history.Text()), model[now]) << "step " << step;
        if (step % 8 == 0) {
            ASSERT_EQ(digest(FileOf(data)), model[now]) << "step " << step;
        }
    }
    EXPECT_GT(std::min({undos, redos, saves}), 5);
}

TEST(CaseHistory, TakesRoomForTheChangesNotForTheCase)
{
    CRuvData data;
    for (std::size_t vehicle = 0; vehicle < CRuvData::kFahrzeuge; ++vehicle) {
        data.KfzDat(vehicle) = TypicalCar("Pkw", 0);
        for (std::size_t column = 3; column < 8; ++column) {
            data.WZRechDat(vehicle).spalten[column].art = PhasenArt::turning;
            data.WZRechDat(vehicle).spalten[column].bahn.assign(1000, {123.456, -654.321});
        }
    }
    CaseHistory history(data);
    ASSERT_GT(history.Text().size(), 1'000'000U);
    for (int i = 0; i < 50; ++i) {
        data.WZRechDat(0).spalten[3].verz = i + 0.5; // in front of a long trajectory
        data.KfzDat(15).mass = 1000.0 + i;           // and at the other end of the file
        ASSERT_TRUE(history.Commit("x"));
    }
    EXPECT_LT(history.Size() / 50, 1000U) << "bytes for each step";
}

TEST(CaseHistory, ANewStepForgetsWhatWasUndone)
{
    CRuvData data;
    CaseHistory history(data);
    EXPECT_FALSE(history.CanUndo());
    EXPECT_EQ(history.UndoLabel(), "");
    data.Title() = "a";
    history.Commit("Titel");
    const auto saved = history.State();
    data.Title() = "b";
    EXPECT_TRUE(history.Undo()) << "what was not committed is a step of its own";
    EXPECT_EQ(data.Title(), "a");
    EXPECT_EQ(history.State(), saved);
    data.Title() = "c";
    EXPECT_TRUE(history.Commit("Titel"));
    EXPECT_FALSE(history.CanRedo());
    EXPECT_NE(history.State(), saved);
    history.Reset();
    EXPECT_FALSE(history.CanUndo());
    EXPECT_EQ(data.Title(), "c");

    data.KfzDat(0).mass = std::numeric_limits<double>::quiet_NaN();
    data.KfzDat(0).type = CKfzDaten::Type::car;
    EXPECT_FALSE(history.Commit("kaputt"));
    EXPECT_FALSE(history.Problem());
    data.KfzDat(0).mass = 1.0;
    EXPECT_TRUE(history.Commit("heil"));
    EXPECT_TRUE(history.Problem());
}

/// Notes what it is told, and answers changed phases by writing into the case as a mask with "Daten übertragen" does.
class WritingMask : public CMDIRechDialog
{
  public:
    WritingMask(CRuvData& data, CWnd* parent) : CMDIRechDialog(400, parent, data, nullptr, nullptr)
    {
        m_isCalculationMask = 1;
    }
    void GlobalGeoDatChanged(UINT_PTR vehicle) override { told.push_back("geometry " + std::to_string(vehicle)); }
    void GlobalUPaChanged(UINT_PTR vehicle) override { told.push_back("parameters " + std::to_string(vehicle)); }
    void GlobalWZDatChanged(UINT_PTR vehicle) override
    {
        told.push_back("phases " + std::to_string(vehicle));
        m_data.WZRechDat(vehicle).spalten[9].art = PhasenArt::rolling;
    }
    std::vector<std::string> told;
};

class CaseHistoryMasks : public test::MaskTest
{
};

TEST_F(CaseHistoryMasks, OpenMasksAreToldWhatChangedAndCannotChangeTheStep)
{
    CaseHistory history(data);
    auto* mask = new WritingMask(data, &mainWindow);
    ASSERT_TRUE(mask->DoModeless(&mainWindow));
    const std::string before = FileOf(data);
    CWegZeitRechDat& phases = data.WZRechDat(2); // as a mask holds it
    const CKfzDaten& vehicle = data.KfzDat(1);
    phases.spalten[3].art = PhasenArt::braking;
    data.KfzDat(1).mass = 1234.0;
    data.UPa(0).modified = true;
    history.Commit("drei Änderungen");
    const std::string after = FileOf(data);

    history.Undo();
    EXPECT_EQ(mask->told, (std::vector<std::string>{"parameters 0", "geometry 1", "phases 2"}));
    EXPECT_EQ(FileOf(data), before);
    EXPECT_EQ(phases.spalten[3].art, PhasenArt::unused);
    EXPECT_EQ(vehicle.mass, 1500.0);
    history.Redo();
    EXPECT_EQ(FileOf(data), after);
    EXPECT_FALSE(history.Commit("nichts"));
}

} // namespace
