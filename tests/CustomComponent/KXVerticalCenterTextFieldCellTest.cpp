// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/KXVerticalCenterTextFieldCell.h>
#include <KXFoundation/Platform/UI/TextField.h>

#include <QtCore/QRegularExpression>
#include <QtGui/QImage>
#include <QtTest/QTest>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

/// Whose text needs a given height.
class SizedCell : public KXVerticalCenterTextFieldCell {
public:
    explicit SizedCell(double height)
        : m_height(height)
    {
    }
    [[nodiscard]] QSizeF cellSizeForBounds(const QRectF &bounds) const override
    {
        askedFor = bounds;
        return {10, m_height};
    }
    mutable QRectF askedFor;

private:
    double m_height;
};

} // namespace

class KXVerticalCenterTextFieldCellTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_qs)); }

    void centersItsText_data();
    void centersItsText();
    void drawsInTheMiddleOfItsField();
};

void KXVerticalCenterTextFieldCellTest::centersItsText_data()
{
    constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
    QTest::addColumn<double>("textHeight");
    QTest::addColumn<QRectF>("bounds");
    QTest::addColumn<QRectF>("expected");
    QTest::newRow("lower than its bounds") << 20.0 << QRectF(0, 0, 50, 100) << QRectF(0, 40, 50, 20);
    QTest::newRow("anywhere") << 20.0 << QRectF(7, 8, 50, 100) << QRectF(7, 48, 50, 20);
    QTest::newRow("half a point") << 19.0 << QRectF(0, 0, 50, 20) << QRectF(0, 0.5, 50, 19);
    QTest::newRow("as high") << 100.0 << QRectF(0, 0, 50, 100) << QRectF(0, 0, 50, 100);
    QTest::newRow("higher") << 120.0 << QRectF(0, 0, 50, 100) << QRectF(0, 0, 50, 100);
    QTest::newRow("in nothing") << 20.0 << QRectF() << QRectF();
    QTest::newRow("of no height that is one") << notANumber << QRectF(0, 0, 50, 100) << QRectF(0, 0, 50, 100);
}

void KXVerticalCenterTextFieldCellTest::centersItsText()
{
    QFETCH(double, textHeight);
    QFETCH(QRectF, bounds);
    const SizedCell cell(textHeight);
    QTEST(cell.drawingRectForBounds(bounds), "expected");
    QCOMPARE(cell.askedFor, bounds);
}

void KXVerticalCenterTextFieldCellTest::drawsInTheMiddleOfItsField()
{
    kx::TextField field;
    field.setCell(std::make_unique<KXVerticalCenterTextFieldCell>(u"HHH"_qs));
    field.resize(100, 100);
    QImage image(100, 100, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    field.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    int top = -1;
    int bottom = -1;
    for (int y = 0; y < 100; ++y) {
        for (int x = 0; x < 100; ++x) {
            if (image.pixelColor(x, y) != QColor(Qt::white)) {
                top = top < 0 ? y : top;
                bottom = y;
            }
        }
    }
    QVERIFY(top > 30 && bottom < 70);
    const double text = field.cell().cellSizeForBounds(field.bounds()).height();
    QVERIFY(top >= 50 - text / 2 - 1 && bottom <= 50 + text / 2);
}

QTEST_MAIN(KXVerticalCenterTextFieldCellTest)
#include "KXVerticalCenterTextFieldCellTest.moc"
