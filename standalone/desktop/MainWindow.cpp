// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/MainWindow.h"

#include "base/ProgramVersion.h"
#include "casefile/Settings.h"
#include "desktop/SettingsDialog.h"
#include "desktop/case/CaseDocument.h"
#include "desktop/case/CaseFileDialogs.h"
#include "desktop/look/Icons.h"
#include "desktop/look/Tell.h"
#include "desktop/look/Theme.h"
#include "desktop/mask/HelpPane.h"
#include "desktop/mask/MaskArea.h"
#include "desktop/mask/MaskWindow.h"
#include "desktop/mask/QtFrontEnd.h"
#include "desktop/mask/QuickOpener.h"
#include "frame/RuvMod.h"
#include "framework/UiThread.h"
#include "host/RuvCfg.h"
#include "krn/Tiles.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QLabel>
#include <QLayout>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QProgressBar>
#include <QScreen>
#include <QStatusBar>
#include <QStatusTipEvent>
#include <QTextBrowser>
#include <QToolBar>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace desktop
{

using framework::UiThread;

namespace
{

#ifdef __clang__
constexpr const char* kCompiler = "Clang " __clang_version__;
#else
constexpr const char* kCompiler = "GCC " __VERSION__;
#endif
constexpr QSize kFirstSize(1760, 1000);
constexpr QSize kSmallestSize(1000, 680);
constexpr int kRoomForAll = 1600;  // beside narrower masks there is no room for a panel
constexpr int kMessageTime = 6000; // ms

} // namespace

MainWindow::MainWindow(CaseDocument& document, QtFrontEnd& frontEnd)
    : m_document(document), m_frontEnd(frontEnd), m_masks(new MaskArea), m_help(new HelpPane),
      m_opener(new QuickOpener(this))
{
    setObjectName(QStringLiteral("mainWindow"));
    setCentralWidget(m_masks);
    setDockOptions(QMainWindow::AllowTabbedDocks | QMainWindow::AllowNestedDocks);
    setTabPosition(Qt::AllDockWidgetAreas, QTabWidget::North);
    setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
    setCorner(Qt::BottomRightCorner, Qt::RightDockWidgetArea);
    setMinimumSize(kSmallestSize);
    setWindowIcon(Icon("program"));
    resize(kFirstSize);
    frontEnd.SetMaskArea(m_masks);

    BuildHelpDock();
    BuildFileMenu();
    BuildEditMenu();
    BuildMaskMenu();
    BuildViewMenu();
    BuildExtrasMenu();
    BuildWindowMenu();
    BuildHelpMenu();
    BuildToolBar();
    BuildStatusBar();

    connect(m_masks, &MaskArea::roomWanted, this, &MainWindow::MakeRoom);
    connect(m_masks, &MaskArea::masksChanged, this, [this] {
        if (m_masks->Frames().empty())
            ShowYielded();
    });
    connect(m_opener, &QuickOpener::chosen, this, &MainWindow::OpenMask);
    connect(&frontEnd, &QtFrontEnd::helpWanted, this, &MainWindow::ShowHelp);
    connect(&frontEnd, &QtFrontEnd::caseChanged, this, [this] {
        if (const MaskWindow* mask = MaskWindow::AtWork())
            m_document.NameNextStep(QStringLiteral("Maske %1 %2").arg(mask->Number()).arg(mask->windowTitle()));
        else
            m_document.NoteChange();
    });
    connect(&frontEnd, &QtFrontEnd::sceneChanged, this, &MainWindow::sceneChanged);
    connect(&frontEnd, &QtFrontEnd::acted, this, [this] {
        if (RuvCfg.transferData == m_transfer->isChecked())
            return;
        ShowSettingsState(); // a mask has the same switch
        SaveSettings();
    });
    connect(&frontEnd, &QtFrontEnd::busy, this, &MainWindow::ShowBusy);
    connect(&frontEnd, &QtFrontEnd::idle, this, &MainWindow::ShowIdle);
    connect(&document, &CaseDocument::modifiedChanged, this, &MainWindow::ShowCaseState);
    connect(&document, &CaseDocument::titleChanged, this, &MainWindow::ShowCaseState);
    connect(&document, &CaseDocument::historyChanged, this, &MainWindow::ShowHistory);
    connect(&document, &CaseDocument::fileChanged, this, &MainWindow::ShowFileState);
    connect(&document, &CaseDocument::journalFailed, this, [this](const QString& why) {
        statusBar()->showMessage(QStringLiteral("Die Sicherung im Hintergrund ist gestört: ") + why, kMessageTime);
    });
    connect(&document, &CaseDocument::protectionChanged, this, &MainWindow::ShowProtection);
    connect(&frontEnd, &QtFrontEnd::transferred, this, [this](int vehicle) {
        if (vehicle >= 0 && vehicle < static_cast<int>(CRuvData::kFahrzeuge))
            ShowTransfer(static_cast<std::size_t>(vehicle));
    });
    ShowCaseState();
    ShowHistory();
    ShowProtection();
    ShowSettingsState();
}

MainWindow::~MainWindow()
{
    m_helpDock->toggleViewAction()->disconnect(this);
    CloseMasks();
    m_frontEnd.SetMaskArea(nullptr);
}

void MainWindow::OpenMask(UINT number)
{
    ExecuteRuvModRechnungsMaske(number, m_document.Data());
    m_frontEnd.Settle();
}

void MainWindow::CloseMasks()
{
    UiThread* thread = UiThread::Current();
    if (thread == nullptr)
        return;
    for (const MaskFrame* frame : m_masks->Frames())
        if (frame->Mask()->Dialog() != nullptr) // one mask may close another
            thread->Destroy(frame->Mask()->Handle());
    thread->DispatchPending();
}

void MainWindow::ShowHelp(UINT number)
{
    m_help->ShowPage(number);
    if (number != 0 && m_help->Page() == 0)
        statusBar()->showMessage(QStringLiteral("Zu dieser Maske gibt es keine Hilfeseite."), kMessageTime);
    if (m_helpDock->isHidden())
        m_beforeHelp = saveState();
    m_helpDock->show();
    m_helpDock->raise();
    if (!std::exchange(m_helpSized, true)) {
        resizeDocks({m_helpDock}, {m_help->sizeHint().width()}, Qt::Horizontal);
        resizeDocks({m_helpDock}, {height() * 3 / 5}, Qt::Vertical); // what stands below it needs less
    }
    SettleLayout();
    m_sizesWithHelp = PanelSizes();
}

std::vector<QSize> MainWindow::PanelSizes() const
{
    std::vector<QSize> sizes{m_helpDock->size()};
    for (const QDockWidget* panel : m_panels)
        sizes.push_back(panel->isHidden() || panel->isFloating() ? QSize() : panel->size());
    return sizes;
}

void MainWindow::SettleLayout()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    layout()->activate();
}

