// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace base
{

/// SHA-256 (FIPS 180-4) of the bytes, as 64 lower-case hexadecimal digits. Our own, because the Windows build has no
/// package with one. `goOn` is asked every few megabytes with the part done; after a no the result is empty.
std::string Sha256(std::string_view bytes, const std::function<bool(double)>& goOn = {});

/// The same, of bytes that come one after the other.
class Sha256Sum
{
  public:
    /// `portable`: without the instructions that some processors have for it.
    explicit Sha256Sum(bool portable = false);
    void Add(std::string_view bytes);
    /// Of all that was added.
    std::string Digits() const;

  private:
    bool m_portable;
    std::array<std::uint32_t, 8> m_state;
    std::string m_rest; ///< shorter than a block
    std::uint64_t m_size = 0;
};

} // namespace base
