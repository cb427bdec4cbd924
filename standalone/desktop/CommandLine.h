// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "host/HostTypes.h"

#include <QSize>
#include <QString>

#include <span>
#include <vector>

namespace desktop
{

struct CommandLine {
    QString casePath;
    QString example;           ///< name of a case that comes with the program
    QString shotFolder;        ///< not empty: write pictures and end
    std::vector<UINT> numbers; ///< of the masks to be drawn or measured
    QSize size;                ///< of the window in pictures, logical pixels; empty: as it is
    double scale = 0.0;        ///< logical to real pixels, 0: as the screen has it
    bool dark = false;
    bool bench = false; ///< measure and end
    bool help = false;
    QString error; ///< German, empty when the line could be read

    /// Needs no display.
    bool DrawsOnly() const { return !shotFolder.isEmpty() || bench; }
};

CommandLine ReadCommandLine(std::span<char* const> arguments);

inline constexpr const char* kUsage =
    "tavelin [FALLDATEI]                 öffnet den Arbeitsplatz\n"
    "tavelin --example NAME              öffnet einen Beispielfall: fussgaenger, kreuzung\n"
    "tavelin --shot ORDNER [NUMMER …]    schreibt Bilder der Masken, ohne Nummern auch der Fenster\n"
    "    --case FALLDATEI                mit diesem Fall\n"
    "    --scale FAKTOR                  Bildpunkte je Punkt der Oberfläche, 0,5 bis 4\n"
    "    --scheme hell|dunkel            in diesem Farbschema\n"
    "    --size BREITExHÖHE              Größe des Hauptfensters, zum Beispiel 1366x768\n"
    "tavelin --bench [NUMMER …]          misst, wie schnell Fenster und Masken da sind, mit Nummern nur diese Masken;\n"
    "                                    0 steht für keine\n"
    "tavelin --help                      zeigt diesen Text\n";

} // namespace desktop
