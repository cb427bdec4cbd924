// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Texts in diagrams that have to share room.
#pragma once

#include "host/CDC.h"

#include <string>
#include <vector>

namespace drawing
{

/// The text in the drawing's selected font, shortened to the width (pixels) where it is longer; empty when not even one
/// letter fits.
std::string ShortenedToFit(const CDC& dc, std::string text, double width);

/// Moves ascending positions as little as possible until neighbours are at least `distance` apart.
void SpreadApart(std::vector<double>& positions, double distance);

} // namespace drawing
