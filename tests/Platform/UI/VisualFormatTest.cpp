// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/Format.h>
#include <KXFoundation/Platform/UI/LayoutConstraint.h>
#include <KXFoundation/Platform/UI/View.h>

#include <QtTest/QTest>

#include <limits>
#include <memory>

using namespace Qt::StringLiterals;

using kx::LayoutConstraint;

class VisualFormatTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();

    void placesViews_data();
    void placesViews();
    void readsWhatFormatPrints();
    void refusesOtherTexts_data();
    void refusesOtherTexts();
    void needsASuperviewAtAnEdge();
    void needsNoneBetweenViews();

private:
    [[nodiscard]] QList<kx::LayoutConstraintRef> read(const QString &format) const
    {
        return LayoutConstraint::constraintsWithVisualFormat(format,
            {{u"gap"_qs, 6}, {u"wide"_qs, 50}, {u"endless"_qs, std::numeric_limits<double>::infinity()}},
            {{u"a"_qs, m_a}, {u"b_2"_qs, m_b}, {u"none"_qs, nullptr}});
    }

    std::unique_ptr<kx::View> m_root;
    kx::View *m_a = nullptr;
    kx::View *m_b = nullptr;
};

void VisualFormatTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    m_root = std::make_unique<kx::View>();
    m_root->setFrame(QRectF(0, 0, 200, 100));
    m_a = new kx::View(m_root.get());
    m_b = new kx::View(m_root.get());
    m_a->setGeometry(1, 2, 10, 20);
    m_b->setGeometry(3, 4, 30, 40);
}

void VisualFormatTest::placesViews_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QRect>("a");
    QTest::addColumn<QRect>("b");
    const QRect a(1, 2, 10, 20);
    const QRect b(3, 4, 30, 40);

    QTest::newRow("alone") << u"[a]"_qs << a << b;
    QTest::newRow("at the edge") << u"|[a]"_qs << QRect(0, 2, 10, 20) << b;
    QTest::newRow("from the edge") << u"H:|-7-[a]"_qs << QRect(7, 2, 10, 20) << b;
    QTest::newRow("to the far edge") << u"[a]-7-|"_qs << QRect(183, 2, 10, 20) << b;
    QTest::newRow("between the edges") << u"|-7-[a]-3-|"_qs << QRect(7, 2, 190, 20) << b;
    QTest::newRow("from the top") << u"V:|-7-[a]"_qs << QRect(1, 7, 10, 20) << b;
    QTest::newRow("to the bottom") << u"V:[a]|"_qs << QRect(1, 80, 10, 20) << b;
    QTest::newRow("height") << u"V:[a(33)]"_qs << QRect(1, 2, 10, 33) << b;
    QTest::newRow("width") << u"[a(==33)]"_qs << QRect(1, 2, 33, 20) << b;
    QTest::newRow("width by name") << u"[a(wide)]"_qs << QRect(1, 2, 50, 20) << b;
    QTest::newRow("width of a view") << u"[a(==b_2)]"_qs << QRect(1, 2, 30, 20) << b;
    QTest::newRow("two widths: the first") << u"[a(33,==44)]"_qs << QRect(1, 2, 33, 20) << b;
    QTest::newRow("side by side") << u"|[a][b_2]"_qs << QRect(0, 2, 10, 20) << QRect(10, 4, 30, 40);
    QTest::newRow("apart") << u"|-2-[a]-gap-[b_2]"_qs << QRect(2, 2, 10, 20) << QRect(18, 4, 30, 40);
    QTest::newRow("overlapping") << u"|[a]--6.000000-[b_2]"_qs << QRect(0, 2, 10, 20) << QRect(4, 4, 30, 40);
    QTest::newRow("shared") << u"|[a(==b_2)]-20-[b_2]|"_qs << QRect(0, 2, 90, 20) << QRect(110, 4, 90, 40);
}

void VisualFormatTest::placesViews()
{
    QFETCH(QString, format);
    const auto made = read(format);
    QVERIFY(made.size() > 0 || format == u"[a]"_qs);
    LayoutConstraint::activateConstraints(made);
    QTEST(m_a->geometry(), "a");
    QTEST(m_b->geometry(), "b");
}

void VisualFormatTest::readsWhatFormatPrints()
{
    const QString format = kx::format("H:|-0-[a(==%f)]-%f-[b_2(==%f)]", 14.0, 6.0, 14.5);
    QCOMPARE(format, u"H:|-0-[a(==14.000000)]-6.000000-[b_2(==14.500000)]"_qs);
    const auto made = read(format);
    QCOMPARE(made.size(), 4);
    QCOMPARE(made[0]->constant(), 0.0);
    QCOMPARE(made[1]->constant(), 14.0);
    QCOMPARE(made[2]->constant(), 6.0);
    QCOMPARE(made[2]->firstItem(), m_b);
    QCOMPARE(made[2]->secondItem(), m_a);
    QCOMPARE(made[3]->constant(), 14.5);
}

void VisualFormatTest::refusesOtherTexts_data()
{
    QTest::addColumn<QString>("format");

    for (const char *format : {"", "H:", "V:", "|", "||", "|-", "|-5-", "-5-[a]", "[", "[]", "[a", "a", "[a]]", "[c]",
             "[none]", "[a][c]", "[a]-", "[a]-5", "[a]-5-", "[a]--[b_2]", "[a]-5[b_2]", "[a]-x-[b_2]", "[a]-5-|[b_2]",
             "[a]||", "[a()]", "[a(==)]", "[a(=5)]", "[a(>=5)]", "[a(5]", "[a(5,)]", "[a(c)]", "[a(5.)]x", "[a(1.2.3)]",
             "[a(5@1000)]", "[a(endless)]", "[a(inf)]", "[a]-endless-[b_2]", "|-nan-[a]", "X:[a]", "h:[a]", "[a] [b_2]",
             " [a]", "[2b]"})
        QTest::newRow(format) << QString::fromLatin1(format);
    QTest::newRow("none") << QString();
    QTest::newRow("beyond a number") << u"[a(%1)]"_qs.arg(QString(400, u'9'));
}

void VisualFormatTest::refusesOtherTexts()
{
    QFETCH(QString, format);
    QVERIFY(read(format).isEmpty());
}

void VisualFormatTest::needsASuperviewAtAnEdge()
{
    const auto a = std::make_unique<kx::View>();
    m_a = a.get();
    for (const QString &format : {u"|[a]"_qs, u"[a]|"_qs})
        QVERIFY(read(format).isEmpty());
}

void VisualFormatTest::needsNoneBetweenViews()
{
    const auto a = std::make_unique<kx::View>();
    const auto b = std::make_unique<kx::View>();
    m_a = a.get();
    m_b = b.get();
    QCOMPARE(read(u"[a]-gap-[b_2]"_qs).size(), 1);
}

QTEST_MAIN(VisualFormatTest)
#include "VisualFormatTest.moc"
