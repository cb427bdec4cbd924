// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/mask/MaskWindow.h"

#include "desktop/look/RefusalBubble.h"
#include "desktop/look/Theme.h"
#include "framework/UiThread.h"
#include "framework/UserInput.h"
#include "host/CDialog.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScopedValueRollback>

#include <algorithm>

namespace desktop
{

using framework::InputResult;
using framework::Kind;
using framework::UiThread;
using framework::Window;

namespace
{

/// A template gives a combo box the height of its opened list; closed it is as high as an edit.
constexpr int kClosedComboHeight = 12; // dialog units
constexpr int kSmallestDrawing = 3;    // part of the size in the template

QPointer<MaskWindow> g_atWork;

CRect ShownRect(const Window& control)
{
    CRect rect = control.rect;
    if (control.kind == Kind::combo && rect.Height() > kClosedComboHeight + 2)
        rect.bottom = rect.top + kClosedComboHeight;
    return rect;
}

bool ShowsOnlyADrawing(const Window& dialog)
{
    return dialog.children.size() == 1 && dialog.children.front()->kind == Kind::field;
}

/// A drawing in a window of its own belongs to the mask that opened it.
const Window& MaskOf(Window& dialog)
{
    return ShowsOnlyADrawing(dialog) && dialog.parent != nullptr && dialog.parent->kind == Kind::dialog
               ? framework::DialogOf(*dialog.parent)
               : dialog;
}

} // namespace

QSizeF MaskWindow::DialogUnit()
{
    // A quarter of the average character's width and an eighth of the line's height, as templates are drawn.
    const QFontMetricsF metrics(TextFont());
    const QString letters = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
    const double average = metrics.horizontalAdvance(letters) / static_cast<double>(letters.size());
    return {average / 4.0, metrics.height() / 8.0};
}

QRect MaskWindow::ToPixels(const CRect& units)
{
    const QSizeF unit = DialogUnit();
    const QPoint topLeft(qRound(units.left * unit.width()), qRound(units.top * unit.height()));
    const QPoint end(qRound(units.right * unit.width()), qRound(units.bottom * unit.height()));
    return QRect(topLeft, end - QPoint(1, 1));
}

MaskWindow::MaskWindow(Window& dialog, MaskWindow* parentMask, QWidget* parent)
    : QWidget(parentMask == nullptr ? parent : parentMask), m_dialog(&dialog), m_handle(dialog.handle),
      m_number(MaskOf(dialog).id), m_dialogId(dialog.id), m_parentMask(parentMask)
{
    setAutoFillBackground(true);
    for (const auto& control : dialog.children) {
        ControlView* view = MakeControlView(*control, *this);
        view->Widget()->installEventFilter(this);
        if (control->kind == Kind::group)
            view->Widget()->lower();
        m_views.push_back(view);
    }
    Layout();
    SyncDialog();
    if (TabChain().empty())
        setFocusPolicy(Qt::StrongFocus); // keys must reach somebody
    if (parentMask != nullptr)
        parentMask->AddPage(*this);
}

MaskWindow::~MaskWindow()
{
    HideRefusal();
}

MaskWindow& MaskWindow::Root()
{
    return m_parentMask == nullptr ? *this : m_parentMask->Root();
}

void MaskWindow::Layout()
{
    QPalette colors = QApplication::palette();
    colors.setColor(QPalette::Window, Colors().surface);
    setPalette(colors);
    if (m_dialog == nullptr)
        return;
    const QRect area = ToPixels(m_dialog->rect);
    if (IsDrawing()) {
        setMinimumSize(area.size() / kSmallestDrawing);
        LayoutDrawing();
        return;
    }
    setFixedSize(area.size());
    if (m_parentMask != nullptr)
        move(area.topLeft());
    for (ControlView* view : m_views)
        view->Widget()->setGeometry(ToPixels(ShownRect(*view->Control())));
}

bool MaskWindow::IsDrawing() const
{
    return m_dialog != nullptr && ShowsOnlyADrawing(*m_dialog);
}

/// The drawing keeps the margins of its template.
void MaskWindow::LayoutDrawing()
{
    const QRect area = ToPixels(m_dialog->rect);
    const QRect field = ToPixels(m_dialog->children.front()->rect);
    m_views.front()->Widget()->setGeometry(rect().adjusted(field.left(), field.top(), field.right() + 1 - area.width(),
                                                           field.bottom() + 1 - area.height()));
}

QSize MaskWindow::sizeHint() const
{
    return IsDrawing() ? ToPixels(m_dialog->rect).size() : QWidget::sizeHint();
}

void MaskWindow::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    if (IsDrawing())
        LayoutDrawing();
}

