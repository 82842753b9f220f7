// SPDX-License-Identifier: MIT
#include "MediaPage.h"

#include "common/Icons.h"

#include <KXFoundation/CustomComponent/PNProgressIndicator.h>
#include <KXFoundation/CustomComponent/PNProgressSlider.h>

using namespace Qt::StringLiterals;

namespace {

const QSize barSize(300, 36);

PNProgressIndicator *bar(double played = 40, double preloaded = 70)
{
    auto *bar = new PNProgressIndicator(QRectF(QPointF(), barSize));
    bar->setNormalHeight(32);
    bar->setHoverHeight(36);
    bar->setMaxValue(100);
    bar->setPlayedValue(played);
    bar->setPreloadValue(preloaded);
    return bar;
}

PNProgressIndicator *starBar()
{
    PNProgressIndicator *stars = bar();
    stars->switch2StarMode({10, 35, 80}, {20, 55, 95});
    return stars;
}

PNProgressSlider *slider(double progress)
{
    auto *slider = new PNProgressSlider;
    slider->setMaxValue(100);
    slider->setKnobImage(icons::disc(30, Qt::white));
    slider->setProgressValue(progress);
    return slider;
}

} // namespace

MediaPage::MediaPage()
{
    addPNProgressIndicators();
    addPNProgressSliders();
}

void MediaPage::addPNProgressIndicators()
{
    beginFamily(u"PNProgressIndicator"_s, 3);
    // Presses count where the bar is at (0, 0) of a view of its own.
    const auto addBar = [this](const QString &name, PNProgressIndicator *bar,
                            const std::function<void()> &enter = {}) -> State & {
        auto *holder = new kx::View;
        holder->addSubview(*bar);
        return add(name, holder, barSize, enter);
    };
    const auto enterAt = [](PNProgressIndicator *bar, double x) {
        return [bar, x] {
            const kx::Event press = pressAt(*bar, {x, 15});
            kx::Event entered(kx::EventType::MouseEntered, press.window(), press.screenLocation());
            bar->mouseEntered(&entered);
        };
    };
    PNProgressIndicator *stopped = bar(0, 0);
    stopped->setMaxValue(0);
    addBar(u"stopped"_s, stopped);
    PNProgressIndicator *endless = bar(5, 0);
    endless->setMaxValue(0);
    addBar(u"without a range"_s, endless);
    addBar(u"at the start"_s, bar(0, 0));
    addBar(u"played"_s, bar(40, 0));
    addBar(u"played and preloaded"_s, bar());
    addBar(u"at the end"_s, bar(100, 100));
    PNProgressIndicator *next = bar();
    addBar(u"hovered"_s, next, enterAt(next, 120));
    next = bar();
    addBar(u"dragged"_s, next, [next, enter = enterAt(next, 220)] {
        enter();
        kx::Event press = pressAt(*next, {220, 15});
        next->mouseDown(&press);
    });
    next = bar();
    next->setTags({0, 25, 50, 75, 100});
    addBar(u"ticks"_s, next);
    next = bar();
    next->setRounded(true);
    addBar(u"rounded"_s, next);
    next = bar();
    next->setRounded(true);
    addBar(u"rounded hovered"_s, next, enterAt(next, 120));
    next = bar(0.5, 2);
    next->setRounded(true);
    addBar(u"rounded near the start"_s, next, enterAt(next, 120));
    addBar(u"stars"_s, starBar());
    next = starBar();
    next->setRounded(true);
    addBar(u"stars rounded"_s, next);
    next = starBar();
    addBar(u"stars hovered"_s, next, enterAt(next, 120));
    next = bar();
    next->setHorizontalPadding(20);
    addBar(u"padding"_s, next);
    next = bar(100, 100);
    next->setHorizontalPadding(20);
    addBar(u"padding at the end"_s, next, enterAt(next, 120));
    next = bar();
    next->setPlayedStartColor(QColor(80, 200, 120));
    next->setPlayedEndColor(QColor(60, 120, 255));
    next->setPreloadColor(QColor(200, 200, 120, 160));
    addBar(u"own colours"_s, next);
    next = bar();
    addBar(u"reached by Tab"_s, next, reaching(next));
    next = bar();
    next->setUnLoadColor(Qt::blue);
    addBar(u"track colour given"_s, next).looksLike = u"played and preloaded"_s;
}

void MediaPage::addPNProgressSliders()
{
    beginFamily(u"PNProgressSlider"_s, 4);
    const auto addSlider = [this](const QString &name, PNProgressSlider *slider,
                               const std::function<void()> &enter = {}) -> State & {
        return add(name, slider, slider->useVertical() ? QSize(20, 120) : QSize(200, 20), enter);
    };
    const auto pressing = [](PNProgressSlider *slider, const QPointF &point) {
        return [slider, point] {
            kx::Event press = pressAt(*slider, point);
            slider->mouseDown(&press);
        };
    };
    addSlider(u"at the start"_s, slider(0));
    addSlider(u"in the middle"_s, slider(0.5));
    addSlider(u"at the end"_s, slider(1));
    PNProgressSlider *next = slider(0.3);
    addSlider(u"dragged"_s, next, pressing(next, {120, 10}));
    next = slider(1);
    addSlider(u"dragged to the end"_s, next, pressing(next, {195, 10}));
    next = slider(0.5);
    next->setHoverknobImage(icons::disc(30, QColor(255, 200, 60)));
    addSlider(u"hovered"_s, next, [next] { next->mouseEntered(nullptr); });
    next = slider(0.5);
    next->setSegementCount(4);
    addSlider(u"segments"_s, next);
    next = slider(0.75);
    next->setSegementCount(8);
    next->setSegementColor(Qt::black);
    addSlider(u"segments own colour"_s, next);
    next = slider(0.5);
    next->setMainColor(QColor(60, 120, 255));
    addSlider(u"own colour"_s, next);
    next = slider(0.5);
    next->setBgColor(Qt::blue);
    addSlider(u"track colour given"_s, next).looksLike = u"in the middle"_s;
    next = slider(0.5);
    addSlider(u"reached by Tab"_s, next, reaching(next));
    next = slider(0.5);
    next->setKnobImage(nullptr);
    addSlider(u"without a knob"_s, next);
    next = slider(0.6);
    next->setUseVertical(true);
    addSlider(u"vertical"_s, next);
    next = slider(0.6);
    next->setUseVertical(true);
    addSlider(u"vertical reached by Tab"_s, next, reaching(next));
    next = slider(0.2);
    next->setUseVertical(true);
    addSlider(u"vertical dragged"_s, next, pressing(next, {10, 40}));
}
