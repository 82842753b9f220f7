// SPDX-License-Identifier: MIT
#include "ShownRuns.h"
#include "Support/AccessibleEvents.h"

#include <QtCore/QRegularExpression>
#include <QtGui/QAccessible>
#include <QtGui/QImage>
#include <QtGui/QWindow>
#include <QtWidgets/QLineEdit>

#include <functional>
#include <limits>

using namespace Qt::StringLiterals;

class AccessibleRichTextTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup() { m_shown.reset(); }

    void isATextThatCanBeSelected();
    void takesTheHostsNameFirst();
    void readsImagesByTheirDescription();
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
    void linksOfferNoFocusThatTheHostForbids();
    void withoutALinkTheViewHasTheFocus();
    void focusingALinkMayReplaceTheRuns();
    void linksGoWithTheirView();
    void linksStayWhileTheTextStays();
    void whatLiesNowhereHasNoPlace_data();
    void whatLiesNowhereHasNoPlace();
    void readsEveryKindOfCharacter_data();
    void readsEveryKindOfCharacter();
    void knowsPlacesOfLinksThatRunRightToLeft();

    void tellsOfALinkAfterItsView();
    void tellsOfTheLinkOfNewRuns();
    void tellsOfNewTexts();
    void tellsOfTheCaretAndTheSelection();

private:
    void show(const KXRichTextView::Runs &runs);
    [[nodiscard]] KXRichTextView &view() const { return *m_shown->view; }
    [[nodiscard]] QAccessibleInterface &accessible() const { return *QAccessible::queryAccessibleInterface(&view()); }
    [[nodiscard]] QAccessibleTextInterface &text() const { return *accessible().textInterface(); }
    void press(Qt::Key key) { QTest::keyClick(m_shown->window.windowHandle(), key); }

    std::unique_ptr<ShownView> m_shown;
    QLineEdit *m_other = nullptr;
    QStringList m_clicked;
};

void AccessibleRichTextTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    m_clicked.clear();
}

// The view stands above a line edit that has the focus.
void AccessibleRichTextTest::show(const KXRichTextView::Runs &runs)
{
    m_shown = std::make_unique<ShownView>();
    m_other = new QLineEdit(&m_shown->window);
    m_other->setGeometry(0, 200, 100, 30);
    m_other->show();
    m_other->setFocus();
    view().setKXAttributedStrings(runs);
}

void AccessibleRichTextTest::isATextThatCanBeSelected()
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

void AccessibleRichTextTest::takesTheHostsNameFirst()
{
    show({plainRun(u"One"_qs)});
    view().setAccessibleName(u"Rating"_qs);
    QCOMPARE(accessible().text(QAccessible::Name), u"Rating"_qs);
}

void AccessibleRichTextTest::readsImagesByTheirDescription()
{
    const auto attachment = std::make_shared<kx::TextAttachment>();
    const auto image = std::make_shared<KXAttributedString>(kx::AttributedString(attachment));
    image->setOnClick([](const Run &) {});
    show({plainRun(u"One "_qs), image, linkRun(u" two"_qs, m_clicked)});
    const auto nameOfLink = [&](int index) { return accessible().child(index)->text(QAccessible::Name); };
    QCOMPARE(nameOfLink(0), QString());
    attachment->setDescription(u"Heart"_qs);
    QCOMPARE(nameOfLink(0), u"Heart"_qs);
    QCOMPARE(nameOfLink(1), u" two"_qs);
    QCOMPARE(accessible().text(QAccessible::Name), u"One Heart two"_qs);
    QCOMPARE(text().characterCount(), 9); // where the image stands is still one character
    QCOMPARE(text().text(4, 5), QString(kx::attachmentCharacter));
}

void AccessibleRichTextTest::readsItsText()
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

void AccessibleRichTextTest::givesPlacesOfCharacters()
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

