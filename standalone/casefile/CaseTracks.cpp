// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "casefile/CaseTracks.h"

#include "base/Utf.h"
#include "casefile/CaseFields.h"
#include "casefile/JsonFields.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace casefile::case_file
{
namespace
{

using Object = base::JsonValue::Object;
using Array = base::JsonValue::Array;

constexpr std::string_view kNames[] = {"name", "points", "centre", "angle", "visible", "locked"};
constexpr std::pair<std::string_view, bool CSzenenSpur::*> kSwitches[] = {
    {"visible", &CSzenenSpur::sichtbar},
    {"locked", &CSzenenSpur::gesperrt},
};
constexpr const char* kNoPlace = "ist kein Punkt [x, y] in cm";

bool IsPlace(const CDPoint& point)
{
    return std::abs(point.x) <= kLargestCoordinate && std::abs(point.y) <= kLargestCoordinate;
}

/// What is wrong with a track, whoever asks.
Fault Check(const CSzenenSpur& track, const std::string& at)
{
    if (!base::IsUtf8(track.name))
        return {Below(at, "name"), "ist kein gültiger Text (UTF-8)"};
    if (track.punkte.size() < 2 || track.punkte.size() > CSzenenSpur::kMeistePunkte)
        return {Below(at, "points"),
                "ist keine Liste von 2 bis " + std::to_string(CSzenenSpur::kMeistePunkte) + " Punkten"};
    for (std::size_t i = 0; i < track.punkte.size(); ++i)
        if (!IsPlace(track.punkte[i]))
            return {Below(Below(at, "points"), i), kNoPlace};
    if (!IsPlace(track.mitte))
        return {Below(at, "centre"), kNoPlace};
    if (!(std::abs(track.winkel) <= kQuantity))
        return {Below(at, "angle"), "ist keine Zahl oder liegt außerhalb des zulässigen Bereichs"};
    return {};
}

std::optional<CDPoint> Pair(const base::JsonValue& value)
{
    const auto* pair = value.As<Array>();
    if (pair == nullptr || pair->size() != 2)
        return std::nullopt;
    const auto x = (*pair)[0].Number();
    const auto y = (*pair)[1].Number();
    return x && y ? std::optional(CDPoint{*x, *y}) : std::nullopt;
}

Fault ReadTrack(const Object& object, const std::string& at, CSzenenSpur& track)
{
    if (const base::JsonValue* name = Find(object, "name")) {
        const auto* text = name->As<std::string>();
        if (text == nullptr)
            return {Below(at, "name"), "ist kein Text"};
        track.name = *text;
    }
    const base::JsonValue* points = Find(object, "points");
    const auto* list = points == nullptr ? nullptr : points->As<Array>();
    for (std::size_t i = 0; list != nullptr && i < list->size() && i <= CSzenenSpur::kMeistePunkte; ++i) {
        const auto point = Pair((*list)[i]);
        if (!point)
            return {Below(Below(at, "points"), i), kNoPlace};
        track.punkte.push_back(*point);
    }
    if (const base::JsonValue* centre = Find(object, "centre")) {
        const auto place = Pair(*centre);
        if (!place)
            return {Below(at, "centre"), kNoPlace};
        track.mitte = *place;
    }
    if (const base::JsonValue* angle = Find(object, "angle")) {
        const auto number = angle->Number();
        if (!number)
            return {Below(at, "angle"), "ist keine Zahl oder liegt außerhalb des zulässigen Bereichs"};
        track.winkel = *number;
    }
    for (const auto& [name, field] : kSwitches) {
        const base::JsonValue* value = Find(object, name);
        if (value != nullptr && value->As<bool>() == nullptr)
            return {Below(at, name), "ist weder true noch false"};
        if (value != nullptr)
            track.*field = *value->As<bool>();
    }
    Object others = OtherMembers(object, kNames);
    if (!others.empty())
        track.weiteres = base::WriteJson(std::move(others), base::JsonLayout::oneLine);
    return Check(track, at);
}

} // namespace

Fault ReadTracks(const base::JsonValue& value, const std::string& at, std::vector<CSzenenSpur>& tracks)
{
    const auto* array = value.As<Array>();
    if (array == nullptr || array->size() > CSzenenSpur::kMeiste)
        return {at, "ist keine Liste von höchstens " + std::to_string(CSzenenSpur::kMeiste) + " Spuren"};
    for (std::size_t i = 0; i < array->size(); ++i) {
        const auto* object = (*array)[i].As<Object>();
        if (object == nullptr)
            return {Below(at, i), "ist kein Objekt"};
        CSzenenSpur track;
        if (Fault fault = ReadTrack(*object, Below(at, i), track); !fault.reason.empty())
            return fault;
        tracks.push_back(std::move(track));
    }
    return {};
}

base::JsonValue::Array TracksToJson(const std::vector<CSzenenSpur>& tracks, const std::string& at, Fault& fault)
{
    Array array;
    if (tracks.size() > CSzenenSpur::kMeiste)
        fault = {at, "hat zu viele Spuren"};
    for (const CSzenenSpur& track : tracks) {
        if (fault.reason.empty())
            fault = Check(track, Below(at, array.size()));
        Object object;
        const auto put = [&object](std::string_view name, base::JsonValue value) {
            object.push_back({std::string(name), std::move(value)});
        };
        put("name", track.name);
        put("centre", Array{track.mitte.x, track.mitte.y});
        if (track.winkel != 0.0)
            put("angle", track.winkel);
        const CSzenenSpur defaults;
        for (const auto& [name, field] : kSwitches)
            if (track.*field != defaults.*field)
                put(name, track.*field);
        Array points;
        for (const CDPoint& point : track.punkte)
            points.emplace_back(Array{point.x, point.y});
        put("points", std::move(points));
        const base::JsonParsed others = base::ParseJson(track.weiteres);
        if (const auto* members = others.value ? others.value->As<Object>() : nullptr)
            Append(object, *members);
        array.emplace_back(std::move(object));
    }
    return array;
}

} // namespace casefile::case_file
