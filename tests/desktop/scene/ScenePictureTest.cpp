// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/case/CaseDocument.h"
#include "desktop/case/ScenePictures.h"
#include "desktop/look/DrawingOutput.h"
#include "desktop/scene/SceneCanvas.h"
#include "desktop/scene/SceneView.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QMouseEvent>
#include <QTest>

#include <cmath>

#include <sys/stat.h>

namespace
{

using namespace desktop;

constexpr QColor kUpper(200, 40, 40);
constexpr QColor kLower(40, 40, 200);

/// 200 x 100 pixels: the upper half in one colour, the lower in another.
QImage TwoHalves()
{
    QImage image(200, 100, QImage::Format_RGB32);
    image.fill(kUpper);
    for (int y = 50; y < 100; ++y)
        for (int x = 0; x < 200; ++x)
            image.setPixelColor(x, y, kLower);
    return image;
}

class ScenePictureTest : public ::testing::Test
{
  protected:
    ScenePictureTest()
    {
        scene.resize(600, 500);
        scene.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&scene));
    }
    QString Path(const char* name) { return QString::fromStdString(folder.File(name)); }
    QString MakePicture(const char* name)
    {
        EXPECT_TRUE(TwoHalves().save(Path(name), nullptr, 95));
        return Path(name);
    }
    CSzenenBild& Picture() { return document.Data().Bilder().at(0); }
    QColor ColorAt(CDPoint cm)
    {
        const CDPoint pixel = scene.Canvas().Camera().ToPixel(cm);
        return scene.Canvas().grab().toImage().pixelColor(int(std::lround(pixel.x)), int(std::lround(pixel.y)));
    }
    static bool Alike(const QColor& a, const QColor& b)
    {
        return std::abs(a.red() - b.red()) < 20 && std::abs(a.green() - b.green()) < 20 &&
               std::abs(a.blue() - b.blue()) < 20;
    }

    test::TemporaryFolder folder;
    CaseDocument document{false};
    SceneView scene{document};
};

TEST_F(ScenePictureTest, APictureIsScaledByTwoPointsAndKeptWithTheCase)
{
    ASSERT_EQ(scene.AddPicture(MakePicture("luftbild.png")), "");
    EXPECT_EQ(document.UndoLabel(), "Unterlage laden");
    EXPECT_EQ(Picture().breite, 200);
    EXPECT_EQ(Picture().datei, Path("luftbild.png").toStdString()) << "the case has no file yet";
    scene.Canvas().SetGrid(false);
    const CDPoint centre = Picture().mitte;
    const double half = 20.0 * Picture().meterProPixel * 100.0;
    scene.Canvas().Select(std::nullopt);
    EXPECT_TRUE(Alike(ColorAt(centre + CDPoint{0, half}), kUpper)) << "its first row lies at the top";
    EXPECT_TRUE(Alike(ColorAt(centre - CDPoint{0, half}), kLower));

    // 100 pixels of it are 25 m in truth.
    const CDPoint from = centre - CDPoint{50.0 * Picture().meterProPixel * 100.0, 0.0};
    const CDPoint to = centre + CDPoint{50.0 * Picture().meterProPixel * 100.0, 0.0};
    scene.ScalePicture(0, from, to, 25.0);
    EXPECT_NEAR(Picture().meterProPixel, 0.25, 1e-12);
    EXPECT_NEAR(Picture().mitte.x, from.x + 1250.0, 1e-9) << "the first point stays";
    EXPECT_TRUE(Picture().gesperrt);
    EXPECT_FALSE(scene::HitTest(scene.Canvas().Scene(), scene.Canvas().Camera(),
                                scene.Canvas().Camera().ToPixel(Picture().mitte), {}));

    ASSERT_TRUE(document.SaveAs(Path("fall.json"))) << document.Error().toStdString();
    EXPECT_EQ(Picture().datei, "luftbild.png");
    const std::string text = document.CaseText();
    EXPECT_NE(text.find("\"version\": \"1.1\""), std::string::npos);
    ASSERT_TRUE(document.Open(Path("fall.json")));
    EXPECT_EQ(document.CaseText(), text);
    EXPECT_TRUE(document.Warnings().isEmpty());
    scene.Canvas().Fit();
    EXPECT_TRUE(Alike(ColorAt(Picture().mitte + CDPoint{0, 500}), kUpper));
    // A case in another folder still finds its picture.
    QDir(Path(".")).mkdir(QStringLiteral("unter"));
    ASSERT_TRUE(document.SaveAs(Path("unter/fall.json")));
    EXPECT_EQ(Picture().datei, "../luftbild.png");
    EXPECT_TRUE(Alike(ColorAt(Picture().mitte + CDPoint{0, 500}), kUpper));
    document.Undo();
    document.Undo();
}

