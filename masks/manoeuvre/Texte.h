// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Numbers and names within texts that masks show beside their fields and in their drawings.
#pragma once

#include <initializer_list>
#include <string>

/// Rounded, with the user's decimal sign; no negative zero.
std::string Dezimal(double value, int decimals);

/// The text with {0}, {1}, ... replaced by the arguments.
std::string Eingesetzt(const std::string& text, std::initializer_list<std::string> args);
