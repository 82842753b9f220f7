// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/KXImageView.h>

#include <KXFoundation/Platform/UI/Cursor.h>
#include <KXFoundation/Platform/UI/View.h>
#include <KXFoundation/Platform/UI/Window.h>

#include <Support/LoggingWindow.h>
#include <Support/Pointer.h>
#include <Support/ReceivedEvents.h>
#include <Support/TestImages.h>

#include <QtGui/QPainter>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QDialog>
#include <QtWidgets/QHBoxLayout>

using namespace Qt::StringLiterals;

using kx::test::colorAt;

class KXImageViewTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup() { m_window.reset(); }

    void hasItsDefaults();
    void asksForALayoutOnlyForAnImageOfAnotherSize();
    void showsItsImageScaledDown();
    void showsItsImageOnWholePixels();
    void clicksAtThePress();
    void swallowsThePress();
    void reportsHovers();
    void reportsNothingInAWindowThatIgnoresTheMouse();
    void changesNothingUnderAModalWindow();
    void changesNothingInAModalWindowOfItsOwn();
    void isNotHitWithoutInteraction();
    void mayMoveTheWindowOnlyWithoutInteraction();
    void aDragOnItMovesTheWindowOnlyWithoutInteraction();
    void keepsItsTrackingAreaUntilTheNextUpdate();
    void setsTheCursor();
    void mayBeDeletedByItsClick();
    void hasPropertiesForForms();

private:
    std::unique_ptr<QWidget> m_window;
    QPointer<KXImageView> m_view;
    QList<bool> m_hovers;
};

void KXImageViewTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    m_hovers.clear();
    m_window = std::make_unique<QWidget>();
    m_window->resize(200, 100);
    m_view = new KXImageView(m_window.get());
    m_view->setGeometry(20, 20, 60, 40);
    m_view->setHoverStateListener([this](bool hovered) { m_hovers << hovered; });
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void KXImageViewTest::hasItsDefaults()
{
    KXImageView view(QRectF(1, 2, 30, 40));
    QCOMPARE(view.size(), QSize(30, 40));
    QVERIFY(view.userInteraction());
    QVERIFY(!view.needIBeamCursor());
    QVERIFY(!view.image());
    QVERIFY(!view.imageViewClick());
    view.setUserInteraction(false);
    view.awakeFromNib();
    QVERIFY(view.userInteraction());
}

void KXImageViewTest::showsItsImageScaledDown()
{
    QImage image(120, 40, QImage::Format_RGB32);
    image.fill(Qt::red);
    m_view->setImage(image);
    QCOMPARE(m_view->intrinsicContentSize(), QSizeF(120, 40));
    const QImage shown = m_view->grab().toImage(); // 60 x 20 in the middle
    QCOMPARE(colorAt(shown, 1.5, 20.5), QColor(Qt::red));
    QCOMPARE(colorAt(shown, 58.5, 11.5), QColor(Qt::red));
    QVERIFY(colorAt(shown, 30.5, 8.5) != QColor(Qt::red));
    QVERIFY(colorAt(shown, 30.5, 31.5) != QColor(Qt::red));
}

void KXImageViewTest::showsItsImageOnWholePixels()
{
    // The middle of the view is between the pixels of an odd image.
    m_view->setImage(kx::Image::imageWithSize(QSizeF(21, 11), false, [](QPainter &painter, const QRectF &rect) {
        painter.fillRect(rect, Qt::red);
        return true;
    }));
    const QImage shown = m_view->grab().toImage();
    const double ratio = shown.devicePixelRatio();
    QCOMPARE(kx::test::countPixels(shown, Qt::red), static_cast<int>(21 * ratio) * static_cast<int>(11 * ratio));
    QCOMPARE(colorAt(shown, 20.5, 15.5), QColor(Qt::red));
    QVERIFY(colorAt(shown, 19, 20.5) != QColor(Qt::red));
    QVERIFY(colorAt(shown, 41.5, 20.5) != QColor(Qt::red));
}

void KXImageViewTest::clicksAtThePress()
{
    int clicks = 0;
    m_view->setImageViewClick([&] { ++clicks; });
    QSignalSpy signal(m_view, &KXImageView::clicked);
    Pointer pointer(*m_view);
    pointer.moveTo({10, 10});
    pointer.press();
    QCOMPARE(clicks, 1);
    pointer.release();
    QCOMPARE(clicks, 1);
    QCOMPARE(signal.count(), 1);
    m_view->setEnabled(false); // does not matter
    pointer.click({10, 10});
    QCOMPARE(clicks, 2);
}

