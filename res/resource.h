/* SPDX-FileCopyrightText: The RuvMod authors
 * SPDX-License-Identifier: Apache-2.0
 *
 * Numbers of dialogs, controls and strings. Read by the resource compiler, so plain defines. */
#ifndef RUVMOD_RESOURCE_H
#define RUVMOD_RESOURCE_H

#define IDC_STATIC 0xFFFF

/* Buttons of every mask; 2 cancels and 9 opens the help. */
#define IDC_MASKE_OK 100
#define IDC_RECHNEN 105
#define IDC_LOESCHEN 107

/* 400 Berechnung der Beschleunigung */
#define IDD_BESCHLEUNIGUNG 400
#define IDC_BESCHL_REIBUNG 4662
#define IDC_BESCHL_VERZOEGERUNG 4663
#define IDC_BESCHL_NEIGUNG_GRAD 4664
#define IDC_BESCHL_NEIGUNG_PROZENT 4665
#define IDC_BESCHL_VERZOEGERUNG_EINHEIT 14663

#endif
