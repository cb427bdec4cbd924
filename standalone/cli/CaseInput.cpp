// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "cli/CaseInput.h"

#include "casefile/CaseFile.h"

namespace cli
{
namespace
{

CaseInput Checked(std::unique_ptr<CRuvData> data, const casefile::CaseResult& result)
{
    return result ? CaseInput{std::move(data), {}, result.digest} : CaseInput{nullptr, result.Text(), {}};
}

} // namespace

CaseInput CaseFromFile(const std::string& path, base::Source source)
{
    auto data = std::make_unique<CRuvData>();
    const casefile::CaseResult result = casefile::LoadCase(path, *data, source);
    return Checked(std::move(data), result);
}

CaseInput CaseFromJson(const base::JsonValue& json)
{
    casefile::CaseRead read = casefile::ReadCase(json);
    return Checked(std::move(read.data), read.result);
}

std::unique_ptr<CRuvData> ExampleCase()
{
    auto data = std::make_unique<CRuvData>();
    casefile::AddExampleCars(*data);
    return data;
}

} // namespace cli
