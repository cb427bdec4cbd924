// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The record of a mask for an expert's report ("Protokoll"), as a document without a format.
#pragma once

#include "host/CDC.h"
#include "host/CRuvData.h"
#include "report/HelpText.h"

#include <ctime>
#include <string>
#include <vector>

namespace framework
{
struct ShownMessage;
struct Window;
} // namespace framework

namespace report
{

struct ProtocolEntry {
    std::string label;
    std::string value; ///< as the mask shows it
    std::string unit;
};

/// Entries of a frame of the mask; `title` is the frame's, or empty.
struct ProtocolGroup {
    std::string title;
    std::vector<ProtocolEntry> entries;
};

struct ProtocolPicture {
    std::string caption;
    CDC drawing;
};

/// What the mask itself does not know.
struct ProtocolContext {
    UINT number = 0;
    std::string helpPage; ///< Markdown; its section "Formeln" is quoted
    std::vector<std::string> messages;
    std::string caseTitle;
    CFallAngaben caseDetails;
    std::string caseFile; ///< name or path; empty for a case that was never saved
    std::string caseSha256;
    std::string date; ///< German
};

/// Label of the entry of Protocol::origin that names the case's content.
inline constexpr const char* kSha256Label = "SHA-256 des Falls";

/// What stands in the place of results that belong to other inputs.
inline constexpr const char* kOutdatedText =
    "Ergebnisse veraltet, bitte rechnen: Eingaben wurden seit der Berechnung geändert.";

struct Protocol {
    bool outdated = false; ///< results are left out because they belong to other inputs
    std::string title;
    std::vector<ProtocolEntry> origin; ///< case, file, date, program, SHA-256
    std::vector<ProtocolGroup> inputs;
    std::vector<ProtocolGroup> results;
    std::vector<TextBlock> tables;     ///< the mask's tables, each under a heading of its own
    std::vector<std::string> notes;    ///< what the mask says beside its fields
    std::vector<std::string> messages; ///< what it told in messages
    std::vector<ProtocolPicture> pictures;
    std::vector<TextBlock> formulas;
};

/// Reads what the dialog and all its pages show. Fields that cannot be edited are results; inputs that do not
/// count, because the switch before them is off, are left out.
Protocol MakeProtocol(const framework::Window& dialog, const ProtocolContext& context);

/// A message as it stands in a report: with what was answered, where it asks something. Empty for the question
/// whether to clear, which says nothing of the results.
std::string MessageWithAnswer(const framework::ShownMessage& message, int answer);

/// What a drawing field of a mask shows, as large as it stands in a protocol; empty for another control.
CDC DrawField(const framework::Window& field);

/// The date of a protocol, so that the same case and call give the same bytes: the moment that the environment variable
/// SOURCE_DATE_EPOCH gives (seconds since 1970) in UTC, "7. März 2026, 09:05 Uhr (UTC)", otherwise the day on this
/// machine and its zone, "7. März 2026 (UTC+01:00)".
std::string ProtocolDate(const char* sourceDateEpoch, std::time_t now);
/// By the environment and the clock.
std::string ProtocolDate();

/// Lines of "label<tab>value<tab>unit", inputs before results, for a spreadsheet.
std::string ProtocolText(const Protocol& protocol);

} // namespace report
