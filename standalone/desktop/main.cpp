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

#include <cstdio>
#include <cstdlib>

namespace
{

using desktop::CommandLine;

bool HasDisplay()
{
    return qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY") ||
           qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
}

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
        std::fputs(
            "Es gibt keine Anzeige. „tavelin --shot ORDNER“ schreibt Bilder der Masken, „tavelin-cli“ rechnet im "
            "Terminal.\n",
            stderr);
        return 1;
    }
    PrepareQt(line);
    QApplication application(argc, argv);
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

    if (line.DrawsOnly()) {
        if (!line.size.isEmpty())
            window.resize(line.size);
        if (!OpenGiven(document, line, &window))
            return 3;
        if (line.bench)
            return desktop::RunBench(window, sinceStart) ? 0 : 1;
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