TEST_F(ScenePictureTest, ExportsContainThePicture)
{
    ASSERT_EQ(scene.AddPicture(MakePicture("luftbild.jpg")), "");
    scene.Canvas().SetGrid(false);
    const CDC paper = scene.Canvas().ForPaper();
    for (const char* name : {"szene.png", "szene.svg", "szene.pdf"})
        ASSERT_EQ(SaveDrawing(paper, Path(name)), "") << name;
    const QImage png(Path("szene.png"));
    const QPoint middle(png.width() / 2, png.height() / 2);
    EXPECT_TRUE(Alike(png.pixelColor(middle - QPoint(0, png.height() / 8)), kUpper));
    EXPECT_TRUE(Alike(png.pixelColor(middle + QPoint(0, png.height() / 8)), kLower));
    const auto bytes = [&](const char* name) {
        QFile file(Path(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    };
    const QByteArray jpeg = bytes("luftbild.jpg");
    EXPECT_TRUE(bytes("szene.pdf").contains(jpeg)) << "as it is, without a loss";
    EXPECT_TRUE(bytes("szene.svg").contains("data:image/jpeg;base64," + jpeg.toBase64()));
}

TEST_F(ScenePictureTest, AMissingOrChangedFileIsSaidAndKeepsItsPlace)
{
    ASSERT_EQ(scene.AddPicture(MakePicture("luftbild.png")), "");
    ScenePictures pictures;
    EXPECT_EQ(pictures.Layer(Picture(), {}, 100.0).trouble, "");
    QImage other = TwoHalves();
    other.setPixelColor(0, 0, Qt::white);
    ASSERT_TRUE(other.save(Path("luftbild.png")));
    ASSERT_TRUE(QFile::resize(Path("luftbild.png"), QFileInfo(Path("luftbild.png")).size())); // another time
    ScenePictures afresh;
    const scene::SceneLayer changed = afresh.Layer(Picture(), {}, 100.0);
    EXPECT_NE(changed.bitmap, nullptr);
    EXPECT_NE(changed.trouble.find("nicht mehr das"), std::string::npos);
    ASSERT_TRUE(QFile::remove(Path("luftbild.png")));
    const scene::SceneLayer missing = afresh.Layer(Picture(), {}, 100.0);
    EXPECT_EQ(missing.bitmap, nullptr);
    EXPECT_EQ(missing.trouble, "Das Bild fehlt");
    const CSzenenBild before = Picture();
    scene.Canvas().grab();
    EXPECT_EQ(Picture(), before);
    EXPECT_EQ(scene.Canvas().Scene().items.front().id.kind, scene::SceneKind::picture);
}

TEST_F(ScenePictureTest, FilesThatAreNoUsablePictureAreRefused)
{
    const auto why = [&](const char* name, const QByteArray& content) {
        QFile file(Path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        return scene.AddPicture(Path(name));
    };
    EXPECT_TRUE(why("text.png", "kein Bild").contains("weder ein PNG- noch ein JPEG-Bild"));
    EXPECT_TRUE(why("leer.jpg", {}).contains("weder ein PNG- noch ein JPEG-Bild"));
    MakePicture("ganz.png");
    QFile whole(Path("ganz.png"));
    ASSERT_TRUE(whole.open(QIODevice::ReadOnly));
    const QByteArray bytes = whole.readAll();
    EXPECT_TRUE(why("halb.png", bytes.first(bytes.size() / 2)).contains("beschädigt"));
    // A header that speaks of 65,000 x 65,000 pixels must not be believed with memory.
    QFile jpeg(MakePicture("ganz.jpg"));
    ASSERT_TRUE(jpeg.open(QIODevice::ReadOnly));
    QByteArray huge = jpeg.readAll();
    const auto frame = huge.indexOf(QByteArray::fromHex("ffc0"));
    ASSERT_GT(frame, 0);
    huge.replace(frame + 5, 4, QByteArray::fromHex("fde8fde8"));
    EXPECT_TRUE(why("riesig.jpg", huge).contains("65000 × 65000 Bildpunkten zu groß"));
    EXPECT_TRUE(scene.AddPicture(Path("nirgends.png")).contains("fehlt"));
    // What is no ordinary file is neither read nor waited for.
    EXPECT_TRUE(scene.AddPicture("/dev/zero").contains("keine gewöhnliche Datei"));
    ASSERT_EQ(mkfifo(qPrintable(Path("rohr.png")), 0600), 0);
    EXPECT_TRUE(scene.AddPicture(Path("rohr.png")).contains("keine gewöhnliche Datei"));
    ASSERT_TRUE(QFile::link("kreis.png", Path("kreis.png")));
    EXPECT_TRUE(scene.AddPicture(Path("kreis.png")).contains("zu viele Verknüpfungen"));
    QFile large(Path("gross.png"));
    ASSERT_TRUE(large.open(QIODevice::WriteOnly));
    ASSERT_TRUE(large.resize(qint64{2} << 30)); // takes no room
    EXPECT_TRUE(scene.AddPicture(Path("gross.png")).contains("zu groß"));
    EXPECT_TRUE(document.Data().Bilder().empty());
    EXPECT_FALSE(document.CanUndo());
}

TEST_F(ScenePictureTest, ItIsMovedAndSizedByMouseUnlessLocked)
{
    ASSERT_EQ(scene.AddPicture(MakePicture("luftbild.png")), "");
    SceneCanvas& canvas = scene.Canvas();
    const CSzenenBild before = Picture();
    const auto drag = [&](CDPoint from, CDPoint to) {
        const auto pixel = [&](CDPoint cm) {
            const CDPoint at = canvas.Camera().ToPixel(cm);
            return QPoint(int(std::lround(at.x)), int(std::lround(at.y)));
        };
        const QPoint end = pixel(to);
        QTest::mousePress(&canvas, Qt::LeftButton, Qt::NoModifier, pixel(from));
        QMouseEvent move(QEvent::MouseMove, end, canvas.mapToGlobal(end), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&canvas, &move);
        QTest::mouseRelease(&canvas, Qt::LeftButton, Qt::NoModifier, end);
    };
    drag(before.mitte + CDPoint{50, 0}, before.mitte + CDPoint{150, 0});
    EXPECT_NEAR(Picture().mitte.x, before.mitte.x + 100.0, canvas.Camera().Length(1.5));
    EXPECT_EQ(Picture().meterProPixel, before.meterProPixel);

    const scene::SceneItem item = canvas.Scene().items.front();
    const auto corners = scene::CornersOf(item.pose);
    drag(corners[2], corners[0] + (corners[2] - corners[0]) * 0.5);
    EXPECT_NEAR(Picture().meterProPixel, before.meterProPixel * 0.5, before.meterProPixel * 0.02);

    Picture().gesperrt = true;
    canvas.Reload();
    const CSzenenBild locked = Picture();
    drag(Picture().mitte, Picture().mitte + CDPoint{100, 100});
    EXPECT_EQ(Picture(), locked);
}

} // namespace
