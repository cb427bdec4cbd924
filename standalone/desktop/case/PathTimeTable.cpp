// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/case/PathTimeTable.h"

#include "desktop/case/CaseDocument.h"
#include "desktop/case/PathTimeModel.h"
#include "desktop/case/PhaseView.h"
#include "desktop/look/Theme.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QToolButton>
#include <QVBoxLayout>

#include <utility>

namespace desktop
{
namespace
{

QToolButton* Button(const QString& text, const QString& tip)
{
    auto* button = new QToolButton;
    button->setText(text);
    button->setToolTip(tip);
    return button;
}

} // namespace

PathTimeTable::PathTimeTable(CaseDocument& document, QWidget* parent)
    : QWidget(parent), m_document(document), m_model(new PathTimeModel(document, this)), m_view(new PhaseView),
      m_vehicles(new QComboBox),
      m_insert(Button(QStringLiteral("Phase e&infügen"), QStringLiteral("Freie Spalte vor der gewählten"))),
      m_remove(Button(QStringLiteral("&Phase entfernen"), QStringLiteral("Gewählte Spalte entfernen"))),
      m_cell(new QWidget(m_view->viewport()))
{
    auto* bar = new QHBoxLayout;
    auto* label = new QLabel(QStringLiteral("Fahr&zeug"));
    label->setBuddy(m_vehicles);
    m_vehicles->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    m_vehicles->setMinimumContentsLength(18);
    bar->addWidget(label);
    bar->addWidget(m_vehicles);
    bar->addSpacing(2 * Spacing());
    bar->addWidget(m_insert);
    bar->addWidget(m_remove);
    bar->addStretch();
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(Spacing(), Spacing(), Spacing(), Spacing());
    column->setSpacing(Spacing());
    column->addLayout(bar);
    m_begin = new QWidget;
    auto* beginRow = new QHBoxLayout(m_begin);
    beginRow->setContentsMargins(0, 0, 0, 0);
    m_beginHint = new QLabel;
    m_beginHint->setWordWrap(true);
    m_beginButton = new QPushButton(QStringLiteral("Erste Phase anlegen…"));
    beginRow->addWidget(m_beginHint, 1);
    beginRow->addWidget(m_beginButton);
    column->addWidget(m_begin);
    column->addWidget(m_view, 1);

    m_view->setModel(m_model);
    m_view->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_view->horizontalHeader()->setMinimumSectionSize(10 * fontMetrics().averageCharWidth());
    m_view->verticalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    m_view->horizontalHeader()->setToolTip(QStringLiteral("Spalten: von der Kollision rückwärts in der Zeit"));
    m_view->setCornerButtonEnabled(false);
    m_view->setAccessibleName(QStringLiteral("Weg-Zeit-Tabelle"));
    m_cell->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_cell->hide();

    connect(m_vehicles, &QComboBox::currentIndexChanged, this, [this] {
        delete m_bubble;
        m_model->SetVehicle(Vehicle());
        ShowButtons();
        emit vehicleChosen(Vehicle());
    });
    connect(m_beginButton, &QPushButton::clicked, this, &PathTimeTable::BeginPhases);
    connect(m_insert, &QToolButton::clicked, this, &PathTimeTable::InsertPhase);
    connect(m_remove, &QToolButton::clicked, this, &PathTimeTable::RemovePhase);
    connect(m_model, &PathTimeModel::refused, this, [this](const QModelIndex& cell, const QString& why) {
        m_view->Stay();
        ShowRefusal(cell, why);
    });
    // The cell stays when there are more phases or fewer.
    connect(m_model, &QAbstractItemModel::modelAboutToBeReset, this, [this] {
        const QModelIndex current = m_view->currentIndex();
        m_row = current.row();
        m_column = current.column();
    });
    connect(m_model, &QAbstractItemModel::modelReset, this, [this] {
        if (const QModelIndex cell = m_model->index(m_row, m_column); cell.isValid())
            m_view->setCurrentIndex(cell);
        ShowButtons();
    });
    connect(m_view->selectionModel(), &QItemSelectionModel::currentChanged, this, [this] {
        delete m_bubble;
        ShowButtons();
    });
    connect(&document, &CaseDocument::changed, this, &PathTimeTable::Follow);
    Show();
}

QTableView& PathTimeTable::View() const
{
    return *m_view;
}

int PathTimeTable::Vehicle() const
{
    return m_vehicles->currentIndex() < 0 ? -1 : m_vehicles->currentData().toInt();
}

void PathTimeTable::ChooseVehicle(int vehicle)
{
    m_vehicles->setCurrentIndex(m_vehicles->findData(vehicle));
}

void PathTimeTable::Show()
{
    m_shown.clear();
    Follow();
    m_model->Refresh();
}

void PathTimeTable::Follow()
{
    const int chosen = Vehicle();
    if (auto now = VehicleMarks(m_document.Data()); now != m_shown) {
        m_shown = std::move(now);
        const QSignalBlocker quiet(m_vehicles);
        m_vehicles->clear();
        for (const VehicleMark& mark : m_shown)
            m_vehicles->addItem(VehicleIcon(m_document.Data().KfzDat(static_cast<std::size_t>(mark.index))), mark.name,
                                mark.index);
        const int row = m_vehicles->findData(chosen);
        m_vehicles->setCurrentIndex(row >= 0 ? row : m_vehicles->count() > 0 ? 0 : -1);
    }
    if (Vehicle() != m_model->Vehicle())
        m_model->SetVehicle(Vehicle());
    else
        m_model->Follow();
    ShowButtons();
}

void PathTimeTable::ShowButtons()
{
    const auto table = m_model->Table();
    const QModelIndex current = m_view->currentIndex();
    const bool onPhase =
        table && current.isValid() && PathTimeModel::PhaseColumn(current.column()) + 1 < table->EndColumn();
    m_insert->setEnabled(onPhase);
    m_remove->setEnabled(onPhase);
    const bool empty = !table || m_model->columnCount() <= 1;
    m_begin->setVisible(empty);
    m_beginButton->setVisible(table.has_value());
    if (empty)
        m_beginHint->setText(
            table ? QStringLiteral("Noch keine Phase. Die erste ist die letzte vor der Kollision; ihre Art wird in der "
                                   "Zeile „Phase“ gewählt (Eingabetaste oder Anfangsbuchstabe).")
                  : QStringLiteral("Der Fall hat keine Fahrzeuge. Unter „Fahrzeuge“ kommt eines mit „Neu“ hinzu."));
}

void PathTimeTable::BeginPhases()
{
    const QModelIndex kind = m_model->index(PathTimeModel::kKindRow, 0);
    m_view->setFocus();
    m_view->setCurrentIndex(kind);
    m_view->OpenKinds(kind);
}

void PathTimeTable::InsertPhase()
{
    auto table = m_model->Table();
    const QModelIndex current = m_view->currentIndex();
    if (!table || !current.isValid())
        return;
    if (!table->Insert(PathTimeModel::PhaseColumn(current.column()))) {
        ShowRefusal(current, QStringLiteral("Es ist kein Platz für eine weitere Phase."));
        return;
    }
    m_document.Commit(QStringLiteral("Phase einfügen"));
    m_view->setCurrentIndex(m_model->index(PathTimeModel::kKindRow, current.column()));
    m_view->setFocus();
}

void PathTimeTable::RemovePhase()
{
    auto table = m_model->Table();
    const QModelIndex current = m_view->currentIndex();
    const int row = current.row();
    const int column = current.column();
    if (!table || !current.isValid() || !table->Remove(PathTimeModel::PhaseColumn(column)))
        return;
    m_document.Commit(QStringLiteral("Phase entfernen"));
    m_view->setCurrentIndex(m_model->index(row, column));
}

void PathTimeTable::ShowRefusal(const QModelIndex& cell, const QString& why)
{
    delete m_bubble;
    m_cell->setGeometry(m_view->visualRect(cell));
    m_cell->show();
    m_bubble = new RefusalBubble(*m_cell, why);
}

} // namespace desktop
