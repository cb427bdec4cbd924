// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// How the workstation looks to its user: kept beside the settings that masks see (krn/Settings.h).
#pragma once

#include "desktop/look/Theme.h"

#include <QByteArray>
#include <QMap>
#include <QString>

namespace desktop
{

struct Preferences {
    Scheme scheme = Scheme::light;
    double fontScale = 1.0; ///< 0.8 to 2
    bool tabs = false;      ///< masks as tabs, not as windows
    /// Where the main window, its panels and the windows of masks are.
    struct Layout {
        QByteArray geometry;
        QByteArray docks;
        QMap<UINT, QByteArray> tornOff; ///< geometry of a mask torn off, by the number of its dialog
    };
    Layout layout;                  ///< as used last
    QMap<QString, Layout> ofScreen; ///< by the size of the screen, "1366x768"

    /// Those of the file, or defaults for what it does not hold. An empty path gives the defaults.
    static Preferences Load(const QString& path);
    /// False when the file could not be written.
    bool Save(const QString& path) const;
};

/// desktop.ini in the folder of the settings file; empty when there is no such folder.
QString PreferencesPath();

inline constexpr double kSmallestFontScale = 0.8;
inline constexpr double kLargestFontScale = 2.0;

} // namespace desktop
