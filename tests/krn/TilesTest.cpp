// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "krn/Tiles.h"

#include "krn/MbTiles.h"
#include "tests/support/MbTilesFile.h"
#include "tests/support/TemporaryFolder.h"

#include <chrono>
#include <filesystem>
#include <fstream>

namespace
{

constexpr std::uint32_t kRed = 0xC01020;
constexpr std::uint32_t kBlue = 0x1020C0;

class MbTilesTest : public ::testing::Test
{
  protected:
    std::unique_ptr<CTileSource> Open() { return krn::OpenMbTiles(path, trouble); }
    static std::uint32_t Middle(const std::shared_ptr<const drawing::Bitmap>& bitmap)
    {
        return bitmap == nullptr ? 0
                                 : bitmap->pixels.at(static_cast<std::size_t>(bitmap->height / 2 * bitmap->width +
                                                                              bitmap->width / 2)) &
                                       0xFFFFFFU;
    }

    test::TemporaryFolder folder;
    std::string path = folder.File("Karte & 100 %?.mbtiles");
    std::string trouble;
};

} // namespace

TEST_F(MbTilesTest, TilesByZoomColumnAndRow)
{
    {
        test::MbTilesFile file(path);
        file.Metadata("attribution", "<a href=\"https://example.org\">&copy; Vermessung &amp; Karte</a>");
        file.Metadata("minzoom", "1");
        file.Metadata("maxzoom", "2");
        file.Tile({1, 0, 0}, test::TilePicture(kRed));
        file.Tile({2, 3, 1}, test::TilePicture(kBlue, 512));
        file.Tile({2, 0, 0}, "kein Bild");
        file.Tile({2, 1, 1}, test::TilePicture(kRed, 1025)); // larger than tiles are
    }
    const auto source = Open();
    ASSERT_NE(source, nullptr) << trouble;
    EXPECT_EQ(source->SmallestZoom(), 1);
    EXPECT_EQ(source->LargestZoom(), 2);
    EXPECT_EQ(source->Attribution(), "© Vermessung & Karte");
    EXPECT_EQ(Middle(source->Tile({1, 0, 0})), kRed);
    EXPECT_EQ(Middle(source->Tile({2, 3, 1})), kBlue);
    for (const CTile& none : {CTile{1, 0, 1}, CTile{2, 3, 2}, CTile{2, 0, 0}, CTile{2, 1, 1}, CTile{3, 0, 0},
                              CTile{0, 0, 0}, CTile{2, -1, 1}})
        EXPECT_EQ(source->Tile(none), nullptr) << none.zoom << " " << none.x << " " << none.y;
    // Nothing was left beside the file.
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 1);
}

TEST_F(MbTilesTest, WhatTheMetadataLackComesFromTheTiles)
{
    {
        test::MbTilesFile file(path);
        file.Metadata("scheme", "xyz");
        file.Row(3, 1, 2, test::TilePicture(kRed));
        file.Row(4, 1, 2, test::TilePicture(kBlue));
    }
    const auto source = Open();
    ASSERT_NE(source, nullptr) << trouble;
    EXPECT_EQ(source->SmallestZoom(), 3);
    EXPECT_EQ(source->LargestZoom(), 4);
    EXPECT_EQ(source->Attribution(), "Karte & 100 %?.mbtiles");
    EXPECT_EQ(Middle(source->Tile({3, 1, 2})), kRed); // counted from the north
}

TEST_F(MbTilesTest, FilesThatAreNoMapSayWhatTheyAre)
{
    EXPECT_EQ(Open(), nullptr);
    EXPECT_EQ(trouble, "Die Kartendatei „" + path + "“ gibt es nicht.");
    std::ofstream(path) << std::string(5000, 'x');
    EXPECT_EQ(Open(), nullptr);
    EXPECT_EQ(trouble, "Die Kartendatei „" + path + "“ ist keine Karte im Format MBTiles.");
    std::filesystem::remove(path);
    {
        test::MbTilesFile file(path);
        file.Metadata("format", "pbf");
    }
    EXPECT_EQ(Open(), nullptr);
    EXPECT_NE(trouble.find("aus Vektoren"), std::string::npos) << trouble;
    std::filesystem::remove(path);
    {
        test::MbTilesFile file(path);
    }
    EXPECT_EQ(Open(), nullptr);
    EXPECT_NE(trouble.find("enthält keine Kacheln"), std::string::npos) << trouble;
    std::filesystem::create_directory(folder.File("Ordner"));
    path = folder.File("Ordner");
    EXPECT_EQ(Open(), nullptr);
}

