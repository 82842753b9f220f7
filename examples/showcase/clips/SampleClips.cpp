// SPDX-License-Identifier: MIT
#include "SampleClips.h"

#include "FfmpegRun.h"

#include <array>

using namespace Qt::StringLiterals;

namespace {

struct Sample {
    const char *name;
    const char *picture; // a source of ffmpeg's
    const char *sound;
    int seconds;
};

constexpr std::array samples{
    Sample{"Colour drift", "gradients=size=960x540:rate=24:speed=0.02:nb_colors=3:c0=0x1b2a6b:c1=0xe4572e:c2=0xf3a712",
        "sine=frequency=220:beep_factor=2", 24},
    Sample{"Game of life",
        "life=size=240x135:rate=12:mold=10:ratio=0.1:random_seed=7:death_color=0x1e3a8a:life_color=0xf59e0b,"
        "scale=960:540:flags=neighbor",
        "sine=frequency=330:beep_factor=3", 16},
    Sample{"Test card", "testsrc2=size=960x540:rate=24", "sine=frequency=440:beep_factor=2", 30},
};

} // namespace

SampleClips::SampleClips(const QDir &folder, QObject *parent)
    : QObject(parent)
    , m_folder(folder)
{
}

void SampleClips::make()
{
    m_next = 0;
    makeNext();
}

void SampleClips::makeNext()
{
    const Sample &sample = samples.at(size_t(m_next++));
    const QString path = m_folder.filePath(QString::fromLatin1(sample.name) + u".mp4"_s);
    const QString unfinished = path + u".part"_s; // a file that is there is whole
    auto *run = new FfmpegRun({u"-f"_s, u"lavfi"_s, u"-i"_s, QString::fromLatin1(sample.picture), //
                                  u"-f"_s, u"lavfi"_s, u"-i"_s, QString::fromLatin1(sample.sound), //
                                  u"-t"_s, QString::number(sample.seconds), u"-preset"_s, u"ultrafast"_s, //
                                  u"-pix_fmt"_s, u"yuv420p"_s, u"-g"_s, u"24"_s, u"-f"_s, u"mp4"_s, unfinished},
        this);
    connect(run, &FfmpegRun::ended, this, [this, run, path, unfinished](bool succeeded) {
        run->deleteLater();
        if (succeeded && QFile::rename(unfinished, path)) {
            Q_EMIT made();
            if (size_t(m_next) < samples.size())
                return makeNext();
        }
        Q_EMIT finished();
    });
    run->start();
}
