// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The command line: opening a mask, a whole process, and lines of a batch.
#include "cli/BatchLine.h"
#include "cli/CaseInput.h"
#include "cli/Session.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <fstream>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

constexpr const char* kLine = R"({"id":1,"mask":400,"actions":["4662=0,8","4665=-5","press:105"]})";
constexpr const char* kLine459 =
    R"({"id":1,"mask":459,"actions":["4804=50","4810=7,5","4805=1","4809=0,2","press:105"]})";
/// The same with the results that a study wants instead of the whole state.
constexpr const char* kFieldsLine459 =
    R"({"id":1,"mask":459,"actions":["4804=50","4810=7,5","4805=1","4809=0,2","press:105"],"fields":["sG","tG"]})";

/// Runs the program with its output thrown away; false when it fails.
bool RunProgram(std::vector<const char*> arguments, const char* input)
{
    arguments.insert(arguments.begin(), TAVELIN_CLI);
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, input, O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    pid_t process = 0;
    int status = -1;
    const bool started =
        posix_spawn(&process, TAVELIN_CLI, &actions, nullptr, const_cast<char**>(arguments.data()), environ) == 0;
    posix_spawn_file_actions_destroy(&actions);
    return started && waitpid(process, &status, 0) == process && status == 0;
}

void CliOpenMask400(benchmark::State& state)
{
    for (auto _ : state) {
        cli::Session session(cli::ExampleCase());
        if (session.Run(400, {}))
            state.SkipWithError("the mask did not open");
        benchmark::DoNotOptimize(session.Mask());
    }
}
BENCHMARK(CliOpenMask400)->Unit(benchmark::kMillisecond);

void CliProcessMask400(benchmark::State& state)
{
    for (auto _ : state)
        if (!RunProgram({"mask", "400", "4662=0,8", "press:105"}, "/dev/null"))
            state.SkipWithError("the program failed");
}
BENCHMARK(CliProcessMask400)->Unit(benchmark::kMillisecond)->UseRealTime();

void CliBatchLine(benchmark::State& state, const char* line)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(cli::ComputeBatchLine(line));
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK_CAPTURE(CliBatchLine, 400, kLine)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(CliBatchLine, 459, kLine459)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(CliBatchLine, 459Fields, kFieldsLine459)->Unit(benchmark::kMicrosecond);

/// Lines of the whole pipe, start and end of the processes included.
void CliBatchProcess(benchmark::State& state, const char* line)
{
    constexpr int kLines = 20000;
    std::string path = "/tmp/tavelin-bench-XXXXXX";
    const int file = mkstemp(path.data());
    if (file < 0) {
        state.SkipWithError("no temporary file");
        return;
    }
    close(file);
    std::ofstream lines(path);
    for (int i = 0; i < kLines; ++i)
        lines << line << '\n';
    lines.close();
    const std::string jobs = std::to_string(state.range(0));
    for (auto _ : state)
        if (!RunProgram({"batch", "--jobs", jobs.c_str()}, path.c_str()))
            state.SkipWithError("the program failed");
    state.SetItemsProcessed(state.iterations() * kLines);
    unlink(path.c_str());
}
BENCHMARK_CAPTURE(CliBatchProcess, 400, kLine)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(CliBatchProcess, 459Fields, kFieldsLine459)
    ->Arg(1)
    ->Arg(2)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

} // namespace
