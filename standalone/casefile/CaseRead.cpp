// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "casefile/CaseFields.h"
#include "casefile/CaseFile.h"
#include "casefile/CasePictures.h"
#include "casefile/CaseTracks.h"
#include "casefile/JsonFields.h"
#include "host/CRuvData.h"
#include "krn/CaseUnknown.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <iterator>
#include <limits>
#include <memory>
#include <optional>
#include <utility>

namespace casefile
{
namespace
{

using namespace case_file;
using Object = base::JsonValue::Object;
using Array = base::JsonValue::Array;

struct Version {
    int major = 0;
    int minor = 0;
};

/// "1.0"
std::optional<Version> ParseVersion(const base::JsonValue* value)
{
    const auto* text = value ? value->As<std::string>() : nullptr;
    if (!text)
        return std::nullopt;
    Version version;
    const char* const end = text->data() + text->size();
    const auto [dot, majorError] = std::from_chars(text->data(), end, version.major);
    if (majorError != std::errc() || dot == end || *dot != '.')
        return std::nullopt;
    const auto [rest, minorError] = std::from_chars(dot + 1, end, version.minor);
    if (minorError != std::errc() || rest != end || version.major < 1 || version.minor < 0)
        return std::nullopt;
    return version;
}

std::string ShownNumber(double number)
{
    char digits[32];
    return {digits, std::to_chars(digits, digits + sizeof digits, number).ptr};
}

/// Fills a case from the tree. Each step returns false after noting what is wrong and where.
class Reader
{
  public:
    explicit Reader(CRuvData& data) : m_data(data) {}

    std::string pointer;
    std::string reason;

    bool ReadCase(const Object& root)
    {
        m_data.unknown->root = OtherMembers(root, kRootNames);
        if (!ReadText(root, "", "title", m_data.Title()))
            return false;
        if (const base::JsonValue* value = Find(root, "details")) {
            const auto* details = value->As<Object>();
            if (!details)
                return Refuse("/details", "ist kein Objekt");
            for (const auto& [name, text] : kDetails)
                if (!ReadText(*details, "/details", name, m_data.Angaben().*text))
                    return false;
            m_data.unknown->details = OtherMembers(*details, kDetailNames);
        }
        if (const base::JsonValue* value = Find(root, "parameters")) {
            const auto* parameters = value->As<Object>();
            if (!parameters)
                return Refuse("/parameters", "ist kein Objekt");
            if (!ReadNumbers(*parameters, "/parameters", kCaseNumbers, m_data.FallParameter()))
                return false;
            m_data.unknown->parameters = OtherMembers(*parameters, kCaseParameterNames);
        }
        const base::JsonValue* vehicles = Find(root, "vehicles");
        if (vehicles && !ForEachItem(*vehicles, "/vehicles", [this](const Object& vehicle, const std::string& at) {
                return ReadVehicle(vehicle, at);
            }))
            return false;
        const base::JsonValue* masks = Find(root, "masks");
        const base::JsonValue* scene = Find(root, "scene");
        const base::JsonValue* video = Find(root, "video");
        return (!masks || ReadMasks(*masks)) && (!scene || ReadScene(*scene)) && (!video || ReadVideo(*video));
    }

  private:
    bool Refuse(std::string at, std::string why)
    {
        pointer = std::move(at);
        reason = std::move(why);
        return false;
    }

    template <class ReadItem>
    bool ForEachItem(const base::JsonValue& value, const std::string& at, const ReadItem& readItem)
    {
        const auto* array = value.As<Array>();
        if (!array)
            return Refuse(at, "ist keine Liste");
        for (std::size_t i = 0; i < array->size(); ++i) {
            const auto* item = (*array)[i].As<Object>();
            if (!item)
                return Refuse(Below(at, i), "ist kein Objekt");
            if (!readItem(*item, Below(at, i)))
                return false;
        }
        return true;
    }

    bool ReadText(const Object& object, const std::string& at, std::string_view name, std::string& field)
    {
        const base::JsonValue* value = Find(object, name);
        const auto* text = value ? value->As<std::string>() : nullptr;
        if (value && !text)
            return Refuse(Below(at, name), "ist kein Text");
        field = text ? *text : std::string();
        return true;
    }

    /// The member when it is there.
    bool ReadNumber(const Object& object, const std::string& at, std::string_view name, double minimum, double maximum,
                    double& field)
    {
        const base::JsonValue* value = Find(object, name);
        if (!value)
            return true;
        const auto number = value->Number();
        if (!number)
            return Refuse(Below(at, name), "ist keine Zahl");
        if (*number < minimum || *number > maximum)
            return Refuse(Below(at, name),
                          "liegt außerhalb von " + ShownNumber(minimum) + " bis " + ShownNumber(maximum));
        field = *number;
        return true;
    }

