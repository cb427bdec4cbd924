// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/mask/FieldControl.h"

#include "desktop/look/CdcPainter.h"
#include "desktop/look/DrawingOutput.h"
#include "desktop/look/Theme.h"
#include "desktop/mask/MaskWindow.h"
#include "framework/UiThread.h"
#include "framework/UserInput.h"
#include "report/Protocol.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>

namespace desktop
{

using framework::InputResult;
using framework::UiThread;
using framework::Window;

namespace
{

constexpr double kWheelNotch = 120.0;

Qt::CursorShape QtCursor(CursorShape shape)
{
    switch (shape) {
    case CursorShape::arrow:
        break;
    case CursorShape::hand:
        return Qt::PointingHandCursor;
    case CursorShape::cross:
        return Qt::CrossCursor;
    case CursorShape::openHand:
        return Qt::OpenHandCursor;
    case CursorShape::closedHand:
        return Qt::ClosedHandCursor;
    case CursorShape::sizeHorizontal:
        return Qt::SizeHorCursor;
    case CursorShape::sizeVertical:
        return Qt::SizeVerCursor;
    case CursorShape::sizeAll:
        return Qt::SizeAllCursor;
    case CursorShape::forbidden:
        return Qt::ForbiddenCursor;
    }
    return Qt::ArrowCursor;
}

MouseButton ButtonOf(Qt::MouseButton button)
{
    switch (button) {
    case Qt::LeftButton:
        return MouseButton::left;
    case Qt::MiddleButton:
        return MouseButton::middle;
    case Qt::RightButton:
        return MouseButton::right;
    default:
        return MouseButton::none;
    }
}

UINT ModifiersOf(Qt::KeyboardModifiers modifiers)
{
    return (modifiers.testFlag(Qt::ShiftModifier) ? MK_SHIFT : 0U) |
           (modifiers.testFlag(Qt::ControlModifier) ? MK_CONTROL : 0U);
}

UINT KeyOf(int key)
{
    switch (key) {
    case Qt::Key_Left:
        return VK_LEFT;
    case Qt::Key_Right:
        return VK_RIGHT;
    case Qt::Key_Up:
        return VK_UP;
    case Qt::Key_Down:
        return VK_DOWN;
    case Qt::Key_Home:
        return VK_HOME;
    case Qt::Key_End:
        return VK_END;
    case Qt::Key_PageUp:
        return VK_PRIOR;
    case Qt::Key_PageDown:
        return VK_NEXT;
    case Qt::Key_Insert:
        return VK_INSERT;
    case Qt::Key_Delete:
        return VK_DELETE;
    case Qt::Key_Backspace:
        return VK_BACK;
    default:
        break;
    }
    if (key >= Qt::Key_F1 && key <= Qt::Key_F12)
        return VK_F1 + static_cast<UINT>(key - Qt::Key_F1);
    const bool named = (key >= Qt::Key_A && key <= Qt::Key_Z) || (key >= Qt::Key_0 && key <= Qt::Key_9);
    return named || key == Qt::Key_Space ? static_cast<UINT>(key) : 0U;
}

} // namespace

framework::KeyPress KeyPressOf(const QKeyEvent& event)
{
    framework::KeyPress press{KeyOf(event.key()), 0, ModifiersOf(event.modifiers())};
    const auto characters = event.text().toUcs4();
    const bool command = event.modifiers().testFlag(Qt::ControlModifier) != event.modifiers().testFlag(Qt::AltModifier);
    if (characters.size() == 1 && QChar::isPrint(characters.front()) && !command) // AltGr is Ctrl and Alt
        press.character = characters.front();
    return press;
}

FieldControl::FieldControl(Window& control, MaskWindow& mask) : QWidget(&mask), ControlView(control, mask) {}

void FieldControl::Sync()
{
    SyncVisibility();
    setEnabled(m_control->enabled);
    setMouseTracking(static_cast<bool>(m_control->mouse));
    setFocusPolicy(m_control->tabStop ? Qt::TabFocus : Qt::NoFocus); // after a click the framework moves it
    if (const Qt::CursorShape shape = QtCursor(m_control->cursor); cursor().shape() != shape)
        setCursor(shape);
    m_drawing.reset();
    update();
}

void FieldControl::resizeEvent(QResizeEvent*)
{
    m_drawing.reset();
}

void FieldControl::contextMenuEvent(QContextMenuEvent* event)
{
    if (m_control == nullptr || !m_control->painter ||
        (event->reason() == QContextMenuEvent::Mouse && (m_rightUsed || m_control->held != MouseButton::none)))
        return;
    const QString name = QStringLiteral("%1 %2").arg(m_mask.Root().Number()).arg(m_mask.Root().windowTitle());
    auto* menu = new QMenu(this); // the mask may go while it is open
    menu->setAttribute(Qt::WA_DeleteOnClose);
    AddDrawingEntries(*menu, name, m_mask.window(), [this, last = report::DrawField(*m_control)] {
        return m_control == nullptr ? last : report::DrawField(*m_control);
    });
    menu->popup(event->globalPos());
}

void FieldControl::paintEvent(QPaintEvent*)
{
    if (m_control == nullptr || !m_control->painter)
        return;
    if (!m_drawing || m_drawing->Sharpness() != devicePixelRatioF()) { // also on a screen of another scale
        m_drawing.emplace(width(), height(), devicePixelRatioF());
        m_control->painter(*m_drawing, CRect{0, 0, width(), height()});
    }
    QPainter painter(this);
    painter.setClipRect(rect());
    Replay(*m_drawing, painter, &OnScreen);
    if (hasFocus()) {
        painter.setPen(Colors().accent);
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
}

bool FieldControl::Tell(CMouseEvent event, QPointF position, Qt::KeyboardModifiers modifiers)
{
    if (m_control == nullptr || !m_control->mouse)
        return false;
    event.modifiers = ModifiersOf(modifiers);
    event.position = {position.x(), position.y()};
    event.width = width();
    event.height = height();
    InputResult result = InputResult::unused;
    const auto tell = [&] { result = framework::Mouse(*m_control, event); };
    if (event.kind == CMouseEvent::Kind::move && m_control->held == MouseButton::none) {
        // Passing over is nothing the user did: a refusal stays to be read.
        {
            const UiThread::Scope scope(*UiThread::Current());
            tell();
        }
        UiThread::Current()->DispatchPending();
    } else {
        m_mask.Act(tell);
    }
    return result == InputResult::done;
}

void FieldControl::Press(QMouseEvent& event, CMouseEvent::Kind kind)
{
    emit m_mask.Root().clicked();
    const bool used = Tell({kind, ButtonOf(event.button())}, event.position(), event.modifiers());
    if (event.button() == Qt::RightButton)
        m_rightUsed = used;
}

void FieldControl::mousePressEvent(QMouseEvent* event)
{
    Press(*event, CMouseEvent::Kind::press);
}

void FieldControl::mouseDoubleClickEvent(QMouseEvent* event)
{
    Press(*event, CMouseEvent::Kind::doubleClick);
}

void FieldControl::mouseMoveEvent(QMouseEvent* event)
{
    Tell({CMouseEvent::Kind::move}, event->position(), event->modifiers());
}

void FieldControl::mouseReleaseEvent(QMouseEvent* event)
{
    Tell({CMouseEvent::Kind::release, ButtonOf(event->button())}, event->position(), event->modifiers());
}

void FieldControl::wheelEvent(QWheelEvent* event)
{
    CMouseEvent told{CMouseEvent::Kind::wheel};
    told.wheel = event->angleDelta().y() / kWheelNotch;
    if (told.wheel == 0.0 || !Tell(told, event->position(), event->modifiers()))
        event->ignore(); // scrolls what the mask lies in
}

bool FieldControl::event(QEvent* event)
{
    // Letters without a modifier are the field's, not a shortcut of the main window.
    if (event->type() == QEvent::ShortcutOverride && m_control != nullptr && m_control->tabStop) {
        const auto& key = static_cast<const QKeyEvent&>(*event);
        const Qt::KeyboardModifiers held = key.modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier);
        const framework::KeyPress press = KeyPressOf(key);
        if (held == Qt::NoModifier && (press.character != 0 || (press.key != 0 && press.key < VK_F1)))
            event->accept();
    }
    return QWidget::event(event);
}

void FieldControl::keyPressEvent(QKeyEvent* event)
{
    const framework::KeyPress press = KeyPressOf(*event);
    InputResult result = InputResult::unused;
    if (m_control != nullptr && m_control->tabStop && (press.key != 0 || press.character != 0) &&
        event->modifiers() != Qt::AltModifier)
        m_mask.Act([&] { result = framework::Key(*m_control, press); });
    if (result != InputResult::done)
        QWidget::keyPressEvent(event);
}

void FieldControl::focusInEvent(QFocusEvent* event)
{
    QWidget::focusInEvent(event);
    if (m_control != nullptr)
        UiThread::Current()->SetFocus(*m_control);
}

void FieldControl::focusOutEvent(QFocusEvent* event)
{
    QWidget::focusOutEvent(event);
    update();
}

} // namespace desktop
