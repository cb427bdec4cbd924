// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

/// A line of an import report: what it is about, and what was found.
struct Berichtszeile {
    std::string was;
    std::string text;
};
using Bericht = std::vector<Berichtszeile>;
