// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Parameter switches of a vehicle.
class CUBEParameter
{
  public:
    /// Phases or geometry were entered by a mask or by hand since the last reconstruction run.
    bool modified = false;

    friend bool operator==(const CUBEParameter&, const CUBEParameter&) = default;
};
