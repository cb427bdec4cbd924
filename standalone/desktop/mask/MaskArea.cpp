// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/mask/MaskArea.h"

#include "desktop/look/Theme.h"
#include "desktop/mask/MaskWindow.h"
#include "desktop/mask/TornOffMask.h"
#include "framework/UserInput.h"

#include <QApplication>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QStyle>

#include <algorithm>
#include <limits>

namespace desktop
{
namespace
{

struct Hint {
    const char* keys;
    const char* what;
};

constexpr Hint kHints[] = {
    {"Strg+K", "Maske öffnen"},
    {"Strg+O", "Fall öffnen"},
    {"F1", "Hilfe"},
};

constexpr QSize kLeastCell(360, 260); // of a frame beside others: small enough to scroll in, large enough to work in

/// A window may have been put on a screen that is gone, or that is smaller now.
void MoveOntoScreen(QWidget& shown)
{
    if (shown.isMaximized() || shown.isFullScreen())
        return;
    const QScreen* screen = QGuiApplication::screenAt(shown.geometry().center());
    const QRect room = (screen == nullptr ? QGuiApplication::primaryScreen() : screen)->availableGeometry();
    // Title and edges are not known before it has been shown.
    const int title = shown.style()->pixelMetric(QStyle::PM_TitleBarHeight);
    const QSize frame = (shown.frameGeometry().size() - shown.size()).expandedTo({title, title});
    shown.resize(shown.size().boundedTo(room.size() - frame));
    const QSize size = shown.size() + frame;
    const QPoint place(std::clamp(shown.x(), room.left(), room.right() + 1 - size.width()),
                       std::clamp(shown.y(), room.top(), room.bottom() + 1 - size.height()));
    if (place != shown.pos()) // moved to where it is, it would lie beside by its frame
        shown.move(place);
}

} // namespace

MaskArea::MaskArea(QWidget* parent) : QMdiArea(parent)
{
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setActivationOrder(QMdiArea::ActivationHistoryOrder);
    setDocumentMode(true);
    setTabsClosable(true);
    setTabsMovable(true);
    setBackground(Colors().desk);
    connect(
        this, &QMdiArea::subWindowActivated, this,
        [this](QMdiSubWindow* window) {
            auto* frame = qobject_cast<MaskFrame*>(window);
            if (frame != nullptr && HasTabs() && !frame->isMinimized() && !frame->isMaximized())
                frame->showMaximized();
            if (frame != nullptr || !m_active || m_active->Own() == nullptr)
                SetActive(frame);
        });
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        for (MaskFrame* frame : m_frames)
            if (now != nullptr && frame->Own() != nullptr && frame->Own()->isAncestorOf(now))
                SetActive(frame);
    });
}

void MaskArea::SetActive(MaskFrame* frame)
{
    if (frame == m_active)
        return;
    m_active = frame;
    emit activeChanged();
}

bool MaskArea::event(QEvent* event)
{
    // Back from a mask torn off: the one that is marked here is the active one.
    if (event->type() == QEvent::WindowActivate)
        if (auto* frame = qobject_cast<MaskFrame*>(currentSubWindow()))
            SetActive(frame);
    return QMdiArea::event(event);
}

void MaskArea::changeEvent(QEvent* event)
{
    QMdiArea::changeEvent(event);
    if (event->type() == QEvent::StyleChange)
        setBackground(Colors().desk);
}

std::vector<MaskFrame*> MaskArea::Frames() const
{
    std::vector<MaskFrame*> frames;
    std::copy_if(m_frames.begin(), m_frames.end(), std::back_inserter(frames),
                 [](const MaskFrame* frame) { return frame->Mask()->Dialog() != nullptr; });
    return frames;
}

MaskFrame* MaskArea::FrameOf(const MaskWindow& mask) const
{
    const auto found =
        std::find_if(m_frames.begin(), m_frames.end(), [&](const MaskFrame* frame) { return frame->Mask() == &mask; });
    return found == m_frames.end() ? nullptr : *found;
}

/// Those that lie in the area as windows to be seen.
std::vector<MaskFrame*> MaskArea::Arranged() const
{
    std::vector<MaskFrame*> frames;
    for (MaskFrame* frame : Frames())
        if (frame->Own() == nullptr && !frame->isMinimized() && frame->isVisible())
            frames.push_back(frame);
    return frames;
}

void MaskArea::resizeEvent(QResizeEvent* event)
{
    QMdiArea::resizeEvent(event);
    if (!m_tiles.empty() && std::all_of(m_tiles.begin(), m_tiles.end(), [](const auto& tile) {
            return tile.first != nullptr && tile.first->geometry() == tile.second;
        }))
        return Tile();
    m_tiles.clear();
    for (MaskFrame* frame : Frames())
        frame->FitInto(viewport()->size());
}

