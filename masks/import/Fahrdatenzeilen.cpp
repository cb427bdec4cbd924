// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/import/Fahrdatenzeilen.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace fahrdaten
{
namespace
{

constexpr std::size_t kGenannteZeilen = 20;
constexpr double kTag = 86400.0;

constexpr Feld kFeldDesKanals[kKanaele] = {
    Feld::zeitschritt,     Feld::geschwindigkeit, Feld::richtung,       Feld::x,     Feld::y,
    Feld::gierrate,        Feld::laenge,          Feld::breite,         Feld::hoehe, Feld::lenkwinkel,
    Feld::beschleunigungX, Feld::beschleunigungY, Feld::beschleunigungZ};

/// Whether numbers look like clock times in digits, HHMMSS: they leave out what ends in 60 to 99, and pass over it.
bool SiehtNachZiffernAus(const std::vector<double>& zeiten)
{
    constexpr double kMinutenstelle = 100.0;
    constexpr double kLetzteZiffern = 240000.0;
    bool ueberMinute = false;
    for (std::size_t i = 0; i < zeiten.size(); ++i) {
        const double minute = std::floor(zeiten[i] / kMinutenstelle);
        if (zeiten[i] < 0.0 || zeiten[i] >= kLetzteZiffern || zeiten[i] - minute * kMinutenstelle >= 60.0)
            return false;
        ueberMinute = ueberMinute || (i > 0 && minute != std::floor(zeiten[i - 1] / kMinutenstelle));
    }
    return ueberMinute;
}

constexpr unsigned Bit(Kanal kanal)
{
    return 1U << Platz(kanal);
}

/// What a row needs, by Zeilensatz.
constexpr unsigned kBraucht[] = {Bit(Kanal::zeit) | Bit(Kanal::geschwindigkeit),
                                 Bit(Kanal::zeit) | Bit(Kanal::laenge) | Bit(Kanal::breite),
                                 Bit(Kanal::zeit) | Bit(Kanal::x) | Bit(Kanal::y)};

} // namespace

void Datenzeilen::Beginne()
{
    const Spaltenplan& plan = m_kopf.plan;
    m_bericht.spalten.resize(m_kopf.namen.size());
    for (std::size_t i = 0; i < kKanaele; ++i)
        if (plan.Hat(static_cast<Kanal>(i)))
            m_kanaele.push_back(static_cast<Kanal>(i));
    m_zeitAusText = plan.HatZweiZeitspalten() || plan.Form() != Zeitform::zahl;

    // A quoted or odd beginning of a line always takes the long way; a header must not look like a row.
    const char erstes = m_kopf.zeile[0];
    m_schnell = m_kopf.trenner != ' ' && !IstZiffer(erstes) && erstes != '-' && erstes != '+' && erstes != '.' &&
                erstes != m_kopf.trenner && plan.Form() != Zeitform::tageszeit;
    const auto belege = [&](int spalte, Spaltenart art, Kanal kanal) {
        if (spalte < 0)
            return;
        const auto index = static_cast<std::size_t>(spalte);
        if (m_schnellspalten.size() <= index)
            m_schnellspalten.resize(index + 1);
        if (m_schnellspalten[index].art != Spaltenart::unbenutzt)
            m_schnell = false; // one column for two channels
        m_schnellspalten[index] = {art, static_cast<unsigned char>(Platz(kanal)), plan.Faktor(kanal)};
    };
    for (const Kanal kanal : m_kanaele)
        belege(plan.Spalte(kanal), kanal == Kanal::zeit && m_zeitAusText ? Spaltenart::ersteZeit : Spaltenart::zahl,
               kanal);
    if (plan.HatZweiZeitspalten())
        belege(plan.ZweiteZeitspalte(), Spaltenart::zweiteZeit, Kanal::zeit);
}

bool Datenzeilen::LiesSchnell(std::string_view roh, std::size_t nummer)
{
    const char trenner = m_kopf.trenner;
    const char* at = roh.data();
    const char* const ende = at + roh.size();
    if (!m_schnell || at == ende || m_kopf.vorschau.size() < kVorschauzeilen ||
        !(IstZiffer(*at) || *at == '-' || *at == '+' || *at == '.' || *at == trenner))
        return false;
    Reihe reihe;
    reihe.hat = 0;
    std::string_view zeiten[2];
    unsigned vorzeichenlos = 0;
    for (const Schnellspalte& spalte : m_schnellspalten) {
        if (spalte.art == Spaltenart::zahl) {
            while (at != ende && *at == ' ')
                ++at;
            if (at != ende && *at != trenner) {
                const bool negativ = *at == '-';
                if (negativ || *at == '+')
                    ++at;
                const char* anfang = at;
                std::uint64_t ganze = 0;
                for (; at != ende && IstZiffer(*at); ++at)
                    ganze = ganze * 10 + static_cast<std::uint64_t>(*at - '0');
                const auto stellenVor = at - anfang;
                std::ptrdiff_t stellen = 0;
                double wert;
                if (at != ende && (*at == '.' || (*at == ',' && trenner != ','))) {
                    anfang = ++at;
                    std::uint64_t dezimalen = 0;
                    for (; at != ende && IstZiffer(*at); ++at)
                        dezimalen = dezimalen * 10 + static_cast<std::uint64_t>(*at - '0');
                    stellen = at - anfang;
                    if (stellen > kMeisteZiffern)
                        return false;
                    wert = Verbinde(negativ, ganze, dezimalen, static_cast<int>(stellen));
                    if (negativ && ganze == 0 && dezimalen != 0)
                        vorzeichenlos |= 1U << spalte.kanal;
                } else {
                    wert = negativ ? -static_cast<double>(ganze) : static_cast<double>(ganze);
                }
                if (stellenVor + stellen == 0 || stellenVor > kMeisteZiffern)
                    return false;
                while (at != ende && *at == ' ')
                    ++at;
                if (at != ende && *at != trenner)
                    return false;
                reihe.wert[spalte.kanal] = wert * spalte.faktor;
                reihe.hat |= 1U << spalte.kanal;
            }
        } else {
            const char* const anfang = at;
            for (; at != ende && *at != trenner; ++at)
                if (*at == '"' || static_cast<signed char>(*at) < 0)
                    return false;
            if (spalte.art != Spaltenart::unbenutzt)
                zeiten[spalte.art == Spaltenart::zweiteZeit ? 1 : 0] =
                    Beschnitten({anfang, static_cast<std::size_t>(at - anfang)});
        }
        if (at == ende)
            break;
        ++at;
    }
    if (m_zeitAusText)
        LiesZeit(reihe, zeiten[0], zeiten[1]);
    if ((reihe.hat & Bit(Kanal::zeit)) == 0)
        vorzeichenlos = 0;
    for (std::size_t i = 0; vorzeichenlos != 0; ++i, vorzeichenlos >>= 1U)
        if ((vorzeichenlos & 1U) != 0)
            ++m_bericht.spalten[static_cast<std::size_t>(m_kopf.plan.Spalte(static_cast<Kanal>(i)))].vorzeichenlos;
    Nimm(reihe, nummer);
    return true;
}

bool Datenzeilen::Lies(std::string_view zeile, std::size_t nummer)
{
    if (zeile[0] == '#' || zeile == m_kopf.zeile)
        return true;
    if (m_bericht.abschnitte && zeile[0] == '[')
        return false;
    m_zellen.Schneide(zeile, m_kopf.trenner);
    if (m_kopf.vorschau.size() < kVorschauzeilen)
        m_kopf.vorschau.push_back(m_zellen.Texte());
    const Spaltenplan& plan = m_kopf.plan;
    Reihe reihe;
    reihe.hat = 0;
    if (m_zeitAusText)
        LiesZeit(reihe, m_zellen[plan.Spalte(Kanal::zeit)],
                 plan.HatZweiZeitspalten() ? m_zellen[plan.ZweiteZeitspalte()] : std::string_view{});
    for (const Kanal kanal : m_kanaele) { // the time first
        if (kanal == Kanal::zeit && m_zeitAusText)
            continue;
        const int spalte = plan.Spalte(kanal);
        const Zahl zahl = LiesZahl(m_zellen[spalte]);
        if (!zahl.gelesen)
            continue;
        reihe.wert[Platz(kanal)] = zahl.wert * plan.Faktor(kanal);
        reihe.hat |= Bit(kanal);
        if ((reihe.hat & Bit(Kanal::zeit)) == 0)
            continue; // none of the rows: nothing of it matters
        Spaltenbefund& befund = m_bericht.spalten[static_cast<std::size_t>(spalte)];
        befund.vorzeichenlos += zahl.vorzeichenlos;
        if (zahl.mitRest && befund.mitRest++ == 0)
            befund.beispiel = Utf8(m_zellen[spalte]);
    }
    Nimm(reihe, nummer);
    return true;
}

void Datenzeilen::LiesZeit(Reihe& reihe, std::string_view erste, std::string_view zweite)
{
    const Spaltenplan& plan = m_kopf.plan;
    std::optional<double> zeit;
    if (plan.IstUhrDerZweiten()) {
        zeit = UhrzeitDer(zweite, false);
    } else if (plan.Form() == Zeitform::tageszeit || plan.Form() == Zeitform::ziffern) {
        zeit = Genommen(plan.Form() == Zeitform::tageszeit ? LiesTageszeit(erste) : LiesZiffern(erste), erste);
        if (zeit)
            zeit = Fortlaufend(*zeit);
    } else {
        zeit = UhrzeitDer(erste, plan.Form() == Zeitform::uhrOderSekunden);
        if (plan.IstUhrMitMs()) {
            const Zahl ms = LiesZahl(zweite);
            zeit = zeit && ms.gelesen ? std::optional((*zeit * 1000.0 + ms.wert) / 1000.0) : std::nullopt;
        }
    }
    if (zeit) {
        reihe.wert[Platz(Kanal::zeit)] = *zeit;
        reihe.hat |= Bit(Kanal::zeit);
    }
}

std::optional<double> Datenzeilen::Genommen(const Uhrzeit& uhr, std::string_view zelle)
{
    m_bericht.uhrOhneSekunden += uhr.gelesen && uhr.ohneSekunden;
    m_bericht.keineUhr += !uhr.gelesen && !zelle.empty();
    return uhr.gelesen ? std::optional(uhr.sekunden) : std::nullopt;
}

std::optional<double> Datenzeilen::UhrzeitDer(std::string_view zelle, bool auchSekunden)
{
    if (!auchSekunden || IstUhrzeit(zelle))
        return Genommen(LiesUhrzeit(zelle), zelle);
    const Zahl zahl = LiesZahl(zelle);
    return zahl.gelesen ? std::optional(zahl.wert) : std::nullopt;
}

/// Time that goes on at midnight.
double Datenzeilen::Fortlaufend(double sekunden)
{
    if (sekunden + kTag / 2.0 < m_letzteTageszeit)
        m_tage += kTag;
    m_letzteTageszeit = sekunden;
    return sekunden + m_tage;
}

void Datenzeilen::Nimm(const Reihe& reihe, std::size_t nummer)
{
    unsigned hat = reihe.hat;
    for (const Kanal kanal : m_kanaele) {
        const std::size_t platz = Platz(kanal);
        const double wert = (hat & Bit(kanal)) != 0 ? reihe.wert[platz] : kNichtVorhanden;
        m_werte[platz].push_back(wert);
        // -1 is what the file does not hold; of x and y so is 0. A time may be any number.
        if (kanal != Kanal::zeit &&
            (wert == kNichtVorhanden || (wert == 0.0 && (kanal == Kanal::x || kanal == Kanal::y))))
            hat &= ~Bit(kanal);
    }
    static_assert(std::size(kBraucht) == kSaetze);
    unsigned vollstaendig = 0;
    for (std::size_t satz = 0; satz < kSaetze; ++satz)
        if ((hat & kBraucht[satz]) == kBraucht[satz])
            vollstaendig |= 1U << satz;
        else if (m_fehlend[satz]++ < kGenannteZeilen)
            m_fehlendeZeilen[satz].push_back(nummer);
    m_vollstaendig.push_back(static_cast<unsigned char>(vollstaendig));
}

bool Datenzeilen::WaehleSatz(FLIZeilen& zeilen)
{
    const auto satz =
        static_cast<std::size_t>(std::min_element(m_fehlend.begin(), m_fehlend.end()) - m_fehlend.begin());
    const std::size_t anzahl = m_vollstaendig.size();
    m_bericht.datenzeilen = anzahl;
    m_bericht.satz = static_cast<Zeilensatz>(satz);
    m_bericht.ausgelassen = m_fehlend[satz];
    m_bericht.ausgelasseneZeilen = std::move(m_fehlendeZeilen[satz]);
    if (m_fehlend[satz] * 2 > anzahl)
        return false;
    for (const Kanal kanal : m_kanaele) {
        std::vector<double>& werte = m_werte[Platz(kanal)];
        if (m_fehlend[satz] > 0) {
            std::size_t nach = 0;
            for (std::size_t i = 0; i < anzahl; ++i)
                if ((m_vollstaendig[i] >> satz & 1U) != 0)
                    werte[nach++] = werte[i];
            werte.resize(nach);
        }
        if (kanal == Kanal::zeit) {
            m_bericht.zifferzeit = m_kopf.plan.Form() == Zeitform::zahl && SiehtNachZiffernAus(werte);
            for (std::size_t i = werte.size(); i-- > 1;)
                werte[i] -= werte[i - 1];
            if (!werte.empty())
                werte[0] = 0.0;
        }
        zeilen.Setze(kFeldDesKanals[Platz(kanal)], std::move(werte));
    }
    return true;
}

} // namespace fahrdaten
