// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/UI/Color.h>

#include <QtCore/QList>

/// What a playback bar's owner chose of its looks. See PNProgressIndicator's properties of the same names.
struct PlaybackBarLook {
    kx::Color stopColor = kx::Color::white(1.0, 0.12);
    kx::Color playedStartColor = kx::Color::rgba(253.0 / 255.0, 107.0 / 255.0, 107.0 / 255.0, 1.0);
    kx::Color playedEndColor = kx::Color::rgba(1.0, 41.0 / 255.0, 88.0 / 255.0, 1.0);
    kx::Color preloadColor = kx::Color::white(1.0, 0.45);
    kx::Color unLoadColor = kx::Color::rgba(1.0, 1.0, 1.0, 0.3);
    kx::Color starClipsColor = kx::Color::rgba(1.0, 151.0 / 255.0, 0.0, 1.0);
    bool rounded = false;
    QList<double> tags;
};
