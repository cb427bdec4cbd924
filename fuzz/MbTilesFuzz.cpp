// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Any bytes as a map file: those of a database, or the statements that make one. No tile or a small one comes, nothing
// is left beside the file, and it does not last.
#include "base/Utf.h"
#include "fuzz/ScratchFolder.h"
#include "host/Assert.h"
#include "krn/MbTiles.h"
#include "krn/Tiles.h"

#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <string>
#include <string_view>

namespace
{

constexpr std::string_view kDatabase = "SQLite format 3";
constexpr int kMostSteps = 300;              // thousands, for making a file
constexpr std::chrono::seconds kLongest{30}; // for all questions to a file, under the slowest sanitizer

/// Makes a file by SQL statements, as far as they can be carried out, within bounds.
void Make(const std::string& path, const std::string& statements)
{
    sqlite3* database = nullptr;
    if (sqlite3_open(path.c_str(), &database) == SQLITE_OK) {
        sqlite3_exec(database, "PRAGMA page_size = 512; PRAGMA max_page_count = 4000; PRAGMA journal_mode = OFF",
                     nullptr, nullptr, nullptr);
        sqlite3_limit(database, SQLITE_LIMIT_LENGTH, 1 << 20);
        sqlite3_limit(database, SQLITE_LIMIT_ATTACHED, 0);
        sqlite3_set_authorizer(
            database,
            [](void*, int what, const char*, const char*, const char*, const char*) {
                return what == SQLITE_PRAGMA || what == SQLITE_ATTACH ? SQLITE_DENY : SQLITE_OK;
            },
            nullptr);
        int steps = 0;
        sqlite3_progress_handler(
            database, 1000, [](void* counted) { return ++*static_cast<int*>(counted) > kMostSteps ? 1 : 0; }, &steps);
        sqlite3_exec(database, statements.c_str(), nullptr, nullptr, nullptr);
    }
    sqlite3_close(database);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    static const fuzz::ScratchFolder folder;
    folder.Clear();
    const std::string input(reinterpret_cast<const char*>(bytes), size);
    const std::string path = folder.File("karte.mbtiles");
    if (input.starts_with(kDatabase))
        folder.Write("karte.mbtiles", input);
    else
        Make(path, input);
    const auto began = std::chrono::steady_clock::now();
    std::string trouble;
    const auto tiles = krn::OpenMbTiles(path, trouble);
    RUV_ASSERT((tiles == nullptr) == !trouble.empty());
    if (tiles != nullptr) {
        RUV_ASSERT(tiles->SmallestZoom() >= 0 && tiles->SmallestZoom() <= tiles->LargestZoom());
        RUV_ASSERT(tiles->LargestZoom() <= krn::kLargestTileZoom);
        RUV_ASSERT(!tiles->Attribution().empty() && base::IsUtf8(tiles->Attribution()));
        for (const int zoom : {tiles->SmallestZoom(), tiles->LargestZoom()})
            for (int x = 0; x < 3; ++x)
                if (const auto bitmap = tiles->Tile({zoom, x, std::min(x, 1)}))
                    RUV_ASSERT(std::max(bitmap->width, bitmap->height) <= krn::kMostTilePixels);
    }
    RUV_ASSERT(std::chrono::steady_clock::now() - began < kLongest);
    RUV_ASSERT(std::distance(std::filesystem::directory_iterator(folder.Path()), {}) <= 1);
    return 0;
}
