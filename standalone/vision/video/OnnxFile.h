// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// What an ONNX file says of itself, read before it is computed with: OpenCV takes what it is given.
#pragma once

#include "host/vision/CObjDetector.h"

#include <string>
#include <string_view>

namespace vision
{

/// Why a network cannot be used for pictures of this size, in German; empty when nothing speaks against it.
/// Structure of the file: onnx.proto of the ONNX project, in the encoding of Protocol Buffers.
std::string RefuseOnnx(std::string_view bytes, NetSize size);

} // namespace vision
