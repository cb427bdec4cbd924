// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/TileServer.h"

#include "desktop/SettingsDialog.h"
#include "drawing/BitmapFiles.h"
#include "masks/import/Kartenbild.h"
#include "tests/desktop/DesktopFixture.h"
#include "tests/support/TemporaryFolder.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTcpServer>
#include <QTcpSocket>

#include <algorithm>
#include <filesystem>

namespace
{

/// A server of tiles on this machine; counts what is asked of it.
class LocalServer
{
  public:
    enum class Manner { tiles, missing, silent, garbage, endless, dripping, elsewhere, coarse };

    LocalServer()
    {
        const std::vector<unsigned char> rgb(16 * 16 * 3, 0x40);
        m_picture = QByteArray::fromStdString(drawing::PngFile(16, 16, rgb.data()));
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] {
            QTcpSocket* const socket = m_server.nextPendingConnection();
            ++connections;
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
                const QByteArray line = socket->readAll().split('\r').first();
                if (line.startsWith("GET "))
                    Answer(*socket, line.split(' ').at(1));
            });
        });
        if (!m_server.listen(QHostAddress::LocalHost))
            throw std::runtime_error("no port on the loopback");
    }
    std::string Address() const
    {
        return "http://127.0.0.1:" + std::to_string(m_server.serverPort()) + "/{z}/{x}/{y}.png";
    }

    static constexpr int kCoarse = 16; ///< the largest zoom of that manner
    Manner manner = Manner::tiles;
    int connections = 0;
    QList<QByteArray> asked;

  private:
    void Answer(QTcpSocket& socket, const QByteArray& path)
    {
        asked << path;
        const auto answer = [&socket](const QByteArray& status, const QByteArray& body, const QByteArray& more = {}) {
            socket.write("HTTP/1.1 " + status + "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n" +
                         more + "\r\n" + body);
        };
        switch (manner) {
        case Manner::tiles:
            answer("200 OK", m_picture);
            break;
        case Manner::coarse:
            if (path.split('/').at(1).toInt() <= kCoarse)
                answer("200 OK", m_picture);
            else
                answer("404 Not Found", "nichts");
            break;
        case Manner::missing:
            answer("404 Not Found", "nichts");
            break;
        case Manner::silent:
            break;
        case Manner::garbage:
            answer("200 OK", m_picture.left(60) + "garbage");
            break;
        case Manner::endless:
            socket.write("HTTP/1.1 200 OK\r\n\r\n" + QByteArray(3 << 20, 'x'));
            break;
        case Manner::dripping: {
            socket.write("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n");
            auto* timer = new QTimer(&socket);
            QObject::connect(timer, &QTimer::timeout, &socket, [&socket] { socket.write("x"); });
            timer->start(20);
            break;
        }
        case Manner::elsewhere:
            answer("302 Found", "",
                   "Location: http://localhost:" + QByteArray::number(m_server.serverPort()) + "/anderswo.png\r\n");
            break;
        }
    }

    QTcpServer m_server;
    QByteArray m_picture;
};

class TileServerTest : public ::testing::Test
{
  protected:
    TileServerTest()
    {
        limits.answerMilliseconds = 300;
        limits.retryMilliseconds = 100'000;
    }
    std::unique_ptr<desktop::TileServer> Make()
    {
        CKartenCfg settings;
        settings.quelle = CKartenCfg::Quelle::server;
        settings.server = server.Address();
        settings.herkunft = "© Test";
        return std::make_unique<desktop::TileServer>(settings, folder.File("kacheln"), limits);
    }
    static bool Comes(desktop::TileServer& tiles, const CTile& tile)
    {
        return QTest::qWaitFor([&] { return tiles.Tile(tile) != nullptr; }, 1500);
    }

    LocalServer server;
    test::TemporaryFolder folder;
    desktop::TileServerLimits limits;
};

} // namespace

