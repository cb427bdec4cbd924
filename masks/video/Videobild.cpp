// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "masks/video/Videobild.h"

#include "host/Charts.h"
#include "host/RuvCfg.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr double kTreffer = 9.0;   // px about a point in which the mouse takes hold of it
constexpr double kZugBeginn = 3.0; // px that a click may move
constexpr double kJeRaste = 1.25;  // zoom per notch of the wheel
constexpr double kMeisteVergroesserung = 40.0;
constexpr double kSchrift = 11.0;
constexpr double kLupe = 120.0; // px, side of the magnifier
constexpr int kLupeBild = 20;   // px of the frame in it
constexpr double kStrich = 2.0;
constexpr double kVorschlag = 8.0; // px, radius of a proposal's ring
constexpr double kTextOben = 5.0;  // px of the frame between an object and its label
constexpr double kZeile = 30.0;    // px of the frame between its two lines

constexpr COLORREF kRot = RGB(240, 0, 0);
constexpr COLORREF kBlau = RGB(0, 114, 178);
constexpr COLORREF kGelb = RGB(240, 200, 20);
constexpr COLORREF kWeiss = RGB(255, 255, 255);
constexpr COLORREF kSchwarz = RGB(0, 0, 0);

void Kreuz(CDC& dc, CDPoint p, double arm, COLORREF farbe)
{
    // Two colours, so that it shows on any ground.
    for (const CPen& stift : {CPen{PenStyle::solid, 3.0, kSchwarz}, CPen{PenStyle::solid, 1.0, farbe}}) {
        dc.SelectPen(stift);
        dc.Line({p.x - arm, p.y}, {p.x + arm, p.y});
        dc.Line({p.x, p.y - arm}, {p.x, p.y + arm});
    }
}

bool Liegt(CDPoint p, const CDC& dc)
{
    return p.x >= 0.0 && p.y >= 0.0 && p.x <= dc.Width() && p.y <= dc.Height();
}

/// A line of text on a filled box; `unten` is its lower left corner.
void Schild(CDC& dc, CDPoint unten, const std::string& text, COLORREF grund)
{
    const double hoehe = dc.TextHeight();
    const double breite = dc.TextWidth(text) + 6.0;
    const double x = std::clamp(unten.x, 0.0, std::max(0.0, dc.Width() - breite));
    const double y = std::clamp(unten.y, hoehe, std::max(hoehe, dc.Height()));
    dc.SelectPen({PenStyle::none});
    dc.SelectBrush({true, grund});
    dc.Rectangle(x, y - hoehe, x + breite, y);
    dc.SelectBrush({});
    dc.TextOut({x + 3.0, y - hoehe + dc.TextAscent()}, text);
}

} // namespace

void Videobild::SetBild(std::shared_ptr<const drawing::Bitmap> bild, std::string ohneBild)
{
    const bool andereGroesse =
        bild == nullptr || m_bild == nullptr || bild->width != m_bild->width || bild->height != m_bild->height;
    m_bild = std::move(bild);
    m_ohneBild = std::move(ohneBild);
    m_ausschnitt.reset();
    if (andereGroesse)
        ZeigeGanz();
}

void Videobild::ZeigeGanz()
{
    m_vergroesserung = 1.0;
    if (m_bild)
        m_mitte = {m_bild->width / 2.0, m_bild->height / 2.0};
}

Videobild::Sicht Videobild::MacheSicht(double breite, double hoehe, bool ganz) const
{
    const double w = m_bild->width;
    const double h = m_bild->height;
    Sicht sicht{{}, std::min(breite / w, hoehe / h), breite, hoehe};
    VisionPoint mitte{w / 2.0, h / 2.0};
    if (!ganz) {
        sicht.massstab *= m_vergroesserung;
        // Where the frame is larger than the field, none of the field stays empty.
        const double rx = breite / 2.0 / sicht.massstab;
        const double ry = hoehe / 2.0 / sicht.massstab;
        mitte.x = rx < w / 2.0 ? std::clamp(m_mitte.x, rx, w - rx) : w / 2.0;
        mitte.y = ry < h / 2.0 ? std::clamp(m_mitte.y, ry, h - ry) : h / 2.0;
    }
    sicht.ecke = {breite / 2.0 - mitte.x * sicht.massstab, hoehe / 2.0 - mitte.y * sicht.massstab};
    return sicht;
}

