// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The import report of a track in words.
#include "masks/import/CGPXImportDat.h"

#include "host/CWnd.h"
#include "masks/import/Zivilzeit.h"
#include "masks/manoeuvre/Texte.h"
#include "res/import.h"

#include <algorithm>
#include <cstdlib>

namespace
{

/// FIT time stamps below this one count from the start of the device, s.
constexpr std::int64_t kErsteUhrzeit = 0x10000000;
/// Of joints and steps back no more are named one by one.
constexpr std::size_t kHoechstensGenannt = 10;

std::string Zahl(std::size_t zahl)
{
    return std::to_string(zahl);
}

std::string Text(UINT id, std::initializer_list<std::string> args = {})
{
    return Eingesetzt(LoadRuvString(id), args);
}

std::string ZweiStellen(int zahl)
{
    const std::string ziffern = std::to_string(zahl);
    return ziffern.size() < 2 ? "0" + ziffern : ziffern;
}

/// The time as the file writes it, as a German reader does: 01.05.2024 10:00:07,500.
std::string Zeitpunkt(const Zivilzeit& zeit)
{
    return ZweiStellen(zeit.tag) + "." + ZweiStellen(zeit.monat) + "." + std::to_string(zeit.jahr) + " " +
           ZweiStellen(zeit.stunde) + ":" + ZweiStellen(zeit.minute) + ":" + ZweiStellen(zeit.sekunde);
}

std::string Zeitpunkt(const GPXTrackPoint& p)
{
    std::string text = Zeitpunkt(Zivilzeit{p.year, p.month, p.day, p.hour, p.minute, p.second});
    if (p.millisecond > 0)
        text += Dezimal(p.millisecond * 0.001, 3).substr(1);
    return text;
}

/// "+02:00"
std::string Zone(int minuten)
{
    const int betrag = std::abs(minuten);
    return (minuten < 0 ? "−" : "+") + ZweiStellen(betrag / 60) + ":" + ZweiStellen(betrag % 60);
}

std::string Aufzaehlung(const std::vector<std::size_t>& nummern)
{
    std::string text;
    for (std::size_t i = 0; i < std::min(nummern.size(), kHoechstensGenannt); ++i)
        text += (i == 0 ? "" : ", ") + Zahl(nummern[i]);
    return nummern.size() > kHoechstensGenannt ? text + ", …" : text;
}

} // namespace

