// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "cli/WorkerProcess.h"

#include <algorithm>
#include <array>
#include <mutex>
#include <utility>

#ifdef _WIN32
#include "base/Utf.h"
#include "cli/Platform.h"

#include <windows.h>
#else
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;
#endif

namespace cli
{

#ifdef _WIN32

struct WorkerProcess::System {
    HANDLE process = nullptr;
    HANDLE input = nullptr;  // we write
    HANDLE output = nullptr; // we read

    ~System()
    {
        CloseEnds();
        if (process != nullptr) {
            WaitForSingleObject(process, INFINITE);
            CloseHandle(process);
        }
    }

    void CloseEnds()
    {
        for (HANDLE* handle : {&input, &output})
            if (*handle != nullptr)
                CloseHandle(std::exchange(*handle, nullptr));
    }
};

namespace
{

/// An argument as the C runtime splits it again: quotes around it, backslashes doubled only before a quote.
void AppendQuoted(std::wstring& line, const std::wstring& argument)
{
    line += line.empty() ? L"\"" : L" \"";
    std::size_t backslashes = 0;
    for (const wchar_t c : argument) {
        if (c == L'\\') {
            ++backslashes;
            continue;
        }
        line.append(c == L'"' ? 2 * backslashes + 1 : backslashes, L'\\');
        backslashes = 0;
        line += c;
    }
    line.append(2 * backslashes, L'\\');
    line += L'"';
}

/// Ends its processes when this one ends and takes the last handle along.
HANDLE Job()
{
    static const HANDLE job = [] {
        const HANDLE made = CreateJobObjectW(nullptr, nullptr);
        JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
        limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
        SetInformationJobObject(made, JobObjectExtendedLimitInformation, &limits, sizeof limits);
        return made;
    }();
    return job;
}

std::wstring ProgramPath()
{
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return path;
}

} // namespace

std::unique_ptr<WorkerProcess> WorkerProcess::Start(const std::vector<std::string>& arguments)
{
    // One at a time: while its pipe ends may be inherited, no other process must start.
    static std::mutex starting;
    const std::lock_guard lock(starting);

    const std::wstring program = ProgramPath();
    std::wstring line;
    AppendQuoted(line, program);
    for (const std::string& argument : arguments)
        AppendQuoted(line, base::WideFromUtf8(base::ValidUtf8(argument)).value_or(std::wstring()));

    auto system = std::make_unique<System>();
    HANDLE childInput = nullptr;
    HANDLE childOutput = nullptr;
    bool started = CreatePipe(&childInput, &system->input, nullptr, 0) != 0 &&
                   CreatePipe(&system->output, &childOutput, nullptr, 0) != 0;
    if (started) {
        SetHandleInformation(childInput, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
        SetHandleInformation(childOutput, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
        STARTUPINFOW startup{};
        startup.cb = sizeof(startup);
        startup.dwFlags = STARTF_USESTDHANDLES;
        startup.hStdInput = childInput;
        startup.hStdOutput = childOutput;
        startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
        PROCESS_INFORMATION process{};
        started = CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                                 &process) != 0;
        if (started) {
            CloseHandle(process.hThread);
            AssignProcessToJobObject(Job(), process.hProcess);
            system->process = process.hProcess;
        }
    }
    for (const HANDLE handle : {childInput, childOutput})
        if (handle != nullptr)
            CloseHandle(handle);
    return started ? std::unique_ptr<WorkerProcess>(new WorkerProcess(std::move(system))) : nullptr;
}

BatchWorker::Loss WorkerProcess::WhyLost()
{
    constexpr UINT kEnded = 1; // what the task manager gives; crashes have exception codes
    if (m_late)
        TerminateProcess(m_system->process, kEnded);
    m_system->CloseEnds();
    WaitForSingleObject(m_system->process, INFINITE);
    DWORD code = 0;
    GetExitCodeProcess(m_system->process, &code);
    return m_late ? Loss::late : code == kEnded ? Loss::ended : Loss::crashed;
}

bool WorkerProcess::Write(std::string_view bytes)
{
    while (!bytes.empty()) {
        const auto size = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), 1U << 20U));
        DWORD written = 0;
        if (!WriteFile(m_system->input, bytes.data(), size, &written, nullptr) || written == 0)
            return false;
        bytes.remove_prefix(written);
    }
    return true;
}

bool WorkerProcess::ReadMore(Clock::time_point until)
{
    // A pipe of this kind can be looked at, but not waited for with a limit.
    for (DWORD there = 0;;) {
        if (!PeekNamedPipe(m_system->output, nullptr, 0, nullptr, &there, nullptr))
            return false;
        if (there > 0)
            break;
        if (Clock::now() >= until) {
            m_late = true;
            return false;
        }
        Sleep(1);
    }
    std::array<char, 65536> buffer;
    DWORD count = 0;
    if (!ReadFile(m_system->output, buffer.data(), static_cast<DWORD>(buffer.size()), &count, nullptr) || count == 0)
        return false;
    m_pending.append(buffer.data(), count);
    return true;
}