    template <class T, std::size_t N>
    bool ReadNumbers(const Object& object, const std::string& at, const NumberField<T> (&fields)[N], T& target)
    {
        return std::all_of(
            std::begin(fields), std::end(fields),
            [&](const NumberField<T>& f) {
                return ReadNumber(object, at, f.name, f.minimum, f.maximum, target.*f.field);
            });
    }

    /// A whole number; `field` stays when the member is missing and not required.
    bool ReadInteger(const Object& object, const std::string& at, std::string_view name, std::int64_t minimum,
                     std::int64_t maximum, bool required, std::int64_t& field)
    {
        const base::JsonValue* value = Find(object, name);
        if (!value)
            return !required || Refuse(Below(at, name), "fehlt");
        const auto number = value->Integer();
        if (!number || *number < minimum || *number > maximum) {
            return Refuse(Below(at, name),
                          "ist keine ganze Zahl von " + std::to_string(minimum) + " bis " + std::to_string(maximum));
        }
        field = *number;
        return true;
    }

    bool ReadVehicle(const Object& object, const std::string& at)
    {
        std::int64_t index = 0;
        if (!ReadInteger(object, at, "index", 0, CRuvData::kFahrzeuge - 1, true, index))
            return false;
        const auto vehicle = static_cast<std::size_t>(index);
        if (std::exchange(m_hasVehicle[vehicle], true))
            return Refuse(Below(at, "index"), "kommt zweimal vor");
        CRuvData::Unknown::Vehicle& unknown = m_data.unknown->vehicles[vehicle];
        unknown.vehicle = OtherMembers(object, kVehicleNames);
        CKfzDaten& kfz = m_data.KfzDat(vehicle);
        if (!ReadText(object, at, "name", kfz.name) || !ReadType(object, at, kfz.type) ||
            !ReadColor(object, at, kfz.color) || !ReadNumbers(object, at, kVehicleNumbers, kfz))
            return false;
        if (const base::JsonValue* value = Find(object, "parameters")) {
            const auto* parameters = value->As<Object>();
            if (!parameters)
                return Refuse(Below(at, "parameters"), "ist kein Objekt");
            if (!ReadParameters(*parameters, Below(at, "parameters"), m_data.UPa(vehicle)))
                return false;
            unknown.parameters = OtherMembers(*parameters, kParameterNames);
        }
        if (const base::JsonValue* value = Find(object, "pathTime")) {
            const auto* pathTime = value->As<Object>();
            if (!pathTime)
                return Refuse(Below(at, "pathTime"), "ist kein Objekt");
            unknown.pathTime = OtherMembers(*pathTime, kPathTimeNames);
            return ReadPathTime(*pathTime, Below(at, "pathTime"), m_data.WZDat(vehicle));
        }
        return true;
    }

    bool ReadType(const Object& object, const std::string& at, CKfzDaten::Type& type)
    {
        const base::JsonValue* value = Find(object, "type");
        if (!value)
            return Refuse(Below(at, "type"), "fehlt");
        const auto* name = value->As<std::string>();
        const auto known = std::find_if(std::begin(kTypes), std::end(kTypes),
                                        [name](const auto& entry) { return name && entry.first == *name; });
        if (known == std::end(kTypes))
            return Refuse(Below(at, "type"), "ist keine bekannte Fahrzeugart");
        type = known->second;
        return true;
    }

    bool ReadColor(const Object& object, const std::string& at, COLORREF& field)
    {
        const base::JsonValue* value = Find(object, "color");
        if (!value)
            return true;
        const auto color = ColorFromJson(*value);
        if (!color)
            return Refuse(Below(at, "color"), "ist keine Farbe wie „#rrggbb“");
        field = *color;
        return true;
    }

    bool ReadParameters(const Object& object, const std::string& at, CUBEParameter& parameters)
    {
        if (const base::JsonValue* value = Find(object, "modified")) {
            const auto* modified = value->As<bool>();
            if (!modified)
                return Refuse(Below(at, "modified"), "ist weder true noch false");
            parameters.modified = *modified;
        }
        const base::JsonValue* flags = Find(object, "updateFlags");
        const auto* list = flags ? flags->As<Array>() : nullptr;
        if (flags && !list)
            return Refuse(Below(at, "updateFlags"), "ist keine Liste");
        for (std::size_t i = 0; list && i < list->size(); ++i) {
            const auto flag = (*list)[i].Integer();
            if (!flag || *flag < 0 || *flag > kLargestFlag) {
                return Refuse(Below(Below(at, "updateFlags"), i),
                              "ist keine ganze Zahl von 0 bis " + std::to_string(kLargestFlag));
            }
            parameters.SetUpdateFlag(static_cast<unsigned>(*flag));
        }
        return true;
    }

