// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The menu's file commands with the questions and messages a user meets. Each returns false when nothing was done:
// cancelled or failed (the user was told).
#pragma once

#include <QStringList>

class QWidget;

namespace desktop
{

class CaseDocument;

/// Asks about unsaved changes and saves them if wanted. True when the case may be closed.
bool MayClose(CaseDocument& document, QWidget* parent);
bool NewCase(CaseDocument& document, QWidget* parent);
/// A case that comes with the program, opened as a new one: it cannot be saved over.
bool OpenExample(CaseDocument& document, QWidget* parent, const QString& name);
/// Their names.
QStringList ExampleNames();
/// With an empty path asks for the file.
bool OpenCase(CaseDocument& document, QWidget* parent, const QString& path);
/// Asks for a path when the case has none.
bool SaveCase(CaseDocument& document, QWidget* parent);
bool SaveCaseAs(CaseDocument& document, QWidget* parent);
/// Offers the cases left behind by a crash, the newest first; for the program's start.
bool RecoverCase(CaseDocument& document, QWidget* parent);

} // namespace desktop
