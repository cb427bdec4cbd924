// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What lies under the things of the scene: the grid, and the bar that tells the scale.
#pragma once

#include "drawing/DiagramPalette.h"
#include "host/CDC.h"
#include "scene/SceneCamera.h"

namespace scene
{

/// Distance of the grid's lines at the camera's scale, cm: 1, 2 or 5 times a power of ten.
double GridStep(const SceneCamera& camera);
void DrawSceneGrid(CDC& dc, const SceneCamera& camera, const drawing::DiagramPalette& palette);
/// In the lower left corner, of a round length in the user's unit.
void DrawScaleBar(CDC& dc, const SceneCamera& camera, const drawing::DiagramPalette& palette);

} // namespace scene
