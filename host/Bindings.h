// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Bindings tie a control of a dialog to a field of its record. Created with `new` in BuildObjects, they belong to
// the dialog from then on.
#pragma once

#include "host/CWegZeitDat.h"
#include "host/FehlerMeldung.h"
#include "host/HostTypes.h"
#include "host/NumberTable.h"
#include "host/Units.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

class CMDIDialog;
class CWnd;

/// Colours of an edit; both optional.
struct CEditColors {
    COLORREF text = RGB(0, 0, 0);
    COLORREF background = RGB(255, 255, 255);
};

/// What became of a finished entry. A refusal carries the host message that says why, and its arguments.
struct EntryResult {
    enum class Outcome { taken, unchanged, refused };
    Outcome outcome = Outcome::unchanged;
    UINT message = 0;
    std::vector<MessageArg> args{};
};

class CBinding
{
  public:
    CBinding(CMDIDialog* parent, UINT controlId, const CEditColors* normal, const CEditColors* highlighted);
    virtual ~CBinding() = default;
    CBinding(const CBinding&) = delete;
    CBinding& operator=(const CBinding&) = delete;

    UINT ControlId() const { return m_controlId; }
    /// The control belongs to the binding: its one control, or a button of its group.
    virtual bool Owns(UINT controlId) const { return controlId == m_controlId; }

    /// What the record's table says of the number; null for a control that the dialog bound by hand.
    const NumberSpec* Spec() const { return m_spec; }
    void SetSpec(const NumberSpec* spec, std::size_t element)
    {
        m_spec = spec;
        m_element = element;
    }
    /// What names the field for the user, without colon: the table's word, the text of the switch before it, or the
    /// label directly before it.
    std::string Label() const;
    /// The unit the user reads, or "".
    virtual std::string UnitText() const { return {}; }
    /// Input or result, as the control stands now: a write-protected input is a result of the calculation.
    FieldRole Role() const;

    const CEditColors* Colors(bool highlighted) const { return highlighted ? m_highlighted : m_normal; }

    /// Shows the field in the control.
    virtual void Show() = 0;
    /// Takes a finished entry into the field. An empty one leaves the field as it is.
    virtual EntryResult Take(const std::string& text) = 0;
    /// Takes the control's selection into the field.
    virtual void TakeSelection(int) {}
    /// One spinner step up or down; true when the field changed.
    virtual bool OnIncValue(int) { return false; }
    /// The bound memory, to find the record's field behind a control.
    virtual const void* Field() const = 0;

  protected:
    CMDIDialog& Dialog() const { return *m_dialog; }
    /// The control, or null without one or when its window is gone.
    CWnd* Control() const;
    /// Label and unit, to name the field in a refusal.
    std::string FieldLabel() const;

  private:
    CMDIDialog* m_dialog;
    UINT m_controlId;
    CWnd* m_control; // as long as the dialog has its window
    const CEditColors* m_normal;
    const CEditColors* m_highlighted;
    const NumberSpec* m_spec = nullptr;
    std::size_t m_element = 0; // of an array
};

class CEditDouble : public CBinding
{
  public:
    /// Range and step are in the field's unit (the step in the shown one); step 0 takes the control's default: a
    /// thousandth of the decade that holds the range, not finer than the decimals shown and not coarser than 10.
    CEditDouble(CMDIDialog* parent, UINT controlId, double* field, double minimum, double maximum, BYTE decimals,
                double step, const CEditColors* normal, const CEditColors* highlighted, const UnitType* unit);

    void Show() override;
    EntryResult Take(const std::string& text) override;
    bool OnIncValue(int direction) override;
    const void* Field() const override { return m_field; }

    bool InRange(double value) const { return value >= m_minimum && value <= m_maximum; }
    void SetValPointer(double* field) { m_field = field; }
    /// Offers the user another mask to find the value with.
    void SetSource(ValueSource source) { m_source = source; }
    /// Lets the spinner go only so far, in the default step of that range when the step is 0.
    void SetSpinner(const SpinnerRange& spinner);
    std::string UnitText() const override;
    ValueSource Source() const { return m_source; }
    /// A value (in the field's unit) as a user would type it, every digit of it.
    std::string EntryText(double value) const;
    double Value() const { return *m_field; }
    double Minimum() const { return m_minimum; }
    double Maximum() const { return m_maximum; }
    int Decimals() const { return m_decimals; }
    double Step() const { return m_step; }
    const std::optional<UnitType>& Unit() const { return m_unit; }

  private:
    double Factor() const;
    std::string Format(double value) const;
    /// A bound of the range, rounded to where an entry of it is still taken.
    std::string FormatBound(double bound, int inward) const;

    double* m_field;
    double m_minimum;
    double m_maximum;
    double m_step;
    double m_spinnerMinimum;
    double m_spinnerMaximum;
    int m_decimals;
    std::optional<UnitType> m_unit;
    ValueSource m_source = ValueSource::none;
    /// What `m_shownText` is the text of.
    struct Shown {
        std::uint64_t bits;
        double factor;
        bool decimalPoint;
        bool operator==(const Shown&) const = default;
    } m_shown{};
    std::string m_shownText;
};

/// A whole number of a record, held in 64 or in 32 bits.
class CIntField
{
  public:
    CIntField(std::int64_t* field) : m_field(field) {} // NOLINT: a binding is given the field's address
    CIntField(std::int32_t* field) : m_field(field) {} // NOLINT

