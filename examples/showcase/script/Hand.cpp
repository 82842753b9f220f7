// SPDX-License-Identifier: MIT
#include "Hand.h"

#include <QtCore/QEventLoop>
#include <QtCore/QTimer>
#include <QtTest/QTest>
#include <QtWidgets/QWidget>

namespace {

constexpr int pauseInMilliseconds = 15;
constexpr int stepsOfADrag = 6;

} // namespace

Hand::Hand(QWidget &window)
    : m_window(window)
{
}

void Hand::moveTo(const QWidget &widget, const QPoint &position)
{
    const QPoint target = inWindow(widget, position);
    // Two events, so that the pointer comes from somewhere.
    perform({[this, target] { QTest::mouseMove(m_window.windowHandle(), target - QPoint(1, 1)); },
        [this, target] { QTest::mouseMove(m_window.windowHandle(), target); }});
}

void Hand::click(const QWidget &widget, const QPoint &position)
{
    const QPoint target = inWindow(widget, position);
    QWindow *const window = m_window.windowHandle();
    moveTo(widget, position);
    perform({[=] { QTest::mousePress(window, Qt::LeftButton, {}, target); },
        [=] { QTest::mouseRelease(window, Qt::LeftButton, {}, target); }});
}

void Hand::click(const QWidget &widget)
{
    click(widget, widget.rect().center());
}

void Hand::drag(const QWidget &widget, const QPoint &from, const QPoint &to)
{
    moveTo(widget, from);
    QWindow *const window = m_window.windowHandle();
    const QPoint start = m_window.mapToGlobal(inWindow(widget, from));
    // The window may move on the way: the hand stays on the screen.
    const auto at = [window, start, way = to - from](
                        int step) { return window->mapFromGlobal(start + way * step / stepsOfADrag); };
    QList<std::function<void()>> acts{[=] { QTest::mousePress(window, Qt::LeftButton, {}, at(0)); }};
    for (int step = 1; step <= stepsOfADrag; ++step)
        acts.append([=] { QTest::mouseMove(window, at(step)); });
    acts.append([=] { QTest::mouseRelease(window, Qt::LeftButton, {}, at(stepsOfADrag)); });
    perform(acts);
}

void Hand::pressKey(Qt::Key key)
{
    perform({[this, key] { QTest::keyClick(m_window.windowHandle(), key); }});
}

void Hand::perform(const QList<std::function<void()>> &acts)
{
    QEventLoop loop;
    for (qsizetype i = 0; i < acts.size(); ++i)
        QTimer::singleShot(int(i) * pauseInMilliseconds, &loop, acts.at(i));
    QTimer::singleShot(int(acts.size()) * pauseInMilliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

QPoint Hand::inWindow(const QWidget &widget, const QPoint &position) const
{
    return widget.mapTo(&m_window, position);
}
