// SPDX-License-Identifier: MIT
#include <KXFoundation/RichTextView/KXAttributedString.h>

#include <QtTest/QTest>

using namespace Qt::StringLiterals;

namespace {

using kx::AttributedString;
using kx::TextAttributes;

kx::Color red()
{
    return QColor(Qt::red); // equal to every other one, the same as none
}

TextAttributes attributesAt(const KXAttributedString &run, quint64 location)
{
    return run.toAttributedString().attributesAt(location);
}

} // namespace

class KXAttributedStringTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_qs)); }

    void startsEmpty();
    void takesANullTextAsEmpty();
    void passesANullTextOnWithAttributes();
    void takesAttributesForTheWholeText();
    void copiesAnAttributedString();
    void constructorsSetNoStyle();
    void stylesTheWholeText();
    void doesNothingForTheSameObject();
    void takesAnEqualButDifferentObject();
    void leavesExactlyTheGivenBackground();
    void noneClearsTheBackground();
    void noneTakesNoColorOrFontAway();
    void stylesOnlyTheTextThatIsThere();
    void aNewTextIsUnstyled();
    void aStyleOnAnEmptyRunIsStoredOnly();
    void theCopyKeepsTheOldText();
    void sharesItsAttachmentsWithTheCopy();
    void forwardsToItsStore();
    void ignoresRangesOutside();
    void keepsItsClickHandler();
};

void KXAttributedStringTest::startsEmpty()
{
    const KXAttributedString run;
    QCOMPARE(run.string(), u""_qs);
    QVERIFY(!run.string().isNull());
    QVERIFY(!run.textColor());
    QVERIFY(!run.font());
    QVERIFY(!run.backgroundColor());
    QVERIFY(!run.onClick());
}

void KXAttributedStringTest::takesANullTextAsEmpty()
{
    KXAttributedString run{QString()};
    QVERIFY(!run.string().isNull());
    QCOMPARE(run.toAttributedString().length(), 0U);
    run.setString(u"ab"_qs);
    run.setString(QString());
    QVERIFY(!run.string().isNull());
    QCOMPARE(run.toAttributedString().length(), 0U);
}

void KXAttributedStringTest::passesANullTextOnWithAttributes()
{
    const KXAttributedString run(QString(), {.foregroundColor = red()});
    QVERIFY(run.string().isNull());
    QCOMPARE(run.toAttributedString().length(), 0U);
}

void KXAttributedStringTest::takesAttributesForTheWholeText()
{
    const kx::Color color = red();
    const KXAttributedString run(u"abc"_qs, {.foregroundColor = color});
    QCOMPARE(run.toAttributedString().runs().size(), 1);
    QVERIFY(attributesAt(run, 2).foregroundColor == color);
}

void KXAttributedStringTest::copiesAnAttributedString()
{
    kx::MutableAttributedString text(AttributedString(u"abc"_qs));
    text.addAttribute(&TextAttributes::foregroundColor, red(), {0, 1});
    const KXAttributedString run(text);
    text.deleteCharactersInRange({0, 3});
    QCOMPARE(run.string(), u"abc"_qs);
    QVERIFY(bool(attributesAt(run, 0).foregroundColor));
    QVERIFY(!attributesAt(run, 1).foregroundColor);
}

void KXAttributedStringTest::constructorsSetNoStyle()
{
    const TextAttributes all{.foregroundColor = red(), .font = QFont(), .backgroundColor = red()};
    const KXAttributedString withAttributes(u"a"_qs, all);
    const KXAttributedString copied(AttributedString(u"a"_qs, all));
    for (const KXAttributedString *run : {&withAttributes, &copied}) {
        QVERIFY(!run->textColor());
        QVERIFY(!run->font());
        QVERIFY(!run->backgroundColor());
    }
}

