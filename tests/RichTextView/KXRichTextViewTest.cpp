// SPDX-License-Identifier: MIT
#include "ShownRuns.h"
#include "Support/Pointer.h"
#include "Support/ReceivedEvents.h"

#include <KXFoundation/Platform/UI/Cursor.h>

#include <QtCore/QRegularExpression>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QBoxLayout>

#include <limits>
#include <thread>

using namespace Qt::StringLiterals;

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();

bool isClose(const QSizeF &a, const QSizeF &b)
{
    return qAbs(a.width() - b.width()) < 0.1 && qAbs(a.height() - b.height()) < 0.1;
}

} // namespace

class KXRichTextViewTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup() { m_shown.reset(); }

    void startsEmpty();
    void takesAFrame();
    void storesWhatItIsGiven();
    void aTagMayBeSetOnAnyThread();
    void isAsLargeAsItsText();
    void addsItsInsets();
    void anEmptyListClearsTheText();
    void anEmptyRunIsOneLineHigh();
    void copiesRunsAsTheyAre();
    void followsTheFontOfItsWindow();
    void tellsItsLayoutOfANewSize();
    void tellsOfNewSizesInAutoLayoutOnly();
    void isInAutoLayoutWithinALayout();
    void keepsItsRuns();
    void wrapsAttachmentsAnewAtEachShowing();

    void callsTheRunUnderTheMouse();
    void countsInsetsInAClick();
    void doesNotCallOutsideOfRuns();
    void callsOnlyForTheLeftButton();
    void callsEveryRunThatIsHit();
    void callsARunOnceForEachPlaceItIsIn();
    void aRunWithoutAHandlerIsNotHit();
    void hitsNothingWithoutInteraction();
    void nothingIsClickedWithoutAnEvent();
    void clicksCountInEveryDirection();
    void runsThatShareAGlyphShareItsWidth();
    void emitsAfterTheHandler();
    void handlersMayReplaceTheRuns();
    void handlersMayReplaceTheHandlers();
    void handlersMayDeleteTheView();
    void slotsMayDeleteTheView();
    void oddInsetsHitNothing_data();
    void oddInsetsHitNothing();

    void addsATrackingAreaAtEachUpdate();
    void addsNoTrackingAreaUnlessBothAreOn_data();
    void addsNoTrackingAreaUnlessBothAreOn();
    void showsAHandOverTheView();
    void showsNoHandUnlessAsked();
    void showsNoHandInAWindowThatIgnoresTheMouse();

private:
    void show(const KXRichTextView::Runs &runs)
    {
        m_shown = std::make_unique<ShownView>();
        m_shown->view->setKXAttributedStrings(runs);
    }
    void click(const QPointF &position) { Pointer(*m_shown->view).click(position); }

    std::unique_ptr<ShownView> m_shown;
    QStringList m_clicked;
};

void KXRichTextViewTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    m_clicked.clear();
}

void KXRichTextViewTest::startsEmpty()
{
    const KXRichTextView view;
    QCOMPARE(view.frame(), QRectF(0, 0, 0, 0));
    QVERIFY(!view.useRoundCorner());
    QVERIFY(view.userInteraction());
    QVERIFY(!view.userCursor());
    QCOMPARE(view.tag(), 0);
    QVERIFY(!view.backgroundColor());
    QCOMPARE(view.insets(), QMarginsF());
    QCOMPARE(view.contentSizeRect(), QRectF());
    QCOMPARE(view.intrinsicContentSize(), QSizeF(0, 0));
    QVERIFY(view.isFlipped());
    QVERIFY(view.wantsLayer());
}

void KXRichTextViewTest::takesAFrame()
{
    QWidget parent;
    parent.resize(200, 200);
    const KXRichTextView view(QRectF(10, 20, 30, 40), &parent);
    QCOMPARE(view.frame(), QRectF(10, 20, 30, 40));
    QVERIFY(view.userInteraction());
}

