// SPDX-License-Identifier: MIT
#pragma once

#include <QtGui/QImage>

#include <memory>
#include <mutex>

class Page {
protected:
    void show(const QImage &thumbnail);

    KXMemoryCache<QString, QImage> thumbnails;
    QImage image;
    QString clipId;
};
