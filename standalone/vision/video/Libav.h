// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// libav with owners.
#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}

#include <memory>

namespace vision
{

template <auto Free> struct FreedBy {
    template <class T> void operator()(T* pointer) const { Free(pointer); }
};
template <auto Free> struct FreedThrough {
    template <class T> void operator()(T* pointer) const { Free(&pointer); }
};

using FormatPtr = std::unique_ptr<AVFormatContext, FreedThrough<avformat_close_input>>;
using CodecPtr = std::unique_ptr<AVCodecContext, FreedThrough<avcodec_free_context>>;
using PacketPtr = std::unique_ptr<AVPacket, FreedThrough<av_packet_free>>;
using FramePtr = std::unique_ptr<AVFrame, FreedThrough<av_frame_free>>;
using ParserPtr = std::unique_ptr<AVCodecParserContext, FreedBy<av_parser_close>>;
using ScalerPtr = std::unique_ptr<SwsContext, FreedBy<sws_freeContext>>;

} // namespace vision
