// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/scene/SceneBar.h"

#include "desktop/look/NumberField.h"
#include "desktop/look/Theme.h"
#include "host/Physics.h"

#include <QHBoxLayout>
#include <QLabel>

namespace desktop
{
namespace
{

constexpr double kFarthest = 1e6; // m
constexpr double kLargest = 1000.0;
constexpr double kSmallest = 0.01;

krn::NumberFormat FormatOf(SceneBar::Number number)
{
    const UnitType metre(unitType::length);
    switch (number) {
    case SceneBar::x:
        return {"x", -kFarthest, kFarthest, 2, metre, {}};
    case SceneBar::y:
        return {"y", -kFarthest, kFarthest, 2, metre, {}};
    case SceneBar::angle:
        return {"Winkel", -360.0, 360.0, 1, UnitType(unitType::none), "°"};
    case SceneBar::width:
        return {"Breite", kSmallest, kLargest, 2, metre, {}};
    default:
        return {"Länge", kSmallest, kLargest, 2, metre, {}};
    }
}

} // namespace

SceneBar::SceneBar(QWidget* parent) : QWidget(parent), m_row(new QHBoxLayout(this))
{
    m_row->setContentsMargins(Spacing(), Spacing() / 2, Spacing(), Spacing() / 2);
    m_row->setSpacing(Spacing() / 2);
    m_place = {AddLabel(QStringLiteral("x"))};
    AddField(x);
    m_row->addSpacing(Spacing() / 2);
    m_place.push_back(AddLabel(QStringLiteral("y")));
    AddField(y);
    m_metres[0] = AddLabel({});
    m_place.insert(m_place.end(), {m_fields[x], m_fields[y], m_metres[0]});
    m_row->addSpacing(Spacing());
    m_angle = {AddLabel(QStringLiteral("Winkel"))};
    AddField(angle);
    m_angle.insert(m_angle.end(), {m_fields[angle], AddLabel(QStringLiteral("°"))});
    m_row->addSpacing(Spacing());
    m_size = {AddLabel(QStringLiteral("Größe"))};
    AddField(width);
    m_size.push_back(AddLabel(QStringLiteral("×")));
    AddField(length);
    m_metres[1] = AddLabel({});
    m_size.insert(m_size.end(), {m_fields[width], m_fields[length], m_metres[1]});
    m_hint = AddLabel(QStringLiteral("Anklicken wählt aus, Ziehen verschiebt, Rechtsklick zeigt mehr."));
    m_hint->setEnabled(false);
    m_row->addStretch();
    // The row keeps its height, or the scene would jump under the mouse.
    m_hint->setMinimumHeight(m_fields[x]->sizeHint().height());
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    ShowUnits();
    Show(nullptr);
}

// A field that holds the focus loses it when QWidget ends, after this object has: its entry has nowhere to go.
SceneBar::~SceneBar()
{
    for (NumberField* field : m_fields)
        field->disconnect(this);
}

QLabel* SceneBar::AddLabel(const QString& text)
{
    auto* label = new QLabel(text);
    m_row->addWidget(label);
    return label;
}

void SceneBar::AddField(Number number)
{
    auto* field = new NumberField(FormatOf(number));
    const int digits = field->fontMetrics().horizontalAdvance(QStringLiteral("−0000,00"));
    field->setFixedWidth(digits + 2 * Spacing());
    field->setToolTip(field->accessibleName());
    m_fields[number] = field;
    m_row->addWidget(field);
    connect(field, &NumberField::entered, this, [this, number](double value) { Take(number, value); });
}

void SceneBar::Show(const scene::SceneItem* item)
{
    if ((item != nullptr) != m_has || (m_has && !(item->id == m_item.id)))
        for (NumberField* field : m_fields)
            field->DropRefusal();
    m_has = item != nullptr;
    m_item = m_has ? *item : scene::SceneItem{};
    const double values[kNumbers] = {m_item.pose.position.x / kCmProM, m_item.pose.position.y / kCmProM,
                                     m_item.pose.angle, m_item.pose.width / kCmProM, m_item.pose.length / kCmProM};
    for (int i = 0; i < kNumbers; ++i)
        if (NumberField& field = *m_fields[static_cast<std::size_t>(i)]; !field.isModified())
            field.SetValue(values[i]);
    const auto show = [](const std::vector<QWidget*>& widgets, bool on) {
        for (QWidget* widget : widgets)
            widget->setVisible(on);
    };
    show(m_place, m_has);
    show(m_angle, m_has && m_item.canTurn);
    show(m_size, m_has && m_item.canSize);
    m_hint->setVisible(!m_has);
}

void SceneBar::ShowUnits()
{
    for (QLabel* label : m_metres)
        label->setText(QString::fromStdString(krn::UnitOf(m_fields[x]->Format())));
}

void SceneBar::Take(Number number, double value)
{
    if (!m_has)
        return;
    scene::SceneItem item = m_item;
    switch (number) {
    case x:
        item.pose.position.x = value * kCmProM;
        break;
    case y:
        item.pose.position.y = value * kCmProM;
        break;
    case angle:
        item.pose.angle = value;
        break;
    case width:
        item.pose.width = value * kCmProM;
        break;
    default:
        item.pose.length = value * kCmProM;
        break;
    }
    emit entered(item);
}

} // namespace desktop
