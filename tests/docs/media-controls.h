// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/CustomComponent/PNProgressIndicator.h>
#include <KXFoundation/CustomComponent/PNProgressSlider.h>
#include <KXFoundation/Platform/UI/Image.h>
#include <KXFoundation/Platform/UI/View.h>

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
};