void MainWindow::EndHelp()
{
    if (!m_helpDock->isHidden())
        return; // the whole window is hidden
    const QByteArray before = std::exchange(m_beforeHelp, {});
    if (!before.isEmpty() && PanelSizes() == m_sizesWithHelp) // otherwise the user has arranged them
        restoreState(before);
}

QDockWidget* MainWindow::AddCasePanel(QWidget* panel, const QString& title, Qt::DockWidgetArea area)
{
    auto* dock = new QDockWidget(title, this);
    dock->setObjectName(QStringLiteral("panel ") + title);
    dock->setWidget(panel);
    const auto beside = std::find_if(m_panels.begin(), m_panels.end(),
                                     [&](QDockWidget* other) { return dockWidgetArea(other) == area; });
    addDockWidget(area, dock);
    if (beside != m_panels.end())
        tabifyDockWidget(*beside, dock);
    m_panels.push_back(dock);
    Menu(QStringLiteral("Ansicht"))->insertAction(m_panelsEnd, dock->toggleViewAction());
    if (beside != m_panels.end() - 1)
        m_panels.front()->raise();
    return dock;
}

void MainWindow::AddCommand(const QString& menu, QAction* action)
{
    Menu(menu)->addAction(action);
}

void MainWindow::UsePreferences(const Preferences& preferences, const QString& path)
{
    const bool sameLook = preferences.scheme == CurrentScheme() && preferences.fontScale == CurrentFontScale();
    m_preferences = preferences;
    m_preferencesPath = path;
    if (!sameLook)
        ApplyTheme(preferences.scheme, preferences.fontScale);
    m_firstDocks = saveState();
    const Preferences::Layout layout = preferences.ofScreen.value(ScreenSize(), preferences.layout);
    if (!layout.geometry.isEmpty())
        restoreGeometry(layout.geometry);
    else if (!path.isEmpty())
        resize(kFirstSize.boundedTo(screen()->availableSize() - QSize(0, 3 * Spacing()))); // room for the title
    if (!layout.docks.isEmpty())
        m_helpSized = restoreState(layout.docks);
    else
        ShowPanelsByWidth();
    m_helpDock->setVisible(m_helpDock->isVisible() && m_help->Page() != 0);
    m_dark->setChecked(preferences.scheme == Scheme::dark);
    m_tabs->setChecked(preferences.tabs);
    m_masks->SetTabs(preferences.tabs);
    m_masks->SetOwnPlaces(layout.tornOff);
}

