// SPDX-License-Identifier: MIT
// What the bar keeps from one painting to the next must never show.
#include <KXFoundation/CustomComponent/PNProgressIndicator.h>

#include <KXFoundation/Platform/UI/Image.h>

#include <Support/Pointer.h>

#include <QtGui/QBackingStore>
#include <QtGui/QPainter>
#include <QtTest/QTest>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

using Change = std::function<void(PNProgressIndicator &)>;

QImage knob(const QColor &color)
{
    QImage image(24, 24, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(color);
    painter.drawEllipse(2, 2, 20, 20);
    return image;
}

void setKnobs(const QColor &plain, const QColor &hovered)
{
    kx::Image::setNamed(u"indicator"_s, knob(plain));
    kx::Image::setNamed(u"indicator_hover"_s, knob(hovered));
}

// 300 x 40, the bar 4 thick; half of 0 to 100 played.
std::unique_ptr<PNProgressIndicator> bar()
{
    auto bar = std::make_unique<PNProgressIndicator>(QRectF(0, 0, 300, 40));
    bar->setNormalHeight(32);
    bar->setHoverHeight(40);
    bar->setMaxValue(100);
    bar->setPlayedValue(50);
    bar->setPreloadValue(75);
    bar->setTags({10, 60, 90});
    return bar;
}

QImage picture(QWidget &widget, double ratio = 1)
{
    QImage image((QSizeF(widget.size()) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(QColor(30, 40, 50));
    widget.render(&image, {}, {}, {});
    return image;
}

} // namespace

class PNProgressIndicatorRepaintTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();

    void showsEveryChangeAtOnce_data();
    void showsEveryChangeAtOnce();
    void asksForARepaintAsStated();
    void followsTheNamedImages();
    void paintsAKnobWithAHandlerEachTime();
    void isSharpAtEveryRatio_data();
    void isSharpAtEveryRatio();
    void looksTheSameOnAPainterThatTurnsIt_data();
    void looksTheSameOnAPainterThatTurnsIt();
    void repaintsOnTheScreenWhatHasChanged_data();
    void repaintsOnTheScreenWhatHasChanged();
    void showsOnTheScreenWhatAFreshOneWould();
};

void PNProgressIndicatorRepaintTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    setKnobs(Qt::white, Qt::yellow);
}

void PNProgressIndicatorRepaintTest::cleanup()
{
    kx::Image::setNamed(u"indicator"_s, nullptr);
    kx::Image::setNamed(u"indicator_hover"_s, nullptr);
}

