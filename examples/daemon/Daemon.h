// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/Core/Timer.h>

#include <QtCore/QObject>

#include <memory>

/// What the background program does: it logs a line at an interval, and obeys action URLs:
///
/// | URL                                       | does                                             |
/// |-------------------------------------------|--------------------------------------------------|
/// | `kx://action.cmd/log?text=Hello&type=2`   | logs a line; the type is 1 without one           |
/// | `kx://action.cmd/duration?path=/clip.mp4` | logs how long a video plays                      |
/// | `kx://action.cmd/interval?seconds=0.5`    | changes the interval; 0 and less pauses the line |
/// | `kx://action.cmd/save`                    | writes the log to the disk                       |
/// | `kx://action.cmd/quit`                    | asks to end                                      |
class Daemon : public QObject {
    Q_OBJECT
public:
    explicit Daemon(double interval);
    ~Daemon() override;

    /// Does what the URL says, and prints "done" or "refused" with it.
    void obey(const QString &url);

Q_SIGNALS:
    void quitRequested();

private:
    void registerActions();
    void setInterval(double seconds);
    void logBeat();

    std::shared_ptr<kx::Timer> m_beat; // its loop keeps it; null while paused
    int m_beats = 0;
};
