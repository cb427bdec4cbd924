// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "host/HostTypes.h"

#include <string>

class CRuvData;
class CWnd;

/// A participant of the case. Lengths in m, mass in kg. A vehicle's position is the centre of its rectangle.
class CKfzDaten
{
  public:
    enum class Type : int { none = 0, car = 1, truck = 2, motorcycle = 3, bicycle = 4, pedestrian = 5 };

    std::string name;
    Type type = Type::none;
    COLORREF color = RGB(0, 0, 0);
    double mass = 0.0;
    double payload = 0.0; ///< the largest load it may carry, 0 = not known
    double length = 0.0;
    double width = 0.0;
    double height = 0.0;
    double wheelbase = 0.0;
    double track = 0.0;
    double frontOverhang = 0.0;      ///< front axle to front
    double rearOverhang = 0.0;       ///< rear axle to rear
    double turningCircle = 0.0;      ///< diameter between kerbs
    double turningCircleExtra = 0.0; ///< added to each side for the diameter between walls
    double steeringRatio = 0.0;      ///< steering wheel angle to wheel angle

    /// Distances from the reference point (the centre) to the rear and to the front, and half the width, m.
    void Calc_Lv_Lh_HB(double& lh, double& lv, double& hb) const;

    bool IsValid() const { return type != Type::none; }

    /// Copies this record into the case under `index` and tells the open masks. Non-zero on success.
    int Uebertragen(CRuvData& data, std::size_t index, CWnd* parent, int flag) const;

    friend bool operator==(const CKfzDaten&, const CKfzDaten&) = default;
};

/// A typical passenger car with every length set.
CKfzDaten TypicalCar(const std::string& name, COLORREF color);
