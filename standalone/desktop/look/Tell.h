// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

class QWidget;

namespace desktop
{

/// Says for a moment at the foot of the main window that something was done, what and where.
void Tell(QWidget& from, const QString& what);

} // namespace desktop