QString MainWindow::ScreenSize() const
{
    const QSize size = screen()->size();
    return QStringLiteral("%1x%2").arg(size.width()).arg(size.height());
}

void MainWindow::ShowPanelsByWidth()
{
    for (QDockWidget* panel : m_panels)
        panel->setVisible(width() >= kRoomForAll || dockWidgetArea(panel) != Qt::RightDockWidgetArea);
}

void MainWindow::ResetLayout()
{
    m_yielded.clear();
    m_docksBefore.clear();
    restoreState(m_firstDocks);
    ShowPanelsByWidth();
    m_masks->TakeAllBack();
    m_masks->SetOwnPlaces({});
    m_preferences.tabs = false;
    m_tabs->setChecked(false);
    m_masks->SetTabs(false);
    m_masks->Tile();
    SaveSettings();
}

void MainWindow::MakeRoom(const QSize& wanted)
{
    const auto docked = [this](Qt::DockWidgetArea area) {
        QList<QDockWidget*> docks;
        for (QDockWidget* panel : m_panels)
            if (!panel->isHidden() && !panel->isFloating() && dockWidgetArea(panel) == area)
                docks.append(panel);
        return docks;
    };
    const struct {
        Qt::DockWidgetArea area;
        Qt::Orientation across;
    } sides[] = {{Qt::BottomDockWidgetArea, Qt::Vertical},
                 {Qt::RightDockWidgetArea, Qt::Horizontal},
                 {Qt::LeftDockWidgetArea, Qt::Horizontal}};
    QStringList hidden;
    for (const auto& side : sides) {
        const auto lack = [&] {
            const QSize lacks = wanted - m_masks->viewport()->size();
            return side.across == Qt::Vertical ? lacks.height() : lacks.width();
        };
        const QList<QDockWidget*> docks = docked(side.area);
        if (docks.isEmpty() || lack() <= 0)
            continue;
        int shown = 0; // length of the panel in front of its tabs
        for (const QDockWidget* dock : docks)
            if (!dock->visibleRegion().isEmpty() || shown == 0)
                shown = side.across == Qt::Vertical ? dock->height() : dock->width();
        if (m_docksBefore.isEmpty())
            m_docksBefore = saveState();
        resizeDocks(docks, QList<int>(docks.size(), std::max(shown - lack(), 1)), side.across);
        SettleLayout();
        if (lack() <= 0)
            continue;
        for (QDockWidget* dock : docks) {
            dock->hide();
            m_yielded.push_back(dock);
            hidden.append(dock->windowTitle());
        }
        SettleLayout();
    }
    if (!m_docksBefore.isEmpty())
        m_docksAfter = saveState();
    if (!hidden.isEmpty())
        Say(QStringLiteral("Ausgeblendet, damit die Maske Platz hat: %1. Das Menü „Ansicht“ zeigt es wieder.")
                .arg(hidden.join(QStringLiteral(", "))));
}

