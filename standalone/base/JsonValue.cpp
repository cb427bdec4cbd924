// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "base/JsonValue.h"

#include "base/NumberText.h"
#include "host/Assert.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace base
{
namespace
{

/// " (Zeile 3, Spalte 14)" of a byte offset.
std::string Place(std::string_view text, std::size_t offset)
{
    const std::string_view before = text.substr(0, std::min(offset, text.size()));
    const auto line = std::count(before.begin(), before.end(), '\n') + 1;
    const std::size_t lineStart = before.rfind('\n') + 1; // npos + 1 = 0
    return " (Zeile " + std::to_string(line) + ", Spalte " + std::to_string(before.size() - lineStart) + ")";
}

bool HasDoubledName(const JsonValue::Object& object)
{
    std::vector<std::string_view> names;
    names.reserve(object.size());
    for (const JsonValue::Member& member : object)
        names.emplace_back(member.name);
    std::sort(names.begin(), names.end());
    return std::adjacent_find(names.begin(), names.end()) != names.end();
}

/// Builds the value from the reader's events and stops it at the first breach of a limit.
class Builder final : public nlohmann::json_sax<nlohmann::json>
{
  public:
    explicit Builder(std::string_view text) : m_text(text) {}

    std::optional<JsonValue> root;
    std::string error;

    bool null() override { return Add(JsonValue()); }
    bool boolean(bool value) override { return Add(value); }
    bool number_integer(std::int64_t value) override { return Add(value); }
    bool number_unsigned(std::uint64_t value) override
    {
        constexpr auto largest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
        return value <= largest ? Add(static_cast<std::int64_t>(value)) : Add(value);
    }
    bool number_float(double value, const std::string& digits) override
    {
        // The reader's own conversion depends on the C library; this one is exact everywhere.
        double exact = value;
        const auto end = digits.data() + digits.size();
        const auto parsed = std::from_chars(digits.data(), end, exact);
        return Add(parsed.ec == std::errc() && parsed.ptr == end ? exact : value);
    }
    bool string(std::string& value) override { return Add(std::move(value)); }
    bool binary(nlohmann::json::binary_t&) override { return Fail("enthält Binärdaten"); }
    bool start_object(std::size_t) override { return Open(JsonValue::Object()); }
    bool start_array(std::size_t) override { return Open(JsonValue::Array()); }
    bool end_array() override { return Close(); }
    bool end_object() override
    {
        if (HasDoubledName(*m_open.back().value.As<JsonValue::Object>()))
            return Fail("enthält einen Namen doppelt");
        return Close();
    }
    bool key(std::string& name) override
    {
        m_open.back().nextName = std::move(name);
        return true;
    }
    bool parse_error(std::size_t position, const std::string&, const nlohmann::detail::exception& exception) override
    {
        constexpr int kNumberOverflow = 406;
        const char* reason = exception.id == kNumberOverflow ? "enthält eine zu große Zahl"
                             : position > m_text.size()      ? "bricht mitten im Text ab"
                                                             : "ist kein gültiges JSON";
        return Fail(reason + Place(m_text, position));
    }

  private:
    struct Container {
        JsonValue value;
        std::string nextName;
    };

    bool Fail(std::string reason)
    {
        error = std::move(reason);
        return false;
    }

    bool Open(JsonValue container)
    {
        if (m_open.size() >= kJsonMaxDepth)
            return Fail("ist zu tief verschachtelt");
        m_open.push_back({std::move(container), {}});
        return true;
    }

    bool Close()
    {
        JsonValue value = std::move(m_open.back().value);
        m_open.pop_back();
        return Add(std::move(value));
    }

    bool Add(JsonValue value)
    {
        if (++m_count > kJsonMaxValues)
            return Fail("enthält zu viele Werte");
        if (m_open.empty()) {
            root = std::move(value);
        } else if (auto* array = m_open.back().value.As<JsonValue::Array>()) {
            array->push_back(std::move(value));
        } else {
            Container& object = m_open.back();
            object.value.As<JsonValue::Object>()->push_back({std::move(object.nextName), std::move(value)});
        }
        return true;
    }

    std::string_view m_text;
    std::vector<Container> m_open;
    std::size_t m_count = 0;
};

/// Adds the values of the tree to `count`; false as soon as a limit is passed.
bool CountWithin(const JsonValue& value, std::size_t depth, std::size_t& count)
{
    const auto* array = value.As<JsonValue::Array>();
    const auto* object = value.As<JsonValue::Object>();
    if (++count > kJsonMaxValues || (depth == kJsonMaxDepth && (array || object)))
        return false;
    const auto within = [&](const JsonValue& item) { return CountWithin(item, depth + 1, count); };
    return (!array || std::all_of(array->begin(), array->end(), within)) &&
           (!object || std::all_of(object->begin(), object->end(),
                                   [&](const JsonValue::Member& member) { return within(member.value); }));
}

std::string Quoted(const std::string& text)
{
    const bool plain =
        std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c < '\x7f' && c != '"' && c != '\\'; });
    return plain ? '"' + text + '"' : nlohmann::json(text).dump();
}

} // namespace

