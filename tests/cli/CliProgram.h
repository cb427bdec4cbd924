// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Starts the command line, which the environment names, and gives back what it said.
#pragma once

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <array>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace test
{

struct Output {
    int exit = -1;
    std::string out;
    std::string err;
};

inline std::string Content(const std::string& path)
{
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

inline void Write(const std::string& path, const std::string& text)
{
    std::ofstream(path, std::ios::binary) << text;
}

inline std::string CliPath()
{
    const char* path = std::getenv("TAVELIN_CLI");
    if (path == nullptr)
        throw std::runtime_error("TAVELIN_CLI names no program");
    return path;
}

inline Output RunCli(const std::vector<std::string>& arguments, const std::string& input = {},
                     const std::string& program = CliPath())
{
    const TemporaryFolder folder;
    const std::array<std::string, 3> streams{folder.File("in"), folder.File("out"), folder.File("err")};
    Write(streams[0], input);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, streams[0].c_str(), O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 1, streams[1].c_str(), O_WRONLY | O_CREAT, 0600);
    posix_spawn_file_actions_addopen(&actions, 2, streams[2].c_str(), O_WRONLY | O_CREAT, 0600);
    std::vector<char*> argv{const_cast<char*>(program.c_str())};
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    pid_t process = 0;
    const int failure = ::posix_spawn(&process, program.c_str(), &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (failure != 0)
        throw std::runtime_error("cannot start " + program);
    int status = 0;
    ::waitpid(process, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, Content(streams[1]), Content(streams[2])};
}

inline std::vector<nlohmann::json> JsonLines(const std::string& text)
{
    std::vector<nlohmann::json> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(nlohmann::json::parse(line));
    return lines;
}

} // namespace test
