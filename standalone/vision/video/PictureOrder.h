// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The order in which pictures are shown that a file stores in the order of decoding and without times.
#pragma once

#include "vision/video/Libav.h"

#include <cstdint>
#include <vector>

namespace vision
{

class PictureOrder
{
  public:
    explicit PictureOrder(const AVCodecParameters& parameters);

    /// The next packet in the order of decoding.
    void Add(const AVPacket& packet);
    /// By number of the picture in the order shown, that in the order of decoding.
    std::vector<int> Shown() const;
    /// Whether the two orders differ.
    bool Reorders() const;

  private:
    struct Picture {
        std::int64_t sequence = 0; ///< grows with each picture from which numbers start anew
        std::int64_t number = 0;   ///< in the sequence
    };

    bool m_hasNumbers;
    ParserPtr m_parser;
    CodecPtr m_codec;
    std::vector<Picture> m_pictures;
    std::int64_t m_sequence = 0;
};

} // namespace vision
