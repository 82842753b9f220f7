// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/Published.h>

#include <QtCore/QList>
#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

#include <thread>
#include <vector>

class PublishedTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void startsWithNothing() { QVERIFY(!kx::Published<int>().load()); }

    void readersKeepWhatTheyGot()
    {
        kx::Published<int> number;
        number.store(std::make_shared<const int>(1));
        const auto before = number.load();
        number.update([](const auto &current) { return std::make_shared<const int>(*current + 1); });
        QCOMPARE(*before, 1);
        QCOMPARE(*number.load(), 2);
        number.store(nullptr);
        QVERIFY(!number.load());
    }

    void anUpdateThatWasOvertakenIsMadeAgain()
    {
        kx::Published<QList<int>> list;
        int made = 0;
        list.update([&](const auto &current) {
            if (++made == 1)
                list.store(std::make_shared<const QList<int>>(QList<int>{1})); // somebody was faster
            auto next = std::make_shared<QList<int>>(current ? *current : QList<int>());
            next->append(2);
            return next;
        });
        QCOMPARE(made, 2);
        QCOMPARE(*list.load(), (QList<int>{1, 2}));
    }

    void losesNoUpdateOfOtherThreads()
    {
        kx::Published<int> number;
        number.store(std::make_shared<const int>(0));
        std::vector<std::thread> threads;
        for (int t = 0; t < 4; ++t) {
            threads.emplace_back([&] {
                for (int i = 0; i < 1000; ++i)
                    number.update([](const auto &current) { return std::make_shared<const int>(*current + 1); });
            });
        }
        for (std::thread &thread : threads)
            thread.join();
        QCOMPARE(*number.load(), 4000);
    }
};

QTEST_GUILESS_MAIN(PublishedTest)
#include "PublishedTest.moc"
