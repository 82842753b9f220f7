// SPDX-License-Identifier: MIT
#pragma once

#include "GalleryPage.h"

/// Image and text buttons, and the image view.
class ButtonsPage : public GalleryPage {
public:
    ButtonsPage();

private:
    void addPNButtons();
    void addPNAlphBtns();
    void addPNTextColorButtons();
    void addKXImageViews();
};
