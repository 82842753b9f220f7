// SPDX-License-Identifier: MIT
#include "Row.h"

#include <KXFoundation/Util/KXUtil.h>

#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>

extern "C" {
#include <libavformat/avformat.h>
}

namespace {

using kx::bench::Clock;
using kx::bench::timed;

// Ten seconds of a test picture with sound, made at the first call. Empty when ffmpeg cannot make it.
const QString &clip()
{
    static const QTemporaryDir directory;
    static const QString path = [] {
        QString file = directory.filePath(QStringLiteral("clip.mp4"));
        const QString options = QStringLiteral("-loglevel error -f lavfi -i testsrc=size=1280x720:rate=25:duration=10 "
                                               "-f lavfi -i sine=duration=10 -pix_fmt yuv420p");
        const int failure = QProcess::execute(QStringLiteral("ffmpeg"), options.split(u' ') << file);
        return failure == 0 ? file : QString();
    }();
    return path;
}

void duration(benchmark::State &state)
{
    const QUrl url = QUrl::fromLocalFile(clip());
    if (KXUtil::getVideoDuration(url) != 10) // the library is loaded here
        return state.SkipWithError("not ten seconds");
    while (state.KeepRunning())
        benchmark::DoNotOptimize(KXUtil::getVideoDuration(url));
}

void durationPeer(benchmark::State &state)
{
    const QByteArray path = QFile::encodeName(clip());
    while (state.KeepRunning()) {
        AVFormatContext *media = nullptr;
        if (avformat_open_input(&media, path.constData(), nullptr, nullptr) < 0)
            return state.SkipWithError("cannot be opened");
        if (avformat_find_stream_info(media, nullptr) < 0 || media->duration == AV_NOPTS_VALUE)
            state.SkipWithError("no duration");
        avformat_close_input(&media);
    }
}

// Decoders may work in threads of their own: the clock on the wall counts.
const bool registered = timed({"media.duration", "us", 0.15, "box walk"}, duration, durationPeer, {}, Clock::Real);

} // namespace
