/* SPDX-FileCopyrightText: The RuvMod authors
 * SPDX-License-Identifier: Apache-2.0
 *
 * The numbers of all masks. A mask includes only those of its subsystem. */
#ifndef RUVMOD_RESOURCE_H
#define RUVMOD_RESOURCE_H

#include "res/collision.h"
#include "res/dynamics.h"
#include "res/import.h"
#include "res/manoeuvre.h"
#include "res/video.h"

#endif
