// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/KXImageView.h>

#include <KXFoundation/Platform/UI/Cursor.h>

#include <Support/Pointer.h>

#include <QtGui/QPainter>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QDialog>

using namespace Qt::StringLiterals;

class KXImageViewTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup() { m_window.reset(); }

    void hasItsDefaults();
    void showsItsImageScaledDown();
    void showsItsImageOnWholePixels();
    void clicksAtThePress();
    void reportsHovers();
    void reportsNothingInAWindowThatIgnoresTheMouse();
    void changesNothingUnderAModalWindow();
    void isNotHitWithoutInteraction();
    void mayMoveTheWindowOnlyWithoutInteraction();
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
    QCOMPARE(shown.pixelColor(1, 20), QColor(Qt::red));
    QCOMPARE(shown.pixelColor(58, 11), QColor(Qt::red));
    QVERIFY(shown.pixelColor(30, 8) != QColor(Qt::red));
    QVERIFY(shown.pixelColor(30, 31) != QColor(Qt::red));
}

void KXImageViewTest::showsItsImageOnWholePixels()
{
    // The middle of the view is between the pixels of an odd image.
    m_view->setImage(kx::Image::imageWithSize(QSizeF(21, 11), false, [](QPainter &painter, const QRectF &rect) {
        painter.fillRect(rect, Qt::red);
        return true;
    }));
    const QImage shown = m_view->grab().toImage();
    QCOMPARE(shown.pixelColor(20, 15), QColor(Qt::red));
    QCOMPARE(shown.pixelColor(40, 25), QColor(Qt::red));
    QVERIFY(shown.pixelColor(19, 20) != QColor(Qt::red));
    QVERIFY(shown.pixelColor(41, 20) != QColor(Qt::red));
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

QTEST_MAIN(KXImageViewTest)
#include "KXImageViewTest.moc"