std::shared_ptr<const drawing::Bitmap> Videobild::Ausschnitt(int links, int oben, int breite, int hoehe) const
{
    auto teil = std::make_shared<drawing::Bitmap>();
    teil->width = breite;
    teil->height = hoehe;
    teil->pixels.reserve(static_cast<std::size_t>(breite) * static_cast<std::size_t>(hoehe));
    for (int y = 0; y < hoehe; ++y) {
        const auto zeile = m_bild->pixels.begin() + static_cast<std::ptrdiff_t>(oben + y) * m_bild->width + links;
        teil->pixels.insert(teil->pixels.end(), zeile, zeile + breite);
    }
    return teil;
}

void Videobild::ZeichneBild(CDC& dc, const Sicht& sicht)
{
    const VisionPoint von = sicht.Von({0.0, 0.0});
    const VisionPoint bis = sicht.Von({sicht.breite, sicht.hoehe});
    const CRect teil{std::clamp(static_cast<int>(std::floor(von.x)), 0, m_bild->width - 1),
                     std::clamp(static_cast<int>(std::floor(von.y)), 0, m_bild->height - 1),
                     std::clamp(static_cast<int>(std::ceil(bis.x)), 1, m_bild->width),
                     std::clamp(static_cast<int>(std::ceil(bis.y)), 1, m_bild->height)};
    const bool ganz = teil.left == 0 && teil.top == 0 && teil.right == m_bild->width && teil.bottom == m_bild->height;
    std::shared_ptr<const drawing::Bitmap> gezeigt = m_bild;
    if (!ganz) {
        const auto& v = m_ausschnittVon;
        if (!m_ausschnitt || v.left != teil.left || v.top != teil.top || v.right != teil.right ||
            v.bottom != teil.bottom) {
            m_ausschnitt = Ausschnitt(teil.left, teil.top, teil.Width(), teil.Height());
            m_ausschnittVon = teil;
        }
        gezeigt = m_ausschnitt;
    }
    const CDPoint a = sicht.Auf({static_cast<double>(teil.left), static_cast<double>(teil.top)});
    const CDPoint b = sicht.Auf({static_cast<double>(teil.right), static_cast<double>(teil.bottom)});
    dc.Picture(a, {b.x - a.x, 0.0}, {0.0, b.y - a.y}, 1.0, gezeigt);
}

void Videobild::Zeichne(CDC& dc, bool bericht)
{
    dc.SelectPen({PenStyle::none});
    dc.SelectBrush({true, RuvCfg.diagramPlot});
    dc.Rectangle(0.0, 0.0, dc.Width(), dc.Height());
    dc.SelectBrush({});
    dc.SelectFont({kSchrift});
    dc.SetTextColor(drawing::Legible(kSchwarz, RuvCfg.diagramPlot, 7.0));
    if (!m_bild) {
        dc.TextOut({dc.Width() / 2.0, dc.Height() / 2.0}, m_ohneBild, TextAlign::center);
        return;
    }
    dc.SetTextColor(kWeiss);
    const Sicht sicht = MacheSicht(dc.Width(), dc.Height(), bericht);
    ZeichneBild(dc, sicht);
    ZeichneViereck(dc, sicht);
    ZeichneKanten(dc, sicht);
    dc.SelectPen({PenStyle::none});
    dc.SelectBrush({true, kGelb});
    for (const VisionPoint p : m_inhalt.spur)
        if (const CDPoint auf = sicht.Auf(p); Liegt(auf, dc))
            dc.Ellipse(auf, 2.0, 2.0);
    dc.SelectBrush({});
    for (const Objekt& objekt : m_inhalt.objekte)
        ZeichneObjekt(dc, sicht, objekt);
    if (m_inhalt.vorschlag && !bericht)
        ZeichneVorschlag(dc, sicht);
    if (m_zeiger && !bericht)
        ZeichneLupe(dc, sicht);
}

