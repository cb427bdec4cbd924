// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// By the picture order count that H.264 and HEVC store in each picture; elsewhere by the rule that pictures predicted
// from both sides are shown before the one that was decoded last for them.
#include "vision/video/PictureOrder.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace vision
{

PictureOrder::PictureOrder(const AVCodecParameters& parameters)
    : m_hasNumbers(parameters.codec_id == AV_CODEC_ID_H264 || parameters.codec_id == AV_CODEC_ID_HEVC),
      m_parser(av_parser_init(parameters.codec_id)),
      m_codec(avcodec_alloc_context3(avcodec_find_decoder(parameters.codec_id)))
{
    if (m_codec && avcodec_parameters_to_context(m_codec.get(), &parameters) < 0)
        m_codec.reset();
    if (m_parser)
        m_parser->flags |= PARSER_FLAG_COMPLETE_FRAMES;
}

void PictureOrder::Add(const AVPacket& packet)
{
    Picture picture;
    int type = AV_PICTURE_TYPE_NONE;
    bool key = (packet.flags & AV_PKT_FLAG_KEY) != 0;
    if (m_parser && m_codec) {
        std::uint8_t* data = nullptr;
        int size = 0;
        av_parser_parse2(m_parser.get(), m_codec.get(), &data, &size, packet.data, packet.size, packet.pts, packet.dts,
                         packet.pos);
        type = m_parser->pict_type;
        picture.number = m_parser->output_picture_number;
        key = m_parser->key_frame == 1 || (m_parser->key_frame < 0 && key);
    }
    if (m_hasNumbers) {
        if (key && picture.number == 0)
            ++m_sequence;
        picture.sequence = m_sequence;
    } else if (type == AV_PICTURE_TYPE_B && !m_pictures.empty()) {
        // Before the last picture that is none of these, behind others that are shown before it.
        picture.sequence = m_sequence - 1;
        picture.number = static_cast<std::int64_t>(m_pictures.size());
    } else {
        picture.sequence = m_sequence++;
        picture.number = std::numeric_limits<std::int64_t>::max();
    }
    m_pictures.push_back(picture);
}

std::vector<int> PictureOrder::Shown() const
{
    std::vector<int> shown(m_pictures.size());
    std::iota(shown.begin(), shown.end(), 0);
    std::stable_sort(shown.begin(), shown.end(), [this](int a, int b) {
        const Picture& left = m_pictures[static_cast<std::size_t>(a)];
        const Picture& right = m_pictures[static_cast<std::size_t>(b)];
        return left.sequence != right.sequence ? left.sequence < right.sequence : left.number < right.number;
    });
    return shown;
}

bool PictureOrder::Reorders() const
{
    const std::vector<int> shown = Shown();
    return !std::is_sorted(shown.begin(), shown.end());
}

} // namespace vision
