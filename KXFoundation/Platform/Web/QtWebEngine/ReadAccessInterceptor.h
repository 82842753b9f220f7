// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QStringList>
#include <QtCore/QUrl>
#include <QtWebEngineCore/QWebEngineUrlRequestInterceptor>

class QWebEngineLoadingInfo;
class QWebEnginePage;

namespace kx {

/// Keeps a page's file: requests, those of its frames and workers too, below the directory that came with the file.
/// The engine itself lets a file page read every file. Requests for anything else pass.
///
/// Links are followed when a request is made; one that changes between that and the engine's reading is not noticed.
class ReadAccessInterceptor final : public QWebEngineUrlRequestInterceptor {
    Q_OBJECT
public:
    /// For this page, which owns it. Give it to page.setUrlRequestInterceptor(), or have the interceptor that is there
    /// pass its requests on. Until the first grant the page reads no file.
    explicit ReadAccessInterceptor(QWebEnginePage &page);

    /// For the application's next load of a file, `document`; call it just before that load. `directory` is an absolute
    /// path and may be the file itself; an empty one grants nothing. No earlier grant counts for that load. The
    /// document that is shown keeps its own directory until the new one has been loaded, and going back to a document
    /// brings its directory back.
    void grant(const QUrl &document, const QString &directory);

    void interceptRequest(QWebEngineUrlRequestInfo &info) override;

Q_SIGNALS:
    /// A file was refused. For a main frame its load then fails with the engine's code -20 (blocked by the client).
    void blocked(const QUrl &url, bool mainFrame);

private:
    /// The directory that lets the main frame show this file; null when none does.
    [[nodiscard]] QString directoryOfDocument(const QUrl &url, QWebEngineUrlRequestInfo::NavigationType type) const;
    [[nodiscard]] bool allowsDocument(const QUrl &url, QWebEngineUrlRequestInfo::NavigationType type);
    void loadingChanged(const QWebEngineLoadingInfo &info);

    QStringList m_granted; ///< Every directory so far, latest last.
    QStringList m_current; ///< Those of the document shown and of the one being loaded.
    QUrl m_expected; ///< The application's next document, until its request comes.
    QUrl m_loading; ///< The file that is to be the document.
};

} // namespace kx
