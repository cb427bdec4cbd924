// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The controls a template can hold, as masks address them: static_cast of CWnd::GetDlgItem.
#pragma once

#include "host/CDPoint.h"
#include "host/CWnd.h"
#include "host/FehlerMeldung.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

class CDC;

enum class MouseButton { none, left, middle, right };

enum class CursorShape { arrow, hand, cross, openHand, closedHand, sizeHorizontal, sizeVertical, sizeAll, forbidden };

/// Something the user did with the mouse in a drawing field.
struct CMouseEvent {
    enum class Kind {
        press,
        doubleClick, ///< in place of the second press
        move,        ///< `button` is the one held, or none
        release,
        wheel,
    };
    Kind kind = Kind::move;
    MouseButton button = MouseButton::none;
    UINT modifiers = 0; ///< MK_SHIFT, MK_CONTROL
    /// Where, in the pixels of a drawing of `width` by `height` with its origin at the top left: what the field's
    /// painter gets when it draws what the user sees. Screen, picture and command line show a field in different
    /// sizes, so a mask finds what is hit with these two lengths, not with those of its last painting. While a button
    /// is held, the point may lie outside.
    CDPoint position{};
    double width = 0.0;
    double height = 0.0;
    double wheel = 0.0; ///< notches, positive away from the user
};

class CStatic : public CWnd
{
  public:
    /// Makes the static a drawing field: `paint` draws it whenever it is shown or exported.
    void SetPainter(std::function<void(CDC&, const CRect&)> paint);
    /// The drawing field gets the mouse. The handler says whether it used the event: after a press that it used, moves
    /// and the release of that button come here wherever the mouse goes; a wheel or right button that it did not use
    /// scrolls or opens the field's menu. A press finishes a pending entry first, and is not told when that is refused.
    ///
    /// A field that is a tab stop in its template can have the focus; its keys come to the dialog as WM_KEYDOWN and
    /// WM_CHAR. A handler that does not use a key returns anything but 0.
    void SetMouse(std::function<bool(const CMouseEvent&)> mouse);
    /// The mouse cursor over the drawing field.
    void SetCursorShape(CursorShape shape);
    /// Draws the field in reports, where there is room for more than on the screen; `heightToWidth` is the shape.
    void SetReportPainter(std::function<void(CDC&, const CRect&)> paint, double heightToWidth);
};

class CEdit : public CWnd
{
  public:
    void SetReadOnly(BOOL readOnly);
    BOOL IsReadOnly() const;
};

class CButton : public CWnd
{
  public:
    int GetCheck() const;
    void SetCheck(int check);
};

/// Entries of a combo box or list box. Indices count from 0; -1 is no selection.
class CItemsCtrl : public CWnd
{
  public:
    int AddString(const std::string& utf8);
    void ResetContent();
    int GetCount() const;
    std::string GetItemText(int index) const;
    int GetCurSel() const;
    /// Does not notify; out of range selects nothing.
    void SetCurSel(int index);
};

class CComboBox : public CItemsCtrl
{
};

class CListBox : public CItemsCtrl
{
};

class CSliderCtrl : public CWnd
{
  public:
    void SetRange(int minimum, int maximum);
    void SetPos(int position);
    int GetPos() const;
};

/// Why an entry in a cell is not taken: number and arguments of a host message.
struct CCellRefusal {
    UINT message = 0;
    std::vector<MessageArg> args{};
};

/// A table: control of class "RuvGrid" in a template. Rows and columns count from 0. A change of the selection comes to
/// the dialog as the notification LBN_SELCHANGE.
class CGridCtrl : public CWnd
{
  public:
    struct Column {
        std::string heading;
        bool editable = false;
        bool rightAligned = false;
        friend bool operator==(const Column&, const Column&) = default;
    };
    using Row = std::vector<std::string>; ///< missing cells are empty
    /// Asked after each finished entry in a cell of a CMDIDialog: nothing takes it. The cell shows what was typed
    /// unless the handler writes it; after a refusal it shows its old text.
    using CellEdit = std::function<std::optional<CCellRefusal>(int row, int column, const std::string& text)>;

    /// Drops all rows.
    void SetColumns(std::vector<Column> columns);
    /// All rows at once; drops the selection and what is being typed.
    void SetRows(std::vector<Row> rows);
    int GetColumnCount() const;
    int GetRowCount() const;
    /// Nothing for a cell that does not exist.
    void SetItemText(int row, int column, const std::string& utf8);
    std::string GetItemText(int row, int column) const;
    /// Does not notify; rows that do not exist select nothing.
    void SetSelection(int first, int last);
    /// First and last of the selected rows, -1 when none is.
    int GetFirstSelected() const;
    int GetLastSelected() const;
    /// Without one, entries are taken as they are.
    void SetCellEdit(CellEdit edit);
};
