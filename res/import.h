/* SPDX-FileCopyrightText: The RuvMod authors
 * SPDX-License-Identifier: Apache-2.0
 *
 * Masks that read recorded data, in ascending order. */
#ifndef RUVMOD_RES_IMPORT_H
#define RUVMOD_RES_IMPORT_H

#include "res/common.h"

/* What several of them say of a transfer */
#define IDS_FAHRT_UEBERTRAGEN 49501
#define IDS_FAHRT_ABWEICHEND 49502
#define IDS_FAHRT_KEIN_FAHRZEUG 49503
#define IDS_FAHRT_ZU_WENIG_ZEILEN 49504
#define IDS_FAHRT_ZU_WENIG_PUNKTE 49505
#define IDS_FAHRT_KEIN_PLATZ 49506
#define IDS_FAHRT_OHNE_GESCHWINDIGKEIT 49507
#define IDS_FAHRT_KEINE_ZAHL 49508
#define IDS_FAHRT_KEINE_DAUER 49509
#define IDS_FAHRT_LINIE_UEBERTRAGEN 49510

#endif
