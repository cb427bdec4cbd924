#!/usr/bin/env python3
# SPDX-FileCopyrightText: The RuvMod authors
# SPDX-License-Identifier: Apache-2.0
#
# Prints the expected speeds of SchrankenKurvenTabelle.inc. Written from the published equations alone, in exact
# fractions and without the program's search: a speed v = k/1000 belongs to the distance s when |f(v) - s| < sqrt(0.001),
# and the first such k counts.
from fractions import Fraction as F

A, DA = F(7), F(1, 2)  # deceleration of the vehicle and its tolerance, m/s^2
D_P = F(-5)  # the person, m
M_NEAR, M_FAR = F(7), F(10)  # splinters, main field, m
G_NEAR, G_FAR = F(4), F(12)  # splinters altogether, m
S_MAX = F(32)  # m


def kuehnel_deceleration(w):
    return F("0.0271") * w * w / A + F("0.0178") * w * A + D_P


def rau(w):
    return F("0.0052") * w * w + F("0.0783") * w + D_P


def dettinger(w):
    return F("0.0000164") * w**3 + F("0.00452") * w * w + F("0.071") * w + F("2.5") + D_P


CURVES = [
    ("kurveBremsung", lambda v: (v / F("3.6")) ** 2 / (2 * (A - DA)), lambda v: (v / F("3.6")) ** 2 / (2 * (A + DA))),
    (
        "kurveKuehnelGlobal",
        lambda v: F("0.00375") * v * v + F("0.175") * v + D_P,
        lambda v: F("0.00000681818") * v**3 + F("0.00255682") * v * v + F("0.1525") * v - F("0.827273") + D_P,
    ),
    ("kurveKuehnelVerzoegerung", lambda v: kuehnel_deceleration(v + 4), lambda v: kuehnel_deceleration(v - 4)),
    ("kurveRau", lambda v: rau(v + 5), lambda v: rau(v - 5)),
    ("kurveDettinger", lambda v: dettinger(v + 6), lambda v: dettinger(v - 6)),
    (
        "kurveRitter",
        lambda v: F("0.0028313") * v * v + F("0.3") * v + D_P,
        lambda v: F("0.0028313") * v * v + F("0.0271596") * v + D_P,
    ),
    (
        "kurveFrontscheibe",
        lambda v: F("0.00027203013") * v**3 - F("0.01724212509") * v * v + F("0.66913310304") * v + M_NEAR,
        lambda v: F("0.00010088077") * v**3 - F("0.00395580247") * v * v + F("0.127407966296") * v + M_FAR,
    ),
    ("kurveHauptfeld", lambda v: F("0.388571") * v + M_NEAR, lambda v: F("0.223286") * v + M_FAR),
    ("kurveGesamtfeld", lambda v: F("0.5") * v + G_NEAR, lambda v: F("0.0018") * v * v - F("0.00544") * v + G_FAR),
]


def first_speed(f, s):
    """Smallest k up to 200000 with |f(k/1000) - s| < sqrt(0.001), 0 without one."""

    def near(k):
        return (f(F(k, 1000)) - s) ** 2 < F(1, 1000)

    # All curves rise wherever they matter here, once past a first fall of less than 10 km/h.
    for k in range(0, 10000):
        if near(k):
            return k
    low, high = 10000, 200000
    if f(F(low, 1000)) > s or f(F(high, 1000)) < s:
        return 0
    while low < high:
        middle = (low + high) // 2
        below = f(F(middle, 1000)) < s and not near(middle)
        low, high = (middle + 1, high) if below else (low, middle)
    return low if near(low) else 0


for name, lower, upper in CURVES:
    for side, f in (("kUnten", lower), ("kOben", upper)):
        for i in (20, 70, 120, 199):
            print(f"{{Dat::{name}, {side}, {i}, {first_speed(f, S_MAX * i / 199)}}},")
