// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// A dialog made by hand that asks for a file, draws, follows the mouse and the keys, holds a table and reports long
// work: what masks can ask of their host, without a mask.
#pragma once

#include "framework/UiThread.h"
#include "host/CDC.h"
#include "host/CDialog.h"
#include "host/CRuvFileDialog.h"
#include "host/Progress.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace test
{

class InputDialog : public CMDIDialog
{
  public:
    static constexpr UINT kNumber = 9998;
    static constexpr UINT kEdit = 10; ///< without a binding
    static constexpr UINT kField = 20;
    static constexpr UINT kGrid = 30;
    static constexpr UINT kButton = 40;

    explicit InputDialog(framework::UiThread& thread) : CMDIDialog(kNumber, nullptr), m_thread(thread)
    {
        framework::Window& dialog = thread.CreateTopWindow(*this, framework::Kind::dialog, kNumber, nullptr);
        dialog.text = "Eingabegeräte";
        dialog.rect = {0, 0, 220, 160};
        Make(framework::Kind::edit, kEdit, {5, 5, 60, 17});
        Make(framework::Kind::button, kButton, {70, 5, 110, 17});
        Make(framework::Kind::field, kField, {5, 20, 105, 70});
        Make(framework::Kind::grid, kGrid, {5, 75, 205, 155});
        static_cast<CStatic*>(GetDlgItem(kField))->SetPainter([](CDC& dc, const CRect& area) {
            dc.SelectBrush({true, RGB(45, 175, 20)});
            dc.Rectangle(0, 0, area.right / 2.0, area.bottom / 2.0);
        });
        static_cast<CStatic*>(GetDlgItem(kField))->SetMouse([this](const CMouseEvent& event) {
            mouse.push_back(event);
            return usesMouse;
        });
        auto& grid = Grid();
        grid.SetColumns({{"Bild", false, true}, {"Zeit [s]", true, true}, {"Bemerkung", true, false}});
        grid.SetRows({{"1", "0,04", "scharf"}, {"2", "0,04"}, {"3", "0,08", "verwackelt"}});
        grid.SetCellEdit([this](int row, int column, const std::string& text) -> std::optional<CCellRefusal> {
            cells.push_back({row, column, text});
            if (column == 1 && text.find_first_not_of("0123456789,") != std::string::npos)
                return CCellRefusal{1001, {std::string("Zeit"), text, 0.0, 10.0}};
            if (column == 1 && text == "1")
                Grid().SetItemText(row, column, "1,00");
            return std::nullopt;
        });
    }
    ~InputDialog() override
    {
        if (m_hWnd != nullptr)
            DestroyWindow();
    }

    const CMessageMap* GetMessageMap() const override
    {
        static constexpr CMessageEntry kEntries[] = {
            OnMessage<&InputDialog::OnKey>(WM_KEYDOWN),
            OnMessage<&InputDialog::OnCharacter>(WM_CHAR),
            OnMessage<&InputDialog::OnEditChanged>(WM_RUV_EDITCHANGED),
            OnControl<&InputDialog::OnRows>(kGrid, LBN_SELCHANGE),
            OnControl<&InputDialog::OnButton>(kButton),
        };
        static constexpr CMessageMap kMap{nullptr, kEntries};
        return &kMap;
    }

    CGridCtrl& Grid() { return *static_cast<CGridCtrl*>(GetDlgItem(kGrid)); }
    framework::Window& Control(UINT id) { return *m_thread.Find(m_hWnd)->Child(id); }

    struct Cell {
        int row, column;
        std::string text;
        friend bool operator==(const Cell&, const Cell&) = default;
    };
    std::vector<CMouseEvent> mouse;
    std::vector<std::pair<WPARAM, LPARAM>> keys;
    std::u32string characters;
    std::vector<std::pair<UINT, std::string>> entries; ///< control, its text
    std::vector<Cell> cells;
    std::vector<std::pair<int, int>> selections;
    int pressed = 0;
    std::function<void()> work; ///< of the button
    bool usesMouse = true;
    LRESULT keyAnswer = 0;

  private:
    void Make(framework::Kind kind, UINT id, CRect rect)
    {
        framework::Window& control = m_thread.CreateControl(*m_thread.Find(m_hWnd), kind, id);
        control.rect = rect;
        control.tabStop = true;
    }
    LRESULT OnKey(WPARAM key, LPARAM how)
    {
        keys.emplace_back(key, how);
        return keyAnswer;
    }
    LRESULT OnCharacter(WPARAM character, LPARAM)
    {
        characters.push_back(static_cast<char32_t>(character));
        return keyAnswer;
    }
    LRESULT OnEditChanged(WPARAM id, LPARAM)
    {
        entries.emplace_back(static_cast<UINT>(id), GetDlgItem(static_cast<UINT>(id))->GetWindowText());
        return 0;
    }
    void OnRows() { selections.emplace_back(Grid().GetFirstSelected(), Grid().GetLastSelected()); }
    void OnButton()
    {
        ++pressed;
        if (work) {
            work();
        }
    }

    framework::UiThread& m_thread;
};

} // namespace test