void PNProgressIndicatorRepaintTest::showsEveryChangeAtOnce_data()
{
    QTest::addColumn<Change>("before");
    QTest::addColumn<Change>("change");
    const Change nothing = [](PNProgressIndicator &) {};
    const auto row = [&](const char *name, const Change &change, const Change &before) {
        QTest::newRow(name) << before << change;
    };
    const Change stars = [](PNProgressIndicator &b) { b.switch2StarMode({20, 70}, {30, 80}); };
    const Change rounded = [](PNProgressIndicator &b) { b.setRounded(true); };
    row(
        "played", [](PNProgressIndicator &b) { b.setPlayedValue(51); }, nothing);
    row(
        "played, by half a pixel", [](PNProgressIndicator &b) { b.setPlayedValue(50.2); }, nothing);
    row(
        "played, rounded", [](PNProgressIndicator &b) { b.setPlayedValue(30); }, rounded);
    row(
        "played past the preloaded part", [](PNProgressIndicator &b) { b.setPlayedValue(80); }, nothing);
    row(
        "preloaded", [](PNProgressIndicator &b) { b.setPreloadValue(95); }, nothing);
    row(
        "smallest value", [](PNProgressIndicator &b) { b.setMinValue(-50); }, nothing);
    row(
        "largest value", [](PNProgressIndicator &b) { b.setMaxValue(150); }, nothing);
    row(
        "largest value in star mode", [](PNProgressIndicator &b) { b.setMaxValue(150); }, stars);
    row(
        "no range", [](PNProgressIndicator &b) { b.setMaxValue(0); }, nothing);
    row(
        "ticks",
        [](PNProgressIndicator &b) {
            b.setTags({10, 61, 90});
        },
        nothing);
    row(
        "one tick more", [](PNProgressIndicator &b) { b.setTags(b.tags() << 95); }, nothing);
    row(
        "no ticks", [](PNProgressIndicator &b) { b.setTags({}); }, nothing);
    row(
        "first ticks", [](PNProgressIndicator &b) { b.setTags({40}); }, [](PNProgressIndicator &b) { b.setTags({}); });
    row("star mode", stars, nothing);
    row(
        "other starts",
        [](PNProgressIndicator &b) {
            b.switch2StarMode({25, 70}, {30, 80});
        },
        stars);
    row(
        "other ends",
        [](PNProgressIndicator &b) {
            b.switch2StarMode({20, 70}, {40, 80});
        },
        stars);
    row(
        "played in star mode", [](PNProgressIndicator &b) { b.setPlayedValue(10); }, stars);
    row(
        "back to normal", [](PNProgressIndicator &b) { b.reset2NormalMode(); }, stars);
    row(
        "colour of the clips", [](PNProgressIndicator &b) { b.setStarClipsColor(Qt::cyan); }, stars);
    row(
        "no colour of the clips", [](PNProgressIndicator &b) { b.setStarClipsColor(nullptr); }, stars);
    row(
        "colour at the start", [](PNProgressIndicator &b) { b.setPlayedStartColor(Qt::cyan); }, nothing);
    row(
        "colour at the end", [](PNProgressIndicator &b) { b.setPlayedEndColor(Qt::cyan); }, nothing);
    row(
        "colour at the end, rounded", [](PNProgressIndicator &b) { b.setPlayedEndColor(Qt::cyan); }, rounded);
    row(
        "translucent at the end", [](PNProgressIndicator &b) { b.setPlayedEndColor(kx::Color::white(1, 0.5)); },
        nothing);
    row(
        "no colour at the end", [](PNProgressIndicator &b) { b.setPlayedEndColor(nullptr); }, nothing);
    row(
        "colour of the preloaded part", [](PNProgressIndicator &b) { b.setPreloadColor(Qt::cyan); }, nothing);
    row("rounded", rounded, nothing);
    row("rounded stars", rounded, stars);
    row(
        "no more rounded", [](PNProgressIndicator &b) { b.setRounded(false); }, rounded);
    row(
        "padding", [](PNProgressIndicator &b) { b.setHorizontalPadding(12); }, nothing);
    row(
        "padding in star mode", [](PNProgressIndicator &b) { b.setHorizontalPadding(12); }, stars);
    row(
        "height", [](PNProgressIndicator &b) { b.setNormalHeight(36); }, nothing);
    row(
        "as hovered", [](PNProgressIndicator &b) { b.updateDrawHeight(40); }, nothing);
    row(
        "hover height", [](PNProgressIndicator &b) { b.setHoverHeight(32); }, nothing);
    row(
        "wider",
        [](PNProgressIndicator &b) {
            b.setFrame({0, 0, 330, 40});
        },
        nothing);
    row(
        "wider in star mode",
        [](PNProgressIndicator &b) {
            b.setFrame({0, 0, 330, 40});
        },
        stars);
    row(
        "higher",
        [](PNProgressIndicator &b) {
            b.setFrame({0, 0, 300, 50});
        },
        nothing);
    row(
        "lower than the bar",
        [](PNProgressIndicator &b) {
            b.setFrame({0, 0, 300, 14});
        },
        nothing);
    row(
        "stopped",
        [](PNProgressIndicator &b) {
            b.setPlayedValue(0);
            b.setMaxValue(0);
        },
        nothing);
}

