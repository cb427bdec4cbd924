// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Lines, header and units, then rows. A row of plain numbers is read from the bytes as they are (LiesSchnell); any
// other takes the long way over trimmed cells in lower case. Both give the same row.
#include "masks/import/FahrdatenLeser.h"

#include "masks/import/Fahrdatentext.h"

#include <algorithm>
#include <cmath>
#include <optional>

using namespace fahrdaten;

namespace
{

constexpr std::size_t kVorschauzeilen = 3;
constexpr std::size_t kGenannteZeilen = 20;
/// A line with more columns heads no file.
constexpr std::size_t kMeisteSpalten = 4096;
constexpr double kTag = 86400.0;
constexpr double kGroessteBreite = 90.0;
constexpr double kGroessteLaenge = 180.0;

constexpr std::string_view kMarke = "\xEF\xBB\xBF";
constexpr std::string_view kGeschuetztesLeerzeichen = "\xC2\xA0";
constexpr std::string_view kLeerzeichen = " \t\n\v\f\r";

constexpr Feld kFeldDesKanals[kKanaele] = {
    Feld::zeitschritt,     Feld::geschwindigkeit, Feld::richtung,       Feld::x,     Feld::y,
    Feld::gierrate,        Feld::laenge,          Feld::breite,         Feld::hoehe, Feld::lenkwinkel,
    Feld::beschleunigungX, Feld::beschleunigungY, Feld::beschleunigungZ};

std::string_view Beschnitten(std::string_view text)
{
    const std::size_t anfang = text.find_first_not_of(kLeerzeichen);
    return anfang == std::string_view::npos ? std::string_view{}
                                            : text.substr(anfang, text.find_last_not_of(kLeerzeichen) + 1 - anfang);
}

char Klein(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::size_t Folgebytes(unsigned char erstes)
{
    return erstes < 0x80 ? 0 : erstes >= 0xC2 && erstes < 0xE0 ? 1 : erstes < 0xF0 && erstes >= 0xE0 ? 2 : 3;
}

bool IstUtf8(std::string_view text)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto erstes = static_cast<unsigned char>(text[i]);
        if ((erstes >= 0x80 && erstes < 0xC2) || erstes > 0xF4)
            return false;
        for (std::size_t folge = Folgebytes(erstes); folge > 0; --folge)
            if (++i >= text.size() || (static_cast<unsigned char>(text[i]) & 0xC0U) != 0x80U)
                return false;
    }
    return true;
}

/// The text as UTF-8: what is not is one byte per character (Latin-1).
std::string Utf8(std::string_view text)
{
    if (IstUtf8(text))
        return std::string(text);
    std::string utf8;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            utf8 += c;
        } else {
            utf8 += static_cast<char>(0xC0U | byte >> 6U);
            utf8 += static_cast<char>(0x80U | (byte & 0x3FU));
        }
    }
    return utf8;
}

/// A line cut into cells, trimmed and in lower case.
class Zellen
{
  public:
    void Schneide(std::string_view zeile, char trenner)
    {
        if (zeile.size() >= 3 && zeile.front() == '"' && zeile[zeile.size() - 2] == '"' &&
            zeile[zeile.size() - 3] == '"') {
            Entpacke(zeile.substr(1, zeile.size() - 2));
            zeile = m_entpackt;
        }
        m_zellen.clear();
        m_text.clear();
        m_text.reserve(zeile.size()); // the cells point into it
        bool gequotet = false;
        std::size_t anfang = 0;
        for (const char c : zeile) {
            if (c == '"') {
                gequotet = !gequotet;
            } else if (!gequotet && (c == trenner || (trenner == ' ' && c == '\t'))) {
                Beende(anfang, trenner);
                anfang = m_text.size();
            } else {
                m_text += Klein(c);
            }
        }
        Beende(anfang, trenner);
    }
    std::size_t Anzahl() const { return m_zellen.size(); }
    std::string_view operator[](int spalte) const
    {
        const auto index = static_cast<std::size_t>(spalte);
        return spalte >= 0 && index < m_zellen.size() ? m_zellen[index] : std::string_view{};
    }
    std::vector<std::string> Texte() const
    {
        std::vector<std::string> texte;
        for (const std::string_view zelle : m_zellen)
            texte.push_back(Utf8(zelle));
        return texte;
    }