    std::int64_t Value() const;
    void Set(std::int64_t value); ///< of what does not fit, the nearest that does
    const void* Address() const;
    std::int64_t Smallest() const;
    std::int64_t Largest() const;

  private:
    std::variant<std::int64_t*, std::int32_t*> m_field;
};

class CEditInt : public CBinding
{
  public:
    /// The range ends where the field's width does.
    CEditInt(CMDIDialog* parent, UINT controlId, CIntField field, std::int64_t minimum, std::int64_t maximum,
             std::int64_t step, const CEditColors* normal, const CEditColors* highlighted);

    void Show() override;
    EntryResult Take(const std::string& text) override;
    bool OnIncValue(int direction) override;
    std::string UnitText() const override;
    const void* Field() const override { return m_field.Address(); }

    bool InRange(std::int64_t value) const { return value >= m_minimum && value <= m_maximum; }
    /// A field of the same width.
    void SetValPointer(CIntField field) { m_field = field; }
    std::int64_t Value() const { return m_field.Value(); }
    std::int64_t Minimum() const { return m_minimum; }
    std::int64_t Maximum() const { return m_maximum; }
    std::int64_t Step() const { return m_step; }

  private:
    CIntField m_field;
    std::int64_t m_minimum;
    std::int64_t m_maximum;
    std::int64_t m_step;
};

/// A check box; the field is 1 when it is checked, else 0.
class CCheck : public CBinding
{
  public:
    CCheck(CMDIDialog* parent, UINT controlId, const FieldValue& field);

    void Show() override;
    EntryResult Take(const std::string& text) override;
    void TakeSelection(int checked) override;
    const void* Field() const override;

  private:
    FieldValue m_field;
};

/// Radio buttons that stand for 0, 1, ...; the field is the number of the checked one. Another number checks none.
class CRadio : public CBinding
{
  public:
    CRadio(CMDIDialog* parent, std::span<const UINT> buttons, const FieldValue& field);

    bool Owns(UINT controlId) const override;
    void Show() override;
    EntryResult Take(const std::string& text) override;
    void TakeSelection(int button) override;
    const void* Field() const override;
    const std::vector<UINT>& Buttons() const { return m_buttons; }

  private:
    std::vector<UINT> m_buttons;
    FieldValue m_field;
};

/// A combo box whose entries stand for numbers; the field holds the number of the chosen entry.
class CChoiceCombo : public CBinding
{
  public:
    CChoiceCombo(CMDIDialog* parent, UINT controlId, CIntField field, const CEditColors* normal,
                 const CEditColors* highlighted);

    EntryResult Take(const std::string& text) override;
    void TakeSelection(int index) override;
    const void* Field() const override { return m_field.Address(); }
    void Show() override;
    std::int64_t Value() const { return m_field.Value(); }

  protected:
    /// Takes one choice: the number that the field gets, the count that stands before its name, if any, and the name.
    using TakeEntry =
        std::function<void(std::int64_t number, std::optional<std::int64_t> count, std::string_view name)>;
    /// Hands over the choices in their order. They are asked for whenever the dialog shows its fields anew.
    virtual void Entries(const TakeEntry& take) const = 0;
    CIntField m_field;

  private:
    struct Entry {
        std::int64_t number;
        std::optional<std::int64_t> count;
        std::string name;
    };
    bool ShowsEntries() const;

    std::vector<Entry> m_shown;
};

/// Choice of a vehicle of the case. Lists the case's vehicles, headed by "(keines)" when `none` is given: the number
/// the field takes when no vehicle is meant.
class CFzgCombo : public CChoiceCombo
{
  public:
    /// `first` is the lowest vehicle index offered, or a negative number to offer "(keines)" with it. `excluded`, when
    /// given, points to a vehicle index that is not offered.
    CFzgCombo(CMDIDialog* parent, UINT controlId, int first, CIntField field, std::int64_t* excluded,
              const CEditColors* normal, const CEditColors* highlighted);

    /// The vehicle indices that are not offered, in place of those named before: what the dialog's other choices hold.
    void Ausser(std::vector<CIntField> excluded) { m_excluded = std::move(excluded); }

  protected:
    void Entries(const TakeEntry& take) const override;

  private:
    int m_first;
    std::vector<CIntField> m_excluded;
};

/// Choice of a phase column of the vehicle's path-time data: the used columns from 3 on, and the first free one. Phases
/// are counted from 1, so that the collision's column is 0 and those after it are -1 and -2.
class CAbsCombo : public CChoiceCombo
{
  public:
    CAbsCombo(CMDIDialog* parent, UINT controlId, CIntField field, const CEditColors* normal,
              const CEditColors* highlighted);
    /// The field that holds the index of the vehicle whose columns are offered.
    void SetVehicle(CIntField vehicle) { m_vehicle = vehicle; }
    /// Offers columns from `first` to `last` only (both included). Those before 3 are offered used or not.
    void SetBereich(std::size_t first, std::size_t last = CWegZeitDat::kSpalten - 1);

  protected:
    void Entries(const TakeEntry& take) const override;

  private:
    std::optional<CIntField> m_vehicle;
    std::size_t m_first = CWegZeitDat::kErsteSpalte;
    std::size_t m_last = CWegZeitDat::kSpalten - 1;
};
