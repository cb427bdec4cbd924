// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The packets of a video file, and the list of its pictures from going through them once.
#pragma once

#include "vision/VideoSource.h"
#include "vision/video/Libav.h"

#include <cstdint>
#include <string>
#include <vector>

namespace vision
{

/// Larger pictures are refused: 8K, 8192 x 4320, is read.
inline constexpr std::int64_t kMaxPixels = 8192LL * 4352;

/// A packet of the video as the file stores them: in the order of decoding.
struct StoredPacket {
    std::int64_t position = 0; ///< byte in the file
    std::int64_t dts = 0;
    int shown = -1; ///< number of its picture in the order shown; -1 for one that an edit list hides
    bool key = false;
    bool damaged = false;
};

struct PacketList {
    std::vector<StoredPacket> packets{};
    std::vector<int> packetOf{}; ///< by the picture's number in the order shown
    VideoIndex index{};
};

class Demuxer
{
  public:
    /// Empty on success, otherwise why not, in German.
    std::string Open(const std::string& path);
    /// Goes through the file once. Empty on success.
    std::string List(PacketList& list);
    /// The next packet of the video; false at the end and when the file cannot be read on.
    bool Next(AVPacket& packet);
    /// Reads this packet of the list, wherever the file was; Next goes on behind it. False when it is not found.
    bool Read(const StoredPacket& wanted, AVPacket& packet);

    /// The pictures are to be turned upside down before they are rotated.
    bool IsMirrored() const;
    const AVStream& Stream() const { return *m_format->streams[m_stream]; }
    /// Size and rotation of the pictures as shown; what the file does not say of them, the decoded picture does.
    void Describe(VideoIndex& index, const AVFrame& picture) const;

  private:
    bool IsAvi() const;

    std::string m_path;
    FormatPtr m_format;
    std::int64_t m_size = 0; ///< bytes of the file when it was listed
    int m_stream = -1;
};

} // namespace vision