  private:
    /// A whole row that was written as one quoted text.
    void Entpacke(std::string_view inneres)
    {
        m_entpackt.clear();
        for (std::size_t i = 0; i < inneres.size(); ++i) {
            m_entpackt += inneres[i];
            i += inneres[i] == '"' && i + 1 < inneres.size() && inneres[i + 1] == '"' ? 1 : 0;
        }
    }
    void Beende(std::size_t anfang, char trenner)
    {
        const std::string_view zelle = Beschnitten(std::string_view(m_text).substr(anfang));
        if (trenner != ' ' || !zelle.empty()) // any number of blanks separates once
            m_zellen.push_back(zelle);
    }

    std::string m_text;
    std::string m_entpackt;
    std::vector<std::string_view> m_zellen;
};

std::string OhneKlammern(const std::string& einheit)
{
    const bool geklammert = einheit.size() >= 2 && ((einheit.front() == '[' && einheit.back() == ']') ||
                                                    (einheit.front() == '(' && einheit.back() == ')'));
    return geklammert ? std::string(Beschnitten(einheit).substr(1, einheit.size() - 2)) : einheit;
}

/// The header line of a file, or one that may be.
struct Kopf {
    std::string zeile;
    std::size_t nummer = 0;
    char trenner = 0;
    std::vector<std::string> namen;
    std::vector<std::string> einheiten;
    bool einheitenBekannt = false;
    std::vector<std::vector<std::string>> vorschau;
    Spaltenplan plan;

    /// Unit and name of a column that is headed "name (unit)", "name [unit]" or "name MPH".
    void Nimm(const std::string& titel)
    {
        std::string name = titel;
        std::string einheit;
        std::size_t klammer = titel.find('(');
        if (klammer == std::string::npos)
            klammer = titel.find('[');
        if (klammer != std::string::npos) {
            if (klammer + 1 < titel.size())
                einheit = Beschnitten(std::string_view(titel).substr(klammer + 1, titel.size() - klammer - 2));
            name = Beschnitten(std::string_view(titel).substr(0, klammer));
            einheitenBekannt = true;
        } else if (titel.find(" mph") != std::string::npos) {
            name = Beschnitten(std::string_view(titel).substr(0, titel.size() - 4));
            einheit = "mph";
            einheitenBekannt = true;
        }
        namen.push_back(std::move(name));
        einheiten.push_back(std::move(einheit));
    }
};

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

/// One row as it is read.
struct Reihe {
    double wert[kKanaele];
    unsigned hat; ///< bit per channel
};

constexpr unsigned Bit(Kanal kanal)
{
    return 1U << Platz(kanal);
}

constexpr unsigned kBraucht[] = {Bit(Kanal::zeit) | Bit(Kanal::geschwindigkeit),
                                 Bit(Kanal::zeit) | Bit(Kanal::laenge) | Bit(Kanal::breite),
                                 Bit(Kanal::zeit) | Bit(Kanal::x) | Bit(Kanal::y)};
constexpr std::size_t kSaetze = std::size(kBraucht);

} // namespace

class FahrdatenLeser::Maschine
{
  public:
    explicit Maschine(const Zuordnungen& zuordnungen) : m_zuordnungen(zuordnungen) {}

    std::size_t Lies(std::string_view bytes, bool ende)
    {
        const std::size_t size = bytes.size();
        const auto naechstes = [&](char zeichen, std::size_t ab) { return std::min(bytes.find(zeichen, ab), size); };
        std::size_t at = 0;
        std::size_t lf = naechstes('\n', 0);
        std::size_t cr = naechstes('\r', 0);
        while (at < size && m_zustand != Zustand::ende) {
            if (lf < at)
                lf = naechstes('\n', at);
            if (cr < at)
                cr = naechstes('\r', at);
            const std::size_t zeilenende = std::min(lf, cr);
            if (!ende && (zeilenende == size || (zeilenende == cr && cr + 1 == size)))
                break; // the rest of the line, or the second character of its end, is yet to come
            ++m_nummer;
            LiesZeile(bytes.substr(at, zeilenende - at));
            at = zeilenende + (cr + 1 == lf && zeilenende == cr ? 2 : 1);
        }
        return m_zustand == Zustand::ende ? size : std::min(at, size);
    }

    Fahrdaten Fertig();

