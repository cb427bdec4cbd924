// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/import/FitLeser.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace
{

constexpr std::size_t kKleinerKopf = 12;
constexpr std::size_t kKopf = 14; // with a checksum of its own
constexpr std::size_t kCrcBytes = 2;
constexpr unsigned kHoechsteVersion = 2;
/// The checksum follows the decoding at this distance at most, so that the bytes are still in the cache.
constexpr std::size_t kCrcBlock = 16384;
constexpr std::size_t kZwischenfrage = std::size_t{4} << 20U;

// Bits of a record's first byte.
constexpr unsigned kKomprimierteZeit = 0x80;
constexpr unsigned kIstDefinition = 0x40;
constexpr unsigned kMitEntwicklerfeldern = 0x20;

unsigned Byte(const char* p)
{
    return static_cast<unsigned char>(*p);
}

std::uint64_t Ganze(const char* p, std::size_t bytes, bool bigEndian)
{
    std::uint64_t zahl = 0;
    for (std::size_t i = 0; i < bytes; ++i)
        zahl = zahl << 8U | Byte(p + (bigEndian ? i : bytes - 1 - i));
    return zahl;
}

FitZahltyp ZahltypVon(unsigned grundtyp)
{
    switch (grundtyp) {
    case 0x00: // enum
    case 0x02: // uint8
        return {1, false, 0xFF};
    case 0x01: // sint8
        return {1, true, 0x7F};
    case 0x0A: // uint8z
        return {1, false, 0};
    case 0x83: // sint16
        return {2, true, 0x7FFF};
    case 0x84: // uint16
        return {2, false, 0xFFFF};
    case 0x8B: // uint16z
        return {2, false, 0};
    case 0x85: // sint32
        return {4, true, 0x7FFFFFFF};
    case 0x86: // uint32
        return {4, false, 0xFFFFFFFF};
    case 0x8C: // uint32z
        return {4, false, 0};
    case 0x8E: // sint64
        return {8, true, 0x7FFFFFFFFFFFFFFF};
    default:
        return {};
    }
}

FitZahltyp ZahltypVon(unsigned grundtyp, unsigned groesse)
{
    const FitZahltyp typ = ZahltypVon(grundtyp);
    return typ.bytes != 0 && groesse % typ.bytes == 0 ? typ : FitZahltyp{};
}

// How the remainder changes by one byte that is followed by so many others: the table of the plain method, and those
// that take several bytes in one step.
constexpr std::size_t kCrcBreite = 16;
using CrcTafeln = std::array<std::array<std::uint16_t, 256>, kCrcBreite>;

constexpr CrcTafeln BaueCrcTafeln()
{
    CrcTafeln tafeln{};
    for (unsigned byte = 0; byte < 256; ++byte) {
        unsigned rest = byte;
        for (int bit = 0; bit < 8; ++bit)
            rest = (rest >> 1U) ^ ((rest & 1U) != 0 ? 0xA001U : 0U);
        tafeln[0][byte] = static_cast<std::uint16_t>(rest);
    }
    for (std::size_t k = 1; k < kCrcBreite; ++k)
        for (unsigned byte = 0; byte < 256; ++byte) {
            const unsigned vorher = tafeln[k - 1][byte];
            tafeln[k][byte] = static_cast<std::uint16_t>((vorher >> 8U) ^ tafeln[0][vorher & 0xFFU]);
        }
    return tafeln;
}

constexpr CrcTafeln kCrcTafeln = BaueCrcTafeln();

/// kCrcBreite bytes at once: the remainder goes into the first two, the others count by their place alone.
template <std::size_t... Weitere> unsigned CrcSchritt(unsigned rest, const char* p, std::index_sequence<Weitere...>)
{
    const unsigned ersteZwei = kCrcTafeln[kCrcBreite - 1][(Byte(p) ^ rest) & 0xFFU] ^
                               kCrcTafeln[kCrcBreite - 2][(Byte(p + 1) ^ (rest >> 8U)) & 0xFFU];
    return (ersteZwei ^ ... ^ kCrcTafeln[kCrcBreite - 3 - Weitere][Byte(p + 2 + Weitere)]);
}

} // namespace

