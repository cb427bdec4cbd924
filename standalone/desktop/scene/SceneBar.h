// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The place of what is selected in the scene, as numbers.
#pragma once

#include "scene/SceneModel.h"

#include <QWidget>

#include <array>
#include <vector>

class QHBoxLayout;
class QLabel;

namespace desktop
{

class NumberField;

class SceneBar : public QWidget
{
    Q_OBJECT

  public:
    explicit SceneBar(QWidget* parent = nullptr);
    ~SceneBar() override;

    enum Number { x, y, angle, width, length, kNumbers };
    NumberField& Field(Number number) const { return *m_fields[number]; }

    /// Null shows that nothing is selected.
    void Show(const scene::SceneItem* item);
    /// Units changed.
    void ShowUnits();

  signals:
    /// A number was typed: the item with its new pose.
    void entered(const scene::SceneItem& item);

  private:
    QLabel* AddLabel(const QString& text);
    void AddField(Number number);
    void Take(Number number, double value);

    QHBoxLayout* m_row;
    std::array<NumberField*, kNumbers> m_fields{};
    std::array<QLabel*, 2> m_metres{}; ///< behind place and size
    std::vector<QWidget*> m_angle;     ///< what belongs to the angle
    std::vector<QWidget*> m_size;
    std::vector<QWidget*> m_place;
    QLabel* m_hint;
    scene::SceneItem m_item;
    bool m_has = false;
};

} // namespace desktop
