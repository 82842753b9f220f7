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

constexpr int columns = 40;
constexpr int rows = 25;
constexpr QSize cell(25, 32);

/// A window with 1,000 children, each made by `make`.
template <class Make> void fill(QMainWindow &window, const Make &make)
{
    auto *content = new QWidget;
    window.setCentralWidget(content);
    window.resize(columns * cell.width(), rows * cell.height());
    for (int i = 0; i < columns * rows; ++i) {
        QWidget *child = make(content);
        child->setGeometry(QRect(QPoint(i % columns * cell.width(), i / columns * cell.height()), cell));
    }
    window.show();
    for (int i = 0; i < 10; ++i)
        QCoreApplication::processEvents();
}

/// Moves the pointer along the rows, over a border between two children at every fourth move, and prints how many
/// microseconds a move took.
inline void printTimeOfAMove(const QMainWindow &window)
{
    constexpr int step = 7;
    constexpr int moves = 4000;
    QWindow *handle = window.windowHandle();
    std::vector<double> samples;
    for (int sample = 0; sample < 15; ++sample) {
        QPoint position(0, 0);
        const auto begin = std::chrono::steady_clock::now();
        for (int i = 0; i < moves; ++i) {
            position.rx() += step;
            if (position.x() >= columns * cell.width())
                position = QPoint(position.x() % step, (position.y() + 37) % (rows * cell.height()));
            const QPointF global = position + window.pos();
            QWindowSystemInterface::handleMouseEvent<QWindowSystemInterface::SynchronousDelivery>(
                handle, position, global, Qt::NoButton, Qt::NoButton, QEvent::MouseMove);
        }
        const std::chrono::duration<double, std::micro> taken = std::chrono::steady_clock::now() - begin;
        samples.push_back(taken.count() / moves);
    }
    const auto middle = samples.begin() + samples.size() / 2;
    std::nth_element(samples.begin(), middle, samples.end());
    std::printf("%f\n", *middle);
}
