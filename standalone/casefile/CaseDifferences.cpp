// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "casefile/CaseDifferences.h"

#include "base/JsonValue.h"
#include "casefile/CaseFields.h"

namespace casefile
{
namespace
{

using base::JsonValue;

std::string TextOf(const JsonValue* value)
{
    return value == nullptr ? std::string() : base::WriteJson(*value, base::JsonLayout::oneLine);
}

void Compare(const JsonValue* before, const JsonValue* after, const std::string& at, std::vector<CaseDifference>& found)
{
    const auto* oldObject = before == nullptr ? nullptr : before->As<JsonValue::Object>();
    const auto* newObject = after == nullptr ? nullptr : after->As<JsonValue::Object>();
    if (oldObject != nullptr && newObject != nullptr) {
        for (const auto& member : *oldObject)
            Compare(&member.value, Find(*newObject, member.name), case_file::Below(at, member.name), found);
        for (const auto& member : *newObject)
            if (Find(*oldObject, member.name) == nullptr)
                Compare(nullptr, &member.value, case_file::Below(at, member.name), found);
        return;
    }
    const auto* oldArray = before == nullptr ? nullptr : before->As<JsonValue::Array>();
    const auto* newArray = after == nullptr ? nullptr : after->As<JsonValue::Array>();
    if (oldArray != nullptr && newArray != nullptr) {
        for (std::size_t i = 0; i < oldArray->size() || i < newArray->size(); ++i)
            Compare(i < oldArray->size() ? &(*oldArray)[i] : nullptr, i < newArray->size() ? &(*newArray)[i] : nullptr,
                    case_file::Below(at, i), found);
        return;
    }
    std::string oldText = TextOf(before);
    std::string newText = TextOf(after);
    if (oldText != newText)
        found.push_back({at, std::move(oldText), std::move(newText)});
}

} // namespace

std::vector<CaseDifference> CaseDifferences(std::string_view before, std::string_view after)
{
    const base::JsonParsed oldCase = base::ParseJson(before);
    const base::JsonParsed newCase = base::ParseJson(after);
    std::vector<CaseDifference> found;
    if (oldCase.value && newCase.value)
        Compare(&*oldCase.value, &*newCase.value, {}, found);
    else if (before != after)
        found.push_back({{}, std::string(before), std::string(after)});
    return found;
}

} // namespace casefile
