// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/case/ScenePictures.h"

#include "base/AtomicFile.h"
#include "base/Sha256.h"
#include "casefile/CaseFile.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>

#include <algorithm>
#include <cstring>
#include <mutex>
#include <thread>
#include <utility>

namespace desktop
{
namespace
{

constexpr qint64 kMostBytes = qint64{200} << 20;
constexpr qint64 kMostPixels = 64'000'000;
constexpr int kMegabytesPerReader = 300;                 // 64 million pixels of four bytes
constexpr auto kBriefly = std::chrono::milliseconds(20); // too short to be felt as a stop
constexpr int kSmallestLevel = 512;                      // pixels

std::shared_ptr<const drawing::Bitmap> BitmapOf(const QImage& image, std::string file)
{
    auto bitmap = std::make_shared<drawing::Bitmap>();
    bitmap->width = image.width();
    bitmap->height = image.height();
    bitmap->pixels.resize(static_cast<std::size_t>(image.width()) * static_cast<std::size_t>(image.height()));
    for (int y = 0; y < image.height(); ++y)
        std::memcpy(&bitmap->pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(image.width())],
                    image.constScanLine(y), static_cast<std::size_t>(image.width()) * sizeof(std::uint32_t));
    bitmap->file = std::move(file);
    return bitmap;
}

/// On white, four bytes a pixel.
QImage Opaque(const QImage& image)
{
    if (!image.hasAlphaChannel())
        return image.convertToFormat(QImage::Format_RGB32);
    const QImage source = image.convertToFormat(QImage::Format_ARGB32);
    QImage opaque(source.size(), QImage::Format_RGB32);
    for (int y = 0; y < source.height(); ++y) {
        const auto* from = reinterpret_cast<const QRgb*>(source.constScanLine(y));
        auto* to = reinterpret_cast<QRgb*>(opaque.scanLine(y));
        for (int x = 0; x < source.width(); ++x) {
            const int alpha = qAlpha(from[x]);
            const auto onWhite = [alpha](int value) { return (value * alpha + 255 * (255 - alpha) + 127) / 255; };
            to[x] = qRgb(onWhite(qRed(from[x])), onWhite(qGreen(from[x])), onWhite(qBlue(from[x])));
        }
    }
    return opaque;
}

void Decode(const QByteArray& bytes, PictureFile& file)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    const QByteArray format = reader.format();
    if (format != "png" && format != "jpeg") {
        file.why = QStringLiteral("ist weder ein PNG- noch ein JPEG-Bild");
        return;
    }
    const QSize size = reader.size();
    if (qint64{size.width()} * size.height() > kMostPixels) {
        file.why = QStringLiteral("ist mit %1 × %2 Bildpunkten zu groß (höchstens 64 Millionen)")
                       .arg(size.width())
                       .arg(size.height());
        return;
    }
    reader.setAutoTransform(true);
    const bool turned = reader.transformation() != QImageIOHandler::TransformationNone;
    static std::once_flag once;
    std::call_once(once, [] { QImageReader::setAllocationLimit(kMegabytesPerReader); });
    QImage image = reader.read();
    if (image.isNull()) {
        file.why = QStringLiteral("ist beschädigt und lässt sich nicht lesen");
        return;
    }
    // What is embedded into exported files must have the same pixels.
    const bool same = !turned && !image.hasAlphaChannel();
    image = Opaque(image);
    file.levels.push_back(BitmapOf(image, same ? bytes.toStdString() : std::string()));
    while (std::max(image.width(), image.height()) > 2 * kSmallestLevel) {
        image = image.scaled(std::max(image.width() / 2, 1), std::max(image.height() / 2, 1), Qt::IgnoreAspectRatio,
                             Qt::SmoothTransformation);
        file.levels.push_back(BitmapOf(image.convertToFormat(QImage::Format_RGB32), {}));
    }
}

} // namespace

PictureFile ReadPictureFile(const QString& path)
{
    PictureFile file;
    const QFileInfo info(path);
    if (!info.exists() && !info.isSymLink()) {
        file.why = QStringLiteral("fehlt");
        return file;
    }
    if (info.isFile() && info.size() > kMostBytes) {
        file.why = QStringLiteral("ist zu groß (höchstens 200 MB)");
        return file;
    }
    std::string bytes;
    if (const auto read = base::ReadWholeFile(path.toStdString(), bytes, kMostBytes); !read) {
        file.why = QStringLiteral("lässt sich nicht lesen: ") + QString::fromStdString(read.reason);
        return file;
    }
    file.sha256 = base::Sha256(bytes);
    Decode(QByteArray::fromStdString(bytes), file);
    return file;
}

QString PicturePath(const std::string& name, const QString& casePath)
{
    return QString::fromStdString(casefile::PicturePath(name, casePath.toStdString()));
}

std::string PictureName(const QString& path, const QString& casePath)
{
    const QString absolute = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
    return (casePath.isEmpty() ? absolute : QFileInfo(casePath).dir().relativeFilePath(absolute)).toStdString();
}

ScenePictures::ScenePictures(std::function<void()> arrived)
    : m_arrived(std::make_shared<std::function<void()>>(std::move(arrived)))
{
}

std::shared_future<PictureFile> ScenePictures::Read(const QString& path) const
{
    // A thread that nobody waits for: what lies on a network that does not answer must not hold up the program's end.
    auto promise = std::make_shared<std::promise<PictureFile>>();
    std::thread([promise, path, arrived = std::weak_ptr(m_arrived)] {
        promise->set_value(ReadPictureFile(path));
        if (QCoreApplication* application = QCoreApplication::instance())
            QMetaObject::invokeMethod(
                application,
                [arrived] {
                    if (const auto tell = arrived.lock(); tell && *tell)
                        (*tell)();
                },
                Qt::QueuedConnection);
    }).detach();
    return promise->get_future().share();
}

std::shared_future<PictureFile> ScenePictures::File(const QString& path)
{
    const QFileInfo info(path);
    const qint64 size = info.exists() ? info.size() : -2;
    Entry& entry = m_files[path];
    if (entry.size != size || entry.modified != info.lastModified())
        entry = {info.lastModified(), size, Read(path)};
    return entry.file;
}

scene::SceneLayer ScenePictures::Layer(const CSzenenBild& picture, const QString& casePath, double pixels, Wait wait)
{
    const std::shared_future<PictureFile> read = File(PicturePath(picture.datei, casePath));
    scene::SceneLayer layer{picture, nullptr, {}};
    if (wait == Wait::briefly && read.wait_for(kBriefly) != std::future_status::ready) {
        layer.trouble = "Das Bild wird gelesen …";
        return layer;
    }
    const PictureFile& file = read.get();
    if (!file.why.isEmpty()) {
        layer.trouble = "Das Bild " + file.why.toStdString();
        return layer;
    }
    if (file.sha256 != picture.sha256)
        layer.trouble = "Das Bild ist nicht mehr das, das in die Szene geladen wurde";
    const auto& levels = file.levels;
    std::size_t level = 0;
    while (level + 1 < levels.size() && levels[level + 1]->width >= pixels)
        ++level;
    layer.bitmap = levels[level];
    return layer;
}

} // namespace desktop
