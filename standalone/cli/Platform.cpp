// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "cli/Platform.h"

#include <atomic>

namespace
{
std::atomic<bool> g_inputFailed = false;
}

bool cli::InputFailed()
{
    return g_inputFailed;
}

#ifdef _WIN32

#include "base/Utf.h"

#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

namespace cli
{

std::vector<std::string> Arguments(int, char**)
{
    int count = 0;
    wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> arguments;
    for (int i = 1; wide != nullptr && i < count; ++i)
        arguments.push_back(base::Utf8FromWide(wide[i]));
    LocalFree(wide);
    return arguments;
}

void PrepareStreams()
{
    _setmode(0, _O_BINARY);
    _setmode(1, _O_BINARY);
    _setmode(2, _O_BINARY);
    SetConsoleOutputCP(CP_UTF8);
    // A crash must not wait for somebody to close a window.
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
}

void KeepFreedMemory() {}

void EndWithParent() {}

std::size_t ReadInput(char* buffer, std::size_t size)
{
    const int count = _read(0, buffer, static_cast<unsigned>(size));
    if (count < 0)
        g_inputFailed = true;
    return count > 0 ? static_cast<std::size_t>(count) : 0;
}

} // namespace cli

#else

#include <cerrno>
#include <csignal>
#include <unistd.h>
#ifdef __linux__
#include <sys/prctl.h>
#endif
#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace cli
{

std::vector<std::string> Arguments(int argc, char** argv)
{
    return argc > 1 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>{};
}

void PrepareStreams()
{
    std::signal(SIGPIPE, SIG_IGN);
}

void KeepFreedMemory()
{
#ifdef __GLIBC__
    constexpr int kKept = 64 << 20; // bytes
    ::mallopt(M_TRIM_THRESHOLD, kKept);
    ::mallopt(M_MMAP_THRESHOLD, kKept / 2);
#endif
}

void EndWithParent()
{
#ifdef __linux__
    ::prctl(PR_SET_PDEATHSIG, SIGKILL); // one that has ended already shows as the end of the input
#endif
}

std::size_t ReadInput(char* buffer, std::size_t size)
{
    for (;;) {
        const ssize_t count = ::read(STDIN_FILENO, buffer, size);
        if (count >= 0)
            return static_cast<std::size_t>(count);
        if (errno != EINTR) {
            g_inputFailed = true;
            return 0;
        }
    }
}

} // namespace cli

#endif
