// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "report/Protocol.h"

#include <string>

namespace report
{

/// How diagrams stand in the page.
enum class HtmlPictures {
    inlineSvg, ///< in the page itself, which is then one file
    named,     ///< as <img src="diagram-N">, N from 0, for a renderer that is given the pictures
};

/// A whole page, HTML 5 with its style sheet. Uses only what simple renderers know besides.
std::string ProtocolHtml(const Protocol& protocol, HtmlPictures pictures);

/// Inputs and results as one table, for the clipboard.
std::string ProtocolHtmlTable(const Protocol& protocol);

/// Text with the characters that HTML and XML reserve written as entities; control characters become blanks.
std::string EscapeXml(const std::string& text);

} // namespace report
