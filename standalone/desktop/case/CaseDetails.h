// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDialog>

class QLineEdit;

namespace desktop
{

class CaseDocument;

/// What the case is about, as it stands at the head of its reports.
class CaseDetailsDialog : public QDialog
{
    Q_OBJECT

  public:
    explicit CaseDetailsDialog(CaseDocument& document, QWidget* parent = nullptr);

    /// Writes the entries into the case: one step.
    void accept() override;

  private:
    CaseDocument& m_document;
    QLineEdit* m_title;
    QLineEdit* m_date;
    QLineEdit* m_place;
    QLineEdit* m_author;
};

} // namespace desktop
