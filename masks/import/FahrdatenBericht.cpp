// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// The import report of driving data in words.
#include "masks/import/CFLIImportDat.h"

#include "host/CWnd.h"
#include "masks/manoeuvre/Texte.h"
#include "res/import.h"

#include <charconv>

namespace
{

/// Columns without use that are named.
constexpr std::size_t kGenannteSpalten = 40;

std::string Zahl(std::size_t zahl)
{
    return std::to_string(zahl);
}

/// A factor with as many decimals as it has.
std::string Faktor(double faktor)
{
    char ziffern[32];
    std::string text(ziffern,
                     std::to_chars(std::begin(ziffern), std::end(ziffern), faktor, std::chars_format::general, 9).ptr);
    if (const std::size_t punkt = text.find('.'); punkt != std::string::npos)
        text[punkt] = ',';
    return text;
}

std::string Text(UINT id, std::initializer_list<std::string> args = {})
{
    return Eingesetzt(LoadRuvString(id), args);
}

class Schreiber
{
  public:
    explicit Schreiber(const Leserbericht& gelesen) : m_gelesen(gelesen) {}

    void Schreibe(UINT was, std::string text) { m_bericht.push_back({LoadRuvString(was), std::move(text)}); }
    void Hinweis(UINT text, std::initializer_list<std::string> args = {})
    {
        Schreibe(IDS_FLI_HINWEIS, Text(text, args));
    }

    void Kopf()
    {
        if (!m_gelesen.HatKopf()) {
            Schreibe(IDS_FLI_AUFBAU, Text(IDS_FLI_OHNE_KOPF));
            return;
        }
        const UINT trenner = m_gelesen.trenner == ','   ? IDS_FLI_KOMMA
                             : m_gelesen.trenner == ';' ? IDS_FLI_SEMIKOLON
                                                        : IDS_FLI_LEERZEICHEN;
        std::string text = Text(IDS_FLI_KOPF, {Text(trenner), Zahl(m_gelesen.kopfzeile)});
        if (m_gelesen.abschnitte)
            text += Text(IDS_FLI_ABSCHNITTE);
        if (m_gelesen.einheitenzeile != 0)
            text += Text(IDS_FLI_EINHEITENZEILE, {Zahl(m_gelesen.einheitenzeile)});
        Schreibe(IDS_FLI_AUFBAU, text);
    }

    void Spalten()
    {
        const Spaltenplan& plan = m_gelesen.plan;
        for (std::size_t i = 0; i < kKanaele; ++i) {
            const auto kanal = static_cast<Kanal>(i);
            const int spalte = plan.Spalte(kanal);
            if (!plan.Hat(kanal) || (spalte < 0 && !plan.HatZweiZeitspalten()) || IstUnbekannt(kanal))
                continue;
            std::string text = spalte < 0 ? std::string() : Spalte(spalte) + Einheit(kanal, spalte);
            if (kanal == Kanal::zeit && plan.HatZweiZeitspalten() && plan.ZweiteZeitspalte() >= 0)
                text += Text(IDS_FLI_ZWEITE_ZEIT, {Spalte(plan.ZweiteZeitspalte())});
            Schreibe(IDS_FLI_KANAL + static_cast<UINT>(i), text);
        }
        std::string unbenutzt;
        std::size_t anzahl = 0;
        for (std::size_t i = 0; i < m_gelesen.spalten.size(); ++i)
            if (plan.KanalDer(static_cast<int>(i)) == Kanal::keiner && ++anzahl <= kGenannteSpalten)
                unbenutzt += (unbenutzt.empty() ? "" : ", ") + Name(static_cast<int>(i));
        if (anzahl > kGenannteSpalten)
            unbenutzt += ", …";
        if (!unbenutzt.empty())
            Schreibe(IDS_FLI_UNBENUTZT, unbenutzt);
    }