void MainWindow::ShowYielded()
{
    const QByteArray before = std::exchange(m_docksBefore, {});
    const std::vector<QDockWidget*> yielded = std::exchange(m_yielded, {});
    if (before.isEmpty())
        return;
    if (saveState() == m_docksAfter) {
        restoreState(before);
        return;
    }
    for (QDockWidget* panel : yielded) // the user has arranged the others
        panel->show();
}

void MainWindow::SaveSettings()
{
    if (m_preferencesPath.isEmpty())
        return;
    const base::FileResult saved = casefile::SaveSettings(casefile::DefaultSettingsPath());
    m_preferences.layout = {saveGeometry(), saveState(), m_masks->OwnPlaces()};
    m_preferences.ofScreen[ScreenSize()] = m_preferences.layout;
    if (!saved)
        statusBar()->showMessage(QString::fromStdString(saved.Text()), kMessageTime);
    else if (!m_preferences.Save(m_preferencesPath))
        statusBar()->showMessage(QStringLiteral("Die Einstellungen lassen sich nicht speichern."), kMessageTime);
}

void MainWindow::SetTransfer(bool on)
{
    if (RuvCfg.transferData == on)
        return;
    RuvCfg.transferData = on;
    SaveSettings();
    ShowSettingsState();
}

void MainWindow::SetFontScale(double scale)
{
    m_preferences.fontScale = std::clamp(scale, kSmallestFontScale, kLargestFontScale);
    ApplyTheme(m_preferences.scheme, m_preferences.fontScale);
    SaveSettings();
}

