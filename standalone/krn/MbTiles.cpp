// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "krn/MbTiles.h"

#include "base/AtomicFile.h"
#include "base/FileSystem.h"
#include "krn/Tiles.h"

#ifdef RUV_SQLITE

#include <sqlite3.h>

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

namespace krn
{
namespace
{

/// Steps of the database's machine that one question may take: a file without an index, or a view that runs for ever,
/// gives no answer then.
constexpr int kStepsAtOnce = 1000;
constexpr int kMostTimes = 2000;
constexpr int kCacheKilobytes = 4096;

struct Close {
    void operator()(sqlite3* database) const { sqlite3_close(database); }
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Database = std::unique_ptr<sqlite3, Close>;
using Statement = std::unique_ptr<sqlite3_stmt, Close>;

/// The path as the database's own form of address, so that none of its characters means anything else.
std::string AddressOf(const std::string& path)
{
    constexpr std::string_view kHex = "0123456789ABCDEF";
    std::string address = "file:";
    for (const char c : path) {
        const bool plain = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '/' ||
                           c == '.' || c == '-' || c == '_';
        const auto byte = static_cast<unsigned char>(c);
        if (plain)
            address += c;
        else
            (address += '%').append(1, kHex[byte >> 4U]).append(1, kHex[byte & 15U]);
    }
    // Nobody writes to it meanwhile, says "immutable": no lock and no journal beside it is looked for.
    return address + "?mode=ro&immutable=1";
}

class MbTiles final : public CTileSource
{
  public:
    /// What is wrong, to follow the file's name; empty when nothing is.
    std::string Open(const std::string& path)
    {
        sqlite3* database = nullptr;
        const int opened =
            sqlite3_open_v2(AddressOf(path).c_str(), &database, SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, nullptr);
        m_database.reset(database);
        if (opened != SQLITE_OK)
            return "lässt sich nicht lesen.";
        // The file may come from anybody: nothing in it is run but views, and those not for long.
        sqlite3_db_config(database, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
        sqlite3_db_config(database, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
        sqlite3_limit(database, SQLITE_LIMIT_LENGTH, static_cast<int>(2 * kMostTileBytes));
        sqlite3_limit(database, SQLITE_LIMIT_ATTACHED, 0);
        sqlite3_progress_handler(
            database, kStepsAtOnce, [](void* times) { return ++*static_cast<int*>(times) > kMostTimes ? 1 : 0; },
            &m_times);
        Prepare("PRAGMA cache_size = -" + std::to_string(kCacheKilobytes));
        m_tile = Prepare("SELECT tile_data FROM tiles WHERE zoom_level = ?1 AND tile_column = ?2 AND tile_row = ?3");
        if (m_tile == nullptr)
            return "ist keine Karte im Format MBTiles.";
        const std::string format = Metadata("format");
        if (format == "pbf" || format == "mvt")
            return "enthält eine Karte aus Vektoren, keine Bilder.";
        if (format == "webp")
            return "enthält Bilder im Format WebP; gelesen werden PNG und JPEG.";
        m_fromNorth = Metadata("scheme") == "xyz";
        const auto smallest = Zoom("minzoom", "SELECT min(zoom_level) FROM tiles");
        const auto largest = Zoom("maxzoom", "SELECT max(zoom_level) FROM tiles");
        if (!smallest || !largest || *smallest > *largest)
            return "enthält keine Kacheln.";
        m_smallest = *smallest;
        m_largest = *largest;
        m_attribution = AttributionText(Metadata("attribution"));
        if (m_attribution.empty())
            m_attribution = AttributionText(Metadata("name"));
        if (m_attribution.empty())
            m_attribution = path.substr(path.find_last_of("/\\") + 1);
        return {};
    }

    int SmallestZoom() const override { return m_smallest; }
    int LargestZoom() const override { return m_largest; }
    std::string Attribution() const override { return m_attribution; }

    std::shared_ptr<const drawing::Bitmap> Tile(const CTile& tile) override
    {
        if (tile.zoom < m_smallest || tile.zoom > m_largest)
            return nullptr;
        if (const auto kept = m_memory.Find(tile))
            return *kept;
        auto bitmap = Read(tile);
        m_memory.Keep(tile, bitmap);
        return bitmap;
    }

  private:
    Statement Prepare(const std::string& sql)
    {
        m_times = 0;
        sqlite3_stmt* statement = nullptr;
        sqlite3_prepare_v2(m_database.get(), sql.c_str(), -1, &statement, nullptr);
        Statement owned(statement);
        if (sql.starts_with("PRAGMA") && owned != nullptr)
            sqlite3_step(statement);
        return owned;
    }

    std::string Bytes(sqlite3_stmt* statement) const
    {
        const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement, 0));
        const int size = sqlite3_column_bytes(statement, 0);
        return bytes == nullptr || size <= 0 ? std::string() : std::string(bytes, static_cast<std::size_t>(size));
    }

