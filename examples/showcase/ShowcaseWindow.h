// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QJsonArray>
#include <QtCore/QStringList>
#include <QtWidgets/QMainWindow>

class KXWKWebView;

/// The showcase's player window: a page that lists clips, the native methods that it calls and the actions that its
/// links fire. What happened is kept in plain lists, so that a check can ask.
class ShowcaseWindow : public QMainWindow {
    Q_OBJECT
public:
    /// `pageFolder` holds index.html.
    explicit ShowcaseWindow(const QString &pageFolder, QWidget *parent = nullptr);

    [[nodiscard]] KXWKWebView &host() const { return *m_host; }

    /// Loads the clip page.
    void openClips();
    /// Asks the page to mark a clip; `marked` is told how many it marked.
    void markPlaying(int id, const std::function<void(int)> &marked = {});

    [[nodiscard]] int loads() const { return m_loads; }
    [[nodiscard]] const QStringList &playedTitles() const { return m_playedTitles; }
    [[nodiscard]] const QStringList &missingPages() const { return m_missingPages; }

private:
    void registerNativeMethods();
    void registerActions();
    void openAction(const QUrl &url);

    QString m_pageFolder;
    KXWKWebView *m_host;
    QJsonArray m_clips;
    int m_loads = 0;
    QStringList m_playedTitles;
    QStringList m_missingPages;
};
