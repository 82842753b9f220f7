// SPDX-License-Identifier: MIT
// A program that asks what is cached or loaded once in a process, in THREADS threads at once.
//   util_child code THREADS ORGANIZATION INTERFACE   the machine code
//   util_child duration THREADS FILE                 the duration of the file
#include <KXFoundation/Util/KXUtil.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QStringList>

#include <cstdio>
#include <functional>
#include <latch>
#include <thread>
#include <vector>

namespace {

QString answerOfAll(int count, const std::function<QString()> &question)
{
    std::vector<QString> answers(static_cast<size_t>(count));
    std::latch start(count);
    std::vector<std::thread> threads;
    for (QString &answer : answers) {
        threads.emplace_back([&] {
            start.arrive_and_wait();
            answer = question();
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    for (const QString &answer : answers) {
        if (answer != answers.front())
            return QStringLiteral("the threads differ");
    }
    return answers.front();
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const int threads = arguments.value(2).toInt();
    std::function<QString()> question;
    if (threads > 0 && arguments.size() == 5 && arguments[1] == QLatin1String("code")) {
        QCoreApplication::setOrganizationName(arguments[3]);
        KXUtil::setNetworkInterface(arguments[4]);
        question = KXUtil::machineCode;
    } else if (threads > 0 && arguments.size() == 4 && arguments[1] == QLatin1String("duration")) {
        question = [url = QUrl::fromLocalFile(arguments[3])] { return QString::number(KXUtil::getVideoDuration(url)); };
    } else {
        return 2;
    }
    std::printf("%s", qUtf8Printable(answerOfAll(threads, question)));
    return 0;
}
