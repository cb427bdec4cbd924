// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The workstation's main window: menu, tool bar, the area of the masks, help, the panels of the case.
#pragma once

#include "desktop/look/Preferences.h"
#include "host/HostTypes.h"

#include <QMainWindow>

#include <map>
#include <vector>

class QAction;
class QDockWidget;
class QLabel;
class QMenu;
class QProgressBar;

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

    /// Says for a moment at the foot of the window what was done.
    void Say(const QString& what);
    /// "Drucken" and the menu "Exportieren" of "Datei"; DeskOutput fills them.
    QAction& PrintCommand() const { return *m_print; }
    QMenu& ExportMenu() const { return *m_export; }

    /// Closes every mask of the case, without questions.
    void CloseMasks();

    MaskArea& Masks() const { return *m_masks; }
    HelpPane& Help() const { return *m_help; }
    CaseDocument& Document() const { return m_document; }
    QuickOpener& Opener() const { return *m_opener; }
    const std::vector<QDockWidget*>& CasePanels() const { return m_panels; }

    /// Applies the look; with a path also keeps it there from now on.
    void UsePreferences(const Preferences& preferences, const QString& path);
    const Preferences& CurrentPreferences() const { return m_preferences; }

  signals:
    /// Units, decimal sign or colours changed: show every number and drawing afresh.
    void settingsChanged();
    /// Objects that masks keep in the scene changed, or what they ask for; see krn/Placing.h.
    void sceneChanged();

  protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    void BuildFileMenu();
    void BuildEditMenu();
    void BuildMaskMenu();
    void BuildViewMenu();
    void BuildExtrasMenu();
    void BuildWindowMenu();
    void BuildHelpMenu();
    void BuildToolBar();
    void BuildStatusBar();
    void BuildHelpDock();
    QMenu* Menu(const QString& title);
    QAction* Command(const QString& menu, const QString& text, const char* icon, const QKeySequence& keys);
    /// The tool tip: what the command does and its keys.
    static void ShowTip(QAction& action, const QString& text);
    void FillRecentFiles();
    void FillExamples(QMenu& menu);
    void FillWindowMenu();
    void ShowCaseState();
    void ShowFileState();
    void ShowHistory();
    void ShowProtection();
    /// Shrinks panels, or hides them for as long as masks are open, until the area of the masks has the size.
    void MakeRoom(const QSize& wanted);
    void ShowYielded();
    /// Gives the panels back what the help took of them.
    void EndHelp();
    /// Of the help and the panels.
    std::vector<QSize> PanelSizes() const;
    void SettleLayout();
    void ResetLayout();
    /// Beside narrow masks there is no room for the panels to the right.
    void ShowPanelsByWidth();
    QString ScreenSize() const;
    void ShowTransfer(std::size_t vehicle);
    void ShowSettingsState();
    void ShowBusy(const QString& what, double done);
    void ShowIdle();
    void EditSettings();
    void SetTransfer(bool on);
    void SetFontScale(double scale);
    void SaveSettings();
    void ShowAbout();

    CaseDocument& m_document;
    QtFrontEnd& m_frontEnd;
    Preferences m_preferences;
    QString m_preferencesPath; ///< empty: nothing is kept
    MaskArea* m_masks;
    HelpPane* m_help;
    QuickOpener* m_opener;
    QDockWidget* m_helpDock = nullptr;
    bool m_helpSized = false; ///< has the width it or the user chose
    QByteArray m_beforeHelp;  ///< the docks before the help was opened
    std::vector<QSize> m_sizesWithHelp;
    std::vector<QDockWidget*> m_panels;
    std::vector<QDockWidget*> m_yielded; ///< panels hidden for want of room
    QByteArray m_docksBefore;            ///< before the first panel was shrunk or hidden, empty while none is
    QByteArray m_docksAfter;             ///< as MakeRoom left them
    QByteArray m_firstDocks;             ///< as the program comes

    std::map<QString, QMenu*> m_menus; ///< by title without mark
    QMenu* m_recentMenu = nullptr;
    QAction* m_panelsEnd = nullptr; ///< panels are listed before it
    QAction* m_new = nullptr;
    QAction* m_open = nullptr;
    QAction* m_save = nullptr;
    QAction* m_print = nullptr;
    QMenu* m_export = nullptr;
    QAction* m_undo = nullptr;
    QAction* m_redo = nullptr;
    QAction* m_quickOpen = nullptr;
    QAction* m_transfer = nullptr;
    QAction* m_dark = nullptr;
    QAction* m_maskHelp = nullptr;
    QAction* m_tabs = nullptr;
    QAction* m_tearOff = nullptr;
    std::vector<QAction*> m_ofWindows; ///< arrange masks as windows
    QLabel* m_unitLabel = nullptr;
    QLabel* m_transferLabel = nullptr;
    QLabel* m_unprotected = nullptr;
    QLabel* m_fileNotice = nullptr; ///< somebody else changed the case's file
    QProgressBar* m_busyMark = nullptr;
};

} // namespace desktop
