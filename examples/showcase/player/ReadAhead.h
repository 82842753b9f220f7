// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QFile>

/// Reads a file some seconds ahead of what is being played, so that a slow disk never stops the picture: the pages stay
/// in the system's cache. A file is taken to be as long everywhere in bytes as in seconds.
class ReadAhead {
public:
    static constexpr double seconds = 6;

    void open(const QString &path);
    /// Reads a little more, if that is due. The time up to which the file has been read.
    double advance(double position, double duration);

private:
    QFile m_file;
};
