// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/Font.h>

#include <QtGui/QFontMetricsF>
#include <QtGui/QGuiApplication>
#include <QtGui/QRawFont>
#include <QtGui/QScreen>
#include <QtTest/QTest>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();

QString installedFamily(const kx::Font &font)
{
    return QRawFont::fromFont(font.toQFont()).familyName();
}

} // namespace

class FontTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_qs)); }

    void isNoneByDefault();
    void knowsItselfAndItsValue();
    void isImplicitFromQFont();
    void findsFamiliesAndFaces_data();
    void findsFamiliesAndFaces();
    void takesTheHostsSubstitute();
    void asksAgainForASubstitute();
    void aPointIsALogicalPixel_data();
    void aPointIsALogicalPixel();
    void readsTheSizeOfEveryKindOfQFont();
    void changesTheSizeInANewFont();
    void hasNoSizeThatIsNone_data();
    void hasNoSizeThatIsNone();
    void hugeSizesAreMeasured();
};

void FontTest::isNoneByDefault()
{
    const kx::Font none;
    QVERIFY(!none);
    QVERIFY(none == nullptr);
    QVERIFY(none == kx::Font(nullptr));
    QCOMPARE(none.pointSize(), 0.0);
    QVERIFY(!none.withSize(12));
    QCOMPARE(none.toQFont(), QFont());
}

void FontTest::knowsItselfAndItsValue()
{
    const kx::Font font = kx::Font::named(u"DejaVu Sans"_qs, 13);
    const kx::Font copy = font;
    const kx::Font equal = kx::Font::named(u"DejaVu Sans"_qs, 13);
    QVERIFY(font == copy);
    QVERIFY(font != equal);
    QVERIFY(font.sameValue(equal));
    QVERIFY(!font.sameValue(font.withSize(14)));
}

void FontTest::isImplicitFromQFont()
{
    QFont serif(u"DejaVu Serif"_qs);
    serif.setPixelSize(20);
    const kx::Font font = serif;
    QCOMPARE(font.toQFont(), serif);
    QCOMPARE(font.pointSize(), 20.0);
}

void FontTest::findsFamiliesAndFaces_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("family");
    QTest::addColumn<bool>("bold");
    QTest::newRow("family") << u"DejaVu Sans"_qs << u"DejaVu Sans"_qs << false;
    QTest::newRow("family in another case") << u"dejavu sans"_qs << u"DejaVu Sans"_qs << false;
    QTest::newRow("bold face") << u"DejaVuSans-Bold"_qs << u"DejaVu Sans"_qs << true;
    QTest::newRow("plain face") << u"DejaVuSans-Book"_qs << u"DejaVu Sans"_qs << false;
    QTest::newRow("face of another family") << u"DejaVuSansMono-Bold"_qs << u"DejaVu Sans Mono"_qs << true;
    QTest::newRow("unknown style") << u"DejaVuSans-Chiselled"_qs << QString() << false;
    QTest::newRow("unknown family") << u"Nobody-Bold"_qs << QString() << false;
    QTest::newRow("unknown, no hyphen") << u"Nobody"_qs << QString() << false;
    QTest::newRow("hyphen alone") << u"-"_qs << QString() << false;
    QTest::newRow("empty") << u""_qs << QString() << false;
    QTest::newRow("null") << QString() << QString() << false;
}

void FontTest::findsFamiliesAndFaces()
{
    QFETCH(QString, name);
    QFETCH(QString, family);
    const kx::Font font = kx::Font::named(name, 15);
    QCOMPARE(bool(font), !family.isNull());
    if (!font)
        return;
    QCOMPARE(installedFamily(font), family);
    QCOMPARE(font.pointSize(), 15.0);
    QTEST(QRawFont::fromFont(font.toQFont()).weight() >= QFont::Bold, "bold");
}

void FontTest::takesTheHostsSubstitute()
{
    const QString name = u"Missing-Regular"_qs;
    QVERIFY(!kx::Font::named(name, 12));
    QFont::insertSubstitutions(name, {u"Missing Too"_qs, u"DejaVuSerif-Bold"_qs, u"DejaVu Sans"_qs});
    const kx::Font font = kx::Font::named(name, 12);
    QFont::removeSubstitutions(name);
    QVERIFY(bool(font));
    QCOMPARE(installedFamily(font), u"DejaVu Serif"_qs);
    QCOMPARE(font.pointSize(), 12.0);
    QVERIFY(!kx::Font::named(name, 12));
}

void FontTest::asksAgainForASubstitute()
{
    const QString installed = u"DejaVu Sans"_qs;
    QFont::insertSubstitution(installed, u"DejaVu Serif"_qs);
    const kx::Font font = kx::Font::named(installed, 12);
    QFont::removeSubstitutions(installed);
    QCOMPARE(installedFamily(font), installed); // an installed face has no need of one
}

void FontTest::aPointIsALogicalPixel_data()
{
    QTest::addColumn<double>("size");
    QTest::newRow("whole") << 13.0;
    QTest::newRow("half") << 13.5;
    QTest::newRow("small") << 0.75;
    QTest::newRow("large") << 300.0;
}

void FontTest::aPointIsALogicalPixel()
{
    QFETCH(double, size);
    const kx::Font font = kx::Font::named(u"DejaVu Sans"_qs, size);
    QVERIFY(qAbs(font.pointSize() - size) < 0.001);
    // Hinted fonts are drawn with whole numbers of pixels.
    QVERIFY(qAbs(QRawFont::fromFont(font.toQFont()).pixelSize() - size) <= 0.5);
}

void FontTest::readsTheSizeOfEveryKindOfQFont()
{
    QFont font(u"DejaVu Sans"_qs);
    for (const double qtPoints : {6.0, 9.0, 10.5}) {
        font.setPointSizeF(qtPoints);
        const double size = kx::Font(font).pointSize();
        QCOMPARE(size, qtPoints * QGuiApplication::primaryScreen()->logicalDotsPerInchY() / 72);
        QVERIFY(qAbs(QRawFont::fromFont(font).pixelSize() - size) <= 0.5);
    }
}

void FontTest::changesTheSizeInANewFont()
{
    const kx::Font font = kx::Font::named(u"DejaVuSans-Bold"_qs, 12);
    const kx::Font larger = font.withSize(24);
    QVERIFY(larger != font);
    QCOMPARE(font.pointSize(), 12.0);
    QCOMPARE(larger.pointSize(), 24.0);
    QCOMPARE(installedFamily(larger), installedFamily(font));
    QVERIFY(larger.toQFont().bold());
}

void FontTest::hasNoSizeThatIsNone_data()
{
    QTest::addColumn<double>("size");
    QTest::newRow("zero") << 0.0;
    QTest::newRow("negative") << -3.0;
    QTest::newRow("no number") << notANumber;
    QTest::newRow("endless") << infinite;
}

void FontTest::hasNoSizeThatIsNone()
{
    QFETCH(double, size);
    QVERIFY(!kx::Font::named(u"DejaVu Sans"_qs, size));
    QVERIFY(!kx::Font(QFont()).withSize(size));
}

void FontTest::hugeSizesAreMeasured()
{
    const kx::Font font = kx::Font::named(u"DejaVu Sans"_qs, 1e300);
    const double width = QFontMetricsF(font.toQFont()).horizontalAdvance(u"wide"_qs);
    QVERIFY(std::isfinite(width) && width > 1000);
}

QTEST_MAIN(FontTest)
#include "FontTest.moc"
