// SPDX-License-Identifier: MIT
#include "ShownRuns.h"

#include <QtCore/QRegularExpression>
#include <QtGui/QImage>
#include <QtGui/QWindow>
#include <QtWidgets/QLineEdit>

#include <limits>

using namespace Qt::StringLiterals;

class KXRichTextViewKeyboardTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup() { m_shown.reset(); }

    void takesFocusByTabForLinksOnly();
    void leavesTheHostsFocusPolicyAlone();
    void aClickTakesNoFocus();
    void tabGoesFromLinkToLink();
    void backtabStartsAtTheLastLink();
    void keysFollowTheLink_data();
    void keysFollowTheLink();
    void otherKeysGoOn();
    void newRunsStartAtTheFirstLink();
    void showsWhereTheKeyboardIs();
    void followingMayDeleteTheView();
    void followsNothingWithoutInteraction();
    void passesLinksByWithoutInteraction();
    void showsNoFocusThatTheApplicationGave();
    void ringsEachLineOfTheLink();
    void ringsALinkAsFarAsTheViewGoes();
    void ringsALinkBesideARoundCorner();
    void ringsNothingThatLiesNowhere_data();
    void ringsNothingThatLiesNowhere();

private:
    void show(const KXRichTextView::Runs &runs);
    [[nodiscard]] KXRichTextView &view() const { return *m_shown->view; }
    void press(Qt::Key key) { QTest::keyClick(m_shown->window.windowHandle(), key); }

    std::unique_ptr<ShownView> m_shown;
    QLineEdit *m_before = nullptr;
    QLineEdit *m_after = nullptr;
    QStringList m_clicked;
};

void KXRichTextViewKeyboardTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    m_clicked.clear();
}

// The view stands between two line edits, the first of which has the focus.
void KXRichTextViewKeyboardTest::show(const KXRichTextView::Runs &runs)
{
    m_shown = std::make_unique<ShownView>();
    m_before = new QLineEdit(&m_shown->window);
    m_after = new QLineEdit(&m_shown->window);
    m_before->setGeometry(0, 200, 100, 30);
    m_after->setGeometry(0, 240, 100, 30);
    m_before->show();
    m_after->show();
    m_before->setFocus();
    view().setKXAttributedStrings({linkRun(u"any"_qs, m_clicked)}); // Qt orders only what takes focus
    QWidget::setTabOrder(m_before, &view());
    QWidget::setTabOrder(&view(), m_after);
    view().setKXAttributedStrings(runs);
}

void KXRichTextViewKeyboardTest::takesFocusByTabForLinksOnly()
{
    show({plainRun(u"One"_qs)});
    QCOMPARE(view().focusPolicy(), Qt::NoFocus);
    view().setKXAttributedStrings({plainRun(u"One"_qs), linkRun(u"two"_qs, m_clicked)});
    QCOMPARE(view().focusPolicy(), Qt::TabFocus);
    view().setKXAttributedStrings({linkRun(u""_qs, m_clicked)}); // nothing to see
    QCOMPARE(view().focusPolicy(), Qt::NoFocus);
    press(Qt::Key_Tab);
    QVERIFY(m_after->hasFocus());
}

void KXRichTextViewKeyboardTest::leavesTheHostsFocusPolicyAlone()
{
    show({linkRun(u"One"_qs, m_clicked)});
    view().setFocusPolicy(Qt::NoFocus);
    view().setKXAttributedStrings({linkRun(u"two"_qs, m_clicked)});
    QCOMPARE(view().focusPolicy(), Qt::NoFocus);
}

void KXRichTextViewKeyboardTest::aClickTakesNoFocus()
{
    show({linkRun(u"One"_qs, m_clicked)});
    QTest::mouseClick(&view(), Qt::LeftButton, {}, QPoint(5, 5));
    QCOMPARE(m_clicked.size(), 1);
    QVERIFY(m_before->hasFocus());
}

void KXRichTextViewKeyboardTest::tabGoesFromLinkToLink()
{
    show({linkRun(u"One"_qs, m_clicked), plainRun(u" and "_qs), linkRun(u"two"_qs, m_clicked)});
    press(Qt::Key_Tab);
    QVERIFY(view().hasFocus());
    press(Qt::Key_Return);
    press(Qt::Key_Tab);
    QVERIFY(view().hasFocus());
    press(Qt::Key_Return);
    QCOMPARE(m_clicked, (QStringList{u"One"_qs, u"two"_qs}));
    press(Qt::Key_Tab);
    QVERIFY(m_after->hasFocus());
}

