// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Reads the pictures of a video file, each with the time at which the file says it is shown.
#pragma once

#include "host/vision/VisionPoint.h"

#include <memory>
#include <string>
#include <vector>

namespace drawing
{
struct Bitmap;
}
namespace vision
{
class VideoSource;
}

class CVideoReader
{
  public:
    CVideoReader();
    ~CVideoReader();
    CVideoReader(const CVideoReader&) = delete;
    CVideoReader& operator=(const CVideoReader&) = delete;

    /// Opens an MP4, MOV or AVI file and lists its pictures; may take long with a large file and asks RuvProgress.
    /// Non-zero on success; otherwise Reason() says why not, and no video is open.
    int OpenVideo(const std::string& path);
    int IsOpened() const;
    void CloseVideo();

    /// The picture at the position and its time in s, 0 at the first one shown, then steps on. After a picture that
    /// cannot be decoded too: no success, and Reason() says so. At the end no success and nothing else.
    int ReadFrame(cv::Mat& image, double& time);
    /// The same for showing it.
    int ReadFrame(drawing::Bitmap& picture, double& time);
    /// The next picture to read, from 0. Non-zero when there is one.
    int SetFramePos(int frame);
    int GetFramePos() const { return m_position; }
    int GetFrameCount() const;
    /// px, as the pictures are shown: after rotation and sample aspect.
    int GetWidth() const;
    int GetHeight() const;
    /// Mean pictures per s, 0 when unknown.
    double GetFPS() const;

    /// When each picture is shown, s.
    const std::vector<double>& FrameTimes() const;
    /// The last picture that is shown no later, 0 before the first.
    int FrameAt(double time) const;
    /// The file stores no times: picture k is shown k frame lengths after the first.
    bool IsCounted() const;
    /// Degrees clockwise by which the file says its pictures are to be turned: 0, 90, 180 or 270.
    int Rotation() const;
    /// Whether a picture that was read shows errors, or could not be decoded.
    bool IsDamaged(int frame) const;
    /// How many pictures the file's header promises beyond those that are there.
    int MissingFrames() const;
    /// German, why the last call had no success; empty after success.
    const std::string& Reason() const { return m_reason; }

  private:
    template <class Image> int Read(Image& image, double& time);

    std::unique_ptr<vision::VideoSource> m_source;
    std::string m_reason;
    int m_position = 0;
};
