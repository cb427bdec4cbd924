// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The help pages of the masks (docs/masks/NNN-name.md), rendered.
#pragma once

#include "host/HostTypes.h"

#include <QTextBrowser>

namespace desktop
{

class HelpPane : public QTextBrowser
{
    Q_OBJECT

  public:
    explicit HelpPane(QWidget* parent = nullptr);

    /// Shows the page of a mask; the list of pages when there is none or for 0.
    void ShowPage(UINT number);
    /// Number of the page shown, 0 for the list.
    UINT Page() const { return m_page; }
    /// A mask's page in Markdown, empty when it has none.
    static QString PageText(UINT number);
    QSize sizeHint() const override;

  protected:
    void changeEvent(QEvent* event) override;
    QVariant loadResource(int type, const QUrl& name) override;

  private:
    void ShowMarkdown(const QString& markdown);
    void Decorate();
    QString ListOfPages() const;

    UINT m_page = 0;
};

} // namespace desktop
