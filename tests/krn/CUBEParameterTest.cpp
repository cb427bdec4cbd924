// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "host/CUBEParameter.h"

#include <gtest/gtest.h>

namespace
{

TEST(CUBEParameterTest, FlagsAreSetAndClearedEachByItself)
{
    CUBEParameter parameters;
    for (const unsigned flag : {0U, 28U, 29U, 33U, 34U, 63U})
        parameters.SetUpdateFlag(flag);
    parameters.ClearUpdateFlag(29);
    parameters.ClearUpdateFlag(30); // was not set
    EXPECT_EQ(parameters.updateFlags, 1U | std::uint64_t{1} << 28 | std::uint64_t{3} << 33 | std::uint64_t{1} << 63);
    EXPECT_TRUE(parameters.HasUpdateFlag(33));
    EXPECT_FALSE(parameters.HasUpdateFlag(29));
    const CUBEParameter before = parameters;
    parameters.SetUpdateFlag(64);
    parameters.ClearUpdateFlag(64);
    EXPECT_EQ(parameters, before);
}

} // namespace
