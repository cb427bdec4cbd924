// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What every mask that is built must have. A mask built later joins by its row in the table of masks.
#include "casefile/CaseFile.h"
#include "frame/MaskTable.h"
#include "framework/DialogPicture.h"
#include "krn/ControlMeaning.h"
#include "krn/MessageTable.h"
#include "report/HelpPages.h"
#include "report/ProtocolHtml.h"
#include "tests/support/MaskFixture.h"
#include "tests/support/RandomInput.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <locale>
#include <map>
#include <regex>
#include <set>
#include <sstream>

namespace
{

using framework::Kind;
using framework::Window;

class AllMasksTest : public test::MaskTest, public ::testing::WithParamInterface<UINT>
{
  protected:
    Window& mask = OpenMask(GetParam());

    /// Of the mask and its pages.
    std::vector<Window*> Controls(Window& of)
    {
        std::vector<Window*> dialogs = thread.Pages(of);
        dialogs.push_back(&of);
        std::vector<Window*> all;
        for (Window* dialog : dialogs)
            for (const auto& control : dialog->children)
                all.push_back(control.get());
        return all;
    }
    std::vector<Window*> Controls() { return Controls(mask); }
    RecordFields Record() { return static_cast<CMDIRechDialog*>(mask.object)->DescribeRecord(); }
};

std::vector<UINT> BuiltMasks()
{
    std::vector<UINT> numbers;
    for (const MaskEntry& entry : MaskTable())
        if (entry.create != nullptr)
            numbers.push_back(entry.number);
    return numbers;
}

TEST_P(AllMasksTest, HasItsHelpPageWithEveryHeading)
{
    const std::string page = report::HelpPage(GetParam());
    EXPECT_EQ(page.rfind("# " + std::to_string(GetParam()) + " ", 0), 0U);
    for (const char* heading : {"Zweck", "Felder", "Formeln", "Rechenbeispiel", "Grenzen"})
        EXPECT_NE(page.find("\n## " + std::string(heading) + "\n"), std::string::npos) << heading;
}

TEST_P(AllMasksTest, EveryControlHasItsOwnNumberAndAName)
{
    std::set<UINT> seen;
    for (const Window* control : Controls()) {
        if (control->HasId()) {
            EXPECT_TRUE(seen.insert(control->id).second) << control->id << " twice";
        }
        if (control->kind == Kind::label || control->kind == Kind::field || control->kind == Kind::group)
            continue;
        EXPECT_TRUE(control->HasId()) << framework::KindName(control->kind) << " " << control->text;
        EXPECT_FALSE(krn::LabelOf(*control).empty()) << control->id << " has no name";
    }
}

TEST_P(AllMasksTest, EveryFieldBelongsToTheRecord)
{
    std::set<const void*> fields;
    std::set<std::string> names;
    std::set<UINT> controls;
    for (const Window* control : Controls())
        controls.insert(control->id);
    for (const RecordField& field : Record()) {
        EXPECT_TRUE(names.insert(std::string(field.name)).second) << field.name << " twice";
        if (field.spec != nullptr) {
            for (const UINT control : field.spec->Controls()) {
                EXPECT_TRUE(controls.contains(control)) << field.name << " has no control " << control;
            }
        }
        std::visit(
            [&](const auto* values) {
                for (std::size_t i = 0; i < field.count; ++i)
                    fields.insert(values + i);
            },
            field.value);
    }
    for (const Window* control : Controls()) {
        const CBinding* binding = krn::BindingOf(*control);
        if (control->kind == Kind::edit && !control->readOnly) {
            EXPECT_NE(binding, nullptr) << "edit " << control->id << " is not bound";
        }
        if (binding != nullptr) {
            EXPECT_TRUE(fields.contains(binding->Field())) << control->id << " shows no field of the record";
        }
        const auto* real = dynamic_cast<const CEditDouble*>(binding);
        if (real == nullptr || binding->Spec() == nullptr)
            continue;
        EXPECT_LT(real->Minimum(), real->Maximum()) << control->id;
        EXPECT_GT(real->Step(), 0.0) << control->id;
        EXPECT_LE(real->Step(), 10.0) << control->id << ": nobody steps so far";
        // A unit that the unit system converts stands in a static of its own, or not at all.
        if (const Window* unit = control->parent->Child(krn::UnitLabelId(control->id))) {
            EXPECT_EQ(unit->text, binding->Spec()->unit.text) << control->id;
        } else if (real->Unit()) {
            const auto& all = control->parent->children;
            const auto self =
                std::find_if(all.begin(), all.end(), [&](const auto& one) { return one.get() == control; });
            EXPECT_FALSE(std::next(self) != all.end() && (*std::next(self))->text == binding->Spec()->unit.text)
                << control->id << ": its unit is converted and its label is not";
        }
    }
}

/// A number of a mask as tests/masks/Zahlenfelder.txt names it.
struct NumberField {
    double minimum = 0.0, maximum = 0.0;
    int decimals = 0;
    double step = 0.0;
    std::string unit, role;
    bool operator==(const NumberField&) const = default;
};

std::ostream& operator<<(std::ostream& out, const NumberField& f)
{
    return out << f.minimum << " " << f.maximum << " " << f.decimals << " " << f.step << " " << f.unit << " " << f.role;
}

std::map<UINT, NumberField> NumberFields(UINT wanted)
{
    const char* tree = std::getenv("TAVELIN_SOURCE_DIR");
    std::ifstream file((tree == nullptr ? std::string(TAVELIN_SOURCE_DIR) : tree) + "/tests/masks/Zahlenfelder.txt");
    std::map<UINT, NumberField> fields;
    UINT mask = 0;
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        words.imbue(std::locale::classic());
        if (line.starts_with("mask ")) {
            mask = static_cast<UINT>(std::stoul(line.substr(5)));
        } else if (UINT id = 0; mask == wanted && words >> id) {
            NumberField& f = fields[id];
            words >> f.minimum >> f.maximum >> f.decimals >> f.step >> f.unit >> f.role;
        }
    }
    return fields;
}

