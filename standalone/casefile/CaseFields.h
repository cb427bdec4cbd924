// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Names and ranges of the case file's members, for its reader and its writer.
#pragma once

#include "base/JsonValue.h"
#include "casefile/CaseFile.h"
#include "host/CRuvData.h"
#include "krn/PhaseMotion.h"

#include <array>
#include <string>
#include <string_view>
#include <utility>

namespace casefile::case_file
{

inline constexpr std::string_view kFormat = "tavelin-case";
inline constexpr int kMajor = 1;
inline constexpr int kMinor = kCaseMinorVersion;
/// The first versions that know the scene; parameters of the case, payload, marker and driving line; details; the video
/// and recorded tracks in the scene. A case without them is written as the version before.
inline constexpr int kSceneMinor = 1;
inline constexpr int kParametersMinor = 2;
inline constexpr int kDetailsMinor = 3;
inline constexpr int kVideoMinor = 4;
inline constexpr int kTracksMinor = 4;

inline constexpr std::pair<std::string_view, std::string CFallAngaben::*> kDetails[] = {
    {"date", &CFallAngaben::datum},
    {"place", &CFallAngaben::ort},
    {"author", &CFallAngaben::bearbeiter},
};
inline constexpr std::string_view kDetailNames[] = {"date", "place", "author"};

/// A number that belongs to the case, a vehicle or a phase. One that is not `always` written is left out at its
/// default.
template <class T> struct NumberField {
    std::string_view name;
    double T::*field;
    double minimum;
    double maximum;
    bool always;
};

inline constexpr double kLargestLength = 1e6; // m, and kg
using Parameter = CFallParameter;
inline constexpr NumberField<Parameter> kCaseNumbers[] = {
    {"airDensity", &Parameter::luftdichte, 0.0, 100.0, false},
};

using Kfz = CKfzDaten;
inline constexpr NumberField<Kfz> kVehicleNumbers[] = {
    {"mass", &Kfz::mass, 0.0, kLargestLength, true},
    {"payload", &Kfz::payload, 0.0, kLargestLength, false},
    {"length", &Kfz::length, 0.0, kLargestLength, true},
    {"width", &Kfz::width, 0.0, kLargestLength, true},
    {"height", &Kfz::height, 0.0, kLargestLength, true},
    {"wheelbase", &Kfz::wheelbase, 0.0, kLargestLength, true},
    {"track", &Kfz::track, 0.0, kLargestLength, true},
    {"frontOverhang", &Kfz::frontOverhang, -kLargestLength, kLargestLength, true},
    {"rearOverhang", &Kfz::rearOverhang, -kLargestLength, kLargestLength, true},
    {"turningCircle", &Kfz::turningCircle, 0.0, kLargestLength, true},
    {"turningCircleExtra", &Kfz::turningCircleExtra, -kLargestLength, kLargestLength, true},
    {"steeringRatio", &Kfz::steeringRatio, -kLargestLength, kLargestLength, true},
};

inline constexpr double kQuantity = krn::kLargestPhaseQuantity;
inline constexpr double kLargestSum = 48.0 * kQuantity;
inline constexpr double kLargestRadius = 1e21; // "straight" is 1e20 in places
inline constexpr double kLargestCoordinate = 1e12;
using Spalte = CWegZeitSpalte;
inline constexpr NumberField<Spalte> kPhaseNumbers[] = {
    {"endSpeed", &Spalte::vEnd, -kQuantity, kQuantity, true},
    {"startSpeed", &Spalte::vAnf, -kQuantity, kQuantity, true},
    {"deceleration", &Spalte::verz, -kQuantity, kQuantity, true},
    {"time", &Spalte::zeit, -kQuantity, kQuantity, true},
    {"path", &Spalte::weg, -kQuantity, kQuantity, true},
    {"sumTime", &Spalte::sumZeit, -kLargestSum, kLargestSum, true},
    {"sumPath", &Spalte::sumWeg, -kLargestSum, kLargestSum, true},
    {"thresholdTime", &Spalte::schwellDauer, -kQuantity, kQuantity, false},
    {"startRadius", &Spalte::radiusAnf, -kLargestRadius, kLargestRadius, false},
    {"endRadius", &Spalte::radiusEnd, -kLargestRadius, kLargestRadius, false},
    {"steeringTime", &Spalte::lenkZeit, -kQuantity, kQuantity, false},
    {"direction", &Spalte::richtung, -kQuantity, kQuantity, false},
    {"endPath", &Spalte::endWeg, -kLargestCoordinate, kLargestCoordinate, false},
    {"endYaw", &Spalte::endGier, -kQuantity, kQuantity, false},
};

inline constexpr std::pair<std::string_view, Kfz::Type> kTypes[] = {
    {"none", Kfz::Type::none},       {"car", Kfz::Type::car},
    {"truck", Kfz::Type::truck},     {"motorcycle", Kfz::Type::motorcycle},
    {"bicycle", Kfz::Type::bicycle}, {"pedestrian", Kfz::Type::pedestrian},
};

inline constexpr std::int64_t kLargestKind = 99;
inline constexpr std::int64_t kLargestSubKind = 1'000'000;
inline constexpr std::int64_t kLargestMode = 99;
inline constexpr std::int64_t kLargestFlag = 63;
inline constexpr std::int64_t kLargestMask = 65535;

inline constexpr std::string_view kRootNames[] = {"format",   "version", "title", "details", "parameters",
                                                  "vehicles", "masks",   "scene", "video"};
inline constexpr std::string_view kVideoNames[] = {"file", "sha256"};
inline constexpr std::string_view kParameterNames[] = {"modified", "updateFlags"};
inline constexpr std::string_view kPathTimeNames[] = {"selected", "mode", "marker",    "phases",
                                                      "lineMode", "line", "restPoint", "restHeading"};

/// The names of the numbers.
template <class T, std::size_t N> constexpr auto With(const NumberField<T> (&numbers)[N])
{
    std::array<std::string_view, N> all{};
    for (std::size_t i = 0; i < N; ++i)
        all[i] = numbers[i].name;
    return all;
}
/// `names` and those of the numbers.
template <class T, std::size_t N, std::size_t M>
constexpr auto With(const NumberField<T> (&numbers)[N], const std::string_view (&names)[M])
{
    std::array<std::string_view, N + M> all{};
    for (std::size_t i = 0; i < M; ++i)
        all[i] = names[i];
    for (std::size_t i = 0; i < N; ++i)
        all[M + i] = numbers[i].name;
    return all;
}
inline constexpr auto kCaseParameterNames = With(kCaseNumbers);
inline constexpr auto kVehicleNames =
    With(kVehicleNumbers, {"index", "name", "type", "color", "parameters", "pathTime"});
inline constexpr auto kPhaseNames = With(kPhaseNumbers, {"column", "kind", "subKind", "side", "trajectory"});

/// A JSON pointer one step further.
inline std::string Below(const std::string& pointer, std::string_view name)
{
    std::string below = pointer + "/";
    for (const char c : name)
        below += c == '~' ? "~0" : c == '/' ? "~1" : std::string(1, c);
    return below;
}
inline std::string Below(const std::string& pointer, std::size_t index)
{
    return pointer + "/" + std::to_string(index);
}

} // namespace casefile::case_file