std::optional<double> JsonValue::Number() const
{
    if (const auto* number = As<double>())
        return *number;
    if (const auto* number = As<std::int64_t>())
        return static_cast<double>(*number);
    if (const auto* number = As<std::uint64_t>())
        return static_cast<double>(*number);
    return std::nullopt;
}

std::optional<std::int64_t> JsonValue::Integer() const
{
    if (const auto* number = As<std::int64_t>())
        return *number;
    constexpr double kExact = 9007199254740992.0; // 2^53
    const auto* number = As<double>();
    if (number && std::abs(*number) <= kExact && *number == std::floor(*number))
        return static_cast<std::int64_t>(*number);
    return std::nullopt;
}

const JsonValue* Find(const JsonValue::Object& object, std::string_view name)
{
    const auto member = std::find_if(object.begin(), object.end(), [&](const auto& m) { return m.name == name; });
    return member == object.end() ? nullptr : &member->value;
}

JsonParsed ParseJson(std::string_view text)
{
    if (text.size() > kJsonMaxBytes)
        return {std::nullopt, "ist zu groß"};
    Builder builder(text);
    if (nlohmann::json::sax_parse(text, &builder))
        return {std::move(builder.root), {}};
    return {std::nullopt, std::move(builder.error)};
}

class JsonWriter
{
  public:
    explicit JsonWriter(JsonLayout layout) : m_readable(layout == JsonLayout::readable) {}

    void Write(const JsonValue& value)
    {
        std::visit([this](const auto& content) { WriteContent(content); }, value.m_value);
    }

    std::string out;

  private:
    static bool HoldsObject(const JsonValue& value)
    {
        if (const auto* array = value.As<JsonValue::Array>())
            return std::any_of(array->begin(), array->end(), HoldsObject);
        return value.As<JsonValue::Object>() != nullptr;
    }

    void WriteContent(std::monostate) { out += "null"; }
    void WriteContent(bool value) { out += value ? "true" : "false"; }
    void WriteContent(std::int64_t value) { out += std::to_string(value); }
    void WriteContent(std::uint64_t value) { out += std::to_string(value); }
    void WriteContent(const std::string& value) { out += Quoted(value); }
    void WriteContent(double value)
    {
        RUV_ASSERT(std::isfinite(value));
        const std::string digits = ShortestDigits(value);
        out += digits;
        // Without a point it would come back as an integer, and a negative zero as 0.
        if (digits.find_first_of(".e") == std::string::npos)
            out += ".0";
    }
    void WriteContent(const JsonValue::Array& array)
    {
        const bool lines = m_readable && std::any_of(array.begin(), array.end(), HoldsObject);
        WriteItems('[', ']', array, lines, [this](const JsonValue& value) { Write(value); });
    }

    void WriteContent(const JsonValue::Object& object)
    {
        const bool lines = m_readable && std::any_of(object.begin(), object.end(),
                                                     [](const auto& member) { return HoldsObject(member.value); });
        WriteItems('{', '}', object, lines, [this](const JsonValue::Member& member) {
            out += Quoted(member.name) + ": ";
            Write(member.value);
        });
    }

    template <class Items, class WriteItem>
    void WriteItems(char open, char close, const Items& items, bool lines, const WriteItem& writeItem)
    {
        out += open;
        ++m_depth;
        bool first = true;
        for (const auto& item : items) {
            out += first ? "" : lines ? "," : ", ";
            if (lines)
                NewLine();
            writeItem(item);
            first = false;
        }
        --m_depth;
        if (lines)
            NewLine();
        out += close;
    }

    void NewLine() { out.append(1, '\n').append(2 * m_depth, ' '); }

    bool m_readable;
    std::size_t m_depth = 0;
};

std::string WriteJson(const JsonValue& value, JsonLayout layout)
{
    JsonWriter writer(layout);
    writer.Write(value);
    if (layout == JsonLayout::readable)
        writer.out += '\n';
    return std::move(writer.out);
}

bool FitsLimits(const JsonValue& value)
{
    std::size_t count = 0;
    return CountWithin(value, 0, count);
}

} // namespace base
