// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/CasePanels.h"

#include <QObject>

#include <functional>
#include <vector>

class CDC;

namespace desktop
{

class MainWindow;
class MaskReport;

/// Prints what has the focus, and exports every diagram, the scene and the Protokoll.
class DeskOutput : public QObject
{
    Q_OBJECT

  public:
    DeskOutput(MainWindow& window, const CasePanels& panels, MaskReport& report);

    /// A drawing that can leave the program.
    struct Source {
        QString name;
        std::function<CDC()> draw;
    };
    /// The diagram and the scene, then the drawings of the active mask.
    std::vector<Source> Sources() const;

  private:
    void FillExport();
    void Print();

    MainWindow& m_window;
    CasePanels m_panels;
    MaskReport& m_report;
};

} // namespace desktop
