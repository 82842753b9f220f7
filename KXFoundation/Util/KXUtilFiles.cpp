// SPDX-License-Identifier: MIT
#include <KXFoundation/Util/KXUtil.h>

#include <KXFoundation/Platform/Core/FileTree.h>
#include <KXFoundation/Platform/Core/MediaDuration.h>

#include <QtCore/QCryptographicHash>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <array>
#include <cmath>
#include <thread>

qint64 KXUtil::getVideoDuration(const QUrl &url)
{
    // Files alone: a pipe would be waited for without end.
    const QString path = url.toLocalFile();
    if (!kx::canNameAFile(path) || !QFileInfo(path).isFile())
        return 0;
    const auto seconds = float(kx::mediaDurationInSeconds(path).value_or(0));
    return qint64(std::ceil(seconds));
}

QString KXUtil::getFileMD5StrFromPath(const QString &path)
{
    return getFileMD5StrFromPath(path, [](std::chrono::milliseconds time) { std::this_thread::sleep_for(time); });
}

QString KXUtil::getFileMD5StrFromPath(const QString &path, const std::function<void(std::chrono::milliseconds)> &rest)
{
    constexpr int readsBeforeRest = 2048;
    QFile file(path);
    if (!kx::canNameAFile(path) || !file.open(QIODevice::ReadOnly))
        return {};
    QCryptographicHash digest(QCryptographicHash::Md5);
    std::array<char, 1024> buffer;
    for (int reads = 0;; ++reads) {
        if (reads == readsBeforeRest) {
            if (rest)
                rest(std::chrono::milliseconds(100));
            reads = 0;
        }
        const qint64 size = file.read(buffer.data(), qint64(buffer.size()));
        if (size <= 0)
            break;
        digest.addData(QByteArrayView(buffer.data(), qsizetype(size)));
    }
    return QString::fromLatin1(digest.result().toHex());
}
