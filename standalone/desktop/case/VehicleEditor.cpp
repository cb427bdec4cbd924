// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/case/VehicleEditor.h"

#include "desktop/case/CaseDocument.h"
#include "desktop/look/CdcPainter.h"
#include "desktop/look/DiagramView.h"
#include "desktop/look/NumberField.h"
#include "desktop/look/Style.h"
#include "desktop/look/TextField.h"
#include "desktop/look/Theme.h"
#include "host/Assert.h"
#include "krn/VehicleFields.h"
#include "scene/VehicleDrawing.h"

#include <QColorDialog>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QPainter>
#include <QPushButton>
#include <QScrollArea>

#include <algorithm>
#include <array>
#include <utility>

namespace desktop
{
namespace
{

constexpr std::array kTypes{CKfzDaten::Type::car, CKfzDaten::Type::truck, CKfzDaten::Type::motorcycle,
                            CKfzDaten::Type::bicycle, CKfzDaten::Type::pedestrian};
/// Colours that are told apart in print and by colour-blind readers; new vehicles take them in turn.
constexpr std::array kColors{RGB(200, 30, 30),  RGB(30, 60, 200), RGB(0, 130, 70),  RGB(220, 130, 0),
                             RGB(130, 60, 160), RGB(0, 140, 160), RGB(150, 90, 40), RGB(70, 80, 90)};
constexpr int kIndexRole = Qt::UserRole;
constexpr int kVisibleVehicles = 4;
constexpr int kSketchHeight = 210;

} // namespace

/// Draws the vehicle with the chosen dimension.
class VehicleSketch : public QWidget
{
  public:
    explicit VehicleSketch(QWidget* parent) : QWidget(parent)
    {
        setMinimumHeight(kSketchHeight);
        setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    }
    void Show(const CKfzDaten& vehicle)
    {
        m_vehicle = vehicle;
        update();
    }
    void Choose(double CKfzDaten::*value)
    {
        m_chosen = value;
        update();
    }

  protected:
    void paintEvent(QPaintEvent*) override
    {
        drawing::DiagramPalette palette = PaletteFor(Ground::screen);
        palette.background = ToColorRef(Colors().window);
        CDC drawing(width(), height());
        scene::DrawVehicle(drawing, m_vehicle, m_chosen, palette, ToColorRef(Colors().accent));
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        Replay(drawing, painter);
    }

  private:
    CKfzDaten m_vehicle;
    double CKfzDaten::*m_chosen = &CKfzDaten::length;
};

VehicleEditor::VehicleEditor(CaseDocument& document, QWidget* parent) : QWidget(parent), m_document(document)
{
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(Spacing(), Spacing(), Spacing(), Spacing());
    column->setSpacing(Spacing());
    column->addWidget(BuildList());
    auto* scroll = new QScrollArea;
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_form = BuildForm();
    scroll->setWidget(m_form);
    scroll->setMinimumWidth(m_form->minimumSizeHint().width() + 2 * Spacing());
    column->addWidget(scroll, 1);
    m_sketch = new VehicleSketch(this);
    column->addWidget(m_sketch);
    connect(&document, &CaseDocument::changed, this, &VehicleEditor::Follow);
    connect(&document, &CaseDocument::titleChanged, this, [this] {
        for (const Row& row : m_rows)
            row.field->DropRefusal(); // perhaps another case
    });
    Show();
    if (m_list->count() > 0)
        m_list->setCurrentRow(0);
}

// A field that holds the focus loses it when QWidget ends, after this object has: its entry has nowhere to go.
VehicleEditor::~VehicleEditor()
{
    for (QWidget* field : findChildren<QWidget*>())
        field->disconnect(this);
}

QWidget* VehicleEditor::BuildList()
{
    auto* holder = new QWidget;
    auto* column = new QVBoxLayout(holder);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Spacing() / 2);
    m_list = new QListWidget;
    m_list->setAccessibleName(QStringLiteral("Fahrzeuge"));
    m_list->setUniformItemSizes(true);
    connect(m_list, &QListWidget::currentRowChanged, this, [this] {
        if (m_showing)
            return;
        ShowFields();
        emit vehicleChosen(Vehicle());
    });
    column->addWidget(m_list);

    auto* buttons = new QHBoxLayout;
    m_add = new QPushButton(QStringLiteral("Ne&u"));
    auto* types = new QMenu(m_add);
    for (const CKfzDaten::Type type : kTypes)
        types->addAction(QString::fromStdString(krn::TypeName(type)), this, [this, type] { AddVehicle(type); });
    m_add->setMenu(types);
    m_remove = new QPushButton(QStringLiteral("Entfernen"));
    connect(m_remove, &QPushButton::clicked, this, [this] { RemoveVehicle(Vehicle()); });
    buttons->addWidget(m_add);
    buttons->addWidget(m_remove);
    buttons->addStretch();
    column->addLayout(buttons);
    return holder;
}

