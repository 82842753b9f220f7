// SPDX-License-Identifier: MIT
// The engine's requests for custom schemes, as tasks: which of them come, and what they ask for.
#include "SchemePages.h"

#include <KXFoundation/CustomComponent/WebView/Proxy/KXURLSchemeManager.h>
#include <KXFoundation/Platform/Web/QtWebEngine/SchemeHandler.h>

#include <QtTest/QSignalSpy>

using namespace Qt::StringLiterals;
using kx::test::answer;
using kx::test::Task;

class SchemeHandlerTest : public kx::test::SchemePages {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { startEngine(); }
    void init() { makePage(); }
    void cleanup() { destroyPage(); }

    void servesADocument();
    void servesWhatPagesAskFor_data();
    void servesWhatPagesAskFor();
    void takesUrlsWithoutAHost();
    void passesMethodUrlAndHeaders();
    void answersHeadAndPost();
    void keepsTheCharset();
    void sharedManagerServesPagesThatAreAlreadyThere();
};

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
    return kx::test::runWithSchemes<SchemeHandlerTest>(argc, argv);
}

#include "SchemeHandlerTest.moc"
