// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// An X server of a test's own, without a screen, and keys for the windows on it.
#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QProcess>
#include <QStandardPaths>
#include <QStringList>
#include <QTest>

#include <gtest/gtest.h>

#include <functional>

namespace test
{

/// Generous: machines under load and programs under sanitizers are slow.
inline constexpr int kDeadline = 60000; // ms

/// Runs the event loop until the condition holds; false after the deadline.
inline bool Comes(const std::function<bool()>& condition)
{
    return QTest::qWaitFor(condition, kDeadline);
}

class XServer
{
  public:
    static bool IsInstalled()
    {
        return !QStandardPaths::findExecutable(QStringLiteral("Xvfb")).isEmpty() &&
               !QStandardPaths::findExecutable(QStringLiteral("xdotool")).isEmpty();
    }

    XServer()
    {
        m_server.setStandardErrorFile(QProcess::nullDevice());
        m_server.start(QStringLiteral("Xvfb"),
                       {"-displayfd", "1", "-screen", "0", "1920x1200x24", "-nolisten", "tcp", "-noreset"});
        QElapsedTimer clock;
        clock.start();
        QByteArray display;
        while (!display.contains('\n') && clock.elapsed() < kDeadline && m_server.state() != QProcess::NotRunning) {
            m_server.waitForReadyRead(100);
            display += m_server.readAllStandardOutput();
        }
        if (display.contains('\n'))
            m_display = ':' + display.trimmed();
    }
    ~XServer()
    {
        m_server.terminate();
        if (!m_server.waitForFinished(kDeadline))
            m_server.kill();
    }
    bool IsRunning() const { return !m_display.isEmpty(); }

    QProcessEnvironment Environment() const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DISPLAY"), QString::fromLatin1(m_display));
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
        return environment;
    }

  private:
    QProcess m_server;
    QByteArray m_display;
};

/// One call of xdotool; the event loop runs meanwhile, also that of a dialog the keys open. Returns what it printed,
/// without the end of the line; `failed` (may be null) says whether it did not do it.
inline QString Xdotool(const QStringList& commands, const QProcessEnvironment& environment, bool* failed = nullptr)
{
    QProcess tool;
    tool.setProcessEnvironment(environment);
    tool.start(QStringLiteral("xdotool"), commands);
    const bool ended = tool.waitForStarted() && Comes([&] { return tool.state() == QProcess::NotRunning; });
    if (failed != nullptr)
        *failed = !ended || tool.exitCode() != 0;
    return QString::fromUtf8(tool.readAllStandardOutput()).trimmed();
}

} // namespace test