void MaskWindow::SyncDialog()
{
    if (m_dialog == nullptr)
        return;
    const QString outdated = m_dialog->outdated && !m_dialog->page ? " – veraltet, bitte rechnen" : "";
    setWindowTitle(QtText(m_dialog->text).trimmed() + outdated);
    for (ControlView* view : m_views)
        view->Sync();
    if (m_parentMask != nullptr)
        setVisible(m_dialog->visible);
    emit dialogChanged();
}

ControlView* MaskWindow::ViewOf(const Window& control) const
{
    const auto found =
        std::find_if(m_views.begin(), m_views.end(), [&](ControlView* view) { return view->Control() == &control; });
    return found == m_views.end() ? nullptr : *found;
}

ControlView* MaskWindow::ViewOf(UINT controlId) const
{
    const Window* control = m_dialog == nullptr ? nullptr : m_dialog->Child(controlId);
    return control == nullptr ? nullptr : ViewOf(*control);
}

void MaskWindow::SyncControl(Window& control)
{
    if (ControlView* view = ViewOf(control))
        view->Sync();
}

void MaskWindow::SyncColors()
{
    if (m_dialog != nullptr)
        for (ControlView* view : m_views)
            view->SyncColors();
}

void MaskWindow::FocusControl(Window& control)
{
    const QWidget* focus = QApplication::focusWidget(); // it may be the editor of a cell
    ControlView* view = ViewOf(control);
    if (view != nullptr && !view->Widget()->hasFocus() && !(focus != nullptr && view->Widget()->isAncestorOf(focus)))
        view->Widget()->setFocus(Qt::OtherFocusReason);
    for (const auto& page : m_pages)
        if (page != nullptr)
            page->FocusControl(control);
}

void MaskWindow::ShowRefusal(Window& control, const framework::ShownMessage& why)
{
    HideRefusal();
    ControlView* view = ViewOf(control);
    if (view == nullptr)
        return;
    m_bubble = new RefusalBubble(*view->Widget(), QString::fromStdString(why.text));
    view->Widget()->setAccessibleDescription(m_bubble->Text());
}

void MaskWindow::HideRefusal()
{
    if (m_bubble == nullptr)
        return;
    for (ControlView* view : m_views)
        if (view->Widget() == m_bubble->Field())
            view->Widget()->setAccessibleDescription({});
    delete m_bubble;
}

const RefusalBubble* MaskWindow::Refusal() const
{
    return m_bubble;
}

void MaskWindow::Detach()
{
    HideRefusal();
    m_dialog = nullptr;
    for (ControlView* view : m_views)
        view->Detach();
}

void MaskWindow::Act(const std::function<void()>& input)
{
    UiThread* thread = UiThread::Current();
    if (thread == nullptr || m_dialog == nullptr)
        return;
    if (thread->IsReporting()) { // all it can do is cancel the work
        input();
        return;
    }
    HideRefusal();
    const QScopedValueRollback<QPointer<MaskWindow>> work(g_atWork, &Root());
    {
        const UiThread::Scope scope(*thread);
        input();
    }
    const QPointer<MaskWindow> still(this);
    thread->DispatchPending();
    if (still)
        emit acted();
}

MaskWindow* MaskWindow::AtWork()
{
    return g_atWork;
}

std::vector<ControlView*> MaskWindow::TabChain()
{
    std::vector<ControlView*> chain;
    if (m_dialog == nullptr)
        return chain;
    for (const Window* control : framework::TabOrder(*m_dialog))
        if (ControlView* view = ViewOf(*control))
            chain.push_back(view);
    for (const auto& page : m_pages)
        if (page != nullptr && page->m_dialog != nullptr && page->m_dialog->visible) {
            const auto onPage = page->TabChain();
            chain.insert(chain.end(), onPage.begin(), onPage.end());
        }
    return chain;
}

void MaskWindow::GoToFirstControl()
{
    const auto chain = TabChain();
    QWidget* first = chain.empty() ? this : chain.front()->Widget();
    first->setFocus(Qt::TabFocusReason);
    if (auto* edit = qobject_cast<QLineEdit*>(first))
        edit->selectAll(); // also when the window is not active yet
}

ControlView* MaskWindow::FocusedView() const
{
    const QWidget* focus = QApplication::focusWidget();
    for (ControlView* view : m_views)
        if (focus != nullptr && (view->Widget() == focus || view->Widget()->isAncestorOf(focus)))
            return view;
    for (const auto& page : m_pages)
        if (ControlView* view = page == nullptr ? nullptr : page->FocusedView())
            return view;
    return nullptr;
}

void MaskWindow::mousePressEvent(QMouseEvent* event)
{
    QWidget::mousePressEvent(event);
    emit Root().clicked();
}

void MaskWindow::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() != QEvent::StyleChange)
        return;
    Layout();
    SyncDialog();
}

} // namespace desktop
