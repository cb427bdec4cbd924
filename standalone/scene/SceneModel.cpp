// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "scene/SceneModel.h"

#include "host/CRuvData.h"
#include "host/Physics.h"
#include "krn/Placing.h"
#include "krn/VehicleFields.h"
#include "scene/SceneGeometry.h"
#include "scene/ScenePath.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace scene
{
namespace
{

using Type = CKfzDaten::Type;

constexpr double kLargestPlace = 1e9;   // cm
constexpr double kLargestSize = 1e8;    // cm
constexpr double kSmallestScale = 1e-5; // metres per pixel of a picture
constexpr double kLargestScale = 1e3;
/// Of bare rectangles of masks, in turn.
constexpr std::array kObjectColors{RGB(0xD9, 0x8A, 0x0B), RGB(0x0E, 0x8C, 0x83), RGB(0x7A, 0x4F, 0xB5),
                                   RGB(0x5B, 0x7A, 0x1E)};

/// From the position to the centre.
CDPoint ToCentre(const CPlacedObject& pose)
{
    if (pose.centred)
        return {};
    const CDPoint along = Direction(pose.angle * kRadProGrad);
    return along * (pose.width / 2.0) + CDPoint{-along.y, along.x} * (pose.length / 2.0);
}

std::string NameOf(const CKfzDaten& vehicle, std::size_t index)
{
    return vehicle.name.empty() ? "Fahrzeug " + std::to_string(index + 1) : vehicle.name;
}

/// Length and width as seen from above, cm. Who lies on the ground is as long as tall.
std::pair<double, double> Extent(const CKfzDaten& vehicle, bool lying)
{
    const CKfzDaten typical = krn::TypicalVehicle(vehicle.type);
    const auto usable = [](double value, double otherwise) {
        return value > 0.0 && value < kLargestSize / kCmProM ? value : otherwise;
    };
    const bool falls = lying && vehicle.type == Type::pedestrian;
    const double length = falls ? usable(vehicle.height, typical.height) : usable(vehicle.length, typical.length);
    return {length * kCmProM, usable(vehicle.width, typical.width) * kCmProM};
}

SceneItem VehicleItem(const CRuvData& data, SceneKind kind, std::size_t index, CDPoint at, double heading)
{
    const CKfzDaten& vehicle = data.KfzDat(index);
    SceneItem item;
    item.id.kind = kind;
    item.id.vehicle = index;
    item.type = vehicle.type;
    item.color = vehicle.color;
    item.pose.name = NameOf(vehicle, index);
    item.what = kind == SceneKind::restPose ? "Endlage" : "Kollision";
    item.pose.participant = static_cast<std::int64_t>(index);
    item.pose.centred = true;
    item.pose.position = at;
    item.pose.angle = heading / kRadProGrad;
    std::tie(item.pose.length, item.pose.width) = Extent(vehicle, kind == SceneKind::restPose);
    return item;
}

SceneItem WaypointItem(const CRuvData& data, std::size_t index, std::size_t point, CDPoint at)
{
    SceneItem item;
    item.id.kind = SceneKind::waypoint;
    item.id.vehicle = index;
    item.id.point = point;
    item.color = data.KfzDat(index).color;
    item.canTurn = false;
    item.pose.centred = true;
    item.pose.position = at;
    item.pose.name = NameOf(data.KfzDat(index), index);
    item.what = point == kNewPoint ? "Fahrlinie" : "Punkt " + std::to_string(point + 1);
    return item;
}

SceneItem MaskItem(const CRuvData& data, CPlacingClient* client, const CPlacedObject& object)
{
    SceneItem item;
    item.id.client = client;
    item.id.object = object.kind;
    item.pose = object;
    item.canSize = !object.centred;
    if (data.IsFzgValid(object.participant)) {
        const CKfzDaten& vehicle = data.KfzDat(static_cast<std::size_t>(object.participant));
        item.type = vehicle.type;
        item.color = vehicle.color;
    } else {
        item.type = object.centred ? Type::car : Type::none;
        item.color = kObjectColors[static_cast<std::size_t>(object.kind & 0xFF) % kObjectColors.size()];
    }
    return item;
}

SceneItem PictureItem(const CSzenenBild& picture, std::size_t index)
{
    SceneItem item;
    item.id.kind = SceneKind::picture;
    item.id.point = index;
    item.color = RGB(0x70, 0x78, 0x82);
    item.canSize = !picture.gesperrt;
    item.canTurn = !picture.gesperrt;
    item.locked = picture.gesperrt;
    item.pose.name = picture.datei.substr(picture.datei.find_last_of('/') + 1);
    item.pose.centred = true;
    item.pose.position = picture.mitte;
    item.pose.angle = picture.winkel / kRadProGrad;
    item.pose.length = static_cast<double>(picture.breite) * picture.meterProPixel * kCmProM;
    item.pose.width = static_cast<double>(picture.hoehe) * picture.meterProPixel * kCmProM;
    return item;
}

SceneItem RecordedItem(const CSzenenSpur& track, std::size_t index)
{
    SceneItem item;
    item.id.kind = SceneKind::recorded;
    item.id.point = index;
    item.color = RGB(0xA8, 0x32, 0x6E);
    item.canTurn = !track.gesperrt;
    item.locked = track.gesperrt;
    item.recorded = std::make_shared<const std::vector<CDPoint>>(track.punkte);
    item.pose.name = track.name;
    item.pose.centred = true;
    item.pose.position = track.mitte;
    item.pose.angle = track.winkel / kRadProGrad;
    for (const CDPoint& point : track.punkte) {
        item.pose.length = std::max(item.pose.length, 2.0 * std::abs(point.x));
        item.pose.width = std::max(item.pose.width, 2.0 * std::abs(point.y));
    }
    return item;
}

bool PlaceRecorded(CRuvData& data, const SceneItem& item)
{
    if (item.id.point >= data.Spuren().size() || item.locked)
        return false;
    CSzenenSpur& track = data.Spuren()[item.id.point];
    track.mitte = item.pose.position;
    track.winkel = item.pose.angle * kRadProGrad;
    data.NotifyMaskenWerte();
    return true;
}

/// Its proportions stay: the side that became longer tells the scale.
bool PlacePicture(CRuvData& data, const SceneItem& item)
{
    if (item.id.point >= data.Bilder().size() || item.locked)
        return false;
    CSzenenBild& picture = data.Bilder()[item.id.point];
    const SceneItem before = PictureItem(picture, item.id.point);
    const double across = item.pose.length / before.pose.length;
    const double up = item.pose.width / before.pose.width;
    const double factor = std::abs(across - 1.0) > std::abs(up - 1.0) ? across : up;
    const double scale = picture.meterProPixel * factor;
    if (!(scale >= kSmallestScale && scale <= kLargestScale))
        return false;
    picture.mitte = item.pose.position;
    picture.winkel = item.pose.angle * kRadProGrad;
    picture.meterProPixel = scale;
    data.NotifyMaskenWerte();
    return true;
}

bool IsDrawable(const CPlacedObject& pose)
{
    const double place = std::max(std::abs(pose.position.x), std::abs(pose.position.y));
    const double size = std::max(std::abs(pose.width), std::abs(pose.length));
    return place <= kLargestPlace && size <= kLargestSize && std::isfinite(pose.angle);
}

SceneTrack TrackOf(const CRuvData& data, std::size_t index)
{
    const CWegZeitDat& way = data.WZRechDat(index);
    SceneTrack track;
    track.vehicle = index;
    track.color = data.KfzDat(index).color;
    const std::optional<DrivingLine> line = ReadDrivingLine(way);
    if (line) {
        track.line = line->points;
        track.line.push_back(line->position);
    }
    for (std::size_t column = 0; column < CWegZeitDat::kSpalten; ++column)
        if (column != CWegZeitDat::kKollisionsSpalte && way.spalten[column].bahn.size() > 1)
            track.trajectories.push_back(PlacedTrajectory(way.spalten[column], track.line, line ? line->heading : 0.0));
    if (!line)
        return track;
    if (HasRestPose(way))
        track.runOut = {line->position, way.endPunkt};
    AddPhaseMarks(way, line->heading, track);
    return track;
}

bool PlaceVehicle(CRuvData& data, const SceneItem& item)
{
    const std::size_t vehicle = item.id.vehicle;
    if (!data.IsFzgValid(static_cast<std::int64_t>(vehicle)))
        return false;
    CWegZeitRechDat way = data.WZRechDat(vehicle);
    const double heading = item.pose.angle * kRadProGrad;
    if (item.id.kind == SceneKind::restPose) {
        SetRestPose(way, item.pose.position, heading);
    } else {
        DrivingLine line = ReadDrivingLine(way).value_or(DrivingLine{});
        if (item.id.kind == SceneKind::collision) {
            line.position = item.pose.position;
            line.heading = heading;
        } else if (item.id.point == kNewPoint) {
            line.points.insert(line.points.begin(), item.pose.position);
        } else if (item.id.point < line.points.size()) {
            line.points[item.id.point] = item.pose.position;
        } else {
            return false;
        }
        WriteDrivingLine(way, line);
    }
    StoreWay(data, vehicle, way);
    return true;
}

} // namespace

CDPoint CentreOf(const CPlacedObject& pose)
{
    return pose.position + ToCentre(pose);
}

double HeadingOf(const CPlacedObject& pose)
{
    return pose.angle * kRadProGrad + (pose.centred ? 0.0 : kPi / 2.0);
}

std::array<CDPoint, 4> CornersOf(const CPlacedObject& pose)
{
    const CDPoint centre = CentreOf(pose);
    const CDPoint along = Direction(pose.angle * kRadProGrad);
    const CDPoint x = along * (pose.centred ? pose.length / 2.0 : pose.width / 2.0);
    const CDPoint y = CDPoint{-along.y, along.x} * (pose.centred ? pose.width / 2.0 : pose.length / 2.0);
    return {centre - x - y, centre + x - y, centre + x + y, centre - x + y};
}

CPlacedObject CentredAt(CPlacedObject pose, CDPoint centre)
{
    pose.position = centre - ToCentre(pose);
    return pose;
}

CPlacedObject TurnedTo(CPlacedObject pose, double degrees)
{
    const CDPoint centre = CentreOf(pose);
    pose.angle = degrees;
    return CentredAt(std::move(pose), centre);
}

const SceneItem* Scene::Find(const SceneId& id) const
{
    const auto found = std::find_if(items.begin(), items.end(), [&](const SceneItem& item) { return item.id == id; });
    return found == items.end() ? nullptr : &*found;
}

SceneBounds Scene::Bounds(bool all) const
{
    SceneBounds bounds;
    for (const SceneItem& item : items)
        if (!item.IsPoint())
            for (const CDPoint& corner : CornersOf(item.pose))
                bounds.Add(corner);
    if (!all && !bounds.empty)
        return bounds;
    for (const SceneTrack& track : tracks) {
        for (const CDPoint& point : track.line)
            bounds.Add(point);
        for (const std::vector<CDPoint>& trajectory : track.trajectories)
            for (const CDPoint& point : trajectory)
                bounds.Add(point);
        for (const SceneTrack::Mark& mark : track.phases)
            bounds.Add(mark.at);
    }
    return bounds;
}

Scene ReadScene(const CRuvData& data)
{
    Scene scene;
    const auto add = [&scene](SceneItem item) {
        if (IsDrawable(item.pose))
            scene.items.push_back(std::move(item));
    };
    for (std::size_t i = 0; i < data.Bilder().size(); ++i)
        if (data.Bilder()[i].sichtbar)
            add(PictureItem(data.Bilder()[i], i));
    for (std::size_t i = 0; i < data.Spuren().size(); ++i)
        if (data.Spuren()[i].sichtbar)
            add(RecordedItem(data.Spuren()[i], i));
    std::vector<SceneItem> waypoints;
    std::vector<SceneItem> rests;
    for (std::size_t i = 0; i < CRuvData::kFahrzeuge; ++i) {
        if (!data.IsFzgValid(static_cast<std::int64_t>(i)))
            continue;
        const CWegZeitDat& way = data.WZRechDat(i);
        scene.tracks.push_back(TrackOf(data, i));
        if (const auto line = ReadDrivingLine(way)) {
            add(VehicleItem(data, SceneKind::collision, i, line->position, line->heading));
            for (std::size_t point = 0; point < line->points.size(); ++point)
                waypoints.push_back(WaypointItem(data, i, point, line->points[point]));
        }
        if (HasRestPose(way))
            rests.push_back(VehicleItem(data, SceneKind::restPose, i, way.endPunkt, way.endRichtung));
    }
    for (std::vector<SceneItem>* group : {&rests, &waypoints})
        for (SceneItem& item : *group)
            add(std::move(item));
    // Large rectangles lie under what stands in them.
    std::vector<krn::SceneObject> objects = krn::SceneObjects(data);
    std::stable_sort(objects.begin(), objects.end(), [](const krn::SceneObject& a, const krn::SceneObject& b) {
        return a.object.participant < 0 && b.object.participant >= 0;
    });
    for (const krn::SceneObject& object : objects)
        add(MaskItem(data, object.client, object.object));
    return scene;
}

SceneItem NewSceneItem(const CRuvData& data, SceneKind kind, std::size_t vehicle, CDPoint at)
{
    return kind == SceneKind::waypoint ? WaypointItem(data, vehicle, kNewPoint, at)
                                       : VehicleItem(data, kind, vehicle, at, 0.0);
}

SceneItem RequestedItem(const CRuvData& data, CPlacingClient& client, const CPlacedObject& wish)
{
    return MaskItem(data, &client, wish);
}

bool PlaceItem(CRuvData& data, const SceneItem& item)
{
    if (!IsDrawable(item.pose))
        return false;
    if (item.id.kind == SceneKind::picture)
        return PlacePicture(data, item);
    if (item.id.kind == SceneKind::recorded)
        return PlaceRecorded(data, item);
    if (item.id.kind != SceneKind::maskObject)
        return PlaceVehicle(data, item);
    const krn::PlacingRequest* request = krn::OpenPlacingRequest(data);
    if (request != nullptr && request->client == item.id.client && request->wish.kind == item.id.object)
        return krn::AnswerPlacing(data, item.pose);
    const std::vector<krn::SceneObject> objects = krn::SceneObjects(data);
    const bool stands = std::any_of(objects.begin(), objects.end(), [&](const krn::SceneObject& object) {
        return object.client == item.id.client && object.object.kind == item.id.object;
    });
    if (stands)
        item.id.client->ObjectPlaced(item.pose);
    return stands;
}

bool CanRemove(const SceneId& id)
{
    return id.kind != SceneKind::maskObject;
}

void RemoveItem(CRuvData& data, const SceneId& id)
{
    if (id.kind == SceneKind::picture) {
        if (id.point < data.Bilder().size())
            data.Bilder().erase(data.Bilder().begin() + static_cast<std::ptrdiff_t>(id.point));
        data.NotifyMaskenWerte();
        return;
    }
    if (id.kind == SceneKind::recorded) {
        if (id.point < data.Spuren().size())
            data.Spuren().erase(data.Spuren().begin() + static_cast<std::ptrdiff_t>(id.point));
        data.NotifyMaskenWerte();
        return;
    }
    if (!CanRemove(id) || id.vehicle >= CRuvData::kFahrzeuge)
        return;
    CWegZeitRechDat way = data.WZRechDat(id.vehicle);
    if (id.kind == SceneKind::restPose) {
        ClearRestPose(way);
    } else if (id.kind == SceneKind::collision) {
        ClearDrivingLine(way);
    } else {
        auto line = ReadDrivingLine(way);
        if (!line || id.point >= line->points.size())
            return;
        line->points.erase(line->points.begin() + static_cast<std::ptrdiff_t>(id.point));
        WriteDrivingLine(way, *line);
    }
    StoreWay(data, id.vehicle, way);
}

std::optional<std::size_t> InsertWaypoint(CRuvData& data, std::size_t vehicle, CDPoint at)
{
    CWegZeitRechDat way = data.WZRechDat(vehicle);
    auto line = ReadDrivingLine(way);
    if (!line)
        return std::nullopt;
    std::vector<CDPoint> all = line->points;
    all.push_back(line->position);
    const std::size_t before = NearestSegment(all, at).segment + 1;
    const std::size_t point = all.size() < 2 ? 0 : before;
    line->points.insert(line->points.begin() + static_cast<std::ptrdiff_t>(point), at);
    WriteDrivingLine(way, *line);
    StoreWay(data, vehicle, way);
    return point;
}

std::optional<std::size_t> LineAt(const Scene& scene, CDPoint point, double distance)
{
    std::optional<std::size_t> vehicle;
    for (const SceneTrack& track : scene.tracks) {
        if (track.line.size() < 2)
            continue;
        const double away = NearestSegment(track.line, point).distance;
        if (away <= distance) {
            distance = away;
            vehicle = track.vehicle;
        }
    }
    return vehicle;
}

} // namespace scene
