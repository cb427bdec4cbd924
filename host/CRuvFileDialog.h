// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "host/HostTypes.h"

#include <string>

class CWnd;

/// Choice of a file by the user.
class CRuvFileDialog
{
  public:
    /// `filter` holds pairs "Name|*.ext|" as usual, UTF-8.
    CRuvFileDialog(bool open, std::string title, std::string filter, CWnd* parent);
    /// IDOK with a path chosen, IDCANCEL otherwise.
    INT_PTR DoModal();
    /// UTF-8 path, empty before a choice.
    const std::string& GetPathName() const { return m_path; }

  private:
    bool m_open;
    std::string m_title;
    std::string m_filter;
    CWnd* m_parent;
    std::string m_path;
};