void AccessibleRichTextTest::givesAttributesOfCharacters()
{
    QFont bold = textFont();
    bold.setBold(true);
    bold.setItalic(true);
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
        u"font-family:\"DejaVu Sans\";font-weight:bold;font-style:italic;color:rgb(255,0,0);background-color:rgb(255,255,0);"_qs);
    QCOMPARE(start, 4);
    QCOMPARE(end, 7);
    // Readers ask at the end, too, and by the numbers that stand for the end and the caret.
    const QString last = text().attributes(4, &start, &end);
    QCOMPARE(text().attributes(7, &start, &end), last);
    QCOMPARE(text().attributes(-1, &start, &end), last);
    QCOMPARE(text().attributes(-2, &start, &end), plain);
    text().setCursorPosition(5);
    QCOMPARE(text().attributes(-2, &start, &end), last);
    QCOMPARE(start, 4);
    for (const int outside : {-3, 8}) {
        QCOMPARE(text().attributes(outside, &start, &end), QString());
        QCOMPARE(start, -1);
        QCOMPARE(end, -1);
    }
    view().setKXAttributedStrings({});
    for (const int anywhere : {-2, -1, 0, 1})
        QCOMPARE(text().attributes(anywhere, &start, &end), QString());
}

void AccessibleRichTextTest::selectsText()
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

void AccessibleRichTextTest::cutsSelections()
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

void AccessibleRichTextTest::showsTheSelection()
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

void AccessibleRichTextTest::newRunsEndTheSelection()
{
    show({plainRun(u"One two"_qs)});
    text().addSelection(4, 7);
    view().setKXAttributedStrings({plainRun(u"A"_qs)});
    QCOMPARE(text().selectionCount(), 0);
    QCOMPARE(text().cursorPosition(), 0);
    view().setKXAttributedStrings({plainRun(u"One two"_qs)});
    QCOMPARE(text().selectionCount(), 0);
    QCOMPARE(text().cursorPosition(), 0);
}

void AccessibleRichTextTest::eachClickableRunIsALink()
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
        QVERIFY(!link->textInterface());
        const QString press = QAccessibleActionInterface::pressAction();
        QCOMPARE(link->actionInterface()->keyBindingsForAction(press), QStringList());
        QCOMPARE(link->childCount(), 0);
        QCOMPARE(link->child(0), nullptr);
        QCOMPARE(link->childAt(1, 1), nullptr);
        QCOMPARE(link->indexOfChild(&accessible()), -1);
        link->setText(QAccessible::Name, u"none"_qs); // is the run's
        QCOMPARE(link->text(QAccessible::Name), names.at(i));
        QCOMPARE(link->window(), m_shown->window.windowHandle());
    }
    QCOMPARE(accessible().child(1)->hyperlinkInterface()->startIndex(), 8);
    QCOMPARE(accessible().child(1)->hyperlinkInterface()->endIndex(), 11);
    QCOMPARE(accessible().child(1)->hyperlinkInterface()->anchor(), u"two"_qs);
    QCOMPARE(accessible().child(1)->hyperlinkInterface()->anchorTarget(), QString()); // its handler goes anywhere
    QCOMPARE(accessible().child(2), nullptr);
    QCOMPARE(accessible().child(-1), nullptr);
    QCOMPARE(accessible().indexOfChild(&accessible()), -1);
}

void AccessibleRichTextTest::knowsPlacesOfLinks()
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

void AccessibleRichTextTest::linksAreFollowed()
{
    show({linkRun(u"One"_qs, m_clicked)});
    QAccessibleActionInterface *actions = accessible().child(0)->actionInterface();
    QCOMPARE(actions->actionNames(),
        (QStringList{QAccessibleActionInterface::pressAction(), QAccessibleActionInterface::setFocusAction()}));
    actions->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(m_clicked, QStringList(u"One"_qs));
    actions->doAction(u"nothing of the kind"_qs);
    QCOMPARE(m_clicked.size(), 1);
}

void AccessibleRichTextTest::linksTakeTheFocus()
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
    m_other->setFocus();
    QVERIFY(!second->state().focused);
}