void Videobild::ZeichneViereck(CDC& dc, const Sicht& sicht) const
{
    dc.SelectPen({PenStyle::solid, kStrich, kBlau});
    for (const auto& kante : m_inhalt.kanten)
        for (std::size_t i = 1; i < kante.size(); ++i) {
            const CDPoint a = sicht.Auf(kante[i - 1]);
            const CDPoint b = sicht.Auf(kante[i]);
            if (Liegt(a, dc) && Liegt(b, dc))
                dc.Line(a, b);
        }
    for (std::size_t i = 0; i < m_inhalt.punkte.size(); ++i) {
        const CDPoint p = sicht.Auf(m_inhalt.punkte[i]);
        if (!Liegt(p, dc))
            continue;
        const bool aktiv = m_inhalt.aktiv == Griff{Griff::Art::punkt, i};
        Kreuz(dc, p, aktiv ? 10.0 : 7.0, aktiv ? kGelb : kWeiss);
        Schild(dc, {p.x + 5.0, p.y - 4.0}, "P" + std::to_string(i + 1), kBlau);
    }
}

std::vector<std::pair<Videobild::Griff, VisionPoint>> Videobild::Kantenpunkte() const
{
    std::vector<std::pair<Griff, VisionPoint>> punkte;
    for (const auto& kante : m_inhalt.gerade)
        for (const VisionPoint p : kante)
            punkte.emplace_back(Griff{Griff::Art::kante, punkte.size()}, p);
    return punkte;
}

void Videobild::ZeichneKanten(CDC& dc, const Sicht& sicht) const
{
    dc.SelectPen({PenStyle::solid, 1.0, kGelb});
    for (const auto& kante : m_inhalt.gerade)
        for (std::size_t i = 1; i < kante.size(); ++i) {
            const CDPoint a = sicht.Auf(kante[i - 1]);
            const CDPoint b = sicht.Auf(kante[i]);
            if (Liegt(a, dc) && Liegt(b, dc))
                dc.Line(a, b);
        }
    for (const auto& [griff, punkt] : Kantenpunkte())
        if (const CDPoint p = sicht.Auf(punkt); Liegt(p, dc))
            Kreuz(dc, p, 5.0, m_inhalt.aktiv == griff ? kGelb : kWeiss);
}

void Videobild::ZeichneObjekt(CDC& dc, const Sicht& sicht, const Objekt& objekt) const
{
    if (!Liegt(sicht.Auf(objekt.punkt), dc))
        return;
    const double halb = objekt.breite / 2.0;
    const CDPoint oben = sicht.Auf({objekt.punkt.x - halb, objekt.punkt.y - objekt.hoehe / 2.0});
    const CDPoint unten = sicht.Auf({objekt.punkt.x + halb, objekt.punkt.y + objekt.hoehe / 2.0});
    if (objekt.breite > 0.0) {
        dc.SelectPen({PenStyle::solid, objekt.gewaehlt ? kStrich : 1.0, kRot});
        dc.Rectangle(std::clamp(oben.x, 0.0, dc.Width()), std::clamp(oben.y, 0.0, dc.Height()),
                     std::clamp(unten.x, 0.0, dc.Width()), std::clamp(unten.y, 0.0, dc.Height()));
    } else {
        Kreuz(dc, oben, 6.0, objekt.gewaehlt ? kGelb : kRot);
    }
    // The second line, the speed, stands below the first, and both above the object.
    const double schritt = std::max(kZeile * sicht.massstab, dc.TextHeight());
    const CDPoint schild{oben.x + kTextOben * sicht.massstab, oben.y - kTextOben * sicht.massstab - 6.0};
    Schild(dc, {schild.x, schild.y - (objekt.kmh ? schritt : 0.0)}, "id " + std::to_string(objekt.id), kRot);
    if (objekt.kmh)
        Schild(dc, schild, std::to_string(*objekt.kmh) + " km/h", kRot);
}

