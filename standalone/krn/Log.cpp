// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "host/Log.h"

#include "base/FileSystem.h"
#include "framework/UiThread.h"

#include <cstdlib>
#include <fstream>

void RuvLog(const char* context, const std::string& text)
{
    if (auto* thread = framework::UiThread::Current())
        thread->Front().Logged(context, text);
    const char* name = std::getenv("TAVELIN_LOG");
    const auto path = name == nullptr || *name == '\0' ? std::nullopt : base::NativePath(name);
    if (path)
        std::ofstream(*path, std::ios::app) << '[' << context << "] " << text << '\n';
}