    void Zeilen()
    {
        if (!m_gelesen.plan.Reicht())
            return;
        std::string text =
            Text(IDS_FLI_GELESEN, {Zahl(m_gelesen.datenzeilen - m_gelesen.ausgelassen), Zahl(m_gelesen.datenzeilen)});
        if (m_gelesen.ausgelassen > 0) {
            std::string nummern;
            for (const std::size_t nummer : m_gelesen.ausgelasseneZeilen)
                nummern += (nummern.empty() ? "" : ", ") + Zahl(nummer);
            if (m_gelesen.ausgelassen > m_gelesen.ausgelasseneZeilen.size())
                nummern += ", …";
            text += Text(IDS_FLI_AUSGELASSEN, {Text(IDS_FLI_SATZ + static_cast<UINT>(m_gelesen.satz)), nummern});
        }
        Schreibe(IDS_FLI_ZEILEN, text);
    }

    void Hinweise()
    {
        const Spaltenplan& plan = m_gelesen.plan;
        if (m_gelesen.nullBytes)
            Hinweis(IDS_FLI_NULLBYTES);
        if (m_gelesen.einheitenSindZahlen)
            Hinweis(IDS_FLI_EINHEITEN_SIND_ZAHLEN, {Zahl(m_gelesen.einheitenzeile)});
        for (std::size_t i = 0; i < kKanaele; ++i)
            if (const auto kanal = static_cast<Kanal>(i); IstUnbekannt(kanal))
                Schreibe(IDS_FLI_HINWEIS, LoadRuvString(IDS_FLI_KANAL + static_cast<UINT>(i)) + ", " +
                                              Spalte(plan.Spalte(kanal)) + Einheit(kanal, plan.Spalte(kanal)));
        for (std::size_t i = 0; i < m_gelesen.spalten.size(); ++i) {
            const Spaltenbefund& spalte = m_gelesen.spalten[i];
            const std::string name = Name(static_cast<int>(i));
            if (spalte.mitRest > 0)
                Hinweis(IDS_FLI_MIT_REST, {name, Zahl(spalte.mitRest), spalte.beispiel});
            if (spalte.vorzeichenlos > 0)
                Hinweis(IDS_FLI_VORZEICHENLOS, {name, Zahl(spalte.vorzeichenlos)});
        }
        if (plan.HatZweiZeitspalten() && plan.IstUhrDerZweiten() && m_gelesen.datenzeilen > 0 &&
            m_gelesen.ausgelassen == m_gelesen.datenzeilen)
            Hinweis(IDS_FLI_MS_UNBRAUCHBAR);
        if (plan.Hat(Kanal::zeit) &&
            (plan.Form() == Zeitform::uhr || plan.Form() == Zeitform::uhrOderSekunden || plan.IstUhrDerZweiten()))
            Hinweis(IDS_FLI_UHR);
        if (m_gelesen.keineUhr > 0)
            Hinweis(IDS_FLI_KEINE_UHR, {Zahl(m_gelesen.keineUhr)});
        if (m_gelesen.uhrOhneSekunden > 0)
            Hinweis(IDS_FLI_UHR_OHNE_SEKUNDEN, {Zahl(m_gelesen.uhrOhneSekunden)});
        if (m_gelesen.zifferzeit)
            Hinweis(IDS_FLI_ZIFFERZEIT);
        if (m_gelesen.stehendeZeit)
            Hinweis(IDS_FLI_STEHENDE_ZEIT);
        else if (m_gelesen.rueckwaerts > 0)
            Hinweis(IDS_FLI_RUECKWAERTS, {Zahl(m_gelesen.rueckwaerts)});
        if (m_gelesen.keineGrad > 0)
            Hinweis(IDS_FLI_KEINE_GRAD, {Zahl(m_gelesen.keineGrad)});
    }

    Bericht Nimm() { return std::move(m_bericht); }

