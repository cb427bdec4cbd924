// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Writes videos whose every picture shows its own number, with exactly the times that a test asks for.
#pragma once

#include "vision/video/Libav.h"

#include <opencv2/core.hpp>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace test
{

struct VideoPlan {
    std::string format = "mp4"; ///< mp4, mov or avi
    std::string codec = "libx264";
    AVPixelFormat pixels = AV_PIX_FMT_YUV420P;
    int width = 128;
    int height = 64;
    AVRational timeBase{1, 12800};
    std::vector<std::int64_t> times{}; ///< of each picture, in the time base, ascending; negative ones are edited away
    int keyDistance = 12;
    int bFrames = 0;
    int rotation = 0;        ///< degrees clockwise
    bool upsideDown = false; ///< before that
    bool indexFirst = false; ///< MP4: before the pictures
    AVRational aspect{1, 1};
    std::vector<std::size_t> emptyAfter{}; ///< AVI: an empty chunk behind each of these pictures
    /// Draws the picture of this number; without it, the number.
    std::function<void(AVFrame&, int)> draw{};
};

inline std::vector<std::int64_t> EvenTimes(int count, std::int64_t step)
{
    std::vector<std::int64_t> times;
    for (int i = 0; i < count; ++i)
        times.push_back(i * step);
    return times;
}

/// Sixteen blocks, eight in a row: the bits of the number.
constexpr int kBlocks = 8;

inline void DrawNumber(AVFrame& frame, int number, int bytesPerSample)
{
    const int width = frame.width;
    const int height = frame.height;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const int bit = x * kBlocks / width + (y * 2 / height) * kBlocks;
            const int value = (number >> bit & 1) != 0 ? 210 : 40;
            std::uint8_t* row = frame.data[0] + static_cast<std::ptrdiff_t>(y) * frame.linesize[0];
            if (bytesPerSample == 1)
                row[x] = static_cast<std::uint8_t>(value);
            else
                reinterpret_cast<std::uint16_t*>(row)[x] = static_cast<std::uint16_t>(value * 4);
        }
    for (int plane = 1; plane < 3; ++plane)
        for (int y = 0; y < height / 2; ++y)
            for (int x = 0; x < width / 2; ++x) {
                std::uint8_t* row = frame.data[plane] + static_cast<std::ptrdiff_t>(y) * frame.linesize[plane];
                if (bytesPerSample == 1)
                    row[x] = 128;
                else
                    reinterpret_cast<std::uint16_t*>(row)[x] = 512;
            }
}

/// The number that a picture shows; it may have been scaled.
inline int NumberIn(const cv::Mat& image)
{
    int number = 0;
    for (int bit = 0; bit < 2 * kBlocks; ++bit) {
        const int x = (2 * (bit % kBlocks) + 1) * image.cols / (2 * kBlocks);
        const int y = (2 * (bit / kBlocks) + 1) * image.rows / 4;
        if (image.at<cv::Vec3b>(y, x)[1] > 125)
            number |= 1 << bit;
    }
    return number;
}

inline void Must(int result, const char* what)
{
    if (result < 0)
        throw std::runtime_error(std::string(what) + ": " + std::to_string(result));
}

/// The matrix of a track header that turns a picture clockwise (ISO/IEC 14496-12, 8.3.2): x' = a·x + c·y,
/// y' = b·x + d·y, stored as a, b, 0, c, d, 0, 0, 0, 1.
inline std::array<std::int32_t, 9> TurnedBy(int degrees, bool upsideDown)
{
    const std::int32_t y = upsideDown ? -1 : 1;
    constexpr std::array<std::int32_t, 4> kSine{0, 1, 0, -1};
    const auto quarters = static_cast<std::size_t>(degrees / 90);
    const std::int32_t sine = kSine[quarters] * 65536;
    const std::int32_t cosine = kSine[(quarters + 1) % 4] * 65536;
    return {cosine, sine, 0, -sine * y, cosine * y, 0, 0, 0, 1 << 30};
}

/// A second of silence and nothing else.
inline void WriteSound(const std::string& path)
{
    AVFormatContext* format = nullptr;
    Must(avformat_alloc_output_context2(&format, nullptr, "mov", path.c_str()), "format");
    AVStream* stream = avformat_new_stream(format, nullptr);
    stream->codecpar->codec_type = AVMEDIA_TYPE_AUDIO;
    stream->codecpar->codec_id = AV_CODEC_ID_PCM_S16LE;
    stream->codecpar->sample_rate = 8000;
    stream->codecpar->bits_per_coded_sample = 16;
    stream->codecpar->block_align = 2;
    stream->codecpar->format = AV_SAMPLE_FMT_S16;
    av_channel_layout_default(&stream->codecpar->ch_layout, 1);
    stream->time_base = {1, 8000};
    Must(avio_open(&format->pb, path.c_str(), AVIO_FLAG_WRITE), "file");
    Must(avformat_write_header(format, nullptr), "header");
    vision::PacketPtr packet(av_packet_alloc());
    Must(av_new_packet(packet.get(), 16000), "packet");
    std::memset(packet->data, 0, 16000);
    packet->pts = packet->dts = 0;
    packet->duration = 8000;
    Must(av_write_frame(format, packet.get()), "packet");
    Must(av_write_trailer(format), "trailer");
    avio_closep(&format->pb);
    avformat_free_context(format);
}

