// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What differs between systems about a program of the command line.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace cli
{

/// The arguments after the program's name, UTF-8.
std::vector<std::string> Arguments(int argc, char** argv);

/// Makes the standard streams pass bytes through as they are; a reader of the output that goes away is an error of
/// writing, not the end of the process.
void PrepareStreams();

/// Reads what standard input has, at most `size` bytes; waits only when there is nothing. 0 at its end.
std::size_t ReadInput(char* buffer, std::size_t size);
/// The end that ReadInput told was an error: a folder, a closed stream, a broken disk.
bool InputFailed();

/// Lets the process keep what it frees for its next allocation: a case is large enough to be handed back to the system
/// and fetched again for every line otherwise.
void KeepFreedMemory();

/// Lets the process end when the one that started it does. On Windows the starter sees to that.
void EndWithParent();

} // namespace cli
