// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "cli/ScriptedFrontEnd.h"

#include "framework/UiThread.h"

namespace cli
{

void ScriptedFrontEnd::RunModal(framework::Window& dialog, const std::function<bool()>& running)
{
    m_modal.push_back(dialog.handle);
    if (continueScript)
        continueScript(running);
    NullFrontEnd::RunModal(dialog, running);
    m_modal.pop_back();
}

int ScriptedFrontEnd::ShowMessage(const framework::Window* owner, const framework::ShownMessage& message)
{
    int answer = NullFrontEnd::ShowMessage(owner, message);
    if (auto& queue = m_answers[message.number]; !queue.empty()) {
        answer = queue.front();
        queue.pop_front();
    }
    m_messages.push_back({message, answer});
    return answer;
}

void ScriptedFrontEnd::EntryRefused(framework::Window&, const framework::ShownMessage& why)
{
    m_refused = true;
    m_messages.push_back({why, IDOK});
}

std::optional<std::string> ScriptedFrontEnd::ChooseFile(const framework::FileRequest&)
{
    if (m_files.empty())
        return std::nullopt;
    std::string path = std::move(m_files.front());
    m_files.pop_front();
    return path;
}

void ScriptedFrontEnd::WindowVanished(framework::Window& window)
{
    if (dialogVanished)
        dialogVanished(window);
}

void ScriptedFrontEnd::MessagePosted(const framework::Window* target, const MSG& msg)
{
    const char* to = "mask";
    if (target->kind == framework::Kind::frame) {
        to = "main";
    } else if (const framework::Window* atWork = framework::UiThread::Current()->Find(TopModal())) {
        for (const framework::Window* owner = atWork->parent; owner != nullptr; owner = owner->parent)
            if (owner == target)
                to = "owner";
    }
    m_posted.push_back({msg, to});
}

} // namespace cli
