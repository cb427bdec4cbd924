// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What keys do in the window of a mask.
#include "desktop/mask/MaskWindow.h"

#include "desktop/mask/FieldControl.h"
#include "framework/UiThread.h"
#include "framework/UserInput.h"
#include "host/CDialog.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>

#include <algorithm>

namespace desktop
{

using framework::InputResult;
using framework::Kind;
using framework::UiThread;
using framework::Window;

namespace
{

bool IsModifier(int key)
{
    return key == Qt::Key_Shift || key == Qt::Key_Control || key == Qt::Key_Alt || key == Qt::Key_Meta ||
           key == Qt::Key_AltGr || key == Qt::Key_CapsLock || key == Qt::Key_NumLock;
}

} // namespace

bool MaskWindow::focusNextPrevChild(bool next)
{
    if (m_parentMask != nullptr)
        return m_parentMask->focusNextPrevChild(next);
    ControlView* from = FocusedView();
    if (from != nullptr && from->Control() != nullptr && from->Control()->kind == Kind::edit) {
        InputResult result = InputResult::done;
        Act([&] { result = framework::FinishEntry(*from->Control()); });
        if (result == InputResult::refused || m_dialog == nullptr)
            return true;
    }
    const auto chain = TabChain(); // afterwards: what was entered may have enabled or disabled others
    if (chain.empty())
        return true;
    const auto at = std::find(chain.begin(), chain.end(), from);
    const auto count = static_cast<std::ptrdiff_t>(chain.size());
    const std::ptrdiff_t old = at == chain.end() ? (next ? -1 : 0) : at - chain.begin();
    ControlView* to = chain[static_cast<std::size_t>((old + (next ? 1 : count - 1)) % count)];
    to->Widget()->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    if (to->Control() != nullptr)
        UiThread::Current()->SetFocus(*to->Control());
    return true;
}

Window* MaskWindow::WithMnemonic(const QString& letter) const
{
    if (m_dialog == nullptr)
        return nullptr;
    const auto& controls = m_dialog->children;
    for (auto control = controls.begin(); control != controls.end(); ++control) {
        const QString mnemonic = QString::fromStdString(framework::MnemonicOf((*control)->text)).toLower();
        if (mnemonic != letter || !(*control)->visible || (*control)->kind == Kind::edit)
            continue;
        if ((*control)->kind != Kind::label && (*control)->kind != Kind::group)
            return (*control)->enabled ? control->get() : nullptr;
        // A static speaks for the control after it.
        const auto named = std::find_if(control + 1, controls.end(), [](const auto& other) {
            return other->visible && other->enabled && (other->tabStop || other->kind == Kind::radio);
        });
        return named == controls.end() ? nullptr : named->get();
    }
    for (const auto& page : m_pages)
        if (page != nullptr && page->m_dialog != nullptr && page->m_dialog->visible)
            if (Window* found = page->WithMnemonic(letter))
                return found;
    return nullptr;
}

Window* MaskWindow::DefaultButton() const
{
    if (m_dialog == nullptr)
        return nullptr;
    for (const auto& control : m_dialog->children)
        if (control->defaultButton && control->enabled && control->visible)
            return control.get();
    return m_parentMask == nullptr ? nullptr : m_parentMask->DefaultButton();
}

void MaskWindow::Enter(ControlView* view)
{
    Window* focused = view == nullptr ? nullptr : view->Control();
    Act([&] {
        UiThread& thread = *UiThread::Current();
        const HWND handle = focused == nullptr ? nullptr : focused->handle;
        if (focused != nullptr && focused->kind == Kind::button) {
            framework::Click(*focused);
            return;
        }
        if (focused != nullptr && focused->kind == Kind::field &&
            framework::Key(*focused, {VK_RETURN, 0, 0}) == InputResult::done)
            return;
        if (focused != nullptr && focused->kind == Kind::edit) {
            if (framework::FinishEntry(*focused) == InputResult::refused || thread.Find(handle) == nullptr)
                return;
        }
        if (Window* button = DefaultButton())
            framework::Click(*button);
        // The user goes on typing where he was.
        if (Window* still = handle == nullptr ? nullptr : thread.Find(handle); still != nullptr && still->enabled)
            thread.SetFocus(*still);
    });
    if (view != nullptr && view->Control() != nullptr)
        if (auto* edit = qobject_cast<QLineEdit*>(view->Widget()))
            edit->selectAll();
}

void MaskWindow::Cancel()
{
    MaskWindow& root = Root();
    root.Act([&root] {
        Window* button = root.m_dialog->Child(IDCANCEL);
        if (button == nullptr || framework::Click(*button) != InputResult::done)
            framework::CloseDialog(*root.m_dialog);
    });
}

void MaskWindow::ShowHelp()
{
    MaskWindow& root = Root();
    root.Act([&root] {
        UiThread::Current()->Send(root.m_handle, WM_COMMAND, MAKEWPARAM(static_cast<UINT>(IDHELP), BN_CLICKED), 0);
    });
}

void MaskWindow::StepRadio(Window& radio, int direction)
{
    const auto group = framework::RadioGroup(radio);
    const auto count = static_cast<std::ptrdiff_t>(group.size());
    const std::ptrdiff_t from = std::find(group.begin(), group.end(), &radio) - group.begin();
    for (std::ptrdiff_t i = 1; i < count; ++i) {
        Window* next = group[static_cast<std::size_t>((from + direction * i + count * i) % count)];
        if (next->enabled && next->visible) {
            Act([next] { framework::Click(*next); });
            return;
        }
    }
}

std::function<void()> MaskWindow::KeyAction(const QKeyEvent& event, ControlView* view)
{
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    if (modifiers == Qt::AltModifier) {
        const QString letter = QString(QChar(static_cast<char32_t>(event.key() < 0x10000 ? event.key() : 0))).toLower();
        Window* target = Root().WithMnemonic(letter);
        if (target == nullptr)
            return {};
        const bool pressed = target->kind == Kind::button || target->kind == Kind::check || target->kind == Kind::radio;
        if (pressed)
            return [this, target] { Act([target] { framework::Click(*target); }); };
        return [this, target] { Root().FocusControl(*target); };
    }
    if (modifiers != Qt::NoModifier)
        return {};
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return [this, view] { Enter(view); };
    case Qt::Key_Escape:
        return [this] { Cancel(); };
    case Qt::Key_F1:
        return [this] { ShowHelp(); };
    default:
        break;
    }
    if (view == nullptr || view->Control() == nullptr || view->Control()->kind != Kind::radio)
        return {};
    switch (event.key()) {
    case Qt::Key_Right:
    case Qt::Key_Down:
        return [this, view] { StepRadio(*view->Control(), +1); };
    case Qt::Key_Left:
    case Qt::Key_Up:
        return [this, view] { StepRadio(*view->Control(), -1); };
    default:
        return {};
    }
}