/// The first place at which a frame of this size covers no other, row by row; otherwise the one where it covers the
/// least, and of the buttons of others least of all.
QPoint MaskArea::FreePlace(const QSize& size) const
{
    const int gap = Spacing();
    std::vector<QRect> taken;
    for (const MaskFrame* frame : Arranged())
        taken.push_back(frame->geometry().adjusted(-gap, -gap, gap, gap));
    const QSize room = viewport()->size();
    std::vector<int> xs{gap};
    std::vector<int> ys{gap};
    for (const QRect& rect : taken) {
        xs.push_back(rect.right() + 1);
        ys.push_back(rect.bottom() + 1);
    }
    std::sort(xs.begin(), xs.end());
    std::sort(ys.begin(), ys.end());
    for (const int y : ys)
        for (const int x : xs) {
            const QRect place(QPoint(x, y), size);
            if (place.right() <= room.width() && place.bottom() <= room.height() &&
                std::none_of(taken.begin(), taken.end(), [&](const QRect& rect) { return rect.intersects(place); }))
                return place.topLeft();
        }
    std::vector<QRect> buttons;
    for (const MaskFrame* frame : Arranged())
        for (ControlView* view : frame->Mask()->Views())
            if (view->Control()->kind == framework::Kind::button && !view->Widget()->isHidden())
                buttons.emplace_back(view->Widget()->mapTo(viewport(), QPoint(0, 0)), view->Widget()->size());
    const auto covered = [](const std::vector<QRect>& rects, const QRect& place) {
        double area = 0.0;
        for (const QRect& rect : rects) {
            const QRect part = rect & place;
            area += static_cast<double>(part.width()) * part.height();
        }
        return area;
    };
    constexpr double kButtonsCount = 1000.0; // as much as so much of the rest
    const int step = 4 * gap;
    QPoint best(gap, gap);
    double least = std::numeric_limits<double>::max();
    for (int y = gap; y <= std::max(gap, room.height() - size.height()); y += step)
        for (int x = gap; x <= std::max(gap, room.width() - size.width()); x += step) {
            const QRect place(QPoint(x, y), size);
            const double cost = kButtonsCount * covered(buttons, place) + covered(taken, place);
            if (cost < least) {
                least = cost;
                best = {x, y};
            }
        }
    return best;
}

void MaskArea::Add(MaskWindow& mask)
{
    auto* frame = new MaskFrame(mask);
    m_tiles.clear();
    m_frames.push_back(frame);
    addSubWindow(frame);
    const int gap = Spacing();
    emit roomWanted(frame->FullSize() + QSize(2 * gap, 2 * gap));
    const QSize room = viewport()->size() - QSize(2 * gap, 2 * gap);
    const QPoint place = FreePlace(frame->FullSize().boundedTo(room));
    frame->move(place);
    frame->FitInto(viewport()->size());
    if (mask.IsDrawing() && !HasTabs()) { // as large as there is room
        frame->resize(frame->FullSize().boundedTo(room));
        frame->move(std::min(place.x(), viewport()->width() - gap - frame->width()),
                    std::min(place.y(), viewport()->height() - gap - frame->height()));
    }
    frame->Follow();
    if (mask.Dialog()->visible && !mask.Dialog()->iconic) {
        frame->Restore();
        setActiveSubWindow(frame);
        mask.GoToFirstControl();
    }
    viewport()->update();
    emit masksChanged();
}

bool MaskArea::Remove(MaskWindow& mask)
{
    MaskFrame* frame = FrameOf(mask);
    if (frame == nullptr)
        return false;
    m_frames.erase(std::find(m_frames.begin(), m_frames.end(), frame));
    if (frame == m_active)
        SetActive(nullptr);
    frame->hide();
    if (TornOffMask* own = frame->Own()) {
        m_ownPlaces[mask.DialogId()] = own->saveGeometry();
        frame->TakeBack();
        frame->hide();
    } else
        removeSubWindow(frame);
    frame->deleteLater(); // with the mask
    if (!m_active)
        SetActive(qobject_cast<MaskFrame*>(currentSubWindow()));
    viewport()->update();
    emit masksChanged();
    return true;
}

MaskWindow* MaskArea::Active() const
{
    return !m_active || m_active->Mask()->Dialog() == nullptr ? nullptr : m_active->Mask();
}

