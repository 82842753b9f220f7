// SPDX-License-Identifier: MIT
// What a child process costs: until its end is noticed, and to read what it prints.
#include "Row.h"

#include <KXFoundation/Task/KXAsyncTask.h>

#include <QtCore/QEventLoop>
#include <QtCore/QProcess>
#include <QtCore/QString>

#include <cstdlib>
#include <semaphore>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

const QString child = QStringLiteral(KX_BENCH_CHILD);
constexpr qint64 streamed = 64 * 1024 * 1024;

void spawnOurs(benchmark::State &state)
{
    for (auto _ : state) {
        const auto task = KXAsyncTask::initWithExecutePath(child);
        std::binary_semaphore ended{0};
        if (task->execute([&](const std::shared_ptr<KXAsyncTask> &) { ended.release(); }))
            std::abort();
        ended.acquire();
    }
}

void spawnPeer(benchmark::State &state)
{
    for (auto _ : state) {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(child, {});
        if (!process.waitForFinished(-1))
            std::abort();
    }
}

void spawnFloor(benchmark::State &state)
{
    for (auto _ : state) {
        char *const arguments[] = {const_cast<char *>(KX_BENCH_CHILD), nullptr};
        pid_t number = 0;
        if (posix_spawn(&number, KX_BENCH_CHILD, nullptr, nullptr, arguments, environ) != 0
            || waitpid(number, nullptr, 0) != number)
            std::abort();
    }
}

// Both sides end up with text, piece by piece, in an event loop.
void streamOurs(benchmark::State &state)
{
    for (auto _ : state) {
        qint64 length = 0;
        QEventLoop loop;
        const auto task = KXAsyncTask::initWithExecutePath(child);
        task->setArguments({QString::number(streamed)});
        task->setRealTimeLog(true);
        task->setLogReveiver([&](const QString &text) { length += text.size(); });
        if (task->execute([&](const std::shared_ptr<KXAsyncTask> &) { loop.quit(); }))
            std::abort();
        loop.exec();
        if (length < streamed)
            std::abort();
    }
}

void streamPeer(benchmark::State &state)
{
    for (auto _ : state) {
        qint64 length = 0;
        QEventLoop loop;
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        const auto take = [&] { length += QString::fromUtf8(process.readAll()).size(); };
        QObject::connect(&process, &QProcess::readyRead, &process, take);
        QObject::connect(&process, &QProcess::finished, &loop, &QEventLoop::quit);
        process.start(child, {QString::number(streamed)});
        loop.exec();
        take();
        if (length < streamed)
            std::abort();
    }
}

const bool spawn =
    kx::bench::timed({"task.spawn", "us", 1.05}, spawnOurs, spawnPeer, spawnFloor, kx::bench::Clock::Real);
const bool stream =
    kx::bench::timed({"task.stream", "ms", 1.05, "1 MB pipe"}, streamOurs, streamPeer, {}, kx::bench::Clock::Real);

} // namespace
