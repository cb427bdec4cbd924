// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The controls a template can hold, as masks address them: static_cast of CWnd::GetDlgItem.
#pragma once

#include "host/CWnd.h"

#include <functional>

class CDC;

class CStatic : public CWnd
{
  public:
    /// Makes the static a drawing field: `paint` draws it whenever it is shown or exported.
    void SetPainter(std::function<void(CDC&, const CRect&)> paint);
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
