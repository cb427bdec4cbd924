// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// A video whose pictures are read by their number: each exactly, whichever was read before.
#pragma once

#include "vision/VideoSource.h"
#include "vision/video/Demuxer.h"

#include <deque>
#include <vector>

namespace vision
{

class VideoFile final : public VideoSource
{
  public:
    /// Empty on success, otherwise why not, in German.
    std::string Open(const std::string& path);

    const VideoIndex& Index() const override { return m_list.index; }
    std::string Read(int frame, cv::Mat& image) override;
    std::string Read(int frame, drawing::Bitmap& picture) override;
    bool IsDamaged(int frame) const override { return m_damaged[static_cast<std::size_t>(frame)]; }

  private:
    struct Kept {
        int frame = 0;
        FramePtr picture{};
        std::size_t bytes = 0;
    };

    std::string OpenDecoder();
    const AVFrame* Find(int frame) const;
    const AVFrame* Decode(int frame);
    bool StartBefore(int frame, int keysBack);
    bool Step();
    void Send(AVPacket& packet);
    int Receive();
    void MarkDamaged(int packet);
    void Keep(int frame, FramePtr picture);
    template <class Image> std::string ReadAs(int frame, Image& image);
    /// The picture in rows of `stride` bytes, before it is turned; false when that fails.
    bool Scale(const AVFrame& picture, ScalerPtr& scaler, AVPixelFormat format, int flags, std::uint8_t* rows,
               int stride);
    bool Convert(const AVFrame& picture, cv::Mat& image);
    bool Convert(const AVFrame& picture, drawing::Bitmap& shown);

    Demuxer m_demuxer;
    PacketList m_list;
    std::vector<bool> m_damaged; ///< by number of the picture
    CodecPtr m_decoder;
    PacketPtr m_packet;
    int m_next = 0;      ///< of the list: the packet that is read next; -1 when decoding has not begun
    int m_lastShown = 0; ///< the last picture that came out since decoding began, -1 before
    bool m_drained = false;
    bool m_mirrored = false;
    std::deque<Kept> m_kept; ///< oldest first
    std::size_t m_keptBytes = 0;
    ScalerPtr m_scaler;
    ScalerPtr m_screenScaler;
    std::vector<std::uint32_t> m_rows; ///< of the picture shown last, before it is turned
};

} // namespace vision
