/* SPDX-FileCopyrightText: The RuvMod authors
 * SPDX-License-Identifier: Apache-2.0
 *
 * Masks that read recorded data, in ascending order. */
#ifndef RUVMOD_RES_IMPORT_H
#define RUVMOD_RES_IMPORT_H

#include "res/common.h"

#endif
