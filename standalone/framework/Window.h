// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The state of one window: a dialog or a control on it. Front ends read it; the classes of host/ are its handles.
#pragma once

#include "host/Controls.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace framework
{

enum class Kind {
    frame, ///< main window
    dialog,
    edit,
    button,
    check,
    radio,
    group,
    combo,
    list,
    trackbar,
    label, ///< static text
    field, ///< static that something is drawn in
    grid,  ///< table
    chart, ///< field with curves: control of class "RuvChart"
};

/// Something is drawn in it.
bool IsDrawn(Kind kind);
/// Name of a kind as scripts see it: "edit", "button", ...
const char* KindName(Kind kind);

/// What a grid holds.
struct Grid {
    std::vector<CGridCtrl::Column> columns;
    std::vector<CGridCtrl::Row> rows; ///< each as long as `columns`
    int firstSelected = -1;
    int lastSelected = -1;
    CGridCtrl::CellEdit edit;
    // The entry that is not finished while Window::modified is set.
    int typedRow = -1;
    int typedColumn = -1;
    std::string typed;

    bool Holds(int row, int column) const;
    std::string& Cell(int row, int column)
    {
        return rows[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
    }
    const std::string& Cell(int row, int column) const
    {
        return rows[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
    }
};

struct Window {
    HWND handle = nullptr;
    CWnd* object = nullptr;
    std::unique_ptr<CWnd> owned; ///< the object of a control
    Window* parent = nullptr;
    std::vector<std::unique_ptr<Window>> children; ///< in template order, which is the tab order
    std::vector<UINT> childIds;                    ///< theirs, side by side: they are looked up often

    Kind kind = Kind::label;
    UINT id = 0;
    std::string text;
    CRect rect;            ///< dialog units, relative to the parent
    bool page = false;     ///< a dialog that lies on its parent, at `rect`
    bool appeared = false; ///< a dialog the front end knows
    bool tabStop = false;
    bool groupStart = false;
    bool defaultButton = false;
    bool rightAligned = false;
    bool automatic = false; ///< a check box or radio button that switches itself
    bool spinner = false;   ///< an edit that steps its value
    bool enabled = true;
    bool visible = true;
    bool iconic = false;
    std::int64_t vehicle = -1;              ///< dialog: index of the vehicle whose colour its edits may take, -1 = none
    std::optional<std::int64_t> ownVehicle; ///< edit: it belongs to another one than its dialog

    bool readOnly = false; ///< edit: write-protected
    bool prompt = false;   ///< label: its text only asks the user to do something
    bool outdated = false; ///< shows a result that does not belong to the inputs; a dialog: so do all its results
    bool modified = false; ///< edit, grid: typed into since the entry was finished last
    bool refused = false;  ///< edit, grid: the entry finished last was not taken
    int check = 0;         ///< check box, radio button; 1 on a push button: it looks pressed in
    std::vector<std::string> items;
    int selection = -1;
    int trackMinimum = 0;
    int trackMaximum = 100;
    int trackPosition = 0;
    std::function<void(CDC&, const CRect&)> painter;
    std::function<bool(const CMouseEvent&)> mouse;         ///< field
    MouseButton held = MouseButton::none;                  ///< field: pressed in it and not released yet
    CursorShape cursor = CursorShape::arrow;               ///< field
    std::unique_ptr<Grid> grid;                            ///< only of a grid
    std::function<void(CDC&, const CRect&)> reportPainter; ///< draws the field in reports, if set
    double reportHeightToWidth = 1.0;                      ///< shape of what it draws

    /// Child with a control ID, or null. Controls without an ID of their own are not found.
    Window* Child(UINT childId) const;
    /// A control that has an ID of its own.
    bool HasId() const { return IsOwnId(id); }
    static bool IsOwnId(UINT id) { return id != 0 && id != 0xFFFF; }
};

/// Visible, and so is every page it lies on.
bool IsShown(const Window& control);
/// The dialog that the control or page lies on, with all its pages in between.
Window& DialogOf(Window& control);
/// Text without the mnemonic mark: "&Rechnen" → "Rechnen", "&&" → "&".
std::string WithoutMnemonic(const std::string& text);
/// The mnemonic letter as UTF-8 in lower case, empty when there is none.
std::string MnemonicOf(const std::string& text);
/// An input or a drawing: it has no text of its own that names it.
bool NeedsLabel(Kind kind);
/// Text that names a control: its own, or for one that needs a label that of the static directly before it.
std::string LabelOf(const Window& control);
/// The controls the Tab key visits, in order; of a radio group only the checked or first button.
std::vector<Window*> TabOrder(const Window& dialog);
/// The radio buttons of the control's group.
std::vector<Window*> RadioGroup(const Window& radio);

} // namespace framework
