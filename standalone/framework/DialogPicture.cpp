// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "framework/DialogPicture.h"

#include "framework/UiThread.h"
#include "host/Assert.h"

#include <algorithm>
#include <cmath>

namespace framework
{
namespace
{

constexpr COLORREF kPaper = RGB(246, 248, 250);
constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr COLORREF kFrame = RGB(190, 198, 208);
constexpr COLORREF kGroupLine = RGB(211, 217, 225);
constexpr COLORREF kInputLine = RGB(142, 153, 166);
constexpr COLORREF kResult = RGB(232, 236, 241);
constexpr COLORREF kText = RGB(27, 36, 48);
constexpr COLORREF kQuietText = RGB(84, 97, 112);
constexpr COLORREF kDisabledText = RGB(160, 168, 178);
constexpr COLORREF kAccent = RGB(33, 98, 168);

// In dialog units, vertically 1/8 of a line of text.
constexpr double kTitleHeight = 17.0;
constexpr double kMargin = 2.0; // between frame and picture's edge
constexpr double kEmSize = 6.7;
/// A dialog unit is a quarter of a letter wide and an eighth of one high; letters are 6 by 13 pixels.
constexpr double kHeightToWidth = 13.0 / 12.0;

struct Box {
    double left, top, right, bottom;
    double Width() const { return right - left; }
    double Height() const { return bottom - top; }
    double MiddleX() const { return (left + right) / 2.0; }
    double MiddleY() const { return (top + bottom) / 2.0; }
};

std::vector<std::string> Lines(const std::string& text)
{
    std::vector<std::string> lines(1);
    for (const char c : text)
        if (c == '\n')
            lines.emplace_back();
        else if (c != '\r')
            lines.back().push_back(c);
    return lines;
}

class Painter
{
  public:
    Painter(CDC& context, double pixelsPerUnit) : m_dc(context), m_x(pixelsPerUnit), m_y(pixelsPerUnit * kHeightToWidth)
    {
    }

    void Frame(const Window& dialog);
    void Contents(const Window& dialog, CDPoint origin);

  private:
    void Control(const Window& control, const Box& box);
    void Edit(const Window& control, const Box& box);
    void Button(const Window& control, const Box& box);
    void Mark(const Window& control, const Box& box);
    void Group(const Window& control, const Box& box);
    void Combo(const Window& control, const Box& box);
    void List(const Window& control, const Box& box);
    void Grid(const Window& control, const Box& box);
    void Trackbar(const Window& control, const Box& box);
    void Label(const Window& control, const Box& box);
    void Field(const Window& control, const Box& box);
    void Replay(const CDC& drawing, CDPoint origin);

    void Rect(const Box& box, COLORREF fill, COLORREF line, double radius);
    void Triangle(CDPoint a, CDPoint b, CDPoint c, COLORREF color);
    /// One line, middle of its small letters on `y`; smaller letters when it would be wider than `room`.
    void Line(const std::string& text, double x, double y, TextAlign align, COLORREF color, double room,
              bool bold = false);
    double Em() const { return kEmSize * m_y; }
    Box Scaled(const CRect& rect, CDPoint origin) const
    {
        return {origin.x + rect.left * m_x, origin.y + rect.top * m_y, origin.x + rect.right * m_x,
                origin.y + rect.bottom * m_y};
    }