bool MaskWindow::eventFilter(QObject* object, QEvent* event)
{
    if (m_dialog == nullptr || (event->type() != QEvent::ShortcutOverride && event->type() != QEvent::KeyPress))
        return QWidget::eventFilter(object, event);
    const QWidget* focus = QApplication::focusWidget();
    if (focus != nullptr && focus != object && qobject_cast<QWidget*>(object) != nullptr &&
        static_cast<QWidget*>(object)->isAncestorOf(focus))
        return QWidget::eventFilter(object, event); // the editor of a cell left it over
    const auto& key = static_cast<QKeyEvent&>(*event);
    const auto found =
        std::find_if(m_views.begin(), m_views.end(), [&](ControlView* view) { return view->Widget() == object; });
    const auto action = KeyAction(key, found == m_views.end() ? nullptr : *found);
    if (event->type() == QEvent::KeyPress && !IsModifier(key.key()))
        HideRefusal();
    if (!action)
        return QWidget::eventFilter(object, event);
    event->accept();
    if (event->type() == QEvent::KeyPress)
        action();
    return true;
}

void MaskWindow::keyPressEvent(QKeyEvent* event)
{
    if (const auto action = m_dialog == nullptr ? nullptr : KeyAction(*event, nullptr)) {
        action();
        return;
    }
    // Keys that no control used; a field has offered its own to the dialog already.
    InputResult result = InputResult::unused;
    const framework::KeyPress press = KeyPressOf(*event);
    if (m_dialog != nullptr && hasFocus() && (press.key != 0 || press.character != 0))
        Act([&] { result = framework::Key(*m_dialog, press); });
    if (result != InputResult::done)
        QWidget::keyPressEvent(event);
}

} // namespace desktop
