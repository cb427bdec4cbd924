// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "base/Utf.h"
#include "casefile/CaseFields.h"
#include "casefile/CaseFile.h"
#include "casefile/CasePictures.h"
#include "casefile/CaseTracks.h"
#include "casefile/JsonFields.h"
#include "host/CRuvData.h"
#include "krn/CaseUnknown.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace casefile
{
namespace
{

using namespace case_file;
using Object = base::JsonValue::Object;
using Array = base::JsonValue::Array;

bool HasWay(const CWegZeitDat& pathTime)
{
    return !pathTime.fahrlinie.empty() || std::any_of(
                                              pathTime.spalten.begin(), pathTime.spalten.end(),
                                              [](const CWegZeitSpalte& column) { return column.IsUsed(); });
}

bool IsWritten(const CRuvData& data, std::size_t vehicle)
{
    return data.KfzDat(vehicle).IsValid() || HasWay(data.WZRechDat(vehicle));
}

/// The lowest version that has all that the case holds.
int NeededMinor(const CRuvData& data)
{
    if (!(data.Video() == CVideoQuelle{}))
        return kVideoMinor;
    if (!data.Spuren().empty())
        return kTracksMinor;
    if (!(data.Angaben() == CFallAngaben{}))
        return kDetailsMinor;
    if (!(data.FallParameter() == CFallParameter{}))
        return kParametersMinor;
    for (std::size_t i = 0; i < CRuvData::kFahrzeuge; ++i) {
        const CWegZeitDat& pathTime = data.WZRechDat(i);
        if (IsWritten(data, i) && (data.KfzDat(i).payload != 0.0 || pathTime.marke != 0 || !pathTime.fahrlinie.empty()))
            return kParametersMinor;
    }
    return data.Bilder().empty() ? 0 : kSceneMinor;
}

/// Builds the tree, checking what the reader would check. The first value that cannot be written is noted.
class Writer
{
  public:
    explicit Writer(const CRuvData& data) : m_data(data) {}

    std::string pointer;
    std::string reason;

    Object Case()
    {
        const int needed = NeededMinor(m_data);
        const int minor = m_data.unknown ? std::max(needed, m_data.unknown->minorVersion) : needed;
        Object root;
        Put(root, "format", std::string(kFormat));
        Put(root, "version", std::to_string(kMajor) + "." + std::to_string(minor));
        Put(root, "title", Text(m_data.Title(), "/title"));
        Object details;
        for (const auto& [name, text] : kDetails)
            if (const std::string& value = m_data.Angaben().*text; !value.empty())
                Put(details, name, Text(value, Below("/details", name)));
        if (m_data.unknown)
            Append(details, m_data.unknown->details);
        if (!details.empty())
            Put(root, "details", std::move(details));
        Object parameters;
        PutNumbers(parameters, kCaseNumbers, m_data.FallParameter(), "/parameters");
        if (m_data.unknown)
            Append(parameters, m_data.unknown->parameters);
        if (!parameters.empty())
            Put(root, "parameters", std::move(parameters));
        Array vehicles;
        for (std::size_t i = 0; i < CRuvData::kFahrzeuge; ++i)
            if (IsWritten(m_data, i))
                vehicles.emplace_back(Vehicle(i, Below("/vehicles", vehicles.size())));
        Put(root, "vehicles", std::move(vehicles));
        Object masks;
        for (const auto& [number, values] : m_data.AlleMaskenWerte()) {
            if (!values.empty()) {
                const std::string name = std::to_string(number);
                Check(number <= kLargestMask, Below("/masks", name), "ist keine Nummer einer Maske");
                Put(masks, name, Mask(values, Below("/masks", name)));
            }
        }
        if (!masks.empty())
            Put(root, "masks", std::move(masks));
        if (Object scene = Scene(); !scene.empty())
            Put(root, "scene", std::move(scene));
        if (Object video = Video(); !video.empty())
            Put(root, "video", std::move(video));
        if (m_data.unknown)
            Append(root, m_data.unknown->root);
        return root;
    }

  private:
    static void Put(Object& object, std::string_view name, base::JsonValue value)
    {
        object.push_back({std::string(name), std::move(value)});
    }

    Object Scene()
    {
        Object scene;
        if (!m_data.Bilder().empty()) {
            Fault fault;
            Put(scene, "pictures", PicturesToJson(m_data.Bilder(), "/scene/pictures", fault));
            Check(fault.reason.empty(), fault.pointer, fault.reason);
        }
        if (!m_data.Spuren().empty()) {
            Fault fault;
            Put(scene, "tracks", TracksToJson(m_data.Spuren(), "/scene/tracks", fault));
            Check(fault.reason.empty(), fault.pointer, fault.reason);
        }
        if (m_data.unknown)
            Append(scene, m_data.unknown->scene);
        return scene;
    }

    Object Video()
    {
        Object video;
        if (const CVideoQuelle& source = m_data.Video(); !(source == CVideoQuelle{})) {
            const Fault fault = CheckVideo(source);
            Check(fault.reason.empty(), fault.pointer, fault.reason);
            Put(video, "file", source.datei);
            Put(video, "sha256", source.sha256);
        }
        if (m_data.unknown)
            Append(video, m_data.unknown->video);
        return video;
    }

    void Check(bool sound, const std::string& at, const std::string& why)
    {
        if (!sound && reason.empty()) {
            pointer = at;
            reason = why;
        }
    }

    base::JsonValue Text(const std::string& text, const std::string& at)
    {
        Check(base::IsUtf8(text), at, "ist kein gültiger Text (UTF-8)");
        return text;
    }

    base::JsonValue Number(double number, double minimum, double maximum, const std::string& at, std::string_view name)
    {
        if (!(number >= minimum && number <= maximum))
            Check(false, Below(at, name),
                  std::isfinite(number) ? "liegt außerhalb des zulässigen Bereichs" : "ist keine Zahl");
        return number;
    }

    base::JsonValue Integer(std::int64_t number, std::int64_t minimum, std::int64_t maximum, const std::string& at)
    {
        Check(number >= minimum && number <= maximum, at, "liegt außerhalb des zulässigen Bereichs");
        return number;
    }

    template <class T, std::size_t N>
    void PutNumbers(Object& object, const NumberField<T> (&fields)[N], const T& source, const std::string& at)
    {
        const T defaults{};
        for (const NumberField<T>& f : fields) {
            const double number = source.*f.field;
            if (f.always || !(number == defaults.*f.field))
                Put(object, f.name, Number(number, f.minimum, f.maximum, at, f.name));
        }
    }

    base::JsonValue Vehicle(std::size_t index, const std::string& at)
    {
        const CKfzDaten& kfz = m_data.KfzDat(index);
        const CRuvData::Unknown::Vehicle* unknown = m_data.unknown ? &m_data.unknown->vehicles[index] : nullptr;
        Object object;
        Put(object, "index", static_cast<std::int64_t>(index));
        Put(object, "name", Text(kfz.name, Below(at, "name")));
        Put(object, "type", Type(kfz.type, Below(at, "type")));
        Check(kfz.color <= 0xFFFFFFU, Below(at, "color"), "ist keine Farbe");
        Put(object, "color", ColorToJson(kfz.color));
        PutNumbers(object, kVehicleNumbers, kfz, at);
        Object parameters;
        if (m_data.UPa(index).modified)
            Put(parameters, "modified", true);
        if (const std::uint64_t flags = m_data.UPa(index).updateFlags; flags != 0) {
            Array numbers;
            for (std::int64_t flag = 0; flag <= kLargestFlag; ++flag)
                if ((flags >> flag & 1U) != 0)
                    numbers.emplace_back(flag);
            Put(parameters, "updateFlags", std::move(numbers));
        }
        if (unknown)
            Append(parameters, unknown->parameters);
        if (!parameters.empty())
            Put(object, "parameters", std::move(parameters));
        Put(object, "pathTime", PathTime(m_data.WZRechDat(index), unknown, Below(at, "pathTime")));
        if (unknown)
            Append(object, unknown->vehicle);
        return object;
    }

    static bool IsPlace(const CDPoint& point)
    {
        return std::abs(point.x) <= kLargestCoordinate && std::abs(point.y) <= kLargestCoordinate;
    }

    base::JsonValue Type(CKfzDaten::Type type, const std::string& at)
    {
        const auto known = std::find_if(std::begin(kTypes), std::end(kTypes),
                                        [type](const auto& entry) { return entry.second == type; });
        Check(known != std::end(kTypes), at, "ist keine bekannte Fahrzeugart");
        return std::string(known == std::end(kTypes) ? "" : known->first);
    }

    base::JsonValue PathTime(const CWegZeitDat& pathTime, const CRuvData::Unknown::Vehicle* unknown,
                             const std::string& at)
    {
        Object object;
        Put(object, "selected",
            Integer(static_cast<std::int64_t>(pathTime.selected), 0, CWegZeitDat::kSpalten - 1, Below(at, "selected")));
        Put(object, "mode", Integer(pathTime.mode, 0, kLargestMode, Below(at, "mode")));
        if (pathTime.marke != 0)
            Put(object, "marker", Integer(pathTime.marke, 0, kLargestMode, Below(at, "marker")));
        Array phases;
        for (std::size_t column = 0; column < CWegZeitDat::kSpalten; ++column) {
            if (pathTime.spalten[column].IsUsed()) {
                const std::string phaseAt = Below(Below(at, "phases"), phases.size());
                phases.emplace_back(Phase(column, pathTime.spalten[column], phaseAt));
            }
        }
        Put(object, "phases", std::move(phases));
        if (pathTime.bahnModus != 0)
            Put(object, "lineMode", Integer(pathTime.bahnModus, 0, kLargestMode, Below(at, "lineMode")));
        if (!pathTime.fahrlinie.empty())
            Put(object, "line", Points(pathTime.fahrlinie, Below(at, "line")));
        if (!(pathTime.endPunkt == CDPoint{})) {
            Check(IsPlace(pathTime.endPunkt), Below(at, "restPoint"), "ist kein Punkt [x, y] in cm");
            Put(object, "restPoint", Array{pathTime.endPunkt.x, pathTime.endPunkt.y});
        }
        if (pathTime.endRichtung != 0.0)
            Put(object, "restHeading", Number(pathTime.endRichtung, -kQuantity, kQuantity, at, "restHeading"));
        if (unknown)
            Append(object, unknown->pathTime);
        return object;
    }

    base::JsonValue Points(const std::vector<CDPoint>& places, const std::string& at)
    {
        Array points;
        points.reserve(places.size());
        for (const CDPoint& point : places) {
            if (!IsPlace(point))
                Check(false, Below(at, points.size()), "ist kein Punkt [x, y] in cm");
            points.emplace_back(Array{point.x, point.y});
        }
        return points;
    }

    base::JsonValue Phase(std::size_t column, const CWegZeitSpalte& phase, const std::string& at)
    {
        Object object;
        Put(object, "column", static_cast<std::int64_t>(column));
        Put(object, "kind", Integer(static_cast<int>(phase.art), 1, kLargestKind, Below(at, "kind")));
        if (phase.unterArt != 0)
            Put(object, "subKind", Integer(phase.unterArt, -kLargestSubKind, kLargestSubKind, Below(at, "subKind")));
        PutNumbers(object, kPhaseNumbers, phase, at);
        if (phase.seite != kSeiteUnbestimmt)
            Put(object, "side", Integer(phase.seite, kSeiteLinks, kSeiteUnbestimmt, Below(at, "side")));
        if (!phase.bahn.empty())
            Put(object, "trajectory", Points(phase.bahn, Below(at, "trajectory")));
        if (!phase.weiteres.empty()) {
            const base::JsonParsed others = base::ParseJson(phase.weiteres);
            if (const auto* members = others.value ? others.value->As<Object>() : nullptr)
                Append(object, *members);
        }
        return object;
    }

    base::JsonValue Mask(const CMaskenWerte& values, const std::string& at)
    {
        Object object;
        for (const auto& [name, numbers] : values) {
            const std::string fieldAt = Below(at, name);
            Array array;
            array.reserve(numbers.size());
            for (const double number : numbers) {
                if (!std::isfinite(number))
                    Check(false, Below(fieldAt, array.size()), "ist keine Zahl");
                array.emplace_back(number);
            }
            Check(base::IsUtf8(name), at, "hat einen Wert, dessen Name kein gültiger Text (UTF-8) ist");
            Put(object, name, std::move(array));
        }
        return object;
    }

    const CRuvData& m_data;
};

} // namespace

CaseResult CaseToJson(const CRuvData& data, std::string& json)
{
    Writer writer(data);
    const base::JsonValue root = writer.Case();
    if (!writer.reason.empty())
        return {CaseOutcome::invalidValue, writer.pointer, writer.reason, ""};
    if (!base::FitsLimits(root))
        return {CaseOutcome::invalidValue, "", "enthält zu viele Werte", ""};
    std::string text = base::WriteJson(root, base::JsonLayout::readable);
    if (text.size() > base::kJsonMaxBytes)
        return {CaseOutcome::invalidValue, "", "ist zu groß", ""};
    json = std::move(text);
    return {};
}

} // namespace casefile
