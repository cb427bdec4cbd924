// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/case/PhaseView.h"

#include "desktop/case/PathTimeModel.h"
#include "desktop/look/TextField.h"
#include "desktop/look/Theme.h"
#include "pathtime/PhaseTable.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QListWidget>
#include <QPointer>
#include <QScreen>
#include <QStyledItemDelegate>

#include <algorithm>
#include <utility>

namespace desktop
{
namespace
{

/// Edits numbers as text.
class PhaseDelegate : public QStyledItemDelegate
{
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&, const QModelIndex&) const override
    {
        auto* line = new TextField(parent);
        line->setFrame(false);
        line->setAlignment(Qt::AlignRight);
        return line;
    }
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override
    {
        if (const auto* line = qobject_cast<const QLineEdit*>(editor); line != nullptr && line->isModified())
            model->setData(index, line->text(), Qt::EditRole);
    }
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        return QStyledItemDelegate::sizeHint(option, index) + QSize(2 * Spacing(), Spacing() / 2);
    }
};

/// A list over the window that Esc gives up.
class KindList : public QListWidget
{
  public:
    using QListWidget::QListWidget;

  protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        if (event->key() == Qt::Key_Escape)
            close();
        else
            QListWidget::keyPressEvent(event);
    }
};

bool IsKind(const QModelIndex& index)
{
    return index.row() == PathTimeModel::kKindRow;
}

} // namespace

PhaseView::PhaseView(QWidget* parent) : QTableView(parent)
{
    setItemDelegate(new PhaseDelegate(this));
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                    QAbstractItemView::AnyKeyPressed);
    setTabKeyNavigation(true);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    FitRows();
}

void PhaseView::FitRows()
{
    verticalHeader()->setDefaultSectionSize(QFontMetrics(TextFont()).height() + Spacing() / 2);
}

void PhaseView::changeEvent(QEvent* event)
{
    QTableView::changeEvent(event);
    if (event->type() == QEvent::StyleChange || event->type() == QEvent::FontChange)
        FitRows();
}

int PhaseView::sizeHintForColumn(int column) const
{
    const QFontMetrics bold(TextFont(1.0, true));
    const QAbstractItemModel& phases = *model();
    int width = bold.horizontalAdvance(phases.index(PathTimeModel::kKindRow, column).data().toString());
    qsizetype digits = 0;
    for (int row = PathTimeModel::kKindRow + 1; row < phases.rowCount(); ++row)
        digits = std::max(digits, phases.index(row, column).data().toString().size());
    width = std::max(width, static_cast<int>(digits) * fontMetrics().horizontalAdvance(QLatin1Char('0')));
    return width + 3 * Spacing();
}

void PhaseView::OpenKinds(const QModelIndex& cell, const QString& beginning)
{
    const QPersistentModelIndex chosenFor(cell);
    auto* list = new KindList(this);
    list->setWindowFlags(Qt::Popup);
    list->setAttribute(Qt::WA_DeleteOnClose);
    list->setAccessibleName(QStringLiteral("Art der Phase"));
    list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    for (const PhasenArt kind : pathtime::OfferedKinds()) {
        auto* item = new QListWidgetItem(QString::fromUtf8(PhasenArtName(kind)), list);
        item->setData(Qt::UserRole, static_cast<int>(kind));
        if (item->data(Qt::UserRole) == cell.data(Qt::EditRole))
            list->setCurrentItem(item);
    }
    const auto take = [this, list, chosenFor](const QListWidgetItem* item) {
        if (!list->isVisible())
            return; // a click may come as two signals
        const QVariant kind = item->data(Qt::UserRole);
        list->close();
        if (chosenFor.isValid())
            model()->setData(chosenFor, kind, Qt::EditRole);
    };
    connect(list, &QListWidget::itemClicked, this, take);
    connect(list, &QListWidget::itemActivated, this, take);
    const int frame = 2 * list->frameWidth();
    QSize size(list->sizeHintForColumn(0) + frame + 2 * Spacing(), list->count() * list->sizeHintForRow(0) + frame);
    const QRect room = screen()->availableGeometry();
    size.setHeight(std::min(size.height(), room.height()));
    const QRect shown = visualRect(cell);
    QPoint at = viewport()->mapToGlobal(shown.bottomLeft());
    if (at.y() + size.height() > room.bottom())
        at.setY(std::max(room.top(), viewport()->mapToGlobal(shown.topLeft()).y() - size.height()));
    at.setX(std::clamp(at.x(), room.left(), std::max(room.left(), room.right() - size.width())));
    list->setGeometry(QRect(at, size.expandedTo({shown.width(), 0})));
    list->setFocus();
    list->show();
    if (!beginning.isEmpty())
        list->keyboardSearch(beginning);
}

bool PhaseView::edit(const QModelIndex& index, EditTrigger trigger, QEvent* event)
{
    if (!index.isValid() || !IsKind(index))
        return QTableView::edit(index, trigger, event);
    if ((editTriggers() & trigger) == 0)
        return false;
    QString beginning;
    if (trigger == AnyKeyPressed) {
        beginning = static_cast<QKeyEvent*>(event)->text();
        if (beginning.isEmpty() || !beginning.front().isLetter())
            return false;
    }
    OpenKinds(index, beginning);
    return true;
}

QModelIndex PhaseView::Neighbour(bool next) const
{
    const QModelIndex from = currentIndex();
    const int rows = model()->rowCount();
    const int cells = rows * model()->columnCount();
    for (int place = from.column() * rows + from.row() + (next ? 1 : -1); place >= 0 && place < cells;
         place += next ? 1 : -1) {
        const QModelIndex cell = model()->index(place % rows, place / rows);
        if ((cell.flags() & Qt::ItemIsEditable) != 0)
            return cell;
    }
    return from;
}

void PhaseView::Go(bool next)
{
    if (const QModelIndex cell = Neighbour(next); cell.isValid())
        setCurrentIndex(cell);
}

QModelIndex PhaseView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    if ((action == MoveNext || action == MovePrevious) && currentIndex().isValid())
        return Neighbour(action == MoveNext);
    return QTableView::moveCursor(action, modifiers);
}

void PhaseView::keyPressEvent(QKeyEvent* event)
{
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!enter || state() == EditingState || !currentIndex().isValid())
        QTableView::keyPressEvent(event);
    else if (IsKind(currentIndex()))
        OpenKinds(currentIndex());
    else
        Go(true);
}

void PhaseView::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint)
{
    QTableView::closeEditor(editor, QAbstractItemDelegate::NoHint);
    if (std::exchange(m_stay, false))
        return;
    if (hint == QAbstractItemDelegate::SubmitModelCache || hint == QAbstractItemDelegate::EditNextItem)
        Go(true);
    else if (hint == QAbstractItemDelegate::EditPreviousItem)
        Go(false);
}

} // namespace desktop
