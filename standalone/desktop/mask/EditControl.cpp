// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/mask/EditControl.h"

#include "base/NumberText.h"
#include "desktop/look/Icons.h"
#include "desktop/look/Style.h"
#include "desktop/look/Theme.h"
#include "desktop/mask/MaskWindow.h"
#include "frame/MaskResults.h"
#include "framework/UiThread.h"
#include "framework/UserInput.h"
#include "host/Bindings.h"
#include "host/CDialog.h"
#include "host/CRuvData.h"
#include "host/RuvCfg.h"
#include "krn/ControlMeaning.h"

#include <QAction>
#include <QApplication>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QTimer>
#include <QToolButton>

#include <functional>

namespace desktop
{

using framework::InputResult;
using framework::Kind;
using framework::UiThread;
using framework::Window;

namespace
{

constexpr int kRepeatDelay = 400;   // ms a spinner button is held before it repeats
constexpr int kRepeatInterval = 60; // ms
constexpr int kPageSteps = 10;

const CBinding* BindingOf(const Window& control)
{
    const auto* dialog = dynamic_cast<const CMDIDialog*>(control.parent->object);
    return dialog == nullptr ? nullptr : dialog->FindBinding(control.id);
}

bool IsGrey(const QColor& color)
{
    return color.red() == color.green() && color.green() == color.blue();
}

/// The colour of the vehicle that the field belongs to, from the field's own colours or from its dialog; invalid for
/// none.
QColor TintOf(const Window& control, const CEditColors* colors)
{
    if (!RuvCfg.useVehicleColors)
        return {};
    if (colors != nullptr)
        for (const QColor& color : {FromColorRef(colors->background), FromColorRef(colors->text)})
            if (!IsGrey(color))
                return color;
    const auto* mask = dynamic_cast<const CMDIRechDialog*>(control.parent->object);
    // What holds no value of the record, a path or a report, is nothing of the vehicle's.
    const std::int64_t vehicle = control.ownVehicle.value_or(control.parent->vehicle);
    if (mask == nullptr || BindingOf(control) == nullptr || !mask->RuvData().IsFzgValid(vehicle))
        return {};
    return FromColorRef(mask->RuvData().KfzDat(static_cast<std::size_t>(vehicle)).color);
}

/// A ground that the user chose instead of the scheme's own.
QColor GroundOf(FieldLook look)
{
    const CRuvCfg standard;
    const COLORREF chosen = look == FieldLook::result ? RuvCfg.resultColors.background : RuvCfg.editColors.background;
    const COLORREF own = look == FieldLook::result ? standard.resultColors.background : standard.editColors.background;
    return chosen == own ? QColor() : OnScreen(chosen);
}

bool FollowsCheckBox(const Window& control)
{
    const auto& siblings = control.parent->children;
    for (std::size_t i = 1; i < siblings.size(); ++i)
        if (siblings[i].get() == &control)
            return siblings[i - 1]->kind == Kind::check;
    return false;
}

} // namespace

/// Two small buttons at the right end of an edit.
class SpinButtons : public QWidget
{
  public:
    SpinButtons(QWidget* parent, std::function<bool(int)> step) : QWidget(parent), m_step(std::move(step))
    {
        setCursor(Qt::ArrowCursor);
        setMouseTracking(true);
        m_repeat.setInterval(kRepeatInterval);
        connect(&m_repeat, &QTimer::timeout, this, [this] {
            m_repeat.setInterval(kRepeatInterval);
            Do();
        });
    }
    static int Width() { return qRound(15 * CurrentFontScale()); }

  protected:
    void mousePressEvent(QMouseEvent* event) override
    {
        if (event->button() != Qt::LeftButton)
            return;
        m_direction = DirectionAt(event->position());
        m_repeat.start(kRepeatDelay);
        Do();
    }
    void mouseReleaseEvent(QMouseEvent*) override { m_repeat.stop(); }
    void mouseMoveEvent(QMouseEvent* event) override { SetHovered(DirectionAt(event->position())); }
    void leaveEvent(QEvent*) override { SetHovered(0); }
    void hideEvent(QHideEvent*) override { m_repeat.stop(); }
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        const double half = height() / 2.0;
        const SchemeColors& c = Colors();
        DrawChevron(painter, QRectF(0.0, 1.0, width(), half), Qt::UpArrow, m_hovered > 0 ? c.accent : c.muted);
        DrawChevron(painter, QRectF(0.0, half - 1.0, width(), half), Qt::DownArrow, m_hovered < 0 ? c.accent : c.muted);
    }

  private:
    int DirectionAt(const QPointF& point) const { return point.y() < height() / 2.0 ? 1 : -1; }
    void SetHovered(int direction)
    {
        m_hovered = direction;
        update();
    }
    void Do()
    {
        if (!m_step(m_direction))
            m_repeat.stop();
    }

