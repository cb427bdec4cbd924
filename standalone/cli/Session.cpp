// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "cli/Session.h"

#include "frame/MaskTable.h"
#include "frame/RuvMod.h"
#include "krn/ControlMeaning.h"
#include "report/Protocol.h"

#include <algorithm>

namespace cli
{

using framework::Kind;
using framework::Window;

namespace
{

bool OnlyQueues(const Action& action)
{
    return std::holds_alternative<AnswerAction>(action) || std::holds_alternative<FileAction>(action);
}

} // namespace

std::string NameOf(const Window& control)
{
    const std::string label = krn::LabelOf(control);
    return "Feld " + std::to_string(control.id) + (label.empty() ? "" : " (" + label + ")");
}

Session::Session(std::shared_ptr<CRuvData> data) : m_data(std::move(data)), m_thread(m_front)
{
    m_thread.CreateTopWindow(m_mainWindow, Kind::frame, 0, nullptr);
    m_thread.m_pMainWnd = &m_mainWindow;
    m_front.continueScript = [this](const auto& running) { Continue(running); };
    m_front.dialogVanished = [this](Window& window) {
        if (&window == Mask())
            m_last = Image(window);
    };
}

Session::~Session()
{
    m_front.dialogVanished = nullptr; // nobody reads the state any more
}

std::optional<Failure> Session::Run(UINT mask, std::span<const Action> actions,
                                    const std::function<void(const std::string&)>& onState)
{
    m_number = mask;
    m_actions = actions;
    m_onState = onState;
    Continue([this] { return OnlyQueues(m_actions[m_next]); });
    Open();
    Continue([] { return true; });
    return m_failure;
}

std::optional<Failure> Session::RunModally(UINT mask, std::span<const Action> actions,
                                           const std::function<void(CRuvData&, CWnd*)>& function)
{
    m_number = mask;
    m_actions = actions;
    Continue([this] { return OnlyQueues(m_actions[m_next]); });
    function(*m_data, &m_mainWindow);
    Continue([] { return true; }); // what is left finds the mask closed
    return m_failure;
}

void Session::Open()
{
    const auto masks = MaskTable();
    const auto entry = std::find_if(masks.begin(), masks.end(), [this](const auto& e) { return e.number == m_number; });
    if (entry == masks.end()) {
        Fail(NameOfMask() + " gibt es nicht; „tavelin-cli masks“ nennt alle");
        return;
    }
    if (entry->create == nullptr) {
        Fail(NameOfMask() + " ist in dieser Version nicht enthalten; „tavelin-cli masks“ zeigt, welche es sind");
        return;
    }
    ExecuteRuvModRechnungsMaske(m_number, *m_data);
    m_thread.DispatchPending();
    if (const Window* window = Mask())
        m_mask = window->handle;
    else if (!m_last)
        Fail(NameOfMask() + " ließ sich nicht öffnen: ihr Dialog fehlt im Modul");
    CheckFields();
}

MaskImage Session::Image(Window& mask) const
{
    return m_fields ? MaskImage{{}, {}, RecordText(mask, *m_fields), mask.outdated} : ImageOf(mask);
}

void Session::CheckFields()
{
    const Window* mask = Mask();
    if (!m_fields || mask == nullptr)
        return;
    for (const std::string& name : NoRecordFields(*mask, *m_fields))
        Fail("Der Datensatz von " + NameOfMask() + " hat kein Feld „" + name + "“; „tavelin-cli describe " +
             std::to_string(m_number) + "“ nennt alle");
}

void Session::Continue(const std::function<bool()>& running)
{
    while (!m_failure && m_next < m_actions.size() && running()) {
        const Action& action = m_actions[m_next++];
        std::visit([this](const auto& a) { Do(a); }, action);
        m_thread.DispatchPending();
        NoteMessages();
        m_log.EndAction();
    }
}

void Session::NoteMessages()
{
    const Window* mask = Mask();
    for (; m_logged < m_front.Messages().size(); ++m_logged) {
        const RecordedMessage& message = m_front.Messages()[m_logged];
        std::string text = report::MessageWithAnswer(message.shown, message.answer);
        if (mask != nullptr && !text.empty())
            m_log.Note(mask->handle, std::move(text));
    }
}

void Session::Fail(std::string text)
{
    if (!m_failure)
        m_failure = Failure{exitUsage, std::move(text)};
}

void Session::FailToWrite(std::string text)
{
    if (!m_fileFailure)
        m_fileFailure = Failure{exitFile, std::move(text)};
}

Window* Session::Mask() const
{
    if (m_mask != nullptr)
        return m_thread.Find(m_mask);
    // While the mask opens, only its number is known.
    for (Window* dialog : m_thread.Dialogs())
        if (dialog->id == m_number)
            return dialog;
    return nullptr;
}

std::string Session::State() const
{
    Window* mask = Mask();
    if (m_fields) {
        const MaskImage image = mask != nullptr ? Image(*mask) : m_last.value_or(MaskImage{"", "", "{}", false});
        return FieldsText(image, m_front);
    }
    std::vector<Window*> others = m_thread.Dialogs();
    if (mask != nullptr) {
        const std::vector<Window*> family = MaskFamily(*mask);
        std::erase_if(others, [&](Window* w) { return std::find(family.begin(), family.end(), w) != family.end(); });
    }
    const MaskImage image = mask != nullptr ? ImageOf(*mask) : m_last.value_or(MaskImage{"", "{}", "{}"});
    return StateText(m_number, mask != nullptr, image, m_front, others);
}

Window* Session::DialogAtWork() const
{
    Window* modal = m_thread.Find(m_front.TopModal());
    return modal != nullptr ? modal : Mask();
}

std::string Session::NameOfMask() const
{
    return "Maske " + std::to_string(m_number);
}

Window* Session::Control(UINT id)
{
    Window* top = DialogAtWork();
    if (top != nullptr)
        for (const Window* dialog : MaskFamily(*top))
            if (Window* control = dialog->Child(id))
                return control;
    const bool modal = m_front.TopModal() != nullptr;
    for (const Window* dialog : m_thread.Dialogs()) {
        Window* control = dialog->Child(id);
        if (control != nullptr && !modal)
            return control;
        if (control != nullptr) {
            Fail(NameOf(*control) + " gehört zu Dialog " + std::to_string(dialog->id) + "; der wartet, bis Dialog " +
                 std::to_string(top->id) + " geschlossen ist");
            return nullptr;
        }
    }
    const std::string name = "Feld " + std::to_string(id);
    if (top == nullptr)
        Fail(name + ": " + NameOfMask() + " ist geschlossen");
    else if (modal && top->id != m_number)
        Fail(name + " gibt es nicht in Dialog " + std::to_string(top->id) + ", der über " + NameOfMask() +
             " geöffnet ist");
    else
        Fail(name + " gibt es nicht in " + NameOfMask());
    return nullptr;
}

} // namespace cli
