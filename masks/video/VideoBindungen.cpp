// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/video/VideoBindungen.h"

#include "host/CDialog.h"

#include <charconv>
#include <cmath>

namespace
{

constexpr UINT kStehtNichtZurWahl = 1003;
constexpr double kLaengstes = 360'000.0; // s

std::string Stellen(std::int64_t zahl, std::size_t stellen)
{
    const std::string text = std::to_string(zahl);
    return text.size() < stellen ? std::string(stellen - text.size(), '0') + text : text;
}

} // namespace

std::string Videozeit(double sekunden)
{
    const auto ms = static_cast<std::int64_t>(std::llround(sekunden * 1000.0));
    return Stellen(ms / 3'600'000, 2) + ":" + Stellen(ms / 60'000 % 60, 2) + ":" + Stellen(ms / 1000 % 60, 2) + "." +
           Stellen(ms % 1000, 3);
}

std::optional<double> LiesSekunden(std::string text)
{
    if (const auto komma = text.find(','); komma != std::string::npos)
        text[komma] = '.';
    double zahl = 0.0;
    const char* const ende = text.data() + text.size();
    const auto gelesen = std::from_chars(text.data(), ende, zahl, std::chars_format::fixed);
    return gelesen.ec == std::errc() && gelesen.ptr == ende && std::isfinite(zahl) ? std::optional(zahl) : std::nullopt;
}

std::optional<double> LiesVideozeit(const std::string& text)
{
    double sekunden = 0.0;
    std::size_t at = 0;
    for (int teil = 1; teil <= 3; ++teil) {
        const std::size_t ende = text.find(':', at);
        const bool letzter = ende == std::string::npos;
        const auto zahl = LiesSekunden(text.substr(at, letzter ? ende : ende - at));
        if (!zahl || *zahl < 0.0 || (!letzter && *zahl != std::floor(*zahl)) || (teil > 1 && *zahl >= 60.0))
            return std::nullopt;
        sekunden = sekunden * 60.0 + *zahl;
        if (letzter)
            return sekunden <= kLaengstes ? std::optional(std::round(sekunden * 1000.0) / 1000.0) : std::nullopt;
        at = ende + 1;
    }
    return std::nullopt;
}

CVideozeit::CVideozeit(CMDIDialog* parent, UINT controlId, double* feld)
    : CBinding(parent, controlId, nullptr, nullptr), m_feld(feld)
{
}

void CVideozeit::Show()
{
    if (CWnd* feld = Dialog().GetDlgItem(ControlId()))
        feld->SetWindowText(Videozeit(*m_feld));
}

EntryResult CVideozeit::Take(const std::string& text)
{
    if (text.empty())
        return {};
    const auto zeit = LiesVideozeit(text);
    if (!zeit)
        return {EntryResult::Outcome::refused, kStehtNichtZurWahl, {FieldLabel(), text}};
    *m_feld = *zeit;
    return {EntryResult::Outcome::taken};
}
