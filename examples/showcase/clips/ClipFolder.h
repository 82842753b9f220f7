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
    explicit ClipFolder(const QDir &folder, QObject *parent = nullptr);

    /// Looks for videos; answers with changed(), again with each sample.
    void open();

    [[nodiscard]] QString path() const { return m_folder.absolutePath(); }
    [[nodiscard]] const QList<Clip> &clips() const { return m_clips; }
    /// A null clip for an id that there is not.
    [[nodiscard]] Clip clip(int id) const;
    /// Whether samples are being made.
    [[nodiscard]] bool isFilling() const { return m_filling; }

Q_SIGNALS:
    void changed();

private:
    void find();
    void fill();

    QDir m_folder;
    QList<Clip> m_clips;
    bool m_filling = false;
};