Bericht CGPXImportDat::MacheBericht() const
{
    Bericht bericht;
    const auto schreibe = [&](UINT was, std::string text) { bericht.push_back({LoadRuvString(was), std::move(text)}); };
    const auto hinweis = [&](UINT text, std::initializer_list<std::string> args = {}) {
        schreibe(IDS_GPX_HINWEIS, Text(text, args));
    };
    if (m_herkunft.pfad.empty())
        return bericht;
    schreibe(IDS_GPX_QUELLE, m_herkunft.pfad);
    if (!m_hindernis.empty())
        schreibe(IDS_GPX_ABGELEHNT, m_hindernis);
    if (m_herkunft.sha256.empty())
        return bericht;
    schreibe(IDS_GPX_GROESSE, Text(IDS_GPX_BYTES, {Zahl(m_herkunft.bytes)}));
    schreibe(IDS_GPX_SHA256, m_herkunft.sha256);
    if (!m_hindernis.empty())
        return bericht;

    if (m_herkunft.fit) {
        const FitBefund& befund = m_fit.befund;
        schreibe(IDS_GPX_ART, Text(IDS_GPX_ART_FIT, {Zahl(befund.dateien), Zahl(befund.nachrichten)}));
        if (m_fit.ausMetadaten)
            hinweis(IDS_GPX_AUS_METADATEN);
        if (m_fit.ohneLage > 0)
            hinweis(IDS_GPX_OHNE_LAGE, {Zahl(m_fit.ohneLage)});
        if (!befund.unversehrt)
            hinweis(IDS_GPX_NICHT_UNVERSEHRT);
        if (!befund.fehler.empty())
            schreibe(IDS_GPX_BESCHAEDIGT, befund.fehler);
        if (m_herkunft.beschaedigt)
            schreibe(IDS_GPX_BESCHAEDIGT, Text(IDS_GPX_VOR_DEM_SCHADEN, {Zahl(m_herkunft.gelesen)}));
        else if (!befund.fehler.empty())
            schreibe(IDS_GPX_ABGELEHNT, Text(IDS_GPX_NICHT_VERWENDET));
        else
            schreibe(IDS_GPX_UMWANDLUNG,
                     m_herkunft.geschrieben.empty() ? Text(IDS_GPX_AUS_SPEICHER) : m_herkunft.geschrieben);
    } else {
        schreibe(IDS_GPX_ART, Text(IDS_GPX_ART_GPX, {Zahl(m_gpx.spuren)}));
        if (!m_gpx.vollstaendig)
            hinweis(IDS_GPX_OHNE_ENDE);
        if (m_gpx.unvollstaendig > 0)
            hinweis(IDS_GPX_UNVOLLSTAENDIG, {Zahl(m_gpx.unvollstaendig)});
        if (m_gpx.unmoeglich > 0)
            hinweis(IDS_GPX_UNMOEGLICH, {Zahl(m_gpx.unmoeglich)});
    }
    if (m_herkunft.ersteSchlechte > 0) {
        schreibe(IDS_GPX_ABGELEHNT,
                 Text(IDS_GPX_PUNKT_FEHLT, {Zahl(m_herkunft.ersteSchlechte), Zahl(m_herkunft.gelesen)}));
        return bericht;
    }
    schreibe(IDS_GPX_PUNKTE, Zahl(punkte.size()));
    if (punkte.empty())
        return bericht;

    schreibe(IDS_GPX_ZEITRAUM, Text(IDS_GPX_VON_BIS, {Zeitpunkt(punkte.front()), Zeitpunkt(punkte.back())}));
    const bool systemzeit = m_herkunft.fit && m_herkunft.fitZeit < kFitEpoche + kErsteUhrzeit;
    if (systemzeit)
        hinweis(IDS_GPX_SYSTEMZEIT);
    else if (m_herkunft.fit)
        schreibe(IDS_GPX_UHR,
                 Text(IDS_GPX_UHR_FIT, {Zone(punkte.front().zone), Zeitpunkt(ZivilzeitVon(m_herkunft.fitZeit))}));
    else
        schreibe(IDS_GPX_UHR, punkte.front().zone == 0 ? Text(IDS_GPX_UHR_UTC)
                                                       : Text(IDS_GPX_UHR_ZONE, {Zone(punkte.front().zone)}));
    if (!m_nahtstellen.empty()) {
        std::vector<std::size_t> nummern;
        for (const std::size_t i : m_nahtstellen)
            nummern.push_back(i + 1);
        schreibe(IDS_GPX_NAHTSTELLEN, Text(IDS_GPX_NAHT_VOR, {Aufzaehlung(nummern)}));
    }
    std::vector<std::size_t> rueckwaerts;
    std::size_t stehend = 0;
    std::size_t ohneHoehe = punkte.front().elevation == -1.0 ? 1 : 0;
    for (std::size_t i = 1; i < punkte.size(); ++i) {
        if (punkte[i].timeStep < 0.0)
            rueckwaerts.push_back(i + 1);
        stehend += punkte[i].timeStep == 0.0 ? 1U : 0U;
        ohneHoehe += punkte[i].elevation == -1.0 ? 1U : 0U;
    }
    if (!rueckwaerts.empty())
        hinweis(IDS_GPX_RUECKWAERTS, {Zahl(rueckwaerts.size()), Aufzaehlung(rueckwaerts)});
    if (stehend > 0)
        hinweis(IDS_GPX_STEHEND, {Zahl(stehend)});
    if (ohneHoehe > 0)
        schreibe(IDS_GPX_HOEHE, Text(IDS_GPX_OHNE_HOEHE, {Zahl(ohneHoehe)}));
    schreibe(IDS_IMPORT_KURVE,
             Text(tempoquelle == aufgezeichnet ? IDS_GPX_TEMPO_AUFGEZEICHNET : IDS_GPX_TEMPO_BERECHNET));
    return bericht;
}
