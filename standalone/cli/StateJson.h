// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What a script gets to see of a mask.
#pragma once

#include "cli/JsonText.h"
#include "framework/Window.h"
#include "host/RecordField.h"

#include <string>
#include <vector>

namespace cli
{

class ScriptedFrontEnd;

/// A mask as it stands, or as it stood when its window went.
struct MaskImage {
    std::string title;
    std::string controls;  ///< JSON object
    std::string record;    ///< JSON object
    bool outdated = false; ///< the results do not belong to the inputs
};

/// The mask with its pages: the dialogs it opened that do not run modally.
std::vector<framework::Window*> MaskFamily(framework::Window& mask);
MaskImage ImageOf(framework::Window& mask);

/// These fields of the mask's record as a JSON object; those it does not have are left out.
std::string RecordText(framework::Window& mask, const std::vector<std::string>& fields);
/// Those of the names that no field of the mask's record has.
std::vector<std::string> NoRecordFields(const framework::Window& mask, const std::vector<std::string>& names);

/// The state object of a script that wants record fields only; it says when they are outdated.
std::string FieldsText(const MaskImage& image, const ScriptedFrontEnd& front);

/// The state object. `others` are open dialogs that do not belong to the mask's family.
std::string StateText(UINT mask, bool open, const MaskImage& image, const ScriptedFrontEnd& front,
                      const std::vector<framework::Window*>& others);

bool IsModal(const framework::Window& dialog);

} // namespace cli
