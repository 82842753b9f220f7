// SPDX-License-Identifier: MIT
#include "Support/NoThreads.h"

#include <KXFoundation/Platform/Core/SerialQueue.h>

#include <QtCore/QList>
#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

#include <atomic>
#include <functional>
#include <semaphore>
#include <thread>
#include <vector>

#include <csignal>
#include <pthread.h>

class SerialQueueTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void runsOperationsInOrderOnOneOtherThread()
    {
        kx::SerialQueue queue;
        QList<int> order;
        QList<std::thread::id> threads;
        for (int i = 0; i < 100; ++i)
            queue.addOperation([&, i] {
                order.append(i);
                threads.append(std::this_thread::get_id());
            });
        queue.waitUntilAllOperationsAreFinished();
        QCOMPARE(order.size(), 100);
        for (int i = 0; i < 100; ++i) {
            QCOMPARE(order[i], i);
            QVERIFY(threads[i] == threads[0] && threads[i] != std::this_thread::get_id());
        }
        QCOMPARE(queue.operationCount(), 0);
    }

    void needsNoWaitWithoutOperations()
    {
        kx::SerialQueue queue;
        queue.waitUntilAllOperationsAreFinished();
        queue.cancelAllOperations();
        QCOMPARE(queue.operationCount(), 0);
    }

    void cancelsOnlyWhatHasNotStarted()
    {
        kx::SerialQueue queue;
        std::binary_semaphore started(0), goOn(0);
        int ran = 0;
        queue.addOperation([&] {
            started.release();
            goOn.acquire();
            ++ran;
        });
        started.acquire();
        for (int i = 0; i < 10; ++i)
            queue.addOperation([&] { ran += 100; });
        QCOMPARE(queue.operationCount(), 11);
        queue.cancelAllOperations();
        QCOMPARE(queue.operationCount(), 1);
        queue.addOperation([&] { ran += 10; });
        goOn.release();
        queue.waitUntilAllOperationsAreFinished();
        QCOMPARE(ran, 11);
    }

    void waitsForTheRunningOperationAlsoWhenTheRestIsCancelled()
    {
        kx::SerialQueue queue;
        std::binary_semaphore started(0), goOn(0);
        std::atomic<bool> finished = false;
        queue.addOperation([&] {
            started.release();
            goOn.acquire();
            finished = true;
        });
        started.acquire();
        queue.addOperation([] {});
        std::atomic<bool> waited = false;
        std::jthread waiter([&] {
            queue.waitUntilAllOperationsAreFinished();
            waited = finished.load();
        });
        queue.cancelAllOperations();
        goOn.release();
        waiter.join();
        QVERIFY(waited);
    }

    void waitsOnlyForWhatWasAddedBefore()
    {
        std::atomic<bool> stop = false;
        std::atomic<int> runs = 0;
        kx::SerialQueue queue;
        std::function<void()> again = [&] { // the queue is never idle
            ++runs;
            if (!stop)
                queue.addOperation(again);
        };
        queue.addOperation(again);
        queue.waitUntilAllOperationsAreFinished(); // would hang if it waited for later ones too
        QVERIFY(runs > 0);
        stop = true;
        while (queue.operationCount() > 0)
            queue.waitUntilAllOperationsAreFinished();
    }

    void servesSeveralThatWait()
    {
        kx::SerialQueue queue;
        std::atomic<int> done = 0, early = 0;
        {
            std::vector<std::jthread> threads;
            for (int t = 0; t < 4; ++t)
                threads.emplace_back([&] {
                    for (int i = 0; i < 300; ++i) {
                        std::atomic<bool> mine = false;
                        queue.addOperation([&] {
                            mine = true;
                            ++done;
                        });
                        queue.waitUntilAllOperationsAreFinished();
                        early += !mine;
                    }
                });
        }
        QCOMPARE(done.load(), 1200);
        QCOMPARE(early.load(), 0);
    }

    void returnsAtOnceFromAWaitInsideAnOperation()
    {
        kx::SerialQueue queue;
        bool returned = false;
        queue.addOperation([&] {
            queue.addOperation([] {});
            queue.waitUntilAllOperationsAreFinished();
            returned = true;
        });
        queue.waitUntilAllOperationsAreFinished();
        QVERIFY(returned);
    }

    void letsGoOfAnOperationBeforeItCountsAsFinished()
    {
        kx::SerialQueue queue;
        const auto held = std::make_shared<int>(1);
        for (int i = 0; i < 100; ++i) {
            queue.addOperation([held] {});
            queue.waitUntilAllOperationsAreFinished();
            QCOMPARE(held.use_count(), 1L);
        }
        std::binary_semaphore started(0), goOn(0);
        queue.addOperation([&] {
            started.release();
            goOn.acquire();
        });
        started.acquire();
        queue.addOperation([held] {});
        queue.cancelAllOperations();
        QCOMPARE(held.use_count(), 1L);
        goOn.release();
    }

    void finishesTheRunningOperationWhenItGoes()
    {
        std::atomic<bool> finished = false;
        std::atomic<int> others = 0;
        std::binary_semaphore started(0), goOn(0);
        auto queue = std::make_unique<kx::SerialQueue>();
        queue->addOperation([&] {
            started.release();
            goOn.acquire();
            finished = true;
        });
        queue->addOperation([&] { ++others; });
        started.acquire();
        queue->cancelAllOperations();
        std::jthread releasing([&] { goOn.release(); });
        queue.reset();
        QVERIFY(finished);
        QCOMPARE(others.load(), 0);
    }

    void dropsWhatTheRunningOperationAddsWhileItGoes()
    {
        std::atomic<int> others = 0;
        std::binary_semaphore started(0);
        auto queue = std::make_unique<kx::SerialQueue>();
        auto waiting = std::make_shared<int>(0); // dropped by the destructor
        const std::weak_ptr<int> going = waiting;
        queue->addOperation([&started, &others, &going, same = queue.get()] {
            started.release();
            while (!going.expired())
                std::this_thread::yield();
            same->addOperation([&others] { ++others; });
            same->waitUntilAllOperationsAreFinished(); // would hang if it waited for itself
        });
        started.acquire();
        queue->addOperation([waiting = std::move(waiting)] {});
        queue.reset();
        QCOMPARE(others.load(), 0);
    }

    void mayBeDroppedByItsOwnOperation()
    {
        std::binary_semaphore dropped(0);
        auto queue = std::make_shared<kx::SerialQueue>();
        kx::SerialQueue &borrowed = *queue;
        borrowed.addOperation(
            [holder = std::make_shared<std::shared_ptr<kx::SerialQueue>>(std::move(queue)), &dropped] {
                holder->reset();
                dropped.release();
            });
        dropped.acquire();
    }

    void dropsWhatItGetsNoThreadFor()
    {
        kx::SerialQueue queue;
        int ran = 0;
        {
            const kx::test::NoThreads none;
            queue.addOperation([&] { ran += 10; });
        }
        QCOMPARE(queue.operationCount(), 0);
        queue.waitUntilAllOperationsAreFinished();
        queue.addOperation([&] { ++ran; });
        queue.waitUntilAllOperationsAreFinished();
        QCOMPARE(ran, 1);
    }

    void leavesSignalsToOtherThreads()
    {
        kx::SerialQueue queue;
        bool blocked = false;
        queue.addOperation([&] {
            sigset_t mask;
            blocked = pthread_sigmask(SIG_SETMASK, nullptr, &mask) == 0 && sigismember(&mask, SIGTERM) == 1
                && sigismember(&mask, SIGXFSZ) == 1;
        });
        queue.waitUntilAllOperationsAreFinished();
        QVERIFY(blocked);
        sigset_t mine;
        QCOMPARE(pthread_sigmask(SIG_SETMASK, nullptr, &mine), 0);
        QCOMPARE(sigismember(&mine, SIGTERM), 0);
    }
};

QTEST_GUILESS_MAIN(SerialQueueTest)
#include "SerialQueueTest.moc"
