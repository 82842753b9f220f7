// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QDir>
#include <QtCore/QHash>
#include <QtGui/QImage>

class GalleryWindow;
struct State;

/// Takes a picture of each state and checks it: there is something to see, and it looks like no other state of its
/// family, unless it should. Prints what is wrong.
class Pictures {
public:
    /// `folder` exists; pictures in it are replaced.
    explicit Pictures(const QDir &folder);

    /// True when every picture was saved and is as it should be, and the folder holds one for each state.
    bool takeAll(GalleryWindow &window);
    /// Whether both folders hold pictures of the same names, and those of the second are `factor` times the size.
    [[nodiscard]] static bool correspond(const QDir &first, const QDir &second, int factor);

private:
    [[nodiscard]] static QImage take(const State &state, GalleryWindow &window);
    [[nodiscard]] QString faultOf(const State &state, const QImage &picture) const;

    QDir m_folder;
    QHash<QString, QHash<QString, QImage>> m_families; // name of the family, name of the state
};
