// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "frame/MaskResults.h"

#include "masks/dynamics/CBeschlDlg.h"
#include "masks/dynamics/CGrenzVDlg.h"

namespace
{

template <class Dialog> void RunModally(CRuvData& data, CWnd* parent, double* result, int* okFlag)
{
    Dialog dialog(data, parent);
    if (dialog.DoModal() != IDOK || result == nullptr || !dialog.HatErgebnis())
        return;
    if (okFlag != nullptr)
        *okFlag = 1;
    *result = dialog.Ergebnis();
}

} // namespace

void AMax(CRuvData& data, CWnd* parent, double* result, int* okFlag)
{
    RunModally<CBeschlDlg>(data, parent, result, okFlag);
}

void VGrenz(CRuvData& data, CWnd* parent, double* result, int* okFlag)
{
    RunModally<CGrenzVDlg>(data, parent, result, okFlag);
}
