// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The video of a case: where it lies, and which one it is.
#pragma once

#include <string>

struct CVideoQuelle {
    std::string datei;  ///< relative to the case file where there is one, with "/"; empty without a video
    std::string sha256; ///< of the file when it was taken up, 64 hexadecimal digits

    friend bool operator==(const CVideoQuelle&, const CVideoQuelle&) = default;
};
