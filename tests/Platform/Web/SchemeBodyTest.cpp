// SPDX-License-Identifier: MIT
// Answers to the engine's requests for custom schemes: how their bodies reach the page.
#include "SchemePages.h"

using namespace Qt::StringLiterals;
using kx::test::answer;
using kx::test::Task;

class SchemeBodyTest : public kx::test::SchemePages {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { startEngine(); }
    void init() { makePage(); }
    void cleanup() { destroyPage(); }

    void passesABigBody_data();
    void passesABigBody();
    void streamsPiecesAsTheyCome();
    void answersARangeOfAWholeBody();
    void answersManyRequestsInAnyOrder();
    void takesDataWithoutAResponse();
    void engineReadsOnWhenTheTaskIsDropped();
};

void SchemeBodyTest::passesABigBody_data()
{
    QTest::addColumn<bool>("whole");
    QTest::newRow("whole") << true;
    QTest::newRow("stream") << false;
}

void SchemeBodyTest::passesABigBody()
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

void SchemeBodyTest::streamsPiecesAsTheyCome()
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

void SchemeBodyTest::answersARangeOfAWholeBody()
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

void SchemeBodyTest::answersManyRequestsInAnyOrder()
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

void SchemeBodyTest::takesDataWithoutAResponse()
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

void SchemeBodyTest::engineReadsOnWhenTheTaskIsDropped()
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

int main(int argc, char **argv)
{
    return kx::test::runWithSchemes<SchemeBodyTest>(argc, argv);
}

#include "SchemeBodyTest.moc"
