// SPDX-License-Identifier: MIT
#include "Support/EngineWarnings.h"

#include "AskingPage.h"
#include "Support/HttpServer.h"

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <memory>

using namespace kx;
using namespace kx::test;

namespace {

QByteArray resource(const QString &name)
{
    QFile file(QStringLiteral(":/tests/") + name);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

QString json(const QJsonValue &value)
{
    const QString array = QString::fromUtf8(QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact));
    return array.mid(1, array.size() - 2).replace(QStringLiteral("</"), QStringLiteral("<\\/"));
}

/// Cells whose answer is wrong, for lack of a sign that tells. docs/source-frames.md has the same list.
bool isKnownGap(const QString &main, const QString &from, const QString &way)
{
    // History has no announcement before it is asked about, and counts as the main frame's.
    if (way.startsWith(QLatin1String("history")))
        return from != QLatin1String("main");
    // Frames that a file page without file access writes announce as it does, but their scripts cannot be seen from
    // there, and a replacement without a script looks like the page's own refresh.
    if (main == QLatin1String("lone file") && way == QLatin1String("top.location.replace"))
        return from == QLatin1String("srcdoc") || from == QLatin1String("blob");
    // An opaque main document announces nothing; with frames about, what no link or form explains counts as theirs.
    static const QStringList explained{QStringLiteral("link _top"), QStringLiteral("link _self"),
        QStringLiteral("link _parent"), QStringLiteral("link to the main frame by name"),
        QStringLiteral("link _top, redirected"), QStringLiteral("a.click() _top"), QStringLiteral("form get _top"),
        QStringLiteral("form post _top"), QStringLiteral("form get _self"), QStringLiteral("form.submit() _top"),
        QStringLiteral("form.submit() _self"), QStringLiteral("form.requestSubmit() _top")};
    return main == QLatin1String("opaque") && from == QLatin1String("main") && !way.endsWith(QLatin1String("_blank"))
        && !way.startsWith(QLatin1String("history")) && !explained.contains(way);
}

/// Cells that the engine never asks about.
bool isNeverAsked(const QString &from, const QString &way)
{
    return from == QLatin1String("sandboxed") && way == QLatin1String("javascript: link");
}

/// Whether a navigation goes to the main frame; none for a new window.
std::optional<bool> targetOf(const QString &from, const QString &way)
{
    static const QStringList ownFrame{QStringLiteral("link _self"), QStringLiteral("form get _self"),
        QStringLiteral("form.submit() _self"), QStringLiteral("location="), QStringLiteral("location.assign"),
        QStringLiteral("location.replace"), QStringLiteral("meta refresh")};
    if (way.endsWith(QLatin1String("_blank")))
        return std::nullopt;
    if (way == QLatin1String("link _parent"))
        return from != QLatin1String("nested");
    return from == QLatin1String("main") || !ownFrame.contains(way);
}

} // namespace

class SourceFramesMatrixTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void tellsWhichFrameNavigates_data();
    void tellsWhichFrameNavigates();

private:
    QByteArray frameDocument() const;
    QUrl writeFile(const QString &name, const QByteArray &text);
    void makePages(const QString &main, const QString &from);

    HttpServer m_server;
    QTemporaryDir m_directory;
    QUrl m_mainUrl;
    int m_cell = 0;
};

void SourceFramesMatrixTest::initTestCase()
{
    const AskingPage first; // the engine's start has warnings of its own about the platform
    m_server.serve("/strict.js", answer(resource(QStringLiteral("source_frames_strict.js")), "text/javascript"));
    m_server.serve("/before", answer("<!doctype html>before"));
    m_server.serve("/favicon.ico", answer({}));
    m_server.setFallback([](const HttpRequest &request) {
        HttpResponse response;
        if (request.path.startsWith("/redirect")) {
            response.status = 302;
            response.headers.append(
                qMakePair(QByteArray("Location"), QByteArray("/dest" + request.path.mid(qstrlen("/redirect")))));
        }
        return response;
    });
}

void SourceFramesMatrixTest::init()
{
    QTest::failOnWarning(kx::test::anyWarningButTheEngines());
}

QByteArray SourceFramesMatrixTest::frameDocument() const
{
    const QByteArray strict = m_server.url("/strict.js").toEncoded();
    return "<!doctype html><body><script>" + resource(QStringLiteral("source_frames_runner.js"))
        + "</script><script src='" + strict + "?frame'></script><script src='" + strict + "?shared'></script>";
}

QUrl SourceFramesMatrixTest::writeFile(const QString &name, const QByteArray &text)
{
    QFile file(m_directory.filePath(name));
    if (!file.open(QFile::WriteOnly) || file.write(text) != text.size())
        qFatal("cannot write %s", qPrintable(name));
    return QUrl::fromLocalFile(file.fileName());
}