/// A dashed ring: crosses are what counts.
void Videobild::ZeichneVorschlag(CDC& dc, const Sicht& sicht) const
{
    const CDPoint p = sicht.Auf(m_inhalt.vorschlag->punkt);
    if (!Liegt(p, dc))
        return;
    for (const CPen& stift : {CPen{PenStyle::solid, 3.0, kSchwarz}, CPen{PenStyle::dash, 1.5, kGelb}}) {
        dc.SelectPen(stift);
        dc.Ellipse(p, kVorschlag, kVorschlag);
    }
    Schild(dc, {p.x + kVorschlag + 2.0, p.y - kVorschlag}, m_inhalt.vorschlag->text, kBlau);
}

void Videobild::ZeichneLupe(CDC& dc, const Sicht& sicht) const
{
    const VisionPoint p = sicht.Von(*m_zeiger);
    const int w = std::min(kLupeBild, m_bild->width);
    const int h = std::min(kLupeBild, m_bild->height);
    const int links = std::clamp(static_cast<int>(std::lround(p.x)) - w / 2, 0, m_bild->width - w);
    const int oben = std::clamp(static_cast<int>(std::lround(p.y)) - h / 2, 0, m_bild->height - h);
    // In the corner that the pointer is not in.
    const double x = m_zeiger->x < sicht.breite / 2.0 ? sicht.breite - kLupe - 4.0 : 4.0;
    const CDPoint ecke{x, 4.0};
    const double mass = kLupe / kLupeBild;
    const CDPoint ende{ecke.x + w * mass, ecke.y + h * mass};
    dc.Picture(ecke, {ende.x - ecke.x, 0.0}, {0.0, ende.y - ecke.y}, 1.0, Ausschnitt(links, oben, w, h));
    dc.SelectPen({PenStyle::solid, 1.0, kWeiss});
    dc.Rectangle(ecke.x, ecke.y, ende.x, ende.y);
    const CDPoint ziel{ecke.x + std::clamp((p.x - links) * mass, 0.0, w * mass),
                       ecke.y + std::clamp((p.y - oben) * mass, 0.0, h * mass)};
    Kreuz(dc, ziel, 8.0, kGelb);
}

VisionPoint Videobild::Ort(Griff griff) const
{
    if (griff.art == Griff::Art::punkt)
        return m_inhalt.punkte[griff.nummer];
    if (griff.art == Griff::Art::kante)
        return Kantenpunkte()[griff.nummer].second;
    for (const Objekt& objekt : m_inhalt.objekte)
        if (objekt.gewaehlt)
            return objekt.punkt;
    return {};
}

std::optional<Videobild::Griff> Videobild::Treffer(const Sicht& sicht, CDPoint wo) const
{
    const auto weite = [&](VisionPoint p) {
        const CDPoint auf = sicht.Auf(p);
        return std::hypot(auf.x - wo.x, auf.y - wo.y);
    };
    std::optional<Griff> punkt;
    double naechster = kTreffer;
    if (m_inhalt.nurKanten) {
        for (const auto& [griff, p] : Kantenpunkte())
            if (const double d = weite(p); d <= naechster) {
                naechster = d;
                punkt = griff;
            }
        return punkt;
    }
    for (std::size_t i = 0; i < m_inhalt.punkte.size(); ++i)
        if (const double d = weite(m_inhalt.punkte[i]); d <= naechster) {
            naechster = d;
            punkt = Griff{Griff::Art::punkt, i};
        }
    std::optional<Griff> klick;
    for (const Objekt& objekt : m_inhalt.objekte)
        if (objekt.gewaehlt && objekt.breite == 0.0 && weite(objekt.punkt) <= kTreffer)
            klick = Griff{Griff::Art::klick, 0};
    const auto& zuerst = m_inhalt.punkteZuerst ? punkt : klick;
    const auto& danach = m_inhalt.punkteZuerst ? klick : punkt;
    return zuerst ? zuerst : danach;
}

