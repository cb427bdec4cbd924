// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/mask/GridControl.h"

#include "desktop/look/TextField.h"
#include "desktop/mask/MaskWindow.h"
#include "framework/UserInput.h"
#include "krn/ControlMeaning.h"

#include <QAbstractTableModel>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QStyledItemDelegate>

#include <algorithm>

namespace desktop
{

using framework::Window;

/// The cells of the control, which may change at any time: nothing of them is kept but their number.
class GridControl::Model : public QAbstractTableModel
{
  public:
    Model(Window& control, QObject* parent) : QAbstractTableModel(parent), m_control(&control) { Refresh(); }

    void Detach()
    {
        beginResetModel();
        m_control = nullptr;
        m_rows = 0;
        m_columns.clear();
        endResetModel();
    }

    /// Shows what the control holds now.
    void Refresh()
    {
        const framework::Grid& grid = *m_control->grid;
        const int rows = static_cast<int>(grid.rows.size());
        if (grid.columns != m_columns) {
            beginResetModel();
            m_columns = grid.columns;
            m_rows = rows;
            endResetModel();
            return;
        }
        if (rows > m_rows) {
            beginInsertRows({}, m_rows, rows - 1);
            m_rows = rows;
            endInsertRows();
        } else if (rows < m_rows) {
            beginRemoveRows({}, rows, m_rows - 1);
            m_rows = rows;
            endRemoveRows();
        }
        if (m_rows > 0 && !m_columns.empty())
            emit dataChanged(index(0, 0), index(m_rows - 1, columnCount({}) - 1));
    }

    int rowCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : m_rows; }
    int columnCount(const QModelIndex& parent) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(m_columns.size());
    }
    QVariant data(const QModelIndex& index, int role) const override
    {
        if (m_control == nullptr || !m_control->grid->Holds(index.row(), index.column()))
            return {};
        if (role == Qt::DisplayRole || role == Qt::EditRole)
            return QString::fromStdString(m_control->grid->Cell(index.row(), index.column()));
        if (role == Qt::TextAlignmentRole)
            return Alignment(index.column());
        return {};
    }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override
    {
        if (orientation != Qt::Horizontal || section < 0 || section >= columnCount({}))
            return {};
        if (role == Qt::DisplayRole)
            return QString::fromStdString(m_columns[static_cast<std::size_t>(section)].heading);
        return role == Qt::TextAlignmentRole ? Alignment(section) : QVariant();
    }
    Qt::ItemFlags flags(const QModelIndex& index) const override
    {
        Qt::ItemFlags flags = QAbstractTableModel::flags(index);
        if (index.isValid() && m_columns[static_cast<std::size_t>(index.column())].editable)
            flags |= Qt::ItemIsEditable;
        return flags;
    }

  private:
    QVariant Alignment(int column) const
    {
        const bool right = m_columns[static_cast<std::size_t>(column)].rightAligned;
        return static_cast<int>(Qt::AlignVCenter | (right ? Qt::AlignRight : Qt::AlignLeft));
    }

    Window* m_control;
    int m_rows = 0;
    std::vector<CGridCtrl::Column> m_columns;
};

class GridControl::Delegate : public QStyledItemDelegate
{
  public:
    explicit Delegate(GridControl& grid) : QStyledItemDelegate(&grid), m_grid(grid) {}

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&, const QModelIndex& index) const override
    {
        auto* editor = new TextField(parent);
        editor->setFrame(false);
        editor->setAlignment(static_cast<Qt::Alignment>(index.data(Qt::TextAlignmentRole).toInt()));
        const QPersistentModelIndex cell(index);
        connect(editor, &QLineEdit::textEdited, &m_grid,
                [grid = &m_grid, cell](const QString& text) { grid->Typed(cell, text); });
        m_grid.m_editor = editor;
        return editor;
    }
    void setModelData(QWidget*, QAbstractItemModel*, const QModelIndex&) const override { m_grid.Finish(); }

  private:
    GridControl& m_grid;
};

GridControl::GridControl(Window& control, MaskWindow& mask)
    : QTableView(&mask), ControlView(control, mask), m_model(new Model(control, this))
{
    setModel(m_model);
    setItemDelegate(new Delegate(*this));
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::ContiguousSelection);
    setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                    QAbstractItemView::AnyKeyPressed);
    setTabKeyNavigation(false); // to the next control
    setAlternatingRowColors(true);
    setWordWrap(false);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    horizontalHeader()->setHighlightSections(false);
    setAccessibleName(QString::fromStdString(krn::LabelOf(control)));
}

void GridControl::Sync()
{
    SyncVisibility();
    setEnabled(m_control->enabled);
    // What was typed has been taken, refused or dropped by the mask.
    if (m_editor != nullptr && !m_control->modified)
        closeEditor(m_editor, QAbstractItemDelegate::NoHint);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + fontMetrics().height() / 3);
    const QScopedValueRollback<bool> syncing(m_syncing, true);
    m_model->Refresh();
    SyncSelection();
}

void GridControl::SyncSelection()
{
    const framework::Grid& grid = *m_control->grid;
    const int columns = m_model->columnCount({});
    if (grid.firstSelected < 0 || columns == 0) {
        selectionModel()->clearSelection();
        return;
    }
    const QItemSelection wanted(m_model->index(grid.firstSelected, 0), m_model->index(grid.lastSelected, columns - 1));
    if (selectionModel()->selection() != wanted)
        selectionModel()->select(wanted, QItemSelectionModel::ClearAndSelect);
}

void GridControl::Detach()
{
    const QScopedValueRollback<bool> syncing(m_syncing, true);
    m_model->Detach();
    ControlView::Detach();
}

void GridControl::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected)
{
    QTableView::selectionChanged(selected, deselected);
    if (m_syncing || m_control == nullptr)
        return;
    const QModelIndexList rows = selectionModel()->selectedRows();
    if (rows.isEmpty())
        return;
    const auto [first, last] =
        std::minmax_element(rows.begin(), rows.end(), [](const auto& a, const auto& b) { return a.row() < b.row(); });
    const int from = first->row();
    const int to = last->row();
    const framework::Grid& grid = *m_control->grid;
    if (from == grid.firstSelected && to == grid.lastSelected)
        return;
    m_mask.Act([&] { framework::SelectRows(*m_control, from, to); });
    if (m_control != nullptr)
        Sync(); // the framework decides
}

void GridControl::Typed(const QModelIndex& cell, const QString& text)
{
    if (m_control != nullptr)
        m_mask.Act([&] { framework::TypeCell(*m_control, cell.row(), cell.column(), text.toStdString()); });
}

void GridControl::Finish()
{
    if (m_control != nullptr && m_control->modified)
        m_mask.Act([this] { framework::FinishEntry(*m_control); });
}

void GridControl::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint)
{
    if (editor != m_editor)
        return; // closed already, by what its entry did
    m_editor = nullptr;
    if (m_control != nullptr && hint == QAbstractItemDelegate::RevertModelCache)
        framework::DiscardCell(*m_control);
    QTableView::closeEditor(editor, hint);
}

void GridControl::keyPressEvent(QKeyEvent* event)
{
    // Return in a cell that is being edited ends the entry and nothing more.
    if (m_editor != nullptr && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter))
        return;
    QTableView::keyPressEvent(event);
}

} // namespace desktop
