// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QIcon>

namespace desktop
{

/// A line icon by name ("open", "save", "undo", ...), drawn sharp at every scale and in the colours of the scheme in
/// force when it is painted. An unknown name gives an empty icon.
QIcon Icon(const char* name);

} // namespace desktop