  private:
    enum class Zustand { suche, spaltennamen, vorDaten, einheiten, daten, ende };

    void LiesZeile(std::string_view roh)
    {
        if (m_zustand == Zustand::daten && LiesSchnell(roh))
            return;
        const std::string_view zeile = Vorbereitet(roh);
        if (zeile.empty())
            return;
        switch (m_zustand) {
        case Zustand::suche:
            Suche(zeile);
            break;
        case Zustand::spaltennamen:
            m_zustand = Zustand::suche;
            VersucheKopf(zeile, zeile.find(',') != std::string_view::npos   ? ','
                                : zeile.find(';') != std::string_view::npos ? ';'
                                                                            : ' ');
            break;
        case Zustand::vorDaten:
            if (Gleich(zeile, "[data]"))
                BeginneDaten();
            break;
        case Zustand::einheiten:
            LiesEinheiten(zeile);
            break;
        case Zustand::daten:
            LiesDaten(zeile);
            break;
        case Zustand::ende:
            break;
        }
    }

    static bool Gleich(std::string_view zeile, std::string_view klein)
    {
        return std::equal(
            zeile.begin(), zeile.end(), klein.begin(), klein.end(), [](char a, char b) { return Klein(a) == b; });
    }

    /// Without byte-order marks, no-break spaces and blanks around.
    std::string_view Vorbereitet(std::string_view roh)
    {
        if (roh.find('\0') != std::string_view::npos)
            m_bericht.nullBytes = true;
        if (roh.find('\xEF') == std::string_view::npos && roh.find('\xC2') == std::string_view::npos)
            return Beschnitten(roh);
        if (m_nummer == 1 && roh.starts_with(kMarke))
            m_bericht.byteMarke = true;
        m_zeile.clear();
        for (std::size_t i = 0; i < roh.size(); ++i) {
            const std::string_view rest = roh.substr(i);
            if (rest.starts_with(kMarke)) {
                i += kMarke.size() - 1;
            } else if (rest.starts_with(kGeschuetztesLeerzeichen)) {
                m_zeile += ' ';
                i += kGeschuetztesLeerzeichen.size() - 1;
            } else {
                m_zeile += roh[i];
            }
        }
        return Beschnitten(m_zeile);
    }

    void Suche(std::string_view zeile)
    {
        if (zeile[0] != '#' && !IstZiffer(zeile[0])) {
            if (Gleich(zeile, "[column names]")) {
                m_bericht.abschnitte = true;
                m_zustand = Zustand::spaltennamen;
                return;
            }
            for (const char trenner : {',', ';'})
                if (zeile.find(trenner) != std::string_view::npos && VersucheKopf(zeile, trenner))
                    return;
            m_bericht.abschnitte = m_bericht.abschnitte || zeile[0] == '[';
        }
        if (m_kopf.trenner != 0 && zeile != m_kopf.zeile && m_kopf.vorschau.size() < kVorschauzeilen) {
            m_zellen.Schneide(zeile, m_kopf.trenner);
            m_kopf.vorschau.push_back(m_zellen.Texte());
        }
    }

    /// Takes the line as header when its columns suffice; otherwise keeps it when it is the best so far.
    bool VersucheKopf(std::string_view zeile, char trenner)
    {
        Kopf kopf;
        kopf.zeile = zeile;
        kopf.nummer = m_nummer;
        kopf.trenner = trenner;
        m_zellen.Schneide(zeile, trenner);
        if (m_zellen.Anzahl() > kMeisteSpalten)
            return false;
        for (const std::string& titel : m_zellen.Texte())
            kopf.Nimm(titel);
        kopf.plan = Spaltenplan(kopf.namen, kopf.einheiten, ZuordnungFuer(zeile));
        if (kopf.plan.Reicht()) {
            m_kopf = std::move(kopf);
            if (m_bericht.abschnitte)
                m_zustand = Zustand::vorDaten;
            else if (m_kopf.einheitenBekannt)
                BeginneDaten();
            else
                m_zustand = Zustand::einheiten;
            return true;
        }
        const auto rang = [](const Kopf& k) { return std::pair(k.plan.Erkannt(), k.namen.size()); };
        if (kopf.namen.size() > 1 && (m_kopf.trenner == 0 || rang(kopf) > rang(m_kopf)))
            m_kopf = std::move(kopf);
        return false;
    }

