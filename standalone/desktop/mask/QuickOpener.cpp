// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/mask/QuickOpener.h"

#include "desktop/look/Theme.h"
#include "frame/MaskTable.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

#include <algorithm>
#include <optional>
#include <utility>

namespace desktop
{
namespace
{

constexpr int kNumberRole = Qt::UserRole;
constexpr int kSubsystemRole = Qt::UserRole + 1;
constexpr int kLeastWidth = 520;
constexpr int kRows = 9;

/// Small letters without blanks and signs; ä, ö, ü, ß as they are written without.
QString Folded(const QString& text)
{
    QString out;
    for (const QChar c : text.toLower()) {
        switch (c.unicode()) {
        case u'ä':
            out += u'a';
            break;
        case u'ö':
            out += u'o';
            break;
        case u'ü':
            out += u'u';
            break;
        case u'ß':
            out += QStringLiteral("ss");
            break;
        default:
            if (c.isLetterOrNumber())
                out += c;
        }
    }
    return out;
}

/// "ue" as somebody types it who has no "ü".
QString WithoutDigraphs(QString text)
{
    return text.replace(QStringLiteral("ae"), QStringLiteral("a"))
        .replace(QStringLiteral("oe"), QStringLiteral("o"))
        .replace(QStringLiteral("ue"), QStringLiteral("u"));
}

// What fits worse stands further down; within one of these the order is that of the numbers.
constexpr int kNumberFits = 0;
constexpr int kTitleBegins = 1;
constexpr int kWordBegins = 2;
constexpr int kHolds = 3;
constexpr int kLettersFit = 4; // plus the letters skipped

/// How badly `wanted` fits into the words; nothing when it does not.
std::optional<int> Misfit(const QString& wanted, const QStringList& words)
{
    const QString text = words.join(QString());
    if (text.startsWith(wanted))
        return kTitleBegins;
    qsizetype start = 0;
    for (const QString& word : words) {
        if (QStringView(text).mid(start).startsWith(wanted))
            return kWordBegins;
        start += word.size();
    }
    if (text.contains(wanted))
        return kHolds;
    std::optional<int> best;
    for (qsizetype from = 0; from < text.size(); ++from) {
        qsizetype found = 0;
        qsizetype at = from;
        for (; at < text.size() && found < wanted.size(); ++at)
            if (text[at] == wanted[found])
                ++found;
        if (found < wanted.size())
            break;
        const int misfit = kLettersFit + static_cast<int>(at - from - wanted.size());
        best = std::min(best.value_or(misfit), misfit);
    }
    return best;
}

std::optional<int> Misfit(const QString& typed, const MaskEntry& mask)
{
    const QString wanted = Folded(typed);
    if (wanted.isEmpty() || QString::number(mask.number).startsWith(wanted))
        return kNumberFits;
    QStringList words;
    QStringList plainWords;
    for (const QString& word : QString::fromUtf8(mask.title).split(QLatin1Char(' '))) {
        words.append(Folded(word));
        plainWords.append(WithoutDigraphs(words.back()));
    }
    const auto misfit = Misfit(wanted, words);
    return misfit ? misfit : Misfit(WithoutDigraphs(wanted), plainWords);
}

/// Number at the left, title, subsystem at the right.
class MaskItem : public QStyledItemDelegate
{
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const override
    {
        return {0, option.fontMetrics.height() + Spacing() + Spacing() / 2};
    }
    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        const SchemeColors& c = Colors();
        const bool usable = (index.flags() & Qt::ItemIsEnabled) != 0;
        const int gap = Spacing();
        if (option.state & QStyle::State_Selected)
            painter->fillRect(option.rect, c.selection);
        else if (usable && option.state & QStyle::State_MouseOver)
            painter->fillRect(option.rect, c.hover);
        const QRect line = option.rect.adjusted(gap, 0, -gap, 0);
        painter->setFont(TextFont(1.0, true));
        painter->setPen(usable ? c.accent : c.muted);
        painter->drawText(line, Qt::AlignVCenter | Qt::AlignLeft, index.data(kNumberRole).toString());
        const int numberWidth = QFontMetrics(TextFont(1.0, true)).horizontalAdvance(QStringLiteral("0000"));
        painter->setFont(TextFont());
        painter->setPen(usable ? c.text : c.muted);
        painter->drawText(line.adjusted(numberWidth, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft,
                          index.data(Qt::DisplayRole).toString());
        painter->setFont(TextFont(0.9));
        painter->setPen(c.muted);
        painter->drawText(line, Qt::AlignVCenter | Qt::AlignRight,
                          usable ? index.data(kSubsystemRole).toString() : QStringLiteral("nicht enthalten"));
    }
};

} // namespace

QString SubsystemName(int subsystem)
{
    switch (subsystem) {
    case 2:
        return QStringLiteral("Fahrdynamik");
    case 3:
        return QStringLiteral("Fahrmanöver und Vermeidbarkeit");
    case 4:
        return QStringLiteral("Kollision und Spuren");
    case 5:
        return QStringLiteral("Messdaten einlesen");
    case 6:
        return QStringLiteral("Video");
    case 7:
        return QStringLiteral("Taschenrechner");
    default:
        return {};
    }
}

std::vector<const MaskEntry*> FindMasks(const QString& typed)
{
    std::vector<std::pair<int, const MaskEntry*>> fits;
    for (const MaskEntry& mask : MaskTable())
        if (const auto misfit = Misfit(typed, mask))
            fits.emplace_back(*misfit, &mask);
    std::stable_sort(fits.begin(), fits.end(), [](const auto& a, const auto& b) {
        const bool aBuilt = a.second->create != nullptr;
        const bool bBuilt = b.second->create != nullptr;
        return aBuilt != bBuilt ? aBuilt : a.first < b.first;
    });
    std::vector<const MaskEntry*> masks;
    for (const auto& fit : fits)
        masks.push_back(fit.second);
    return masks;
}

QuickOpener::QuickOpener(QWidget* parent) : QFrame(parent), m_field(new QLineEdit), m_list(new QListWidget)
{
    setAutoFillBackground(true);
    setObjectName(QStringLiteral("quickOpener"));
    m_field->setPlaceholderText(QStringLiteral("Maske öffnen: Nummer oder ein Teil des Titels"));
    m_field->setAccessibleName(m_field->placeholderText());
    m_list->setFocusPolicy(Qt::NoFocus);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setItemDelegate(new MaskItem(m_list));
    m_list->setMouseTracking(true);
    m_list->viewport()->setAutoFillBackground(false);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Spacing(), Spacing(), Spacing(), Spacing());
    layout->setSpacing(Spacing());
    layout->addWidget(m_field);
    layout->addWidget(m_list);
    m_field->installEventFilter(this);
    connect(m_field, &QLineEdit::textChanged, this, &QuickOpener::Fill);
    connect(m_list, &QListWidget::itemClicked, this, &QuickOpener::Choose);
    hide();
}