    CDC& m_dc;
    double m_x;
    double m_y;
};

void Painter::Rect(const Box& box, COLORREF fill, COLORREF line, double radius)
{
    m_dc.SelectPen({PenStyle::solid, 0.5 * m_x, line});
    m_dc.SelectBrush({true, fill});
    m_dc.Rectangle(box.left, box.top, box.right, box.bottom, radius * m_x, radius * m_x);
}

void Painter::Triangle(CDPoint a, CDPoint b, CDPoint c, COLORREF color)
{
    m_dc.SelectPen({PenStyle::none, 0.0, color});
    m_dc.SelectBrush({true, color});
    m_dc.Polygon({a, b, c});
}

void Painter::Line(const std::string& text, double x, double y, TextAlign align, COLORREF color, double room, bool bold)
{
    if (text.empty())
        return;
    CFont font{Em(), bold};
    m_dc.SelectFont(font);
    const double width = m_dc.TextWidth(text);
    if (room > 0.0 && width > room) {
        font.size *= std::max(room / width, 0.6);
        m_dc.SelectFont(font);
    }
    m_dc.SetTextColor(color);
    // Between the middle of small letters and that of capitals and digits.
    m_dc.TextOut({x, y + 0.31 * Em()}, text, align);
}

void Painter::Frame(const Window& dialog)
{
    const double edge = kMargin * m_x;
    const Box all{edge, edge, m_dc.Width() - edge, m_dc.Height() - edge};
    Rect(all, kPaper, kFrame, 3.0);
    const double bar = edge + kTitleHeight * m_y;
    m_dc.SelectPen({PenStyle::solid, 0.5 * m_x, kGroupLine});
    m_dc.Line({all.left, bar}, {all.right, bar});
    const double middle = (all.top + bar) / 2.0;
    Line(WithoutMnemonic(dialog.text), all.left + 7.0 * m_x, middle, TextAlign::left, kText, all.Width() - 30.0 * m_x,
         true);
    const double arm = 2.3 * m_x;
    const double x = all.right - 9.0 * m_x;
    m_dc.SelectPen({PenStyle::solid, 0.7 * m_x, kQuietText});
    m_dc.Line({x - arm, middle - arm}, {x + arm, middle + arm});
    m_dc.Line({x - arm, middle + arm}, {x + arm, middle - arm});
}

void Painter::Contents(const Window& dialog, CDPoint origin)
{
    // Group boxes lie behind what stands in them.
    for (const bool groups : {true, false})
        for (const auto& control : dialog.children)
            if (control->visible && (control->kind == Kind::group) == groups)
                Control(*control, Scaled(control->rect, origin));
}

void Painter::Control(const Window& control, const Box& box)
{
    switch (control.kind) {
    case Kind::edit:
        return Edit(control, box);
    case Kind::button:
        return Button(control, box);
    case Kind::check:
    case Kind::radio:
        return Mark(control, box);
    case Kind::group:
        return Group(control, box);
    case Kind::combo:
        return Combo(control, box);
    case Kind::list:
        return List(control, box);
    case Kind::trackbar:
        return Trackbar(control, box);
    case Kind::field:
    case Kind::chart:
        return Field(control, box);
    case Kind::grid:
        return Grid(control, box);
    default:
        return Label(control, box);
    }
}

void Painter::Edit(const Window& control, const Box& box)
{
    // A field that takes no entry shows a result: grey, but read as well as any other.
    const bool input = control.enabled && !control.readOnly;
    Rect(box, input ? kWhite : kResult, input ? kInputLine : kGroupLine, 1.5);
    const double arrows = control.spinner ? 8.0 * m_x : 0.0;
    const double pad = 3.0 * m_x;
    const double room = box.Width() - arrows - 2.0 * pad;
    if (control.rightAligned)
        Line(control.text, box.right - arrows - pad, box.MiddleY(), TextAlign::right, kText, room);
    else
        Line(control.text, box.left + pad, box.MiddleY(), TextAlign::left, kText, room);
    if (control.spinner && input) {
        const double x = box.right - 5.0 * m_x;
        const double half = 1.8 * m_x;
        const double gap = 1.0 * m_y;
        const double height = 2.0 * m_y;
        const double y = box.MiddleY();
        Triangle({x - half, y - gap}, {x + half, y - gap}, {x, y - gap - height}, kQuietText);
        Triangle({x - half, y + gap}, {x + half, y + gap}, {x, y + gap + height}, kQuietText);
    }
}

void Painter::Button(const Window& control, const Box& box)
{
    const bool accent = control.defaultButton && control.enabled;
    const bool pressed = control.check != 0;
    Rect(box,
         accent    ? kAccent
         : pressed ? kResult
                   : kWhite,
         accent || pressed ? kAccent
         : control.enabled ? kInputLine
                           : kGroupLine,
         2.0);
    const COLORREF color = accent ? kWhite : control.enabled ? kText : kDisabledText;
    Line(WithoutMnemonic(control.text), box.MiddleX(), box.MiddleY(), TextAlign::center, color,
         box.Width() - 4.0 * m_x);
}

void Painter::Mark(const Window& control, const Box& box)
{
    const double size = 4.0 * m_x;
    const CDPoint centre{box.left + size + 0.5 * m_x, box.MiddleY()};
    const COLORREF line = control.enabled ? kInputLine : kGroupLine;
    const COLORREF mark = control.enabled ? kAccent : kDisabledText;
    if (control.kind == Kind::radio) {
        m_dc.SelectPen({PenStyle::solid, 0.5 * m_x, line});
        m_dc.SelectBrush({true, kWhite});
        m_dc.Ellipse(centre, size, size);
        if (control.check != 0) {
            m_dc.SelectPen({PenStyle::none, 0.0, mark});
            m_dc.SelectBrush({true, mark});
            m_dc.Ellipse(centre, size * 0.5, size * 0.5);
        }
    } else {
        Rect({centre.x - size, centre.y - size, centre.x + size, centre.y + size},
             control.check != 0 && control.enabled ? kAccent : kWhite,
             control.check != 0 && control.enabled ? kAccent : line, 1.2);
        if (control.check != 0) {
            m_dc.SelectPen({PenStyle::solid, 0.9 * m_x, control.enabled ? kWhite : kDisabledText});
            m_dc.Polyline({{centre.x - 0.5 * size, centre.y},
                           {centre.x - 0.1 * size, centre.y + 0.45 * size},
                           {centre.x + 0.55 * size, centre.y - 0.45 * size}});
        }
    }
    const double left = centre.x + size + 3.0 * m_x;
    Line(WithoutMnemonic(control.text), left, box.MiddleY(), TextAlign::left, control.enabled ? kText : kDisabledText,
         box.right - left);
}

void Painter::Group(const Window& control, const Box& box)
{
    const std::string text = WithoutMnemonic(control.text);
    const double top = box.top + 4.0 * m_y; // the frame begins at the middle of its caption
    Rect({box.left, text.empty() ? box.top : top, box.right, box.bottom}, kPaper, kGroupLine, 2.0);
    if (text.empty())
        return;
    m_dc.SelectFont({Em(), false});
    const double width = m_dc.TextWidth(text);
    const double left = box.left + 7.0 * m_x;
    m_dc.SelectPen({PenStyle::none, 0.0, kPaper});
    m_dc.SelectBrush({true, kPaper});
    m_dc.Rectangle(left - 2.0 * m_x, box.top, left + width + 2.0 * m_x, box.top + 8.0 * m_y);
    Line(text, left, top, TextAlign::left, kQuietText, box.Width() - 14.0 * m_x);
}

void Painter::Combo(const Window& control, const Box& box)
{
    // The height of a combo box in a template is that of its opened list.
    const Box closed{box.left, box.top, box.right, std::min(box.bottom, box.top + 12.0 * m_y)};
    Rect(closed, control.enabled ? kWhite : kResult, control.enabled ? kInputLine : kGroupLine, 1.5);
    const double x = closed.right - 6.0 * m_x;
    const double half = 1.8 * m_x;
    m_dc.SelectPen({PenStyle::solid, 0.7 * m_x, control.enabled ? kQuietText : kDisabledText});
    m_dc.Polyline({{x - half, closed.MiddleY() - half / 2.0},
                   {x, closed.MiddleY() + half / 2.0},
                   {x + half, closed.MiddleY() - half / 2.0}});
    if (control.selection >= 0 && static_cast<std::size_t>(control.selection) < control.items.size())
        Line(control.items[static_cast<std::size_t>(control.selection)], closed.left + 3.0 * m_x, closed.MiddleY(),
             TextAlign::left, control.enabled ? kText : kDisabledText, closed.Width() - 15.0 * m_x);
}

void Painter::List(const Window& control, const Box& box)
{
    Rect(box, control.enabled ? kWhite : kResult, kInputLine, 1.5);
    const double height = 9.0 * m_y;
    double top = box.top + 1.5 * m_y;
    for (std::size_t i = 0; i < control.items.size() && top + height <= box.bottom; ++i, top += height) {
        const bool chosen = static_cast<int>(i) == control.selection;
        if (chosen) {
            m_dc.SelectPen({PenStyle::none, 0.0, kAccent});
            m_dc.SelectBrush({true, kAccent});
            m_dc.Rectangle(box.left + m_x, top, box.right - m_x, top + height, m_x, m_x);
        }
        Line(control.items[i], box.left + 3.0 * m_x, top + height / 2.0, TextAlign::left, chosen ? kWhite : kText,
             box.Width() - 6.0 * m_x);
    }
}

void Painter::Grid(const Window& control, const Box& box)
{
    const framework::Grid& grid = *control.grid;
    Rect(box, kWhite, kInputLine, 1.5);
    if (grid.columns.empty())
        return;
    const double height = 10.0 * m_y;
    const double width = box.Width() / static_cast<double>(grid.columns.size());
    const auto row = [&](double top, const auto& textOf, bool bold, COLORREF color) {
        for (std::size_t i = 0; i < grid.columns.size(); ++i) {
            const bool right = grid.columns[i].rightAligned;
            const double left = box.left + static_cast<double>(i) * width;
            Line(textOf(i), right ? left + width - 3.0 * m_x : left + 3.0 * m_x, top + height / 2.0,
                 right ? TextAlign::right : TextAlign::left, color, width - 6.0 * m_x, bold);
        }
        m_dc.SelectPen({PenStyle::solid, 0.5 * m_x, kGroupLine});
        m_dc.Line({box.left, top + height}, {box.right, top + height});
    };
    row(
        box.top, [&](std::size_t i) { return grid.columns[i].heading; }, true, kQuietText);
    double top = box.top + height;
    for (std::size_t r = 0; r < grid.rows.size() && top + height <= box.bottom; ++r, top += height) {
        const bool chosen = static_cast<int>(r) >= grid.firstSelected && static_cast<int>(r) <= grid.lastSelected;
        if (chosen) {
            m_dc.SelectPen({PenStyle::none, 0.0, kAccent});
            m_dc.SelectBrush({true, kAccent});
            m_dc.Rectangle(box.left + 0.5 * m_x, top, box.right - 0.5 * m_x, top + height);
        }
        row(
            top, [&](std::size_t i) { return grid.rows[r][i]; }, false, chosen ? kWhite : kText);
    }
}

void Painter::Trackbar(const Window& control, const Box& box)
{
    const double range = std::max(control.trackMaximum - control.trackMinimum, 1);
    const double thumb = 4.0 * m_x;
    const double share = (control.trackPosition - control.trackMinimum) / range;
    const double x = box.left + thumb + share * (box.Width() - 2.0 * thumb);
    const COLORREF color = control.enabled ? kAccent : kDisabledText;
    m_dc.SelectPen({PenStyle::solid, 1.2 * m_x, kFrame});
    m_dc.Line({box.left + thumb, box.MiddleY()}, {box.right - thumb, box.MiddleY()});
    m_dc.SelectPen({PenStyle::none, 0.0, color});
    m_dc.SelectBrush({true, color});
    m_dc.Ellipse({x, box.MiddleY()}, thumb, thumb);
}

void Painter::Label(const Window& control, const Box& box)
{
    const auto lines = Lines(WithoutMnemonic(control.text));
    const double step = 8.0 * m_y;
    for (std::size_t i = 0; i < lines.size(); ++i)
        Line(lines[i], control.rightAligned ? box.right : box.left,
             box.top + (static_cast<double>(i) + 0.5) * std::min(step, box.Height()),
             control.rightAligned ? TextAlign::right : TextAlign::left, control.enabled ? kText : kDisabledText,
             box.Width());
}

void Painter::Field(const Window& control, const Box& box)
{
    Rect(box, kWhite, kGroupLine, 0.0);
    if (!control.painter)
        return;
    CDC drawing(box.Width(), box.Height());
    control.painter(drawing, {0, 0, static_cast<int>(box.Width()), static_cast<int>(box.Height())});
    Replay(drawing, {box.left, box.top});
}

/// Draws what another context holds, moved by `origin`.
void Painter::Replay(const CDC& drawing, CDPoint origin)
{
    const auto moved = [&](std::vector<CDPoint> points) {
        for (CDPoint& point : points)
            point += origin;
        return points;
    };
    struct Visitor {
        CDC& dc;
        CDPoint origin;
        const decltype(moved)& move;
        void operator()(const drawing::Polyline& p) const
        {
            dc.SelectPen(p.pen);
            dc.Polyline(move(p.points));
        }
        void operator()(const drawing::Polygon& p) const
        {
            dc.SelectPen(p.pen);
            dc.SelectBrush(p.brush);
            dc.Polygon(move(p.points));
        }
        void operator()(const drawing::Rectangle& r) const
        {
            dc.SelectPen(r.pen);
            dc.SelectBrush(r.brush);
            dc.Rectangle(r.left + origin.x, r.top + origin.y, r.right + origin.x, r.bottom + origin.y, r.radiusX,
                         r.radiusY);
        }
        void operator()(const drawing::Ellipse& e) const
        {
            dc.SelectPen(e.pen);
            dc.SelectBrush(e.brush);
            dc.Ellipse(e.centre + origin, e.rx, e.ry, e.angle);
        }
        void operator()(const drawing::Text& t) const
        {
            dc.SelectFont(t.font);
            dc.SetTextColor(t.color);
            dc.TextOut(t.position + origin, t.utf8, t.align, t.angle);
        }
        void operator()(const drawing::Picture& p) const
        {
            dc.Picture(p.corner + origin, p.across, p.down, p.opacity, p.bitmap);
        }
    };
    for (const drawing::Primitive& primitive : drawing.Primitives())
        std::visit(Visitor{m_dc, origin, moved}, primitive);
}

} // namespace

CDC DrawDialog(const Window& dialog, double pixelsPerUnit)
{
    RUV_ASSERT(pixelsPerUnit > 0.0);
    const double x = pixelsPerUnit;
    const double y = pixelsPerUnit * kHeightToWidth;
    const CDPoint origin{kMargin * x, kMargin * x + kTitleHeight * y};
    CDC context(dialog.rect.Width() * x + 2.0 * kMargin * x, origin.y + dialog.rect.Height() * y + kMargin * x);
    Painter painter(context, pixelsPerUnit);
    painter.Frame(dialog);
    painter.Contents(dialog, origin);
    for (const Window* page : UiThread::Current()->Pages(dialog))
        if (page->visible)
            painter.Contents(*page, {origin.x + page->rect.left * x, origin.y + page->rect.top * y});
    return context;
}

} // namespace framework
