// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/case/PathTimeModel.h"

#include "desktop/case/CaseDocument.h"
#include "desktop/look/Theme.h"
#include "host/Assert.h"

#include <algorithm>

namespace desktop
{
namespace
{

bool TurnsSomewhere(const CWegZeitDat& phases)
{
    return std::any_of(
        phases.spalten.begin(), phases.spalten.end(),
        [](const CWegZeitSpalte& phase) { return phase.art == PhasenArt::turning; });
}

} // namespace

PathTimeModel::PathTimeModel(CaseDocument& document, QObject* parent)
    : QAbstractTableModel(parent), m_document(document)
{
}

std::optional<pathtime::PhaseTable> PathTimeModel::Table() const
{
    if (m_vehicle < 0)
        return std::nullopt;
    return pathtime::PhaseTable(m_document.Data(), static_cast<std::size_t>(m_vehicle));
}

std::size_t PathTimeModel::PhaseColumn(int column)
{
    return CWegZeitDat::kErsteSpalte + static_cast<std::size_t>(column);
}

int PathTimeModel::ViewColumn(std::size_t phaseColumn)
{
    RUV_ASSERT(phaseColumn >= CWegZeitDat::kErsteSpalte);
    return static_cast<int>(phaseColumn - CWegZeitDat::kErsteSpalte);
}

const pathtime::PhaseRow& PathTimeModel::Quantity(int row) const
{
    return *m_rows[static_cast<std::size_t>(row - 1)];
}

std::optional<int> PathTimeModel::RowOf(pathtime::PhaseQuantity quantity) const
{
    for (std::size_t i = 0; i < m_rows.size(); ++i)
        if (m_rows[i]->quantity == quantity)
            return static_cast<int>(i) + 1;
    return std::nullopt;
}

void PathTimeModel::SetVehicle(int vehicle)
{
    m_vehicle = vehicle;
    Refresh();
}

void PathTimeModel::Reread()
{
    m_rows.clear();
    m_columns = 0;
    m_shown.reset();
    const auto table = Table();
    if (!table)
        return;
    const bool turns = TurnsSomewhere(table->Phases());
    for (const pathtime::PhaseRow& row : pathtime::PhaseRows())
        if (turns || !row.ofTurning)
            m_rows.push_back(&row);
    m_columns = ViewColumn(table->EndColumn());
    m_shown = table->Phases();
}

void PathTimeModel::Follow()
{
    const auto table = Table();
    if (!table || !m_shown || !(*m_shown == table->Phases()))
        Refresh();
}

void PathTimeModel::Refresh()
{
    const int rows = rowCount();
    const int columns = m_columns;
    const auto before = m_rows;
    Reread();
    if (rows == rowCount() && columns == m_columns) {
        if (rows > 0 && columns > 0)
            emit dataChanged(index(0, 0), index(rows - 1, columns - 1));
        emit headerDataChanged(Qt::Vertical, 0, std::max(rows - 1, 0));
        return;
    }
    beginResetModel();
    endResetModel();
}

int PathTimeModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() || m_vehicle < 0 ? 0 : static_cast<int>(m_rows.size()) + 1;
}

int PathTimeModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_columns;
}

QVariant PathTimeModel::data(const QModelIndex& index, int role) const
{
    const auto table = Table();
    if (!table || !index.isValid())
        return {};
    const std::size_t column = PhaseColumn(index.column());
    const CWegZeitSpalte& phase = table->Phases().spalten[column];
    return index.row() == kKindRow ? KindData(phase, role) : NumberData(index.row(), column, role);
}

QVariant PathTimeModel::KindData(const CWegZeitSpalte& phase, int role) const
{
    const bool incomplete = pathtime::IsIncomplete(phase);
    switch (role) {
    case Qt::DisplayRole:
        return QString::fromUtf8(phase.IsUsed() ? PhasenArtName(phase.art) : "(frei)");
    case Qt::EditRole:
        return static_cast<int>(phase.art);
    case Qt::TextAlignmentRole:
        return static_cast<int>(Qt::AlignCenter);
    case Qt::ForegroundRole:
        return incomplete ? Colors().danger : phase.IsUsed() ? Colors().text : Colors().muted;
    case Qt::FontRole:
        return TextFont(1.0, phase.IsUsed());
    case Qt::ToolTipRole:
        return incomplete
                   ? QStringLiteral("Unvollständig: Es fehlt eine Angabe, zum Beispiel Zeit, Weg oder Verzögerung.")
                   : QVariant();
    default:
        return {};
    }
}

QVariant PathTimeModel::NumberData(int row, std::size_t column, int role) const
{
    const CWegZeitDat& phases = Table()->Phases();
    const CWegZeitSpalte& phase = phases.spalten[column];
    const pathtime::PhaseRow& quantity = Quantity(row);
    const bool editable = pathtime::IsEditable(phases, column, quantity.quantity);
    const bool empty = !phase.IsUsed() || (quantity.ofTurning && phase.art != PhasenArt::turning);
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return empty ? QString() : QString::fromStdString(krn::ShowNumber(phase.*quantity.value, quantity.format));
    case Qt::TextAlignmentRole:
        return static_cast<int>(Qt::AlignRight | Qt::AlignVCenter);
    case Qt::ForegroundRole:
        return editable ? Colors().text : Colors().resultText;
    case Qt::BackgroundRole:
        return editable ? Colors().field : Colors().result;
    case Qt::ToolTipRole:
        if (!editable && phase.IsUsed() && quantity.quantity == pathtime::PhaseQuantity::endSpeed)
            return QStringLiteral("Folgt aus der Phase davor in der Tabelle.");
        return {};
    default:
        return {};
    }
}

QVariant PathTimeModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Horizontal)
        return section == 0 ? QStringLiteral("1 (Kollision)") : QString::number(section + 1);
    if (section == kKindRow)
        return QStringLiteral("Phase");
    const krn::NumberFormat& format = Quantity(section).format;
    return QString::fromStdString(format.label + "  [" + krn::UnitOf(format) + "]");
}

Qt::ItemFlags PathTimeModel::flags(const QModelIndex& index) const
{
    const auto table = Table();
    if (!table || !index.isValid())
        return Qt::NoItemFlags;
    const Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    const bool editable = index.row() == kKindRow || pathtime::IsEditable(table->Phases(), PhaseColumn(index.column()),
                                                                          Quantity(index.row()).quantity);
    return editable ? flags | Qt::ItemIsEditable : flags;
}

bool PathTimeModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    auto table = Table();
    if (!table || !index.isValid() || role != Qt::EditRole)
        return false;
    const std::size_t column = PhaseColumn(index.column());
    if (index.row() == kKindRow) {
        table->SetKind(column, static_cast<PhasenArt>(value.toInt()));
        m_document.Commit(QStringLiteral("Phasenart"));
        return true;
    }
    const pathtime::PhaseRow& quantity = Quantity(index.row());
    const std::string refusal = table->Enter(column, quantity.quantity, value.toString().toStdString());
    if (!refusal.empty()) {
        emit refused(index, QString::fromStdString(refusal));
        return false;
    }
    m_document.Commit(QString::fromStdString(quantity.format.label));
    return true;
}

} // namespace desktop