// A table may be a view that counts for ever, one whose text grows with each view it is made of, one that takes long
// for each row, or much memory: it is refused, or has no tile, soon.
TEST_F(MbTilesTest, HostileFilesAreBounded)
{
    const std::string thousand = "CREATE TABLE t (a, b); INSERT INTO t WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL "
                                 "SELECT i + 1 FROM n LIMIT 1000) "
                                 "SELECT i, i FROM n; ";
    std::string doubled =
        "CREATE VIEW v0 AS SELECT 0 AS zoom_level, 0 AS tile_column, 5 AS tile_row, x'00' AS tile_data; ";
    for (int i = 0; i < 40; ++i)
        doubled += "CREATE VIEW v" + std::to_string(i + 1) + " AS SELECT * FROM v" + std::to_string(i) +
                   " UNION SELECT * FROM v" + std::to_string(i) + "; ";
    struct Case {
        std::string sql;
        const char* trouble;
    };
    for (const Case& one :
         {Case{"CREATE VIEW tiles AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) "
               "SELECT 0 AS zoom_level, 0 AS tile_column, i * 0 + 5 AS tile_row, x'00' AS tile_data FROM n",
               "keine Karte"},
          Case{doubled + "CREATE VIEW tiles AS SELECT * FROM v40", "keine Karte"},
          Case{"CREATE VIEW tiles AS SELECT zoom_level FROM tiles", "keine Karte"},
          // Functions can take hours for one row of megabytes.
          Case{"CREATE TABLE big (a, b); INSERT INTO big VALUES (x'00', x'01'); "
               "CREATE VIEW tiles AS SELECT 0 AS zoom_level, 0 AS tile_column, instr(a, b) AS tile_row, a AS tile_data "
               "FROM big",
               "keine Karte"},
          Case{"CREATE TABLE tiles (zoom_level, tile_column, a, b, tile_data, tile_row AS (instr(a, b))); INSERT INTO "
               "tiles VALUES (0, 0, x'00', x'01', x'00')",
               "keine Karte"},
          // Long rows by the million, sorted and joined.
          Case{thousand + "INSERT INTO t VALUES (0, zeroblob(1000000)); CREATE VIEW tiles AS SELECT x.a AS zoom_level, "
                          "y.a AS tile_column, z.a AS tile_row, x.b || y.b AS tile_data FROM t x, t y, t z "
                          "ORDER BY tile_data LIMIT 100000000",
               "nicht rasch genug"},
          Case{thousand +
                   "CREATE VIEW tiles AS SELECT x.a * 0 AS zoom_level, y.a * 0 AS tile_column, z.b * 0 AS tile_row, "
                   "x'00' AS tile_data FROM t x, t y, t z",
               "nicht rasch genug"}}) {
        std::filesystem::remove(path);
        {
            test::MbTilesFile file(path);
            file.Metadata("minzoom", "0");
            file.Metadata("maxzoom", "0");
            file.Run("DROP TABLE tiles; " + one.sql);
        }
        const auto before = std::chrono::steady_clock::now();
        EXPECT_EQ(Open(), nullptr) << one.sql;
        EXPECT_NE(trouble.find(one.trouble), std::string::npos) << trouble << one.sql;
        EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(5)) << one.sql;
    }

    const std::string good = folder.File("gut.mbtiles");
    {
        test::MbTilesFile file(good);
        file.Metadata("minzoom", "0");
        file.Metadata("maxzoom", "0");
        file.Tile({0, 0, 0}, test::TilePicture(kRed, 32));
    }
    std::ifstream stream(good, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    std::uint32_t random = 7;
    for (int i = 0; i < 300; ++i) {
        std::string damaged = bytes;
        for (int k = 0; k < 20; ++k) {
            random = random * 1664525U + 1013904223U;
            damaged[random / 7 % damaged.size()] = static_cast<char>(random >> 24U);
        }
        if (i % 3 == 0)
            damaged.resize(random % damaged.size());
        std::ofstream(path, std::ios::binary | std::ios::trunc) << damaged;
        if (const auto source = Open()) {
            const auto bitmap = source->Tile({0, 0, 0});
            EXPECT_TRUE(bitmap == nullptr || bitmap->width <= krn::kMostTilePixels);
        } else {
            EXPECT_FALSE(trouble.empty());
        }
    }
}