void KXRichTextViewTest::storesWhatItIsGiven()
{
    KXRichTextView view;
    const kx::Color color = QColor(Qt::red);
    view.setBackgroundColor(color);
    view.setInsets({1, notANumber, -3, infinite});
    view.setUseRoundCorner(true);
    view.setUserCursor(true);
    view.setUserInteraction(false);
    view.setTag(-5);
    QVERIFY(view.backgroundColor() == color);
    QCOMPARE(view.property("backgroundColor").value<QColor>(), QColor(Qt::red));
    QCOMPARE(view.insets().left(), 1.0);
    QVERIFY(std::isnan(view.insets().top()));
    QCOMPARE(view.insets().bottom(), infinite);
    QVERIFY(view.useRoundCorner());
    QVERIFY(view.userCursor());
    QVERIFY(!view.userInteraction());
    QCOMPARE(view.tag(), -5);
    QVERIFY(view.setProperty("backgroundColor", QColor()));
    QVERIFY(!view.backgroundColor());
    QVERIFY(view.setProperty("tag", qint64(7)));
    QCOMPARE(view.tag(), 7);
}

void KXRichTextViewTest::aTagMayBeSetOnAnyThread()
{
    KXRichTextView view;
    std::thread([&] { view.setTag(42); }).join();
    QCOMPARE(view.tag(), 42);
}

void KXRichTextViewTest::isAsLargeAsItsText()
{
    show({plainRun(u"One "_qs), plainRun(u"two\nthree"_qs)});
    const KXRichTextView &view = *m_shown->view;
    QCOMPARE(view.contentSizeRect().topLeft(), QPointF(0, 0));
    QVERIFY(isClose(view.contentSizeRect().size(), {advance(u"One two"_qs), 2 * lineHeight()}));
    QCOMPARE(view.intrinsicContentSize(), view.contentSizeRect().size());
    QCOMPARE(view.fittingSize(), view.intrinsicContentSize());
    QCOMPARE(view.sizeHint(), QSize(int(std::ceil(view.contentSizeRect().width())), int(2 * lineHeight())));
}

void KXRichTextViewTest::addsItsInsets()
{
    show({plainRun(u"One"_qs)});
    const QSizeF content = m_shown->view->contentSizeRect().size();
    m_shown->view->setInsets({1, 20, 300, 4000});
    QCOMPARE(m_shown->view->contentSizeRect().size(), content);
    QVERIFY(isClose(m_shown->view->intrinsicContentSize(), content + QSizeF(301, 4020)));
    QCOMPARE(m_shown->view->fittingSize(), m_shown->view->intrinsicContentSize());
}

void KXRichTextViewTest::anEmptyListClearsTheText()
{
    show({plainRun(u"One"_qs)});
    m_shown->view->setInsets({1, 20, 300, 4000});
    m_shown->view->setKXAttributedStrings({});
    QCOMPARE(m_shown->view->contentSizeRect(), QRectF());
    QCOMPARE(m_shown->view->intrinsicContentSize(), QSizeF(301, 4020));
    m_shown->view->setKXAttributedStrings({nullptr, nullptr});
    QCOMPARE(m_shown->view->contentSizeRect(), QRectF());
}

void KXRichTextViewTest::anEmptyRunIsOneLineHigh()
{
    show({plainRun(u""_qs)});
    QCOMPARE(m_shown->view->contentSizeRect(), QRectF(0, 0, 0, lineHeight()));
}

void KXRichTextViewTest::copiesRunsAsTheyAre()
{
    const Run run = plainRun(u"One"_qs);
    show({run});
    const QSizeF size = m_shown->view->intrinsicContentSize();
    run->setString(u"Another"_qs);
    QCOMPARE(m_shown->view->intrinsicContentSize(), size);
}

void KXRichTextViewTest::followsTheFontOfItsWindow()
{
    show({plainRun(u"One"_qs)});
    QFont font = textFont();
    font.setPixelSize(40);
    m_shown->window.setFont(font);
    QVERIFY(isClose(m_shown->view->contentSizeRect().size(),
        {QFontMetricsF(font).horizontalAdvance(u"One"_qs),
            std::ceil(QFontMetricsF(font).ascent()) + std::ceil(QFontMetricsF(font).descent())}));
}

