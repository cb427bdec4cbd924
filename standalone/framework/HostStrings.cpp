// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "framework/HostStrings.h"

namespace framework
{
namespace
{

constexpr struct {
    UINT id;
    const char* text;
} kStrings[] = {
    {8078, "Weg in m"},
    {9770, "Geschwindigkeit in km/h"},
};

} // namespace

std::string HostString(UINT id)
{
    for (const auto& entry : kStrings)
        if (entry.id == id)
            return entry.text;
    return {};
}

} // namespace framework
