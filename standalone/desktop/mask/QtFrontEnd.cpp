// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/mask/QtFrontEnd.h"

#include "desktop/look/MessageBox.h"
#include "desktop/look/Progress.h"
#include "desktop/mask/MaskArea.h"
#include "desktop/mask/MaskWindow.h"
#include "framework/UiThread.h"
#include "framework/UserInput.h"
#include "host/CDialog.h"
#include "report/Protocol.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QEventLoop>
#include <QFileDialog>
#include <QRegularExpression>
#include <QTimer>
#include <QVBoxLayout>

namespace desktop
{

using framework::Kind;
using framework::UiThread;
using framework::Window;

namespace
{

/// The frame of a modal dialog; closing it is up to the dialog.
class ModalShell : public QDialog
{
  public:
    ModalShell(MaskWindow& mask, QWidget* parent) : QDialog(parent), m_mask(mask)
    {
        setWindowTitle(mask.windowTitle());
        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSizeConstraint(QLayout::SetFixedSize);
        layout->addWidget(&mask);
        connect(&mask, &MaskWindow::dialogChanged, this, [this] { setWindowTitle(m_mask.windowTitle()); });
    }

    void reject() override
    {
        m_mask.Act([this] { framework::CloseDialog(*m_mask.Dialog()); });
    }

  protected:
    void closeEvent(QCloseEvent* event) override
    {
        event->ignore();
        reject();
    }

  private:
    MaskWindow& m_mask;
};

/// "Name (*.a)|*.a;*.b|" pairs as Qt lists them: "Name (*.a *.b)".
QString QtFilter(const std::string& filter)
{
    const QStringList parts = QString::fromStdString(filter).split(QLatin1Char('|'));
    QStringList kinds;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        QString pattern = parts[i + 1];
        QString name = parts[i];
        if (pattern.isEmpty())
            continue; // the list ends in a second bar
        name.remove(QRegularExpression(QStringLiteral("\\s*\\([^)]*\\)")));
        kinds.append(QStringLiteral("%1 (%2)").arg(name, pattern.replace(QLatin1Char(';'), QLatin1Char(' '))));
    }
    return kinds.join(QStringLiteral(";;"));
}

} // namespace

QtFrontEnd::QtFrontEnd() = default;

QtFrontEnd::~QtFrontEnd() = default;

MaskWindow* QtFrontEnd::WindowOf(HWND dialog) const
{
    const auto found = m_windows.find(dialog);
    return found == m_windows.end() ? nullptr : found->second.data();
}

MaskWindow* QtFrontEnd::WindowFor(const Window& window) const
{
    return WindowOf(window.kind == Kind::dialog || window.parent == nullptr ? window.handle : window.parent->handle);
}

QWidget* QtFrontEnd::ShellOf(const Window* owner) const
{
    const MaskWindow* mask = owner == nullptr ? nullptr : WindowFor(*owner);
    if (mask != nullptr && mask->isVisible())
        return mask->window();
    return QApplication::activeModalWidget() != nullptr ? QApplication::activeModalWidget()
                                                        : QApplication::activeWindow();
}

void QtFrontEnd::Settle()
{
    m_settling = IsWorking();
    if (m_settling)
        return; // EndProgress comes back to it
    if (UiThread* thread = UiThread::Current())
        thread->DispatchPending();
}

void QtFrontEnd::WindowAppeared(Window& window)
{
    MaskWindow* const parent = window.page ? WindowFor(*window.parent) : nullptr;
    auto* const mask = new MaskWindow(window, parent);
    m_windows[window.handle] = mask;
    connect(mask, &MaskWindow::acted, this, &QtFrontEnd::acted);
    if (parent != nullptr) {
        mask->raise();
        mask->setVisible(window.visible);
    } else if (const auto* dialog = dynamic_cast<CDialog*>(window.object); dialog != nullptr && dialog->IsModal()) {
        return; // RunModal shows it
    } else if (m_area != nullptr) {
        m_area->Add(*mask);
    }
}

void QtFrontEnd::WindowChanged(Window& window)
{
    MaskWindow* mask = WindowFor(window);
    if (mask == nullptr)
        return;
    if (window.kind == Kind::dialog)
        mask->SyncDialog();
    else
        mask->SyncControl(window);
}

void QtFrontEnd::WindowVanished(Window& window)
{
    for (auto timer = m_timers.begin(); timer != m_timers.end();)
        timer = timer->first.first == window.handle ? DropTimer(timer) : std::next(timer);
    MaskWindow* mask = WindowOf(window.handle);
    m_windows.erase(window.handle);
    if (mask == nullptr)
        return;
    mask->Detach();
    if (m_area == nullptr || !m_area->Remove(*mask)) {
        mask->hide();
        mask->deleteLater();
    }
}

void QtFrontEnd::FocusChanged(Window& control)
{
    if (MaskWindow* mask = WindowFor(control))
        mask->FocusControl(control);
}

void QtFrontEnd::RunModal(Window& dialog, const std::function<bool()>& running)
{
    MaskWindow* mask = WindowOf(dialog.handle);
    if (mask == nullptr)
        return;
    ModalShell shell(*mask, ShellOf(dialog.parent));
    shell.setModal(true);
    shell.show();
    mask->GoToFirstControl();
    while (running())
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    shell.hide();
    mask->setParent(nullptr); // it goes with its dialog
}

