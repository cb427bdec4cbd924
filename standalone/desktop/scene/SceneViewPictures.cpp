// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Commands of the scene for the pictures under it.
#include "desktop/case/CaseDocument.h"
#include "desktop/case/ScenePictures.h"
#include "desktop/look/Aside.h"
#include "desktop/look/Icons.h"
#include "desktop/look/MessageBox.h"
#include "desktop/scene/SceneCanvas.h"
#include "desktop/scene/SceneView.h"
#include "host/Physics.h"
#include "krn/NumberEntry.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QMenu>

#include <cmath>
#include <utility>

namespace desktop
{
namespace
{

constexpr double kPartOfView = 0.8; // that a new picture fills
constexpr double kOpacities[] = {1.0, 0.75, 0.5, 0.25};
const QString kTitle = QStringLiteral("Unterlage");

} // namespace

void SceneView::FillPictureMenu(QMenu& menu)
{
    menu.addAction(Icon("open"), QStringLiteral("Bild &laden …"), this, &SceneView::ChoosePicture);
    const std::vector<CSzenenBild>& pictures = m_document.Data().Bilder();
    if (!pictures.empty())
        menu.addSeparator();
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        const CSzenenBild& picture = pictures[i];
        const std::string name = picture.datei.substr(picture.datei.find_last_of('/') + 1);
        QMenu* own = menu.addMenu(QString::fromStdString(name).replace(QLatin1Char('&'), QStringLiteral("&&")));
        own->addAction(
            Icon("measure"), QStringLiteral("&Maßstab aus zwei Punkten …"), this,
            [this, i] {
                m_canvas->MeasurePicture(i);
                m_canvas->setFocus();
            });
        const auto toggle = [&](const QString& text, bool CSzenenBild::*field) {
            QAction* action = own->addAction(text);
            action->setCheckable(true);
            action->setChecked(picture.*field);
            connect(action, &QAction::triggered, this, [this, i, text, field](bool on) {
                ChangePicture(i, QString(text).remove(QLatin1Char('&')),
                              [field, on](CSzenenBild& changed) { changed.*field = on; });
            });
        };
        toggle(QStringLiteral("&Gesperrt"), &CSzenenBild::gesperrt);
        toggle(QStringLiteral("&Sichtbar"), &CSzenenBild::sichtbar);
        QMenu* opacity = own->addMenu(QStringLiteral("&Deckkraft"));
        for (const double part : kOpacities)
            opacity->addAction(QStringLiteral("%1 %").arg(std::lround(100.0 * part)), this, [this, i, part] {
                ChangePicture(i, QStringLiteral("Deckkraft"),
                              [part](CSzenenBild& changed) { changed.deckkraft = part; });
            });
        own->addSeparator();
        own->addAction(QStringLiteral("&Entfernen"), this, [this, i] {
            Remove(scene::SceneKind::picture, i, QStringLiteral("Szene: Unterlage entfernt"));
        });
    }
    FillTrackMenu(menu);
}

void SceneView::FillTrackMenu(QMenu& menu)
{
    const std::vector<CSzenenSpur>& tracks = m_document.Data().Spuren();
    if (!tracks.empty())
        menu.addSeparator();
    for (std::size_t i = 0; i < tracks.size(); ++i) {
        QMenu* own =
            menu.addMenu(QStringLiteral("Spur ") +
                         QString::fromStdString(tracks[i].name).replace(QLatin1Char('&'), QStringLiteral("&&")));
        const auto toggle = [&](const QString& text, bool CSzenenSpur::*field) {
            QAction* action = own->addAction(text);
            action->setCheckable(true);
            action->setChecked(tracks[i].*field);
            connect(action, &QAction::triggered, this, [this, i, text, field](bool on) {
                if (i >= m_document.Data().Spuren().size())
                    return;
                m_document.BeginStep();
                m_document.Data().Spuren()[i].*field = on;
                m_document.EndStep(QStringLiteral("Spur: ") + QString(text).remove(QLatin1Char('&')));
                m_canvas->Reload();
            });
        };
        toggle(QStringLiteral("&Gesperrt"), &CSzenenSpur::gesperrt);
        toggle(QStringLiteral("&Sichtbar"), &CSzenenSpur::sichtbar);
        own->addSeparator();
        own->addAction(QStringLiteral("&Entfernen"), this,
                       [this, i] { Remove(scene::SceneKind::recorded, i, QStringLiteral("Szene: Spur entfernt")); });
    }
}

