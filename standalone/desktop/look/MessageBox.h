// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "framework/FrontEnd.h"

class QString;
class QWidget;

namespace desktop
{

/// Shows a message with German buttons and returns the answer (FehlerRet). A question is answered by J and N too, and
/// Enter answers it with "Nein": what is asked for cannot always be taken back.
int ShowMessageBox(QWidget* parent, const QString& title, const framework::ShownMessage& message);

/// A warning whose text is shown as it is, whatever a case or a file is called.
void Warn(QWidget* parent, const QString& title, const QString& text);

} // namespace desktop
