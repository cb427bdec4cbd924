// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/case/CaseDetails.h"

#include "desktop/case/CaseDocument.h"
#include "desktop/look/TextField.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>

namespace desktop
{
namespace
{

constexpr int kLongest = 200;
constexpr int kWidth = 420;

} // namespace

CaseDetailsDialog::CaseDetailsDialog(CaseDocument& document, QWidget* parent) : QDialog(parent), m_document(document)
{
    setWindowTitle(QStringLiteral("Angaben zum Fall"));
    auto* form = new QFormLayout(this);
    const auto add = [&](const QString& label, const std::string& text, const QString& example) {
        auto* field = new TextField(QString::fromStdString(text));
        field->setMaxLength(kLongest);
        field->setMinimumWidth(kWidth);
        field->setPlaceholderText(example);
        form->addRow(label, field);
        return field;
    };
    const CRuvData& content = document.Data();
    m_title = add(QStringLiteral("A&ktenzeichen oder Titel:"), content.Title(), QStringLiteral("12 C 34/26"));
    m_date = add(QStringLiteral("Unfall&datum:"), content.Angaben().datum, QStringLiteral("3. Mai 2026, 17:40 Uhr"));
    m_place = add(QStringLiteral("&Unfallort:"), content.Angaben().ort, QStringLiteral("Straße, Ort"));
    m_author = add(QStringLiteral("&Bearbeiter:"), content.Angaben().bearbeiter, QStringLiteral("Name"));
    auto* hint = new QLabel(QStringLiteral("Die Angaben stehen am Kopf der Protokolle."));
    hint->setEnabled(false);
    form->addRow(hint);
    auto* buttons = new QDialogButtonBox;
    buttons->addButton(QStringLiteral("&OK"), QDialogButtonBox::AcceptRole)->setDefault(true);
    buttons->addButton(QStringLiteral("&Abbrechen"), QDialogButtonBox::RejectRole);
    connect(buttons, &QDialogButtonBox::accepted, this, &CaseDetailsDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &CaseDetailsDialog::reject);
    form->addRow(buttons);
}

void CaseDetailsDialog::accept()
{
    const auto text = [](const QLineEdit* field) { return field->text().trimmed().toStdString(); };
    CRuvData& content = m_document.Data();
    content.Title() = text(m_title);
    content.Angaben() = {text(m_date), text(m_place), text(m_author)};
    m_document.Commit(QStringLiteral("Angaben zum Fall"));
    QDialog::accept();
}

} // namespace desktop
