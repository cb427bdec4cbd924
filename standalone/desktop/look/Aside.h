// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Long work of the desktop in a thread of its own, so that the interface goes on.
#pragma once

#include <atomic>
#include <functional>

class QString;
class QWidget;

namespace desktop
{

/// What the work tells of itself, and whether it is still wanted.
class AsideWork
{
  public:
    /// How much is done, 0 to 1.
    void Report(double done) { m_done = done; }
    double Done() const { return m_done; }

    bool IsCancelled() const { return m_stage == Stage::cancelled; }
    /// Before the work leaves something that stays, a file: it can no longer be cancelled. False when it was.
    bool BeginToKeep() { return Leave(Stage::keeps); }
    /// False when it is too late.
    bool Cancel() { return Leave(Stage::cancelled); }

  private:
    enum class Stage { runs, keeps, cancelled };
    bool Leave(Stage next)
    {
        Stage runs = Stage::runs;
        return m_stage.compare_exchange_strong(runs, next) || runs == next;
    }

    std::atomic<double> m_done = 0.0;
    std::atomic<Stage> m_stage = Stage::runs;
};

/// Whether the end of the program waits for work that was cancelled.
enum class AtEnd { waits, leaves };

/// Returns when the work has ended, or false as soon as the user cancels it: it then runs out by itself, so it must own
/// what it uses. Meanwhile the event loop runs; keys and mouse wait, but for "Abbrechen" in the dialog that appears
/// after 1 s. From 0.2 s on the foot of the main window says what is going on.
bool DoAside(QWidget* parent, const QString& what, std::function<void(AsideWork&)> work, AtEnd atEnd = AtEnd::waits);

} // namespace desktop
