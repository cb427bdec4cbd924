// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Module start and end: the resources join the host's chain while the module is loaded.
#include "frame/RuvMod.h"

// The compiled resources, embedded by res/Resources.S.
extern "C" const std::byte ruvmod_res_begin[];
extern "C" const std::byte ruvmod_res_end[];

namespace
{

constexpr DWORD kProcessDetach = 0;
constexpr DWORD kProcessAttach = 1;

AFX_EXTENSION_MODULE& Module()
{
    static AFX_EXTENSION_MODULE module{{ruvmod_res_begin, ruvmod_res_end}, nullptr, false};
    return module;
}

} // namespace

BOOL DllMain(HINSTANCE instance, DWORD reason, void*)
{
    if (reason == kProcessAttach) {
        if (!AfxInitExtensionModule(Module(), instance))
            return FALSE;
        new CDynLinkLibrary(Module(), FALSE); // the chain owns it
    } else if (reason == kProcessDetach) {
        AfxTermExtensionModule(Module());
    }
    return TRUE;
}

#ifndef _WIN32
namespace
{

// Where no loader calls DllMain, the module's static life does.
struct Attachment {
    Attachment() { DllMain(&Module(), kProcessAttach, nullptr); }
    ~Attachment() { DllMain(&Module(), kProcessDetach, nullptr); }
};
const Attachment g_attachment;

} // namespace
#endif
