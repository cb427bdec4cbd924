// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Whatever a journal's file holds: a case that is offered, or a file that is kept.
#include "casefile/Journal.h"
#include "fuzz/ScratchFolder.h"
#include "host/Assert.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    static const fuzz::ScratchFolder folder;
    const std::string_view content(reinterpret_cast<const char*>(bytes), size);
    folder.Write("12-ab.a", content);
    std::vector<casefile::KeptJournalFile> kept;
    const auto found = casefile::FindJournals(folder.Path(), &kept);
    // A whole one that says that the case was saved is the third possibility.
    RUV_ASSERT(found.size() + kept.size() <= 1);
    RUV_ASSERT(found.size() + kept.size() == 1 || content.starts_with("tavelin-journal 1 "));
    for (const casefile::FoundJournal& journal : found)
        casefile::RemoveJournal(journal);
    folder.Clear();
    return 0;
}
