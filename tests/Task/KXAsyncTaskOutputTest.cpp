// SPDX-License-Identifier: MIT
// What the child prints, and how it comes to the receiver.
#include "TaskRun.h"

#include <KXFoundation/Platform/Core/ChildProcess.h>

#include <QtCore/QEventLoop>
#include <QtCore/QRegularExpression>
#include <QtCore/QThread>

using namespace kx::test;

namespace {

// How often the event loop of the main thread was told that there is output. A piece that is dropped shows nowhere
// else.
class NotificationCount : public QObject {
public:
    NotificationCount() { QCoreApplication::instance()->installEventFilter(this); }
    [[nodiscard]] int count() const { return m_count; }

    bool eventFilter(QObject *, QEvent *event) override
    {
        m_count += event->type() == QEvent::User;
        return false;
    }

private:
    int m_count = 0;
};

} // namespace

class KXAsyncTaskOutputTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    // --- at the end

    void deliversTheWholeOutputAndThenTheStatusLine()
    {
        const Gate written;
        const Gate gate;
        TaskRun run({out, QStringLiteral("one\n"), QStringLiteral("tell"), written.path(), await, gate.path(), out,
            QStringLiteral("two")});
        QVERIFY(!run.execute());
        QVERIFY(written.told());
        QCoreApplication::processEvents(); // nothing is live
        QCOMPARE(run.texts(), QStringList());
        gate.open();
        QVERIFY(run.wait());
        QCOMPARE(run.texts(), (QStringList{QStringLiteral("one\ntwo"), exitLine(0)}));
    }

    void mergesBothStreamsInTheOrderInWhichTheyAreWritten()
    {
        TaskRun run({out, QStringLiteral("a"), QStringLiteral("err"), QStringLiteral("b"), out, QStringLiteral("c"),
            QStringLiteral("err"), QStringLiteral("d")});
        QVERIFY(run.run());
        QCOMPARE(run.texts(), (QStringList{QStringLiteral("abcd"), exitLine(0)}));
    }

    void deliversNoEmptyText()
    {
        TaskRun run({QStringLiteral("exit"), QStringLiteral("3")});
        QVERIFY(run.run());
        QCOMPARE(run.texts(), QStringList{QStringLiteral("terminationStatus:3terminationReason:1")});
    }

    void dropsWhatIsNotUtf8_data()
    {
        QTest::addColumn<QString>("hex");
        QTest::addColumn<QStringList>("delivered");
        const QStringList none;
        QTest::newRow("a lone continuation byte") << QStringLiteral("61806200") << none;
        QTest::newRow("the first half of a character") << QStringLiteral("61c3") << none;
        QTest::newRow("an overlong form") << QStringLiteral("c0af") << none;
        QTest::newRow("a surrogate") << QStringLiteral("eda080") << none;
        QTest::newRow("characters of all lengths")
            << QStringLiteral("41c3bce282acf09f8eac") << QStringList{QStringLiteral("Aü€🎬")};
        QTest::newRow("a byte order mark stays")
            << QStringLiteral("efbbbf41") << QStringList{QStringLiteral("\ufeffA")};
        QTest::newRow("NUL is a character")
            << QStringLiteral("410042") << QStringList{QStringLiteral("A") + QChar(0) + QStringLiteral("B")};
    }
    void dropsWhatIsNotUtf8()
    {
        QFETCH(const QString, hex);
        QFETCH(const QStringList, delivered);
        TaskRun run({QStringLiteral("hex"), hex});
        QVERIFY(run.run());
        QCOMPARE(run.texts(), delivered + QStringList{exitLine(0)});
    }

    void dropsEverythingWithoutAReceiver()
    {
        TaskRun run({out, QStringLiteral("lost"), QStringLiteral("exit"), QStringLiteral("2")});
        run.task->setLogReveiver({});
        QVERIFY(run.run());
        QCOMPARE(run.texts(), QStringList());
        QCOMPARE(run.task->terminationStatus(), 2);
    }

    void takesAReceiverThatIsSetLate()
    {
        const Gate gate;
        TaskRun run({out, QStringLiteral("text"), await, gate.path()});
        run.task->setLogReveiver({});
        QVERIFY(!run.execute());
        run.task->setLogReveiver(run.receiver());
        gate.open();
        QVERIFY(run.wait());
        QCOMPARE(run.texts(), (QStringList{QStringLiteral("text"), exitLine(0)}));
    }

    // --- live

    void deliversEachPieceAsItArrives()
    {
        const Gate gate;
        TaskRun run({out, QStringLiteral("one"), await, gate.path(), QStringLiteral("err"), QStringLiteral("two"),
                        await, gate.path()},
            true);
        QVERIFY(!run.execute());
        QTRY_COMPARE_WITH_TIMEOUT(run.texts(), QStringList{QStringLiteral("one")}, patience);
        gate.open();
        QTRY_COMPARE_WITH_TIMEOUT(run.texts(), (QStringList{QStringLiteral("one"), QStringLiteral("two")}), patience);
        QVERIFY(run.task->isRunning());
        gate.open();
        QVERIFY(run.wait());
        QCOMPARE(run.texts(), (QStringList{QStringLiteral("one"), QStringLiteral("two"), exitLine(0)}));
    }

    void deliversLiveInTheCallersThreadAndTheEndElsewhere()
    {
        const Gate gate;
        TaskRun run({out, QStringLiteral("live"), await, gate.path(), out, QStringLiteral("rest")}, true);
        QVERIFY(!run.execute());
        QTRY_COMPARE_WITH_TIMEOUT(int(run.pieces().size()), 1, patience);
        gate.open();
        QVERIFY(run.wait()); // the loop does not run: the second piece is left for the end
        const std::vector<TaskRun::Piece> pieces = run.pieces();
        QCOMPARE(run.texts(), (QStringList{QStringLiteral("live"), QStringLiteral("rest"), exitLine(0)}));
        QVERIFY(pieces[0].thread == std::this_thread::get_id());
        QVERIFY(pieces[1].thread != std::this_thread::get_id());
        QVERIFY(pieces[1].thread == pieces[2].thread);
        QVERIFY(pieces[2].thread == run.completionThread());
        QCoreApplication::processEvents(); // nothing comes late
        QCOMPARE(int(run.pieces().size()), 3);
    }

    void makesOnePieceOfWhatArrivedInTheMeantime()
    {
        const Gate written;
        const Gate gate;
        TaskRun run({out, QStringLiteral("a"), out, QStringLiteral("b"), QStringLiteral("tell"), written.path(), await,
                        gate.path()},
            true);
        QVERIFY(!run.execute());
        QVERIFY(written.told());
        // The child has written both; the thread that reads may still have the second in its hands.
        QTRY_COMPARE_WITH_TIMEOUT(run.texts().join(QString()), QStringLiteral("ab"), patience);
        gate.open();
        QVERIFY(run.wait());
        QCOMPARE(run.texts().last(), exitLine(0));
    }

    void dropsBothHalvesOfACharacterThatArriveApart()
    {
        const Gate gate;
        TaskRun run({QStringLiteral("hex"), QStringLiteral("61c3"), await, gate.path(), QStringLiteral("hex"),
                        QStringLiteral("bc62"), await, gate.path(), out, QStringLiteral("last")},
            true);
        const NotificationCount taken;
        QVERIFY(!run.execute());
        QTRY_COMPARE_WITH_TIMEOUT(taken.count(), 1, patience);
        gate.open();
        QTRY_COMPARE_WITH_TIMEOUT(taken.count(), 2, patience);
        gate.open();
        QVERIFY(run.wait());
        QCOMPARE(run.texts(), (QStringList{QStringLiteral("last"), exitLine(0)}));
    }

    void hasTheSameStreamWhateverThePieces()
    {
        TaskRun run({QStringLiteral("flood"), QStringLiteral("64")}, true);
        // Counts instead of collecting; lines are 16 bytes and numbered from 0 on.
        struct Check {
            QString carry;
            qint64 next = 0;
            qint64 pieces = 0;
            bool well = true;
            QString last;
        };
        const auto check = std::make_shared<Check>();
        run.task->setLogReveiver([check](const QString &text) {
            ++check->pieces;
            check->last = text.right(60);
            QString all = check->carry + text;
            qsizetype at = 0;
            for (; at + 16 <= all.size() && all[at] != u't'; at += 16) {
                // Every line's end, and a number now and then: reading each would be most of the test's time.
                if (all[at + 15] != u'\n' || (check->next % 97 == 0 && all.mid(at, 15).toLongLong() != check->next))
                    check->well = false;
                ++check->next;
            }
            check->carry = all.mid(at);
        });
        QVERIFY(!run.execute());
        QTRY_COMPARE_WITH_TIMEOUT(run.completions(), 1, 6 * patience);
        QVERIFY(run.wait());
        QVERIFY(check->well);
        QCOMPARE(check->next, 64 * 65536);
        QVERIFY(check->pieces > 2);
        QCOMPARE(check->last.right(exitLine(0).size()), exitLine(0));
    }

    void takesAGibibyte()
    {
        constexpr int mebibytes = underSanitizer ? 64 : 1024;
        TaskRun run({QStringLiteral("flood"), QString::number(mebibytes)}, true);
        qint64 length = 0;
        run.task->setLogReveiver([&length](const QString &text) { length += text.size(); });
        QVERIFY(!run.execute());
        QTRY_COMPARE_WITH_TIMEOUT(run.completions(), 1, 6 * patience);
        QCOMPARE(length, qint64(mebibytes) * 1024 * 1024 + exitLine(0).size());
    }

    void neverMakesTheChildWait_data()
    {
        QTest::addColumn<bool>("realTimeLog");
        QTest::newRow("at the end") << false;
        QTest::newRow("live, while the loop does not run") << true;
    }
    void neverMakesTheChildWait()
    {
        QFETCH(const bool, realTimeLog);
        const Gate written;
        const Gate gate;
        TaskRun run(
            {QStringLiteral("flood"), QStringLiteral("8"), QStringLiteral("tell"), written.path(), await, gate.path()},
            realTimeLog);
        QVERIFY(!run.execute());
        QVERIFY(written.told()); // many times what a pipe holds
        gate.open();
        QVERIFY(run.wait());
        QCOMPARE(int(run.pieces().size()), 2);
        QCOMPARE(run.texts().first().size(), 8 * 1024 * 1024);
        QVERIFY(run.texts().first().endsWith(QStringLiteral("000000000524287\n")));
    }

    // --- threads and loops

    void keepsTheOrderWhileAReceiverIsBusy()
    {
        const Gate gate;
        TaskRun run({out, QStringLiteral("live"), await, gate.path(), out, QStringLiteral("rest")}, true);
        bool endedMeanwhile = false;
        run.task->setLogReveiver([&, collect = run.receiver(), process = run.task->task()](const QString &text) {
            if (text == u"live") {
                gate.open();
                QDeadlineTimer limit(patience);
                while (process->isRunning() && !limit.hasExpired())
                    QThread::yieldCurrentThread();
                endedMeanwhile = !process->isRunning(); // the task's thread has to wait for us
            }
            collect(text);
        });
        QVERIFY(!run.execute());
        QTRY_COMPARE_WITH_TIMEOUT(run.completions(), 1, patience);
        QVERIFY(endedMeanwhile);
        QVERIFY(!run.overlapped());
        QCOMPARE(run.texts(), (QStringList{QStringLiteral("live"), QStringLiteral("rest"), exitLine(0)}));
    }

    void doesNotCallAReceiverThatRunsALoopOfItsOwn()
    {
        const Gate written;
        const Gate gate;
        TaskRun run({out, QStringLiteral("one"), await, gate.path(), out, QStringLiteral("two"), QStringLiteral("tell"),
                        written.path(), await, gate.path()},
            true);
        int depth = 0;
        int deepest = 0;
        bool told = false;
        run.task->setLogReveiver([&, collect = run.receiver()](const QString &text) {
            deepest = std::max(deepest, ++depth);
            collect(text);
            if (text == u"one") {
                gate.open();
                told = written.told();
                QCoreApplication::processEvents();
            }
            --depth;
        });
        QVERIFY(!run.execute());
        QTRY_COMPARE_WITH_TIMEOUT(run.texts(), (QStringList{QStringLiteral("one"), QStringLiteral("two")}), patience);
        gate.open();
        QVERIFY(run.wait());
        QVERIFY(told);
        QCOMPARE(deepest, 1);
    }

    void leavesEverythingToTheEndForAThreadWithoutALoop()
    {
        TaskRun run({out, QStringLiteral("text")}, true);
        bool well = false;
        std::thread([&] { well = run.run(); }).join();
        QVERIFY(well);
        QCOMPARE(run.texts(), (QStringList{QStringLiteral("text"), exitLine(0)}));
    }

    void outlivesTheThreadThatCalled()
    {
        const Gate gate;
        TaskRun run({out, QStringLiteral("one"), await, gate.path(), out, QStringLiteral("two")}, true);
        std::optional<KXError> error;
        std::thread([&] { error = run.execute(); }).join();
        QVERIFY(!error);
        gate.open();
        QVERIFY(run.wait());
        QCOMPARE(run.texts(), (QStringList{QStringLiteral("onetwo"), exitLine(0)}));
    }

    void deliversInTheLoopOfAnotherThread()
    {
        const Gate gate;
        TaskRun run({out, QStringLiteral("live"), await, gate.path()}, true);
        QThread thread;
        thread.start();
        QObject inThread;
        inThread.moveToThread(&thread);
        std::thread::id id;
        QMetaObject::invokeMethod(
            &inThread,
            [&] {
                id = std::this_thread::get_id();
                (void)run.execute();
            },
            Qt::BlockingQueuedConnection);
        QTRY_COMPARE_WITH_TIMEOUT(run.texts(), QStringList{QStringLiteral("live")}, patience);
        QVERIFY(run.pieces().front().thread == id);
        gate.open();
        QVERIFY(run.wait());
        thread.quit();
        QVERIFY(thread.wait(patience));
    }

    void keepsManyTasksApart()
    {
        std::vector<std::unique_ptr<TaskRun>> runs;
        for (int i = 0; i < 32; ++i) {
            runs.push_back(std::make_unique<TaskRun>(
                QStringList{out, QString::number(i), QStringLiteral("exit"), QString::number(i)}, i % 2 == 0));
            QVERIFY(!runs.back()->execute());
        }
        for (int i = 0; i < 32; ++i) {
            const TaskRun &run = *runs[size_t(i)];
            QTRY_COMPARE_WITH_TIMEOUT(run.completions(), 1, patience);
            QCOMPARE(run.texts(), (QStringList{QString::number(i), exitLine(i)}));
        }
    }

private:
    const QString out = QStringLiteral("out");
    const QString await = QStringLiteral("await");
};

QTEST_GUILESS_MAIN(KXAsyncTaskOutputTest)
#include "KXAsyncTaskOutputTest.moc"
