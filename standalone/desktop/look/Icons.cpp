// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/look/Icons.h"

#include "desktop/look/Theme.h"

#include <QIconEngine>
#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>
#include <string_view>

namespace desktop
{
namespace
{

struct Drawing {
    std::string_view name;
    const char* lines; ///< SVG paths on a square of 24, stroked
    bool accented = false;
};

constexpr Drawing kDrawings[] = {
    {"new", "M6 3h8l5 5v13H6z M14 3v5h5"},
    {"open", "M3 6h6l2 2h9v3 M3 6v13h15l3-8H6l-3 8"},
    {"save", "M4 4h13l3 3v13H4z M8 4v6h8V4 M7 20v-6h10v6"},
    {"undo", "M8 5L4 9l4 4 M4 9h10a5.5 5.5 0 0 1 0 11h-4"},
    {"redo", "M16 5l4 4-4 4 M20 9H10a5.5 5.5 0 0 0 0 11h4"},
    {"search", "M10.5 4a6.5 6.5 0 1 1 0 13a6.5 6.5 0 0 1 0-13z M15.5 15.5L21 21"},
    {"help", "M12 3a9 9 0 1 1 0 18a9 9 0 0 1 0-18z M9.3 9.5a2.8 2.8 0 1 1 4.2 2.4c-1 .6-1.5 1.1-1.5 2.1 M12 17v.2"},
    {"transfer", "M4 8h13 M13 4l4 4-4 4 M20 16H7 M11 12l-4 4 4 4"},
    {"settings", "M4 7h9 M17 7h3 M4 17h3 M11 17h9 M15 5v4 M9 15v4"},
    {"tile", "M4 4h7v7H4z M13 4h7v7h-7z M4 13h7v7H4z M13 13h7v7h-7z"},
    {"cascade", "M4 4h11v9H4z M15 8h5v12H8v-7"},
    {"close", "M6 6l12 12 M18 6L6 18"},
    {"float", "M9 9h11v11H9z M15 9V4H4v11h5"},
    {"question", "M12 3a9 9 0 1 1 0 18a9 9 0 0 1 0-18z M9.3 9.5a2.8 2.8 0 1 1 4.2 2.4c-1 .6-1.5 1.1-1.5 2.1 M12 17v.2",
     true},
    {"information", "M12 3a9 9 0 1 1 0 18a9 9 0 0 1 0-18z M12 11v6 M12 7.4v.2", true},
    {"warning", "M12 4L2.5 20h19z M12 10v5 M12 17.6v.1", true},
    {"print", "M7 9V3h10v6 M7 17H4V9h16v8h-3 M7 14h10v7H7z"},
    {"copy", "M9 8h11v13H9z M15 8V3H4v13h5"},
    {"report", "M6 3h8l5 5v13H6z M9 12h7 M9 16h7 M9 8h2"},
    {"car", "M3 15v-3l3-1 2-4h7l3 4 3 1v3z M7 15.5a1.5 1.5 0 1 0 .01 0 M17 15.5a1.5 1.5 0 1 0 .01 0"},
    {"chart", "M4 4v16h16 M7 16l4-6 3 3 5-7"},
    {"scene", "M3 6l6-2 6 2 6-2v14l-6 2-6-2-6 2z M9 4v14 M15 6v14"},
    {"fit", "M4 9V4h5 M15 4h5v5 M20 15v5h-5 M9 20H4v-5 M9 9h6v6H9z"},
    {"zoomIn", "M10.5 4a6.5 6.5 0 1 1 0 13a6.5 6.5 0 0 1 0-13z M15.5 15.5L21 21 M10.5 7.5v6 M7.5 10.5h6"},
    {"zoomOut", "M10.5 4a6.5 6.5 0 1 1 0 13a6.5 6.5 0 0 1 0-13z M15.5 15.5L21 21 M7.5 10.5h6"},
    {"grid", "M4 4h16v16H4z M9.3 4v16 M14.7 4v16 M4 9.3h16 M4 14.7h16"},
    {"measure", "M3 15L15 3l6 6L9 21z M7 11l2.5 2.5 M10 8l1.5 1.5 M13 5l2.5 2.5"},
    {"picture", "M3 5h18v14H3z M3 16l5-5 4 4 3-3 6 5 M15.5 9a1.2 1.2 0 1 0 .01 0"},
    {"back", "M14 5l-7 7l7 7 M7 12h13"},
    {"forward", "M10 5l7 7l-7 7 M17 12H4"},
    {"program", "M3 17h5l4-9h4l2 4h3 M3 17v3h18v-8 M8 20a2 2 0 1 0 .01 0 M17 20a2 2 0 1 0 .01 0 M4 4l5 5 M9 5v4H5",
     true},
    {"table", "M4 5h16v14H4z M4 10h16 M4 14.5h16 M10 5v14"},
};

class Engine : public QIconEngine
{
  public:
    explicit Engine(const Drawing& drawing) : m_drawing(drawing) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        const SchemeColors& c = Colors();
        const QColor color = mode == QIcon::Disabled                       ? c.border
                             : m_drawing.accented || mode == QIcon::Active ? c.accent
                                                                           : c.text;
        const QString svg = QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 24 24'><path d='%1' "
                                           "fill='none' stroke='%2' stroke-width='1.6' stroke-linecap='round' "
                                           "stroke-linejoin='round'/></svg>")
                                .arg(QString::fromLatin1(m_drawing.lines), color.name());
        QSvgRenderer renderer(svg.toUtf8());
        renderer.render(painter, QRectF(rect));
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return pixmap;
    }
    QIconEngine* clone() const override { return new Engine(*this); }

  private:
    const Drawing& m_drawing;
};

} // namespace

QIcon Icon(const char* name)
{
    const auto found = std::find_if(std::begin(kDrawings), std::end(kDrawings),
                                    [name](const Drawing& drawing) { return drawing.name == name; });
    return found == std::end(kDrawings) ? QIcon() : QIcon(new Engine(*found));
}

} // namespace desktop
