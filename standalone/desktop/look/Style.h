// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// How controls are drawn: flat, thin lines, one accent. Geometry it does not touch is that of Qt's Fusion style.
#pragma once

#include <QColor>
#include <QProxyStyle>

namespace desktop
{

/// What an edit is for; it decides how it looks.
enum class FieldLook {
    input,
    result,   ///< a computed value, not to be typed into
    disabled, ///< an input that does not count now
};

// Dynamic properties that edits, combo boxes and labels carry for the style.
inline constexpr const char* kLookProperty = "fieldLook";  // FieldLook as int
inline constexpr const char* kRefusedProperty = "refused"; // bool
inline constexpr const char* kGroundProperty = "ground";   // QColor the user chose, invalid for the scheme's own
inline constexpr const char* kTintProperty = "tint";       // QColor, invalid for none

class Style : public QProxyStyle
{
  public:
    Style();

    void polish(QWidget* widget) override;
    using QProxyStyle::polish;
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returnData) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                         const QWidget* widget) const override;
    QRect subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const override;
    QIcon standardIcon(StandardPixmap icon, const QStyleOption* option, const QWidget* widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
};

/// An open angle as arrows are drawn here; `direction` as the arrow points.
void DrawChevron(QPainter& painter, const QRectF& area, Qt::ArrowType direction, const QColor& color);

} // namespace desktop
