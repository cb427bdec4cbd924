// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/look/Theme.h"
#include "host/CDC.h"
#include "pathtime/PathTimeDiagram.h"

#include <QAbstractScrollArea>
#include <QLineF>
#include <QList>

#include <functional>
#include <optional>
#include <utility>

class QMenu;
class QPrinter;

namespace desktop
{

/// What a drawing is for: the screen in the scheme in force, or paper.
enum class Ground { screen, paper };

/// The scheme's colours for diagrams.
drawing::DiagramPalette PaletteFor(Ground ground);

/// What a diagram says at a place: a line across it, and a text of one line per entry, each in its colour.
struct DiagramReading {
    QLineF line; ///< in the drawing
    QList<std::pair<QString, QColor>> texts;
};

/// Shows a drawing of the case: fills the view and is scrolled when it needs more height, can be enlarged (wheel, +, -,
/// 0) and shifted with the mouse; its context menu copies, saves and prints it. What leaves the program is drawn for
/// paper, whatever the scheme.
class DiagramView : public QAbstractScrollArea
{
    Q_OBJECT

  public:
    /// Draws into a drawing of the size it has.
    using Draw = std::function<void(CDC& drawing, Ground ground)>;

    /// `name` names the diagram in file names and printer jobs.
    DiagramView(Draw draw, QString name, QWidget* parent = nullptr);

    /// The drawing changed.
    void Refresh();
    /// The least height the drawing needs at a width.
    void SetLeastHeight(std::function<double(double width)> least) { m_least = std::move(least); }
    /// What is read under the mouse, in the coordinates of the drawing; nothing beside the plots.
    void SetReading(std::function<std::optional<DiagramReading>(QPointF)> reading);
    /// At a point of the viewport.
    std::optional<DiagramReading> ReadingAt(QPointF point) const;
    /// An entry of the context menu before its own.
    void AddMenuAction(QAction* action) { m_actions.append(action); }

    double Zoom() const { return m_zoom; }
    /// The point of the viewport stays where it is.
    void SetZoom(double zoom, QPointF fixed);

    const QString& Name() const { return m_name; }
    /// What the screen shows, null before it was painted for the first time.
    const CDC* Shown() const { return m_drawing ? &*m_drawing : nullptr; }
    CDC ForPaper() const;
    void Copy() const;
    /// As SVG, PDF or PNG by the ending; returns why it failed, in German, or nothing.
    QString SaveAs(const QString& path) const;
    void PrintOn(QPrinter& printer) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    void FitScrollBars();
    /// Of the drawing, not enlarged.
    QSizeF Whole() const;
    void PaintReading(QPainter& painter) const;

    Draw m_draw;
    std::function<double(double)> m_least;
    std::function<std::optional<DiagramReading>(QPointF)> m_reading;
    std::optional<QPointF> m_hovered; ///< in the viewport
    QString m_name;
    QList<QAction*> m_actions;
    std::optional<CDC> m_drawing;
    Scheme m_scheme = Scheme::light; ///< of m_drawing
    double m_zoom = 1.0;
    QPoint m_grabbed;
};

} // namespace desktop
