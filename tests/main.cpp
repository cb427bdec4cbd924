// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "tests/support/NothingLeftBehind.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <locale>

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    // No result may depend on the locale: with this variable the same tests pass in any.
    if (const char* name = std::getenv("RUV_TEST_LOCALE")) {
        if (std::setlocale(LC_ALL, name) == nullptr) {
            std::fprintf(stderr, "the locale %s is not installed\n", name);
            return EXIT_FAILURE;
        }
        std::locale::global(std::locale(name));
    }
    testing::AddGlobalTestEnvironment(new test::NothingLeftBehind);
    return RUN_ALL_TESTS();
}