TEST_F(TileServerTest, TilesComeOnceAndStayOnDisk)
{
    int told = 0;
    {
        const CTilesListener listener([&told] { ++told; });
        const auto tiles = Make();
        EXPECT_EQ(tiles->Attribution(), "© Test");
        EXPECT_EQ(server.connections, 0);
        EXPECT_TRUE(Comes(*tiles, {5, 17, 10}));
        EXPECT_TRUE(Comes(*tiles, {5, 18, 10}));
        EXPECT_EQ(server.asked, (QList<QByteArray>{"/5/17/10.png", "/5/18/10.png"}));
        EXPECT_EQ(told, 2);
        for (const CTile& none : {CTile{-1, 0, 0}, CTile{5, 32, 0}, CTile{5, 0, -1}, CTile{20, 0, 0}})
            EXPECT_EQ(tiles->Tile(none), nullptr);
    }
    const auto later = Make();
    EXPECT_NE(later->Tile({5, 17, 10}), nullptr); // at once
    QTest::qWait(50);
    EXPECT_EQ(server.asked.size(), 2);
}

// Whatever the server does, there is no tile, an end to it, and no second question soon.
TEST_F(TileServerTest, ABadServerIsHarmless)
{
    using Manner = LocalServer::Manner;
    for (const Manner manner :
         {Manner::missing, Manner::silent, Manner::garbage, Manner::endless, Manner::dripping, Manner::elsewhere}) {
        server.manner = manner;
        server.asked.clear();
        const auto tiles = Make();
        EXPECT_EQ(tiles->Tile({3, 1, static_cast<int>(manner)}), nullptr);
        // Two at once may be under way: a third is asked for when the first has ended.
        tiles->Tile({3, 2, static_cast<int>(manner)});
        tiles->Tile({3, 3, static_cast<int>(manner)});
        EXPECT_TRUE(QTest::qWaitFor([&] { return server.asked.size() == 3; }, 2000)) << static_cast<int>(manner);
        QTest::qWait(400);
        for (int x = 1; x <= 3; ++x)
            EXPECT_EQ(tiles->Tile({3, x, static_cast<int>(manner)}), nullptr) << static_cast<int>(manner);
        QTest::qWait(50);
        EXPECT_EQ(server.asked.size(), 3) << static_cast<int>(manner);
    }
    EXPECT_FALSE(std::filesystem::exists(folder.File("kacheln")));
    // Going away in the middle of an answer.
    server.manner = Manner::dripping;
    Make()->Tile({3, 7, 7});
    QTest::qWait(100);
}

