// SPDX-License-Identifier: MIT
// Custom schemes and the reading of files, through the engine that the library runs on.
#include "Support/EngineWarnings.h"
#include "Support/Evaluation.h"

#include <KXFoundation/CustomComponent/WebView/Proxy/KXURLSchemeManager.h>
#include <KXFoundation/Platform/Web/WebViewConfiguration.h>

#include "../RecordingPageClient.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>

#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

class RealPageRequestsTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void sharedManagerServesASchemeOfTheConfiguration();
    void laterCallbackServesPagesThatAreAlreadyThere();
    void stopsTasksOfAPageThatGoes();
    void readsFilesBelowTheDirectoryOnly();
    void refusesADocumentOutsideItsDirectory();

private:
    void makePage();
    QString evaluate(const QString &script) { return kx::test::evaluate(*m_page, script).valueOrText().toString(); }
    QString request(const QString &url);

    KXURLSchemeManager &m_manager = KXURLSchemeManager::sharedManager();
    kx::test::RecordingPageClient m_client;
    std::unique_ptr<kx::WebPage> m_page;
};

void RealPageRequestsTest::initTestCase()
{
    // The first page starts the engine, which complains about the missing OpenGL of the offscreen platform.
    makePage();
    m_page.reset();
}

void RealPageRequestsTest::init()
{
    QTest::failOnWarning(kx::test::anyWarningButTheEngines());
    m_client = {};
    makePage();
}

void RealPageRequestsTest::cleanup()
{
    m_page.reset();
    m_manager.onComingRequest({});
    m_manager.onStopRequest({});
}

void RealPageRequestsTest::makePage()
{
    const auto configuration = std::make_shared<kx::WebViewConfiguration>();
    configuration->preferences.allowFileAccessFromFileURLs = true;
    for (const QString &scheme : m_manager.proxySchemes())
        configuration->setURLSchemeHandler(&m_manager, scheme);
    m_page = configuration->engine().makePage(configuration, m_client);
}

/// What an XMLHttpRequest of the page gets: its text, or "error".
QString RealPageRequestsTest::request(const QString &url)
{
    evaluate(uR"(window.result = '';
        var xhr = new XMLHttpRequest();
        xhr.onload = function () { window.result = 'got ' + xhr.responseText; };
        xhr.onerror = function () { window.result = 'error'; };
        xhr.open('GET', '%1');
        xhr.send(); '')"_qs.arg(url));
    QString result;
    if (!QTest::qWaitFor([&] { return !(result = evaluate(u"window.result"_qs)).isEmpty(); }, 20'000))
        qWarning("no answer from %s", qPrintable(url));
    return result;
}

void RealPageRequestsTest::sharedManagerServesASchemeOfTheConfiguration()
{
    m_manager.onComingRequest([](const kx::URLSchemeTaskPtr &task) {
        task->didReceiveResponse("text/html");
        task->didReceiveData(task->url().path().toUtf8());
        task->didFinish();
    });
    m_page->load(QUrl(u"clip://host/page"_qs));
    QTRY_COMPARE_WITH_TIMEOUT(m_client.finished, 1, 20'000);
    QCOMPARE(evaluate(u"document.body.textContent"_qs), u"/page"_qs);
    QCOMPARE(request(u"clip://other/data"_qs), u"got /data"_qs);
    QVERIFY(m_client.provisionalFailures.isEmpty());
}

void RealPageRequestsTest::laterCallbackServesPagesThatAreAlreadyThere()
{
    const auto answerWith = [](const QByteArray &text) {
        return [text](const kx::URLSchemeTaskPtr &task) {
            task->didReceiveResponse("text/html");
            task->didReceiveData(text);
            task->didFinish();
        };
    };
    m_manager.onComingRequest(answerWith("first"));
    m_page->load(QUrl(u"clip://host/page"_qs));
    QTRY_COMPARE_WITH_TIMEOUT(m_client.finished, 1, 20'000);
    m_manager.onComingRequest(answerWith("second"));
    QCOMPARE(request(u"clip://host/data"_qs), u"got second"_qs);
}

void RealPageRequestsTest::stopsTasksOfAPageThatGoes()
{
    QList<kx::URLSchemeTaskPtr> started, stopped;
    m_manager.onComingRequest([&](const kx::URLSchemeTaskPtr &task) { started.append(task); });
    m_manager.onStopRequest([&](const kx::URLSchemeTaskPtr &task) { stopped.append(task); });
    m_page->load(QUrl(u"clip://host/unanswered"_qs));
    QTRY_COMPARE_WITH_TIMEOUT(started.size(), 1, 20'000);
    QVERIFY(m_page->isLoading());
    m_page.reset();
    QTRY_COMPARE_WITH_TIMEOUT(stopped, started, 20'000);
    QVERIFY(started.constFirst()->isStopped());
    started.constFirst()->didFinish();
}

void RealPageRequestsTest::readsFilesBelowTheDirectoryOnly()
{
    const QTemporaryDir directory;
    for (const char *name : {"in/deep/page.html", "in/text.txt", "text.txt"}) {
        const QString path = directory.filePath(QString::fromLatin1(name));
        QVERIFY(QDir().mkpath(QFileInfo(path).path()));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.write("text") == 4);
    }
    m_page->loadFile(QUrl::fromLocalFile(directory.filePath(u"in/deep/page.html"_qs)), directory.filePath(u"in"_qs));
    QTRY_COMPARE_WITH_TIMEOUT(m_client.finished, 1, 20'000);
    QCOMPARE(request(u"../text.txt"_qs), u"got text"_qs);
    QCOMPARE(request(u"../../text.txt"_qs), u"error"_qs);
}

void RealPageRequestsTest::refusesADocumentOutsideItsDirectory()
{
    const QTemporaryDir directory;
    QFile file(directory.filePath(u"page.html"_qs));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    const QUrl url = QUrl::fromLocalFile(file.fileName());
    const QTemporaryDir other;
    for (const QString &granted : {other.path(), QString()}) {
        m_client.provisionalFailures.clear();
        m_page->loadFile(url, granted);
        QTRY_COMPARE_WITH_TIMEOUT(m_client.provisionalFailures.size(), 1, 20'000);
        const KXError error = m_client.provisionalFailures.constFirst();
        QCOMPARE(error.domain, kx::URLErrorDomain);
        QCOMPARE(error.code, qint64(kx::URLErrorNoPermissionsToReadFile));
        QCOMPARE(error.userInfo.value(kx::FailingURLStringKey).toString(), url.toString(QUrl::FullyEncoded));
    }
    QCOMPARE(m_client.finished, 0);
}

int main(int argc, char **argv)
{
    KXURLSchemeManager::sharedManager().setProxySchemes({QStringLiteral("clip")});
    QApplication application(argc, argv);
    RealPageRequestsTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "RealPageRequestsTest.moc"
