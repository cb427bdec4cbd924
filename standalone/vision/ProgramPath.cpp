// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Asks the system; alone in its file, because its types are not those of host/.
#include "vision/ProgramPath.h"

#ifdef _WIN32
#include <windows.h>

#include <algorithm>
#include <cstddef>
#else
#include <filesystem>
#endif

std::string HostProgramPath()
{
#ifdef _WIN32
    std::wstring wide(32768, L'\0');
    const DWORD length = GetModuleFileNameW(nullptr, wide.data(), static_cast<DWORD>(wide.size()));
    std::string path(std::size_t{4} * length, '\0');
    const int bytes = WideCharToMultiByte(CP_UTF8, 0, wide.data(), static_cast<int>(length), path.data(),
                                          static_cast<int>(path.size()), nullptr, nullptr);
    path.resize(static_cast<std::size_t>(std::max(0, bytes)));
    return path;
#else
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).string();
#endif
}
