// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Colours, font and spacing of the workstation, in a light and a dark scheme.
#pragma once

#include "host/HostTypes.h"

#include <QColor>
#include <QFont>

namespace desktop
{

enum class Scheme { light, dark };

/// The colours of a scheme by what they are for.
struct SchemeColors {
    QColor desk;       ///< behind the mask windows
    QColor window;     ///< bars, panels
    QColor surface;    ///< masks and dialogs
    QColor field;      ///< what can be typed into
    QColor border;     ///< of fields and buttons
    QColor line;       ///< quiet separators, group frames, grids
    QColor hover;      ///< under the pointer
    QColor text;       ///< everything to be read
    QColor muted;      ///< what may be overlooked: units, hints, disabled
    QColor accent;     ///< focus, default button, selection
    QColor onAccent;   ///< text on accent
    QColor selection;  ///< selected rows and text
    QColor result;     ///< ground of a computed value
    QColor resultText; ///< a computed value
    QColor danger;     ///< refused entries
    QColor dangerSoft; ///< ground of what says why
};

/// Puts style, palette and font in force, also on widgets that are shown already. `fontScale` enlarges text and, with
/// it, every mask: 1 is 9.75 pt.
void ApplyTheme(Scheme scheme, double fontScale = 1.0);

Scheme CurrentScheme();
double CurrentFontScale();
const SchemeColors& Colors();

/// Noto Sans as it comes with the program, `factor` times the size of plain text.
QFont TextFont(double factor = 1.0, bool bold = false);

/// Distance between neighbouring things, and the radius of corners, in logical pixels.
int Spacing();
double CornerRadius();

/// A drawing's colour as the scheme shows it: unchanged in the light one; in the dark one hue and saturation stay and
/// light and dark change places, so that black lines on white paper become those of text on the ground of fields. What
/// has kLeastContrast with white paper has it with that ground, too.
QColor OnScreen(COLORREF color);
/// Of curves and other lines with their ground (WCAG 2.1, 1.4.11, asks it of graphics).
inline constexpr double kLeastContrast = 3.0;
QColor FromColorRef(COLORREF color);
COLORREF ToColorRef(const QColor& color);

/// The ground of a field that belongs to something of this colour: the field's own with a breath of it.
QColor Tinted(const QColor& ground, const QColor& color);

} // namespace desktop
