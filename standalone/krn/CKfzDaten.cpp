// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "host/CKfzDaten.h"

void CKfzDaten::Calc_Lv_Lh_HB(double& lh, double& lv, double& hb) const
{
    lh = length / 2.0;
    lv = length / 2.0;
    hb = width / 2.0;
}

CKfzDaten TypicalCar(const std::string& name, COLORREF color)
{
    CKfzDaten car;
    car.name = name;
    car.type = CKfzDaten::Type::car;
    car.color = color;
    car.mass = 1500.0;
    car.length = 4.5;
    car.width = 1.8;
    car.height = 1.45;
    car.wheelbase = 2.65;
    car.track = 1.55;
    car.frontOverhang = 0.9;
    car.rearOverhang = 0.95;
    car.turningCircle = 10.9;
    car.turningCircleExtra = 0.25;
    car.steeringRatio = 15.5;
    return car;
}
