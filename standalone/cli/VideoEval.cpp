// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The vision library for scripts. What a file leaves out is not assumed to be measured; what it has too much is an
// error, so that a typing mistake is not taken for a default.
#include "cli/VideoEval.h"

#include "base/FileSystem.h"
#include "base/JsonValue.h"
#include "cli/JsonText.h"
#include "host/vision/CVideoReader.h"
#include "host/vision/VideoAnalysis.h"
#include "host/vision/VideoSpeeds.h"
#include "host/vision/VideoTracks.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <map>
#include <stdexcept>

namespace cli
{
namespace
{

using base::JsonValue;

constexpr std::size_t kMaxBytes = std::size_t{64} << 20U;
constexpr double kMaxPixels = 100000.0; ///< of a picture's width and height
constexpr std::size_t kMaxBoxes = 200;  ///< in a frame
constexpr double kBoxHeight = 0.72;     ///< m, of a box's centre above the road, when the file says nothing

/// What is wrong with a file, German.
struct Refusal : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// The members of an object, each asked for once; those that nobody asked for are a mistake.
class Members
{
  public:
    Members(const JsonValue& value, std::string where)
        : m_object(value.As<JsonValue::Object>()), m_where(std::move(where))
    {
        if (m_object == nullptr)
            throw Refusal(m_where + " ist kein Objekt");
    }
    const JsonValue* Find(std::string_view name)
    {
        m_known.emplace_back(name);
        return base::Find(*m_object, name);
    }
    /// The number, within the limits.
    double Number(std::string_view name, double low, double high, std::optional<double> otherwise = std::nullopt)
    {
        const JsonValue* value = Find(name);
        if (value == nullptr && otherwise)
            return *otherwise;
        const auto number = value != nullptr ? value->Number() : std::nullopt;
        if (!number || !(*number >= low && *number <= high))
            Refuse(name);
        return *number;
    }
    [[noreturn]] void Refuse(std::string_view name) const
    {
        throw Refusal("in " + m_where + " fehlt „" + std::string(name) + "“ oder hat keinen möglichen Wert");
    }
    void RefuseOthers() const
    {
        for (const JsonValue::Member& member : *m_object)
            if (std::find(m_known.begin(), m_known.end(), member.name) == m_known.end())
                throw Refusal("in " + m_where + " ist „" + member.name + "“ unbekannt");
    }

