// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Finds vehicles in a picture with a neural network that the user provides.
#pragma once

#include "host/vision/VideoBox.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vision
{
class DetectorNet;
}

class CObjDetector
{
  public:
    CObjDetector() = default;
    virtual ~CObjDetector() = default;
    CObjDetector(const CObjDetector&) = delete;
    CObjDetector& operator=(const CObjDetector&) = delete;

    /// Loads a network. Non-zero on success; otherwise Reason() says why not, and none is loaded.
    virtual int ReadModel(const std::string& weights, const std::string& config) = 0;
    /// The boxes that a picture (BGR, 8 bits) shows, the surest first. Non-zero on success, without a box too;
    /// otherwise Reason() says why not, and there are no boxes.
    virtual int Detect(const cv::Mat& image, std::vector<VideoBox>& boxes) = 0;

    /// px² of the picture: only boxes larger than the one and smaller than the other count. 0: no limit.
    void SetMinArea(double area) { m_minArea = area; }
    void SetMaxArea(double area) { m_maxArea = area; }
    /// German, why the last call had no success; empty after success.
    const std::string& Reason() const { return m_reason; }

  protected:
    bool HasCountingArea(const VideoBox& box) const;

    std::string m_reason;

  private:
    double m_minArea = 0.0;
    double m_maxArea = 0.0;
};

/// Pixels that a network takes.
struct NetSize {
    int width = 0;
    int height = 0;
};

/// A network whose output has a row per candidate: centre x, centre y, width, height, how sure it is that something is
/// there, and how sure it is of each class. With the 80 classes of COCO those of road vehicles count, else all.
class CYoloV5ORTDetector final : public CObjDetector
{
  public:
    /// `swapRB`: the network takes red first. `minScore`: of boxes that count. `maxOverlap`: of two boxes, common area
    /// over the area of both, above which only the surer one counts. A pixel's value is taken less `mean`, times
    /// `scale`. The picture is fitted into `size` with bars; `crop` and `device` know one value each: 0, nothing is cut
    /// off, and -1, the processor.
    CYoloV5ORTDetector(int swapRB, float minScore, float maxOverlap, double mean, double scale, NetSize size, int crop,
                       int device);
    ~CYoloV5ORTDetector() override;

    /// `weights` is an ONNX file of 32-bit numbers; it holds everything, `config` may be empty.
    int ReadModel(const std::string& weights, const std::string& config) override;
    int Detect(const cv::Mat& image, std::vector<VideoBox>& boxes) override;

  private:
    int m_swapRB;
    float m_minScore;
    float m_maxOverlap;
    double m_mean;
    double m_scale;
    NetSize m_size;
    int m_crop;
    int m_device;
    std::unique_ptr<vision::DetectorNet> m_net;
};

/// The detector with the values that the workstation uses: red first, score and overlap 0.4, values from 0 to 1, 512².
inline CYoloV5ORTDetector StandardDetector()
{
    return {1, 0.4F, 0.4F, 0.0, 1.0 / 255.0, {512, 512}, 0, -1};
}

/// The file beside the program that the network is expected in: "Dnn", "detector.onnx". Nothing when the path of the
/// program has no folder. Without an argument, of the running program.
std::optional<std::string> DetectorModelPath(const std::string& program);
std::optional<std::string> DetectorModelPath();
