// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "host/HostTypes.h"

#include <string>

class CWnd;

// Flags of the file chooser.
inline constexpr DWORD OFN_OVERWRITEPROMPT = 0x0002; // saving asks before it takes a file that exists
inline constexpr DWORD OFN_HIDEREADONLY = 0x0004;    // there is nothing to hide
inline constexpr DWORD OFN_FILEMUSTEXIST = 0x1000;   // opening takes ordinary files only

/// Choice of a file by the user.
class CRuvFileDialog
{
  public:
    /// All texts UTF-8. `defaultExtension` ("fli", ".fli" or "*.fli") completes a name without one; when opening, only
    /// if that is what exists. `initialName` is a path or a name, `filter` holds pairs "Name|*.a;*.b|" as usual.
    CRuvFileDialog(bool open, std::string defaultExtension, std::string initialName, DWORD flags, std::string filter,
                   CWnd* parent);
    void SetTitle(std::string title) { m_title = std::move(title); }
    /// IDOK with a path chosen, IDCANCEL otherwise. A choice that the flags do not allow is told and asked again.
    INT_PTR DoModal();
    /// UTF-8 path, empty before a choice.
    const std::string& GetPathName() const { return m_path; }

  private:
    std::string Completed(const std::string& path) const;

    bool m_open;
    std::string m_extension; ///< without the point
    std::string m_initialName;
    DWORD m_flags;
    std::string m_filter;
    CWnd* m_parent;
    std::string m_title;
    std::string m_path;
};
