// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "scene/ScenePath.h"

#include "base/NumberText.h"
#include "host/CRuvData.h"
#include "host/Physics.h"
#include "scene/SceneGeometry.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace scene
{
namespace
{

/// The points at the end of the way, cm before the collision.
constexpr std::array kApproach{20.0, 10.0, 5.0, 0.0};
/// Points this near the end belong to them.
constexpr double kApproachLength = 25.0;
constexpr double kShortest = 1e-6; // cm, a direction needs more

bool IsPlace(CDPoint point)
{
    return std::isfinite(point.x) && std::isfinite(point.y);
}

CWegZeitSpalte& Collision(CWegZeitDat& way)
{
    return way.spalten[CWegZeitDat::kKollisionsSpalte];
}

/// The point `back` cm before the end of the line, and the direction there.
SceneTrack::Mark PlaceBefore(const std::vector<CDPoint>& line, double heading, double back)
{
    for (std::size_t i = line.size(); i-- > 1;) {
        const double length = Distance(line[i - 1], line[i]);
        if (length <= kShortest)
            continue;
        const CDPoint along = (line[i] - line[i - 1]) * (1.0 / length);
        heading = std::atan2(along.y, along.x);
        if (back <= length)
            return {line[i] - along * back, heading, {}};
        back -= length;
    }
    return {line.front() - Direction(heading) * back, heading, {}};
}

double LengthOf(const std::vector<CDPoint>& line)
{
    double length = 0.0;
    for (std::size_t i = 1; i < line.size(); ++i)
        length += Distance(line[i - 1], line[i]);
    return length;
}

} // namespace

std::optional<DrivingLine> ReadDrivingLine(const CWegZeitDat& way)
{
    const std::vector<CDPoint>& track = way.spalten[CWegZeitDat::kKollisionsSpalte].bahn;
    if (track.empty() || !std::all_of(track.begin(), track.end(), &IsPlace))
        return std::nullopt;
    DrivingLine line;
    line.position = track.back();
    std::size_t first = track.size() - 1;
    while (first > 0 && Distance(track[first - 1], line.position) <= kApproachLength)
        --first;
    // The farthest of the points at the end tells the direction best; without any, the line does.
    const std::size_t from = first == track.size() - 1 && first > 0 ? first - 1 : first;
    const CDPoint along = line.position - track[from];
    if (std::hypot(along.x, along.y) > kShortest)
        line.heading = std::atan2(along.y, along.x);
    line.points.assign(track.begin(), track.begin() + static_cast<std::ptrdiff_t>(first));
    return line;
}

void WriteDrivingLine(CWegZeitDat& way, const DrivingLine& line)
{
    CWegZeitSpalte& collision = Collision(way);
    collision.bahn = line.points;
    for (const double back : kApproach)
        collision.bahn.push_back(line.position - Direction(line.heading) * back);
    way.bahnModus = 0;
    if (collision.IsUsed())
        return;
    const CWegZeitSpalte& before = way.spalten[CWegZeitDat::kErsteSpalte];
    collision.art = PhasenArt::noTime;
    collision.vAnf = before.IsUsed() ? before.vEnd : 0.0;
    collision.vEnd = collision.vAnf;
    collision.endGier = line.heading;
}

void ClearDrivingLine(CWegZeitDat& way)
{
    CWegZeitSpalte& collision = Collision(way);
    collision.bahn.clear();
    way.bahnModus = 0;
    if (collision.art == PhasenArt::noTime && collision.vAnf == collision.vEnd)
        collision = {}; // it told nothing but the place
}

bool HasRestPose(const CWegZeitDat& way)
{
    return IsPlace(way.endPunkt) && std::isfinite(way.endRichtung) &&
           (!(way.endPunkt == CDPoint{}) || way.endRichtung != 0.0);
}

void SetRestPose(CWegZeitDat& way, CDPoint position, double heading)
{
    way.endPunkt = position;
    way.endRichtung = heading;
    if (!HasRestPose(way))
        way.endRichtung = 2.0 * kPi;
}

void ClearRestPose(CWegZeitDat& way)
{
    way.endPunkt = {};
    way.endRichtung = 0.0;
}

void StoreWay(CRuvData& data, std::size_t vehicle, const CWegZeitRechDat& way)
{
    way.Uebertragen(data, vehicle, nullptr, 0);
    data.NotifyGeo(vehicle);
    data.BroadcastMessage(WM_RUV_DRIVINGLINE, vehicle, 0, nullptr);
}

void AddPhaseMarks(const CWegZeitDat& way, double heading, SceneTrack& track)
{
    constexpr double kLongest = 1e8; // cm
    double farthest = 0.0;
    for (std::size_t column = CWegZeitDat::kErsteSpalte; column < CWegZeitDat::kSpalten; ++column) {
        const CWegZeitSpalte& phase = way.spalten[column];
        const double back = phase.sumWeg * kCmProM;
        if (!phase.IsUsed() || !(back > farthest) || back > kLongest)
            continue;
        farthest = back;
        SceneTrack::Mark mark = PlaceBefore(track.line, heading, back);
        mark.text =
            std::string(PhasenArtName(phase.art)) + ", \xE2\x88\x92" + base::FormatNumber(phase.sumZeit, 2) + " s";
        track.phases.push_back(std::move(mark));
    }
    if (farthest > LengthOf(track.line))
        track.extension = {track.phases.back().at, track.line.front()};
}

std::vector<CDPoint> PlacedTrajectory(const CWegZeitSpalte& phase, const std::vector<CDPoint>& line, double heading)
{
    constexpr double kLongest = 1e8; // cm
    const double back = (std::abs(phase.sumWeg) - std::abs(phase.weg)) * kCmProM;
    if (phase.art != PhasenArt::turning || phase.bahn.empty() || line.empty() || !(back <= kLongest))
        return phase.bahn;
    const SceneTrack::Mark end = PlaceBefore(line, heading, std::max(0.0, back));
    // In reverse the frame's x points to the vehicle's rear.
    const double turn = end.direction - phase.endGier + (phase.richtung < 0.0 ? kPi : 0.0);
    const CDPoint last = phase.bahn.back();
    std::vector<CDPoint> placed = phase.bahn;
    for (CDPoint& point : placed) {
        point.Rotate(turn, last);
        point += end.at - last;
    }
    return placed;
}

NearestPlace NearestSegment(std::span<const CDPoint> line, CDPoint point)
{
    NearestPlace nearest{0, Distance(line.front(), point)};
    for (std::size_t i = 0; i + 1 < line.size(); ++i) {
        const CDPoint along = line[i + 1] - line[i];
        const CDPoint to = point - line[i];
        const double square = along.x * along.x + along.y * along.y;
        const double part = square > 0.0 ? std::clamp((to.x * along.x + to.y * along.y) / square, 0.0, 1.0) : 0.0;
        const double away = Distance(line[i] + along * part, point);
        if (away < nearest.distance)
            nearest = {i, away};
    }
    return nearest;
}

} // namespace scene
