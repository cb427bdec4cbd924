// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The single things the style draws.
#pragma once

#include <QPen>
#include <QStyle>
#include <QStyleOption>

class QPainter;

namespace desktop
{

void DrawRounded(QPainter& painter, const QRectF& area, const QPen& pen, const QBrush& ground);
/// Ground and outline of an edit or combo box, by its properties (see Style.h).
void DrawField(QPainter& painter, const QRectF& area, QStyle::State state, const QWidget* widget);
void DrawCheckMark(QPainter& painter, const QRectF& area, QStyle::State state);
void DrawRadioMark(QPainter& painter, const QRectF& area, QStyle::State state);
/// A default button that can be pressed is filled with the accent colour.
bool IsFilled(const QStyleOptionButton& button);
void DrawButton(QPainter& painter, const QStyleOptionButton& button);
/// A frame with its title in the upper edge, on `ground`.
/// `warning` stands at the right end of the frame's upper line.
void DrawGroup(QPainter& painter, const QRect& area, const QString& title, const QString& warning,
               const QColor& ground);
void DrawSlider(QPainter& painter, const QStyleOptionSlider& slider, const QRect& handle);
void DrawTab(QPainter& painter, const QStyleOptionTab& tab);

QRect ScrollBarPart(const QStyleOptionSlider& bar, QStyle::SubControl part);
void DrawScrollBar(QPainter& painter, const QStyleOptionSlider& bar);

QRect TitleBarPart(const QStyleOptionTitleBar& bar, QStyle::SubControl part);
void DrawTitleBar(QPainter& painter, const QStyleOptionTitleBar& bar);

} // namespace desktop
