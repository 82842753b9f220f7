// SPDX-License-Identifier: MIT
#pragma once

#include "GalleryPage.h"

/// The playback bar and the slider.
class MediaPage : public GalleryPage {
public:
    MediaPage();

private:
    void addPNProgressIndicators();
    void addPNProgressSliders();
};