  private:
    const JsonValue::Object* m_object;
    std::string m_where;
    std::vector<std::string> m_known;
};

constexpr double kLarge = 1e9;

/// `count` numbers in an array, or more.
std::vector<double> Numbers(const JsonValue& value, std::size_t count, const std::string& where)
{
    const auto* array = value.As<JsonValue::Array>();
    std::vector<double> numbers;
    for (std::size_t i = 0; array != nullptr && i < array->size(); ++i)
        if (const auto number = (*array)[i].Number(); number && *number >= -kLarge && *number <= kLarge)
            numbers.push_back(*number);
    if (array == nullptr || numbers.size() != array->size() || numbers.size() < count)
        throw Refusal(where + " ist keine Liste von " + std::to_string(count) + " Zahlen");
    return numbers;
}

/// What finds the vehicles when the file names a video.
struct Search {
    std::string video;
    std::string model; ///< empty: the one beside the program
    double minArea = 0.0;
    double maxArea = 0.0;
};

struct Job {
    RoadInput road{};
    std::array<std::optional<VisionPoint>, 4> points{};
    SpeedInput speed{};
    std::map<int, std::vector<VideoEntry>> tracks{}; ///< of clicks
    std::vector<std::pair<double, std::vector<VideoBox>>> frames{};
    std::optional<Search> search{};
    bool isClicked = false;
};

VideoBox BoxOf(const JsonValue& value, const std::string& where)
{
    if (value.As<JsonValue::Object>() == nullptr) {
        const auto n = Numbers(value, 4, where);
        return {n[0], n[1], n[2], n[3]};
    }
    Members box(value, where);
    VideoBox result{box.Number("x", -kLarge, kLarge), box.Number("y", -kLarge, kLarge), box.Number("w", 0.0, kLarge),
                    box.Number("h", 0.0, kLarge)};
    for (const std::string_view known : {"class", "score"})
        box.Find(known);
    box.RefuseOthers();
    return result;
}

void ReadFrames(const JsonValue::Array& frames, Job& job)
{
    double before = -kLarge;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        const std::string where = "frames[" + std::to_string(i) + "]";
        Members frame(frames[i], where);
        const double time = frame.Number("t", before, kLarge);
        before = time;
        const JsonValue* boxes = frame.Find("boxes");
        const auto* list = boxes != nullptr ? boxes->As<JsonValue::Array>() : nullptr;
        if (list == nullptr || list->size() > kMaxBoxes)
            frame.Refuse("boxes");
        frame.RefuseOthers();
        std::vector<VideoBox> found;
        for (const JsonValue& box : *list)
            found.push_back(BoxOf(box, where + ".boxes"));
        job.frames.emplace_back(time, std::move(found));
    }
}

void ReadClicks(const JsonValue::Array& clicks, Job& job)
{
    for (std::size_t i = 0; i < clicks.size(); ++i) {
        Members click(clicks[i], "clicks[" + std::to_string(i) + "]");
        const auto id = static_cast<int>(click.Number("id", 1.0, 1e6, 1.0));
        std::vector<VideoEntry>& track = job.tracks[id];
        VideoEntry entry;
        entry.time = click.Number("t", track.empty() ? -kLarge : track.back().time, kLarge);
        entry.frame = static_cast<int>(click.Number("frame", 0.0, kLarge, static_cast<double>(i)));
        entry.point = {click.Number("x", -kLarge, kLarge), click.Number("y", -kLarge, kLarge)};
        click.RefuseOthers();
        track.push_back(entry);
    }
}

RectifyPattern PatternOf(const JsonValue* value, const Members& members)
{
    static constexpr std::pair<std::string_view, RectifyPattern> kPatterns[] = {
        {"square", RectifyPattern::square},
        {"trapez", RectifyPattern::trapez},
        {"rhombus L", RectifyPattern::rhombusL},
        {"rhombus R", RectifyPattern::rhombusR}};
    if (value == nullptr)
        return RectifyPattern::square;
    const auto* name = value->As<std::string>();
    for (const auto& [known, pattern] : kPatterns)
        if (name != nullptr && *name == known)
            return pattern;
    members.Refuse("pattern");
}

/// Names of files are meant from the folder of the JSON file.
std::string FileBeside(const std::string& path, const JsonValue* name)
{
    const auto* text = name != nullptr ? name->As<std::string>() : nullptr;
    const auto folder = base::NativePath(path);
    const auto file = text != nullptr && !text->empty() ? base::NativePath(*text) : std::nullopt;
    if (!folder || !file)
        throw Refusal("der Name einer Datei ist unlesbar");
    const auto whole = (folder->parent_path() / *file).u8string();
    return {whole.begin(), whole.end()};
}

Job ReadJob(const JsonValue& json, const std::string& path)
{
    Job job;
    Members all(json, "der Datei");
    const JsonValue* video = all.Find("video");
    if (video != nullptr) {
        job.search = Search{FileBeside(path, video),
                            {},
                            all.Number("minArea", 0.0, kLarge, 0.0),
                            all.Number("maxArea", 0.0, kLarge, 0.0)};
        if (const JsonValue* model = all.Find("model"))
            job.search->model = FileBeside(path, model);
    } else {
        job.road.width = static_cast<int>(all.Number("width", 1.0, kMaxPixels));
        job.road.height = static_cast<int>(all.Number("height", 1.0, kMaxPixels));
        job.speed.fps = all.Number("fps", 0.0, 1e6, 0.0);
    }
    if (const JsonValue* points = all.Find("points")) {
        const auto* list = points->As<JsonValue::Array>();
        if (list == nullptr || list->size() > job.points.size())
            all.Refuse("points");
        for (std::size_t i = 0; i < list->size(); ++i) {
            const auto point = Numbers((*list)[i], 2, "points[" + std::to_string(i) + "]");
            job.points[i] = VisionPoint{point[0], point[1]};
        }
    }
    if (const JsonValue* distances = all.Find("distances")) {
        const auto numbers = Numbers(*distances, job.road.distances.size(), "distances");
        std::copy_n(numbers.begin(), job.road.distances.size(), job.road.distances.begin());
    }
    job.road.pattern = PatternOf(all.Find("pattern"), all);
    if (const JsonValue* strict = all.Find("strict")) {
        if (strict->As<bool>() == nullptr)
            all.Refuse("strict");
        job.road.strict = *strict->As<bool>();
    }
    constexpr double kMaxStrength = CDistortionRectifier::kMaxStrength;
    job.road.strength = all.Number("strength", -kMaxStrength, kMaxStrength, 0.0);
    if (const JsonValue* factor = all.Find("factor"); factor != nullptr && factor->As<std::monostate>() == nullptr)
        job.speed.factor = all.Number("factor", 0.0, 100.0);
    const JsonValue* frames = all.Find("frames");
    const JsonValue* clicks = all.Find("clicks");
    if ((frames != nullptr) + (clicks != nullptr) + (video != nullptr) != 1)
        throw Refusal("von „frames“, „clicks“ und „video“ muss genau eines da sein");
    job.isClicked = clicks != nullptr;
    job.speed.pointHeight = all.Number("pointHeight", 0.0, 100.0, job.isClicked ? 0.0 : kBoxHeight);
    if (video != nullptr) {
        all.RefuseOthers();
        return job;
    }
    const auto* list = (job.isClicked ? clicks : frames)->As<JsonValue::Array>();
    if (list == nullptr)
        all.Refuse(job.isClicked ? "clicks" : "frames");
    all.RefuseOthers();
    if (job.isClicked)
        ReadClicks(*list, job);
    else
        ReadFrames(*list, job);
    return job;
}

void WriteOptional(JsonText& json, const std::optional<double>& value)
{
    if (value)
        json.Number(*value);
    else
        json.Null();
}

template <class T, class F> void WriteList(JsonText& json, std::string_view key, const std::vector<T>& list, F write)
{
    json.Key(key).BeginArray();
    for (const T& element : list)
        write(element);
    json.EndArray();
}

void WriteTrack(JsonText& json, int id, const std::vector<VideoEntry>& entries, const std::vector<VideoSpeed>& speeds)
{
    json.BeginObject();
    json.Key("id").Integer(id);
    WriteList(
        json, "t", entries, [&](const VideoEntry& e) { json.Number(e.time); });
    WriteList(
        json, "frame", entries, [&](const VideoEntry& e) { json.Integer(e.frame); });
    WriteList(
        json, "x", entries, [&](const VideoEntry& e) { json.Number(e.point.x); });
    WriteList(
        json, "y", entries, [&](const VideoEntry& e) { json.Number(e.point.y); });
    WriteList(
        json, "v", speeds, [&](const VideoSpeed& s) { json.Number(s.speed); });
    WriteList(
        json, "vTime", speeds, [&](const VideoSpeed& s) { json.Number(s.time); });
    WriteList(
        json, "vFrame", speeds, [&](const VideoSpeed& s) { json.Integer(s.frame); });
    WriteList(
        json, "u", speeds, [&](const VideoSpeed& s) { json.Number(s.uncertainty); });
    WriteList(
        json, "label", speeds, [&](const VideoSpeed& s) { json.Integer(s.label); });
    WriteList(json, "fit", speeds, [&](const VideoSpeed& s) { WriteOptional(json, s.smooth); });
    json.EndObject();
}

CPerspectiveRectifier RoadOf(const Job& job)
{
    CPerspectiveRectifier road;
    for (std::size_t i = 0; i < job.points.size(); ++i)
        if (job.points[i])
            road.UpdatePoint(static_cast<int>(i), *job.points[i]);
    road.EstimateRectificationMap(job.road);
    return road;
}

/// Every frame of the video; what its reader says of it goes into the job. Returns what the user is to know, German.
std::string Analyze(Job& job)
{
    CVideoReader reader;
    if (reader.OpenVideo(job.search->video) == 0)
        throw Refusal(job.search->video + ": " + reader.Reason());
    if (job.search->model.empty())
        job.search->model = DetectorModelPath().value_or("");
    CYoloV5ORTDetector detector = StandardDetector();
    if (detector.ReadModel(job.search->model, {}) == 0)
        throw Refusal(job.search->model + ": " + detector.Reason());
    job.road.width = reader.GetWidth();
    job.road.height = reader.GetHeight();
    job.speed.fps = reader.GetFPS();
    const CPerspectiveRectifier road = RoadOf(job);
    CDistortionRectifier lens;
    lens.SetCameraParam(job.road.width, job.road.height, job.road.strength);
    VideoTracks tracks(job.road.width, job.road.height);
    const FrameSearch with{&detector, &road, &lens, job.search->minArea, job.search->maxArea};
    const AnalysisResult result = AnalyzeVideo(reader, with, tracks, [](int, int) { return true; });
    if (result.end != AnalysisEnd::complete)
        throw Refusal(job.search->video + ": " + result.reason);
    job.tracks = tracks.Tracks();
    return result.unreadable == 0
               ? std::string()
               : std::to_string(result.unreadable) + " Bilder des Videos sind beschädigt und wurden ausgelassen";
}

std::string Results(Job& job)
{
    const CPerspectiveRectifier road = RoadOf(job);
    const bool calibrated = road.Fault() == RoadFault::none;
    if (!job.isClicked && !job.search) {
        VideoTracks tracks(job.road.width, job.road.height);
        for (std::size_t i = 0; i < job.frames.size(); ++i)
            tracks.Add(road, job.frames[i].first, static_cast<int>(i), job.frames[i].second);
        job.tracks = tracks.Tracks();
    }
    std::optional<VideoSpeeds> speeds;
    if (calibrated)
        speeds.emplace(road, job.speed);

    JsonText json;
    json.BeginObject();
    json.Key("why").Text(Explain(road.Fault()));
    json.Key("rate").Number(road.GetRateRealDistToRectifiedPixels());
    json.Key("residuals").BeginArray();
    for (const auto& residual : road.Residuals())
        WriteOptional(json, residual);
    json.EndArray();
    WriteOptional(json.Key("focal"), road.Focal());
    WriteOptional(json.Key("cameraHeight"), road.CameraHeight());
    WriteOptional(json.Key("factor"), speeds ? std::optional(speeds->Factor()) : std::nullopt);
    // The mean of one vehicle; of several there is none.
    const auto mean =
        speeds && job.tracks.size() == 1 ? speeds->Mean(job.tracks.begin()->second) : std::optional<MeanSpeed>();
    WriteOptional(json.Key("mean"), mean ? std::optional(mean->speed) : std::nullopt);
    WriteOptional(json.Key("meanU"), mean ? std::optional(mean->uncertainty) : std::nullopt);
    json.Key("tracks").BeginArray();
    for (const auto& [id, entries] : job.tracks)
        WriteTrack(json, id, entries, speeds ? speeds->Of(entries) : std::vector<VideoSpeed>());
    json.EndArray();
    json.EndObject();
    return json.Take();
}

} // namespace