void PNProgressIndicatorRepaintTest::showsEveryChangeAtOnce()
{
    QFETCH(Change, before);
    QFETCH(Change, change);
    for (const double ratio : {1.0, 1.5, 2.0}) {
        const auto changed = bar();
        before(*changed);
        const QImage old = picture(*changed, ratio);
        QCOMPARE(picture(*changed, ratio), old); // from what is kept
        change(*changed);
        const QImage now = picture(*changed, ratio);

        const auto fresh = bar();
        before(*fresh);
        change(*fresh);
        QCOMPARE(now, picture(*fresh, ratio));
        QVERIFY(now != old);
    }
}

void PNProgressIndicatorRepaintTest::asksForARepaintAsStated()
{
    class Painted : public PNProgressIndicator {
    public:
        using PNProgressIndicator::PNProgressIndicator;
        int count = 0;

    protected:
        void drawRect(QPainter &painter, const QRectF &dirtyRect) override
        {
            ++count;
            PNProgressIndicator::drawRect(painter, dirtyRect);
        }
    };
    Painted b(QRectF(0, 0, 300, 40));
    b.show();
    QVERIFY(QTest::qWaitForWindowExposed(&b));
    QTRY_VERIFY(b.count > 0);
    const auto paints = [&](const std::function<void()> &change) {
        QCoreApplication::processEvents();
        const int before = b.count;
        change();
        QCoreApplication::processEvents();
        return b.count > before;
    };
    const kx::Color red = Qt::red;
    const QList<std::function<void()>> changes{
        [&] { b.setMaxValue(10); },
        [&] { b.setMinValue(-10); },
        [&] { b.setPreloadValue(5); },
        [&] { b.setPlayedValue(2); },
        [&] { b.setPlayedStartColor(red); },
        [&] { b.setPlayedEndColor(red); },
        [&] { b.setPreloadColor(red); },
        [&] { b.setRounded(true); },
        [&] { b.setHorizontalPadding(4); },
    };
    for (qsizetype i = 0; i < changes.size(); ++i) {
        QVERIFY2(paints(changes.at(i)), qPrintable(QString::number(i)));
        QVERIFY2(!paints(changes.at(i)), qPrintable(QString::number(i))); // nothing new
    }
    QVERIFY(paints([&] { b.setPreloadColor(Qt::red); })); // another object
    QVERIFY(paints([&] { b.setUnLoadColor(red); }));
    QVERIFY(!paints([&] { b.setUnLoadColor(b.unLoadColor()); }));
    for (int i = 0; i < 2; ++i) {
        QVERIFY(paints([&] { b.setHoverHeight(50); }));
        QVERIFY(paints([&] { b.setNormalHeight(40); }));
        QVERIFY(paints([&] { b.updateDrawHeight(45); }));
        QVERIFY(paints([&] { b.switch2StarMode({1}, {2}); }));
        QVERIFY(paints([&] { b.reset2NormalMode(); }));
    }
    QVERIFY(!paints([&] {
        b.setTags({3});
        b.setTag(3);
        b.setStopColor(red);
        b.setStarClipsColor(red);
        b.setStarClipEndingAdvance(3);
        b.setUserInteraction(false);
    }));
}

void PNProgressIndicatorRepaintTest::followsTheNamedImages()
{
    const auto changed = bar();
    const QImage white = picture(*changed);
    setKnobs(Qt::blue, Qt::green);
    const QImage blue = picture(*changed);
    QVERIFY(blue != white);
    QCOMPARE(blue, picture(*bar()));
    changed->updateDrawHeight(40);
    const auto hovered = bar();
    hovered->updateDrawHeight(40);
    QCOMPARE(picture(*changed), picture(*hovered));
    QVERIFY(picture(*changed).pixelColor(149, 18) == QColor(Qt::green));
}

