// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "base/Sha256.h"

#include <array>
#include <bit>
#include <cstdint>

#ifdef __x86_64__
#include <cpuid.h>
#include <immintrin.h>
#endif

namespace base
{
namespace
{

constexpr std::size_t kBlock = 64; // bytes
constexpr std::size_t kRounds = 64;

/// FIPS 180-4, 4.2.2: fractional parts of the cube roots of the first 64 primes.
constexpr std::array<std::uint32_t, kRounds> kConstants{
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};

using State = std::array<std::uint32_t, 8>;

/// 5.3.3: fractional parts of the square roots of the first eight primes.
constexpr State kStart{0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a, 0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};

/// 6.2.2.
void CompressPortably(State& state, std::string_view block)
{
    std::array<std::uint32_t, kRounds> w{};
    for (std::size_t t = 0; t < kRounds; ++t) {
        if (t < 16) {
            for (std::size_t i = 0; i < 4; ++i)
                w[t] = w[t] << 8 | static_cast<unsigned char>(block[4 * t + i]);
            continue;
        }
        const std::uint32_t s0 = std::rotr(w[t - 15], 7) ^ std::rotr(w[t - 15], 18) ^ w[t - 15] >> 3;
        const std::uint32_t s1 = std::rotr(w[t - 2], 17) ^ std::rotr(w[t - 2], 19) ^ w[t - 2] >> 10;
        w[t] = s1 + w[t - 7] + s0 + w[t - 16];
    }
    auto [a, b, c, d, e, f, g, h] = state;
    for (std::size_t t = 0; t < kRounds; ++t) {
        const std::uint32_t s1 = std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25);
        const std::uint32_t s0 = std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22);
        const std::uint32_t t1 = h + s1 + ((e & f) ^ (~e & g)) + kConstants[t] + w[t];
        const std::uint32_t t2 = s0 + ((a & b) ^ (a & c) ^ (b & c));
        h = g;
        g = f;
        f = e;
        e = d + t1;
        d = c;
        c = b;
        b = a;
        a = t1 + t2;
    }
    const State sums{a, b, c, d, e, f, g, h};
    for (std::size_t i = 0; i < state.size(); ++i)
        state[i] += sums[i];
}

#ifdef __x86_64__
/// Whether the processor has them: CPUID, leaf 7, EBX bit 29; SSE 4.1 and SSSE 3 with them.
bool HasInstructions()
{
    unsigned a = 0;
    unsigned b = 0;
    unsigned c = 0;
    unsigned d = 0;
    constexpr unsigned kVector = 1U << 19U | 1U << 9U;
    if (__get_cpuid(1, &a, &b, &c, &d) == 0 || (c & kVector) != kVector)
        return false;
    return __get_cpuid_count(7, 0, &a, &b, &c, &d) != 0 && (b & 1U << 29U) != 0;
}