void MaskArea::SetTabs(bool tabs)
{
    if (tabs == HasTabs())
        return;
    QMdiSubWindow* current = currentSubWindow();
    m_tiles.clear();
    for (MaskFrame* frame : Frames())
        if (frame->Own() == nullptr && frame->isMinimized())
            frame->showNormal();
    for (MaskFrame* frame : Frames()) // a frame that may not grow cannot fill the area
        if (tabs)
            frame->setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    setViewMode(tabs ? QMdiArea::TabbedView : QMdiArea::SubWindowView);
    for (MaskFrame* frame : Frames()) {
        if (frame->Own() != nullptr)
            continue;
        if (!tabs)
            frame->showNormal();
        frame->FitInto(viewport()->size());
    }
    setActiveSubWindow(current);
}

void MaskArea::TearOff(MaskFrame& frame)
{
    if (frame.Own() != nullptr)
        return;
    m_tiles.clear();
    const bool maximised = frame.isMaximized();
    if (maximised || frame.isMinimized())
        frame.showNormal();
    const QPoint place = frame.mapToGlobal(QPoint(0, 0));
    removeSubWindow(&frame);
    frame.setParent(window()); // a child of the area's would be taken in again
    frame.hide();
    TornOffMask& own = frame.TearOff(window());
    connect(&own, &TornOffMask::backWanted, this, [this, &frame] { TakeBack(frame); });
    const auto kept = m_ownPlaces.constFind(frame.Mask()->DialogId());
    if (kept == m_ownPlaces.constEnd() || !own.restoreGeometry(*kept))
        own.move(place);
    MoveOntoScreen(own);
    SetActive(&frame);
    own.show();
    own.activateWindow();
    frame.Mask()->GoToFirstControl();
    emit tornOff(&own);
    viewport()->update();
}

void MaskArea::TakeBack(MaskFrame& frame)
{
    if (frame.Own() == nullptr)
        return;
    m_ownPlaces[frame.Mask()->DialogId()] = frame.Own()->saveGeometry();
    const bool minimised = frame.Own()->isMinimized();
    frame.TakeBack();
    addSubWindow(&frame);
    const int gap = Spacing();
    emit roomWanted(frame.FullSize() + QSize(2 * gap, 2 * gap));
    frame.move(FreePlace(frame.FullSize().boundedTo(viewport()->size())));
    frame.FitInto(viewport()->size());
    if (minimised && !HasTabs())
        frame.showMinimized();
    else
        frame.Restore();
    window()->activateWindow();
    setActiveSubWindow(&frame);
    frame.Mask()->GoToFirstControl();
}

void MaskArea::TearOffActive()
{
    if (!m_active)
        return;
    if (m_active->Own() == nullptr)
        TearOff(*m_active);
    else
        TakeBack(*m_active);
}

void MaskArea::TakeAllBack()
{
    for (MaskFrame* frame : Frames())
        TakeBack(*frame);
}

QMap<UINT, QByteArray> MaskArea::OwnPlaces() const
{
    QMap<UINT, QByteArray> places = m_ownPlaces;
    for (const MaskFrame* frame : Frames())
        if (const TornOffMask* own = frame->Own())
            places[frame->Mask()->DialogId()] = own->saveGeometry();
    return places;
}

QSize MaskArea::Room() const
{
    QSize room = viewport()->size();
    for (const MaskFrame* frame : Frames())
        if (frame->Own() == nullptr && frame->isMinimized())
            room.setHeight(std::min(room.height(), viewport()->height() - frame->height()));
    return room;
}

bool MaskArea::TileInRows(const std::vector<MaskFrame*>& frames)
{
    const int gap = Spacing();
    const QSize room = Room();
    std::vector<QPoint> places;
    QPoint at(gap, gap);
    int rowHeight = 0;
    for (const MaskFrame* frame : frames) {
        const QSize size = frame->size();
        if (at.x() > gap && at.x() + size.width() + gap > room.width()) {
            at = QPoint(gap, at.y() + rowHeight + gap);
            rowHeight = 0;
        }
        if (at.x() + size.width() > room.width() || at.y() + size.height() > room.height())
            return frames.size() == 1;
        places.push_back(at);
        at.rx() += size.width() + gap;
        rowHeight = std::max(rowHeight, size.height());
    }
    for (std::size_t i = 0; i < frames.size(); ++i)
        frames[i]->move(places[i]);
    return true;
}