void PNProgressIndicatorRepaintTest::paintsAKnobWithAHandlerEachTime()
{
    QColor color = Qt::blue;
    kx::Image::setNamed(
        u"indicator"_s, kx::Image::imageWithSize({32, 32}, false, [&color](QPainter &painter, const QRectF &rect) {
            painter.fillRect(rect, color);
            return true;
        }));
    const auto shown = bar();
    const QPoint onKnob(150, 30);
    QCOMPARE(picture(*shown).pixelColor(onKnob), QColor(Qt::blue));
    color = Qt::green;
    QCOMPARE(picture(*shown).pixelColor(onKnob), QColor(Qt::green));
}

void PNProgressIndicatorRepaintTest::isSharpAtEveryRatio_data()
{
    QTest::addColumn<double>("ratio");
    for (const double ratio : {1.0, 1.5, 2.0, 3.0})
        QTest::addRow("%g", ratio) << ratio;
}

// An image with as many pixels as the device is shown as it is, pixel by pixel.
void PNProgressIndicatorRepaintTest::isSharpAtEveryRatio()
{
    QFETCH(double, ratio);
    const int side = int(32 * ratio);
    QImage stripes(side, side, QImage::Format_RGB32);
    for (int x = 0; x < side; ++x) {
        for (int y = 0; y < side; ++y)
            stripes.setPixelColor(x, y, x % 2 ? Qt::white : Qt::black);
    }
    stripes.setDevicePixelRatio(ratio);
    kx::Image::setNamed(u"indicator"_s, stripes);
    const auto shown = bar();
    for (const double value : {0.0, 33.3, 50.0, 71.9}) {
        shown->setPlayedValue(value);
        const QImage image = picture(*shown, ratio);
        const double left = 7 + value / 100 * 286 - 16;
        const int column = qRound(left * ratio);
        const int row = int(20 * ratio);
        for (int x = std::max(column, 0) + 1; x < column + side; ++x)
            QVERIFY2(image.pixelColor(x, row) == stripes.pixelColor(x - column, 0),
                qPrintable(u"%1 at %2"_s.arg(x).arg(value)));
    }
}

void PNProgressIndicatorRepaintTest::looksTheSameOnAPainterThatTurnsIt_data()
{
    QTest::addColumn<Change>("change");
    QTest::newRow("played") << Change([](PNProgressIndicator &) {});
    QTest::newRow("stars") << Change([](PNProgressIndicator &b) { b.switch2StarMode({20, 70}, {30, 80}); });
    QTest::newRow("translucent") << Change(
        [](PNProgressIndicator &b) { b.setPlayedStartColor(kx::Color::white(1, 0.5)); });
    QTest::newRow("stopped") << Change([](PNProgressIndicator &b) {
        b.setPlayedValue(0);
        b.setMaxValue(0);
    });
}

// There, nothing is copied from what is kept.
void PNProgressIndicatorRepaintTest::looksTheSameOnAPainterThatTurnsIt()
{
    QFETCH(Change, change);
    const auto shown = bar();
    change(*shown);
    const QImage upright = picture(*shown);
    QImage turned(40, 300, QImage::Format_ARGB32_Premultiplied);
    turned.fill(QColor(30, 40, 50));
    QPainter painter(&turned);
    painter.translate(40, 0);
    painter.rotate(90);
    shown->render(&painter, {}, {}, {});
    painter.end();
    for (int x = 0; x < 300; ++x) {
        const QColor a = upright.pixelColor(x, 27);
        const QColor b = turned.pixelColor(39 - 27, x);
        QVERIFY2(qAbs(a.red() - b.red()) <= 2 && qAbs(a.green() - b.green()) <= 2 && qAbs(a.blue() - b.blue()) <= 2,
            qPrintable(u"%1: %2 %3"_s.arg(x).arg(a.name(), b.name())));
    }
}

namespace {

/// A bar in a window, and what the window's surface shows of it: nothing is painted to find out.
struct Shown {
    QWidget window;
    kx::View *holder = new kx::View(&window);
    PNProgressIndicator *shown = bar().release();

