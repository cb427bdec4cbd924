// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Pictures of a tiled map, from the file or the server that the user's settings name. All on the user-interface thread.
#pragma once

#include "host/CDC.h"

#include <compare>
#include <functional>
#include <memory>
#include <string>

/// A square of the world in the Web Mercator projection: 2^zoom by 2^zoom of them, x from the west, y from the north.
struct CTile {
    int zoom = 0;
    int x = 0;
    int y = 0;
    friend auto operator<=>(const CTile&, const CTile&) = default;
};

class CTileSource
{
  public:
    virtual ~CTileSource() = default;
    virtual int SmallestZoom() const = 0;
    virtual int LargestZoom() const = 0;
    /// Whose map it is, in one line: to be shown wherever a tile is.
    virtual std::string Attribution() const = 0;
    /// Null when it is not there. It may come later; then the listeners are told. Never waits.
    virtual std::shared_ptr<const drawing::Bitmap> Tile(const CTile& tile) = 0;
    /// The same, but nobody is asked for it.
    virtual std::shared_ptr<const drawing::Bitmap> TileAtHand(const CTile& tile) { return Tile(tile); }
    /// Whether a tile has been asked for and may come.
    virtual bool IsComing(const CTile&) const { return false; }
};

/// The source of the settings in force; null when they name none, or none that can be used.
CTileSource* RuvTiles();
/// Why the source that the settings name cannot be used, a German sentence; empty otherwise.
std::string RuvTilesTrouble();

/// Is told, while it lives, that there are other tiles than before: one has come, or the settings changed.
class CTilesListener
{
  public:
    explicit CTilesListener(std::function<void()> changed);
    ~CTilesListener();
    CTilesListener(const CTilesListener&) = delete;
    CTilesListener& operator=(const CTilesListener&) = delete;

    void Changed() const { m_changed(); }

  private:
    std::function<void()> m_changed;
};
