// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "framework/Resources.h"

#include "base/Utf.h"
#include "framework/HostStrings.h"
#include "host/Assert.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <memory>
#include <mutex>

namespace framework
{
namespace
{

// Predefined window classes of templates, and the style bits that tell their kinds apart.
constexpr UINT kClassButton = 0x80;
constexpr UINT kClassEdit = 0x81;
constexpr UINT kClassStatic = 0x82;
constexpr UINT kClassListBox = 0x83;
constexpr UINT kClassScrollBar = 0x84;
constexpr UINT kClassComboBox = 0x85;
constexpr DWORD kButtonTypeMask = 0x0F;
constexpr DWORD kStaticTypeMask = 0x1F;
constexpr DWORD kStaticOwnerDraw = 0x0D;
constexpr DWORD kStaticBlackFrame = 0x07;
constexpr DWORD kDialogSetFont = 0x40;

/// Little-endian reader with a sticky failure.
class Reader
{
  public:
    explicit Reader(std::span<const std::byte> data) : m_data(data) {}

    bool Failed() const { return m_failed; }
    bool AtEnd() const { return m_at >= m_data.size(); }
    std::size_t At() const { return m_at; }

    std::uint32_t U16()
    {
        if (m_failed || m_data.size() - m_at < 2) {
            m_failed = true;
            return 0;
        }
        const auto low = std::to_integer<std::uint32_t>(m_data[m_at]);
        const auto high = std::to_integer<std::uint32_t>(m_data[m_at + 1]);
        m_at += 2;
        return low | high << 8U;
    }
    std::uint32_t U32()
    {
        const std::uint32_t low = U16();
        return low | U16() << 16U;
    }
    int I16() { return static_cast<std::int16_t>(U16()); }
    void Skip(std::size_t count)
    {
        if (m_failed || m_data.size() - m_at < count) {
            m_failed = true;
            return;
        }
        m_at += count;
    }
    void Align()
    {
        const std::size_t rest = m_at % 4;
        if (rest != 0 && m_data.size() - m_at >= 4 - rest)
            m_at += 4 - rest;
    }
    std::string Text()
    {
        std::u16string units;
        for (;;) {
            const std::uint32_t unit = U16();
            if (m_failed || unit == 0)
                break;
            units.push_back(static_cast<char16_t>(unit));
        }
        return base::Utf8FromUtf16(units);
    }
    std::string Counted(std::size_t count)
    {
        std::u16string units;
        for (std::size_t i = 0; i < count && !m_failed; ++i)
            units.push_back(static_cast<char16_t>(U16()));
        return base::Utf8FromUtf16(units);
    }
    /// A number (after the mark 0xFFFF) or a text; the number is 0 for a text.
    std::pair<UINT, std::string> NumberOrText()
    {
        const std::size_t start = m_at;
        if (U16() == 0xFFFF)
            return {U16(), {}};
        m_at = start;
        return {0, Text()};
    }
    std::span<const std::byte> Bytes(std::size_t count)
    {
        if (m_failed || m_data.size() - m_at < count) {
            m_failed = true;
            return {};
        }
        const auto part = m_data.subspan(m_at, count);
        m_at += count;
        return part;
    }

