// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/TileServer.h"

#include "base/FileSystem.h"
#include "base/ProgramVersion.h"
#include "base/Sha256.h"

#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>
#include <QUrl>

#include <algorithm>
#include <utility>

namespace desktop
{
namespace
{

constexpr std::size_t kAtOnce = 2;      // questions to the server, as the rules of public ones ask for
constexpr std::size_t kMostWanted = 80; // older wishes are dropped
constexpr std::size_t kMostFailed = 5000;
constexpr int kMostRedirects = 3;
constexpr std::size_t kNameDigits = 16; // of the hash that names a server's folder

/// The agent that servers see, as their rules ask for.
QByteArray Agent()
{
    return QByteArray("Tavelin/") + base::kProgramVersion;
}

} // namespace

TileServer::TileServer(const CKartenCfg& settings, const std::string& folder, const TileServerLimits& limits)
    : m_address(settings.server), m_attribution(krn::AttributionText(settings.herkunft)),
      m_name(base::Sha256(settings.server).substr(0, kNameDigits)), m_limits(limits), m_disk(folder, limits.diskBytes)
{
    if (m_attribution.empty())
        m_attribution = QUrl(QString::fromStdString(m_address)).host().toStdString();
    m_network.setRedirectPolicy(QNetworkRequest::SameOriginRedirectPolicy);
}

TileServer::~TileServer()
{
    for (QNetworkReply* reply : m_network.findChildren<QNetworkReply*>()) {
        QObject::disconnect(reply, nullptr, nullptr, nullptr);
        reply->abort();
    }
}

std::shared_ptr<const drawing::Bitmap> TileServer::Tile(const CTile& tile)
{
    if (auto bitmap = TileAtHand(tile))
        return bitmap;
    const int count = 1 << std::clamp(tile.zoom, 0, LargestZoom());
    if (tile.zoom < 0 || tile.zoom > LargestZoom() || std::min(tile.x, tile.y) < 0 ||
        std::max(tile.x, tile.y) >= count || m_asked.count(tile) != 0)
        return nullptr;
    if (const auto failed = m_failed.find(tile); failed != m_failed.end()) {
        if (failed->second.elapsed() < m_limits.retryMilliseconds)
            return nullptr;
        m_failed.erase(failed);
    }
    std::erase(m_wanted, tile);
    m_wanted.push_back(tile);
    if (m_wanted.size() > kMostWanted)
        m_wanted.pop_front();
    Ask();
    return nullptr;
}

std::shared_ptr<const drawing::Bitmap> TileServer::TileAtHand(const CTile& tile)
{
    if (const auto kept = m_memory.Find(tile))
        return *kept;
    auto bytes = m_disk.Get(m_name + "/" + krn::TileAddress("{z}/{x}/{y}", tile), krn::kMostTileBytes);
    auto bitmap = bytes ? krn::DecodeTile(std::move(*bytes)) : nullptr;
    if (bitmap != nullptr)
        m_memory.Keep(tile, bitmap);
    return bitmap;
}

bool TileServer::IsComing(const CTile& tile) const
{
    return m_asked.count(tile) != 0 || std::find(m_wanted.begin(), m_wanted.end(), tile) != m_wanted.end();
}

void TileServer::Ask()
{
    while (m_asked.size() < kAtOnce && !m_wanted.empty()) {
        const CTile tile = m_wanted.back();
        m_wanted.pop_back();
        m_asked.insert(tile);
        QNetworkRequest request(QUrl(QString::fromStdString(krn::TileAddress(m_address, tile))));
        request.setRawHeader("User-Agent", Agent());
        request.setRawHeader("Accept", "image/png, image/jpeg");
        request.setRawHeader("Accept-Encoding",
                             "identity"); // pictures are compressed, and nothing shall unpack to more
        request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
        request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
        request.setMaximumRedirectsAllowed(kMostRedirects);
        request.setTransferTimeout(m_limits.answerMilliseconds);
        QNetworkReply* const reply = m_network.get(request);
        // The timeout of the request counts from byte to byte: one that sends a byte now and then would never end.
        QTimer::singleShot(m_limits.answerMilliseconds, reply, &QNetworkReply::abort);
        QObject::connect(
            reply, &QNetworkReply::downloadProgress, reply,
            [reply](qint64 received, qint64 total) {
                if (std::max(received, total) > static_cast<qint64>(krn::kMostTileBytes))
                    reply->abort();
            });
        QObject::connect(reply, &QNetworkReply::finished, reply, [this, tile, reply] { Finished(tile, *reply); });
    }
}

void TileServer::Finished(const CTile& tile, QNetworkReply& reply)
{
    reply.deleteLater();
    m_asked.erase(tile);
    std::shared_ptr<const drawing::Bitmap> bitmap;
    const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (reply.error() == QNetworkReply::NoError && status == 200) {
        std::string bytes = reply.readAll().toStdString();
        bitmap = krn::DecodeTile(bytes);
        if (bitmap != nullptr)
            m_disk.Put(m_name + "/" + krn::TileAddress("{z}/{x}/{y}", tile), bytes);
    }
    if (bitmap != nullptr) {
        m_memory.Keep(tile, std::move(bitmap));
    } else {
        if (m_failed.size() >= kMostFailed)
            m_failed.clear();
        m_failed[tile].start();
    }
    Ask();
    // A tile that the server does not have is news too: a coarser one may take its place.
    if (m_failed.count(tile) == 0 || status == 404)
        krn::TilesChanged();
}

UseTileServer::UseTileServer()
{
    krn::SetServerTiles([](const CKartenCfg& settings) -> std::unique_ptr<CTileSource> {
        const std::string cache = base::UserCacheFolder();
        return std::make_unique<TileServer>(settings, cache.empty() ? cache : cache + "/kacheln");
    });
}

UseTileServer::~UseTileServer()
{
    krn::SetServerTiles({});
}

} // namespace desktop
