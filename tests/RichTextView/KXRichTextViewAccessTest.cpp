// SPDX-License-Identifier: MIT
#include "ShownRuns.h"

#include <QtCore/QRegularExpression>
#include <QtGui/QAccessible>
#include <QtGui/QImage>
#include <QtGui/QWindow>
#include <QtWidgets/QLineEdit>

using namespace Qt::StringLiterals;

class KXRichTextViewAccessTest : public QObject {
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

    void isATextThatCanBeSelected();
    void takesTheHostsNameFirst();
    void readsItsText();
    void givesPlacesOfCharacters();
    void givesAttributesOfCharacters();
    void selectsText();
    void cutsSelections();
    void showsTheSelection();
    void newRunsEndTheSelection();
    void eachClickableRunIsALink();
    void knowsPlacesOfLinks();
    void linksAreFollowed();
    void linksTakeTheFocus();
    void linksOfAnOldTextAreInvalid();
    void followingALinkMayDeleteTheView();
    void followingALinkMayReplaceTheRuns();
    void linksAreDisabledWithoutInteraction();

private:
    void show(const KXRichTextView::Runs &runs);
    [[nodiscard]] KXRichTextView &view() const { return *m_shown->view; }
    [[nodiscard]] QAccessibleInterface &accessible() const { return *QAccessible::queryAccessibleInterface(&view()); }
    [[nodiscard]] QAccessibleTextInterface &text() const { return *accessible().textInterface(); }
    void press(Qt::Key key) { QTest::keyClick(m_shown->window.windowHandle(), key); }

    std::unique_ptr<ShownView> m_shown;
    QLineEdit *m_before = nullptr;
    QLineEdit *m_after = nullptr;
    QStringList m_clicked;
};

void KXRichTextViewAccessTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    m_clicked.clear();
}

// The view stands between two line edits, the first of which has the focus.
void KXRichTextViewAccessTest::show(const KXRichTextView::Runs &runs)
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

void KXRichTextViewAccessTest::takesFocusByTabForLinksOnly()
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

void KXRichTextViewAccessTest::leavesTheHostsFocusPolicyAlone()
{
    show({linkRun(u"One"_qs, m_clicked)});
    view().setFocusPolicy(Qt::NoFocus);
    view().setKXAttributedStrings({linkRun(u"two"_qs, m_clicked)});
    QCOMPARE(view().focusPolicy(), Qt::NoFocus);
}

void KXRichTextViewAccessTest::aClickTakesNoFocus()
{
    show({linkRun(u"One"_qs, m_clicked)});
    QTest::mouseClick(&view(), Qt::LeftButton, {}, QPoint(5, 5));
    QCOMPARE(m_clicked.size(), 1);
    QVERIFY(m_before->hasFocus());
}

void KXRichTextViewAccessTest::tabGoesFromLinkToLink()
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

void KXRichTextViewAccessTest::backtabStartsAtTheLastLink()
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

void KXRichTextViewAccessTest::keysFollowTheLink_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("return") << Qt::Key_Return;
    QTest::newRow("enter") << Qt::Key_Enter;
    QTest::newRow("space") << Qt::Key_Space;
    QTest::newRow("select") << Qt::Key_Select;
}

void KXRichTextViewAccessTest::keysFollowTheLink()
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

void KXRichTextViewAccessTest::otherKeysGoOn()
{
    show({linkRun(u"One"_qs, m_clicked)});
    press(Qt::Key_Tab);
    QKeyEvent letter(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, u"a"_qs);
    letter.accept();
    QCoreApplication::sendEvent(&view(), &letter);
    QVERIFY(!letter.isAccepted());
    QVERIFY(m_clicked.isEmpty());
}

void KXRichTextViewAccessTest::newRunsStartAtTheFirstLink()
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

void KXRichTextViewAccessTest::showsWhereTheKeyboardIs()
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

