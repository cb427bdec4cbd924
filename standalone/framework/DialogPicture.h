// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "framework/Window.h"
#include "host/CDC.h"

namespace framework
{

/// A picture of a dialog as it stands, with its title bar and its pages, for documents. `pixelsPerUnit` > 0 is the
/// width of a dialog unit.
CDC DrawDialog(const Window& dialog, double pixelsPerUnit);

} // namespace framework
