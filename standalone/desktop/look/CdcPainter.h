// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Replays a recorded drawing on a painter.
#pragma once

#include "host/CDC.h"

#include <QColor>

#include <functional>

class QPainter;

namespace desktop
{

using ColorMap = std::function<QColor(COLORREF)>;

/// One pixel of the drawing is one unit of the painter, whose state is left as it was. `colors` translates the
/// drawing's colours: OnScreen for the screen, FromColorRef (the default) for paper.
void Replay(const CDC& drawing, QPainter& painter, const ColorMap& colors = {});

} // namespace desktop
