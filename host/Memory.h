// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Memory of tables with millions of rows.
#pragma once

#include <cstddef>

/// Says that all of a large block will soon be written to: the system may then give it in large pages, which takes a
/// fraction of the time. Its content stays as it is; nothing happens where the system knows no such pages.
void RuvWillFill(const void* block, std::size_t bytes);