    Shown()
    {
        window.resize(340, 60);
        holder->setGeometry(8, 4, 330, 50); // the bar is at (8, 14), a whole pixel at each ratio
        holder->addSubview(*shown);
        window.show();
    }
    [[nodiscard]] bool isExposed() { return QTest::qWaitForWindowExposed(&window); }
    [[nodiscard]] QImage onScreen()
    {
        QCoreApplication::processEvents();
        const auto *const surface = dynamic_cast<const QImage *>(window.backingStore()->paintDevice());
        if (!surface)
            return {};
        const double ratio = window.devicePixelRatio();
        const QRectF place(shown->mapTo(&window, QPoint(0, 0)) * ratio, shown->size() * ratio);
        return surface->copy(place.toRect()).convertToFormat(QImage::Format_RGB32);
    }
    [[nodiscard]] QImage afresh() { return shown->grab().toImage().convertToFormat(QImage::Format_RGB32); }
};

} // namespace

void PNProgressIndicatorRepaintTest::repaintsOnTheScreenWhatHasChanged_data()
{
    showsEveryChangeAtOnce_data();
    const Change nothing = [](PNProgressIndicator &) {};
    QTest::newRow("no more stopped") << Change([](PNProgressIndicator &b) {
        b.setPlayedValue(0);
        b.setMaxValue(0);
    }) << Change([](PNProgressIndicator &b) { b.setPlayedValue(5); });
    QTest::newRow("played is no number") << nothing
                                         << Change([](PNProgressIndicator &b) { b.setPlayedValue(qQNaN()); });
}

void PNProgressIndicatorRepaintTest::repaintsOnTheScreenWhatHasChanged()
{
    QFETCH(Change, before);
    QFETCH(Change, change);
    Shown shown;
    QVERIFY(shown.isExposed());
    before(*shown.shown);
    shown.shown->update();
    QTRY_COMPARE(shown.onScreen(), shown.afresh());
    const QImage old = shown.onScreen();
    const bool asksForARepaint = !QByteArray(QTest::currentDataTag()).contains("tick")
        && !QByteArray(QTest::currentDataTag()).contains("colour of the clips");
    change(*shown.shown);
    if (asksForARepaint)
        QCOMPARE(shown.onScreen(), shown.afresh());
    else
        QCOMPARE(shown.onScreen(), old);
    shown.shown->update();
    QCOMPARE(shown.onScreen(), shown.afresh());
}

void PNProgressIndicatorRepaintTest::showsOnTheScreenWhatAFreshOneWould()
{
    Shown shown;
    QVERIFY(shown.isExposed());
    PNProgressIndicator &b = *shown.shown;
    quint32 state = 4711;
    const auto next = [&](quint32 count) {
        state = state * 1664525 + 1013904223;
        return (state >> 8) % count;
    };
    Pointer pointer(b);
    for (int i = 0; i < 400; ++i) {
        for (quint32 changes = 1 + next(3); changes > 0; --changes) {
            switch (next(12)) {
            case 0: b.setPreloadValue(next(110)); break;
            case 1: b.setRounded(next(2) == 0); break;
            case 2: b.switch2StarMode({double(next(50))}, {double(next(100))}); break;
            case 3: b.reset2NormalMode(); break;
            case 4: b.setMaxValue(next(4) * 50); break;
            case 5: pointer.moveTo({double(next(300)), double(next(40))}); break;
            case 6: pointer.buttons() ? pointer.release() : pointer.press(); break;
            case 7: static_cast<void>(b.grab()); break;
            case 8: b.setMinValue(next(3) * -20.0); break;
            default: b.setPlayedValue(next(1100) / 10.0); break;
            }
        }
        const QImage screen = shown.onScreen();
        QVERIFY2(screen == shown.afresh(), qPrintable(QString::number(i)));
    }
}

QTEST_MAIN(PNProgressIndicatorRepaintTest)
#include "PNProgressIndicatorRepaintTest.moc"
