// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Web/QtWebEngine/PlainCall.h>

#include <QtTest/QTest>

class PlainCallTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void recognisesCallsWithJsonAlone_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<bool>("plain");
        const auto row = [](const char *script, bool plain) {
            QTest::newRow(script) << QString::fromUtf8(script) << plain;
        };
        for (const char *plain : {"f()", "f();", "a.b.c(1)", " f ( 1 , \"two\" , [3] , {\"four\":null} ) ; ",
                 "$_9(-0.5e+3)", "if(window._x){window._x.in({\"a\":[true,false]});}", "if (a) { b(); }",
                 "a.if.class()", "f(\"}{)(\")", "f(\"\\u00e9\\n\\\"\")", "f({\"a\":{\"a\":1}})", "f([])", "f({})",
                 "f(0)", "f(\"/*\")", "f(\"\u2028\")"})
            row(plain, true);
        for (const char *other : {"", ";", "f", "1", "f() g()", "f();;", "f() // x", "f()/**/", "f(x)", "f(1,)",
                 "f([1,])", "f({a:1})", "f({\"__proto__\":1})", "f({\"\\u005f_proto__\":1})", "f(01)", "f(1.)", "f(.5)",
                 "f(+1)", "f('one')", "f(`one`)", "f(\"a\nb\")", "f(\"\\x41\")", "f(\"\\u12g4\")", "f(\"\\", "f(\"a",
                 "f(", "f)", "}f();{", "f()}", "if(a){f()}", "if(a)f();", "if(a){f();}else{g();}", "if(a){f();}f();",
                 "if(1){f();}", "this.f()", "new F()", "function f(){}", "let()", "async()", "await()", "typeof(1)",
                 "throw(1)", "a..b()", "a.1()", "f()()", "f().g()", "f<!--()", "--f()", "f(NaN)", "f(tru)", "f(truex)",
                 "return f()", "\xc3\xa9()"})
            row(other, false);
        QTest::newRow("deep") << QLatin1String("f(") + QString(100, u'[') + QString(100, u']') + QLatin1String(")")
                              << true;
        QTest::newRow("too deep") << QLatin1String("f(") + QString(200000, u'[') + QLatin1String(")") << false;
        QTest::newRow("nul") << QStringLiteral("f(\"") + QChar(u'\0') + QStringLiteral("\")") << false;
        QTest::newRow("nul behind") << QStringLiteral("f()") + QChar(u'\0') << false;
    }
    void recognisesCallsWithJsonAlone()
    {
        QFETCH(QString, script);
        QFETCH(bool, plain);
        QCOMPARE(kx::isPlainCall(script), plain);
    }
    void takesNothingButTheWhole()
    {
        const QString script =
            QStringLiteral("if(window._x){window._x.in({\"a\":[true,-1.5e3,\"\\u00e9\"],\"b\":null});}");
        QVERIFY(kx::isPlainCall(script));
        for (qsizetype length = 0; length < script.size(); ++length)
            QVERIFY2(!kx::isPlainCall(QStringView(script).first(length)), qPrintable(script.first(length)));
    }
};

QTEST_APPLESS_MAIN(PlainCallTest)
#include "PlainCallTest.moc"
