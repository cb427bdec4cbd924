// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "framework/Window.h"

/// The framework's way to the protected side of a window object.
struct CWndAccess {
    static LRESULT WindowProc(CWnd& object, UINT message, WPARAM wParam, LPARAM lParam);
    static void PostNcDestroy(CWnd& object) { object.PostNcDestroy(); }
    /// Runs the handler of the object's message map for the message; false when there is none.
    static bool CallMap(CWnd& object, UINT message, UINT code, UINT id, WPARAM wParam, LPARAM lParam, LRESULT& result);
};

namespace framework
{

using WndAccess = CWndAccess;

/// The window behind an object, or null when it has none.
Window* WindowOf(const CWnd& object);
/// Tells the front end that a window's look changed.
void Changed(Window& window);

} // namespace framework
