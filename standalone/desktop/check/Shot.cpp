// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/check/Shot.h"

#include "base/AtomicFile.h"
#include "desktop/MainWindow.h"
#include "desktop/SettingsDialog.h"
#include "desktop/case/CaseDocument.h"
#include "desktop/mask/HelpPane.h"
#include "desktop/mask/MaskArea.h"
#include "desktop/mask/MaskWindow.h"
#include "desktop/mask/QuickOpener.h"
#include "frame/MaskTable.h"
#include "framework/UiThread.h"
#include "framework/UserInput.h"
#include "res/resource.h"

#include <QApplication>
#include <QBuffer>
#include <QDialog>
#include <QDir>
#include <QDockWidget>
#include <QFileDialog>
#include <QPixmap>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <utility>

namespace desktop
{
namespace
{

using framework::UiThread;
using framework::Window;

/// Entries that let a mask show results.
struct Entry {
    UINT mask;
    UINT control;
    const char* text;
};
constexpr Entry kEntries[] = {
    {400, IDC_BESCHL_REIBUNG, "0,8"},
    {400, IDC_BESCHL_NEIGUNG_PROZENT, "-5"},
    {401, IDC_GRENZV_REIBUNG, "0,7"},
    {401, IDC_GRENZV_RADIUS, "60"},
    {450, IDC_ABVOR_ENDRADIUS, "8"},
    {450, IDC_ABVOR_LENKZEIT, "2"},
    {450, IDC_ABVOR_GIERZIEL, "90"},
    {450, IDC_ABVOR_ANFANGSGESCHW, "20"},
    {458, IDC_SPURVOR_SEITENVERSATZ, "3"},
    {458, IDC_SPURVOR_QUERBESCHL, "3"},
    {458, IDC_SPURVOR_ANFANGSGESCHW, "50"},
    {468, IDC_VKONST_KMH_1, "50"},
    {468, IDC_VKONST_WEG_1, "25"},
    {469, IDC_MRBREMS_VOLLVERZOEGERUNG, "9"},
    {469, IDC_MRBREMS_SPURVERZOEGERUNG, "6,3"},
    {469, IDC_MRBREMS_ANSTIEG, "0,25"},
    {469, IDC_MRBREMS_SPURLAENGE, "20"},
    {469, IDC_MRBREMS_REAKTIONSDAUER, "1"},
    {472, IDC_HALBESICHT_SICHTWEITE, "80"},
    {472, IDC_HALBESICHT_A_VERZOEGERUNG, "7"},
    {472, IDC_HALBESICHT_B_VERZOEGERUNG, "6"},
};
/// A recording that comes with the program, for a mask that reads one.
struct Recording {
    UINT mask;
    UINT choose; ///< the button that asks for the file
    const char* name;
};
constexpr Recording kRecordings[] = {
    {474, IDC_IMPORT_WAEHLEN, "bremsung.csv"},
    {486, IDC_ESO_WAEHLEN, "messkurven.csv"},
    {492, IDC_IMPORT_WAEHLEN, "fahrt.gpx"},
};
constexpr UINT kBarriers = 487;  // computes with what the case keeps for it
constexpr UINT kPlainMask = 400; // in the picture of the main window when the case keeps nothing for the other

class Album
{
  public:
    Album(MainWindow& window, const QString& folder) : m_window(window), m_folder(folder)
    {
        // A message of a mask would wait for somebody to close it, the choice of a file for a choice.
        QObject::connect(&m_closer, &QTimer::timeout, &m_closer, [this] {
            auto* box = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            auto* files = qobject_cast<QFileDialog*>(box);
            if (files != nullptr && !m_recording.isEmpty()) {
                files->selectFile(std::exchange(m_recording, {}));
                QMetaObject::invokeMethod(files, "accept");
            } else if (box != nullptr)
                box->reject();
        });
        m_closer.start(0);
    }

    bool Failed() const { return m_failed; }

    void KeepWindow()
    {
        const UINT shown = HasBarriers() ? kBarriers : kPlainMask;
        Raise(QStringLiteral("Weg-Zeit-Diagramm"));
        if (MaskWindow* mask = Fill(shown))
            mask->GoToFirstControl();
        Keep(m_window, QStringLiteral("main"));
        m_window.ShowHelp(shown);
        Keep(m_window, QStringLiteral("main-hilfe"));
        m_window.Opener().Open();
        Keep(m_window, QStringLiteral("oeffner"));
        m_window.Opener().hide();
        Keep(m_window.Help(), QStringLiteral("hilfe"));
        m_window.CloseMasks();
        SettingsDialog settings(m_window.CurrentPreferences(), false, &m_window);
        settings.show();
        Keep(settings, QStringLiteral("einstellungen"));
        settings.hide();
        for (QDockWidget* panel : m_window.CasePanels()) {
            panel->show();
            panel->raise();
            Keep(*panel->widget(), panel->windowTitle().toLower().replace(QLatin1Char(' '), QLatin1Char('-')));
        }
    }

