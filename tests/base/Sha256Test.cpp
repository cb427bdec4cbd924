// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "base/Sha256.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace
{

// The examples that NIST publishes for FIPS 180.
TEST(Sha256, PublishedExamples)
{
    EXPECT_EQ(base::Sha256(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ(base::Sha256("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(base::Sha256("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"),
              "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1");
    EXPECT_EQ(base::Sha256(std::string(1'000'000, 'a')),
              "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

// Where the processor has instructions for it, against the plain computation: every length around the blocks, in
// pieces.
TEST(Sha256, TheProcessorsInstructionsGiveTheSame)
{
    std::mt19937 random(7);
    for (std::size_t size = 0; size < 400; ++size) {
        std::string bytes(size, '\0');
        for (char& c : bytes)
            c = static_cast<char>(random());
        base::Sha256Sum plain(true);
        base::Sha256Sum fast;
        plain.Add(bytes);
        for (std::size_t at = 0; at < size;) {
            const std::size_t piece = std::min<std::size_t>(random() % 150, size - at);
            fast.Add(std::string_view(bytes).substr(at, piece));
            at += piece;
        }
        ASSERT_EQ(fast.Digits(), plain.Digits()) << size;
    }
}

} // namespace
