// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The picture is fitted into the network's input with grey bars; the way back is exact.
#include "vision/video/OnnxNet.h"

#include "base/FileSystem.h"
#include "vision/video/OnnxFile.h"

#include <opencv2/core/utils/logger.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace vision
{
namespace
{

constexpr std::size_t kMaxBytes = std::size_t{1} << 30U; ///< of a model file
constexpr int kBar = 114;                                ///< grey of the bars that YOLOv5 is trained with
constexpr int kMinColumns = 6;                           ///< x, y, w, h, sure, one class

const char* const kNotRows = "Die Ausgabe des Modells ist nicht die von YOLOv5.";
const char* const kNoMemory = "Für das Modell reicht der Speicher nicht.";

} // namespace

std::string OnnxNet::Open(const std::string& path)
{
    cv::utils::logging::setLogLevel(cv::utils::logging::LOG_LEVEL_SILENT);
    try {
        std::string bytes;
        if (const int error = base::ReadAll(path, bytes, kMaxBytes, base::Source::ordinaryFile); error != 0)
            return "Das Modell kann nicht gelesen werden: " + base::SystemErrorText(error) + ".";
        if (std::string reason = RefuseOnnx(bytes, m_input.size); !reason.empty())
            return reason;
        m_net = cv::dnn::readNetFromONNX(bytes.data(), bytes.size());
        if (m_net.empty())
            return "Das Modell kann nicht gerechnet werden.";
        m_net.setPreferableBackend(cv::dnn::DNN_BACKEND_OPENCV);
        m_net.setPreferableTarget(cv::dnn::DNN_TARGET_CPU);
        m_outputs = m_net.getUnconnectedOutLayersNames();
        // What cannot be computed with shows when it is tried.
        const auto outputs = Compute(cv::Mat(m_input.size.height, m_input.size.width, CV_8UC3, cv::Scalar::all(kBar)));
        const auto rows = std::find_if(outputs.begin(), outputs.end(), HasRows);
        if (rows == outputs.end())
            return kNotRows;
        m_outputs = {m_outputs[static_cast<std::size_t>(rows - outputs.begin())]};
        return {};
    } catch (const std::bad_alloc&) {
        return kNoMemory;
    } catch (const std::exception&) {
        return "Das Modell kann nicht gerechnet werden.";
    }
}

bool OnnxNet::HasRows(const cv::Mat& output)
{
    return output.dims == 3 && output.size[0] == 1 && output.size[2] >= kMinColumns && output.type() == CV_32F &&
           output.isContinuous();
}

std::vector<cv::Mat> OnnxNet::Compute(const cv::Mat& picture)
{
    m_net.setInput(cv::dnn::blobFromImage(picture, m_input.scale, {}, cv::Scalar::all(m_input.mean), m_input.redFirst));
    std::vector<cv::Mat> outputs;
    m_net.forward(outputs, m_outputs);
    return outputs;
}

cv::Mat OnnxNet::Fitted(const cv::Mat& image, NetOutput& output) const
{
    const auto [width, height] = m_input.size;
    const double scale = std::min(static_cast<double>(width) / image.cols, static_cast<double>(height) / image.rows);
    const auto fit = [scale](int pixels, int limit) {
        return std::clamp(static_cast<int>(std::lround(pixels * scale)), 1, limit);
    };
    const cv::Size fitted(fit(image.cols, width), fit(image.rows, height));
    const cv::Point corner((width - fitted.width) / 2, (height - fitted.height) / 2);
    output.scaleX = static_cast<double>(fitted.width) / image.cols;
    output.scaleY = static_cast<double>(fitted.height) / image.rows;
    output.left = corner.x;
    output.top = corner.y;
    cv::Mat picture(height, width, CV_8UC3, cv::Scalar::all(kBar));
    // A smaller picture takes the mean of what each pixel covers: between the pixels that it does not look at, edges
    // would jump from frame to frame. Halves are quick.
    cv::Mat larger = image;
    while (larger.cols >= 2 * fitted.width && larger.cols % 2 == 0 && larger.rows % 2 == 0) {
        cv::Mat half;
        cv::resize(larger, half, larger.size() / 2, 0.0, 0.0, cv::INTER_AREA);
        larger = half;
    }
    const bool isNear = larger.cols < 2 * fitted.width;
    cv::resize(larger, picture(cv::Rect(corner, fitted)), fitted, 0.0, 0.0, isNear ? cv::INTER_LINEAR : cv::INTER_AREA);
    return picture;
}

std::string OnnxNet::Run(const cv::Mat& image, NetOutput& output)
{
    if (image.empty() || image.type() != CV_8UC3)
        return "Das Bild ist leer oder kein Farbbild.";
    try {
        const cv::Mat rows = Compute(Fitted(image, output)).at(0);
        if (!HasRows(rows))
            return kNotRows;
        output.columns = static_cast<std::size_t>(rows.size[2]);
        output.values.assign(rows.ptr<float>(), rows.ptr<float>() + rows.total());
        return {};
    } catch (const std::bad_alloc&) {
        return kNoMemory;
    } catch (const std::exception&) {
        return "Das Modell konnte ein Bild nicht rechnen.";
    }
}

} // namespace vision
