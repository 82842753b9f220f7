// SPDX-License-Identifier: MIT
#include "ClipFolder.h"

#include "FfmpegRun.h"
#include "SampleClips.h"

#include <KXFoundation/CustomComponent/WebView/WeakProxy/KXRWeakProxy.h>
#include <KXFoundation/Logger/KXLogger.h>
#include <KXFoundation/Util/KXUtil.h>

#include <QtCore/QThreadPool>
#include <QtCore/QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QStringList videoFiles{u"*.mp4"_s, u"*.mkv"_s, u"*.webm"_s, u"*.mov"_s, u"*.avi"_s, u"*.ogv"_s};

QStringList tagsOf(const QFileInfo &file, qint64 seconds)
{
    return {file.suffix().toLower(), seconds < 20 ? u"short"_s : u"long"_s};
}

} // namespace

ClipFolder::ClipFolder(const QDir &folder, QObject *parent)
    : QObject(parent)
    , m_folder(folder)
{
}

void ClipFolder::open()
{
    m_folder.mkpath(u"."_s);
    find();
}

Clip ClipFolder::clip(int id) const
{
    const auto found = std::find_if(m_clips.begin(), m_clips.end(), [id](const Clip &clip) { return clip.id == id; });
    return found == m_clips.end() ? Clip() : *found;
}

// How long a file plays is asked on another thread: a slow disk may take its time.
void ClipFolder::find()
{
    QThreadPool::globalInstance()->start([folder = m_folder, proxy = KXRWeakProxy(this)] {
        QList<Clip> found;
        for (const QFileInfo &file : folder.entryInfoList(videoFiles, QDir::Files, QDir::Time | QDir::Reversed)) {
            const QString path = file.absoluteFilePath();
            const qint64 seconds = KXUtil::getVideoDuration(QUrl::fromLocalFile(path));
            if (seconds > 0) // else it is no video, whatever its name says
                found.append({0, path, file.completeBaseName(), seconds, tagsOf(file, seconds)});
        }
        proxy.post(&ClipFolder::take, found);
    });
}

// Ids stay: a file that was there before keeps its own.
void ClipFolder::take(const QList<Clip> &found)
{
    for (Clip clip : found) {
        const auto isIt = [&clip](const Clip &other) { return other.path == clip.path; };
        if (std::any_of(m_clips.begin(), m_clips.end(), isIt))
            continue;
        clip.id = int(m_clips.size()) + 1;
        m_clips.append(clip);
        KXLogger::sharedLogger().writeLogFormat(1, "clips", "%@: %lld s", clip.path, clip.seconds);
    }
    if (m_state == State::Looking) {
        m_state = State::Complete;
        if (m_clips.isEmpty() && !FfmpegRun::program().isNull())
            fill();
    }
    Q_EMIT changed();
}

void ClipFolder::fill()
{
    m_state = State::MakingSamples;
    auto *samples = new SampleClips(m_folder, this);
    connect(samples, &SampleClips::made, this, &ClipFolder::find);
    connect(samples, &SampleClips::finished, this, [this, samples] {
        samples->deleteLater();
        m_state = State::Complete;
        Q_EMIT changed();
    });
    samples->make();
}
