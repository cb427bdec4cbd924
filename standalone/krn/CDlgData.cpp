// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "host/CDlgData.h"

#include "host/CRuvData.h"

CKfzDaten& CDlgData::KfzDat(std::size_t index) const
{
    return m_data.KfzDat(index);
}

CWegZeitDat& CDlgData::WZDat(std::size_t index) const
{
    return m_data.WZDat(index);
}

CWegZeitRechDat& CDlgData::WZRechDat(std::size_t index) const
{
    return m_data.WZRechDat(index);
}

CUBEParameter& CDlgData::UPa(std::size_t index) const
{
    return m_data.UPa(index);
}