  private:
    std::string Name(int spalte) const
    {
        const Spaltenbefund& befund = m_gelesen.spalten[static_cast<std::size_t>(spalte)];
        return "„" + befund.name + "“";
    }
    std::string Spalte(int spalte) const { return Text(IDS_FLI_SPALTE, {std::to_string(spalte + 1), Name(spalte)}); }
    /// The numbers of the channel are taken as they are, whatever their unit is.
    bool IstUnbekannt(Kanal kanal) const
    {
        const Spaltenplan& plan = m_gelesen.plan;
        const int spalte = plan.Spalte(kanal);
        return spalte >= 0 && plan.Gewaehlt(kanal) == nullptr && !Umgerechnet(kanal, plan.Einheit(spalte)).bekannt;
    }
    std::string Einheit(Kanal kanal, int spalte) const
    {
        const std::string grund(Grundeinheit(kanal));
        if (const Einheitenwahl* wahl = m_gelesen.plan.Gewaehlt(kanal))
            return Text(wahl->faktor == 1.0 ? IDS_FLI_GEWAEHLT : IDS_FLI_GEWAEHLT_FAKTOR,
                        {std::string(wahl->text), grund, Faktor(wahl->faktor)});
        const std::string& einheit = m_gelesen.plan.Einheit(spalte);
        const Umrechnung umrechnung = Umgerechnet(kanal, einheit);
        if (!umrechnung.bekannt)
            return Text(IDS_FLI_UNBEKANNT, {einheit, grund});
        if (kanal == Kanal::zeit && einheit == "h")
            return Text(IDS_FLI_UHRZEIT);
        if (einheit.empty())
            return Text(IDS_FLI_OHNE_EINHEIT, {grund});
        return umrechnung.faktor == 1.0 ? Text(IDS_FLI_EINHEIT, {einheit})
                                        : Text(IDS_FLI_FAKTOR, {einheit, grund, Faktor(umrechnung.faktor)});
    }

    const Leserbericht& m_gelesen;
    Bericht m_bericht;
};

} // namespace

Bericht CFLIImportDat::MacheBericht() const
{
    Schreiber schreiber(m_bericht);
    if (auswahl.pfad.empty())
        return {};
    if (!m_dateifehler.empty()) {
        schreiber.Schreibe(IDS_FLI_ABGELEHNT, m_dateifehler);
        return schreiber.Nimm();
    }
    if (m_grund == Grund::zeileZuLang)
        schreiber.Schreibe(IDS_FLI_ABGELEHNT, LoadRuvString(IDS_FLI_ZEILE_ZU_LANG));
    else if (m_grund == Grund::zuVieleZeilenUnvollstaendig)
        schreiber.Schreibe(IDS_FLI_ABGELEHNT, LoadRuvString(IDS_FLI_ZU_VIELE_AUSGELASSEN));
    else if (m_grund == Grund::zeitschrittFehlt)
        schreiber.Schreibe(IDS_FLI_ABGELEHNT, LoadRuvString(IDS_FLI_ZEITSCHRITT_FEHLT));
    else if (!m_bericht.plan.Reicht())
        schreiber.Schreibe(IDS_FLI_ABGELEHNT,
                           LoadRuvString(m_bericht.plan.Hat(Kanal::zeit) ? IDS_FLI_ORT_FEHLT : IDS_FLI_ZEIT_FEHLT));
    schreiber.Zeilen();
    schreiber.Hinweise();
    if (m_ohneRichtung > 0)
        schreiber.Hinweis(IDS_FLI_OHNE_RICHTUNG, {Zahl(m_ohneRichtung)});
    if (m_ohnePosition > 0)
        schreiber.Hinweis(IDS_FLI_OHNE_POSITION, {Zahl(m_ohnePosition)});
    schreiber.Kopf();
    schreiber.Spalten();
    if (m_abgeleitet)
        schreiber.Schreibe(IDS_FLI_KANAL + static_cast<UINT>(Kanal::geschwindigkeit),
                           LoadRuvString(IDS_FLI_ABGELEITET));
    if (m_koordinaten != Koordinaten::keine)
        schreiber.Schreibe(IDS_FLI_KOORDINATEN, LoadRuvString(IDS_FLI_KOORDINATEN + static_cast<UINT>(m_koordinaten)));
    return schreiber.Nimm();
}
