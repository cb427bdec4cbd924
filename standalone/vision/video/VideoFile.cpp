// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Decodes from the key picture before the one wanted; what comes out carries the number of its packet, so that no
// guess about times is needed. The last pictures are kept for stepping back.
#include "vision/video/VideoFile.h"

#include <opencv2/core.hpp>

#include <algorithm>
#include <cmath>
#include <thread>

namespace vision
{
namespace
{

constexpr std::size_t kKeptBytes = std::size_t{256} << 20U; ///< of decoded pictures
constexpr unsigned kMaxThreads = 4;
/// When the key picture before is none after all, an earlier one is tried; the last try is from the start.
constexpr int kTries = 3;
/// A video of which this many pictures from the first on cannot be decoded is none.
constexpr int kTriedPictures = 50;
constexpr int kAlign = 32; ///< px that a row of the scaler may write beyond its end

/// Upside down: each plane from its last row upwards. The rows themselves belong to the decoder and stay.
void TurnOver(AVFrame& frame)
{
    const AVPixFmtDescriptor* format = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
    if (format == nullptr)
        return;
    const bool hasPalette = (format->flags & AV_PIX_FMT_FLAG_PAL) != 0;
    for (int plane = 0; plane < (hasPalette ? 1 : 4) && frame.data[plane] != nullptr; ++plane) {
        const int shift = plane == 1 || plane == 2 ? format->log2_chroma_h : 0;
        const int rows = -(-frame.height >> shift);
        frame.data[plane] += static_cast<std::ptrdiff_t>(rows - 1) * frame.linesize[plane];
        frame.linesize[plane] = -frame.linesize[plane];
    }
}

std::size_t BytesOf(const AVFrame& frame)
{
    std::size_t bytes = 0;
    for (const AVBufferRef* buffer : frame.buf)
        bytes += buffer != nullptr ? static_cast<std::size_t>(buffer->size) : 0U;
    return bytes;
}

/// Width and height before the pictures are turned, px.
std::pair<int, int> StoredSize(const VideoIndex& index)
{
    return index.rotation % 180 != 0 ? std::pair(index.height, index.width) : std::pair(index.width, index.height);
}

/// Of a row that the scaler writes, px.
int RowLength(int width)
{
    return (width + 2 * kAlign - 1) / kAlign * kAlign;
}

/// The matrix of a picture that names none: BT.709 from 720 rows on, BT.601 below.
int MatrixOf(const AVFrame& frame)
{
    if (frame.colorspace != AVCOL_SPC_UNSPECIFIED && frame.colorspace != AVCOL_SPC_RGB)
        return frame.colorspace;
    return frame.height >= 720 ? SWS_CS_ITU709 : SWS_CS_ITU601;
}

} // namespace

std::string VideoFile::Open(const std::string& path)
{
    if (std::string reason = m_demuxer.Open(path); !reason.empty())
        return reason;
    if (std::string reason = m_demuxer.List(m_list); !reason.empty())
        return reason;
    m_mirrored = m_demuxer.IsMirrored();
    m_damaged.assign(m_list.packetOf.size(), false);
    for (std::size_t i = 0; i < m_list.packets.size(); ++i)
        if (m_list.packets[i].damaged)
            MarkDamaged(static_cast<int>(i));
    m_packet.reset(av_packet_alloc());
    if (std::string reason = OpenDecoder(); !reason.empty())
        return reason;
    m_next = -1;
    // The first picture that can be decoded says how large all are.
    for (int frame = 0; frame < std::min(kTriedPictures, static_cast<int>(m_damaged.size())); ++frame)
        if (const AVFrame* picture = Decode(frame)) {
            m_demuxer.Describe(m_list.index, *picture);
            return {};
        }
    return "Kein Bild des Videos kann gelesen werden.";
}

std::string VideoFile::OpenDecoder()
{
    const AVCodecParameters& parameters = *m_demuxer.Stream().codecpar;
    const AVCodec* codec = avcodec_find_decoder(parameters.codec_id);
    if (codec == nullptr)
        return "Die Bilder des Videos sind auf eine Art gespeichert, die nicht gelesen werden kann.";
    m_decoder.reset(avcodec_alloc_context3(codec));
    if (!m_decoder || avcodec_parameters_to_context(m_decoder.get(), &parameters) < 0)
        return "Der Kopf des Videos ist beschädigt.";
    // Threads by picture would report a damaged packet with another one.
    m_decoder->thread_type = FF_THREAD_SLICE;
    m_decoder->thread_count = static_cast<int>(std::clamp(std::thread::hardware_concurrency(), 1U, kMaxThreads));
    m_decoder->max_pixels = kMaxPixels;
    if (avcodec_open2(m_decoder.get(), codec, nullptr) < 0)
        return "Der Kopf des Videos ist beschädigt.";
    return {};
}

const AVFrame* VideoFile::Find(int frame) const
{
    for (const Kept& kept : m_kept)
        if (kept.frame == frame)
            return kept.picture.get();
    return nullptr;
}

void VideoFile::Keep(int frame, FramePtr picture)
{
    if (Find(frame) != nullptr)
        return;
    const std::size_t bytes = BytesOf(*picture);
    m_keptBytes += bytes;
    m_kept.push_back({frame, std::move(picture), bytes});
    while (m_keptBytes > kKeptBytes && m_kept.size() > 1) {
        m_keptBytes -= m_kept.front().bytes;
        m_kept.pop_front();
    }
}

/// What is predicted from a damaged picture shows its damage, up to the next key picture; no decoder says which does.
void VideoFile::MarkDamaged(int packet)
{
    for (auto i = static_cast<std::size_t>(packet); i < m_list.packets.size(); ++i) {
        if (i > static_cast<std::size_t>(packet) && m_list.packets[i].key)
            return;
        if (m_list.packets[i].shown >= 0)
            m_damaged[static_cast<std::size_t>(m_list.packets[i].shown)] = true;
    }
}

/// Takes what the decoder has ready; 0, or what is wrong with the packet sent.
int VideoFile::Receive()
{
    for (;;) {
        FramePtr picture(av_frame_alloc());
        if (!picture)
            return AVERROR(ENOMEM);
        if (const int received = avcodec_receive_frame(m_decoder.get(), picture.get()); received < 0)
            return received == AVERROR(EAGAIN) || received == AVERROR_EOF ? 0 : received;
        const std::int64_t packet = picture->pts;
        if (packet < 0 || packet >= static_cast<std::int64_t>(m_list.packets.size()))
            continue;
        const int shown = m_list.packets[static_cast<std::size_t>(packet)].shown;
        if (shown < 0)
            continue;
        m_lastShown = std::max(m_lastShown, shown);
        if (picture->decode_error_flags != 0 || (picture->flags & AV_FRAME_FLAG_CORRUPT) != 0)
            MarkDamaged(static_cast<int>(packet));
        if (m_mirrored)
            TurnOver(*picture);
        Keep(shown, std::move(picture));
    }
}

/// The packet m_next.
void VideoFile::Send(AVPacket& packet)
{
    const int number = m_next++;
    const bool isPart = (packet.flags & AV_PKT_FLAG_CORRUPT) != 0;
    packet.pts = number;
    packet.dts = AV_NOPTS_VALUE;
    int sent = AVERROR(EAGAIN);
    int received = 0;
    while (sent == AVERROR(EAGAIN)) {
        sent = avcodec_send_packet(m_decoder.get(), &packet);
        received = std::min(received, Receive());
    }
    // One picture less, or one that the file no longer holds whole.
    if (sent < 0 || received < 0 || isPart)
        MarkDamaged(number);
}

/// One packet further. False at the end.
bool VideoFile::Step()
{
    if (m_drained)
        return false;
    if (m_next < static_cast<int>(m_list.packets.size()) && m_demuxer.Next(*m_packet)) {
        Send(*m_packet);
        return true;
    }
    m_drained = true;
    avcodec_send_packet(m_decoder.get(), nullptr);
    Receive();
    return true;
}

/// Begins to decode at the key picture from which `frame` can be reached, or so many earlier.
bool VideoFile::StartBefore(int frame, int keysBack)
{
    int start = m_list.packetOf[static_cast<std::size_t>(frame)];
    for (; start > 0; --start) {
        const StoredPacket& packet = m_list.packets[static_cast<std::size_t>(start)];
        // Pictures shown before a key picture and stored behind it need what is stored before it.
        if (packet.key && packet.shown >= 0 && packet.shown <= frame && keysBack-- == 0)
            break;
    }
    avcodec_flush_buffers(m_decoder.get());
    m_drained = false;
    m_lastShown = -1;
    if (!m_demuxer.Read(m_list.packets[static_cast<std::size_t>(start)], *m_packet)) {
        m_next = -1;
        return false;
    }
    m_next = start;
    Send(*m_packet);
    return true;
}

const AVFrame* VideoFile::Decode(int frame)
{
    if (const AVFrame* kept = Find(frame))
        return kept;
    // Going on is as good as starting anew when no key picture lies between.
    const int wanted = m_list.packetOf[static_cast<std::size_t>(frame)];
    bool goesOn = m_next >= 0 && m_lastShown >= 0 && m_lastShown < frame;
    for (int i = std::max(m_next, 0); goesOn && i <= wanted; ++i) {
        const StoredPacket& packet = m_list.packets[static_cast<std::size_t>(i)];
        goesOn = !(packet.key && packet.shown >= 0 && packet.shown <= frame && i > m_next);
    }
    for (int attempt = goesOn ? -1 : 0; attempt < kTries; ++attempt) {
        const int keysBack = attempt == kTries - 1 ? static_cast<int>(m_list.packets.size()) : attempt;
        if (attempt >= 0 && !StartBefore(frame, keysBack))
            return nullptr;
        while (Find(frame) == nullptr && m_lastShown <= frame)
            if (!Step())
                break;
        if (const AVFrame* found = Find(frame))
            return found;
        if (m_list.packets[static_cast<std::size_t>(wanted)].damaged)
            break;
    }
    return nullptr;
}

bool VideoFile::Scale(const AVFrame& picture, ScalerPtr& scaler, AVPixelFormat format, int flags, std::uint8_t* rows,
                      int stride)
{
    const auto [width, height] = StoredSize(m_list.index);
    scaler.reset(sws_getCachedContext(scaler.release(), picture.width, picture.height,
                                      static_cast<AVPixelFormat>(picture.format), width, height, format, flags, nullptr,
                                      nullptr, nullptr));
    if (!scaler)
        return false;
    constexpr int kUnity = 1 << 16;
    sws_setColorspaceDetails(scaler.get(), sws_getCoefficients(MatrixOf(picture)),
                             picture.color_range == AVCOL_RANGE_JPEG ? 1 : 0, sws_getCoefficients(SWS_CS_DEFAULT), 1, 0,
                             kUnity, kUnity);
    std::uint8_t* const planes[4] = {rows, nullptr, nullptr, nullptr};
    const int strides[4] = {stride, 0, 0, 0};
    return sws_scale(scaler.get(), picture.data, picture.linesize, 0, picture.height, planes, strides) == height;
}

bool VideoFile::Convert(const AVFrame& picture, cv::Mat& image)
{
    const VideoIndex& index = m_list.index;
    const auto [width, height] = StoredSize(index);
    cv::Mat rows(height, RowLength(width), CV_8UC3);
    if (!Scale(picture, m_scaler, AV_PIX_FMT_BGR24, SWS_BICUBIC | SWS_ACCURATE_RND, rows.data,
               static_cast<int>(rows.step[0])))
        return false;
    const cv::Mat whole = rows(cv::Rect(0, 0, width, height));
    switch (index.rotation) {
    case 90:
        cv::rotate(whole, image, cv::ROTATE_90_CLOCKWISE);
        break;
    case 180:
        cv::rotate(whole, image, cv::ROTATE_180);
        break;
    case 270:
        cv::rotate(whole, image, cv::ROTATE_90_COUNTERCLOCKWISE);
        break;
    default:
        whole.copyTo(image);
    }
    return true;
}

bool VideoFile::Convert(const AVFrame& picture, drawing::Bitmap& shown)
{
    const VideoIndex& index = m_list.index;
    const auto [width, height] = StoredSize(index);
    const auto length = static_cast<std::size_t>(RowLength(width));
    m_rows.resize(length * static_cast<std::size_t>(height));
    // Blue, green, red, alpha: 0xFFRRGGBB of a little-endian machine.
    if (!Scale(picture, m_screenScaler, AV_PIX_FMT_BGRA, SWS_BILINEAR, reinterpret_cast<std::uint8_t*>(m_rows.data()),
               static_cast<int>(length * sizeof(std::uint32_t))))
        return false;
    shown.width = index.width;
    shown.height = index.height;
    shown.file.clear();
    shown.pixels.resize(static_cast<std::size_t>(index.width) * static_cast<std::size_t>(index.height));
    const auto w = static_cast<std::size_t>(width);
    const auto h = static_cast<std::size_t>(height);
    const auto lines = static_cast<std::size_t>(index.height);
    const auto columns = static_cast<std::size_t>(index.width);
    for (std::size_t y = 0; y < lines; ++y) {
        std::uint32_t* to = shown.pixels.data() + y * columns;
        if (index.rotation == 0) {
            std::copy_n(m_rows.data() + y * length, columns, to);
            continue;
        }
        for (std::size_t x = 0; x < columns; ++x)
            to[x] = index.rotation == 90    ? m_rows[(h - 1 - x) * length + y]
                    : index.rotation == 180 ? m_rows[(h - 1 - y) * length + w - 1 - x]
                                            : m_rows[x * length + w - 1 - y];
    }
    return true;
}

template <class Image> std::string VideoFile::ReadAs(int frame, Image& image)
{
    try {
        const AVFrame* picture = Decode(frame);
        if (picture != nullptr && Convert(*picture, image))
            return {};
    } catch (const std::exception&) { // memory, or what OpenCV says of it
        return "Für das Bild reicht der Speicher nicht.";
    }
    MarkDamaged(m_list.packetOf[static_cast<std::size_t>(frame)]);
    return "Das Bild " + std::to_string(frame + 1) + " ist beschädigt und kann nicht gelesen werden.";
}

std::string VideoFile::Read(int frame, cv::Mat& image)
{
    return ReadAs(frame, image);
}

std::string VideoFile::Read(int frame, drawing::Bitmap& picture)
{
    return ReadAs(frame, picture);
}

} // namespace vision
