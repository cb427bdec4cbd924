// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Solves a·x² + b·x + c = 0 in real numbers.
///
/// `count` becomes the number of roots: 2 with x1 >= x2 (both equal for a double root), 1 with x1 for the linear
/// equation (a = 0, b != 0), 0 without a real root, for a = b = 0 and for coefficients that are not numbers. Roots
/// that do not exist are left untouched. A discriminant of at least -1e-12·b² counts as zero, so that an exact stop
/// found by one calculation is accepted by the next.
void Quadratgl(double a, double b, double c, double& x1, double& x2, int& count);
