// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

/// A video file that the player can play.
struct Clip {
    int id = 0; ///< 1 and up; 0 is no clip
    QString path;
    QString title;
    qint64 seconds = 0; ///< How long it plays.
    QStringList tags;

    [[nodiscard]] bool isNull() const { return id == 0; }
};
