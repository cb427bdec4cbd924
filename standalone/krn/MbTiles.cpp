// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "krn/MbTiles.h"

#include "base/AtomicFile.h"
#include "base/FileSystem.h"
#include "krn/Tiles.h"

#ifdef RUV_SQLITE

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <optional>
#include <set>
#include <utility>

namespace krn
{
namespace
{

// The file may come from anybody. What one question may take, beyond which the file is not asked again: steps of the
// database's machine, of which a map without an index takes many and a view that runs for ever all, and time, because a
// step may be a long one.
constexpr int kStepsAtOnce = 1000;
constexpr int kMostTimes = 2000;
constexpr std::chrono::seconds kLongest{2};
constexpr int kCacheKilobytes = 4096;
/// Of all open map files together: a view of views of views needs as much as it can get.
constexpr sqlite3_int64 kMostMemory = sqlite3_int64{32} << 20U;
/// What a map's views may compute with. Others may take hours for one step, as a search in megabytes.
constexpr std::array<std::string_view, 4> kFunctions{"coalesce", "ifnull", "max", "min"};

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

/// What a question has taken so far.
struct Question {
    int times = 0;
    std::chrono::steady_clock::time_point began = std::chrono::steady_clock::now();

    bool Enough() { return ++times > kMostTimes || std::chrono::steady_clock::now() - began > kLongest; }
};

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
        // Nothing in the file is run but views, and those not for long.
        sqlite3_hard_heap_limit64(kMostMemory);
        sqlite3_db_config(database, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
        sqlite3_db_config(database, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
        sqlite3_limit(database, SQLITE_LIMIT_LENGTH, static_cast<int>(2 * kMostTileBytes));
        sqlite3_limit(database, SQLITE_LIMIT_ATTACHED, 0);
        sqlite3_progress_handler(
            database, kStepsAtOnce, [](void* question) { return static_cast<Question*>(question)->Enough() ? 1 : 0; },
            &m_question);
        Set("cache_size = -" + std::to_string(kCacheKilobytes));
        Set("temp_store = MEMORY"); // sorting leaves nothing on the disk
        WithdrawFunctions();
        sqlite3_set_authorizer(
            database,
            [](void*, int what, const char*, const char*, const char*, const char*) {
                return what == SQLITE_SELECT || what == SQLITE_READ || what == SQLITE_FUNCTION ? SQLITE_OK
                                                                                               : SQLITE_DENY;
            },
            nullptr);
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
        if (!m_slow && (!smallest || !largest || *smallest > *largest))
            return "enthält keine Kacheln.";
        if (!m_slow)
            Blob({*largest, -1, -1}); // there is none: without an index all have to be looked at
        if (m_slow)
            return "lässt sich nicht rasch genug lesen; meist fehlt ihren Kacheln ein Index.";
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
        m_question = {};
        sqlite3_stmt* statement = nullptr;
        sqlite3_prepare_v2(m_database.get(), sql.c_str(), -1, &statement, nullptr);
        return Statement(statement);
    }

    /// Whether there is a row.
    bool Step(sqlite3_stmt* statement)
    {
        m_question = {};
        const int outcome = statement == nullptr ? SQLITE_DONE : sqlite3_step(statement);
        m_slow = m_slow || outcome == SQLITE_INTERRUPT || outcome == SQLITE_NOMEM;
        return outcome == SQLITE_ROW;
    }

    void Set(const std::string& pragma) { Step(Prepare("PRAGMA " + pragma).get()); }

    /// A function of the program's own cannot be used by what the file defines (SQLITE_DBCONFIG_TRUSTED_SCHEMA): each
    /// of the database's is replaced by one that would fail.
    void WithdrawFunctions()
    {
        std::set<std::string> names;
        const Statement list = Prepare("SELECT name FROM pragma_function_list");
        while (Step(list.get()))
            names.insert(Bytes(list.get()));
        for (const std::string& name : names)
            if (std::find(kFunctions.begin(), kFunctions.end(), name) == kFunctions.end())
                sqlite3_create_function_v2(
                    m_database.get(), name.c_str(), -1, SQLITE_UTF8, nullptr,
                    [](sqlite3_context* context, int, sqlite3_value**) {
                        sqlite3_result_error(context, "not for maps", -1);
                    },
                    nullptr, nullptr, nullptr);
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
        return Step(statement.get()) ? Bytes(statement.get()) : std::string();
    }

    /// As the file says, or else as its tiles are.
    std::optional<int> Zoom(const char* name, const char* otherwise)
    {
        const std::string text = Metadata(name);
        int zoom = -1;
        std::from_chars(text.data(), text.data() + text.size(), zoom);
        if (zoom < 0)
            if (const Statement statement = Prepare(otherwise);
                Step(statement.get()) && sqlite3_column_type(statement.get(), 0) == SQLITE_INTEGER)
                zoom = sqlite3_column_int(statement.get(), 0);
        return zoom < 0 ? std::nullopt : std::optional(std::min(zoom, kLargestTileZoom));
    }

    std::string Blob(const CTile& tile)
    {
        if (m_slow)
            return {};
        sqlite3_stmt* const statement = m_tile.get();
        sqlite3_bind_int(statement, 1, tile.zoom);
        sqlite3_bind_int(statement, 2, tile.x);
        // The format counts its rows from the south.
        sqlite3_bind_int(statement, 3, m_fromNorth ? tile.y : (1 << tile.zoom) - 1 - tile.y);
        std::string bytes = Step(statement) ? Bytes(statement) : std::string();
        sqlite3_reset(statement);
        return bytes;
    }

    std::shared_ptr<const drawing::Bitmap> Read(const CTile& tile)
    {
        std::string bytes = Blob(tile);
        return bytes.empty() ? nullptr : DecodeTile(std::move(bytes));
    }

    Database m_database;
    Statement m_tile; // goes before the database
    Question m_question;
    bool m_slow = false; ///< a question took too much
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