TEST_F(TileServerTest, TheDiskCacheIsBoundedAndKeepsWhatWasUsedLast)
{
    const std::string bytes(1000, 'x');
    base::FileCache cache(folder.File("cache"), 10'000);
    for (int i = 0; i < 10; ++i) {
        cache.Put("a/" + std::to_string(i), bytes);
        const auto path = folder.File("cache/a/" + std::to_string(i));
        std::filesystem::last_write_time(path,
                                         std::filesystem::file_time_type::clock::now() - std::chrono::hours(20 - i));
    }
    EXPECT_EQ(cache.Size(), 10'000U);
    EXPECT_EQ(cache.Get("a/0", 2000), bytes); // used now
    cache.Put("b/neu", bytes);
    EXPECT_EQ(cache.Size(), 9'000U);
    EXPECT_TRUE(cache.Get("a/0", 2000).has_value());
    EXPECT_TRUE(cache.Get("b/neu", 2000).has_value());
    EXPECT_FALSE(cache.Get("a/1", 2000).has_value());
    EXPECT_FALSE(cache.Get("a/2", 2000).has_value());
    EXPECT_TRUE(cache.Get("a/3", 2000).has_value());
    EXPECT_FALSE(cache.Get("a/4", 999).has_value()); // longer than wanted
    // What is there from before counts.
    base::FileCache later(folder.File("cache"), 10'000);
    later.Put("c", bytes);
    EXPECT_EQ(later.Size(), 10'000U);
    for (const char* outside : {"../x", "/x", "a/../../x", "A", ""}) {
        later.Put(outside, bytes);
        EXPECT_FALSE(later.Get(outside, 2000).has_value()) << outside;
    }
    EXPECT_FALSE(std::filesystem::exists(folder.File("x")));
}

class MapTilesTest : public test::DesktopTest
{
  protected:
    MapTilesTest() { qputenv("XDG_CACHE_HOME", QByteArray::fromStdString(folder.Path())); }
    ~MapTilesTest() override { qunsetenv("XDG_CACHE_HOME"); }
    /// What stands on the map of a short track.
    static bool MapSays(const std::string& text)
    {
        Kartenbild map;
        map.SetPunkte({{{0.0, 0.0}, 10.0, 50.0, 8.0}, {{71.5, 111.3}, 10.0, 50.001, 8.001}});
        CDC dc(400.0, 300.0);
        map.Zeichne(dc, false);
        return std::any_of(dc.Primitives().begin(), dc.Primitives().end(), [&](const drawing::Primitive& one) {
            const auto* words = std::get_if<drawing::Text>(&one);
            return words != nullptr && words->utf8 == text;
        });
    }

    test::TemporaryFolder folder;
    LocalServer server;
    desktop::UseTileServer use;
};

// A server that is only entered is not asked; once it is chosen, its tiles appear with whose they are.
TEST_F(MapTilesTest, NoRequestUnlessTheUserChoseTheServer)
{
    RuvCfg.karte.server = server.Address();
    RuvCfg.karte.herkunft = "© Kartentest";
    EXPECT_FALSE(MapSays("© Kartentest"));
    QTest::qWait(200);
    EXPECT_EQ(server.connections, 0);

    RuvCfg.karte.quelle = CKartenCfg::Quelle::server;
    EXPECT_TRUE(QTest::qWaitFor([&] { return MapSays("© Kartentest"); }, 3000));
    EXPECT_GT(server.connections, 0);
    RuvCfg.karte = {};
    EXPECT_FALSE(MapSays("© Kartentest"));
}

// The map of a server that does not go so far is enlarged, without a question for more than its last zoom.
TEST_F(MapTilesTest, CoarserTilesAreAskedForWhenFinerOnesAreNotThere)
{
    server.manner = LocalServer::Manner::coarse;
    RuvCfg.karte.server = server.Address();
    RuvCfg.karte.herkunft = "© Kartentest";
    RuvCfg.karte.quelle = CKartenCfg::Quelle::server;
    int told = 0;
    const CTilesListener listener([&told] { ++told; });
    EXPECT_FALSE(MapSays("© Kartentest"));
    int drawn = 0;
    EXPECT_TRUE(QTest::qWaitFor(
        [&] {
            if (drawn == told)
                return false; // drawn anew only when there is news
            drawn = told;
            return MapSays("© Kartentest");
        },
        5000));
    QTest::qWait(200);
    EXPECT_TRUE(std::all_of(server.asked.begin(), server.asked.end(), [](const QByteArray& path) {
        return path.split('/').at(1).toInt() >= LocalServer::kCoarse;
    }));
    RuvCfg.karte = {};
}

TEST_F(MapTilesTest, TheSettingsAreCheckedBeforeTheyAreTaken)
{
    desktop::SettingsDialog dialog(desktop::Preferences{}, false, &window);
    auto* source = dialog.findChild<QComboBox*>("mapSource");
    auto* address = dialog.findChild<QLineEdit*>("mapServer");
    auto* file = dialog.findChild<QLineEdit*>("mapFile");
    auto* reason = dialog.findChild<QLabel*>("mapReason");
    ASSERT_TRUE(source != nullptr && address != nullptr && file != nullptr && reason != nullptr);
    EXPECT_EQ(source->currentIndex(), 0);
    source->setCurrentIndex(2);
    address->setText("karte.example/{z}/{x}/{y}");
    static_cast<QDialog&>(dialog).accept();
    EXPECT_NE(dialog.result(), QDialog::Accepted);
    EXPECT_TRUE(reason->text().contains("https://")) << reason->text().toStdString();
    source->setCurrentIndex(1);
    file->setText("/gibt/es/nicht.mbtiles");
    static_cast<QDialog&>(dialog).accept();
    EXPECT_NE(dialog.result(), QDialog::Accepted);
    EXPECT_TRUE(reason->text().contains("gibt es nicht"));
    source->setCurrentIndex(2);
    address->setText(QString::fromStdString(server.Address()));
    static_cast<QDialog&>(dialog).accept();
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    desktop::Preferences preferences;
    dialog.Apply(preferences);
    EXPECT_EQ(RuvCfg.karte.quelle, CKartenCfg::Quelle::server);
    EXPECT_EQ(RuvCfg.karte.server, server.Address());
    QTest::qWait(100);
    EXPECT_EQ(server.connections, 0); // checked without asking it
}
