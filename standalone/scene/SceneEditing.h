// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Grabbing and dragging what stands in the scene.
#pragma once

#include "scene/SceneModel.h"

#include <optional>

namespace scene
{

enum class SceneGrip { body, turn, corner };

struct SceneHit {
    SceneId id;
    SceneGrip grip = SceneGrip::body;
    std::size_t corner = 0; ///< as CornersOf counts
};

/// Where the handle for turning is drawn, in pixels: beyond the front, or beyond the side of a rectangle.
CDPoint TurnHandle(const SceneCamera& camera, const CPlacedObject& pose);
/// Whether there is room for handles at the corners.
bool HasCornerHandles(const SceneCamera& camera, const SceneItem& item);

/// What is under a pixel: a handle of the selected item, then the nearest point of a driving line, then the smallest
/// body, of equal ones the topmost.
std::optional<SceneHit> HitTest(const Scene& scene, const SceneCamera& camera, CDPoint pixel,
                                const std::optional<SceneId>& selected);

/// An item between the grab and the drop.
class SceneDrag
{
  public:
    /// `at` is where it was grabbed, in scene coordinates.
    SceneDrag(SceneItem item, const SceneHit& hit, CDPoint at);

    const SceneItem& Begin() const { return m_begin; }
    SceneGrip Grip() const { return m_hit.grip; }
    /// The item with the cursor at a place. `constrained` moves along the item's own axes only, turns in steps of
    /// 5 degrees and keeps the proportions of sides.
    SceneItem At(CDPoint cursor, bool constrained) const;

  private:
    CPlacedObject Moved(CDPoint by, bool straight) const;
    CPlacedObject Turned(CDPoint cursor, bool stepped) const;
    CPlacedObject Sized(CDPoint cursor, bool proportional) const;

    SceneItem m_begin;
    SceneHit m_hit;
    CDPoint m_at;
};

/// A rectangle like `item` that spans from one point to another.
SceneItem Spanned(SceneItem item, CDPoint from, CDPoint to);

} // namespace scene
