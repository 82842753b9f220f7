// SPDX-License-Identifier: MIT
#include <KXFoundation/Util/KXUtil.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QStandardPaths>
#include <QtCore/QTemporaryDir>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>
#include <QtTest/QTest>

#include <sys/stat.h>

// The clips are made by ffmpeg. Broken ones make libavformat complain on standard error.
class KXUtilVideoDurationTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_ffmpeg = QStandardPaths::findExecutable(QStringLiteral("ffmpeg"));
        QVERIFY2(!m_ffmpeg.isEmpty(), "ffmpeg is needed to make clips");
        makeVideo(QStringLiteral("clip.mp4"), "10.2");
    }
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    // Must stay the first one.
    void loadsLibavformatAtTheFirstQuestion()
    {
        QVERIFY(loadedLibrary().isEmpty());
        QCOMPARE(duration(QStringLiteral("missing.mp4")), 0);
        QVERIFY(loadedLibrary().isEmpty()); // no file, no need
        QCOMPARE(duration(QStringLiteral("clip.mp4")), 11);
        QVERIFY(loadedLibrary().startsWith(QLatin1String("libavformat.so.")));
    }

    void roundsUp_data()
    {
        QTest::addColumn<QByteArray>("seconds");
        QTest::addColumn<qint64>("duration");
        QTest::newRow("a tenth") << QByteArray("0.1") << qint64(1);
        QTest::newRow("whole") << QByteArray("3") << qint64(3);
        QTest::newRow("little more") << QByteArray("3.1") << qint64(4);
        QTest::newRow("little less") << QByteArray("3.9") << qint64(4);
        QTest::newRow("ten and a fifth") << QByteArray("10.2") << qint64(11);
    }
    void roundsUp()
    {
        QFETCH(const QByteArray, seconds);
        QFETCH(const qint64, duration);
        makeVideo(QStringLiteral("rounded.mp4"), seconds);
        QCOMPARE(this->duration(QStringLiteral("rounded.mp4")), duration);
    }

    // Single precision: what is beyond it does not count as a part of a second.
    void roundsInSinglePrecision()
    {
        makeVideo(QStringLiteral("precise.mp4"), "300", "1/100", {"-video_track_timescale", "1000000"});
        QCOMPARE(duration(QStringLiteral("precise.mp4")), 300);
        QByteArray bytes = content(QStringLiteral("precise.mp4"));
        const qsizetype header = bytes.indexOf("mvhd"); // version and flags, two times, time scale, duration
        QVERIFY(header > 0);
        const auto put = [&](qsizetype at, quint32 value) {
            for (int i = 0; i < 4; ++i)
                bytes[header + 4 + at + i] = static_cast<char>(value >> (24 - 8 * i));
        };
        put(12, 1000000);
        put(16, 300000010); // the next single is 300.00003
        write(QStringLiteral("precise.mp4"), bytes);
        QCOMPARE(duration(QStringLiteral("precise.mp4")), 300);
        put(16, 300000020);
        write(QStringLiteral("precise.mp4"), bytes);
        QCOMPARE(duration(QStringLiteral("precise.mp4")), 301);
        put(16, 0);
        write(QStringLiteral("precise.mp4"), bytes);
        QCOMPARE(duration(QStringLiteral("precise.mp4")), 0);
    }

    void knowsManyFormats_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArrayList>("options");
        const auto add = [](const char *name, const QByteArrayList &options = {}) {
            QTest::newRow(name) << QString::fromLatin1(name) << options;
        };
        add("header.mkv");
        add("header.mov");
        add("header.webm", {"-c:v", "libvpx"});
        add("header.avi");
        add("header at the front.mp4", {"-movflags", "faststart"});
        // No duration before packets are read.
        add("unknown.ts");
        add("unknown.gif");
        add("unknown pieces.mp4", {"-movflags", "frag_keyframe+empty_moov"});
    }
    void knowsManyFormats()
    {
        QFETCH(const QString, name);
        QFETCH(const QByteArrayList, options);
        makeVideo(name, "10.2", "10", options);
        QCOMPARE(duration(name), 11);
    }

    void knowsAudio_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name : {"sound.wav", "sound.flac", "sound.mp3", "sound.m4a"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }
    void knowsAudio()
    {
        QFETCH(const QString, name);
        make(name, {"-f", "lavfi", "-i", "sine=duration=10.2"});
        QCOMPARE(duration(name), 11);
    }

    void gives0WithoutADuration_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArrayList>("options");
        QTest::newRow("bare video stream") << QStringLiteral("bare.h264") << QByteArrayList{"-f", "h264"};
        QTest::newRow("live recording") << QStringLiteral("live.mkv") << QByteArrayList{"-f", "matroska", "-live", "1"};
        QTest::newRow("JPEG") << QStringLiteral("picture.jpg") << QByteArrayList{"-frames:v", "1"};
        QTest::newRow("TGA") << QStringLiteral("picture.tga") << QByteArrayList{"-frames:v", "1"};
        QTest::newRow("PNG") << QStringLiteral("picture.png") << QByteArrayList{"-frames:v", "1"};
    }
    void gives0WithoutADuration()
    {
        QFETCH(const QString, name);
        QFETCH(const QByteArrayList, options);
        makeVideo(name, "1", "10", options);
        QCOMPARE(duration(name), 0);
    }

    void gives0ForWhatIsNotMedia()
    {
        write(QStringLiteral("empty.mp4"), {});
        write(QStringLiteral("text.txt"), QByteArray("Nothing to see here.\n").repeated(5000));
        write(QStringLiteral("noise.mp4"), QByteArray(100000, '\x55'));
        const QByteArray clip = content(QStringLiteral("clip.mp4"));
        write(QStringLiteral("cut.mp4"), clip.first(clip.size() / 2)); // the header stands at the end
        write(QStringLiteral("titles.srt"), "1\n00:00:01,000 --> 00:00:12,000\nWords.\n\n");
        write(QStringLiteral("samples.al"), QByteArray(100000, '\x55')); // bare samples, by its name alone
        write(QStringLiteral("chapters.txt"), ";FFMETADATA1\n[CHAPTER]\nTIMEBASE=1/1\nSTART=0\nEND=12\n");
        for (const char *name :
            {"empty.mp4", "text.txt", "noise.mp4", "cut.mp4", "titles.srt", "samples.al", "chapters.txt"})
            QCOMPARE(duration(QString::fromLatin1(name)), 0);
    }

    void gives0ForWhatIsNotAFile()
    {
        QCOMPARE(KXUtil::getVideoDuration(QUrl::fromLocalFile(m_directory.path())), 0);
        QCOMPARE(KXUtil::getVideoDuration(QUrl::fromLocalFile(path(QStringLiteral("missing.mp4")))), 0);
        const QString clip = path(QStringLiteral("clip.mp4"));
        QCOMPARE(KXUtil::getVideoDuration(QUrl::fromLocalFile(QString(clip + u'/'))), 0);
        QCOMPARE(KXUtil::getVideoDuration(QUrl::fromLocalFile(QString(clip + QChar(0) + u'x'))), 0);
        const QString pipe = path(QStringLiteral("pipe.mp4"));
        QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        QCOMPARE(KXUtil::getVideoDuration(QUrl::fromLocalFile(pipe)), 0); // and does not wait for a writer
    }

    // Also where a file is at the address's path.
    void gives0ForOtherAddressesThanFiles_data()
    {
        QTest::addColumn<QString>("scheme");
        for (const char *scheme : {"", "http:", "http://localhost", "https://localhost", "ftp://localhost",
                 "qrc:", "concat:", "pipe:", "data:"})
            QTest::addRow("'%s'", scheme) << QString::fromLatin1(scheme);
    }
    void gives0ForOtherAddressesThanFiles()
    {
        QFETCH(const QString, scheme);
        const QUrl url(QString(scheme + path(QStringLiteral("clip.mp4"))));
        QVERIFY(url.isValid());
        QCOMPARE(KXUtil::getVideoDuration(url), 0);
        QCOMPARE(KXUtil::getVideoDuration(QUrl()), 0);
    }

    void takesNothingButThePathOfAFilesAddress()
    {
        QUrl url = QUrl::fromLocalFile(path(QStringLiteral("clip.mp4")));
        url.setQuery(QStringLiteral("start=5"));
        url.setFragment(QStringLiteral("t=5"));
        QCOMPARE(KXUtil::getVideoDuration(url), 11);
    }

    void takesAnyName_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name : {"with space.mp4", "100%.mp4", "%03d.mp4", "a#b?c.mp4", "http:clip.mp4",
                 "Größe 高清.mp4", "no extension", "-i.mp4", "wrong.txt"})
            QTest::newRow(name) << QString::fromUtf8(name);
    }
    void takesAnyName()
    {
        QFETCH(const QString, name);
        QFile::remove(path(name));
        QVERIFY(QFile::copy(path(QStringLiteral("clip.mp4")), path(name)));
        QCOMPARE(duration(name), 11);
        const QString link = path(QString(u"link to " + name));
        QFile::remove(link);
        QVERIFY(QFile::link(path(name), link));
        QCOMPARE(KXUtil::getVideoDuration(QUrl::fromLocalFile(link)), 11);
    }

    // Such texts name files and streams to play. Only the file that was asked for is opened: others may be pipes that
    // are waited for without end, or lie beyond the network.
    void opensNothingThatAFileNames_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("text"); // "%" for the other file
        const QByteArray heading("#EXTM3U\n#EXT-X-TARGETDURATION:9999\n#EXTINF:10.2,\n%\n");
        QTest::newRow("playlist") << QStringLiteral("list.m3u8") << QByteArray(heading + "#EXT-X-ENDLIST\n");
        QTest::newRow("playlist that goes on") << QStringLiteral("live.m3u8") << heading;
        QTest::newRow("list of parts") << QStringLiteral("parts.ffconcat")
                                       << QByteArray("ffconcat version 1.0\nfile '%'\n");
        QTest::newRow("session description")
            << QStringLiteral("session.sdp")
            << QByteArray("v=0\no=- 0 0 IN IP4 127.0.0.1\ns=%\nc=IN IP4 127.0.0.1\nt=0 0\nm=video 50000 RTP/AVP 96\n"
                          "a=rtpmap:96 H264/90000\n");
    }
    void opensNothingThatAFileNames()
    {
        QFETCH(const QString, name);
        QFETCH(const QByteArray, text);
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost));
        int connections = 0;
        connect(&server, &QTcpServer::newConnection, this, [&] {
            ++connections;
            server.nextPendingConnection()->abort();
        });
        const QString pipe = path(QStringLiteral("waiting.ts"));
        QFile::remove(pipe);
        QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        for (const QByteArray &other : {QFile::encodeName(path(QStringLiteral("clip.mp4"))), QFile::encodeName(pipe),
                 QByteArray("waiting.ts"), QByteArray("missing.ts"),
                 QByteArray("http://127.0.0.1:" + QByteArray::number(server.serverPort()) + "/clip.ts")}) {
            write(name, QByteArray(text).replace('%', other));
            QProcess process;
            ask(process, name);
            QTRY_COMPARE_WITH_TIMEOUT(process.state(), QProcess::NotRunning, 20'000);
            QCOMPARE(process.readAllStandardOutput(), QByteArray("0"));
            QCOMPARE(process.exitCode(), 0);
        }
        QCoreApplication::processEvents();
        QCOMPARE(connections, 0);
    }

    void mayBeAskedFromManyThreadsAtOnce()
    {
        QProcess process;
        ask(process, QStringLiteral("clip.mp4"), 8);
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.readAllStandardOutput(), QByteArray("11"));
        QCOMPARE(process.exitCode(), 0);
    }

    void gives0WithoutLibavformat()
    {
        const QString libraries = path(QStringLiteral("libraries"));
        QVERIFY(QDir().mkpath(libraries));
        // A file of the library's name that is none, found before the real one.
        const QString name = loadedLibrary().section(u'.', 0, 2);
        write(QString(u"libraries/" + name), "not a library");
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("LD_LIBRARY_PATH"), libraries);
        process.setProcessEnvironment(environment);
        ask(process, QStringLiteral("clip.mp4"));
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.readAllStandardOutput(), QByteArray("0"));
        QCOMPARE(process.exitCode(), 0);
    }