  private:
    std::span<const std::byte> m_data;
    std::size_t m_at = 0;
    bool m_failed = false;
};

Kind ButtonKind(DWORD style)
{
    switch (style & kButtonTypeMask) {
    case 2:
    case 3:
    case 5:
    case 6:
        return Kind::check;
    case 4:
    case 9:
        return Kind::radio;
    case 7:
        return Kind::group;
    default:
        return Kind::button;
    }
}

Kind ControlKind(UINT classNumber, std::string className, DWORD style)
{
    // The resource compiler may change the case of class names.
    std::transform(className.begin(), className.end(), className.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    if (className == "button")
        classNumber = kClassButton;
    else if (className == "edit")
        classNumber = kClassEdit;
    else if (className == "static")
        classNumber = kClassStatic;
    else if (className == "listbox")
        classNumber = kClassListBox;
    else if (className == "combobox")
        classNumber = kClassComboBox;
    else if (className == "msctls_trackbar32")
        return Kind::trackbar;
    else if (className == "ruvgrid")
        return Kind::grid;
    else if (className == "ruvchart")
        return Kind::chart;

    switch (classNumber) {
    case kClassButton:
        return ButtonKind(style);
    case kClassEdit:
        return Kind::edit;
    case kClassListBox:
        return Kind::list;
    case kClassScrollBar:
        return Kind::trackbar;
    case kClassComboBox:
        return Kind::combo;
    case kClassStatic:
        return (style & kStaticTypeMask) == kStaticOwnerDraw || (style & kStaticTypeMask) == kStaticBlackFrame
                   ? Kind::field
                   : Kind::label;
    default:
        return Kind::field; // controls of the host's own are drawn by it
    }
}

CRect ReadRect(Reader& reader)
{
    const int x = reader.I16();
    const int y = reader.I16();
    const int width = reader.I16();
    const int height = reader.I16();
    return {x, y, x + width, y + height};
}

struct Module {
    std::unique_ptr<CDynLinkLibrary> library;
    std::map<std::pair<UINT, UINT>, std::span<const std::byte>> entries;
};

std::vector<Module>& Chain()
{
    static std::vector<Module> chain;
    return chain;
}

/// What was read of the chain's modules. Masks open by the thousand in a batch, always from the same templates.
struct Cache {
    std::mutex mutex;
    std::map<UINT, std::optional<DialogTemplate>> dialogs;
    std::map<UINT, std::vector<std::string>> strings; ///< by block

    void Clear()
    {
        const std::lock_guard lock(mutex);
        dialogs.clear();
        strings.clear();
    }
};

Cache& ReadBefore()
{
    static Cache cache;
    return cache;
}

std::span<const std::byte> FindEntry(UINT type, UINT name)
{
    for (auto module = Chain().rbegin(); module != Chain().rend(); ++module) {
        const auto found = module->entries.find({type, name});
        if (found != module->entries.end())
            return found->second;
    }
    return {};
}

} // namespace

std::optional<std::vector<ResourceEntry>> ReadResourceImage(std::span<const std::byte> image)
{
    Reader reader(image);
    std::vector<ResourceEntry> entries;
    bool first = true;
    while (!reader.AtEnd()) {
        const std::size_t start = reader.At();
        const std::uint32_t dataSize = reader.U32();
        const std::uint32_t headerSize = reader.U32();
        const UINT type = reader.NumberOrText().first;
        const UINT name = reader.NumberOrText().first;
        // An image begins with an empty entry that tells it from the 16-bit form.
        if (reader.Failed() || headerSize < 32 || (first && (dataSize != 0 || headerSize != 32)))
            return std::nullopt;
        if (start + headerSize < reader.At())
            return std::nullopt;
        reader.Skip(start + headerSize - reader.At());
        const auto data = reader.Bytes(dataSize);
        if (reader.Failed())
            return std::nullopt;
        reader.Align();
        if (!first && type != 0 && name != 0)
            entries.push_back({type, name, data});
        first = false;
    }
    if (first)
        return std::nullopt;
    return entries;
}

std::optional<DialogTemplate> ReadDialogTemplate(std::span<const std::byte> data)
{
    Reader reader(data);
    DialogTemplate result;
    const std::uint32_t firstWord = reader.U32();
    const bool extended = firstWord == 0xFFFF0001U;
    if (extended) {
        reader.U32(); // help ID
        reader.U32(); // extended style
        result.style = reader.U32();
    } else {
        result.style = firstWord;
        reader.U32();
    }
    const std::uint32_t count = reader.U16();
    result.rect = ReadRect(reader);
    reader.NumberOrText(); // menu
    reader.NumberOrText(); // window class
    result.title = reader.Text();
    if (result.style & kDialogSetFont) {
        result.fontSize = reader.I16();
        if (extended)
            reader.U32(); // weight, italic, character set
        result.fontFace = reader.Text();
    }
    for (std::uint32_t i = 0; i < count; ++i) {
        reader.Align();
        TemplateControl control;
        if (extended) {
            reader.U32();
            reader.U32();
            control.style = reader.U32();
        } else {
            control.style = reader.U32();
            reader.U32();
        }
        control.rect = ReadRect(reader);
        control.id = extended ? reader.U32() : reader.U16();
        const auto [classNumber, className] = reader.NumberOrText();
        control.kind = ControlKind(classNumber, className, control.style);
        control.text = reader.NumberOrText().second;
        reader.Skip(reader.U16());
        if (reader.Failed())
            return std::nullopt;
        result.controls.push_back(std::move(control));
    }
    if (reader.Failed())
        return std::nullopt;
    return result;
}

std::vector<std::string> ReadStringBlock(std::span<const std::byte> data)
{
    Reader reader(data);
    std::vector<std::string> strings;
    for (int i = 0; i < 16; ++i) {
        const std::uint32_t length = reader.U16();
        strings.push_back(reader.Counted(length));
        if (reader.Failed())
            strings.back().clear();
    }
    return strings;
}

const DialogTemplate* FindDialogTemplate(UINT id)
{
    Cache& cache = ReadBefore();
    const std::lock_guard lock(cache.mutex);
    const auto [found, isNew] = cache.dialogs.try_emplace(id);
    if (isNew)
        if (const auto data = FindEntry(kResourceDialog, id); !data.empty())
            found->second = ReadDialogTemplate(data);
    return found->second ? &*found->second : nullptr;
}

} // namespace framework

using framework::Chain;

BOOL AfxInitExtensionModule(AFX_EXTENSION_MODULE& module, HINSTANCE instance)
{
    if (!framework::ReadResourceImage(module.resources))
        return FALSE;
    module.instance = instance;
    module.attached = true;
    return TRUE;
}

void AfxTermExtensionModule(AFX_EXTENSION_MODULE& module)
{
    std::erase_if(Chain(), [&](const auto& link) { return &link.library->module == &module; });
    framework::ReadBefore().Clear();
    module.attached = false;
}

CDynLinkLibrary::CDynLinkLibrary(AFX_EXTENSION_MODULE& extension, BOOL) : module(extension)
{
    RUV_ASSERT(extension.attached);
    framework::Module link{std::unique_ptr<CDynLinkLibrary>(this), {}};
    const auto entries = framework::ReadResourceImage(extension.resources);
    for (const auto& entry : *entries)
        link.entries[{entry.type, entry.name}] = entry.data;
    Chain().push_back(std::move(link));
    framework::ReadBefore().Clear();
}

std::string LoadRuvString(UINT id)
{
    framework::Cache& cache = framework::ReadBefore();
    const std::lock_guard lock(cache.mutex);
    const auto [block, isNew] = cache.strings.try_emplace(id / 16 + 1);
    if (isNew)
        block->second = framework::ReadStringBlock(framework::FindEntry(framework::kResourceString, block->first));
    const std::string& text = block->second[id % 16];
    return text.empty() ? framework::HostString(id) : text;
}
