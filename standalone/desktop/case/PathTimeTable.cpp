// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/case/PathTimeTable.h"

#include "desktop/case/CaseDocument.h"
#include "desktop/case/PathTimeModel.h"
#include "desktop/look/Theme.h"
#include "desktop/look/VehicleIcon.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QToolButton>
#include <QVBoxLayout>

namespace desktop
{
namespace
{

/// Edits the kind by a list and numbers as text.
class PhaseDelegate : public QStyledItemDelegate
{
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        if (index.row() != PathTimeModel::kKindRow) {
            QWidget* editor = QStyledItemDelegate::createEditor(parent, option, index);
            if (auto* line = qobject_cast<QLineEdit*>(editor))
                line->setAlignment(Qt::AlignRight);
            return editor;
        }
        auto* box = new QComboBox(parent);
        for (const PhasenArt kind : pathtime::OfferedKinds())
            box->addItem(QString::fromUtf8(PhasenArtName(kind)), static_cast<int>(kind));
        connect(box, &QComboBox::activated, this, [this, box] {
            auto* self = const_cast<PhaseDelegate*>(this); // signals of a delegate are not const
            emit self->commitData(box);
            emit self->closeEditor(box);
        });
        return box;
    }
    void setEditorData(QWidget* editor, const QModelIndex& index) const override
    {
        if (auto* box = qobject_cast<QComboBox*>(editor)) {
            box->setCurrentIndex(box->findData(index.data(Qt::EditRole)));
            box->showPopup();
            return;
        }
        QStyledItemDelegate::setEditorData(editor, index);
    }
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override
    {
        if (const auto* box = qobject_cast<const QComboBox*>(editor))
            model->setData(index, box->currentData(), Qt::EditRole);
        else if (const auto* line = qobject_cast<const QLineEdit*>(editor); line != nullptr && line->isModified())
            model->setData(index, line->text(), Qt::EditRole);
    }
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        return QStyledItemDelegate::sizeHint(option, index) + QSize(2 * Spacing(), Spacing() / 2);
    }
};

QToolButton* Button(const QString& text, const QString& tip)
{
    auto* button = new QToolButton;
    button->setText(text);
    button->setToolTip(tip);
    return button;
}

} // namespace

PathTimeTable::PathTimeTable(CaseDocument& document, QWidget* parent)
    : QWidget(parent), m_document(document), m_model(new PathTimeModel(document, this)), m_view(new QTableView),
      m_vehicles(new QComboBox),
      m_insert(Button(QStringLiteral("Phase e&infügen"), QStringLiteral("Freie Spalte vor der gewählten"))),
      m_remove(Button(QStringLiteral("Phase ent&fernen"), QStringLiteral("Gewählte Spalte entfernen"))),
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
    column->addWidget(m_view, 1);

    m_view->setModel(m_model);
    m_view->setItemDelegate(new PhaseDelegate(m_view));
    m_view->setSelectionMode(QAbstractItemView::SingleSelection);
    m_view->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::SelectedClicked |
                            QAbstractItemView::EditKeyPressed | QAbstractItemView::AnyKeyPressed);
    m_view->setTabKeyNavigation(true);
    m_view->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_view->horizontalHeader()->setMinimumSectionSize(10 * fontMetrics().averageCharWidth());
    m_view->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
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
    });
    connect(m_insert, &QToolButton::clicked, this, &PathTimeTable::InsertPhase);
    connect(m_remove, &QToolButton::clicked, this, &PathTimeTable::RemovePhase);
    connect(m_model, &PathTimeModel::refused, this, &PathTimeTable::ShowRefusal);
    connect(m_model, &QAbstractItemModel::modelReset, this, &PathTimeTable::ShowButtons);
    connect(m_view->selectionModel(), &QItemSelectionModel::currentChanged, this, [this] {
        delete m_bubble;
        ShowButtons();
    });
    connect(&document, &CaseDocument::changed, this, &PathTimeTable::Show);
    Show();
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
    const int chosen = Vehicle();
    {
        const QSignalBlocker quiet(m_vehicles);
        m_vehicles->clear();
        for (int i = 0; i < static_cast<int>(CRuvData::kFahrzeuge); ++i) {
            const CKfzDaten& vehicle = m_document.Data().KfzDat(static_cast<std::size_t>(i));
            if (vehicle.IsValid())
                m_vehicles->addItem(VehicleIcon(vehicle),
                                    vehicle.name.empty() ? QStringLiteral("Fahrzeug %1").arg(i + 1)
                                                         : QString::fromStdString(vehicle.name),
                                    i);
        }
        const int now = m_vehicles->findData(chosen);
        m_vehicles->setCurrentIndex(now >= 0 ? now : m_vehicles->count() > 0 ? 0 : -1);
    }
    if (Vehicle() != m_model->Vehicle())
        m_model->SetVehicle(Vehicle());
    else
        m_model->Refresh();
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
