// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What the numbers of the video analysis may be, when they are entered and when a case gives them.
#pragma once

#include "host/NumberTable.h"
#include "host/vision/CDistortionRectifier.h"

namespace videobereich
{

inline constexpr NumberRange kAbstand{0, 1000};
inline constexpr NumberRange kFlaeche{0, 1e8};
inline constexpr NumberRange kSpanne{0.2, 2};
inline constexpr NumberRange kFaktor{0, 10};
inline constexpr NumberRange kPunktHoehe{0, 5};
inline constexpr NumberRange kKameraHoehe{0, 500};
inline constexpr NumberRange kSchritt{0, 1000};
inline constexpr NumberRange kBilder{0, 1e9};
inline constexpr NumberRange kStaerke{-CDistortionRectifier::kMaxStrength, CDistortionRectifier::kMaxStrength};

inline constexpr std::int64_t kMuster = 8; ///< shapes of the quadrilateral, exact and free
inline constexpr std::size_t kEcken = 4;

} // namespace videobereich