void AccessibleRichTextTest::linksOfAnOldTextAreInvalid()
{
    show({plainRun(u"One "_qs), linkRun(u"two"_qs, m_clicked)});
    QAccessibleInterface *old = accessible().child(0);
    view().setKXAttributedStrings({});
    QVERIFY(!old->isValid());
    QCOMPARE(old->text(QAccessible::Name), QString());
    QVERIFY(old->rect().isNull());
    QVERIFY(old->state().invalid);
    QVERIFY(old->actionInterface()->actionNames().isEmpty());
    QCOMPARE(old->window(), nullptr);
    QCOMPARE(old->parent(), &accessible());
    QCOMPARE(old->hyperlinkInterface()->startIndex(), 0);
    QCOMPARE(old->hyperlinkInterface()->endIndex(), 0);
    old->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QVERIFY(m_clicked.isEmpty());
    QCOMPARE(accessible().childCount(), 0); // now it is gone
}

void AccessibleRichTextTest::followingALinkMayDeleteTheView()
{
    const Run run = plainRun(u"One"_qs);
    run->setOnClick([&](const Run &) { delete m_shown->view.data(); });
    show({run});
    accessible().child(0)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QVERIFY(!m_shown->view);
}

void AccessibleRichTextTest::followingALinkMayReplaceTheRuns()
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

void AccessibleRichTextTest::linksAreDisabledWithoutInteraction()
{
    show({linkRun(u"One"_qs, m_clicked)});
    view().setUserInteraction(false);
    QAccessibleInterface *link = accessible().child(0);
    QVERIFY(link->state().disabled);
    QVERIFY(!link->state().focusable);
    QVERIFY(link->actionInterface()->actionNames().isEmpty());
    link->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QVERIFY(m_clicked.isEmpty());
}

void AccessibleRichTextTest::linksOfferNoFocusThatTheHostForbids()
{
    show({linkRun(u"One"_qs, m_clicked)});
    view().setFocusPolicy(Qt::NoFocus);
    QAccessibleInterface *link = accessible().child(0);
    QVERIFY(!link->state().focusable);
    QCOMPARE(link->actionInterface()->actionNames(), QStringList(QAccessibleActionInterface::pressAction()));
    link->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    QVERIFY(m_other->hasFocus());
    link->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(m_clicked.size(), 1);
}

void AccessibleRichTextTest::withoutALinkTheViewHasTheFocus()
{
    show({plainRun(u"One"_qs)});
    QCOMPARE(accessible().focusChild(), nullptr);
    view().setFocusPolicy(Qt::StrongFocus);
    view().setFocus();
    QCOMPARE(accessible().focusChild(), &accessible());
}

namespace {

/// Acts when a widget loses the focus.
class FocusOutFilter : public QObject {
public:
    FocusOutFilter(QWidget *widget, const std::function<void()> &action)
        : QObject(widget)
        , m_action(action)
    {
        widget->installEventFilter(this);
    }
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::FocusOut)
            m_action();
        return false;
    }

private:
    const std::function<void()> m_action;
};

} // namespace

void AccessibleRichTextTest::focusingALinkMayReplaceTheRuns()
{
    show({plainRun(u"One "_qs), plainRun(u"two "_qs), linkRun(u"three"_qs, m_clicked)});
    new FocusOutFilter(m_other, [this] { view().setKXAttributedStrings({linkRun(u"new"_qs, m_clicked)}); });
    accessible().child(0)->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    QVERIFY(view().hasFocus());
    QCOMPARE(accessible().focusChild(), accessible().child(0));
    press(Qt::Key_Return);
    QCOMPARE(m_clicked, QStringList(u"new"_qs));
}

void AccessibleRichTextTest::linksGoWithTheirView()
{
    show({linkRun(u"One"_qs, m_clicked)});
    const QAccessible::Id text = QAccessible::uniqueId(&accessible());
    const QAccessible::Id link = QAccessible::uniqueId(accessible().child(0));
    QVERIFY(QAccessible::accessibleInterface(link));
    delete m_shown->view.data();
    QCOMPARE(QAccessible::accessibleInterface(text), nullptr);
    QCOMPARE(QAccessible::accessibleInterface(link), nullptr);
}

void AccessibleRichTextTest::linksStayWhileTheTextStays()
{
    show({linkRun(u"One"_qs, m_clicked), linkRun(u"two"_qs, m_clicked)});
    const QAccessible::Id second = QAccessible::uniqueId(accessible().child(1));
    view().setInsets({10, 5, 0, 0});
    press(Qt::Key_Tab);
    QCOMPARE(QAccessible::uniqueId(accessible().child(1)), second);
    view().setKXAttributedStrings({linkRun(u"One"_qs, m_clicked), linkRun(u"2"_qs, m_clicked)});
    QCOMPARE(accessible().childCount(), 2);
    QCOMPARE(accessible().child(1)->text(QAccessible::Name), u"2"_qs);
    QVERIFY(accessible().child(1)->isValid());
}

