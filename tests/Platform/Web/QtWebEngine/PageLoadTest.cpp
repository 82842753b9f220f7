// SPDX-License-Identifier: MIT
#include "Support/EngineWarnings.h"

#include "PageFixture.h"

#include <KXFoundation/Platform/Web/URLSchemeTask.h>

#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTemporaryFile>
#include <QtNetwork/QTcpServer>

#include <csignal>

using kx::test::HttpResponse;
using kx::test::PageFixture;

/// How loads of real pages end, and which navigations the policy hears of.
class PageLoadTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { PageFixture::startEngine(); }
    void init() { QTest::failOnWarning(kx::test::anyWarningButTheEngines()); }

    void finishesAnErrorPageOfAServer_data()
    {
        QTest::addColumn<int>("status");
        for (const int status : {403, 404, 500, 503})
            QTest::addRow("%d", status) << status;
    }
    void finishesAnErrorPageOfAServer()
    {
        QFETCH(int, status);
        PageFixture fixture;
        HttpResponse response;
        response.body = "<p id=p>sorry";
        response.status = status;
        fixture.server.serve("/gone", response);
        fixture.load(fixture.server.url("/gone"));
        QCOMPARE(fixture.client.ends, QStringList(QStringLiteral("finished")));
        QCOMPARE(fixture.evaluate(QStringLiteral("p.innerText")).value, QJsonValue(QStringLiteral("sorry")));
    }

    void givesFailuresTheirCodes_data()
    {
        QTest::addColumn<QByteArray>("url"); // PORT is the server's, FREE one that nobody listens at
        QTest::addColumn<QString>("end");
        QTest::newRow("refused") << QByteArray("http://127.0.0.1:FREE/x?a=%20b") << QStringLiteral("provisional -1004");
        QTest::newRow("unknown host") << QByteArray("http://no-such-host.invalid/")
                                      << QStringLiteral("provisional -1003");
        QTest::newRow("nothing sent") << QByteArray("http://127.0.0.1:PORT/empty")
                                      << QStringLiteral("provisional -1005");
        QTest::newRow("cut body") << QByteArray("http://127.0.0.1:PORT/cut") << QStringLiteral("failed -1005");
        QTest::newRow("redirects without end")
            << QByteArray("http://127.0.0.1:PORT/loop") << QStringLiteral("provisional -1007");
        QTest::newRow("unknown scheme") << QByteArray("kxunknown://host/path") << QStringLiteral("provisional -1002");
        QTest::newRow("no document") << QByteArray("http://127.0.0.1:PORT/nothing")
                                     << QStringLiteral("provisional 102");
        QTest::newRow("download") << QByteArray("http://127.0.0.1:PORT/archive") << QStringLiteral("provisional 102");
    }
    void givesFailuresTheirCodes()
    {
        QFETCH(QByteArray, url);
        QFETCH(QString, end);
        PageFixture fixture;
        HttpResponse cut;
        cut.body = "<p>" + QByteArray(4000, 'x');
        cut.cutAfter = 2000;
        fixture.server.serve("/cut", cut);
        HttpResponse loop;
        loop.status = 302;
        loop.headers = {{"Location", "/loop"}};
        fixture.server.serve("/loop", loop);
        HttpResponse nothing;
        nothing.status = 204;
        fixture.server.serve("/nothing", nothing);
        HttpResponse archive;
        archive.body = "PK";
        archive.contentType = "application/zip";
        fixture.server.serve("/archive", archive);
        QTcpServer empty; // accepts and closes
        connect(&empty, &QTcpServer::newConnection, this, [&] { delete empty.nextPendingConnection(); });
        QVERIFY(empty.listen(QHostAddress::LocalHost));
        quint16 freePort = 0;
        {
            QTcpServer closed;
            QVERIFY(closed.listen(QHostAddress::LocalHost));
            freePort = closed.serverPort();
        }
        const quint16 port = url.endsWith("/empty") ? empty.serverPort() : fixture.server.port();
        url.replace("PORT", QByteArray::number(port)).replace("FREE", QByteArray::number(freePort));

        fixture.load(QUrl::fromEncoded(url));
        QCOMPARE(fixture.client.ends, QStringList(end));
        const QList<KXError> errors = fixture.client.provisionalFailures + fixture.client.failures;
        QCOMPARE(errors.constFirst().userInfo.value(kx::FailingURLStringKey).toString().toLatin1(), url);
        QVERIFY(!errors.constFirst().localizedDescription.isEmpty());
        QVERIFY(!fixture.page->isLoading());
        fixture.loadHtml("<p>fine"); // the page goes on
        QCOMPARE(fixture.client.finished, 1);
    }

    void readsFilesOfTheGrantedDirectoryOnly()
    {
        QTemporaryDir directory;
        const auto write = [&](const QString &name, const QByteArray &text) {
            QFile file(directory.filePath(name));
            QVERIFY(file.open(QFile::WriteOnly));
            file.write(text);
        };
        QVERIFY(QDir(directory.path()).mkpath(QStringLiteral("in/page")));
        write(QStringLiteral("secret.js"), "secret = 1");
        write(QStringLiteral("in/shared.js"), "shared = 1");
        write(QStringLiteral("in/page/a b.html"),
            "<script src='../shared.js'></script><script src='../../secret.js'></script>");
        PageFixture fixture;
        fixture.make();
        const QUrl url = QUrl::fromLocalFile(directory.filePath(QStringLiteral("in/page/a b.html")));
        fixture.page->loadFile(url, directory.filePath(QStringLiteral("in")));
        QTRY_COMPARE(fixture.client.finished, 1);
        QCOMPARE(fixture.evaluate(QStringLiteral("[typeof shared, typeof secret].join()")).value,
            QJsonValue(QStringLiteral("number,undefined")));
        // Its own directory where none was granted.
        PageFixture other;
        other.load(url);
        QCOMPARE(other.evaluate(QStringLiteral("typeof shared")).value, QJsonValue(QStringLiteral("undefined")));
        // A document outside of what was granted.
        PageFixture outside;
        outside.make().loadFile(url, directory.filePath(QStringLiteral("in/other")));
        QTRY_COMPARE(outside.client.ends, QStringList(QStringLiteral("provisional -1102")));
    }

    void stopsADocumentThatHasBegun()
    {
        PageFixture fixture;
        fixture.make();
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost));
        connect(&server, &QTcpServer::newConnection, this, [&] {
            server.nextPendingConnection()->write(
                "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 9999\r\n\r\n"
                "<script>webkit.messageHandlers.native.postMessage('begun')</script>");
        });
        const QUrl url(QStringLiteral("http://127.0.0.1:%1/").arg(server.serverPort()));
        fixture.page->load(url);
        QTRY_COMPARE(fixture.messages.size(), 1);
        fixture.page->stopLoading();
        QTRY_COMPARE(fixture.client.ends, QStringList(QStringLiteral("failed -999")));
        // At once after a stop, and again the same URL: what the engine still tells about the first is not the
        // second's.
        fixture.page->load(url);
        QTRY_COMPARE(fixture.messages.size(), 2);
        fixture.page->stopLoading();
        fixture.page->load(url);
        QTRY_COMPARE(fixture.messages.size(), 3);
        QCOMPARE(fixture.client.ends, QStringList({QStringLiteral("failed -999"), QStringLiteral("failed -999")}));
        QVERIFY(fixture.page->isLoading());
        ::kill(pid_t(fixture.page->rendererProcessId()), SIGKILL);
        QTRY_COMPARE(fixture.client.ends.size(), 3);
        QCOMPARE(fixture.client.ends.constLast(), QStringLiteral("failed 1"));
        QCOMPARE(fixture.client.failures.constLast().domain, kx::CFNetworkErrorDomain);
    }

    void aDeadProcessIsReportedOnceToEachPageOfIt()
    {
        PageFixture fixture;
        fixture.loadHtml("<p>one");
        const qint64 first = fixture.page->rendererProcessId();
        ::kill(pid_t(first), SIGKILL);
        QTRY_COMPARE(fixture.client.terminations, 1);
        // User scripts and handlers are there in the next document, and in that after a second death.
        for (int round = 0; round < 2; ++round) {
            fixture.messages.clear();
            fixture.loadHtml("<script>webkit.messageHandlers.native.postMessage('again')</script>");
            QTRY_COMPARE(fixture.messages.size(), 1);
            QVERIFY(fixture.page->rendererProcessId() != first);
            ::kill(pid_t(fixture.page->rendererProcessId()), SIGKILL);
            QTRY_COMPARE(fixture.client.terminations, round + 2);
        }
    }

    void asksAboutRedirectsAndFramesAndUnknownSchemes()
    {
        PageFixture fixture;
        HttpResponse redirect;
        redirect.status = 302;
        redirect.headers = {{"Location", "/there"}};
        fixture.server.serve("/here", redirect);
        fixture.serve("/there", "<iframe src='/frame'></iframe>");
        fixture.serve("/frame", "");
        fixture.load(fixture.server.url("/here"));
        QTRY_COMPARE(fixture.client.actions.size(), 3);
        QCOMPARE(fixture.client.actions.at(0).url, fixture.server.url("/here"));
        QCOMPARE(fixture.client.actions.at(1).url, fixture.server.url("/there"));
        QCOMPARE(fixture.client.actions.at(1).targetFrame, std::optional(kx::FrameInfo{true}));
        QCOMPARE(fixture.client.actions.at(2).url, fixture.server.url("/frame"));
        QCOMPARE(fixture.client.actions.at(2).targetFrame, std::optional(kx::FrameInfo{false}));
        QCOMPARE(fixture.client.ends, QStringList(QStringLiteral("finished")));

        fixture.evaluate(QStringLiteral("location = 'kxunknown://do/it'; 0"));
        QTRY_COMPARE(fixture.client.ends.size(), 2);
        QCOMPARE(fixture.client.actions.constLast().url, QUrl(QStringLiteral("kxunknown://do/it")));
        QCOMPARE(fixture.client.ends.constLast(), QStringLiteral("provisional -1002"));
        QCOMPARE(fixture.page->url(), fixture.server.url("/there"));
    }

    void aRefusedNavigationLeavesThePageAlone()
    {
        PageFixture fixture;
        fixture.loadHtml("<p id=p>stays");
        fixture.client.decide = [](const kx::NavigationAction &) { return kx::NavigationPolicy::Cancel; };
        fixture.evaluate(QStringLiteral("location = '/elsewhere'; 0"));
        QTRY_COMPARE(fixture.client.ends, QStringList({QStringLiteral("finished"), QStringLiteral("provisional 102")}));
        QCOMPARE(fixture.evaluate(QStringLiteral("p.innerText")).value, QJsonValue(QStringLiteral("stays")));
        QVERIFY(!fixture.server.requests().contains("/elsewhere"));
    }

    void aLoadBegunWhileThePolicyIsAskedTakesItsPlace_data()
    {
        QTest::addColumn<bool>("byThePage");
        QTest::newRow("load of the application") << false;
        QTest::newRow("navigation of the page") << true;
    }
    void aLoadBegunWhileThePolicyIsAskedTakesItsPlace()
    {
        QFETCH(bool, byThePage);
        PageFixture fixture;
        for (const char *path : {"/one", "/two", "/three"})
            fixture.serve(path, "");
        fixture.loadHtml("");
        fixture.client.ends.clear();
        fixture.client.decide = [&](const kx::NavigationAction &action) {
            if (action.url.path() == QLatin1String("/one"))
                fixture.page->load(fixture.server.url("/two"));
            else if (action.url.path() == QLatin1String("/two"))
                fixture.page->load(fixture.server.url("/three"));
            return kx::NavigationPolicy::Allow;
        };
        if (byThePage)
            fixture.evaluate(QStringLiteral("location = '/one'; 0"));
        else
            fixture.page->load(fixture.server.url("/one"));
        QStringList expected = {QStringLiteral("provisional -999"), QStringLiteral("finished")};
        if (!byThePage) // what the page wants has not begun before it is allowed
            expected.prepend(QStringLiteral("provisional -999"));
        QTRY_COMPARE(fixture.client.ends, expected);
        QVERIFY(!fixture.page->isLoading());
        QCOMPARE(fixture.page->url(), fixture.server.url("/three"));
        QVERIFY(!fixture.server.requests().contains("/one"));
        QVERIFY(!fixture.server.requests().contains("/two"));
        // Nothing of them is left.
        fixture.client.decide = {};
        for (const char *path : {"/one", "/two", "/three"}) {
            fixture.load(fixture.server.url(path));
            expected.append(QStringLiteral("finished"));
        }
        QCOMPARE(fixture.client.ends, expected);
    }

    void aStopWhileThePolicyIsAskedEndsTheLoad()
    {
        PageFixture fixture;
        fixture.loadHtml("<p id=p>stays");
        fixture.serve("/one", "<p>one");
        fixture.client.decide = [&](const kx::NavigationAction &) {
            fixture.page->stopLoading();
            return kx::NavigationPolicy::Allow;
        };
        fixture.load(fixture.server.url("/one"));
        QCOMPARE(fixture.client.ends, QStringList({QStringLiteral("finished"), QStringLiteral("provisional -999")}));
        QVERIFY(!fixture.page->isLoading());
        QCOMPARE(fixture.evaluate(QStringLiteral("p.innerText")).value, QJsonValue(QStringLiteral("stays")));
        QVERIFY(!fixture.page->isLoading());
        QVERIFY(!fixture.server.requests().contains("/one"));
        fixture.client.decide = {};
        fixture.load(fixture.server.url("/one"));
        QCOMPARE(
            fixture.client.ends.mid(1), QStringList({QStringLiteral("provisional -999"), QStringLiteral("finished")}));
    }

    void failsWhatTheEngineWouldNotLoad_data()
    {
        QTest::addColumn<QString>("url");
        for (const char *url : {"page.html", "?a=1", "#part", "//127.0.0.1/page", "http://", "https:///page",
                 "http://[bad", "javascript:document.title='ran'"})
            QTest::newRow(url) << QString::fromLatin1(url);
    }
    void failsWhatTheEngineWouldNotLoad()
    {
        QFETCH(QString, url);
        PageFixture fixture;
        fixture.loadHtml("<title>stays</title>");
        fixture.load(QUrl(url));
        QCOMPARE(fixture.client.ends, QStringList({QStringLiteral("finished"), QStringLiteral("provisional -1002")}));
        QVERIFY(!fixture.page->isLoading());
        QCOMPARE(fixture.evaluate(QStringLiteral("document.title")).value, QJsonValue(QStringLiteral("stays")));
        QCOMPARE(fixture.client.ends.size(), 2);
    }

    void tellsTheTypeOfANavigation()
    {
        PageFixture fixture;
        fixture.serve("/next", "");
        fixture.loadHtml("<form id=f action='/next'></form><a id=a href='/next'>next</a>");
        fixture.evaluate(QStringLiteral("a.click()"));
        QTRY_COMPARE(fixture.client.finished, 2);
        QCOMPARE(fixture.client.actions.constLast().type, kx::NavigationType::LinkActivated);
        fixture.evaluate(QStringLiteral("history.back(); 0"));
        QTRY_COMPARE(fixture.client.finished, 3);
        QCOMPARE(fixture.client.actions.constLast().type, kx::NavigationType::BackForward);
        fixture.evaluate(QStringLiteral("f.submit()"));
        QTRY_COMPARE(fixture.client.finished, 4);
        QCOMPARE(fixture.client.actions.constLast().type, kx::NavigationType::FormSubmitted);
    }

    void asksAboutAnEmptyPageToo()
    {
        PageFixture fixture;
        fixture.load(QUrl(QStringLiteral("about:blank")));
        QCOMPARE(fixture.client.ends, QStringList(QStringLiteral("finished")));
        fixture.client.decide = [](const kx::NavigationAction &) { return kx::NavigationPolicy::Cancel; };
        fixture.load(QUrl(QStringLiteral("about:blank")));
        QCOMPARE(fixture.client.ends.constLast(), QStringLiteral("provisional 102"));
    }

    void leavesTheEngineItsOwnSchemes()
    {
        struct Handler final : kx::URLSchemeHandler {
            void startURLSchemeTask(const kx::URLSchemeTaskPtr &) override { ++tasks; }
            void stopURLSchemeTask(const kx::URLSchemeTaskPtr &) override { }
            int tasks = 0;
        } handler;
        QTemporaryFile file;
        QVERIFY(file.open() && file.write("<p>file") > 0 && file.flush());
        PageFixture fixture;
        for (const char *scheme : {"http", "file", "no scheme"})
            fixture.configuration->setURLSchemeHandler(&handler, QString::fromLatin1(scheme));
        fixture.loadHtml("<p>http");
        fixture.load(QUrl::fromLocalFile(file.fileName()));
        QCOMPARE(fixture.client.ends, QStringList(2, QStringLiteral("finished")));
        QCOMPARE(handler.tasks, 0);
    }

    void mayBeDeletedWhenAskedAboutAnEmptyPage()
    {
        PageFixture fixture;
        fixture.make();
        fixture.client.decide = [&](const kx::NavigationAction &) {
            fixture.page.reset();
            return kx::NavigationPolicy::Allow;
        };
        fixture.page->load(QUrl(QStringLiteral("about:blank")));
        QTRY_VERIFY(!fixture.page);
        QCoreApplication::processEvents();
        QVERIFY(fixture.client.ends.isEmpty());
    }
};

QTEST_MAIN(PageLoadTest)
#include "PageLoadTest.moc"
