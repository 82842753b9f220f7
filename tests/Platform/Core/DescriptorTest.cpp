// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/Descriptor.h>

#include <QtCore/QByteArray>
#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <thread>

#include <fcntl.h>
#include <pthread.h>
#include <unistd.h>

namespace {

bool isOpen(int number)
{
    return ::fcntl(number, F_GETFD) >= 0;
}

struct Pipe {
    Pipe()
    {
        int ends[2] = {-1, -1};
        if (::pipe2(ends, O_CLOEXEC) != 0)
            qFatal("no pipe");
        reading = kx::Descriptor(ends[0]);
        writing = kx::Descriptor(ends[1]);
    }
    kx::Descriptor reading;
    kx::Descriptor writing;
};

} // namespace

class DescriptorTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void closesWhatItOwns()
    {
        int number = -1;
        {
            const Pipe pipe;
            number = pipe.reading.number();
            QVERIFY(isOpen(number));
        }
        QVERIFY(!isOpen(number));
        QVERIFY(!kx::Descriptor().isOpen());
    }

    void isClosedOnceAndByItsLastOwner()
    {
        Pipe pipe;
        const int number = pipe.reading.number();
        kx::Descriptor other = std::move(pipe.reading);
        QVERIFY(!pipe.reading.isOpen());
        pipe.reading.close();
        QVERIFY(isOpen(number));
        other.close();
        QVERIFY(!isOpen(number) && !other.isOpen());
        other.close();
    }

    void saysThatNotEverythingWasWritten()
    {
        QVERIFY(!kx::writeAll(-1, "text"));
        QVERIFY(kx::writeAll(-1, QByteArrayView())); // nothing to do
        Pipe pipe;
        QCOMPARE(::fcntl(pipe.writing.number(), F_SETFL, O_NONBLOCK), 0);
        QVERIFY(!kx::writeAll(pipe.writing.number(), QByteArray(1024 * 1024, 'x')));
    }

    void callsAgainAfterASignal()
    {
        int calls = 0;
        const int answer = kx::uninterrupted([&] {
            errno = calls == 0 ? EINTR : EAGAIN;
            return ++calls == 3 ? 3 : -1;
        });
        QCOMPARE(answer, -1); // with the second error
        QCOMPARE(calls, 2);
    }

    // A pipe takes 64 kB at a time, and a signal without restart comes in between.
    void goesOnAfterASignal()
    {
        struct sigaction before { };
        struct sigaction action { };
        static std::atomic<int> signals = 0;
        action.sa_handler = [](int) { ++signals; };
        ::sigaction(SIGUSR1, &action, &before);

        Pipe pipe;
        const QByteArray text(4 * 1024 * 1024, 'x');
        std::atomic<bool> done = false;
        bool complete = false;
        std::thread writer([&] {
            complete = kx::writeAll(pipe.writing.number(), text);
            pipe.writing.close();
            done = true;
        });
        qsizetype length = 0;
        QByteArray buffer(32 * 1024, Qt::Uninitialized);
        while (true) {
            if (!done)
                pthread_kill(writer.native_handle(), SIGUSR1);
            const ssize_t some =
                kx::uninterrupted([&] { return ::read(pipe.reading.number(), buffer.data(), size_t(buffer.size())); });
            if (some <= 0)
                break;
            length += some;
        }
        writer.join();
        ::sigaction(SIGUSR1, &before, nullptr);
        QVERIFY(complete);
        QCOMPARE(length, text.size());
        QVERIFY(signals > 0);
    }
};

QTEST_GUILESS_MAIN(DescriptorTest)
#include "DescriptorTest.moc"
