// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The files of the pictures under the scene.
#pragma once

#include "scene/SceneDrawing.h"

#include <QDateTime>
#include <QString>

#include <functional>
#include <future>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace desktop
{

/// A picture's file: its pixels in full and in halves, or why there are none.
struct PictureFile {
    std::vector<std::shared_ptr<const drawing::Bitmap>> levels; ///< the full size first
    std::string sha256;
    QString why; ///< German; empty when the picture can be used
};

/// Reads a PNG or JPEG file. Files that are no pictures, damaged or too large are refused.
PictureFile ReadPictureFile(const QString& path);

/// Where the file of a picture lies, and how the case names a file; `casePath` is empty for a case that has no file.
QString PicturePath(const std::string& name, const QString& casePath);
std::string PictureName(const QString& path, const QString& casePath);

/// What has been read, so that each file is read once; in threads of their own.
class ScenePictures
{
  public:
    /// `arrived` is called from the event loop when a file has been read.
    explicit ScenePictures(std::function<void()> arrived = {});

    /// Every file is read anew when it is shown next.
    void Forget() { m_files.clear(); }

    /// Begins to read a file, or gives what was read of it. The first to show the picture finds it read.
    std::shared_future<PictureFile> File(const QString& path);

    enum class Wait { untilRead, briefly };
    /// The picture in a size for `pixels` across. Waiting briefly, one that is not read yet is said to be on its way.
    scene::SceneLayer Layer(const CSzenenBild& picture, const QString& casePath, double pixels,
                            Wait wait = Wait::untilRead);

  private:
    struct Entry {
        QDateTime modified;
        qint64 size = -1;
        std::shared_future<PictureFile> file;
    };
    std::shared_future<PictureFile> Read(const QString& path) const;

    std::shared_ptr<std::function<void()>> m_arrived;
    std::map<QString, Entry> m_files;
};

} // namespace desktop
