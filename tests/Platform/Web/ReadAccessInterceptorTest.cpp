// SPDX-License-Identifier: MIT
// Which files a file page may read: the rule on paths, and what the real engine asks for.
#include "Support/EngineDocument.h"
#include "Support/EngineWarnings.h"

#include <KXFoundation/Platform/Web/QtWebEngine/ReadAccess.h>
#include <KXFoundation/Platform/Web/QtWebEngine/ReadAccessInterceptor.h>

#include "Support/HttpServer.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtCore/QThread>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWebEngineCore/QWebEngineHistory>
#include <QtWebEngineCore/QWebEngineLoadingInfo>
#include <QtWebEngineCore/QWebEnginePage>
#include <QtWebEngineCore/QWebEngineProfile>
#include <QtWebEngineCore/QWebEngineSettings>
#include <QtWidgets/QApplication>

#include <filesystem>
#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

class ReadAccessInterceptorTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();

    void judgesPaths_data();
    void judgesPaths();
    void followsALinkAnew();

    void readsBelowTheDirectoryOnly_data();
    void readsBelowTheDirectoryOnly();
    void refusesADocumentOutsideTheDirectory();
    void leavesAMissingDocumentToTheEngine();
    void readsNothingWithoutAGrant();
    void leavesOtherSchemesAlone();
    void keepsThePagesOwnNavigationsInside();
    void nextLoadOfTheApplicationReplacesTheDirectory();
    void earlierGrantDoesNotServeALaterLoad();
    void failedLoadLeavesTheDocumentItsDirectory();
    void goingBackBringsTheDirectoryBack();
    void asksOnTheMainThread();

private:
    QString path(const QString &name) const { return m_directory.filePath(name); }
    void write(const QString &name, const QByteArray &content);
    QVariant evaluate(const QString &script) { return kx::test::evaluate(*m_page, script); }
    bool load(const QUrl &url) { return kx::test::load(*m_page, url); }
    bool loadFile(const QString &name, const QString &directory);
    QString read(const QString &kind, const QUrl &url);
    QString readText(const QString &name) { return read(u"xhr"_qs, QUrl::fromLocalFile(path(name))); }

    QTemporaryDir m_directory;
    std::unique_ptr<QWebEngineProfile> m_profile;
    std::unique_ptr<QWebEnginePage> m_page;
    kx::ReadAccessInterceptor *m_interceptor = nullptr;
    std::optional<int> m_errorCode;
};

