// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/CustomComponent/KXImageView.h>
#include <KXFoundation/CustomComponent/PNAlphBtn.h>
#include <KXFoundation/CustomComponent/PNButton.h>
#include <KXFoundation/CustomComponent/PNProgressIndicator.h>
#include <KXFoundation/CustomComponent/PNProgressSlider.h>
#include <KXFoundation/CustomComponent/PNStandardWindowButtonView.h>
#include <KXFoundation/CustomComponent/PNTextColorButton.h>

#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtTest/QTest>

/// The library's controls, each with something to see that differs from its mirror image.
namespace kx::test {

/// 24 x 24, red at the left and blue at the right.
inline QImage twoColours()
{
    QImage image(24, 24, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::red);
    QPainter(&image).fillRect(QRect(12, 0, 12, 24), Qt::blue);
    return image;
}

struct Control {
    const char *name;
    QWidget *(*make)(QWidget &parent);
};

template <class Widget> Widget *placed(QWidget &parent, const QSize &size = {48, 40})
{
    auto *widget = new Widget(&parent);
    widget->setGeometry({QPoint(20, 20), size});
    return widget;
}

/// Those that Tab reaches.
inline QList<Control> everyFocusableControl()
{
    return {
        {"Button",
            [](QWidget &parent) -> QWidget * {
                auto *button = placed<Button>(parent, {90, 40});
                button->setImage(twoColours());
                button->setTitle(QStringLiteral("Play"));
                return button;
            }},
        {"StandardWindowButton",
            [](QWidget &parent) -> QWidget * {
                auto *button = standardWindowButton(WindowButton::Zoom, WindowStyle::Resizable).release();
                button->setParent(&parent);
                button->move(20, 20);
                return button;
            }},
        {"PNButton",
            [](QWidget &parent) -> QWidget * {
                auto *button = placed<PNButton>(parent);
                button->setNormalImage(twoColours());
                return button;
            }},
        {"PNAlphBtn",
            [](QWidget &parent) -> QWidget * {
                auto *button = placed<PNAlphBtn>(parent);
                button->setNormalImage(twoColours());
                return button;
            }},
        {"PNTextColorButton",
            [](QWidget &parent) -> QWidget * {
                auto *button = placed<PNTextColorButton>(parent, {90, 40});
                button->setNormalBackgroundColor(QColor(70, 74, 84));
                button->changeBtnTitle(QStringLiteral("Play"));
                return button;
            }},
        {"PNProgressIndicator",
            [](QWidget &parent) -> QWidget * {
                auto *bar = new PNProgressIndicator(QRectF(0, 0, 160, 40), &parent);
                bar->move(20, 20);
                bar->setMaxValue(100);
                bar->setPreloadValue(60);
                bar->setPlayedValue(30);
                return bar;
            }},
        {"PNProgressSlider",
            [](QWidget &parent) -> QWidget * {
                auto *slider = placed<PNProgressSlider>(parent, {160, 20});
                slider->setKnobImage(twoColours());
                slider->setMaxValue(100);
                slider->setProgressValue(0.3);
                return slider;
            }},
    };
}

inline QList<Control> everyControl()
{
    return everyFocusableControl()
        + QList<Control>{
            {"ImageView",
                [](QWidget &parent) -> QWidget * {
                    auto *view = placed<ImageView>(parent);
                    view->setImage(twoColours());
                    return view;
                }},
            {"KXImageView",
                [](QWidget &parent) -> QWidget * {
                    auto *view = placed<KXImageView>(parent);
                    view->setImage(twoColours());
                    return view;
                }},
            {"PNStandardWindowButtonView",
                [](QWidget &parent) -> QWidget * {
                    auto *group = new PNStandardWindowButtonView(&parent);
                    group->move(20, 20);
                    return group;
                }},
        };
}

/// Fills a table of tests with a row for each of these controls.
inline void addRows(const QList<Control> &controls)
{
    QTest::addColumn<Control>("control");
    for (const Control &control : controls)
        QTest::newRow(control.name) << control;
}

} // namespace kx::test
Q_DECLARE_METATYPE(kx::test::Control)