void KXRichTextViewAccessTest::followingMayDeleteTheView()
{
    const Run run = plainRun(u"One"_qs);
    run->setOnClick([&](const Run &) { delete m_shown->view.data(); });
    show({run});
    press(Qt::Key_Tab);
    press(Qt::Key_Return);
    QVERIFY(!m_shown->view);
}

void KXRichTextViewAccessTest::followsNothingWithoutInteraction()
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

void KXRichTextViewAccessTest::isATextThatCanBeSelected()
{
    show({plainRun(u"One "_qs), linkRun(u"two"_qs, m_clicked)});
    QCOMPARE(accessible().role(), QAccessible::StaticText);
    QCOMPARE(accessible().text(QAccessible::Name), u"One two"_qs);
    QVERIFY(accessible().state().selectableText);
    QVERIFY(accessible().state().readOnly);
    QVERIFY(accessible().textInterface());
    const auto image =
        std::make_shared<KXAttributedString>(kx::AttributedString(std::make_shared<kx::TextAttachment>()));
    view().setKXAttributedStrings({image, plainRun(u"text"_qs)});
    QCOMPARE(accessible().text(QAccessible::Name), u"text"_qs);
}

void KXRichTextViewAccessTest::takesTheHostsNameFirst()
{
    show({plainRun(u"One"_qs)});
    view().setAccessibleName(u"Rating"_qs);
    QCOMPARE(accessible().text(QAccessible::Name), u"Rating"_qs);
}

void KXRichTextViewAccessTest::readsItsText()
{
    show({plainRun(u"One "_qs), plainRun(u"two"_qs)});
    QCOMPARE(text().characterCount(), 7);
    QCOMPARE(text().text(0, -1), u"One two"_qs);
    QCOMPARE(text().text(2, 5), u"e t"_qs);
    QCOMPARE(text().text(5, 99), u"wo"_qs);
    QCOMPARE(text().text(50, 99), QString(u""_qs));
    int start = 0;
    int end = 0;
    QCOMPARE(text().textAtOffset(5, QAccessible::WordBoundary, &start, &end), u"two"_qs);
    QCOMPARE(start, 4);
    text().setCursorPosition(5);
    QCOMPARE(text().cursorPosition(), 5);
    text().setCursorPosition(50);
    QCOMPARE(text().cursorPosition(), 7);
}

void KXRichTextViewAccessTest::givesPlacesOfCharacters()
{
    show({plainRun(u"One\ntwo"_qs)});
    view().setInsets({10, 5, 0, 0});
    for (const int character : {0, 2, 4, 6}) {
        const QRect rect = text().characterRect(character);
        QVERIFY(rect.width() > 1 && rect.height() >= int(lineHeight()));
        QCOMPARE(text().offsetAtPoint(rect.center()), character);
    }
    QCOMPARE(text().characterRect(0).topLeft(), view().mapToGlobal(QPoint(10, 5)));
    QCOMPARE(text().offsetAtPoint(view().mapToGlobal(QPoint(5, 90))), -1);
    QVERIFY(text().characterRect(-1).isNull());
    QVERIFY(text().characterRect(99).isNull());
}

void KXRichTextViewAccessTest::givesAttributesOfCharacters()
{
    QFont bold = textFont();
    bold.setBold(true);
    const Run styled = plainRun(u"two"_qs);
    styled->setTextColor(Qt::red);
    styled->setFont(bold);
    styled->setBackgroundColor(Qt::yellow);
    show({plainRun(u"One "_qs), styled});
    int start = 0;
    int end = 0;
    const QString plain = text().attributes(1, &start, &end);
    QCOMPARE(start, 0);
    QCOMPARE(end, 4);
    QCOMPARE(plain, u"font-family:\"DejaVu Sans\";"_qs);
    QCOMPARE(text().attributes(4, &start, &end),
        u"font-family:\"DejaVu Sans\";font-weight:bold;color:rgb(255,0,0);background-color:rgb(255,255,0);"_qs);
    QCOMPARE(start, 4);
    QCOMPARE(end, 7);
    for (const int outside : {-1, 7}) {
        QCOMPARE(text().attributes(outside, &start, &end), QString());
        QCOMPARE(start, -1);
        QCOMPARE(end, -1);
    }
}