void KXRichTextViewTest::tellsItsLayoutOfANewSize()
{
    m_shown = std::make_unique<ShownView>();
    auto *panel = new QWidget(&m_shown->window);
    panel->setGeometry(0, 0, 300, 200);
    QHBoxLayout layout(panel);
    layout.addWidget(m_shown->view, 0, Qt::AlignLeft | Qt::AlignTop);
    panel->show();
    m_shown->view->setKXAttributedStrings({plainRun(u"One"_qs)});
    QTRY_COMPARE(m_shown->view->size(), m_shown->view->sizeHint());
    const int width = m_shown->view->width();
    m_shown->view->setKXAttributedStrings({plainRun(u"One and more"_qs)});
    QTRY_COMPARE(m_shown->view->size(), m_shown->view->sizeHint());
    QVERIFY(m_shown->view->width() > width);
}

void KXRichTextViewTest::tellsOfNewSizesInAutoLayoutOnly()
{
    m_shown = std::make_unique<ShownView>();
    ReceivedEvents requests(m_shown->window, QEvent::LayoutRequest);
    KXRichTextView &view = *m_shown->view;
    requests.taken();
    view.setKXAttributedStrings({plainRun(u"One"_qs)});
    QCOMPARE(requests.taken(), 0);
    view.setTranslatesAutoresizingMaskIntoConstraints(false);
    requests.taken();
    view.setKXAttributedStrings({plainRun(u"two"_qs)});
    QVERIFY(requests.taken() > 0);
    view.setInsets({1, 2, 3, 4}); // stored only
    view.setUseRoundCorner(true);
    QCOMPARE(requests.taken(), 0);
}

void KXRichTextViewTest::isInAutoLayoutWithinALayout()
{
    m_shown = std::make_unique<ShownView>();
    QVERIFY(!m_shown->view->_isAutoLayout());
    m_shown->view->setTranslatesAutoresizingMaskIntoConstraints(false);
    QVERIFY(m_shown->view->_isAutoLayout());
    QHBoxLayout layout(&m_shown->window);
    KXRichTextView placed;
    layout.addWidget(&placed);
    QVERIFY(placed._isAutoLayout());
}

void KXRichTextViewTest::keepsItsRuns()
{
    Run run = plainRun(u"One"_qs);
    const std::weak_ptr<KXAttributedString> watched = run;
    show({run});
    run.reset();
    QVERIFY(!watched.expired());
    m_shown->view->setKXAttributedStrings({});
    QVERIFY(watched.expired());
}

void KXRichTextViewTest::wrapsAttachmentsAnewAtEachShowing()
{
    QImage dot(4, 4, QImage::Format_ARGB32_Premultiplied);
    dot.fill(Qt::red);
    const kx::Image image = dot;
    const auto attachment = std::make_shared<kx::TextAttachment>(image);
    const auto run = std::make_shared<KXAttributedString>(kx::AttributedString(attachment));
    show({run});
    const kx::Image first = attachment->image();
    QVERIFY(first != image);
    m_shown->view->setKXAttributedStrings({run});
    QVERIFY(attachment->image() != first);
    QCOMPARE(attachment->image().size(), QSizeF(4, 4));
}

void KXRichTextViewTest::callsTheRunUnderTheMouse()
{
    show({linkRun(u"One"_qs, m_clicked), plainRun(u" and "_qs), linkRun(u"two"_qs, m_clicked)});
    click(QPointF(advance(u"One"_qs) / 2, 5));
    QCOMPARE(m_clicked, QStringList(u"One"_qs));
    click(QPointF(advance(u"One and tw"_qs), 5));
    QCOMPARE(m_clicked, (QStringList{u"One"_qs, u"two"_qs}));
}

void KXRichTextViewTest::countsInsetsInAClick()
{
    show({linkRun(u"One"_qs, m_clicked)});
    m_shown->view->setInsets({10, 5, 0, 0});
    click(QPointF(2, 2));
    QVERIFY(m_clicked.isEmpty());
    click(QPointF(12, 7));
    QCOMPARE(m_clicked.size(), 1);
    click(QPointF(9.5, 7));
    click(QPointF(12, 4.5));
    QCOMPARE(m_clicked.size(), 1);
    click(QPointF(10, 5));
    QCOMPARE(m_clicked.size(), 2);
}

