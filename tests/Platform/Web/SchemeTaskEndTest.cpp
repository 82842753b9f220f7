// SPDX-License-Identifier: MIT
// Tasks of custom schemes that are given up, fail or outlive the page.
#include "SchemePages.h"

#include <KXFoundation/Platform/Web/WebErrors.h>

#include <QtTest/QSignalSpy>
#include <QtWebEngineCore/QWebEngineLoadingInfo>

#include <cerrno>
#include <optional>

using namespace Qt::StringLiterals;
using kx::test::answer;
using kx::test::answerByPath;
using kx::test::png;
using kx::test::Task;

class SchemeTaskEndTest : public kx::test::SchemePages {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { startEngine(); }
    void init() { makePage(); }
    void cleanup() { destroyPage(); }

    void stopsATaskThatThePageGaveUp();
    void stopsATaskInTheMiddleOfItsBody();
    void doesNotStopAFinishedTask();
    void leavesAnUnansweredTaskUnanswered();
    void tellsThePageWhatFailed_data();
    void tellsThePageWhatFailed();
    void failsInTheMiddleOfABody();
    void ignoresCallsAfterTheEnd();
    void taskOutlivesPageAndProfile();
    void failsRequestsOfADeadHandler();
};

void SchemeTaskEndTest::stopsATaskThatThePageGaveUp()
{
    QVERIFY(load(QUrl(u"early://host/"_qs)));
    m_handler->start = nullptr;
    m_handler->started.clear();
    evaluate(u"var xhr = new XMLHttpRequest(); xhr.open('GET', '/slow'); xhr.send(); 0"_qs);
    QTRY_COMPARE(m_handler->started.size(), 1);
    const Task task = m_handler->started.constFirst();
    QVERIFY(!task->isStopped());
    evaluate(u"xhr.abort()"_qs);
    QTRY_COMPARE(m_handler->stopped, QList<Task>{task});
    QVERIFY(m_handler->stoppedFlag);
    QVERIFY(task->isStopped());
    answer(task, "text/plain", "too late");
    task->didFailWithError({kx::URLErrorDomain, kx::URLErrorTimedOut, {}, {}});
    QVERIFY(task->isStopped());
    QCOMPARE(task->url(), QUrl(u"early://host/slow"_qs));
    m_handler->start = answerByPath;
    QVERIFY(load(QUrl(u"early://host/page"_qs)));
    QCOMPARE(m_handler->stopped.size(), 1);
}

void SchemeTaskEndTest::stopsATaskInTheMiddleOfItsBody()
{
    QVERIFY(load(QUrl(u"early://host/"_qs)));
    m_handler->start = [](const Task &task) {
        task->didReceiveResponse("text/plain");
        task->didReceiveData("one");
    };
    evaluate(uR"(var xhr = new XMLHttpRequest();
        xhr.onprogress = function () { window.result = xhr.responseText; };
        xhr.open('GET', '/pieces');
        xhr.send(); 0)"_qs);
    waitForResult(u"one"_qs);
    m_handler->start = answerByPath;
    const Task task = m_handler->started.constLast();
    QVERIFY(load(QUrl(u"early://host/elsewhere"_qs)));
    QTRY_COMPARE(m_handler->stopped, QList<Task>{task});
    task->didReceiveData("two");
    task->didFinish();
    QVERIFY(task->isStopped());
}

void SchemeTaskEndTest::doesNotStopAFinishedTask()
{
    QVERIFY(load(QUrl(u"early://host/"_qs)));
    request(u"image"_qs, u"early://host/image"_qs);
    waitForResult(u"loaded"_qs);
    m_handler->start = [](const Task &task) { task->didFailWithError({}); };
    request(u"image"_qs, u"early://host/failed"_qs);
    waitForResult(u"error"_qs);
    QVERIFY(load(m_server->url("/")));
    // The engine gives up a task of the next page; what it had to say about the earlier ones came before.
    m_handler->start = nullptr;
    QSignalSpy failed(m_page.get(), &QWebEnginePage::loadFinished);
    m_page->load(QUrl(u"early://host/unanswered"_qs));
    QTRY_COMPARE(m_handler->started.constLast()->url().path(), u"/unanswered"_qs);
    m_page->triggerAction(QWebEnginePage::Stop);
    QTRY_COMPARE(m_handler->stopped.size(), 1);
    QCOMPARE(m_handler->stopped.constFirst()->url().path(), u"/unanswered"_qs);
    for (const Task &task : std::as_const(m_handler->started))
        QCOMPARE(task->isStopped(), task == m_handler->stopped.constFirst());
}

void SchemeTaskEndTest::leavesAnUnansweredTaskUnanswered()
{
    QVERIFY(load(QUrl(u"early://host/"_qs)));
    m_handler->start = nullptr;
    m_handler->started.clear();
    request(u"image"_qs, u"early://host/image"_qs);
    QTRY_COMPARE(m_handler->started.size(), 1);
    m_handler->started.clear(); // nobody holds the task any more
    m_handler->start = answerByPath;
    request(u"xhr"_qs, u"early://host/page"_qs);
    waitForResult(u"loaded"_qs);
    QCOMPARE(evaluate(u"document.images[0].complete"_qs), QVariant(false));
    QVERIFY(m_handler->stopped.isEmpty());
}