    std::function<bool(int)> m_step;
    QTimer m_repeat;
    int m_direction = 0;
    int m_hovered = 0;
};

EditControl::EditControl(Window& control, MaskWindow& mask)
    : TextField(&mask), ControlView(control, mask),
      m_spin(new SpinButtons(this, [this](int direction) { return Step(direction); })),
      m_ownedByCheck(FollowsCheckBox(control))
{
    const std::string unit = krn::UnitOf(control);
    setAccessibleName(QString::fromStdString(krn::LabelOf(control) + (unit.empty() ? "" : " " + unit)));
    connect(this, &QLineEdit::textEdited, this, [this](const QString& text) {
        if (m_control == nullptr)
            return;
        m_mask.Act([this, &text] { framework::TypeText(*m_control, text.toStdString()); });
        if (m_control != nullptr)
            Sync();
    });
    OfferSource();
}

void EditControl::OfferSource()
{
    const auto* binding = dynamic_cast<const CEditDouble*>(BindingOf(*m_control));
    if (binding == nullptr || binding->Source() == ValueSource::none)
        return;
    const bool speed = binding->Source() == ValueSource::curveLimitSpeed;
    m_source = new QAction(Icon("transfer"), {}, this);
    addAction(m_source);
    m_source->setText(speed ? tr("Aus Maske 401, „Kurvengrenzgeschwindigkeit“, übernehmen (F4)")
                            : tr("Aus Maske 400, „Berechnung der Beschleunigung“, übernehmen (F4)"));
    m_source->setToolTip(m_source->text());
    connect(m_source, &QAction::triggered, this, &EditControl::TakeFromSource);
    // Before the field: in it there is no room beside a long number.
    m_sourceButton = new QToolButton(&m_mask);
    m_sourceButton->setDefaultAction(m_source);
    m_sourceButton->setAutoRaise(true);
    m_sourceButton->setFocusPolicy(Qt::NoFocus);
    PlaceSource();
}

void EditControl::PlaceSource()
{
    if (m_sourceButton == nullptr)
        return;
    const int side = height();
    m_sourceButton->setIconSize(QSize(side, side) * 2 / 3);
    m_sourceButton->setGeometry(x() - side, y(), side, side);
    m_sourceButton->setVisible(m_source->isVisible() && !isHidden());
    m_sourceButton->raise();
}

void EditControl::TakeFromSource()
{
    auto* mask = m_control == nullptr ? nullptr : dynamic_cast<CMDIRechDialog*>(m_control->parent->object);
    const auto* binding = mask == nullptr ? nullptr : dynamic_cast<const CEditDouble*>(BindingOf(*m_control));
    if (binding == nullptr || isReadOnly() || !isEnabled())
        return;
    m_mask.Act([&] {
        double value = 0.0;
        int taken = 0;
        (binding->Source() == ValueSource::curveLimitSpeed ? VGrenz : AMax)(mask->RuvData(), mask, &value, &taken);
        if (taken != 0 && m_control != nullptr)
            framework::EnterText(*m_control, binding->EntryText(value));
    });
    if (m_control != nullptr)
        Sync();
}

void EditControl::SyncLook()
{
    const bool usable = m_control->enabled && !m_control->readOnly;
    m_wasInput = m_wasInput || usable;
    const CBinding* binding = BindingOf(*m_control);
    const bool isResult = binding != nullptr && binding->Spec() != nullptr
                              ? binding->Role() == FieldRole::result
                              : m_control->readOnly || (!m_wasInput && !m_ownedByCheck);
    const FieldLook look = usable ? FieldLook::input : isResult ? FieldLook::result : FieldLook::disabled;

    // A result stays enabled for Qt, so that its text can be selected and copied.
    setEnabled(look != FieldLook::disabled);
    setReadOnly(look != FieldLook::input);
    setFocusPolicy(look == FieldLook::input ? Qt::StrongFocus : Qt::ClickFocus);
    setProperty(kLookProperty, static_cast<int>(look));
    SyncColors();

    QFont font = this->font();
    if (font.strikeOut() != m_control->outdated) {
        font.setStrikeOut(m_control->outdated);
        setFont(font);
    }
    QPalette colors = QApplication::palette();
    if (look == FieldLook::result)
        colors.setColor(QPalette::Text, m_control->outdated ? Colors().muted : Colors().resultText);
    if (palette() != colors)
        setPalette(colors);
    const bool steps = m_control->spinner && look == FieldLook::input;
    m_spin->setVisible(steps);
    if (m_source != nullptr)
        m_source->setVisible(look == FieldLook::input);
    PlaceSource();
    const int margin = qRound(3 * CurrentFontScale());
    setTextMargins(margin, 0, steps ? SpinButtons::Width() : margin, 0);
    update();
}