void KXRichTextViewTest::doesNotCallOutsideOfRuns()
{
    show({linkRun(u"One"_qs, m_clicked), plainRun(u" and"_qs)});
    click(QPointF(advance(u"One"_qs) + 5, 5));
    click(QPointF(advance(u"One and"_qs) + 20, 5));
    click(QPointF(5, lineHeight()));
    click(QPointF(5, 90));
    QVERIFY(m_clicked.isEmpty());
    click(QPointF(5, lineHeight() - 1));
    QCOMPARE(m_clicked.size(), 1);
}

void KXRichTextViewTest::callsOnlyForTheLeftButton()
{
    show({linkRun(u"One"_qs, m_clicked)});
    Pointer pointer(*m_shown->view);
    pointer.click(QPointF(5, 5), Qt::RightButton);
    pointer.click(QPointF(5, 5), Qt::MiddleButton);
    QVERIFY(m_clicked.isEmpty());
    // Where the button is released counts.
    pointer.moveTo(QPointF(200, 80));
    pointer.press();
    pointer.moveTo(QPointF(5, 5));
    pointer.release();
    QCOMPARE(m_clicked.size(), 1);
}

void KXRichTextViewTest::callsEveryRunThatIsHit()
{
    // The rectangle of the second run covers both lines, and the first and third run with them.
    show({linkRun(u"One"_qs, m_clicked), linkRun(u" two\nthree "_qs, m_clicked), linkRun(u"four"_qs, m_clicked)});
    click(QPointF(5, 5));
    QCOMPARE(m_clicked, (QStringList{u"One"_qs, u" two\nthree "_qs}));
    m_clicked.clear();
    click(QPointF(advance(u"three f"_qs), lineHeight() + 5));
    QCOMPARE(m_clicked, (QStringList{u" two\nthree "_qs, u"four"_qs}));
}

void KXRichTextViewTest::callsARunOnceForEachPlaceItIsIn()
{
    const Run run = linkRun(u"twice "_qs, m_clicked);
    show({run, run});
    click(QPointF(5, 5));
    QCOMPARE(m_clicked.size(), 1);
    click(QPointF(advance(u"twice tw"_qs), 5));
    QCOMPARE(m_clicked.size(), 2);
}

void KXRichTextViewTest::aRunWithoutAHandlerIsNotHit()
{
    const Run run = linkRun(u"One"_qs, m_clicked);
    show({run});
    QSignalSpy clicked(m_shown->view, &KXRichTextView::runClicked);
    run->setOnClick(nullptr);
    click(QPointF(5, 5));
    QVERIFY(clicked.isEmpty());
    run->setOnClick([&](const Run &) { m_clicked.append(u"later"_qs); });
    click(QPointF(5, 5));
    QCOMPARE(m_clicked, QStringList(u"later"_qs));
}

void KXRichTextViewTest::hitsNothingWithoutInteraction()
{
    show({linkRun(u"One"_qs, m_clicked)});
    KXRichTextView &view = *m_shown->view;
    const QPointF inSuperview(5, m_shown->window.height() - 5);
    QCOMPARE(view.hitTest(inSuperview), &view);
    view.setUserInteraction(false);
    QCOMPARE(view.hitTest(inSuperview), nullptr);
    click(QPointF(5, 5));
    QVERIFY(m_clicked.isEmpty());
    view.setUserInteraction(true);
    QCOMPARE(view.hitTest(inSuperview), &view);
    QCOMPARE(view.hitTest(QPointF(350, 5)), nullptr);
    click(QPointF(5, 5));
    QCOMPARE(m_clicked.size(), 1);
}

void KXRichTextViewTest::nothingIsClickedWithoutAnEvent()
{
    show({linkRun(u"One"_qs, m_clicked)});
    m_shown->view->mouseUp(nullptr);
    m_shown->view->keyDown(nullptr);
    QVERIFY(m_clicked.isEmpty());
}

