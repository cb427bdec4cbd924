// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "casefile/CasePictures.h"

#include "base/Utf.h"
#include "casefile/CaseFields.h"
#include "casefile/JsonFields.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace casefile::case_file
{
namespace
{

using Object = base::JsonValue::Object;
using Array = base::JsonValue::Array;

constexpr std::size_t kHashDigits = 64;
constexpr std::int64_t kLargestSide = 100'000; // pixels

constexpr NumberField<CSzenenBild> kNumbers[] = {
    {"metresPerPixel", &CSzenenBild::meterProPixel, 1e-6, 1e4, true},
    {"angle", &CSzenenBild::winkel, -kQuantity, kQuantity, false},
    {"opacity", &CSzenenBild::deckkraft, 0.0, 1.0, false},
};
constexpr std::pair<std::string_view, bool CSzenenBild::*> kSwitches[] = {
    {"visible", &CSzenenBild::sichtbar},
    {"locked", &CSzenenBild::gesperrt},
};
constexpr auto kNames = With(kNumbers, {"file", "sha256", "size", "centre", "visible", "locked"});

bool IsHash(const std::string& text)
{
    return text.size() == kHashDigits && text.find_first_not_of("0123456789abcdef") == std::string::npos;
}

bool IsSide(std::int64_t side)
{
    return side >= 1 && side <= kLargestSide;
}

bool IsPlace(const CDPoint& point)
{
    return std::abs(point.x) <= kLargestCoordinate && std::abs(point.y) <= kLargestCoordinate;
}

constexpr const char* kNoFile = "ist kein Dateiname";
constexpr const char* kNoHash = "ist keine Prüfsumme aus 64 Ziffern";
constexpr const char* kNoSize = "ist keine Größe [Breite, Höhe] in Pixeln";
constexpr const char* kNoPlace = "ist kein Punkt [x, y] in cm";
constexpr const char* kOutOfRange = "ist keine Zahl oder liegt außerhalb des zulässigen Bereichs";

/// What is wrong with a picture, whoever asks.
Fault Check(const CSzenenBild& picture, const std::string& at)
{
    if (picture.datei.empty() || !base::IsUtf8(picture.datei))
        return {Below(at, "file"), kNoFile};
    if (!IsHash(picture.sha256))
        return {Below(at, "sha256"), kNoHash};
    if (!IsSide(picture.breite) || !IsSide(picture.hoehe))
        return {Below(at, "size"), kNoSize};
    if (!IsPlace(picture.mitte))
        return {Below(at, "centre"), kNoPlace};
    for (const auto& field : kNumbers)
        if (!(picture.*field.field >= field.minimum && picture.*field.field <= field.maximum))
            return {Below(at, field.name), kOutOfRange};
    return {};
}

/// Both numbers of a pair, or nothing.
std::optional<CDPoint> Pair(const base::JsonValue* value)
{
    const auto* pair = value == nullptr ? nullptr : value->As<Array>();
    if (pair == nullptr || pair->size() != 2)
        return std::nullopt;
    const auto x = (*pair)[0].Number();
    const auto y = (*pair)[1].Number();
    return x && y ? std::optional(CDPoint{*x, *y}) : std::nullopt;
}

std::string TextOf(const Object& object, std::string_view name)
{
    const base::JsonValue* value = Find(object, name);
    const auto* text = value == nullptr ? nullptr : value->As<std::string>();
    return text == nullptr ? std::string() : *text;
}

Fault ReadPicture(const Object& object, const std::string& at, CSzenenBild& picture)
{
    picture.datei = TextOf(object, "file");
    picture.sha256 = TextOf(object, "sha256");
    const auto size = Pair(Find(object, "size"));
    if (size && std::abs(size->x) <= kLargestSide && std::abs(size->y) <= kLargestSide) {
        picture.breite = static_cast<std::int64_t>(size->x);
        picture.hoehe = static_cast<std::int64_t>(size->y);
    }
    if (const base::JsonValue* centre = Find(object, "centre")) {
        const auto place = Pair(centre);
        if (!place)
            return {Below(at, "centre"), kNoPlace};
        picture.mitte = *place;
    }
    for (const auto& field : kNumbers) {
        const base::JsonValue* value = Find(object, field.name);
        const auto number = value == nullptr ? std::optional(picture.*field.field) : value->Number();
        if (!number)
            return {Below(at, field.name), kOutOfRange};
        picture.*field.field = *number;
    }
    for (const auto& [name, field] : kSwitches) {
        const base::JsonValue* value = Find(object, name);
        if (value != nullptr && value->As<bool>() == nullptr)
            return {Below(at, name), "ist weder true noch false"};
        if (value != nullptr)
            picture.*field = *value->As<bool>();
    }
    Object others = OtherMembers(object, kNames);
    if (!others.empty())
        picture.weiteres = base::WriteJson(std::move(others), base::JsonLayout::oneLine);
    return Check(picture, at);
}

} // namespace

Fault ReadPictures(const base::JsonValue& value, const std::string& at, std::vector<CSzenenBild>& pictures)
{
    const auto* array = value.As<Array>();
    if (array == nullptr || array->size() > CSzenenBild::kMeiste)
        return {at, "ist keine Liste von höchstens " + std::to_string(CSzenenBild::kMeiste) + " Bildern"};
    for (std::size_t i = 0; i < array->size(); ++i) {
        const auto* object = (*array)[i].As<Object>();
        if (object == nullptr)
            return {Below(at, i), "ist kein Objekt"};
        CSzenenBild picture;
        if (Fault fault = ReadPicture(*object, Below(at, i), picture); !fault.reason.empty())
            return fault;
        pictures.push_back(std::move(picture));
    }
    return {};
}

Fault CheckVideo(const CVideoQuelle& video)
{
    if (video.datei.empty() || !base::IsUtf8(video.datei))
        return {"/video/file", kNoFile};
    return IsHash(video.sha256) ? Fault{} : Fault{"/video/sha256", kNoHash};
}

base::JsonValue::Array PicturesToJson(const std::vector<CSzenenBild>& pictures, const std::string& at, Fault& fault)
{
    Array array;
    if (pictures.size() > CSzenenBild::kMeiste)
        fault = {at, "hat zu viele Bilder"};
    for (const CSzenenBild& picture : pictures) {
        if (fault.reason.empty())
            fault = Check(picture, Below(at, array.size()));
        Object object;
        const auto put = [&object](std::string_view name, base::JsonValue value) {
            object.push_back({std::string(name), std::move(value)});
        };
        put("file", picture.datei);
        put("sha256", picture.sha256);
        put("size", Array{picture.breite, picture.hoehe});
        put("centre", Array{picture.mitte.x, picture.mitte.y});
        const CSzenenBild defaults;
        for (const auto& field : kNumbers)
            if (field.always || picture.*field.field != defaults.*field.field)
                put(field.name, picture.*field.field);
        for (const auto& [name, field] : kSwitches)
            if (picture.*field != defaults.*field)
                put(name, picture.*field);
        const base::JsonParsed others = base::ParseJson(picture.weiteres);
        if (const auto* members = others.value ? others.value->As<Object>() : nullptr)
            Append(object, *members);
        array.emplace_back(std::move(object));
    }
    return array;
}

} // namespace casefile::case_file
