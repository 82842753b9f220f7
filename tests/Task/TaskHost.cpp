// SPDX-License-Identifier: MIT
// A host that returns from main() while children of all kinds run: two print on and on, one waits at the gate that the
// first argument names, and some have just ended. With a second argument it keeps the tasks to its very end.
#include <KXFoundation/Task/KXAsyncTask.h>

#include <QtCore/QCoreApplication>

#include <atomic>
#include <vector>

namespace {

std::atomic<qint64> received = 0;
std::vector<std::shared_ptr<KXAsyncTask>> *tasks = nullptr; // which nobody destroys

void start(const QStringList &commands, bool realTimeLog)
{
    const auto task = KXAsyncTask::initWithExecutePath(QStringLiteral(TASK_CHILD));
    task->setArguments(commands);
    task->setRealTimeLog(realTimeLog);
    task->setLogReveiver([](const QString &text) { received += text.size(); });
    if (task->execute([](const std::shared_ptr<KXAsyncTask> &) { ++received; }))
        qFatal("no child");
    tasks->push_back(task);
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QString flood = QStringLiteral("flood");
    const QString forever = QStringLiteral("10000");
    tasks = new std::vector<std::shared_ptr<KXAsyncTask>>;
    start({flood, forever}, true);
    start({flood, forever}, false);
    start({QStringLiteral("await"), application.arguments().value(1)}, true);
    for (int i = 0; i < 8; ++i)
        start({}, i % 2 == 0);
    QCoreApplication::processEvents();
    if (argc > 2)
        static const std::unique_ptr<std::vector<std::shared_ptr<KXAsyncTask>>> lastOwner(tasks);
    return 0;
}