void KXRichTextViewTest::clicksCountInEveryDirection()
{
    const QString hebrew = QString::fromUtf8("שלום");
    show({plainRun(u"ab "_qs), linkRun(hebrew.first(1), m_clicked), plainRun(hebrew.sliced(1))});
    click(QPointF(advance(u"ab "_qs) + 3, 5));
    QVERIFY(m_clicked.isEmpty());
    click(QPointF(advance(u"ab "_qs) + advance(hebrew) - 3, 5));
    QCOMPARE(m_clicked.size(), 1);
}

void KXRichTextViewTest::runsThatShareAGlyphShareItsWidth()
{
    // With the same attributes they are one text, and "ffi" is one glyph.
    show({plainRun(u"f"_qs), linkRun(u"f"_qs, m_clicked), plainRun(u"i"_qs)});
    const double third = m_shown->view->contentSizeRect().width() / 3;
    click(QPointF(third - 1, 5));
    click(QPointF(2 * third + 1, 5));
    QVERIFY(m_clicked.isEmpty());
    click(QPointF(third + 1, 5));
    click(QPointF(2 * third - 1, 5));
    QCOMPARE(m_clicked.size(), 2);
}

void KXRichTextViewTest::emitsAfterTheHandler()
{
    const Run run = linkRun(u"One"_qs, m_clicked);
    show({run});
    Run emitted;
    connect(m_shown->view, &KXRichTextView::runClicked, this, [&](const Run &clicked) {
        QCOMPARE(m_clicked.size(), 1);
        emitted = clicked;
    });
    click(QPointF(5, 5));
    QCOMPARE(emitted, run);
}

void KXRichTextViewTest::handlersMayReplaceTheRuns()
{
    const Run first = plainRun(u"One"_qs);
    first->setOnClick([&](const Run &run) {
        m_clicked.append(run->string());
        m_shown->view->setKXAttributedStrings({linkRun(u"new"_qs, m_clicked)});
    });
    // Its record reaches over the end of the new text.
    show({first, linkRun(u" two and\nmore of it "_qs, m_clicked), linkRun(u"three"_qs, m_clicked)});
    click(QPointF(5, 5));
    QVERIFY(m_clicked.contains(u"One"_qs));
    QVERIFY(!m_clicked.contains(u"new"_qs));
    m_clicked.clear();
    click(QPointF(5, 5));
    QCOMPARE(m_clicked, QStringList(u"new"_qs));
}

void KXRichTextViewTest::handlersMayReplaceTheHandlers()
{
    const Run run = plainRun(u"One"_qs);
    const auto resource = std::make_shared<QString>(u"still there"_qs);
    run->setOnClick([this, resource](const Run &hit) {
        hit->setOnClick(nullptr);
        m_clicked.append(*resource);
    });
    show({run});
    click(QPointF(5, 5));
    QCOMPARE(m_clicked, QStringList(u"still there"_qs));
}

void KXRichTextViewTest::handlersMayDeleteTheView()
{
    const Run run = plainRun(u"One"_qs);
    run->setOnClick([&](const Run &hit) {
        delete m_shown->view.data();
        m_clicked.append(hit->string());
    });
    show({run, linkRun(u"\ntwo"_qs, m_clicked)});
    m_shown->view->setKXAttributedStrings({run, run});
    click(QPointF(5, 5));
    QVERIFY(!m_shown->view);
    QCOMPARE(m_clicked, QStringList(u"One"_qs));
}

void KXRichTextViewTest::slotsMayDeleteTheView()
{
    show({linkRun(u"One\ntwo"_qs, m_clicked), linkRun(u"\nthree"_qs, m_clicked)});
    connect(m_shown->view, &KXRichTextView::runClicked, this, [&] { delete m_shown->view.data(); });
    click(QPointF(5, 5));
    QVERIFY(!m_shown->view);
    QCOMPARE(m_clicked.size(), 1);
}

void KXRichTextViewTest::oddInsetsHitNothing_data()
{
    QTest::addColumn<QMarginsF>("insets");
    QTest::newRow("no number") << QMarginsF(notANumber, notANumber, notANumber, notANumber);
    QTest::newRow("endless") << QMarginsF(infinite, 0, infinite, 0);
    QTest::newRow("endless upwards") << QMarginsF(0, -infinite, 0, infinite);
    QTest::newRow("huge") << QMarginsF(1e300, 1e300, 1e300, 1e300);
}

