// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/Shot.h"

#include "desktop/HelpPane.h"
#include "desktop/MainWindow.h"
#include "desktop/MaskArea.h"
#include "desktop/MaskWindow.h"
#include "desktop/QuickOpener.h"
#include "desktop/SettingsDialog.h"
#include "frame/MaskTable.h"

#include <QApplication>
#include <QDir>
#include <QDockWidget>
#include <QPixmap>

#include <algorithm>
#include <cstdio>

namespace desktop
{
namespace
{

constexpr UINT kMainMask = 400; // shown in the picture of the main window

class Album
{
  public:
    Album(MainWindow& window, const QString& folder) : m_window(window), m_folder(folder) {}

    bool Failed() const { return m_failed; }

    void Keep(QWidget& shown, const QString& name)
    {
        QApplication::processEvents();
        const QString path = m_folder.filePath(name + QStringLiteral(".png"));
        if (shown.grab().save(path))
            std::printf("%s\n", qPrintable(path));
        else
            Fail(path + QStringLiteral(" lässt sich nicht schreiben"));
    }

    void KeepMask(UINT number)
    {
        m_window.OpenMask(number);
        const auto frames = m_window.Masks().Frames();
        if (frames.empty()) {
            Fail(QStringLiteral("Die Maske %1 gibt es nicht").arg(number));
            return;
        }
        Keep(*frames.front(), QString::number(number));
        m_window.CloseMasks();
    }

    void KeepWindow()
    {
        m_window.OpenMask(kMainMask);
        m_window.ShowHelp(kMainMask);
        Keep(m_window, QStringLiteral("main"));
        m_window.Opener().Open();
        Keep(m_window, QStringLiteral("oeffner"));
        m_window.Opener().hide();
        SettingsDialog settings(m_window.CurrentPreferences(), false, &m_window);
        settings.show();
        Keep(settings, QStringLiteral("einstellungen"));
        settings.hide();
        Keep(m_window.Help(), QStringLiteral("hilfe"));
        m_window.CloseMasks();
        for (QDockWidget* panel : m_window.CasePanels()) {
            panel->show();
            panel->raise();
            Keep(*panel->widget(), panel->windowTitle().toLower().replace(QLatin1Char(' '), QLatin1Char('-')));
        }
    }

  private:
    void Fail(const QString& why)
    {
        std::fprintf(stderr, "%s\n", qPrintable(why));
        m_failed = true;
    }

    MainWindow& m_window;
    QDir m_folder;
    bool m_failed = false;
};

} // namespace

bool TakeShots(MainWindow& window, const ShotRequest& request)
{
    if (!QDir().mkpath(request.folder)) {
        std::fprintf(stderr, "%s lässt sich nicht anlegen\n", qPrintable(request.folder));
        return false;
    }
    window.show();
    window.activateWindow();
    Album album(window, request.folder);
    if (request.numbers.empty()) {
        album.KeepWindow();
        for (const MaskEntry& mask : MaskTable())
            if (mask.create != nullptr)
                album.KeepMask(mask.number);
    }
    for (const UINT number : request.numbers)
        album.KeepMask(number);
    return !album.Failed();
}

} // namespace desktop
