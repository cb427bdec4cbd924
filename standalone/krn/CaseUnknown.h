// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "base/JsonValue.h"
#include "host/CRuvData.h"

#include <array>

/// The members of a case file that a newer program wrote, by the object they stood in. Those of a phase travel with
/// its column.
struct CRuvData::Unknown {
    int minorVersion = 0; ///< of the file, when newer than this program's
    base::JsonValue::Object root;
    base::JsonValue::Object details;    ///< of the case
    base::JsonValue::Object parameters; ///< of the case
    base::JsonValue::Object scene;
    base::JsonValue::Object video;
    struct Vehicle {
        base::JsonValue::Object vehicle;
        base::JsonValue::Object parameters;
        base::JsonValue::Object pathTime;
    };
    std::array<Vehicle, kFahrzeuge> vehicles;
};
