// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Sources of map tiles: what all of them need, and who makes the one of a server.
#pragma once

#include "host/RuvCfg.h"
#include "host/Tiles.h"

#include <cstddef>
#include <list>
#include <map>
#include <optional>
#include <utility>

namespace krn
{

/// A tile's file is not larger, and no side of its picture.
inline constexpr std::size_t kMostTileBytes = std::size_t{2} << 20U;
inline constexpr int kMostTilePixels = 1024;
inline constexpr int kLargestTileZoom = 22;

/// The picture of a tile's file (PNG or JPEG); null for any other.
std::shared_ptr<const drawing::Bitmap> DecodeTile(std::string bytes);

/// A line of plain text of what a source says of itself, which may hold HTML.
std::string AttributionText(std::string_view html);

/// Why a text is no address of tiles "https://host/{z}/{x}/{y}.png", a German sentence; empty when it is one.
std::string TileAddressProblem(const std::string& address);
/// The address with the tile's numbers in place of {z}, {x} and {y}.
std::string TileAddress(const std::string& address, const CTile& tile);

/// Why the tiles that such settings name cannot be used, a German sentence; empty when they can. A server is not asked.
std::string TilesProblem(const CKartenCfg& settings);

/// The tiles used last.
class TileMemory
{
  public:
    /// Nothing for a tile that is not kept; null for one that is kept as missing.
    std::optional<std::shared_ptr<const drawing::Bitmap>> Find(const CTile& tile);
    void Keep(const CTile& tile, std::shared_ptr<const drawing::Bitmap> bitmap);
    void Forget(const CTile& tile);

  private:
    static constexpr std::size_t kMost = 256;
    using Used = std::list<std::pair<CTile, std::shared_ptr<const drawing::Bitmap>>>; // last used first
    Used m_used;
    std::map<CTile, Used::iterator> m_places;
};

/// Makes the source of a server; without one, the settings' server is not used.
using ServerTiles = std::function<std::unique_ptr<CTileSource>(const CKartenCfg& settings)>;
/// Drops the source that the one before made.
void SetServerTiles(ServerTiles make);

/// Tells the listeners.
void TilesChanged();

} // namespace krn
