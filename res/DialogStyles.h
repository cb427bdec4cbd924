/* SPDX-FileCopyrightText: The RuvMod authors
 * SPDX-License-Identifier: Apache-2.0
 *
 * Style bits of dialog templates, as the resource format defines them. */
#ifndef RUVMOD_DIALOG_STYLES_H
#define RUVMOD_DIALOG_STYLES_H

#define IDOK 1
#define IDCANCEL 2
#define IDHELP 9

#define WS_CHILD 0x40000000
#define WS_VISIBLE 0x10000000
#define WS_DISABLED 0x08000000
#define WS_CAPTION 0x00C00000
#define WS_BORDER 0x00800000
#define WS_VSCROLL 0x00200000
#define WS_SYSMENU 0x00080000
#define WS_GROUP 0x00020000
#define WS_TABSTOP 0x00010000
#define WS_MINIMIZEBOX 0x00020000

#define DS_SETFONT 0x40
#define DS_CONTROL 0x0400

#define ES_RIGHT 0x0002
#define ES_MULTILINE 0x0004
#define ES_AUTOHSCROLL 0x0080
#define ES_READONLY 0x0800

#define BS_PUSHLIKE 0x1000

#define CBS_DROPDOWNLIST 0x0003

#define SS_RIGHT 0x0002
#define SS_OWNERDRAW 0x000D

/* Frame of a mask, of a page on one, and of its numeric fields. */
#define MASKE_STYLE (WS_CHILD | WS_VISIBLE | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX | DS_SETFONT)
#define SEITE_STYLE (WS_CHILD | WS_VISIBLE | DS_SETFONT | DS_CONTROL)
#define ZAHL_STYLE (ES_RIGHT | ES_AUTOHSCROLL | WS_BORDER | WS_TABSTOP)

/* The static that names the unit of an edit. */
#define EINHEIT(edit) (edit + 10000)

/* A number on one line: label, edit, unit. `y` is the text's line; the columns are x and width of label, edit and
 * unit, most often named once per dialog (SPALTE_...). A unit that the unit system converts has a number of its own
 * (ZAHL), another one has none (ZAHL_FEST); ..._ERSTE begins a group of the tab order. */
#define ZAHL(text, edit, unit, y, ...) ZAHL_ZEILE(text, edit, unit, EINHEIT(edit), ZAHL_STYLE, y, __VA_ARGS__)
#define ZAHL_ERSTE(text, edit, unit, y, ...)                                                                           \
    ZAHL_ZEILE(text, edit, unit, EINHEIT(edit), ZAHL_STYLE | WS_GROUP, y, __VA_ARGS__)
#define ZAHL_FEST(text, edit, unit, y, ...) ZAHL_ZEILE(text, edit, unit, IDC_STATIC, ZAHL_STYLE, y, __VA_ARGS__)
#define ZAHL_FEST_ERSTE(text, edit, unit, y, ...)                                                                      \
    ZAHL_ZEILE(text, edit, unit, IDC_STATIC, ZAHL_STYLE | WS_GROUP, y, __VA_ARGS__)
#define ZAHL_ZEILE(text, edit, unit, unitId, style, y, ...) ZAHL_AN(text, edit, unit, unitId, style, y, __VA_ARGS__)
/* clang-format off */
#define ZAHL_AN(text, edit, unit, unitId, style, y, xText, wText, xEdit, wEdit, xUnit, wUnit) \
    LTEXT text, IDC_STATIC, xText, y, wText, 8 \
    EDITTEXT edit, xEdit, y - 2, wEdit, 12, style \
    LTEXT unit, unitId, xUnit, y, wUnit, 8
/* clang-format on */

#endif