void MainWindow::EditSettings()
{
    SettingsDialog dialog(m_preferences, !m_masks->Frames().empty(), this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    dialog.Apply(m_preferences);
    ApplyTheme(m_preferences.scheme, m_preferences.fontScale); // also shows every mask afresh
    m_document.Data().BroadcastMessage(WM_RUV_UPDATEDIALOG, 0, 0, nullptr);
    krn::TilesChanged();
    m_frontEnd.Settle();
    emit settingsChanged();
    m_dark->setChecked(m_preferences.scheme == Scheme::dark);
    SaveSettings();
    ShowSettingsState();
}

void MainWindow::ShowCaseState()
{
    const QString name = m_document.DisplayName().replace(QStringLiteral("[*]"), QStringLiteral("[*][*]"));
    setWindowTitle(m_document.IsReadOnly() ? QStringLiteral("%1 (schreibgeschützt)[*] – Tavelin").arg(name)
                                           : QStringLiteral("%1[*] – Tavelin").arg(name));
    setWindowModified(m_document.IsModified());
}

void MainWindow::ShowFileState()
{
    const bool foreign = m_document.FileIsForeign();
    m_fileNotice->setVisible(foreign);
    if (foreign)
        statusBar()->showMessage(
            QStringLiteral("Jemand anderes hat die Falldatei geändert. Beim Speichern wird gefragt, "
                           "was gelten soll."),
            kMessageTime);
}

void MainWindow::Say(const QString& what)
{
    statusBar()->showMessage(what, kMessageTime);
}

void MainWindow::ShowProtection()
{
    const QString why = m_document.Unprotected();
    m_unprotected->setVisible(!why.isEmpty());
    m_unprotected->setToolTip(why);
    QPalette colors = palette();
    colors.setColor(QPalette::WindowText, Colors().danger);
    m_unprotected->setPalette(colors);
}

void MainWindow::ShowTransfer(std::size_t vehicle)
{
    const CRuvData& content = std::as_const(m_document).Data();
    const auto& now = content.WZRechDat(vehicle).spalten;
    const auto& before = m_document.LastPhases(vehicle).spalten;
    const auto same = [](const CWegZeitSpalte& a, const CWegZeitSpalte& b) {
        return a.art == b.art && a.vEnd == b.vEnd && a.vAnf == b.vAnf && a.verz == b.verz && a.zeit == b.zeit &&
               a.weg == b.weg && a.bahn == b.bahn;
    };
    // Numbered as in the table, from the collision.
    int first = 0;
    int last = 0;
    for (std::size_t i = CWegZeitDat::kErsteSpalte; i < now.size(); ++i) {
        if (same(now[i], before[i]))
            continue;
        last = static_cast<int>(i - CWegZeitDat::kErsteSpalte) + 1;
        first = first == 0 ? last : first;
    }
    const std::string& name = content.KfzDat(vehicle).name;
    const QString to = name.empty() ? QStringLiteral("Fahrzeug %1").arg(vehicle + 1) : QString::fromStdString(name);
    Say(QStringLiteral("Übertragen an %1, ").arg(to) + (first == 0 ? QStringLiteral("Phasen unverändert")
                                                        : first == last
                                                            ? QStringLiteral("Phase %1").arg(first)
                                                            : QStringLiteral("Phasen %1–%2").arg(first).arg(last)));
}

void MainWindow::ShowHistory()
{
    const auto show = [](QAction* action, const QString& verb, bool possible, const QString& label) {
        action->setEnabled(possible);
        // A label may hold the name of a vehicle: neither a mnemonic nor, in the tool tip, a format.
        const QString literal = QString(label).replace(QLatin1Char('&'), QStringLiteral("&&"));
        action->setText(label.isEmpty() ? verb : verb + QStringLiteral(": ") + literal);
        ShowTip(*action, verb);
    };
    show(m_undo, QStringLiteral("&Rückgängig"), m_document.CanUndo(), m_document.UndoLabel());
    show(m_redo, QStringLiteral("&Wiederholen"), m_document.CanRedo(), m_document.RedoLabel());
}

void MainWindow::ShowSettingsState()
{
    m_transfer->setChecked(RuvCfg.transferData);
    m_transferLabel->setText(RuvCfg.transferData ? QStringLiteral("Daten übertragen: ein")
                                                 : QStringLiteral("Daten übertragen: aus"));
    m_unitLabel->setText(UnitsSystemConfiguration::GetInstance().System() == UnitsSystem::imperial
                             ? QStringLiteral("mph, ft")
                             : QStringLiteral("km/h, m"));
}

void MainWindow::BuildStatusBar()
{
    m_busyMark = new QProgressBar;
    m_busyMark->setRange(0, 100);
    m_busyMark->setTextVisible(false);
    m_busyMark->setMaximumWidth(160);
    m_busyMark->hide();
    m_transferLabel = new QLabel;
    m_unitLabel = new QLabel;
    m_fileNotice = new QLabel(QStringLiteral("Falldatei von außen geändert"));
    m_fileNotice->setObjectName(QStringLiteral("fileNotice"));
    m_fileNotice->hide();
    m_unprotected = new QLabel(QStringLiteral("Nicht gesichert"));
    m_unprotected->setObjectName(QStringLiteral("unprotected"));
    statusBar()->addPermanentWidget(m_unprotected);
    statusBar()->addPermanentWidget(m_fileNotice);
    for (QLabel* label : {m_transferLabel, m_unitLabel, m_fileNotice, m_unprotected})
        label->setContentsMargins(Spacing(), 0, Spacing(), 0);
    statusBar()->addPermanentWidget(m_busyMark);
    statusBar()->addPermanentWidget(m_transferLabel);
    statusBar()->addPermanentWidget(m_unitLabel);
    statusBar()->setSizeGripEnabled(false);
}

void MainWindow::BuildHelpDock()
{
    m_helpDock = new QDockWidget(QStringLiteral("Hilfe"), this);
    m_helpDock->setObjectName(QStringLiteral("help"));
    auto* holder = new QWidget;
    auto* column = new QVBoxLayout(holder);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    auto* tools = new QToolBar;
    const auto add = [&](const char* icon, const QString& text, auto act) {
        QAction* action = tools->addAction(Icon(icon), text, m_help, act);
        action->setToolTip(text);
        return action;
    };
    QAction* back = add(
        "back", QStringLiteral("Zurück (Alt+Links)"), [this] { m_help->backward(); });
    QAction* forward = add(
        "forward", QStringLiteral("Vorwärts (Alt+Rechts)"), [this] { m_help->forward(); });
    add("report", QStringLiteral("Alle Hilfeseiten"), [this] { m_help->ShowPage(0); });
    for (QAction* action : {back, forward})
        action->setEnabled(false);
    connect(m_help, &QTextBrowser::backwardAvailable, back, &QAction::setEnabled);
    connect(m_help, &QTextBrowser::forwardAvailable, forward, &QAction::setEnabled);
    column->addWidget(tools);
    column->addWidget(m_help, 1);
    m_helpDock->setWidget(holder);
    addDockWidget(Qt::RightDockWidgetArea, m_helpDock);
    m_helpDock->hide();
    connect(m_helpDock->toggleViewAction(), &QAction::toggled, this, [this](bool shown) {
        if (!shown) // in the midst of hiding, the sizes are still those with it
            EndHelp();
    });
}

void MainWindow::ShowAbout()
{
    QMessageBox::about(
        this, QStringLiteral("Über Tavelin"),
        QStringLiteral("<b>Tavelin %1</b><p>Arbeitsplatz für die Unfallrekonstruktion mit den Rechnungsmasken von "
                       "RuvMod. Apache-Lizenz 2.0.</p>"
                       "<p>Übersetzt mit %2, läuft mit Qt %3.</p>"
                       "<p>Enthält oder benutzt:<br>Qt 6 (LGPL 3)<br>Noto Sans und Noto Sans Mono (SIL Open Font "
                       "License 1.1)<br>nlohmann/json (MIT)<br>stb (gemeinfrei oder MIT)<br>UTF8-CPP (Boost 1.0)<br>"
                       "zlib (zlib-Lizenz)</p>")
            .arg(QLatin1String(base::kProgramVersion), QLatin1String(kCompiler), QLatin1String(qVersion())));
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    if (!MayClose(m_document, this)) {
        event->ignore();
        return;
    }
    CloseMasks();
    ShowYielded();
    SaveSettings();
    event->accept();
}

void MainWindow::ShowBusy(const QString& what, double done)
{
    statusBar()->showMessage(what);
    m_busyMark->setValue(qRound(100.0 * done));
    m_busyMark->show();
}

void MainWindow::ShowIdle()
{
    statusBar()->clearMessage();
    m_busyMark->hide();
}

bool MainWindow::event(QEvent* event)
{
    if (event->type() == BusyEvent::OfBusy()) {
        const auto& busy = static_cast<BusyEvent&>(*event);
        if (busy.what.isEmpty())
            ShowIdle();
        else
            ShowBusy(busy.what, busy.done);
        return true;
    }
    if (event->type() != QEvent::StatusTip)
        return QMainWindow::event(event);
    // Entries of menus and tools have none: passing over them must not wipe off what was said.
    if (const QString tip = static_cast<QStatusTipEvent*>(event)->tip(); !tip.isEmpty())
        Say(tip);
    return true;
}

void MainWindow::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        m_document.CheckFile();
    // Qt gives the window the mark of the active mask, which has none.
    if (event->type() == QEvent::ModifiedChange && isWindowModified() != m_document.IsModified())
        setWindowModified(m_document.IsModified());
}

void MainWindow::resizeEvent(QResizeEvent* event)
{
    QMainWindow::resizeEvent(event);
    m_opener->hide();
}

} // namespace desktop
