// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Whatever bytes a module has as its resources: an image, a dialog, a block of strings, or none.
#include "base/Utf.h"
#include "framework/Resources.h"
#include "host/Assert.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const auto data = std::as_bytes(std::span(bytes, size));
    const auto check = [](std::span<const std::byte> part) {
        if (const auto dialog = framework::ReadDialogTemplate(part)) {
            RUV_ASSERT(base::IsUtf8(dialog->title) && base::IsUtf8(dialog->fontFace));
            for (const framework::TemplateControl& control : dialog->controls)
                RUV_ASSERT(base::IsUtf8(control.text));
        }
        for (const std::string& text : framework::ReadStringBlock(part))
            RUV_ASSERT(base::IsUtf8(text));
    };
    check(data);
    if (const auto image = framework::ReadResourceImage(data))
        for (const framework::ResourceEntry& entry : *image)
            check(entry.data);
    return 0;
}
