// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// A box around what a detector found in a picture.
#pragma once

#include "host/vision/VisionPoint.h"

/// px of the picture, the upper left corner and the size.
struct VideoBox {
    double x = 0.0;
    double y = 0.0;
    double w = 0.0;
    double h = 0.0;
    int classId = -1;   ///< the detector's number for what it is, -1 when nobody said
    double score = 0.0; ///< 0 to 1, how sure the detector is
    VisionPoint Centre() const { return {x + w / 2.0, y + h / 2.0}; }
};
