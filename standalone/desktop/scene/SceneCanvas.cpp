// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/scene/SceneCanvas.h"

#include "desktop/case/CaseDocument.h"
#include "desktop/look/Aside.h"
#include "desktop/look/CdcPainter.h"
#include "desktop/look/Theme.h"
#include "krn/Placing.h"

#include <QLabel>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace desktop
{
namespace
{

constexpr QSize kUsual(560, 520);
constexpr QSize kSmallest(240, 200);
constexpr double kFitMargin = 56.0; // pixels, room for names
constexpr double kPaperWidth = 900.0;
constexpr double kPaperRatioLow = 0.45;
constexpr double kPaperRatioHigh = 1.3;

} // namespace

SceneCanvas::SceneCanvas(CaseDocument& document, QWidget* parent)
    : QWidget(parent), m_document(document), m_prompt(new QLabel(this))
{
    m_prompt->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_prompt->setAutoFillBackground(true);
    m_prompt->setWordWrap(true);
    m_prompt->setMargin(Spacing() / 2);
    m_prompt->hide();
    connect(this, &SceneCanvas::toolChanged, this, &SceneCanvas::ShowPrompt);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAccessibleName(QStringLiteral("Szene"));
    connect(&document, &CaseDocument::changed, this, &SceneCanvas::Reload);
}

QSize SceneCanvas::sizeHint() const
{
    return kUsual;
}

QSize SceneCanvas::minimumSizeHint() const
{
    return kSmallest;
}

const scene::Scene& SceneCanvas::Scene()
{
    if (!std::exchange(m_stale, false))
        return m_scene;
    m_scene = scene::ReadScene(m_document.Data());
    if (m_selected && m_scene.Find(*m_selected) == nullptr)
        m_selected.reset();
    return m_scene;
}

void SceneCanvas::Reload()
{
    m_stale = true;
    // Another case begins with all of it in view.
    if (!m_document.CanUndo() && !m_document.CanRedo() && !m_drag) {
        m_fits = true;
        m_pictures.Forget();
    }
    if (m_drag && m_stepOpen && !m_document.IsStepOpen())
        m_drag.reset(); // the step was taken back, or the case is another
    update();
    emit selectionChanged();
}

void SceneCanvas::FollowMasks()
{
    m_stale = true;
    const krn::PlacingRequest* open = krn::OpenPlacingRequest(m_document.Data());
    std::optional<Request> request;
    if (open != nullptr)
        request = Request{open->client, open->wish.kind, QString::fromStdString(open->prompt)};
    const bool isNew = request && request != m_request;
    const bool ended = m_request && !request;
    m_request = request;
    if (isNew) {
        m_measuring = false;
        const scene::SceneItem item = scene::RequestedItem(m_document.Data(), *open->client, open->wish);
        Hang(item, request->prompt +
                       (item.pose.participant < 0 ? QStringLiteral(": anklicken oder aufziehen")
                                                  : QStringLiteral(": anklicken")) +
                       QStringLiteral(", Esc bricht ab."));
        emit placingWanted();
    } else if (ended) {
        m_hanging.reset();
        m_spanFrom.reset();
        emit toolChanged();
    }
    update();
    emit selectionChanged();
}

void SceneCanvas::Fit(bool all)
{
    m_camera.width = width();
    m_camera.height = height();
    m_camera.Fit(Scene().Bounds(all), std::min({kFitMargin, 0.15 * width(), 0.15 * height()}));
    m_fits = !all;
    update();
}

void SceneCanvas::Zoom(double factor)
{
    m_camera.ZoomAbout({m_camera.width / 2.0, m_camera.height / 2.0}, factor);
    m_fits = false;
    update();
}

const scene::SceneItem* SceneCanvas::Selected()
{
    const scene::Scene& scene = Scene();
    return m_selected ? scene.Find(*m_selected) : nullptr;
}

const scene::SceneItem* SceneCanvas::Shown()
{
    return m_hanging ? &*m_hanging : Selected();
}

void SceneCanvas::Select(const std::optional<scene::SceneId>& id)
{
    if (id == m_selected)
        return;
    m_selected = id;
    update();
    emit selectionChanged();
}

void SceneCanvas::SelectVehicle(std::size_t vehicle)
{
    const auto isOfIt = [vehicle](const scene::SceneId& id) {
        return scene::BelongsToVehicle(id) && id.vehicle == vehicle;
    };
    if (m_hanging || m_drag || (m_selected && isOfIt(*m_selected)))
        return;
    const auto& items = Scene().items;
    const auto item = std::find_if(items.begin(), items.end(), [&](const auto& i) { return isOfIt(i.id); });
    if (item != items.end())
        Select(item->id);
}

bool SceneCanvas::Apply(const scene::SceneItem& item)
{
    const bool placed = scene::PlaceItem(m_document.Data(), item);
    m_stale = true;
    m_fits = false;
    update();
    emit selectionChanged();
    return placed;
}

void SceneCanvas::BeginStep()
{
    if (std::exchange(m_stepOpen, true) && m_document.IsStepOpen())
        return;
    m_document.BeginStep();
}

void SceneCanvas::EndStep(const scene::SceneItem& item)
{
    if (std::exchange(m_stepOpen, false))
        m_document.EndStep(QStringLiteral("Szene: ") + QString::fromStdString(item.FullName()));
}

bool SceneCanvas::Place(const scene::SceneItem& item)
{
    if (m_hanging && m_hanging->id == item.id) {
        m_hanging.reset();
        setCursor(Qt::ArrowCursor);
        emit toolChanged();
    }
    BeginStep();
    const bool placed = Apply(item);
    EndStep(item);
    if (placed && item.id.point != scene::kNewPoint)
        Select(item.id);
    return placed;
}

void SceneCanvas::Remove(const scene::SceneId& id)
{
    const scene::SceneItem* item = Scene().Find(id);
    if (item == nullptr || !scene::CanRemove(id))
        return;
    const QString name = QString::fromStdString(item->FullName());
    m_document.BeginStep();
    scene::RemoveItem(m_document.Data(), id);
    m_document.EndStep(QStringLiteral("Szene: ") + name + QStringLiteral(" entfernt"));
    Reload();
}

void SceneCanvas::AddWaypoint(std::size_t vehicle, CDPoint at)
{
    m_document.BeginStep();
    const auto point = scene::InsertWaypoint(m_document.Data(), vehicle, at);
    m_document.EndStep(QStringLiteral("Szene: Punkt der Fahrlinie"));
    Reload();
    if (point)
        Select(scene::SceneId{scene::SceneKind::waypoint, vehicle, *point, nullptr, 0});
}

void SceneCanvas::Hang(scene::SceneItem item, const QString& prompt, bool repeat)
{
    m_hangingPrompt = prompt;
    m_repeat = repeat;
    item.pose = scene::CentredAt(std::move(item.pose), m_camera.ToScene(m_cursor));
    m_hanging = std::move(item);
    m_spanFrom.reset();
    m_drag.reset();
    setCursor(Qt::CrossCursor);
    update();
    emit toolChanged();
}

void SceneCanvas::EndTools()
{
    m_spanFrom.reset();
    m_hanging.reset();
    m_repeat = false;
    m_measuring = false;
    m_measureOpen = false;
    m_measured.reset();
    m_measuredPicture.reset();
    setCursor(Qt::ArrowCursor);
    if (std::exchange(m_request, std::nullopt))
        krn::EndPlacing(m_document.Data());
    update();
    emit toolChanged();
}

void SceneCanvas::SetMeasuring(bool on)
{
    if (on == m_measuring)
        return;
    EndTools();
    m_measuring = on;
    setCursor(on ? Qt::CrossCursor : Qt::ArrowCursor);
    emit toolChanged();
}

void SceneCanvas::MeasurePicture(std::size_t picture)
{
    SetMeasuring(false);
    SetMeasuring(true);
    m_measuredPicture = picture;
    emit toolChanged();
}

void SceneCanvas::EndMeasure()
{
    m_measureOpen = false;
    if (!m_measuredPicture)
        return;
    const std::size_t picture = *m_measuredPicture;
    const auto [from, to] = *m_measured;
    emit pictureMeasured(picture, from, to);
    EndTools();
}

void SceneCanvas::SetGrid(bool on)
{
    m_grid = on;
    update();
}

QString SceneCanvas::Prompt() const
{
    if (m_hanging)
        return m_hangingPrompt;
    if (m_request)
        return m_request->prompt + QStringLiteral(": Ziehen berichtigt, Enter oder Rechtsklick beendet.");
    if (m_measuredPicture)
        return QStringLiteral("Maßstab: zwei Punkte anklicken, deren Abstand bekannt ist. Esc bricht ab.");
    if (m_measuring)
        return QStringLiteral("Strecke messen: Anfang und Ende anklicken, Esc beendet.");
    return {};
}

scene::SceneDrawingOptions SceneCanvas::Options(Ground ground, const scene::SceneCamera& camera)
{
    constexpr double kPaperSharpness = 3.0; // pixels of a picture per pixel of the drawing
    scene::SceneDrawingOptions options;
    options.palette = PaletteFor(ground);
    options.grid = m_grid;
    options.measured = m_measured;
    for (const CSzenenBild& picture : m_document.Data().Bilder()) {
        if (!picture.sichtbar)
            continue;
        const double pixels = static_cast<double>(picture.breite) * picture.meterProPixel * camera.pixelsPerMetre;
        const double sharp = ground == Ground::paper ? kPaperSharpness : devicePixelRatioF();
        options.layers.push_back(
            m_pictures.Layer(picture, m_document.Path(), sharp * pixels, ScenePictures::Wait::briefly));
    }
    if (ground == Ground::paper) {
        options.title = m_document.Data().Title();
        return options;
    }
    options.accent = ToColorRef(Colors().accent);
    options.hanging = m_hanging;
    if (!m_hanging)
        options.selected = m_selected;
    return options;
}

CDC SceneCanvas::ForPaper()
{
    std::vector<std::shared_future<PictureFile>> files;
    for (const CSzenenBild& picture : m_document.Data().Bilder())
        if (picture.sichtbar)
            files.push_back(m_pictures.File(PicturePath(picture.datei, m_document.Path())));
    if (!files.empty())
        DoAside(
            this, QStringLiteral("Die Bilder der Szene werden gelesen"),
            [files](AsideWork&) {
                for (const auto& file : files)
                    file.wait();
            },
            AtEnd::leaves);
    const double ratio =
        std::clamp(static_cast<double>(height()) / std::max(width(), 1), kPaperRatioLow, kPaperRatioHigh);
    CDC drawing(kPaperWidth, kPaperWidth * ratio);
    if (m_fits)
        Fit(false);
    scene::SceneCamera camera = m_camera.For(drawing.Width(), drawing.Height());
    scene::DrawScene(drawing, camera, Scene(), Options(Ground::paper, camera));
    return drawing;
}

void SceneCanvas::paintEvent(QPaintEvent*)
{
    if (m_fits && !m_drag)
        Fit(false);
    CDC drawing(width(), height());
    const scene::Scene& scene = Scene();
    scene::DrawScene(drawing, m_camera, scene, Options(Ground::screen, m_camera));
    QPainter painter(this);
    Replay(drawing, painter);
    PaintCursorPlace(painter);
    if (!hasFocus())
        return;
    painter.setPen(QPen(Colors().accent, 1.0));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void SceneCanvas::PaintCursorPlace(QPainter& painter)
{
    if (!m_cursorInside)
        return;
    const CDPoint at = m_camera.ToScene(m_cursor);
    const QString text = QString::fromStdString(scene::LengthText(at.x) + "   " + scene::LengthText(at.y));
    painter.setFont(font());
    QRect area = painter.fontMetrics().boundingRect(text).adjusted(-Spacing() / 2, -2, Spacing() / 2, 2);
    area.moveBottomRight(rect().bottomRight() - QPoint(Spacing(), Spacing()));
    painter.fillRect(area, Colors().field);
    painter.setPen(Colors().muted);
    painter.drawText(area, Qt::AlignCenter, text);
}

/// Across the top of the scene, in the colours of a selection.
void SceneCanvas::ShowPrompt()
{
    m_prompt->setText(Prompt());
    m_prompt->setVisible(!Prompt().isEmpty());
    QPalette colors = palette();
    colors.setColor(QPalette::Window, Colors().selection);
    colors.setColor(QPalette::WindowText, Colors().text);
    m_prompt->setPalette(colors);
    m_prompt->setGeometry(0, 0, width(), m_prompt->heightForWidth(width()));
}

} // namespace desktop
