// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Scripts over every mask that is built: two bytes are one action on one of the mask's controls. Whatever the script
// did, the case can be saved, reads back as it is, and holds no not-a-number.
#include "casefile/CaseFile.h"
#include "cli/CaseInput.h"
#include "cli/Session.h"
#include "frame/MaskTable.h"
#include "host/Assert.h"
#include "host/RuvCfg.h"

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

namespace
{

using namespace cli;
using framework::Kind;

struct Control {
    UINT id;
    Kind kind;
};

/// The controls of a mask with its pages that can be worked when it opens.
const std::vector<Control>& ControlsOf(UINT mask)
{
    static std::map<UINT, std::vector<Control>> known;
    std::vector<Control>& controls = known[mask];
    if (controls.empty()) {
        Session session(ExampleCase());
        RUV_ASSERT(!session.Run(mask, {}));
        for (const framework::Window* dialog : MaskFamily(*session.Mask()))
            for (const auto& child : dialog->children)
                if (child->HasId() && child->kind != Kind::label && child->enabled && !child->readOnly)
                    controls.push_back({child->id, child->kind});
    }
    return controls;
}

constexpr const char* kTexts[] = {"0",   "-0",    "1",    "-1",  "0,8",  "7,5",    "50",   "100",   "1000",
                                  "1e9", "1e308", "1e-9", "nan", "-1e9", "5e-324", "12,5", "9,999", "",
                                  "x",   "360",   "3,6",  "89",  "90",   "-90",    "20",   "30"};
constexpr int kButtons[] = {6, 7, 1, 2};

Action ActionOf(const Control& control, std::uint8_t what)
{
    switch (control.kind) {
    case Kind::edit:
        if (what >= 240)
            return StepAction{control.id, what % 2 == 0 ? 1 : -1};
        return EnterAction{control.id, kTexts[what % std::size(kTexts)]};
    case Kind::combo:
    case Kind::list:
        return SelectAction{control.id, what % 20, what % 20, false};
    case Kind::trackbar:
        return EnterAction{control.id, std::to_string(what)};
    case Kind::grid:
        return CellAction{control.id, what % 4, what / 4 % 4, kTexts[what % std::size(kTexts)]};
    case Kind::field:
    case Kind::chart: {
        const CDPoint point{what % 16 * 20.0, what / 16 * 12.0};
        if (what % 3 == 0)
            return DragAction{control.id, point, {what * 1.0, what * 0.5}};
        return ClickAction{control.id, point};
    }
    default:
        return PressAction{control.id};
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    constexpr std::size_t kMostActions = 100;
    if (size < 2)
        return 0;
    std::vector<UINT> masks;
    for (const MaskEntry& mask : MaskTable())
        if (mask.create != nullptr)
            masks.push_back(mask.number);
    const UINT mask = masks[bytes[0] % masks.size()];
    RuvCfg = CRuvCfg();
    RuvCfg.transferData = bytes[1] % 2 == 0;
    const std::vector<Control>& controls = ControlsOf(mask);

    std::vector<Action> actions;
    for (std::size_t i = 2; i + 1 < size && actions.size() < kMostActions; i += 2) {
        actions.push_back(AnswerAction{1052, kButtons[bytes[i + 1] % std::size(kButtons)]});
        if (bytes[i] == 255)
            actions.push_back(HostAction{static_cast<HostAction::Change>(bytes[i + 1] % 3), bytes[i + 1] % 16U});
        else
            actions.push_back(ActionOf(controls[bytes[i] % controls.size()], bytes[i + 1]));
    }
    // An action that cannot be done, on a control that is disabled by now, ends the script.
    Session session(ExampleCase());
    static_cast<void>(session.Run(mask, actions));

    std::string saved;
    const casefile::CaseResult written = casefile::CaseToJson(session.Case(), saved);
    RUV_ASSERT(written);
    CRuvData reopened;
    RUV_ASSERT(casefile::CaseFromJson(saved, reopened));
    std::string again;
    RUV_ASSERT(casefile::CaseToJson(reopened, again));
    RUV_ASSERT(again == saved);
    static_cast<void>(session.State());
    return 0;
}