void KXRichTextViewKeyboardTest::backtabStartsAtTheLastLink()
{
    show({linkRun(u"One"_qs, m_clicked), plainRun(u" and "_qs), linkRun(u"two"_qs, m_clicked)});
    m_after->setFocus();
    press(Qt::Key_Backtab);
    QVERIFY(view().hasFocus());
    press(Qt::Key_Return);
    press(Qt::Key_Backtab);
    press(Qt::Key_Return);
    QCOMPARE(m_clicked, (QStringList{u"two"_qs, u"One"_qs}));
    press(Qt::Key_Backtab);
    QVERIFY(m_before->hasFocus());
}

void KXRichTextViewKeyboardTest::keysFollowTheLink_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("return") << Qt::Key_Return;
    QTest::newRow("enter") << Qt::Key_Enter;
    QTest::newRow("space") << Qt::Key_Space;
    QTest::newRow("select") << Qt::Key_Select;
}

void KXRichTextViewKeyboardTest::keysFollowTheLink()
{
    QFETCH(Qt::Key, key);
    show({linkRun(u"One"_qs, m_clicked)});
    press(key);
    QVERIFY(m_clicked.isEmpty());
    press(Qt::Key_Tab);
    press(key);
    QCOMPARE(m_clicked.size(), 1);
    QKeyEvent repeated(QEvent::KeyPress, key, Qt::NoModifier, QString(), true);
    QCoreApplication::sendEvent(&view(), &repeated);
    QCOMPARE(m_clicked.size(), 1);
}

void KXRichTextViewKeyboardTest::otherKeysGoOn()
{
    show({linkRun(u"One"_qs, m_clicked)});
    press(Qt::Key_Tab);
    QKeyEvent letter(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, u"a"_qs);
    letter.accept();
    QCoreApplication::sendEvent(&view(), &letter);
    QVERIFY(!letter.isAccepted());
    QVERIFY(m_clicked.isEmpty());
}

void KXRichTextViewKeyboardTest::newRunsStartAtTheFirstLink()
{
    show({linkRun(u"One"_qs, m_clicked), linkRun(u" two"_qs, m_clicked)});
    press(Qt::Key_Tab);
    press(Qt::Key_Tab);
    view().setKXAttributedStrings({plainRun(u"-"_qs), linkRun(u"new"_qs, m_clicked)});
    press(Qt::Key_Return);
    QCOMPARE(m_clicked, QStringList(u"new"_qs));
    view().setKXAttributedStrings({plainRun(u"no link"_qs)});
    press(Qt::Key_Return);
    QCOMPARE(m_clicked.size(), 1);
}

void KXRichTextViewKeyboardTest::showsWhereTheKeyboardIs()
{
    show({linkRun(u"One"_qs, m_clicked), plainRun(u" and "_qs), linkRun(u"two"_qs, m_clicked)});
    const QImage without = view().grab().toImage();
    press(Qt::Key_Tab);
    const QImage first = view().grab().toImage();
    press(Qt::Key_Tab);
    const QImage second = view().grab().toImage();
    QVERIFY(first != without);
    QVERIFY(second != without);
    QVERIFY(first != second);
    m_before->setFocus();
    QCOMPARE(view().grab().toImage(), without);
}

void KXRichTextViewKeyboardTest::followingMayDeleteTheView()
{
    const Run run = plainRun(u"One"_qs);
    run->setOnClick([&](const Run &) { delete m_shown->view.data(); });
    show({run});
    press(Qt::Key_Tab);
    press(Qt::Key_Return);
    QVERIFY(!m_shown->view);
}

void KXRichTextViewKeyboardTest::followsNothingWithoutInteraction()
{
    show({linkRun(u"One"_qs, m_clicked)});
    press(Qt::Key_Tab);
    view().setUserInteraction(false);
    QCOMPARE(view().focusPolicy(), Qt::NoFocus);
    press(Qt::Key_Return);
    QVERIFY(m_clicked.isEmpty());
    view().setUserInteraction(true);
    QCOMPARE(view().focusPolicy(), Qt::TabFocus);
}

void KXRichTextViewKeyboardTest::passesLinksByWithoutInteraction()
{
    show({linkRun(u"One"_qs, m_clicked), linkRun(u" two"_qs, m_clicked)});
    const QImage without = view().grab().toImage();
    press(Qt::Key_Tab);
    QVERIFY(view().hasFocus());
    view().setUserInteraction(false);
    QCOMPARE(view().grab().toImage(), without);
    press(Qt::Key_Tab);
    QVERIFY(!view().hasFocus());
}

void KXRichTextViewKeyboardTest::showsNoFocusThatTheApplicationGave()
{
    show({linkRun(u"One"_qs, m_clicked), linkRun(u" two"_qs, m_clicked)});
    const QImage without = view().grab().toImage();
    view().setFocus();
    QVERIFY(view().hasFocus());
    QCOMPARE(view().grab().toImage(), without);
    press(Qt::Key_Tab); // to the second link
    QVERIFY(view().hasFocus());
    QVERIFY(view().grab().toImage() != without);
}

