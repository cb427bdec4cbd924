// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The reader's position, in front of what decodes.
#include "host/vision/CVideoReader.h"

#include "vision/VideoSource.h"

#include <algorithm>

namespace
{

const vision::VideoIndex& IndexOf(const std::unique_ptr<vision::VideoSource>& source)
{
    static const vision::VideoIndex nothing;
    return source ? source->Index() : nothing;
}

} // namespace

CVideoReader::CVideoReader() = default;
CVideoReader::~CVideoReader() = default;

int CVideoReader::OpenVideo(const std::string& path)
{
    CloseVideo();
    const vision::VideoLibrary* library = vision::LoadVideoLibrary(m_reason);
    if (library == nullptr)
        return 0;
    vision::OpenedVideo opened = library->open(path);
    m_source = std::move(opened.source);
    m_reason = std::move(opened.reason);
    return IsOpened();
}

int CVideoReader::IsOpened() const
{
    return m_source ? 1 : 0;
}

void CVideoReader::CloseVideo()
{
    m_source.reset();
    m_reason.clear();
    m_position = 0;
}

template <class Image> int CVideoReader::Read(Image& image, double& time)
{
    m_reason.clear();
    if (m_position >= GetFrameCount())
        return 0;
    const int frame = m_position++;
    time = FrameTimes()[static_cast<std::size_t>(frame)];
    m_reason = m_source->Read(frame, image);
    return m_reason.empty() ? 1 : 0;
}

int CVideoReader::ReadFrame(cv::Mat& image, double& time)
{
    return Read(image, time);
}

int CVideoReader::ReadFrame(drawing::Bitmap& picture, double& time)
{
    return Read(picture, time);
}

int CVideoReader::SetFramePos(int frame)
{
    if (frame < 0 || frame >= GetFrameCount())
        return 0;
    m_position = frame;
    return 1;
}

int CVideoReader::GetFrameCount() const
{
    return static_cast<int>(FrameTimes().size());
}

int CVideoReader::GetWidth() const
{
    return IndexOf(m_source).width;
}

int CVideoReader::GetHeight() const
{
    return IndexOf(m_source).height;
}

double CVideoReader::GetFPS() const
{
    return IndexOf(m_source).fps;
}

const std::vector<double>& CVideoReader::FrameTimes() const
{
    return IndexOf(m_source).times;
}

int CVideoReader::FrameAt(double time) const
{
    const std::vector<double>& times = FrameTimes();
    const auto later = std::upper_bound(times.begin(), times.end(), time);
    return std::max(0, static_cast<int>(later - times.begin()) - 1);
}

bool CVideoReader::IsCounted() const
{
    return IndexOf(m_source).counted;
}

int CVideoReader::Rotation() const
{
    return IndexOf(m_source).rotation;
}

bool CVideoReader::IsDamaged(int frame) const
{
    return m_source && frame >= 0 && frame < GetFrameCount() && m_source->IsDamaged(frame);
}

int CVideoReader::MissingFrames() const
{
    return IndexOf(m_source).missing;
}