TEST_P(AllMasksTest, NumbersHaveTheirRangePrecisionAndUnit)
{
    std::map<UINT, NumberField> shown;
    for (const Window* control : Controls()) {
        const CBinding* binding = krn::BindingOf(*control);
        const std::string unit = krn::UnitOf(*control);
        NumberField field{.unit = unit.empty() ? "-" : unit, .role = krn::IsResult(*control) ? "result" : "input"};
        if (const auto* real = dynamic_cast<const CEditDouble*>(binding)) {
            field.minimum = real->Minimum();
            field.maximum = real->Maximum();
            field.decimals = real->Decimals();
            field.step = real->Step();
        } else if (const auto* whole = dynamic_cast<const CEditInt*>(binding)) {
            field.minimum = static_cast<double>(whole->Minimum());
            field.maximum = static_cast<double>(whole->Maximum());
            field.step = static_cast<double>(whole->Step());
        } else {
            continue;
        }
        shown[control->id] = field;
    }
    EXPECT_EQ(shown, NumberFields(GetParam())) << "tests/masks/Zahlenfelder.txt";
}

TEST_P(AllMasksTest, IsInReportAndPicture)
{
    report::ProtocolContext context;
    context.number = GetParam();
    context.helpPage = report::HelpPage(GetParam());
    const report::Protocol protocol = report::MakeProtocol(mask, context);
    EXPECT_FALSE(protocol.formulas.empty());
    const std::string html = report::ProtocolHtml(protocol, report::HtmlPictures::inlineSvg);
    EXPECT_NE(html.find(std::to_string(GetParam())), std::string::npos);
    EXPECT_EQ(html.find("(ohne Bezeichnung)"), std::string::npos);
    EXPECT_GT(framework::DrawDialog(mask, 2.0).Primitives().size(), 10U);
}

