// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/UIBase/Window/PNBaseWindow.h>

#include "Support/LoggingWindow.h"
#include "Support/Pointer.h"
#include "Support/ServerGeometry.h"

#include <QtGui/QWindow>

/// A PNBaseWindow of 400 x 300 with a LoggingWidget as its content, which notes the events that pass.
class TestWindow : public PNBaseWindow {
public:
    static constexpr double width = 400;
    static constexpr double height = 300;

    explicit TestWindow(kx::WindowStyleMask style = kx::WindowStyle::Borderless)
        : PNBaseWindow(QRectF(100, 200, width, height), style)
        , view(new LoggingWidget)
    {
        view->setMouseTracking(true);
        view->setFocusPolicy(Qt::StrongFocus);
        setCentralWidget(view);
        onNativeEatEvent([this](kx::Event *) { ++taken; });
    }

    LoggingWidget *const view;
    int taken = 0; // presses
    int steps = 0; // of drags
    std::function<void()> atStep;
    QRect placed; // by the latest step

    void handleMoveOrResize(kx::Event *event) override
    {
        ++steps;
        PNBaseWindow::handleMoveOrResize(event);
        placed = geometry();
        if (atStep)
            atStep();
    }

    /// A point of the window as Pointer has it.
    [[nodiscard]] QPointF fromTop(const QPointF &point) const { return {point.x(), view->height() - 1 - point.y()}; }
};

/// Everything in the window moves it.
inline void makeAllMovable(PNBaseWindow &window)
{
    window.setIgnoreDragRect(false);
    window.updateMoveIncludeRect({QRectF(QPointF(0, 0), window.frame().size())});
}

/// Presses at a point of the window, drags by a way with y growing upwards, and releases. The events are there before
/// the window sees the first of them.
inline void dragBy(TestWindow &window, const QPointF &from, const QPointF &way, int steps = 4)
{
    Pointer pointer(*window.view);
    pointer.moveTo(window.fromTop(from));
    pointer.queue();
    pointer.press();
    for (int i = 0; i < steps; ++i)
        pointer.moveBy(QPointF(way.x(), -way.y()) / steps);
    pointer.release();
    pointer.deliver();
    if (steps > 0 && window.steps > 0)
        settleGeometry(window, window.placed);
}
