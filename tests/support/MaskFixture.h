// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// A running user-interface thread with a main window, an example case and a front end that answers as told.
#pragma once

#include "frame/RuvMod.h"
#include "framework/UiThread.h"
#include "framework/UserInput.h"
#include "host/Bindings.h"
#include "host/CDialog.h"
#include "host/CRuvData.h"
#include "host/RuvCfg.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace test
{

class RecordingFrontEnd : public framework::NullFrontEnd
{
  public:
    std::map<UINT, int> answers; ///< by message number; otherwise no to questions
    std::vector<framework::ShownMessage> messages;
    std::vector<framework::ShownMessage> refusals;
    std::vector<MSG> posted;
    std::vector<MSG> broadcast;
    std::vector<std::string> events; ///< appeared/vanished with the dialog's number
    std::function<void(framework::Window&)> duringModal;
    std::deque<std::string> files; ///< chosen one after the other, then none
    std::vector<framework::FileRequest> requests;
    std::function<bool(const std::string&, double)> progress;

    void WindowAppeared(framework::Window& w) override { events.push_back("appeared " + std::to_string(w.id)); }
    void WindowVanished(framework::Window& w) override { events.push_back("vanished " + std::to_string(w.id)); }
    void MessagePosted(const framework::Window*, const MSG& msg) override { posted.push_back(msg); }
    void MessageBroadcast(const MSG& msg) override { broadcast.push_back(msg); }
    void EntryRefused(framework::Window&, const framework::ShownMessage& why) override { refusals.push_back(why); }
    int ShowMessage(const framework::Window* owner, const framework::ShownMessage& message) override
    {
        messages.push_back(message);
        const auto answer = answers.find(message.number);
        return answer == answers.end() ? NullFrontEnd::ShowMessage(owner, message) : answer->second;
    }
    std::optional<std::string> ChooseFile(const framework::FileRequest& request) override
    {
        requests.push_back(request);
        if (files.empty())
            return std::nullopt;
        std::string file = files.front();
        files.pop_front();
        return file;
    }
    bool Progress(const std::string& what, double done) override { return !progress || progress(what, done); }
    void RunModal(framework::Window& dialog, const std::function<bool()>& running) override
    {
        if (duringModal)
            duringModal(dialog);
        NullFrontEnd::RunModal(dialog, running);
    }
};

class MaskTest : public ::testing::Test
{
  protected:
    // Buttons that masks have in common.
    static constexpr UINT kOk = 100, kCalculate = 105, kClear = 107, kTransfer = 109;
    static constexpr std::size_t kFirst = CWegZeitDat::kErsteSpalte;

    MaskTest()
    {
        thread.CreateTopWindow(mainWindow, framework::Kind::frame, 0, nullptr);
        thread.m_pMainWnd = &mainWindow;
        data.KfzDat(0) = TypicalCar("Pkw 1", RGB(200, 0, 0));
        data.KfzDat(1) = TypicalCar("Pkw 2", RGB(0, 0, 200));
        UnitsSystemConfiguration::GetInstance().SetSystem(UnitsSystem::metric);
        RuvCfg = CRuvCfg{};
    }
    ~MaskTest() override { UnitsSystemConfiguration::GetInstance().SetSystem(UnitsSystem::metric); }

    /// Opens a mask of the case through the module's entry.
    framework::Window& OpenMask(UINT number)
    {
        ExecuteRuvModRechnungsMaske(number, data);
        const auto dialogs = thread.Dialogs(); // a mask with pages is followed by them
        const auto mask =
            std::find_if(dialogs.rbegin(), dialogs.rend(), [&](const auto* d) { return d->id == number; });
        return mask == dialogs.rend() ? *dialogs.back() : **mask;
    }
    /// As far as they are still there: one may take another along.
    void CloseAllDialogs()
    {
        std::vector<HWND> left;
        for (const framework::Window* dialog : thread.Dialogs())
            left.push_back(dialog->handle);
        for (const HWND handle : left) {
            if (framework::Window* dialog = thread.Find(handle))
                framework::CloseDialog(*dialog);
        }
        thread.DispatchPending();
    }
    /// Control of a dialog by ID; fails the test when it is not there.
    static framework::Window& Control(framework::Window& dialog, UINT id)
    {
        framework::Window* control = dialog.Child(id);
        if (control == nullptr)
            throw std::out_of_range("control " + std::to_string(id));
        return *control;
    }
    /// Where the news of a transfer went since it was asked last, and the vehicle named: "main 1", "mask -1".
    std::vector<std::string> TransferNews()
    {
        constexpr UINT kMaskTransferred = 1337;
        std::vector<std::string> news;
        for (const MSG& m : front.posted)
            if (m.message == kMaskTransferred)
                news.push_back((m.hwnd == mainWindow.m_hWnd ? "main " : "mask ") +
                               std::to_string(static_cast<std::int64_t>(m.wParam)));
        front.posted.clear();
        return news;
    }
    /// Numbers of the messages that were shown since it was asked last; each has a text.
    std::vector<UINT> TakeMessages()
    {
        std::vector<UINT> numbers;
        for (const auto& message : front.messages) {
            EXPECT_EQ(message.text.find("Meldung"), std::string::npos) << message.text;
            numbers.push_back(message.number);
        }
        front.messages.clear();
        return numbers;
    }
    CWegZeitRechDat& Phases(std::size_t vehicle = 0) { return data.WZRechDat(vehicle); }
    static void Put(CWegZeitSpalte& column, PhasenArt kind, double vEnd, double vStart, double deceleration,
                    double time)
    {
        column.art = kind;
        column.vEnd = vEnd;
        column.vAnf = vStart;
        column.verz = deceleration;
        column.zeit = time;
    }
    framework::InputResult Enter(framework::Window& dialog, UINT id, const std::string& text)
    {
        return Settle(framework::EnterText(Control(dialog, id), text));
    }
    framework::InputResult StepOnce(framework::Window& dialog, UINT id, int direction)
    {
        return Settle(framework::Step(Control(dialog, id), direction));
    }
    framework::InputResult Press(framework::Window& dialog, UINT id)
    {
        return Settle(framework::Click(Control(dialog, id)));
    }
    framework::InputResult Choose(framework::Window& dialog, UINT id, int index)
    {
        return Settle(framework::Select(Control(dialog, id), index));
    }
    /// The double behind a bound control.
    static double Value(framework::Window& dialog, UINT id)
    {
        auto* binding = static_cast<CMDIDialog*>(dialog.object)->FindBinding(id);
        if (binding == nullptr)
            throw std::out_of_range("binding " + std::to_string(id));
        return dynamic_cast<CEditDouble&>(*binding).Value();
    }
    static std::string Text(framework::Window& dialog, UINT id) { return Control(dialog, id).text; }

    RecordingFrontEnd front;
    framework::UiThread thread{front};
    CRuvData data;
    CWnd mainWindow;

  private:
    framework::InputResult Settle(framework::InputResult result)
    {
        thread.DispatchPending();
        return result;
    }
};

} // namespace test