QWidget* VehicleEditor::BuildForm()
{
    auto* holder = new QWidget;
    auto* form = new QGridLayout(holder);
    form->setContentsMargins(0, 0, Spacing(), 0); // the units stand clear of the scroll bar
    form->setHorizontalSpacing(Spacing());
    form->setVerticalSpacing(Spacing() / 2);
    form->setColumnStretch(1, 1);
    const auto add = [&](const QString& text, QWidget* field) {
        auto* label = new QLabel(text);
        label->setBuddy(field);
        const int row = form->rowCount();
        form->addWidget(label, row, 0);
        form->addWidget(field, row, 1, 1, 2);
    };
    m_name = new TextField;
    m_name->setProperty(kLookProperty, static_cast<int>(FieldLook::input));
    m_name->setMaxLength(60);
    connect(m_name, &QLineEdit::editingFinished, this, [this] {
        if (Vehicle() < 0 || !m_name->isModified())
            return;
        CKfzDaten vehicle = m_document.Data().KfzDat(static_cast<std::size_t>(Vehicle()));
        vehicle.name = m_name->text().trimmed().toStdString();
        Store(vehicle, QStringLiteral("Name"));
    });
    add(QStringLiteral("&Name"), m_name);

    m_type = new QComboBox;
    for (const CKfzDaten::Type type : kTypes)
        m_type->addItem(QString::fromStdString(krn::TypeName(type)), static_cast<int>(type));
    connect(m_type, &QComboBox::activated, this, [this] {
        if (Vehicle() < 0)
            return;
        CKfzDaten vehicle = m_document.Data().KfzDat(static_cast<std::size_t>(Vehicle()));
        vehicle.type = static_cast<CKfzDaten::Type>(m_type->currentData().toInt());
        Store(vehicle, QStringLiteral("Art"));
    });
    add(QStringLiteral("Ar&t"), m_type);

    m_color = new QPushButton;
    connect(m_color, &QPushButton::clicked, this, &VehicleEditor::ChooseColor);
    add(QStringLiteral("Fa&rbe"), m_color);

    for (const krn::VehicleField& field : krn::VehicleFields())
        AddRow(*form, form->rowCount(), field.value);
    m_contradiction = new QLabel;
    m_contradiction->setWordWrap(true);
    form->addWidget(m_contradiction, form->rowCount(), 0, 1, 3);
    form->setRowStretch(form->rowCount(), 1);
    return holder;
}

void VehicleEditor::AddRow(QGridLayout& form, int row, double CKfzDaten::*value)
{
    const krn::VehicleField& described = krn::FieldOf(value);
    auto* field = new NumberField(described.format);
    field->setToolTip(QString::fromStdString(described.format.label + " " + described.explanation));
    auto* label = new QLabel(QString::fromStdString(described.format.label));
    label->setBuddy(field);
    label->setToolTip(field->toolTip());
    form.addWidget(label, row, 0);
    form.addWidget(field, row, 1);
    auto* unit = new QLabel;
    form.addWidget(unit, row, 2);
    connect(field, &NumberField::focused, this, [this, value] { m_sketch->Choose(value); });
    connect(field, &NumberField::entered, this, [this, value](double number) {
        if (Vehicle() < 0)
            return;
        CKfzDaten vehicle = m_document.Data().KfzDat(static_cast<std::size_t>(Vehicle()));
        vehicle.*value = number;
        Store(vehicle, QString::fromStdString(krn::FieldOf(value).format.label));
    });
    m_rows.push_back({value, label, field, unit});
}

int VehicleEditor::Vehicle() const
{
    const QListWidgetItem* item = m_list->currentItem();
    return item == nullptr ? -1 : item->data(kIndexRole).toInt();
}

void VehicleEditor::ChooseVehicle(int vehicle)
{
    for (int row = 0; row < m_list->count(); ++row)
        if (m_list->item(row)->data(kIndexRole).toInt() == vehicle)
            m_list->setCurrentRow(row);
}

NumberField& VehicleEditor::Field(double CKfzDaten::*value) const
{
    const auto row = std::find_if(m_rows.begin(), m_rows.end(), [value](const Row& r) { return r.value == value; });
    RUV_ASSERT(row != m_rows.end());
    return *row->field;
}

void VehicleEditor::Show()
{
    m_marks.clear();
    m_shownVehicle.reset();
    Follow();
}

void VehicleEditor::Follow()
{
    if (const auto now = VehicleMarks(m_document.Data()); now != m_marks || now.empty()) {
        m_marks = now;
        const int chosen = Vehicle();
        m_showing = true;
        m_list->clear();
        for (const VehicleMark& mark : m_marks) {
            const CKfzDaten& vehicle = m_document.Data().KfzDat(static_cast<std::size_t>(mark.index));
            auto* item = new QListWidgetItem(VehicleIcon(vehicle), mark.name, m_list);
            item->setData(kIndexRole, mark.index);
        }
        const int rows = std::clamp(m_list->count(), 2, kVisibleVehicles);
        m_list->setFixedHeight(rows * std::max(m_list->sizeHintForRow(0), fontMetrics().height()) + 2 * Spacing());
        ChooseVehicle(chosen);
        if (m_list->currentRow() < 0 && m_list->count() > 0)
            m_list->setCurrentRow(0);
        m_showing = false;
        m_shownVehicle.reset();
    }
    const int index = Vehicle();
    if (index < 0 || !m_shownVehicle || !(*m_shownVehicle == m_document.Data().KfzDat(static_cast<std::size_t>(index))))
        ShowFields();
}

