// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Shows one dialog of the framework, laid out by its template: a mask, a modal dialog, or a page on a mask.
#pragma once

#include "desktop/mask/ControlWidgets.h"
#include "framework/FrontEnd.h"

#include <QPointer>
#include <QWidget>

#include <functional>
#include <vector>

namespace desktop
{

class RefusalBubble;

class MaskWindow : public QWidget
{
    Q_OBJECT

  public:
    /// `dialog` must stand complete. With a parent mask the window is a page on it.
    MaskWindow(framework::Window& dialog, MaskWindow* parentMask, QWidget* parent = nullptr);
    ~MaskWindow() override;

    /// The dialog, or null when it is gone.
    framework::Window* Dialog() const { return m_dialog; }
    HWND Handle() const { return m_handle; }
    /// The mask's number, also of the windows that masks open for their drawings; stays when the dialog is gone.
    UINT Number() const { return m_number; }
    UINT DialogId() const { return m_dialogId; }
    /// The mask a page lies on, or the mask itself.
    MaskWindow& Root();
    void AddPage(MaskWindow& page) { m_pages.push_back(&page); }
    const std::vector<ControlView*>& Views() const { return m_views; }
    ControlView* ViewOf(const framework::Window& control) const;
    ControlView* ViewOf(UINT controlId) const;

    /// Shows the state of the dialog, or of one control on it.
    void SyncDialog();
    void SyncControl(framework::Window& control);
    void SyncColors();
    void FocusControl(framework::Window& control);
    /// Says at the control why its entry was not taken.
    void ShowRefusal(framework::Window& control, const framework::ShownMessage& why);
    void HideRefusal();
    const RefusalBubble* Refusal() const;
    /// The dialog is going: nothing of it may be touched any more.
    void Detach();

    /// True for a dialog that shows one drawing and nothing else: it may have any size.
    bool IsDrawing() const;

    /// Runs something the user did, then lets all it caused happen. The window may be gone afterwards.
    void Act(const std::function<void()>& input);
    /// The mask whose input is being handled, or null.
    static MaskWindow* AtWork();
    void GoToFirstControl();
    /// The controls the Tab key visits, those of visible pages after the dialog's own.
    std::vector<ControlView*> TabChain();

    QSize sizeHint() const override;

    /// Length of dialog units in logical pixels, by the font.
    static QSizeF DialogUnit();
    static QRect ToPixels(const CRect& units);

  signals:
    /// The dialog's title, size or state (minimised, hidden) changed.
    void dialogChanged();
    /// Somewhere beside its controls.
    void clicked();
    /// Something the user did has been handled.
    void acted();

  protected:
    bool focusNextPrevChild(bool next) override;
    bool eventFilter(QObject* object, QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

  private:
    void Layout();
    void LayoutDrawing();
    ControlView* FocusedView() const;
    /// What a key does to the dialog as a whole; null when it does nothing.
    std::function<void()> KeyAction(const QKeyEvent& event, ControlView* view);
    void Enter(ControlView* view);
    void Cancel();
    void ShowHelp();
    framework::Window* WithMnemonic(const QString& letter) const;
    framework::Window* DefaultButton() const;
    void StepRadio(framework::Window& radio, int direction);

    framework::Window* m_dialog;
    HWND m_handle;
    UINT m_number;
    UINT m_dialogId;
    MaskWindow* m_parentMask;
    std::vector<QPointer<MaskWindow>> m_pages;
    std::vector<ControlView*> m_views; // the widgets among the children
    QPointer<RefusalBubble> m_bubble;
};

} // namespace desktop
