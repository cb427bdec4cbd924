// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Masks as functions: what a mask found while its user worked in it. C linkage, as for frame/Kinematics.h.
#pragma once

#include "frame/Export.h"

class CRuvData;
class CWnd;

extern "C" {

/// Runs mask 400 modally. After OK stores 1 in `*okFlag` (may be null) and the maximum deceleration, m/s², in
/// `*result`. Writes nothing when the user cancels or `result` is null, so the caller presets both.
RUVMOD_API void AMax(CRuvData& data, CWnd* parent, double* result, int* okFlag);

/// Runs mask 401 modally in the same way; the result is its curve limit speed in km/h. Writes nothing either when
/// the mask finds none for the last inputs.
RUVMOD_API void VGrenz(CRuvData& data, CWnd* parent, double* result, int* okFlag);
}