namespace {

const QColor ringColour(0, 160, 0);

/// Where the view shows the ring's colour, in whole logical pixels.
class RingPicture {
public:
    explicit RingPicture(QWidget &view)
    {
        QPalette palette = view.palette();
        palette.setColor(QPalette::Highlight, ringColour);
        view.setPalette(palette);
        m_picture = view.grab().toImage();
        m_rect = view.rect();
    }

    /// The columns where a row shows it first and last.
    [[nodiscard]] std::pair<int, int> inRow(int y) const
    {
        return ends(m_rect.width(), [&](int x) { return isRing(x, y); });
    }
    /// The rows where a column shows it first and last.
    [[nodiscard]] std::pair<int, int> inColumn(int x) const
    {
        return ends(m_rect.height(), [&](int y) { return isRing(x, y); });
    }
    [[nodiscard]] bool isEmpty() const
    {
        for (int y = 0; y < m_rect.height(); ++y) {
            if (inRow(y).first >= 0)
                return false;
        }
        return true;
    }

private:
    [[nodiscard]] bool isRing(int x, int y) const
    {
        const QPointF middle = QPointF(x + 0.5, y + 0.5) * m_picture.devicePixelRatio();
        return m_picture.pixelColor(int(middle.x()), int(middle.y())) == ringColour;
    }
    template <class Is> static std::pair<int, int> ends(int count, Is is)
    {
        std::pair<int, int> ends(-1, -1);
        for (int i = 0; i < count; ++i) {
            if (is(i))
                ends = {ends.first < 0 ? i : ends.first, i};
        }
        return ends;
    }

    QImage m_picture;
    QRect m_rect;
};

} // namespace

void KXRichTextViewKeyboardTest::ringsEachLineOfTheLink()
{
    show({plainRun(u"One "_qs), linkRun(u"two\nthree"_qs, m_clicked)});
    view().setInsets({10, 5, 0, 0});
    press(Qt::Key_Tab);
    const RingPicture ring(view());
    const int height = int(lineHeight());
    const double start = 10 + advance(u"One "_qs);
    const double end = 10 + advance(u"One two"_qs);
    const auto [left, right] = ring.inRow(5 + height / 2); // around the letters, not on them
    QVERIFY(left < start && left >= start - 4);
    QVERIFY(right >= end && right <= end + 3);
    QCOMPARE(ring.inColumn(int(end) - 4).first, 4);
    const auto [secondLeft, secondRight] = ring.inRow(5 + height + height / 2);
    QCOMPARE(secondLeft, 10 - 3);
    QVERIFY(secondRight >= 10 + advance(u"three"_qs) && secondRight <= 13 + advance(u"three"_qs));
    QCOMPARE(ring.inColumn(20).second, 5 + 2 * height);
    QCOMPARE(ring.inColumn(20).first, 5 + height - 1); // not around the plain run above
}

void KXRichTextViewKeyboardTest::ringsALinkAsFarAsTheViewGoes()
{
    show({linkRun(u"One"_qs, m_clicked)});
    view().resize(20, 12);
    press(Qt::Key_Tab);
    const RingPicture ring(view());
    QCOMPARE(ring.inRow(6), std::pair(0, 19));
    QCOMPARE(ring.inColumn(10), std::pair(0, 11));
}

void KXRichTextViewKeyboardTest::ringsALinkBesideARoundCorner()
{
    show({linkRun(u"One"_qs, m_clicked)});
    view().setUseRoundCorner(true);
    view().resize(int(advance(u"One"_qs)), int(lineHeight()));
    press(Qt::Key_Tab);
    const RingPicture ring(view());
    const int right = view().width() - 1;
    QCOMPARE(ring.inColumn(right).first, 4); // the ring's own corner is smaller than the view's
}

void KXRichTextViewKeyboardTest::ringsNothingThatLiesNowhere_data()
{
    QTest::addColumn<QMarginsF>("insets");
    QTest::newRow("no number") << QMarginsF(std::numeric_limits<double>::quiet_NaN(), 0, 0, 0);
    QTest::newRow("endless") << QMarginsF(0, std::numeric_limits<double>::infinity(), 0, 0);
    QTest::newRow("beyond every integer") << QMarginsF(3e9, 0, 0, 0);
    QTest::newRow("beyond every integer upwards") << QMarginsF(0, -1e300, 0, 0);
}

void KXRichTextViewKeyboardTest::ringsNothingThatLiesNowhere()
{
    QFETCH(QMarginsF, insets);
    show({linkRun(u"One"_qs, m_clicked)});
    press(Qt::Key_Tab);
    QVERIFY(!RingPicture(view()).isEmpty());
    view().setInsets(insets);
    QVERIFY(RingPicture(view()).isEmpty());
}

QTEST_MAIN(KXRichTextViewKeyboardTest)
#include "KXRichTextViewKeyboardTest.moc"