int QtFrontEnd::ShowMessage(const Window* owner, const framework::ShownMessage& message)
{
    EndProgress();
    // The dialog behind the owner, which may be a page or a control of it.
    const Window* dialog = owner;
    while (dialog != nullptr && dialog->parent != nullptr && (dialog->page || dialog->kind != Kind::dialog))
        dialog = dialog->parent;
    const HWND handle = dialog == nullptr ? nullptr : dialog->handle;
    const MaskWindow* mask = owner == nullptr ? nullptr : WindowFor(*owner);
    const int answer =
        ShowMessageBox(ShellOf(owner), mask == nullptr ? QStringLiteral("Tavelin") : mask->windowTitle(), message);
    if (const std::string text = report::MessageWithAnswer(message, answer); !text.empty())
        emit messageShown(reinterpret_cast<quintptr>(handle), QString::fromStdString(text));
    return answer;
}

void QtFrontEnd::EntryRefused(Window& control, const framework::ShownMessage& why)
{
    if (MaskWindow* mask = WindowFor(control))
        mask->ShowRefusal(control, why);
}

std::optional<std::string> QtFrontEnd::ChooseFile(const framework::FileRequest& request)
{
    EndProgress();
    QFileDialog dialog(ShellOf(request.owner), QString::fromStdString(request.title), {}, QtFilter(request.filter));
    dialog.setAcceptMode(request.open ? QFileDialog::AcceptOpen : QFileDialog::AcceptSave);
    dialog.setFileMode(request.open && request.mustExist ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
    dialog.setOption(QFileDialog::DontConfirmOverwrite); // the framework asks, once for every front end
    if (!request.defaultExtension.empty())
        dialog.setDefaultSuffix(QString::fromStdString(request.defaultExtension));
    if (!request.initialName.empty())
        dialog.selectFile(QString::fromStdString(request.initialName));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return std::nullopt;
    return dialog.selectedFiles().front().toStdString();
}

void QtFrontEnd::StartTimer(HWND window, UINT_PTR id, UINT milliseconds)
{
    auto& timer = m_timers[{window, id}];
    if (!timer) {
        timer = std::make_unique<QTimer>();
        connect(timer.get(), &QTimer::timeout, this, [this, window, id] {
            if (IsWorking())
                return; // it fires again
            UiThread::Current()->FireTimer(window, id);
            Settle();
        });
    }
    timer->start(static_cast<int>(milliseconds));
}

void QtFrontEnd::StopTimer(HWND window, UINT_PTR id)
{
    if (const auto found = m_timers.find({window, id}); found != m_timers.end())
        DropTimer(found);
}

QtFrontEnd::Timers::iterator QtFrontEnd::DropTimer(Timers::iterator timer)
{
    timer->second->stop();
    timer->second.release()->deleteLater(); // it may be the one that is firing
    return m_timers.erase(timer);
}

void QtFrontEnd::WaitCursor(bool wait)
{
    if (wait)
        QApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QApplication::restoreOverrideCursor();
}

bool QtFrontEnd::IsWorking() const
{
    return m_progress && m_progress->IsReporting();
}

bool QtFrontEnd::Progress(const std::string& what, double done)
{
    if (!m_progress) {
        const Window* button = UiThread::Current()->ClickedButton();
        const MaskWindow* mask = button == nullptr ? nullptr : WindowFor(*button);
        ControlView* view = mask == nullptr ? nullptr : mask->ViewOf(*button);
        QWidget* shown = view == nullptr ? nullptr : view->Widget();
        m_progress = std::make_unique<ProgressView>(shown == nullptr ? ShellOf(nullptr) : shown->window(), shown);
    }
    const QString text = QString::fromStdString(what);
    const bool goOn = m_progress->Report(text, done);
    // Work that returns to the event loop has ended, whatever it said last.
    if (!std::exchange(m_endPosted, true))
        QMetaObject::invokeMethod(this, &QtFrontEnd::EndProgress, Qt::QueuedConnection);
    if (m_progress->IsBusyShown())
        emit busy(text, done);
    return goOn;
}

void QtFrontEnd::EndProgress()
{
    m_endPosted = false;
    if (!m_progress || m_progress->IsReporting())
        return;
    m_progress.reset();
    emit idle();
    if (m_settling)
        QMetaObject::invokeMethod(this, &QtFrontEnd::Settle, Qt::QueuedConnection);
}

void QtFrontEnd::ShowHelp(UINT dialogId)
{
    emit helpWanted(dialogId);
}

void QtFrontEnd::MessagePosted(const Window*, const MSG& message)
{
    if (message.message == WM_RUV_MASKTRANSFERRED)
        emit transferred(static_cast<int>(message.wParam));
    if (std::exchange(m_settling, true))
        return;
    QMetaObject::invokeMethod(this, &QtFrontEnd::Settle, Qt::QueuedConnection);
}

void QtFrontEnd::CaseChanged(CRuvData&)
{
    for (const auto& [handle, mask] : m_windows)
        if (mask != nullptr)
            mask->SyncColors();
    emit caseChanged();
}

void QtFrontEnd::SceneChanged(CRuvData&)
{
    emit sceneChanged();
}

} // namespace desktop