void KXImageViewTest::swallowsThePress()
{
    auto *parent = new LoggingWidget(m_window.get());
    parent->resize(200, 100);
    auto *view = new KXImageView(parent);
    view->setGeometry(0, 0, 60, 40);
    parent->show();
    Pointer pointer(*view);
    pointer.moveTo({10, 10});
    pointer.press();
    QCOMPARE(parent->clicks(), QList<QEvent::Type>());
    pointer.release();
}

void KXImageViewTest::reportsHovers()
{
    QSignalSpy signal(m_view, &KXImageView::hoverStateChanged);
    Pointer pointer(*m_view);
    pointer.moveTo({10, 10});
    QTRY_COMPARE(m_hovers, QList<bool>{true});
    pointer.moveTo({100, 10});
    QTRY_COMPARE(m_hovers, (QList<bool>{true, false}));
    m_view->mouseEntered(nullptr);
    m_view->updateTrackingAreas(); // a lost hover is reported
    QCOMPARE(m_hovers, (QList<bool>{true, false, true, false}));
    QCOMPARE(signal.count(), 4);
}

void KXImageViewTest::reportsNothingInAWindowThatIgnoresTheMouse()
{
    m_window->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_view->mouseEntered(nullptr);
    m_view->mouseExited(nullptr);
    QVERIFY(m_hovers.isEmpty());

    m_view->mouseEntered(nullptr); // the hover is there all the same
    m_window->setAttribute(Qt::WA_TransparentForMouseEvents, false);
    m_view->updateTrackingAreas();
    QCOMPARE(m_hovers, QList<bool>{false});
}

void KXImageViewTest::changesNothingUnderAModalWindow()
{
    QDialog dialog;
    dialog.setModal(true);
    dialog.show();
    m_view->mouseEntered(nullptr);
    QVERIFY(m_hovers.isEmpty());
    dialog.hide();
    m_view->mouseEntered(nullptr);
    dialog.show();
    m_view->mouseExited(nullptr);
    QCOMPARE(m_hovers, QList<bool>{true});
}

// Deliberate: it does not matter whose modal window it is.
void KXImageViewTest::changesNothingInAModalWindowOfItsOwn()
{
    QDialog dialog;
    dialog.setModal(true);
    dialog.resize(200, 100);
    KXImageView view(&dialog);
    view.setGeometry(20, 20, 60, 40);
    view.setHoverStateListener([this](bool hovered) { m_hovers << hovered; });
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    Pointer pointer(view);
    pointer.moveTo({100, 10});
    pointer.moveTo({10, 10});
    QTRY_COMPARE(kx::Cursor::current().shape(), Qt::PointingHandCursor);
    view.mouseExited(nullptr);
    QCOMPARE(kx::Cursor::current().shape(), Qt::PointingHandCursor);
    QVERIFY(m_hovers.isEmpty());
}

void KXImageViewTest::isNotHitWithoutInteraction()
{
    const QPointF middle = m_view->frame().center();
    kx::ViewInterface *const view = m_view;
    QCOMPARE(m_view->hitTest(middle), view);
    m_view->hide();
    QVERIFY(!m_view->hitTest(middle));
    m_view->show();
    m_view->setUserInteraction(false);
    QVERIFY(!m_view->hitTest(middle));
    QSignalSpy clicked(m_view, &KXImageView::clicked);
    Pointer(*m_view).click({10, 10});
    QCOMPARE(clicked.count(), 0);
}

void KXImageViewTest::mayMoveTheWindowOnlyWithoutInteraction()
{
    QVERIFY(!m_view->mouseDownCanMoveWindow());
    m_view->setUserInteraction(false);
    QVERIFY(m_view->mouseDownCanMoveWindow());
    m_view->setUserInteraction(true);
    m_view->hide();
    QVERIFY(m_view->mouseDownCanMoveWindow());
}

