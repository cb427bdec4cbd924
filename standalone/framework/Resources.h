// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Reader of compiled 32-bit resources (.res): dialog templates and string tables.
#pragma once

#include "framework/Window.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace framework
{

struct TemplateControl {
    Kind kind = Kind::label;
    UINT id = 0;
    DWORD style = 0;
    CRect rect; ///< dialog units
    std::string text;
};

struct DialogTemplate {
    std::string title;
    DWORD style = 0;
    CRect rect; ///< dialog units
    int fontSize = 8;
    std::string fontFace;
    std::vector<TemplateControl> controls;
};

/// One resource of an image: type and name as numbers (named resources are left out).
struct ResourceEntry {
    UINT type = 0;
    UINT name = 0;
    std::span<const std::byte> data;
};

/// The entries of a resource image, empty optional when the bytes are none.
std::optional<std::vector<ResourceEntry>> ReadResourceImage(std::span<const std::byte> image);
/// A template of either form (plain or extended); nothing when it is damaged.
std::optional<DialogTemplate> ReadDialogTemplate(std::span<const std::byte> data);
/// The strings of one block of 16, UTF-8; absent ones are empty.
std::vector<std::string> ReadStringBlock(std::span<const std::byte> data);

inline constexpr UINT kResourceDialog = 5;
inline constexpr UINT kResourceString = 6;

/// Template of the resource chain, newest module first; null when no module holds it or it is damaged. It stays until
/// a module joins or leaves the chain.
const DialogTemplate* FindDialogTemplate(UINT id);

} // namespace framework