inline void WriteVideo(const std::string& path, const VideoPlan& plan)
{
    av_log_set_level(AV_LOG_QUIET);
    const AVCodec* codec = avcodec_find_encoder_by_name(plan.codec.c_str());
    if (codec == nullptr)
        throw std::runtime_error("no encoder " + plan.codec);
    AVFormatContext* format = nullptr;
    Must(avformat_alloc_output_context2(&format, nullptr, plan.format.c_str(), path.c_str()), "format");
    format->avoid_negative_ts = 0;
    const bool avi = plan.format == "avi";
    vision::CodecPtr encoder(avcodec_alloc_context3(codec));
    encoder->width = plan.width;
    encoder->height = plan.height;
    encoder->pix_fmt = plan.pixels;
    encoder->time_base = plan.timeBase;
    encoder->framerate = {25, 1};
    encoder->gop_size = plan.keyDistance;
    encoder->max_b_frames = plan.bFrames;
    encoder->sample_aspect_ratio = plan.aspect;
    encoder->thread_count = 1;
    if (plan.codec == "mjpeg")
        encoder->color_range = AVCOL_RANGE_JPEG;
    if (plan.codec != "libx264" && plan.codec != "libx265") {
        encoder->flags |= AV_CODEC_FLAG_QSCALE;
        encoder->global_quality = 2 * FF_QP2LAMBDA;
    }
    if (!avi)
        encoder->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    AVDictionary* options = nullptr;
    if (plan.codec == "libx264")
        av_dict_set(&options, "preset", "veryfast", 0);
    Must(avcodec_open2(encoder.get(), codec, &options), "encoder");
    av_dict_free(&options);
    AVStream* stream = avformat_new_stream(format, nullptr);
    Must(avcodec_parameters_from_context(stream->codecpar, encoder.get()), "parameters");
    stream->codecpar->codec_tag = 0;
    stream->time_base = plan.timeBase;
    stream->avg_frame_rate = avi ? av_inv_q(plan.timeBase) : AVRational{25, 1};
    stream->sample_aspect_ratio = plan.aspect;
    if (plan.rotation != 0 || plan.upsideDown) {
        const auto matrix = TurnedBy(plan.rotation, plan.upsideDown);
        auto* data = av_stream_new_side_data(stream, AV_PKT_DATA_DISPLAYMATRIX, sizeof matrix);
        std::memcpy(data, matrix.data(), sizeof matrix);
    }
    Must(avio_open(&format->pb, path.c_str(), AVIO_FLAG_WRITE), "file");
    AVDictionary* muxing = nullptr;
    if (!avi)
        av_dict_set(&muxing, "video_track_timescale", std::to_string(plan.timeBase.den).c_str(), 0);
    if (plan.indexFirst)
        av_dict_set(&muxing, "movflags", "faststart", 0);
    Must(avformat_write_header(format, &muxing), "header");
    av_dict_free(&muxing);

    vision::PacketPtr packet(av_packet_alloc());
    std::int64_t chunk = 0;
    std::size_t written = 0;
    const auto drain = [&] {
        while (avcodec_receive_packet(encoder.get(), packet.get()) >= 0) {
            packet->stream_index = 0;
            if (avi) { // chunks in the order of decoding, and no times
                packet->pts = packet->dts = chunk++;
                packet->duration = 1;
            } else {
                av_packet_rescale_ts(packet.get(), plan.timeBase, stream->time_base);
            }
            Must(av_write_frame(format, packet.get()), "packet");
            if (avi && std::find(plan.emptyAfter.begin(), plan.emptyAfter.end(), written) != plan.emptyAfter.end())
                ++chunk;
            ++written;
        }
    };
    for (std::size_t i = 0; i < plan.times.size(); ++i) {
        vision::FramePtr frame(av_frame_alloc());
        frame->format = plan.pixels;
        frame->width = plan.width;
        frame->height = plan.height;
        Must(av_frame_get_buffer(frame.get(), 0), "frame");
        if (plan.draw)
            plan.draw(*frame, static_cast<int>(i));
        else
            DrawNumber(*frame, static_cast<int>(i), av_pix_fmt_desc_get(plan.pixels)->comp[0].depth > 8 ? 2 : 1);
        frame->pts = plan.times[i];
        frame->quality = encoder->global_quality;
        Must(avcodec_send_frame(encoder.get(), frame.get()), "send");
        drain();
    }
    avcodec_send_frame(encoder.get(), nullptr);
    drain();
    Must(av_write_trailer(format), "trailer");
    avio_closep(&format->pb);
    avformat_free_context(format);
}

} // namespace test