void KXAttributedStringTest::stylesTheWholeText()
{
    const kx::Color color = red();
    const kx::Font font = QFont();
    KXAttributedString run(u"abc"_qs);
    run.addAttribute(&TextAttributes::foregroundColor, Qt::blue, {1, 1});
    run.setTextColor(color);
    run.setFont(font);
    QCOMPARE(run.toAttributedString().runs().size(), 1);
    QCOMPARE(attributesAt(run, 1), (TextAttributes{.foregroundColor = color, .font = font}));
    QVERIFY(run.textColor() == color);
    QVERIFY(run.font() == font);
}

void KXAttributedStringTest::doesNothingForTheSameObject()
{
    const kx::Color color = red();
    const kx::Font font = QFont();
    KXAttributedString run(u"abc"_qs);
    run.setTextColor(color);
    run.setFont(font);
    run.setBackgroundColor(color);
    run.removeAttribute(&TextAttributes::foregroundColor, {0, 3});
    run.removeAttribute(&TextAttributes::font, {0, 3});
    run.removeAttribute(&TextAttributes::backgroundColor, {0, 3});
    run.setTextColor(color);
    run.setFont(font);
    run.setBackgroundColor(color);
    QCOMPARE(attributesAt(run, 0), TextAttributes());
}

void KXAttributedStringTest::takesAnEqualButDifferentObject()
{
    KXAttributedString run(u"abc"_qs);
    run.setTextColor(red());
    run.removeAttribute(&TextAttributes::foregroundColor, {0, 3});
    const kx::Color equal = red();
    QVERIFY(equal.sameValue(run.textColor()));
    run.setTextColor(equal);
    QVERIFY(run.textColor() == equal);
    QVERIFY(attributesAt(run, 0).foregroundColor == equal);
    run.setBackgroundColor(red());
    run.setBackgroundColor(equal);
    QVERIFY(run.backgroundColor() == equal);
    QVERIFY(attributesAt(run, 0).backgroundColor == equal);
    const kx::Font equalFont = QFont();
    run.setFont(QFont());
    run.setFont(equalFont);
    QVERIFY(run.font() == equalFont);
    QVERIFY(attributesAt(run, 0).font == equalFont);
}

void KXAttributedStringTest::leavesExactlyTheGivenBackground()
{
    const kx::Color color = red();
    KXAttributedString run(u"abc"_qs);
    run.addAttribute(&TextAttributes::backgroundColor, Qt::blue, {1, 1});
    run.setBackgroundColor(color);
    for (quint64 i = 0; i < 3; ++i)
        QVERIFY(attributesAt(run, i).backgroundColor == color);
    QVERIFY(run.backgroundColor() == color);
}

void KXAttributedStringTest::noneClearsTheBackground()
{
    KXAttributedString run(u"abc"_qs);
    run.setBackgroundColor(red());
    run.setBackgroundColor(nullptr);
    QVERIFY(!run.backgroundColor());
    const kx::Color background = attributesAt(run, 1).backgroundColor;
    QVERIFY(bool(background));
    QCOMPARE(background.alphaComponent(), 0.0);
}

void KXAttributedStringTest::noneTakesNoColorOrFontAway()
{
    KXAttributedString run(u"abc"_qs);
    run.setTextColor(red());
    run.setFont(QFont());
    run.setTextColor(nullptr);
    run.setFont(nullptr);
    QVERIFY(!run.textColor());
    QVERIFY(!run.font());
    QVERIFY(bool(attributesAt(run, 0).foregroundColor));
    QVERIFY(bool(attributesAt(run, 0).font));
}

void KXAttributedStringTest::stylesOnlyTheTextThatIsThere()
{
    KXAttributedString run(u"ab"_qs);
    run.setTextColor(red());
    run.appendAttributedString(AttributedString(u"c"_qs));
    run.insertAttributedString(AttributedString(u"-"_qs), 0);
    run.replaceCharactersInRange({1, 1}, AttributedString(u"x"_qs));
    QCOMPARE(run.string(), u"-xbc"_qs);
    for (const quint64 unstyled : {0U, 1U, 3U})
        QVERIFY(!attributesAt(run, unstyled).foregroundColor);
    QVERIFY(bool(attributesAt(run, 2).foregroundColor));
}

