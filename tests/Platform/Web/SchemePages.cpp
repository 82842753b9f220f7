// SPDX-License-Identifier: MIT
#include "SchemePages.h"

#include "Support/EngineDocument.h"
#include "Support/EngineWarnings.h"

#include <KXFoundation/Platform/Web/QtWebEngine/SchemeHandler.h>

#include <QtCore/QBuffer>
#include <QtCore/QFile>
#include <QtCore/QThread>
#include <QtGui/QImage>
#include <QtWebEngineCore/QWebEngineSettings>

using namespace Qt::StringLiterals;

namespace kx::test {

void RecordingSchemeHandler::startURLSchemeTask(const Task &task)
{
    onMainThread = onMainThread && QThread::currentThread() == qApp->thread();
    started.append(task);
    if (start)
        start(task);
}

void RecordingSchemeHandler::stopURLSchemeTask(const Task &task)
{
    stoppedFlag = stoppedFlag && task->isStopped();
    stopped.append(task);
}

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

void SchemePages::makePage()
{
    QTest::failOnWarning(anyWarningButTheEngines());
    m_handler = std::make_unique<RecordingSchemeHandler>();
    m_handler->start = answerByPath;
    m_profile = std::make_unique<QWebEngineProfile>();
    auto *adapter = new SchemeHandler(*m_handler, m_profile.get());
    m_profile->installUrlSchemeHandler("early", adapter);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^Please register the custom scheme 'late'"_qs));
    m_profile->installUrlSchemeHandler("late", adapter);
    m_page = std::make_unique<QWebEnginePage>(m_profile.get());
    m_page->settings()->setAttribute(QWebEngineSettings::ErrorPageEnabled, false);
    m_server = std::make_unique<HttpServer>();
    HttpResponse page;
    page.body = "<body>http";
    m_server->serve("/", page);
}

void SchemePages::destroyPage()
{
    m_page.reset();
    m_profile.reset();
    m_handler.reset();
}

QVariant SchemePages::evaluate(const QString &script)
{
    return test::evaluate(*m_page, script);
}

bool SchemePages::load(const QUrl &url)
{
    return test::load(*m_page, url);
}

bool SchemePages::loadPageOf(const QString &origin)
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

void SchemePages::request(const QString &kind, const QString &url)
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

} // namespace kx::test