std::uint16_t FitCrc(std::uint16_t crc, std::string_view bytes)
{
    unsigned rest = crc;
    const char* p = bytes.data();
    const char* const ende = p + bytes.size();
    for (; ende - p >= static_cast<std::ptrdiff_t>(kCrcBreite); p += kCrcBreite)
        rest = CrcSchritt(rest, p, std::make_index_sequence<kCrcBreite - 2>());
    for (; p != ende; ++p)
        rest = (rest >> 8U) ^ kCrcTafeln[0][(rest ^ Byte(p)) & 0xFFU];
    return static_cast<std::uint16_t>(rest);
}

void FitVerteiler::Anmelden(std::uint16_t nachricht, FitHoerer& hoerer)
{
    m_anmeldungen.push_back({nachricht, &hoerer});
}

/// One run over the bytes of a file.
class FitDekoder
{
  public:
    FitDekoder(const FitVerteiler& verteiler, std::string_view bytes, const std::function<bool(double)>& weiter)
        : m_verteiler(verteiler), m_bytes(bytes), m_weiter(weiter),
          m_frage(weiter ? kZwischenfrage : std::numeric_limits<std::size_t>::max())
    {
    }

    FitBefund Laufe()
    {
        m_befund.unversehrt = true;
        do {
            if (!Datei()) {
                m_befund.unversehrt = m_befund.unversehrt && !m_schaden;
                return m_befund;
            }
        } while (m_stelle < m_bytes.size());
        return m_befund;
    }

  private:
    bool Fehler(std::string_view text, const std::string& was)
    {
        m_befund.fehler = "FIT decode error: " + std::string(text) + was;
        return false;
    }
    bool Fehler(std::string_view text, std::size_t wert) { return Fehler(text, std::to_string(wert)); }
    /// The file itself is damaged, not only what its messages say.
    bool Schaden(std::string_view text, std::size_t stelle)
    {
        m_schaden = true;
        return Fehler(text, stelle);
    }

    /// One of the chained files: header, messages, checksum.
    bool Datei()
    {
        const std::size_t anfang = m_stelle;
        ++m_befund.dateien;
        for (const FitVerteiler::Anmeldung& anmeldung : m_verteiler.m_anmeldungen)
            anmeldung.hoerer->Dateianfang();
        for (FitDefinition& definition : m_definitionen)
            definition.definiert = false;
        m_hatZeit = false;
        m_crc = 0;
        m_crcStelle = anfang;
        if (!Kopf(anfang))
            return false;
        while (m_stelle < m_ende)
            if (!Nachricht())
                return false;
        return Pruefsumme();
    }

    bool Kopf(std::size_t anfang)
    {
        if (anfang >= m_bytes.size())
            return Unerwartet();
        const std::size_t groesse = Byte(&m_bytes[anfang]);
        if (groesse != kKleinerKopf && groesse != kKopf)
            return Schaden("File header size invalid.  File is not FIT. Error at byte : ", anfang);
        if (m_bytes.size() - anfang < groesse)
            return Unerwartet();
        const char* const kopf = &m_bytes[anfang];
        const unsigned version = Byte(kopf + 1);
        if (version >> 4U > kHoechsteVersion) {
            m_schaden = true;
            return Fehler("Protocol version ", std::to_string(version >> 4U) + '.' + std::to_string(version & 0xFU));
        }
        if (m_bytes.substr(anfang + 8, 4) != ".FIT")
            return Schaden("File header signature mismatch.  File is not FIT. Error at byte : ", anfang + 8);
        const auto daten = static_cast<std::size_t>(Ganze(kopf + 4, 4, false));
        if (daten == 0)
            return Schaden("File Size is 0. Error at byte : ", anfang + 4);
        // A header of 14 bytes may leave its own checksum at 0.
        if (groesse == kKopf) {
            const std::uint64_t soll = Ganze(kopf + kKleinerKopf, kCrcBytes, false);
            if (soll != 0 && soll != FitCrc(0, m_bytes.substr(anfang, kKleinerKopf)))
                m_befund.unversehrt = false;
        }
        m_stelle = anfang + groesse;
        m_ende = m_stelle + daten;
        return true;
    }

