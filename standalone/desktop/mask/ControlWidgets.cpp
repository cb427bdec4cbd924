// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/mask/ControlWidgets.h"

#include "desktop/look/Style.h"
#include "desktop/look/StyleParts.h"
#include "desktop/look/Theme.h"
#include "desktop/look/VehicleIcon.h"
#include "desktop/mask/EditControl.h"
#include "desktop/mask/FieldControl.h"
#include "desktop/mask/GridControl.h"
#include "desktop/mask/MaskWindow.h"
#include "framework/UiThread.h"
#include "framework/UserInput.h"
#include "host/Bindings.h"
#include "host/CDialog.h"
#include "host/CRuvData.h"
#include "host/RuvCfg.h"
#include "krn/ControlMeaning.h"

#include <QCheckBox>
#include <QComboBox>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSlider>
#include <QStyle>
#include <QWheelEvent>

#include <algorithm>
#include <optional>

namespace desktop
{

using framework::Kind;
using framework::Window;

namespace
{

/// Names the widget for aids that read the screen.
void Describe(QWidget& widget, const Window& control)
{
    std::string label = krn::LabelOf(control);
    if (const std::string unit = krn::UnitOf(control); !unit.empty())
        label += " " + unit;
    widget.setAccessibleName(QString::fromStdString(label));
}

/// Push buttons, check boxes and radio buttons. They take the focus by Tab only: after a click the framework moves it,
/// once it knows that the entry left behind is good.
template <class Button> class ButtonControl : public Button, public ControlView
{
  public:
    ButtonControl(Window& control, MaskWindow& mask) : Button(&mask), ControlView(control, mask)
    {
        this->setFocusPolicy(Qt::TabFocus);
        if constexpr (std::is_same_v<Button, QRadioButton>)
            this->setAutoExclusive(false);
        if constexpr (std::is_same_v<Button, QPushButton>)
            this->setAutoDefault(false);
        QObject::connect(this, &QAbstractButton::clicked, this, [this] {
            if (m_control == nullptr)
                return;
            m_mask.Act([this] { framework::Click(*m_control); });
            if (m_control != nullptr)
                Sync(); // the framework decides whether the mark changes
        });
    }
    QWidget* Widget() override { return this; }
    void Sync() override
    {
        SyncVisibility();
        this->setEnabled(m_control->enabled);
        if (const QString text = QtText(m_control->text); text != this->text()) {
            this->setText(text);
            this->setShortcut(QKeySequence()); // the mask window watches the mnemonics
            const QString letter = QString::fromStdString(framework::MnemonicOf(m_control->text)).toUpper();
            QStringList keys;
            if (!letter.isEmpty())
                keys << QStringLiteral("Alt+") + letter;
            if (m_control->defaultButton)
                keys << QStringLiteral("Eingabetaste");
            this->setToolTip(keys.join(QStringLiteral(", ")));
        }
        if constexpr (std::is_same_v<Button, QPushButton>) {
            this->setDefault(m_control->defaultButton);
            if (m_control->check != 0)
                this->setCheckable(true); // pressed in
            this->setChecked(m_control->check != 0);
            if (m_control->check == 0)
                this->setCheckable(false); // afterwards: this alone would not be painted
        } else {
            if constexpr (std::is_same_v<Button, QCheckBox>)
                this->setTristate(m_control->check == 2);
            this->setChecked(m_control->check != 0);
        }
    }
};

class ComboControl : public QComboBox, public ControlView
{
  public:
    ComboControl(Window& control, MaskWindow& mask) : QComboBox(&mask), ControlView(control, mask)
    {
        setFocusPolicy(Qt::TabFocus);
        setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        Describe(*this, control);
        connect(this, &QComboBox::activated, this, [this](int index) {
            if (m_control == nullptr || index == m_control->selection)
                return;
            m_mask.Act([this, index] { framework::Select(*m_control, index); });
            if (m_control != nullptr)
                Sync();
        });
    }
    QWidget* Widget() override { return this; }
    void Sync() override
    {
        SyncVisibility();
        setEnabled(m_control->enabled);
        const QSignalBlocker quiet(this);
        QStringList items;
        for (const std::string& item : m_control->items)
            items.append(QString::fromStdString(item));
        QStringList shown;
        for (int i = 0; i < count(); ++i)
            shown.append(itemText(i));
        if (items != shown) {
            clear();
            addItems(items);
        }
        setCurrentIndex(m_control->selection);
        SyncColors();
    }
    void SyncColors() override
    {
        const auto* dialog = dynamic_cast<CMDIRechDialog*>(m_control->parent->object);
        if (dialog != nullptr && dynamic_cast<CFzgCombo*>(dialog->FindBinding(m_control->id)) != nullptr)
            ShowVehicleColors(dialog->RuvData());
    }

  protected:
    void wheelEvent(QWheelEvent* event) override { event->ignore(); } // scrolling past must not choose

  private:
    /// The vehicle an entry of a choice of vehicles stands for; the text begins with its number, counted from 1.
    std::optional<std::size_t> VehicleOf(int index) const
    {
        const QString text = itemText(index);
        const auto end = std::find_if(text.begin(), text.end(), [](QChar c) { return !c.isDigit(); });
        const int number = text.left(end - text.begin()).toInt();
        if (number < 1 || number > static_cast<int>(CRuvData::kFahrzeuge))
            return std::nullopt;
        return static_cast<std::size_t>(number - 1);
    }