void KXRichTextViewAccessTest::selectsText()
{
    show({plainRun(u"One two"_qs)});
    QCOMPARE(text().selectionCount(), 0);
    text().addSelection(4, 7);
    QCOMPARE(text().selectionCount(), 1);
    int start = 0;
    int end = 0;
    text().selection(0, &start, &end);
    QCOMPARE(start, 4);
    QCOMPARE(end, 7);
    text().setSelection(0, 3, 1);
    text().selection(0, &start, &end);
    QCOMPARE(start, 1);
    QCOMPARE(end, 3);
    text().removeSelection(0);
    QCOMPARE(text().selectionCount(), 0);
}

void KXRichTextViewAccessTest::cutsSelections()
{
    show({plainRun(u"One"_qs)});
    int start = 0;
    int end = 0;
    text().setSelection(0, 2, 99);
    text().selection(0, &start, &end);
    QCOMPARE(start, 2);
    QCOMPARE(end, 3);
    text().setSelection(1, 0, 1); // there is one at most
    text().selection(0, &start, &end);
    QCOMPARE(start, 2);
    text().selection(1, &start, &end);
    QCOMPARE(end, 0);
    text().setSelection(0, 99, 100);
    QCOMPARE(text().selectionCount(), 0);
}

void KXRichTextViewAccessTest::showsTheSelection()
{
    show({plainRun(u"One two"_qs)});
    QPalette palette = view().palette();
    palette.setColor(QPalette::Highlight, Qt::cyan);
    view().setPalette(palette);
    text().addSelection(4, 7);
    const QImage image = view().grab().toImage();
    const auto colorAt = [&](double x) { return image.pixelColor(int(x * image.devicePixelRatio()), 1); };
    QCOMPARE(colorAt(advance(u"One "_qs) + 3), QColor(Qt::cyan));
    QVERIFY(colorAt(advance(u"One "_qs) - 3) != QColor(Qt::cyan));
}

void KXRichTextViewAccessTest::newRunsEndTheSelection()
{
    show({plainRun(u"One two"_qs)});
    text().addSelection(4, 7);
    view().setKXAttributedStrings({plainRun(u"A"_qs)});
    QCOMPARE(text().selectionCount(), 0);
}

void KXRichTextViewAccessTest::eachClickableRunIsALink()
{
    show({linkRun(u"One"_qs, m_clicked), plainRun(u" and "_qs), linkRun(u"two"_qs, m_clicked)});
    QCOMPARE(accessible().childCount(), 2);
    const QStringList names{u"One"_qs, u"two"_qs};
    for (int i = 0; i < 2; ++i) {
        QAccessibleInterface *link = accessible().child(i);
        QCOMPARE(link->role(), QAccessible::Link);
        QCOMPARE(link->text(QAccessible::Name), names.at(i));
        QCOMPARE(link->parent(), &accessible());
        QCOMPARE(accessible().indexOfChild(link), i);
        QVERIFY(link->isValid());
        QVERIFY(link->state().linked);
        QVERIFY(link->state().focusable);
        QVERIFY(!link->state().disabled);
        QVERIFY(link->actionInterface());
        QCOMPARE(link->childCount(), 0);
        QCOMPARE(link->window(), m_shown->window.windowHandle());
    }
    QCOMPARE(accessible().child(1)->hyperlinkInterface()->startIndex(), 8);
    QCOMPARE(accessible().child(1)->hyperlinkInterface()->endIndex(), 11);
    QCOMPARE(accessible().child(1)->hyperlinkInterface()->anchor(), u"two"_qs);
    QCOMPARE(accessible().child(2), nullptr);
    QCOMPARE(accessible().child(-1), nullptr);
}