    bool Unerwartet() { return Schaden("Unexpected end of input stream at byte: ", m_bytes.size()); }

    /// Whether so many more bytes belong to the messages and are there.
    bool Vorhanden(std::size_t anzahl)
    {
        if (m_ende - m_stelle < anzahl && m_ende < m_bytes.size()) {
            // The checksum is looked at all the same: it says whether the file is as it was written.
            m_schaden = !CrcStimmt();
            return Fehler(
                "Decoder not in correct state after last data byte in file. Check message definitions. Error at byte: ",
                m_ende);
        }
        if (m_stelle + anzahl > m_bytes.size())
            return Unerwartet();
        return true;
    }

    bool Nachricht()
    {
        if (m_stelle - m_crcStelle >= kCrcBlock)
            SetzeCrcFort(m_stelle);
        if (m_stelle >= m_frage) {
            m_frage = m_stelle + kZwischenfrage;
            if (!m_weiter(static_cast<double>(m_stelle) / static_cast<double>(m_bytes.size()))) {
                m_befund.abgebrochen = true;
                return false;
            }
        }
        if (!Vorhanden(1))
            return false;
        const unsigned kopf = Byte(&m_bytes[m_stelle]);
        if ((kopf & kKomprimierteZeit) != 0)
            return Daten(kopf >> 5U & 3U, kopf & 31U);
        if ((kopf & kIstDefinition) != 0)
            return Definition(kopf & 15U, (kopf & kMitEntwicklerfeldern) != 0);
        return Daten(kopf & 15U, std::nullopt);
    }

    bool Definition(std::size_t lokal, bool entwicklerfelder)
    {
        FitDefinition& definition = m_definitionen[lokal];
        definition.definiert = false;
        if (!Vorhanden(6))
            return false;
        const char* const p = &m_bytes[m_stelle];
        const unsigned architektur = Byte(p + 2);
        if (architektur > 1)
            return DefinitionFehler("Architecture ", architektur);
        definition.bigEndian = architektur == 1;
        definition.nachricht = static_cast<std::uint16_t>(Ganze(p + 3, 2, definition.bigEndian));
        definition.folge = ++m_definitionenBisher;
        definition.lokal = static_cast<std::uint8_t>(lokal);
        definition.groesse = 0;
        definition.felder.clear();
        definition.platz.fill(0);
        const std::size_t anzahl = Byte(p + 5);
        if (!Vorhanden(6 + 3 * anzahl + (entwicklerfelder ? 1 : 0)))
            return false;
        const char* feld = p + 6;
        for (std::size_t i = 0; i < anzahl; ++i, feld += 3) {
            const unsigned groesse = Byte(feld + 1);
            if (groesse == 0)
                return DefinitionFehler("Invalid Field Size ", groesse);
            definition.felder.push_back(
                {ZahltypVon(Byte(feld + 2), groesse), static_cast<std::uint16_t>(definition.groesse)});
            definition.platz[Byte(feld)] = static_cast<std::uint8_t>(i + 1);
            definition.groesse += groesse;
        }
        m_stelle += 6 + 3 * anzahl;
        if (entwicklerfelder && !Entwicklerfelder(definition))
            return false;
        definition.zeit = definition.Finde(kFitZeitstempel);
        definition.hoerer.clear();
        for (const FitVerteiler::Anmeldung& anmeldung : m_verteiler.m_anmeldungen)
            if (anmeldung.nachricht == definition.nachricht)
                definition.hoerer.push_back(anmeldung.hoerer);
        definition.definiert = true;
        return true;
    }

    /// They follow the message's own fields; only their size matters here.
    bool Entwicklerfelder(FitDefinition& definition)
    {
        const std::size_t anzahl = Byte(&m_bytes[m_stelle]);
        if (!Vorhanden(1 + 3 * anzahl))
            return false;
        for (std::size_t i = 0; i < anzahl; ++i) {
            const unsigned groesse = Byte(&m_bytes[m_stelle + 1 + 3 * i + 1]);
            if (groesse == 0)
                return DefinitionFehler("Invalid Developer Field Size ", groesse);
            definition.groesse += groesse;
        }
        m_stelle += 1 + 3 * anzahl;
        return true;
    }

