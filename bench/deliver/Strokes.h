// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QCoreApplication>
#include <QtGui/QWindow>
#include <QtGui/qpa/qwindowsysteminterface.h>
#include <QtWidgets/QMainWindow>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

constexpr int drags = 4;
constexpr int eventsOfAStroke = drags + 3;

/// Shows the window with its content.
inline void show(QMainWindow &window, QWidget *content)
{
    window.setCentralWidget(content);
    window.resize(800, 600);
    window.show();
    for (int i = 0; i < 10; ++i)
        QCoreApplication::processEvents();
}

/// Moves the pointer, presses, drags and releases, again and again, and prints how many microseconds an event took.
/// Answers how many events there were.
inline int printTimeOfAnEvent(const QMainWindow &window)
{
    constexpr int strokes = 1000;
    constexpr int repetitions = 15;
    QWindow *handle = window.windowHandle();
    QPoint position(100, 100);
    ulong now = 0;
    const auto send = [&](QEvent::Type type, Qt::MouseButtons buttons) {
        const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        QWindowSystemInterface::handleMouseEvent<QWindowSystemInterface::SynchronousDelivery>(
            handle, now, position, handle->mapToGlobal(position), buttons, button, type);
    };
    std::vector<double> samples;
    for (int repetition = 0; repetition < repetitions; ++repetition) {
        const auto begin = std::chrono::steady_clock::now();
        for (int stroke = 0; stroke < strokes; ++stroke) {
            now += 1000; // no double clicks
            position = QPoint(100 + stroke % 500, 100 + stroke % 400);
            send(QEvent::MouseMove, Qt::NoButton);
            send(QEvent::MouseButtonPress, Qt::LeftButton);
            for (int drag = 0; drag < drags; ++drag) {
                position += QPoint(3, 2);
                send(QEvent::MouseMove, Qt::LeftButton);
            }
            send(QEvent::MouseButtonRelease, Qt::NoButton);
        }
        const std::chrono::duration<double, std::micro> taken = std::chrono::steady_clock::now() - begin;
        samples.push_back(taken.count() / (strokes * eventsOfAStroke));
    }
    const auto middle = samples.begin() + samples.size() / 2;
    std::nth_element(samples.begin(), middle, samples.end());
    std::printf("%f\n", *middle);
    return repetitions * strokes * eventsOfAStroke;
}
