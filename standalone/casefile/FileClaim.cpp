// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "casefile/FileClaim.h"

#include "base/Sha256.h"

#include <filesystem>
#include <system_error>

namespace casefile
{

std::unique_ptr<FileClaim> FileClaim::Take(const std::string& stateFolder, const std::string& file)
{
    const auto folder = base::NativePath(stateFolder);
    const auto native = base::NativePath(file);
    if (!folder || !native)
        return nullptr;
    std::error_code ignored;
    const std::filesystem::path whole = std::filesystem::weakly_canonical(*native, ignored);
    base::MakePrivateFolder(*folder);
    const std::string name = "offen-" + base::Sha256(base::Utf8Of(whole.empty() ? *native : whole)) + ".lock";
    const std::filesystem::path lock = *folder / *base::NativePath(name);
    base::RemoveIfAbandoned(lock);
    base::FileHandle handle = 0;
    if (base::SystemFileCalls().open(base::Utf8Of(lock), {}, handle) != 0)
        return nullptr;
    return std::unique_ptr<FileClaim>(new FileClaim(base::Utf8Of(lock), handle));
}

FileClaim::~FileClaim()
{
    base::SystemFileCalls().remove(m_lock);
    base::SystemFileCalls().close(m_handle);
    base::SystemFileCalls().remove(m_lock); // where an open file cannot be removed
}

} // namespace casefile
