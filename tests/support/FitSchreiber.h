// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Writes FIT files byte by byte, with a checksum of its own, so that tests do not depend on what they test.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace test
{

inline unsigned PlainFitCrc(std::string_view bytes)
{
    unsigned crc = 0;
    for (const char c : bytes) {
        crc ^= static_cast<unsigned char>(c);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1U) != 0 ? crc >> 1U ^ 0xA001U : crc >> 1U;
    }
    return crc;
}

class FitSchreiber
{
  public:
    struct Feld {
        int nummer, groesse, typ;
    };
    static constexpr int kRecord = 20;
    static constexpr int kEnum = 0x00, kSint8 = 0x01, kUint8 = 0x02, kString = 0x07, kSint16 = 0x83, kUint16 = 0x84,
                         kSint32 = 0x85, kUint32 = 0x86;

    explicit FitSchreiber(bool bigEndian = false) : m_bigEndian(bigEndian) {}

    /// A field's number in the byte order of the file.
    FitSchreiber& Zahl(std::int64_t wert, int bytes)
    {
        for (int i = 0; i < bytes; ++i)
            Byte(static_cast<int>(wert >> 8 * (m_bigEndian ? bytes - 1 - i : i) & 0xFF));
        return *this;
    }
    FitSchreiber& Byte(int wert)
    {
        m_daten += static_cast<char>(static_cast<unsigned char>(wert));
        return *this;
    }
    FitSchreiber& Definiere(int lokal, int nachricht, const std::vector<Feld>& felder,
                            const std::vector<int>& entwicklerfelder = {})
    {
        Byte(0x40 | (entwicklerfelder.empty() ? 0 : 0x20) | lokal).Byte(0).Byte(m_bigEndian ? 1 : 0);
        Zahl(nachricht, 2).Byte(static_cast<int>(felder.size()));
        for (const Feld& feld : felder)
            Byte(feld.nummer).Byte(feld.groesse).Byte(feld.typ);
        if (!entwicklerfelder.empty()) {
            Byte(static_cast<int>(entwicklerfelder.size()));
            for (const int groesse : entwicklerfelder)
                Byte(0).Byte(groesse).Byte(0);
        }
        return *this;
    }
    /// Time stamp, position (semicircles), altitude (raw), heart rate, temperature.
    FitSchreiber& DefiniereRecord(int lokal = 0)
    {
        return Definiere(
            lokal, kRecord,
            {{253, 4, kUint32}, {0, 4, kSint32}, {1, 4, kSint32}, {2, 2, kUint16}, {3, 1, kUint8}, {13, 1, kSint8}});
    }
    FitSchreiber& Record(std::int64_t zeit, std::int64_t breite, std::int64_t laenge, int hoehe = 2600, int puls = 120,
                         int temperatur = -5, int lokal = 0)
    {
        return Byte(lokal).Zahl(zeit, 4).Zahl(breite, 4).Zahl(laenge, 4).Zahl(hoehe, 2).Byte(puls).Byte(temperatur);
    }

    const std::string& Daten() const { return m_daten; }

    /// The whole file. A header of 12 bytes has no checksum of its own.
    std::string Datei(std::size_t kopf = 14) const
    {
        const auto klein = [](std::uint64_t wert, std::size_t bytes) {
            std::string text;
            for (std::size_t i = 0; i < bytes; ++i)
                text += static_cast<char>(static_cast<unsigned char>(wert >> 8 * i & 0xFF));
            return text;
        };
        std::string datei = klein(kopf, 1) + klein(0x20, 1) + klein(2132, 2) + klein(m_daten.size(), 4) + ".FIT";
        if (kopf == 14)
            datei += klein(PlainFitCrc(datei), 2);
        datei += m_daten;
        return datei + klein(PlainFitCrc(datei), 2);
    }

  private:
    bool m_bigEndian;
    std::string m_daten;
};

} // namespace test
