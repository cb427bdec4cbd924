// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Pictures from files, for masks that show or measure them.
#pragma once

#include "host/CDC.h"

#include <memory>
#include <string>

enum class PictureOutcome {
    read,
    notFound,
    notAFile,      ///< a folder, pipe or device
    unreadable,    ///< the system does not let it be read
    fileTooLarge,  ///< more than 64 MB
    unknownFormat, ///< neither PNG, JPEG, BMP nor GIF
    tooManyPixels, ///< more than 100 million
    damaged,
};

struct CPictureFile {
    PictureOutcome outcome = PictureOutcome::notFound;
    std::string error;                             ///< German sentence that names the file, empty when it was read
    std::shared_ptr<const drawing::Bitmap> bitmap; ///< null when it was not
};

/// Reads a PNG, JPEG, BMP or GIF file (its first picture) for CDC::Picture; the content decides on the format, not the
/// name. Transparent pixels are laid on white. A photo is turned upright as its camera noted (Exif orientation).
CPictureFile ReadPicture(const std::string& utf8Path);