    bool ReadPathTime(const Object& object, const std::string& at, CWegZeitDat& pathTime)
    {
        auto selected = static_cast<std::int64_t>(pathTime.selected);
        if (!ReadInteger(object, at, "selected", 0, CWegZeitDat::kSpalten - 1, false, selected) ||
            !ReadInteger(object, at, "mode", 0, kLargestMode, false, pathTime.mode) ||
            !ReadInteger(object, at, "marker", 0, kLargestMode, false, pathTime.marke) ||
            !ReadInteger(object, at, "lineMode", 0, kLargestMode, false, pathTime.bahnModus))
            return false;
        const base::JsonValue* line = Find(object, "line");
        if (line && !ReadPoints(*line, Below(at, "line"), pathTime.fahrlinie))
            return false;
        const base::JsonValue* rest = Find(object, "restPoint");
        if (rest && !ReadPoint(*rest, pathTime.endPunkt))
            return RefusePoint(Below(at, "restPoint"));
        if (!ReadNumber(object, at, "restHeading", -kQuantity, kQuantity, pathTime.endRichtung))
            return false;
        pathTime.selected = static_cast<std::size_t>(selected);
        const base::JsonValue* phases = Find(object, "phases");
        return !phases ||
               ForEachItem(*phases, Below(at, "phases"), [&](const Object& phase, const std::string& phaseAt) {
                   return ReadPhase(phase, phaseAt, pathTime);
               });
    }

    bool ReadPhase(const Object& object, const std::string& at, CWegZeitDat& pathTime)
    {
        std::int64_t column = 0;
        std::int64_t kind = 0;
        std::int64_t subKind = 0;
        std::int64_t side = kSeiteUnbestimmt;
        if (!ReadInteger(object, at, "column", 0, CWegZeitDat::kSpalten - 1, true, column) ||
            !ReadInteger(object, at, "kind", 1, kLargestKind, true, kind) ||
            !ReadInteger(object, at, "subKind", -kLargestSubKind, kLargestSubKind, false, subKind) ||
            !ReadInteger(object, at, "side", kSeiteLinks, kSeiteUnbestimmt, false, side))
            return false;
        CWegZeitSpalte& phase = pathTime.spalten[static_cast<std::size_t>(column)];
        if (phase.IsUsed())
            return Refuse(Below(at, "column"), "kommt zweimal vor");
        phase.art = static_cast<PhasenArt>(kind);
        phase.unterArt = static_cast<int>(subKind);
        phase.seite = static_cast<int>(side);
        const base::JsonValue* trajectory = Find(object, "trajectory");
        if (!ReadNumbers(object, at, kPhaseNumbers, phase) ||
            (trajectory && !ReadPoints(*trajectory, Below(at, "trajectory"), phase.bahn)))
            return false;
        Object others = OtherMembers(object, kPhaseNames);
        if (!others.empty())
            phase.weiteres = base::WriteJson(std::move(others), base::JsonLayout::oneLine);
        return true;
    }

    bool RefusePoint(std::string at) { return Refuse(std::move(at), "ist kein Punkt [x, y] in cm"); }

    static bool ReadPoint(const base::JsonValue& value, CDPoint& point)
    {
        const auto* pair = value.As<Array>();
        const auto coordinate = [&](std::size_t i) {
            constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
            return pair && pair->size() == 2 ? (*pair)[i].Number().value_or(kNone) : kNone;
        };
        point = {coordinate(0), coordinate(1)};
        return std::abs(point.x) <= kLargestCoordinate && std::abs(point.y) <= kLargestCoordinate;
    }

    bool ReadPoints(const base::JsonValue& value, const std::string& at, std::vector<CDPoint>& points)
    {
        const auto* array = value.As<Array>();
        if (!array)
            return Refuse(at, "ist keine Liste");
        points.reserve(array->size());
        for (std::size_t i = 0; i < array->size(); ++i) {
            CDPoint point;
            if (!ReadPoint((*array)[i], point))
                return RefusePoint(Below(at, i));
            points.push_back(point);
        }
        return true;
    }

