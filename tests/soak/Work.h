// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/MemoryCache/KXMemoryCache.h>

#include <QtCore/QStringList>
#include <QtCore/QTemporaryDir>
#include <QtGui/QImage>

#include <memory>

class KXLabel;
class KXWKWebView;
class PNBaseWindow;
class PNProgressIndicator;
class PNProgressSlider;
class Pointer;

/// A player's day in one window. Each round does a bit of everything; every step waits for its own result and notes
/// what did not come.
class Work {
public:
    Work();
    ~Work();
    Q_DISABLE_COPY_MOVE(Work)

    /// One round, the `number`-th. Some steps come only every few rounds.
    void round(int number);

    [[nodiscard]] const QStringList &failures() const { return m_failures; }

private:
    void expect(bool happened, const char *what);

    void log(int number);
    void runChild(int number);
    void callPage(int number);
    void reloadPage();
    void rebuildPage();
    void killRenderer();
    void dragWindow();
    void dragControls(int number);
    void changeLabel(int number);
    void runTimers();
    void fillCache(int number);

    QTemporaryDir m_directory;
    std::unique_ptr<PNBaseWindow> m_window;
    KXWKWebView *m_page;
    PNProgressIndicator *m_bar;
    PNProgressSlider *m_volume;
    KXLabel *m_label;
    KXMemoryCache<QString, QImage> m_cache;
    QStringList m_failures;
};
