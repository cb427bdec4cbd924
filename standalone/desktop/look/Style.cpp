// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/look/Style.h"

#include "desktop/look/Icons.h"
#include "desktop/look/StyleParts.h"
#include "desktop/look/Theme.h"

#include <QApplication>
#include <QComboBox>
#include <QPainter>
#include <QStyleOption>

namespace desktop
{

Style::Style() : QProxyStyle(QStringLiteral("fusion")) {}

void Style::polish(QWidget* widget)
{
    QProxyStyle::polish(widget);
    if (widget->inherits("QAbstractButton") || widget->inherits("QComboBox") || widget->inherits("QAbstractSlider") ||
        widget->inherits("QLineEdit") || widget->inherits("QTabBar") || widget->inherits("QMdiSubWindow"))
        widget->setAttribute(Qt::WA_Hover);
}

int Style::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const
{
    const double scale = CurrentFontScale();
    switch (metric) {
    case PM_TitleBarHeight:
        return qRound(30 * scale);
    case PM_MdiSubWindowFrameWidth:
        return 1;
    case PM_MdiSubWindowMinimizedWidth:
        return qRound(230 * scale);
    case PM_ScrollBarExtent:
        return qRound(12 * scale);
    case PM_ScrollBarSliderMin:
        return qRound(28 * scale);
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
        return qRound(15 * scale);
    case PM_SliderThickness:
    case PM_SliderLength:
        return qRound(16 * scale);
    case PM_ButtonDefaultIndicator:
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
    case PM_ToolBarItemMargin:
        return 0;
    case PM_ToolBarItemSpacing:
        return qRound(2 * scale);
    case PM_ToolBarFrameWidth:
        return qRound(4 * scale);
    case PM_ToolBarIconSize:
    case PM_SmallIconSize:
        return qRound(18 * scale);
    case PM_DockWidgetSeparatorExtent:
        return qRound(5 * scale);
    case PM_DefaultFrameWidth:
        return widget != nullptr && widget->inherits("QLineEdit") ? 2
                                                                  : QProxyStyle::pixelMetric(metric, option, widget);
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int Style::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                     QStyleHintReturn* returnData) const
{
    switch (hint) {
    case SH_EtchDisabledText:
    case SH_DitherDisabledText:
    case SH_DialogButtonBox_ButtonsHaveIcons:
    case SH_ComboBox_Popup:
    case SH_WindowFrame_Mask:
        return 0;
    case SH_TitleBar_NoBorder:
    case SH_UnderlineShortcut:
    case SH_ComboBox_ListMouseTracking:
        return 1;
    default:
        return QProxyStyle::styleHint(hint, option, widget, returnData);
    }
}

QRect Style::subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                            const QWidget* widget) const
{
    if (control == CC_ComboBox) {
        if (const auto* combo = qstyleoption_cast<const QStyleOptionComboBox*>(option)) {
            const int arrow = qRound(20 * CurrentFontScale());
            if (part == SC_ComboBoxEditField)
                return combo->rect.adjusted(6, 1, -arrow, -1);
            if (part == SC_ComboBoxArrow)
                return QRect(combo->rect.right() - arrow + 1, combo->rect.top(), arrow, combo->rect.height());
        }
    }
    if (control == CC_TitleBar)
        if (const auto* bar = qstyleoption_cast<const QStyleOptionTitleBar*>(option))
            return TitleBarPart(*bar, part);
    if (control == CC_ScrollBar)
        if (const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option))
            return ScrollBarPart(*bar, part);
    return QProxyStyle::subControlRect(control, option, part, widget);
}

QRect Style::subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const
{
    const QRect rect = QProxyStyle::subElementRect(element, option, widget);
    if (element == SE_LineEditContents)
        return rect.adjusted(Spacing() / 2, 0, -Spacing() / 2, 0);
    return rect;
}

QIcon Style::standardIcon(StandardPixmap icon, const QStyleOption* option, const QWidget* widget) const
{
    if (widget != nullptr && widget->inherits("QDockWidget")) {
        if (icon == SP_TitleBarCloseButton || icon == SP_DockWidgetCloseButton)
            return Icon("close");
        if (icon == SP_TitleBarNormalButton)
            return Icon("float");
    }
    switch (icon) {
    case SP_MessageBoxQuestion:
        return Icon("question");
    case SP_MessageBoxInformation:
        return Icon("information");
    case SP_MessageBoxWarning:
        return Icon("warning");
    default:
        return QProxyStyle::standardIcon(icon, option, widget);
    }
}

QSize Style::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                              const QWidget* widget) const
{
    const double scale = CurrentFontScale();
    const QSize plain = QProxyStyle::sizeFromContents(type, option, size, widget);
    switch (type) {
    case CT_PushButton:
        return {plain.width() + qRound(10 * scale), qMax(plain.height(), qRound(28 * scale))};
    case CT_LineEdit:
    case CT_ComboBox:
        return {plain.width(), qMax(plain.height(), qRound(28 * scale))};
    case CT_ToolButton:
        return plain + QSize(qRound(6 * scale), qRound(4 * scale));
    case CT_MenuItem:
        return {plain.width() + qRound(12 * scale), plain.height() + qRound(3 * scale)};
    case CT_TabBarTab:
        return plain + QSize(qRound(8 * scale), qRound(4 * scale));
    default:
        return plain;
    }
}