void KXRichTextViewAccessTest::knowsPlacesOfLinks()
{
    show({plainRun(u"One "_qs), linkRun(u"two"_qs, m_clicked)});
    view().setInsets({10, 5, 0, 0});
    QAccessibleInterface *link = accessible().child(0);
    const QRect rect = link->rect();
    QVERIFY(qAbs(rect.left() - view().mapToGlobal(QPoint(10 + int(advance(u"One "_qs)), 5)).x()) <= 1);
    QCOMPARE(rect.top(), view().mapToGlobal(QPoint(0, 5)).y());
    QVERIFY(qAbs(rect.width() - advance(u"two"_qs)) <= 2);
    QCOMPARE(accessible().childAt(rect.center().x(), rect.center().y()), link);
    QCOMPARE(accessible().childAt(rect.left() - 5, rect.center().y()), nullptr);
}

void KXRichTextViewAccessTest::linksAreFollowed()
{
    show({linkRun(u"One"_qs, m_clicked)});
    QAccessibleActionInterface *actions = accessible().child(0)->actionInterface();
    QVERIFY(actions->actionNames().contains(QAccessibleActionInterface::pressAction()));
    actions->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(m_clicked, QStringList(u"One"_qs));
    actions->doAction(u"nothing of the kind"_qs);
    QCOMPARE(m_clicked.size(), 1);
}

void KXRichTextViewAccessTest::linksTakeTheFocus()
{
    show({linkRun(u"One"_qs, m_clicked), linkRun(u" two"_qs, m_clicked)});
    QAccessibleInterface *second = accessible().child(1);
    QVERIFY(!second->state().focused);
    second->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    QVERIFY(view().hasFocus());
    QVERIFY(second->state().focused);
    QVERIFY(!accessible().child(0)->state().focused);
    QCOMPARE(accessible().focusChild(), second);
    press(Qt::Key_Return);
    QCOMPARE(m_clicked, QStringList(u" two"_qs));
    m_before->setFocus();
    QVERIFY(!second->state().focused);
}

void KXRichTextViewAccessTest::linksOfAnOldTextAreInvalid()
{
    show({plainRun(u"One "_qs), linkRun(u"two"_qs, m_clicked)});
    QAccessibleInterface *old = accessible().child(0);
    view().setKXAttributedStrings({});
    QVERIFY(!old->isValid());
    QCOMPARE(old->text(QAccessible::Name), QString());
    QVERIFY(old->rect().isNull());
    QVERIFY(old->state().invalid);
    old->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QVERIFY(m_clicked.isEmpty());
    QCOMPARE(accessible().childCount(), 0); // now it is gone
}

void KXRichTextViewAccessTest::followingALinkMayDeleteTheView()
{
    const Run run = plainRun(u"One"_qs);
    run->setOnClick([&](const Run &) { delete m_shown->view.data(); });
    show({run});
    accessible().child(0)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QVERIFY(!m_shown->view);
}

void KXRichTextViewAccessTest::followingALinkMayReplaceTheRuns()
{
    const Run run = plainRun(u"One"_qs);
    run->setOnClick([&](const Run &) {
        view().setKXAttributedStrings({});
        QCOMPARE(accessible().childCount(), 0);
    });
    show({run});
    accessible().child(0)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(view().contentSizeRect(), QRectF());
}

void KXRichTextViewAccessTest::linksAreDisabledWithoutInteraction()
{
    show({linkRun(u"One"_qs, m_clicked)});
    view().setUserInteraction(false);
    QAccessibleInterface *link = accessible().child(0);
    QVERIFY(link->state().disabled);
    QVERIFY(!link->state().focusable);
    link->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QVERIFY(m_clicked.isEmpty());
}

QTEST_MAIN(KXRichTextViewAccessTest)
#include "KXRichTextViewAccessTest.moc"
