// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Two numbers that are computed with at once; each gets the very bits that it would get alone.
#pragma once

namespace vision
{

using Pair = double __attribute__((vector_size(2 * sizeof(double))));

} // namespace vision
