/* SPDX-FileCopyrightText: The RuvMod authors
 * SPDX-License-Identifier: Apache-2.0
 *
 * Numbers that every mask shares. Read by the resource compiler, so plain defines. */
#ifndef RUVMOD_COMMON_H
#define RUVMOD_COMMON_H

#define IDC_STATIC 0xFFFF

/* Buttons of every mask; 2 cancels and 9 opens the help. */
#define IDC_MASKE_OK 100
#define IDC_RECHNEN 105
#define IDC_LOESCHEN 107
#define IDC_UEBERTRAGEN 109
#define IDC_INIT 124

#endif