FileResult EvalVideoIndex(const std::string& path)
{
    CVideoReader reader;
    if (reader.OpenVideo(path) == 0)
        return {{exitFile, reader.Reason()}, {}};
    JsonText json;
    json.BeginObject();
    WriteList(json, "times", reader.FrameTimes(), [&](double time) { json.Number(time); });
    json.Key("width").Integer(reader.GetWidth());
    json.Key("height").Integer(reader.GetHeight());
    json.Key("rotation").Integer(reader.Rotation());
    json.Key("counted").Bool(reader.IsCounted());
    json.EndObject();
    FileResult result{{}, json.Take()};
    result.failure.exit = exitDone;
    if (const int missing = reader.MissingFrames(); missing > 0)
        result.failure.text = "die Datei ist abgeschnitten, es fehlen " + std::to_string(missing) + " Bilder";
    return result;
}

FileResult EvalVideoSpeeds(const std::string& path)
{
    std::string text;
    if (const int error = base::ReadAll(path, text, kMaxBytes, base::Source::any); error != 0)
        return {{exitFile, base::SystemErrorText(error)}, {}};
    const base::JsonParsed parsed = base::ParseJson(text);
    if (!parsed.value)
        return {{exitFile, parsed.error}, {}};
    try {
        Job job = ReadJob(*parsed.value, path);
        FileResult result;
        if (job.search)
            result.failure.text = Analyze(job);
        result.json = Results(job);
        return result;
    } catch (const Refusal& refusal) {
        return {{exitFile, refusal.what()}, {}};
    }
}

} // namespace cli
