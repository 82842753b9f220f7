// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/CustomComponent/WebView/WKWebView/KXWKWebView.h>

class ClipFolder;

/// The page that lists the clips, and the bridge to it. What the user does there comes as action URLs.
class ClipPage : public KXWKWebView {
    Q_OBJECT
public:
    /// The folder must outlive the page.
    explicit ClipPage(const ClipFolder &folder, QWidget *parent = nullptr);

    /// Loads the page.
    void open();

    // What the page shows; it is told again after each load.

    void showClips();
    void showPlaying(int clipId, bool playing);
    /// The clips with this tag, or all for an empty one.
    void showTag(const QString &tag);
    /// Asks the page for the clip below this one; `found` is called once it answers, with 0 when nothing is listed.
    void findNext(int clipId, const std::function<void(int)> &found);
    /// Goes to everyone who asked for it by "watchPosition".
    void showPosition(double fraction);

Q_SIGNALS:
    void actionRequested(const QString &url);

private:
    void registerNativeMethods();
    [[nodiscard]] QJsonArray clipList() const;
    [[nodiscard]] QString status() const;

    const ClipFolder &m_folder;
    int m_clipId = 0;
    bool m_playing = false;
    QString m_tag;
    KXWebViewJSBridge::Completion m_watcher;
};