void EditControl::SyncColors()
{
    const CBinding* binding = BindingOf(*m_control);
    setProperty(kTintProperty, TintOf(*m_control, binding == nullptr ? nullptr : binding->Colors(false)));
    setProperty(kGroundProperty, GroundOf(static_cast<FieldLook>(property(kLookProperty).toInt())));
    update();
}

void EditControl::Sync()
{
    SyncVisibility();
    SyncLook();
    setAlignment(Qt::AlignVCenter | (m_control->rightAligned ? Qt::AlignRight : Qt::AlignLeft));
    if (const QString now = QString::fromStdString(m_control->text); now != text()) {
        setText(now);
        if (hasFocus() && !m_control->modified)
            selectAll();
    }
    if (!m_control->modified)
        setModified(false); // also when it reads as it was typed
}

bool EditControl::Step(int direction)
{
    if (m_control == nullptr)
        return false;
    InputResult result = InputResult::disabled;
    m_mask.Act([&] { result = framework::Step(*m_control, direction); });
    return result == InputResult::done && m_control != nullptr;
}

QString EditControl::Tip() const
{
    QString tip = QString::fromStdString(krn::LabelOf(*m_control));
    const QString unit = QString::fromStdString(krn::UnitOf(*m_control));
    const auto* number = dynamic_cast<const CEditDouble*>(BindingOf(*m_control));
    if (number != nullptr && !isReadOnly()) {
        const auto shown = [number](double bound) {
            const auto& units = UnitsSystemConfiguration::GetInstance();
            return QString::fromStdString(
                base::FormatNumber(number->Unit() ? units.ToShown(bound, *number->Unit()) : bound, number->Decimals()));
        };
        tip += QStringLiteral(": %1 bis %2").arg(shown(number->Minimum()), shown(number->Maximum()));
    }
    return unit.isEmpty() ? tip : tip + QLatin1Char(' ') + unit;
}

bool EditControl::event(QEvent* event)
{
    if (event->type() == QEvent::ToolTip && m_control != nullptr)
        setToolTip(Tip());
    return TextField::event(event);
}

void EditControl::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_F4 && m_source != nullptr) {
        TakeFromSource();
        return;
    }
    const int steps = event->key() == Qt::Key_PageUp || event->key() == Qt::Key_PageDown ? kPageSteps : 1;
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_PageUp:
        for (int i = 0; i < steps && Step(+1); ++i) {
        }
        return;
    case Qt::Key_Down:
    case Qt::Key_PageDown:
        for (int i = 0; i < steps && Step(-1); ++i) {
        }
        return;
    default:
        TextField::keyPressEvent(event);
    }
}

void EditControl::wheelEvent(QWheelEvent* event)
{
    if (hasFocus() && event->angleDelta().y() != 0)
        Step(event->angleDelta().y() > 0 ? 1 : -1);
    else
        event->ignore();
}

void EditControl::focusInEvent(QFocusEvent* event)
{
    QLineEdit::focusInEvent(event);
    if (m_control == nullptr || !m_control->enabled)
        return;
    if (event->reason() != Qt::MouseFocusReason && event->reason() != Qt::ActiveWindowFocusReason &&
        event->reason() != Qt::PopupFocusReason)
        selectAll();
    UiThread::Current()->SetFocus(*m_control);
}

void EditControl::focusOutEvent(QFocusEvent* event)
{
    QLineEdit::focusOutEvent(event);
    if (event->reason() == Qt::ActiveWindowFocusReason || event->reason() == Qt::PopupFocusReason ||
        event->reason() == Qt::MenuBarFocusReason)
        return; // the user comes back to it
    FinishOnLeaving();
}

void EditControl::FinishOnLeaving()
{
    if (m_control == nullptr || !m_control->modified)
        return;
    InputResult result = InputResult::done;
    m_mask.Act([&] { result = framework::FinishEntry(*m_control); });
    if (result != InputResult::refused)
        return;
    // Back to the field, unless the user went somewhere else altogether.
    QTimer::singleShot(0, this, [this] {
        const QWidget* now = QApplication::focusWidget();
        if (m_control != nullptr && (now == nullptr || m_mask.Root().isAncestorOf(now)))
            setFocus(Qt::OtherFocusReason);
    });
}

void EditControl::resizeEvent(QResizeEvent* event)
{
    QLineEdit::resizeEvent(event);
    const int inset = 2;
    m_spin->setGeometry(width() - SpinButtons::Width() - inset, inset, SpinButtons::Width(), height() - 2 * inset);
    PlaceSource();
}

void EditControl::moveEvent(QMoveEvent* event)
{
    QLineEdit::moveEvent(event);
    PlaceSource();
}

} // namespace desktop
