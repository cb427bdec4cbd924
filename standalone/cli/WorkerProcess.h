// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// A second process of this program, talked to through pipes.
#pragma once

#include "cli/Batch.h"

#include <memory>
#include <string>
#include <vector>

namespace cli
{

class WorkerProcess : public BatchWorker
{
  public:
    /// Starts this program with the arguments. Null when that fails.
    static std::unique_ptr<WorkerProcess> Start(const std::vector<std::string>& arguments);
    /// Closes the process's input and waits for its end; one that was lost is ended.
    ~WorkerProcess() override;
    WorkerProcess(const WorkerProcess&) = delete;
    WorkerProcess& operator=(const WorkerProcess&) = delete;

    bool Write(std::string_view bytes) override;
    std::optional<std::string> ReadLine(std::chrono::milliseconds limit) override;
    Loss WhyLost() override;

  private:
    struct System;
    using Clock = std::chrono::steady_clock;
    explicit WorkerProcess(std::unique_ptr<System> system);
    /// Appends what the process has written to m_pending. False when it has ended, or writes nothing until then.
    bool ReadMore(Clock::time_point until);

    std::unique_ptr<System> m_system;
    std::string m_pending;
    bool m_late = false;
};

} // namespace cli