    void ShowVehicleColors(const CRuvData& ruvData)
    {
        QColor chosen;
        for (int i = 0; i < count(); ++i) {
            const auto vehicle = VehicleOf(i);
            if (!vehicle)
                continue;
            const CKfzDaten& shown = ruvData.KfzDat(*vehicle);
            setItemIcon(i, VehicleIcon(shown));
            if (i == currentIndex())
                chosen = FromColorRef(shown.color);
        }
        setProperty(kTintProperty, RuvCfg.useVehicleColors ? chosen : QColor());
        update();
    }
};

class ListControl : public QListWidget, public ControlView
{
  public:
    ListControl(Window& control, MaskWindow& mask) : QListWidget(&mask), ControlView(control, mask)
    {
        Describe(*this, control);
        connect(this, &QListWidget::currentRowChanged, this, [this](int index) {
            if (m_control == nullptr || index < 0)
                return;
            m_mask.Act([this, index] { framework::Select(*m_control, index); });
            if (m_control != nullptr)
                Sync();
        });
    }
    QWidget* Widget() override { return this; }
    void Sync() override
    {
        SyncVisibility();
        setEnabled(m_control->enabled);
        const QSignalBlocker quiet(this);
        const auto& items = m_control->items;
        while (count() > static_cast<int>(items.size()))
            delete takeItem(count() - 1);
        for (int i = 0; i < static_cast<int>(items.size()); ++i) {
            const QString text = QString::fromStdString(items[static_cast<std::size_t>(i)]);
            if (i == count())
                addItem(text);
            else if (item(i)->text() != text)
                item(i)->setText(text);
        }
        setCurrentRow(m_control->selection);
    }
};

class SliderControl : public QSlider, public ControlView
{
  public:
    SliderControl(Window& control, MaskWindow& mask)
        : QSlider(control.rect.Width() >= control.rect.Height() ? Qt::Horizontal : Qt::Vertical, &mask),
          ControlView(control, mask)
    {
        setFocusPolicy(Qt::TabFocus);
        Describe(*this, control);
        connect(this, &QSlider::valueChanged, this, [this](int position) {
            if (m_control == nullptr)
                return;
            m_mask.Act([this, position] { framework::MoveTrackbar(*m_control, position); });
            if (m_control != nullptr)
                Sync();
        });
    }
    QWidget* Widget() override { return this; }
    void Sync() override
    {
        SyncVisibility();
        setEnabled(m_control->enabled);
        const QSignalBlocker quiet(this);
        setRange(m_control->trackMinimum, m_control->trackMaximum);
        setValue(m_control->trackPosition);
    }

  protected:
    void wheelEvent(QWheelEvent* event) override { event->ignore(); }
};

/// What a static or a group frame shows; nothing to be clicked.
class TextControl : public QWidget, public ControlView
{
  public:
    TextControl(Window& control, MaskWindow& mask) : QWidget(&mask), ControlView(control, mask)
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        m_unit = IsUnit(control);
    }
    QWidget* Widget() override { return this; }
    void Sync() override
    {
        SyncVisibility();
        setEnabled(m_control->enabled);
        m_text = QtText(m_control->text);
        setAccessibleName(QString::fromStdString(framework::WithoutMnemonic(m_control->text)));
        update();
    }

  protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        if (m_control != nullptr && m_control->kind == Kind::group)
            DrawGroup(painter, rect(), m_text, m_control->outdated ? QString("veraltet, bitte rechnen") : QString(),
                      Colors().surface);
        else
            PaintLabel(painter);
    }

  private:
    /// Units and signs beside a field are there to be overlooked.
    static bool IsUnit(const Window& control)
    {
        const auto& siblings = control.parent->children;
        for (std::size_t i = 1; i < siblings.size(); ++i)
            if (siblings[i].get() == &control)
                return siblings[i - 1]->kind == Kind::edit && !control.text.empty() && control.text.back() != ':';
        return false;
    }

    void PaintLabel(QPainter& painter)
    {
        const SchemeColors& c = Colors();
        const bool several = height() >= 2 * fontMetrics().height();
        const bool right = m_control != nullptr && m_control->rightAligned;
        int flags = Qt::TextShowMnemonic | (right ? Qt::AlignRight : Qt::AlignLeft);
        flags |= several ? Qt::AlignTop | Qt::TextWordWrap : Qt::AlignVCenter;
        painter.setPen(isEnabled() && !m_unit ? c.text : c.muted);
        painter.drawText(rect(), flags, m_text);
    }

    QString m_text;
    bool m_unit = false;
};

} // namespace

QString QtText(const std::string& text)
{
    return QString::fromStdString(text);
}

void ControlView::SyncVisibility()
{
    if (Widget()->isHidden() == m_control->visible)
        Widget()->setVisible(m_control->visible);
}

ControlView* MakeControlView(Window& control, MaskWindow& mask)
{
    switch (control.kind) {
    case Kind::edit:
        return new EditControl(control, mask);
    case Kind::button:
        return new ButtonControl<QPushButton>(control, mask);
    case Kind::check:
        return new ButtonControl<QCheckBox>(control, mask);
    case Kind::radio:
        return new ButtonControl<QRadioButton>(control, mask);
    case Kind::combo:
        return new ComboControl(control, mask);
    case Kind::list:
        return new ListControl(control, mask);
    case Kind::trackbar:
        return new SliderControl(control, mask);
    case Kind::field:
    case Kind::chart:
        return new FieldControl(control, mask);
    case Kind::grid:
        return new GridControl(control, mask);
    default:
        return new TextControl(control, mask);
    }
}

} // namespace desktop
