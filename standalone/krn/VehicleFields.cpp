// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "krn/VehicleFields.h"

#include "host/Assert.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace krn
{
namespace
{

constexpr UnitType kLength(unitType::length);

VehicleField Length(double CKfzDaten::*value, const char* label, double minimum, double maximum,
                    const char* explanation)
{
    return {value, {label, minimum, maximum, 3, kLength, {}}, explanation};
}

std::vector<VehicleField> MakeFields()
{
    return {
        {&CKfzDaten::mass, {"Masse", 0.0, 100'000.0, 0, UnitType(unitType::none), "kg"}, "mit Insassen und Ladung"},
        {&CKfzDaten::payload,
         {"Nutzlast", 0.0, 100'000.0, 0, UnitType(unitType::none), "kg"},
         "höchste zulässige Ladung; 0, wenn nicht bekannt"},
        Length(&CKfzDaten::length, "Länge", 0.0, 60.0, "über alles"),
        Length(&CKfzDaten::width, "Breite", 0.0, 10.0, "ohne Spiegel"),
        Length(&CKfzDaten::height, "Höhe", 0.0, 10.0, "über der Fahrbahn"),
        Length(&CKfzDaten::wheelbase, "Radstand", 0.0, 30.0, "zwischen Vorder- und Hinterachse"),
        Length(&CKfzDaten::track, "Spurweite", 0.0, 5.0, "zwischen den Reifenmitten einer Achse"),
        Length(&CKfzDaten::frontOverhang, "Überhang vorn", -5.0, 20.0, "von der Vorderachse zur Front"),
        Length(&CKfzDaten::rearOverhang, "Überhang hinten", -5.0, 20.0, "von der Hinterachse zum Heck"),
        Length(&CKfzDaten::turningCircle, "Wendekreis", 0.0, 60.0, "Durchmesser zwischen Bordsteinen"),
        Length(&CKfzDaten::turningCircleExtra, "Zuschlag Mauern", -5.0, 10.0,
               "je Seite zum Wendekreis zwischen Mauern"),
        {&CKfzDaten::steeringRatio,
         {"Lenkübersetzung", -100.0, 100.0, 2, UnitType(unitType::none), {}},
         "Lenkradwinkel zu Radeinschlag"},
    };
}

CKfzDaten Vehicle(CKfzDaten::Type type, double mass, double length, double width, double height, double wheelbase,
                  double frontOverhang)
{
    CKfzDaten vehicle;
    vehicle.type = type;
    vehicle.mass = mass;
    vehicle.length = length;
    vehicle.width = width;
    vehicle.height = height;
    vehicle.wheelbase = wheelbase;
    vehicle.frontOverhang = frontOverhang;
    vehicle.rearOverhang = wheelbase > 0.0 ? length - wheelbase - frontOverhang : 0.0;
    return vehicle;
}

} // namespace

std::span<const VehicleField> VehicleFields()
{
    static const std::vector<VehicleField> fields = MakeFields();
    return fields;
}

const VehicleField& FieldOf(double CKfzDaten::*value)
{
    const auto fields = VehicleFields();
    const auto found =
        std::find_if(fields.begin(), fields.end(), [value](const VehicleField& field) { return field.value == value; });
    RUV_ASSERT(found != fields.end());
    return *found;
}

bool HasField(CKfzDaten::Type type, double CKfzDaten::*value)
{
    using Values = std::vector<double CKfzDaten::*>;
    static const Values ofBodies{&CKfzDaten::mass, &CKfzDaten::length, &CKfzDaten::width, &CKfzDaten::height};
    static const Values ofTwoTracks{&CKfzDaten::track, &CKfzDaten::turningCircleExtra, &CKfzDaten::steeringRatio};
    const auto in = [value](const Values& values) {
        return std::find(values.begin(), values.end(), value) != values.end();
    };
    switch (type) {
    case CKfzDaten::Type::pedestrian:
        return in(ofBodies);
    case CKfzDaten::Type::motorcycle:
    case CKfzDaten::Type::bicycle:
        return !in(ofTwoTracks);
    default:
        return true;
    }
}

std::string TypeName(CKfzDaten::Type type)
{
    switch (type) {
    case CKfzDaten::Type::none:
        return "(kein Fahrzeug)";
    case CKfzDaten::Type::car:
        return "Pkw";
    case CKfzDaten::Type::truck:
        return "Lkw";
    case CKfzDaten::Type::motorcycle:
        return "Motorrad";
    case CKfzDaten::Type::bicycle:
        return "Fahrrad";
    case CKfzDaten::Type::pedestrian:
        return "Fußgänger";
    }
    return "?";
}

CKfzDaten TypicalVehicle(CKfzDaten::Type type)
{
    switch (type) {
    case CKfzDaten::Type::none:
        break;
    case CKfzDaten::Type::car:
        return TypicalCar("", RGB(0, 0, 0));
    case CKfzDaten::Type::truck: {
        CKfzDaten truck = Vehicle(type, 12'000.0, 9.0, 2.5, 3.6, 5.1, 1.4);
        truck.track = 2.05;
        truck.turningCircle = 18.5;
        truck.turningCircleExtra = 0.6;
        truck.steeringRatio = 20.0;
        return truck;
    }
    case CKfzDaten::Type::motorcycle:
        return Vehicle(type, 280.0, 2.1, 0.8, 1.15, 1.45, 0.32);
    case CKfzDaten::Type::bicycle:
        return Vehicle(type, 95.0, 1.8, 0.6, 1.1, 1.1, 0.35);
    case CKfzDaten::Type::pedestrian:
        return Vehicle(type, 75.0, 0.35, 0.55, 1.75, 0.0, 0.0);
    }
    return {};
}

std::string Contradiction(const CKfzDaten& vehicle)
{
    constexpr double kRounding = 0.0051; // m: dimensions are known to the centimetre
    const auto shown = [](double CKfzDaten::*field, double value) {
        const NumberFormat& format = FieldOf(field).format;
        return ShowNumber(value, format) + " " + UnitOf(format);
    };
    const double sum = vehicle.frontOverhang + vehicle.wheelbase + vehicle.rearOverhang;
    if (HasField(vehicle.type, &CKfzDaten::wheelbase) && vehicle.wheelbase > 0.0 &&
        std::abs(sum - vehicle.length) > kRounding)
        return "Radstand und Überhänge ergeben " + shown(&CKfzDaten::length, sum) + ", die Länge ist " +
               shown(&CKfzDaten::length, vehicle.length) + ".";
    if (HasField(vehicle.type, &CKfzDaten::track) && vehicle.track > vehicle.width + kRounding)
        return "Die Spurweite " + shown(&CKfzDaten::track, vehicle.track) + " ist größer als die Breite " +
               shown(&CKfzDaten::width, vehicle.width) + ".";
    return {};
}

} // namespace krn
