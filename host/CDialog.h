// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The three framework levels below every mask. Virtual operations stand in slot order.
#pragma once

#include "host/CWnd.h"
#include "host/NumberTable.h"
#include "host/RecordField.h"

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <span>
#include <vector>

class CBinding;
class CDC;
class CKfzDaten;
class CRuvData;
struct CEditColors;
class CUBEParameter;
class CWegZeitDat;
class UnitType;
namespace framework
{
struct Window;
}

class CDialog : public CWnd
{
  public:
    CDialog(UINT templateId, CWnd* parent);
    ~CDialog() override;

    virtual BOOL OnInitDialog();
    virtual void OnOK();
    virtual void OnCancel();

    /// Runs the dialog modally. Returns the code it ended with (IDOK, IDCANCEL), -1 when it could not be created.
    INT_PTR DoModal();
    /// Ends a modal dialog with a code, a modeless one by destroying its window.
    void EndDialog(int code);

    /// Creates the window as a page: a dialog that lies on `parent` at `place` (dialog units of the parent). ShowWindow
    /// shows and hides it; it closes with the parent, and OK, Abbrechen and Hilfe are the parent's. The object stays
    /// its owner's. False when no module holds the template.
    bool CreatePage(CWnd& parent, const CRect& place);

    UINT GetDialogId() const { return m_templateId; }
    bool IsModal() const { return m_modal; }

  protected:
    /// Creates the window and its controls from the template. False when no module holds it.
    bool CreateFromTemplate(CWnd* parent);
    /// Called between the creation of the controls and OnInitDialog.
    virtual void OnControlsCreated() {}

    UINT m_templateId;
    CWnd* m_parent;
    int m_endCode = IDCANCEL;
    bool m_modal = false;

  private:
    bool Create(CWnd* parent, const CRect* place);
};

/// A dialog with bound controls. Life of its window: template, controls, BuildObjects, SetupWindow, first
/// UpdateDialog; ShutDownWindow when it closes.
class CMDIDialog : public CDialog
{
  public:
    CMDIDialog(UINT templateId, CWnd* parent);
    ~CMDIDialog() override;

    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;
    BOOL OnInitDialog() override;
    void OnOK() override;
    void OnCancel() override;

    /// First opening state of the fields; the base shows nothing yet.
    virtual void SetupWindow();
    /// Releases what the mask holds; called once before the window goes.
    virtual void ShutDownWindow();
    /// Writes pairs (control ID, style code) of the buttons, returns the number of pairs.
    virtual UINT GetCloneCropStyle(UINT* out);
    /// Creates the window as a child of `parent`, shows and registers it. The object belongs to its window then.
    virtual BOOL DoModeless(CWnd* parent);
    /// Redraws every bound control from its field.
    virtual void UpdateDialog();
    /// Takes pending entries of all bound edits into their fields.
    virtual void ReadData();
    virtual void RepaintData();
    /// A spinner changed the field bound to the control.
    virtual void IncValue(int controlId);
    virtual void SaveDlgPosition();
    virtual void RestoreDlgPosition();
    /// Creates the bindings; they belong to the dialog.
    virtual void BuildObjects();
    virtual void DrawHighlighting();

    /// Redraws one bound control from its field.
    void Update(UINT controlId);
    void Enable(UINT controlId, BOOL enable);
    /// Write protection (read-only) of an edit.
    void ChangeProtection(UINT controlId, int protect);
    /// Replaces the unit text inside a label by the user's unit.
    void ReplaceChildWindowSubstringWithUnitString(UINT controlId, const UnitType& unit);
    /// The front end may tint the dialog's edits in the colour of this vehicle of the case, named by its index or by
    /// its colour key; -1 = of none.
    void SetUseFzgColors(std::int64_t vehicleOrKey);

    /// Makes a static of the dialog a drawing field that is drawn afresh at every UpdateDialog and Redraw.
    void SetDrawing(UINT controlId, std::function<void(CDC&)> draw);
    void Redraw();

    const std::vector<std::unique_ptr<CBinding>>& Bindings() const { return m_bindings; }
    CBinding* FindBinding(UINT controlId) const;

  protected:
    void OnControlsCreated() override;
    LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    void PostNcDestroy() override;

    /// Opens the help page of the dialog (button 9, F1).
    virtual void ShowHelp();

  private:
    friend class CBinding;
    void AddBinding(CBinding& binding);
    void OnFinishedEntry(framework::Window& edit, CBinding& binding);
    void OnFinishedCell(framework::Window& grid);
    void CloseWindow(int code);

    std::vector<std::unique_ptr<CBinding>> m_bindings;
    std::vector<UINT> m_drawings;
    bool m_shutDown = false;
    bool m_ownedByWindow = false;
};

