// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "krn/Tiles.h"

#include "base/Utf.h"
#include "drawing/PictureReader.h"
#include "krn/MbTiles.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace
{

constexpr std::size_t kLongestAttribution = 120; // bytes
constexpr std::size_t kLongestAddress = 1000;

struct State {
    CKartenCfg settings{};
    std::unique_ptr<CTileSource> source{};
    std::string trouble{};
    krn::ServerTiles server{};
    std::vector<CTilesListener*> listeners{};
};

State& TheState()
{
    static State state;
    return state;
}

/// Makes the source anew when the settings are others.
State& Current()
{
    State& state = TheState();
    if (state.settings == RuvCfg.karte)
        return state;
    state.settings = RuvCfg.karte;
    state.source.reset();
    state.trouble.clear();
    if (state.settings.quelle == CKartenCfg::Quelle::datei)
        state.source = krn::OpenMbTiles(state.settings.datei, state.trouble);
    else if (state.settings.quelle == CKartenCfg::Quelle::server && state.server) {
        state.trouble = krn::TileAddressProblem(state.settings.server);
        if (state.trouble.empty())
            state.source = state.server(state.settings);
    }
    return state;
}

void Replace(std::string& text, std::string_view what, const std::string& with)
{
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size()))
        text.replace(at, what.size(), with);
}

} // namespace

CTileSource* RuvTiles()
{
    return Current().source.get();
}

std::string RuvTilesTrouble()
{
    return Current().trouble;
}

CTilesListener::CTilesListener(std::function<void()> changed) : m_changed(std::move(changed))
{
    TheState().listeners.push_back(this);
}

CTilesListener::~CTilesListener()
{
    std::erase(TheState().listeners, this);
}

namespace krn
{

std::shared_ptr<const drawing::Bitmap> DecodeTile(std::string bytes)
{
    if (bytes.size() > kMostTileBytes)
        return nullptr;
    drawing::DecodedPicture picture =
        drawing::DecodePicture(std::move(bytes), static_cast<double>(kMostTilePixels) * kMostTilePixels);
    return picture.bitmap != nullptr && std::max(picture.width, picture.height) <= kMostTilePixels
               ? std::move(picture.bitmap)
               : nullptr;
}

std::string AttributionText(std::string_view html)
{
    std::string text;
    bool tag = false;
    for (const char c : html) {
        if (c == '<')
            tag = true;
        if (!tag)
            text += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
        if (c == '>')
            tag = false;
    }
    constexpr std::array<std::pair<std::string_view, const char*>, 7> kNames{{{"&copy;", "©"},
                                                                              {"&nbsp;", " "},
                                                                              {"&lt;", "<"},
                                                                              {"&gt;", ">"},
                                                                              {"&quot;", "\""},
                                                                              {"&#169;", "©"},
                                                                              {"&amp;", "&"}}};
    for (const auto& [name, character] : kNames)
        Replace(text, name, character);
    if (!base::IsUtf8(text))
        return {};
    if (text.size() > kLongestAttribution) {
        std::size_t end = kLongestAttribution;
        while ((static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U)
            --end;
        text = text.substr(0, end) + " …";
    }
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string::npos ? std::string() : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string TileAddressProblem(const std::string& address)
{
    const std::size_t scheme = address.starts_with("https://") ? 8 : address.starts_with("http://") ? 7 : 0;
    if (scheme == 0)
        return "Die Adresse muss mit https:// oder http:// beginnen.";
    if (address.size() > kLongestAddress)
        return "Die Adresse ist zu lang.";
    if (std::any_of(address.begin(), address.end(), [](char c) { return static_cast<unsigned char>(c) <= ' '; }))
        return "Die Adresse enthält Leerzeichen.";
    const std::string server = address.substr(scheme, address.find_first_of("/?#", scheme) - scheme);
    if (server.empty() || server.find('{') != std::string::npos)
        return "In der Adresse fehlt der Name des Servers.";
    const std::string rest = TileAddress(address, {});
    for (const char* const name : {"{z}", "{x}", "{y}"})
        if (address.find(name) == std::string::npos)
            return std::string("In der Adresse fehlt ") + name + ".";
    if (rest.find_first_of("{}") != std::string::npos)
        return "In geschweiften Klammern können nur z, x und y stehen.";
    return {};
}

std::string TileAddress(const std::string& address, const CTile& tile)
{
    std::string text = address;
    Replace(text, "{z}", std::to_string(tile.zoom));
    Replace(text, "{x}", std::to_string(tile.x));
    Replace(text, "{y}", std::to_string(tile.y));
    return text;
}

std::string TilesProblem(const CKartenCfg& settings)
{
    std::string problem;
    if (settings.quelle == CKartenCfg::Quelle::datei)
        OpenMbTiles(settings.datei, problem);
    else if (settings.quelle == CKartenCfg::Quelle::server)
        problem = TileAddressProblem(settings.server);
    return problem;
}

std::optional<std::shared_ptr<const drawing::Bitmap>> TileMemory::Find(const CTile& tile)
{
    const auto place = m_places.find(tile);
    if (place == m_places.end())
        return std::nullopt;
    m_used.splice(m_used.begin(), m_used, place->second);
    return place->second->second;
}

void TileMemory::Keep(const CTile& tile, std::shared_ptr<const drawing::Bitmap> bitmap)
{
    Forget(tile);
    m_used.emplace_front(tile, std::move(bitmap));
    m_places[tile] = m_used.begin();
    if (m_used.size() <= kMost)
        return;
    m_places.erase(m_used.back().first);
    m_used.pop_back();
}

void TileMemory::Forget(const CTile& tile)
{
    const auto place = m_places.find(tile);
    if (place == m_places.end())
        return;
    m_used.erase(place->second);
    m_places.erase(place);
}

void SetServerTiles(ServerTiles make)
{
    State& state = TheState();
    state.source.reset();
    state.trouble.clear();
    state.settings = {};
    state.server = std::move(make);
}

void TilesChanged()
{
    // A listener may go while they are told.
    const std::vector<CTilesListener*> listeners = TheState().listeners;
    for (CTilesListener* const listener : listeners)
        if (std::count(TheState().listeners.begin(), TheState().listeners.end(), listener) != 0)
            listener->Changed();
}

} // namespace krn
