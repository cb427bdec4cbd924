// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/mask/TornOffMask.h"

#include "desktop/look/Icons.h"
#include "desktop/look/Theme.h"
#include "desktop/mask/MaskArea.h"

#include <QCloseEvent>
#include <QToolButton>
#include <QVBoxLayout>

namespace desktop
{

TornOffMask::TornOffMask(MaskFrame& frame, QWidget& content, QWidget* mainWindow)
    : QWidget(mainWindow, Qt::Window), m_frame(frame)
{
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    auto* back = new QToolButton;
    back->setText(QStringLiteral("Zurück in das Hauptfenster"));
    back->setIcon(Icon("back"));
    back->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    back->setFocusPolicy(Qt::NoFocus);
    back->setAutoRaise(true);
    connect(back, &QToolButton::clicked, this, &TornOffMask::backWanted);
    column->addWidget(back);
    column->addWidget(&content, 1);
    content.show();
}

void TornOffMask::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange)
        m_frame.TellState();
}

void TornOffMask::closeEvent(QCloseEvent* event)
{
    event->ignore();
    m_frame.close();
}

} // namespace desktop
