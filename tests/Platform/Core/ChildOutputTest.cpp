// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/ChildOutput.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QEventLoop>
#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

#include <atomic>
#include <semaphore>
#include <thread>

namespace {

constexpr int patience = 20000; // milliseconds; reached only by a failing test

void append(kx::ChildOutput &output, const QByteArray &text)
{
    QByteArray bytes = text;
    output.append(bytes);
    if (!bytes.isEmpty())
        qFatal("not taken in");
}

} // namespace

class ChildOutputTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
        m_output = kx::ChildOutput::create();
    }

    // --- bytes

    void givesEachByteOnceAndInOrder()
    {
        QCOMPARE(m_output->availableData(), QByteArray());
        append(*m_output, "a");
        append(*m_output, QByteArray());
        append(*m_output, "bc");
        QCOMPARE(m_output->availableData(), QByteArray("abc"));
        QCOMPARE(m_output->availableData(), QByteArray());
        append(*m_output, "d");
        QCOMPARE(m_output->availableData(), QByteArray("d"));
    }

    void discardsWhatIsThereAndWhatComes()
    {
        append(*m_output, "a");
        m_output->discard();
        append(*m_output, "b");
        QCOMPARE(m_output->availableData(), QByteArray());
        int calls = 0;
        m_output->notifyOnce([&] { ++calls; });
        append(*m_output, "c");
        QCoreApplication::processEvents();
        QCOMPARE(calls, 0);
    }

    // --- notification

    void tellsOnceFromTheLoop()
    {
        int calls = 0;
        m_output->notifyOnce([&] { ++calls; });
        QCoreApplication::processEvents();
        QCOMPARE(calls, 0); // nothing is there
        append(*m_output, "a");
        append(*m_output, "b");
        QCOMPARE(calls, 0); // not from append()
        QCoreApplication::processEvents();
        QCOMPARE(calls, 1);
        append(*m_output, "c");
        QCoreApplication::processEvents();
        QCOMPARE(calls, 1); // nobody asked again
        QCOMPARE(m_output->availableData(), QByteArray("abc"));
    }

    void tellsOfWhatIsThereAlready()
    {
        append(*m_output, "a");
        int calls = 0;
        m_output->notifyOnce([&] { ++calls; });
        QCOMPARE(calls, 0);
        QCoreApplication::processEvents();
        QCOMPARE(calls, 1);
    }

    void doesNotTellOfWhatWasTakenMeanwhile()
    {
        int calls = 0;
        m_output->notifyOnce([&] { ++calls; });
        append(*m_output, "a");
        QCOMPARE(m_output->availableData(), QByteArray("a"));
        QCoreApplication::processEvents();
        QCOMPARE(calls, 0);
        append(*m_output, "b"); // the wish still stands
        QCoreApplication::processEvents();
        QCOMPARE(calls, 1);
    }

    void aNewWishReplacesTheOldOne()
    {
        int first = 0;
        int second = 0;
        m_output->notifyOnce([&] { ++first; });
        append(*m_output, "a");
        m_output->notifyOnce([&] { ++second; });
        QCoreApplication::processEvents();
        QCOMPARE(first, 0);
        QCOMPARE(second, 1);
    }

    void aWishFromAnotherThreadTakesTheCallThere()
    {
        m_output->notifyOnce([] { qFatal("the old wish"); });
        append(*m_output, "a");
        std::thread::id called;
        std::thread other([&] {
            QEventLoop loop;
            m_output->notifyOnce([&] {
                called = std::this_thread::get_id();
                loop.quit();
            });
            loop.exec();
        });
        const std::thread::id id = other.get_id();
        other.join();
        QVERIFY(called == id);
        QCoreApplication::processEvents(); // what was posted here finds nothing to do
    }

    void doesNotOverlapThroughANestedLoop()
    {
        int depth = 0;
        int deepest = 0;
        int calls = 0;
        std::function<void()> ready = [&] {
            deepest = std::max(deepest, ++depth);
            (void)m_output->availableData();
            m_output->notifyOnce(ready);
            if (++calls == 1) {
                append(*m_output, "b");
                QCoreApplication::processEvents();
            }
            --depth;
        };
        m_output->notifyOnce(ready);
        append(*m_output, "a");
        QTRY_COMPARE_WITH_TIMEOUT(calls, 2, patience);
        QCOMPARE(deepest, 1);
    }

    // --- its end

    void tellsNothingAfterTheStop()
    {
        int calls = 0;
        m_output->notifyOnce([&] { ++calls; });
        append(*m_output, "a");
        m_output->stopNotifying();
        QCoreApplication::processEvents();
        m_output->notifyOnce([&] { ++calls; });
        append(*m_output, "b");
        QCoreApplication::processEvents();
        QCOMPARE(calls, 0);
        QCOMPARE(m_output->availableData(), QByteArray("ab")); // which is still there
    }

    void mayBeStoppedByItsOwnCall()
    {
        int calls = 0;
        m_output->notifyOnce([&] {
            ++calls;
            m_output->stopNotifying();
        });
        append(*m_output, "a");
        QCoreApplication::processEvents();
        QCOMPARE(calls, 1);
    }

    void theStopWaitsForACallOnAnotherThread()
    {
        std::binary_semaphore inside{0};
        std::atomic<bool> returned = false;
        std::thread other([&] {
            QEventLoop loop;
            m_output->notifyOnce([&] {
                inside.release();
                std::this_thread::sleep_for(std::chrono::milliseconds(50)); // long enough for a stop that does not wait
                returned = true;
                loop.quit();
            });
            append(*m_output, "a");
            loop.exec();
        });
        inside.acquire();
        m_output->stopNotifying();
        const bool before = returned;
        other.join();
        QVERIFY(before);
    }

    void letsGoOfWhatItWasGiven()
    {
        const auto token = std::make_shared<int>(0);
        m_output->notifyOnce([token] {});
        m_output->notifyOnce([token] {});
        QCOMPARE(token.use_count(), 2);
        append(*m_output, "a");
        QCoreApplication::processEvents();
        QCOMPARE(token.use_count(), 1);
        m_output->notifyOnce([token] {});
        m_output->stopNotifying();
        QCOMPARE(token.use_count(), 1);
    }

    void mayGoWhileACallIsOnItsWay()
    {
        int calls = 0;
        m_output->notifyOnce([&] { ++calls; });
        append(*m_output, "a");
        m_output.reset();
        QCoreApplication::processEvents();
        QCOMPARE(calls, 0);
    }

private:
    std::shared_ptr<kx::ChildOutput> m_output;
};

QTEST_GUILESS_MAIN(ChildOutputTest)
#include "ChildOutputTest.moc"