    bool ReadScene(const base::JsonValue& value)
    {
        const auto* scene = value.As<Object>();
        if (!scene)
            return Refuse("/scene", "ist kein Objekt");
        m_data.unknown->scene = OtherMembers(*scene, kSceneNames);
        const base::JsonValue* pictures = Find(*scene, "pictures");
        const base::JsonValue* tracks = Find(*scene, "tracks");
        Fault fault = pictures ? ReadPictures(*pictures, "/scene/pictures", m_data.Bilder()) : Fault{};
        if (fault.reason.empty() && tracks)
            fault = ReadTracks(*tracks, "/scene/tracks", m_data.Spuren());
        return fault.reason.empty() || Refuse(std::move(fault.pointer), std::move(fault.reason));
    }

    bool ReadVideo(const base::JsonValue& value)
    {
        const auto* video = value.As<Object>();
        if (!video)
            return Refuse("/video", "ist kein Objekt");
        m_data.unknown->video = OtherMembers(*video, kVideoNames);
        CVideoQuelle& source = m_data.Video();
        if (!ReadText(*video, "/video", "file", source.datei) || !ReadText(*video, "/video", "sha256", source.sha256))
            return false;
        Fault fault = CheckVideo(source);
        return fault.reason.empty() || Refuse(std::move(fault.pointer), std::move(fault.reason));
    }

    bool ReadMasks(const base::JsonValue& value)
    {
        const auto* masks = value.As<Object>();
        if (!masks)
            return Refuse("/masks", "ist kein Objekt");
        return std::all_of(masks->begin(), masks->end(), [this](const base::JsonValue::Member& mask) {
            const std::string at = Below("/masks", mask.name);
            UINT number = 0;
            const char* const end = mask.name.data() + mask.name.size();
            const auto parsed = std::from_chars(mask.name.data(), end, number);
            if (parsed.ec != std::errc() || std::to_string(number) != mask.name || number > kLargestMask)
                return Refuse(at, "ist keine Nummer einer Maske");
            const auto* fields = mask.value.As<Object>();
            if (!fields)
                return Refuse(at, "ist kein Objekt");
            return ReadMask(*fields, at, m_data.MaskenWerte(number));
        });
    }

    bool ReadMask(const Object& fields, const std::string& at, CMaskenWerte& values)
    {
        for (const base::JsonValue::Member& field : fields) {
            const auto* array = field.value.As<Array>();
            if (!array)
                return Refuse(Below(at, field.name), "ist keine Liste von Zahlen");
            std::vector<double>& numbers = values[field.name];
            for (std::size_t i = 0; i < array->size(); ++i) {
                const auto number = (*array)[i].Number();
                if (!number)
                    return Refuse(Below(Below(at, field.name), i), "ist keine Zahl");
                numbers.push_back(*number);
            }
        }
        return true;
    }

    CRuvData& m_data;
    std::array<bool, CRuvData::kFahrzeuge> m_hasVehicle{};
};

} // namespace

CaseRead ReadCase(const base::JsonValue& value)
{
    const auto refused = [](CaseOutcome outcome, std::string pointer, std::string reason) {
        return CaseRead{nullptr, {outcome, std::move(pointer), std::move(reason), ""}};
    };
    const auto* root = value.As<Object>();
    const base::JsonValue* format = root ? Find(*root, "format") : nullptr;
    const auto* formatName = format ? format->As<std::string>() : nullptr;
    if (!formatName || *formatName != kFormat)
        return refused(CaseOutcome::damaged, "", "ist kein Fall dieses Programms");
    const auto version = ParseVersion(Find(*root, "version"));
    if (!version)
        return refused(CaseOutcome::damaged, "/version", "ist keine Versionsnummer wie „1.0“");
    const std::string newer = "stammt aus einer neueren Version des Programms (Format " +
                              std::to_string(version->major) + "." + std::to_string(version->minor) + ")";
    if (version->major > kMajor)
        return refused(CaseOutcome::newerVersion, "", newer);
    auto read = std::make_unique<CRuvData>();
    read->unknown = std::make_unique<CRuvData::Unknown>();
    read->unknown->minorVersion = version->minor;
    Reader reader(*read);
    if (!reader.ReadCase(*root)) {
        if (version->minor > kMinor)
            return refused(CaseOutcome::newerVersion, "", newer + ": " + reader.pointer + " " + reader.reason);
        return refused(CaseOutcome::damaged, reader.pointer, reader.reason);
    }
    return {std::move(read), {}};
}

CaseResult CaseFromJson(std::string_view json, CRuvData& data)
{
    const base::JsonParsed parsed = base::ParseJson(json);
    if (!parsed.value)
        return {CaseOutcome::damaged, "", parsed.error, ""};
    CaseRead read = ReadCase(*parsed.value);
    if (read.data)
        ReplaceCase(data, std::move(*read.data));
    return std::move(read.result);
}

} // namespace casefile
