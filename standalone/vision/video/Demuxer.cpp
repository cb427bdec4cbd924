// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Goes through MP4, MOV and AVI files with libav, which fills in nothing: only what a file says counts.
#include "vision/video/Demuxer.h"

#include "base/FileSystem.h"
#include "host/Progress.h"
#include "vision/video/PictureOrder.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <limits>
#include <numbers>
#include <string_view>

namespace vision
{
namespace
{

/// Longer videos are refused: more than 40 hours at 30 pictures per second.
constexpr std::size_t kMaxPackets = 5'000'000;
/// A single allocation of libav.
constexpr std::size_t kMaxAllocation = std::size_t{1} << 29U;
/// A sample aspect beyond these is a mistake in the file.
constexpr double kMaxAspect = 8.0;
constexpr int kProgressSteps = 200;

struct Dictionary {
    ~Dictionary() { av_dict_free(&entries); }
    Dictionary() = default;
    Dictionary(const Dictionary&) = delete;
    Dictionary& operator=(const Dictionary&) = delete;
    AVDictionary* entries = nullptr;
};

std::uint32_t LittleEndian(std::string_view bytes, std::size_t at)
{
    std::uint32_t value = 0;
    for (std::size_t i = 4; i-- > 0;)
        value = value << 8U | static_cast<unsigned char>(bytes[at + i]);
    return value;
}

/// Whether an AVI file says how long a picture is shown; libav would assume something.
bool AviHasFrameLength(const std::string& path)
{
    std::string header(std::size_t{1} << 16U, '\0');
    const auto native = base::NativePath(path);
    if (!native)
        return false;
    std::ifstream file(*native, std::ios::binary);
    file.read(header.data(), static_cast<std::streamsize>(header.size()));
    header.resize(static_cast<std::size_t>(file.gcount()));
    constexpr std::size_t kScale = 28; // dwScale and dwRate of a stream header behind its name and size
    const auto stream = header.find("vids");
    if (stream != std::string::npos && stream >= 8 && stream - 8 + kScale + 8 <= header.size())
        if (LittleEndian(header, stream - 8 + kScale) != 0 && LittleEndian(header, stream - 8 + kScale + 4) != 0)
            return true;
    const auto main = header.find("avih");
    return main != std::string::npos && main + 12 <= header.size() && LittleEndian(header, main + 8) != 0;
}

/// How pictures are to be shown: x' = a·x + c·y, y' = b·x + d·y, stored as a, b, 0, c, d (ISO/IEC 14496-12, 8.3.2).
std::array<double, 4> DisplayMatrix(const AVStream& stream)
{
    std::size_t size = 0;
    const std::uint8_t* data = av_stream_get_side_data(&stream, AV_PKT_DATA_DISPLAYMATRIX, &size);
    if (data == nullptr || size < 9 * sizeof(std::int32_t))
        return {1.0, 0.0, 0.0, 1.0};
    std::array<std::int32_t, 9> matrix{};
    std::copy_n(reinterpret_cast<const std::int32_t*>(data), matrix.size(), matrix.begin());
    return {static_cast<double>(matrix[0]), static_cast<double>(matrix[1]), static_cast<double>(matrix[3]),
            static_cast<double>(matrix[4])};
}

/// Degrees clockwise, to the nearest quarter turn: where the x axis goes.
int RotationOf(const AVStream& stream)
{
    const auto [a, b, c, d] = DisplayMatrix(stream);
    const int quarters = static_cast<int>(std::lround(std::atan2(b, a) / (std::numbers::pi / 2.0)));
    return (quarters + 4) % 4 * 90;
}

/// Ticks of the time base in s, exact where a double is.
double Seconds(std::int64_t ticks, AVRational base)
{
    return static_cast<double>(ticks) * base.num / base.den;
}

} // namespace

bool Demuxer::IsAvi() const
{
    return std::string_view(m_format->iformat->name) == "avi";
}

bool Demuxer::IsMirrored() const
{
    const auto [a, b, c, d] = DisplayMatrix(Stream());
    return a * d - b * c < 0.0;
}

std::string Demuxer::Open(const std::string& path)
{
    av_log_set_level(AV_LOG_QUIET);
    av_max_alloc(kMaxAllocation);
    m_path = path;
    m_format.reset();
    m_stream = -1;
    const auto native = base::NativePath(path);
    std::error_code error;
    const auto status = native ? std::filesystem::status(*native, error) : std::filesystem::file_status();
    if (!native || status.type() == std::filesystem::file_type::not_found)
        return "Die Datei gibt es nicht.";
    if (!std::filesystem::is_regular_file(status))
        return "Das ist keine gewöhnliche Datei.";
    if (std::filesystem::file_size(*native, error) == 0)
        return "Die Datei ist leer.";

    Dictionary options;
    av_dict_set(&options.entries, "protocol_whitelist", "file", 0);
    av_dict_set(&options.entries, "format_whitelist", "mov,avi", 0);
    AVFormatContext* context = nullptr;
    const int opened = avformat_open_input(&context, ("file:" + path).c_str(), nullptr, &options.entries);
    if (opened < 0)
        return opened == AVERROR(EACCES) ? "Die Datei darf nicht gelesen werden."
                                         : "Die Datei ist kein MP4-, MOV- oder AVI-Video, oder sie ist beschädigt.";
    m_format.reset(context);
    m_format->flags |= AVFMT_FLAG_NOFILLIN | AVFMT_FLAG_NOPARSE;
    for (unsigned i = 0; i < m_format->nb_streams; ++i) {
        AVStream& stream = *m_format->streams[i];
        const bool isCover = (stream.disposition & AV_DISPOSITION_ATTACHED_PIC) != 0;
        if (m_stream < 0 && stream.codecpar->codec_type == AVMEDIA_TYPE_VIDEO && !isCover)
            m_stream = static_cast<int>(i);
        else
            stream.discard = AVDISCARD_ALL;
    }
    if (m_stream < 0)
        return "Die Datei enthält kein Video.";
    const AVCodecParameters& parameters = *Stream().codecpar;
    if (static_cast<std::int64_t>(parameters.width) * parameters.height > kMaxPixels)
        return "Die Bilder des Videos sind zu groß.";
    if (IsAvi() && !AviHasFrameLength(path))
        return "Die Datei sagt nicht, wie lange ein Bild dauert.";
    return {};
}

bool Demuxer::Next(AVPacket& packet)
{
    while (m_format) {
        av_packet_unref(&packet);
        if (av_read_frame(m_format.get(), &packet) < 0)
            return false;
        // Empty chunks of an AVI hold their picture's place in time and nothing else.
        if (packet.stream_index == m_stream && packet.size > 0)
            return true;
    }
    return false;
}

bool Demuxer::Read(const StoredPacket& wanted, AVPacket& packet)
{
    const auto find = [&] {
        while (Next(packet)) {
            if (packet.pos == wanted.position && packet.dts == wanted.dts)
                return true;
            if (packet.dts > wanted.dts)
                return false;
        }
        return false;
    };
    // Without a file when it could not be opened again; then that is tried anew.
    if (m_format && av_seek_frame(m_format.get(), m_stream, wanted.dts, AVSEEK_FLAG_BACKWARD) >= 0 && find())
        return true;
    // What its index does not find is found by going through the file, if it is still the same.
    const std::string path = m_path;
    return Open(path).empty() && avio_size(m_format->pb) == m_size && find();
}

void Demuxer::Describe(VideoIndex& index, const AVFrame& picture) const
{
    index.width = picture.width;
    index.height = picture.height;
    const AVRational stored = av_guess_sample_aspect_ratio(m_format.get(), m_format->streams[m_stream], nullptr);
    const AVRational aspect = stored.num > 0 ? stored : picture.sample_aspect_ratio;
    const double ratio = aspect.num > 0 && aspect.den > 0 ? av_q2d(aspect) : 1.0;
    if (ratio > 1.0 / kMaxAspect && ratio < kMaxAspect)
        index.width = std::max(1, static_cast<int>(std::lround(index.width * ratio)));
    index.rotation = RotationOf(Stream());
    if (index.rotation % 180 != 0)
        std::swap(index.width, index.height);
}

std::string Demuxer::List(PacketList& list)
{
    list = {};
    const PacketPtr packet(av_packet_alloc());
    PictureOrder order(*Stream().codecpar);
    const bool avi = IsAvi();
    std::vector<std::int64_t> times; // of each packet, as stored
    m_size = avio_size(m_format->pb);
    const std::int64_t size = std::max<std::int64_t>(1, m_size);
    std::int64_t nextReport = 0;
    while (Next(*packet)) {
        if (list.packets.size() == kMaxPackets)
            return "Das Video hat zu viele Bilder.";
        if (packet->dts == AV_NOPTS_VALUE || (!avi && packet->pts == AV_NOPTS_VALUE))
            return "Die Zeiten der Bilder sind unlesbar.";
        StoredPacket stored;
        stored.position = packet->pos;
        stored.dts = packet->dts;
        stored.key = (packet->flags & AV_PKT_FLAG_KEY) != 0;
        stored.damaged = (packet->flags & AV_PKT_FLAG_CORRUPT) != 0;
        const bool hidden = (packet->flags & AV_PKT_FLAG_DISCARD) != 0;
        stored.shown = hidden ? -1 : 0;
        list.packets.push_back(stored);
        times.push_back(avi ? packet->dts : packet->pts);
        if (avi)
            order.Add(*packet);
        if (const std::int64_t at = avio_tell(m_format->pb); at >= nextReport) {
            nextReport = at + size / kProgressSteps + 1;
            const double part = std::min(1.0, static_cast<double>(at) / static_cast<double>(size));
            if (RuvProgress("Video lesen", part) == Work::cancel)
                return "Das Lesen des Videos wurde abgebrochen.";
        }
    }

    for (std::size_t i = 0; i < list.packets.size(); ++i)
        if (list.packets[i].shown == 0)
            list.packetOf.push_back(static_cast<int>(i));
    if (list.packetOf.empty())
        return "Das Video enthält kein Bild.";
    const auto timeOf = [&](int i) { return times[static_cast<std::size_t>(i)]; };
    if (avi) {
        // Picture k has the place in time of the k-th chunk that is not empty, whichever order they are stored in.
        std::sort(times.begin(), times.end());
        list.packetOf = order.Shown();
        list.index.counted = order.Reorders();
    } else {
        std::stable_sort(list.packetOf.begin(), list.packetOf.end(),
                         [&](int a, int b) { return timeOf(a) < timeOf(b); });
        std::vector<std::int64_t> shown;
        std::transform(list.packetOf.begin(), list.packetOf.end(), std::back_inserter(shown), timeOf);
        times = std::move(shown);
    }
    const AVRational base = Stream().time_base;
    if (base.num <= 0 || base.den <= 0)
        return "Die Zeiten der Bilder sind unlesbar.";
    for (std::size_t k = 0; k < list.packetOf.size(); ++k) {
        list.packets[static_cast<std::size_t>(list.packetOf[k])].shown = static_cast<int>(k);
        std::int64_t ticks = 0;
        if (__builtin_sub_overflow(times[k], times.front(), &ticks))
            return "Die Zeiten der Bilder sind unlesbar.";
        list.index.times.push_back(Seconds(ticks, base));
    }
    const double last = list.index.times.back();
    const auto count = static_cast<double>(list.index.times.size());
    if (list.index.times.size() > 1 && !(last > 0.0))
        return "Alle Bilder des Videos haben dieselbe Zeit.";
    list.index.fps = last > 0.0 ? (count - 1.0) / last : 0.0;
    // Of an MP4 what edit lists leave, hidden pictures included; an AVI counts its empty chunks too.
    const std::int64_t found = avi ? times.back() + 1 : static_cast<std::int64_t>(list.packets.size());
    const std::int64_t stated = avi ? Stream().nb_frames : avformat_index_get_entries_count(&Stream());
    const std::int64_t promised = std::min<std::int64_t>(stated, std::numeric_limits<int>::max());
    list.index.missing = static_cast<int>(std::max<std::int64_t>(0, promised - std::max<std::int64_t>(0, found)));
    return {};
}

} // namespace vision