    /// The mask with its pages, and the diagram in a window of its own if it has one.
    void KeepMask(UINT number)
    {
        MaskWindow* mask = Fill(number);
        if (mask == nullptr) {
            Fail(QStringLiteral("Die Maske %1 gibt es nicht").arg(number));
            return;
        }
        const QString name = QString::number(number);
        Keep(*m_window.Masks().FrameOf(*mask), name);
        const auto pages = UiThread::Current()->Pages(*mask->Dialog()).size();
        const UINT first = pages == 0 ? 0 : PressedIn(*mask->Dialog());
        for (std::size_t i = 1; first != 0 && i < pages; ++i) {
            Press(*mask, first + static_cast<UINT>(i));
            Keep(*m_window.Masks().FrameOf(*mask), QStringLiteral("%1-%2").arg(name).arg(i + 1));
        }
        if (Press(*mask, IDC_SCHR_GROSSES_DIAGRAMM) && m_window.Masks().Active() != mask)
            Keep(*m_window.Masks().FrameOf(*m_window.Masks().Active()), name + QStringLiteral("-diagramm"));
        m_window.CloseMasks();
    }

  private:
    void Keep(QWidget& shown, const QString& name)
    {
        QApplication::processEvents();
        const QString path = m_folder.filePath(name + QStringLiteral(".png"));
        QBuffer png;
        if (!shown.grab().save(&png, "PNG"))
            Fail(path + QStringLiteral(": kein Bild"));
        else if (const auto written = base::WriteFileAtomically(path.toStdString(), png.data().toStdString()); !written)
            Fail(QString::fromStdString(written.Text()));
        else
            std::printf("%s\n", qPrintable(path));
    }

    void Fail(const QString& why)
    {
        std::fprintf(stderr, "%s\n", qPrintable(why));
        m_failed = true;
    }

    bool HasBarriers() const { return m_window.Document().Data().AlleMaskenWerte().contains(kBarriers); }

    /// Opens the mask, enters its example and computes; null when there is no such mask.
    MaskWindow* Fill(UINT number)
    {
        m_window.OpenMask(number);
        MaskWindow* mask = m_window.Masks().Active();
        if (mask == nullptr)
            return nullptr;
        bool computes = number == kBarriers && HasBarriers();
        for (const Entry& entry : kEntries) {
            if (entry.mask != number)
                continue;
            mask->Act([&] { framework::EnterText(*mask->Dialog()->Child(entry.control), entry.text); });
            computes = true;
        }
        if (computes)
            Press(*mask, IDC_RECHNEN);
        for (const Recording& recording : kRecordings)
            if (recording.mask == number)
                Read(*mask, recording);
        return mask;
    }

    void Read(MaskWindow& mask, const Recording& recording)
    {
        const QString name = QString::fromLatin1(recording.name);
        const QString path = m_recordings.filePath(name);
        if (!QFileInfo::exists(path) && !QFile::copy(QStringLiteral(":/recordings/") + name, path)) {
            Fail(path + QStringLiteral(": lässt sich nicht anlegen"));
            return;
        }
        m_recording = path;
        Press(mask, recording.choose);
    }

    static bool Press(MaskWindow& mask, UINT button)
    {
        Window* control = mask.Dialog()->Child(button);
        if (control != nullptr)
            mask.Act([&] { framework::Click(*control); });
        return control != nullptr;
    }

    /// Of the buttons that choose a page, numbered one after the other, the one that is down.
    static UINT PressedIn(const Window& dialog)
    {
        const auto down = std::find_if(dialog.children.begin(), dialog.children.end(), [](const auto& control) {
            return control->kind == framework::Kind::button && control->check != 0;
        });
        return down == dialog.children.end() ? 0 : (*down)->id;
    }

    void Raise(const QString& title)
    {
        for (QDockWidget* panel : m_window.CasePanels())
            if (panel->windowTitle() == title)
                panel->raise();
    }

    MainWindow& m_window;
    QDir m_folder;
    QTemporaryDir m_recordings;
    QString m_recording; ///< path of the one to be chosen next
    QTimer m_closer;
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