void QuickOpener::Open()
{
    m_before = QApplication::focusWidget();
    const int width = qMin(parentWidget()->width() - 4 * Spacing(), qRound(kLeastWidth * CurrentFontScale()));
    const int row = fontMetrics().height() + Spacing() + Spacing() / 2;
    const int height = m_field->sizeHint().height() + 3 * Spacing() + kRows * row + 2;
    setGeometry((parentWidget()->width() - width) / 2, parentWidget()->height() / 10, width,
                qMin(height, parentWidget()->height() - parentWidget()->height() / 10));
    m_field->clear();
    Fill({});
    show();
    raise();
    m_field->setFocus(Qt::ShortcutFocusReason);
}

void QuickOpener::Fill(const QString& typed)
{
    m_list->clear();
    int first = -1;
    for (const MaskEntry* mask : FindMasks(typed)) {
        auto* item = new QListWidgetItem(QString::fromUtf8(mask->title).trimmed(), m_list);
        item->setData(kNumberRole, mask->number);
        item->setData(kSubsystemRole, SubsystemName(mask->subsystem));
        if (mask->create == nullptr)
            item->setFlags(Qt::NoItemFlags);
        else if (first < 0)
            first = m_list->count() - 1;
    }
    m_list->setCurrentRow(first);
}

void QuickOpener::Step(int by)
{
    for (int row = m_list->currentRow() + by; row >= 0 && row < m_list->count(); row += by)
        if (m_list->item(row)->flags() & Qt::ItemIsEnabled) {
            m_list->setCurrentRow(row);
            return;
        }
}

void QuickOpener::Choose()
{
    const QListWidgetItem* item = m_list->currentItem();
    if (item == nullptr || !(item->flags() & Qt::ItemIsEnabled))
        return;
    const UINT number = item->data(kNumberRole).toUInt();
    hide();
    emit chosen(number);
}

bool QuickOpener::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() == QEvent::FocusOut && isVisible() &&
        static_cast<QFocusEvent*>(event)->reason() != Qt::ActiveWindowFocusReason) {
        hide();
    } else if (event->type() == QEvent::ShortcutOverride) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Escape || key == Qt::Key_Return || key == Qt::Key_Enter) {
            event->accept();
            return true;
        }
    } else if (event->type() == QEvent::KeyPress) {
        switch (static_cast<QKeyEvent*>(event)->key()) {
        case Qt::Key_Escape:
            hide();
            if (m_before != nullptr)
                m_before->setFocus(Qt::OtherFocusReason);
            return true;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            Choose();
            return true;
        case Qt::Key_Up:
            Step(-1);
            return true;
        case Qt::Key_Down:
        case Qt::Key_Tab:
            Step(+1);
            return true;
        default:
            break;
        }
    }
    return QFrame::eventFilter(object, event);
}

void QuickOpener::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), Colors().surface);
    painter.setPen(Colors().accent);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

} // namespace desktop