void SourceFramesMatrixTest::makePages(const QString &main, const QString &from)
{
    const bool file = main.endsWith(QLatin1String("file"));
    const QByteArray frame = frameDocument();
    const QByteArray nested =
        "<!doctype html><body style='margin:0'><iframe style='border:0;width:300px;height:100px' src='"
        + m_server.url("/frame").toEncoded() + "'></iframe>";
    m_server.serve("/frame", answer(frame));
    m_server.serve("/nested", answer(nested));

    const QUrl same = file ? writeFile(QStringLiteral("frame.html"), frame) : m_server.url("/frame");
    QString before = QStringLiteral("f.src = '%1';").arg(same.toString());
    QString after;
    if (from == QLatin1String("cross-origin"))
        before = QStringLiteral("f.src = '%1';").arg(m_server.url("/frame", "localhost").toString());
    else if (from == QLatin1String("nested"))
        before = QStringLiteral("f.src = '%1';").arg(m_server.url("/nested", "localhost").toString());
    else if (from == QLatin1String("sandboxed"))
        before += QStringLiteral("f.sandbox = 'allow-scripts allow-forms allow-popups allow-top-navigation';");
    else if (from == QLatin1String("srcdoc"))
        before = QStringLiteral("f.srcdoc = text;");
    else if (from == QLatin1String("data"))
        before = QStringLiteral("f.src = 'data:text/html;charset=utf-8,' + encodeURIComponent(text);");
    else if (from == QLatin1String("blob"))
        before = QStringLiteral("f.src = URL.createObjectURL(new Blob([text], {type: 'text/html'}));");
    else if (from == QLatin1String("written")) {
        before.clear();
        after = QStringLiteral("f.contentDocument.open(); f.contentDocument.write(text); f.contentDocument.close();");
    }
    QString text = QString::fromUtf8(resource(QStringLiteral("source_frames_main.html")));
    text.replace(QStringLiteral("@RUNNER@"), QString::fromUtf8(resource(QStringLiteral("source_frames_runner.js"))))
        .replace(QStringLiteral("@STRICT@"), m_server.url("/strict.js").toString())
        .replace(QStringLiteral("@FRAME_TEXT@"), json(QString::fromUtf8(frame)))
        .replace(QStringLiteral("@BEFORE@"), before)
        .replace(QStringLiteral("@AFTER@"), after);
    HttpResponse response = answer(text.toUtf8());
    if (main == QLatin1String("opaque"))
        response.headers.append(qMakePair(QByteArray("Content-Security-Policy"),
            QByteArray("sandbox allow-scripts allow-forms allow-popups allow-top-navigation")));
    m_server.serve("/main", response);
    m_mainUrl = file ? writeFile(QStringLiteral("main.html"), text.toUtf8()) : m_server.url("/main");
}

void SourceFramesMatrixTest::tellsWhichFrameNavigates_data()
{
    QTest::addColumn<QString>("main");
    QTest::addColumn<QString>("from");
    const auto rows = [](const char *main, const QList<const char *> &froms) {
        for (const char *from : froms)
            QTest::addRow("%s page, %s frame", main, from) << QString::fromLatin1(main) << QString::fromLatin1(from);
    };
    rows("http", {"main", "same-origin", "cross-origin", "sandboxed", "srcdoc", "data", "blob", "written", "nested"});
    rows("file", {"main", "file", "cross-origin", "sandboxed", "srcdoc", "data", "blob"});
    rows("lone file", {"srcdoc", "data", "blob"});
    rows("opaque", {"main", "cross-origin", "srcdoc"});
}

void SourceFramesMatrixTest::tellsWhichFrameNavigates()
{
    QFETCH(QString, main);
    QFETCH(QString, from);
    const bool fromMain = from == QLatin1String("main");
    const QPoint place(100, fromMain ? 50 : 150);
    makePages(main, from);

    WebPreferences preferences;
    preferences.allowFileAccessFromFileURLs = main != QLatin1String("lone file");
    AskingPage page(preferences);
    QVERIFY(page.loadAndWait(m_server.url("/before")));
    page.load(m_mainUrl);
    QVERIFY(page.waitFor([&] {
        return page.evaluate(QStringLiteral("typeof frame === 'object' && frame !== null && armed !== null")).toBool();
    }));
    page.refuseFromNow();
    QVERIFY2(page.waitFor([&] {
        page.click(place);
        return page.waitFor([&] { return page.evaluate(QStringLiteral("clickedInMain")) == QVariant(fromMain); },
            std::chrono::milliseconds(150));
    }),
        "clicks arrive");

    QStringList ways = page.evaluate(QStringLiteral("Object.keys(ways).join('|')")).toString().split(u'|');
    ways.append(QStringLiteral("link _top, redirected"));
    QStringList wrong;
    QStringList expectedWrong;
    QStringList unasked;
    QStringList elsewhere;
    for (const QString &way : std::as_const(ways)) {
        if (isNeverAsked(from, way))
            continue;
        if (isKnownGap(main, from, way))
            expectedWrong.append(way);
        const QByteArray name = '/' + QByteArray::number(++m_cell);
        const bool redirected = way.endsWith(QLatin1String(", redirected"));
        const QUrl destination = m_server.url((redirected ? "/redirect" : "/dest") + name);
        const QString askedPath =
            way.startsWith(QLatin1String("history")) ? QStringLiteral("/before") : QString::fromLatin1("/dest" + name);
        page.evaluate((fromMain ? QStringLiteral("window") : QStringLiteral("frame")) + QStringLiteral(".postMessage(")
            + json(QJsonObject{{QStringLiteral("way"), redirected ? QStringLiteral("link _top") : way},
                {QStringLiteral("url"), destination.toString()}})
            + QStringLiteral(", '*')"));
        QVERIFY2(page.waitFor([&] { return page.evaluate(QStringLiteral("armedUrl")) == destination.toString(); }),
            qPrintable(way));

        page.forgetQuestions();
        page.click(place);
        const Question *asked = nullptr;
        page.waitFor([&] {
            for (const Question &question : page.questions()) {
                if (question.url.path() == askedPath)
                    asked = &question;
            }
            return asked != nullptr;
        });
        if (!asked)
            unasked.append(way);
        else if (asked->sourceIsMain != fromMain)
            wrong.append(way);
        if (asked && asked->targetIsMain != targetOf(from, way))
            elsewhere.append(way);
    }
    QCOMPARE(unasked, QStringList());
    QCOMPARE(elsewhere, QStringList());
    QCOMPARE(wrong, expectedWrong);
}

QTEST_MAIN(SourceFramesMatrixTest)
#include "SourceFramesMatrixTest.moc"