void KXAttributedStringTest::aNewTextIsUnstyled()
{
    const kx::Font font = QFont();
    KXAttributedString run(u"ab"_qs);
    run.setFont(font);
    run.setTextColor(red());
    run.setBackgroundColor(red());
    run.setString(u"cd"_qs);
    QVERIFY(run.font() == font);
    QCOMPARE(attributesAt(run, 0), TextAttributes());
    run.setFont(font);
    QVERIFY(!attributesAt(run, 0).font);
}

void KXAttributedStringTest::aStyleOnAnEmptyRunIsStoredOnly()
{
    const kx::Color color = red();
    KXAttributedString run;
    run.setTextColor(color);
    run.setBackgroundColor(color);
    QVERIFY(run.textColor() == color);
    QVERIFY(run.backgroundColor() == color);
    run.appendAttributedString(AttributedString(u"a"_qs));
    QCOMPARE(attributesAt(run, 0), TextAttributes());
}

void KXAttributedStringTest::theCopyKeepsTheOldText()
{
    KXAttributedString run(u"old"_qs);
    const AttributedString copy = run.toAttributedString();
    run.setTextColor(red());
    run.setString(u"new"_qs);
    QCOMPARE(copy.string(), u"old"_qs);
    QVERIFY(!copy.attributesAt(0).foregroundColor);
}

void KXAttributedStringTest::sharesItsAttachmentsWithTheCopy()
{
    const auto attachment = std::make_shared<kx::TextAttachment>();
    const KXAttributedString run{AttributedString(attachment)};
    QCOMPARE(run.toAttributedString().attributesAt(0).attachment, attachment);
}

void KXAttributedStringTest::forwardsToItsStore()
{
    KXAttributedString run(u"abcdef"_qs);
    run.addAttribute(&TextAttributes::baselineOffset, 2, {0, 2});
    run.addAttributes({.foregroundColor = red(), .baselineOffset = 3}, {1, 2});
    run.removeAttribute(&TextAttributes::foregroundColor, {2, 1});
    QCOMPARE(attributesAt(run, 0).baselineOffset, 2.0);
    QCOMPARE(attributesAt(run, 1).baselineOffset, 3.0);
    QVERIFY(bool(attributesAt(run, 1).foregroundColor));
    QVERIFY(!attributesAt(run, 2).foregroundColor);
    run.deleteCharactersInRange({1, 4});
    QCOMPARE(run.string(), u"af"_qs);
    run.setAttributedString(AttributedString(u"other"_qs, {.baselineOffset = 1}));
    QCOMPARE(run.string(), u"other"_qs);
    QCOMPARE(attributesAt(run, 4).baselineOffset, 1.0);
}

void KXAttributedStringTest::ignoresRangesOutside()
{
    KXAttributedString run(u"abc"_qs);
    run.addAttribute(&TextAttributes::foregroundColor, red(), {2, 2});
    run.addAttributes({.foregroundColor = red()}, {kx::notFound, 1});
    run.deleteCharactersInRange({4, 0});
    run.replaceCharactersInRange({1, quint64(-1)}, AttributedString(u"x"_qs));
    run.insertAttributedString(AttributedString(u"x"_qs), 4);
    QCOMPARE(run.string(), u"abc"_qs);
    QCOMPARE(attributesAt(run, 2), TextAttributes());
}

void KXAttributedStringTest::keepsItsClickHandler()
{
    const auto run = std::make_shared<KXAttributedString>(u"abc"_qs);
    std::shared_ptr<KXAttributedString> clicked;
    run->setOnClick([&](const std::shared_ptr<KXAttributedString> &hit) { clicked = hit; });
    run->onClick()(run);
    QCOMPARE(clicked, run);
    run->setOnClick(nullptr);
    QVERIFY(!run->onClick());
}

QTEST_MAIN(KXAttributedStringTest)
#include "KXAttributedStringTest.moc"
