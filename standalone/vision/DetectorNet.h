// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The seam between a detector and what computes its network.
#pragma once

#include "host/vision/CObjDetector.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace vision
{

struct NetInput {
    bool redFirst = true;
    double mean = 0.0; ///< of a pixel's value, taken off before
    double scale = 1.0;
    NetSize size{};
};

/// Rows of the output one after the other, and how the picture lay in the input: x' = left + x · scaleX.
struct NetOutput {
    std::vector<float> values{};
    std::size_t columns = 0;
    double scaleX = 1.0;
    double scaleY = 1.0;
    double left = 0.0;
    double top = 0.0;
};

class DetectorNet
{
  public:
    DetectorNet() = default;
    virtual ~DetectorNet() = default;
    DetectorNet(const DetectorNet&) = delete;
    DetectorNet& operator=(const DetectorNet&) = delete;

    /// Empty on success, otherwise why not, in German.
    virtual std::string Run(const cv::Mat& image, NetOutput& output) = 0;
};

struct OpenedNet {
    std::unique_ptr<DetectorNet> net{};
    std::string reason{}; ///< German, why there is no network
};

} // namespace vision
