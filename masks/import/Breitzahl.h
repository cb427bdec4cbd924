// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// A signed whole number of 256 bits: sums over products of 64-bit numbers that no built-in type holds.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

__extension__ using Ganz128 = __int128;           // GCC and clang have it
__extension__ using Natur128 = unsigned __int128; // on 64-bit machines

class Breitzahl
{
  public:
    constexpr Breitzahl() = default;
    constexpr Breitzahl(Ganz128 value) // NOLINT: as a wider built-in number would take it
        : m_words{static_cast<std::uint64_t>(value), static_cast<std::uint64_t>(value >> 64),
                  value < 0 ? ~std::uint64_t{0} : 0, value < 0 ? ~std::uint64_t{0} : 0}
    {
    }
    constexpr Breitzahl(std::int64_t value) : Breitzahl(static_cast<Ganz128>(value)) {} // NOLINT

    constexpr Breitzahl operator-() const
    {
        Breitzahl negated;
        for (std::size_t i = 0; i < kWords; ++i)
            negated.m_words[i] = ~m_words[i];
        return negated += Breitzahl(std::int64_t{1});
    }
    constexpr Breitzahl& operator+=(const Breitzahl& other)
    {
        Natur128 carry = 0;
        for (std::size_t i = 0; i < kWords; ++i) {
            carry += static_cast<Natur128>(m_words[i]) + other.m_words[i];
            m_words[i] = static_cast<std::uint64_t>(carry);
            carry >>= 64;
        }
        return *this;
    }
    friend constexpr Breitzahl operator+(Breitzahl a, const Breitzahl& b) { return a += b; }
    friend constexpr Breitzahl operator-(Breitzahl a, const Breitzahl& b) { return a += -b; }
    /// Right when the product fits into 256 bits: two's complement needs no signs.
    friend constexpr Breitzahl operator*(const Breitzahl& a, const Breitzahl& b)
    {
        Breitzahl product;
        for (std::size_t i = 0; i < kWords; ++i) {
            Natur128 carry = 0;
            for (std::size_t k = 0; i + k < kWords; ++k) {
                carry += static_cast<Natur128>(a.m_words[i]) * b.m_words[k] + product.m_words[i + k];
                product.m_words[i + k] = static_cast<std::uint64_t>(carry);
                carry >>= 64;
            }
        }
        return product;
    }
    friend constexpr bool operator==(const Breitzahl&, const Breitzahl&) = default;

    constexpr bool IsNegative() const { return m_words[kWords - 1] >> 63U != 0; }

    /// The nearest double, of two the even one, as the conversion of a built-in number gives it.
    explicit operator double() const
    {
        if (IsNegative())
            return -static_cast<double>(-*this);
        std::size_t top = kWords;
        while (top > 2 && m_words[top - 1] == 0)
            --top;
        if (top == 2)
            return static_cast<double>(static_cast<Natur128>(m_words[1]) << 64U | m_words[0]);
        // The upper 128 bits round as the whole does once what lies below is joined to their last bit: that bit is far
        // under the 53 of a double when the highest word is filled.
        const auto shift = static_cast<unsigned>(__builtin_clzll(m_words[top - 1]));
        Natur128 upper = static_cast<Natur128>(m_words[top - 1]) << 64U | m_words[top - 2];
        std::uint64_t below = m_words[top - 3];
        if (shift > 0) {
            upper = upper << shift | below >> (64U - shift);
            below <<= shift;
        }
        for (std::size_t i = 0; i + 3 < top; ++i)
            below |= m_words[i];
        if (below != 0)
            upper |= 1U;
        return std::ldexp(static_cast<double>(upper), 64 * (static_cast<int>(top) - 2) - static_cast<int>(shift));
    }

  private:
    static constexpr std::size_t kWords = 4;
    std::array<std::uint64_t, kWords> m_words{}; // the lowest first, two's complement
};
