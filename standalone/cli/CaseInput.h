// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "base/FileSystem.h"
#include "base/JsonValue.h"
#include "host/CRuvData.h"

#include <memory>
#include <string>

namespace cli
{

/// A case to work on, or why there is none.
struct CaseInput {
    std::unique_ptr<CRuvData> data;
    std::string error{};
    std::string digest{}; ///< of the file it came from, see casefile::FileDigest
};

CaseInput CaseFromFile(const std::string& path, base::Source source = base::Source::ordinaryFile);
CaseInput CaseFromJson(const base::JsonValue& json);
/// A case with two passenger cars.
std::unique_ptr<CRuvData> ExampleCase();

} // namespace cli