    std::span<const Zuordnung> ZuordnungFuer(std::string_view kopfzeile) const
    {
        const auto gefunden = m_zuordnungen.find(Kopfschluessel(kopfzeile));
        return gefunden == m_zuordnungen.end() ? std::span<const Zuordnung>{} : gefunden->second;
    }

    void LiesEinheiten(std::string_view zeile)
    {
        if (zeile[0] == '#' || zeile == m_kopf.zeile)
            return;
        const char erstes = zeile[zeile[0] == '"' && zeile.size() > 1 ? 1 : 0];
        if (IstZiffer(erstes)) {
            BeginneDaten();
            LiesDaten(zeile);
            return;
        }
        if (zeile.find(m_kopf.trenner) == std::string_view::npos)
            return;
        m_zellen.Schneide(zeile, m_kopf.trenner);
        m_kopf.einheiten = m_zellen.Texte();
        m_bericht.einheitenzeile = m_nummer;
        m_bericht.einheitenSindZahlen =
            std::all_of(m_kopf.einheiten.begin(), m_kopf.einheiten.end(),
                        [](const std::string& e) { return e.empty() || LiesZahl(e).gelesen; });
        for (std::string& einheit : m_kopf.einheiten)
            einheit = OhneKlammern(einheit);
        BeginneDaten();
    }

    void BeginneDaten();
    void LiesDaten(std::string_view zeile);
    bool LiesSchnell(std::string_view roh);
    void LiesZeit(Reihe& reihe, std::string_view erste, std::string_view zweite);
    std::optional<double> Genommen(const Uhrzeit& uhr, std::string_view zelle);
    std::optional<double> UhrzeitDer(std::string_view zelle, bool auchSekunden);
    double Fortlaufend(double sekunden);
    void Nimm(const Reihe& reihe);
    bool WaehleSatz(FLIZeilen& zeilen);
    void PruefeWerte(const FLIZeilen& zeilen);

    const Zuordnungen& m_zuordnungen;
    Zustand m_zustand = Zustand::suche;
    std::size_t m_nummer = 0; ///< of the line
    Leserbericht m_bericht;
    Kopf m_kopf; ///< the header, or the best line for it while there is none
    bool m_begonnen = false;
    std::string m_zeile;
    Zellen m_zellen;

    enum class Spaltenart : unsigned char { unbenutzt, zahl, ersteZeit, zweiteZeit };
    struct Schnellspalte {
        Spaltenart art = Spaltenart::unbenutzt;
        unsigned char kanal = 0;
        double faktor = 1.0;
    };
    bool m_schnell = false;
    std::vector<Schnellspalte> m_schnellspalten; ///< up to the last one that is needed
    bool m_zeitAusText = false;
    double m_letzteTageszeit = 0.0;
    double m_tage = 0.0;

    std::vector<Kanal> m_kanaele; ///< that a column feeds
    std::array<std::vector<double>, kKanaele> m_werte;
    std::vector<unsigned char> m_vollstaendig; ///< per row a bit of each set of channels
    std::array<std::size_t, kSaetze> m_fehlend{};
    std::array<std::vector<std::size_t>, kSaetze> m_fehlendeZeilen;
};

void FahrdatenLeser::Maschine::BeginneDaten()
{
    m_zustand = Zustand::daten;
    m_begonnen = true;
    m_kopf.einheiten.resize(m_kopf.namen.size());
    m_kopf.plan = Spaltenplan(m_kopf.namen, m_kopf.einheiten, ZuordnungFuer(m_kopf.zeile));
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

/// A row of plain numbers. False for any other, which is then untouched.
bool FahrdatenLeser::Maschine::LiesSchnell(std::string_view roh)
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
    Nimm(reihe);
    return true;
}

void FahrdatenLeser::Maschine::LiesDaten(std::string_view zeile)
{
    if (zeile[0] == '#' || zeile == m_kopf.zeile)
        return;
    if (m_bericht.abschnitte && zeile[0] == '[') {
        m_zustand = Zustand::ende;
        return;
    }
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
    Nimm(reihe);
}

void FahrdatenLeser::Maschine::LiesZeit(Reihe& reihe, std::string_view erste, std::string_view zweite)
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

