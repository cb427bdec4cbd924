// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The workstation's main window: menu, tool bar, the area of the masks, help, the panels of the case.
#pragma once

#include "host/HostTypes.h"

#include <QMainWindow>

#include <memory>
#include <vector>

class QAction;
class QDockWidget;
class QLabel;
class QMenu;

namespace desktop
{

class CaseDocument;
class HelpPane;
class MaskArea;
class QtFrontEnd;
class QuickOpener;

class MainWindow : public QMainWindow
{
    Q_OBJECT

  public:
    MainWindow(CaseDocument& document, QtFrontEnd& frontEnd);
    ~MainWindow() override;

    /// Puts a view of the case into a dock and into the menu "Ansicht". Panels of one area become tabs. The panel
    /// belongs to the window from then on.
    QDockWidget* AddCasePanel(QWidget* panel, const QString& title, Qt::DockWidgetArea area = Qt::LeftDockWidgetArea);
    /// Adds a command to a menu by the menu's title without its mnemonic mark ("Datei", "Bearbeiten", "Ansicht",
    /// "Masken", "Fenster", "Extras", "Hilfe"), at its end.
    void AddCommand(const QString& menu, QAction* action);

    /// Opens the mask as the module's entry does: restores a minimised one, otherwise adds a window.
    void OpenMask(UINT number);
    /// Shows the help page of a mask; 0 shows the list of pages.
    void ShowHelp(UINT number);

    MaskArea& Masks() const { return *m_masks; }
    HelpPane& Help() const { return *m_help; }
    CaseDocument& Document() const { return m_document; }
    QuickOpener& Opener() const { return *m_opener; }
    const std::vector<QDockWidget*>& CasePanels() const { return m_panels; }

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void BuildFileMenu();
    void BuildEditMenu();
    void BuildMaskMenu();
    void BuildViewMenu();
    void BuildWindowMenu();
    void BuildExtrasMenu();
    void BuildHelpMenu();
    void BuildToolBar();
    void BuildStatusBar();
    QAction* Command(QMenu* menu, const QString& text, const char* icon, const QKeySequence& keys);
    void FillRecentFiles();
    void FillWindowMenu();
    void ShowCaseState();
    void ShowSettingsState();
    void EditSettings();
    void OpenCasePath(const QString& path);

    CaseDocument& m_document;
    QtFrontEnd& m_frontEnd;
    MaskArea* m_masks = nullptr;
    HelpPane* m_help = nullptr;
    QDockWidget* m_helpDock = nullptr;
    QuickOpener* m_opener = nullptr;
    std::vector<QDockWidget*> m_panels;

    QMenu* m_fileMenu = nullptr;
    QMenu* m_recentMenu = nullptr;
    QMenu* m_windowMenu = nullptr;
    QMenu* m_viewMenu = nullptr;
    QAction* m_undo = nullptr;
    QAction* m_redo = nullptr;
    QAction* m_save = nullptr;
    QAction* m_transfer = nullptr;
    QLabel* m_stateLabel = nullptr;
    QLabel* m_unitLabel = nullptr;
};

} // namespace desktop
