// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Decodes FIT files (the published protocol: header, definition and data messages, checksum) and hands the data
// messages to listeners. It knows the protocol and none of the messages' meanings.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The timestamp that every message may have.
inline constexpr std::uint8_t kFitZeitstempel = 253;
inline constexpr std::size_t kFitLokaleNummern = 16;

/// An integer as a message holds it. A width of 0 marks all other base types: strings, floating point numbers, bytes,
/// unknown ones, and fields narrower than their type or no multiple of it.
struct FitZahltyp {
    std::uint8_t bytes = 0;
    bool vorzeichen = false;
    std::uint64_t ungueltig = 0;
};

class FitHoerer;

/// What a definition says of one kind of data message.
struct FitDefinition {
    struct Feld {
        FitZahltyp typ{};
        std::uint16_t stelle = 0; ///< in the message, bytes
    };
    bool definiert = false;
    bool bigEndian = false;
    std::uint8_t lokal = 0;      ///< local message number, below kFitLokaleNummern
    std::size_t folge = 0;       ///< tells it from every other definition of the file; 0 = none
    std::uint16_t nachricht = 0; ///< global message number
    std::uint32_t groesse = 0;   ///< of a message with its developer fields, bytes
    std::vector<Feld> felder{};
    std::array<std::uint8_t, 256> platz{}; ///< by field number: place in `felder` + 1 of its last mention, 0 = none

    const Feld* zeit = nullptr;       ///< the message's timestamp, if it has one
    std::vector<FitHoerer*> hoerer{}; ///< of this message

    /// The last mention of a field, if it is a whole number.
    const Feld* Finde(std::uint8_t nummer) const
    {
        const std::size_t wo = platz[nummer];
        return wo == 0 || felder[wo - 1].typ.bytes == 0 ? nullptr : &felder[wo - 1];
    }
};

/// One data message, while its listener is called.
class FitNachricht
{
  public:
    FitNachricht(const FitDefinition& definition, const char* bytes, const char* dateiende)
        : m_definition(definition), m_bytes(bytes), m_dateiende(dateiende)
    {
    }
    void SetZeitstempel(std::uint32_t zeit)
    {
        m_zeit = zeit;
        m_hatZeit = true;
    }

    std::uint16_t Nummer() const { return m_definition.nachricht; }
    /// Bytes of the message in the file.
    std::size_t Groesse() const { return 1 + std::size_t{m_definition.groesse}; }
    /// Seconds from 1989-12-31 00:00 UTC; of a compressed time stamp the time it stands for.
    std::optional<std::uint32_t> Zeitstempel() const { return m_hatZeit ? std::optional(m_zeit) : std::nullopt; }
    /// The whole number that a field holds, of an array the first one, without scale and offset. Nothing when the
    /// message has no such field, when it is marked invalid or its type is none of FitZahltyp.
    std::optional<std::int64_t> Zahl(std::uint8_t feld) const
    {
        const FitDefinition::Feld* const wo = m_definition.Finde(feld);
        return wo == nullptr ? std::nullopt : Zahl(*wo);
    }
    /// The same of a field that Definition().Finde gave, for those who read a million messages of it.
    std::optional<std::int64_t> Zahl(const FitDefinition::Feld& wo) const
    {
        const unsigned fehlend = 64U - 8U * wo.typ.bytes;
        const std::uint64_t oben = Links(m_bytes + wo.stelle, wo.typ.bytes);
        const std::uint64_t zahl = oben >> fehlend;
        if (zahl == wo.typ.ungueltig)
            return std::nullopt;
        return wo.typ.vorzeichen ? static_cast<std::int64_t>(oben) >> fehlend : static_cast<std::int64_t>(zahl);
    }
    const FitDefinition& Definition() const { return m_definition; }

  private:
    /// The number in the highest bytes of the result; what lies below them is of no meaning with the high byte first.
    std::uint64_t Links(const char* p, unsigned bytes) const
    {
        static_assert(std::endian::native == std::endian::little);
        std::uint64_t acht = 0;
        if (m_dateiende - p >= 8)
            std::memcpy(&acht, p, 8); // at once, without a look at the width
        else
            std::memcpy(&acht, p, bytes);
        return m_definition.bigEndian ? __builtin_bswap64(acht) : acht << (64U - 8U * bytes);
    }

    const FitDefinition& m_definition;
    const char* m_bytes;
    const char* m_dateiende;
    // Not an optional: writing its parts and reading it at once stops the processor at every message.
    std::uint32_t m_zeit = 0;
    bool m_hatZeit = false;
};

class FitHoerer
{
  public:
    virtual ~FitHoerer() = default;
    /// The next of the chained files begins.
    virtual void Dateianfang() {}
    virtual void Empfange(const FitNachricht& nachricht) = 0;
};

/// How decoding ended.
struct FitBefund {
    /// "FIT decode error: ..." with byte position (from 0) or value; empty when the file was decoded to its end.
    std::string fehler;
    bool unversehrt = false;  ///< header, length and checksum are as they should be
    bool abgebrochen = false; ///< the user does not want it any more
    std::size_t dateien = 0;  ///< files chained one after the other, begun ones too
    std::size_t nachrichten = 0;
};

/// Broadcasts the data messages of a file to those who want them.
class FitVerteiler
{
  public:
    /// The listener gets all messages of this global number and must outlive the decoding.
    void Anmelden(std::uint16_t nachricht, FitHoerer& hoerer);

    /// One pass over the bytes with the checksum. What was broadcast before a damage stands. `weiter` gets the part
    /// done now and then; false stops.
    FitBefund Dekodiere(std::string_view bytes, const std::function<bool(double)>& weiter = {}) const;

  private:
    friend class FitDekoder;

    struct Anmeldung {
        std::uint16_t nachricht;
        FitHoerer* hoerer;
    };
    std::vector<Anmeldung> m_anmeldungen;
};

/// The protocol's checksum (CRC-16, polynomial x^16 + x^15 + x^2 + 1, reflected), continued from `crc`.
std::uint16_t FitCrc(std::uint16_t crc, std::string_view bytes);
