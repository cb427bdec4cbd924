// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The plain types and numbers that module and host exchange. They have the field's usual names and widths,
// but belong to this project: no platform header is needed or wanted behind them.
#pragma once

#include <cstddef>
#include <cstdint>

using UINT = std::uint32_t;
using DWORD = std::uint32_t;
using BYTE = std::uint8_t;
using BOOL = int;
using UINT_PTR = std::uintptr_t;
using LONG_PTR = std::intptr_t;
using INT_PTR = std::intptr_t;
using WPARAM = std::uintptr_t;
using LPARAM = std::intptr_t;
using LRESULT = std::intptr_t;
using COLORREF = std::uint32_t;  // 0x00bbggrr
using HWND = struct HostWindow*; // opaque, never reused within a process

inline constexpr BOOL FALSE = 0;
inline constexpr BOOL TRUE = 1;

constexpr COLORREF RGB(unsigned r, unsigned g, unsigned b)
{
    return r | g << 8U | b << 16U;
}

// Buttons every dialog knows; also the answers of a message box.
inline constexpr int IDOK = 1;
inline constexpr int IDCANCEL = 2;
inline constexpr int IDYES = 6;
inline constexpr int IDNO = 7;
inline constexpr int IDHELP = 9;

// System messages.
inline constexpr UINT WM_SIZE = 0x0005;
inline constexpr UINT WM_PAINT = 0x000F;
inline constexpr UINT WM_CLOSE = 0x0010;
inline constexpr UINT WM_NOTIFY = 0x004E;
inline constexpr UINT WM_KEYDOWN = 0x0100; // wParam = key (VK_...); lParam see KeyModifiers and KeyControl
inline constexpr UINT WM_CHAR = 0x0102;    // wParam = Unicode code point; lParam as for WM_KEYDOWN
inline constexpr UINT WM_COMMAND = 0x0111;
inline constexpr UINT WM_TIMER = 0x0113;
inline constexpr UINT WM_HSCROLL = 0x0114;
inline constexpr UINT WM_USER = 0x0400;

// Messages between masks, case and main window.
inline constexpr UINT WM_RUV_EDITCHANGED = WM_USER + 311;     // 1335; wParam = ID of the control with a finished entry
inline constexpr UINT WM_RUV_MASKTRANSFERRED = WM_USER + 313; // 1337; wParam = vehicle index, -1 for none
inline constexpr UINT WM_RUV_PHASESCHANGED = WM_USER + 317;   // 1341; phase data of a vehicle changed
inline constexpr UINT WM_RUV_BEFORETRANSFER = WM_USER + 318;  // 1342; a modified parameter record is overwritten
inline constexpr UINT WM_RUV_BEFOREIMPORT = WM_USER + 340;    // 1364; an import starts
inline constexpr UINT WM_RUV_UPDATEDIALOG = WM_USER + 328;    // 1352; a mask refreshes itself
inline constexpr UINT WM_RUV_TRANSFERNOW = WM_USER + 329;     // 1353; a mask transfers its result now
inline constexpr UINT WM_RUV_DRIVINGLINE = WM_USER + 416;     // 1440; a driving line changed

// Notification codes in the high word of WM_COMMAND's wParam.
inline constexpr UINT BN_CLICKED = 0;
inline constexpr UINT CBN_SELCHANGE = 1;
inline constexpr UINT LBN_SELCHANGE = 1;
inline constexpr UINT EN_CHANGE = 0x0300;

// Keys of WM_KEYDOWN; letters and digits are their upper-case ASCII code, other characters 0.
inline constexpr UINT VK_BACK = 0x08;
inline constexpr UINT VK_RETURN = 0x0D; // a drawing field may use it, otherwise the default button does
inline constexpr UINT VK_SPACE = 0x20;
inline constexpr UINT VK_PRIOR = 0x21;
inline constexpr UINT VK_NEXT = 0x22;
inline constexpr UINT VK_END = 0x23;
inline constexpr UINT VK_HOME = 0x24;
inline constexpr UINT VK_LEFT = 0x25;
inline constexpr UINT VK_UP = 0x26;
inline constexpr UINT VK_RIGHT = 0x27;
inline constexpr UINT VK_DOWN = 0x28;
inline constexpr UINT VK_INSERT = 0x2D;
inline constexpr UINT VK_DELETE = 0x2E;
inline constexpr UINT VK_F1 = 0x70; // and on to VK_F1 + 11

// Keys that are held while another one or the mouse is used.
inline constexpr UINT MK_SHIFT = 0x0004;
inline constexpr UINT MK_CONTROL = 0x0008;

constexpr UINT LOWORD(WPARAM value)
{
    return static_cast<UINT>(value & 0xFFFFU);
}
constexpr UINT HIWORD(WPARAM value)
{
    return static_cast<UINT>(value >> 16U & 0xFFFFU);
}
constexpr WPARAM MAKEWPARAM(UINT low, UINT high)
{
    return (low & 0xFFFFU) | static_cast<WPARAM>(high & 0xFFFFU) << 16U;
}

/// Of WM_KEYDOWN and WM_CHAR: the modifiers that are held (MK_SHIFT, MK_CONTROL).
constexpr UINT KeyModifiers(LPARAM lParam)
{
    return LOWORD(static_cast<WPARAM>(lParam));
}
/// Of WM_KEYDOWN and WM_CHAR: ID of the field that has the focus, 0 for the dialog itself.
constexpr UINT KeyControl(LPARAM lParam)
{
    return HIWORD(static_cast<WPARAM>(lParam));
}

// CWnd::ShowWindow.
inline constexpr int SW_HIDE = 0;
inline constexpr int SW_MINIMIZE = 6;
inline constexpr int SW_SHOW = 5;
inline constexpr int SW_RESTORE = 9;

struct CPoint {
    int x = 0;
    int y = 0;
};

struct CRect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    int Width() const { return right - left; }
    int Height() const { return bottom - top; }
};
