// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

namespace cli
{

/// Computes one line of a batch, {"id":…,"mask":459,"case":{…}|"path","actions":[…],"fields":[…]}, and returns its
/// answer without a line break.
std::string ComputeBatchLine(std::string_view line);

/// The answer to a line that could not be computed.
std::string FailedBatchLine(std::string_view line, int exit, const std::string& error);

} // namespace cli