void KXRichTextViewTest::oddInsetsHitNothing()
{
    QFETCH(QMarginsF, insets);
    show({linkRun(u"One"_qs, m_clicked)});
    m_shown->view->setInsets(insets);
    click(QPointF(5, 5));
    QVERIFY(m_clicked.isEmpty());
    const QSize hint = m_shown->view->sizeHint();
    QVERIFY(hint.width() <= QWIDGETSIZE_MAX && hint.height() <= QWIDGETSIZE_MAX);
}

void KXRichTextViewTest::addsATrackingAreaAtEachUpdate()
{
    KXRichTextView view;
    view.resize(60, 40);
    view.setUserCursor(true);
    for (int i = 0; i < 3; ++i)
        view.updateTrackingAreas();
    QCOMPARE(view.trackingAreas().size(), 3);
    const kx::TrackingAreaRef area = view.trackingAreas().first();
    QCOMPARE(area->rect(), QRectF(0, 0, 60, 40));
    QCOMPARE(area->options().toInt(), 0x344);
    QCOMPARE(area->owner(), &view);
    QVERIFY(!area->userInfo().isValid());
}

void KXRichTextViewTest::addsNoTrackingAreaUnlessBothAreOn_data()
{
    QTest::addColumn<bool>("interaction");
    QTest::addColumn<bool>("cursor");
    QTest::newRow("neither") << false << false;
    QTest::newRow("interaction") << true << false;
    QTest::newRow("cursor") << false << true;
}

void KXRichTextViewTest::addsNoTrackingAreaUnlessBothAreOn()
{
    QFETCH(bool, interaction);
    QFETCH(bool, cursor);
    KXRichTextView view;
    view.setUserInteraction(interaction);
    view.setUserCursor(cursor);
    view.updateTrackingAreas();
    QVERIFY(view.trackingAreas().isEmpty());
}

void KXRichTextViewTest::showsAHandOverTheView()
{
    m_shown = std::make_unique<ShownView>();
    m_shown->view->setUserCursor(true);
    m_shown->view->updateTrackingAreas();
    Pointer pointer(*m_shown->view);
    pointer.moveTo(QPointF(350, 200));
    QCOMPARE(kx::Cursor::current().shape(), Qt::ArrowCursor);
    pointer.moveTo(QPointF(100, 50)); // wherever in the view
    QCOMPARE(kx::Cursor::current().shape(), Qt::PointingHandCursor);
    pointer.moveTo(QPointF(350, 200));
    QCOMPARE(kx::Cursor::current().shape(), Qt::ArrowCursor);
    pointer.moveTo(QPointF(100, 50));
    QCOMPARE(kx::Cursor::current().shape(), Qt::PointingHandCursor);
}

void KXRichTextViewTest::showsNoHandUnlessAsked()
{
    m_shown = std::make_unique<ShownView>();
    m_shown->view->setUserCursor(true);
    m_shown->view->updateTrackingAreas();
    m_shown->view->setUserCursor(false); // the area stays
    Pointer pointer(*m_shown->view);
    pointer.moveTo(QPointF(350, 200));
    pointer.moveTo(QPointF(100, 50));
    QCOMPARE(kx::Cursor::current().shape(), Qt::ArrowCursor);
}

void KXRichTextViewTest::showsNoHandInAWindowThatIgnoresTheMouse()
{
    m_shown = std::make_unique<ShownView>();
    m_shown->view->setUserCursor(true);
    Pointer pointer(*m_shown->view);
    pointer.moveTo(QPointF(100, 50));
    kx::Cursor::reset();
    m_shown->window.setAttribute(Qt::WA_TransparentForMouseEvents);
    m_shown->view->cursorUpdate(nullptr);
    QCOMPARE(kx::Cursor::current().shape(), Qt::ArrowCursor);
    m_shown->window.setAttribute(Qt::WA_TransparentForMouseEvents, false);
    m_shown->view->cursorUpdate(nullptr);
    QCOMPARE(kx::Cursor::current().shape(), Qt::PointingHandCursor);
}

QTEST_MAIN(KXRichTextViewTest)
#include "KXRichTextViewTest.moc"
