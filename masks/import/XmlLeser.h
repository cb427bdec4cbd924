// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Reads the elements of an XML text in one pass over its bytes and tells a handler what it meets. It checks nothing
// that a reader of tracks does not need: a text that is no XML gives fewer events, never an error.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <string_view>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

/// The text with &lt; &gt; &amp; &quot; &apos; and numbered characters replaced; what is none of them stays.
std::string XmlText(std::string_view roh);

/// The name of an element, and what of it follows the prefix.
struct XmlName {
    std::string_view ganz;
    std::string_view ort;
    bool HatVorsatz() const { return ort.size() != ganz.size(); }
};

/// Handler:
///   void Start(const XmlName& name)          an element begins
///   bool WillAttribute() const               asked after Start; otherwise attributes are passed over
///   void Attribut(name, value)               value without its quotes, entities replaced
///   bool WillText() const                    asked when the start tag has ended
///   void Text(std::string_view text)         what stands between the start tag and the next tag; comments left out
///   void Ende(const XmlName& name)           an element ends; of <a/> too
///   const char* Kurzweg(p, end)              asked at each '<': the place behind what the handler has read by itself,
///                                            as it would have been read otherwise; null for nothing
template <class Handler> class XmlLeser
{
  public:
    XmlLeser(std::string_view bytes, Handler& handler)
        : m_anfang(bytes.data()), m_p(bytes.data()), m_ende(bytes.data() + bytes.size()), m_handler(handler)
    {
    }

    /// Reads to the end. `weiter` is asked every few megabytes with the part done; false stops.
    bool Lies(const std::function<bool(double)>& weiter)
    {
        const char* frage = m_anfang + kZwischenfrage;
        while (NaechstesZeichen('<')) {
            if (m_p >= frage && weiter) {
                if (!weiter(static_cast<double>(m_p - m_anfang) / static_cast<double>(m_ende - m_anfang)))
                    return false;
                frage = m_p + kZwischenfrage;
            }
            if (const char* const dahinter = m_handler.Kurzweg(m_p, m_ende))
                m_p = dahinter;
            else
                Marke();
        }
        return true;
    }

    /// Bytes read so far.
    std::size_t Stelle() const { return static_cast<std::size_t>(m_p - m_anfang); }

  private:
    static constexpr std::ptrdiff_t kZwischenfrage = 4 << 20;

    static bool IstLeer(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

    /// Goes on to the next such character; false when there is none.
    bool NaechstesZeichen(char gesucht)
    {
        bool egal = false;
        return NaechstesZeichen<false>(gesucht, egal);
    }

    /// The same, eight bytes at a time; `und` says whether there may be a '&' before it.
    template <bool MitUnd> bool NaechstesZeichen(char gesucht, bool& und)
    {
        const char* p = m_p;
#ifdef __SSE2__
        const __m128i zeichen = _mm_set1_epi8(gesucht);
        while (m_ende - p >= 16) {
            const __m128i text = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
            if constexpr (MitUnd)
                und = und || _mm_movemask_epi8(_mm_cmpeq_epi8(text, _mm_set1_epi8('&'))) != 0;
            if (const auto treffer = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(text, zeichen)))) {
                m_p = p + std::countr_zero(treffer);
                return true;
            }
            p += 16;
        }
#endif
        if constexpr (std::endian::native == std::endian::little) {
            const std::uint64_t muster = kEinsen * static_cast<unsigned char>(gesucht);
            while (m_ende - p >= 8) {
                std::uint64_t acht;
                std::memcpy(&acht, p, 8);
                if constexpr (MitUnd)
                    und = und || Nullbytes(acht ^ kEinsen * static_cast<unsigned char>('&')) != 0;
                if (const std::uint64_t treffer = Nullbytes(acht ^ muster)) {
                    m_p = p + std::countr_zero(treffer) / 8;
                    return true;
                }
                p += 8;
            }
        }
        while (p != m_ende && *p != gesucht) {
            if constexpr (MitUnd)
                und = und || *p == '&';
            ++p;
        }
        m_p = p;
        return p != m_ende;
    }

    static constexpr std::uint64_t kEinsen = 0x0101010101010101U;

    /// The lowest bit set marks the first zero byte; bits above it may be wrong.
    static std::uint64_t Nullbytes(std::uint64_t acht)
    {
        return BytesUnter<1>(acht);
    }

    /// The same of the bytes below a character of ASCII (S. E. Anderson, Bit Twiddling Hacks, "hasless").
    template <unsigned Zeichen> static std::uint64_t BytesUnter(std::uint64_t acht)
    {
        return (acht - kEinsen * Zeichen) & ~acht & (kEinsen << 7U);
    }

    bool BeginntMit(std::string_view text) const
    {
        return static_cast<std::size_t>(m_ende - m_p) >= text.size() && std::memcmp(m_p, text.data(), text.size()) == 0;
    }

    /// Goes behind the next such text, or to the end.
    void Hinter(std::string_view text)
    {
        while (NaechstesZeichen(text.front())) {
            if (BeginntMit(text)) {
                m_p += text.size();
                return;
            }
            ++m_p;
        }
    }

    /// No character that ends a name, or a prefix of it, lies beyond this one; letters do.
    static constexpr char kHoechstes = '>';
    static bool BeendetNamen(char c)
    {
        return c <= kHoechstes && (IstLeer(c) || c == '>' || c == '/' || c == '=');
    }

    XmlName Name()
    {
        const char* const von = m_p;
        const char* ort = m_p;
        const char* p = m_p;
        for (;;) {
            if constexpr (std::endian::native == std::endian::little)
                while (m_ende - p >= 8) {
                    std::uint64_t acht;
                    std::memcpy(&acht, p, 8);
                    if (const std::uint64_t treffer = BytesUnter<kHoechstes + 1>(acht)) {
                        p += std::countr_zero(treffer) / 8;
                        break;
                    }
                    p += 8;
                }
            if (p == m_ende || BeendetNamen(*p))
                break;
            if (*p++ == ':')
                ort = p;
        }
        m_p = p;
        return {{von, static_cast<std::size_t>(p - von)}, {ort, static_cast<std::size_t>(p - ort)}};
    }

    /// At a '<'.
    void Marke()
    {
        ++m_p;
        if (m_p == m_ende)
            return;
        if (*m_p == '/') {
            ++m_p;
            const XmlName name = Name();
            if (NaechstesZeichen('>')) {
                ++m_p;
                m_handler.Ende(name);
            }
        } else if (*m_p == '!' || *m_p == '?') {
            UebergeheSonstiges();
        } else {
            Element();
        }
    }

    /// At the character after '<': a declaration, comment or CDATA section.
    void UebergeheSonstiges()
    {
        if (BeginntMit("!--")) {
            m_p += 3;
            Hinter("-->");
        } else if (BeginntMit("![CDATA[")) {
            Hinter("]]>");
        } else if (*m_p == '?') {
            Hinter("?>");
        } else {
            // A document type may hold declarations in brackets.
            int tiefe = 0;
            while (m_p != m_ende) {
                const char c = *m_p++;
                if (c == '[')
                    ++tiefe;
                else if (c == ']')
                    --tiefe;
                else if (c == '>' && tiefe <= 0)
                    return;
            }
        }
    }

    void Element()
    {
        const XmlName name = Name();
        if (name.ganz.empty())
            return; // "< 5" in a text
        m_handler.Start(name);
        bool leer = false;
        if (!(m_handler.WillAttribute() ? Attribute(leer) : OhneAttribute(leer)))
            return; // the bytes end in the tag
        if (leer)
            m_handler.Ende(name);
        else if (m_handler.WillText())
            Text();
    }

    /// To the end of the tag; false when there is none.
    bool OhneAttribute(bool& leer)
    {
        while (m_p != m_ende) {
            const char c = *m_p;
            if (c == '>') {
                leer = m_p[-1] == '/';
                ++m_p;
                return true;
            }
            ++m_p;
            if (c == '"' || c == '\'') {
                if (!NaechstesZeichen(c))
                    return false;
                ++m_p;
            }
        }
        return false;
    }

    void Leerraum()
    {
        while (m_p != m_ende && IstLeer(*m_p))
            ++m_p;
    }

    bool Attribute(bool& leer)
    {
        for (;;) {
            Leerraum();
            if (m_p == m_ende)
                return false;
            if (*m_p == '>') {
                ++m_p;
                return true;
            }
            if (*m_p == '/' || *m_p == '=') {
                leer = *m_p == '/';
                ++m_p;
                continue;
            }
            leer = false;
            const std::string_view name = Name().ganz;
            Leerraum();
            if (m_p == m_ende)
                return false;
            if (*m_p != '=')
                continue; // a name without value
            ++m_p;
            Leerraum();
            if (m_p == m_ende)
                return false;
            const char quote = *m_p;
            if (quote != '"' && quote != '\'')
                continue; // a value without quotes is none
            const char* von = ++m_p;
            bool und = false;
            if (!NaechstesZeichen<true>(quote, und))
                return false;
            const std::string_view wert(von, static_cast<std::size_t>(m_p - von));
            ++m_p;
            if (und)
                m_handler.Attribut(name, XmlText(wert));
            else
                m_handler.Attribut(name, wert);
        }
    }

    /// After a start tag: the text up to the next tag.
    void Text()
    {
        const char* von = m_p;
        bool und = false;
        if (!NaechstesZeichen<true>('<', und))
            return; // the bytes end in the text
        const std::string_view text(von, static_cast<std::size_t>(m_p - von));
        const bool allein = m_ende - m_p < 2 || (m_p[1] != '!' && m_p[1] != '?');
        if (allein && !und) {
            m_handler.Text(text);
            return;
        }
        m_text = XmlText(text);
        while (m_ende - m_p >= 2 && (m_p[1] == '!' || m_p[1] == '?')) {
            ++m_p;
            const char* abschnitt = m_p;
            const bool cdata = BeginntMit("![CDATA[");
            UebergeheSonstiges();
            if (cdata && m_p - abschnitt >= 11) // ![CDATA[ and ]]>
                m_text.append(abschnitt + 8, m_p - 3);
            von = m_p;
            if (!NaechstesZeichen('<'))
                return;
            m_text += XmlText({von, static_cast<std::size_t>(m_p - von)});
        }
        m_handler.Text(m_text);
    }

    const char* m_anfang;
    const char* m_p;
    const char* m_ende;
    Handler& m_handler;
    std::string m_text;
};