TEST(TilesTest, AddressesOfAServer)
{
    EXPECT_EQ(krn::TileAddressProblem("https://karte.example/{z}/{x}/{y}.png"), "");
    EXPECT_EQ(krn::TileAddressProblem("http://127.0.0.1:8080/t?x={x}&y={y}&z={z}&x2={x}"), "");
    for (const char* wrong : {"", "karte.example/{z}/{x}/{y}", "ftp://karte.example/{z}/{x}/{y}", "file:///{z}/{x}/{y}",
                              "https:///{z}/{x}/{y}", "https://{s}.karte.example/{z}/{x}/{y}", "https://{z}/{x}/{y}",
                              "https://karte.example/{z}/{x}.png", "https://karte.example/{z}/{x}/{y}/{r}",
                              "https://karte.example/{z}/{x}/{y} .png"})
        EXPECT_NE(krn::TileAddressProblem(wrong), "") << wrong;
    EXPECT_EQ(krn::TileAddress("http://k/{z}/{x}/{y}?{x}", {12, 34, 56}), "http://k/12/34/56?34");
}

TEST(TilesTest, AttributionsArePlainText)
{
    EXPECT_EQ(krn::AttributionText(" <b>A</b>\n&lt;B&gt; "), "A <B>");
    EXPECT_EQ(krn::AttributionText("\xFF"), "");
    const std::string lang = krn::AttributionText(std::string(119, 'a') + "ÄÄÄ");
    EXPECT_EQ(lang, std::string(119, 'a') + " …");
}

// Without a source there are no tiles; with one, as soon as the settings say so.
TEST(TilesTest, TheSettingsDecide)
{
    RuvCfg.karte = {};
    int made = 0;
    struct Empty final : CTileSource {
        int SmallestZoom() const override { return 0; }
        int LargestZoom() const override { return 1; }
        std::string Attribution() const override { return "leer"; }
        std::shared_ptr<const drawing::Bitmap> Tile(const CTile&) override { return nullptr; }
    };
    krn::SetServerTiles([&made](const CKartenCfg&) {
        ++made;
        return std::make_unique<Empty>();
    });
    RuvCfg.karte.server = "https://karte.example/{z}/{x}/{y}.png";
    EXPECT_EQ(RuvTiles(), nullptr);
    RuvCfg.karte.quelle = CKartenCfg::Quelle::server;
    ASSERT_NE(RuvTiles(), nullptr);
    EXPECT_EQ(RuvTiles(), RuvTiles());
    EXPECT_EQ(made, 1);
    RuvCfg.karte.server = "https://karte.example/";
    EXPECT_EQ(RuvTiles(), nullptr);
    EXPECT_NE(RuvTilesTrouble(), "");
    RuvCfg.karte.quelle = CKartenCfg::Quelle::datei;
    RuvCfg.karte.datei = "/gibt/es/nicht.mbtiles";
    EXPECT_EQ(RuvTiles(), nullptr);
    EXPECT_NE(RuvTilesTrouble().find("gibt es nicht"), std::string::npos);
    krn::SetServerTiles({});
    RuvCfg.karte = {};
    EXPECT_EQ(RuvTilesTrouble(), "");
}
