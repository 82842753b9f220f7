// SPDX-License-Identifier: MIT
#pragma once

#include <QtWidgets/QHBoxLayout>

class Player {
public:
    [[nodiscard]] double duration() const;
    void seek(double seconds);
    void setVolume(double percent);
};

class Preview {
public:
    void showAt(double fraction);
    void hide();
};

class Page {
protected:
    Player player;
    Preview preview;
    QHBoxLayout *controls = nullptr;
};