void ReadAccessInterceptorTest::write(const QString &name, const QByteArray &content)
{
    QVERIFY(QDir().mkpath(QFileInfo(path(name)).path()));
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

void ReadAccessInterceptorTest::initTestCase()
{
    // The first profile starts the engine, which complains about the missing OpenGL of the offscreen platform.
    QWebEngineProfile::defaultProfile();

    // in/ is the granted directory; everything stands in it and beside it alike.
    for (const QString &place : {u"in/"_qs, u"in/deep/"_qs, u"out/"_qs, u"inside/"_qs, u"In/"_qs}) {
        write(QString(place % "page.html"_L1), "<title>page</title><body>text");
        write(QString(place % "text.txt"_L1), "text");
        write(QString(place % "script.js"_L1), "window.result = 'loaded'");
        write(QString(place % "style.css"_L1), "body { color: rgb(1, 2, 3) }");
        write(QString(place % "frame.html"_L1), "<script>parent.postMessage('loaded', '*')</script>");
        write(QString(place % "worker.js"_L1), "postMessage('loaded')");
        write(QString(place % "image.svg"_L1), "<svg xmlns='http://www.w3.org/2000/svg' width='3' height='2'/>");
        write(QString(place % "sound.wav"_L1),
            QByteArray::fromHex("524946462800000057415645666d7420100000000100010040"
                                "1f0000401f00000100080064617461040000008080808000000000"));
    }
    write(u"in/asking-worker.js"_qs,
        "onmessage = function (event) {"
        "    try {"
        "        if (event.data.kind == 'import') return importScripts(event.data.url);"
        "        var xhr = new XMLHttpRequest();"
        "        xhr.open('GET', event.data.url, false);"
        "        xhr.send();"
        "        postMessage('loaded');"
        "    } catch (e) { postMessage('error'); }"
        "};");
    write(u"in/100%25.txt"_qs, "text");
    write(u"in/%2e%2e"_qs, "text");
    QVERIFY(QFile::link(path(u"out"_qs), path(u"in/leaving"_qs)));
    QVERIFY(QFile::link(path(u"out/text.txt"_qs), path(u"in/leaving.txt"_qs)));
    QVERIFY(QFile::link(path(u"in/deep"_qs), path(u"in/staying"_qs)));
    QVERIFY(QFile::link(path(u"in"_qs), path(u"entering"_qs)));
    QVERIFY(QFile::link(path(u"in/circle"_qs), path(u"in/circle"_qs)));
    QVERIFY(QFile::link(path(u"nowhere"_qs), path(u"in/dangling"_qs)));
    // A name that is not UTF-8, so that it has no spelling as a QString.
    std::filesystem::create_symlink(path(u"out/text.txt"_qs).toStdString(), path(u"in"_qs).toStdString() + "/\xff.txt");
}

void ReadAccessInterceptorTest::cleanupTestCase()
{
    // QTemporaryDir cannot spell this one either.
    std::filesystem::remove(path(u"in"_qs).toStdString() + "/\xff.txt");
}

void ReadAccessInterceptorTest::init()
{
    QTest::failOnWarning(kx::test::anyWarningButTheEngines());
    m_profile = std::make_unique<QWebEngineProfile>();
    m_page = std::make_unique<QWebEnginePage>(m_profile.get());
    m_page->settings()->setAttribute(QWebEngineSettings::ErrorPageEnabled, false);
    m_page->settings()->setAttribute(QWebEngineSettings::LocalContentCanAccessFileUrls, true);
    m_page->settings()->setAttribute(QWebEngineSettings::LocalContentCanAccessRemoteUrls, true);
    m_interceptor = new kx::ReadAccessInterceptor(*m_page);
    m_page->setUrlRequestInterceptor(m_interceptor);
    connect(m_page.get(), &QWebEnginePage::loadingChanged, this, [this](const QWebEngineLoadingInfo &info) {
        if (info.status() == QWebEngineLoadingInfo::LoadFailedStatus)
            m_errorCode = info.errorCode();
    });
    m_errorCode.reset();
}

void ReadAccessInterceptorTest::cleanup()
{
    m_page.reset();
    m_profile.reset();
}

bool ReadAccessInterceptorTest::loadFile(const QString &name, const QString &directory)
{
    const QUrl url = QUrl::fromLocalFile(path(name));
    m_interceptor->grant(url, directory);
    return load(url);
}

/// "loaded" or "error" as the page saw it, or "blocked" for a frame that was refused, which tells the page nothing.
QString ReadAccessInterceptorTest::read(const QString &kind, const QUrl &url)
{
    const bool silent = kind == "frame"_L1 || kind == "object"_L1;
    QSignalSpy blocked(m_interceptor, &kx::ReadAccessInterceptor::blocked);
    evaluate(uR"(
        window.result = '';
        (function (kind, url) {
            function say(text) { return function () { window.result = window.result || text; }; }
            function element(name, source, loaded) {
                var e = document.createElement(name);
                if (loaded) e['on' + loaded] = say('loaded');
                e.onerror = say('error');
                e[source] = url;
                document.body.appendChild(e);
                return e;
            }
            if (kind == 'image') element('img', 'src', 'load');
            if (kind == 'script') element('script', 'src');
            if (kind == 'style') element('link', 'href', 'load').rel = 'stylesheet';
            if (kind == 'sound') element('audio', 'src', 'loadedmetadata');
            if (kind == 'frame') {
                window.onmessage = function (event) { window.result = event.data; };
                element('iframe', 'src');
            }
            if (kind == 'object') {
                window.onmessage = function (event) { window.result = event.data; };
                element('object', 'data').type = 'text/html';
            }
            if (kind == 'xhr') {
                var xhr = new XMLHttpRequest();
                xhr.onload = function () { window.result = xhr.responseText == 'text' ? 'loaded' : 'empty'; };
                xhr.onerror = say('error');
                xhr.open('GET', url);
                xhr.send();
            }
            if (kind == 'fetch') fetch(url).then(say('loaded'), say('error'));
            if (kind.indexOf('worker') == 0) {
                var worker = new Worker(kind == 'worker' ? url : 'asking-worker.js');
                worker.onmessage = function (event) { window.result = event.data; };
                worker.onerror = say('error');
                worker.postMessage({ kind: kind.substr(7), url: url });
            }
        })('%1', '%2'); 0)"_qs.arg(kind, QString::fromLatin1(url.toEncoded())));
    QString result;
    const bool known = QTest::qWaitFor(
        [&] {
            result = evaluate(u"window.result"_qs).toString();
            if (result.isEmpty() && silent && !blocked.isEmpty())
                result = u"blocked"_qs;
            return !result.isEmpty();
        },
        10'000);
    return known ? result : u"nothing"_qs;
}

void ReadAccessInterceptorTest::judgesPaths_data()
{
    QTest::addColumn<QByteArray>("file"); // percent-encoded, below the test's directory
    QTest::addColumn<QString>("directory"); // below it too
    QTest::addColumn<bool>("readable");
    const auto row = [](const char *name, const QByteArray &file, const QString &directory, bool readable) {
        QTest::newRow(name) << file << directory << readable;
    };
    row("in it", "in/text.txt", u"in"_qs, true);
    row("deeper", "in/deep/text.txt", u"in"_qs, true);
    row("above it", "text.txt", u"in"_qs, false);
    row("beside it", "out/text.txt", u"in"_qs, false);
    row("the directory itself", "in", u"in"_qs, true);
    row("the directory with a slash", "in/", u"in"_qs, true);
    row("granted with a slash", "in/text.txt", u"in/"_qs, true);
    row("granted with two slashes", "in/text.txt", u"in//"_qs, true);
    row("beside it, granted with a slash", "inside/text.txt", u"in/"_qs, false);
    row("a longer name that begins the same", "inside/text.txt", u"in"_qs, false);
    row("a shorter name", "in/text.txt", u"inside"_qs, false);
    row("other case", "In/text.txt", u"in"_qs, false);
    row("dots that stay", "in/deep/../text.txt", u"in"_qs, true);
    row("dots that leave", "in/../out/text.txt", u"in"_qs, false);
    row("dots that leave and return", "in/../in/text.txt", u"in"_qs, true);
    row("encoded dots that leave", "in/%2e%2e/out/text.txt", u"in"_qs, false);
    row("encoded slashes that leave", "in/..%2fout%2ftext.txt", u"in"_qs, false);
    row("dots encoded twice are a name", "in/%252e%252e", u"in"_qs, true);
    row("encoded name", "%69n/te%78t.txt", u"in"_qs, true);
    row("per cent sign in a name", "in/100%2525.txt", u"in"_qs, true);
    row("dots in the granted path", "in/text.txt", u"out/../in"_qs, true);
    row("a link that leaves", "in/leaving/text.txt", u"in"_qs, false);
    row("a link to a file outside", "in/leaving.txt", u"in"_qs, false);
    row("a link to a file outside, name not UTF-8", "in/%ff.txt", u"in"_qs, false);
    row("a link that stays", "in/staying/text.txt", u"in"_qs, true);
    row("out of a link by dots", "in/leaving/../in/text.txt", u"in"_qs, true);
    row("a link into it", "entering/text.txt", u"in"_qs, true);
    row("granted through a link", "in/text.txt", u"entering"_qs, true);
    row("file and grant through a link", "entering/text.txt", u"entering"_qs, true);
    row("a link to itself", "in/circle", u"in"_qs, false);
    row("below a link to itself", "in/circle/text.txt", u"in"_qs, false);
    row("a missing file", "in/missing.txt", u"in"_qs, true);
    row("a missing folder", "in/missing/file.txt", u"in"_qs, true);
    row("a missing file outside", "out/missing.txt", u"in"_qs, false);
    row("missing, then dots that leave", "in/missing/../../out/text.txt", u"in"_qs, false);
    row("missing file of a missing directory", "gone/file.txt", u"gone"_qs, true);
    row("missing file of a missing directory with a slash", "gone/file.txt", u"gone/"_qs, true);
    row("below a file", "in/text.txt/more", u"in"_qs, true); // cannot exist; the engine says so
    row("null character", "in/text.txt%00", u"in"_qs, false);
    row("a single file", "in/text.txt", u"in/text.txt"_qs, true);
    row("beside a single file", "in/page.html", u"in/text.txt"_qs, false);
    row("with a query", "in/text.txt?a=../../out", u"in"_qs, true);
    row("with a fragment", "in/text.txt#a", u"in"_qs, true);
}

void ReadAccessInterceptorTest::judgesPaths()
{
    QFETCH(QByteArray, file);
    QFETCH(QString, directory);
    QFETCH(bool, readable);
    const QByteArray base = QUrl::fromLocalFile(m_directory.path()).toEncoded();
    QCOMPARE(kx::isFileBelow(QUrl::fromEncoded(base + '/' + file), path(directory)), readable);
    // A host changes nothing: the engine does not look at it.
    QCOMPARE(kx::isFileBelow(QUrl::fromEncoded("file://host" + base.mid(7) + '/' + file), path(directory)), readable);
    QVERIFY(!kx::isFileBelow(QUrl::fromEncoded("http://host" + base.mid(7) + '/' + file), path(directory)));
    QVERIFY(!kx::isFileBelow(QUrl::fromEncoded(base + '/' + file), QString()));
    QVERIFY(!kx::isFileBelow(QUrl::fromEncoded(base + '/' + file), u""_qs));
    QVERIFY(!kx::isFileBelow(QUrl::fromEncoded(base + '/' + file), u"in"_qs)); // relative
    if (!file.contains("circle") && !file.contains("%00"))
        QVERIFY(kx::isFileBelow(QUrl::fromEncoded(base + '/' + file), u"/"_qs));
}

void ReadAccessInterceptorTest::followsALinkAnew()
{
    const QString link = path(u"turning"_qs);
    const QUrl url = QUrl::fromLocalFile(QString(link % "/text.txt"_L1));
    QVERIFY(QFile::link(path(u"in"_qs), link));
    QVERIFY(kx::isFileBelow(url, path(u"in"_qs)));
    QVERIFY(QFile::remove(link));
    QVERIFY(QFile::link(path(u"out"_qs), link));
    QVERIFY(!kx::isFileBelow(url, path(u"in"_qs)));
    QVERIFY(QFile::remove(link));
}

void ReadAccessInterceptorTest::readsBelowTheDirectoryOnly_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("name");
    const auto row = [](const char *kind, const QString &name) {
        QTest::newRow(kind) << QString::fromLatin1(kind) << name;
    };
    row("image", u"image.svg"_qs);
    row("script", u"script.js"_qs);
    row("style", u"style.css"_qs);
    row("sound", u"sound.wav"_qs);
    row("frame", u"frame.html"_qs);
    row("object", u"frame.html"_qs);
    row("xhr", u"text.txt"_qs);
    row("worker", u"worker.js"_qs);
    row("worker import", u"worker.js"_qs);
    row("worker xhr", u"text.txt"_qs);
}

void ReadAccessInterceptorTest::readsBelowTheDirectoryOnly()
{
    QFETCH(QString, kind);
    QFETCH(QString, name);
    QVERIFY(loadFile(u"in/page.html"_qs, path(u"in"_qs)));
    const auto url = [&](const QString &place) { return QUrl::fromLocalFile(path(QString(place % name))); };
    const QString refused = kind == "frame"_L1 || kind == "object"_L1 ? u"blocked"_qs : u"error"_qs;
    QSignalSpy blocked(m_interceptor, &kx::ReadAccessInterceptor::blocked);
    QCOMPARE(read(kind, url(u"in/"_qs)), u"loaded"_qs);
    QCOMPARE(read(kind, url(u"in/staying/"_qs)), u"loaded"_qs);
    QVERIFY(blocked.isEmpty());
    for (const QString &place : {u"out/"_qs, u"inside/"_qs, u"In/"_qs, u"in/leaving/"_qs}) {
        QCOMPARE(read(kind, url(place)), refused);
        QVERIFY(!blocked.isEmpty());
        QCOMPARE(blocked.constLast().at(0).toUrl(), url(place));
        QCOMPARE(blocked.constLast().at(1).toBool(), false);
    }
    QVERIFY(evaluate(u"window.result"_qs).toString() != u"loaded"_qs);
}

void ReadAccessInterceptorTest::refusesADocumentOutsideTheDirectory()
{
    QSignalSpy blocked(m_interceptor, &kx::ReadAccessInterceptor::blocked);
    QVERIFY(!loadFile(u"out/page.html"_qs, path(u"in"_qs)));
    QCOMPARE(m_errorCode, std::optional<int>(-20));
    QCOMPARE(blocked.size(), 1);
    QCOMPARE(blocked.constFirst().at(0).toUrl(), QUrl::fromLocalFile(path(u"out/page.html"_qs)));
    QCOMPARE(blocked.constFirst().at(1).toBool(), true);
}

void ReadAccessInterceptorTest::leavesAMissingDocumentToTheEngine()
{
    QVERIFY(!loadFile(u"in/missing.html"_qs, path(u"in"_qs)));
    QCOMPARE(m_errorCode, std::optional<int>(-6));
    m_errorCode.reset();
    QVERIFY(!loadFile(u"gone/away/missing.html"_qs, path(u"gone"_qs)));
    QCOMPARE(m_errorCode, std::optional<int>(-6));
}

void ReadAccessInterceptorTest::readsNothingWithoutAGrant()
{
    QVERIFY(!load(QUrl::fromLocalFile(path(u"in/page.html"_qs))));
    QCOMPARE(m_errorCode, std::optional<int>(-20));
}

void ReadAccessInterceptorTest::leavesOtherSchemesAlone()
{
    kx::test::HttpServer server;
    kx::test::HttpResponse text;
    text.body = "text";
    text.headers = {{"Access-Control-Allow-Origin", "*"}};
    server.serve("/text.txt", text);
    QVERIFY(load(server.url("/text.txt")));
    QVERIFY(loadFile(u"in/page.html"_qs, path(u"in"_qs)));
    QCOMPARE(read(u"xhr"_qs, server.url("/text.txt")), u"loaded"_qs);
    QCOMPARE(read(u"xhr"_qs, QUrl(u"data:text/plain,text"_qs)), u"loaded"_qs);
}

void ReadAccessInterceptorTest::keepsThePagesOwnNavigationsInside()
{
    QVERIFY(loadFile(u"in/page.html"_qs, path(u"in"_qs)));
    QSignalSpy blocked(m_interceptor, &kx::ReadAccessInterceptor::blocked);
    QSignalSpy finished(m_page.get(), &QWebEnginePage::loadFinished);
    evaluate(u"location.href = 'deep/page.html'; 0"_qs);
    QTRY_COMPARE(finished.size(), 1);
    QVERIFY(finished.constLast().constFirst().toBool());
    QCOMPARE(readText(u"in/text.txt"_qs), u"loaded"_qs);
    evaluate(u"location.href = '../../out/page.html'; 0"_qs);
    QTRY_COMPARE(finished.size(), 2);
    QVERIFY(!finished.constLast().constFirst().toBool());
    QCOMPARE(m_errorCode, std::optional<int>(-20));
    QCOMPARE(blocked.size(), 1);
    QCOMPARE(blocked.constFirst().at(1).toBool(), true);
}

void ReadAccessInterceptorTest::nextLoadOfTheApplicationReplacesTheDirectory()
{
    QVERIFY(loadFile(u"in/page.html"_qs, path(u"in"_qs)));
    QVERIFY(loadFile(u"out/page.html"_qs, path(u"out"_qs)));
    QCOMPARE(readText(u"out/text.txt"_qs), u"loaded"_qs);
    QCOMPARE(readText(u"in/text.txt"_qs), u"error"_qs);
    // The page cannot go where only the application went.
    QSignalSpy finished(m_page.get(), &QWebEnginePage::loadFinished);
    evaluate(u"location.href = '../in/page.html'; 0"_qs);
    QTRY_COMPARE(finished.size(), 1);
    QVERIFY(!finished.constLast().constFirst().toBool());
    // A wider directory for the same file.
    QVERIFY(loadFile(u"out/page.html"_qs, m_directory.path()));
    QCOMPARE(readText(u"in/text.txt"_qs), u"loaded"_qs);
    // And a narrower one.
    QVERIFY(loadFile(u"out/page.html"_qs, path(u"out/page.html"_qs)));
    QCOMPARE(readText(u"out/text.txt"_qs), u"error"_qs);
}

void ReadAccessInterceptorTest::earlierGrantDoesNotServeALaterLoad()
{
    QVERIFY(loadFile(u"in/page.html"_qs, m_directory.path()));
    QVERIFY(!loadFile(u"out/page.html"_qs, path(u"in"_qs)));
    QVERIFY(!loadFile(u"in/page.html"_qs, path(u"out"_qs))); // the file that is shown
    QVERIFY(!loadFile(u"in/page.html"_qs, QString()));
    QCOMPARE(m_errorCode, std::optional<int>(-20));
    // What is shown is still the first document, with its directory.
    QCOMPARE(readText(u"out/text.txt"_qs), u"loaded"_qs);
    QSignalSpy finished(m_page.get(), &QWebEnginePage::loadFinished);
    m_page->triggerAction(QWebEnginePage::Reload);
    QTRY_COMPARE(finished.size(), 1);
    QVERIFY(finished.constFirst().constFirst().toBool());
    QCOMPARE(readText(u"out/text.txt"_qs), u"loaded"_qs);
}

void ReadAccessInterceptorTest::failedLoadLeavesTheDocumentItsDirectory()
{
    QVERIFY(loadFile(u"in/page.html"_qs, path(u"in"_qs)));
    QVERIFY(!loadFile(u"out/missing.html"_qs, path(u"out"_qs)));
    QCOMPARE(readText(u"in/text.txt"_qs), u"loaded"_qs);
    QVERIFY(!loadFile(u"inside/page.html"_qs, path(u"out"_qs)));
    QCOMPARE(readText(u"in/text.txt"_qs), u"loaded"_qs);
}

void ReadAccessInterceptorTest::goingBackBringsTheDirectoryBack()
{
    QVERIFY(loadFile(u"in/page.html"_qs, path(u"in"_qs)));
    QVERIFY(loadFile(u"out/page.html"_qs, path(u"out"_qs)));
    QSignalSpy finished(m_page.get(), &QWebEnginePage::loadFinished);
    m_page->history()->back();
    QTRY_COMPARE(finished.size(), 1);
    QVERIFY(finished.constLast().constFirst().toBool());
    QCOMPARE(readText(u"in/text.txt"_qs), u"loaded"_qs);
    QCOMPARE(readText(u"out/text.txt"_qs), u"error"_qs);
    m_page->triggerAction(QWebEnginePage::Reload);
    QTRY_COMPARE(finished.size(), 2);
    QCOMPARE(readText(u"in/text.txt"_qs), u"loaded"_qs);
}

void ReadAccessInterceptorTest::asksOnTheMainThread()
{
    QVERIFY(loadFile(u"in/page.html"_qs, path(u"in"_qs)));
    std::optional<bool> onMainThread;
    connect(
        m_interceptor, &kx::ReadAccessInterceptor::blocked, this,
        [&] { onMainThread = QThread::currentThread() == qApp->thread(); }, Qt::DirectConnection);
    QCOMPARE(readText(u"out/text.txt"_qs), u"error"_qs);
    QCOMPARE(onMainThread, std::optional<bool>(true));
}

QTEST_MAIN(ReadAccessInterceptorTest)

#include "ReadAccessInterceptorTest.moc"