VisionPoint Videobild::ImBild(VisionPoint p) const
{
    return {std::clamp(p.x, 0.0, static_cast<double>(m_bild->width)),
            std::clamp(p.y, 0.0, static_cast<double>(m_bild->height))};
}

bool Videobild::Maus(const CMouseEvent& ereignis)
{
    if (!m_bild)
        return false;
    const Sicht sicht = MacheSicht(ereignis.width, ereignis.height, false);
    const VisionPoint hier = sicht.Von(ereignis.position);
    const bool darin = hier.x >= 0.0 && hier.y >= 0.0 && hier.x <= m_bild->width && hier.y <= m_bild->height;
    const auto gezogenNach = [&] {
        const VisionPoint start = sicht.Von(*m_gedrueckt);
        return ImBild({m_griffOrt.x + hier.x - start.x, m_griffOrt.y + hier.y - start.y});
    };
    switch (ereignis.kind) {
    case CMouseEvent::Kind::wheel: {
        // What lies under the pointer stays there.
        const double vorher = sicht.massstab;
        m_vergroesserung =
            std::clamp(m_vergroesserung * std::pow(kJeRaste, ereignis.wheel), 1.0, kMeisteVergroesserung);
        const double jetzt = MacheSicht(ereignis.width, ereignis.height, false).massstab;
        const VisionPoint mitte = sicht.Von({ereignis.width / 2.0, ereignis.height / 2.0});
        m_mitte = {hier.x + (mitte.x - hier.x) * vorher / jetzt, hier.y + (mitte.y - hier.y) * vorher / jetzt};
        return true;
    }
    case CMouseEvent::Kind::doubleClick: // the second of two quick clicks
    case CMouseEvent::Kind::press:
        m_schiebt = ereignis.button == MouseButton::middle ||
                    (ereignis.button == MouseButton::left && (ereignis.modifiers & MK_SHIFT) != 0);
        if (!m_schiebt && (ereignis.button != MouseButton::left || !darin))
            return false;
        m_gedrueckt = ereignis.position;
        m_mitteVorher = sicht.Von({ereignis.width / 2.0, ereignis.height / 2.0});
        m_gezogen = false;
        m_griff = m_schiebt ? std::nullopt : Treffer(sicht, ereignis.position);
        if (m_griff)
            m_griffOrt = Ort(*m_griff);
        m_zeiger = ereignis.position;
        return true;
    case CMouseEvent::Kind::move:
        m_zeiger = darin ? std::optional(ereignis.position) : std::nullopt;
        if (!m_gedrueckt)
            return true;
        m_gezogen = m_gezogen ||
                    std::hypot(ereignis.position.x - m_gedrueckt->x, ereignis.position.y - m_gedrueckt->y) > kZugBeginn;
        if (m_schiebt)
            m_mitte = {m_mitteVorher.x - (ereignis.position.x - m_gedrueckt->x) / sicht.massstab,
                       m_mitteVorher.y - (ereignis.position.y - m_gedrueckt->y) / sicht.massstab};
        else if (m_gezogen && m_griff && m_zug)
            m_zug(*m_griff, gezogenNach(), false);
        return true;
    case CMouseEvent::Kind::release:
        if (m_gedrueckt && !m_schiebt) {
            if (m_gezogen && m_griff) {
                if (m_zug)
                    m_zug(*m_griff, gezogenNach(), true);
            } else if (m_klick && darin) {
                m_klick(ImBild(hier), m_griff);
            }
        }
        m_gedrueckt.reset();
        m_griff.reset();
        m_zeiger.reset();
        return true;
    }
    return false;
}