/// A calculation mask of a case.
class CMDIRechDialog : public CMDIDialog
{
  public:
    CMDIRechDialog(UINT dialogId, CWnd* parent, CRuvData& data, int* positionX, int* positionY);
    ~CMDIRechDialog() override;

    /// Binds the numbers of the record's table whose controls lie on this dialog. A mask that binds more calls this.
    void BuildObjects() override;
    /// Shows the user's units beside the numbers and closes those that the mask computes.
    void SetupWindow() override;
    void ShutDownWindow() override;
    /// OK takes style 8, "Rechnen" 2, where the dialog has them.
    UINT GetCloneCropStyle(UINT* out) override;
    /// Also follows the colour of the mask's vehicle, and opens the numbers whose switch is on.
    void UpdateDialog() override;
    /// Also lists the mask among the open ones of its case.
    BOOL DoModeless(CWnd* parent) override;

    /// Dialog resource whose help page the assistant shows.
    virtual UINT GetDlgResIDForAssistant();
    // A vehicle of the case changed, or phases did. A mask with a vehicle of its own shows itself afresh.
    virtual void GlobalGeoDatChanged(UINT_PTR hint);
    virtual void GlobalWZDatChanged(UINT_PTR hint);
    virtual void GlobalUPaChanged(UINT_PTR hint);
    /// The fields of the mask's record by name, for reports, scripts and tests.
    virtual RecordFields DescribeRecord();
    /// The rows of a mask that reads them from a file, none before it has; nothing for other masks.
    virtual std::optional<ReadRows> RowsRead();

    /// The open mask of this case with the dialog ID (passed in the pointer-sized argument), or null.
    static CMDIRechDialog* FindMDIRechDialogByDlgId(CRuvData& data, char* dialogId);

    /// What is shown as results does not belong to the inputs shown. Front ends, state and report say so.
    virtual bool ResultsAreOutdated();
    /// The same of one control: a result that is older than the others, or all of them.
    bool IsOutdated(UINT controlId);

    /// Grows whenever results are computed or cleared: what was told before no longer speaks of those shown.
    int Calculations() const { return m_calculations; }

    CRuvData& RuvData() const { return m_data; }
    CKfzDaten& KfzDat(std::size_t index) const;
    CWegZeitDat& WZDat(std::size_t index) const;
    CUBEParameter& UPa(std::size_t index) const;

  protected:
    // Which inputs the results shown belong to. A mask says it after each calculation; from then on any other input
    // makes them outdated, and the same inputs again make them valid.
    /// The results belong to the inputs as they are now, but for those of the controls named.
    void ResultsComputed(std::initializer_list<UINT> exceptOf = {});
    /// A calculation failed: what results there are belong to other inputs.
    void ResultsFailed();
    /// There are no results.
    void ResultsCleared();

    /// WM_RUV_UPDATEDIALOG and WM_RUV_EDITCHANGED, unless the mask takes them, show the fields afresh.
    LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    void ShowHelp() override;

    /// Index of the vehicle whose colour the edits may take, -1 = none.
    virtual std::int64_t ColorVehicle() const { return -1; }
    /// The same for the number that lies in this field of the record, where a mask is about several vehicles.
    virtual std::int64_t ColorVehicleOf(const void* /*field*/) const { return ColorVehicle(); }
    /// For WM_RUV_EDITCHANGED of a mask that takes a finished entry as it takes a spinner's step.
    LRESULT EntryAsStep(WPARAM controlId, LPARAM);
    /// Asks whether all entries shall be cleared.
    bool ConfirmClear();
    /// Shows a string of the module in a static, nothing for 0. {0}, {1}, ... in it stand for the numbers.
    void ShowText(UINT controlId, UINT textId, std::span<const ShownNumber> numbers = {});
    /// Shows a text that the mask has put together.
    void ShowText(UINT controlId, const std::string& utf8);
    /// The same for what only asks the user to do something: reports leave it out.
    void ShowPrompt(UINT controlId, UINT textId);
    void ShowPrompt(UINT controlId, const std::string& utf8);
    bool IsChecked(UINT controlId) const;
    void Check(UINT controlId, bool checked);
    /// The program's main window, or null.
    static CWnd* MainWindow();

    CRuvData& m_data;
    /// Colours of the numbers that the table binds, or null for the usual ones.
    const CEditColors* m_editColors = nullptr;
    /// Marks the controls whose results are outdated.
    void ShowOutdated();

    /// 1: the window is listed among the case's open masks and told of its changes.
    int m_isCalculationMask = 0;

  private:
    void ShowOwnVehicles();

    enum class Results { none, ofInputs, ofOthers };
    Results m_results = Results::none;
    int m_calculations = 0;
    std::vector<double> m_resultInputs; // that the results belong to
    std::vector<UINT> m_olderResults;   // controls
    bool m_marked = false;              // some control is marked as outdated
};
