// SPDX-License-Identifier: MIT
#include "Row.h"

#include <KXFoundation/CustomComponent/PNAlphBtn.h>
#include <KXFoundation/CustomComponent/PNButton.h>
#include <KXFoundation/CustomComponent/PNProgressIndicator.h>
#include <KXFoundation/CustomComponent/PNTextColorButton.h>

#include <QtCore/QCoreApplication>
#include <QtGui/QIcon>
#include <QtGui/QPainter>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSlider>
#include <QtWidgets/QToolButton>

#include <ctime>
#include <malloc.h>
#include <memory>

namespace {

using kx::bench::measured;
using kx::bench::timed;

QImage icon(const QColor &color)
{
    QImage image(24, 24, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(color);
    painter.drawEllipse(2, 2, 20, 20);
    return image;
}

// A full repaint, into a picture of the resolution of a screen.
void repaint(benchmark::State &state, QWidget &widget, double ratio)
{
    QImage image((QSizeF(widget.size()) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    while (state.KeepRunning())
        widget.render(&image, {}, {}, {});
}

void pixels(benchmark::State &state, const QSize &size)
{
    const QImage image(size, QImage::Format_ARGB32_Premultiplied);
    while (state.KeepRunning())
        benchmark::DoNotOptimize(image.copy().constBits());
}

constexpr QRectF barFrame(0, 0, 800, 32);

std::unique_ptr<PNProgressIndicator> bar()
{
    kx::Image::setNamed(QStringLiteral("indicator"), icon(Qt::white));
    kx::Image::setNamed(QStringLiteral("indicator_hover"), icon(Qt::white));
    auto bar = std::make_unique<PNProgressIndicator>(barFrame);
    bar->setMaxValue(1000);
    bar->setPlayedValue(400);
    bar->setPreloadValue(700);
    return bar;
}

std::unique_ptr<QSlider> slider()
{
    auto slider = std::make_unique<QSlider>(Qt::Horizontal);
    slider->resize(barFrame.size().toSize());
    slider->setMaximum(1000);
    slider->setValue(400);
    return slider;
}

auto barRepaint(double ratio)
{
    return [ratio](benchmark::State &state) { repaint(state, *bar(), ratio); };
}

auto sliderRepaint(double ratio)
{
    return [ratio](benchmark::State &state) { repaint(state, *slider(), ratio); };
}

// Moves the knob by one pixel at a time and lets the window repaint what that made stale.
template <class Widget, class Move> void moveKnob(benchmark::State &state, Widget &widget, Move move)
{
    widget.show();
    QCoreApplication::processEvents();
    int value = 0;
    while (state.KeepRunning()) {
        value = value < 999 ? value + 1 : 0;
        move(value);
        QCoreApplication::processEvents();
    }
}

void barKnob(benchmark::State &state)
{
    const auto widget = bar();
    moveKnob(state, *widget, [&](int value) { widget->setPlayedValue(value); });
}

void sliderKnob(benchmark::State &state)
{
    const auto widget = slider();
    moveKnob(state, *widget, [&](int value) { widget->setValue(value); });
}

// A full repaint of a thousand clips and ten thousand ticks after a change that moves all of them, in milliseconds.
double crowdedRepaint()
{
    const auto crowded = bar();
    QList<double> tags;
    QList<double> starts;
    QList<double> ends;
    for (int i = 0; i < 10000; ++i)
        tags << i * 0.1;
    for (int i = 0; i < 1000; ++i) {
        starts << i;
        ends << i + 0.6;
    }
    crowded->setTags(tags);
    crowded->switch2StarMode(starts, ends);
    QImage image(crowded->size(), QImage::Format_ARGB32_Premultiplied);
    crowded->render(&image, {}, {}, {});
    constexpr int count = 20;
    const std::clock_t start = std::clock();
    for (int i = 0; i < count; ++i) {
        crowded->setMaxValue(1001 + i);
        crowded->render(&image, {}, {}, {});
    }
    return double(std::clock() - start) * 1000 / CLOCKS_PER_SEC / count;
}

// Nothing else paints as many: what it has to keep within is the time from one frame to the next.
double frameAt60Hz()
{
    return 1000.0 / 60;
}

template <class Button> void kxButtonRepaint(benchmark::State &state)
{
    Button button(QRectF(0, 0, 40, 40));
    button.setNormalImage(icon(Qt::blue));
    repaint(state, button, 1);
}

void toolButtonRepaint(benchmark::State &state)
{
    QToolButton button;
    button.setAutoRaise(true);
    button.setIcon(QPixmap::fromImage(icon(Qt::blue)));
    button.setIconSize({24, 24});
    button.resize(40, 40);
    repaint(state, button, 1);
}

void textButtonRepaint(benchmark::State &state)
{
    PNTextColorButton button(QRectF(0, 0, 100, 30));
    button.changeBtnTitle(QStringLiteral("Play next"));
    repaint(state, button, 1);
}

void pushButtonRepaint(benchmark::State &state)
{
    QPushButton button(QStringLiteral("Play next"));
    button.setFlat(true);
    button.resize(100, 30);
    repaint(state, button, 1);
}

double heapKib()
{
    const struct mallinfo2 info = mallinfo2();
    return double(info.uordblks + info.hblkhd) / 1024;
}

// What a thousand of them keep on the heap.
template <class Make> double memoryOfThousand(Make make)
{
    QWidget parent;
    make(parent); // what the first one leaves behind for the others
    const double before = heapKib();
    for (int i = 0; i < 1000; ++i)
        make(parent);
    return heapKib() - before;
}

const kx::Image sharedIcon = icon(Qt::blue);

const bool registered = timed({"bar.repaint.1x", "us", 0.6}, barRepaint(1), sliderRepaint(1),
                            [](benchmark::State &state) {
                                pixels(state, {800, 32});
                            })
    && timed({"bar.repaint.2x", "us", 1.0}, barRepaint(2), sliderRepaint(2),
        [](benchmark::State &state) {
            pixels(state, {1600, 64});
        })
    && timed({"bar.knob", "us", 0.6, "old and new played part"}, barKnob, sliderKnob)
    && measured({"bar.crowded", "ms", 1.0, "11,000 fills"}, crowdedRepaint, frameAt60Hz)
    && timed({"button.image", "us", 1.0}, kxButtonRepaint<PNButton>, toolButtonRepaint,
        [](benchmark::State &state) {
            pixels(state, {40, 40});
        })
    && timed({"button.alpha", "us", 1.0}, kxButtonRepaint<PNAlphBtn>, toolButtonRepaint,
        [](benchmark::State &state) {
            pixels(state, {40, 40});
        })
    && timed({"button.text", "us", 1.0}, textButtonRepaint, pushButtonRepaint,
        [](benchmark::State &state) {
            pixels(state, {100, 30});
        })
    && measured(
        {"button.memory", "KiB", 1.5},
        [] { return memoryOfThousand([](QWidget &parent) { (new PNButton(&parent))->setNormalImage(sharedIcon); }); },
        [] {
            return memoryOfThousand([](QWidget &parent) {
                static const QIcon shared(QPixmap::fromImage(icon(Qt::blue)));
                (new QToolButton(&parent))->setIcon(shared);
            });
        });

} // namespace
