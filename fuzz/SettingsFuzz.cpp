// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Whatever the settings file holds: a warning or settings, and saving afterwards gives a file that is read without one.
#include "casefile/Settings.h"
#include "fuzz/ScratchFolder.h"
#include "host/Assert.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    static const fuzz::ScratchFolder folder;
    const std::string path = folder.File("settings.json");
    folder.Write("settings.json", {reinterpret_cast<const char*>(bytes), size});
    casefile::LoadSettings(path);
    RUV_ASSERT(casefile::SaveSettings(path));
    RUV_ASSERT(casefile::LoadSettings(path).empty());
    folder.Clear();
    return 0;
}
