// SPDX-License-Identifier: MIT
#include <QtCore/QDir>
#include <QtCore/QDirIterator>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

#include <csignal>
#include <memory>

using namespace Qt::StringLiterals;

/// Runs the program itself, in a data directory of its own.
class DaemonTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();

    void logsIntoTheDaemonsFolder();
    void logsAtItsInterval();
    void obeysArgumentsAndInput();
    void refusesWhatItDoesNotKnow();
    void obeysALastLineWithoutALineFeed();
    void endsCleanly_data();
    void endsCleanly();
    void bringsNoWindows();

private:
    void start(const QStringList &arguments = {});
    void send(const QByteArray &line);
    /// The next line that the program prints; empty when none comes.
    QByteArray answer();
    QString log() const;
    bool hasEnded();

    std::unique_ptr<QTemporaryDir> m_data;
    std::unique_ptr<QProcess> m_daemon;
};

void DaemonTest::init()
{
    m_data = std::make_unique<QTemporaryDir>();
    m_daemon = std::make_unique<QProcess>();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"XDG_DATA_HOME"_s, m_data->path());
    m_daemon->setProcessEnvironment(environment);
    m_daemon->setProcessChannelMode(QProcess::ForwardedErrorChannel);
}

void DaemonTest::cleanup()
{
    m_daemon->closeWriteChannel();
    m_daemon->waitForFinished();
}

void DaemonTest::start(const QStringList &arguments)
{
    m_daemon->start(QStringLiteral(KX_DAEMON), arguments);
    QVERIFY2(m_daemon->waitForStarted(), qPrintable(m_daemon->errorString()));
}

void DaemonTest::send(const QByteArray &line)
{
    m_daemon->write(line + '\n');
}

QByteArray DaemonTest::answer()
{
    while (!m_daemon->canReadLine()) {
        if (!m_daemon->waitForReadyRead())
            return {};
    }
    return m_daemon->readLine().trimmed();
}

QString DaemonTest::log() const
{
    QString text;
    QDirIterator files(m_data->filePath(u"example.kxfoundation/Logs/Deamon"_s), {u"*.log"_s}, QDir::Files,
        QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (file.open(QIODevice::ReadOnly))
            text += QString::fromUtf8(file.readAll());
    }
    return text;
}

bool DaemonTest::hasEnded()
{
    return m_daemon->waitForFinished() && m_daemon->exitStatus() == QProcess::NormalExit && m_daemon->exitCode() == 0;
}

void DaemonTest::logsIntoTheDaemonsFolder()
{
    start();
    m_daemon->closeWriteChannel();
    QVERIFY(hasEnded());
    QVERIFY2(log().contains(u"[daemon] started as process "), qPrintable(log()));
}

void DaemonTest::logsAtItsInterval()
{
    start({u"--interval"_s, u"0.01"_s});
    QTRY_VERIFY_WITH_TIMEOUT(
        (send("kx://action.cmd/save"), !answer().isEmpty() && log().contains(u"[daemon] beat 3, disk ")), 20000);
    send("kx://action.cmd/interval?seconds=0");
    send("kx://action.cmd/save");
    (void)answer();
    (void)answer();
    const qsizetype beats = log().count(u"[daemon] beat ");
    send("kx://action.cmd/log?text=after");
    m_daemon->closeWriteChannel();
    QVERIFY(hasEnded());
    QCOMPARE(log().count(u"[daemon] beat "), beats);
    QVERIFY(log().contains(u"[action] after"));
}

void DaemonTest::obeysArgumentsAndInput()
{
    start({u"kx://action.cmd/log?text=first"_s, u"kx://action.cmd/duration?path=/nowhere.mp4"_s});
    QCOMPARE(answer(), "done kx://action.cmd/log?text=first");
    QCOMPARE(answer(), "done kx://action.cmd/duration?path=/nowhere.mp4");
    send("kx://action.cmd/log?text=gr%C3%BC%C3%9Fe%20%26%20more");
    QVERIFY(answer().startsWith("done "));
    send("  ");
    send("kx://action.cmd/log?text=last&type=2");
    QVERIFY(answer().startsWith("done "));
    m_daemon->closeWriteChannel();
    QVERIFY(hasEnded());
    const QRegularExpression inOrder(
        u"\\[action\\] first\n.*\\[action\\] /nowhere.mp4 plays for 0 s\n.*\\[action\\] grüße & more\n.*\\[action\\] last\n"_s,
        QRegularExpression::DotMatchesEverythingOption);
    QVERIFY2(log().contains(inOrder), qPrintable(log()));
}

void DaemonTest::refusesWhatItDoesNotKnow()
{
    start({u"kx://action.cmd/teleport"_s, u"other://action.cmd/log?text=no"_s, u"no url"_s});
    for (int i = 0; i < 3; ++i)
        QVERIFY(answer().startsWith("refused "));
    send("kx://action.cmd/log?text=100%25"); // a value that never decodes
    QVERIFY(answer().startsWith("done "));
    m_daemon->closeWriteChannel();
    QVERIFY(hasEnded());
    QVERIFY(log().contains(u"[action] 100%"));
    QVERIFY(!log().contains(u"[action] no"));
}

void DaemonTest::obeysALastLineWithoutALineFeed()
{
    start();
    m_daemon->write("kx://action.cmd/log?text=cut");
    m_daemon->closeWriteChannel();
    QVERIFY(hasEnded());
    QVERIFY(log().contains(u"[action] cut"));
}

void DaemonTest::endsCleanly_data()
{
    QTest::addColumn<int>("signal");
    QTest::addColumn<QString>("reason");
    QTest::newRow("SIGTERM") << SIGTERM << u"SIGTERM"_s;
    QTest::newRow("SIGINT") << SIGINT << u"SIGINT"_s;
    QTest::newRow("end of input") << 0 << u"end of input"_s;
    QTest::newRow("an action") << -1 << u"asked to"_s;
}

void DaemonTest::endsCleanly()
{
    QFETCH(int, signal);
    QFETCH(QString, reason);
    start({u"kx://action.cmd/log?text=kept"_s});
    QVERIFY(!answer().isEmpty()); // by now it hears signals
    if (signal > 0)
        QCOMPARE(::kill(pid_t(m_daemon->processId()), signal), 0);
    else if (signal == 0)
        m_daemon->closeWriteChannel();
    else
        send("kx://action.cmd/quit");
    QVERIFY(hasEnded());
    const QString text = log();
    QVERIFY2(text.contains(u"[action] kept"), qPrintable(text));
    QVERIFY2(text.contains(u"[daemon] ends: "_s + reason), qPrintable(text));
    QVERIFY(text.endsWith(u"force eof\n"));
}

void DaemonTest::bringsNoWindows()
{
    start({u"kx://action.cmd/save"_s});
    QVERIFY(!answer().isEmpty());
    QFile maps(u"/proc/%1/maps"_s.arg(m_daemon->processId()));
    QVERIFY(maps.open(QIODevice::ReadOnly));
    const QByteArray libraries = maps.readAll();
    QVERIFY(libraries.contains("KXFoundationCore"));
    for (const char *library : {"KXFoundationUI", "Qt6Gui", "Qt6Widgets", "Qt6WebEngine"})
        QVERIFY2(!libraries.contains(library), library);
}

QTEST_GUILESS_MAIN(DaemonTest)

#include "DaemonTest.moc"
