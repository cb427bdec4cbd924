// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Pictures from the bytes of PNG, JPEG, BMP and GIF files.
#pragma once

#include "host/Pictures.h"

#include <string>

namespace drawing
{
inline constexpr double kMostPicturePixels = 1e8;

struct DecodedPicture {
    PictureOutcome outcome = PictureOutcome::damaged;
    int width = 0; ///< as the file says, also of a picture that is too large
    int height = 0;
    std::shared_ptr<const Bitmap> bitmap; ///< null unless outcome is PictureOutcome::read
};

/// Files that end too early or have a wrong checksum are damaged: nothing is shown that only looks like the picture.
DecodedPicture DecodePicture(std::string file, double mostPixels = kMostPicturePixels);
} // namespace drawing
