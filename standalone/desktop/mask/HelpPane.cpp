// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/mask/HelpPane.h"

#include "desktop/look/Theme.h"
#include "frame/MaskTable.h"

#include <QDir>
#include <QEvent>
#include <QFile>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QTextFrame>
#include <QTextOption>
#include <QTextTable>

#include <algorithm>

namespace desktop
{
namespace
{

constexpr const char* kPages = ":/masks";
constexpr const char* kScenePage = ":/desk/szene.md";
constexpr int kCodeProperty = QTextFormat::UserProperty + 1; // a line of code that was found as such
constexpr double kLineHeight = 108.0;                        // percent

/// Path of a mask's page, empty when it has none.
QString PagePath(UINT number)
{
    if (number == HelpPane::kScene)
        return QString::fromLatin1(kScenePage);
    const QStringList names = QDir(QString::fromLatin1(kPages)).entryList({QStringLiteral("%1-*.md").arg(number)});
    return names.isEmpty() ? QString() : QString::fromLatin1(kPages) + QLatin1Char('/') + names.front();
}

/// The number a page's file name begins with, 0 for none.
UINT NumberOf(const QString& fileName)
{
    if (QString::fromLatin1(kScenePage).endsWith(QLatin1Char('/') + fileName))
        return HelpPane::kScene;
    return fileName.section(QLatin1Char('-'), 0, 0).toUInt();
}

bool IsCode(const QTextBlock& block)
{
    const QTextBlockFormat format = block.blockFormat();
    return block.isValid() &&
           (format.hasProperty(QTextFormat::BlockCodeFence) || format.hasProperty(QTextFormat::BlockCodeLanguage) ||
            format.nonBreakableLines() || format.boolProperty(kCodeProperty));
}

} // namespace

HelpPane::HelpPane(QWidget* parent) : QTextBrowser(parent)
{
    setOpenLinks(false);
    setFrameShape(QFrame::NoFrame);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    document()->setDocumentMargin(2.0 * Spacing());
    connect(this, &QTextBrowser::anchorClicked, this,
            [this](const QUrl& link) { ShowPage(NumberOf(link.fileName())); });
}

QSize HelpPane::sizeHint() const
{
    return QSize(420, 600) * CurrentFontScale();
}

QString HelpPane::PageText(UINT number)
{
    const QString path = PagePath(number);
    QFile file(path);
    return !path.isEmpty() && file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

void HelpPane::ShowPage(UINT number)
{
    if (m_visited.empty() || m_visited[m_place] != number) {
        m_visited.resize(m_visited.empty() ? 0 : m_place + 1);
        m_visited.push_back(number);
    }
    Go(m_visited.size() - 1);
}

void HelpPane::backward()
{
    if (m_place > 0)
        Go(m_place - 1);
}

void HelpPane::forward()
{
    if (m_place + 1 < m_visited.size())
        Go(m_place + 1);
}

void HelpPane::Go(std::size_t place)
{
    m_place = place;
    emit backwardAvailable(m_place > 0);
    emit forwardAvailable(m_place + 1 < m_visited.size());
    const UINT number = m_visited[m_place];
    const QString text = PageText(number);
    m_page = text.isEmpty() ? 0 : number;
    ShowMarkdown(text.isEmpty() ? ListOfPages() : text);
}

QString HelpPane::ListOfPages() const
{
    QString text = QStringLiteral("# Hilfe\n\n- [Die Szene](szene.md)\n");
    for (const MaskEntry& mask : MaskTable()) {
        const QString title = QString::fromUtf8(mask.title).trimmed();
        if (const QString path = PagePath(mask.number); !path.isEmpty())
            text += QStringLiteral("- [%1 %2](%3)\n").arg(mask.number).arg(title, QFileInfo(path).fileName());
    }
    return text;
}

void HelpPane::ShowMarkdown(const QString& markdown)
{
    document()->setDefaultFont(TextFont());
    document()->setIndentWidth(2.5 * Spacing());
    document()->setMarkdown(markdown, QTextDocument::MarkdownDialectGitHub);
    Decorate();
    moveCursor(QTextCursor::Start);
    verticalScrollBar()->setValue(0);
}

/// Markdown brings structure only; this gives headings, formulas and tables their look.
void HelpPane::Decorate()
{
    const SchemeColors& c = Colors();
    const double gap = Spacing();
    QTextCursor cursor(document());
    cursor.beginEditBlock();
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        cursor.setPosition(block.position());
        QTextBlockFormat format = block.blockFormat();
        const int level = format.headingLevel();
        const bool inTable = cursor.currentTable() != nullptr;
        const bool code = IsCode(block);
        format.setLineHeight(kLineHeight, QTextBlockFormat::ProportionalHeight);
        QTextCharFormat letters;
        if (level > 0) {
            format.setTopMargin(level == 1 ? 0.0 : 1.8 * gap);
            format.setBottomMargin(0.6 * gap);
            letters.setFont(TextFont(level == 1 ? 1.45 : level == 2 ? 1.15 : 1.0, true));
            letters.setForeground(level == 1 ? c.text : c.accent);
        } else if (code) {
            const bool first = !IsCode(block.previous());
            format.setBackground(c.result);
            format.setLeftMargin(gap);
            format.setTopMargin(first ? gap : 0.0);
            format.setIndent(0);
            format.setProperty(kCodeProperty, true);
            format.setNonBreakableLines(false); // a long formula goes on in the next line
            QFont font = TextFont();
            font.setFamilies(QStringList{QStringLiteral("Noto Sans Mono")} + font.families());
            letters.setFont(font);
            letters.setForeground(c.resultText);
        } else if (!inTable) {
            format.setBottomMargin(block.textList() != nullptr ? 0.3 * gap : 0.9 * gap);
        }
        cursor.setBlockFormat(format);
        if (level > 0 || code) {
            cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
            if (level > 0)
                cursor.setCharFormat(letters); // Markdown's own relative size must go
            else
                cursor.mergeCharFormat(letters);
        }
    }
    for (QTextFrame* frame : document()->rootFrame()->childFrames()) {
        auto* table = qobject_cast<QTextTable*>(frame);
        if (table == nullptr)
            continue;
        QTextTableFormat format = table->format();
        format.setBorder(1.0);
        format.setBorderCollapse(true);
        format.setBorderBrush(c.line);
        format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
        format.setCellPadding(0.6 * gap);
        format.setCellSpacing(0.0);
        format.clearColumnWidthConstraints();
        format.setWidth(QTextLength(QTextLength::PercentageLength, 99)); // the border is not counted
        table->setFormat(format);
    }
    cursor.endEditBlock();
}

QVariant HelpPane::loadResource(int type, const QUrl& name)
{
    // Pictures of a page lie beside it.
    if (type == QTextDocument::ImageResource && name.isRelative())
        return QTextBrowser::loadResource(
            type, QUrl(QStringLiteral("qrc") + QString::fromLatin1(kPages) + QLatin1Char('/') + name.fileName()));
    return QTextBrowser::loadResource(type, name);
}

void HelpPane::changeEvent(QEvent* event)
{
    QTextBrowser::changeEvent(event);
    if (event->type() == QEvent::StyleChange && !m_visited.empty())
        Go(m_place);
}

} // namespace desktop