    /// What messages say is not a damage of the file as such: the checksum decides.
    bool DefinitionFehler(std::string_view text, std::size_t wert)
    {
        m_schaden = !CrcStimmt();
        return Fehler(text, wert);
    }

    bool Daten(std::size_t lokal, std::optional<unsigned> versatz)
    {
        const FitDefinition& definition = m_definitionen[lokal];
        if (!definition.definiert)
            return DefinitionFehler("Missing FIT message definition for local message number ", lokal);
        const std::size_t schritt = 1 + std::size_t{definition.groesse};
        if (!Vorhanden(schritt))
            return false;
        // Those of the same kind that follow are read with it, as far as nothing else is to be done between.
        const std::size_t bis = std::min({m_ende, m_bytes.size(), m_crcStelle + kCrcBlock, m_frage});
        const char kopf = m_bytes[m_stelle];
        do {
            Sende(definition, m_bytes.data() + m_stelle + 1, versatz);
            m_stelle += schritt;
        } while (!versatz && m_stelle + schritt <= bis && m_bytes[m_stelle] == kopf);
        return true;
    }

    void Sende(const FitDefinition& definition, const char* bytes, std::optional<unsigned> versatz)
    {
        FitNachricht nachricht(definition, bytes, m_bytes.data() + m_bytes.size());
        const auto voll = definition.zeit == nullptr ? std::nullopt : nachricht.Zahl(*definition.zeit);
        if (voll) {
            m_letzteZeit = static_cast<std::uint32_t>(*voll);
            m_hatZeit = true;
        } else if (versatz && m_hatZeit) {
            // The five lowest bits of a time not before the last one.
            const bool spaeter = *versatz < (m_letzteZeit & 31U);
            m_letzteZeit = (m_letzteZeit & ~31U) + *versatz + (spaeter ? 32U : 0U);
        }
        if (voll || (versatz && m_hatZeit))
            nachricht.SetZeitstempel(m_letzteZeit);
        for (FitHoerer* const hoerer : definition.hoerer)
            hoerer->Empfange(nachricht);
        ++m_befund.nachrichten;
    }

    void SetzeCrcFort(std::size_t bis)
    {
        m_crc = FitCrc(m_crc, m_bytes.substr(m_crcStelle, bis - m_crcStelle));
        m_crcStelle = bis;
    }

    /// Whether file and checksum are there and agree.
    bool CrcStimmt()
    {
        if (m_bytes.size() < kCrcBytes || m_ende > m_bytes.size() - kCrcBytes)
            return false;
        SetzeCrcFort(m_ende);
        return m_crc == Ganze(m_bytes.data() + m_ende, kCrcBytes, false);
    }

    bool Pruefsumme()
    {
        if (m_bytes.size() - m_ende < kCrcBytes)
            return Unerwartet();
        if (!CrcStimmt())
            return Schaden("File CRC failed. Error at byte: ", m_ende + 1);
        m_stelle = m_ende + kCrcBytes;
        return true;
    }

    const FitVerteiler& m_verteiler;
    std::string_view m_bytes;
    const std::function<bool(double)>& m_weiter;
    FitBefund m_befund{};
    std::array<FitDefinition, kFitLokaleNummern> m_definitionen{};
    std::size_t m_definitionenBisher = 0;
    std::uint32_t m_letzteZeit = 0;
    bool m_hatZeit = false; ///< a message had one
    std::size_t m_stelle = 0;
    std::size_t m_ende = 0; ///< of the messages
    std::size_t m_crcStelle = 0;
    std::size_t m_frage; ///< the byte from which on `m_weiter` is asked again
    std::uint16_t m_crc = 0;
    bool m_schaden = false;
};

FitBefund FitVerteiler::Dekodiere(std::string_view bytes, const std::function<bool(double)>& weiter) const
{
    return FitDekoder(*this, bytes, weiter).Laufe();
}
