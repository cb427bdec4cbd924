// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Writes JSON straight into a string, members in the order they are given. No tree in between: a batch writes
// thousands of states per second.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace cli
{

class JsonText
{
  public:
    JsonText& BeginObject() { return Open('{'); }
    JsonText& EndObject() { return Close('}'); }
    JsonText& BeginArray() { return Open('['); }
    JsonText& EndArray() { return Close(']'); }
    JsonText& Key(std::string_view name);

    JsonText& Text(std::string_view utf8);
    /// Shortest text that reads back as the same double; "nan", "inf" and "-inf" as strings.
    JsonText& Number(double value);
    JsonText& Integer(std::int64_t value);
    JsonText& Bool(bool value) { return Raw(value ? "true" : "false"); }
    JsonText& Null() { return Raw("null"); }
    /// A value that is JSON already.
    JsonText& Raw(std::string_view json);

    const std::string& Str() const { return m_text; }
    std::string Take() { return std::move(m_text); }

  private:
    JsonText& Open(char bracket);
    JsonText& Close(char bracket);
    void Separate();

    std::string m_text;
    bool m_comma = false;
};

/// The text of a number as JsonText writes it, without quotes.
std::string NumberText(double value);

} // namespace cli
