// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Map tiles of an MBTiles 1.3 file: an SQLite database with the tables "tiles" and "metadata".
#pragma once

#include "host/Tiles.h"

namespace krn
{

/// Opens the file for reading only; nothing is ever written beside it. Null with the German sentence that says why when
/// it cannot be used, or when the program was built without SQLite.
std::unique_ptr<CTileSource> OpenMbTiles(const std::string& utf8Path, std::string& trouble);

} // namespace krn
