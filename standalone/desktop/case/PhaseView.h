// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QTableView>

namespace desktop
{

/// The table of phases under the keyboard: Enter and Tab go on to the next cell that takes an entry, down the phase and
/// then to the next one. The kind of a phase is chosen from a list that opens over the cell by Enter, F2, a letter or a
/// double click and is as large as its entries.
class PhaseView : public QTableView
{
    Q_OBJECT

  public:
    explicit PhaseView(QWidget* parent = nullptr);

    /// Opens the list of kinds over a cell, with the first entry chosen that begins with the text.
    void OpenKinds(const QModelIndex& cell, const QString& beginning = {});
    /// The cell being entered was not taken: stays there.
    void Stay() { m_stay = true; }

  protected:
    bool edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    /// By the number of digits: a case may have many numbers.
    int sizeHintForColumn(int column) const override;
    void changeEvent(QEvent* event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;

  protected slots:
    void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;

  private:
    /// The next or the previous cell that takes an entry; the same when there is none.
    QModelIndex Neighbour(bool next) const;
    void Go(bool next);
    void FitRows();

    bool m_stay = false;
};

} // namespace desktop
