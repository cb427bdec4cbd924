// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "scene/SceneEditing.h"

#include "host/Physics.h"
#include "scene/SceneGeometry.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace scene
{
namespace
{

// Pixels.
constexpr double kHandleReach = 8.0;
constexpr double kPointReach = 9.0;
constexpr double kBodyReach = 4.0;
constexpr double kTurnHandleDistance = 26.0;
constexpr double kSmallestWithHandles = 18.0;

constexpr double kTurnStep = 5.0;     // degrees
constexpr double kSmallestSide = 5.0; // cm

double InHalfTurns(double degrees)
{
    const double turned = std::fmod(degrees, 360.0);
    return turned > 180.0 ? turned - 360.0 : turned <= -180.0 ? turned + 360.0 : turned;
}

/// Half lengths along the angle and across it.
CDPoint HalfSides(const CPlacedObject& pose)
{
    const CDPoint half{pose.width / 2.0, pose.length / 2.0};
    return pose.centred ? CDPoint{half.y, half.x} : half;
}

bool Contains(const CPlacedObject& pose, CDPoint point, double reach)
{
    const CDPoint half = HalfSides(pose);
    const CDPoint to = point - CentreOf(pose);
    const CDPoint along = Direction(pose.angle * kRadProGrad);
    return std::abs(Dot(to, along)) <= std::abs(half.x) + reach &&
           std::abs(Dot(to, {-along.y, along.x})) <= std::abs(half.y) + reach;
}

std::optional<SceneHit> HitHandle(const SceneItem& item, const SceneCamera& camera, CDPoint pixel)
{
    if (item.canTurn && Distance(TurnHandle(camera, item.pose), pixel) <= kHandleReach)
        return SceneHit{item.id, SceneGrip::turn};
    if (!HasCornerHandles(camera, item))
        return std::nullopt;
    const auto corners = CornersOf(item.pose);
    for (std::size_t i = 0; i < corners.size(); ++i)
        if (Distance(camera.ToPixel(corners[i]), pixel) <= kHandleReach)
            return SceneHit{item.id, SceneGrip::corner, i};
    return std::nullopt;
}

} // namespace

CDPoint TurnHandle(const SceneCamera& camera, const CPlacedObject& pose)
{
    const double heading = HeadingOf(pose);
    const CDPoint front = CentreOf(pose) + Direction(heading) * (pose.length / 2.0);
    return camera.ToPixel(front) + CDPoint{std::cos(heading), -std::sin(heading)} * kTurnHandleDistance;
}

bool HasCornerHandles(const SceneCamera& camera, const SceneItem& item)
{
    return item.canSize && camera.Pixels(std::max(item.pose.width, item.pose.length)) >= kSmallestWithHandles;
}

std::optional<SceneHit> HitTest(const Scene& scene, const SceneCamera& camera, CDPoint pixel,
                                const std::optional<SceneId>& selected)
{
    if (const SceneItem* item = selected ? scene.Find(*selected) : nullptr; item != nullptr && !item->locked)
        if (const auto handle = HitHandle(*item, camera, pixel))
            return handle;

    const SceneItem* best = nullptr;
    double nearest = kPointReach;
    for (const SceneItem& item : scene.items) {
        const double away = item.IsPoint() ? Distance(camera.ToPixel(item.pose.position), pixel) : nearest + 1.0;
        if (away <= nearest) {
            nearest = away;
            best = &item;
        }
    }
    if (best != nullptr)
        return SceneHit{best->id};

    const CDPoint point = camera.ToScene(pixel);
    double smallest = std::numeric_limits<double>::infinity();
    for (const SceneItem& item : scene.items) {
        const double area = std::abs(item.pose.width * item.pose.length);
        if (!item.IsPoint() && !item.locked && area <= smallest &&
            Contains(item.pose, point, camera.Length(kBodyReach))) {
            smallest = area;
            best = &item;
        }
    }
    return best == nullptr ? std::nullopt : std::optional(SceneHit{best->id});
}

SceneDrag::SceneDrag(SceneItem item, const SceneHit& hit, CDPoint at) : m_begin(std::move(item)), m_hit(hit), m_at(at)
{
}

SceneItem SceneDrag::At(CDPoint cursor, bool constrained) const
{
    SceneItem item = m_begin;
    switch (m_hit.grip) {
    case SceneGrip::body:
        item.pose = Moved(cursor - m_at, constrained);
        break;
    case SceneGrip::turn:
        item.pose = Turned(cursor, constrained);
        break;
    case SceneGrip::corner:
        item.pose = Sized(cursor, constrained);
        break;
    }
    return item;
}

CPlacedObject SceneDrag::Moved(CDPoint by, bool straight) const
{
    CPlacedObject pose = m_begin.pose;
    if (straight) {
        const CDPoint along = Direction(pose.angle * kRadProGrad);
        const CDPoint across{-along.y, along.x};
        const double forward = Dot(by, along);
        const double aside = Dot(by, across);
        by = std::abs(forward) >= std::abs(aside) ? along * forward : across * aside;
    }
    pose.position += by;
    return pose;
}

CPlacedObject SceneDrag::Turned(CDPoint cursor, bool stepped) const
{
    const CDPoint centre = CentreOf(m_begin.pose);
    const CDPoint from = m_at - centre;
    const CDPoint to = cursor - centre;
    double degrees = m_begin.pose.angle + (std::atan2(to.y, to.x) - std::atan2(from.y, from.x)) / kRadProGrad;
    if (stepped)
        degrees = std::round(degrees / kTurnStep) * kTurnStep;
    return TurnedTo(m_begin.pose, InHalfTurns(degrees));
}

CPlacedObject SceneDrag::Sized(CDPoint cursor, bool proportional) const
{
    const auto corners = CornersOf(m_begin.pose);
    const CDPoint fixed = corners[(m_hit.corner + 2) % corners.size()];
    const CDPoint along = Direction(m_begin.pose.angle * kRadProGrad);
    const CDPoint across{-along.y, along.x};
    const CDPoint moved = corners[m_hit.corner] + (cursor - m_at);
    CDPoint size{Dot(moved - fixed, along), Dot(moved - fixed, across)};
    // The dragged corner stays on its side of the fixed one.
    const CDPoint sign{m_hit.corner == 1 || m_hit.corner == 2 ? 1.0 : -1.0, m_hit.corner >= 2 ? 1.0 : -1.0};
    size = {std::max(size.x * sign.x, kSmallestSide), std::max(size.y * sign.y, kSmallestSide)};
    const CDPoint before = HalfSides(m_begin.pose) * 2.0;
    if (proportional && before.x > 0.0 && before.y > 0.0) {
        const double factor = std::max(size.x / before.x, size.y / before.y);
        size = before * factor;
    }
    CPlacedObject pose = m_begin.pose;
    pose.width = pose.centred ? size.y : size.x;
    pose.length = pose.centred ? size.x : size.y;
    return CentredAt(std::move(pose), fixed + (along * (size.x * sign.x) + across * (size.y * sign.y)) * 0.5);
}

SceneItem Spanned(SceneItem item, CDPoint from, CDPoint to)
{
    const CDPoint along = Direction(item.pose.angle * kRadProGrad);
    const CDPoint diagonal = to - from;
    const CDPoint size{std::max(std::abs(Dot(diagonal, along)), kSmallestSide),
                       std::max(std::abs(Dot(diagonal, {-along.y, along.x})), kSmallestSide)};
    item.pose.width = item.pose.centred ? size.y : size.x;
    item.pose.length = item.pose.centred ? size.x : size.y;
    item.pose = CentredAt(std::move(item.pose), from + diagonal * 0.5);
    return item;
}

} // namespace scene
