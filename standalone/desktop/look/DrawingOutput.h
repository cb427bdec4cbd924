// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// How a diagram leaves the program: clipboard, SVG, PDF, PNG, printer.
#pragma once

#include "host/CDC.h"

#include <QString>

#include <functional>

class QMenu;
class QPrinter;
class QWidget;

namespace desktop
{

class AsideWork;

/// Picture and SVG at once.
void CopyDrawing(const CDC& drawing);
/// As SVG, PDF or PNG by the ending; returns why it failed, in German, or nothing.
QString SaveDrawing(const CDC& drawing, const QString& path);
/// On one page, as large as it fits. Returns why it failed, in German, or nothing.
QString PrintDrawing(const CDC& drawing, QPrinter& printer);
/// In a thread of its own; what is cancelled leaves no file and no print.
QString SaveDrawing(const CDC& drawing, const QString& path, AsideWork& work);
QString PrintDrawing(const CDC& drawing, QPrinter& printer, AsideWork& work);

/// Asks for the file or the printer first. `name` names the diagram in file names and printer jobs, without its
/// ending.
void AskAndSaveDrawing(const CDC& drawing, const QString& name, QWidget* parent);
void AskAndPrintDrawing(const CDC& drawing, const QString& name, QWidget* parent);

/// Entries that copy, save and print what `draw` gives when one of them is chosen. `parent` outlives the menu.
void AddDrawingEntries(QMenu& menu, const QString& name, QWidget* parent, const std::function<CDC()>& draw);

} // namespace desktop
