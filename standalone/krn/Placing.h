// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The placing service: open requests and the objects that masks keep in the scene. Scene views and scripts answer here.
#pragma once

#include "host/Placing.h"

#include <optional>
#include <string>
#include <vector>

namespace krn
{

struct PlacingRequest {
    CPlacingClient* client = nullptr;
    CPlacedObject wish;
    std::string prompt;
};

/// The open request of a case, if a mask waits for one.
const PlacingRequest* OpenPlacingRequest(const CRuvData& data);
/// Answers the open request: the object of that kind stands at the given place. False when none of that kind is open.
/// The request stays open, so that the user may correct the place; EndPlacing closes it.
bool AnswerPlacing(const CRuvData& data, const CPlacedObject& object);
void EndPlacing(const CRuvData& data);

/// An object in the scene and the mask it belongs to.
struct SceneObject {
    CPlacingClient* client;
    CPlacedObject object;
};
std::vector<SceneObject> SceneObjects(const CRuvData& data);

} // namespace krn
