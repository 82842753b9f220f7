// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QDir>
#include <QtCore/QObject>

/// Makes a few short videos with sound, one after the other, so that there is something to play.
class SampleClips : public QObject {
    Q_OBJECT
public:
    explicit SampleClips(const QDir &folder, QObject *parent = nullptr);

    void make();

Q_SIGNALS:
    /// When there is one more file in the folder.
    void made();
    /// After the last one, or the first that failed.
    void finished();

private:
    void makeNext();

    QDir m_folder;
    int m_next = 0;
};
