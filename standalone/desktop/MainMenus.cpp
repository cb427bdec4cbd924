// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The menus and the tool bar of the main window.
#include "desktop/MainWindow.h"
#include "desktop/case/CaseDetails.h"
#include "desktop/case/CaseDocument.h"
#include "desktop/case/CaseFileDialogs.h"
#include "desktop/look/Icons.h"
#include "desktop/look/Theme.h"
#include "desktop/mask/HelpPane.h"
#include "desktop/mask/MaskArea.h"
#include "desktop/mask/MaskWindow.h"
#include "desktop/mask/QuickOpener.h"
#include "frame/MaskTable.h"

#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>
#include <QToolButton>

#include <algorithm>
#include <map>

namespace desktop
{
namespace
{

constexpr double kZoomStep = 1.1;

/// A title as menus need it: no letter of it is a mnemonic.
QString Literal(QString text)
{
    return text.trimmed().replace(QLatin1Char('&'), QStringLiteral("&&"));
}

} // namespace

QMenu* MainWindow::Menu(const QString& title)
{
    QString plain = title;
    plain.remove(QLatin1Char('&'));
    QMenu*& menu = m_menus[plain];
    if (menu == nullptr)
        menu = menuBar()->addMenu(title);
    return menu;
}

void MainWindow::ShowTip(QAction& action, const QString& text)
{
    const QString plain = QString(text).remove(QLatin1Char('&')).remove(QStringLiteral("…"));
    const QString keys = action.shortcut().toString(QKeySequence::NativeText);
    action.setToolTip(keys.isEmpty() ? plain : QStringLiteral("%1 (%2)").arg(plain, keys));
}

QAction* MainWindow::Command(const QString& menu, const QString& text, const char* icon, const QKeySequence& keys)
{
    auto* action = new QAction(text, this);
    if (icon != nullptr)
        action->setIcon(Icon(icon));
    action->setIconVisibleInMenu(false);
    action->setShortcut(keys);
    ShowTip(*action, text);
    Menu(menu)->addAction(action);
    return action;
}

void MainWindow::BuildFileMenu()
{
    const QString menu = QStringLiteral("&Datei");
    const auto closingMasks = [this](bool (*command)(CaseDocument&, QWidget*)) {
        return [this, command] {
            if (command(m_document, this))
                CloseMasks(); // they show what was read from the case before
        };
    };
    m_new = Command(menu, QStringLiteral("&Neu"), "new", QKeySequence::New);
    connect(m_new, &QAction::triggered, this, closingMasks(&NewCase));
    m_open = Command(menu, QStringLiteral("Ö&ffnen…"), "open", QKeySequence::Open);
    connect(m_open, &QAction::triggered, this,
            closingMasks([](CaseDocument& document, QWidget* parent) { return OpenCase(document, parent, {}); }));
    m_recentMenu = Menu(menu)->addMenu(QStringLiteral("&Zuletzt geöffnet"));
    connect(m_recentMenu, &QMenu::aboutToShow, this, &MainWindow::FillRecentFiles);
    connect(&m_document, &CaseDocument::recentFilesChanged, this, &MainWindow::FillRecentFiles);
    FillRecentFiles();
    QMenu* examples = Menu(menu)->addMenu(QStringLiteral("&Beispiele"));
    connect(examples, &QMenu::aboutToShow, this, [this, examples] { FillExamples(*examples); });
    Menu(menu)->addSeparator();
    m_save = Command(menu, QStringLiteral("&Speichern"), "save", QKeySequence::Save);
    const auto saying = [this](bool (*save)(CaseDocument&, QWidget*)) {
        return [this, save] {
            if (save(m_document, this))
                Say(QStringLiteral("Gespeichert: ") + m_document.Path());
        };
    };
    connect(m_save, &QAction::triggered, this, saying(&SaveCase));
    auto* saveAs =
        Command(menu, QStringLiteral("Speichern &unter…"), nullptr, QKeySequence(QStringLiteral("Ctrl+Shift+S")));
    connect(saveAs, &QAction::triggered, this, saying(&SaveCaseAs));
    Menu(menu)->addSeparator();
    auto* details = Command(menu, QStringLiteral("&Angaben zum Fall…"), nullptr, {});
    connect(details, &QAction::triggered, this, [this] { CaseDetailsDialog(m_document, this).exec(); });
    m_export = Menu(menu)->addMenu(QStringLiteral("E&xportieren"));
    m_print = Command(menu, QStringLiteral("&Drucken…"), "print", QKeySequence::Print);
    Menu(menu)->addSeparator();
    auto* quit = Command(menu, QStringLiteral("B&eenden"), nullptr, QKeySequence(QStringLiteral("Ctrl+Q")));
    connect(quit, &QAction::triggered, this, &QWidget::close);
}

void MainWindow::FillRecentFiles()
{
    m_recentMenu->clear();
    for (const QString& path : m_document.RecentFiles()) {
        QAction* action = m_recentMenu->addAction(Literal(path));
        connect(action, &QAction::triggered, this, [this, path] {
            if (OpenCase(m_document, this, path))
                CloseMasks();
        });
    }
    m_recentMenu->setEnabled(!m_recentMenu->isEmpty());
}

void MainWindow::FillExamples(QMenu& menu)
{
    menu.clear();
    for (const QString& name : ExampleNames()) {
        QAction* action = menu.addAction(name.left(1).toUpper() + name.mid(1));
        connect(action, &QAction::triggered, this, [this, name] {
            if (OpenExample(m_document, this, name))
                CloseMasks();
        });
    }
}

void MainWindow::BuildEditMenu()
{
    const QString menu = QStringLiteral("&Bearbeiten");
    m_undo = Command(menu, QStringLiteral("&Rückgängig"), "undo", QKeySequence::Undo);
    connect(m_undo, &QAction::triggered, &m_document, &CaseDocument::Undo);
    m_redo = Command(menu, QStringLiteral("&Wiederholen"), "redo", {});
    m_redo->setShortcuts({QKeySequence(QStringLiteral("Ctrl+Y")), QKeySequence(QStringLiteral("Ctrl+Shift+Z"))});
    connect(m_redo, &QAction::triggered, &m_document, &CaseDocument::Redo);
}

void MainWindow::BuildMaskMenu()
{
    const QString menu = QStringLiteral("&Masken");
    m_quickOpen = Command(menu, QStringLiteral("Maske &öffnen…"), "search", QKeySequence(QStringLiteral("Ctrl+K")));
    connect(m_quickOpen, &QAction::triggered, m_opener, &QuickOpener::Open);
    Menu(menu)->addSeparator();
    std::map<int, QMenu*> subsystems;
    for (const MaskEntry& mask : MaskTable()) {
        QMenu*& submenu = subsystems[mask.subsystem];
        if (submenu == nullptr)
            submenu = new QMenu(SubsystemName(mask.subsystem), this);
        QAction* action =
            submenu->addAction(QStringLiteral("%1  %2").arg(mask.number).arg(Literal(QString::fromUtf8(mask.title))));
        action->setData(mask.number);
        action->setEnabled(mask.create != nullptr);
        connect(action, &QAction::triggered, this, [this, number = mask.number] { OpenMask(number); });
    }
    for (const auto& [number, submenu] : subsystems)
        Menu(menu)->addMenu(submenu);
}

void MainWindow::BuildViewMenu()
{
    const QString menu = QStringLiteral("&Ansicht");
    m_panelsEnd = m_helpDock->toggleViewAction();
    Menu(menu)->addAction(m_panelsEnd);
    Menu(menu)->addSeparator();
    m_dark = Command(menu, QStringLiteral("&Dunkles Farbschema"), nullptr, {});
    m_dark->setCheckable(true);
    connect(m_dark, &QAction::triggered, this, [this](bool dark) {
        m_preferences.scheme = dark ? Scheme::dark : Scheme::light;
        ApplyTheme(m_preferences.scheme, m_preferences.fontScale);
        SaveSettings();
    });
    auto* reset = Command(menu, QStringLiteral("Anordnung &zurücksetzen"), nullptr, {});
    connect(reset, &QAction::triggered, this, &MainWindow::ResetLayout);
    auto* larger = Command(menu, QStringLiteral("Schrift &größer"), nullptr, QKeySequence::ZoomIn);
    auto* smaller = Command(menu, QStringLiteral("Schrift &kleiner"), nullptr, QKeySequence::ZoomOut);
    auto* normal = Command(menu, QStringLiteral("Schrift &normal"), nullptr, QKeySequence(QStringLiteral("Ctrl+0")));
    connect(
        larger, &QAction::triggered, this, [this] { SetFontScale(CurrentFontScale() * kZoomStep); });
    connect(
        smaller, &QAction::triggered, this, [this] { SetFontScale(CurrentFontScale() / kZoomStep); });
    connect(normal, &QAction::triggered, this, [this] { SetFontScale(1.0); });
}

void MainWindow::BuildExtrasMenu()
{
    const QString menu = QStringLiteral("&Extras");
    m_transfer = Command(menu, QStringLiteral("&Daten übertragen"), "transfer", {});
    m_transfer->setCheckable(true);
    m_transfer->setToolTip(QStringLiteral("Masken schreiben ihr Ergebnis in die Weg-Zeit-Daten eines Fahrzeugs"));
    connect(m_transfer, &QAction::triggered, this, &MainWindow::SetTransfer);
    auto* settings =
        Command(menu, QStringLiteral("&Einstellungen…"), "settings", QKeySequence(QStringLiteral("Ctrl+,")));
    connect(settings, &QAction::triggered, this, &MainWindow::EditSettings);
}

void MainWindow::BuildWindowMenu()
{
    connect(Menu(QStringLiteral("&Fenster")), &QMenu::aboutToShow, this, &MainWindow::FillWindowMenu);
    // The shortcuts work before the menu was open for the first time.
    const struct {
        const char* text;
        const char* icon;
        const char* keys;
        void (MaskArea::*command)();
        bool ofWindows; ///< does nothing for tabs
    } commands[] = {
        {"&Nebeneinander", "tile", "", &MaskArea::Tile, true},
        {"&Überlappend", "cascade", "", &MaskArea::Cascade, true},
        {"Alle &minimieren", nullptr, "", &MaskArea::MinimiseAll, true},
        {"Alle &wiederherstellen", nullptr, "", &MaskArea::RestoreAll, true},
        {"Nächs&te Maske", nullptr, "Ctrl+F6", &MaskArea::GoToNext, false},
        {"&Vorige Maske", nullptr, "Ctrl+Shift+F6", &MaskArea::GoToPrevious, false},
        {"Mas&ke minimieren", nullptr, "Ctrl+M", &MaskArea::MinimiseActive, false},
        {"Maske s&chließen", nullptr, "Ctrl+W", &MaskArea::CloseActive, false},
    };
    const QString menu = QStringLiteral("&Fenster");
    m_tabs = Command(menu, QStringLiteral("Masken als &Reiter"), nullptr, {});
    m_tabs->setCheckable(true);
    connect(m_tabs, &QAction::triggered, this, [this](bool tabs) {
        m_preferences.tabs = tabs;
        m_masks->SetTabs(tabs);
        SaveSettings();
    });
    m_tearOff = Command(menu, {}, nullptr, QKeySequence(QStringLiteral("Ctrl+Shift+M")));
    connect(m_tearOff, &QAction::triggered, m_masks, &MaskArea::TearOffActive);
    connect(
        m_masks, &MaskArea::tornOff, this,
        [this](QWidget* window) {
            for (QAction* action : findChildren<QAction*>())
                if (!action->shortcut().isEmpty()) // the keys of the menus work there too
                    window->addAction(action);
        });
    connect(m_masks, &MaskArea::minimisedForRoom, this, [this](int count) {
        Say(count == 1 ? QStringLiteral("Eine Maske hat nebeneinander keinen Platz und ist minimiert.")
                       : QStringLiteral("%1 Masken haben nebeneinander keinen Platz und sind minimiert.").arg(count));
    });
    Menu(menu)->addSeparator();
    for (const auto& entry : commands) {
        QAction* action = Command(QStringLiteral("&Fenster"), QString::fromUtf8(entry.text), entry.icon,
                                  QKeySequence(QString::fromLatin1(entry.keys)));
        connect(action, &QAction::triggered, m_masks, entry.command);
        if (entry.ofWindows)
            m_ofWindows.push_back(action);
    }
    Menu(menu)->addSeparator();
    FillWindowMenu();
}

void MainWindow::FillWindowMenu()
{
    QMenu* menu = Menu(QStringLiteral("&Fenster"));
    for (QAction* action : menu->actions())
        if (action->data().isValid())
            delete action;
    const MaskWindow* active = m_masks->Active();
    const bool torn = active != nullptr && m_masks->FrameOf(*active)->Own() != nullptr;
    m_tearOff->setText(torn ? QStringLiteral("M&aske zurückholen") : QStringLiteral("M&aske abtrennen"));
    for (QAction* action : m_ofWindows)
        action->setEnabled(!m_masks->HasTabs());
    int count = 0;
    for (MaskFrame* frame : m_masks->Frames()) {
        QString text = Literal(frame->windowTitle());
        if (++count < 10)
            text = QStringLiteral("&%1  ").arg(count) + text;
        QAction* action = menu->addAction(text);
        action->setData(true);
        action->setCheckable(true);
        action->setChecked(m_masks->Active() == frame->Mask());
        connect(action, &QAction::triggered, frame, [this, frame] { m_masks->GoTo(*frame); });
    }
}

void MainWindow::BuildHelpMenu()
{
    const QString menu = QStringLiteral("&Hilfe");
    m_maskHelp = Command(menu, QStringLiteral("Hilfe zur &Maske"), "help", QKeySequence(Qt::Key_F1));
    connect(m_maskHelp, &QAction::triggered, this, [this] {
        const MaskWindow* active = m_masks->Active();
        const QWidget* focus = QApplication::focusWidget();
        const bool inScene = std::any_of(m_panels.begin(), m_panels.end(), [focus](const QDockWidget* panel) {
            return panel->windowTitle() == QStringLiteral("Szene") && panel->isAncestorOf(focus);
        });
        ShowHelp(inScene ? HelpPane::kScene : active == nullptr ? 0 : active->Number());
    });
    auto* pages = Command(menu, QStringLiteral("&Alle Hilfeseiten"), nullptr, {});
    connect(pages, &QAction::triggered, this, [this] { ShowHelp(0); });
    auto* about = Command(menu, QStringLiteral("&Über Tavelin"), nullptr, {});
    connect(about, &QAction::triggered, this, &MainWindow::ShowAbout);
}

void MainWindow::BuildToolBar()
{
    QToolBar* bar = addToolBar(QStringLiteral("Werkzeuge"));
    bar->setObjectName(QStringLiteral("tools"));
    bar->setMovable(false);
    bar->setContextMenuPolicy(Qt::PreventContextMenu);
    bar->addActions({m_new, m_open, m_save});
    bar->addSeparator();
    bar->addActions({m_undo, m_redo});
    bar->addSeparator();
    auto* opener = new QToolButton;
    opener->setDefaultAction(m_quickOpen);
    opener->setText(QStringLiteral("Maske öffnen"));
    opener->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    bar->addWidget(opener);
    auto* transfer = new QToolButton;
    transfer->setDefaultAction(m_transfer);
    transfer->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    bar->addWidget(transfer);
    auto* room = new QWidget;
    room->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    bar->addWidget(room);
    bar->addAction(m_maskHelp);
}

} // namespace desktop