std::optional<double> FahrdatenLeser::Maschine::Genommen(const Uhrzeit& uhr, std::string_view zelle)
{
    m_bericht.uhrOhneSekunden += uhr.gelesen && uhr.ohneSekunden;
    m_bericht.keineUhr += !uhr.gelesen && !zelle.empty();
    return uhr.gelesen ? std::optional(uhr.sekunden) : std::nullopt;
}

std::optional<double> FahrdatenLeser::Maschine::UhrzeitDer(std::string_view zelle, bool auchSekunden)
{
    if (!auchSekunden || IstUhrzeit(zelle))
        return Genommen(LiesUhrzeit(zelle), zelle);
    const Zahl zahl = LiesZahl(zelle);
    return zahl.gelesen ? std::optional(zahl.wert) : std::nullopt;
}

/// Time that goes on at midnight.
double FahrdatenLeser::Maschine::Fortlaufend(double sekunden)
{
    if (sekunden + kTag / 2.0 < m_letzteTageszeit)
        m_tage += kTag;
    m_letzteTageszeit = sekunden;
    return sekunden + m_tage;
}

void FahrdatenLeser::Maschine::Nimm(const Reihe& reihe)
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
    unsigned vollstaendig = 0;
    for (std::size_t satz = 0; satz < kSaetze; ++satz)
        if ((hat & kBraucht[satz]) == kBraucht[satz])
            vollstaendig |= 1U << satz;
        else if (m_fehlend[satz]++ < kGenannteZeilen)
            m_fehlendeZeilen[satz].push_back(m_nummer);
    m_vollstaendig.push_back(static_cast<unsigned char>(vollstaendig));
}

/// Keeps the rows that have the channels of the set that keeps most. False when that is less than half of them.
bool FahrdatenLeser::Maschine::WaehleSatz(FLIZeilen& zeilen)
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

void FahrdatenLeser::Maschine::PruefeWerte(const FLIZeilen& zeilen)
{
    bool vorwaerts = false;
    for (std::size_t i = 0; i < zeilen.Anzahl(); ++i) {
        const double schritt = zeilen.Wert(i, Feld::zeitschritt);
        vorwaerts = vorwaerts || schritt > 0.0;
        m_bericht.rueckwaerts += schritt < 0.0;
        m_bericht.keineGrad += std::abs(zeilen.Wert(i, Feld::breite)) > kGroessteBreite ||
                               std::abs(zeilen.Wert(i, Feld::laenge)) > kGroessteLaenge;
    }
    m_bericht.stehendeZeit = zeilen.Anzahl() > 1 && !vorwaerts;
}

Fahrdaten FahrdatenLeser::Maschine::Fertig()
{
    Fahrdaten daten;
    const bool gefunden = m_kopf.plan.Reicht();
    if (gefunden && !m_begonnen)
        BeginneDaten();
    daten.brauchbar = gefunden && WaehleSatz(daten.zeilen);
    PruefeWerte(daten.zeilen);
    m_bericht.trenner = m_kopf.trenner;
    m_bericht.kopfzeile = m_kopf.nummer;
    m_bericht.schluessel = Kopfschluessel(m_kopf.zeile);
    m_bericht.spalten.resize(m_kopf.namen.size());
    for (std::size_t i = 0; i < m_kopf.namen.size(); ++i) {
        m_bericht.spalten[i].name = m_kopf.namen[i];
        m_bericht.spalten[i].einheit = m_kopf.einheiten[i];
    }
    m_bericht.plan = std::move(m_kopf.plan);
    m_bericht.vorschau = std::move(m_kopf.vorschau);
    daten.bericht = std::move(m_bericht);
    return daten;
}

FahrdatenLeser::FahrdatenLeser(const Zuordnungen& zuordnungen) : m_maschine(std::make_unique<Maschine>(zuordnungen)) {}

FahrdatenLeser::~FahrdatenLeser() = default;

std::size_t FahrdatenLeser::Lies(std::string_view bytes, bool ende)
{
    return m_maschine->Lies(bytes, ende);
}

Fahrdaten FahrdatenLeser::Fertig()
{
    return m_maschine->Fertig();
}

Fahrdaten LiesFahrdaten(std::string_view bytes, const Zuordnungen& zuordnungen)
{
    FahrdatenLeser leser(zuordnungen);
    leser.Lies(bytes, true);
    return leser.Fertig();
}
