// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "host/CDialog.h"
#include "host/CRuvData.h"
#include "krn/CaseWindows.h"
#include "krn/OpenMasks.h"

#include "framework/UiThread.h"

#include <algorithm>

namespace krn
{
namespace
{

std::vector<CMDIRechDialog*>& Registry()
{
    static std::vector<CMDIRechDialog*> registry;
    return registry;
}

} // namespace

std::vector<CMDIRechDialog*> OpenMasks(const CRuvData& data)
{
    std::vector<CMDIRechDialog*> masks;
    std::copy_if(Registry().begin(), Registry().end(), std::back_inserter(masks),
                 [&](const CMDIRechDialog* mask) { return &mask->RuvData() == &data; });
    return masks;
}

void RegisterMask(CMDIRechDialog& mask)
{
    Registry().push_back(&mask);
}

void UnregisterMask(CMDIRechDialog& mask)
{
    std::erase(Registry(), &mask);
}

} // namespace krn

CMDIRechDialog::CMDIRechDialog(UINT dialogId, CWnd* parent, CRuvData& data, int*, int*)
    : CMDIDialog(dialogId, parent), m_data(data)
{
}

CMDIRechDialog::~CMDIRechDialog()
{
    krn::UnregisterMask(*this);
}

BOOL CMDIRechDialog::DoModeless(CWnd* parent)
{
    if (m_isCalculationMask != 0)
        krn::RegisterMask(*this);
    return CMDIDialog::DoModeless(parent); // a mask that does not open is deleted, and leaves the list with that
}

void CMDIRechDialog::ShutDownWindow()
{
    krn::UnregisterMask(*this);
    CMDIDialog::ShutDownWindow();
}

UINT CMDIRechDialog::GetDlgResIDForAssistant()
{
    return GetDialogId();
}

void CMDIRechDialog::ShowHelp()
{
    framework::UiThread::Current()->Front().ShowHelp(GetDlgResIDForAssistant());
}

void CMDIRechDialog::GlobalGeoDatChanged(UINT_PTR) {}

void CMDIRechDialog::GlobalWZDatChanged(UINT_PTR) {}

void CMDIRechDialog::GlobalUPaChanged(UINT_PTR) {}

RecordFields CMDIRechDialog::DescribeRecord()
{
    return {};
}

CMDIRechDialog* CMDIRechDialog::FindMDIRechDialogByDlgId(CRuvData& data, char* dialogId)
{
    const auto wanted = reinterpret_cast<UINT_PTR>(dialogId);
    for (CMDIRechDialog* mask : krn::OpenMasks(data))
        if (mask->GetDialogId() == wanted)
            return mask;
    return nullptr;
}

CKfzDaten& CMDIRechDialog::KfzDat(std::size_t index) const
{
    return m_data.KfzDat(index);
}

CWegZeitDat& CMDIRechDialog::WZDat(std::size_t index) const
{
    return m_data.WZDat(index);
}

CUBEParameter& CMDIRechDialog::UPa(std::size_t index) const
{
    return m_data.UPa(index);
}
