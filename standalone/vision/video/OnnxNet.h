// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Computes a network of an ONNX file on the processor, with OpenCV. No exception leaves it.
#pragma once

#include "vision/DetectorNet.h"

#include <opencv2/dnn.hpp>

#include <string>

namespace vision
{

class OnnxNet final : public DetectorNet
{
  public:
    explicit OnnxNet(const NetInput& input) : m_input(input) {}

    /// Empty on success, otherwise why not, in German.
    std::string Open(const std::string& path);
    std::string Run(const cv::Mat& image, NetOutput& output) override;

  private:
    cv::Mat Fitted(const cv::Mat& image, NetOutput& output) const;
    std::vector<cv::Mat> Compute(const cv::Mat& picture);
    static bool HasRows(const cv::Mat& output);

    NetInput m_input;
    cv::dnn::Net m_net;
    std::vector<std::string> m_outputs;
};

} // namespace vision
