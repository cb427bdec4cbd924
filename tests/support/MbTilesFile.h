// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Writes map files for tests.
#pragma once

#include "drawing/BitmapFiles.h"
#include "host/Tiles.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <string>
#include <utility>
#include <vector>

namespace test
{

/// A PNG file of one colour (0xRRGGBB) with a white frame of one pixel.
inline std::string TilePicture(std::uint32_t color, int side = 256)
{
    std::vector<unsigned char> rgb;
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x) {
            const bool frame = x == 0 || y == 0 || x == side - 1 || y == side - 1;
            for (const unsigned bit : {16U, 8U, 0U})
                rgb.push_back(static_cast<unsigned char>(frame ? 0xFFU : color >> bit & 0xFFU));
        }
    return drawing::PngFile(side, side, rgb.data());
}

class MbTilesFile
{
  public:
    explicit MbTilesFile(const std::string& path)
    {
        EXPECT_EQ(sqlite3_open(path.c_str(), &m_database), SQLITE_OK);
        Run("CREATE TABLE metadata (name text, value text);"
            "CREATE TABLE tiles (zoom_level integer, tile_column integer, tile_row integer, tile_data blob);"
            "CREATE UNIQUE INDEX tile_index ON tiles (zoom_level, tile_column, tile_row); BEGIN");
    }
    ~MbTilesFile()
    {
        Run("COMMIT");
        sqlite3_close(m_database);
    }
    MbTilesFile(const MbTilesFile&) = delete;
    MbTilesFile& operator=(const MbTilesFile&) = delete;

    void Run(const std::string& sql) { EXPECT_EQ(sqlite3_exec(m_database, sql.c_str(), nullptr, nullptr, nullptr), 0); }
    void Metadata(const std::string& name, const std::string& value)
    {
        Run("INSERT INTO metadata VALUES ('" + name + "', '" + value + "')");
    }
    /// Rows are counted from the south, as the format does.
    void Tile(const CTile& tile, const std::string& bytes)
    {
        Row(tile.zoom, tile.x, (1 << tile.zoom) - 1 - tile.y, bytes);
    }
    void Row(int zoom, int column, int row, const std::string& bytes)
    {
        sqlite3_stmt* statement = nullptr;
        EXPECT_EQ(sqlite3_prepare_v2(m_database, "INSERT INTO tiles VALUES (?, ?, ?, ?)", -1, &statement, nullptr), 0);
        sqlite3_bind_int(statement, 1, zoom);
        sqlite3_bind_int(statement, 2, column);
        sqlite3_bind_int(statement, 3, row);
        sqlite3_bind_blob(statement, 4, bytes.data(), static_cast<int>(bytes.size()), SQLITE_TRANSIENT);
        EXPECT_EQ(sqlite3_step(statement), SQLITE_DONE);
        sqlite3_finalize(statement);
    }

  private:
    sqlite3* m_database = nullptr;
};

} // namespace test