/// What a careless user does: types anything, steps, chooses, switches, calculates, clears. Mask and case hold numbers
/// only, what the case holds can be driven, and it is written and opens with the same content.
TEST_P(AllMasksTest, CarelessInputLeavesNumbersInMaskAndCase)
{
    // These show nothing where there is no result.
    const std::set<UINT> leavesOut{419, 469, 474, 486, 492, 493, 494};
    framework::CloseDialog(mask);
    for (std::uint64_t seed = 0; seed < 120; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        test::RandomInput random(seed);
        for (const UINT question : {1052U, 1342U, 1344U})
            front.answers[question] = random.Pick({fehlerJa, fehlerNein});
        RuvCfg.transferData = random.Number(3) > 0;
        Window& opened = OpenMask(GetParam());
        for (int action = 0; action < 25 && !thread.Dialogs().empty(); ++action) {
            std::vector<Window*> controls;
            for (Window* control : Controls(opened))
                if (control->kind != Kind::label && control->kind != Kind::group && !control->readOnly &&
                    control->id != IDOK && control->id != IDCANCEL && control->id != kOk)
                    controls.push_back(control);
            Window& control = *controls[static_cast<std::size_t>(random.Number(static_cast<int>(controls.size())))];
            if (opened.Child(kCalculate) != nullptr && random.Number(5) == 0)
                Press(opened, kCalculate);
            else if (control.kind == Kind::edit && random.Number(4) == 0)
                framework::Step(control, random.Pick({-1, 1}));
            else if (control.kind == Kind::edit)
                framework::EnterText(control, random.Text());
            else if (control.kind == Kind::combo || control.kind == Kind::list)
                framework::Select(control, random.Number(4));
            else
                framework::Click(control);
            thread.DispatchPending();
            if (!leavesOut.contains(GetParam())) {
                ASSERT_EQ(test::NotANumberIn(opened), "");
            }
        }
        if (opened.Child(kOk) != nullptr && random.Number(2) == 0)
            Press(opened, kOk);
        CloseAllDialogs();
        for (std::size_t vehicle = 0; vehicle < CRuvData::kFahrzeuge; ++vehicle)
            for (const CWegZeitSpalte& s : Phases(vehicle).spalten) {
                ASSERT_GE(s.zeit, 0.0);
                for (const double value : {s.vEnd, s.vAnf, s.verz, s.weg, s.sumZeit, s.sumWeg})
                    ASSERT_TRUE(std::isfinite(value));
            }
        std::string written;
        ASSERT_TRUE(casefile::CaseToJson(data, written));
        CRuvData again;
        ASSERT_TRUE(casefile::CaseFromJson(written, again));
        std::string rewritten;
        ASSERT_TRUE(casefile::CaseToJson(again, rewritten));
        EXPECT_EQ(rewritten, written);
    }
}

INSTANTIATE_TEST_SUITE_P(Masks, AllMasksTest, ::testing::ValuesIn(BuiltMasks()),
                         [](const auto& p) { return std::to_string(p.param); });

TEST(AllMessages, EveryNumberThatAMaskShowsHasAText)
{
    const char* folder = std::getenv("TAVELIN_SOURCE_DIR");
    const std::regex shown(R"((?:FehlerMeldung\(\s*[^,]+,\s*|return )(\d{4})\b)");
    int found = 0;
    for (const auto& entry :
         std::filesystem::recursive_directory_iterator(std::string(folder == nullptr ? "." : folder) + "/masks")) {
        if (entry.path().extension() != ".cpp")
            continue;
        std::stringstream source;
        source << std::ifstream(entry.path()).rdbuf();
        const std::string text = source.str();
        for (std::sregex_iterator it(text.begin(), text.end(), shown), end; it != end; ++it, ++found) {
            const UINT number = static_cast<UINT>(std::stoul((*it)[1]));
            const auto table = krn::MessageTable();
            EXPECT_TRUE(std::any_of(table.begin(), table.end(), [&](const auto& row) { return row.number == number; }))
                << number << " in " << entry.path().filename();
        }
    }
    EXPECT_GE(found, 4);
}

} // namespace
