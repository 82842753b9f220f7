// SPDX-License-Identifier: MIT
#include "ClipFolder.h"

#include "FfmpegRun.h"
#include "SampleClips.h"

#include <KXFoundation/Logger/KXLogger.h>
#include <KXFoundation/Util/KXUtil.h>

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
    if (m_clips.isEmpty() && !FfmpegRun::program().isNull())
        fill();
}

Clip ClipFolder::clip(int id) const
{
    const auto found = std::find_if(m_clips.begin(), m_clips.end(), [id](const Clip &clip) { return clip.id == id; });
    return found == m_clips.end() ? Clip() : *found;
}

// Ids stay: a file that was there before keeps its own.
void ClipFolder::find()
{
    for (const QFileInfo &file : m_folder.entryInfoList(videoFiles, QDir::Files, QDir::Time | QDir::Reversed)) {
        const QString path = file.absoluteFilePath();
        if (std::any_of(m_clips.begin(), m_clips.end(), [&path](const Clip &clip) { return clip.path == path; }))
            continue;
        const qint64 seconds = KXUtil::getVideoDuration(QUrl::fromLocalFile(path));
        if (seconds == 0)
            continue; // no video, whatever its name says
        m_clips.append({int(m_clips.size()) + 1, path, file.completeBaseName(), seconds, tagsOf(file, seconds)});
        KXLogger::sharedLogger().writeLogFormat(1, "clips", "%@: %lld s", file.fileName(), seconds);
    }
    Q_EMIT changed();
}

void ClipFolder::fill()
{
    m_filling = true;
    auto *samples = new SampleClips(m_folder, this);
    connect(samples, &SampleClips::made, this, &ClipFolder::find);
    connect(samples, &SampleClips::finished, this, [this, samples] {
        samples->deleteLater();
        m_filling = false;
        Q_EMIT changed();
    });
    samples->make();
}