void SchemeTaskEndTest::tellsThePageWhatFailed_data()
{
    QTest::addColumn<QString>("domain");
    QTest::addColumn<qint64>("code");
    QTest::addColumn<int>("engineCode");
    const auto row = [](const char *name, const QString &domain, qint64 code, int engineCode) {
        QTest::newRow(name) << domain << code << engineCode;
    };
    row("no such file", kx::URLErrorDomain, kx::URLErrorFileDoesNotExist, -6);
    row("not supported", kx::URLErrorDomain, kx::URLErrorUnsupportedURL, -300);
    row("no permission", kx::URLErrorDomain, kx::URLErrorNoPermissionsToReadFile, -10);
    row("timed out", kx::URLErrorDomain, kx::URLErrorTimedOut, -2);
    row("cancelled", kx::URLErrorDomain, kx::URLErrorCancelled, -3);
    row("ENOENT", kx::POSIXErrorDomain, ENOENT, -6);
    row("EACCES", kx::POSIXErrorDomain, EACCES, -10);
    row("EPERM", kx::POSIXErrorDomain, EPERM, -10);
    row("ECANCELED", kx::POSIXErrorDomain, ECANCELED, -3);
    row("EIO", kx::POSIXErrorDomain, EIO, -2);
    row("another domain", u"com.example.Clips"_qs, kx::URLErrorFileDoesNotExist, -2);
}

void SchemeTaskEndTest::tellsThePageWhatFailed()
{
    QFETCH(QString, domain);
    QFETCH(qint64, code);
    QFETCH(int, engineCode);
    m_handler->start = [&](const Task &task) { task->didFailWithError({domain, code, {}, {}}); };
    std::optional<int> seen;
    connect(m_page.get(), &QWebEnginePage::loadingChanged, this, [&](const QWebEngineLoadingInfo &info) {
        if (info.status() == QWebEngineLoadingInfo::LoadFailedStatus
            || info.status() == QWebEngineLoadingInfo::LoadStoppedStatus)
            seen = info.errorCode();
    });
    QVERIFY(!load(QUrl(u"early://host/"_qs)));
    QCOMPARE(seen, std::optional<int>(engineCode));
    QVERIFY(!m_handler->started.constFirst()->isStopped());
}

void SchemeTaskEndTest::failsInTheMiddleOfABody()
{
    QVERIFY(load(QUrl(u"early://host/"_qs)));
    m_handler->start = [](const Task &task) {
        task->didReceiveResponse("text/plain");
        task->didReceiveData("one");
    };
    evaluate(uR"(var xhr = new XMLHttpRequest();
        xhr.onprogress = function () { window.result = xhr.responseText; };
        xhr.onload = function () { window.result = 'loaded'; };
        xhr.onerror = function () { window.result = 'error'; };
        xhr.open('GET', '/pieces');
        xhr.send(); 0)"_qs);
    waitForResult(u"one"_qs);
    m_handler->started.constLast()->didFailWithError({});
    waitForResult(u"error"_qs);
    QVERIFY(m_handler->stopped.isEmpty());
}

void SchemeTaskEndTest::ignoresCallsAfterTheEnd()
{
    m_handler->start = [](const Task &task) {
        answer(task, "text/html", "<title>first");
        task->didReceiveResponse("text/plain");
        task->didReceiveData("</title>second");
        task->didFinish();
        task->didFailWithError({});
    };
    QVERIFY(load(QUrl(u"early://host/"_qs)));
    QCOMPARE(evaluate(u"document.title"_qs).toString(), u"first"_qs);
    m_handler->start = [](const Task &task) {
        task->didFailWithError({});
        answer(task, "text/html", "<title>after a failure");
    };
    QVERIFY(!load(QUrl(u"early://host/failed"_qs)));
}

void SchemeTaskEndTest::taskOutlivesPageAndProfile()
{
    QVERIFY(load(QUrl(u"early://host/"_qs)));
    m_handler->start = [](const Task &task) {
        if (task->url().path() == "/begun"_L1) {
            task->didReceiveResponse("text/plain");
            task->didReceiveData("begun");
        }
    };
    m_handler->started.clear();
    for (const char *path : {"silent", "begun"})
        request(u"xhr"_qs, QString("early://host/"_L1 % QLatin1StringView(path)));
    QTRY_COMPARE(m_handler->started.size(), 2);
    m_page.reset();
    m_profile.reset();
    for (const Task &task : std::as_const(m_handler->started))
        QTRY_VERIFY(task->isStopped());
    QCOMPARE(m_handler->stopped.size(), 2);
    for (const Task &task : std::as_const(m_handler->started)) {
        task->didReceiveResponse("text/plain");
        task->didReceiveData("late");
        task->didFinish();
    }
}

void SchemeTaskEndTest::failsRequestsOfADeadHandler()
{
    QVERIFY(load(QUrl(u"early://host/"_qs)));
    m_handler->start = nullptr;
    m_handler->started.clear();
    request(u"image"_qs, u"early://host/image"_qs);
    QTRY_COMPARE(m_handler->started.size(), 1);
    const Task held = m_handler->started.constFirst();
    m_handler.reset();
    request(u"xhr"_qs, u"early://host/page"_qs);
    waitForResult(u"error"_qs);
    answer(held, "image/png", png());
    QTRY_COMPARE(evaluate(u"document.images[0].complete"_qs), QVariant(true));
}

int main(int argc, char **argv)
{
    return kx::test::runWithSchemes<SchemeTaskEndTest>(argc, argv);
}

#include "SchemeTaskEndTest.moc"
