// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The numbers of a vehicle as they are edited.
#pragma once

#include "host/CKfzDaten.h"
#include "krn/NumberEntry.h"

#include <span>
#include <string>

namespace krn
{

struct VehicleField {
    double CKfzDaten::*value;
    NumberFormat format;
    std::string explanation; ///< from where to where it is measured
};

/// In the order in which they are edited: mass and payload, then from the outer to the inner dimensions.
std::span<const VehicleField> VehicleFields();
const VehicleField& FieldOf(double CKfzDaten::*value);

/// Whether vehicles of the type have the quantity: a pedestrian has no wheelbase.
bool HasField(CKfzDaten::Type type, double CKfzDaten::*value);

/// German name of a vehicle type; "(kein Fahrzeug)" for none.
std::string TypeName(CKfzDaten::Type type);

/// A vehicle of the type with typical dimensions; name and colour are empty.
CKfzDaten TypicalVehicle(CKfzDaten::Type type);

/// What in the dimensions contradicts itself, as a German sentence; empty when nothing does.
std::string Contradiction(const CKfzDaten& vehicle);

} // namespace krn