void Style::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                          const QWidget* widget) const
{
    const SchemeColors& c = Colors();
    const QRectF area = QRectF(option->rect);
    switch (element) {
    case PE_FrameFocusRect:
        return; // each control shows the focus itself
    case PE_PanelLineEdit:
    case PE_FrameLineEdit:
        if (widget != nullptr && widget->parentWidget() != nullptr && widget->parentWidget()->inherits("QComboBox"))
            return;
        if (element == PE_PanelLineEdit)
            DrawField(*painter, area, option->state, widget);
        return;
    case PE_IndicatorCheckBox:
        DrawCheckMark(*painter, area, option->state);
        return;
    case PE_IndicatorRadioButton:
        DrawRadioMark(*painter, area, option->state);
        return;
    case PE_FrameWindow:
        painter->setPen(c.border);
        painter->setBrush(Qt::NoBrush);
        painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
        return;
    case PE_FrameGroupBox:
        DrawRounded(*painter, area, c.line, Qt::NoBrush);
        return;
    case PE_PanelButtonTool:
        if (option->state & (State_MouseOver | State_Sunken | State_On) && option->state & State_Enabled)
            DrawRounded(*painter, area.adjusted(1, 1, -1, -1), Qt::NoPen,
                        option->state & (State_Sunken | State_On) ? c.selection : c.hover);
        return;
    case PE_FrameStatusBarItem:
    case PE_FrameTabBarBase:
        return;
    case PE_PanelStatusBar:
        painter->fillRect(option->rect, c.window);
        painter->fillRect(QRect(option->rect.topLeft(), QSize(option->rect.width(), 1)), c.line);
        return;
    case PE_FrameMenu:
        painter->setPen(c.border);
        painter->setBrush(Qt::NoBrush);
        painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
        return;
    case PE_Frame:
        if (widget != nullptr && widget->inherits("QAbstractScrollArea")) {
            painter->setPen(option->state & State_HasFocus ? c.accent : c.line);
            painter->setBrush(Qt::NoBrush);
            painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
            return;
        }
        break;
    default:
        break;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void Style::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                        const QWidget* widget) const
{
    const SchemeColors& c = Colors();
    switch (element) {
    case CE_PushButtonBevel:
        if (const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option)) {
            DrawButton(*painter, *button);
            return;
        }
        break;
    case CE_PushButtonLabel:
        if (const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option)) {
            QStyleOptionButton label = *button;
            if (IsFilled(*button))
                label.palette.setColor(QPalette::ButtonText, c.onAccent);
            QProxyStyle::drawControl(element, &label, painter, widget);
            return;
        }
        break;
    case CE_ComboBoxLabel:
        if (const auto* combo = qstyleoption_cast<const QStyleOptionComboBox*>(option)) {
            QStyleOptionComboBox label = *combo;
            const QRect room = subControlRect(CC_ComboBox, combo, SC_ComboBoxEditField, widget);
            const int icon = combo->currentIcon.isNull() ? 0 : combo->iconSize.width() + 4; // as Qt places it
            label.currentText =
                combo->fontMetrics.elidedText(combo->currentText, Qt::ElideRight, room.width() - icon - 2);
            QProxyStyle::drawControl(element, &label, painter, widget);
            return;
        }
        break;
    case CE_ToolBar:
        painter->fillRect(option->rect, c.window);
        painter->fillRect(QRect(option->rect.left(), option->rect.bottom(), option->rect.width(), 1), c.line);
        return;
    case CE_MenuBarEmptyArea:
        painter->fillRect(option->rect, c.window);
        return;
    case CE_MenuBarItem:
        if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option)) {
            painter->fillRect(option->rect, c.window);
            if (option->state & (State_Selected | State_Sunken))
                DrawRounded(*painter, QRectF(option->rect).adjusted(1, 2, -1, -2), Qt::NoPen, c.hover);
            drawItemText(painter, option->rect, Qt::AlignCenter | Qt::TextShowMnemonic | Qt::TextSingleLine,
                         item->palette, (option->state & State_Enabled) != 0, item->text, QPalette::WindowText);
            return;
        }
        break;
    case CE_DockWidgetTitle:
        if (const auto* dock = qstyleoption_cast<const QStyleOptionDockWidget*>(option)) {
            painter->fillRect(option->rect, c.window);
            painter->save();
            painter->setFont(TextFont(1.0, true));
            const int indent = Spacing();
            drawItemText(painter, option->rect.adjusted(indent, 0, -3 * Spacing(), 0), Qt::AlignVCenter | Qt::AlignLeft,
                         dock->palette, true, dock->title, QPalette::WindowText);
            painter->restore();
            return;
        }
        break;
    case CE_TabBarTabShape:
        if (const auto* tab = qstyleoption_cast<const QStyleOptionTab*>(option)) {
            DrawTab(*painter, *tab);
            return;
        }
        break;
    case CE_Splitter:
        return;
    default:
        break;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
}

void Style::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                               const QWidget* widget) const
{
    switch (control) {
    case CC_ComboBox:
        DrawField(*painter, QRectF(option->rect), option->state, widget);
        DrawChevron(*painter, QRectF(subControlRect(control, option, SC_ComboBoxArrow, widget)), Qt::DownArrow,
                    option->state & State_Enabled ? Colors().muted : Colors().border);
        return;
    case CC_Slider:
        if (const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option)) {
            DrawSlider(*painter, *slider, subControlRect(control, option, SC_SliderHandle, widget));
            return;
        }
        break;
    case CC_ScrollBar:
        if (const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option)) {
            DrawScrollBar(*painter, *bar);
            return;
        }
        break;
    case CC_GroupBox:
        if (const auto* group = qstyleoption_cast<const QStyleOptionGroupBox*>(option)) {
            DrawGroup(*painter, option->rect, group->text, {}, option->palette.color(QPalette::Window));
            return;
        }
        break;
    case CC_TitleBar:
        if (const auto* bar = qstyleoption_cast<const QStyleOptionTitleBar*>(option)) {
            DrawTitleBar(*painter, *bar);
            return;
        }
        break;
    default:
        break;
    }
    QProxyStyle::drawComplexControl(control, option, painter, widget);
}

} // namespace desktop
