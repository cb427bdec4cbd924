// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What stands in the scene of a case, and how it gets another place there. Scene coordinates are cm.
#pragma once

#include "host/CKfzDaten.h"
#include "host/Placing.h"
#include "scene/SceneCamera.h"

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class CRuvData;

namespace scene
{

enum class SceneKind {
    maskObject, ///< of an open mask, see krn/Placing.h
    restPose,   ///< where a vehicle came to rest
    collision,  ///< where a vehicle stood at the collision
    waypoint,   ///< a point of its driving line to the collision
    picture,    ///< under everything else
    recorded,   ///< a recorded track above the pictures
};

struct SceneId {
    SceneKind kind = SceneKind::maskObject;
    std::size_t vehicle = 0; ///< index of the vehicle
    std::size_t point = 0;   ///< of a driving line, earliest first; or the number of a picture or recorded track
    CPlacingClient* client = nullptr;
    int object = 0; ///< the mask's own number of the object

    friend bool operator==(const SceneId&, const SceneId&) = default;
};

/// Of a vehicle of the case, not of a mask or a picture.
inline bool BelongsToVehicle(const SceneId& id)
{
    return id.kind == SceneKind::restPose || id.kind == SceneKind::collision || id.kind == SceneKind::waypoint;
}

/// A point that stands for a new one at the beginning of a driving line.
inline constexpr std::size_t kNewPoint = static_cast<std::size_t>(-1);

/// Something in the scene that can be moved.
struct SceneItem {
    SceneId id;
    CPlacedObject pose;                           ///< its place; lengths in cm, angle in degrees
    std::string what;                             ///< what its name does not say, such as "Endlage"
    CKfzDaten::Type type = CKfzDaten::Type::none; ///< how it is drawn; none is a bare rectangle
    COLORREF color = 0;
    bool canTurn = true;
    bool canSize = false;
    bool locked = false;                                    ///< the mouse passes through it
    std::shared_ptr<const std::vector<CDPoint>> recorded{}; ///< cm from the centre, before it is turned

    std::string FullName() const { return what.empty() ? pose.name : pose.name + ", " + what; }
    bool IsPoint() const { return id.kind == SceneKind::waypoint; }
};

/// Centre, direction of the length axis (rad) and its corners, counter-clockwise from the one that the position of a
/// rectangle names.
CDPoint CentreOf(const CPlacedObject& pose);
double HeadingOf(const CPlacedObject& pose);
std::array<CDPoint, 4> CornersOf(const CPlacedObject& pose);
/// The pose moved so that its centre lies there.
CPlacedObject CentredAt(CPlacedObject pose, CDPoint centre);
/// The pose turned about its centre, to an angle in degrees.
CPlacedObject TurnedTo(CPlacedObject pose, double degrees);

/// What belongs to a vehicle on the ground.
struct SceneTrack {
    std::size_t vehicle = 0;
    COLORREF color = 0;
    std::vector<CDPoint> line;      ///< to the collision, earliest first; ends where the vehicle stands
    std::vector<CDPoint> extension; ///< the way before the line that the phases need, up to its first point
    std::vector<std::vector<CDPoint>> trajectories; ///< of single phases
    std::vector<CDPoint> runOut;                    ///< from the collision to the rest position

    struct Mark {
        CDPoint at{};
        double direction = 0.0; ///< of the line there, rad
        std::string text;
    };
    std::vector<Mark> phases; ///< where phases begin
};

struct Scene {
    std::vector<SceneTrack> tracks;
    std::vector<SceneItem> items; ///< what is drawn later lies on top

    const SceneItem* Find(const SceneId& id) const;
    /// Of what stands in the scene; `all` adds driving lines and trajectories.
    SceneBounds Bounds(bool all) const;
};

Scene ReadScene(const CRuvData& data);

/// The vehicle as it would stand in the scene at a point, for one that does not stand there yet.
SceneItem NewSceneItem(const CRuvData& data, SceneKind kind, std::size_t vehicle, CDPoint at);
/// The object that a mask asks for.
SceneItem RequestedItem(const CRuvData& data, CPlacingClient& client, const CPlacedObject& wish);

/// Gives the item its place in the case or in its mask, and tells the open masks. False when there is nothing to move
/// any more, or the place is no place.
bool PlaceItem(CRuvData& data, const SceneItem& item);
bool CanRemove(const SceneId& id);
/// Takes a vehicle or a point out of the scene.
void RemoveItem(CRuvData& data, const SceneId& id);
/// Adds a point to the driving line where the line passes nearest; its number, or nothing without a line.
std::optional<std::size_t> InsertWaypoint(CRuvData& data, std::size_t vehicle, CDPoint at);
/// The vehicle whose driving line passes within `distance` (cm) of the point.
std::optional<std::size_t> LineAt(const Scene& scene, CDPoint point, double distance);

} // namespace scene
