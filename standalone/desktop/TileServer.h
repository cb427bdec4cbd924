// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Map tiles from the server that the user entered in the settings. Nothing is asked of any server otherwise.
#pragma once

#include "base/FileCache.h"
#include "krn/Tiles.h"

#include <QElapsedTimer>
#include <QNetworkAccessManager>
#include <QObject>

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <set>
#include <string>

class QNetworkReply;

namespace desktop
{

struct TileServerLimits {
    int answerMilliseconds = 20'000; ///< for the whole of an answer
    int retryMilliseconds = 60'000;  ///< until a tile that failed is asked for again
    std::uintmax_t diskBytes = std::uintmax_t{200} << 20U;
};

class TileServer final : public CTileSource
{
  public:
    /// `folder` keeps tiles on disk, of all servers; empty for none.
    TileServer(const CKartenCfg& settings, const std::string& folder, const TileServerLimits& limits = {});
    ~TileServer() override;

    int SmallestZoom() const override { return 0; }
    int LargestZoom() const override { return 19; }
    std::string Attribution() const override { return m_attribution; }
    /// What is in memory or on disk comes at once, the rest is asked for.
    std::shared_ptr<const drawing::Bitmap> Tile(const CTile& tile) override;
    std::shared_ptr<const drawing::Bitmap> TileAtHand(const CTile& tile) override;
    bool IsComing(const CTile& tile) const override;

  private:
    void Ask();
    void Finished(const CTile& tile, QNetworkReply& reply);

    std::string m_address;
    std::string m_attribution;
    std::string m_name; // of its folder in the cache
    TileServerLimits m_limits;
    krn::TileMemory m_memory;
    base::FileCache m_disk;
    std::deque<CTile> m_wanted; // the latest last
    std::set<CTile> m_asked;
    std::map<CTile, QElapsedTimer> m_failed;
    QNetworkAccessManager m_network;
};

/// While it lives, the settings' server is used.
class UseTileServer
{
  public:
    UseTileServer();
    ~UseTileServer();
    UseTileServer(const UseTileServer&) = delete;
    UseTileServer& operator=(const UseTileServer&) = delete;
};

} // namespace desktop
