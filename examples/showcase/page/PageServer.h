// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/Web/URLSchemeTask.h>

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QTemporaryDir>
#include <QtCore/QUrl>

class ClipFolder;

/// Answers the page's requests behind a URL scheme of the program's own: the page itself comes out of the resources,
/// and a clip's poster is a frame that ffmpeg takes out of the file when the page asks for it first.
class PageServer : public QObject {
    Q_OBJECT
public:
    /// Makes the scheme known. Call before the application object is made.
    static void registerScheme();
    [[nodiscard]] static QUrl pageUrl();
    [[nodiscard]] static QString posterUrl(int clipId);

    /// Serves from now on; the folder must outlive the server.
    explicit PageServer(const ClipFolder &folder, QObject *parent = nullptr);
    ~PageServer() override;

private:
    void answer(const kx::URLSchemeTaskPtr &task);
    void answerPoster(const kx::URLSchemeTaskPtr &task, int clipId);

    const ClipFolder &m_folder;
    QTemporaryDir m_posters;
    QHash<int, QList<kx::URLSchemeTaskPtr>> m_waiting; // for the posters that are being made
};
