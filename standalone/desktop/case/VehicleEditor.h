// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/look/VehicleIcon.h"
#include "host/CKfzDaten.h"

#include <QWidget>

#include <optional>
#include <vector>

class QComboBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;

namespace desktop
{

class CaseDocument;
class NumberField;
class VehicleSketch;

/// The vehicles of the case: a list of them, and the chosen one's name, kind, colour and dimensions with a drawing that
/// names the dimension being edited.
class VehicleEditor : public QWidget
{
    Q_OBJECT

  public:
    explicit VehicleEditor(CaseDocument& document, QWidget* parent = nullptr);
    ~VehicleEditor() override;

    /// Index of the chosen vehicle in the case, -1 when there is none.
    int Vehicle() const;
    void ChooseVehicle(int vehicle);
    /// Fills the first free place with a typical vehicle and chooses it; -1 when all 16 are taken.
    int AddVehicle(CKfzDaten::Type type);
    /// Shows everything afresh, in the units in force.
    void Show();
    /// Empties the place, phases included.
    void RemoveVehicle(int vehicle);

    QLineEdit& NameField() const { return *m_name; }
    NumberField& Field(double CKfzDaten::*value) const;

  signals:
    /// The user chose another vehicle.
    void vehicleChosen(int vehicle);

  private:
    struct Row {
        double CKfzDaten::*value;
        QLabel* label;
        NumberField* field;
        QLabel* unit;
    };
    QWidget* BuildList();
    QWidget* BuildForm();
    void AddRow(QGridLayout& form, int row, double CKfzDaten::*value);
    /// Shows what the case has changed.
    void Follow();
    void ShowFields();
    void ChooseColor();
    /// Writes the changed vehicle into the case.
    void Store(const CKfzDaten& vehicle, const QString& what);

    CaseDocument& m_document;
    QListWidget* m_list = nullptr;
    QPushButton* m_add = nullptr;
    QPushButton* m_remove = nullptr;
    QWidget* m_form = nullptr;
    QLineEdit* m_name = nullptr;
    QComboBox* m_type = nullptr;
    QPushButton* m_color = nullptr;
    std::vector<Row> m_rows;
    QLabel* m_contradiction = nullptr;
    VehicleSketch* m_sketch = nullptr;
    std::vector<VehicleMark> m_marks;        ///< of the vehicles in the list
    std::optional<CKfzDaten> m_shownVehicle; ///< in the fields
    bool m_showing = false;
    int m_shown = -1; ///< index of the vehicle whose numbers the fields show
};

} // namespace desktop
