// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// JSON as a plain value: read with limits, so that no file can exhaust stack or memory, and written so that the same
// value always gives the same bytes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace base
{

inline constexpr std::size_t kJsonMaxBytes = std::size_t{64} << 20U;
inline constexpr std::size_t kJsonMaxDepth = 32;
inline constexpr std::size_t kJsonMaxValues = 2'000'000;

class JsonValue
{
  public:
    struct Member;
    using Array = std::vector<JsonValue>;
    using Object = std::vector<Member>; ///< in the order of the text; no name twice

    JsonValue() noexcept;
    JsonValue(bool value);
    JsonValue(std::int64_t value);
    JsonValue(std::uint64_t value);
    JsonValue(double value);
    JsonValue(std::string value);
    JsonValue(Array value);
    JsonValue(Object value);
    template <class T> JsonValue(const T*) = delete; // would be a bool

    /// The value when it has this type, otherwise null.
    template <class T> const T* As() const { return std::get_if<T>(&m_value); }
    template <class T> T* As() { return std::get_if<T>(&m_value); }
    /// Any number as a double.
    std::optional<double> Number() const;
    /// A number without fraction, written with or without one.
    std::optional<std::int64_t> Integer() const;

  private:
    friend class JsonWriter;
    std::variant<std::monostate, bool, std::int64_t, std::uint64_t, double, std::string, Array, Object> m_value;
};

struct JsonValue::Member {
    std::string name;
    JsonValue value;
};

inline JsonValue::JsonValue() noexcept = default;
inline JsonValue::JsonValue(bool value) : m_value(value) {}
inline JsonValue::JsonValue(std::int64_t value) : m_value(value) {}
inline JsonValue::JsonValue(std::uint64_t value) : m_value(value) {}
inline JsonValue::JsonValue(double value) : m_value(value) {}
inline JsonValue::JsonValue(std::string value) : m_value(std::move(value)) {}
inline JsonValue::JsonValue(Array value) : m_value(std::move(value)) {}
inline JsonValue::JsonValue(Object value) : m_value(std::move(value)) {}

/// The member's value, null when the object has none of this name.
const JsonValue* Find(const JsonValue::Object& object, std::string_view name);

struct JsonParsed {
    std::optional<JsonValue> value;
    std::string error; ///< German, with line and column where known; empty with a value
};
JsonParsed ParseJson(std::string_view text);

enum class JsonLayout {
    readable, ///< containers without objects inside on one line, others indented; ends with a line break
    oneLine,
};
/// Shortest digits that give the same number again. All numbers must be finite and all strings UTF-8.
std::string WriteJson(const JsonValue& value, JsonLayout layout);

/// Whether ParseJson would take the value for neither too deep nor too large.
bool FitsLimits(const JsonValue& value);

} // namespace base
