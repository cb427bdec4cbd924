// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "host/CRuvData.h"
#include "krn/JsonValue.h"

#include <array>

/// The members of a case file that a newer program wrote, by the object they stood in. Those of a phase travel with
/// its column.
struct CRuvData::Unknown {
    int minorVersion = 0; ///< of the file, when newer than this program's
    krn::JsonValue::Object root;
    krn::JsonValue::Object scene;
    struct Vehicle {
        krn::JsonValue::Object vehicle;
        krn::JsonValue::Object parameters;
        krn::JsonValue::Object pathTime;
    };
    std::array<Vehicle, kFahrzeuge> vehicles;
};
