#!/usr/bin/env python3
# SPDX-FileCopyrightText: The RuvMod authors
# SPDX-License-Identifier: Apache-2.0
"""Writes a detector whose answers are known: it finds one box of each of six colours on a grey road.

Its rows are those of YOLOv5 with the 80 classes of COCO. Each colour gives two: the box, and a less sure one around it
that a non-maximum suppression has to take away. How sure it is follows the colour: a pale one is not enough.

    detector.py [--size PIXELS] [--classes COUNT] [--half] FILE
"""
import argparse
import struct

# Red, green, blue, and the class: car, truck, bus, motorcycle, bicycle, and a person, who is no vehicle.
COLOURS = [((1, 0, 0), 2), ((0, 1, 0), 7), ((0, 0, 1), 5), ((1, 1, 0), 3), ((0, 1, 1), 1), ((1, 0, 1), 0)]
ROAD = 0.4  # grey of the road
# Of a mask over how much of a pixel its colour covers, for colours of one light and of two: half is half. Those of two
# are so steep that colours of one of their lights are nothing.
STEEPNESS = {1: 2.0, 2: 4.0}
WIDER = 1.25  # the less sure box
LESS_SURE = 0.9

FLOAT, INT64, HALF = 1, 7, 10


def varint(value):
    out = bytearray()
    value &= (1 << 64) - 1
    while value > 0x7F:
        out.append(value & 0x7F | 0x80)
        value >>= 7
    out.append(value)
    return bytes(out)


def number(field, value):
    return varint(field << 3) + varint(value)


def message(field, content):
    content = content.encode() if isinstance(content, str) else content
    return varint(field << 3 | 2) + varint(len(content)) + content


def real(field, value):
    return varint(field << 3 | 5) + struct.pack("<f", value)


def attribute(name, value):
    out = message(1, name)
    if isinstance(value, float):
        return out + real(2, value) + number(20, 1)
    if isinstance(value, int):
        return out + number(3, value) + number(20, 2)
    return out + b"".join(number(8, v) for v in value) + number(20, 7)


def node(kind, inputs, output, **attributes):
    out = b"".join(message(1, name) for name in inputs) + message(2, output) + message(3, output) + message(4, kind)
    return message(1, out + b"".join(message(5, attribute(*pair)) for pair in sorted(attributes.items())))


def tensor(name, kind, dims, values):
    code = {FLOAT: "f", INT64: "q", HALF: "e"}[kind]
    raw = struct.pack(f"<{len(values)}{code}", *values)
    return message(5, b"".join(number(1, d) for d in dims) + number(2, kind) + message(8, name) + message(9, raw))


def value(field, name, kind, dims):
    shape = b"".join(message(1, number(1, d)) for d in dims)
    return message(field, message(1, name) + message(2, message(1, number(1, kind) + message(2, shape))))


def masks():
    """Of a colour: 1 where it covers a pixel, 0 on the road, from the values of red, green and blue."""
    weights, biases = [], []
    for colour, _ in COLOURS:
        # 1 on the colour and 0 at most on the others; on those of one light the farther from it the less their edges
        # disturb, which a video blurs.
        row = [1.0 if part else -2.0 if sum(colour) == 1 else -1.0 for part in colour]
        bias = 1.0 - sum(colour)
        road = sum(row) * ROAD + bias
        steepness = STEEPNESS[sum(colour)]
        gain = steepness / (1.0 - road)
        weights += [gain * part for part in row]
        biases.append(gain * (bias - road) + 0.5 - steepness / 2.0)
    return weights, biases


def model(size, classes, kind):
    count = len(COLOURS)
    weights, biases = masks()
    # A mask's largest value up to each column says how far the box is from the left: the sum of what is missing to 1.
    # The same from the right, from the top and from the bottom; means over the size, and how sure the colour is.
    n = float(size)
    x, w = [-n / 2, n / 2, 0, 0, 0], [n, n, 0, 0, 0]
    y, h = [0, 0, -n / 2, n / 2, 0], [0, 0, n, n, 0]
    sure = [0, 0, 0, 0, 1]
    rows = [x, y, w, h, sure, x, y, [WIDER * v for v in w], [WIDER * v for v in h], [LESS_SURE * v for v in sure]]
    offsets = [n / 2, n / 2, -n, -n, 0, n / 2, n / 2, -WIDER * n, -WIDER * n, 0]
    columns = 5 + classes
    # Each row gets its columns for the classes, empty; which class a colour is of is added.
    gemm, bias, named = [], [], []
    for first in (0, 5):
        for column in range(columns):
            gemm += rows[first + column] if column < 5 else [0.0] * 5
            bias.append(offsets[first + column] if column < 5 else 0.0)
    for _, which in COLOURS:
        named += 2 * [1.0 if column == 5 + which % max(classes, 1) else 0.0 for column in range(columns)]

    def running(axis, before):
        kernel = [1, size] if axis == "x" else [size, 1]
        pad = [0, size - 1] if axis == "x" else [size - 1, 0]
        return {"kernel_shape": kernel, "strides": [1, 1], "pads": pad + [0, 0] if before else [0, 0] + pad}

    nodes = [
        node("Conv", ["images", "colours", "road"], "mask", kernel_shape=[1, 1]),
        node("Clip", ["mask"], "masks", min=0.0, max=1.0),
        node("MaxPool", ["masks"], "inColumn", kernel_shape=[size, 1], strides=[1, 1]),
        node("MaxPool", ["masks"], "inRow", kernel_shape=[1, size], strides=[1, 1]),
    ]
    names = []
    for name, axis, before, source in [("left", "x", True, "inColumn"), ("right", "x", False, "inColumn"),
                                       ("top", "y", True, "inRow"), ("bottom", "y", False, "inRow")]:
        nodes.append(node("MaxPool", [source], name, **running(axis, before)))
        nodes.append(node("GlobalAveragePool", [name], name + "Mean"))
        names.append(name + "Mean")
    nodes += [
        node("GlobalMaxPool", ["masks"], "sure"),
        node("Concat", names + ["sure"], "edges", axis=2),
        node("Reshape", ["edges", "byColour"], "table"),
        node("Gemm", ["table", "rows", "offsets"], "boxes", transB=1),
        node("Reshape", ["boxes", "byRow"], "list"),
        node("Add", ["list", "classes"], "output"),
    ]
    graph = b"".join(nodes) + message(2, "colours")
    graph += tensor("colours", kind, [count, 3, 1, 1], weights) + tensor("road", kind, [count], biases)
    graph += tensor("rows", kind, [2 * columns, 5], gemm) + tensor("offsets", kind, [2 * columns], bias)
    graph += tensor("classes", kind, [1, 2 * count, columns], named)
    graph += tensor("byColour", INT64, [2], [count, 5]) + tensor("byRow", INT64, [3], [1, 2 * count, columns])
    graph += value(11, "images", kind, [1, 3, size, size]) + value(12, "output", kind, [1, 2 * count, columns])
    opset = message(1, "") + number(2, 10)  # the last one whose Clip has its limits as attributes
    return number(1, 5) + message(7, graph) + message(8, opset)


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--size", type=int, default=512)
    parser.add_argument("--classes", type=int, default=80)
    parser.add_argument("--half", action="store_true")
    parser.add_argument("file")
    given = parser.parse_args()
    with open(given.file, "wb") as out:
        out.write(model(given.size, given.classes, HALF if given.half else FLOAT))