private:
    [[nodiscard]] QString path(const QString &name) const { return m_directory.filePath(name); }
    [[nodiscard]] qint64 duration(const QString &name) const
    {
        return KXUtil::getVideoDuration(QUrl::fromLocalFile(path(name)));
    }

    // Has a process ask for a duration, in as many threads at once.
    void ask(QProcess &process, const QString &name, int threads = 1) const
    {
        process.start(
            QStringLiteral(KX_UTIL_CHILD), {QStringLiteral("duration"), QString::number(threads), path(name)});
    }

    // The file name of libavformat in this process; empty when it is not there.
    static QString loadedLibrary()
    {
        QFile maps(QStringLiteral("/proc/self/maps"));
        if (!maps.open(QIODevice::ReadOnly))
            return {};
        static const QRegularExpression library(QStringLiteral("libavformat[^/\n]*"));
        return library.match(QString::fromUtf8(maps.readAll())).captured();
    }

    void makeVideo(const QString &name, const QByteArray &seconds, const QByteArray &rate = "10",
        const QByteArrayList &options = {}) const
    {
        const QByteArray source = QByteArray("testsrc=size=64x48:rate=" + rate + ":duration=" + seconds);
        make(name, QByteArrayList{"-f", "lavfi", "-i", source} + options);
    }
    void make(const QString &name, const QByteArrayList &options) const
    {
        QStringList arguments;
        for (const QByteArray &option : QByteArrayList{"-hide_banner", "-loglevel", "error", "-y"} + options)
            arguments << QString::fromLatin1(option);
        QProcess process;
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.setStandardInputFile(QProcess::nullDevice());
        process.start(m_ffmpeg, arguments << path(name));
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitCode(), 0);
    }

    [[nodiscard]] QByteArray content(const QString &name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    void write(const QString &name, const QByteArray &bytes) const
    {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }

    QString m_ffmpeg;
    QTemporaryDir m_directory;
};

QTEST_GUILESS_MAIN(KXUtilVideoDurationTest)
#include "KXUtilVideoDurationTest.moc"
