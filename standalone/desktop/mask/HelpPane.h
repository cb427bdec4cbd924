// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The help pages of the masks (docs/masks/NNN-name.md), rendered.
#pragma once

#include "host/HostTypes.h"

#include <QTextBrowser>

#include <vector>

namespace desktop
{

class HelpPane : public QTextBrowser
{
    Q_OBJECT

  public:
    explicit HelpPane(QWidget* parent = nullptr);

    /// Stands for the page of the scene where a mask's number is asked for.
    static constexpr UINT kScene = 1;

    /// Shows the page of a mask; the list of pages when there is none or for 0.
    void ShowPage(UINT number);
    void backward() override;
    void forward() override;
    /// Number of the page shown, 0 for the list.
    UINT Page() const { return m_page; }
    /// A mask's page in Markdown, empty when it has none.
    static QString PageText(UINT number);
    QSize sizeHint() const override;

  protected:
    void changeEvent(QEvent* event) override;
    QVariant loadResource(int type, const QUrl& name) override;

  private:
    void Go(std::size_t place);
    void ShowMarkdown(const QString& markdown);
    void Decorate();
    QString ListOfPages() const;

    UINT m_page = 0;
    std::vector<UINT> m_visited; ///< pages in the order they were shown
    std::size_t m_place = 0;     ///< of the page shown among them
};

} // namespace desktop