void SceneView::Remove(scene::SceneKind kind, std::size_t number, const QString& step)
{
    scene::SceneId id;
    id.kind = kind;
    id.point = number;
    m_document.BeginStep();
    scene::RemoveItem(m_document.Data(), id);
    m_document.EndStep(step);
    m_canvas->Reload();
}

void SceneView::ChangePicture(std::size_t picture, const QString& what, const std::function<void(CSzenenBild&)>& change)
{
    std::vector<CSzenenBild>& pictures = m_document.Data().Bilder();
    if (picture >= pictures.size())
        return;
    m_document.BeginStep();
    change(pictures[picture]);
    m_document.EndStep(QStringLiteral("Unterlage: ") + what);
    m_canvas->Reload();
}

void SceneView::ChoosePicture()
{
    const QString path = QFileDialog::getOpenFileName(this, QStringLiteral("Luftbild oder Skizze laden"), {},
                                                      QStringLiteral("Bilder (*.png *.jpg *.jpeg *.PNG *.JPG *.JPEG)"));
    if (path.isEmpty())
        return;
    if (const QString why = AddPicture(path); !why.isEmpty())
        Warn(this, kTitle, why);
}

QString SceneView::AddPicture(const QString& path)
{
    std::vector<CSzenenBild>& pictures = m_document.Data().Bilder();
    if (pictures.size() >= CSzenenBild::kMeiste)
        return QStringLiteral("Unter der Szene liegen schon %1 Bilder; mehr kann ein Fall nicht aufnehmen.")
            .arg(CSzenenBild::kMeiste);
    const auto read = m_canvas->Pictures().File(QDir::cleanPath(QFileInfo(path).absoluteFilePath()));
    // What lies on a network that does not answer must not hold up the program's end.
    if (!DoAside(
            this, QStringLiteral("Das Bild wird gelesen"), [read](AsideWork&) { read.wait(); }, AtEnd::leaves))
        return {};
    const PictureFile& file = read.get();
    if (!file.why.isEmpty())
        return QStringLiteral("Die Datei „%1“ %2.").arg(path, file.why);
    CSzenenBild picture;
    picture.datei = PictureName(path, m_document.Path());
    picture.sha256 = file.sha256;
    picture.breite = file.levels.front()->width;
    picture.hoehe = file.levels.front()->height;
    const scene::SceneCamera& camera = m_canvas->Camera();
    picture.mitte = camera.centre;
    const double pixels = std::min(camera.width / static_cast<double>(picture.breite),
                                   camera.height / static_cast<double>(picture.hoehe));
    picture.meterProPixel = kPartOfView * pixels / camera.pixelsPerMetre;
    m_document.BeginStep();
    pictures.push_back(std::move(picture));
    m_document.EndStep(QStringLiteral("Unterlage laden"));
    m_canvas->Reload();
    scene::SceneId id;
    id.kind = scene::SceneKind::picture;
    id.point = pictures.size() - 1;
    m_canvas->Select(id);
    return {};
}

void SceneView::AskForDistance(std::size_t picture, CDPoint from, CDPoint to)
{
    if (picture >= m_document.Data().Bilder().size() || from == to)
        return;
    const krn::NumberFormat format{"Abstand", 0.01, 100'000.0, 2, UnitType(unitType::length), {}};
    const QString unit = QString::fromStdString(krn::UnitOf(format));
    const double now = std::hypot(to.x - from.x, to.y - from.y) / kCmProM;
    QString text = QString::fromStdString(krn::ShowNumber(now, format));
    QString question = QStringLiteral("Wie weit sind die beiden Punkte voneinander entfernt (in %1)?").arg(unit);
    for (bool given = true; given;) {
        text = QInputDialog::getText(this, QStringLiteral("Maßstab der Unterlage"), question, QLineEdit::Normal, text,
                                     &given);
        const krn::NumberEntry entry = krn::ReadNumber(text.toStdString(), format);
        if (given && entry.value) {
            ScalePicture(picture, from, to, *entry.value);
            return;
        }
        if (!entry.refusal.empty())
            question = QString::fromStdString(entry.refusal);
    }
}

void SceneView::ScalePicture(std::size_t picture, CDPoint from, CDPoint to, double metres)
{
    const double measured = std::hypot(to.x - from.x, to.y - from.y);
    if (!(measured > 0.0) || !(metres > 0.0))
        return;
    const double factor = metres * kCmProM / measured;
    ChangePicture(picture, QStringLiteral("Maßstab"), [&](CSzenenBild& changed) {
        changed.meterProPixel *= factor;
        changed.mitte = from + (changed.mitte - from) * factor;
        changed.gesperrt = true;
    });
}

} // namespace desktop
