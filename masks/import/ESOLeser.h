// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Reads the five measured curves of a speed-measurement device from text: one line per sample, five whole numbers.
#pragma once

#include "masks/import/ESOKorrelation.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

enum class ESOAufbau : std::uint8_t {
    kopfzeile, ///< the first line holds names
    ohneKopf,  ///< the first line holds samples
    vorspalte, ///< names, and a column before the five curves
};

enum class ESOBefund : std::uint8_t {
    gelesen,
    ohneWerte,    ///< no line of samples
    falscherWert, ///< a field is no whole number of 64 bits, or its curve leaves them relative to the first sample
    feldFehlt,    ///< a line has fewer fields than it must
    zuLang,       ///< a line, or the file, is longer than any recording
};

/// Gets the bytes in pieces of any size, in their order.
class ESOLeser
{
  public:
    static constexpr std::size_t kLaengsteZeile = 1U << 20U; ///< bytes
    static constexpr std::size_t kMeisteZeilen = 4'000'000;  ///< samples of a curve: eleven hours at 100 Hz

    /// `groesse` is that of the whole, if it is known: room is kept for it.
    explicit ESOLeser(std::uint64_t groesse = 0) : m_groesse(groesse) {}

    /// False when the rest need not be read: it is refused.
    bool Nimm(std::string_view stueck);
    /// After the last piece. The curves are relative to their first sample; empty unless they were read.
    ESOBefund Ende();

    const ESOKurven& Kurven() const { return m_kurven; }
    ESOKurven NimmKurven() { return std::move(m_kurven); }
    ESOAufbau Aufbau() const { return m_aufbau; }
    char Trennzeichen() const { return m_trennzeichen; }
    /// Of the refusal, counted from 1; 0 when there is none.
    std::size_t Zeile() const { return m_befund == ESOBefund::gelesen ? 0 : m_zeile; }

  private:
    void NimmZeilen(const char* p, const char* ende);
    void ErsteZeile(std::string_view zeile);
    /// Takes the samples of a line that begins at p; returns its end.
    const char* Datenzeile(const char* p, const char* ende);

    ESOKurven m_kurven;
    std::string m_rest; // of a line whose end is not there yet
    std::uint64_t m_groesse;
    ESOAufbau m_aufbau = ESOAufbau::kopfzeile;
    ESOBefund m_befund = ESOBefund::gelesen;
    char m_trennzeichen = ';';
    bool m_anfang = true; // nothing was taken
    bool m_kopf = true;   // the first line is still to come
    std::size_t m_zeile = 0;
};
