// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The drawing of the scene, for the screen and for paper.
#pragma once

#include "drawing/DiagramPalette.h"
#include "host/CDC.h"
#include "host/CSzenenBild.h"
#include "scene/SceneModel.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace scene
{

/// A picture under the scene, ready to be drawn.
struct SceneLayer {
    CSzenenBild picture;
    std::shared_ptr<const drawing::Bitmap> bitmap; ///< null when there is nothing to show
    std::string trouble;                           ///< what is wrong with the file, German; empty when all is well
};

struct SceneDrawingOptions {
    drawing::DiagramPalette palette = drawing::DiagramPalette::Light();
    COLORREF accent = RGB(0x1F, 0x5F, 0xA8); ///< of the selected item and of measures
    std::string title;
    bool grid = true;
    bool names = true;
    std::vector<SceneLayer> layers;                      ///< lowest first
    std::optional<SceneId> selected;                     ///< shown with handles and numbers
    std::optional<SceneItem> hanging;                    ///< at the cursor, not placed yet
    std::optional<std::pair<CDPoint, CDPoint>> measured; ///< cm
};

/// Fills the whole drawing, whose size is the camera's.
void DrawScene(CDC& dc, const SceneCamera& camera, const Scene& scene, const SceneDrawingOptions& options);

/// "x 12,00 m, y 3,00 m, 11,5°" and what else there is to say of an item's place.
std::string PlaceText(const SceneItem& item);
/// A length in cm, in the user's unit.
std::string LengthText(double length);

} // namespace scene