void AccessibleRichTextTest::whatLiesNowhereHasNoPlace_data()
{
    constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinite = std::numeric_limits<double>::infinity();
    QTest::addColumn<QMarginsF>("insets");
    QTest::newRow("no number") << QMarginsF(notANumber, 0, 0, 0);
    QTest::newRow("endless") << QMarginsF(0, infinite, 0, 0);
    QTest::newRow("beyond every integer") << QMarginsF(3e9, 0, 0, 0);
    QTest::newRow("beyond every integer upwards") << QMarginsF(0, -1e300, 0, 0);
}

void AccessibleRichTextTest::whatLiesNowhereHasNoPlace()
{
    QFETCH(QMarginsF, insets);
    show({linkRun(u"One"_qs, m_clicked)});
    view().setInsets(insets);
    QCOMPARE(accessible().child(0)->rect(), QRect());
    QCOMPARE(text().characterRect(0), QRect());
}

void AccessibleRichTextTest::readsEveryKindOfCharacter_data()
{
    QTest::addColumn<QString>("string");
    QTest::addColumn<QList<int>>("characters"); // that have a place of their own
    QTest::newRow("right to left") << QString::fromUtf8("שלום") << QList<int>{0, 1, 2, 3};
    QTest::newRow("both ways") << QString::fromUtf8("ab שלום") << QList<int>{0, 1, 3, 4, 5, 6};
    QTest::newRow("ligature") << u"office"_qs << QList<int>{0, 1, 2, 3, 4, 5};
    QTest::newRow("surrogates") << QString::fromUtf8("a😀b") << QList<int>{0, 3};
    QTest::newRow("two lines and an empty one") << u"ab\ncd\n"_qs << QList<int>{0, 1, 3, 4};
}

void AccessibleRichTextTest::readsEveryKindOfCharacter()
{
    QFETCH(QString, string);
    QFETCH(QList<int>, characters);
    show({plainRun(string)});
    const int length = int(string.size());
    QCOMPARE(text().characterCount(), length);
    QCOMPARE(text().text(0, -1), string);
    for (const int character : characters) {
        const QRect rect = text().characterRect(character);
        QVERIFY(rect.width() > 1);
        QCOMPARE(text().offsetAtPoint(rect.center()), character);
        QCOMPARE(text().text(character, character + 1), string.mid(character, 1));
    }
    const double lineStart = double(string.count(u'\n')) * lineHeight();
    QCOMPARE(text().characterRect(length).top(), view().mapToGlobal(QPointF(0, lineStart)).y());
}

void AccessibleRichTextTest::knowsPlacesOfLinksThatRunRightToLeft()
{
    const QString hebrew = QString::fromUtf8("שלום");
    show({plainRun(hebrew.first(2)), linkRun(hebrew.sliced(2), m_clicked)});
    QAccessibleInterface *link = accessible().child(0);
    const QRect textRect = text().characterRect(0).united(text().characterRect(3));
    QCOMPARE(link->rect().left(), textRect.left()); // the text ends at its left
    QVERIFY(link->rect().right() < textRect.right() - 2);
    QCOMPARE(link->hyperlinkInterface()->startIndex(), 2);
    QCOMPARE(link->hyperlinkInterface()->endIndex(), 4);
}