    std::string Metadata(const char* name)
    {
        const Statement statement = Prepare("SELECT value FROM metadata WHERE name = ?1");
        if (statement == nullptr)
            return {};
        sqlite3_bind_text(statement.get(), 1, name, -1, SQLITE_STATIC);
        return sqlite3_step(statement.get()) == SQLITE_ROW ? Bytes(statement.get()) : std::string();
    }

    /// As the file says, or else as its tiles are.
    std::optional<int> Zoom(const char* name, const char* otherwise)
    {
        const std::string text = Metadata(name);
        int zoom = -1;
        std::from_chars(text.data(), text.data() + text.size(), zoom);
        if (zoom < 0)
            if (const Statement statement = Prepare(otherwise);
                statement != nullptr && sqlite3_step(statement.get()) == SQLITE_ROW &&
                sqlite3_column_type(statement.get(), 0) == SQLITE_INTEGER)
                zoom = sqlite3_column_int(statement.get(), 0);
        return zoom < 0 ? std::nullopt : std::optional(std::min(zoom, kLargestTileZoom));
    }

    std::shared_ptr<const drawing::Bitmap> Read(const CTile& tile)
    {
        m_times = 0;
        sqlite3_stmt* const statement = m_tile.get();
        sqlite3_bind_int(statement, 1, tile.zoom);
        sqlite3_bind_int(statement, 2, tile.x);
        // The format counts its rows from the south.
        sqlite3_bind_int(statement, 3, m_fromNorth ? tile.y : (1 << tile.zoom) - 1 - tile.y);
        std::string bytes;
        if (sqlite3_step(statement) == SQLITE_ROW)
            bytes = Bytes(statement);
        sqlite3_reset(statement);
        return bytes.empty() ? nullptr : DecodeTile(std::move(bytes));
    }

    Database m_database;
    Statement m_tile; // before the database goes
    int m_times = 0;
    int m_smallest = 0;
    int m_largest = 0;
    bool m_fromNorth = false;
    std::string m_attribution;
    TileMemory m_memory;
};

} // namespace

std::unique_ptr<CTileSource> OpenMbTiles(const std::string& utf8Path, std::string& trouble)
{
    auto tiles = std::make_unique<MbTiles>();
    trouble = !base::FileExists(utf8Path)       ? "gibt es nicht."
              : !base::IsOrdinaryFile(utf8Path) ? "ist keine gewöhnliche Datei."
                                                : tiles->Open(utf8Path);
    if (trouble.empty())
        return tiles;
    trouble = "Die Kartendatei „" + utf8Path + "“ " + trouble;
    return nullptr;
}

} // namespace krn

#else

namespace krn
{

std::unique_ptr<CTileSource> OpenMbTiles(const std::string&, std::string& trouble)
{
    trouble = "Dieses Programm ist ohne die Bibliothek für Kartendateien gebaut.";
    return nullptr;
}

} // namespace krn

#endif
