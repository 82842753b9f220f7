// SPDX-License-Identifier: MIT
// The engine's requests for custom schemes, as tasks: with real pages in the real engine.
#include "Support/EngineWarnings.h"

#include <KXFoundation/CustomComponent/WebView/Proxy/KXURLSchemeManager.h>
#include <KXFoundation/Platform/Web/QtWebEngine/SchemeHandler.h>
#include <KXFoundation/Platform/Web/QtWebEngine/SchemeRegistration.h>
#include <KXFoundation/Platform/Web/URLSchemeTask.h>
#include <KXFoundation/Platform/Web/WebErrors.h>

#include "Support/HttpServer.h"

#include <QtCore/QBuffer>
#include <QtCore/QTemporaryDir>
#include <QtGui/QImage>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWebEngineCore/QWebEngineLoadingInfo>
#include <QtWebEngineCore/QWebEnginePage>
#include <QtWebEngineCore/QWebEngineProfile>
#include <QtWebEngineCore/QWebEngineSettings>
#include <QtWidgets/QApplication>

#include <cerrno>
#include <functional>
#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

using Task = kx::URLSchemeTaskPtr;

struct RecordingHandler final : kx::URLSchemeHandler {
    void startURLSchemeTask(const Task &task) override
    {
        onMainThread = onMainThread && QThread::currentThread() == qApp->thread();
        started.append(task);
        if (start)
            start(task);
    }
    void stopURLSchemeTask(const Task &task) override
    {
        stoppedFlag = stoppedFlag && task->isStopped();
        stopped.append(task);
    }

    std::function<void(const Task &)> start;
    QList<Task> started, stopped;
    bool onMainThread = true;
    bool stoppedFlag = true;
};

void answer(const Task &task, const QByteArray &mimeType, const QByteArray &body)
{
    task->didReceiveResponse(mimeType);
    task->didReceiveData(body);
    task->didFinish();
}

QByteArray png()
{
    QImage image(3, 2, QImage::Format_RGB32);
    image.fill(Qt::red);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return buffer.data();
}

/// What pages ask for, by the path.
void answerByPath(const Task &task)
{
    const QString path = task->url().path();
    if (path == "/image"_L1)
        answer(task, "image/png", png());
    else if (path == "/script"_L1)
        answer(task, "text/javascript", "window.result = 'loaded'");
    else if (path == "/style"_L1)
        answer(task, "text/css", "body { color: rgb(1, 2, 3) }");
    else if (path == "/frame"_L1)
        answer(task, "text/html", "<script>parent.postMessage('loaded', '*')</script>");
    else
        answer(task, "text/html;charset=utf-8", "<title>page</title><body>text");
}

} // namespace

class SchemeHandlerTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void servesADocument();
    void servesWhatPagesAskFor_data();
    void servesWhatPagesAskFor();
    void takesUrlsWithoutAHost();
    void passesMethodUrlAndHeaders();
    void answersHeadAndPost();
    void keepsTheCharset();
    void passesABigBody_data();
    void passesABigBody();
    void streamsPiecesAsTheyCome();
    void answersARangeOfAWholeBody();
    void answersManyRequestsInAnyOrder();
    void stopsATaskThatThePageGaveUp();
    void stopsATaskInTheMiddleOfItsBody();
    void doesNotStopAFinishedTask();
    void leavesAnUnansweredTaskUnanswered();
    void tellsThePageWhatFailed_data();
    void tellsThePageWhatFailed();
    void failsInTheMiddleOfABody();
    void ignoresCallsAfterTheEnd();
    void takesDataWithoutAResponse();
    void taskOutlivesPageAndProfile();
    void engineReadsOnWhenTheTaskIsDropped();
    void failsRequestsOfADeadHandler();
    void sharedManagerServesPagesThatAreAlreadyThere();

private:
    QVariant evaluate(const QString &script);
    bool load(const QUrl &url);
    bool loadPageOf(const QString &origin);
    void request(const QString &kind, const QString &url);
    void waitForResult(const QString &result) { QTRY_COMPARE(evaluate(u"window.result"_qs).toString(), result); }

    std::unique_ptr<RecordingHandler> m_handler;
    std::unique_ptr<QWebEngineProfile> m_profile;
    std::unique_ptr<QWebEnginePage> m_page;
    std::unique_ptr<kx::test::HttpServer> m_server;
    QTemporaryDir m_directory;
};

