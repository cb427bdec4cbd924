// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Opens a mask by a few letters of its title or by its number.
#pragma once

#include "host/HostTypes.h"

#include <QFrame>
#include <QPointer>
#include <QString>

#include <vector>

struct MaskEntry;
class QLineEdit;
class QListWidget;

namespace desktop
{

/// German name of a subsystem, as menus show it.
QString SubsystemName(int subsystem);

/// The masks that fit what was typed, those that are built first, then the best. Letters may be left out but not
/// exchanged; case, umlauts (ü = u = ue) and blanks do not count. Nothing typed fits all.
std::vector<const MaskEntry*> FindMasks(const QString& typed);

class QuickOpener : public QFrame
{
    Q_OBJECT

  public:
    explicit QuickOpener(QWidget* parent);

    /// Appears over the parent with an empty field.
    void Open();

  signals:
    void chosen(UINT number);

  protected:
    bool eventFilter(QObject* object, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void Fill(const QString& typed);
    void Choose();
    void Step(int by);

    QLineEdit* m_field;
    QListWidget* m_list;
    QPointer<QWidget> m_before; // had the focus
};

} // namespace desktop
