// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/Mailbox.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QEventLoop>
#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

#include <thread>
#include <vector>

class MailboxTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void isOnePerThread()
    {
        const auto box = kx::Mailbox::ofThisThread();
        QCOMPARE(kx::Mailbox::ofThisThread(), box);
        std::shared_ptr<kx::Mailbox> other;
        std::thread([&] { other = kx::Mailbox::ofThisThread(); }).join();
        QVERIFY(other && other != box);
    }

    void runsLettersInOrderInItsOwnThread()
    {
        const auto box = kx::Mailbox::ofThisThread();
        std::vector<int> order;
        bool elsewhere = false;
        std::thread([&] {
            for (int i = 0; i < 100; ++i) {
                box->post([&, i, here = std::this_thread::get_id()] {
                    elsewhere = elsewhere || std::this_thread::get_id() == here;
                    order.push_back(i);
                });
            }
        }).join();
        QVERIFY(order.empty());
        QTRY_COMPARE(int(order.size()), 100);
        QVERIFY(std::is_sorted(order.begin(), order.end()));
        QVERIFY(!elsewhere);
    }

    void runsWhatWasPostedBeforeTheLoop()
    {
        bool ran = false;
        std::thread([&] {
            const auto box = kx::Mailbox::ofThisThread();
            QEventLoop loop;
            box->post([&] {
                ran = true;
                loop.quit();
            });
            loop.exec();
        }).join();
        QVERIFY(ran);
    }

    void mayGetALetterFromALetter()
    {
        const auto box = kx::Mailbox::ofThisThread();
        int ran = 0;
        box->post([&] {
            ++ran;
            box->post([&] { ++ran; });
        });
        QTRY_COMPARE(ran, 2);
    }

    void dropsWhatItsThreadDoesNotLiveToRead()
    {
        const auto token = std::make_shared<int>(0);
        std::shared_ptr<kx::Mailbox> box;
        std::thread([&] {
            box = kx::Mailbox::ofThisThread();
            box->post([token] { ++*token; });
        }).join();
        QCOMPARE(token.use_count(), 1);
        box->post([token] { ++*token; });
        QCOMPARE(token.use_count(), 1);
        QCOMPARE(*token, 0);
    }
};

QTEST_GUILESS_MAIN(MailboxTest)
#include "MailboxTest.moc"
