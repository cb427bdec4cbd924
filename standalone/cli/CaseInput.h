// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "base/JsonValue.h"
#include "host/CRuvData.h"

#include <memory>
#include <string>

namespace cli
{

/// A case to work on, or why there is none.
struct CaseInput {
    std::unique_ptr<CRuvData> data;
    std::string error;
};

CaseInput CaseFromFile(const std::string& path);
CaseInput CaseFromJson(const base::JsonValue& json);
/// A case with two passenger cars.
std::unique_ptr<CRuvData> ExampleCase();

} // namespace cli