void AccessibleRichTextTest::tellsOfALinkAfterItsView()
{
    show({linkRun(u"One"_qs, m_clicked), linkRun(u" two"_qs, m_clicked)});
    QStringList focused;
    const AccessibleEvents events([&](const QAccessibleEvent &event) {
        if (event.type() == QAccessible::Focus)
            focused.append(event.accessibleInterface()->text(QAccessible::Name));
    });
    const auto focusLink = [this](int index) {
        accessible().child(index)->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    };
    press(Qt::Key_Tab);
    QCoreApplication::processEvents();
    QCOMPARE(focused, (QStringList{u"One two"_qs, u"One"_qs}));
    press(Qt::Key_Tab);
    QCoreApplication::processEvents();
    QCOMPARE(focused.last(), u" two"_qs);
    m_other->setFocus();
    focused.clear();
    focusLink(1);
    QCoreApplication::processEvents();
    QCOMPARE(focused, (QStringList{u"One two"_qs, u" two"_qs}));
    focusLink(0);
    QCoreApplication::processEvents();
    QCOMPARE(focused.last(), u"One"_qs);
    m_other->setAccessibleName(u"other"_qs);
    focusLink(1);
    m_other->setFocus();
    QCoreApplication::processEvents();
    QCOMPARE(focused.last(), u"other"_qs);
}

void AccessibleRichTextTest::tellsOfTheLinkOfNewRuns()
{
    show({linkRun(u"One"_qs, m_clicked)});
    press(Qt::Key_Tab);
    QCoreApplication::processEvents();
    QStringList focused;
    const AccessibleEvents events([&](const QAccessibleEvent &event) {
        if (event.type() == QAccessible::Focus)
            focused.append(event.accessibleInterface()->text(QAccessible::Name));
    });
    view().setKXAttributedStrings({plainRun(u"-"_qs), linkRun(u"new"_qs, m_clicked)});
    QCoreApplication::processEvents();
    QCOMPARE(focused, QStringList(u"new"_qs));
    view().setKXAttributedStrings({plainRun(u"no link"_qs)});
    QCoreApplication::processEvents();
    QCOMPARE(focused.size(), 1);
}

void AccessibleRichTextTest::tellsOfNewTexts()
{
    show({plainRun(u"One"_qs)});
    QList<QAccessible::Event> told;
    QStringList texts;
    const AccessibleEvents events([&](QAccessibleEvent &event) {
        QCOMPARE(event.object(), &view());
        told.append(event.type());
        if (event.type() == QAccessible::TextUpdated) {
            const auto &update = static_cast<QAccessibleTextUpdateEvent &>(event);
            texts << update.textRemoved() << update.textInserted();
            QCOMPARE(update.changePosition(), 0);
            QCOMPARE(text().text(0, -1), update.textInserted());
        }
    });
    const QList<QAccessible::Event> newText{QAccessible::TextUpdated, QAccessible::NameChanged};
    const QList<QAccessible::Event> newLinks = newText + QList{QAccessible::ObjectReorder};
    view().setKXAttributedStrings({plainRun(u"Two"_qs)});
    QCOMPARE(texts, (QStringList{u"One"_qs, u"Two"_qs}));
    QCOMPARE(told, newText);
    told.clear();
    view().setKXAttributedStrings({linkRun(u"Three"_qs, m_clicked)});
    QCOMPARE(told, newLinks);
    told.clear();
    view().setKXAttributedStrings({});
    QCOMPARE(told, newLinks);
}

void AccessibleRichTextTest::tellsOfTheCaretAndTheSelection()
{
    show({plainRun(u"One two"_qs)});
    QStringList told;
    const AccessibleEvents events([&](QAccessibleEvent &event) {
        if (event.type() == QAccessible::TextCaretMoved)
            told << u"caret %1"_qs.arg(static_cast<QAccessibleTextCursorEvent &>(event).cursorPosition());
        if (event.type() == QAccessible::TextSelectionChanged) {
            const auto &selection = static_cast<QAccessibleTextSelectionEvent &>(event);
            told << u"selection %1 to %2"_qs.arg(selection.selectionStart()).arg(selection.selectionEnd());
            QCOMPARE(selection.cursorPosition(), text().cursorPosition());
        }
    });
    text().setCursorPosition(3);
    text().setCursorPosition(-5);
    text().addSelection(6, 2);
    text().setSelection(0, 4, -1);
    text().removeSelection(0);
    text().removeSelection(1); // there is none
    const QStringList expected{
        u"caret 3"_qs, u"caret 0"_qs, u"selection 2 to 6"_qs, u"selection 4 to 7"_qs, u"selection 0 to 0"_qs};
    QCOMPARE(told, expected);
}

QTEST_MAIN(AccessibleRichTextTest)
#include "AccessibleRichTextTest.moc"
