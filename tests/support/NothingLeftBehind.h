// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Gives a test program, and all that it starts, a temporary folder of its own; what lies there at the end is a failure.
#pragma once

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <memory>

namespace test
{

class NothingLeftBehind : public ::testing::Environment
{
  public:
    void SetUp() override
    {
        m_folder = std::make_unique<TemporaryFolder>();
        setenv("TMPDIR", m_folder->Path().c_str(), 1);
    }
    void TearDown() override
    {
        for (const auto& left : std::filesystem::recursive_directory_iterator(m_folder->Path()))
            ADD_FAILURE() << "a test left " << left.path().lexically_relative(m_folder->Path());
        m_folder.reset();
    }

  private:
    std::unique_ptr<TemporaryFolder> m_folder;
};

} // namespace test
