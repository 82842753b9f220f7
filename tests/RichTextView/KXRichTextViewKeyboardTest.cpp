// SPDX-License-Identifier: MIT
#include "ShownRuns.h"

#include <QtCore/QRegularExpression>
#include <QtGui/QImage>
#include <QtGui/QWindow>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QProxyStyle>
#include <QtWidgets/QStyleOption>

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
    void framesEachLineOfTheLink();
    void framesNothingThatLiesNowhere_data();
    void framesNothingThatLiesNowhere();

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

namespace {

/// Notes where it draws focus frames.
class FrameStyle : public QProxyStyle {
public:
    mutable QList<QRect> frames;

    void drawPrimitive(
        PrimitiveElement element, const QStyleOption *option, QPainter *painter, const QWidget *widget) const override
    {
        if (element == PE_FrameFocusRect)
            frames.append(option->rect);
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
};

} // namespace

void KXRichTextViewKeyboardTest::framesEachLineOfTheLink()
{
    show({plainRun(u"One "_qs), linkRun(u"two\nthree"_qs, m_clicked)});
    view().setInsets({10, 5, 0, 0});
    FrameStyle style;
    view().setStyle(&style);
    press(Qt::Key_Tab);
    style.frames.clear();
    view().grab();
    QCOMPARE(style.frames.size(), 2);
    const int height = int(lineHeight());
    const QRect first = style.frames.at(0);
    QVERIFY(qAbs(first.left() - 10 - advance(u"One "_qs)) <= 1 && qAbs(first.width() - advance(u"two"_qs)) <= 2);
    QVERIFY(first.top() == 5 && first.height() == height);
    QCOMPARE(style.frames.at(1).topLeft(), QPoint(10, 5 + height));
    QVERIFY(qAbs(style.frames.at(1).width() - advance(u"three"_qs)) <= 2);
}

void KXRichTextViewKeyboardTest::framesNothingThatLiesNowhere_data()
{
    QTest::addColumn<QMarginsF>("insets");
    QTest::newRow("no number") << QMarginsF(std::numeric_limits<double>::quiet_NaN(), 0, 0, 0);
    QTest::newRow("endless") << QMarginsF(0, std::numeric_limits<double>::infinity(), 0, 0);
    QTest::newRow("beyond every integer") << QMarginsF(3e9, 0, 0, 0);
    QTest::newRow("beyond every integer upwards") << QMarginsF(0, -1e300, 0, 0);
}

void KXRichTextViewKeyboardTest::framesNothingThatLiesNowhere()
{
    QFETCH(QMarginsF, insets);
    show({linkRun(u"One"_qs, m_clicked)});
    view().setInsets(insets);
    FrameStyle style;
    view().setStyle(&style);
    press(Qt::Key_Tab);
    view().grab();
    QVERIFY(style.frames.isEmpty());
}

QTEST_MAIN(KXRichTextViewKeyboardTest)
#include "KXRichTextViewKeyboardTest.moc"
