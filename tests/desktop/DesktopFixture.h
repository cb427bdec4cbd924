// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// A running workstation: user-interface thread, case, main window, and hands on the keyboard.
#pragma once

#include "desktop/MainWindow.h"
#include "desktop/case/CaseDocument.h"
#include "desktop/mask/MaskArea.h"
#include "desktop/mask/MaskWindow.h"
#include "desktop/mask/QtFrontEnd.h"
#include "framework/UiThread.h"
#include "host/RuvCfg.h"

#include <QApplication>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <functional>

namespace test
{

class DesktopTest : public ::testing::Test
{
  protected:
    DesktopTest()
    {
        RuvCfg = CRuvCfg{};
        UnitsSystemConfiguration::GetInstance().SetSystem(UnitsSystem::metric);
        thread.CreateTopWindow(frame, framework::Kind::frame, 0, nullptr);
        thread.m_pMainWnd = &frame;
        document.Data().KfzDat(0) = TypicalCar("Pkw 1", RGB(200, 0, 0));
        document.Data().KfzDat(1) = TypicalCar("Pkw 2", RGB(0, 0, 200));
        window.show();
        window.activateWindow();
        if (!QTest::qWaitForWindowActive(&window))
            throw std::runtime_error("the main window does not become active");
    }
    ~DesktopTest() override
    {
        RuvCfg = CRuvCfg{};
        UnitsSystemConfiguration::GetInstance().SetSystem(UnitsSystem::metric);
    }

    /// Opens a mask and returns its window.
    desktop::MaskWindow& Open(UINT number)
    {
        window.OpenMask(number);
        QApplication::processEvents();
        desktop::MaskWindow* mask = window.Masks().Active();
        if (mask == nullptr)
            throw std::runtime_error("mask " + std::to_string(number) + " does not open");
        return *mask;
    }
    static framework::Window& Control(const desktop::MaskWindow& mask, UINT id)
    {
        framework::Window* control = mask.Dialog() == nullptr ? nullptr : mask.Dialog()->Child(id);
        if (control == nullptr)
            throw std::out_of_range("control " + std::to_string(id));
        return *control;
    }
    static QWidget& Widget(const desktop::MaskWindow& mask, UINT id)
    {
        return *mask.ViewOf(Control(mask, id))->Widget();
    }
    static std::string Text(const desktop::MaskWindow& mask, UINT id) { return Control(mask, id).text; }

    /// Keys go where the focus is, as they do for a user.
    static void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QWidget* focus = QApplication::focusWidget();
        QTest::keyClick(focus == nullptr ? QApplication::activeWindow() : focus, key, modifiers);
        QApplication::processEvents();
    }
    static void Type(const QString& text)
    {
        QTest::keyClicks(QApplication::focusWidget(), text);
        QApplication::processEvents();
    }
    static void ClickOn(QWidget& widget)
    {
        QTest::mouseClick(&widget, Qt::LeftButton);
        QApplication::processEvents();
    }
    /// Does something to the modal window that the next action opens.
    static void InModal(const std::function<void(QWidget&)>& act)
    {
        auto* timer = new QTimer;
        QObject::connect(timer, &QTimer::timeout, timer, [timer, act] {
            QWidget* modal = QApplication::activeModalWidget();
            if (modal == nullptr || !modal->isActiveWindow() || !modal->isAncestorOf(QApplication::focusWidget()))
                return; // keys would go elsewhere
            timer->deleteLater();
            timer->stop();
            act(*modal);
        });
        timer->start(10);
    }

    desktop::QtFrontEnd front;
    framework::UiThread thread{front};
    CWnd frame;
    desktop::CaseDocument document{false};
    desktop::MainWindow window{document, front};
};

} // namespace test
