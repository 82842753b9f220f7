// SPDX-License-Identifier: MIT
#include <KXFoundation/ActionKit/KXActionProcessor.h>

#include <KXFoundation/ActionKit/KXActionItem.h>

#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

class KXActionProcessorTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void startsWithoutATable()
    {
        const KXActionProcessor processor(QStringLiteral("kx"));
        QCOMPARE(processor.scheme(), QStringLiteral("kx"));
        QVERIFY(!processor.acitonHandlerMap());
        QVERIFY(!processor.handlerForPath(QStringLiteral("/p")));
    }

    void findsHandlersByTheExactPath()
    {
        KXActionProcessor processor(QStringLiteral("kx"));
        processor.registerHandler([](const KXActionItem &) {}, QStringLiteral("play"));
        QVERIFY(processor.handlerForPath(QStringLiteral("play")));
        for (const char *path : {"/play", "Play", "play/", "", "pla"})
            QVERIFY2(!processor.handlerForPath(QString::fromLatin1(path)), path);
    }

    void replacesAHandler()
    {
        KXActionProcessor processor(QStringLiteral("kx"));
        int first = 0;
        int second = 0;
        processor.registerHandler([&](const KXActionItem &) { ++first; }, QStringLiteral("/p"));
        processor.registerHandler([&](const KXActionItem &) { ++second; }, QStringLiteral("/p"));
        processor.handlerForPath(QStringLiteral("/p"))(KXActionItem());
        QCOMPARE(first, 0);
        QCOMPARE(second, 1);
        QCOMPARE(processor.acitonHandlerMap()->size(), 1);
    }

    void anEmptyHandlerRemovesThePath()
    {
        KXActionProcessor processor(QStringLiteral("kx"));
        processor.registerHandler([](const KXActionItem &) {}, QStringLiteral("/p"));
        processor.registerHandler({}, QStringLiteral("/p"));
        QVERIFY(!processor.handlerForPath(QStringLiteral("/p")));
        QVERIFY(processor.acitonHandlerMap());
        QVERIFY(processor.acitonHandlerMap()->isEmpty());
        processor.registerHandler({}, QStringLiteral("/never"));
        QVERIFY(processor.acitonHandlerMap()->isEmpty());
    }

    void aTableNeverChangesOnceMade()
    {
        KXActionProcessor processor(QStringLiteral("kx"));
        processor.registerHandler([](const KXActionItem &) {}, QStringLiteral("/a"));
        const KXActionProcessor::HandlerMap before = processor.acitonHandlerMap();
        processor.registerHandler([](const KXActionItem &) {}, QStringLiteral("/b"));
        QCOMPARE(before->size(), 1);
        QCOMPARE(processor.acitonHandlerMap()->size(), 2);
        processor.setAcitonHandlerMap(before);
        QVERIFY(!processor.handlerForPath(QStringLiteral("/b")));
        processor.setAcitonHandlerMap(nullptr);
        QVERIFY(!processor.handlerForPath(QStringLiteral("/a")));
    }

    void anAbsentPathIsNobodys()
    {
        KXActionProcessor processor(QStringLiteral("kx"));
        processor.registerHandler([](const KXActionItem &) {}, QString());
        QVERIFY(!processor.acitonHandlerMap());
        processor.registerHandler([](const KXActionItem &) {}, QStringLiteral(""));
        QVERIFY(processor.handlerForPath(QStringLiteral("")));
        QVERIFY(!processor.handlerForPath(QString()));
    }
};

QTEST_GUILESS_MAIN(KXActionProcessorTest)
#include "KXActionProcessorTest.moc"
