// SPDX-License-Identifier: MIT
#include <KXFoundation/RichTextView/KXLabel.h>

#include <QtCore/QRegularExpression>
#include <QtGui/QAccessible>
#include <QtGui/QFontMetricsF>
#include <QtGui/QImage>
#include <QtGui/QRawFont>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QBoxLayout>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

/// A face that nobody has, and the one that stands in for it.
const QString &face()
{
    static const QString name = u"PingFangSC-Regular"_qs;
    return name;
}

/// Asks for a repaint each time the run is made anew.
class CountingLabel : public KXLabel {
public:
    using KXLabel::KXLabel;

    /// How often that happened in `change`.
    template <class Change> int rebuildsIn(Change change)
    {
        QCoreApplication::processEvents();
        const int before = m_paints;
        change();
        QCoreApplication::processEvents();
        return m_paints - before;
    }

protected:
    void paintEvent(QPaintEvent *event) override
    {
        ++m_paints;
        KXLabel::paintEvent(event);
    }

private:
    int m_paints = 0;
};

QString attributesOf(KXLabel &label)
{
    int start = 0;
    int end = 0;
    return QAccessible::queryAccessibleInterface(&label)->textInterface()->attributes(0, &start, &end);
}

} // namespace

class KXLabelTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_qs)); }
    void cleanup() { QFont::removeSubstitutions(face()); }

    void startsWithNothing();
    void showsItsText();
    void anEqualTextChangesNothing();
    void nullAndEmptyTextsDiffer();
    void anEqualButDistinctColorChangesTheRun();
    void anEqualButDistinctFontChangesTheRun();
    void aNewSizeReplacesTheFont();
    void theSameSizeDoesNothing();
    void aMissingFaceLeavesNoFont();
    void oddSizesLeaveNoFont_data();
    void oddSizesLeaveNoFont();
    void withoutColorAndFontItHasNoAttributes();
    void givesPropertiesToDesigner();
    void tellsItsLayout();
};

void KXLabelTest::startsWithNothing()
{
    const KXLabel label;
    QVERIFY(label.text().isNull());
    QVERIFY(!label.textColor());
    QVERIFY(!label.font());
    QCOMPARE(label.fontSize(), 0);
    QCOMPARE(label.contentSizeRect(), QRectF());
    QVERIFY(label.userInteraction());
}

void KXLabelTest::showsItsText()
{
    KXLabel label(u"One"_qs);
    QCOMPARE(label.text(), u"One"_qs);
    QFont font(u"DejaVu Sans"_qs);
    font.setPixelSize(20);
    label.setFont(font);
    QVERIFY(qAbs(label.contentSizeRect().width() - QFontMetricsF(font).horizontalAdvance(u"One"_qs)) < 0.1);
    label.setText(u"Two and more"_qs);
    QVERIFY(qAbs(label.contentSizeRect().width() - QFontMetricsF(font).horizontalAdvance(u"Two and more"_qs)) < 0.1);
    QVERIFY(label.font().toQFont() == font);
}

void KXLabelTest::anEqualTextChangesNothing()
{
    CountingLabel label(u"One"_qs);
    label.resize(100, 30);
    label.show();
    QVERIFY(QTest::qWaitForWindowExposed(&label));
    QSignalSpy changed(&label, &KXLabel::textChanged);
    const QString equal = QString(u"O"_qs) + u"ne"_qs;
    QCOMPARE(label.rebuildsIn([&] { label.setText(equal); }), 0);
    QVERIFY(changed.isEmpty());
    QCOMPARE(label.rebuildsIn([&] { label.setText(u"Two"_qs); }), 1);
    QCOMPARE(changed.size(), 1);
}

void KXLabelTest::nullAndEmptyTextsDiffer()
{
    CountingLabel label(u""_qs);
    label.resize(100, 30);
    label.show();
    QVERIFY(QTest::qWaitForWindowExposed(&label));
    QCOMPARE(label.rebuildsIn([&] { label.setText(u""_qs); }), 0);
    QCOMPARE(label.rebuildsIn([&] { label.setText(QString()); }), 1);
    QVERIFY(label.text().isNull());
    QCOMPARE(label.rebuildsIn([&] { label.setText(QString()); }), 1); // null equals nothing
    QCOMPARE(label.rebuildsIn([&] { label.setText(u""_qs); }), 1);
    QVERIFY(!label.text().isNull());
}

void KXLabelTest::anEqualButDistinctColorChangesTheRun()
{
    CountingLabel label(u"One"_qs);
    label.resize(100, 30);
    label.show();
    QVERIFY(QTest::qWaitForWindowExposed(&label));
    const kx::Color red = QColor(Qt::red);
    QCOMPARE(label.rebuildsIn([&] { label.setTextColor(red); }), 1);
    QCOMPARE(label.rebuildsIn([&] { label.setTextColor(red); }), 0);
    const kx::Color equal = QColor(Qt::red);
    QCOMPARE(label.rebuildsIn([&] { label.setTextColor(equal); }), 1);
    QVERIFY(label.textColor() == equal);
    QVERIFY(attributesOf(label).contains(u"color:rgb(255,0,0)"_qs));
    label.setTextColor(nullptr);
    QVERIFY(!attributesOf(label).contains(u"color"_qs));
}

