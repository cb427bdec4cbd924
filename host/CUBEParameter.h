// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

/// Parameter switches of a vehicle.
class CUBEParameter
{
  public:
    /// Phases or geometry were entered by a mask or by hand since the last reconstruction run.
    bool modified = false;
    /// Bit n: the driving line must be brought up to date in respect n (0..63) before the next reconstruction run.
    std::uint64_t updateFlags = 0;

    void SetUpdateFlag(unsigned flag) { updateFlags |= Bit(flag); }
    void ClearUpdateFlag(unsigned flag) { updateFlags &= ~Bit(flag); }
    bool HasUpdateFlag(unsigned flag) const { return (updateFlags & Bit(flag)) != 0; }

    friend bool operator==(const CUBEParameter&, const CUBEParameter&) = default;

  private:
    /// Flags beyond 63 do not exist: setting one does nothing.
    static std::uint64_t Bit(unsigned flag) { return flag < 64 ? std::uint64_t{1} << flag : 0; }
};
