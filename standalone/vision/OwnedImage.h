// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// A picture for code that does not know OpenCV: the library that does makes and frees it.
#pragma once

#include "vision/VideoSource.h"

#include <memory>
#include <string>

namespace vision
{

struct FreeImage {
    void operator()(cv::Mat* image) const
    {
        std::string ignored;
        LoadVideoLibrary(ignored)->freeImage(image);
    }
};
using OwnedImage = std::unique_ptr<cv::Mat, FreeImage>;

/// Null in a build that reads no videos.
inline OwnedImage MakeImage()
{
    std::string ignored;
    const VideoLibrary* library = LoadVideoLibrary(ignored);
    return OwnedImage(library != nullptr ? library->makeImage() : nullptr);
}

} // namespace vision
