// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

class CKfzDaten;
class CRuvData;
class CUBEParameter;
class CWegZeitDat;
class CWegZeitRechDat;
class CWnd;

/// Base of every mask's record: the case it belongs to and the dialog that shows it.
class CDlgData
{
  public:
    explicit CDlgData(CRuvData& data) : m_data(data) {}
    CDlgData(const CDlgData&) = delete;
    CDlgData& operator=(const CDlgData&) = delete;

    virtual void SetParent(CWnd* parent) { m_parent = parent; }

    CRuvData& RuvData() const { return m_data; }
    CKfzDaten& KfzDat(std::size_t index) const;
    CWegZeitDat& WZDat(std::size_t index) const;
    CWegZeitRechDat& WZRechDat(std::size_t index) const;
    CUBEParameter& UPa(std::size_t index) const;

  protected:
    ~CDlgData() = default;
    CRuvData& m_data;
    CWnd* m_parent = nullptr;
};
