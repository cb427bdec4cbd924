// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// A vehicle's way to the collision and its rest position, as the path-time data hold them.
#pragma once

#include "host/CWegZeitDat.h"
#include "scene/SceneModel.h"

#include <optional>
#include <span>

namespace scene
{

/// Lengths in cm. The collision column ends with a few points close together that say where the vehicle stood and which
/// way it was heading; what lies before them is drawn.
struct DrivingLine {
    std::vector<CDPoint> points; ///< earliest first
    CDPoint position{};
    double heading = 0.0; ///< rad
};

/// Nothing when the collision column has no trajectory.
std::optional<DrivingLine> ReadDrivingLine(const CWegZeitDat& way);
/// Also takes the collision column into use.
void WriteDrivingLine(CWegZeitDat& way, const DrivingLine& line);
void ClearDrivingLine(CWegZeitDat& way);

/// A rest position at the origin that heads along x is none.
bool HasRestPose(const CWegZeitDat& way);
void SetRestPose(CWegZeitDat& way, CDPoint position, double heading);
void ClearRestPose(CWegZeitDat& way);

/// Writes the way into the case and tells the open masks that the vehicle stands elsewhere.
void StoreWay(CRuvData& data, std::size_t vehicle, const CWegZeitRechDat& way);

/// Where phases before the collision begin on the track's line, which is extended straight where it is too short.
void AddPhaseMarks(const CWegZeitDat& way, double heading, SceneTrack& track);

/// A phase's trajectory in the scene. That of a turn is in a frame of its own: it is laid so that the turn ends where
/// the track's line says, in the direction that the vehicle has there.
std::vector<CDPoint> PlacedTrajectory(const CWegZeitSpalte& phase, const std::vector<CDPoint>& line, double heading);

struct NearestPlace {
    std::size_t segment = 0; ///< from this point to the next
    double distance = 0.0;
};
/// The line has at least one point.
NearestPlace NearestSegment(std::span<const CDPoint> line, CDPoint point);

} // namespace scene
