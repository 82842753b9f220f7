// SPDX-License-Identifier: MIT
#pragma once

#include "Clip.h"

#include <QtCore/QDir>
#include <QtCore/QList>
#include <QtCore/QObject>

/// The videos of a folder. One that is empty gets some samples first, where ffmpeg is installed.
class ClipFolder : public QObject {
    Q_OBJECT
public:
    enum class State { Looking, MakingSamples, Complete };

    explicit ClipFolder(const QDir &folder, QObject *parent = nullptr);

    /// Looks for videos; answers with changed(), again with each sample.
    void open();

    [[nodiscard]] QString path() const { return m_folder.absolutePath(); }
    [[nodiscard]] const QList<Clip> &clips() const { return m_clips; }
    /// A null clip for an id that there is not.
    [[nodiscard]] Clip clip(int id) const;
    [[nodiscard]] State state() const { return m_state; }

Q_SIGNALS:
    void changed();

private:
    void find();
    void take(const QList<Clip> &found);
    void fill();

    QDir m_folder;
    QList<Clip> m_clips;
    State m_state = State::Looking;
};
