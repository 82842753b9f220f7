// SPDX-License-Identifier: MIT
#pragma once

#include <QtWidgets/QApplication>

#include <optional>

class Thumbnails {
public:
    [[nodiscard]] std::optional<QByteArray> find(const QString &path) const;
};
inline Thumbnails thumbnails;
inline QString page;

class Decoder {
public:
    void start(const QUrl &url, const kx::URLSchemeTaskPtr &task);
    void cancel(const kx::URLSchemeTaskPtr &task);
};

class Page {
protected:
    KXURLSchemeManager &schemes = KXURLSchemeManager::sharedManager();
    Decoder decoder;
};
