// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "report/Protocol.h"

#include <string>

namespace report
{

/// An OpenDocument text (ODF 1.2) for word processors: A4, page numbers and the case's SHA-256 in the foot line,
/// diagrams as PNG. The same protocol gives the same bytes.
std::string ProtocolOdt(const Protocol& protocol);

} // namespace report
