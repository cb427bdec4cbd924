// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// tavelin: the workstation.
#include "casefile/Settings.h"
#include "desktop/CasePanels.h"
#include "desktop/CommandLine.h"
#include "desktop/DeskOutput.h"
#include "desktop/MainWindow.h"
#include "desktop/MaskReport.h"
#include "desktop/TileServer.h"
#include "desktop/case/CaseDocument.h"
#include "desktop/case/CaseFileDialogs.h"
#include "desktop/check/Bench.h"
#include "desktop/check/Shot.h"
#include "desktop/mask/QtFrontEnd.h"
#include "framework/UiThread.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLibraryInfo>
#include <QLocale>
#include <QLoggingCategory>
#include <QTimer>
#include <QTranslator>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <optional>

#include <unistd.h>

namespace
{

using desktop::CommandLine;

bool HasDisplay()
{
    return qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY") ||
           qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
}

constexpr int kNoDisplay = 2; // exit code
constexpr char kNoDisplayText[] =
    "Es gibt keine Anzeige, oder sie ist nicht erreichbar. „tavelin --shot ORDNER“ schreibt Bilder der Masken, "
    "„tavelin-cli“ rechnet im Terminal.\n";

/// While it lives, Qt giving up for want of a display ends the program with a German line instead of a crash: the only
/// other way to know would be to connect twice.
class DisplayGuard
{
  public:
    DisplayGuard() : m_before(std::signal(SIGABRT, &DisplayGuard::GiveUp))
    {
        m_messages = qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    }
    ~DisplayGuard()
    {
        qInstallMessageHandler(m_messages);
        std::signal(SIGABRT, m_before);
    }
    DisplayGuard(const DisplayGuard&) = delete;
    DisplayGuard& operator=(const DisplayGuard&) = delete;

  private:
    static void GiveUp(int)
    {
        const auto written = write(STDERR_FILENO, kNoDisplayText, sizeof kNoDisplayText - 1);
        _exit(written < 0 ? 1 : kNoDisplay);
    }

    void (*m_before)(int);
    QtMessageHandler m_messages = nullptr;
};

/// What Qt wants to know before the application object is made.
void PrepareQt(const CommandLine& line)
{
    if (line.DrawsOnly()) {
        if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false")); // of what a screen would have
    }
    if (line.scale > 0.0)
        qputenv("QT_SCALE_FACTOR", QByteArray::number(line.scale));
    QApplication::setApplicationName(QStringLiteral("tavelin"));
    QApplication::setApplicationDisplayName(QStringLiteral("Tavelin"));
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
}

/// Without a question or a message: there is nobody to answer.
bool OpenGiven(desktop::CaseDocument& document, const CommandLine& line, QWidget* window)
{
    QString error;
    if (!line.example.isEmpty() && !desktop::ExampleNames().contains(line.example))
        error = line.example + QStringLiteral(": dieses Beispiel gibt es nicht");
    else if (!line.example.isEmpty())
        desktop::OpenExample(document, window, line.example);
    else if (!line.casePath.isEmpty() && !document.Open(line.casePath))
        error = document.Error();
    if (!error.isEmpty())
        std::fprintf(stderr, "%s\n", qPrintable(error));
    return error.isEmpty();
}

} // namespace

int main(int argc, char** argv)
{
    QElapsedTimer sinceStart;
    sinceStart.start();
    const CommandLine line = desktop::ReadCommandLine({argv + 1, argv + argc});
    if (!line.error.isEmpty()) {
        std::fprintf(stderr, "%s\n\n%s", qPrintable(line.error), desktop::kUsage);
        return 2;
    }
    if (line.help) {
        std::fputs(desktop::kUsage, stdout);
        return 0;
    }
    if (!line.DrawsOnly() && !HasDisplay()) {
        std::fputs(kNoDisplayText, stderr);
        return kNoDisplay;
    }
    PrepareQt(line);
    std::optional<DisplayGuard> guard(std::in_place);
    QApplication application(argc, argv);
    guard.reset();
    QTranslator german;
    if (german.load(QStringLiteral("qtbase_de"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(&german);

    const QString preferencesPath = line.DrawsOnly() ? QString() : desktop::PreferencesPath();
    desktop::Preferences preferences = desktop::Preferences::Load(preferencesPath);
    if (line.dark)
        preferences.scheme = desktop::Scheme::dark;
    std::string warning;
    if (!line.DrawsOnly())
        warning = casefile::LoadSettings(casefile::DefaultSettingsPath());
    desktop::ApplyTheme(preferences.scheme, preferences.fontScale);

    desktop::QtFrontEnd frontEnd;
    framework::UiThread thread(frontEnd);
    CWnd mainWindow;
    thread.CreateTopWindow(mainWindow, framework::Kind::frame, 0, nullptr);
    thread.m_pMainWnd = &mainWindow;
    desktop::CaseDocument document(!line.DrawsOnly());
    desktop::MainWindow window(document, frontEnd);
    const desktop::CasePanels panels = desktop::AddCasePanels(window, document);
    // Both belong to the window.
    auto* report = new desktop::MaskReport(window, document, frontEnd);
    new desktop::DeskOutput(window, panels, *report);
    window.UsePreferences(preferences, preferencesPath);

    std::optional<desktop::UseTileServer> tiles;
    if (!line.DrawsOnly())
        tiles.emplace();
    if (line.DrawsOnly()) {
        if (!line.size.isEmpty())
            window.resize(line.size);
        if (!OpenGiven(document, line, &window))
            return 3;
        if (line.bench)
            return desktop::RunBench(window, sinceStart, line.numbers) ? 0 : 1;
        return desktop::TakeShots(window, {line.shotFolder, line.numbers}) ? 0 : 1;
    }
    window.show();
    if (!warning.empty())
        frontEnd.ShowMessage(nullptr, {0, framework::MessageKind::warning, warning, {}});
    QTimer::singleShot(0, &window, [&] {
        if (desktop::RecoverCase(document, &window))
            return;
        if (!line.example.isEmpty())
            desktop::OpenExample(document, &window, line.example);
        else if (!line.casePath.isEmpty())
            desktop::OpenCase(document, &window, line.casePath);
    });
    return QApplication::exec();
}
