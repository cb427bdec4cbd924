// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "report/HelpPages.h"

#include <string_view>

// Every page after a zero byte and a line with its number; see cmake/ModuleResources.cmake.
extern "C" {
extern const char ruvHelpPagesBegin[];
extern const char ruvHelpPagesEnd[];
}

namespace report
{

std::string HelpPage(UINT mask)
{
    const std::string_view pages(ruvHelpPagesBegin, static_cast<std::size_t>(ruvHelpPagesEnd - ruvHelpPagesBegin));
    const std::string heading = '\0' + std::to_string(mask) + '\n';
    const std::size_t begin = pages.find(heading);
    if (begin == std::string_view::npos)
        return {};
    const std::string_view page = pages.substr(begin + heading.size());
    return std::string(page.substr(0, page.find('\0')));
}

} // namespace report