void SchemeHandlerTest::initTestCase()
{
    // The first profile starts the engine, which complains about the missing OpenGL of the offscreen platform.
    QWebEngineProfile::defaultProfile();
}

void SchemeHandlerTest::init()
{
    QTest::failOnWarning(kx::test::anyWarningButTheEngines());
    m_handler = std::make_unique<RecordingHandler>();
    m_handler->start = answerByPath;
    m_profile = std::make_unique<QWebEngineProfile>();
    auto *adapter = new kx::SchemeHandler(*m_handler, m_profile.get());
    m_profile->installUrlSchemeHandler("early", adapter);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^Please register the custom scheme 'late'"_qs));
    m_profile->installUrlSchemeHandler("late", adapter);
    m_page = std::make_unique<QWebEnginePage>(m_profile.get());
    m_page->settings()->setAttribute(QWebEngineSettings::ErrorPageEnabled, false);
    m_server = std::make_unique<kx::test::HttpServer>();
    kx::test::HttpResponse page;
    page.body = "<body>http";
    m_server->serve("/", page);
}

void SchemeHandlerTest::cleanup()
{
    m_page.reset();
    m_profile.reset();
    m_handler.reset();
}

QVariant SchemeHandlerTest::evaluate(const QString &script)
{
    struct Answer {
        bool arrived = false;
        QVariant value;
    };
    const auto answer = std::make_shared<Answer>();
    m_page->runJavaScript(script, [answer](const QVariant &value) {
        answer->arrived = true;
        answer->value = value;
    });
    if (!QTest::qWaitFor([&] { return answer->arrived; }, 20'000))
        qWarning("no answer to %s", qPrintable(script));
    return answer->value;
}

bool SchemeHandlerTest::load(const QUrl &url)
{
    QSignalSpy finished(m_page.get(), &QWebEnginePage::loadFinished);
    m_page->load(url);
    return QTest::qWaitFor([&] { return !finished.isEmpty(); }, 20'000) && finished.constFirst().constFirst().toBool();
}

bool SchemeHandlerTest::loadPageOf(const QString &origin)
{
    if (origin == "http"_L1)
        return load(m_server->url("/"));
    if (origin.startsWith("file"_L1)) {
        m_page->settings()->setAttribute(
            QWebEngineSettings::LocalContentCanAccessRemoteUrls, origin == "file+remote"_L1);
        QFile file(m_directory.filePath(u"page.html"_qs));
        return file.open(QIODevice::WriteOnly) && file.write("<body>file") > 0 && (file.close(), true)
            && load(QUrl::fromLocalFile(file.fileName()));
    }
    return load(QUrl(origin % "://host/"_L1));
}

void SchemeHandlerTest::request(const QString &kind, const QString &url)
{
    evaluate(uR"(
        window.result = 'nothing';
        (function (kind, url) {
            function say(text) { return function () { window.result = text; }; }
            function element(name, source) {
                var e = document.createElement(name);
                e.onload = name == 'script' || name == 'iframe' ? null : say('loaded');
                e.onerror = say('error');
                e[source] = url;
                document.body.appendChild(e);
                return e;
            }
            if (kind == 'image') element('img', 'src');
            if (kind == 'script') element('script', 'src');
            if (kind == 'style') element('link', 'href').rel = 'stylesheet';
            if (kind == 'frame') {
                window.onmessage = function (event) { window.result = event.data; };
                element('iframe', 'src');
            }
            if (kind == 'xhr') {
                var xhr = new XMLHttpRequest();
                xhr.onload = function () { window.result = xhr.responseText.indexOf('text') >= 0 ? 'loaded' : 'empty'; };
                xhr.onerror = say('error');
                xhr.open('GET', url);
                xhr.send();
            }
            if (kind == 'fetch') fetch(url).then(say('loaded'), say('error'));
        })('%1', '%2'); 0)"_qs.arg(kind, url));
}

void SchemeHandlerTest::servesADocument()
{
    QVERIFY(load(QUrl(u"early://host/page?x=1"_qs)));
    QCOMPARE(m_page->title(), u"page"_qs);
    QCOMPARE(m_handler->started.size(), 1);
    QCOMPARE(m_handler->started.constFirst()->url(), QUrl(u"early://host/page?x=1"_qs));
    QVERIFY(m_handler->onMainThread);
    QCOMPARE(evaluate(u"window.isSecureContext"_qs), QVariant(true));
}

void SchemeHandlerTest::servesWhatPagesAskFor_data()
{
    QTest::addColumn<QString>("origin");
    QTest::addColumn<QString>("url");
    QTest::addColumn<QStringList>("served");
    const QStringList tags{u"frame"_qs, u"image"_qs, u"script"_qs, u"style"_qs};
    const QStringList all = tags + QStringList{u"xhr"_qs};
    // fetch() reaches no custom scheme in this engine.
    QTest::newRow("its own page") << u"early"_qs << u"early://host/"_qs << all;
    QTest::newRow("another host of the scheme") << u"early"_qs << u"early://other/"_qs << all;
    QTest::newRow("a file page") << u"file"_qs << u"early://host/"_qs << all;
    QTest::newRow("an http page") << u"http"_qs << u"early://host/"_qs << QStringList(); // the scheme is local
    QTest::newRow("late, its own page") << u"late"_qs << u"late://host/"_qs << all;
    QTest::newRow("late, a file page") << u"file"_qs << u"late://host/"_qs << QStringList(); // remote to a file page
    QTest::newRow("late, a file page with remote access") << u"file+remote"_qs << u"late://host/"_qs << tags;
    QTest::newRow("late, an http page") << u"http"_qs << u"late://host/"_qs << tags;
}

void SchemeHandlerTest::servesWhatPagesAskFor()
{
    QFETCH(QString, origin);
    QFETCH(QString, url);
    QFETCH(QStringList, served);
    QVERIFY(loadPageOf(origin));
    m_handler->started.clear();
    for (const QString &kind : {u"frame"_qs, u"image"_qs, u"script"_qs, u"style"_qs, u"xhr"_qs, u"fetch"_qs}) {
        request(kind, QString(url % kind));
        if (served.contains(kind))
            waitForResult(u"loaded"_qs);
        else if (kind != "frame"_L1) // a frame that is refused says nothing
            waitForResult(u"error"_qs);
    }
    QStringList asked;
    for (const Task &task : std::as_const(m_handler->started))
        asked.append(task->url().path().mid(1));
    QCOMPARE(asked, served);
}

void SchemeHandlerTest::takesUrlsWithoutAHost()
{
    QVERIFY(load(QUrl(u"early:page"_qs)));
    QCOMPARE(m_handler->started.constFirst()->url(), QUrl(u"early://page/"_qs));
    QVERIFY(load(QUrl(u"late:page"_qs)));
    QCOMPARE(m_handler->started.constLast()->url(), QUrl(u"late:page"_qs));
}

void SchemeHandlerTest::passesMethodUrlAndHeaders()
{
    QVERIFY(load(QUrl(u"early://host/"_qs)));
    evaluate(uR"(var xhr = new XMLHttpRequest();
        xhr.onload = function () { window.result = 'loaded'; };
        xhr.open('PUT', '/a%20b?c=%26#fragment');
        xhr.setRequestHeader('X-Clip', '7');
        xhr.send(); 0)"_qs);
    waitForResult(u"loaded"_qs);
    const Task task = m_handler->started.constLast();
    QCOMPARE(task->url().toEncoded(), QByteArray("early://host/a%20b?c=%26#fragment"));
    QCOMPARE(task->method(), QByteArray("PUT"));
    QCOMPARE(task->headers().value("X-Clip"), QByteArray("7"));
}

void SchemeHandlerTest::answersHeadAndPost()
{
    QVERIFY(load(QUrl(u"early://host/"_qs)));
    evaluate(uR"(var xhr = new XMLHttpRequest();
        xhr.onload = function () { window.result = 'head ' + xhr.getResponseHeader('Content-Type'); };
        xhr.open('HEAD', '/image');
        xhr.send(); 0)"_qs);
    waitForResult(u"head image/png"_qs);
    QCOMPARE(m_handler->started.constLast()->method(), QByteArray("HEAD"));

    QSignalSpy finished(m_page.get(), &QWebEnginePage::loadFinished);
    evaluate(uR"(var form = document.createElement('form');
        form.method = 'post';
        form.action = '/posted';
        document.body.appendChild(form);
        form.submit(); 0)"_qs);
    QTRY_COMPARE(finished.size(), 1);
    QCOMPARE(m_handler->started.constLast()->url(), QUrl(u"early://host/posted"_qs));
    QCOMPARE(m_handler->started.constLast()->method(), QByteArray("POST"));
    QCOMPARE(m_page->title(), u"page"_qs);
}

void SchemeHandlerTest::keepsTheCharset()
{
    m_handler->start = [](const Task &task) { answer(task, "text/html;charset=windows-1252", "<title>\xe9</title>"); };
    QVERIFY(load(QUrl(u"early://host/"_qs)));
    QCOMPARE(m_page->title(), u"\u00e9"_qs);
}

void SchemeHandlerTest::passesABigBody_data()
{
    QTest::addColumn<bool>("whole");
    QTest::newRow("whole") << true;
    QTest::newRow("stream") << false;
}

void SchemeHandlerTest::passesABigBody()
{
    QFETCH(bool, whole);
    QVERIFY(load(QUrl(u"early://host/"_qs)));
    QByteArray chunk(1 << 20, 'a');
    chunk.back() = 'z';
    m_handler->start = [&](const Task &task) {
        task->didReceiveResponse("application/octet-stream");
        for (int i = 0; i < 100; ++i)
            task->didReceiveData(chunk); // shared, so that the 100 MB weigh 1 MB
        if (whole)
            task->didFinish();
        else
            QMetaObject::invokeMethod(
                qApp, [task] { task->didFinish(); }, Qt::QueuedConnection);
    };
    evaluate(uR"(var xhr = new XMLHttpRequest();
        xhr.onload = function () {
            var bytes = new Uint8Array(xhr.response), found = 0;
            for (var i = (1 << 20) - 1; i < bytes.length; i += 1 << 20) found += bytes[i] == 122 && bytes[i - 1] == 97;
            window.result = bytes.length + ' ' + found;
        };
        xhr.open('GET', '/big');
        xhr.responseType = 'arraybuffer';
        xhr.send(); 0)"_qs);
    QTRY_COMPARE_WITH_TIMEOUT(evaluate(u"window.result"_qs).toString(), u"104857600 100"_qs, 60'000);
    QVERIFY(m_handler->stopped.isEmpty());
}

void SchemeHandlerTest::streamsPiecesAsTheyCome()
{
    QVERIFY(load(QUrl(u"early://host/"_qs)));
    m_handler->start = [](const Task &task) {
        task->didReceiveResponse("text/plain");
        task->didReceiveData("one ");
    };
    evaluate(uR"(var xhr = new XMLHttpRequest();
        xhr.onprogress = function () { window.result = xhr.responseText; };
        xhr.onload = function () { window.result = xhr.responseText + 'end'; };
        xhr.open('GET', '/pieces');
        xhr.send(); 0)"_qs);
    waitForResult(u"one "_qs);
    const Task task = m_handler->started.constLast();
    task->didReceiveData("two ");
    waitForResult(u"one two "_qs);
    task->didReceiveData({});
    task->didReceiveData("three ");
    waitForResult(u"one two three "_qs);
    task->didFinish();
    waitForResult(u"one two three end"_qs);
}

void SchemeHandlerTest::answersARangeOfAWholeBody()
{
    QVERIFY(load(QUrl(u"early://host/"_qs)));
    m_handler->start = [](const Task &task) {
        task->didReceiveResponse("text/plain");
        for (const char *piece : {"012", "3456", "789"})
            task->didReceiveData(piece);
        task->didFinish();
    };
    evaluate(uR"(var xhr = new XMLHttpRequest();
        xhr.onload = function () { window.result = xhr.status + ' ' + xhr.responseText; };
        xhr.onerror = function () { window.result = 'error'; };
        xhr.open('GET', '/digits');
        xhr.setRequestHeader('Range', 'bytes=2-7');
        xhr.send(); 0)"_qs);
    waitForResult(u"206 234567"_qs);
}

void SchemeHandlerTest::answersManyRequestsInAnyOrder()
{
    QVERIFY(load(QUrl(u"early://host/"_qs)));
    m_handler->start = nullptr;
    m_handler->started.clear();
    evaluate(uR"(window.right = 0;
        for (let i = 0; i < 30; ++i) {
            let xhr = new XMLHttpRequest();
            xhr.onload = function () { window.right += xhr.responseText == '/' + i; };
            xhr.open('GET', '/' + i);
            xhr.send();
        } 0)"_qs);
    QTRY_COMPARE(m_handler->started.size(), 30);
    for (qsizetype i = m_handler->started.size(); i-- > 0;)
        answer(m_handler->started[i], "text/plain", m_handler->started[i]->url().path().toUtf8());
    QTRY_COMPARE(evaluate(u"window.right"_qs).toInt(), 30);
    QVERIFY(m_handler->stopped.isEmpty());
}

void SchemeHandlerTest::stopsATaskThatThePageGaveUp()
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

void SchemeHandlerTest::stopsATaskInTheMiddleOfItsBody()
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

void SchemeHandlerTest::doesNotStopAFinishedTask()
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

void SchemeHandlerTest::leavesAnUnansweredTaskUnanswered()
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

void SchemeHandlerTest::tellsThePageWhatFailed_data()
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

void SchemeHandlerTest::tellsThePageWhatFailed()
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

void SchemeHandlerTest::failsInTheMiddleOfABody()
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

void SchemeHandlerTest::ignoresCallsAfterTheEnd()
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

void SchemeHandlerTest::takesDataWithoutAResponse()
{
    QVERIFY(load(QUrl(u"early://host/"_qs)));
    m_handler->start = [](const Task &task) {
        if (task->url().path() == "/data"_L1)
            task->didReceiveData("data");
        task->didFinish();
    };
    for (const QString &path : {u"data"_qs, u"nothing"_qs}) {
        evaluate(uR"(var xhr = new XMLHttpRequest();
            xhr.onload = function () { window.result = xhr.responseText + ' ' + xhr.getResponseHeader('Content-Type'); };
            xhr.onerror = function () { window.result = 'error'; };
            xhr.open('GET', '/%1');
            xhr.send(); 0)"_qs.arg(path));
        waitForResult(path == "data"_L1 ? u"data application/octet-stream"_qs : u" application/octet-stream"_qs);
    }
}

void SchemeHandlerTest::taskOutlivesPageAndProfile()
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

void SchemeHandlerTest::engineReadsOnWhenTheTaskIsDropped()
{
    QVERIFY(load(QUrl(u"early://host/"_qs)));
    m_handler->start = [&](const Task &task) {
        task->didReceiveResponse("text/plain");
        task->didReceiveData(QByteArray(20'000'000, 'x'));
        QMetaObject::invokeMethod(
            qApp,
            [this, kept = task]() mutable {
                kept->didFinish();
                m_handler->started.clear();
                kept.reset();
            },
            Qt::QueuedConnection);
    };
    evaluate(uR"(var xhr = new XMLHttpRequest();
        xhr.onload = function () { window.result = 'length ' + xhr.responseText.length; };
        xhr.open('GET', '/dropped');
        xhr.send(); 0)"_qs);
    waitForResult(u"length 20000000"_qs);
}

void SchemeHandlerTest::failsRequestsOfADeadHandler()
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

void SchemeHandlerTest::sharedManagerServesPagesThatAreAlreadyThere()
{
    KXURLSchemeManager &manager = KXURLSchemeManager::sharedManager();
    kx::SchemeHandler adapter(manager);
    m_profile->installUrlSchemeHandler("shared", &adapter);
    manager.onComingRequest([](const Task &task) { answer(task, "text/html", "<title>first</title><body>text"); });
    QList<Task> stopped;
    manager.onStopRequest([&](const Task &task) { stopped.append(task); });
    QVERIFY(load(QUrl(u"shared://host/"_qs)));
    QCOMPARE(m_page->title(), u"first"_qs);
    QList<Task> second;
    manager.onComingRequest([&](const Task &task) { second.append(task); });
    evaluate(u"var xhr = new XMLHttpRequest(); xhr.open('GET', '/second'); xhr.send(); 0"_qs);
    QTRY_COMPARE(second.size(), 1);
    evaluate(u"xhr.abort()"_qs);
    QTRY_COMPARE(stopped, second);
    manager.onComingRequest({});
    manager.onStopRequest({});
    m_page.reset();
    m_profile.reset();
}

int main(int argc, char **argv)
{
    kx::registerSchemes({QStringLiteral("early"), QStringLiteral("shared")});
    QApplication application(argc, argv);
    SchemeHandlerTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "SchemeHandlerTest.moc"