void VehicleEditor::ShowFields()
{
    const int index = Vehicle();
    m_form->setEnabled(index >= 0);
    m_remove->setEnabled(index >= 0);
    m_add->setEnabled(m_list->count() < static_cast<int>(CRuvData::kFahrzeuge));
    m_sketch->setVisible(index >= 0);
    if (std::exchange(m_shown, index) != index)
        for (const Row& row : m_rows)
            row.field->DropRefusal();
    if (index < 0)
        return;
    const CKfzDaten& vehicle = m_document.Data().KfzDat(static_cast<std::size_t>(index));
    if (!m_name->isModified() || !m_name->hasFocus()) {
        m_name->setText(QString::fromStdString(vehicle.name));
        m_name->setCursorPosition(0); // a long name is shown from its beginning
    }
    m_type->setCurrentIndex(m_type->findData(static_cast<int>(vehicle.type)));
    m_color->setIcon(VehicleIcon(vehicle));
    m_color->setText(FromColorRef(vehicle.color).name());
    for (const Row& row : m_rows) {
        row.unit->setText(QString::fromStdString(krn::UnitOf(row.field->Format())));
        for (QWidget* part :
             {static_cast<QWidget*>(row.label), static_cast<QWidget*>(row.field), static_cast<QWidget*>(row.unit)})
            part->setVisible(krn::HasField(vehicle.type, row.value));
        if (!row.field->isModified())
            row.field->SetValue(vehicle.*row.value);
    }
    const std::string contradiction = krn::Contradiction(vehicle);
    m_contradiction->setText(QString::fromStdString(contradiction));
    m_contradiction->setVisible(!contradiction.empty());
    m_sketch->Show(vehicle);
    m_shownVehicle = vehicle;
}

void VehicleEditor::Store(const CKfzDaten& vehicle, const QString& what)
{
    m_name->setModified(false);
    const int index = Vehicle();
    m_document.NameNextStep(QStringLiteral("%1 von %2").arg(what, ShownName(vehicle, index)));
    vehicle.Uebertragen(m_document.Data(), static_cast<std::size_t>(index), nullptr, 0);
    m_document.Commit(QStringLiteral("%1 von %2").arg(what, ShownName(vehicle, index)));
    ShowFields(); // also when nothing changed
}

void VehicleEditor::ChooseColor()
{
    if (Vehicle() < 0)
        return;
    CKfzDaten vehicle = m_document.Data().KfzDat(static_cast<std::size_t>(Vehicle()));
    for (std::size_t i = 0; i < kColors.size(); ++i)
        QColorDialog::setCustomColor(static_cast<int>(i), FromColorRef(kColors[i]));
    const QColor color =
        QColorDialog::getColor(FromColorRef(vehicle.color), this, QStringLiteral("Farbe des Fahrzeugs"));
    if (!color.isValid())
        return;
    vehicle.color = ToColorRef(color);
    Store(vehicle, QStringLiteral("Farbe"));
}

int VehicleEditor::AddVehicle(CKfzDaten::Type type)
{
    CRuvData& content = m_document.Data();
    for (std::size_t i = 0; i < CRuvData::kFahrzeuge; ++i) {
        if (content.KfzDat(i).IsValid())
            continue;
        CKfzDaten vehicle = krn::TypicalVehicle(type);
        vehicle.name = krn::TypeName(type) + " " + std::to_string(i + 1);
        vehicle.color = kColors[i % kColors.size()];
        vehicle.Uebertragen(content, i, nullptr, 0);
        m_document.Commit(QStringLiteral("%1 hinzufügen").arg(QString::fromStdString(vehicle.name)));
        ChooseVehicle(static_cast<int>(i));
        m_name->setFocus(Qt::OtherFocusReason);
        m_name->selectAll();
        return static_cast<int>(i);
    }
    return -1;
}

void VehicleEditor::RemoveVehicle(int vehicle)
{
    if (vehicle < 0)
        return;
    CRuvData& content = m_document.Data();
    const auto index = static_cast<std::size_t>(vehicle);
    const QString name = ShownName(content.KfzDat(index), vehicle);
    CKfzDaten().Uebertragen(content, index, nullptr, 0);
    CWegZeitRechDat().Uebertragen(content, index, nullptr, 0);
    content.UPa(index) = {};
    content.NotifyUPa(index);
    m_document.Commit(QStringLiteral("%1 entfernen").arg(name));
}

} // namespace desktop