#else

struct WorkerProcess::System {
    pid_t process = -1;
    int input = -1;  // we write
    int output = -1; // we read

    ~System()
    {
        CloseEnds();
        Wait();
    }

    void CloseEnds()
    {
        for (int* end : {&input, &output})
            if (*end >= 0)
                ::close(std::exchange(*end, -1));
    }

    /// How the process ended, once it has.
    int Wait()
    {
        int status = 0;
        if (process > 0)
            while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
            }
        process = -1;
        return status;
    }
};

namespace
{

bool WaitFor(int file, short event, std::chrono::steady_clock::time_point until)
{
    for (;;) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(until - std::chrono::steady_clock::now()).count();
        pollfd wanted{file, event, 0};
        const int ready = ::poll(&wanted, 1, static_cast<int>(std::clamp<std::int64_t>(left, 0, 1'000'000'000)));
        if (ready > 0 || (ready < 0 && errno != EINTR))
            return true; // the read says what is wrong
        if (ready == 0)
            return false;
    }
}

} // namespace

std::unique_ptr<WorkerProcess> WorkerProcess::Start(const std::vector<std::string>& arguments)
{
    // Writing to a worker that died must be an error, not our end.
    static std::once_flag once;
    std::call_once(once, [] { ::signal(SIGPIPE, SIG_IGN); });

    auto system = std::make_unique<System>();
    std::array<int, 2> in{-1, -1};
    std::array<int, 2> out{-1, -1};
    bool started = ::pipe2(in.data(), O_CLOEXEC) == 0;
    system->input = in[1];
    started = started && ::pipe2(out.data(), O_CLOEXEC) == 0;
    system->output = out[0];
    if (started) {
        std::vector<char*> argv{const_cast<char*>("tavelin-cli")};
        for (const std::string& argument : arguments)
            argv.push_back(const_cast<char*>(argument.c_str()));
        argv.push_back(nullptr);

        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, in[0], STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
        posix_spawnattr_t attributes;
        posix_spawnattr_init(&attributes);
        sigset_t defaults;
        sigemptyset(&defaults);
        sigaddset(&defaults, SIGPIPE);
        posix_spawnattr_setsigdefault(&attributes, &defaults);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
        started = ::posix_spawn(&system->process, "/proc/self/exe", &actions, &attributes, argv.data(), environ) == 0;
        if (!started)
            system->process = -1;
        posix_spawnattr_destroy(&attributes);
        posix_spawn_file_actions_destroy(&actions);
    }
    for (const int end : {in[0], out[1]})
        if (end >= 0)
            ::close(end);
    return started ? std::unique_ptr<WorkerProcess>(new WorkerProcess(std::move(system))) : nullptr;
}

BatchWorker::Loss WorkerProcess::WhyLost()
{
    if (m_late)
        ::kill(m_system->process, SIGKILL);
    m_system->CloseEnds();
    const int status = m_system->Wait();
    if (m_late)
        return Loss::late;
    const int signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    const bool fromOutside = signal == SIGKILL || signal == SIGTERM || signal == SIGINT || signal == SIGHUP;
    return fromOutside ? Loss::ended : Loss::crashed;
}

bool WorkerProcess::Write(std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = ::write(m_system->input, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR)
            return false;
        if (count > 0)
            bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

bool WorkerProcess::ReadMore(Clock::time_point until)
{
    if (!WaitFor(m_system->output, POLLIN, until)) {
        m_late = true;
        return false;
    }
    std::array<char, 65536> buffer;
    ssize_t count = 0;
    do
        count = ::read(m_system->output, buffer.data(), buffer.size());
    while (count < 0 && errno == EINTR);
    if (count <= 0)
        return false;
    m_pending.append(buffer.data(), static_cast<std::size_t>(count));
    return true;
}

#endif

WorkerProcess::WorkerProcess(std::unique_ptr<System> system) : m_system(std::move(system)) {}

WorkerProcess::~WorkerProcess() = default;

std::optional<std::string> WorkerProcess::ReadLine(std::chrono::milliseconds limit)
{
    const auto until = Clock::now() + limit;
    std::size_t searched = 0;
    for (;;) {
        const std::size_t end = m_pending.find('\n', searched);
        if (end != std::string::npos) {
            std::string line = m_pending.substr(0, end);
            m_pending.erase(0, end + 1);
            return line;
        }
        searched = m_pending.size();
        if (!ReadMore(until))
            return std::nullopt;
    }
}

} // namespace cli
