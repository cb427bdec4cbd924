// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The host's logger: what a mask did and what failed, for whoever looks for a fault; nothing for the user to read.
#pragma once

#include <string>

/// `context` is the qualified name of the function: "CVideoDlg::LoadVideo". Lines go to the front end, and to the end
/// of the file that the environment names as TAVELIN_LOG.
void RuvLog(const char* context, const std::string& text);