void KXLabelTest::anEqualButDistinctFontChangesTheRun()
{
    CountingLabel label(u"One"_qs);
    label.resize(100, 30);
    label.show();
    QVERIFY(QTest::qWaitForWindowExposed(&label));
    const kx::Font font = kx::Font::named(u"DejaVu Serif"_qs, 15);
    QCOMPARE(label.rebuildsIn([&] { label.setFont(font); }), 1);
    QCOMPARE(label.rebuildsIn([&] { label.setFont(font); }), 0);
    QCOMPARE(label.rebuildsIn([&] { label.setFont(kx::Font::named(u"DejaVu Serif"_qs, 15)); }), 1);
    QCOMPARE(attributesOf(label), u"font-family:\"DejaVu Serif\";"_qs);
    QCOMPARE(label.fontSize(), 0);
}

void KXLabelTest::aNewSizeReplacesTheFont()
{
    QFont::insertSubstitution(face(), u"DejaVu Serif"_qs);
    KXLabel label(u"One"_qs);
    label.setFont(kx::Font::named(u"DejaVu Sans"_qs, 30));
    label.setFontSize(18);
    QCOMPARE(label.fontSize(), 18);
    QCOMPARE(label.font().pointSize(), 18.0);
    QCOMPARE(QRawFont::fromFont(label.font().toQFont()).familyName(), u"DejaVu Serif"_qs);
    QCOMPARE(attributesOf(label), u"font-family:\"DejaVu Serif\";"_qs);
}

void KXLabelTest::theSameSizeDoesNothing()
{
    QFont::insertSubstitution(face(), u"DejaVu Serif"_qs);
    CountingLabel label(u"One"_qs);
    label.resize(100, 30);
    label.show();
    QVERIFY(QTest::qWaitForWindowExposed(&label));
    QCOMPARE(label.rebuildsIn([&] { label.setFontSize(18); }), 1);
    const kx::Font own = kx::Font::named(u"DejaVu Sans"_qs, 30);
    label.setFont(own);
    QCOMPARE(label.rebuildsIn([&] { label.setFontSize(18); }), 0);
    QVERIFY(label.font() == own);
    QCOMPARE(label.rebuildsIn([&] { label.setFontSize(0); }), 1);
    QVERIFY(!label.font());
    QCOMPARE(label.rebuildsIn([&] { label.setFontSize(-1); }), 1); // no font again, and yet another size
}

void KXLabelTest::aMissingFaceLeavesNoFont()
{
    KXLabel label(u"One"_qs);
    label.setFont(kx::Font::named(u"DejaVu Serif"_qs, 30));
    label.setFontSize(18);
    QCOMPARE(label.fontSize(), 18);
    QCOMPARE(bool(label.font()), bool(kx::Font::named(face(), 18))); // the face is missing on most systems
    QVERIFY(!attributesOf(label).contains(u"DejaVu Serif"_qs)); // the widget's font
}

void KXLabelTest::oddSizesLeaveNoFont_data()
{
    QTest::addColumn<int>("size");
    QTest::newRow("negative") << -3;
    QTest::newRow("least") << std::numeric_limits<int>::min();
}

void KXLabelTest::oddSizesLeaveNoFont()
{
    QFETCH(int, size);
    QFont::insertSubstitution(face(), u"DejaVu Serif"_qs);
    KXLabel label(u"One"_qs);
    label.setFontSize(18);
    label.setFontSize(size);
    QCOMPARE(label.fontSize(), size);
    QVERIFY(!label.font());
    label.setFontSize(std::numeric_limits<int>::max());
    QVERIFY(std::isfinite(label.intrinsicContentSize().width()));
}

void KXLabelTest::withoutColorAndFontItHasNoAttributes()
{
    KXLabel label(u"One"_qs);
    label.QWidget::setFont(QFont(u"DejaVu Serif"_qs));
    QCOMPARE(attributesOf(label), u"font-family:\"DejaVu Serif\";"_qs); // the widget's
    QVERIFY(!label.font());
}

void KXLabelTest::givesPropertiesToDesigner()
{
    KXLabel label;
    QVERIFY(label.setProperty("text", u"One"_qs));
    QVERIFY(label.setProperty("textColor", QColor(Qt::blue)));
    QVERIFY(label.setProperty("fontSize", 12));
    QCOMPARE(label.text(), u"One"_qs);
    QCOMPARE(label.property("textColor").value<QColor>(), QColor(Qt::blue));
    QCOMPARE(label.fontSize(), 12);
    QVERIFY(label.setProperty("textColor", QColor()));
    QVERIFY(!label.textColor());
}

void KXLabelTest::tellsItsLayout()
{
    QWidget window;
    auto *panel = new QWidget(&window);
    QHBoxLayout layout(panel);
    auto *label = new KXLabel(u"One"_qs);
    layout.addWidget(label, 0, Qt::AlignLeft | Qt::AlignTop);
    panel->resize(300, 100);
    window.resize(300, 100);
    window.show();
    QTRY_COMPARE(label->size(), label->sizeHint());
    label->setText(u"One and more"_qs);
    QTRY_COMPARE(label->size(), label->sizeHint());
}

QTEST_MAIN(KXLabelTest)
#include "KXLabelTest.moc"