bool MaskArea::TileInCells(const std::vector<MaskFrame*>& frames)
{
    const auto count = static_cast<int>(frames.size());
    const QSize room = Room();
    const QSize least = kLeastCell * CurrentFontScale();
    int columns = 0;
    double most = 0.0;
    for (int tried = 1; tried <= count; ++tried) {
        const QSize cell(room.width() / tried, room.height() / ((count + tried - 1) / tried));
        if (cell.width() < least.width() || cell.height() < least.height())
            continue;
        double shown = 0.0; // of the masks
        for (const MaskFrame* frame : frames) {
            const QSize part = frame->FullSize().boundedTo(cell);
            shown += static_cast<double>(part.width()) * part.height();
        }
        if (shown > most) {
            most = shown;
            columns = tried;
        }
    }
    if (columns == 0)
        return false;
    const QSize cell(room.width() / columns, room.height() / ((count + columns - 1) / columns));
    for (int i = 0; i < count; ++i) {
        frames[static_cast<std::size_t>(i)]->resize(frames[static_cast<std::size_t>(i)]->size().boundedTo(cell));
        frames[static_cast<std::size_t>(i)]->move(i % columns * cell.width(), i / columns * cell.height());
    }
    return true;
}

void MaskArea::Tile()
{
    if (HasTabs())
        return;
    std::vector<MaskFrame*> frames = Arranged();
    const QPointer<MaskFrame> active = m_active;
    int minimised = 0;
    for (MaskFrame* frame : frames)
        frame->FitInto(Room());
    while (!frames.empty() && !TileInRows(frames) && !TileInCells(frames)) {
        // The active one stays.
        const auto last =
            std::find_if(frames.rbegin(), frames.rend(), [&active](const MaskFrame* frame) { return frame != active; });
        if (last == frames.rend())
            break;
        (*last)->showMinimized();
        frames.erase(std::next(last).base());
        ++minimised;
        for (MaskFrame* frame : frames)
            frame->FitInto(Room());
    }
    if (minimised > 0 && active && active->Own() == nullptr)
        setActiveSubWindow(active);
    m_tiles.clear();
    for (MaskFrame* frame : frames)
        m_tiles.emplace_back(frame, frame->geometry());
    if (minimised > 0)
        emit minimisedForRoom(minimised);
}

void MaskArea::Cascade()
{
    const int gap = Spacing();
    const int step = style()->pixelMetric(QStyle::PM_TitleBarHeight) + gap / 2;
    m_tiles.clear();
    QPoint at(gap, gap);
    for (MaskFrame* frame : Arranged()) {
        frame->FitInto(viewport()->size());
        frame->move(std::clamp(at.x(), 0, std::max(0, viewport()->width() - frame->width())),
                    std::clamp(at.y(), 0, std::max(0, viewport()->height() - frame->height())));
        frame->raise();
        at += QPoint(step, step);
        if (at.y() + step > viewport()->height())
            at = QPoint(at.x(), gap);
    }
}

void MaskArea::MinimiseAll()
{
    for (MaskFrame* frame : Arranged())
        if (!HasTabs())
            frame->showMinimized();
}

void MaskArea::RestoreAll()
{
    for (MaskFrame* frame : Frames())
        if (frame->IsMinimised())
            frame->Restore();
}

void MaskArea::GoToNext()
{
    activateNextSubWindow();
}

void MaskArea::GoToPrevious()
{
    activatePreviousSubWindow();
}

void MaskArea::MinimiseActive()
{
    if (m_active && (m_active->Own() != nullptr || !HasTabs()))
        m_active->Minimise();
}

void MaskArea::CloseActive()
{
    if (m_active)
        m_active->close();
}

void MaskArea::GoTo(MaskFrame& frame)
{
    if (frame.IsMinimised())
        frame.Restore();
    if (TornOffMask* own = frame.Own()) {
        own->raise();
        own->activateWindow();
        SetActive(&frame);
    } else
        setActiveSubWindow(&frame);
}

void MaskArea::paintEvent(QPaintEvent* event)
{
    QMdiArea::paintEvent(event);
    if (!Frames().empty())
        return;
    QPainter painter(viewport());
    const QFont font = TextFont(1.15);
    const QFontMetrics metrics(font);
    const int line = qRound(metrics.height() * 1.7);
    const int middle = viewport()->width() / 2;
    const int gap = 2 * Spacing();
    int y = viewport()->height() / 2 - line * static_cast<int>(std::size(kHints)) / 2;
    painter.setPen(Colors().muted);
    for (const Hint& hint : kHints) {
        painter.setFont(TextFont(1.15, true));
        painter.drawText(QRect(0, y, middle - gap, line), Qt::AlignRight | Qt::AlignVCenter,
                         QString::fromUtf8(hint.keys));
        painter.setFont(font);
        painter.drawText(QRect(middle + gap, y, middle, line), Qt::AlignLeft | Qt::AlignVCenter,
                         QString::fromUtf8(hint.what));
        y += line;
    }
}

} // namespace desktop