void KXImageViewTest::aDragOnItMovesTheWindowOnlyWithoutInteraction()
{
    kx::Window window(QRectF(200, 200, 200, 100), kx::WindowStyle::Borderless);
    window.setMovableByWindowBackground(true);
    window.setCentralWidget(new kx::View);
    auto *view = new KXImageView(window.centralWidget());
    view->setGeometry(20, 20, 60, 40);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const auto dragged = [&] {
        const QPointF before = window.frame().topLeft();
        Pointer pointer(*view);
        pointer.queue();
        pointer.drag({10, 10}, {60, 10}, 2);
        pointer.deliver();
        return window.frame().topLeft() - before;
    };
    QSignalSpy clicked(view, &KXImageView::clicked);
    QCOMPARE(dragged(), QPointF(0, 0));
    QCOMPARE(clicked.count(), 1);
    view->setUserInteraction(false);
    QCOMPARE(dragged(), QPointF(50, 0));
    QCOMPARE(clicked.count(), 1);
}

void KXImageViewTest::keepsItsTrackingAreaUntilTheNextUpdate()
{
    QCOMPARE(m_view->trackingAreas().size(), 1);
    QCOMPARE(m_view->trackingAreas().first()->options().toInt(), 0x347);
    m_view->setUserInteraction(false);
    QCOMPARE(m_view->trackingAreas().size(), 1);
    m_view->updateTrackingAreas();
    QVERIFY(m_view->trackingAreas().isEmpty());
    m_view->setUserInteraction(true);
    m_view->setEnabled(false);
    m_view->updateTrackingAreas();
    QVERIFY(m_view->trackingAreas().isEmpty());
}

void KXImageViewTest::setsTheCursor()
{
    Pointer pointer(*m_view);
    pointer.moveTo({10, 10});
    QTRY_COMPARE(kx::Cursor::current().shape(), Qt::PointingHandCursor);
    pointer.moveTo({100, 10});
    QTRY_COMPARE(kx::Cursor::current().shape(), Qt::ArrowCursor);
    m_view->setNeedIBeamCursor(true);
    pointer.moveTo({10, 10});
    QTRY_COMPARE(kx::Cursor::current().shape(), Qt::IBeamCursor);

    m_view->mouseExited(nullptr); // sets one of its own
    QCOMPARE(kx::Cursor::current().shape(), Qt::ArrowCursor);
    m_window->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_view->cursorUpdate(nullptr);
    QCOMPARE(kx::Cursor::current().shape(), Qt::ArrowCursor);
}

void KXImageViewTest::mayBeDeletedByItsClick()
{
    m_view->setImageViewClick([this] { delete m_view.data(); });
    Pointer(*m_view).click({10, 10});
    QVERIFY(!m_view);
}

void KXImageViewTest::hasPropertiesForForms()
{
    QSignalSpy interaction(m_view, &KXImageView::userInteractionChanged);
    QSignalSpy beam(m_view, &KXImageView::needIBeamCursorChanged);
    for (int i = 0; i < 2; ++i) {
        QVERIFY(m_view->setProperty("userInteraction", false));
        QVERIFY(m_view->setProperty("needIBeamCursor", true));
    }
    QCOMPARE(interaction.count(), 1);
    QCOMPARE(beam.count(), 1);
    m_view->awakeFromNib();
    QCOMPARE(interaction.count(), 2);
    QPixmap pixmap(20, 20);
    pixmap.fill(Qt::yellow);
    QVERIFY(m_view->setProperty("image", QIcon(pixmap)));
    QCOMPARE(m_view->image().size(), QSizeF(20, 20));
    QCOMPARE(m_view->property("image").value<QIcon>().pixmap(20, 20).toImage().pixelColor(1, 1), QColor(Qt::yellow));
    QVERIFY(m_view->setProperty("image", QIcon()));
    QVERIFY(!m_view->image());
}

void KXImageViewTest::asksForALayoutOnlyForAnImageOfAnotherSize()
{
    QWidget row(m_window.get());
    auto *const layout = new QHBoxLayout(&row);
    auto *const view = new KXImageView;
    layout->addWidget(view);
    row.show();
    view->setImage(kx::test::sampleImage(20, 20));
    ReceivedEvents requests(row, QEvent::LayoutRequest);
    (void)requests.taken();
    view->setImage(kx::test::sampleImage(40, 40, 2));
    QCOMPARE(requests.taken(), 0);
    view->setImage(kx::test::sampleImage(40, 40));
    QCOMPARE(requests.taken(), 1);
    view->setImage(nullptr);
    QCOMPARE(requests.taken(), 1);
}

QTEST_MAIN(KXImageViewTest)
#include "KXImageViewTest.moc"
