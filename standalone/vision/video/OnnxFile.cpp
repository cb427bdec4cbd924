// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Goes through the messages of the file and looks at the few fields that decide.
#include "vision/video/OnnxFile.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace vision
{
namespace
{

// Numbers of fields in onnx.proto.
constexpr unsigned kModelGraph = 7;
constexpr unsigned kGraphInitializer = 5;
constexpr unsigned kGraphInput = 11;
constexpr unsigned kTensorDims = 1;
constexpr unsigned kTensorType = 2;
constexpr unsigned kTensorName = 8;
constexpr unsigned kTensorRaw = 9;
constexpr unsigned kTensorExternal = 13;
constexpr unsigned kValueName = 1;
constexpr unsigned kValueType = 2;
constexpr unsigned kTypeTensor = 1;
constexpr unsigned kTensorTypeElement = 1;
constexpr unsigned kTensorTypeShape = 2;
constexpr unsigned kShapeDim = 1;
constexpr unsigned kDimValue = 1;
// Of TensorProto.DataType.
constexpr std::uint64_t kFloat = 1;
constexpr std::uint64_t kHalf = 10;
constexpr std::uint64_t kBrainHalf = 16;

/// The fields of a message, one after the other.
class Message
{
  public:
    explicit Message(std::string_view message) : m_rest(message) {}

    /// False at the end and at what is no field.
    bool Next()
    {
        std::uint64_t key = 0;
        if (m_rest.empty() || !Varint(key))
            return false;
        field = static_cast<unsigned>(key >> 3U);
        isNumber = (key & 7U) == 0;
        bytes = {};
        switch (key & 7U) {
        case 0:
            return Varint(number);
        case 1:
            return Take(8);
        case 2:
            return Varint(number) && Take(number);
        case 5:
            return Take(4);
        default:
            return Break();
        }
    }
    /// A list of numbers is stored in one field or in many.
    void AppendTo(std::vector<std::uint64_t>& list) const
    {
        if (isNumber) {
            list.push_back(number);
            return;
        }
        Message inner(bytes);
        std::uint64_t value = 0;
        while (!inner.m_rest.empty() && inner.Varint(value))
            list.push_back(value);
    }
    /// Bytes were left that are no field.
    bool IsBroken() const { return m_broken; }

    unsigned field = 0;
    bool isNumber = false;
    std::uint64_t number = 0;
    std::string_view bytes;

  private:
    bool Break()
    {
        m_broken = true;
        m_rest = {};
        return false;
    }
    bool Varint(std::uint64_t& value)
    {
        value = 0;
        for (unsigned shift = 0; shift < 64 && !m_rest.empty(); shift += 7) {
            const auto byte = static_cast<unsigned char>(m_rest.front());
            m_rest.remove_prefix(1);
            value |= std::uint64_t{byte & 0x7FU} << shift;
            if (byte < 0x80U)
                return true;
        }
        return Break();
    }
    bool Take(std::uint64_t size)
    {
        if (size > m_rest.size())
            return Break();
        bytes = m_rest.substr(0, static_cast<std::size_t>(size));
        m_rest.remove_prefix(bytes.size());
        return true;
    }

    std::string_view m_rest;
    bool m_broken = false;
};

struct Tensor {
    std::string_view name;
    std::uint64_t type = 0;
    bool isWhole = true; ///< as many bytes as its dimensions ask for, and in this file
};

Tensor TensorOf(std::string_view bytes, bool& broken)
{
    Tensor tensor;
    std::vector<std::uint64_t> dims;
    std::string_view raw;
    Message message(bytes);
    while (message.Next())
        if (message.field == kTensorDims)
            message.AppendTo(dims);
        else if (message.field == kTensorType)
            tensor.type = message.number;
        else if (message.field == kTensorName)
            tensor.name = message.bytes;
        else if (message.field == kTensorRaw)
            raw = message.bytes;
        else if (message.field == kTensorExternal)
            tensor.isWhole = false;
    broken |= message.IsBroken();
    std::uint64_t wanted = sizeof(float);
    for (const std::uint64_t dim : dims)
        if (__builtin_mul_overflow(wanted, dim, &wanted))
            tensor.isWhole = false;
    if (tensor.type == kFloat && !raw.empty() && raw.size() != wanted)
        tensor.isWhole = false;
    return tensor;
}

struct Value {
    std::string_view name;
    std::uint64_t type = 0;
    std::vector<std::uint64_t> dims; ///< 0: any
};

Value ValueOf(std::string_view bytes, bool& broken)
{
    Value value;
    const auto each = [&broken](std::string_view of, unsigned field, const auto& take) {
        Message message(of);
        while (message.Next())
            if (message.field == field)
                take(message);
        broken |= message.IsBroken();
    };
    each(
        bytes, kValueName, [&](const Message& name) { value.name = name.bytes; });
    each(bytes, kValueType, [&](const Message& type) {
        each(type.bytes, kTypeTensor, [&](const Message& tensor) {
            each(tensor.bytes, kTensorTypeElement, [&](const Message& element) { value.type = element.number; });
            each(tensor.bytes, kTensorTypeShape, [&](const Message& shape) {
                each(shape.bytes, kShapeDim, [&](const Message& dim) {
                    value.dims.push_back(0);
                    each(dim.bytes, kDimValue, [&](const Message& number) { value.dims.back() = number.number; });
                });
            });
        });
    });
    return value;
}

bool IsHalf(std::uint64_t type)
{
    return type == kHalf || type == kBrainHalf;
}

} // namespace

std::string RefuseOnnx(std::string_view bytes, NetSize size)
{
    const std::string damaged = "Die Datei ist kein ONNX-Modell, oder sie ist beschädigt.";
    bool broken = false;
    std::vector<Tensor> weights;
    std::vector<Value> inputs;
    Message model(bytes);
    while (model.Next()) {
        if (model.field != kModelGraph)
            continue;
        Message graph(model.bytes);
        while (graph.Next())
            if (graph.field == kGraphInitializer)
                weights.push_back(TensorOf(graph.bytes, broken));
            else if (graph.field == kGraphInput)
                inputs.push_back(ValueOf(graph.bytes, broken));
        broken |= graph.IsBroken();
    }
    // Older files list their weights among the inputs too.
    std::erase_if(inputs, [&](const Value& input) {
        return std::any_of(weights.begin(), weights.end(), [&](const Tensor& w) { return w.name == input.name; });
    });
    if (broken || model.IsBroken() || inputs.empty())
        return damaged;
    if (std::any_of(inputs.begin(), inputs.end(), [](const Value& input) { return IsHalf(input.type); }) ||
        std::any_of(weights.begin(), weights.end(), [](const Tensor& w) { return IsHalf(w.type); }))
        return "Das Modell rechnet mit 16-Bit-Zahlen; gebraucht wird eines mit 32-Bit-Zahlen.";
    if (!std::all_of(weights.begin(), weights.end(), [](const Tensor& w) { return w.isWhole; }))
        return damaged;
    // A batch of pictures, colours, height, width.
    const std::vector<std::uint64_t>& dims = inputs.front().dims;
    if (inputs.size() != 1 || inputs.front().type != kFloat || (!dims.empty() && dims.size() != 4) ||
        (!dims.empty() && dims[1] != 0 && dims[1] != 3))
        return "Das Modell nimmt keine Farbbilder entgegen.";
    const auto differs = [](std::uint64_t dim, int wanted) {
        return dim != 0 && dim != static_cast<std::uint64_t>(wanted);
    };
    if (!dims.empty() && (differs(dims[2], size.height) || differs(dims[3], size.width)))
        return "Das Modell erwartet Bilder von " + std::to_string(dims[3]) + " × " + std::to_string(dims[2]) +
               " Pixeln, nicht von " + std::to_string(size.width) + " × " + std::to_string(size.height) + ".";
    return {};
}

} // namespace vision
