// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The verbs of the program, one file per family. Each takes the arguments after its name and returns an ExitCode.
#pragma once

#include "host/HostTypes.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cli
{

int MasksVerb(const std::vector<std::string>& arguments);
int DescribeVerb(const std::vector<std::string>& arguments);
int EvalVerb(const std::vector<std::string>& arguments);
int CaseVerb(const std::vector<std::string>& arguments);
int MaskVerb(const std::vector<std::string>& arguments);
int BatchVerb(const std::vector<std::string>& arguments);

/// The number of a mask, nothing when the text is none.
std::optional<UINT> MaskNumber(const std::string& text);

/// Says on standard error what is wrong; returns `exit`.
int Complain(int exit, const std::string& text);
/// The text with control characters but line ends written out (\x1B): names from files must not steer a terminal.
std::string ForTerminal(std::string_view text);
void Print(std::string_view text);

/// Rows of a table for a person, columns aligned by their characters; the first row is its head.
std::string TableText(std::vector<std::vector<std::string>> rows);

} // namespace cli
