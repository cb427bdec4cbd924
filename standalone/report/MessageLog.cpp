// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "report/MessageLog.h"

#include "framework/UiThread.h"
#include "host/CDialog.h"

#include <algorithm>
#include <utility>

namespace report
{
namespace
{

/// Nothing for a dialog that is gone or calculates nothing.
int CalculationsOf(HWND dialog)
{
    const framework::UiThread* thread = framework::UiThread::Current();
    const framework::Window* window = thread == nullptr ? nullptr : thread->Find(dialog);
    const auto* mask = window == nullptr ? nullptr : dynamic_cast<const CMDIRechDialog*>(window->object);
    return mask == nullptr ? 0 : mask->Calculations();
}

} // namespace

void MessageLog::Note(HWND dialog, std::string text)
{
    m_entries.push_back({dialog, std::move(text), true, 0});
}

void MessageLog::EndAction()
{
    std::erase_if(m_entries, [](const Entry& entry) {
        return IsWindow(entry.dialog) == FALSE || (!entry.open && CalculationsOf(entry.dialog) != entry.calculations);
    });
    for (Entry& entry : m_entries)
        if (std::exchange(entry.open, false))
            entry.calculations = CalculationsOf(entry.dialog);
}

std::vector<std::string> MessageLog::Of(HWND dialog) const
{
    std::vector<std::string> texts;
    for (const Entry& entry : m_entries) {
        const bool holds = entry.open || CalculationsOf(dialog) == entry.calculations;
        if (entry.dialog == dialog && holds && std::find(texts.begin(), texts.end(), entry.text) == texts.end())
            texts.push_back(entry.text);
    }
    return texts;
}

} // namespace report