/// The same with the instructions of "Intel SHA Extensions" (2013): four words of the schedule and four rounds at a
/// time, the state in the order ABEF and CDGH that they want.
__attribute__((target("sha,sse4.1,ssse3"))) void CompressByInstructions(State& state, std::string_view blocks)
{
    const auto word = [&state](std::size_t i) { return static_cast<int>(state[i]); };
    const __m128i bigEndian = _mm_set_epi8(12, 13, 14, 15, 8, 9, 10, 11, 4, 5, 6, 7, 0, 1, 2, 3);
    __m128i abef = _mm_set_epi32(word(0), word(1), word(4), word(5));
    __m128i cdgh = _mm_set_epi32(word(2), word(3), word(6), word(7));
    for (; blocks.size() >= kBlock; blocks.remove_prefix(kBlock)) {
        const __m128i abefBefore = abef;
        const __m128i cdghBefore = cdgh;
        __m128i w[4];
        for (std::size_t i = 0; i < 4; ++i)
            w[i] = _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(blocks.data()) + i), bigEndian);
        for (std::size_t four = 0; four < kRounds / 4; ++four) {
            __m128i& now = w[four % 4];
            if (four >= 4) {
                const __m128i last = w[(four + 3) % 4];
                const __m128i sevenBefore = _mm_alignr_epi8(last, w[(four + 2) % 4], 4);
                now = _mm_sha256msg1_epu32(now, w[(four + 1) % 4]);
                now = _mm_sha256msg2_epu32(_mm_add_epi32(now, sevenBefore), last);
            }
            const __m128i k = _mm_loadu_si128(reinterpret_cast<const __m128i*>(kConstants.data()) + four);
            const __m128i sum = _mm_add_epi32(now, k);
            cdgh = _mm_sha256rnds2_epu32(cdgh, abef, sum);
            abef = _mm_sha256rnds2_epu32(abef, cdgh, _mm_shuffle_epi32(sum, 0x0E));
        }
        abef = _mm_add_epi32(abef, abefBefore);
        cdgh = _mm_add_epi32(cdgh, cdghBefore);
    }
    std::array<std::uint32_t, 4> first{};
    std::array<std::uint32_t, 4> second{};
    _mm_storeu_si128(reinterpret_cast<__m128i*>(first.data()), abef);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(second.data()), cdgh);
    state = {first[3], first[2], second[3], second[2], first[1], first[0], second[1], second[0]};
}
#endif

/// Of whole blocks.
void Compress(State& state, std::string_view blocks, [[maybe_unused]] bool portable)
{
#ifdef __x86_64__
    static const bool hasInstructions = HasInstructions();
    if (hasInstructions && !portable) {
        CompressByInstructions(state, blocks);
        return;
    }
#endif
    for (; blocks.size() >= kBlock; blocks.remove_prefix(kBlock))
        CompressPortably(state, blocks.substr(0, kBlock));
}

} // namespace

Sha256Sum::Sha256Sum(bool portable) : m_portable(portable), m_state(kStart) {}

void Sha256Sum::Add(std::string_view bytes)
{
    m_size += bytes.size();
    if (!m_rest.empty()) {
        const std::string_view missing = bytes.substr(0, kBlock - m_rest.size());
        m_rest += missing;
        bytes.remove_prefix(missing.size());
        if (m_rest.size() < kBlock)
            return;
        Compress(m_state, m_rest, m_portable);
        m_rest.clear();
    }
    const std::size_t whole = bytes.size() / kBlock * kBlock;
    Compress(m_state, bytes.substr(0, whole), m_portable);
    m_rest = bytes.substr(whole);
}

std::string Sha256Sum::Digits() const
{
    constexpr std::size_t kLengthField = 8;
    State state = m_state;
    const std::uint64_t bits = m_size * 8;
    // 5.1.1: a one bit, zeros, the length in bits.
    std::string tail = m_rest;
    tail += '\x80';
    while (tail.size() % kBlock != kBlock - kLengthField)
        tail += '\0';
    for (int shift = 56; shift >= 0; shift -= 8)
        tail += static_cast<char>(bits >> shift & 0xFF);
    Compress(state, tail, m_portable);

    std::string hex;
    for (const std::uint32_t word : state)
        for (int shift = 28; shift >= 0; shift -= 4)
            hex += "0123456789abcdef"[word >> shift & 0xF];
    return hex;
}

std::string Sha256(std::string_view bytes, const std::function<bool(double)>& goOn)
{
    constexpr std::size_t kBetweenQuestions = std::size_t{4} << 20U;
    Sha256Sum sum;
    for (std::size_t at = 0; at < bytes.size(); at += kBetweenQuestions) {
        if (goOn && at != 0 && !goOn(static_cast<double>(at) / static_cast<double>(bytes.size())))
            return {};
        sum.Add(bytes.substr(at, kBetweenQuestions));
    }
    return sum.Digits();
}

} // namespace base
