// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "host/Pictures.h"

#include "base/AtomicFile.h"
#include "base/FileSystem.h"
#include "drawing/PictureReader.h"
#include "host/CWnd.h"

#include <filesystem>

namespace
{

constexpr std::size_t kMostBytes = std::size_t{64} << 20U;

std::string Reason(PictureOutcome outcome, const drawing::DecodedPicture& picture)
{
    switch (outcome) {
    case PictureOutcome::read:
        break;
    case PictureOutcome::notFound:
        return "gibt es nicht.";
    case PictureOutcome::notAFile:
        return "ist keine gewöhnliche Datei.";
    case PictureOutcome::unreadable:
        return "lässt sich nicht lesen.";
    case PictureOutcome::fileTooLarge:
        return "ist zu groß (höchstens 64 MB).";
    case PictureOutcome::unknownFormat:
        return "ist weder ein PNG-, JPEG-, BMP- noch ein GIF-Bild.";
    case PictureOutcome::tooManyPixels:
        return "ist mit " + std::to_string(picture.width) + " × " + std::to_string(picture.height) +
               " Bildpunkten zu groß (höchstens 100 Millionen).";
    case PictureOutcome::damaged:
        return "ist beschädigt und lässt sich nicht lesen.";
    }
    return {};
}

PictureOutcome ReadFile(const std::string& path, std::string& bytes)
{
    if (!base::FileExists(path))
        return PictureOutcome::notFound;
    if (!base::IsOrdinaryFile(path))
        return PictureOutcome::notAFile;
    std::error_code failure;
    const std::uintmax_t size = std::filesystem::file_size(*base::NativePath(path), failure);
    if (!failure && size > kMostBytes)
        return PictureOutcome::fileTooLarge;
    return base::ReadWholeFile(path, bytes, kMostBytes) ? PictureOutcome::read : PictureOutcome::unreadable;
}

} // namespace

CPictureFile ReadPicture(const std::string& utf8Path)
{
    const CWaitCursor wait;
    CPictureFile file;
    std::string bytes;
    drawing::DecodedPicture picture;
    file.outcome = ReadFile(utf8Path, bytes);
    if (file.outcome == PictureOutcome::read) {
        picture = drawing::DecodePicture(std::move(bytes));
        file.outcome = picture.outcome;
        file.bitmap = std::move(picture.bitmap);
    }
    if (file.outcome != PictureOutcome::read)
        file.error = "„" + utf8Path + "“ " + Reason(file.outcome, picture);
    return file;
}
